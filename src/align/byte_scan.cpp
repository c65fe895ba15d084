#include "align/byte_scan.h"

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

bool AnyLane(Lanes lanes) {
    std::uint64_t halves[2];
    std::memcpy(halves, &lanes, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// Place by place, for what is too short for the filter.
int FindPlain(const char* patt, int pattlen, const char* str, int strlen) {
    for (int pos = 0; pos <= strlen - pattlen; ++pos) {
        if (str[pos] == patt[0] && std::memcmp(str + pos, patt, pattlen) == 0) return pos;
    }
    return -1;
}

// Equal bytes of up to kBlock columns fit a byte counter, which lets the compiler keep 16 of them in one register.
const int kBlock = 255;

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
        if (!AnyLane(hits)) continue;
        for (int lane = 0; lane < kLanes && pos + lane <= last; ++lane) {
            if (hits[lane] != 0 && std::memcmp(here + lane + kFilter, patt + kFilter, pattlen - kFilter) == 0) {
                return pos + lane;
            }
        }
    }
    return -1;
}

int CountEqual(const char* a, const char* b, int n) {
    int sum = 0;
    for (int start = 0; start < n; start += kBlock) {
        const int end = n - start < kBlock ? n : start + kBlock;
        std::uint8_t equal = 0;
        for (int i = start; i < end; ++i) equal += a[i] == b[i];
        sum += equal;
    }
    return sum;
}

int CountEqualBases(const char* a, const char* b, const char* mask, int n) {
    int sum = 0;
    for (int start = 0; start < n; start += kBlock) {
        const int end = n - start < kBlock ? n : start + kBlock;
        std::uint8_t equal = 0;
        for (int i = start; i < end; ++i) equal += (a[i] == b[i]) & (b[i] != 'N') & (mask[i] != 'N');
        sum += equal;
    }
    return sum;
}

}  // namespace lintara::detail
