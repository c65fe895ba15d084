// What the two solvers of a block with both edges share: the judgement on the halves that the walks have brought, and
// the end that a path over overlapping edges takes.
#pragma once

#include <string>

#include "align/piece.h"

namespace lintara {

/// Whether the halves are too small to be joined: both below min_align, or one empty and the other at most a tenth of
/// the gap.
bool HalvesTooSmall(const std::string& before, const std::string& after, int gap_length);

/// Whether the sequence of a path between both edges is a run of N, which stands for edges that overlap by its length;
/// if so, realgaplen becomes minus that length.
bool IsMinusGap(const std::string& seq, int& realgaplen);

}  // namespace lintara
