#include "join/edge_connect.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "align/edge_align.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "kmer/open_matrix.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

/// How far an expansion of `size` bases must reach over the opposite edge. It may not be shorter than the gap.
int Overhang(int size, int gapsize, int threadId) {
    const int dis = size - gapsize;
    if (dis < 0) {
        logFile[threadId] << "Decision Error!\t" << size << '\t' << gapsize << '\n';
        logFile[threadId].flush();
        std::exit(-1);
    }
    return dis;
}

/// Shortest overlap with the opposite edge that is tried, bases.
int ShortestOverlap(int dis, int gapsize) {
    const int smaller = std::min(dis - gapsize * 3, gapsize);
    return std::min(std::max(smaller, min_align), 30);
}

/// A filling of three times the gap or more isn't believed, but for short gaps.
bool IsBelieved(const std::string& filling, int gapsize) {
    return gapsize <= 99 || Length(filling) < gapsize * 3;
}

}  // namespace

std::string connect_before(const std::string& seq1, const std::string& seq2, int gapsize, int threadId) {
    std::ofstream& log = logFile[threadId];
    std::string open = Ns(gapsize);
    const int dis = Overhang(Length(seq2), gapsize, threadId);
    const int Min = ShortestOverlap(dis, gapsize);
    // The mirror leaves this line out.
    log << "before read: " << seq1 << '\n';
    if (Length(seq1) < Min || Length(seq2) < Min) return open;
    const int match = align_connect(seq1, seq2, Min);
    log << "overlap with the before edge: " << match << "\tMin" << Min << '\n';
    if (match < 0) {
        const int dis2 = Min - match;
        if (dis2 >= Length(seq2)) return open;
        if (dis2 <= dis) return Length(seq2) < dis + dis2 ? open : Ns(dis2) + From(seq2, dis + dis2);
        // The mirror leaves this line out.
        log << Length(seq2) << '\t' << dis2 << '\t' << dis << '\n';
        return Ns(dis2 - dis) + From(seq2, dis2);
    }
    if (match + Min > Length(seq2)) {
        log << "The real gap size may be minus!\n";
        return open;
    }
    std::string tmp = From(seq2, match + Min);
    return IsBelieved(tmp, gapsize) ? tmp : open;
}

std::string connect_after(const std::string& seq1, const std::string& seq2, int gapsize, int threadId) {
    std::ofstream& log = logFile[threadId];
    std::string open = Ns(gapsize);
    const int dis = Overhang(Length(seq1), gapsize, threadId);
    const int Min = ShortestOverlap(dis, gapsize);
    if (Length(seq1) < Min || Length(seq2) < Min) return open;
    const int match = align_connect(seq1, seq2, Min);
    log << "connect with after edge\t" << match << '\t' << Min << "\t\n";
    if (match < 0) {
        const int dis2 = Min - match;
        if (dis2 >= Length(seq1)) return open;
        if (dis2 <= dis) return Length(seq1) < dis + dis2 ? open : Head(seq1, Length(seq1) - dis - dis2) + Ns(dis2);
        return Head(seq1, Length(seq1) - dis2) + Ns(dis2 - dis);
    }
    // Unlike in the mirror, an overlap of all of the expansion counts as minus too.
    if (Length(seq1) - match - Min < 1) {
        log << "Gap real size may be minus!\n";
        return open;
    }
    std::string tmp = Head(seq1, Length(seq1) - match - Min);
    return IsBelieved(tmp, gapsize) ? tmp : open;
}

namespace {

/// Where `after` holds `before`, or `before` holds `after`, the one speaks for the other. Both may be cut.
std::string CompareWalks(std::string& before, std::string& after, int gapsize, bool& support, int threadId) {
    if (Length(before) < Length(after)) {
        const double ratio1 = GetMatchRatio(before, Head(after, Length(before)), Length(before));
        if (ratio1 > 0.9) {
            logFile[threadId] << "before support!\n";
            support = true;
            return after;
        }
        if (gapsize > ReadLen && Length(before) > gapsize) before = Head(before, gapsize);
        const int pos = string_match(before, after, 1);
        if (pos > 0) {
            support = true;
            after = From(after, pos);
        }
    }
    if (Length(before) > Length(after) && Length(before) > gapsize * 0.8) {
        const std::vector<int> posvec = PattNum(after, before);
        if (!posvec.empty()) {
            support = true;
            return Head(before, posvec.back()) + after;
        }
    }
    return after;
}

}  // namespace

std::string RewardCheck(std::string& before, std::string& after, int gapsize, const std::vector<Read>& reads,
                        TagInfo*& tagInfo, bool& support, int threadId) {
    std::ofstream& log = logFile[threadId];
    const std::string& after_edge = reads.back().seq;
    const std::string tmp = reads.front().seq + before;
    const int match = align_connect(tmp, after_edge, min_align);
    const int over = min_align + match;
    const double ratio = over >= min_align ? GetMatchRatio(tmp, after_edge, over) : 0.0;
    if (match < 0 || ratio <= 0.99) {
        log << "before and after edge have no overlap.\n";
        return CompareWalks(before, after, gapsize, support, threadId);
    }
    log << "Have overlap with after edge!\t" << over << '\n';
    if (over >= Length(after_edge) && over <= Length(before)) {
        log << "Accept the long overlap.\n";
        support = true;
        return WithoutLast(before, over);
    }
    if (over > Length(before)) {
        log << "gapsize maybe minus.\n";
        support = false;
        return after;
    }
    if (!CheckOver(Tail(before, over), tagInfo, reads)) return after;
    log << "pass over check!\n";
    const std::string seq = WithoutLast(before, over);
    support = true;
    return std::abs(gapsize - Length(seq)) >= std::abs(gapsize - Length(after)) ? after : seq;
}

namespace {

/// Whether `edge`, whose bases are equal in this share, is cut off. The `size` in bases stands for the edge's own where
/// only nearly equal edges longer than a read are cut.
bool IsCut(const std::string& edge, double ratio, int size) {
    return (ratio > 0.99 && size > ReadLen) || (Length(edge) * (1 - ratio) < 2.0 && Length(edge) < ReadLen);
}

void CutAfterEdge(std::string& seq, const std::string& after) {
    const int match = align_connect(seq, after, Length(after));
    if (match < 0) {
        const std::vector<int> posvec = PattNum(after, seq);
        if (!posvec.empty()) seq = Head(seq, posvec.front());
        return;
    }
    const int over = Length(after) + match;
    const std::string tmp = Head(From(seq, over), Length(after));
    // Nothing to compare when the overlap is the whole sequence.
    if (tmp.empty()) return;
    if (IsCut(after, GetMatchRatio(tmp, after, Length(after)), Length(after))) seq = WithoutLast(seq, over);
}

void CutBeforeEdge(std::string& seq, const std::string& before, const std::string& after) {
    const int match = align_connect(before, seq, Length(before));
    if (match < 0) {
        const std::vector<int> posvec = PattNum(before, seq);
        if (!posvec.empty()) seq = From(seq, posvec.front() + Length(before));
        return;
    }
    const int over = Length(before) + match;
    // Unlike in the mirror, the bases compared are those of the overlap itself.
    const std::string tmp = Head(From(seq, match), Length(before));
    // On purpose the size of `after`, not that of `before`.
    if (IsCut(before, GetMatchRatio(tmp, before, Length(before)), Length(after))) seq = From(seq, over);
}

}  // namespace

void LongCut(std::string& seq, const std::string& before, const std::string& after, int /*gapsize*/, int threadId) {
    logFile[threadId] << "Begin long cut!\tinitial size: " << Length(seq) << '\n';
    if (Length(after) < Length(seq)) CutAfterEdge(seq, after);
    if (Length(before) < Length(seq)) CutBeforeEdge(seq, before, after);
    logFile[threadId] << "after cut size: " << Length(seq) << '\n';
}

void clearn_order(std::vector<int>& starts) {
    for (auto i = starts.begin(); i != starts.end();) {
        const auto j = std::find(i + 1, starts.end(), *i);
        if (j == starts.end()) {
            ++i;
        } else {
            // The later place may be the start of one more loop.
            std::fill(i, j, -1);
            i = j;
        }
    }
    starts.erase(std::remove(starts.begin(), starts.end(), -1), starts.end());
}

std::vector<int> connect(std::vector<int>& starts, std::vector<int>& ends, std::uint8_t**& /*matrix*/) {
    std::vector<int> tmp = starts;
    tmp.insert(tmp.end(), ends.begin(), ends.end());
    clearn_order(tmp);
    if (tmp.size() >= starts.size() + ends.size()) return starts;
    ends.clear();
    return tmp;
}

bool UndistriCheck(std::uint8_t**& matrix, int num, int threadId) {
    if (num < 4) return true;
    int beforenum = 0;
    int afternum = 0;
    for (int i = 0; i < num; ++i) {
        if (Cell(matrix, 0, i) != 0) ++beforenum;
        if (Cell(matrix, i, num - 1) != 0) ++afternum;
    }
    logFile[threadId] << "before num: " << beforenum << "\tafter num: " << afternum << '\n';
    return (beforenum < 2) != (afternum < 2);
}

}  // namespace lintara
