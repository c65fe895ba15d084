// The reads of one gap or block laid end to end, with the value of the tag at every place. The repeat detector looks
// at each tag of each read several times over (pairs, correction passes, flanks); laid out like this, the tags are
// worked out once, many at a time, and every later look is one table access.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag.h"

namespace lintara {

struct TagReads {
    /// Places that loops over `tags` take at once: there is an entry for each place of a begun stretch. Loops of a
    /// fixed length need no second loop for what is left.
    static constexpr int kStretch = 1024;

    std::string bases;                ///< all reads, one behind the other
    std::vector<std::uint16_t> tags;  ///< by place in `bases`; those of a read's last 5 places run past its end
    std::vector<int> starts = {0};    ///< first place of each read, and the place behind the last read

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
};

/// Value of the tag whose bases begin at `bases`; the first `num` bases of it only, when told so.
inline int TagOf(const char* bases, int num = TAGL) {
    int tag = 0;
    for (int i = 0; i < num; ++i) tag = (tag * 4) | alphabet[bases[i]];
    return tag;
}

/// Sets the frequencies to how often each tag stands in the reads.
///
/// @param freq  kTagValues ints or more; those behind stay as they are
void CountTags(const TagReads& laid, int* freq);

/// How often one tag stands in the reads.
int CountTag(const TagReads& laid, int tag);

}  // namespace lintara
