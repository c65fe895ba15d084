// The last routes: an expansion that fills the gap nearly alone may meet the opposite edge after all (route H for
// `before`, route I for `after`); otherwise the gap is either of size zero or stays open (route J).
#include "align/edge_align.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "run/settings.h"

namespace lintara::join {

namespace {

/// Whether `after` agrees with `seq`, what `before` holds in front of the after edge.
bool ConfirmedByAfter(const Expansions& e) {
    if (e.after.empty()) return true;
    if (e.seq.empty()) {
        const std::string u = Tail(e.after, Length(e.before_edge));
        return Agree(e.before_edge, u, Length(u));
    }
    const std::string u = Tail(e.after, Length(e.seq));
    return Agree(e.seq, u, Length(u));
}

/// Whether `before` agrees with `seq`, what `after` holds behind the before edge.
bool ConfirmedByBefore(const Expansions& e) {
    if (e.before.empty()) return true;
    if (e.seq.empty()) {
        const std::string u = Head(e.before, Length(e.after_edge));
        return Agree(u, e.after_edge, Length(u));
    }
    const std::string u = Head(e.before, Length(e.seq));
    return Agree(u, e.seq, Length(u));
}

/// A read joins `before`, as it is now, with the after edge: the end of the shorter expansion against the longer one.
Answer FinalCheck(const Expansions& e) {
    e.Log() << "final check: \nbefore: " << e.before << "\nafter: " << e.after << '\n';
    double ratio = 0;
    if (Length(e.after) > Length(e.before)) {
        if (e.before == Tail(e.after, Length(e.before))) return e.before;
        ratio = GetMatchRatio(e.after, e.before, Length(e.before));
    } else {
        if (e.after == Tail(e.before, Length(e.after))) return e.before;
        ratio = GetMatchRatio(e.before, e.after, Length(e.after));
    }
    e.Log() << "match ratio " << ratio << '\n';
    if (ratio >= 0.9 || (1 - ratio) * Length(e.after) < 3) {
        e.Log() << "maybe before or after have mistakes!\n";
        return e.before;
    }
    return std::nullopt;
}

}  // namespace

Answer RouteH(Expansions& e) {
    if (Length(e.before) > e.gapsize || Length(e.before) <= 0.8 * e.gapsize) return std::nullopt;
    std::string s = e.before_edge + e.before;
    const int r = align_connect(s, e.after_edge, min_align);
    e.Log() << "before possible overlap check!\n";
    if (r >= 0 && min_align + r <= Length(e.before)) {
        e.Log() << "Before overlapped with after edge!\n";
        e.seq = Head(e.before, Length(e.before) - (min_align + r));
        if (ConfirmedByAfter(e)) return e.seq;
        return std::nullopt;
    }
    if (!BeforeCrossed(e, s, e.after_edge)) return std::nullopt;
    e.Log() << "read connect before and after edge!\n";
    if (Length(s) < Length(e.before_edge))
        return MinusGap(e, Length(s) - Length(e.before_edge), "real gapsize maybe minus!\t");
    // Unlike the twin, this one changes its expansion and asks the other one.
    e.before = From(s, Length(e.before_edge));
    return FinalCheck(e);
}

Answer RouteI(Expansions& e) {
    if (Length(e.after) > e.gapsize || Length(e.after) <= 0.8 * e.gapsize) return std::nullopt;
    const int tail = 2 * Length(e.before_edge);
    // Only here: a long side is looked at in its last bases, and yet cut as if it had been looked at whole.
    std::string used =
        (Length(e.after) >= tail && tail > 0.5 * e.gapsize ? Tail(e.after, tail) : e.after) + e.after_edge;
    const int r = align_connect(e.before_edge, used, min_align);
    const int o = min_align + r;
    e.Log() << "after possible overlap check!\t" << o << '\n';
    if (r >= 0 && o <= Length(e.after)) {
        e.Log() << "After overlapped with before edge!\n";
        e.seq = From(e.after, o);
        if (ConfirmedByBefore(e)) return e.seq;
        return std::nullopt;
    }
    if (!AfterCrossed(e, e.before_edge, used, 2 * ReadLen)) return std::nullopt;
    e.Log() << "read connect after and before edge!\n";
    if (Length(used) < Length(e.after_edge))
        return MinusGap(e, Length(used) - Length(e.after_edge), "gap size maybe minus!\t");
    e.seq = Head(used, Length(used) - Length(e.after_edge));
    if (Length(e.before) >= min_align && Length(e.seq) >= min_align) {
        // For the log alone: the answer is the same either way.
        const double ratio = GetMatchRatio(Head(e.before, min_align), Head(e.seq, min_align), min_align);
        if (ratio > 0.9) {
            e.Log() << "support by before.\n";
        } else {
            e.Log() << "not support by before with ratio: " << ratio << '\n';
        }
    }
    return e.seq;
}

namespace {

/// Whether each expansion only repeats the edge that it should lead to.
bool ZeroGap(const Expansions& e) {
    if (e.before.empty() || e.after.empty()) return false;
    const std::string t2 = Tail(e.after, min_align);
    const std::string t1 = Head(e.before, min_align);
    if (Tail(e.before_edge, Length(t2)) == t2 && Head(e.after_edge, Length(t1)) == t1) {
        e.Log() << "Real gapsize is zero!\n";
        return true;
    }
    const int before_edge = Length(e.before_edge);
    if (Length(e.after) >= before_edge && Agree(e.before_edge, Tail(e.after, before_edge), before_edge)) {
        e.Log() << "After contain before edge!\n";
        return true;
    }
    const int after_edge = Length(e.after_edge);
    if (Length(e.before) >= after_edge && Agree(Head(e.before, after_edge), e.after_edge, after_edge)) {
        e.Log() << "Before contain after edge!\n";
        return true;
    }
    return false;
}

}  // namespace

std::string RouteJ(Expansions& e) {
    // The message is older than what is done now: nothing is connected any more.
    e.Log() << "The overlap with edge is not sure. Then connect the before and after and cut the overlap region.\n";
    e.Log() << "zero gap check!\n";
    if (ZeroGap(e)) return "";
    e.seq = Ns(e.gapsize);
    return e.seq;
}

}  // namespace lintara::join
