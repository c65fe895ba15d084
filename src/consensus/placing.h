// Where the reads of a block stand while a path is walked along, and which reads to place next to those of the path. A
// place is set and asked for many times before the votes take the places over, so they lie in an array by read number,
// in place of a map by the address of the read.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "consensus/column.h"
#include "kmer/open_matrix.h"
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

/// The cells of a matrix's row.
struct RowCells {
    const std::uint8_t* row;

    std::uint8_t At(std::size_t i) const { return row[i]; }

    /// Eight cells from i on, the first one in the lowest byte.
    std::uint64_t EightAt(std::size_t i) const {
        std::uint64_t cells = 0;
        std::memcpy(&cells, row + i, sizeof cells);
        if constexpr (std::endian::native == std::endian::big) cells = __builtin_bswap64(cells);
        return cells;
    }
};

/// The same of a column.
struct ColumnCells {
    Overlaps rows;
    std::size_t column;

    std::uint8_t At(std::size_t i) const { return rows[i][column]; }
    std::uint64_t EightAt(std::size_t i) const {
        std::uint64_t cells = 0;
        for (std::size_t k = 0; k < 8; ++k) cells |= std::uint64_t{At(i + k)} << (8 * k);
        return cells;
    }
};

/// Which of up to 64 cells from first on are above 0: a bit each, the first one lowest. No branch depends on a cell,
/// since it could not be foretold.
template <typename Cells>
std::uint64_t AboveZero(Cells cells, std::size_t first, std::size_t size) {
    std::uint64_t above = 0;
    std::size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        const std::uint64_t eight = cells.EightAt(first + i);
        // The highest bit of each byte above 0, then the eight of them side by side.
        const std::uint64_t kLow = 0x7F7F7F7F7F7F7F7F;
        const std::uint64_t highest = (((eight & kLow) + kLow) | eight) & ~kLow;
        above |= ((highest >> 7) * 0x0102040810204080 >> 56) << i;
    }
    for (; i < size; ++i) above |= std::uint64_t{cells.At(first + i) != 0} << i;
    return above;
}

/// Calls visit(std::size_t read) with the numbers below num, ascending, whose cell is above 0.
template <typename Cells, typename Visit>
void EachAboveZero(Cells cells, std::size_t num, Visit visit) {
    for (std::size_t first = 0; first < num; first += 64) {
        std::uint64_t above = AboveZero(cells, first, std::min<std::size_t>(64, num - first));
        for (; above != 0; above &= above - 1) visit(first + static_cast<std::size_t>(std::countr_zero(above)));
    }
}

/// Calls visit(std::size_t read, int over) with each read that overlaps on the right of the matrix's row, by ascending
/// number.
template <typename Visit>
void EachRightOf(const std::uint8_t* row, std::size_t num, Visit visit) {
    EachAboveZero(RowCells{row}, num, [&](std::size_t i) { visit(i, int{row[i]}); });
}

/// The same for the reads that overlap on the left of one read, down its column of a matrix of num reads. Cells that
/// are still open are settled.
template <typename Visit>
void EachLeftOf(Overlaps matrix, std::size_t read, std::size_t num, Visit visit) {
    EachAboveZero(ColumnCells{matrix, read}, num, [&](std::size_t i) {
        const int over = Cell(matrix, static_cast<int>(i), static_cast<int>(read));
        if (over != 0) visit(i, over);
    });
}

}  // namespace lintara::consensus
