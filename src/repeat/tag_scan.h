// Finds the pairs of equal tags inside each of the laid-out reads, and counts them in the tag table. A read of 100
// bases holds one such pair by chance, so the scan costs one step a tag, and only tags that recur in the read are
// looked at again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "repeat/tag_info.h"
#include "repeat/tag_reads.h"

namespace lintara {

/// A tag that stood in the read before. Places count on from scan to scan.
struct Recurrence {
    int before;  ///< its last place
    int place;   ///< its place now
    int tag;     ///< set when all recurrences of some reads are there, as is the next one
    int next;    ///< index of its next recurrence in the read; -1: none
};

/// Where tags stood last. Two bytes a place are enough for most reads, and leave the caches to the tags.
template <typename Place>
struct LastPlaces {
    std::vector<Place> last{};  ///< by tag; 0: none. Places below those of the present read are of other reads
    int end = 0;                ///< place behind the last read
};

/// Scratch space of the scan, for the reads of many gaps.
struct TagScan {
    LastPlaces<std::uint16_t> short_places;
    LastPlaces<int> long_places;          ///< in use when a read has too many bases for the other
    std::vector<Recurrence> recurrences;  ///< those not yet counted, and room behind them
    std::vector<int> latest;              ///< by tag, index of its last recurrence, perhaps of another read
    std::vector<int> firsts;              ///< indices of the first recurrences of tags in reads, and room behind them
    std::vector<int> places;              ///< places of one tag in the read, ascending, and room behind them
    std::vector<int> entries;  ///< by distance, its entry in the record of one tag; -1 throughout between tags
    std::vector<int> found;    ///< tags whose records got their first distance in this scan
};

/// Counts all pairs of equal tags inside a read in the table. Every pair counts and not only neighbours, so a tag in a
/// repeat of unit u records u, 2u, 3u and so on.
///
/// @param skip_n   passes over the tags with an `N`
/// @param tagInfo  TAG records, added to
/// @param scan     gets `found`
void ScanTags(const TagReads& laid, bool skip_n, TagInfo* tagInfo, TagScan& scan);

/// Gives the tag its first pairs at a distance.
void AppendDistance(TagInfo& tag, int distance, int times);

/// AddTimes() where the distance is not at `hint`.
void AddTimesElsewhere(TagInfo& tag, int distance, int times, int& hint);

/// Counts `times` pairs of a tag at one distance.
///
/// @param hint  in/out: where the search for the distance begins; left one behind the place found, since distances
///              mostly come in the order in which an earlier read brought them
inline void AddTimes(TagInfo& tag, int distance, int times, int& hint) {
    if (hint < tag.differentDistanceNum && tag.distancesArr[hint] == distance) {
        tag.timesArr[hint++] += times;
    } else {
        AddTimesElsewhere(tag, distance, times, hint);
    }
}

}  // namespace lintara
