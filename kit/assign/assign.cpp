#include "kit/assign/assign.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace lintara::kit {

namespace {

bool IsClean(const std::string& bases) {
    return !bases.empty() && bases.find_first_not_of("ACGT") == std::string::npos;
}

bool OnSpan(const MappedRead& read, long start, long end) {
    return read.start < end && read.end > start;
}

/// The read can be relied on by itself, or by its mate on the same contig.
bool Trusted(const MappedRead& read, const MappedRead* mate, long contigStart, long contigEnd) {
    if (read.quality >= kLeastQuality) return true;
    return mate != nullptr && mate->mapped && mate->sequence == read.sequence && mate->quality >= kLeastQuality &&
           OnSpan(*mate, contigStart, contigEnd);
}

/// First gap whose after contig does not end in front of `position`.
std::vector<LayoutGap>::const_iterator FirstGap(const std::vector<LayoutGap>& gaps, long position) {
    return std::partition_point(gaps.begin(), gaps.end(),
                                [&](const LayoutGap& gap) { return gap.rightEnd <= position; });
}

std::string InScaffoldDirection(const MappedRead& read, const MappedRead& anchor) {
    // A pair's reads point at each other, so that the read lies in the direction opposite to its mate's.
    bool wantReverse = !anchor.reverse;
    bool isReverse = read.mapped && read.reverse;
    return wantReverse == isReverse ? read.bases : ReverseComplement(read.bases);
}

class PairAssigner {
  public:
    PairAssigner(const Layout& layout, const InsertSize& insert, std::vector<AssignedRead>& assigned)
        : layout_(layout), insert_(insert), assigned_(assigned) {}

    void Assign(const MappedRead& read, const MappedRead* mate) {
        if (!IsClean(read.bases)) return;
        exact_.clear();
        if (read.mapped) ByOwnPlace(read, mate);
        if (mate != nullptr) ByMate(read, *mate);
    }

  private:
    void ByOwnPlace(const MappedRead& read, const MappedRead* mate) {
        const std::vector<LayoutGap>& gaps = layout_.sequences[read.sequence].gaps;
        for (auto gap = FirstGap(gaps, read.start); gap != gaps.end() && gap->leftStart < read.end; ++gap) {
            bool before = HangsBefore(read, *gap) && Trusted(read, mate, gap->leftStart, gap->span.start);
            bool after = HangsAfter(read, *gap) && Trusted(read, mate, gap->span.end, gap->rightEnd);
            if (!before && !after) continue;
            exact_.push_back(gap->id);
            assigned_.push_back(
                {gap->id, read.start - read.leadClip - gap->span.start, true, read.name, read.mate, read.bases});
        }
    }

    void ByMate(const MappedRead& read, const MappedRead& anchor) {
        if (!anchor.mapped || anchor.quality < kLeastQuality || insert_.pairs == 0) return;
        if (read.mapped && read.proper && read.quality >= kLeastQuality) return;
        long length = static_cast<long>(read.bases.size());
        long start = ExpectedStart(anchor, length, insert_);
        double reach = kDeviations * insert_.deviation;
        const std::vector<LayoutGap>& gaps = layout_.sequences[anchor.sequence].gaps;
        auto gap = FirstGap(gaps, start - static_cast<long>(reach) - 1);
        for (; gap != gaps.end(); ++gap) {
            if (static_cast<double>(gap->span.start) >= static_cast<double>(start + length) + reach) break;
            if (static_cast<double>(gap->span.end) <= static_cast<double>(start) - reach) continue;
            if (std::find(exact_.begin(), exact_.end(), gap->id) != exact_.end()) continue;
            assigned_.push_back(
                {gap->id, start - gap->span.start, false, read.name, read.mate, InScaffoldDirection(read, anchor)});
        }
    }

    const Layout& layout_;
    const InsertSize& insert_;
    std::vector<AssignedRead>& assigned_;
    std::vector<int> exact_;  ///< gaps that the present read has by its own place
};

}  // namespace

bool HangsBefore(const MappedRead& read, const LayoutGap& gap) {
    if (!OnSpan(read, gap.leftStart, gap.span.start)) return false;
    bool clipped = read.tailClip > kLeastClip && read.end >= gap.span.start - kLeastClip;
    return clipped || gap.span.start - read.end <= kNearEnd;
}

bool HangsAfter(const MappedRead& read, const LayoutGap& gap) {
    if (!OnSpan(read, gap.span.end, gap.rightEnd)) return false;
    bool clipped = read.leadClip > kLeastClip && read.start <= gap.span.end + kLeastClip;
    return clipped || read.start - gap.span.end <= kNearEnd;
}

bool HangsAnywhere(const MappedRead& read, const Layout& layout) {
    if (!read.mapped) return false;
    const std::vector<LayoutGap>& gaps = layout.sequences[read.sequence].gaps;
    for (auto gap = FirstGap(gaps, read.start); gap != gaps.end() && gap->leftStart < read.end; ++gap) {
        if (HangsBefore(read, *gap) || HangsAfter(read, *gap)) return true;
    }
    return false;
}

long ExpectedStart(const MappedRead& anchor, long length, const InsertSize& insert) {
    long median = std::lround(insert.median);
    // The fragment begins with the anchor's first base as it was read, clipped bases included.
    if (anchor.reverse) return anchor.end + anchor.tailClip - median;
    return anchor.start - anchor.leadClip + median - length;
}

void AssignPair(const MappedRead& first, const MappedRead* second, const Layout& layout, const InsertSize& insert,
                std::vector<AssignedRead>& assigned) {
    PairAssigner assigner(layout, insert, assigned);
    assigner.Assign(first, second);
    if (second != nullptr) assigner.Assign(*second, &first);
}

void OrderAndThin(std::vector<AssignedRead>& reads) {
    std::sort(reads.begin(), reads.end(), [](const AssignedRead& a, const AssignedRead& b) {
        return std::tie(a.position, a.name, a.mate, a.bases) < std::tie(b.position, b.name, b.mate, b.bases);
    });
    if (reads.size() <= kMostReads) return;
    std::vector<AssignedRead> kept;
    kept.reserve(kMostReads);
    for (size_t i = 0; i < kMostReads; ++i) kept.push_back(std::move(reads[i * reads.size() / kMostReads]));
    reads.swap(kept);
}

}  // namespace lintara::kit
