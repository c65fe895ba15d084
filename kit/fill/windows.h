// A closer look at gaps that a mapping to whole scaffolds has left open. Only the stretches around them are mapped to,
// by the reads that may belong there, so that it costs little and can be repeated while a gap grows. Among so few
// stretches a mapper has no other place for the reads of a repeat: all its copies answer. Therefore what is gained this
// way is kept only as far as the reads know one way to go on.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "kit/assign/assign.h"
#include "kit/assign/layout.h"
#include "kit/fill/state.h"

namespace lintara::kit {

struct Windows {
    Layout layout;
    std::vector<int> gaps;  ///< of a gap of `layout`, less 1: its id in the layout that the windows were cut from
};

/// Cuts the gaps with these ids out, with up to `reach` bases of their contigs; gaps that lie nearer to each other than
/// two times that share a window. The stated length of the gaps in `longer` grows by a third and 50 bases: where the
/// sides grew to the stated length but do not fit together, the core program keeps neither, and both with more room.
Windows CutWindows(const Layout& layout, const std::set<int>& gaps, const std::set<int>& longer, long reach);

/// Keeps of a result's text what one can reach from either side by words of kBranchWord bases that go on in one way. A
/// closed gap stays closed when the two ways overlap by such a word.
///
/// @param before, after  the contigs beside the text as the core program left them
/// @param stated         length that an open gap keeps
void CutAtBranches(GapResult& result, const std::string& before, const std::string& after,
                   const std::vector<AssignedRead>& reads, long stated);
inline constexpr long kBranchWord = 31;

/// Lets N make up the stated length of an open gap; at least one remains.
void FitLength(GapResult& result, long stated);

}  // namespace lintara::kit
