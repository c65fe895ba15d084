// Prolongs an edge by the reads that overlap it directly, for blocks in which reads are few and no walk succeeds. The
// read that runs furthest gives the new bases, and a strict vote of the other overlapping reads says which of them
// stay.
#pragma once

#include <string>
#include <vector>

#include "consensus/column.h"
#include "store/gap.h"

namespace lintara {

/// Grows the before edge to the right by the read with the shortest overlap above 30 bases.
///
/// @param start  num entries: overlap of each read with the before edge in bases, 0 for none
/// @return reads[0] followed by the expansion; at least the edge
std::string forward_expand(const int* start, const std::vector<Read>& reads, int threadId);

/// Grows the after edge to the left.
///
/// @param end  num entries: overlap of each read with the after edge in bases, 0 for none
/// @return the expansion followed by reads[num - 1]; at least the edge
std::string reward_expand(const int* end, const std::vector<Read>& reads, int threadId);

/// The strictest vote: how many reads must agree depends on how many are placed at all. With the edge and one read
/// nothing is ever confirmed. The record has tabs on both sides of the path's base and no marker. The program does not
/// call it: forward_expand() and reward_expand() vote on all columns at once by the same rule.
///
/// @return the winning base, or N when the column isn't confirmed; the path's base is of no weight
char Enlong_value_base_restrict(char seq_base, int posit, const ReadMap& read, int threadId);

}  // namespace lintara
