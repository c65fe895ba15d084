#include "repeat/unit.h"

#include <algorithm>

#include "align/search.h"
#include "repeat/single_unit.h"
#include "repeat/tag.h"
#include "repeat/type.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {
namespace {

/// What the scans count for one unit, by tag value, and which tag of each kind speaks for it in the end.
struct FlankCounts {
    std::map<int, int> tag;        ///< first repeat tags behind a flank
    std::map<int, int> frontTag;   ///< last flank tags before the repeat
    std::map<int, int> behideTag;  ///< first flank tags behind the repeat
    int tagBit = 0;                ///< last scanned tag until one is picked
    int frontTagBit = 0;           ///< last flank tag until one is picked
    int behideTagBit = 0;
    int frontFlag = 0;   ///< 1: a front tag was picked
    int behideFlag = 0;  ///< 1: a behind tag was picked
};

/// Sets `tagBit` to the key with the largest count, the smallest such key on a tie; leaves it alone for an empty map.
///
/// @return 1 if the map has an entry, else 0
int PickByCount(const std::map<int, int>& counts, int& tagBit) {
    int max = 0;
    for (const auto& [key, count] : counts) {
        if (count > max) {
            max = count;
            tagBit = key;
        }
    }
    return counts.empty() ? 0 : 1;
}

/// The same, by the key's frequency in the reads.
int PickByFreq(const std::map<int, int>& counts, const int* freq, int& tagBit) {
    int max = -1;
    for (const auto& [key, count] : counts) {
        if (freq[key] > max) {
            max = freq[key];
            tagBit = key;
        }
    }
    return counts.empty() ? 0 : 1;
}

int CopyRatioOf(const FlankCounts& counts, int tagFreq, const int* freq) {
    return CopyRatio(tagFreq, counts.frontFlag, freq[counts.frontTagBit], counts.behideFlag, freq[counts.behideTagBit]);
}

/// First of the tags `from`, `from` + 1, ... of the `TRLen` bases at `pos` that does not recur at `TRLen`, counted from
/// `pos`; -1 if all do.
int FirstOtherTag(const std::string& seq, int pos, int from, int TRLen, const TagInfo* tagInfo) {
    for (int subPos = from; subPos < TRLen - (TAGL - 1); ++subPos) {
        if (!ExistTRLen(tagInfo[TagAt(seq, pos + subPos)], TRLen)) return subPos;
    }
    return -1;
}

/// Whether the `len` bases of `a` at `apos` equal those of `b` at `bpos`. Bases outside of a string equal nothing.
bool SameBases(const std::string& a, int apos, const std::string& b, int bpos, int len) {
    if (len <= 0) return true;
    if (apos < 0 || bpos < 0) return false;
    if (apos + len > static_cast<int>(a.size()) || bpos + len > static_cast<int>(b.size())) return false;
    return a.compare(apos, len, b, bpos, len) == 0;
}

int HalfOf(const std::string& seq) {
    return std::max(1, static_cast<int>(seq.size()) / 2);
}

std::string TailOf(const std::string& seq, int len) {
    const int size = static_cast<int>(seq.size());
    return seq.substr(std::max(0, size - len));
}

/// With the query's head at `index` of the target: the rest of the target must go on with the query, and what stands
/// before `index` must be the query's end.
bool HeadFits(const std::string& target, const std::string& query, int index, int subLen) {
    const int targetLen = static_cast<int>(target.size());
    const int queryLen = static_cast<int>(query.size());
    return SameBases(target, index + subLen, query, subLen, targetLen - index - subLen) &&
           SameBases(target, 0, query, queryLen - index, index);
}

/// With the query's tail at `index` of the target: what stands before it must be the query's bases before its tail, and
/// what stands behind it the query's start.
bool TailFits(const std::string& target, const std::string& query, int index, int subLen) {
    const int rest = static_cast<int>(query.size()) - (index + subLen);
    return SameBases(target, 0, query, rest, index) && SameBases(target, index + subLen, query, 0, rest);
}

// ---- several units, no longer than a tag ----

void CollectShortUnits(const std::vector<std::string>& reads, const TagInfo* tagInfo, int TRLen,
                       std::map<std::string, int>& units) {
    for (const std::string& read : reads) {
        if (static_cast<int>(read.size()) <= TAGL) continue;
        const int tagNum = TagNum(read);
        for (int pos = 0; pos < tagNum; ++pos) {
            if (!ExistTRLen(tagInfo[TagAt(read, pos)], TRLen)) continue;
            std::string unit = read.substr(pos, TRLen);
            if (!GotSameTR(units, unit)) units[unit] = 1;
        }
    }
}

void ScanShortUnit(const std::vector<std::string>& reads, const TagInfo* tagInfo, std::string unit, int TRLen,
                   FlankCounts& counts) {
    for (const std::string& read : reads) {
        if (static_cast<int>(read.size()) <= TAGL) continue;
        const int tagNum = TagNum(read);
        bool gotTRTag = false;  // inside a run of this very unit
        bool gotFrontTag = false;
        for (int pos = 0; pos < tagNum; ++pos) {
            counts.tagBit = TagAt(read, pos);
            if (ExistTRLen(tagInfo[counts.tagBit], TRLen)) {
                gotTRTag = IsSameTR(unit, read.substr(pos, TRLen)) == 1;
                if (gotTRTag && gotFrontTag) {
                    ++counts.tag[counts.tagBit];
                    ++counts.frontTag[counts.frontTagBit];
                    gotFrontTag = false;
                }
                continue;
            }
            if (gotTRTag) {
                ++counts.behideTag[counts.tagBit];
            } else {
                gotFrontTag = true;
                counts.frontTagBit = counts.tagBit;
            }
            gotTRTag = false;
        }
    }
}

// ---- several units, longer than a tag ----

void CollectLongUnits(const std::vector<std::string>& reads, const TagInfo* tagInfo, int TRLen,
                      std::map<std::string, int>& units) {
    for (const std::string& read : reads) {
        const int size = static_cast<int>(read.size());
        if (size <= TRLen) continue;
        for (int pos = 0; pos < size - TRLen + 1; ++pos) {
            const int other = FirstOtherTag(read, pos, 0, TRLen, tagInfo);
            if (other >= 0) {
                pos += other;
                continue;
            }
            std::string unit = read.substr(pos, TRLen);
            if (!GotSameTR(units, unit)) units[unit] = 1;
        }
    }
}

void ScanLongUnit(const std::vector<std::string>& reads, const TagInfo* tagInfo, std::string unit, int TRLen,
                  FlankCounts& counts) {
    for (const std::string& read : reads) {
        const int size = static_cast<int>(read.size());
        if (size <= TRLen) continue;
        bool gotTRTag = false;
        bool gotFrontTag = false;
        for (int pos = 0; pos < TagNum(read); ++pos) {
            counts.tagBit = TagAt(read, pos);
            if (ExistTRLen(tagInfo[counts.tagBit], TRLen)) {
                // The last words of a run reach past it and say nothing about the unit, so they leave the state alone.
                if (pos + TRLen > size || FirstOtherTag(read, pos, 1, TRLen, tagInfo) >= 0) continue;
                gotTRTag = IsSameTR(unit, read.substr(pos, TRLen)) == 1;
                if (gotTRTag && gotFrontTag) {
                    ++counts.frontTag[counts.frontTagBit];
                    gotFrontTag = false;
                }
                continue;
            }
            if (gotTRTag) {
                ++counts.behideTag[counts.tagBit];
            } else {
                gotFrontTag = true;
                counts.frontTagBit = counts.tagBit;
            }
            gotTRTag = false;
        }
    }
}

int CountOf(const std::map<int, int>& counts, int tagBit) {
    const auto found = counts.find(tagBit);
    return found == counts.end() ? 0 : found->second;
}

}  // namespace

void GetMultiShortTRInfo(std::map<std::string, int>& isMultiTRSeq, int TRLen, TagInfo*& tagInfo,
                         std::uint64_t& /*total*/, int*& freq, std::vector<std::string>& reads, int /*threadId*/) {
    if (TRLen < 1) return;
    CollectShortUnits(reads, tagInfo, TRLen, isMultiTRSeq);
    for (auto& [unit, TRNum] : isMultiTRSeq) {
        FlankCounts counts;
        ScanShortUnit(reads, tagInfo, unit, TRLen, counts);
        PickByFreq(counts.tag, freq, counts.tagBit);
        counts.frontFlag = PickByFreq(counts.frontTag, freq, counts.frontTagBit);
        counts.behideFlag = PickByFreq(counts.behideTag, freq, counts.behideTagBit);
        if (counts.frontFlag == 0 && counts.behideFlag == 0) continue;
        TRNum = CopyRatioOf(counts, freq[counts.tagBit], freq) + TAGL / TRLen;
    }
}

void GetMultiLongTRInfo(std::map<std::string, int>& isMultiTRSeq, int TRLen, TagInfo*& tagInfo,
                        std::uint64_t& /*total*/, int*& freq, std::vector<std::string>& reads, int threadId) {
    if (TRLen < 1) return;
    CollectLongUnits(reads, tagInfo, TRLen, isMultiTRSeq);
    for (auto& [unit, TRNum] : isMultiTRSeq) {
        logFile[threadId] << "TRSeq:\n" << unit << '\n';
        FlankCounts counts;
        ScanLongUnit(reads, tagInfo, unit, TRLen, counts);

        // The unit's first tag alone stands for the repeat's frequency.
        const int minFreq = std::min(10000, freq[TagAt(unit, 0)]);
        logFile[threadId] << "minimum tag frequence: " << minFreq << '\n';

        counts.frontFlag = PickByCount(counts.frontTag, counts.frontTagBit);
        counts.behideFlag = PickByCount(counts.behideTag, counts.behideTagBit);
        logFile[threadId] << "maximum front tag frequence: " << CountOf(counts.frontTag, counts.frontTagBit) << '\t'
                          << freq[counts.frontTagBit] << '\n';
        logFile[threadId] << "maximum behide tag frequence: " << CountOf(counts.behideTag, counts.behideTagBit) << '\t'
                          << freq[counts.behideTagBit] << '\n';
        if (counts.frontFlag == 0 && counts.behideFlag == 0) continue;
        TRNum = CopyRatioOf(counts, minFreq, freq) + 1;
        logFile[threadId] << "TRNum=" << TRNum << '\n';
    }
}

int IsSameTR(std::string& targetSeq, std::string querySeq) {
    const int subLen = HalfOf(targetSeq);
    int index = KMPSearch(targetSeq, querySeq.substr(0, subLen));
    if (index >= 0) return HeadFits(targetSeq, querySeq, index, subLen) ? 1 : 0;
    index = KMPSearch(targetSeq, TailOf(querySeq, subLen));
    if (index < 0) return 0;
    return TailFits(targetSeq, querySeq, index, subLen) ? 1 : 0;
}

int GotSameTR(std::map<std::string, int>& isMultiTRSeq, std::string& TRSeq) {
    const int subLen = HalfOf(TRSeq);
    const std::string headSubSeq = TRSeq.substr(0, subLen);
    const std::string tailSubSeq = TailOf(TRSeq, subLen);
    for (const auto& entry : isMultiTRSeq) {
        const std::string& key = entry.first;
        int index = KMPSearch(key, headSubSeq);
        if (index >= 0 && HeadFits(key, TRSeq, index, subLen)) return 1;
        index = KMPSearch(key, tailSubSeq);
        if (index >= 0 && TailFits(key, TRSeq, index, subLen)) return 1;
    }
    return 0;
}

}  // namespace lintara
