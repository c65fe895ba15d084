#include "join/checks.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>

#include "align/edge_seeds.h"
#include "align/overlap.h"
#include "align/piece.h"
#include "align/search.h"
#include "kmer/overlap_matrix.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

bool CheckOver(const std::string& patt, TagInfo*& tagInfo, const std::vector<Read>& reads) {
    if (Length(patt) > 100) return true;
    if (Length(patt) < min_align) return false;
    if (Length(patt) <= 12) return ShortOverCheck(patt, reads);
    return !IsRepeatSeq(patt, tagInfo);
}

bool ShortOverCheck(const std::string& patt, const std::vector<Read>& reads) {
    return std::all_of(reads.begin(), reads.end(),
                       [&patt](const Read& read) { return PattNum(patt, read.seq).size() <= 1; });
}

bool IsRepeatSeq(const std::string& seq, TagInfo*& tagInfo) {
    const int size = Length(seq);
    const int dis = size - TAGL + 1;
    std::map<int, int> repeatDisInfo;
    int maxNum = 0;
    for (int pos = 0; pos < dis && tagInfo != nullptr; ++pos) {
        const std::uint64_t tagBit = seq2bit(seq.substr(static_cast<std::size_t>(pos), TAGL));
        if (tagBit >= static_cast<std::uint64_t>(TAG)) continue;
        const TagInfo& tag = tagInfo[tagBit];
        for (int i = 0; i < tag.differentDistanceNum; ++i) {
            // A period that fits inside the sequence does no harm: it would have shown in the alignment itself.
            if (tag.distancesArr[i] > size) maxNum = std::max(maxNum, ++repeatDisInfo[tag.distancesArr[i]]);
        }
    }
    // One changed base spoils all the tags that cover it.
    const int changedTagNum = size < 12 ? size - 6 : 6;
    return maxNum >= size - 5 - changedTagNum;
}

bool BeforeCrossCheck(std::string& seq, const std::vector<Read>& reads, const std::string& edge, int threadId) {
    std::ofstream& log = logFile[threadId];
    const std::string usetmp = Tail(seq, 2 * Length(edge));
    const EdgeSeeds used(usetmp);
    for (int i = 1; i + 1 < static_cast<int>(reads.size()); ++i) {
        const std::string& r = reads[static_cast<std::size_t>(i)].seq;
        int over1 = forward_overlap(used, r, 1, 0.97);
        // A read that lies inside the sequence is no bridge.
        if (over1 == Length(r)) over1 = 0;
        if (Length(r) < Min_overlap) continue;
        if (over1 < Min_overlap || over1 >= Length(r) || over1 > Length(usetmp)) continue;
        const int over2 = forward_overlap(r, edge, 1, 0.99);
        if (over2 < Min_overlap || over2 == Length(r) || over2 > Length(edge)) continue;
        const int est_len = Length(r) - over1 - over2;
        if (-est_len == Length(seq)) continue;
        log << "read cross the two sequence: " << r << '\n';
        if (est_len >= 0) {
            log << "The two sequence have no overlap!\t" << est_len << '\t' << over1 << '\t' << over2 << '\n';
            seq += Head(From(r, over1), est_len);
            return true;
        }
        const std::string tmp = WithoutLast(r, over2);
        log << "The two sequence have overlap!\t" << est_len << '\t' << over1 << '\t' << over2 << '\n';
        log << tmp << '\t' << Length(tmp) << '\n';
        seq = WithoutLast(seq, -est_len);
        return true;
    }
    return false;
}

bool AfterCrossCheck(const std::string& edge, const std::vector<Read>& reads, std::string& seq, int limit,
                     int threadId) {
    std::ofstream& log = logFile[threadId];
    const EdgeSeeds edge_seeds(edge);
    for (int i = 1; i + 1 < static_cast<int>(reads.size()); ++i) {
        const std::string& r = reads[static_cast<std::size_t>(i)].seq;
        // On this side the edge is contig sequence, so the first overlap is the strict one and may be short.
        const int over1 = forward_overlap(edge_seeds, r, 1, 0.99);
        if (Length(r) > limit) continue;
        if (over1 < min_align || over1 >= Length(r) || over1 > Length(edge)) continue;
        const int over2 = forward_overlap(r, seq, 1, 0.95);
        if (over2 < Min_overlap || over2 >= Length(r) || over2 > Length(seq)) continue;
        // Only here: nothing of the sequence stands between the edge and what follows it.
        if (over1 == over2 && over2 == Length(seq)) {
            log << "Gap size is zero!\n";
            seq.clear();
            return true;
        }
        const int est_len = Length(r) - over1 - over2;
        if (-est_len == Length(seq)) continue;
        log << "read cross the two sequence: " << r << '\n';
        if (est_len >= 0) {
            log << "The two sequence have no overlap!\t" << est_len << '\t' << over1 << '\t' << over2 << '\n';
            seq.insert(0, Head(From(r, over1), est_len));
            return true;
        }
        log << "The two sequence have overlap!\t" << est_len << '\t' << over1 << '\t' << over2 << '\n';
        seq = From(seq, -est_len);
        return true;
    }
    return false;
}

bool pass_minus_check(const std::string& seq1, const std::string& seq2, int over) {
    if (over < min_align) return false;
    const std::string patt1 = Tail(seq1, min_align + 1);
    const std::string patt2 = Head(seq2, min_align + 1);
    const int pos1 = string_match(patt1, seq2, 1);
    const int pos2 = string_match(patt2, seq1, 1);
    int match_len = 0;
    if (pos1 >= 0) get_match_len(seq1, seq2, min_align + pos1, match_len, false);
    if (pos2 >= 0) get_match_len(seq1, seq2, pos2, match_len, true);
    return static_cast<double>(match_len) / over > 0.9;
}

void get_match_len(const std::string& seq1, const std::string& seq2, int pos, int& match, bool flag) {
    if (flag) {
        for (int i = 0; i < Length(seq2) && pos + i >= 0 && pos + i < Length(seq1); ++i) {
            if (seq2[i] != seq1[pos + i]) break;
            ++match;
        }
    } else {
        for (int i = pos; i >= 0 && i < Length(seq2) && pos - i < Length(seq1); --i) {
            if (seq1[Length(seq1) - pos - 1 + i] != seq2[i]) break;
            ++match;
        }
    }
    std::cerr << match << '\n';
}

std::string getN(int gapsize, int seqsize) {
    return Ns(seqsize < gapsize ? gapsize - seqsize : 1);
}

int GetForwardMatchLen(const std::string& seq, int pos1, const std::string& after, int pos2, int len) {
    int count = len;
    for (int i = std::max({len, -pos1, -pos2}); pos1 + i < Length(seq) && pos2 + i < Length(after); ++i) {
        if (seq[pos1 + i] == after[pos2 + i]) ++count;
    }
    return count;
}

bool CutBefore(std::string& seq, const std::string& after) {
    int len = ReadLen / 5;
    std::vector<int> pvec = PattNum(Head(after, len), seq);
    while (pvec.size() > 1 && len <= ReadLen) {
        const int longer = static_cast<int>(len * 1.5);
        // An anchor of one base never grows.
        if (longer == len) return false;
        len = longer;
        pvec = PattNum(Head(after, len), seq);
    }
    if (pvec.size() != 1 || len > ReadLen) return false;
    const int matchlen = GetForwardMatchLen(seq, pvec[0], after, 0, len);
    if (matchlen <= len || matchlen <= ReadLen) return false;
    seq = Head(seq, pvec[0]) + after;
    return true;
}

int min(int num1, int num2, int num3) {
    return std::max({num1 + num2 + num3, num1, num2, num3});
}

}  // namespace lintara
