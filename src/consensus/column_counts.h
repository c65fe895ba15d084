// The base counts of all columns of a path at once, in place of a search through the placed reads for each column.
//
// The counts lie apart by base, one byte a column, so that a read is counted 16 columns at a time. A byte holds 255
// reads; a path with more reads carries the bytes over into whole numbers. Sums do not depend on the order in which the
// reads come, so the counts are those of CountColumn(). The buffers live as long as the thread: no vote asks for memory
// once they are large enough.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lintara::consensus {

/// What the reads say about one column.
struct Column {
    int num[4] = {0, 0, 0, 0};  ///< reads for A, C, G and T
    int read_num = 0;           ///< covering reads; those with N count here only
};

class ColumnCounts {
  public:
    /// Counts of the columns from first up to last (not included), all 0.
    void Begin(int first, int last);

    /// Counts a read whose first base stands at start.
    void Add(const std::string& seq, int start);

    /// The columns one after the other, from index 0 on.
    ///
    /// @param covering  in/out: reads that cover the column before it; 0 ahead of the first
    Column Next(int index, int& covering) const {
        const std::size_t i = static_cast<std::size_t>(index);
        Column column;
        for (std::size_t code = 0; code < 4; ++code) column.num[code] = bytes_[code * stride_ + i];
        if (carried_) {
            for (std::size_t code = 0; code < 4; ++code) column.num[code] += carry_[code * stride_ + i];
        }
        column.read_num = covering += changes_[i];
        return column;
    }

  private:
    void Carry();

    int first_ = 0;
    int last_ = 0;
    std::size_t stride_ = 0;           // columns, rounded up
    int counted_ = 0;                  // reads since the last carry
    bool carried_ = false;             // some counts stand in carry_
    std::vector<std::uint8_t> bytes_;  // the counts of A, then those of C, G and T
    std::vector<int> carry_;
    std::vector<int> changes_;  // of the number of covering reads, against the column before
};

/// The counts of this thread, which are begun anew by each vote.
ColumnCounts& SpareCounts();

}  // namespace lintara::consensus
