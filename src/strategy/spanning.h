// Decides whether the reads that span a small gap may be believed, and takes the gap's text from them. In a repeat a
// read can seem to span a gap that it does not; so the parts of a spanning read that lie on the edges are looked for in
// all other reads, and a part that occurs twice in one read belongs to a repeat and proves nothing.
//
// `reads` is the block of strategy/gap_size.h, `read` its supporting reads: index to start in the before edge. The
// bases of a read on the before edge are the edge's length less the start; those on the after edge are what the before
// edge and the gap leave of it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Whether neither edge part of one spanning read occurs more than once in any read of the block. In a block with 1000
/// reads or more a base of the gap, only the first 100 reads a base are looked at.
///
/// @param gapsize          bases between the edges
/// @param readid, readpos  the spanning read and its start in the before edge
/// @param tagInfo          handed along, not used
bool CrossCheck(const std::vector<Read>& reads, const int& gapsize, int readid, int readpos, TagInfo*& tagInfo);

/// Whether at least one supporting read passes CrossCheck(). They are tried by ascending index up to the first pass,
/// which the log names.
bool MultiCrossCheck(const std::vector<Read>& reads, const int& gapsize, const std::map<int, int>& read,
                     TagInfo*& tagInfo, int threadId);

/// The gap's text from its only supporting read, which must be free of repeats and, from a size of 4 on, be confirmed
/// by two other reads that hold the gap's bases once.
///
/// A read that is too short for its own gap size ends the process with status -1 and its numbers on the error stream.
///
/// @param gapsize  in/out: bases of the gap; set to kUnknownSize on refusal
/// @param read     exactly one entry
/// @return the text; on refusal N in the old size
std::string OneReadCross(const std::vector<Read>& reads, int& gapsize, const std::map<int, int>& read, int threadId);

/// The gap's text from the first of its two supporting reads. What the second one says otherwise is only logged.
///
/// @param read  at least two entries
std::string TwoReadCross(const std::vector<Read>& reads, int gapsize, const std::map<int, int>& read, int threadId);

/// The gap's text by a vote of its supporting reads, column by column, see value_base().
///
/// @return `gapsize` bases; N only with fewer than 2 or more than 1000 supporting reads a base
std::string AssembleSmallBlock(const std::vector<Read>& reads, int gapsize, const std::map<int, int>& read,
                               int threadId);

/// Whether a negative gap size can be believed: the edges agree over the overlap, or at most one of its two sides is
/// seen more than once in a read.
///
/// @param gapsize  negative; minus the bases by which the edges overlap
bool MinusCheck(int gapsize, const std::vector<Read>& reads);

}  // namespace lintara
