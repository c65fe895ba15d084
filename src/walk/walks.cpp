#include "walk/walks.h"

#include "kmer/open_matrix.h"
#include "walk/candidates.h"
#include "walk/end_select.h"
#include "walk/position_check.h"
#include "walk/walk_state.h"

namespace lintara {

namespace {

// ---- to the right -------------------------------------------------------------------------------------------------

int SelectLast(WalkState& w, int start) {
    const int chosen = get_last(start, w.accept, w.reads, w.matrix, w.jum, w.changenode, w.FullCleanZero, w.threadId);
    w.TurnBackJum();
    return chosen;
}

/// Whether nearly all candidates reach the far edge, so that it may be taken at once.
bool TakesLastRead(const WalkState& w) {
    const int last = w.num - 1;
    int lastsupport = 0;
    for (const int a : w.accept) {
        if (Cell(w.matrix, a, last) != 0) ++lastsupport;
    }
    if (!(lastsupport > 0.9 * w.candidates())) return false;
    w.log() << "Accept the last!\t" << lastsupport << "\t" << w.candidates() << "\n";
    return true;
}

/// Takes back steps as long as the selector asks for it, and chooses anew.
void ReplaceStepsForward(WalkState& w, int& start) {
    const int nowstart = w.path.back();
    while (!SHORTOVERLAP[w.threadId] && w.changenode && w.size() > 1 && w.candidates() != 2 && w.gapsize > ReadLen) {
        w.log() << "cycle node!\n";
        w.changenode = false;
        w.path.pop_back();
        const int prev = w.path.back();
        ClearCell(w.matrix, prev, nowstart);
        w.CollectRight(prev);
        if (w.candidates() == 1) {
            start = w.accept[0];
            w.accept.clear();
            break;
        }
        if (w.accept.empty()) {
            w.noreadbreak = true;
            start = -1;
            break;
        }
        w.CleanRightOf(prev);
        start = SelectLast(w, prev);
        if (start == -1) break;
        if (w.changenode) w.noreadbreak = false;
    }
}

WalkStep StepForwardAmongSeveral(WalkState& w, int& start) {
    w.changenode = false;
    start = SelectLast(w, start);
    ReplaceStepsForward(w, start);
    if (w.changenode) {
        w.noreadbreak = false;
        return WalkStep::kFinish;
    }
    if (start == -1 && w.candidates() < 3) {
        w.noreadbreak = true;
        return WalkStep::kFinish;
    }
    if (w.FullCleanZero) w.noreadbreak = false;
    w.LateAcceptSize = w.candidates();
    if (w.LateAcceptSize > 1) w.OneAccept = false;
    if (start == -1) return WalkStep::kFinish;
    ++w.count;
    return WalkStep::kGoOn;
}

/// A dead end: tries another read in the place of the last one.
WalkStep StepForwardFromDeadEnd(WalkState& w, int& start) {
    if (!(w.LateAcceptSize > 1 && (w.jum != 0 || w.size() == 2)) || w.size() < 2) return WalkStep::kNormalEnd;
    w.log() << "change other node!\n";
    const int nowtest = w.path[w.path.size() - 2];
    const int oldtest = w.path.back();
    w.CollectRight(nowtest, oldtest);
    if (w.candidates() == 1) {
        start = w.accept[0];
    } else {
        w.changenode = false;
        start = SelectLast(w, nowtest);
        w.log() << "Get a new start " << start << "\n";
    }
    if (start == -1) return WalkStep::kNormalEnd;
    w.CollectRight(start);
    if (w.candidates() > 9 && w.gapsize > ReadLen) PosCleanAccept(start, w.accept, w.reads, w.matrix, w.threadId);
    w.log() << "new start accept size: " << w.candidates() << "\n";
    if (w.accept.empty()) return WalkStep::kNormalEnd;
    if (w.candidates() == 1 && w.accept[0] == oldtest) {
        w.log() << "new start is meaningless, not change the node\n";
        w.noreadbreak = true;
        return WalkStep::kFinish;
    }
    w.path.pop_back();
    ClearCell(w.matrix, nowtest, oldtest);
    return WalkStep::kGoOn;
}

/// Two steps with one candidate each in a row end the walk. The step doesn't count; that of the twin does, on purpose.
WalkStep StepForwardToTheOne(WalkState& w, int& start) {
    w.LateAcceptSize = 1;
    if (w.OneAccept || !ForwardPosCheck(start, w.accept[0], w.reads, w.matrix)) return WalkStep::kFinish;
    w.OneAccept = true;
    start = w.accept[0];
    return WalkStep::kGoOn;
}

/// One turn of the walk to the right.
///
/// @param start  in: the read to add; out: the next one
WalkStep TurnForward(WalkState& w, int& start, bool& cycled, bool& ER) {
    const int last = w.num - 1;
    if (Vecfind(w.path, start)) {
        w.log() << "start repeat in the nodes!\t" << start << "\n";
        cycled = true;
        return WalkStep::kFinish;
    }
    // The first step fixes positions to the before edge: a read that overlaps it by n bases starts at -n.
    if (w.size() == 1 && start != last) w.reads[start].pos = -Cell(w.matrix, w.path[0], start);
    w.path.push_back(start);
    if (start == last) return WalkStep::kFinish;
    w.ExpectFarEdge(w.size() >= w.stopjum);
    w.CollectRight(start);
    if (Cell(w.matrix, start, last) >= Min_overlap) {
        w.log() << "Meet last read!\n";
        if (TakesLastRead(w)) {
            w.path.push_back(last);
            return WalkStep::kFinish;
        }
    }
    if (w.accept.empty() && w.size() == 1) {
        w.log() << "Before ERgap!\n";
        ER = true;
    }
    w.CleanRightOf(start);
    if (w.candidates() > 4 && w.gapsize > ReadLen) PosCleanAccept(start, w.accept, w.reads, w.matrix, w.threadId);
    switch (w.candidates()) {
        case 0:
            return StepForwardFromDeadEnd(w, start);
        case 1:
            return StepForwardToTheOne(w, start);
        default:
            return StepForwardAmongSeveral(w, start);
    }
}

// ---- to the left --------------------------------------------------------------------------------------------------

int SelectFirst(WalkState& w, int end) {
    const int chosen = get_first(end, w.accept, w.reads, w.matrix, w.jum, w.changenode, w.FullCleanZero, w.threadId);
    w.TurnBackJum();
    return chosen;
}

/// Position clean of the candidates left of a read, where there are many.
void CleanPositions(WalkState& w, int end) {
    if (w.candidates() > 4 && w.gapsize > ReadLen) PosCleanAccept(w.accept, end, w.reads, w.matrix, w.threadId);
}

/// Differs from the forward twin on purpose: candidates are cleaned ahead of the choice, a single one must pass the
/// position check, and -1 does not leave the loop.
void ReplaceStepsReward(WalkState& w, int& end) {
    const int nowend = w.path.back();
    while (!SHORTOVERLAP[w.threadId] && w.changenode && w.size() > 1 && w.candidates() != 2 && w.gapsize > ReadLen) {
        w.log() << "cycle node!\n";
        w.changenode = false;
        w.path.pop_back();
        const int prev = w.path.back();
        ClearCell(w.matrix, nowend, prev);
        w.CollectLeft(prev);
        w.CleanLeftOf(prev);
        if (w.candidates() == 1) {
            // The candidate stands in the place of the read walked from, the other way round from every other call.
            if (RewardPosCheck(w.accept[0], prev, w.reads, w.matrix)) {
                end = w.accept[0];
            } else {
                end = -1;
                w.noreadbreak = false;
                w.changenode = true;
            }
        } else if (w.accept.empty()) {
            end = -1;
            w.noreadbreak = true;
        } else {
            end = SelectFirst(w, prev);
            if (w.changenode) w.noreadbreak = false;
        }
    }
}

WalkStep StepRewardAmongSeveral(WalkState& w, int& end) {
    // Two candidates at the edge are no choice to be trusted; the forward walk has no such rule.
    if (w.candidates() == 2 && w.size() == 1) {
        if (!w.FullCleanZero) w.noreadbreak = true;
        return WalkStep::kFinish;
    }
    w.changenode = false;
    end = SelectFirst(w, end);
    w.log() << "get end " << end << "\n";
    ReplaceStepsReward(w, end);
    if (w.changenode) {
        w.noreadbreak = false;
        return WalkStep::kFinish;
    }
    if (end == -1 && w.candidates() < 3) {
        w.noreadbreak = true;
        return WalkStep::kFinish;
    }
    if (w.FullCleanZero) w.noreadbreak = false;
    w.LateAcceptSize = w.candidates();
    if (w.LateAcceptSize > 1) w.OneAccept = false;
    if (end == -1) return WalkStep::kFinish;
    ++w.count;
    return WalkStep::kGoOn;
}

/// Differs from the forward twin on purpose: a longer reach of the walk allows it, positions are cleaned from five
/// candidates on, ahead of the choice too, and the log tells more.
WalkStep StepRewardFromDeadEnd(WalkState& w, int& end) {
    if (!(w.LateAcceptSize > 1 && (w.jum != 0 || w.size() < 5)) || w.size() < 2) return WalkStep::kNormalEnd;
    const int nowtest = w.path[w.path.size() - 2];
    const int oldtest = w.path.back();
    w.log() << "change other node!\t" << oldtest << "\t" << nowtest << "\n";
    w.CollectLeft(nowtest, oldtest);
    CleanPositions(w, nowtest);
    if (w.candidates() == 1) {
        end = w.accept[0];
    } else {
        if (w.candidates() > 1) w.log() << "accept size: " << w.candidates() << "\n";
        w.changenode = false;
        end = SelectFirst(w, nowtest);
        w.log() << "Get a new end: " << end << "\n";
    }
    if (end == -1) return WalkStep::kNormalEnd;
    w.CollectLeft(end);
    CleanPositions(w, end);
    w.log() << "new end accept size: " << w.candidates() << "\n";
    if (w.accept.empty()) return WalkStep::kNormalEnd;
    if (w.candidates() == 1 && w.accept[0] == oldtest) {
        w.log() << "new end is meaningless, not change the node\n";
        w.noreadbreak = true;
        return WalkStep::kFinish;
    }
    w.path.pop_back();
    w.log() << "change the node!\n";
    ClearCell(w.matrix, oldtest, nowtest);
    return WalkStep::kGoOn;
}

/// One candidate behind a choice among many: tries the other branches of the step before. The forward walk does not.
///
/// @param end  the last read of the path; out: what was tried in its place, -1 if nothing was
/// @return whether the last read was taken back and the walk goes on from end
bool TriesOtherBranch(WalkState& w, int& end) {
    if (!(w.LateAcceptSize > 3 && (w.jum != 0 || w.size() == 2)) || w.size() < 2) return false;
    w.log() << "change other node!\n";
    const int nowtest = w.path[w.path.size() - 2];
    const int oldtest = w.path.back();
    w.CollectLeft(nowtest, oldtest);
    CleanPositions(w, end);
    if (w.candidates() > 2) {
        w.changenode = false;
        w.log() << "accept size: " << w.candidates() << " for id: " << nowtest << "\n";
        end = SelectFirst(w, nowtest);
        w.log() << "Get a new end " << end << "\n";
    } else {
        end = -1;
    }
    if (w.accept.empty() || end == -1) return false;
    w.CollectLeft(end);
    CleanPositions(w, end);
    w.log() << "new end accept size: " << w.candidates() << "\n";
    if (w.candidates() > 1) {
        w.path.pop_back();
        w.log() << "change the node!\n";
        ClearCell(w.matrix, oldtest, nowtest);
        return true;
    }
    w.log() << "change node is useless, not change!\n";
    return false;
}

WalkStep StepRewardToTheOne(WalkState& w, int& end) {
    const int nowend = w.accept[0];
    if (TriesOtherBranch(w, end)) return WalkStep::kGoOn;
    w.LateAcceptSize = 1;
    // The check takes what the other branch left in end.
    if (w.OneAccept || (end != -1 && !RewardPosCheck(end, nowend, w.reads, w.matrix))) return WalkStep::kFinish;
    w.OneAccept = true;
    end = nowend;
    ++w.count;
    return WalkStep::kGoOn;
}

/// One turn of the walk to the left. Differs from the forward twin on purpose: no position is rewritten, the far edge
/// gets no test of its own, and candidates that fall to the position clean end the walk.
WalkStep TurnReward(WalkState& w, int& end, bool& ER) {
    if (Vecfind(w.path, end)) {
        w.log() << "end repeat exists in the nodes!\t" << end << "\n";
        return WalkStep::kFinish;
    }
    w.path.push_back(end);
    w.ExpectFarEdge(w.size() >= w.stopjum);
    if (end == 0) return WalkStep::kFinish;
    w.CollectLeft(end);
    if (w.accept.empty() && w.size() == 1) {
        w.log() << "After ER!\n";
        ER = true;
    }
    w.CleanLeftOf(end);
    const bool had_candidates = !w.accept.empty();
    CleanPositions(w, end);
    if (had_candidates && w.accept.empty()) {
        w.log() << "Position filter all!\n";
        return WalkStep::kFinish;
    }
    switch (w.candidates()) {
        case 0:
            return StepRewardFromDeadEnd(w, end);
        case 1:
            return StepRewardToTheOne(w, end);
        default:
            return StepRewardAmongSeveral(w, end);
    }
}

// ---- to the left, resumed -----------------------------------------------------------------------------------------

/// What the resumed walk hands on to its selector.
struct Barred {
    const std::string& drop_seq;
    bool cycled;
};

int SelectFirst(WalkState& w, int end, const Barred& barred) {
    return get_first(end, w.accept, w.reads, w.matrix, w.jum, w.changenode, barred.drop_seq, barred.cycled,
                     w.FullCleanZero, w.threadId);
}

/// The resumed walk cleans positions later than the first one.
void CleanPositionsResumed(WalkState& w, int end) {
    if (w.candidates() > 9 && 2 * ReadLen < w.gapsize) PosCleanAccept(w.accept, end, w.reads, w.matrix, w.threadId);
}

/// Differs from the first walk on purpose: neither the short overlap nor the number of candidates or the gap's size
/// holds it back, and a single candidate is taken as it is.
WalkStep StepResumedAmongSeveral(WalkState& w, int& end, const Barred& barred) {
    const int nowend = end;
    w.changenode = false;
    end = SelectFirst(w, end, barred);
    w.log() << "get end " << end << "\n";
    while (w.changenode && w.size() > 1) {
        w.log() << "cycle node!\n";
        w.changenode = false;
        w.path.pop_back();
        const int prev = w.path.back();
        ClearCell(w.matrix, nowend, prev);
        w.CollectLeft(prev);
        w.CleanLeftOf(prev);
        if (w.candidates() == 1) {
            end = w.accept[0];
        } else if (w.accept.empty()) {
            end = -1;
        } else {
            end = SelectFirst(w, prev, barred);
        }
    }
    w.LateAcceptSize = w.candidates();
    if (w.LateAcceptSize > 1) w.OneAccept = false;
    return end == -1 ? WalkStep::kFinish : WalkStep::kGoOn;
}

WalkStep StepResumedFromDeadEnd(WalkState& w, int& end, const Barred& barred) {
    if (w.LateAcceptSize < 2 || w.jum == 0 || w.size() < 2) return WalkStep::kFinish;
    w.log() << "change other node!\n";
    const int nowtest = w.path[w.path.size() - 2];
    const int oldtest = w.path.back();
    w.CollectLeft(nowtest, oldtest);
    CleanPositionsResumed(w, nowtest);
    if (w.candidates() == 1) {
        end = w.accept[0];
    } else {
        w.changenode = false;
        end = SelectFirst(w, nowtest, barred);
        w.TurnBackJum();
    }
    w.log() << "Get a new end " << end << "\n";
    if (end == -1) return WalkStep::kFinish;
    w.CollectLeft(end);
    if (w.candidates() > 9 && w.gapsize > ReadLen) PosCleanAccept(w.accept, end, w.reads, w.matrix, w.threadId);
    w.log() << "new end accept size: " << w.candidates() << "\n";
    if (w.candidates() <= 1) {
        w.log() << "change node is useless, not change!\n";
        return WalkStep::kFinish;
    }
    w.path.pop_back();
    ClearCell(w.matrix, oldtest, nowtest);
    w.log() << "change the node!\n";
    return WalkStep::kGoOn;
}

WalkStep StepResumedToTheOne(WalkState& w, int& end) {
    w.LateAcceptSize = 1;
    if (w.OneAccept || !RewardPosCheck(end, w.accept[0], w.reads, w.matrix)) return WalkStep::kFinish;
    w.OneAccept = true;
    end = w.accept[0];
    return WalkStep::kGoOn;
}

WalkStep TurnResumed(WalkState& w, int& end, const Barred& barred) {
    if (Vecfind(w.path, end)) {
        w.log() << "end repeat exists in the nodes!\t" << end << "\n";
        return WalkStep::kFinish;
    }
    w.path.push_back(end);
    if (end == 0) return WalkStep::kFinish;
    w.ExpectFarEdge(w.size() > w.stopjum);
    w.CollectLeft(end);
    w.CleanLeftOf(end);
    const bool had_candidates = !w.accept.empty();
    CleanPositionsResumed(w, end);
    if (had_candidates && w.accept.empty()) {
        w.log() << "Position filter all!\n";
        return WalkStep::kFinish;
    }
    switch (w.candidates()) {
        case 0:
            return StepResumedFromDeadEnd(w, end, barred);
        case 1:
            return StepResumedToTheOne(w, end);
        default:
            return StepResumedAmongSeveral(w, end, barred);
    }
}

}  // namespace

bool forward(std::vector<Read>& reads, std::vector<int>& starts, std::uint8_t**& matrix, std::uint16_t num, int pos,
             int /*type*/, bool& cycled, bool& ER, int threadId) {
    WalkState w{reads, starts, matrix, num, threadId};
    cycled = false;
    SHORTOVERLAP[threadId] = false;
    w.log() << "start forward assembly...\n";
    WalkStep step = WalkStep::kGoOn;
    for (int start = pos; step == WalkStep::kGoOn && w.count < num;) step = TurnForward(w, start, cycled, ER);
    if (step == WalkStep::kNormalEnd && !w.FullCleanZero) w.noreadbreak = true;
    if (Cell(matrix, starts.back(), num - 1) > Min_overlap && w.size() > w.stopjum) starts.push_back(num - 1);
    w.log() << "Forward from " << pos << " start vector get finished, with size " << w.size() << "\n";
    return w.noreadbreak;
}

bool reward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, std::uint16_t num, int pos,
            int /*type*/, bool& ER, int threadId) {
    WalkState w{reads, ends, matrix, num, threadId};
    SHORTOVERLAP[threadId] = false;
    w.log() << "start reward assembly...\t" << num << "\n";
    WalkStep step = WalkStep::kGoOn;
    for (int end = pos; step == WalkStep::kGoOn && w.count < num;) step = TurnReward(w, end, ER);
    if (step == WalkStep::kNormalEnd && !w.FullCleanZero) w.noreadbreak = true;
    if (w.FullCleanZero) w.noreadbreak = false;
    // Only a walk that ran out of reads may close with the far edge here; the forward twin does not ask.
    if (Cell(matrix, 0, ends.back()) > Min_overlap && w.size() > w.stopjum && w.noreadbreak) ends.push_back(0);
    w.log() << "Reward from " << pos << " end vector get finished, with size " << w.size()
            << "no read: " << w.noreadbreak << "\n";
    return w.noreadbreak;
}

void reward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, std::uint16_t num, int pos,
            int /*type*/, const std::string& drop_seq, bool cycled, int threadId) {
    WalkState w{reads, ends, matrix, num, threadId};
    const Barred barred{drop_seq, cycled};
    if (w.stopjum > std::numeric_limits<int>::min()) --w.stopjum;
    w.log() << "start continued reward assembly...\t" << num << "\n";
    WalkStep step = WalkStep::kGoOn;
    for (int end = pos; step == WalkStep::kGoOn && w.size() < num;) step = TurnResumed(w, end, barred);
    // Here neither the length of the path nor the reason of its end is asked for.
    if (!ends.empty() && Cell(matrix, 0, ends.back()) > Min_overlap) ends.push_back(0);
    w.log() << "Reward from " << pos << " end vector get finished, with size " << w.size() << "\n";
}

}  // namespace lintara
