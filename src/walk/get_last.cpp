// get_last: the next read of a walk to the right. Its twin for the walk to the left is get_first.cpp, with the same
// functions in the same order.
#include "run/settings.h"
#include "walk/candidates.h"
#include "walk/drop.h"
#include "walk/end_select.h"
#include "walk/end_select_ladder.h"
#include "walk/position_check.h"

namespace lintara {

namespace {

using end_select::Ladder;
using end_select::Next;
using end_select::Recheck;
using end_select::Report;

// ---- the pick and its tests ----------------------------------------------------------------------------------------

/// False when there is no choice left: the pick, which may be -1, is the answer of the call.
bool PickMin(int start, int& last, Ladder& ladder) {
    return creat_last(start, ladder.accept, ladder.reads, ladder.matrix, last);
}

bool PickMax(int start, int& last, Ladder& ladder) {
    return creat_max_last(start, ladder.accept, ladder.matrix, last);
}

void TestMin(int start, int last, Ladder& ladder) {
    ladder.cycle =
        PassMinForward(start, last, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId, ladder.ratio);
}

void TestMax(int start, int last, Ladder& ladder) {
    ladder.cycle =
        PassMaxForward(start, last, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId, ladder.ratio);
}

bool InPosition(int start, int last, const Ladder& ladder) {
    return ForwardPosCheck(start, last, ladder.reads, ladder.matrix);
}

// ---- the re-pick: what follows when a stage has thinned the candidates ---------------------------------------------

/// Is the pick still a candidate, and do those that are left agree with it?
Next RecheckPick(int start, int last, Ladder& ladder, Recheck rule) {
    if (!Find(last, ladder.accept)) return Next::Stage;
    ladder.Log() << "recheck!\n";
    TestMin(start, last, ladder);
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
    if (!InPosition(start, last, ladder)) {
        // So marked, the pick is dropped at the start of the next turn.
        ladder.cycle = true;
        ladder.ratio = 1.0;
    }
    return Next::Turn;
}

Next MinStep(int start, int& last, Ladder& ladder) {
    if (!PickMin(start, last, ladder)) return Next::Stop;
    ladder.Log() << "try min!\n";
    TestMin(start, last, ladder);
    return !ladder.cycle || ladder.ratio > 0.9 ? Next::Turn : Next::Stage;
}

Next BareMaxStep(int start, int& last, Ladder& ladder) {
    if (!PickMax(start, last, ladder)) return Next::Stop;
    TestMax(start, last, ladder);
    return Next::Turn;
}

Next MaxStep(int start, int& last, Ladder& ladder, Report report) {
    ladder.Log() << "try max!\n";
    if (report == Report::MaxStep) ladder.jum = 2;
    return BareMaxStep(start, last, ladder);
}

/// Ends the turn in every case.
Next RePick(int start, int& last, Ladder& ladder, Recheck rule = Recheck::PassOrRatio, Report report = Report::No) {
    Next next = RecheckPick(start, last, ladder, rule);
    if (next == Next::Stage) next = MinStep(start, last, ladder);
    if (next == Next::Stage) next = MaxStep(start, last, ladder, report);
    return next;
}

/// Removes the candidates far from their position; true when any went.
bool PositionClean(int start, Ladder& ladder) {
    ladder.posdrop = true;
    const bool dropped = DropPosRead(start, ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After position read drop: " << ladder.accept.size() << '\t' << dropped << '\n';
    return dropped;
}

/// Removes the candidates that touch the far edge; true when any went.
bool FarEdgeClean(int start, std::vector<int>& accept, Ladder& ladder) {
    return DropEdgeRead(start, accept, ladder.reads, ladder.matrix, static_cast<int>(ladder.reads.size()),
                        ladder.changenode);
}

// ---- entry ---------------------------------------------------------------------------------------------------------

void ShortOverCheck(int start, Ladder& ladder) {
    ladder.Log() << "short over check!\n";
    SHORTOVERLAP[ladder.threadId] = AcceptShortOverCheck(start, ladder.accept, ladder.matrix);
    if (SHORTOVERLAP[ladder.threadId]) {
        ladder.Log() << "Is short over! \n"
                     << "After short over drop: " << ladder.accept.size() << '\n';
    } else {
        ladder.Log() << "Not short over! \n";
    }
}

/// Keeps the candidates that match start base by base. When that leaves nothing of four and more at the before edge,
/// the edge itself is suspect, and all candidates come back.
void MatchStart(int start, Ladder& ladder) {
    const std::vector<int> tmpv = ladder.accept;
    ladder.changenode = ForwardCleanAccept(start, ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After full match drop: " << ladder.accept.size() << "\tchangenode: " << ladder.changenode << '\n';
    if (!ladder.accept.empty() || ladder.init < 4 || start != 0) return;
    ladder.Log() << "Contig edge hase mistakes!\n";
    ladder.fullcleandrop = true;
    ladder.changenode = false;
    ladder.accept = tmpv;
    ladder.Log() << "accept recover and do not use full match drop!\n";
}

/// A new pick among those that match start, unless so few are left that the call ends here.
Next PickMatching(int start, int& last, Ladder& ladder) {
    if (ladder.Size() == ladder.init) return Next::Stage;
    if (ladder.init > 4 && ladder.Size() < 2) {
        last = -1;
        return Next::Stop;
    }
    if (ladder.Size() == 1) {
        last = ladder.accept[0];
        if (!InPosition(start, last, ladder)) last = -1;
        return Next::Stop;
    }
    return PickMin(start, last, ladder) ? Next::Stage : Next::Stop;
}

/// Drops picks that all agree with but that stand in a wrong position, as long as more than two are left.
Next PositionPick(int start, int& last, Ladder& ladder) {
    TestMin(start, last, ladder);
    while (!ladder.cycle && ladder.Size() > 2 && !InPosition(start, last, ladder)) {
        ladder.Log() << "change position node!\n";
        drop(last, ladder.accept);
        if (!PickMin(start, last, ladder)) return Next::Stop;
        TestMin(start, last, ladder);
    }
    return Next::Stage;
}

/// The last two: when one is out, does the other stand in its position?
Next PairPick(int start, int& last, Ladder& ladder) {
    if (ladder.Size() != 2 || (!ladder.cycle && InPosition(start, last, ladder))) return Next::Turn;
    drop(last, ladder.accept);
    last = ladder.accept[0];
    // Only the ratio counts here: a pick that had failed goes on into the ladder as failed.
    PassMinForward(start, last, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId, ladder.ratio);
    if (!InPosition(start, last, ladder)) {
        ladder.changenode = true;
        last = -1;
        return Next::Stop;
    }
    ladder.Log() << "pass position check\n";
    return Next::Turn;
}

Next Entry(int start, int& last, Ladder& ladder) {
    ShortOverCheck(start, ladder);
    if (!PickMin(start, last, ladder)) return Next::Stop;
    ladder.init = ladder.Size();
    ladder.Log() << "Forward for end: " << start << '\t' << ladder.init << "\tpos: " << ladder.reads[start].pos << '\n';
    if (!IsForwardBreak(start, last, ladder.accept, ladder.reads, ladder.matrix, ladder.threadId) &&
        InPosition(start, last, ladder)) {
        return Next::Stop;
    }
    MatchStart(start, ladder);
    Next next = PickMatching(start, last, ladder);
    if (next == Next::Stage) next = PositionPick(start, last, ladder);
    if (next == Next::Stage) next = PairPick(start, last, ladder);
    return next;
}

// ---- stages for every start ----------------------------------------------------------------------------------------

Next DropNode(int start, int& last, Ladder& ladder) {
    ladder.Log() << "drop node: " << last << '\n';
    drop(last, ladder.accept);
    if (!PickMin(start, last, ladder)) return Next::Stop;
    TestMin(start, last, ladder);
    return Next::Turn;
}

Next FullMatchClean(int start, int& last, Ladder& ladder) {
    if (ladder.fullcleandrop) return Next::Stage;
    const bool dropped = clean_accept(ladder.accept, ladder.reads, ladder.matrix, ladder.clean, ladder.threadId);
    ladder.Log() << "After full match clean: " << ladder.accept.size() << '\n';
    ladder.fullcleandrop = true;
    if (ladder.accept.empty()) return Next::Accept;
    return dropped ? RePick(start, last, ladder, Recheck::Position) : Next::Stage;
}

// ---- stages for a start inside the gap -----------------------------------------------------------------------------

Next LongReads(int start, int& last, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.lengthdrop) return Next::Stage;
    ladder.lengthdrop = true;
    const bool dropped = DropLongRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After long read clean: " << ladder.accept.size() << '\n';
    return dropped ? RePick(start, last, ladder) : Next::Stage;
}

/// The candidates at the far edge leave, and the shortest step is taken among the others.
Next EdgeNotMet(int start, int& last, Ladder& ladder, int left) {
    ladder.edgedrop = true;
    ladder.Log() << "Not meet edge!\t" << left << '\n';
    FarEdgeClean(start, ladder.accept, ladder);
    const Next next = RecheckPick(start, last, ladder, Recheck::PassOnly);
    return next == Next::Stage ? BareMaxStep(start, last, ladder) : next;
}

Next EdgeMet(int start, int& last, Ladder& ladder, int left) {
    ladder.Log() << "Edge meet!\t" << left << '\n';
    ladder.lengthdrop = true;
    const bool dropped = DropShortRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After short read drop, accept left: " << ladder.accept.size() << '\n';
    if (dropped) return RePick(start, last, ladder, Recheck::PassOrRatio, Report::MaxStep);
    ladder.jum = 2;
    return Next::Stage;
}

/// Is the far edge in reach? Asked on a copy of the candidates, which themselves stay as they are.
Next EdgeTest(int start, int& last, Ladder& ladder) {
    if (ladder.lengthdrop) return Next::Stage;
    ladder.Log() << "Drop edge test!\n";
    std::vector<int> tmpvec = ladder.accept;
    const bool dropped = FarEdgeClean(start, tmpvec, ladder);
    const int left = static_cast<int>(tmpvec.size());
    if (dropped && ladder.Size() - left > 3 && !ladder.posdrop) {
        ladder.Log() << "can not decide edge!\tleft size: " << left << " init size: " << ladder.Size() << '\n';
        return PositionClean(start, ladder) ? RePick(start, last, ladder) : Next::Stage;
    }
    if (dropped && left > 3) return EdgeNotMet(start, last, ladder, left);
    if (!dropped) {
        ladder.Log() << "Not dropped, not meet the edge!\n";
        ladder.jum = 1;
        ladder.edgedrop = true;
        return Next::Stage;
    }
    return EdgeMet(start, last, ladder, left);
}

/// The far-edge clean of both kinds of start, which differ in their re-pick only.
Next EdgeClean(int start, int& last, Ladder& ladder, Recheck rule, Report report) {
    if (ladder.jum == 0 || ladder.edgedrop) return Next::Stage;
    ladder.edgedrop = true;
    const bool dropped = FarEdgeClean(start, ladder.accept, ladder);
    ladder.Log() << "After edge clean: " << ladder.accept.size() << '\n';
    if (ladder.accept.empty()) {
        last = -1;
        return Next::Stop;
    }
    return dropped ? RePick(start, last, ladder, rule, report) : Next::Stage;
}

Next InnerEdgeClean(int start, int& last, Ladder& ladder) {
    return EdgeClean(start, last, ladder, Recheck::PassOnly, Report::MaxStep);
}

Next InnerPosition(int start, int& last, Ladder& ladder) {
    if (ladder.jum == 1) return Next::Stage;
    if (ladder.posdrop) return Next::Accept;
    ladder.Log() << "position drop!\n";
    return PositionClean(start, ladder) ? RePick(start, last, ladder, Recheck::PassOrRatio, Report::MaxStep)
                                        : Next::Accept;
}

/// The step mode is 1 here, since the position stage ends the turn in all other modes.
Next InnerMaxStep(int start, int& last, Ladder& ladder) {
    ladder.Log() << "use max step: " << ladder.accept.size() << '\n';
    ladder.jum = 2;
    return BareMaxStep(start, last, ladder);
}

// ---- stages for a start at the before edge -------------------------------------------------------------------------

Next BeforeEdgeClean(int start, int& last, Ladder& ladder) {
    return EdgeClean(start, last, ladder, Recheck::PassOrRatio, Report::No);
}

/// Also measures the candidates by how much of them start covers, unless the max step has failed with some in favour.
Next CoverStep(int start, int& last, Ladder& ladder) {
    if (ladder.cycle && ladder.ratio <= 0.9) return Next::Turn;
    ladder.ratiodrop = true;
    const int unacceptnum = ladder.unacceptnum();
    ladder.Log() << "Long read over ratio drop!\t" << unacceptnum << '\n';
    if (ladder.Size() == unacceptnum + 1) {
        ladder.ratio = 1.0;
        ladder.ratiodrop = false;
        return Next::Turn;
    }
    if (!DropRatioRead(start, ladder.accept, ladder.reads, ladder.matrix, unacceptnum)) return Next::Turn;
    return BareMaxStep(start, last, ladder);
}

Next ShortReads(int start, int& last, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.lengthdrop) return Next::Stage;
    ladder.lengthdrop = true;
    const bool dropped = DropShortRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After short read clean: " << ladder.accept.size() << '\t' << dropped << '\n';
    if (!dropped) return Next::Stage;
    Next next = RecheckPick(start, last, ladder, Recheck::PassOrRatio);
    if (next == Next::Stage) next = MinStep(start, last, ladder);
    if (next != Next::Stage) return next;
    next = MaxStep(start, last, ladder, Report::No);
    return next == Next::Turn ? CoverStep(start, last, ladder) : next;
}

Next CoverRatio(int start, int& last, Ladder& ladder) {
    if (!ladder.lengthdrop || ladder.ratiodrop) return Next::Stage;
    ladder.ratiodrop = true;
    const bool dropped = DropRatioRead(start, ladder.accept, ladder.reads, ladder.matrix, ladder.unacceptnum());
    ladder.Log() << "After long read cover ratio drop: " << ladder.accept.size() << '\n';
    return dropped ? BareMaxStep(start, last, ladder) : Next::Stage;
}

/// Accepts a pick that few are against, or goes on to the next shortest step.
Next AcceptMore(int start, int& last, Ladder& ladder) {
    if (!ladder.findmax) return Next::Stage;
    if (!ladder.posdrop) {
        ladder.Log() << "position drop!\n";
        if (PositionClean(start, ladder)) return RePick(start, last, ladder);
    }
    if (ladder.more) return Next::Accept;
    ladder.more = true;
    ladder.Log() << "find a more one! " << last << '\n';
    const int unacceptnum = ladder.unacceptnum();
    if (ladder.Size() == 2 && unacceptnum == 1) {
        last = -1;
        return Next::Stop;
    }
    if ((ladder.ratio <= 0.2 && unacceptnum < 3) || unacceptnum == 1) {
        ladder.Log() << "accept more!\n";
        return Next::Stop;
    }
    drop(last, ladder.accept);
    return BareMaxStep(start, last, ladder);
}

/// Runs only before the stage above, which ends every turn from the second on.
Next FindMax(int start, int& last, Ladder& ladder) {
    ladder.findmax = true;
    ladder.Log() << "change to find a max \n";
    const int old_last = last;
    if (!PickMax(start, last, ladder)) return Next::Stop;
    // An unchanged pick keeps its old verdict and meets the stage above in the next turn.
    if (last != old_last) TestMax(start, last, ladder);
    return Next::Turn;
}

// ---- the ladder ----------------------------------------------------------------------------------------------------

Next ClimbTurn(int start, int& last, Ladder& ladder) {
    if (!ladder.cycle) return Next::Accept;
    if (ladder.ratio > 0.9) return DropNode(start, last, ladder);
    ladder.Log() << "try to drop reads, with accept number:  " << ladder.accept.size() << '\n';
    const Next next = FullMatchClean(start, last, ladder);
    if (next != Next::Stage) return next;
    return start != 0
               ? RunStages({LongReads, EdgeTest, InnerEdgeClean, InnerPosition, InnerMaxStep}, start, last, ladder)
               : RunStages({BeforeEdgeClean, ShortReads, CoverRatio, AcceptMore, FindMax}, start, last, ladder);
}

int FinalAcceptance(int start, int last, Ladder& ladder) {
    if (last == -1) return -1;
    const int unacceptnum = ladder.unacceptnum();
    const bool stands = (ladder.ratio <= 0.22 && unacceptnum < 3) || (unacceptnum < 2 && ladder.Size() > 2) ||
                        (ladder.ratio <= 0.1 && unacceptnum < 5);
    if (!stands) return -1;
    if (ladder.Size() <= 2 || static_cast<int>(ladder.reads[last].seq.size()) >= ReadLen) return last;
    const int newlast = GetLonger(last, ladder.accept, ladder.reads);
    ladder.Log() << "try long: " << newlast << '\n';
    if (newlast == -1) return last;
    TestMax(start, newlast, ladder);
    return ladder.cycle ? last : newlast;
}

}  // namespace

int get_last(int start, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
             bool& changenode, bool& clean, int threadId) {
    Ladder ladder{accept, reads, matrix, jum, changenode, clean, threadId};
    int last = -1;
    Next next = Entry(start, last, ladder);
    while (next == Next::Turn) next = ClimbTurn(start, last, ladder);
    return next == Next::Accept ? FinalAcceptance(start, last, ladder) : last;
}

}  // namespace lintara
