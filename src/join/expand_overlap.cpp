// Expansions that met neither each other as a whole nor an edge: the two compared with each other without their edges
// (route E), a read across sides that are cut to fit the gap together (route F), and a read across one side that is cut
// and one that is whole (route G). All three need min_align bases on each side.
#include "align/edge_align.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "run/settings.h"

namespace lintara::join {

namespace {

/// E1, an overlap of o bases inside both. Without an answer the rest of the route is left out.
Answer OverlapInside(Expansions& e, int o) {
    e.seq = e.before + From(e.after, o);
    const std::string t1 = Head(e.after, o);
    const std::string t2 = Tail(e.before, o);
    if (Trusted(e, t1)) {
        if (Length(t1) <= 9 && t1 != t2) {
            e.Log() << "over region is too short, cannot connect!\n";
            return Ns(e.gapsize);
        }
        e.Log() << "before cutted part have mistakes!, now before and after overlap: " << Length(t1) << '\n';
        return e.seq;
    }
    e.Log() << "not passed the over check!\n";
    const std::string s1 = e.before_edge + e.before;
    std::string s2 = e.after + e.after_edge;
    if (AfterCrossed(e, s1, s2, FullLimit(e))) return AfterJoin(e, s2, "gapsize maybe minus!\t");
    if (e.gapsize < ReadLen && Length(e.seq) > e.gapsize) {
        e.Log() << "Still accept the sequence.\n";
        return e.seq;
    }
    return std::nullopt;
}

/// E2, an overlap that is longer than `after`.
std::string AfterInsideBefore(Expansions& e, int o) {
    e.Log() << "after is part of before sequence!\n";
    std::string s = e.after + e.after_edge;
    if (AfterCrossed(e, e.before, s, ReadLen)) {
        e.Log() << "before and after connected!\n";
        if (Length(s) < Length(e.after_edge)) return Head(e.before, Length(e.before) - o);
        return e.before + Head(s, Length(s) - Length(e.after_edge));
    }
    const int end = Length(e.before) - o + Length(e.after);
    const std::string t = From(e.before, end);
    const std::string start_of_edge = Head(t, Length(e.after_edge));
    const double ratio = GetMatchRatio(start_of_edge, e.after_edge, Length(start_of_edge));
    if (ratio > 0.9) return Head(e.before, end);
    e.Log() << "after edge not support before! " << ratio << '\n';
    const std::string right = Head(e.before, Length(e.before) - o);
    const int k = e.gapsize - (Length(right) + Length(e.after));
    return right + Ns(k > 0 ? k : 1) + e.after;
}

/// E3, an overlap that is longer than `before`. Unlike the twin it leaves the question open when the edge disagrees.
Answer BeforeInsideAfter(Expansions& e, int o) {
    e.Log() << "before is part of after sequence!\n";
    if (AfterCrossed(e, e.before, e.after, ReadLen)) {
        e.Log() << "before and after connected!\n";
        return e.before + e.after;
    }
    const std::string used = Head(e.after, o - Length(e.before));
    const std::string end_of_edge = Tail(used, Length(e.before_edge));
    if (Agree(e.before_edge, end_of_edge, Length(end_of_edge))) return From(e.after, o - Length(e.before));
    return std::nullopt;
}

/// E4, copies of the shorter expansion in the longer one.
Answer Copies(const Expansions& e) {
    if (Length(e.before) > Length(e.after)) {
        const std::vector<int> places = PattNum(e.after, e.before);
        if (places.size() <= 1) return std::nullopt;
        e.Log() << "More than one copy of left after: " << e.after << '\n';
        return Head(e.before, places.back() + Length(e.after));
    }
    const std::vector<int> places = PattNum(e.before, e.after);
    if (places.size() <= 1) return std::nullopt;
    e.Log() << "More than one copy of left before: " << e.before << '\n';
    return From(e.after, places.front());
}

/// E5, the start of `before` overlapping the end of `after`.
Answer Exchanged(Expansions& e) {
    const int r = align_connect(e.after, e.before, min_align);
    const int o = min_align + r;
    e.Log() << "before and after exchange:  " << o << '\n';
    e.Log() << "break: " << e.noreadbreak1 << '\t' << e.noreadbreak2 << '\n';
    const bool counts = r >= 0 && o <= Length(e.after) && (e.BothBreak() || o >= ReadLen / 2);
    if (!counts) return std::nullopt;
    e.seq = Tail(e.after, o);
    if (Length(e.after) > Length(e.before_edge) + o) {
        const std::string t = Tail(Head(e.after, Length(e.after) - o), Length(e.before_edge));
        if (Agree(t, e.before_edge, Length(t))) {
            e.Log() << "The gap size is quite small and after contain before edge!\n";
            return e.seq;
        }
    }
    if (Length(e.before) > Length(e.after_edge) + o) {
        const std::string t = Head(From(e.before, o), Length(e.after_edge));
        if (Agree(t, e.after_edge, Length(t))) {
            e.Log() << "The gap size is quite small and before contain after edge!\n";
            return e.seq;
        }
    }
    if (o < 2 * e.gapsize / 5) {
        e.Log() << "The two edge of the gap region sequence is the same!\n";
        const int k = o + Length(e.after) < e.gapsize ? e.gapsize - (o + Length(e.after)) : 1;
        return Head(e.before, o) + Ns(k) + e.after;
    }
    e.Log() << "The gap size is quite small!\n";
    return e.seq;
}

}  // namespace

Answer RouteE(Expansions& e) {
    const int r = align_connect(e.before, e.after, min_align);
    const int o = min_align + r;
    e.Log() << "before expand overlapped with after expand: " << o << '\n';
    if (r >= 0 && o <= Length(e.after) && o <= Length(e.before)) return OverlapInside(e, o);
    if (r >= 0 && o > Length(e.after)) return AfterInsideBefore(e, o);
    if (r >= 0) {
        if (Answer answer = BeforeInsideAfter(e, o)) return answer;
    }
    if (Answer answer = Copies(e)) return answer;
    return Exchanged(e);
}

namespace {

/// The sides of route F, of which the longer one is cut when both are short and yet too long for the gap together.
struct CutSides {
    std::string ta;
    std::string tb;
};

CutSides CutLonger(const Expansions& e) {
    CutSides sides{e.after + e.after_edge, e.before_edge + e.before};
    const int surplus = Length(e.after) + Length(e.before) - e.gapsize;
    if (0.8 * e.gapsize > Length(e.before) && 0.8 * e.gapsize > Length(e.after) && surplus > 0) {
        if (Length(e.after) > Length(e.before)) {
            e.Log() << "cut after for " << surplus << " bp.\n";
            sides.ta = From(e.after, surplus) + e.after_edge;
        } else {
            e.Log() << "cut before for " << surplus << " bp.\n";
            sides.tb = e.before_edge + Head(e.before, e.gapsize - Length(e.after));
        }
    }
    return sides;
}

/// A read has joined the sides.
Answer JoinedSides(Expansions& e, const CutSides& sides) {
    const int kept = Length(sides.ta) - Length(e.after_edge);
    e.Log() << "before and after connected!\tbefore size: " << Length(e.before) << "\tafter size: " << Length(e.after)
            << '\n';
    if (kept + Length(e.before) == 0) {
        e.seq.clear();
        return e.seq;
    }
    if (kept < 0) return MinusGap(e, kept, "gapsize maybe minus!\t");
    e.seq = From(sides.tb, Length(e.before_edge)) + Head(sides.ta, kept);
    const bool enough = e.BothBreak() || Length(e.before) > 0.8 * e.gapsize || Length(e.after) > 0.8 * e.gapsize ||
                        Length(e.seq) > 0.6 * e.gapsize;
    if (enough) return e.seq;
    return std::nullopt;
}

/// No read has joined the sides, but they may overlap. Up to 10 bases must be equal; more are taken on trust.
Answer OverlappedSides(const Expansions& e, const CutSides& sides) {
    const std::string& ta = sides.ta;
    const std::string& tb = sides.tb;
    const int r = align_connect(tb, ta, min_align);
    const int o = min_align + r;
    if (r < 0 || o > Length(ta) || o > Length(tb)) return std::nullopt;
    e.Log() << "have overlap after cut!\t" << o << '\n';
    const std::string n_str = Ns(o);
    const bool accepted = o > 10 || Head(ta, o) == Tail(tb, o);
    if (Length(tb) == Length(e.before_edge) + Length(e.before)) {
        if (o + Length(e.after_edge) >= Length(ta)) return std::nullopt;
        const std::string m = Head(From(ta, o), Length(ta) - o - Length(e.after_edge));
        if (accepted) return e.before + m;
        e.Log() << "overlap not accepted!\n";
        if (Length(e.before) < o) return n_str + m;
        return Head(e.before, Length(e.before) - o) + n_str + m;
    }
    if (o + Length(e.before_edge) >= Length(tb)) return std::nullopt;
    const std::string m = Head(From(tb, Length(e.before_edge)), Length(tb) - o - Length(e.before_edge));
    if (accepted) return m + e.after;
    e.Log() << "overlap not accepted!\n";
    if (Length(e.after) < o) return m + n_str;
    return m + n_str + From(e.after, o);
}

}  // namespace

Answer RouteF(Expansions& e) {
    CutSides sides = CutLonger(e);
    e.Log() << "before: " << sides.tb << '\n' << " after: " << sides.ta << '\n';
    if (AfterCrossed(e, sides.tb, sides.ta, FullLimit(e))) return JoinedSides(e, sides);
    e.Log() << "No read can connect before and after!\n";
    return OverlappedSides(e, sides);
}

namespace {

Answer CutAfter(Expansions& e) {
    const int surplus = Length(e.after) + Length(e.before) - e.gapsize;
    std::string cuttmp = surplus > 0 ? From(e.after, surplus) : e.after;
    if (Length(cuttmp) < min_align) cuttmp = From(e.after, Length(e.after) - min_align - 1);
    e.Log() << "cut after: " << cuttmp << '\n';
    const std::string s1 = e.before_edge + e.before;
    std::string s2 = cuttmp + e.after_edge;
    if (!AfterCrossed(e, s1, s2, 2 * ReadLen) || !e.BothBreak()) return std::nullopt;
    const int d = Length(e.after_edge) - Length(s2);
    if (d > Length(e.before)) {
        e.realgaplen = Length(e.before) - d;
        e.Log() << "the gap size maybe minus!\t-" << d - Length(e.before) << '\n';
        return e.seq;
    }
    if (d > 0) return Head(e.before, Length(e.before) - d);
    return e.before + Head(s2, -d);
}

/// Unlike the twin it looks at reads of up to ReadLen bases only, and takes the read for a yes without using what it
/// says about the bases between.
Answer CutBeforeSide(Expansions& e) {
    const int surplus = Length(e.after) + Length(e.before) - e.gapsize;
    std::string cuttmp = surplus > 0 ? Head(e.before, e.gapsize - Length(e.after)) : e.before;
    if (Length(cuttmp) < min_align) cuttmp = Head(e.before, min_align + 1);
    e.Log() << "cut before: " << cuttmp << '\n';
    const std::string s1 = e.before_edge + cuttmp;
    std::string s2 = e.after + e.after_edge;
    if (!AfterCrossed(e, s1, s2, ReadLen)) return std::nullopt;
    e.seq = cuttmp + e.after;
    if (e.BothBreak() || Length(e.seq) > 0.8 * e.gapsize) return e.seq;
    return std::nullopt;
}

}  // namespace

Answer RouteG(Expansions& e) {
    if (Length(e.after) > Length(e.before) && Length(e.before) < e.gapsize && Length(e.after) > min_align + 1)
        return CutAfter(e);
    if (Length(e.before) > Length(e.after) && Length(e.after) < e.gapsize && Length(e.before) > min_align + 1) {
        return CutBeforeSide(e);
    }
    return std::nullopt;
}

}  // namespace lintara::join
