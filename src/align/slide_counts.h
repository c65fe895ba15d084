// The equal columns of many overlap lengths at once, for two sequences that slide over each other.
//
// Stands in place of a count for each length in align_connect(). A base of one sequence meets neighbouring bases of the
// other one in neighbouring overlap lengths, so one comparison with 16 bases counts a column of 16 lengths. Only for
// sequences without N, which lets N stand for what lies behind their ends.
#pragma once

#include <string>

namespace lintara::detail {

class SlideCounts {
  public:
    /// Lengths that are counted together.
    static const int LENGTHS = 64;

    /// @param read_a, read_b  without N, and with a size that Covers() takes; at length i the last i bases of read_a
    ///                        meet the first i of read_b, or as many as read_b has
    /// @param from_left       the twin: they meet as many as read_a has, at the right end of the first i of read_b
    SlideCounts(const std::string& read_a, const std::string& read_b, bool from_left);

    /// Whether sequences of these sizes can be counted.
    static bool Covers(int size_a, int size_b) { return size_a <= MOST_BASES && size_b <= MOST_BASES; }

    /// The largest length that can be counted.
    int Longest() const { return longest_; }

    /// Counts the LENGTHS lengths from first on, which is 1 to Longest().
    ///
    /// @param unequal  most unequal columns that are of interest in any of them
    /// @return false: each has more than that; then nothing is told by Equal()
    bool Count(int first, int unequal);

    /// Equal columns of one of the lengths that were counted last, up to Longest().
    int Equal(int i) const { return totals_[LENGTHS - 1 - (i - first_)]; }

  private:
    static const int MOST_BASES = 30000;

    bool AnyReaches(int equal) const;

    std::string fixed_;  // the sequence whose first bases meet the text's last ones
    std::string text_;   // with LENGTHS letters N on either side
    int longest_;
    int first_ = 0;
    short totals_[LENGTHS] = {};  // by descending length
};

}  // namespace lintara::detail
