// An overlap matrix for the consensus tests: all cells 0, set one by one.
#pragma once

#include <cstdint>
#include <vector>

namespace lintara::testing {

class OverlapTable {
  public:
    explicit OverlapTable(std::size_t num) : cells_(num, std::vector<std::uint8_t>(num, 0)) {
        for (auto& row : cells_) rows_.push_back(row.data());
    }
    OverlapTable(const OverlapTable&) = delete;
    OverlapTable& operator=(const OverlapTable&) = delete;

    /// Read left is followed by read right, over bases of both being the same.
    OverlapTable& Set(int left, int right, int over) {
        cells_[left][right] = static_cast<std::uint8_t>(over);
        return *this;
    }
    std::size_t Size() const { return rows_.size(); }
    std::uint8_t** Rows() { return rows_.data(); }

  private:
    std::vector<std::vector<std::uint8_t>> cells_;
    std::vector<std::uint8_t*> rows_;
};

}  // namespace lintara::testing
