#include "join/short_expand.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "align/edge_align.h"
#include "align/piece.h"
#include "consensus/seed.h"
#include "join/checks.h"
#include "kmer/open_matrix.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

/// The answer of a step; none: the next step is asked.
using Answer = std::optional<std::string>;

struct ShortJoin {
    std::string& before;
    std::string& after;
    const int gapsize;
    const std::vector<Read>& reads;
    const std::string& edge0;  ///< before edge
    const std::string& edge1;  ///< after edge
    int& realgaplen;
    const int threadId;

    std::string tmp1{};  ///< edge0 and what of `before` is in use
    std::string tmp2{};  ///< what of `after` is in use, and edge1

    std::ofstream& log() const { return logFile[threadId]; }
    std::string open() const { return Ns(gapsize); }
    int sum() const { return Length(before) + Length(after); }
    int used1() const { return Length(tmp1) - Length(edge0); }
    int used2() const { return Length(tmp2) - Length(edge1); }
};

/// Whether the end of `left` overlaps the start of `right`, and by how many bases.
bool Aligns(const std::string& left, const std::string& right, int& over) {
    const int match = align_connect(left, right, min_align);
    over = min_align + match;
    return match >= 0;
}

/// The sequences overlap past each other: the gap stays open, and its negative size is told.
std::string Minus(ShortJoin& s, int size, const char* message = "real gap size may be minus!\t") {
    s.realgaplen = size;
    s.log() << message << size << '\n';
    return s.open();
}

Answer DirectOverlap(ShortJoin& s) {
    s.log() << "Direct align: \n";
    int over = 0;
    if (!Aligns(s.tmp1, s.tmp2, over)) return std::nullopt;
    s.log() << "Have overlap: " << over << "\tbefore size: " << s.before.size() << "\tafter size: " << s.after.size()
            << '\n';
    if (over <= Length(s.after)) return s.before + From(s.after, over);
    if (over <= Length(s.before)) return WithoutLast(s.before, over) + s.after;
    if (over <= s.sum()) {
        const int overlen = s.sum() - over;
        if (overlen < Length(s.before)) return Head(s.before, overlen);
        if (overlen < Length(s.after)) return Tail(s.after, overlen);
    }
    return Minus(s, s.sum() - over, "gap size maybe minus\t");
}

/// Longest read that may join the two expansions.
int ReadLimit(const ShortJoin& s) {
    const bool far_apart = Length(s.before) >= ReadLen && Length(s.after) >= ReadLen &&
                           Length(s.before) + ReadLen <= s.gapsize && Length(s.after) + ReadLen <= s.gapsize;
    return far_apart ? ReadLen : 2 * ReadLen;
}

Answer DirectRead(ShortJoin& s) {
    const int limit = ReadLimit(s);
    s.log() << "Direct connect: " << limit << '\n';
    if (!AfterCrossCheck(s.tmp1, s.reads, s.tmp2, limit, s.threadId)) return std::nullopt;
    s.log() << "read connect before and after!\n";
    if (Length(s.tmp2) >= Length(s.edge1)) return s.before + WithoutLast(s.tmp2, Length(s.edge1));
    // On purpose reckoned from the whole expansion, not from what the read left of it.
    const int ids = Length(s.edge1) - Length(s.after);
    if (ids > Length(s.before)) return Minus(s, Length(s.before) - ids, "gap size maybe minus\t");
    return WithoutLast(s.before, ids);
}

/// An overlap that covers both expansions leaves of the one what the other one doesn't hold.
Answer OverlapOfBoth(ShortJoin& s, int over) {
    if (over < Length(s.before) || over < Length(s.after)) return std::nullopt;
    const int len = s.sum() - over;
    if (len < 0) return Minus(s, len);
    if (Length(s.before) > len) return Head(s.before, len);
    if (Length(s.after) > len) return Tail(s.after, len);
    return std::nullopt;
}

void CutBeforeSide(ShortJoin& s) {
    if (Length(s.before) <= s.gapsize) return;
    s.tmp1 = s.edge0 + Head(s.before, s.gapsize < min_align ? 2 * min_align : s.gapsize);
}

/// The mirror.
void CutAfterSide(ShortJoin& s) {
    if (Length(s.after) <= s.gapsize) return;
    s.tmp2 = Tail(s.after, s.gapsize < min_align ? 2 * min_align : s.gapsize) + s.edge1;
}

Answer BeforeReachesAfter(ShortJoin& s) {
    if (BeforeCrossCheck(s.tmp1, s.reads, s.tmp2, s.threadId)) {
        s.log() << "read connect short before and after!\n";
        if (s.used1() >= 0) return From(s.tmp1, Length(s.edge0)) + s.after;
        const int ids = -s.used1();
        if (ids > Length(s.after)) return Minus(s, Length(s.after) - ids);
        return From(s.after, ids);
    }
    int over = 0;
    if (!Aligns(s.tmp1, s.tmp2, over)) return std::nullopt;
    s.log() << "have overlap with after : " << over << '\n';
    if (Answer answer = OverlapOfBoth(s, over)) return answer;
    if (over > s.used1()) {
        const int dis = over - Length(s.before);
        if (dis > Length(s.after)) return Minus(s, Length(s.after) - dis);
        return From(s.after, dis);
    }
    // On purpose nothing of the other expansion follows, unlike on the after side.
    return WithoutLast(From(s.tmp1, Length(s.edge0)), over);
}

Answer AfterReachesBefore(ShortJoin& s) {
    if (AfterCrossCheck(s.tmp1, s.reads, s.tmp2, 2 * ReadLen, s.threadId)) {
        s.log() << "read connect short after and before!\n";
        if (s.used2() >= 0) return s.before + WithoutLast(s.tmp2, Length(s.edge1));
        const int dis = -s.used2();
        if (dis > Length(s.before)) return Minus(s, Length(s.before) - dis, "real gaps size maybe minus! ");
        return WithoutLast(s.before, dis);
    }
    int over = 0;
    if (!Aligns(s.tmp1, s.tmp2, over)) return std::nullopt;
    s.log() << "have overlap with before: " << over << '\n';
    if (Answer answer = OverlapOfBoth(s, over)) return answer;
    if (over > s.used2()) {
        // On purpose reckoned from what is in use; the before side reckons from its whole expansion.
        const int dis = over - s.used2();
        if (dis > Length(s.before)) return Minus(s, Length(s.before) - dis);
        return WithoutLast(s.before, dis);
    }
    return s.before + WithoutLast(From(s.tmp2, over), Length(s.edge1));
}

Answer BeforeReachesEdge(ShortJoin& s) {
    if (BeforeCrossCheck(s.tmp1, s.reads, s.edge1, s.threadId)) {
        s.log() << "read connect short before and after edge!\n";
        if (s.used1() < 0) return Minus(s, s.used1());
        return From(s.tmp1, Length(s.edge0));
    }
    int over = 0;
    if (!Aligns(s.tmp1, s.edge1, over)) return std::nullopt;
    s.log() << "have overlap with after edge: " << over << '\n';
    if (over > s.used1()) return Minus(s, s.used1() - over);
    return WithoutLast(From(s.tmp1, Length(s.edge0)), over);
}

/// The mirror; its first message has no tab.
Answer AfterReachesEdge(ShortJoin& s) {
    if (AfterCrossCheck(s.edge0, s.reads, s.tmp2, 2 * ReadLen, s.threadId)) {
        s.log() << "read connect short after and before edge!\n";
        if (s.used2() < 0) return Minus(s, s.used2(), "real gap size may be minus!");
        return WithoutLast(s.tmp2, Length(s.edge1));
    }
    int over = 0;
    if (!Aligns(s.edge0, s.tmp2, over)) return std::nullopt;
    s.log() << "have overlap with before edge: " << over << '\n';
    if (over > s.used2()) return Minus(s, s.used2() - over);
    return WithoutLast(From(s.tmp2, over), Length(s.edge1));
}

/// Both expansions with N between them, cut so that the gap's length holds.
std::string FillBetween(ShortJoin& s) {
    const int g = s.gapsize - 1;
    const int before = Length(s.before);
    const int after = Length(s.after);
    if (before + after < s.gapsize) return s.before + Ns(s.gapsize - before - after) + s.after;
    const bool cut_before = (before > after && after < g) || (before > g && after <= g);
    const bool cut_after = (before <= after && before < g) || (before <= g && after > g);
    if (cut_before) {
        s.before = Head(s.before, s.gapsize - after - 1);
    } else if (cut_after) {
        s.after = Tail(s.after, s.gapsize - before - 1);
    } else {
        return s.open();
    }
    return s.before + 'N' + s.after;
}

std::string FillBefore(const ShortJoin& s) {
    const int g = s.gapsize - 1;
    if (Length(s.before) >= g) return Head(s.before, g) + 'N';
    return s.before + Ns(s.gapsize - Length(s.before));
}

/// The mirror.
std::string FillAfter(const ShortJoin& s) {
    const int g = s.gapsize - 1;
    if (Length(s.after) >= g) return 'N' + Tail(s.after, g);
    return Ns(s.gapsize - Length(s.after)) + s.after;
}

Answer BeforeSide(ShortJoin& s) {
    s.log() << "check cut before: " << s.before << '\n';
    CutBeforeSide(s);
    if (Answer answer = BeforeReachesAfter(s)) return answer;
    // An expansion longer than the gap is kept whole here.
    if (s.after.empty()) {
        s.log() << "after not expand!\n";
        return s.before + getN(s.gapsize, Length(s.before));
    }
    return Length(s.before) > s.gapsize * 0.8 ? BeforeReachesEdge(s) : std::nullopt;
}

/// The other side, with what the before side left of tmp1. On purpose the bare edge is tried only with both expanded,
/// and the fill comes last.
std::string AfterSide(ShortJoin& s) {
    s.log() << "after seq: " << s.after << '\n';
    CutAfterSide(s);
    if (Answer answer = AfterReachesBefore(s)) return *answer;
    if (s.before.empty()) return FillAfter(s);
    if (Length(s.after) > s.gapsize * 0.8) {
        if (Answer answer = AfterReachesEdge(s)) return *answer;
    }
    return FillBetween(s);
}

}  // namespace

std::string SmallExpandFill(std::uint8_t**& matrix, const std::vector<Read>& reads, int*& start, int*& end,
                            TagInfo*& tagInfo, int& realgaplen, int threadId) {
    std::ofstream& log = logFile[threadId];
    log << "Starting to treat the matrix use overlap expand mathod\n";
    const std::size_t num = reads.size();
    const int gap_length = reads.back().pos;
    for (std::size_t i = 0; i < num; ++i) {
        start[i] = Cell(matrix, 0, i);
        end[i] = Cell(matrix, i, num - 1);
    }
    std::string before = From(forward_expand(start, reads, threadId), Length(reads.front().seq));
    std::string after = WithoutLast(reward_expand(end, reads, threadId), Length(reads.back().seq));
    log << "expand result : before size " << before.size() << "\tafter size: " << after.size() << '\n';
    if (before.empty() && after.empty()) return Ns(gap_length);
    return ExpandConnectShort(before, after, gap_length, reads, tagInfo, realgaplen, threadId);
}

std::string ExpandConnectShort(std::string& before, std::string& after, int gapsize, const std::vector<Read>& reads,
                               TagInfo*& /*tagInfo*/, int& realgaplen, int threadId) {
    ShortJoin s{before, after, gapsize, reads, reads.front().seq, reads.back().seq, realgaplen, threadId};
    s.tmp1 = s.edge0 + before;
    s.tmp2 = after + s.edge1;
    s.log() << "connect for short gap " << gapsize << '\n';
    if (Answer answer = DirectOverlap(s)) return *answer;
    if (Answer answer = DirectRead(s)) return *answer;
    if (!before.empty()) {
        if (Answer answer = BeforeSide(s)) return *answer;
    }
    if (!after.empty()) return AfterSide(s);
    // Not reached: an empty after side was settled on the before side.
    return before.empty() ? s.open() : FillBefore(s);
}

}  // namespace lintara
