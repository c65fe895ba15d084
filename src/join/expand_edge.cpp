// Expansions that cover the gap but whose alignment gave no answer: a read across both uncut sides, and then each
// expansion that is longer than the gap against the opposite edge. It must meet that edge; where it doesn't, it is cut
// to a length that the gap can hold, and the later steps go on with what is left.
#include <algorithm>

#include "align/edge_align.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "run/settings.h"

namespace lintara::join {

Answer ReadAcrossUncut(Expansions& e) {
    if (Length(e.before) <= min_align || Length(e.after) <= min_align) return std::nullopt;
    const int limit = Length(e.before) < ReadLen || Length(e.after) < ReadLen ? 2 * ReadLen : ReadLen;
    if (!AfterCrossed(e, e.before_seq, e.after_seq, limit)) {
        e.Log() << "No read connect before and after!\n";
        return std::nullopt;
    }
    e.Log() << "Read connect before and after without cut!\n";
    const int d = Length(e.after_edge) - Length(e.after_seq);
    if (d > Length(e.before)) return MinusGap(e, Length(e.before) - d, "gap size maybe minus!\t");
    if (d > 0) {
        e.Log() << "before cover the gap!\n";
        return Head(e.before, Length(e.before) - d);
    }
    return e.before + Head(e.after_seq, -d);
}

namespace {

/// Both expansions are longer than the gap and don't meet the edge; `after` is the longer one.
Answer BeforeOfTwoLong(const Expansions& e) {
    std::string sb = e.before_edge + Head(e.before, e.gapsize);
    std::string sa = e.after + e.after_edge;
    if (AfterCrossed(e, sb, sa, 2 * ReadLen)) {
        const int d = Length(e.after_edge) - Length(sa);
        if (d <= 0) return e.before + Head(sa, -d);
        if (d < Length(e.before)) return Head(e.before, Length(e.before) - d);
    }
    if (BeforeCrossed(e, sb, e.after_edge)) {
        const int d = Length(e.before_edge) - Length(sb);
        if (d <= 0) return From(sb, Length(e.before_edge));
        if (d < Length(e.after)) return From(e.after, d);
    }
    return std::nullopt;
}

/// `after` is shorter than the gap.
Answer BeforeOverShortAfter(Expansions& e) {
    std::string s = e.before_edge + Head(e.before, e.gapsize);
    if (!BeforeCrossed(e, s, e.after_edge)) {
        e.before = Head(e.before, e.gapsize - Length(e.after));
        return std::nullopt;
    }
    if (Length(s) >= Length(e.before_edge)) return From(s, Length(e.before_edge));
    return std::nullopt;
}

/// There is no `after`, so that the answer is found here.
std::string BeforeAlone(Expansions& e) {
    e.Log() << "After failed to expand!\n";
    std::string s = e.before_edge + e.before;
    if (BeforeCrossed(e, s, e.after_edge)) {
        if (Length(s) >= Length(e.before_edge)) return From(s, Length(e.before_edge));
    } else {
        s = e.before_edge + Head(e.before, e.gapsize);
        if (BeforeCrossed(e, s, e.after_edge)) {
            if (Length(s) >= Length(e.before_edge)) return From(s, Length(e.before_edge));
        } else if (e.gapsize > min_align) {
            e.before = Head(e.before, e.gapsize);
        }
    }
    const std::string t = Head(e.before, Length(e.after_edge));
    if (GetMatchRatio(t, e.after_edge, Length(t)) >= Match_ratio) {
        e.before.clear();
        return "";
    }
    if (Length(e.before) > e.gapsize) e.before = Head(e.before, e.gapsize);
    // The join with the edge was not proved.
    return e.before + Ns(1);
}

/// The end of `before` doesn't meet the after edge.
Answer BeforeUnclear(Expansions& e) {
    e.Log() << "No clear overlap between before and after edge.\n";
    if (Length(e.after) > e.gapsize && Length(e.after) > Length(e.before)) return BeforeOfTwoLong(e);
    if (Length(e.after) > e.gapsize) {
        if (2 * min_align >= e.gapsize) {
            if (Length(e.before) > min_align) e.before = Head(e.before, min_align);
        } else {
            e.before = Head(e.before, e.gapsize / 2);
        }
        return std::nullopt;
    }
    if (!e.after.empty()) return BeforeOverShortAfter(e);
    return BeforeAlone(e);
}

/// Tests `seq`, what lies in front of the after edge, against `after`. A `seq` in doubt is cleared, and may become
/// `before`.
Answer SeqAgainstAfter(Expansions& e) {
    const std::string o = Tail(e.after, Length(e.seq));
    const std::string t = Tail(e.seq, Length(o));
    const double ids = GetMatchRatio(o, t, Length(o));
    // One single mismatch is in doubt as well.
    if (ids < 0.9 || Length(o) - static_cast<int>(Length(o) * ids) == 1) {
        e.Log() << "the before overlap with after edge maybe wrong!\n";
        if (Length(e.seq) < Length(e.after)) {
            if (!PattNum(e.seq, e.after).empty()) e.before = e.seq;
            e.seq.clear();
        } else if (Length(e.after) > e.gapsize) {
            e.before = e.seq;
            e.seq.clear();
        }
        return std::nullopt;
    }
    if (Length(e.seq) >= Length(e.after)) return std::nullopt;
    const std::vector<int> places = PattNum(e.seq, e.after);
    if (places.size() > 1) {
        e.Log() << "Maybe repeat+unrepeat+repeat model.\n";
        e.before = e.seq;
        e.seq.clear();
    } else if (places.size() == 1) {
        e.Log() << "Find before part sequence in after sequence.\n";
        if (Length(e.after) - places[0] > Length(e.seq)) {
            e.Log() << "May be once short over. Using after part sequence!\n";
            return From(e.after, places[0]);
        }
    }
    return std::nullopt;
}

/// `seq` may be one of two copies of the same edge.
Answer SameEdgeBefore(Expansions& e) {
    e.Log() << "The two edge of gap region is the same!\n";
    if (Length(e.seq) < min_align && Length(e.after) > Length(e.seq)) {
        if (e.seq == Tail(e.after, Length(e.seq))) return e.seq;
        if (Length(e.seq) == 1) {
            e.Log() << "Maybe structure error!\n";
            return e.seq;
        }
        e.before = e.seq;
        return std::nullopt;
    }
    if (Length(e.after) > Length(e.seq) + min_align) {
        const std::string t = Tail(e.after, Length(e.seq));
        const int r2 = align_connect(e.seq, t, min_align);
        if (r2 < 0) return std::nullopt;
        e.Log() << "Get the two same edge!\n";
        return e.seq + From(t, min_align + r2);
    }
    e.before = e.seq;
    return std::nullopt;
}

/// The end of `before` meets the after edge in `pos1` bases.
Answer BeforeClear(Expansions& e, int pos1) {
    e.Log() << "overlap between before and after edge is clear\t" << pos1 << '\n';
    if (pos1 > Length(e.before)) return MinusGap(e, Length(e.before) - pos1, "Have overlap between the two edge!\t");
    const std::string edge_part = Head(e.after_edge, pos1);
    e.seq = Head(e.before, Length(e.before) - pos1);
    if (e.seq.empty()) return e.seq;
    if (Length(e.seq) > 10 * ReadLen && pos1 > ReadLen && GetMatchRatio(e.before, e.after_edge, pos1) > 0.99 &&
        Length(e.seq) > 0.9 * e.gapsize && 1.1 * e.gapsize > Length(e.seq)) {
        e.Log() << "Accept the long gap sequence!\n";
        return e.seq;
    }
    if (Length(e.after) > min_align && Length(e.seq) > min_align) {
        if (Answer answer = SeqAgainstAfter(e)) return answer;
    }
    if (Length(e.seq) > 0.7 * e.gapsize || e.after.empty()) return e.seq;
    if (e.seq.empty()) return std::nullopt;
    if (!Trusted(e, edge_part)) {
        e.Log() << "Overlap between before and after edge is unsure, cut overlap region!\n";
        e.before = e.seq;
        return std::nullopt;
    }
    e.Log() << "Have overlap between before and after edge!\n";
    if (Trusted(e, e.seq)) {
        e.Log() << "The gap sequence is part of before sequence.\n";
        return e.seq;
    }
    return SameEdgeBefore(e);
}

}  // namespace

Answer BeforeOverGap(Expansions& e) {
    const int r = align_connect(e.before_seq, e.after_edge, min_align);
    return r < 0 ? BeforeUnclear(e) : BeforeClear(e, min_align + r);
}

namespace {

/// There is no `before`, so that the answer is found here.
std::string AfterAlone(Expansions& e) {
    const int size = Length(e.after);
    std::string t = e.after;
    if (size > ReadLen / 2 + e.gapsize && e.gapsize > ReadLen) {
        t = From(e.after, size - e.gapsize - ReadLen / 2);
    } else if (size > e.gapsize) {
        t = Tail(e.after, e.gapsize);
    }
    if (size < min_align + e.gapsize && Length(t) == e.gapsize && size > min_align + 1)
        t = From(e.after, min_align + 1);
    t += e.after_edge;
    e.Log() << "after cross check!\t" << t << '\n';
    if (AfterCrossed(e, e.before_edge, t, 2 * ReadLen)) {
        if (Length(t) < Length(e.after_edge)) return e.seq;
        return Head(t, Length(t) - Length(e.after_edge));
    }
    e.after = Head(t, Length(t) - Length(e.after_edge));
    return getN(e.gapsize, Length(e.after)) + e.after;
}

/// The start of `after` doesn't meet the before edge, and there is a `before`.
Answer AfterUnclear(Expansions& e) {
    if (Length(e.before) < e.gapsize) {
        e.after = Tail(e.after, e.gapsize);
        std::string s = e.after + e.after_edge;
        e.Log() << "after cut gapsize part \n";
        if (AfterCrossed(e, e.before_edge, s, 2 * ReadLen)) {
            e.Log() << "have read connect after cutted left part with before edge.\n";
            if (Length(s) < Length(e.after_edge)) {
                return MinusGap(e, Length(s) - Length(e.after_edge), "gap size maybe minus.\t");
            }
            return Head(s, Length(s) - Length(e.after_edge));
        }
        e.after = From(e.after, Length(e.after) + Length(e.before) - e.gapsize);
    } else if (Length(e.after) > e.gapsize && e.gapsize > min_align) {
        e.after = Tail(e.after, e.gapsize);
    } else if (Length(e.after) > min_align + 1) {
        e.after = From(e.after, Length(e.after) - min_align - 1);
    }
    if (Length(e.after) > Length(e.before_edge)) {
        e.Log() << "The real gapsize maybe zero! one edge of after is the same as before edge, the other is part of "
                   "before edge!\n";
        if (e.before_edge == Tail(e.after, Length(e.before_edge))) {
            e.Log() << "The gapsize is zero!\n";
            e.after.clear();
            return "";
        }
    }
    return std::nullopt;
}

/// `seq`, what lies behind the before edge, doesn't begin as `before` does. The twin's test is SeqAgainstAfter().
Answer WrongStart(Expansions& e) {
    e.Log() << "start of after position may be error!\n";
    const int o = string_match(e.before, e.after, 1);
    if (o >= 0) {
        e.seq = From(e.after, o);
        return e.seq;
    }
    std::string t = Tail(e.after, e.gapsize);
    if (Length(e.after) > e.gapsize + 100 && Length(e.before) >= e.gapsize + 100) {
        t = From(e.after, static_cast<int>(Length(e.after) * 0.2));
    }
    if (AfterCrossed(e, e.before_edge, t, 2 * ReadLen)) {
        e.Log() << "cut the wrong part, overlapped with before edge!\n";
        return t;
    }
    if (Length(e.before) + min_align >= e.gapsize) return std::nullopt;
    t = From(e.after, Length(e.after) + Length(e.before) - e.gapsize - 1);
    const int n_len = Length(t) < ReadLen ? 2 * ReadLen : ReadLen;
    e.Log() << t << '\t' << Length(t) << '\n';
    const bool with_edge = Length(t) < ReadLen;
    if (with_edge) t += e.after_edge;
    if (!AfterCrossed(e, e.before, t, n_len)) return std::nullopt;
    e.Log() << "cut the wrong part, overlapped with before !\n";
    if (with_edge) return AfterJoin(e, t, "gapsize maybe minus!\t");
    return e.before + t;
}

/// `seq` may be one of two copies of the same edge.
Answer SameEdgeAfter(Expansions& e) {
    e.Log() << "The two edge of gap region is the same!\n";
    if (Length(e.seq) < min_align && Length(e.seq) < Length(e.before)) {
        if (e.seq == Head(e.before, Length(e.seq))) return e.seq;
        if (Length(e.seq) == 1) {
            e.Log() << "Maybe structure error!\n";
            return e.seq;
        }
        e.after = e.seq;
        return std::nullopt;
    }
    if (Length(e.before) > Length(e.seq) + min_align) {
        const std::string u = Head(e.before, Length(e.seq));
        const int r2 = align_connect(u, e.seq, min_align);
        if (r2 < 0) return std::nullopt;
        e.Log() << "Get the two same edge!\n";
        return Head(u, Length(u) - (min_align + r2)) + e.seq;
    }
    e.after = e.seq;
    // Only here: both sides are one copy of the repeat.
    if (e.after == e.before) {
        const int open = e.gapsize - Length(e.after) - Length(e.before);
        return e.before + Ns(std::max(open, 1)) + e.after;
    }
    return std::nullopt;
}

/// The start of `after` meets the before edge in `over` bases.
Answer AfterClear(Expansions& e, int over) {
    e.Log() << "overlap between after and before edge is clear\t" << over << '\n';
    if (over > Length(e.after)) {
        // No minus gap is told on this side.
        e.Log() << "Have overlap between the two edge!\n";
        return e.seq;
    }
    const std::string edge_part = Tail(e.before_edge, over);
    e.seq = From(e.after, over);
    if (Length(e.before) > min_align && Length(e.before) < Length(e.seq) &&
        GetMatchRatio(Head(e.before, min_align), Head(e.seq, min_align), min_align) < 0.8) {
        if (Answer answer = WrongStart(e)) return answer;
    }
    if (e.seq.empty() || Length(e.seq) > 0.7 * e.gapsize || e.before.empty()) return e.seq;
    if (!Trusted(e, edge_part)) {
        e.Log() << "Overlap between before and after edge is unsure, cut overlap region\n";
        e.after = e.seq;
        return std::nullopt;
    }
    e.Log() << "Have overlap between after and before edge!\n";
    if (Trusted(e, e.seq)) return e.seq;
    return SameEdgeAfter(e);
}

}  // namespace

Answer AfterOverGap(Expansions& e) {
    const int r = align_connect(e.before_edge, e.after_seq, min_align);
    if (r >= 0) return AfterClear(e, min_align + r);
    if (e.before.empty()) return AfterAlone(e);
    return AfterUnclear(e);
}

}  // namespace lintara::join
