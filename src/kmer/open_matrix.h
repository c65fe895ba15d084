// The overlap matrix of a block whose cells are settled when they are first asked for.
//
// Replaces, for the block driver, the k-mer table, its seeds and overlap_matrix(), which compare every pair of reads
// that share a k-mer. The walks and votes ask for the reads around their own path only, about a fifth of these pairs;
// those of a read on a path are settled together.
// A cell that is still open holds OPEN_CELL; whoever reads the matrix of a block does it through Cell(), or calls
// SettleRow() or SettleColumn() before going along one. A matrix that was filled otherwise has no open cells, so that
// both are plain reads on it.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kmer/pair_overlap.h"
#include "store/gap.h"

namespace lintara {

/// Value of a cell that is not settled yet. No overlap of inner reads of an open matrix is that long; one of its two
/// edges may be, and is left as it is.
const std::uint8_t OPEN_CELL = 255;

namespace detail {
/// Settles the cells of two reads, if the matrix is the thread's open one and both are inner reads.
void SettlePair(const std::uint8_t* const* matrix, int a, int b);
}  // namespace detail

/// matrix[a][b], settled.
inline int Cell(const std::uint8_t* const* matrix, int a, int b) {
    if (matrix[a][b] == OPEN_CELL) detail::SettlePair(matrix, a, b);
    return matrix[a][b];
}

/// Sets matrix[a][b] to 0; its mirror keeps what it has.
inline void ClearCell(std::uint8_t** matrix, int a, int b) {
    if (matrix[a][b] == OPEN_CELL) detail::SettlePair(matrix, a, b);
    matrix[a][b] = 0;
}

/// The reads with which a read may have a cell above 0, in its row or in its column.
class Partners {
  public:
    Partners() = default;
    Partners(const std::uint64_t* bits, std::size_t words) : bits_(bits), words_(words) {}

    bool known() const { return bits_ != nullptr; }

    /// Calls visit(read) for each, by ascending number.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (std::size_t i = 0; i < words_; ++i) {
            for (std::uint64_t bits = bits_[i]; bits != 0; bits &= bits - 1) {
                visit(static_cast<int>(64 * i) + std::countr_zero(bits));
            }
        }
    }

  private:
    const std::uint64_t* bits_ = nullptr;  // a bit for each read; of the open matrix
    std::size_t words_ = 0;
};

/// The partners of an inner read of the thread's open matrix, their pairs settled; unknown for any other. Cells of all
/// other reads may still be open, which then are 0.
Partners SettledPartners(const std::uint8_t* const* matrix, int read);

/// Settles the row of a read.
void SettleRow(const std::uint8_t* const* matrix, int read);

/// Settles the column of a read.
void SettleColumn(const std::uint8_t* const* matrix, int read);

/// Settles all cells of num reads.
void SettleAll(const std::uint8_t* const* matrix, int num);

/// The open matrix of one block and all that it takes to settle it. While it stands, it is the thread's open matrix;
/// one that is made meanwhile takes its place until it ends.
class OpenMatrix {
  public:
    OpenMatrix();
    ~OpenMatrix();
    OpenMatrix(const OpenMatrix&) = delete;
    OpenMatrix& operator=(const OpenMatrix&) = delete;

    /// Lays out a block and makes a matrix of zeros, but for the mark of a shared k-mer that the reads of a type 2
    /// block's first row keep in the column of the edge.
    ///
    /// @param reads  must outlive the matrix; may be cut until Release()
    /// @return false, with nothing done, when the block is beyond what the words cover
    bool Begin(const std::vector<Read>& reads, int method, int type);

    /// Measures overlap(before edge, read) of all inner reads, unless one of them is longer than the edge and may have
    /// to be cut there.
    /// @param overlaps  out: by read; left alone when nothing is measured
    void MeasureBeforeEdge(std::vector<int>& overlaps);

    /// The same of overlap(read, after edge), when the reads and the edge may have been cut at the before edge.
    void MeasureAfterEdge(std::vector<int>& overlaps);

    /// Opens the cells of all pairs of inner reads. Those of the edges are the caller's.
    void Release();

    /// num row pointers, owned here.
    std::uint8_t** cells();

  private:
    friend void detail::SettlePair(const std::uint8_t* const* matrix, int a, int b);
    friend Partners SettledPartners(const std::uint8_t* const* matrix, int read);
    friend void SettleRow(const std::uint8_t* const* matrix, int read);
    friend void SettleColumn(const std::uint8_t* const* matrix, int read);
    struct State;
    static std::unique_ptr<State>& Spare();  // of the thread: the memory of a block goes to its next one
    std::unique_ptr<State> state_;
    OpenMatrix* outer_;  // the thread's open matrix before this one
};

}  // namespace lintara
