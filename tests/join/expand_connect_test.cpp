#include "join/expand_connect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "join/expand_gap.h"
#include "run/settings.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::ExpandGapTest;
using testing::First;
using testing::Last;
using testing::Open;

using ExpandConnectTest = ExpandGapTest;

TEST_F(ExpandConnectTest, TwoShortExpansionsLeaveTheGapOpenWhateverTheEdges) {
    before_edge.clear();
    after_edge.clear();
    EXPECT_EQ(Connect(Bases(3, 7), Bases(4, 7), 20), Open(20));
    EXPECT_EQ(log, "Expand too short!\n");
    EXPECT_EQ(realgaplen, 77);
}

TEST_F(ExpandConnectTest, OneExpansionOfMinAlignIsLongEnough) {
    Connect(Bases(3, 8), "", 20);
    EXPECT_FALSE(Logged("Expand too short!"));
    Connect("", Bases(3, 8), 20);
    EXPECT_FALSE(Logged("Expand too short!"));
}

TEST_F(ExpandConnectTest, TheLongWayNeedsMoreThanGapAndEdge) {
    Connect(Bases(3, 90), "", 30);
    EXPECT_FALSE(Logged("Short contig edge!\n"));
    Connect(Bases(3, 91), "", 30);
    EXPECT_TRUE(Logged("Short contig edge!\n"));
    Connect("", Bases(3, 90), 30);
    EXPECT_FALSE(Logged("Short contig edge!\n"));
    Connect("", Bases(3, 91), 30);
    EXPECT_TRUE(Logged("Short contig edge!\n"));
}

TEST_F(ExpandConnectTest, TheLongWayFillsTheGap) {
    const std::string gap = Bases(5, 20);
    EXPECT_EQ(Connect(gap + after_edge + Bases(3, 30), "", 30), gap);
    EXPECT_EQ(log,
              "Short contig edge!\nlong before check!\nbefore cover the after edge!\n"
              "Long expand fill the gap region!\n");
}

TEST_F(ExpandConnectTest, AfterAFailedLongWayTheShortTestIsNotRepeated) {
    // The edge stands at base 4, but `after` says something else: 4 and 5 bases are left, both too short.
    EXPECT_EQ(Connect("ACGT" + after_edge + Bases(3, 30), "CCCCC", 20), "ACGT" + Open(11) + "CCCCC");
    EXPECT_TRUE(Logged("gap region after check!\nexpand sequence may be not cover the gap!\n"));
    EXPECT_EQ(before, "ACGT");
}

TEST_F(ExpandConnectTest, TogetherAsLongAsTheGapIsCovered) {
    Connect(Bases(3, 50), Bases(4, 50), 100);
    EXPECT_TRUE(Logged("the expand sequence cover the gap region!\nMax: 100\t110\t110\n"));
    Connect(Bases(3, 50), Bases(4, 49), 100);
    EXPECT_TRUE(Logged("expand sequence may be not cover the gap!\n"));
}

/// One random gap: a true sequence with a repeat now and then, reads of it with errors, and two expansions that follow
/// it more or less and may run into the edges or go astray.
struct RandomGap {
    std::string before_edge, after_edge, before, after;
    int gapsize = 0;
    std::vector<Read> reads;
};

class RandomGaps {
  public:
    explicit RandomGaps(unsigned seed) : random_(seed) {}

    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool Chance(int percent) { return Number(1, 100) <= percent; }

    RandomGap Next() {
        RandomGap gap;
        const int real = Chance(10) ? -Number(0, 20) : Number(0, Chance(10) ? 400 : 120);
        std::string all = Some(60 + std::max(real, 0) + 60);
        const std::string unit = Some(Number(1, 40));
        for (int copies = Chance(60) ? 0 : Number(2, 4); copies > 0; --copies) {
            const int place = Number(0, static_cast<int>(all.size()) - 40);
            all.replace(static_cast<std::size_t>(place), unit.size(), unit);
        }
        const int size = static_cast<int>(all.size());
        gap.before_edge = First(all, 60);
        gap.after_edge = Last(all, static_cast<std::size_t>(std::min(60, 60 + real)));
        gap.gapsize = std::max(1, real + (Chance(50) ? 0 : Number(-60, 150)));
        gap.before = Erroneous(all.substr(60, static_cast<std::size_t>(Number(0, size - 60))));
        gap.after = Erroneous(First(all, static_cast<std::size_t>(size - static_cast<int>(gap.after_edge.size()))));
        gap.after = Last(gap.after, static_cast<std::size_t>(Number(0, static_cast<int>(gap.after.size()))));
        if (Chance(15)) gap.before += Some(Number(1, 150));
        if (Chance(15)) gap.after.insert(0, Some(Number(1, 150)));
        gap.reads.emplace_back(gap.before_edge, -60);
        for (int i = Number(0, 6); i > 0; --i) {
            const int length = std::min(size, Number(12, 130));
            const int start = Number(0, size - length);
            gap.reads.emplace_back(
                Erroneous(all.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length))), start - 60);
        }
        gap.reads.emplace_back(gap.after_edge, gap.gapsize);
        return gap;
    }

  private:
    std::string Some(int length) {
        std::string seq;
        const bool poor = Chance(10);
        for (int i = 0; i < length; ++i) seq += poor ? "AC"[Number(0, 1)] : "ACGT"[Number(0, 3)];
        return seq;
    }

    std::string Erroneous(std::string seq) {
        if (seq.empty()) return seq;
        for (int i = Chance(50) ? 0 : Number(0, 4); i > 0; --i) {
            seq.at(static_cast<std::size_t>(Number(0, static_cast<int>(seq.size()) - 1))) = "ACGTN"[Number(0, 4)];
        }
        return seq;
    }

    std::mt19937 random_;
};

TEST_F(ExpandConnectTest, RandomGapsNeverEndTheProcess) {
    RandomGaps gaps(20240611);
    for (int i = 0; i < 10000; ++i) {
        const RandomGap gap = gaps.Next();
        noreadbreak1 = gaps.Chance(50);
        noreadbreak2 = gaps.Chance(50);
        std::string text;
        for (int time = 0; time < 2; ++time) {
            before = gap.before;
            after = gap.after;
            int minus = 1;
            const std::string result = ExpandConnect(before, after, gap.before_edge, gap.after_edge, gap.gapsize,
                                                     gap.reads, tags.Info(), noreadbreak1, noreadbreak2, minus, 0);
            ASSERT_TRUE(minus == 1 || minus < 0) << i;
            ASSERT_EQ(result.find_first_not_of("ACGTN"), std::string::npos) << i;
            if (time == 1) {
                ASSERT_EQ(result, text) << i;
            }
            text = result;
        }
    }
}

}  // namespace
}  // namespace lintara
