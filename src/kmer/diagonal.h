// Two reads of a block, one laid under the other: which columns are equal.
//
// Replaces, where a shared word tells how two reads lie, the search for their shared k-mer and most of the search for
// their overlap: both follow from one look at all columns of that diagonal.
#pragma once

#include <cstdint>

#include "kmer/laid_reads.h"

namespace lintara {

/// The columns of two reads under one shift.
struct Diagonal {
    static const int WORDS = (LONGEST_TABLED_READ + 63) / 64;

    int shift;                  ///< base 0 of the second read stands under this base of the first; may be negative
    int columns;                ///< in which both have a base; at least 1
    int equal;                  ///< of them
    std::uint64_t same[WORDS];  ///< a bit for each column, the first one lowest: it is equal
};

/// Lays one read under another.
///
/// @param first, second  of one block, of at most LONGEST_TABLED_READ bases
/// @param shift          so that they have a column
/// @param longest        bases of the block's longest inner read, see LaidReads
void LayUnder(const LaidRead& first, const LaidRead& second, int shift, int longest, Diagonal& diagonal);

/// Whether so many columns in a row are equal; length is 1 to 127.
bool HasEqualStretch(const Diagonal& diagonal, int length);

/// Calls visit(first column, columns) for the stretches of equal columns, in order, until it says true.
/// @return whether it did
template <typename Visit>
bool AnyEqualStretch(const Diagonal& diagonal, Visit visit) {
    for (int from = 0; from < diagonal.columns; ++from) {
        int column = from;
        while (column < diagonal.columns && (diagonal.same[column / 64] >> (column % 64) & 1) != 0) ++column;
        if (column > from && visit(from, column - from)) return true;
        from = column;
    }
    return false;
}

}  // namespace lintara
