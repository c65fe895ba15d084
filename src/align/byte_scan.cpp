#include "align/byte_scan.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace lintara::detail {

namespace {

// 16 bytes that are compared at once; a lane of a comparison is all ones where the bytes are equal.
using Lanes = std::uint8_t __attribute__((vector_size(16)));
const int kLanes = 16;

// Bytes of the pattern that the vector filter compares before a place is looked at closely.
const int kFilter = 4;

Lanes Load(const char* text) {
    Lanes lanes;
    std::memcpy(&lanes, text, sizeof lanes);
    return lanes;
}

Lanes Fill(char byte) {
    return Lanes{} + static_cast<std::uint8_t>(byte);
}

// The lanes as two words, the lower lanes in the lower bytes of the first one.
struct Halves {
    explicit Halves(Lanes lanes) {
        std::memcpy(words, &lanes, sizeof words);
        if constexpr (std::endian::native == std::endian::big) {
            for (std::uint64_t& word : words) word = __builtin_bswap64(word);
        }
    }
    std::uint64_t words[2];
};

// Place by place, for what is too short for the filter.
int FindPlain(const char* patt, int pattlen, const char* str, int strlen) {
    for (int pos = 0; pos <= strlen - pattlen; ++pos) {
        if (str[pos] == patt[0] && std::memcmp(str + pos, patt, pattlen) == 0) return pos;
    }
    return -1;
}

// Columns between two looks at what can still be reached: few enough for a count of them to fit a byte.
const int kBlock = 8 * kLanes;

// Sum of the lanes, below 256.
int Sum(Lanes lanes) {
    const Halves halves(lanes);
    return static_cast<int>((halves.words[0] + halves.words[1]) * 0x0101010101010101 >> 56);
}

// All ones in the last of the lanes: in as many as the place it is loaded from.
const char kLast[2 * kLanes] = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,
                                -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};

// Counts the columns for which counts(i) is true, which are those whose lane in lanes_at(), of the columns from i on,
// is all ones. Gives up with any lower number once may_reach(sum, columns left) is false.
template <typename LanesAt, typename Counts, typename MayReach>
int CountColumns(int n, LanesAt lanes_at, Counts counts, MayReach may_reach) {
    int sum = 0;
    if (n < kLanes) {
        for (int i = 0; i < n; ++i) sum += counts(i) ? 1 : 0;
        return sum;
    }
    int i = 0;
    for (; n - i >= kBlock; i += kBlock) {
        if (!may_reach(sum, n - i)) return sum;
        Lanes equal{};
        for (int k = 0; k < kBlock; k += kLanes) equal -= lanes_at(i + k);
        sum += Sum(equal);
    }
    const int rest = n % kLanes;
    Lanes equal{};
    for (; i < n - rest; i += kLanes) equal -= lanes_at(i);
    // The last vector is moved left so that it ends with the columns; those met before do not count again.
    equal -= lanes_at(n - kLanes) & Load(kLast + rest);
    return sum + Sum(equal);
}

template <typename MayReach>
int CountEqualColumns(const char* a, const char* b, int n, MayReach may_reach) {
    return CountColumns(
        n, [=](int i) -> Lanes { return Load(a + i) == Load(b + i); }, [=](int i) { return a[i] == b[i]; }, may_reach);
}

}  // namespace

int FindFirst(const char* patt, int pattlen, const char* str, int strlen) {
    if (pattlen <= 0) return 0;
    const int last = strlen - pattlen;
    if (last < 0) return -1;
    const int reach = kLanes + kFilter - 1;  // bytes that one step of the filter reads
    if (pattlen < kFilter || strlen < reach) return FindPlain(patt, pattlen, str, strlen);

    const Lanes first = Fill(patt[0]);
    const Lanes second = Fill(patt[1]);
    const Lanes third = Fill(patt[2]);
    const Lanes fourth = Fill(patt[3]);
    for (int pos = 0; pos <= last; pos += kLanes) {
        // The last step is moved left so that it ends with the text; places met twice were turned down before.
        if (pos > strlen - reach) pos = strlen - reach;
        const char* here = str + pos;
        const Lanes hits =
            (Load(here) == first) & (Load(here + 1) == second) & (Load(here + 2) == third) & (Load(here + 3) == fourth);
        const Halves halves(hits);
        if ((halves.words[0] | halves.words[1]) == 0) continue;
        for (int half = 0; half < 2; ++half) {
            for (std::uint64_t word = halves.words[half]; word != 0;) {
                const int lane = std::countr_zero(word) / 8;
                const int place = pos + half * kLanes / 2 + lane;
                if (place > last) return -1;
                if (std::memcmp(str + place + kFilter, patt + kFilter, pattlen - kFilter) == 0) return place;
                word &= ~(std::uint64_t{0xff} << (8 * lane));
            }
        }
    }
    return -1;
}

int CountEqual(const char* a, const char* b, int n, int least) {
    return CountEqualColumns(a, b, n, [least](int sum, int left) { return sum + left >= least; });
}

int CountEqual(const char* a, const char* b, int n) {
    return CountEqualColumns(a, b, n, [](int, int) { return true; });
}

int CountEqualBases(const char* a, const char* b, const char* mask, int n, int least) {
    const Lanes unknown = Fill('N');
    return CountColumns(
        n,
        [=](int i) -> Lanes {
            const Lanes base = Load(b + i);
            return (Load(a + i) == base) & (base != unknown) & (Load(mask + i) != unknown);
        },
        [=](int i) { return a[i] == b[i] && b[i] != 'N' && mask[i] != 'N'; },
        [least](int sum, int left) { return sum + left >= least; });
}

int CountEqualBases(const char* a, const char* b, const char* mask, int n) {
    return CountEqualBases(a, b, mask, n, 0);
}

}  // namespace lintara::detail
