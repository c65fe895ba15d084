#include "join/three_way.h"

#include <algorithm>
#include <fstream>

#include "align/edge_align.h"
#include "align/overlap.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

struct ThreeWay {
    const std::string& tmp1;  ///< before edge
    std::string& seq;
    const std::string& tmp2;  ///< after edge
    const std::vector<Read>& reads;
    int gapsize;
    int& realgaplen;
    int threadId;

    int over1 = 0;  ///< overlap of tmp1 and seq, as an index above min_align
    int over2 = 0;  ///< overlap of seq and tmp2, as an index above min_align

    std::ofstream& log() const { return logFile[threadId]; }
    std::string open() const { return Ns(gapsize); }
    bool crosses_after(std::string& grown) const { return BeforeCrossCheck(grown, reads, tmp2, threadId); }
    bool crosses_before(std::string& grown, int limit) const {
        return AfterCrossCheck(tmp1, reads, grown, limit, threadId);
    }
};

bool OverlapsBoth(const ThreeWay& t) {
    return t.over1 >= 1 && t.over2 >= 1 && min_align + t.over1 <= Length(t.seq) && min_align + t.over2 <= Length(t.seq);
}

std::string ConnectBoth(const ThreeWay& t) {
    t.log() << "both have overlap!\n";
    if (Length(t.seq) < t.over1 + t.over2 + 2 * min_align) {
        t.log() << "the real gapsize is minus!\n";
        return t.open();
    }
    return WithoutLast(From(t.seq, min_align + t.over1), min_align + t.over2);
}

std::string ConnectBefore(ThreeWay& t) {
    std::string& seq = t.seq;
    t.log() << "have overlap before!" << min_align + t.over1 << '\n';
    seq = From(seq, min_align + t.over1);
    if (seq.empty()) {
        t.log() << "the assembled is part of before edge\n";
        return t.open();
    }
    std::string tmp = Length(seq) > t.gapsize && t.gapsize > Min_overlap ? Head(seq, t.gapsize) : seq;
    if (t.gapsize < min_align && Length(seq) > min_align + 1) tmp = Head(seq, min_align + 1);
    // What is too short to be placed by reads is placed together with the edge that it follows.
    const int edge = Length(tmp) < Min_overlap ? Length(t.tmp1) : 0;
    if (edge > 0) tmp = t.tmp1 + tmp;

    if (t.crosses_after(tmp)) {
        t.log() << "read connect the sequence and after edge!\n";
        if (Length(tmp) < edge) {
            t.log() << "gapsize maybe minus!\n";
            return seq;
        }
        return From(tmp, edge);
    }
    const int match = align_connect(tmp, t.tmp2, min_align);
    if (match >= 0) {
        const int over = min_align + match;
        if (over + edge > Length(tmp)) {
            t.log() << "gapsize maybe minus!\n";
            return seq;
        }
        return WithoutLast(From(tmp, edge), over);
    }
    if (Length(seq) > t.gapsize && t.gapsize >= min_align) {
        const int over = overlap(seq, t.tmp2, 1, 0.9);
        if (over > 0 && over <= Length(seq)) {
            // The line has no end of its own.
            t.log() << "seq overlap with after edge!\n " << over << '\t' << Length(seq);
            return WithoutLast(seq, over);
        }
    }
    return From(tmp, edge) + getN(t.gapsize, Length(tmp) - edge);
}

/// The mirror. It differs on purpose in that nothing asks for an empty sequence, in the limits of the pieces, and in
/// that the after edge is taken off whether it was added or not.
std::string ConnectAfter(ThreeWay& t) {
    std::string& seq = t.seq;
    t.log() << "have overlap after!\n";
    seq = WithoutLast(seq, t.over2 + min_align);
    std::string tmp = Length(seq) > t.gapsize && t.gapsize >= Min_overlap ? Tail(seq, t.gapsize) : seq;
    if (t.gapsize < Min_overlap && Length(seq) > 2 * Min_overlap) tmp = Tail(seq, 2 * Min_overlap);
    if (t.gapsize < min_align && Length(seq) > min_align + 1) tmp = Tail(seq, min_align + 1);
    const int edge = Length(tmp) < Min_overlap ? Length(t.tmp2) : 0;
    if (edge > 0) tmp += t.tmp2;

    if (t.crosses_before(tmp, ReadLen)) {
        t.log() << "read connect the sequence and before edge!\n";
        if (Length(tmp) >= Length(t.tmp2)) return WithoutLast(tmp, Length(t.tmp2));
        t.log() << "gapsize maybe minus!\n";
    } else if (const int match = align_connect(t.tmp1, tmp, min_align); match >= 0) {
        const int over = min_align + match;
        if (Length(tmp) >= Length(t.tmp2) + over) return WithoutLast(From(tmp, over), Length(t.tmp2));
        t.log() << "gapsize maybe minus!\n";
    }
    if (Length(seq) > t.gapsize && t.gapsize >= min_align) {
        const int over = overlap(t.tmp1, seq, 1, 0.9);
        if (over > 0 && over <= Length(seq)) {
            t.log() << "overlapped with before edge.\n";
            return From(seq, over);
        }
    }
    return getN(t.gapsize, Length(tmp) - edge) + WithoutLast(tmp, edge);
}

std::string NotSure(const ThreeWay& t) {
    t.log() << "have overlap between before edge and after edge, overlap not sure!\n";
    return t.open();
}

/// A read leads from the sequence to the after edge: is there one to the before edge, too?
std::string ReadToAfter(ThreeWay& t) {
    std::string& seq = t.seq;
    t.log() << "read connect the sequence and after edge!\n";
    t.log() << "To connect with before edge!\n";
    if (Length(seq) > t.gapsize && t.gapsize > Min_overlap) seq = Tail(seq, t.gapsize);
    if (t.gapsize < Min_overlap && Length(seq) > 2 * Min_overlap) seq = Tail(seq, 2 * Min_overlap);
    std::string tmp = seq + t.tmp2;
    if (t.crosses_before(tmp, 2 * ReadLen)) {
        t.log() << "read connect the sequence and before edge!\n";
        return Length(tmp) < Length(t.tmp2) ? NotSure(t) : WithoutLast(tmp, Length(t.tmp2));
    }
    return getN(t.gapsize, Length(seq)) + seq;
}

/// The mirror: a read leads from the before edge to the sequence.
std::string ReadToBefore(ThreeWay& t) {
    std::string& seq = t.seq;
    t.log() << "read connect the sequence and before edge!\n";
    if (Length(seq) > t.gapsize && t.gapsize > Min_overlap) seq = Head(seq, t.gapsize);
    if (t.gapsize < Min_overlap && Length(seq) > 2 * Min_overlap) seq = Head(seq, 2 * Min_overlap);
    std::string tmp = t.tmp1 + seq;
    if (t.crosses_after(tmp)) {
        t.log() << "sequence cutted and have read connect it with after edge!\n";
        // On purpose the size of the after edge goes from the end, though the before edge stands in front.
        return Length(tmp) < Length(t.tmp2) ? NotSure(t) : WithoutLast(tmp, Length(t.tmp2));
    }
    return seq + getN(t.gapsize, Length(seq));
}

/// The sequence cut to one base less than the gap, and one N.
std::string CutWithN(const ThreeWay& t) {
    return Head(t.seq, t.gapsize - 1) + 'N';
}

std::string MaybeMinus(const ThreeWay& t, std::string result) {
    t.log() << "gap size maybe minus!\n";
    return result;
}

/// The before anchor holds and was taken off; the after anchor wasn't found.
std::string CutByBeforeAnchor(ThreeWay& t) {
    std::string& seq = t.seq;
    t.log() << "sequence cut!\n";
    seq = Head(seq, t.gapsize);
    std::string tmp = t.tmp1 + seq;
    if (!t.crosses_after(tmp)) return CutWithN(t);
    t.log() << "read connect seq and after edge. \n";
    return Length(tmp) < Length(t.tmp1) ? MaybeMinus(t, CutWithN(t)) : From(tmp, Length(t.tmp1));
}

/// The before anchor holds and was taken off, and the after anchor stands at pos2 of the uncut sequence.
///
/// @param over1  bases of the uncut sequence up to the end of the before anchor
std::string CutByBothAnchors(ThreeWay& t, int over1, int pos2) {
    int over2 = -1;
    double ratio = 0.0;
    // The anchors were tested for this before, so it doesn't arise.
    if (over1 > pos2) {
        t.log() << "gap size maybe minus!\n";
        t.realgaplen = pos2 - over1;
        if (pass_minus_check(t.tmp1, t.tmp2, over1 - pos2)) {
            t.log() << "gap size is checked to be minus\t" << t.realgaplen << '\n';
            return t.open();
        }
        t.realgaplen = 0;
    } else {
        over2 = Length(t.seq) - pos2 + over1;
        ratio = GetMatchRatio(t.seq, t.tmp2, over2);
    }
    t.log() << "check after overlap: " << over2 << '\t' << ratio << '\n';
    if (over2 < 0) return MaybeMinus(t, CutWithN(t));
    if (ratio > 0.9) {
        t.log() << "after overlap accept " << ratio << '\n';
        // On purpose pos2 isn't moved to the cut sequence.
        return Head(t.seq, pos2);
    }
    return CutWithN(t);
}

/// The after anchor holds, and the sequence was cut in front of it.
std::string ReadToBeforeAnchor(const ThreeWay& t) {
    std::string tmp = (Length(t.seq) > t.gapsize ? Tail(t.seq, t.gapsize) : t.seq) + t.tmp2;
    if (!t.crosses_before(tmp, ReadLen)) return t.open();
    t.log() << "read connect seq and before edge. \n";
    if (Length(tmp) < Length(t.tmp2)) return MaybeMinus(t, t.open());
    t.log() << "fullfill the gap!\n";
    return WithoutLast(tmp, Length(t.tmp2));
}

std::string GiveUp(const ThreeWay& t) {
    t.log() << "cannot fullfill the gap!\n";
    return t.open();
}

/// For a sequence longer than the gap that no read leads to: exact anchors of the edges may show where it stands.
std::string ConnectByAnchors(ThreeWay& t) {
    std::string& seq = t.seq;
    const int pos1 = string_match(Tail(t.tmp1, min_align + 1), seq, 1);
    const int pos2 = string_match(Head(t.tmp2, min_align + 1), seq, 1);
    int over1 = -1;
    int over2 = -1;
    if (pos1 >= 0 && pos2 >= 0 && min_align + pos1 + 1 > pos2) {
        t.realgaplen = -(pos1 - pos2 + min_align) - 1;
        t.log() << "gap size is checked to be minus\t" << t.realgaplen << '\n';
        // Only the gap of one N is believed to be minus.
        if (t.gapsize != 1) t.realgaplen = 0;
        return t.open();
    }
    if (pos1 >= 0) {
        over1 = min_align + pos1 + 1;
        t.log() << "check before overlap: " << over1 << '\n';
        const double ratio = GetMatchRatio(t.tmp1, seq, over1);
        const bool accepted = ratio > 0.9;
        if (accepted) t.log() << "before overlap accept " << ratio << '\n';
        seq = From(seq, over1);
        if (accepted) return pos2 < 0 ? CutByBeforeAnchor(t) : CutByBothAnchors(t, over1, pos2);
    }
    // From here on over1 counts only where seq was cut by it.
    const int cut = pos1 < 0 ? 0 : over1;
    if (pos2 >= 0) {
        t.log() << "after overlap check\n";
        over2 = Length(seq) + cut - pos2;
    }
    if (over2 < 0) return MaybeMinus(t, t.open());
    const double ratio = GetMatchRatio(seq, t.tmp2, over2);
    seq = Head(seq, pos2 - cut);
    if (ratio > 0.9) {
        t.log() << "after overlap accept " << ratio << '\n';
        return ReadToBeforeAnchor(t);
    }
    return GiveUp(t);
}

std::string ConnectNeither(ThreeWay& t) {
    t.log() << "have no clear overlap with before and after!\n";
    // A read only shows the way: the sequence that it lengthens isn't used.
    std::string tmp = t.seq;
    if (t.crosses_after(tmp)) return ReadToAfter(t);
    t.log() << "failed to connect with after edge.\n";
    if (t.crosses_before(tmp, ReadLen)) return ReadToBefore(t);
    t.log() << "failed to connect with before edge!\n";
    return Length(t.seq) > t.gapsize ? ConnectByAnchors(t) : GiveUp(t);
}

}  // namespace

std::string ConnectThree(const std::string& tmp1, std::string& seq, const std::string& tmp2,
                         const std::vector<Read>& reads, int gapsize, int& realgaplen, int threadId) {
    ThreeWay t{tmp1, seq, tmp2, reads, gapsize, realgaplen, threadId};
    const int Max = std::min(Length(tmp1), Length(seq));
    t.log() << "Starting to connect three!\n";
    t.log() << "seq: " << seq << '\n';
    if (Length(seq) < min_align) return t.open();
    t.over1 = align_connect(tmp1, seq, min_align, Max);
    t.over2 = align_connect(seq, tmp2, min_align, Max);
    if (OverlapsBoth(t)) return ConnectBoth(t);
    if (t.over1 > 0) return ConnectBefore(t);
    if (t.over2 < 1) return ConnectNeither(t);
    return ConnectAfter(t);
}

}  // namespace lintara
