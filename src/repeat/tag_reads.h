// The reads of one gap or block laid end to end, with the value of the tag at every place. The repeat detector looks
// at each tag of each read several times over (pairs, correction passes, flanks); laid out like this, the tags are
// worked out once, many at a time, and every later look is one table access.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag.h"
#include "repeat/tag_info.h"

namespace lintara {

struct TagReads {
    std::string bases;                ///< all reads, one behind the other
    std::vector<std::uint16_t> tags;  ///< by place in `bases`; those of a read's last 5 places run past its end
    std::vector<int> starts = {0};    ///< first place of each read, and the place behind the last read
    std::vector<int> holding;         ///< reads with a repeat tag, ascending; see FindHolding()

    int num() const { return static_cast<int>(starts.size()) - 1; }
    int First(int read) const { return starts[static_cast<std::size_t>(read)]; }
    int End(int read) const { return starts[static_cast<std::size_t>(read) + 1]; }
    /// Place behind the last tag of a read; not behind First() for a read without a tag.
    int TagsEnd(int read) const { return End(read) - (TAGL - 1); }
    int Tag(int place) const { return tags[static_cast<std::size_t>(place)]; }

    /// Takes all reads out; the memory stays for the next ones.
    void Clear();
    void Append(const std::string& read);
    /// Works out the tags, once all reads are there.
    void FillTags();
    std::string ReadAt(int read) const;

  private:
    std::vector<unsigned char> codes_;    // base codes by place
    std::vector<unsigned char> triples_;  // values of three bases by place
};

/// Value of the tag whose bases begin at `bases`; the first `num` bases of it only, when told so.
inline int TagOf(const char* bases, int num = TAGL) {
    int tag = 0;
    for (int i = 0; i < num; ++i) tag = (tag * 4) | alphabet[bases[i]];
    return tag;
}

/// Which tags recur at one unit length, by tag value: 1 for a repeat tag.
using RepeatTags = std::array<unsigned char, kTagValues>;

/// The repeat tags of a filled table.
RepeatTags FindRepeatTags(const TagInfo* tagInfo, int TRLen);

/// Notes in `holding` which reads have a repeat tag. Only their bases can be corrected.
void FindHolding(TagReads& laid, const RepeatTags& repeat);

/// First place in a read from which `num` tags in a row are repeat tags; -1: there is none.
///
/// @param num  1 or more
int FirstRun(const TagReads& laid, int read, const RepeatTags& repeat, int num);

}  // namespace lintara
