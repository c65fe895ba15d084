#include "strategy/spanning.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>

#include "align/search.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "strategy/gap_size.h"
#include "strategy/slice.h"

namespace lintara {

namespace {

/// How often a pattern stands in a sequence that is at least as long.
int Places(const std::string& patt, const std::string& str) {
    return static_cast<int>(PattNum(patt, str).size());
}

/// Whether a read that is longer than `over` holds an edge part more than once.
bool Repeated(const std::string& patt, int over, const std::string& str) {
    return Length(str) > over && Places(patt, str) > 1;
}

/// Enlarges an edge part of a read, given by `cut`, until the read holds it once.
template <typename Cut>
void MakeUnique(std::string& patt, int& over, const std::string& read_seq, Cut cut) {
    while (Places(patt, read_seq) >= 2) {
        ++over;
        if (over > Length(read_seq)) break;
        patt = cut(read_seq, over);
    }
}

/// Whether the other reads of the block leave the only spanning read standing: none holds one of its edge parts or its
/// gap part too often, and enough of them hold the gap part.
///
/// @param MinNum  how often the gap part may stand in a read; -1 for a gap below 4 bases, which is not looked for
bool OthersAgree(const std::vector<Read>& reads, int readid, int num, int gapsize, const std::string& gap_seq,
                 int MinNum, const std::string& patt1, int over1, const std::string& patt2, int over2, int threadId) {
    int seq_support_num = 0;
    for (int i = 0; i < num; ++i) {
        if (i == readid) continue;
        const std::string& seq = reads[static_cast<std::size_t>(i)].seq;
        if (Length(seq) > gapsize && gapsize > 3) {
            const int places = Places(gap_seq, seq);
            if (places > MinNum) {
                LogText(threadId) << "Gap sequence may exists more than one copy in the gap region!\n";
                return false;
            }
            if (places == 1) ++seq_support_num;
        }
        if (Repeated(patt1, over1, seq)) return false;
        if (Repeated(patt2, over2, seq)) return false;
    }
    return seq_support_num >= 2 || gapsize < 4;
}

}  // namespace

bool CrossCheck(const std::vector<Read>& reads, const int& gapsize, int readid, int readpos, TagInfo*& /*tagInfo*/) {
    const std::string& read_seq = reads[static_cast<std::size_t>(readid)].seq;
    const int over1 = Length(reads.front().seq) - readpos;
    const int over2 = Length(read_seq) - over1 - gapsize;
    const std::string patt1 = FirstBases(read_seq, over1);
    const std::string patt2 = Tail(read_seq, over2);
    int num = static_cast<int>(reads.size());
    // A very deep gap: the first reads are enough.
    if (gapsize != 0 && 1000 * gapsize <= num) num = 100 * gapsize;
    for (int i = 0; i < num; ++i) {
        const std::string& seq = reads[static_cast<std::size_t>(i)].seq;
        if (Repeated(patt1, over1, seq)) return false;
        if (Repeated(patt2, over2, seq)) return false;
    }
    return true;
}

bool MultiCrossCheck(const std::vector<Read>& reads, const int& gapsize, const std::map<int, int>& read,
                     TagInfo*& tagInfo, int threadId) {
    for (const auto& [readid, readpos] : read) {
        if (!CrossCheck(reads, gapsize, readid, readpos, tagInfo)) continue;
        LogText(threadId) << "pass: " << reads[static_cast<std::size_t>(readid)].seq << "\n";
        return true;
    }
    return false;
}

std::string OneReadCross(const std::vector<Read>& reads, int& gapsize, const std::map<int, int>& read, int threadId) {
    const int readid = read.begin()->first;
    const int position = read.begin()->second;
    const std::string& before_seq = reads.front().seq;
    const std::string& read_seq = reads[static_cast<std::size_t>(readid)].seq;
    int over1 = Length(before_seq) - position;
    int over2 = Length(read_seq) - over1 - gapsize;
    const std::string gap_seq = Slice(read_seq, over1, gapsize);
    if (Length(gap_seq) != gapsize) {
        std::cerr << "gapsize: " << gapsize << "\tposition: " << position << "\tover1: " << over1
                  << "\tread: " << read_seq << "\n";
        std::exit(-1);
    }
    const std::string n_seq = Ns(gapsize);
    const int MinNum = gapsize > 3 ? Places(gap_seq, before_seq + gap_seq + reads.back().seq) : -1;
    LogText(threadId) << "Min num: " << MinNum << "\n";
    if (over1 < min_align || over2 < min_align) {
        gapsize = kUnknownSize;
        return n_seq;
    }

    std::string patt1 = FirstBases(read_seq, over1);
    MakeUnique(patt1, over1, read_seq, Head);
    std::string patt2 = Tail(read_seq, over2);
    MakeUnique(patt2, over2, read_seq, Tail);
    int num = static_cast<int>(reads.size());
    LogText(threadId) << "Checking patt: " << patt1 << "\t" << patt2 << "\tread num: " << num << "\n";
    if (1000 * gapsize <= num) num = 100 * gapsize;
    if (!OthersAgree(reads, readid, num, gapsize, gap_seq, MinNum, patt1, over1, patt2, over2, threadId)) {
        gapsize = kUnknownSize;
        return n_seq;
    }
    LogText(threadId) << "The overlap is not part of repeat, supported by more than 2 reads, and not exitst more than "
                         "once in one read. so the one read is acceptable.\n";
    return gap_seq;
}

std::string TwoReadCross(const std::vector<Read>& reads, int gapsize, const std::map<int, int>& read, int threadId) {
    const auto GapPart = [&](const std::pair<const int, int>& entry) {
        const int over1 = Length(reads.front().seq) - entry.second;
        return Slice(reads[static_cast<std::size_t>(entry.first)].seq, over1, gapsize);
    };
    const std::string tmp1 = GapPart(*read.begin());
    const std::string tmp2 = GapPart(*std::next(read.begin()));
    LogText(threadId) << "Two reads cross the gap and support same gapsize\n"
                      << "choise one(used): " << tmp1 << "\n"
                      << "choise two(unuse) " << tmp2 << "\n";
    int same = 0;
    for (std::size_t i = 0; i < std::min(tmp1.size(), tmp2.size()); ++i) {
        if (tmp1[i] == tmp2[i]) {
            ++same;
        } else {
            LogText(threadId) << "unsame base: " << i << " " << tmp1[i] << " " << tmp2[i] << "\n";
        }
    }
    const double ratio = gapsize == 0 ? 1.0 : static_cast<double>(same) / gapsize;
    LogText(threadId) << "the two reads same ratio: " << ratio << "\n";
    return tmp1;
}

std::string AssembleSmallBlock(const std::vector<Read>& reads, int gapsize, const std::map<int, int>& read,
                               int threadId) {
    std::string seq = Ns(gapsize);
    const int support = static_cast<int>(read.size());
    if (support < 2 || support > 1000 * gapsize) {
        LogText(threadId) << "Support reads number should not be less than 2 or more than 1000 times of gap size!\n";
        return seq;
    }
    if (support == 2) return TwoReadCross(reads, gapsize, read, threadId);

    const std::string& before_seq = reads.front().seq;
    seq = before_seq + seq + reads.back().seq;
    for (int i = 0; i < Length(seq); ++i) {
        char& column = seq[static_cast<std::size_t>(i)];
        column = value_base(column, i, read, reads, threadId);
    }
    return Slice(seq, Length(before_seq), gapsize);
}

bool MinusCheck(int gapsize, const std::vector<Read>& reads) {
    int pattlen = -gapsize;
    // A short pattern is lengthened by min_align, not raised to it.
    if (pattlen < min_align) pattlen += min_align;
    const std::string patt1 = Tail(reads.front().seq, pattlen);
    const std::string patt2 = FirstBases(reads.back().seq, pattlen);
    if (patt1 == patt2) return true;
    bool repeated1 = false;
    bool repeated2 = false;
    for (const Read& read : reads) {
        if (Length(read.seq) < pattlen) continue;
        repeated1 = repeated1 || Places(patt1, read.seq) > 1;
        repeated2 = repeated2 || Places(patt2, read.seq) > 1;
        if (repeated1 && repeated2) return false;
    }
    return true;
}

}  // namespace lintara
