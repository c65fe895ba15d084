// The base counts of all columns of a path at once, in place of a search through the placed reads for each column.
//
// Nearly all reads hold the path's own bases, so a read is compared with the path 8 columns at a time, and only the
// columns in which one differs have counts. In every other column the covering reads all stand for the path's base.
// Sums do not depend on the order in which the reads come, so the counts are those of CountColumn(). The buffers live
// as long as the thread: no vote asks for memory once they are large enough.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "run/settings.h"

namespace lintara::consensus {

/// What the reads say about one column.
struct Column {
    int num[4] = {0, 0, 0, 0};  ///< reads for A, C, G and T
    int read_num = 0;           ///< covering reads; those with N count here only
};

class ColumnCounts {
  public:
    /// Counts of the columns of path from first up to last (not included), without a read yet. The path outlives the
    /// counting, and its base in a column stays until the column has been asked for.
    void Begin(const std::string& path, int first, int last);

    /// Counts a read whose first base stands at start.
    void Add(const std::string& seq, int start);

    /// Reads that cover the column of an index, from 0 on.
    ///
    /// @param covering  those of the column before it; 0 ahead of the first
    int Covering(int index, int covering) const { return covering + sites_[Entry(index)].change; }

    /// Whether all reads that cover a column hold the path's base, in either case.
    bool Agrees(int index) const { return sites_[Entry(index)].differing == 0; }

    /// One column, which that many reads cover.
    Column At(int index, int covering) const {
        const int differing = sites_[Entry(index)].differing;
        Column column;
        if (differing != 0) column = differing_[Entry(differing - 1)];
        const int code = alphabet[path_[index]];
        if (code < 4) column.num[code] += covering - column.read_num;
        column.read_num = covering;
        return column;
    }

  private:
    struct Site {
        int change;     // of the number of covering reads, against the column before
        int differing;  // entry of the reads that differ from the path, from 1 on; 0: none does
    };

    static std::size_t Entry(int index) { return static_cast<std::size_t>(index); }
    /// Counts the bases from a column on whose bytes have a bit among those.
    void AddDiffering(int index, const char* bases, std::uint64_t bits);
    void AddDifferingBase(int index, char letter);

    const char* path_ = nullptr;  // its base in the first column
    int first_ = 0;
    int last_ = 0;
    std::vector<Site> sites_;        // by column, and one more
    std::vector<Column> differing_;  // counts of the reads that differ from the path only
};

/// The counts of this thread, which are begun anew by each vote.
ColumnCounts& SpareCounts();

}  // namespace lintara::consensus
