// Where the reads of a block stand while a path is walked along, and which reads to place next to those of the path. A
// place is set and asked for many times before the votes take the places over, so they lie in an array by read number,
// in place of a map by the address of the read.
#pragma once

#include <cstddef>
#include <vector>

#include "consensus/column.h"
#include "store/gap.h"

namespace lintara::consensus {

class Placing {
  public:
    explicit Placing(const std::vector<Read>& reads) : reads_(reads), offsets_(reads.size()), placed_(reads.size()) {}

    bool Has(std::size_t read) const { return placed_[read] != 0; }

    /// Places a read, or places it anew.
    void Set(std::size_t read, int offset) {
        placed_[read] = 1;
        offsets_[read] = offset;
    }

    /// Where a read has been placed, 0 for one that has not.
    int Offset(std::size_t read) const { return offsets_[read]; }

    /// The placed reads by ascending number.
    std::vector<PlacedRead> Reads() const {
        std::vector<PlacedRead> placed;
        placed.reserve(reads_.size());
        for (std::size_t i = 0; i < reads_.size(); ++i) {
            if (placed_[i] != 0) placed.push_back({&reads_[i].seq, offsets_[i]});
        }
        return placed;
    }

  private:
    const std::vector<Read>& reads_;
    std::vector<int> offsets_;
    std::vector<char> placed_;
};

}  // namespace lintara::consensus
