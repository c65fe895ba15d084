// Many thousand blocks of reads from a made-up gap, with errors, repeats and wrong positions, and the overlaps that the
// reads really have. Each walk has to end, and to do step by step what its plain twin does: the same path, the same
// verdict, the same log, and the same cells and positions behind it.
#include "walk/walks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "align/overlap.h"
#include "kmer/overlap_matrix.h"
#include "run/settings.h"
#include "run/streams.h"
#include "support/thread_streams.h"
#include "walk/plain_walks.h"

namespace lintara::testing {
namespace {

/// The reads of a block and a matrix that can be copied with them.
struct RandomBlock {
    std::vector<Read> reads;
    std::vector<std::vector<std::uint8_t>> cells;

    int Num() const { return static_cast<int>(reads.size()); }
    std::vector<std::uint8_t*> Rows() {
        std::vector<std::uint8_t*> rows;
        for (auto& row : cells) rows.push_back(row.data());
        return rows;
    }
};

/// What a walk leaves behind.
struct Trace {
    std::vector<int> path;
    bool noreadbreak = false;
    bool cycled = false;
    bool ER = false;
    bool short_overlap = false;
    std::string log;
    std::vector<std::vector<std::uint8_t>> cells;
    std::vector<int> positions;
};

class WalksRandom : public ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        // The log in memory: a file that grows with each of so many walks takes too long to read.
        file_buffer_ = static_cast<std::ios&>(logFile[0]).rdbuf(&log_);
    }
    void TearDown() override {
        static_cast<std::ios&>(logFile[0]).rdbuf(file_buffer_);
        ThreadStreamsTest::TearDown();
    }

    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool Chance(int percent) { return Below(100) < percent; }

    std::string Bases(int length) {
        std::string bases;
        for (int i = 0; i < length; ++i) bases += "ACGT"[random_() % 4];
        return bases;
    }

    /// The gap with 100 bases of contig on each side; now and then one stretch of it stands in two places.
    ///
    /// @param period  0, or the length after which the whole text repeats itself
    std::string Genome(int gap_length, int period) {
        std::string genome = Bases(gap_length + 200);
        for (std::size_t i = 0; period > 0 && i + period < genome.size(); ++i) genome[i + period] = genome[i];
        const int repeat = 30 + Below(90);
        if (Chance(40) && repeat < gap_length) {
            const std::string unit = genome.substr(static_cast<std::size_t>(Below(gap_length)), repeat);
            genome.replace(static_cast<std::size_t>(Below(gap_length)), unit.size(), unit);
        }
        return genome;
    }

    RandomBlock MakeBlock() {
        const int gap_length = Chance(15) ? Below(100) : 60 + Below(400);
        // In a circle of little more than a read a walk comes back to where it was, if the positions let it.
        const int period = Chance(15) ? 75 + Below(50) : 0;
        const std::string genome = Genome(gap_length, period);
        const int inner = Chance(8) ? 20 + Below(20) : 1 + Below(13);
        const int misplaced = Chance(20) ? 50 : 15;
        const int room = std::min(gap_length + 100, Chance(50) ? 120 : gap_length + 100);
        const int room_from = Below(gap_length + 101 - room);
        const int error = Chance(40) ? 1 + Below(3) : 0;
        const bool long_reads = Chance(30);
        RandomBlock block;
        block.reads.emplace_back(genome.substr(0, 100), -100);
        for (int i = 0; i < inner; ++i) {
            const int from = room_from + Below(room);
            int length = Chance(80) ? 100 : 60 + Below(40);
            if (long_reads && Chance(30)) length = 101 + Below(60);
            Read read(genome.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(length)), from - 100);
            for (char& c : read.seq) {
                if (Below(300) < error) c = "ACGT"[random_() % 4];
            }
            if (Chance(misplaced)) read.pos += Below(300) - 150;
            if (period > 0) read.pos = (from - 100) % period + Below(60) - 30;
            block.reads.push_back(read);
        }
        if (Chance(70)) {
            std::sort(block.reads.begin() + 1, block.reads.end());
        }
        block.reads.emplace_back(genome.substr(static_cast<std::size_t>(gap_length) + 100), gap_length);
        FillMatrix(block);
        return block;
    }

    /// The overlaps of the reads, base by base, with those of the two edges in row 0 and in the last column.
    static void FillMatrix(RandomBlock& block) {
        const int num = block.Num();
        block.cells.assign(num, std::vector<std::uint8_t>(num, 0));
        for (int i = 0; i < num; ++i) {
            for (int j = i + 1; j < num; ++j) block.cells[i][j] = 1;
        }
        std::vector<std::uint8_t*> rows = block.Rows();
        std::uint8_t** matrix = rows.data();
        overlap_matrix(matrix, block.reads, Method, 3, 0);
        for (int i = 1; i < num; ++i) {
            const int over = overlap(block.reads[0].seq, block.reads[i].seq, Method, Match_ratio);
            block.cells[0][i] = static_cast<std::uint8_t>(std::clamp(over, 0, 100));
        }
        for (int i = 0; i + 1 < num; ++i) {
            const int over = overlap(block.reads[i].seq, block.reads[num - 1].seq, Method, Match_ratio);
            block.cells[i][num - 1] = static_cast<std::uint8_t>(std::clamp(over, 0, 100));
        }
    }

    /// Runs one walk on a copy of the block.
    ///
    /// @param walk  takes the reads, the path, the matrix and the trace, whose verdicts it sets
    template <typename Walk>
    Trace Run(RandomBlock block, bool short_overlap, Walk walk) {
        Trace trace;
        std::vector<std::uint8_t*> rows = block.Rows();
        std::uint8_t** matrix = rows.data();
        SHORTOVERLAP[0] = short_overlap;
        log_.str("");
        walk(block.reads, trace.path, matrix, trace);
        trace.log = log_.str();
        trace.short_overlap = SHORTOVERLAP[0];
        trace.cells = block.cells;
        for (const Read& read : block.reads) trace.positions.push_back(read.pos);
        return trace;
    }

    static void ExpectSame(const Trace& walk, const Trace& twin, int round) {
        ASSERT_EQ(walk.log, twin.log) << round;
        ASSERT_EQ(walk.path, twin.path) << round;
        ASSERT_EQ(walk.noreadbreak, twin.noreadbreak) << round;
        ASSERT_EQ(walk.cycled, twin.cycled) << round;
        ASSERT_EQ(walk.ER, twin.ER) << round;
        ASSERT_EQ(walk.short_overlap, twin.short_overlap) << round;
        ASSERT_TRUE(walk.cells == twin.cells) << round;
        ASSERT_EQ(walk.positions, twin.positions) << round;
    }

    /// Counts the walks whose log holds the words; a branch that no block reaches is not compared at all.
    void Tally(const Trace& trace) {
        for (auto& [words, hits] : hits_) hits += trace.log.find(words) != std::string::npos ? 1 : 0;
    }
    void Await(const std::vector<std::string>& words) {
        for (const std::string& word : words) hits_[word] = 0;
    }
    void ExpectEachReached() const {
        for (const auto& [words, hits] : hits_) EXPECT_GE(hits, 3) << words;
    }

    std::mt19937 random_{20240817};

  private:
    std::stringbuf log_;
    std::streambuf* file_buffer_ = nullptr;
    std::map<std::string, int> hits_;
};

constexpr int kRounds = 4000;

TEST_F(WalksRandom, ForwardDoesWhatItsPlainTwinDoes) {
    Await({"start repeat in the nodes!", "Meet last read!", "Accept the last!", "Before ERgap!", "change other node!",
           "cycle node!", "Get a new start -1\n", "new start is meaningless", "After pos clean"});
    for (int round = 0; round < kRounds; ++round) {
        const RandomBlock block = MakeBlock();
        const auto num = static_cast<std::uint16_t>(block.Num());
        const bool flag = Chance(50);
        const int pos = Chance(80) ? 0 : Below(num);
        const Trace walk = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace& trace) {
            trace.cycled = flag;
            trace.noreadbreak = forward(reads, path, matrix, num, pos, 3, trace.cycled, trace.ER, 0);
        });
        const Trace twin = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace& trace) {
            trace.noreadbreak = PlainForward(reads, path, matrix, num, pos, trace.cycled, trace.ER, 0);
        });
        ExpectSame(walk, twin, round);
        if (HasFatalFailure()) return;
        Tally(walk);
    }
    ExpectEachReached();
}

TEST_F(WalksRandom, RewardDoesWhatItsPlainTwinDoes) {
    Await({"end repeat exists in the nodes!", "After ER!", "Position filter all!", "change other node!\t",
           "change other node!\n", "cycle node!", "Get a new end: ", "Get a new end ",
           " for id: ", "new end is meaningless", "change the node!", "change node is useless"});
    for (int round = 0; round < kRounds; ++round) {
        const RandomBlock block = MakeBlock();
        const auto num = static_cast<std::uint16_t>(block.Num());
        const bool flag = Chance(50);
        const int pos = Chance(60) ? num - 1 : Below(num);
        const Trace walk = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace& trace) {
            trace.noreadbreak = reward(reads, path, matrix, num, pos, 3, trace.ER, 0);
        });
        const Trace twin = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace& trace) {
            trace.noreadbreak = PlainReward(reads, path, matrix, num, pos, trace.ER, 0);
        });
        ExpectSame(walk, twin, round);
        if (HasFatalFailure()) return;
        Tally(walk);
    }
    ExpectEachReached();
}

TEST_F(WalksRandom, ResumedRewardDoesWhatItsPlainTwinDoes) {
    Await({"end repeat exists in the nodes!", "change other node!\n", "cycle node!", "Get a new end ",
           "change the node!", "change node is useless", "Position filter all!", "After pos clean"});
    for (int round = 0; round < kRounds; ++round) {
        const RandomBlock block = MakeBlock();
        const auto num = static_cast<std::uint16_t>(block.Num());
        const bool flag = Chance(50);
        // The path so far: nothing, the after edge, or what a first walk has left, less its last read.
        std::vector<int> so_far;
        int pos = Below(num);
        if (Chance(50)) {
            RandomBlock copy = block;
            std::vector<std::uint8_t*> rows = copy.Rows();
            std::uint8_t** matrix = rows.data();
            bool ER = false;
            reward(copy.reads, so_far, matrix, num, num - 1, 3, ER, 0);
            pos = so_far.back();
            so_far.pop_back();
        } else if (Chance(50)) {
            so_far = {num - 1};
        }
        const std::string drop_seq = Chance(50) ? Bases(60) : block.reads[static_cast<std::size_t>(Below(num))].seq;
        const bool cycled = Chance(50);
        const Trace walk = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace&) {
            path = so_far;
            reward(reads, path, matrix, num, pos, 3, drop_seq, cycled, 0);
        });
        const Trace twin = Run(block, flag, [&](auto& reads, auto& path, auto& matrix, Trace&) {
            path = so_far;
            PlainResumedReward(reads, path, matrix, num, pos, drop_seq, cycled, 0);
        });
        ExpectSame(walk, twin, round);
        if (HasFatalFailure()) return;
        EXPECT_EQ(walk.short_overlap, flag) << "the resumed walk leaves the flag alone";
        Tally(walk);
    }
    ExpectEachReached();
}

}  // namespace
}  // namespace lintara::testing
