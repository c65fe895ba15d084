#include "kmer/matrix_lines.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace lintara {
namespace {

using Cells = std::vector<std::pair<int, int>>;  // read and cell

// Lines of an open matrix are held against its plain twin in open_matrix_test.cpp.
TEST(MatrixLines, VisitCellsAboveZeroByAscendingNumber) {
    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        const int num = 1 + static_cast<int>(random() % 70);
        std::vector<std::vector<std::uint8_t>> cells(num, std::vector<std::uint8_t>(num));
        std::vector<std::uint8_t*> rows;
        for (auto& row : cells) {
            for (std::uint8_t& cell : row) cell = random() % 6 == 0 ? static_cast<std::uint8_t>(random()) : 0;
            rows.push_back(row.data());
        }
        const int at = static_cast<int>(random() % static_cast<unsigned>(num));
        Cells right;
        Cells left;
        for (int i = 0; i < num; ++i) {
            if (cells[at][i] != 0) right.emplace_back(i, cells[at][i]);
            if (cells[i][at] != 0) left.emplace_back(i, cells[i][at]);
        }
        Cells got;
        EachInRow(rows.data(), at, num, [&](int i, int cell) { got.emplace_back(i, cell); });
        ASSERT_EQ(got, right);
        got.clear();
        EachInColumn(rows.data(), at, num, [&](int i, int cell) { got.emplace_back(i, cell); });
        ASSERT_EQ(got, left);
    }
}

}  // namespace
}  // namespace lintara
