#include "repeat/type.h"

#include <algorithm>
#include <iostream>

#include "align/search.h"
#include "repeat/correct.h"
#include "repeat/repeat_runs.h"
#include "repeat/single_unit.h"
#include "repeat/tag_reads.h"
#include "repeat/tag_scan.h"
#include "repeat/unit.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {
namespace {

/// What stands in the whole tag table, by distance.
struct DistanceTotals {
    std::vector<int> times;  ///< pairs of all tags
    std::vector<int> tags;   ///< tags that have the distance

    void Add(const TagInfo& tag) {
        for (int k = 0; k < tag.differentDistanceNum; ++k) {
            const int distance = tag.distancesArr[k];
            // A longer distance than there are tags can't be consistent.
            if (distance < 1 || distance > TAG) continue;
            if (static_cast<int>(times.size()) <= distance) {
                times.resize(static_cast<std::size_t>(distance) + 1, 0);
                tags.resize(static_cast<std::size_t>(distance) + 1, 0);
            }
            times[distance] += tag.timesArr[k];
            ++tags[distance];
        }
    }
};

/// The consistent distance with the most pairs, which is yet to be confirmed; 0: there is none.
///
/// @param multi_distance  out: above 0, the unit length of a repeat of several units
int CandidateOf(const DistanceTotals& totals, int& multi_distance) {
    int consistentTimes = 0;
    int consistentDistance = 0;
    int maxTimes = 0;
    int distance = 0;
    for (int dis = 1; dis < static_cast<int>(totals.times.size()); ++dis) {
        const int times = totals.times[dis];
        if (totals.tags[dis] == dis && times > consistentTimes) {
            consistentTimes = times;
            consistentDistance = dis;
        }
        if (times > maxTimes) {
            maxTimes = times;
            distance = dis;
        }
    }
    // The entry to the route of several units. Nothing counts into distanceNum in this release, so it stays shut.
    const int distanceNum = 0;
    multi_distance = consistentTimes == 0 && distanceNum > distance ? distance : 0;
    return consistentDistance;
}

bool HasAdjacentCopies(const TagReads& laid, int read, int TRLen) {
    const char* bases = laid.bases.data();
    int same = 0;
    for (int p = laid.First(read); p < laid.End(read) - TRLen; ++p) {
        same = bases[p] == bases[p + TRLen] ? same + 1 : 0;
        if (same == TRLen) return true;
    }
    return false;
}

/// CheckAnotherTRLen() on reads whose runs of repeat tags are known; those of a short unit are not looked at.
bool Confirmed(const TagReads& laid, const RepeatTags& repeat, int TRLen) {
    if (TRLen <= TAGL) {
        for (int read = 0; read < laid.num(); ++read) {
            if (HasAdjacentCopies(laid, read, TRLen)) return true;
        }
        return false;
    }
    return std::any_of(repeat.runs.begin(), repeat.runs.end(),
                       [TRLen](const RepeatRun& run) { return run.end - run.first >= TRLen - (TAGL - 1); });
}

void LayOut(const std::vector<std::string>& reads, TagReads& laid) {
    laid.Clear();
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
}

void CorrectUntilStable(TagReads& laid, RepeatTags& repeat, int* freq) {
    const int limit = 2 * laid.num();
    int correctTime = 0;
    int correctedNum = 1;
    while (correctedNum > 0) {
        ++correctTime;
        correctedNum = CorrectLaidReads(laid, repeat, freq);
        if (correctTime > limit) break;
    }
}

/// What the detector works with, kept by the thread from gap to gap for its memory.
struct Detector {
    TagReads laid;
    TagScan scan;
    DistanceTotals totals;
    RepeatTags repeat;
};

thread_local Detector detector;

void FindSeveralUnits(const TagReads& laid, int TRLen, TagInfo*& tagInfo, int*& freq, std::map<std::string, int>& TRSeq,
                      int threadId) {
    std::uint64_t total = TAG;
    std::vector<std::string> reads;
    for (int read = 0; read < laid.num(); ++read) reads.push_back(laid.ReadAt(read));
    if (TRLen <= TAGL) {
        GetMultiShortTRInfo(TRSeq, TRLen, tagInfo, total, freq, reads, threadId);
    } else {
        GetMultiLongTRInfo(TRSeq, TRLen, tagInfo, total, freq, reads, threadId);
    }
    logFile[threadId] << "There are " << TRSeq.size() << " TR units of length " << TRLen << ".\n";
}

/// FindBlockType() on the reads that stand in the detector, which gets the corrections. The frequencies are counted
/// only when they are needed, unless they were before.
int FindTypeOfLaid(TagInfo*& tagInfo, std::map<std::string, int>& TRSeq, int*& freq, bool freq_counted, int& isMultiTR,
                   int threadId) {
    TagReads& laid = detector.laid;
    ScanTags(laid, false, tagInfo, detector.scan);
    logFile[threadId] << "get kmer finished!\n";

    isMultiTR = 0;
    DistanceTotals& totals = detector.totals;
    totals.times.clear();
    totals.tags.clear();
    for (const int tag : detector.scan.found) totals.Add(tagInfo[tag]);
    int TRLen = 0;
    const int candidate = CandidateOf(totals, TRLen);
    RepeatTags& repeat = detector.repeat;
    repeat.Clear();
    if (candidate > 0) {
        for (const int tag : detector.scan.found) {
            if (ExistTRLen(tagInfo[tag], candidate)) repeat.Add(tag);
        }
        FindRuns(laid, repeat);
        if (!Confirmed(laid, repeat, candidate)) return 0;
        TRLen = candidate;
        if (TRLen > 1) {
            if (!freq_counted) CountTags(laid, freq);
            freq_counted = true;
            CorrectUntilStable(laid, repeat, freq);
        }
        logFile[threadId] << "There is only a single TR unit.\n";
        GetSingleUnit(laid, repeat, TRLen, freq_counted ? freq : nullptr, TRSeq);
    } else {
        if (TRLen < 1) return TRLen;
        isMultiTR = 1;
        if (!freq_counted) CountTags(laid, freq);
        FindSeveralUnits(laid, TRLen, tagInfo, freq, TRSeq, threadId);
    }
    for (const auto& [unit, number] : TRSeq) {
        if (!unit.empty()) logFile[threadId] << "TR sequence: " << unit << "\tTR number: " << number << '\n';
    }
    return TRLen;
}

}  // namespace

int find_type(std::vector<std::string>& reads, TagInfo*& tagInfo, std::map<std::string, int>& TRSeq, int*& freq,
              int& isMultiTR, int threadId) {
    LayOut(reads, detector.laid);
    CountTags(detector.laid, freq);
    std::fill(freq + kTagValues, freq + TAG, 0);
    const int TRLen = FindTypeOfLaid(tagInfo, TRSeq, freq, true, isMultiTR, threadId);
    // Only reads with a repeat tag can have been corrected.
    for (const RepeatRun& run : detector.repeat.runs) reads[run.read] = detector.laid.ReadAt(run.read);
    return TRLen;
}

int FindBlockType(const std::vector<Read>& reads, std::size_t first, std::size_t end, TagInfo*& tagInfo,
                  std::map<std::string, int>& TRSeq, int*& freq, int& isMultiTR, int threadId) {
    detector.laid.Clear();
    for (std::size_t i = first; i < end; ++i) detector.laid.Append(reads[i].seq);
    detector.laid.FillTags();
    return FindTypeOfLaid(tagInfo, TRSeq, freq, false, isMultiTR, threadId);
}

int IsTandemRepeat(TagInfo*& tagInfo, std::uint64_t total, int& isMultiTR, std::vector<std::string>& reads,
                   int threadId) {
    DistanceTotals totals;
    for (std::uint64_t i = 0; i < total; ++i) totals.Add(tagInfo[i]);
    int multi_distance = 0;
    const int candidate = CandidateOf(totals, multi_distance);
    if (candidate > 0) return CheckAnotherTRLen(reads, tagInfo, candidate, threadId);
    if (multi_distance > 0) isMultiTR = 1;
    return multi_distance;
}

int CheckAnotherTRLen(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int /*threadId*/) {
    if (TRLen < 1) return 0;
    TagReads laid;
    LayOut(reads, laid);
    RepeatTags repeat;
    AddRepeatTags(tagInfo, TRLen, repeat);
    FindRuns(laid, repeat);
    return Confirmed(laid, repeat, TRLen) ? TRLen : 0;
}

void GetTagInfo(std::vector<Read>& reads, TagInfo*& tagInfo, int threadId) {
    TagReads laid;
    for (const Read& read : reads) laid.Append(read.seq);
    laid.FillTags();
    TagScan scan;
    ScanTags(laid, true, tagInfo, scan);
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
