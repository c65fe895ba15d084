#include "repeat/correct.h"

#include <algorithm>

#include "repeat/tag.h"
#include "run/settings.h"

namespace lintara {
namespace {

/// A tag that stands fewer times in the reads is rare, that is suspect of a sequencing error.
constexpr int kRare = 4;

/// One read while its bases are corrected. All places are those of the laid-out reads.
struct Correction {
    TagReads& laid;
    const RepeatTags& repeat;
    int* freq;
    int first;     ///< first place of the read
    int tags_end;  ///< place behind its last tag
};

/// Tries to write `new_base` at a place, in the way of Replace(): the tags from `from` up to `end` must all be frequent
/// after the change.
bool ReplaceLaid(const Correction& c, char new_base, int place, int from, int end) {
    char* bases = c.laid.bases.data();
    const char old_base = bases[place];
    bases[place] = new_base;
    for (int p = from; p < end; ++p) {
        if (c.freq[TagOf(bases + p)] < kRare) {
            bases[place] = old_base;
            return false;
        }
    }
    for (int p = from; p < end; ++p) --c.freq[c.laid.Tag(p)];
    // The tags that hold the base, which are not quite those of the range.
    for (int p = std::max(c.first, place - (TAGL - 1)); p <= place && p < c.tags_end; ++p) {
        c.laid.tags[p] = static_cast<std::uint16_t>(TagOf(bases + p));
    }
    for (int p = from; p < end; ++p) ++c.freq[c.laid.Tag(p)];
    return true;
}

/// The tag right before a run, whose first repeat tag stands at `p`, is taken to be wrong in its first base, the only
/// one that no repeat tag covers. The check begins one tag to the left of those that hold this base.
bool CorrectFront(const Correction& c, int p) {
    const int place = p - 1;
    const char old_base = c.laid.bases[place];
    const int rest = TagOf(c.laid.bases.data() + p, TAGL - 1);
    const int from = std::max(c.first, p - (TAGL + 1));
    for (int j = 0; j < 4; ++j) {
        if (base[j] == old_base || !c.repeat.Has((j << (2 * (TAGL - 1))) | rest)) continue;
        if (ReplaceLaid(c, base[j], place, from, p)) return true;
    }
    return false;
}

/// The tag right behind a run, at `p`, is taken to be wrong in its last base. The tag itself is a repeat tag after the
/// change, so the check begins with the one behind it.
bool CorrectBehide(const Correction& c, int p) {
    const int place = p + TAGL - 1;
    const char old_base = c.laid.bases[place];
    const int rest = TagOf(c.laid.bases.data() + p, TAGL - 1) << 2;
    const int end = std::min(p + TAGL, c.tags_end);
    for (int j = 0; j < 4; ++j) {
        if (base[j] == old_base || !c.repeat.Has(rest | j)) continue;
        if (ReplaceLaid(c, base[j], place, p + 1, end)) return true;
    }
    return false;
}

int CorrectRead(const Correction& c) {
    int correctedNum = 0;
    bool gotTRTag = false;     // inside a run of repeat tags
    bool gotFrontTag = false;  // the tag before this one is no repeat tag
    for (int p = c.first; p < c.tags_end; ++p) {
        const int tag = c.laid.Tag(p);
        if (c.repeat.Has(tag)) {
            gotTRTag = true;
            if (gotFrontTag && c.freq[c.laid.Tag(p - 1)] < kRare && CorrectFront(c, p)) ++correctedNum;
            gotFrontTag = false;
        } else if (!gotTRTag) {
            gotFrontTag = true;
        } else if (c.freq[tag] < kRare && CorrectBehide(c, p)) {
            ++correctedNum;
        } else {
            gotTRTag = false;
            gotFrontTag = true;
        }
    }
    return correctedNum;
}

/// Whether a rare tag stands right beside a run; without one there is nothing to correct at it.
bool Suspect(const TagReads& laid, const RepeatRun& run, const int* freq) {
    if (run.first > laid.First(run.read) && freq[laid.Tag(run.first - 1)] < kRare) return true;
    return run.end < laid.TagsEnd(run.read) && freq[laid.Tag(run.end)] < kRare;
}

}  // namespace

int CorrectLaidReads(TagReads& laid, RepeatTags& repeat, int* freq) {
    int correctedNum = 0;
    std::vector<int> corrected;  // reads
    const int num = static_cast<int>(repeat.runs.size());
    for (int i = 0; i < num;) {
        const int read = repeat.runs[i].read;
        bool suspect = false;
        for (; i < num && repeat.runs[i].read == read; ++i) suspect = suspect || Suspect(laid, repeat.runs[i], freq);
        if (!suspect) continue;
        const int bases = CorrectRead({laid, repeat, freq, laid.First(read), laid.TagsEnd(read)});
        if (bases > 0) corrected.push_back(read);
        correctedNum += bases;
    }
    FindRunsAgain(laid, corrected, repeat);
    return correctedNum;
}

int CorrectReads(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int*& freq, int /*threadId*/) {
    TagReads laid;
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
    RepeatTags repeat;
    AddRepeatTags(tagInfo, TRLen, repeat);
    FindRuns(laid, repeat);
    const int correctedNum = CorrectLaidReads(laid, repeat, freq);
    for (const RepeatRun& run : repeat.runs) reads[run.read] = laid.ReadAt(run.read);
    return correctedNum;
}

bool Replace(std::string& readSeq, char newBase, int startPos, std::string::size_type endPos,
             std::string::size_type subEndPos, int*& freq, int /*threadId*/) {
    if (subEndPos < 1 || subEndPos > readSeq.size()) return false;
    std::string newSeq = readSeq;
    newSeq[subEndPos - 1] = newBase;
    const int start = std::max(startPos, 0);
    const int end = static_cast<int>(std::min(endPos, readSeq.size()));
    for (int p = start; p < end; ++p) {
        if (freq[TagAt(newSeq, p)] < kRare) return false;
    }
    for (int p = start; p < end; ++p) --freq[TagAt(readSeq, p)];
    readSeq.swap(newSeq);
    for (int p = start; p < end; ++p) ++freq[TagAt(readSeq, p)];
    return true;
}

}  // namespace lintara
