// The decision tree that turns the two expansions of a gap into the gap's text. Two walks have grown sequence into the
// gap, one from each contig edge, and no walk reached the other side: do the two meet, where, and can that meeting be
// trusted, or is it a repeat that only looks like one? Alignment of the two sides is trusted most, then a single read
// that spans both, then a comparison with the contig edges; every doubt ends in N.
#pragma once

#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// The gap's text from its two expansions.
///
/// @param before, after            bases grown from the before edge and from the after edge, both in left-to-right
///                                 order and without the edges; either may be empty. Some routes cut them, and the
///                                 caller sees that
/// @param before_edge, after_edge  contig edges, the first and the last read of `reads`; the cross checks need at least
///                                 a seed of each, see forward_overlap(), and min_align bases
/// @param gapsize                  estimated gap size, bases
/// @param tagInfo                  tag table, see CheckOver(), which ends the process for reads below 12 bases
/// @param noreadbreak1, noreadbreak2  whether the walk from the before edge (1) or from the after edge (2) ended
///                                 because no read could continue it
/// @param realgaplen               set only where the two edges are found to overlap, and then negative: minus the
///                                 bases that they share. The text that comes back with it is for form only
/// @return any length; empty for a gap of size zero; N for what stays open
std::string ExpandConnect(std::string& before, std::string& after, const std::string& before_edge,
                          const std::string& after_edge, int gapsize, const std::vector<Read>& reads, TagInfo*& tagInfo,
                          bool noreadbreak1, bool noreadbreak2, int& realgaplen, int threadId);

}  // namespace lintara
