// The candidates of a step as the matrix tells them.
#pragma once

#include <cstdint>
#include <vector>

#include "kmer/matrix_lines.h"

namespace lintara {

/// Collects, by ascending number, the reads whose cell in the row of a read is `least` or more.
inline void CollectRow(const std::uint8_t* const* matrix, int read, int num, int least, std::vector<int>& accept) {
    accept.clear();
    if (least > 0) {
        EachInRow(matrix, read, num, [&](int other, int cell) {
            if (cell >= least) accept.push_back(other);
        });
        return;
    }
    SettleRow(matrix, read);
    for (int i = 0; i < num; ++i) {
        if (matrix[read][i] >= least) accept.push_back(i);
    }
}

/// The same in a column.
inline void CollectColumn(const std::uint8_t* const* matrix, int column, int num, int least, std::vector<int>& accept) {
    accept.clear();
    if (least > 0) {
        EachInColumn(matrix, column, num, [&](int other, int cell) {
            if (cell >= least) accept.push_back(other);
        });
        return;
    }
    SettleColumn(matrix, column);
    for (int i = 0; i < num; ++i) {
        if (matrix[i][column] >= least) accept.push_back(i);
    }
}

}  // namespace lintara
