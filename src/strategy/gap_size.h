// Estimates the size of a small gap from the reads that span it. A read that overlaps both edges tells a size, negative
// when the edges overlap each other, and the sizes of all such reads are put to the vote.
//
// A block here holds the before edge first, the after edge last with the gap's estimated length as its position, and
// the reads between them. A spanning read is kept as its index in the block and its start, an offset in the before
// edge. A read with an internal repeat can slide along the gap and tell too short a size: as soon as one such read is
// seen, the longest size that any read tells is the safe one.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// The gap size that stands for "unknown". No read tells it: edges of 200 bases overlap in 200 at most.
inline constexpr int kUnknownSize = -1000;

/// The gap size that the spanning reads agree on.
///
/// @param reads        the block; a read that reaches beyond an edge is trimmed to it, whether it counts or not
/// @param read         out: index of each supporting read to its start in the before edge. With an undecided vote it
///                     keeps all spanning reads, with too few of them it is empty
/// @param Accept_Long  in/out, false at first: set when a read's placement is ambiguous, see LongCheck()
/// @return bases between the edges, negative for an overlap; or kUnknownSize
int GetGapLen(std::vector<Read>& reads, std::map<int, int>& read, bool& Accept_Long, int threadId);

/// Whether a spanning read could lie at another place as well: its gap part occurs in it more than once, or one of its
/// edge parts occurs again one base or more further in.
///
/// @param over_part_before, over_part_after  the edge's bases under the read; not looked at
/// @param over1, over2  bases of the read on the before and on the after edge
/// @return true: the longest size is to be believed
bool LongCheck(const std::string& over_part_before, const std::string& over_part_after, const std::string& read,
               int over1, int over2, int threadId);

/// Settles one column of before edge, gap and after edge by the vote of the spanning reads, and writes its record to
/// the snp file. The earlier base in ACGT order wins a tie.
///
/// @param seq_base  what the column holds; anything but N is handed back at once, without a record
/// @param posit     the column, 0 being the before edge's first base
/// @param read      spanning reads as of GetGapLen()
/// @return the base in upper case; N when no read has the column
char value_base(char seq_base, int posit, const std::map<int, int>& read, const std::vector<Read>& reads, int threadId);

/// Whether a gap size stands for overlapping edges, that is whether it is negative. The reads are not looked at. The
/// program does not call it.
bool ShortCheck(const std::vector<Read>& reads, const int& gapsize, const std::map<int, int>& read);

}  // namespace lintara
