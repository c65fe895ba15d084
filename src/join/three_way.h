// Places an assembled sequence between the two edges of a short gap when it isn't known where the sequence stands: it
// was walked from the middle of the block, and so touches neither edge through the overlap matrix. The decision goes by
// whether the sequence overlaps each edge; reads that cross from one to the other are the second resort, and exact
// anchors of the edges the last one.
#pragma once

#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// The gap's text from a sequence of unknown place.
///
/// @param tmp1, tmp2  before and after edge
/// @param seq         the sequence; is cut along the way, and its value afterwards is of no use. Below min_align bases
///                    it isn't looked at
/// @param reads       block with both edges
/// @param gapsize     estimated length of the gap in bases
/// @param realgaplen  set only where the edges prove to overlap: to minus that overlap for a gap of 1, to 0 for others
/// @return what stands between the edges, with N on the side that stays open; `gapsize` N when nothing is decided
///
/// Ends the process through string_match() when the anchors are sought in a `seq` of min_align bases or with an edge
/// below 3 bases, through align_connect() when an edge is far shorter than min_align, and through the overlap finders
/// when a sequence is shorter than their seeds.
std::string ConnectThree(const std::string& tmp1, std::string& seq, const std::string& tmp2,
                         const std::vector<Read>& reads, int gapsize, int& realgaplen, int threadId);

}  // namespace lintara
