// The steps that both get_first share: the pick and its tests, what the re-picks are made of, the entry up to the
// base-by-base comparison with end, and the rule of the final acceptance. They mirror the functions of the same names
// in get_last.cpp.
#pragma once

#include "walk/end_select_ladder.h"

namespace lintara::end_select {

/// False when there is no choice left: the pick, which may be -1, is the answer of the call.
bool PickMin(int end, int& first, Ladder& ladder);
bool PickMax(int end, int& first, Ladder& ladder);

/// Sets cycle and ratio for a pick of the largest step (Min) or the smallest (Max).
void TestMin(int end, int first, Ladder& ladder);
void TestMax(int end, int first, Ladder& ladder);

/// Does the pick stand where its estimated position says?
bool InPosition(int end, int first, const Ladder& ladder);

/// Is the pick still a candidate, and do those that are left agree with it?
Next RecheckPick(int end, int first, Ladder& ladder, Recheck rule);

/// Picks the smallest step and tests it; never ends in Next::Stage.
Next BareMaxStep(int end, int& first, Ladder& ladder);

/// Removes the candidates far from their position; true when any went.
bool PositionClean(int end, Ladder& ladder);

/// Removes the candidates that touch the before edge; true when any went.
bool FarEdgeClean(int end, std::vector<int>& accept, Ladder& ladder);

/// Logs where the walk stands and with how many candidates. Next::Stop: all of them agree with the pick.
Next EasyCase(int end, int first, Ladder& ladder);

/// Keeps the candidates that match end base by base. When that leaves nothing of four and more at the after edge, the
/// edge itself is suspect, and all candidates come back.
void MatchEnd(int end, Ladder& ladder);

/// Drops the pick and takes a new one.
Next DropNode(int end, int& first, Ladder& ladder);

/// Removes the candidates with no exact partner; true when any went.
bool PartnerClean(Ladder& ladder);

/// Is the pick good enough when no measure is left?
bool Stands(int first, const Ladder& ladder);

/// The longer read that holds the pick and passes the test, or -1. Looked for with more than three candidates.
int LongerPick(int end, int first, Ladder& ladder);

}  // namespace lintara::end_select
