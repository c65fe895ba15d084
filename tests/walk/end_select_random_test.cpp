// Many thousand blocks from true overlaps with spoiled cells, bases and positions, up to cells from nowhere: the end
// selections have to come back, with a candidate or with -1, and leave alone what they do not own.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "walk/end_select_block.h"

namespace lintara::testing {
namespace {

class EndSelectRandom : public EndSelectTest {
  protected:
    std::mt19937 random{20240611};

    int Below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    bool Chance(int percent) { return Below(100) < percent; }

    /// An overlap is never longer than one of its reads.
    static void SetCell(Block& block, int a, int b, int cell) {
        const std::size_t longest = std::min(block.reads[static_cast<std::size_t>(a)].seq.size(),
                                             block.reads[static_cast<std::size_t>(b)].seq.size());
        block.matrix[a][b] = static_cast<std::uint8_t>(std::min(cell, static_cast<int>(longest)));
    }

    /// Reads around one that the walk stands on, in rising order of their starts, with an edge at each side.
    Block RandomBlock() {
        Block block;
        const int num = 3 + Below(Chance(20) ? 70 : 18);
        const int room = 20 + Below(200);
        std::vector<int> froms;
        for (int i = 0; i < num; i++) froms.push_back(300 + Below(room));
        std::sort(froms.begin(), froms.end());
        const bool long_reads = Chance(40);
        for (int from : froms) block.Cut(from, long_reads && Chance(40) ? 101 + Below(50) : 100 - Below(4) * 12);
        block.Link();
        for (int i = Below(num * 3); i > 0; i--) {
            const int a = Below(num);
            const int b = Below(num);
            if (block.matrix[a][b] > 1) SetCell(block, a, b, block.matrix[a][b] + (Chance(50) ? 1 : -1));
        }
        for (int i = Chance(30) ? Below(num) : 0; i > 0; i--) block.Mutate(Below(num), Below(60));
        for (int i = Chance(40) ? Below(num) : 0; i > 0; i--) {
            block.reads[static_cast<std::size_t>(Below(num))].pos += Below(300) - 150;
        }
        for (int i = Chance(20) ? Below(2 * num) : 0; i > 0; i--) SetCell(block, Below(num), Below(num), Below(101));
        for (int i = Chance(40) ? Below(num) : 0; i > 0; i--) {
            SetCell(block, Below(num), num - 1, 25 + Below(60));
            SetCell(block, 0, Below(num), 25 + Below(60));
        }
        for (int i = 0; i < num; i++) block.matrix[i][i] = 0;
        return block;
    }

    void ExpectSound(const std::vector<int>& before, int pick) {
        EXPECT_TRUE(pick == -1 || std::count(before.begin(), before.end(), pick) == 1) << pick;
        EXPECT_TRUE(std::includes(before.begin(), before.end(), accept.begin(), accept.end()));
        if (pick != -1) {
            taken_++;
        } else {
            refused_++;
        }
    }
    /// Both outcomes have to be frequent, or the inputs are no test.
    void ExpectBothOutcomes() const {
        EXPECT_GT(taken_, 500);
        EXPECT_GT(refused_, 500);
    }

    int taken_ = 0;
    int refused_ = 0;
};

constexpr int kRounds = 8000;

TEST_F(EndSelectRandom, GetLastComesBackWithACandidateOrNoRead) {
    for (int round = 0; round < kRounds; round++) {
        Block block = RandomBlock();
        const int start = Chance(50) ? 0 : Below(block.Num());
        const std::vector<int> before = block.Right(start);
        jum = Below(2);
        changenode = false;
        ExpectSound(before, Last(block, start));
        EXPECT_TRUE(jum >= 0 && jum <= 2);
        EXPECT_FALSE(before.empty() && SHORTOVERLAP[0]);
    }
    ExpectBothOutcomes();
}

TEST_F(EndSelectRandom, GetFirstComesBackWithACandidateOrNoRead) {
    for (int round = 0; round < kRounds; round++) {
        Block block = RandomBlock();
        const int end = Chance(50) ? block.Num() - 1 : Below(block.Num());
        const std::vector<int> before = block.Left(end);
        const std::vector<int> before_right = block.Right(0);
        jum = Below(2);
        changenode = false;
        ExpectSound(before, First(block, end));
        EXPECT_TRUE(jum >= 0 && jum <= 2);
        EXPECT_EQ(block.Left(end), before) << "the matrix is not written";
        EXPECT_EQ(block.Right(0), before_right);
    }
    ExpectBothOutcomes();
}

TEST_F(EndSelectRandom, ResumedGetFirstComesBackWithACandidateOrNoRead) {
    for (int round = 0; round < kRounds; round++) {
        Block block = RandomBlock();
        const int end = Chance(50) ? block.Num() - 1 : Below(block.Num());
        const std::vector<int> before = block.Left(end);
        const std::string drop_seq = Chance(30) ? MadeUpBases(static_cast<unsigned>(round), 60)
                                                : block.reads[static_cast<std::size_t>(Below(block.Num()))].seq;
        const int mode = jum = Below(2);
        const bool flag = SHORTOVERLAP[0] = Chance(50);
        changenode = false;
        ExpectSound(before, ResumedFirst(block, end, drop_seq));
        EXPECT_EQ(jum, mode);
        EXPECT_EQ(SHORTOVERLAP[0], flag);
        EXPECT_EQ(block.Left(end), before) << "the matrix is not written";
    }
    ExpectBothOutcomes();
}

}  // namespace
}  // namespace lintara::testing
