// The tag table of the tandem repeat detector, as a type of its own: the join checks look into a table that the
// detector has filled, and need nothing else of it.
#pragma once

namespace lintara {

/// For one 6-base tag, the distances at which it recurs inside a read. A table has TAG entries, indexed by seq2bit().
struct TagInfo {
    int differentDistanceNum = 0;  ///< number of distinct distances; 0: the arrays mean nothing
    int* distancesArr = nullptr;   ///< distinct distances in bases, in order of first appearance
    int* timesArr = nullptr;       ///< how many tag pairs stand at each distance
    /// Entries that the arrays have room for, in one allocation: the times stand behind the distances. 0: the arrays
    /// are absent or two allocations, each of differentDistanceNum entries.
    int room = 0;
};

}  // namespace lintara
