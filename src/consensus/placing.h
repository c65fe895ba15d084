// Where the reads of a block stand while a path is walked along: a place is set and asked for many times before the
// votes take the places over as a ReadMap, so here they lie in an array by read number.
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

    ReadMap Map() const {
        ReadMap map;
        // Neighbours in an array ascend in address too, so each goes to the end of the map.
        for (std::size_t i = 0; i < reads_.size(); ++i) {
            if (placed_[i] != 0) map.emplace_hint(map.end(), &reads_[i].seq, offsets_[i]);
        }
        return map;
    }

  private:
    const std::vector<Read>& reads_;
    std::vector<int> offsets_;
    std::vector<char> placed_;
};

}  // namespace lintara::consensus
