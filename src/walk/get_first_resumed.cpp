// get_first of a walk that is resumed after a failed join: the next read to the left that does not repeat a given
// sequence. It is the get_first of get_first.cpp with fewer measures: no short-overlap check, one position loop at the
// entry, a re-pick without a min step, and no edge test.
#include "run/settings.h"
#include "walk/candidates.h"
#include "walk/drop.h"
#include "walk/end_select.h"
#include "walk/get_first_steps.h"

namespace lintara {

namespace {

using namespace end_select;

/// Ends the turn in every case.
Next RePick(int end, int& first, Ladder& ladder) {
    const Next next = RecheckPick(end, first, ladder, Recheck::PassOnly);
    return next == Next::Stage ? BareMaxStep(end, first, ladder) : next;
}

// ---- entry ---------------------------------------------------------------------------------------------------------

/// A new pick among those that match end. A single one comes back at once, with no look at its position.
Next PickMatching(int end, int& first, Ladder& ladder) {
    if (ladder.Size() == ladder.init) return Next::Stage;
    // changenode stays as the comparison has set it, unlike in the other get_first.
    if (ladder.init > 4 && ladder.Size() < 2) {
        first = -1;
        return Next::Stop;
    }
    return PickMin(end, first, ladder) ? Next::Stage : Next::Stop;
}

/// Drops picks until one stands in its position, whatever the others say.
Next PositionPick(int end, int& first, Ladder& ladder) {
    while (!InPosition(end, first, ladder)) {
        if (ladder.Size() > 2) {
            drop(first, ladder.accept);
            if (!PickMin(end, first, ladder)) return Next::Stop;
            continue;
        }
        if (ladder.Size() == 2) {
            drop(first, ladder.accept);
            first = ladder.accept[0];
            if (InPosition(end, first, ladder)) break;
        }
        ladder.Log() << "No read passed position check!\n";
        first = -1;
        return Next::Stop;
    }
    ladder.Log() << "Pass position check!\n";
    TestMin(end, first, ladder);
    return Next::Turn;
}

Next Entry(int end, int& first, Ladder& ladder) {
    if (!PickMin(end, first, ladder)) return Next::Stop;
    Next next = EasyCase(end, first, ladder);
    if (next != Next::Stage) return next;
    MatchEnd(end, ladder);
    next = PickMatching(end, first, ladder);
    return next == Next::Stage ? PositionPick(end, first, ladder) : next;
}

// ---- stages for every end ------------------------------------------------------------------------------------------

Next FullMatchClean(int end, int& first, Ladder& ladder) {
    if (ladder.fullcleandrop) return Next::Stage;
    return PartnerClean(ladder) ? RePick(end, first, ladder) : Next::Stage;
}

/// Removes the candidates that repeat drop_seq, and with them their perfect partners.
Next RepeatClean(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    ladder.seqdrop = true;
    const bool dropped = DropEdgeRead(drop_seq, end, ladder.accept, ladder.reads, ladder.matrix, ladder.changenode);
    ladder.Log() << "After seq clean: " << ladder.accept.size() << '\n';
    return dropped ? RePick(end, first, ladder) : Next::Stage;
}

// ---- stages for an end inside the gap ------------------------------------------------------------------------------

/// In every step mode, unlike the other get_first.
Next LongReads(int end, int& first, Ladder& ladder) {
    if (ladder.lengthdrop) return Next::Stage;
    ladder.lengthdrop = true;
    const bool dropped = DropLongRead(ladder.accept, ladder.reads, ladder.matrix);
    ladder.Log() << "After long read clean: " << ladder.accept.size() << '\n';
    return dropped ? RePick(end, first, ladder) : Next::Stage;
}

Next InnerEdgeClean(int end, int& first, Ladder& ladder) {
    if (ladder.jum == 0 || ladder.edgedrop) return Next::Stage;
    ladder.edgedrop = true;
    const bool dropped = FarEdgeClean(end, ladder.accept, ladder);
    ladder.Log() << "After edge clean: " << ladder.accept.size() << '\n';
    if (ladder.accept.empty()) {
        first = -1;
        return Next::Stop;
    }
    return dropped ? RePick(end, first, ladder) : Next::Stage;
}

Next InnerRepeatClean(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    if (ladder.jum == 0 || ladder.seqdrop) return Next::Stage;
    return RepeatClean(end, first, ladder, drop_seq);
}

/// With a re-pick of its own, the one here that has a min step; it makes no new pick.
Next InnerPosition(int end, int& first, Ladder& ladder) {
    if (ladder.posdrop || !PositionClean(end, ladder)) return Next::Accept;
    const Next next = RecheckPick(end, first, ladder, Recheck::PassOrRatio);
    if (next != Next::Stage) return next;
    ladder.Log() << "try min!\n";
    TestMin(end, first, ladder);
    // A ratio above 0.9 does not end the turn here, unlike in the other get_first.
    if (!ladder.cycle) return Next::Turn;
    ladder.Log() << "try max!\n";
    return BareMaxStep(end, first, ladder);
}

Next InnerStages(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    Next next = LongReads(end, first, ladder);
    if (next == Next::Stage) next = InnerEdgeClean(end, first, ladder);
    if (next == Next::Stage) next = InnerRepeatClean(end, first, ladder, drop_seq);
    return next == Next::Stage ? InnerPosition(end, first, ladder) : next;
}

// ---- stages for an end at the after edge ---------------------------------------------------------------------------

/// In every step mode, unlike inside the gap.
Next AfterRepeatClean(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    return ladder.seqdrop ? Next::Stage : RepeatClean(end, first, ladder, drop_seq);
}

/// Accepts a pick that few are against, or goes on to the next longest step.
Next AcceptMore(int end, int& first, Ladder& ladder) {
    if (!ladder.findmax) return Next::Stage;
    if (ladder.more) return Next::Accept;
    ladder.more = true;
    const int unacceptnum = ladder.unacceptnum();
    if (ladder.Size() == 2 && unacceptnum == 1) {
        first = -1;
        return Next::Stop;
    }
    if ((ladder.ratio <= 0.2 && unacceptnum < 3) || unacceptnum == 1) {
        ladder.Log() << "accept more!\n";
        return Next::Stop;
    }
    drop(first, ladder.accept);
    if (!PickMin(end, first, ladder)) return Next::Stop;
    TestMin(end, first, ladder);
    return Next::Turn;
}

/// Takes the longest step in spite of the words, and tests it as a shortest step.
Next FindMax(int end, int& first, Ladder& ladder) {
    ladder.findmax = true;
    ladder.Log() << "change to find a max \n";
    if (!PickMin(end, first, ladder)) return Next::Stop;
    TestMax(end, first, ladder);
    return Next::Turn;
}

Next EdgeStages(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    Next next = AfterRepeatClean(end, first, ladder, drop_seq);
    if (next == Next::Stage) next = AcceptMore(end, first, ladder);
    return next == Next::Stage ? FindMax(end, first, ladder) : next;
}

// ---- the ladder ----------------------------------------------------------------------------------------------------

Next ClimbTurn(int end, int& first, Ladder& ladder, const std::string& drop_seq) {
    if (!ladder.cycle) return Next::Accept;
    if (ladder.ratio > 0.9) return DropNode(end, first, ladder);
    ladder.Log() << "try to drop reads, with accept number:  " << ladder.accept.size() << '\n';
    const Next next = FullMatchClean(end, first, ladder);
    if (next != Next::Stage) return next;
    return ladder.AtAfterEdge(end) ? EdgeStages(end, first, ladder, drop_seq)
                                   : InnerStages(end, first, ladder, drop_seq);
}

int FinalAcceptance(int end, int first, Ladder& ladder) {
    if (!Stands(first, ladder)) return -1;
    const int newfirst = LongerPick(end, first, ladder);
    if (newfirst == -1) return first;
    ladder.Log() << "Using long!\n";
    return newfirst;
}

}  // namespace

int get_first(int end, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
              bool& changenode, const std::string& drop_seq, bool /*cycled*/, bool& clean, int threadId) {
    Ladder ladder{accept, reads, matrix, jum, changenode, clean, threadId};
    int first = -1;
    Next next = Entry(end, first, ladder);
    while (next == Next::Turn) next = ClimbTurn(end, first, ladder, drop_seq);
    return next == Next::Accept ? FinalAcceptance(end, first, ladder) : first;
}

}  // namespace lintara
