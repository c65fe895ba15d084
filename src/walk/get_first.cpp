// get_first of a walk from the after edge: the next read to the left. It is the twin of get_last.cpp, with the same
// functions in the same order; comments mark where the two differ on purpose. What it shares with the get_first of a
// resumed walk stands in get_first_steps.cpp.
#include "kmer/open_matrix.h"
#include "run/settings.h"
#include "walk/candidates.h"
#include "walk/drop.h"
#include "walk/end_select.h"
#include "walk/get_first_steps.h"

namespace lintara {

namespace {

using namespace end_select;

// ---- the re-pick: what follows when a stage has thinned the candidates ---------------------------------------------

/// With the log line in front of the pick; the forward walk writes it only when there is a choice left.
Next MinStep(int end, int& first, Ladder& ladder) {
    ladder.Log() << "try min!\n";
    if (!PickMin(end, first, ladder)) return Next::Stop;
    TestMin(end, first, ladder);
    return !ladder.cycle || ladder.ratio > 0.9 ? Next::Turn : Next::Stage;
}

/// The min step of the stages inside the gap. It makes no new pick, unlike the forward walk: the pick that stands is
/// tested again, and it may have left the candidates.
Next MinStepOnPick(int end, int first, Ladder& ladder) {
    ladder.Log() << "try min!\n";
    TestMin(end, first, ladder);
    return !ladder.cycle || ladder.ratio > 0.9 ? Next::Turn : Next::Stage;
}

/// Never reports itself in jum, unlike the forward walk.
Next MaxStep(int end, int& first, Ladder& ladder) {
    ladder.Log() << "try max!\n";
    return BareMaxStep(end, first, ladder);
}

/// Ends the turn in every case.
Next RePick(int end, int& first, Ladder& ladder, Recheck rule = Recheck::PassOrRatio) {
    Next next = RecheckPick(end, first, ladder, rule);
    if (next == Next::Stage) next = MinStep(end, first, ladder);
    if (next == Next::Stage) next = MaxStep(end, first, ladder);
    return next;
}

/// The re-pick of the stages inside the gap.
Next InnerRePick(int end, int& first, Ladder& ladder) {
    Next next = RecheckPick(end, first, ladder, Recheck::PassOrRatio);
    if (next == Next::Stage) next = MinStepOnPick(end, first, ladder);
    if (next == Next::Stage) next = MaxStep(end, first, ladder);
    return next;
}

// ---- entry ---------------------------------------------------------------------------------------------------------

void ShortOverCheck(int end, Ladder& ladder) {
    ladder.Log() << "short over check!\n";
    SHORTOVERLAP[ladder.threadId] = AcceptShortOverCheck(ladder.accept, end, ladder.matrix);
    if (SHORTOVERLAP[ladder.threadId]) {
        ladder.Log() << "Is short over! \n"
                     << "After short over drop: " << ladder.accept.size() << '\n';
    } else {
        ladder.Log() << "Not short over! " << ladder.accept.size() << '\n';
    }
}

/// A new pick among those that match end, unless so few are left that the call ends here.
Next PickMatching(int end, int& first, Ladder& ladder) {
    if (ladder.Size() == ladder.init) return Next::Stage;
    // Exactly one: with none left the pick below ends the call, and changenode stays as the comparison has set it.
    if (ladder.init > 4 && ladder.Size() == 1) {
        ladder.changenode = false;
        first = -1;
        return Next::Stop;
    }
    if (ladder.Size() == 1) {
        first = ladder.accept[0];
        if (!InPosition(end, first, ladder)) first = -1;
        return Next::Stop;
    }
    return PickMin(end, first, ladder) ? Next::Stage : Next::Stop;
}

/// Drops picks that all agree with but that stand in a wrong position, as long as more than two are left.
Next PositionPick(int end, int& first, Ladder& ladder) {
    TestMin(end, first, ladder);
    while (!ladder.cycle && ladder.Size() > 2 && !InPosition(end, first, ladder)) {
        ladder.Log() << "position drop read: " << first << '\n';
        drop(first, ladder.accept);
        if (!PickMin(end, first, ladder)) return Next::Stop;
        TestMin(end, first, ladder);
    }
    return Next::Stage;
}

/// The last two: when one is out, does the other stand in its position? The other then ends the call, unlike in the
/// forward walk, where it goes on into the ladder.
Next PairPick(int end, int& first, Ladder& ladder) {
    if (ladder.Size() != 2 || (!ladder.cycle && InPosition(end, first, ladder))) {
        ladder.Log() << "position check passed!\t" << ladder.cycle << '\n';
        return Next::Turn;
    }
    ladder.Log() << "fail pass position check!\n";
    drop(first, ladder.accept);
    first = ladder.accept[0];
    TestMin(end, first, ladder);
    if (ladder.cycle) {
        ladder.Log() << "accept the last read in accept!\n";
        return Next::Stop;
    }
    if (!InPosition(end, first, ladder)) {
        ladder.changenode = true;
        ladder.Log() << "Do not accept the last one: " << first << '\n';
        first = -1;
        return Next::Stop;
    }
    ladder.Log() << "accept the last read in accept for pass position check!\n";
    return Next::Stop;
}

Next Entry(int end, int& first, Ladder& ladder) {
    ShortOverCheck(end, ladder);
    if (!PickMin(end, first, ladder)) return Next::Stop;
    Next next = EasyCase(end, first, ladder);
    if (next != Next::Stage) return next;
    MatchEnd(end, ladder);
    next = PickMatching(end, first, ladder);
    if (next == Next::Stage) next = PositionPick(end, first, ladder);
    if (next == Next::Stage) next = PairPick(end, first, ladder);
    return next;
}

// ---- stages for every end ------------------------------------------------------------------------------------------

Next FullMatchClean(int end, int& first, Ladder& ladder) {
    if (ladder.fullcleandrop) return Next::Stage;
    return PartnerClean(ladder) ? RePick(end, first, ladder, Recheck::Position) : Next::Stage;
}

// ---- stages for an end inside the gap ------------------------------------------------------------------------------

Next LongReads(int end, int& first, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.lengthdrop) return Next::Stage;
    ladder.lengthdrop = true;
    const bool dropped = DropLongRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After long read clean: " << ladder.accept.size() << '\n';
    return dropped ? InnerRePick(end, first, ladder) : Next::Stage;
}

/// The candidates at the before edge leave. A full re-pick follows, not only the shortest step as in the forward walk.
Next EdgeNotMet(int end, int& first, Ladder& ladder) {
    ladder.edgedrop = true;
    ladder.Log() << "At least three read not accept the edge arrive, so drop edge\n";
    FarEdgeClean(end, ladder.accept, ladder);
    ladder.Log() << "After edge clean: " << ladder.accept.size() << '\n';
    return InnerRePick(end, first, ladder);
}

/// Leaves jum alone, unlike the forward walk.
Next EdgeMet(int end, int& first, Ladder& ladder) {
    ladder.Log() << "pass the test, and few read left, accept the edge!\t\n";
    ladder.lengthdrop = true;
    const bool dropped = DropShortRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After short read clean: " << ladder.accept.size() << '\n';
    return dropped ? InnerRePick(end, first, ladder) : Next::Stage;
}

/// Is the before edge in reach? Asked on a copy of the candidates, which themselves stay as they are. The forward walk
/// also knows an undecided case, which goes by position.
Next EdgeTest(int end, int& first, Ladder& ladder) {
    if (ladder.lengthdrop) return Next::Stage;
    ladder.Log() << "drop edge test!\n";
    std::vector<int> tmpvec = ladder.accept;
    const bool dropped = FarEdgeClean(end, tmpvec, ladder);
    // More than two; the forward walk asks for more than three.
    if (dropped && tmpvec.size() > 2) return EdgeNotMet(end, first, ladder);
    if (!dropped) {
        ladder.Log() << "No edge related reads!\n";
        ladder.edgedrop = true;
        ladder.jum = 1;
        return Next::Stage;
    }
    return EdgeMet(end, first, ladder);
}

/// The far-edge clean of both kinds of end, up to the re-pick. Next::Turn: candidates went and a re-pick is due.
Next EdgeClean(int end, int& first, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.edgedrop) return Next::Stage;
    ladder.edgedrop = true;
    const bool dropped = FarEdgeClean(end, ladder.accept, ladder);
    ladder.Log() << "After edge clean: " << ladder.accept.size() << '\n';
    if (ladder.accept.empty()) {
        first = -1;
        return Next::Stop;
    }
    return dropped ? Next::Turn : Next::Stage;
}

/// With the plain recheck; the forward walk goes on to its min step when the pick fails with nearly all against it.
Next InnerEdgeClean(int end, int& first, Ladder& ladder) {
    const Next next = EdgeClean(end, first, ladder);
    return next == Next::Turn ? InnerRePick(end, first, ladder) : next;
}

/// In mode 1 only after the position clean, and only when it changes the pick; the forward walk takes its max step in
/// place of the position clean.
Next InnerMaxStep(int end, int& first, Ladder& ladder) {
    if (ladder.jum != 1 || !ladder.posdrop) return Next::Stage;
    ladder.jum = 2;
    ladder.Log() << "drop the last and use max step: " << ladder.accept.size() << '\n';
    const int old_first = first;
    if (!PickMax(end, first, ladder)) return Next::Stop;
    if (first == old_first) return Next::Accept;
    TestMax(end, first, ladder);
    return Next::Turn;
}

/// In every step mode, unlike the forward walk.
Next InnerPosition(int end, int& first, Ladder& ladder) {
    if (ladder.posdrop) return Next::Accept;
    ladder.Log() << "position drop!\n";
    return PositionClean(end, ladder) ? InnerRePick(end, first, ladder) : Next::Accept;
}

// ---- stages for an end at the after edge ---------------------------------------------------------------------------

/// With a recheck that ends the turn on a pick that passes only, unlike the forward walk.
Next AfterEdgeClean(int end, int& first, Ladder& ladder) {
    const Next next = EdgeClean(end, first, ladder);
    return next == Next::Turn ? RePick(end, first, ladder, Recheck::PassOnly) : next;
}

/// Also measures the candidates by how much of them end covers when the max step has failed with some in favour: the
/// opposite of the forward walk, and without its test for a pick that all are against.
Next CoverStep(int end, int& first, Ladder& ladder) {
    if (!ladder.cycle || ladder.ratio > 0.9) return Next::Turn;
    ladder.ratiodrop = true;
    ladder.Log() << "Long read over ratio drop!\n";
    if (!DropRatioRead(ladder.accept, end, ladder.reads, ladder.matrix, ladder.unacceptnum())) return Next::Turn;
    return BareMaxStep(end, first, ladder);
}

Next ShortReads(int end, int& first, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.lengthdrop) return Next::Stage;
    ladder.lengthdrop = true;
    const bool dropped = DropShortRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After short read clean: " << ladder.accept.size() << '\n';
    if (!dropped) return Next::Stage;
    Next next = RecheckPick(end, first, ladder, Recheck::PassOrRatio);
    if (next == Next::Stage) next = MinStep(end, first, ladder);
    if (next != Next::Stage) return next;
    next = MaxStep(end, first, ladder);
    return next == Next::Turn ? CoverStep(end, first, ladder) : next;
}

/// With a min step before the max step, unlike the forward walk.
Next CoverRatio(int end, int& first, Ladder& ladder) {
    if (!ladder.lengthdrop || ladder.ratiodrop) return Next::Stage;
    ladder.ratiodrop = true;
    const bool dropped = DropRatioRead(ladder.accept, end, ladder.reads, ladder.matrix, ladder.unacceptnum());
    ladder.Log() << "After Long read over ratio drop!\t" << ladder.accept.size() << '\n';
    if (!dropped) return Next::Stage;
    const Next next = MinStep(end, first, ladder);
    return next == Next::Stage ? MaxStep(end, first, ladder) : next;
}

/// Accepts a pick that few are against, or goes on to the next longest step (the forward walk: the next shortest).
Next AcceptMore(int end, int& first, Ladder& ladder) {
    if (!ladder.findmax) return Next::Stage;
    if (!ladder.posdrop) {
        ladder.Log() << "position drop!\n";
        if (PositionClean(end, ladder)) return RePick(end, first, ladder);
    }
    if (ladder.more) return Next::Accept;
    ladder.more = true;
    const int unacceptnum = ladder.unacceptnum();
    if (ladder.Size() == 2 && unacceptnum == 1) {
        first = -1;
        return Next::Stop;
    }
    if ((ladder.ratio <= 0.2 && unacceptnum < 3) || (unacceptnum == 1 && ladder.Size() != 2)) {
        ladder.Log() << "accept more!\n";
        return Next::Stop;
    }
    drop(first, ladder.accept);
    if (!PickMin(end, first, ladder)) return Next::Stop;
    TestMin(end, first, ladder);
    return Next::Turn;
}

Next FindMax(int end, int& first, Ladder& ladder) {
    ladder.findmax = true;
    ladder.Log() << "change to find a max \n";
    const int old_first = first;
    if (!PickMax(end, first, ladder)) return Next::Stop;
    // The forward walk takes a new turn with an unchanged pick.
    if (first == old_first) return Next::Accept;
    TestMax(end, first, ladder);
    return Next::Turn;
}

// ---- the ladder ----------------------------------------------------------------------------------------------------

Next ClimbTurn(int end, int& first, Ladder& ladder) {
    if (!ladder.cycle) return Next::Accept;
    if (ladder.ratio > 0.9) return DropNode(end, first, ladder);
    ladder.Log() << "try to drop reads, with accept number:  " << ladder.accept.size() << '\n';
    const Next next = FullMatchClean(end, first, ladder);
    if (next != Next::Stage) return next;
    return ladder.AtAfterEdge(end)
               ? RunStages({AfterEdgeClean, ShortReads, CoverRatio, AcceptMore, FindMax}, end, first, ladder)
               : RunStages({LongReads, EdgeTest, InnerEdgeClean, InnerMaxStep, InnerPosition}, end, first, ladder);
}

int FinalAcceptance(int end, int first, Ladder& ladder) {
    if (!Stands(first, ladder)) return -1;
    const int newfirst = LongerPick(end, first, ladder);
    // The forward walk asks neither for the position nor for an overlap with the read it stands on.
    if (newfirst == -1 || !InPosition(end, newfirst, ladder) || Cell(ladder.matrix, newfirst, end) == 0) return first;
    ladder.Log() << "use long!\n";
    return newfirst;
}

}  // namespace

int get_first(int end, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
              bool& changenode, bool& clean, int threadId) {
    Ladder ladder{accept, reads, matrix, jum, changenode, clean, threadId};
    int first = -1;
    Next next = Entry(end, first, ladder);
    while (next == Next::Turn) next = ClimbTurn(end, first, ladder);
    return next == Next::Accept ? FinalAcceptance(end, first, ladder) : first;
}

}  // namespace lintara
