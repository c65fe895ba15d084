// The candidates of a step as the matrix tells them. Most cells of a row are 0, so that eight are looked at together
// where 0 is no overlap to be collected.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "kmer/open_matrix.h"

namespace lintara {

/// Collects, by ascending number, the reads whose cell in the row of a read is `least` or more.
inline void CollectRow(const std::uint8_t* const* matrix, int read, int num, int least, std::vector<int>& accept) {
    SettleRow(matrix, read);
    const std::uint8_t* row = matrix[read];
    accept.clear();
    int i = 0;
    if (least > 0) {
        const int kTogether = sizeof(std::uint64_t);
        for (; i + kTogether <= num; i += kTogether) {
            std::uint64_t cells = 0;
            std::memcpy(&cells, row + i, sizeof cells);
            if (cells == 0) continue;
            for (int k = i; k < i + kTogether; ++k) {
                if (row[k] >= least) accept.push_back(k);
            }
        }
    }
    for (; i < num; ++i) {
        if (row[i] >= least) accept.push_back(i);
    }
}

/// The same in a column.
inline void CollectColumn(const std::uint8_t* const* matrix, int column, int num, int least, std::vector<int>& accept) {
    SettleColumn(matrix, column);
    accept.clear();
    for (int i = 0; i < num; ++i) {
        if (matrix[i][column] >= least) accept.push_back(i);
    }
}

}  // namespace lintara
