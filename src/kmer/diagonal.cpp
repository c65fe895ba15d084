#include "kmer/diagonal.h"

#include <algorithm>

#include "kmer/lanes.h"

namespace lintara {

namespace {

const int WORD_BITS = 64;  // columns in a word of the map
static_assert(Diagonal::WORDS == 4 && Diagonal::WORDS * WORD_BITS <= BASES_BEHIND);

int CountBits(std::uint64_t word) {
    // Not std::popcount(), which is a call where the processor can't be asked for its instruction.
    word -= word >> 1 & 0x5555555555555555U;
    word = (word & 0x3333333333333333U) + (word >> 2 & 0x3333333333333333U);
    word = (word + (word >> 4)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<int>(word * 0x0101010101010101U >> 56);
}

/// The lowest n bits, n from 0 to 64. In two shifts, since one by 64 does nothing.
std::uint64_t LowBits(int n) {
    return ~(~std::uint64_t{0} << n / 2 << (n - n / 2));
}

/// The columns of one word of the map.
inline std::uint64_t EqualColumns(const char* a, const char* b, int columns) {
    return (EqualBytes(a, b) | EqualBytes(a + LANES, b + LANES) << LANES |
            EqualBytes(a + 2 * LANES, b + 2 * LANES) << 2 * LANES |
            EqualBytes(a + 3 * LANES, b + 3 * LANES) << 3 * LANES) &
           LowBits(std::clamp(columns, 0, WORD_BITS));
}

/// The words of long reads.
void LayRest(const char* a, const char* b, Diagonal& diagonal) {
    for (int word = 2; word < Diagonal::WORDS; ++word) {
        const int from = word * WORD_BITS;
        diagonal.same[word] = EqualColumns(a + from, b + from, diagonal.columns - from);
        diagonal.equal += CountBits(diagonal.same[word]);
    }
}

}  // namespace

void LayUnder(const LaidRead& first, const LaidRead& second, int shift, int longest, Diagonal& diagonal) {
    const int under = std::max(shift, 0);
    const int above = std::max(-shift, 0);
    const char* a = first.bases + under;
    const char* b = second.bases + above;
    const int columns = std::min(first.length - under, second.length - above);
    diagonal.shift = shift;
    diagonal.columns = columns;
    // As many words for all pairs of a block, and most have two: a number of steps that never changes costs less than
    // one that fits.
    diagonal.same[0] = EqualColumns(a, b, columns);
    diagonal.same[1] = EqualColumns(a + WORD_BITS, b + WORD_BITS, columns - WORD_BITS);
    diagonal.equal = CountBits(diagonal.same[0]) + CountBits(diagonal.same[1]);
    diagonal.same[2] = diagonal.same[3] = 0;
    if (longest > 2 * WORD_BITS) LayRest(a, b, diagonal);
}

bool HasEqualStretch(const Diagonal& diagonal, int length) {
    // A bit stays where `reached` equal columns begin.
    std::uint64_t first = diagonal.same[0];
    std::uint64_t second = diagonal.same[1];
    std::uint64_t third = diagonal.same[2];
    std::uint64_t fourth = diagonal.same[3];
    const bool is_long = diagonal.columns > 2 * WORD_BITS;
    for (int reached = 1; reached < length;) {
        const int more = std::min(reached, length - reached);
        first &= first >> more | second << (WORD_BITS - more);
        second &= second >> more | third << (WORD_BITS - more);
        if (is_long) {
            third &= third >> more | fourth << (WORD_BITS - more);
            fourth &= fourth >> more;
        }
        reached += more;
    }
    return (first | second | third | fourth) != 0;
}

}  // namespace lintara
