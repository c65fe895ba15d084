// Where the tags of one unit length stand in laid-out reads: the runs of repeat tags, between which lies what is no
// repeat. Confirmation, correction and unit extraction ask about the ends of such runs only, so that a block's tags are
// gone through once for all of them, many at a time.
#pragma once

#include <array>
#include <vector>

#include "repeat/tag_info.h"
#include "repeat/tag_reads.h"

namespace lintara {

/// Repeat tags of a read that stand in a row, as many as there are. All places are those of the laid-out reads.
struct RepeatRun {
    int read;
    int first;  ///< place of the first tag
    int end;    ///< place behind the last tag
};

/// The tags that recur at one unit length, and what FindRuns() found of them.
struct RepeatTags {
    std::array<unsigned char, kTagValues> marks{};  ///< by tag value; 1 for a repeat tag
    std::vector<int> tags{};                        ///< the repeat tags
    std::vector<RepeatRun> runs{};                  ///< by place

    bool Has(int tag) const { return marks[static_cast<std::size_t>(tag)] != 0; }
    /// Takes in a tag that is not among them.
    void Add(int tag);
    /// Takes all tags and runs out; the memory stays for the next ones.
    void Clear();
};

/// Adds the repeat tags of a filled table. The program does not call it: FindBlockType() knows the tags that its scan
/// has filled.
void AddRepeatTags(const TagInfo* tagInfo, int TRLen, RepeatTags& repeat);

/// Finds all runs anew.
void FindRuns(const TagReads& laid, RepeatTags& repeat);

/// Finds the runs of some reads anew, the tags of which have changed.
///
/// @param reads  ascending; each has a run before and after the change
void FindRunsAgain(const TagReads& laid, const std::vector<int>& reads, RepeatTags& repeat);

}  // namespace lintara
