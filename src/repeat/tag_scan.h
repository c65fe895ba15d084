// Counts the tags of laid-out reads, and in the tag table the pairs of equal tags inside each read. A read of 100 bases
// holds one such pair by chance, so the scan costs one step a tag, and only tags that recur in the read are looked at
// again.
#pragma once

#include <vector>

#include "repeat/tag_reads.h"

namespace lintara {

/// Scratch space of the scan, for the reads of many gaps.
struct TagScan {
    std::vector<int> last;       ///< by tag, twice its last place, plus 1 where the tag had recurred in the read
    std::vector<int> next;       ///< by place, the next place of the same tag; -1: none. Set for tags that recur
    std::vector<int> firsts;     ///< first places of tags that recur in a read, and are not yet counted
    std::vector<int> places;     ///< places of one tag in the read, ascending
    std::vector<int> times;      ///< by distance, pairs of one tag; 0 throughout between tags
    std::vector<int> distances;  ///< distances with pairs, in order of first appearance
    std::vector<int> found;      ///< tags whose records got their first distance in this scan
};

/// Counts all tags in `freq` and all pairs of equal tags inside a read in the table. Every pair counts and not only
/// neighbours, so a tag in a repeat of unit u records u, 2u, 3u and so on.
///
/// @param freq     TAG ints, added to
/// @param tagInfo  TAG records, added to
/// @param skip_n   passes over the tags with an `N`
/// @param scan     gets `found`
void ScanTags(const TagReads& laid, bool skip_n, int* freq, TagInfo* tagInfo, TagScan& scan);

/// Counts `times` pairs of a tag at one distance.
///
/// @param hint  in/out: where the search for the distance begins; left one behind the place found, since distances
///              mostly come in the order in which an earlier read brought them
void AddTimes(TagInfo& tag, int distance, int times, int& hint);

}  // namespace lintara
