#include "walk/get_first_steps.h"

#include "run/settings.h"
#include "walk/candidates.h"
#include "walk/drop.h"
#include "walk/position_check.h"

namespace lintara::end_select {

bool PickMin(int end, int& first, Ladder& ladder) {
    return creat_first(end, ladder.accept, ladder.reads, ladder.matrix, first);
}

bool PickMax(int end, int& first, Ladder& ladder) {
    return creat_max_first(end, ladder.accept, ladder.reads, ladder.matrix, first);
}

void TestMin(int end, int first, Ladder& ladder) {
    ladder.cycle = PassMinReward(end, first, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId, ladder.ratio);
}

void TestMax(int end, int first, Ladder& ladder) {
    ladder.cycle = PassMaxReward(end, first, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId, ladder.ratio);
}

bool InPosition(int end, int first, const Ladder& ladder) {
    return RewardPosCheck(end, first, ladder.reads, ladder.matrix);
}

Next RecheckPick(int end, int first, Ladder& ladder, Recheck rule) {
    if (!Find(first, ladder.accept)) return Next::Stage;
    ladder.Log() << "recheck!\n";
    TestMin(end, first, ladder);
    const bool opposed = ladder.ratio > 0.9;
    switch (rule) {
        case Recheck::PassOrRatio:
            return !ladder.cycle || opposed ? Next::Turn : Next::Stage;
        case Recheck::PassOnly:
            return ladder.cycle ? Next::Stage : Next::Turn;
        case Recheck::Position:
            break;
    }
    if (opposed) return Next::Turn;
    if (ladder.cycle) return Next::Stage;
    if (!InPosition(end, first, ladder)) {
        // So marked, the pick is dropped at the start of the next turn.
        ladder.cycle = true;
        ladder.ratio = 1.0;
    }
    return Next::Turn;
}

Next BareMaxStep(int end, int& first, Ladder& ladder) {
    if (!PickMax(end, first, ladder)) return Next::Stop;
    TestMax(end, first, ladder);
    return Next::Turn;
}

bool PositionClean(int end, Ladder& ladder) {
    ladder.posdrop = true;
    const bool dropped = DropPosRead(ladder.accept, end, ladder.reads, ladder.matrix);
    // Without the verdict, unlike the forward walk.
    ladder.Log() << "After pos drop: " << ladder.accept.size() << '\n';
    return dropped;
}

bool FarEdgeClean(int end, std::vector<int>& accept, Ladder& ladder) {
    return DropEdgeRead(end, accept, ladder.reads, ladder.matrix, ladder.changenode);
}

Next EasyCase(int end, int first, Ladder& ladder) {
    ladder.init = ladder.Size();
    ladder.Log() << "Reward for end: " << end << '\t' << ladder.init << "\tpos: " << ladder.reads[end].pos << '\n';
    if (!IsRewardBreak(end, first, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId) &&
        InPosition(end, first, ladder)) {
        return Next::Stop;
    }
    return Next::Stage;
}

void MatchEnd(int end, Ladder& ladder) {
    const std::vector<int> tmpv = ladder.accept;
    ladder.changenode = RewardCleanAccept(end, ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After full match drop: " << ladder.accept.size() << "\tchangenode: " << ladder.changenode << '\n';
    if (!ladder.accept.empty() || ladder.init < 4 || !ladder.AtAfterEdge(end)) return;
    ladder.Log() << "contig edge has mistakes!\n";
    ladder.fullcleandrop = true;
    ladder.changenode = false;
    ladder.accept = tmpv;
    ladder.Log() << "accept recover! do not use full match drop!\n";
}

Next DropNode(int end, int& first, Ladder& ladder) {
    ladder.Log() << "drop node: " << first << '\n';
    drop(first, ladder.accept);
    if (!PickMin(end, first, ladder)) return Next::Stop;
    TestMin(end, first, ladder);
    return Next::Turn;
}

bool PartnerClean(Ladder& ladder) {
    const bool dropped = clean_accept(ladder.accept, ladder.reads, ladder.matrix, ladder.clean, ladder.threadId);
    ladder.Log() << "After full match clean: " << ladder.accept.size() << '\n';
    ladder.fullcleandrop = true;
    return dropped;
}

bool Stands(int first, const Ladder& ladder) {
    if (first == -1) return false;
    const int unacceptnum = ladder.unacceptnum();
    // The forward walk has a third clause, for a tenth and less of a large set.
    return (ladder.ratio <= 0.22 && unacceptnum < 3) || (unacceptnum <= 1 && ladder.Size() > 2);
}

int LongerPick(int end, int first, Ladder& ladder) {
    // More than three; the forward walk asks for more than two.
    if (ladder.Size() <= 3 || static_cast<int>(ladder.reads[first].seq.size()) >= ReadLen) return -1;
    const int newfirst = GetLonger(first, ladder.accept, ladder.reads);
    ladder.Log() << "try long: " << newfirst << '\n';
    if (newfirst == -1) return -1;
    TestMax(end, newfirst, ladder);
    return ladder.cycle ? -1 : newfirst;
}

}  // namespace lintara::end_select
