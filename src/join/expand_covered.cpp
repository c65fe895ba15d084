// Expansions that together cover the estimated gap should overlap. How they do, and what a surprising overlap says
// about the real gap size.
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "run/settings.h"

namespace lintara::join {

namespace {

/// The overlap of `after` with the before edge is a repeat and `before` gives no second opinion: only a read may join.
std::string AfterByRead(Expansions& e, int over) {
    e.after = From(e.after, over);
    std::string s = e.after + e.after_edge;
    if (!AfterCrossed(e, e.before_edge, s, 200)) return e.seq + getN(e.gapsize, Length(e.seq));
    e.Log() << "Have read connect before edge and after!\n";
    if (Length(s) < Length(e.after_edge)) return MinusGap(e, Length(s) - Length(e.after_edge), "after minus!\t");
    return Head(s, Length(s) - Length(e.after_edge));
}

std::string BeforeByRead(Expansions& e, int k) {
    e.before = Head(e.before, Length(e.before) - k);
    std::string s = e.before_edge + e.before;
    if (!BeforeCrossed(e, s, e.after_edge)) return e.seq + getN(e.gapsize, Length(e.seq));
    e.Log() << "Have read connect before and after edge!\n";
    if (Length(s) < Length(e.before_edge)) return MinusGap(e, Length(s) - Length(e.before_edge), "before minus!\t");
    return From(s, Length(e.before_edge));
}

/// Case A.
std::string AfterIntoBeforeEdge(Expansions& e, int over) {
    e.Log() << "The after sequence overlapped with the before edge\n";
    const int k = over - Length(e.before);
    const std::string addN = Head(e.after, k);
    e.Log() << "Check overlap: " << addN << '\t' << Length(addN) << '\n';
    e.seq = From(e.after, k);
    if (!Trusted(e, addN)) {
        e.Log() << "Fail to pass overlap check!\n";
        if (e.before.empty()) return AfterByRead(e, over);
        e.Log() << "before expand! accept the overlap!\n";
        return e.seq;
    }
    e.Log() << "Pass overlap check!\n";
    // A genuine overlap, but far too little is left for the gap.
    if (Length(addN) > 2.5 * ReadLen && Length(e.seq) < e.gapsize / 2 && e.before.empty()) {
        return Ns(e.gapsize - Length(e.seq)) + e.seq;
    }
    if (Length(e.seq) > Length(e.after_edge) && Length(e.seq) < 2 * ReadLen) {
        const std::vector<int> places = PattNum(e.after_edge, e.seq);
        if (!places.empty()) {
            e.Log() << " after edge is part of gap sequence, cut tail, and final length is " << places[0] << '\n';
            e.seq = Head(e.seq, places[0]);
        }
    }
    return e.seq;
}

/// Case B. Unlike case A the whole overlap is checked, not only its part beyond the other side, and the edge isn't
/// looked for in what is left.
std::string BeforeIntoAfterEdge(Expansions& e, int over) {
    e.Log() << "The before sequence overlapped with the after edge\n";
    const int k = over - Length(e.after);
    const std::string o = Tail(e.before, over);
    e.Log() << "Check overlap: " << o << '\t' << Length(o) << '\n';
    e.seq = Head(e.before, Length(e.before) - k);
    if (!Trusted(e, o)) {
        e.Log() << "Fail to pass overlap check!\n";
        if (e.after.empty()) return BeforeByRead(e, k);
        e.Log() << "After expand! accept the overlap!\n";
        return e.seq;
    }
    e.Log() << "Pass overlap check!\n";
    if (Length(o) > 2.5 * ReadLen && Length(e.seq) < e.gapsize / 2 && e.after.empty()) {
        return e.seq + getN(e.gapsize, Length(e.seq));
    }
    return e.seq;
}

/// Both expansions reach over the opposite edge and share only `over_len` bases of gap: a small gap, or two copies of a
/// repeat that each stand at one end of it.
std::string SmallGap(Expansions& e, int over, int over_len) {
    e.Log() << "two expand overlapped with two edge!\n";
    std::string o;
    if (over_len <= Length(e.before)) {
        o = Head(e.before, over_len);
    } else if (over_len <= Length(e.after)) {
        o = Tail(e.after, over_len);
    }
    const std::string n_str = 2 * Length(o) <= e.gapsize ? Ns(e.gapsize - 2 * Length(o)) : Ns(1);
    const std::string two_ends = Head(e.before, over_len) + n_str + Tail(e.after, over_len);
    const bool both_support = Length(e.before) > Length(o) + ReadLen / 2 && Length(e.after) > Length(o) + ReadLen / 2;
    if (e.gapsize <= min_align) return o;
    if (Length(o) > ReadLen) {
        if (both_support) {
            e.Log() << "Two expand support, accept the small gap!\n";
            return o;
        }
        if (over_len > 0.5 * e.gapsize ||
            (Length(e.after) > 0.5 * e.gapsize && Length(e.before) > 0.5 * e.gapsize && 2 * ReadLen < over)) {
            e.Log() << "Both of the expand sequence crossed the gap region!\n";
            return o;
        }
        e.Log() << "The edge of gap region maybe the same!\n";
        return two_ends;
    }
    if (Length(o) < ReadLen / 10 && e.gapsize > ReadLen && 5 * ReadLen > e.gapsize && over > ReadLen &&
        Length(e.before_seq) > 2 * ReadLen && Length(e.after_seq) > 2 * ReadLen) {
        e.Log() << "Long edge, over estimated gapsize and small real size gap.\n";
        return o;
    }
    if (Trusted(e, o)) {
        e.Log() << "Pass small repeat check!\n";
        return o;
    }
    e.Log() << "maybe edge same TE!\n";
    if (both_support) {
        e.Log() << "Two expand support, accept the small repeat!\n";
        return o;
    }
    return two_ends;
}

/// Case C.
std::string BeyondOneSide(Expansions& e, int over) {
    // The blank behind the line end stands in front of the next line.
    e.Log() << "Real gapsize may be quite small!\n ";
    const int over_len = Length(e.after) + Length(e.before) - over;
    if (over_len < 0) {
        // No minus gap is told here, unlike everywhere else.
        e.Log() << "gap size maybe minus!\n";
        return e.seq;
    }
    if (over_len > 0) return SmallGap(e, over, over_len);
    const bool one_side =
        (Length(e.before) == over && e.after.empty()) || (Length(e.after) == over && e.before.empty());
    if (!one_side) e.Log() << "over is the sum of before and after!\n";
    return "";
}

/// Case D.
Answer InsideBoth(Expansions& e, int over) {
    e.Log() << "Have overlap between before and after\n";
    const std::string o = Head(e.after, over);
    e.seq = e.before + From(e.after, over);
    bool InBothEdge = false;
    if (Length(o) < Length(e.before_edge) && Length(o) < Length(e.after_edge)) {
        const int p1 = string_match(o, e.before_edge, 1);
        const int p2 = string_match(o, e.after_edge, 1);
        // The very start of an edge doesn't count.
        if (p1 > 0 && p2 > 0) {
            e.Log() << "overlap region exists in the edge, must be part of repeat.\n";
            InBothEdge = true;
        }
    }
    if (Trusted(e, o) && !InBothEdge) return e.seq;
    // A repeat must not join the sides by itself; the longer one is cut. `before` keeps only the overlap, while `after`
    // loses it.
    if (ReadLen / 2 < over) {
        if (Length(e.before) > Length(e.after)) {
            e.before = Tail(e.before, over);
        } else {
            e.after = From(e.after, over);
        }
    }
    const std::string s1 = e.before_edge + e.before;
    std::string s2 = e.after + e.after_edge;
    if (!AfterCrossed(e, s1, s2, FullLimit(e))) return std::nullopt;
    e.Log() << "Have read connect before and after!\n";
    return AfterJoin(e, s2, "gapsize maybe minus!\t");
}

}  // namespace

Answer CoveredGap(Expansions& e) {
    e.Log() << "the expand sequence cover the gap region!\n";
    BuildSides(e);
    e.Log() << "Max: " << Length(e.before) + Length(e.after) << '\t' << Length(e.before_seq) << '\t'
            << Length(e.after_seq) << '\n';
    const std::optional<int> over = JoinAlign(e);
    if (!over) return std::nullopt;
    OverLog(e, *over);
    switch (MeetingOf(e, *over)) {
        case Meeting::kAfterIntoBeforeEdge:
            return AfterIntoBeforeEdge(e, *over);
        case Meeting::kBeforeIntoAfterEdge:
            return BeforeIntoAfterEdge(e, *over);
        case Meeting::kBeyondOneSide:
            return BeyondOneSide(e, *over);
        case Meeting::kInsideBoth:
            break;
    }
    return InsideBoth(e, *over);
}

}  // namespace lintara::join
