// Where the reads of a block stand while a path is walked along. A place is set and asked for many times before the
// votes take the places over, so they lie in an array by read number, in place of a map by the address of the read.
#pragma once

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

/// Calls visit(std::size_t read, int over) with each read that overlaps on the right of the matrix's row, by ascending
/// number. Most cells are 0, so eight are looked at together.
template <typename Visit>
void EachRightOf(const std::uint8_t* row, std::size_t num, Visit visit) {
    std::size_t i = 0;
    for (; i + sizeof(std::uint64_t) <= num; i += sizeof(std::uint64_t)) {
        std::uint64_t cells = 0;
        std::memcpy(&cells, row + i, sizeof cells);
        if (cells == 0) continue;
        if constexpr (std::endian::native == std::endian::big) cells = __builtin_bswap64(cells);
        // The highest bit of each byte that is not 0.
        const std::uint64_t kLow = 0x7F7F7F7F7F7F7F7F;
        std::uint64_t bits = (((cells & kLow) + kLow) | cells) & ~kLow;
        for (; bits != 0; bits &= bits - 1) {
            const std::size_t k = i + static_cast<std::size_t>(std::countr_zero(bits)) / 8;
            visit(k, int{row[k]});
        }
    }
    for (; i < num; ++i) {
        if (row[i] != 0) visit(i, int{row[i]});
    }
}

/// The same for the reads that overlap on the left of one read, down its column of a matrix of num reads. Cells that
/// are still open are settled.
template <typename Visit>
void EachLeftOf(Overlaps matrix, std::size_t read, std::size_t num, Visit visit) {
    const auto look = [&](std::size_t i) {
        if (matrix[i][read] == 0) return;
        const int over = Cell(matrix, static_cast<int>(i), static_cast<int>(read));
        if (over != 0) visit(i, over);
    };
    std::size_t i = 0;
    for (; i + 4 <= num; i += 4) {
        if ((matrix[i][read] | matrix[i + 1][read] | matrix[i + 2][read] | matrix[i + 3][read]) == 0) continue;
        for (std::size_t k = i; k < i + 4; ++k) look(k);
    }
    for (; i < num; ++i) look(i);
}

}  // namespace lintara::consensus
