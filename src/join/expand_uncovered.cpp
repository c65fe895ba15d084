// Expansions that are together shorter than the estimated gap: between them a hole stays open, unless they overlap or
// one read shows that the gap is smaller than it was thought to be.
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "run/settings.h"

namespace lintara::join {

namespace {

/// One read across the hole. It is believed on both walks' evidence only, and only for about the estimated size.
Answer ReadAcrossHole(Expansions& e) {
    if (!AfterCrossed(e, e.before_seq, e.after_seq, FullLimit(e))) {
        e.Log() << "No read can connect before and after!\n";
        return std::nullopt;
    }
    e.Log() << "before and after connected!\t" << e.noreadbreak1 << '\t' << e.noreadbreak2 << '\n';
    if (e.BothBreak()) {
        if (Length(e.after_seq) < Length(e.after_edge)) {
            const int before_part = Length(e.after_edge) - Length(e.after_seq);
            e.Log() << "before crossed the gap\n";
            if (before_part > Length(e.before)) {
                e.realgaplen = Length(e.before) - before_part;
                e.Log() << "gap size maybe minus!\t-" << before_part - Length(e.before) << '\n';
                return e.seq;
            }
            e.seq = Head(e.before, Length(e.before) - before_part);
        } else {
            e.seq = e.before + Head(e.after_seq, Length(e.after_seq) - Length(e.after_edge));
        }
    }
    if (Length(e.seq) > 0.7 * e.gapsize && 1.3 * e.gapsize > Length(e.seq)) return e.seq;
    e.Log() << "The connect may be wrong!\n";
    return std::nullopt;
}

/// Whether `seq` ends as `after` does; `after` is not empty.
bool AfterConfirms(const Expansions& e) {
    if (Length(e.after) >= Length(e.seq)) {
        bool confirmed = false;
        if (Length(e.seq) > ReadLen) {
            confirmed = GetMatchRatio(Tail(e.seq, ReadLen), Tail(e.after, ReadLen), ReadLen) >= Match_ratio;
        } else if (e.seq.empty() && Length(e.after) <= min_align) {
            confirmed = ExactMatch(Tail(e.before_edge, Length(e.after)), e.after);
        } else {
            const std::string a = e.seq.empty() ? Tail(e.before_edge, min_align) : e.seq;
            confirmed = ExactMatch(a, Tail(e.after, Length(a)));
        }
        if (!confirmed) e.Log() << "gap maybe not so small!\n";
        return confirmed;
    }
    const std::string a = Tail(e.after, min_align);
    if (ExactMatch(a, Tail(e.seq, Length(a)))) return true;
    e.Log() << "may be exists edge repeat!\n";
    return false;
}

/// Whether `seq` starts as `before` does; `before` is not empty.
bool BeforeConfirms(const Expansions& e) {
    if (Length(e.before) >= Length(e.seq)) {
        bool confirmed = false;
        // A sequence of exactly ReadLen bases already counts as long here, not so in the twin.
        if (Length(e.seq) >= ReadLen) {
            const std::string a = Head(e.seq, ReadLen);
            confirmed = GetMatchRatio(a, Head(e.before, Length(a)), Length(a)) >= Match_ratio;
        } else if (e.seq.empty() && Length(e.before) <= min_align) {
            confirmed = ExactMatch(Head(e.after_edge, Length(e.before)), e.before);
        } else {
            const std::string a = e.seq.empty() ? Head(e.after_edge, min_align) : e.seq;
            confirmed = ExactMatch(a, Head(e.before, Length(a)));
        }
        if (!confirmed) e.Log() << "gap maybe not so small!\n";
        return confirmed;
    }
    const std::string a = Head(e.before, min_align);
    if (ExactMatch(a, Head(e.seq, Length(a)))) return true;
    e.Log() << "may be exists edge repeat!\n";
    return false;
}

/// The before side against the after edge.
Answer BeforeToAfterEdge(Expansions& e) {
    if (Length(e.before) <= min_align || Length(e.before) <= 0.5 * e.gapsize) return std::nullopt;
    if (!BeforeCrossed(e, e.before_seq, e.after_edge)) {
        e.Log() << "No read can connect before and after edge!\n";
        return std::nullopt;
    }
    if (Length(e.before_seq) < Length(e.before_edge)) {
        return MinusGap(e, Length(e.before_seq) - Length(e.before_edge), "the gap size maybe minus!\t");
    }
    e.seq = From(e.before_seq, Length(e.before_edge));
    e.Log() << "before and after edge connected!\n";
    if (e.after.empty() || AfterConfirms(e)) return e.seq;
    return std::nullopt;
}

/// The after side against the before edge. Unlike the twin it knows no minus gap.
Answer AfterToBeforeEdge(Expansions& e) {
    if (Length(e.after) <= min_align || Length(e.after) <= 0.5 * e.gapsize) return std::nullopt;
    const bool wide = Length(e.after) + ReadLen > e.gapsize || Length(e.after) < ReadLen;
    if (!AfterCrossed(e, e.before_edge, e.after_seq, wide ? 2 * ReadLen : ReadLen)) {
        e.Log() << "No read can connect after and before edge!\n";
        return std::nullopt;
    }
    e.Log() << "after and before edge connected!\t" << Length(e.after_seq) << '\t' << Length(e.after_edge) << '\n';
    e.seq = Head(e.after_seq, Length(e.after_seq) - Length(e.after_edge));
    if (e.before.empty() || BeforeConfirms(e)) return e.seq;
    return std::nullopt;
}

/// Whether an expansion only repeats the edge that it should lead to.
bool ZeroByEdges(const Expansions& e) {
    const std::string t1 = Tail(e.after, Length(e.before_edge));
    const std::string t2 = Head(e.before, Length(e.after_edge));
    if ((Length(t1) >= Min_overlap && t1 == Tail(e.before_edge, Length(t1))) ||
        (Length(t2) >= Min_overlap && t2 == Head(e.after_edge, Length(t2)))) {
        e.Log() << "The real gap size is zero!\n";
        return true;
    }
    return false;
}

std::string NotAligned(Expansions& e, const std::string& add_n) {
    e.seq = e.before + add_n + e.after;
    // Too wide a hole for one read: nothing below could bridge it.
    if (Length(add_n) > 3 * ReadLen) return e.seq;
    if (Answer answer = ReadAcrossHole(e)) return *answer;
    if (Answer answer = BeforeToAfterEdge(e)) return *answer;
    if (Answer answer = AfterToBeforeEdge(e)) return *answer;
    if (ZeroByEdges(e)) return "";
    return e.before + add_n + e.after;
}

/// A distrusted overlap is kept open as N.
std::string AfterIntoBeforeEdge(Expansions& e, const std::string& add_n, int over) {
    e.Log() << "The after sequence overlapped with the before edge\n";
    const std::string o = Head(e.after, over);
    e.Log() << "Check overlap with before edge: " << o << '\t' << Length(o) << '\n';
    if (Trusted(e, o) && e.before.empty()) return From(e.after, over);
    e.after = From(e.after, over);
    e.Log() << "over not passed the check and no read connect the after and before edge.\n";
    return e.before + add_n + Ns(over) + e.after;
}

/// Unlike the twin it compares the two copies of the overlap, takes any `after`, and keeps open only what lies beyond
/// `after`.
std::string BeforeIntoAfterEdge(Expansions& e, const std::string& add_n, int over) {
    e.Log() << "The before sequence overlapped with the after edge\n";
    const int Max = over - Length(e.after);
    const std::string o = Tail(e.before, over);
    const std::string p = Head(e.after_seq, over);
    e.Log() << "Check overlap with after edge: " << o << '\t' << Length(o) << '\n';
    if (Trusted(e, o) && GetMatchRatio(o, p, over) >= 0.99) return Head(e.before, Length(e.before) - Max);
    e.before = Head(e.before, Length(e.before) - Max);
    e.Log() << "over not passed the check and no read connect the before and after edge.\n";
    return e.before + add_n + Ns(Max) + e.after;
}

/// The overlap is as long as both expansions together. An expansion that is all of it leaves the other one empty, so
/// that the cross checks here are not reached.
std::string SumOfBoth(Expansions& e, int over) {
    e.Log() << "The real gap size maybe zero!\n";
    e.seq.clear();
    if (Length(e.before) != over && Length(e.after) == over) {
        if (e.before.empty()) return From(e.after, over);
        e.Log() << "after cross check!\n";
        if (AfterCrossed(e, e.before_edge, e.after, 2 * ReadLen)) return e.after;
        return e.gapsize >= 201 ? Ns(e.gapsize - Length(e.after)) + e.after : e.seq;
    }
    if (Length(e.before) == over) {
        if (e.after.empty()) return "";
        e.Log() << "before cross check!\n";
        if (BeforeCrossed(e, e.before, e.after_edge)) return e.before;
        return e.gapsize >= 201 ? e.before + Ns(e.gapsize - Length(e.before)) : e.seq;
    }
    e.Log() << "over equal the sum of the before and after!\n";
    return e.seq;
}

/// A wide gap: the two ends may be two copies of one repeat with a hole between them. The overlap is no shorter than
/// either side and both sides are shorter than the gap, so that both copies always fit.
std::string SmallInWideGap(Expansions& e, int add_n_len, int over) {
    e.Log() << "The edge of gap region maybe the same!\n";
    const int k = e.gapsize - 2 * add_n_len;
    if (k < 0) {
        e.Log() << "The gapsize maybe minus!\n";
        return e.seq;
    }
    e.seq = Tail(e.after, add_n_len);
    if (Length(e.seq) < ReadLen && Trusted(e, e.seq) && k < 3 * ReadLen) return e.seq;
    if (2 * ReadLen < over && Length(e.seq) > 0.4 * e.gapsize) return e.seq;
    return Head(e.before, add_n_len) + Ns(k) + Tail(e.after, add_n_len);
}

std::string SmallInNarrowGap(Expansions& e, int add_n_len) {
    e.Log() << "The real gap size may be quite small!\n";
    std::string o;
    if (add_n_len <= Length(e.before)) {
        o = Head(e.before, add_n_len);
    } else if (add_n_len <= Length(e.after)) {
        o = Tail(e.after, add_n_len);
    }
    e.Log() << "repeat check: " << o << '\n';
    const int k = Length(o) < e.gapsize / 2 ? e.gapsize - 2 * Length(o) : 1;
    if (Trusted(e, o)) return o;
    return o + Ns(k) + o;
}

std::string BeyondOneSide(Expansions& e, int over) {
    const int add_n_len = Length(e.before) + Length(e.after) - over;
    if (add_n_len < 0) return MinusGap(e, add_n_len, "The gap size may be minus!\t");
    if (add_n_len == 0) return SumOfBoth(e, over);
    return e.gapsize > 299 ? SmallInWideGap(e, add_n_len, over) : SmallInNarrowGap(e, add_n_len);
}

std::string InsideBoth(Expansions& e, const std::string& add_n, int over) {
    e.Log() << "Have overlap between before and after\n";
    const std::string o = Head(e.after, over);
    const int ca = static_cast<int>(PattNum(o, e.after_seq).size());
    const int cb = static_cast<int>(PattNum(o, e.before_seq).size());
    e.Log() << "over number in after: " << ca << "\tin before: " << cb << '\n';
    const bool refused = !Trusted(e, o) || (over < ReadLen && (ca >= 2 || cb > 1)) ||
                         (Length(add_n) > 3 * ReadLen && over < ReadLen) || (ReadLen / 2 > over && cb == 0);
    if (refused) {
        e.Log() << "more than twice repeat in the gap!\n";
        return e.before + add_n + e.after;
    }
    return e.before + From(e.after, over);
}

}  // namespace

std::string UncoveredGap(Expansions& e) {
    e.Log() << "expand sequence may be not cover the gap!\n";
    const std::string add_n = Ns(e.gapsize - Length(e.before) - Length(e.after));
    BuildSides(e);
    const std::optional<int> over = JoinAlign(e);
    if (!over) return NotAligned(e, add_n);
    OverLog(e, *over);
    switch (MeetingOf(e, *over)) {
        case Meeting::kAfterIntoBeforeEdge:
            return AfterIntoBeforeEdge(e, add_n, *over);
        case Meeting::kBeforeIntoAfterEdge:
            return BeforeIntoAfterEdge(e, add_n, *over);
        case Meeting::kBeyondOneSide:
            return BeyondOneSide(e, *over);
        case Meeting::kInsideBoth:
            break;
    }
    return InsideBoth(e, add_n, *over);
}

}  // namespace lintara::join
