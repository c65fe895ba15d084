// Which read belongs to which gap, and where. A read is assigned in two ways: it hangs over the end of a contig, where
// its alignment gives the exact place; or its mate is well placed and the insert size lets it reach into the gap, where
// the place is an estimate. Positions are those of the core program: 0 is the gap's first base.
#pragma once

#include <string>
#include <vector>

#include "kit/assign/insert_size.h"
#include "kit/assign/layout.h"

namespace lintara::kit {

/// One read as the mapper placed it.
struct MappedRead {
    std::string name;
    int mate = 0;  ///< 1 or 2; 0: not paired
    bool mapped = false;
    int sequence = -1;  ///< index in the layout
    long start = 0;     ///< aligned bases [start, end) on the sequence
    long end = 0;
    long leadClip = 0;  ///< bases clipped in front of `start`
    long tailClip = 0;  ///< bases clipped behind `end`
    bool reverse = false;
    bool proper = false;  ///< the mapper calls the pair proper
    int quality = 0;      ///< mapping quality
    std::string bases;    ///< upper case, in the direction of the sequence when mapped, else as it was read
};

struct AssignedRead {
    int gap = 0;         ///< id
    long position = 0;   ///< of the first base, on the gap's axis
    bool exact = false;  ///< from an alignment, not from the insert size
    std::string name;
    int mate = 0;
    std::string bases;  ///< in the scaffold's direction
};

inline constexpr int kLeastQuality = 20;    ///< of a read that may be used to place itself or its mate
inline constexpr long kLeastClip = 2;       ///< a longer clip at the contig's end makes a read hang over it
inline constexpr long kNearEnd = 150;       ///< a read that ends so near to the contig's end is taken too, bases
inline constexpr double kDeviations = 3;    ///< how far from its expected place a read may lie
inline constexpr size_t kMostReads = 1900;  ///< of a gap

/// True when the read hangs over the contig end in front of (behind) the gap.
bool HangsBefore(const MappedRead& read, const LayoutGap& gap);
bool HangsAfter(const MappedRead& read, const LayoutGap& gap);
/// True when the read hangs over the end of any contig beside a gap.
bool HangsAnywhere(const MappedRead& read, const Layout& layout);

/// Place of the first base of a read of `length` bases, whose mate is `anchor`, by the median insert size.
long ExpectedStart(const MappedRead& anchor, long length, const InsertSize& insert);

/// Assigns both reads of a pair; `second` may be missing. Adds to `assigned`.
void AssignPair(const MappedRead& first, const MappedRead* second, const Layout& layout, const InsertSize& insert,
                std::vector<AssignedRead>& assigned);

/// Orders a gap's reads by position, name and mate, and thins them evenly to kMostReads.
void OrderAndThin(std::vector<AssignedRead>& reads);

}  // namespace lintara::kit
