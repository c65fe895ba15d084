#include "walk/collect.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace lintara {
namespace {

TEST(Collect, RowsAndColumnsGiveWhatALookAtEachCellGives) {
    std::mt19937 random(31);
    for (int round = 0; round < 500; ++round) {
        const int num = 1 + static_cast<int>(random() % 60);
        const unsigned filled = random() % 101;
        std::vector<std::vector<std::uint8_t>> cells(num, std::vector<std::uint8_t>(num));
        std::vector<std::uint8_t*> rows;
        for (auto& row : cells) {
            for (std::uint8_t& cell : row) cell = random() % 100 < filled ? static_cast<std::uint8_t>(random()) : 0;
            rows.push_back(row.data());
        }
        const int at = static_cast<int>(random() % static_cast<unsigned>(num));
        for (const int least : {-1, 0, 1, 30, 255, 256}) {
            std::vector<int> right;
            std::vector<int> left;
            for (int i = 0; i < num; ++i) {
                if (cells[at][i] >= least) right.push_back(i);
                if (cells[i][at] >= least) left.push_back(i);
            }
            std::vector<int> accept{7, 8};
            CollectRow(rows.data(), at, num, least, accept);
            ASSERT_EQ(accept, right);
            CollectColumn(rows.data(), at, num, least, accept);
            ASSERT_EQ(accept, left);
        }
    }
}

}  // namespace
}  // namespace lintara
