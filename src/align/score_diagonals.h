// The score table of local_aligning(), filled eight cells at a time.
//
// Stands in place of a table filled row by row. A cell depends on its left, upper and diagonal neighbour, so the cells
// of one diagonal (those of equal i + j) do not depend on each other and go side by side through vectors. Scores fit 16
// bits, since the shorter sequence of a table that local_aligning() takes has below 2,000 bases. Directions are not
// kept: the way back passes few cells, and works them out anew from the scores around each.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace lintara::detail {

const int MATCH_SCORE = 3;
const int MISMATCH_SCORE = -5;
const int GAP_SCORE = -5;

class ScoreDiagonals {
  public:
    /// Fills the table for two sequences, of which one at least has below 10,000 bases.
    ScoreDiagonals(const std::string& seq_i, const std::string& seq_j);

    /// Score of the cell at base i of seq_i and base j of seq_j, both from 1; 0 for i or j 0.
    int Score(int i, int j) const;

    /// Direction of a cell with i and j above 0, see get_max_score().
    int Direction(int i, int j) const;

    /// The best cell; of equal ones that with the largest i, then the largest j. Both sizes when all scores are 0.
    void Best(int& i, int& j, int& score) const;

  private:
    /// The lowest i above 0 on a diagonal.
    int Lowest(int diagonal) const { return diagonal > size_j_ + 1 ? diagonal - size_j_ : 1; }
    std::int64_t Index(int diagonal, int i) const { return diagonal * stride_ + (i - Lowest(diagonal) + 1); }

    void Fill(const std::int16_t* codes_i, const std::int16_t* reverse_j);

    const std::string& seq_i_;
    const std::string& seq_j_;
    int size_i_;
    int size_j_;
    std::int64_t stride_;                    // entries a diagonal
    std::unique_ptr<std::int16_t[]> table_;  // by diagonal: entry 0 is of i below Lowest(), then ascending
    std::unique_ptr<std::int16_t[]> best_;   // highest score of each i
};

}  // namespace lintara::detail
