// What the two solvers of a block with both edges share: the judgement on the halves that the walks have brought, and
// the end that a path over overlapping edges takes.
#pragma once

#include <string>

namespace lintara {

/// Size in bases, as the int that all comparisons work on.
inline int Length(const std::string& seq) {
    return static_cast<int>(seq.size());
}

/// Whether the halves are too small to be joined: both below min_align, or one empty and the other at most a tenth of
/// the gap.
bool HalvesTooSmall(const std::string& before, const std::string& after, int gap_length);

/// Whether the sequence of a path between both edges is a run of N, which stands for edges that overlap by its length;
/// if so, realgaplen becomes minus that length.
bool IsMinusGap(const std::string& seq, int& realgaplen);

}  // namespace lintara
