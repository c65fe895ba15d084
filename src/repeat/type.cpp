#include "repeat/type.h"

#include <algorithm>
#include <iostream>
#include <string_view>

#include "align/search.h"
#include "repeat/correct.h"
#include "repeat/tag.h"
#include "repeat/unit.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {
namespace {

/// Counts `times` pairs of a tag at one distance. The search for the distance starts at `hint`, goes on to the end and
/// then takes the places before it; `hint` is left one behind the place found, since distances mostly come in the order
/// in which an earlier read brought them.
void AddTimes(TagInfo& tag, int distance, int times, int& hint) {
    const int num = tag.differentDistanceNum;
    const int start = std::min(hint, num);
    int k = start;
    while (k < num && tag.distancesArr[k] != distance) ++k;
    if (k == num) {
        k = 0;
        while (k < start && tag.distancesArr[k] != distance) ++k;
        if (k == start) k = num;
    }
    hint = k + 1;
    if (k < num) {
        tag.timesArr[k] += times;
        return;
    }
    int* distancesArr = new int[num + 1];
    int* timesArr = new int[num + 1];
    std::copy_n(tag.distancesArr, num, distancesArr);
    std::copy_n(tag.timesArr, num, timesArr);
    distancesArr[num] = distance;
    timesArr[num] = times;
    delete[] tag.distancesArr;
    delete[] tag.timesArr;
    tag.distancesArr = distancesArr;
    tag.timesArr = timesArr;
    tag.differentDistanceNum = num + 1;
}

/// Scratch space of the tag scan, shared by all reads of a set.
struct TagScan {
    std::vector<int> tagBitArr;                              ///< the read's tags
    std::vector<int> tagPosArr;                              ///< and their starts
    std::vector<int> next;                                   ///< for each tag, the next one of the same value; -1: none
    std::vector<int> nextOfTag = std::vector<int>(TAG, -1);  ///< by tag value; -1 throughout between reads
    std::vector<int> places;                                 ///< starts of one tag in the read, ascending
    std::vector<int> times;      ///< by distance, pairs of one tag; 0 throughout between tags
    std::vector<int> distances;  ///< distances with pairs, in order of first appearance
};

void ChainEqualTags(TagScan& scan) {
    const int tagNum = static_cast<int>(scan.tagBitArr.size());
    scan.next.resize(tagNum);
    for (int i = tagNum - 1; i >= 0; --i) {
        scan.next[i] = scan.nextOfTag[scan.tagBitArr[i]];
        scan.nextOfTag[scan.tagBitArr[i]] = i;
    }
    for (const int tagBit : scan.tagBitArr) scan.nextOfTag[tagBit] = -1;
}

/// Counts the pairs of one tag in one read. They are counted up before they go to the record, so that a dense repeat
/// searches the record once a distance and not once a pair.
void CountPairs(TagScan& scan, TagInfo& tag) {
    const std::size_t num = scan.places.size();
    for (std::size_t i = 0; i < num; ++i) {
        for (std::size_t j = i + 1; j < num; ++j) {
            const int distance = scan.places[j] - scan.places[i];
            if (scan.times[distance]++ == 0) scan.distances.push_back(distance);
        }
    }
    int hint = 0;
    for (const int distance : scan.distances) {
        AddTimes(tag, distance, scan.times[distance], hint);
        scan.times[distance] = 0;
    }
    scan.distances.clear();
}

/// Counts the tags of a read in `freq`, and in the tag table all its pairs of equal tags. Every pair counts and not
/// only neighbours, so a tag in a repeat of unit u records u, 2u, 3u and so on.
void ScanRead(const std::string& seq, bool skip_n, TagInfo* tagInfo, int* freq, TagScan& scan) {
    scan.tagBitArr.clear();
    scan.tagPosArr.clear();
    const int dis = TagNum(seq);
    const std::string_view bases = seq;
    for (int j = 0; j < dis; ++j) {
        if (skip_n && bases.substr(j, TAGL).find('N') != std::string_view::npos) continue;
        const int mymer = TagAt(seq, j);
        ++freq[mymer];
        scan.tagBitArr.push_back(mymer);
        scan.tagPosArr.push_back(j);
    }
    if (scan.times.size() < seq.size()) scan.times.resize(seq.size(), 0);

    ChainEqualTags(scan);
    for (int i = 0; i < static_cast<int>(scan.next.size()); ++i) {
        scan.places.clear();
        for (int j = i; j >= 0;) {
            scan.places.push_back(scan.tagPosArr[j]);
            const int behind = scan.next[j];
            scan.next[j] = -1;  // a place of this series opens no series of its own
            j = behind;
        }
        if (scan.places.size() > 1) CountPairs(scan, tagInfo[scan.tagBitArr[i]]);
    }
}

void CorrectUntilStable(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int*& freq, int threadId) {
    const int limit = 2 * static_cast<int>(reads.size());
    int correctTime = 0;
    int correctedNum = 1;
    while (correctedNum > 0 && TRLen > 1) {
        ++correctTime;
        correctedNum = CorrectReads(reads, tagInfo, TRLen, freq, threadId);
        if (correctTime > limit) break;
    }
}

bool HasAdjacentCopies(const std::string& seq, int TRLen) {
    const int last = static_cast<int>(seq.size()) - 2 * TRLen;
    for (int pos = 0; pos <= last; ++pos) {
        if (seq.compare(pos, TRLen, seq, pos + TRLen, TRLen) == 0) return true;
    }
    return false;
}

bool HasWordOfRepeatTags(const std::string& seq, const TagInfo* tagInfo, int TRLen) {
    const int words = static_cast<int>(seq.size()) - TRLen + 1;
    for (int pos = 0; pos < words; ++pos) {
        const int tags = TRLen - (TAGL - 1);
        int subPos = 0;
        while (subPos < tags && ExistTRLen(tagInfo[TagAt(seq, pos + subPos)], TRLen)) ++subPos;
        if (subPos >= tags) return true;
        // No word that holds the failing tag can pass, so the next one starts right behind that tag's start.
        pos += subPos;
    }
    return false;
}

}  // namespace

int find_type(std::vector<std::string>& reads, TagInfo*& tagInfo, std::map<std::string, int>& TRSeq, int*& freq,
              int& isMultiTR, int threadId) {
    std::uint64_t total = TAG;
    std::fill(freq, freq + total, 0);
    TagScan scan;
    for (const std::string& read : reads) ScanRead(read, false, tagInfo, freq, scan);
    logFile[threadId] << "get kmer finished!\n";

    isMultiTR = 0;
    const int TRLen = IsTandemRepeat(tagInfo, total, isMultiTR, reads, threadId);
    if (TRLen < 1) return TRLen;

    if (isMultiTR == 0) {
        CorrectUntilStable(reads, tagInfo, TRLen, freq, threadId);
        logFile[threadId] << "There is only a single TR unit.\n";
        GetTRInfo(TRSeq, TRLen, tagInfo, total, freq, reads, threadId);
    } else {
        if (TRLen <= TAGL) {
            GetMultiShortTRInfo(TRSeq, TRLen, tagInfo, total, freq, reads, threadId);
        } else {
            GetMultiLongTRInfo(TRSeq, TRLen, tagInfo, total, freq, reads, threadId);
        }
        logFile[threadId] << "There are " << TRSeq.size() << " TR units of length " << TRLen << ".\n";
    }
    for (const auto& [unit, number] : TRSeq) {
        if (!unit.empty()) logFile[threadId] << "TR sequence: " << unit << "\tTR number: " << number << '\n';
    }
    return TRLen;
}

int IsTandemRepeat(TagInfo*& tagInfo, std::uint64_t total, int& isMultiTR, std::vector<std::string>& reads,
                   int threadId) {
    std::map<int, int> distanceTagTimes;
    std::map<int, int> distanceTagNum;
    for (std::uint64_t i = 0; i < total; ++i) {
        const TagInfo& tag = tagInfo[i];
        for (int k = 0; k < tag.differentDistanceNum; ++k) {
            distanceTagTimes[tag.distancesArr[k]] += tag.timesArr[k];
            ++distanceTagNum[tag.distancesArr[k]];
        }
    }
    if (distanceTagTimes.empty()) return 0;

    int consistentTimes = 0;
    int consistentDistance = 0;
    int maxTimes = 0;
    int distance = 0;
    for (const auto& [dis, times] : distanceTagTimes) {
        if (distanceTagNum[dis] == dis && times > consistentTimes) {
            consistentTimes = times;
            consistentDistance = dis;
        }
        if (times > maxTimes) {
            maxTimes = times;
            distance = dis;
        }
    }
    if (consistentTimes > 0) return CheckAnotherTRLen(reads, tagInfo, consistentDistance, threadId);

    // The entry to the route of several units. Nothing counts into distanceNum in this release, so it stays shut.
    const int distanceNum = 0;
    if (distanceNum > distance) {
        isMultiTR = 1;
        return distance;
    }
    return 0;
}

int CheckAnotherTRLen(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int /*threadId*/) {
    if (TRLen < 1) return 0;
    for (const std::string& read : reads) {
        const bool confirmed =
            TRLen <= TAGL ? HasAdjacentCopies(read, TRLen) : HasWordOfRepeatTags(read, tagInfo, TRLen);
        if (confirmed) return TRLen;
    }
    return 0;
}

void AddDistance(TagInfo*& tagInfo, std::uint64_t tagBit, int distance) {
    int hint = 0;
    AddTimes(tagInfo[tagBit], distance, 1, hint);
}

int ExistTRLen(const TagInfo& tag, int TRLen) {
    for (int k = 0; k < tag.differentDistanceNum; ++k) {
        if (tag.distancesArr[k] == TRLen) return 1;
    }
    return 0;
}

int GetAppearedTimes(const TagInfo& tag, int TRLen) {
    for (int k = 0; k < tag.differentDistanceNum; ++k) {
        if (tag.distancesArr[k] == TRLen) return tag.timesArr[k];
    }
    return 0;
}

void FreetagInfo(TagInfo*& tagInfo) {
    if (tagInfo == nullptr) return;
    for (int i = 0; i < TAG; ++i) {
        if (tagInfo[i].differentDistanceNum <= 0) continue;
        delete[] tagInfo[i].distancesArr;
        delete[] tagInfo[i].timesArr;
    }
    delete[] tagInfo;
    tagInfo = nullptr;
}

void GetTagInfo(std::vector<Read>& reads, TagInfo*& tagInfo, int threadId) {
    std::vector<int> freq(TAG, 0);
    TagScan scan;
    for (const Read& read : reads) ScanRead(read.seq, true, tagInfo, freq.data(), scan);
    logFile[threadId] << "load taginfo finished!\n";
}

int PossbleTR(int*& freq, int total) {
    constexpr int kValues = 256;
    int freqy[kValues] = {};
    for (int i = 0; i < total; ++i) {
        if (freq[i] > 1 && freq[i] < kValues) ++freqy[freq[i]];
    }
    int most = 0;
    int largest = 0;
    for (int value = 0; value < kValues; ++value) {
        if (freqy[value] == 0) continue;
        std::cerr << "freq: " << value << '\t' << freqy[value] << '\n';
        largest = value;
        if (freqy[value] > freqy[most]) most = value;
    }
    return 2 * most <= largest ? 1 : 0;
}

int FreqCheckPass(std::vector<Read>& reads, const std::string& patt1, const std::string& patt11,
                  const std::string& patt2, const std::string& patt20, int threadId) {
    std::size_t num1 = 0;
    std::size_t num11 = 0;
    std::size_t num2 = 0;
    std::size_t num20 = 0;
    for (const Read& read : reads) {
        if (read.seq.size() >= patt1.size()) {
            num1 += PattNum(patt1, read.seq).size();
            num11 += PattNum(patt11, read.seq).size();
        }
        if (read.seq.size() >= patt2.size()) {
            num2 += PattNum(patt2, read.seq).size();
            num20 += PattNum(patt20, read.seq).size();
        }
    }
    logFile[threadId] << "freq: " << num1 << '\t' << num11 << '\t' << num2 << '\t' << num20 << '\n';
    return 1;
}

}  // namespace lintara
