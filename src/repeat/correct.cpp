#include "repeat/correct.h"

#include <algorithm>

#include "repeat/tag.h"
#include "repeat/type.h"
#include "run/settings.h"

namespace lintara {
namespace {

/// A tag that stands fewer times in the reads is rare, that is suspect of a sequencing error.
constexpr int kRare = 4;

/// Where the walk over one read's tags stands.
struct RunState {
    bool gotTRTag = false;     ///< inside a run of repeat tags
    bool gotFrontTag = false;  ///< the tag before `pos` is no repeat tag and is remembered
    std::string frontTagSeq;   ///< that tag's bases
    int frontTagBit = 0;       ///< and its value
};

void RememberFront(RunState& state, const std::string& read, int pos, int tagBit) {
    state.frontTagSeq.assign(read, pos, TAGL);
    state.frontTagBit = tagBit;
    state.gotFrontTag = true;
}

bool IsRepeatTag(const std::string& tagSeq, const TagInfo* tagInfo, int TRLen) {
    return ExistTRLen(tagInfo[TagAt(tagSeq, 0)], TRLen) > 0;
}

/// The tag right before a run is taken to be wrong in its first base, the only one that no repeat tag covers. The check
/// begins one tag to the left of those that hold this base.
bool CorrectFront(std::string& read, int pos, const RunState& state, TagInfo*& tagInfo, int TRLen, int*& freq,
                  int threadId) {
    std::string candidate = state.frontTagSeq;
    const int startPos = pos < TAGL + 1 ? 0 : pos - (TAGL + 1);
    for (int j = 0; j < 4; ++j) {
        if (base[j] == state.frontTagSeq[0]) continue;
        candidate[0] = base[j];
        if (!IsRepeatTag(candidate, tagInfo, TRLen)) continue;
        if (Replace(read, base[j], startPos, pos, pos, freq, threadId)) return true;
    }
    return false;
}

/// The tag right behind a run is taken to be wrong in its last base. The tag itself is a repeat tag after the change,
/// so the check begins with the one behind it.
bool CorrectBehide(std::string& read, int pos, TagInfo*& tagInfo, int TRLen, int*& freq, int threadId) {
    std::string candidate = read.substr(pos, TAGL);
    const char oldBase = candidate[TAGL - 1];
    const int endPos = std::min(pos + TAGL, TagNum(read));
    for (int j = 0; j < 4; ++j) {
        if (base[j] == oldBase) continue;
        candidate[TAGL - 1] = base[j];
        if (!IsRepeatTag(candidate, tagInfo, TRLen)) continue;
        if (Replace(read, base[j], pos + 1, endPos, pos + TAGL, freq, threadId)) return true;
    }
    return false;
}

int CorrectRead(std::string& read, TagInfo*& tagInfo, int TRLen, int*& freq, int threadId) {
    int correctedNum = 0;
    RunState state;
    const int tagNum = TagNum(read);
    for (int pos = 0; pos < tagNum; ++pos) {
        const int tagBit = TagAt(read, pos);
        if (ExistTRLen(tagInfo[tagBit], TRLen) > 0) {
            state.gotTRTag = true;
            if (state.gotFrontTag && freq[state.frontTagBit] < kRare &&
                CorrectFront(read, pos, state, tagInfo, TRLen, freq, threadId)) {
                ++correctedNum;
            }
            state.gotFrontTag = false;
        } else if (!state.gotTRTag) {
            RememberFront(state, read, pos, tagBit);
        } else if (freq[tagBit] < kRare && CorrectBehide(read, pos, tagInfo, TRLen, freq, threadId)) {
            ++correctedNum;
        } else {
            state.gotTRTag = false;
            RememberFront(state, read, pos, tagBit);
        }
    }
    return correctedNum;
}

}  // namespace

int CorrectReads(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int*& freq, int threadId) {
    int correctedNum = 0;
    for (std::string& read : reads) correctedNum += CorrectRead(read, tagInfo, TRLen, freq, threadId);
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
