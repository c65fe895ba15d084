#include "repeat/single_unit.h"

#include <string_view>

#include "kmer/overlap_matrix.h"
#include "repeat/unit.h"

namespace lintara {
namespace {

/// How often each of some tags was met.
struct TagCounts {
    std::vector<int> count = std::vector<int>(kTagValues, 0);  ///< by tag
    std::vector<int> tags{};                                   ///< those with a count

    void Add(int tag) {
        if (count[tag]++ == 0) tags.push_back(tag);
    }

    /// Sets `tagBit` to the tag with the largest count, the smallest such tag on a tie; leaves it alone when there is
    /// none.
    ///
    /// @return 1 if there is a tag, else 0
    int Pick(int& tagBit) const {
        int best = -1;
        for (const int tag : tags) {
            if (best < 0 || count[tag] > count[best] || (count[tag] == count[best] && tag < best)) best = tag;
        }
        if (best >= 0) tagBit = best;
        return tags.empty() ? 0 : 1;
    }

    void Clear() {
        for (const int tag : tags) count[tag] = 0;
        tags.clear();
    }
};

/// Where the repeat begins and ends in the reads.
struct Flanks {
    TagCounts tag;        ///< first repeat tags behind a flank
    TagCounts frontTag;   ///< last flank tags before the repeat
    TagCounts behideTag;  ///< first flank tags behind the repeat
    int tagBit = 0;       ///< last tag of all
    int frontTagBit = 0;  ///< last flank tag
    bool gotTRTag = false;
    bool gotFrontTag = false;

    void Clear() {
        for (TagCounts* counts : {&tag, &frontTag, &behideTag}) counts->Clear();
        tagBit = frontTagBit = 0;
        gotTRTag = gotFrontTag = false;
    }
    void MeetRepeat(int tag_bit) {
        gotTRTag = true;
        if (!gotFrontTag) return;
        tag.Add(tag_bit);
        frontTag.Add(frontTagBit);
        gotFrontTag = false;
    }
    void MeetOther(int tag_bit) {
        if (gotTRTag) {
            behideTag.Add(tag_bit);
            gotTRTag = false;
        } else {
            gotFrontTag = true;
            frontTagBit = tag_bit;
        }
    }
    /// All flank tags from one place up to another. Between the first and the last of them nothing changes.
    void MeetOthers(const TagReads& laid, int from, int end) {
        if (from >= end) return;
        MeetOther(laid.Tag(from));
        if (end - from > 1) MeetOther(laid.Tag(end - 1));
    }
};

bool HasN(const TagReads& laid, int read) {
    const std::string_view bases = laid.bases;
    return bases.substr(laid.First(read), laid.End(read) - laid.First(read)).find('N') != std::string_view::npos;
}

/// Nothing is reset between reads on purpose: a run or a flank at the end of one read goes on at the start of the next.
void ScanFlanks(const TagReads& laid, const RepeatTags& repeat, bool any_n, Flanks& flanks) {
    auto run = repeat.runs.begin();
    for (int read = 0; read < laid.num(); ++read) {
        const auto runs_begin = run;
        while (run != repeat.runs.end() && run->read == read) ++run;
        int place = laid.First(read);
        const int end = laid.TagsEnd(read);
        if (end <= place || (any_n && HasN(laid, read))) continue;
        flanks.tagBit = laid.Tag(end - 1);
        for (auto r = runs_begin; r != run; ++r) {
            flanks.MeetOthers(laid, place, r->first);
            flanks.MeetRepeat(laid.Tag(r->first));  // those behind it in the run change nothing
            place = r->end;
        }
        flanks.MeetOthers(laid, place, end);
    }
}

/// First word of `TRLen` bases, above 6, all of whose tags are repeat tags; empty if no read without an `N` has one.
std::string FirstRepeatWord(const TagReads& laid, const RepeatTags& repeat, bool any_n, int TRLen) {
    for (const RepeatRun& run : repeat.runs) {
        if (run.end - run.first < TRLen - (TAGL - 1) || (any_n && HasN(laid, run.read))) continue;
        return laid.bases.substr(static_cast<std::size_t>(run.first), static_cast<std::size_t>(TRLen));
    }
    return "";
}

}  // namespace

void GetSingleUnit(const TagReads& laid, const RepeatTags& repeat, int TRLen, const int* freq,
                   std::map<std::string, int>& TRSeq) {
    const bool any_n = laid.bases.find('N') != std::string::npos;
    static thread_local Flanks flanks;  // kept from gap to gap for its memory
    flanks.Clear();
    ScanFlanks(laid, repeat, any_n, flanks);

    int tagBit = flanks.tagBit;
    int frontTagBit = flanks.frontTagBit;
    int behideTagBit = 0;
    flanks.tag.Pick(tagBit);
    const int frontFlag = flanks.frontTag.Pick(frontTagBit);
    const int behideFlag = flanks.behideTag.Pick(behideTagBit);
    if (frontFlag == 0 && behideFlag == 0) return;

    const std::string TRUnit =
        TRLen <= TAGL ? bit2seq(tagBit).substr(0, TRLen) : FirstRepeatWord(laid, repeat, any_n, TRLen);
    const auto freq_of = [&](int tag) { return freq != nullptr ? freq[tag] : CountTag(laid, tag); };
    // One tag spans 6 / TRLen copies.
    int TRNum =
        CopyRatio(freq_of(tagBit), frontFlag, freq_of(frontTagBit), behideFlag, freq_of(behideTagBit)) + TAGL / TRLen;
    if (TRLen > TAGL) ++TRNum;
    TRSeq[TRUnit] = TRNum;
}

int CopyRatio(int tagFreq, int frontFlag, int frontFreq, int behideFlag, int behideFreq) {
    const int flags = frontFlag + behideFlag;
    double freqbase = static_cast<double>(frontFreq) * frontFlag + static_cast<double>(behideFreq) * behideFlag;
    if (freqbase == 0) freqbase = static_cast<double>(tagFreq) * flags;
    if (freqbase == 0) return 0;
    return static_cast<int>(static_cast<double>(tagFreq) * flags / freqbase);
}

void GetTRInfo(std::map<std::string, int>& TRSeq, int TRLen, TagInfo*& tagInfo, std::uint64_t /*total*/, int*& freq,
               std::vector<std::string>& reads, int /*threadId*/) {
    if (TRLen < 1) return;
    TagReads laid;
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
    RepeatTags repeat;
    AddRepeatTags(tagInfo, TRLen, repeat);
    FindRuns(laid, repeat);
    GetSingleUnit(laid, repeat, TRLen, freq, TRSeq);
}

}  // namespace lintara
