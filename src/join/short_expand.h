// The last resort for a short gap with few reads: both edges are expanded by the reads that overlap them directly, and
// the two expansions are joined by alignment and by reads that cross. `before` and `after` are the expansions without
// the edges; `gapsize` is the estimated length of the gap in bases.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Expands both edges of a block and joins what grew.
///
/// @param matrix      overlap matrix of the reads, the cells of the edges included
/// @param reads       block with both edges; the position of the last read is the gap's length
/// @param start, end  num entries each, which are overwritten: overlap of each read with the before and the after edge
/// @param tagInfo     only handed on
/// @param realgaplen  see ExpandConnectShort()
/// @return the gap's text; a run of N of the gap's length when neither edge grew
std::string SmallExpandFill(std::uint8_t**& matrix, const std::vector<Read>& reads, int*& start, int*& end,
                            TagInfo*& tagInfo, int& realgaplen, int threadId);

/// Joins two expansions: by direct alignment, by reads that cross, by alignment of the shortened expansions, by the
/// bare opposite edges, and else with N between the two.
///
/// @param before, after  expansions, not both empty; may be cut
/// @param reads          block with both edges
/// @param tagInfo        not looked at
/// @param realgaplen     set to a negative size when the sequences overlap past each other; left alone otherwise
/// @return the gap's text without edges; `gapsize` N when realgaplen was set, or when nothing could be decided. An
///         unproven join keeps one N at least
///
/// Ends the process through align_connect() when both sides with their edges are far shorter than min_align, and
/// through the overlap finders when an edge is shorter than their seeds.
std::string ExpandConnectShort(std::string& before, std::string& after, int gapsize, const std::vector<Read>& reads,
                               TagInfo*& tagInfo, int& realgaplen, int threadId);

}  // namespace lintara
