#include "kmer/open_matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "align/overlap.h"
#include "kmer/matrix_lines.h"
#include "kmer/overlap_matrix.h"
#include "kmer/plain_seeds.h"
#include "kmer/random_block.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::PlainSeeds;
using testing::RandomBlock;

class OpenMatrixTest : public testing::ThreadStreamsTest {};

/// Reads an open matrix in one of the ways in which walks and votes do.
int Ask(std::mt19937& random, std::uint8_t** matrix, int num, int i, int j) {
    int found = 0;  // the cell, as one of those above 0 in its line
    int before = -1;
    const auto look_for = [&](int wanted) {
        return [&found, &before, wanted](int other, int cell) {
            EXPECT_LT(before, other);
            EXPECT_GT(cell, 0);
            before = other;
            if (other == wanted) found = cell;
        };
    };
    switch (random() % 8) {
        case 0:
            SettleRow(matrix, i);
            return matrix[i][j];
        case 1:
            SettleColumn(matrix, j);
            return matrix[i][j];
        case 2:
            if (random() % 50 == 0) SettleAll(matrix, num);
            return Cell(matrix, i, j);
        case 3:
            EachInRow(matrix, i, num, look_for(j));
            return found;
        case 4:
            EachInColumn(matrix, j, num, look_for(i));
            return found;
        default:
            return Cell(matrix, i, j);
    }
}

/// Shortens some inner reads as cuts at the edges do.
void Cut(std::mt19937& random, std::vector<Read>& reads) {
    const std::size_t shortest = std::min(reads.front().seq.size(), reads.back().seq.size());
    for (std::size_t i = 1; i + 1 < reads.size(); ++i) {
        std::string& seq = reads[i].seq;
        if (seq.size() <= shortest || random() % 3 == 0) continue;
        const std::size_t left = shortest + random() % (seq.size() - shortest);
        seq = random() % 2 == 0 ? seq.substr(seq.size() - left) : seq.substr(0, left);
    }
}

/// Whether the block was taken; holds the cells against those of the plain steps, asked in any order.
bool ExpectPlainCells(std::mt19937& random, std::vector<Read> reads, int method, int type, const std::string& what) {
    OpenMatrix open;
    const std::vector<Read> whole = reads;
    if (!open.Begin(reads, method, type)) return false;
    const int num = static_cast<int>(reads.size());
    std::vector<int> with_edge;
    const int start = type == 1 || type == 3 ? 1 : 0;
    const int end = type == 2 || type == 3 ? num - 1 : num;
    std::size_t longest = 0;
    for (int i = start; i < end; ++i) longest = std::max(longest, reads[i].seq.size());
    const bool is_cut =
        (start > 0 && reads.front().seq.size() < longest) || (end < num && reads.back().seq.size() < longest);
    if (start > 0) {
        open.MeasureBeforeEdge(with_edge);
        EXPECT_EQ(with_edge.empty(), is_cut) << what;
        for (int i = start; !is_cut && i < end; ++i) {
            EXPECT_EQ(with_edge[i], overlap(reads.front().seq, reads[i].seq, method, Match_ratio)) << what;
        }
    }
    if (is_cut) Cut(random, reads);
    // The after edge may be cut at the before edge, too.
    if (end < num && start > 0 && reads.back().seq.size() > longest + 1 && random() % 2 == 0)
        reads.back().seq.pop_back();
    with_edge.clear();
    if (end < num) {
        open.MeasureAfterEdge(with_edge);
        EXPECT_EQ(with_edge.empty(), is_cut) << what;
        for (int i = start; !is_cut && i < end; ++i) {
            EXPECT_EQ(with_edge[i], overlap(reads[i].seq, reads.back().seq, method, Match_ratio)) << what;
        }
    }
    open.Release();
    std::uint8_t** plain = PlainSeeds(whole);
    if (type == 2) {
        EXPECT_EQ(open.cells()[0][num - 1], plain[0][num - 1]) << what;
    }
    overlap_matrix(plain, reads, method, type, 0);
    int differ = 0;
    const int most = static_cast<int>(random() % (num * num + 1));
    for (int k = 0; k < most; ++k) {
        const int i = testing::Uniform(random, start, end - 1);
        const int j = testing::Uniform(random, start, end - 1);
        differ += Ask(random, open.cells(), num, i, j) != plain[i][j] ? 1 : 0;
        if (random() % 10 != 0) continue;
        // Walks bar steps; the mirror cell and a later settling leave that alone.
        ClearCell(open.cells(), i, j);
        plain[i][j] = 0;
    }
    for (int i = start; i < end; ++i) {
        for (int j = start; j < end; ++j) differ += Cell(open.cells(), i, j) != plain[i][j] ? 1 : 0;
    }
    EXPECT_EQ(differ, 0) << what;
    free_matrix(plain, static_cast<std::uint16_t>(num));
    return true;
}

TEST_F(OpenMatrixTest, CellsAreThoseOfTheTableInWhateverOrderTheyAreAskedFor) {
    std::mt19937 random(20261128);
    const int methods[] = {0, 1, 2, 5};
    const double ratios[] = {0.95, 0.9, 0.99, 1.0, 0.8};
    const int lengths[] = {31, 15, 31, 5, 32, 24, 40};
    int taken = 0;
    for (int round = 0; round < 900; ++round) {
        BlockKind kind;
        kind.num = testing::Uniform(random, 3, 70);
        kind.genome = testing::Uniform(random, 260, 700);
        kind.unit = round % 3 == 0 ? testing::Uniform(random, 1, 45) : 0;
        kind.error = round % 4 * 0.01;
        kind.longest = round % 7 == 0 ? 255 : 100;
        kind.others = round % 5 == 0 ? "NNNacgtR-" : round % 2 == 0 ? "N" : "ACGT";
        Kmer = lengths[round % 7];
        Match_ratio = ratios[round / 4 % 5];
        Min_overlap = round % 6 == 0 ? 20 : 30;
        false_ratio = round % 9 == 0 ? 0.2 : 0.15;
        // Edges of 40 bases have reads cut at them.
        const int edge = round % 8 == 0 ? 40 : 255;
        const bool is_taken = ExpectPlainCells(random, RandomBlock(random, kind, edge), methods[round % 4],
                                               round / 2 % 5, "round " + std::to_string(round));
        taken += is_taken ? 1 : 0;
    }
    EXPECT_GT(taken, 750);
}

TEST_F(OpenMatrixTest, MatrixThatWasFilledOtherwiseIsReadAsItIs) {
    std::uint8_t row0[] = {0, OPEN_CELL};
    std::uint8_t row1[] = {30, 0};
    std::uint8_t* matrix[] = {row0, row1};
    for (int round = 0; round < 2; ++round) {
        SettleRow(matrix, 0);
        SettleColumn(matrix, 1);
        SettleAll(matrix, 2);
        EXPECT_EQ(Cell(matrix, 0, 1), OPEN_CELL);
        EXPECT_EQ(Cell(matrix, 1, 0), 30);
    }
    ClearCell(matrix, 0, 1);
    EXPECT_EQ(matrix[0][1], 0);
}

TEST_F(OpenMatrixTest, OverlapOfTheEdgesMayLookLikeAnOpenCell) {
    std::mt19937 random(8);
    BlockKind kind;
    kind.genome = 900;
    const std::vector<Read> reads = RandomBlock(random, kind, 600);
    const int num = static_cast<int>(reads.size());
    OpenMatrix open;
    ASSERT_TRUE(open.Begin(reads, 1, 3));
    open.cells()[0][num - 1] = 255;
    open.Release();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(Cell(open.cells(), 0, num - 1), 255);
        SettleRow(open.cells(), 0);
        SettleColumn(open.cells(), num - 1);
        SettleAll(open.cells(), num);
        EXPECT_EQ(Cell(open.cells(), 0, num - 1), 255);
    }
    ClearCell(open.cells(), 0, num - 1);
    EXPECT_EQ(Cell(open.cells(), 0, num - 1), 0);
}

TEST_F(OpenMatrixTest, OneThatIsMadeMeanwhileTakesThePlaceUntilItEnds) {
    std::mt19937 random(7);
    BlockKind kind;
    kind.error = 0;
    const std::vector<Read> reads = RandomBlock(random, kind, 100);
    const int num = static_cast<int>(reads.size());
    OpenMatrix outer;
    ASSERT_TRUE(outer.Begin(reads, 1, 0));
    outer.Release();
    {
        OpenMatrix inner;
        ASSERT_TRUE(inner.Begin(reads, 1, 0));
        inner.Release();
        EXPECT_NE(inner.cells(), outer.cells());
        SettleAll(inner.cells(), num);
        EXPECT_EQ(std::count(inner.cells()[0], inner.cells()[0] + num, OPEN_CELL), 0);
        EXPECT_GT(std::count(outer.cells()[0], outer.cells()[0] + num, OPEN_CELL), 0);
    }
    SettleAll(outer.cells(), num);
    EXPECT_EQ(std::count(outer.cells()[0], outer.cells()[0] + num, OPEN_CELL), 0);
}

TEST_F(OpenMatrixTest, LeavesToTheTableWhatItCountsIn16BitsAndWhatHasNoKmers) {
    const Read repeat(std::string(100, 'C'), 0);
    OpenMatrix open;
    EXPECT_TRUE(open.Begin(std::vector<Read>(936, repeat), 1, 0));   // 936 * 70 k-mers
    EXPECT_FALSE(open.Begin(std::vector<Read>(937, repeat), 1, 0));  // more than 65,535
    Kmer = 0;
    EXPECT_FALSE(open.Begin(std::vector<Read>(3, repeat), 1, 0));
}

}  // namespace
}  // namespace lintara
