#include "strategy/gap_size.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run/settings.h"
#include "strategy/sample_bases.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::First;
using testing::Last;
using testing::RandomBases;
using testing::Repeat;

const std::string kBefore = RandomBases(200, 1);
const std::string kAfter = RandomBases(200, 2);

/// A read with over1 bases on the before edge, a gap part, and over2 bases on the after edge.
std::string Spanning(int over1, const std::string& gap_part, int over2) {
    return Last(kBefore, over1) + gap_part + First(kAfter, over2);
}

/// Gap parts that share neither end with an edge or with each other; those of some length occur nowhere else.
std::string Part(int length) {
    return RandomBases(length, 100U + static_cast<unsigned>(length));
}

class GapSizeTest : public testing::ThreadStreamsTest {
  protected:
    std::vector<Read> Block(const std::vector<std::string>& spanning, int gap_length,
                            const std::string& before = kBefore, const std::string& after = kAfter) {
        std::vector<Read> reads;
        reads.emplace_back(before, -static_cast<int>(before.size()));
        for (const std::string& seq : spanning) reads.emplace_back(seq, 0);
        reads.emplace_back(after, gap_length);
        return reads;
    }

    /// Runs the estimate on reads that imply the given sizes, each with 40 bases on either edge.
    int SizeOf(const std::vector<int>& sizes, bool accept_long = false, int gap_length = 50) {
        std::vector<std::string> spanning;
        for (const int size : sizes) spanning.push_back(Spanning(40, Part(size), 40));
        std::vector<Read> reads = Block(spanning, gap_length);
        read.clear();
        Accept_Long = accept_long;
        NewLog();
        return GetGapLen(reads, read, Accept_Long, 0);
    }

    std::vector<int> Supporting() const {
        std::vector<int> indices;
        for (const auto& entry : read) indices.push_back(entry.first);
        return indices;
    }

    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }

    std::map<int, int> read;
    bool Accept_Long = false;
};

using Indices = std::vector<int>;

class GetGapLenTest : public GapSizeTest {};

TEST_F(GetGapLenTest, EdgesAloneAreTooFew) {
    std::vector<Read> reads = Block({}, 17);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), -1000);
    EXPECT_EQ(Log(),
              "Try to get the accurate gap size using read number: 2\t17\n"
              "Too few long read for the small gap, try to use middle method\n");
    std::vector<Read> none;
    EXPECT_EQ(GetGapLen(none, read, Accept_Long, 0), -1000);
}

TEST_F(GetGapLenTest, OneReadTellsTheSize) {
    std::vector<Read> reads = Block({Spanning(40, "GTA", 50)}, 20);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), 3);
    const std::map<int, int> expected = {{1, 160}};
    EXPECT_EQ(read, expected);
    EXPECT_FALSE(Accept_Long);
    EXPECT_EQ(Log(),
              "Try to get the accurate gap size using read number: 3\t20\n"
              "Now check gap size: 3\n" +
                  kBefore + "\n" + std::string(160, ' ') + Spanning(40, "GTA", 50) + "\n" + std::string(203, ' ') +
                  kAfter +
                  "\n"
                  "gap possible len: 3\n"
                  "possible gap size number is: 1\n");
}

TEST_F(GetGapLenTest, TwoEqualReadsAgree) {
    std::vector<Read> reads = Block({Spanning(40, Part(7), 50), Spanning(60, Part(7), 35)}, 20);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), 7);
    const std::map<int, int> expected = {{1, 160}, {2, 140}};
    EXPECT_EQ(read, expected);
}

TEST_F(GetGapLenTest, TwoDifferentReadsAreUndecided) {
    EXPECT_EQ(SizeOf({7, 9}), -1000);
    EXPECT_TRUE(read.empty());
    EXPECT_TRUE(
        Logged("possible gap size number is: 2\n"
               "Too few long read cross over the short gap, try middle assemble\t2\n"));
}

TEST_F(GetGapLenTest, OfTwoDifferentReadsTheLongerStaysWhenOneMaySlide) {
    EXPECT_EQ(SizeOf({7, 9}, true), 9);
    EXPECT_EQ(Supporting(), Indices({2}));
    EXPECT_EQ(SizeOf({9, 7}, true), 9);
    EXPECT_EQ(Supporting(), Indices({1}));
}

TEST_F(GetGapLenTest, NoSpanningReadIsTooFew) {
    EXPECT_EQ(SizeOf({}), -1000);
    std::vector<Read> reads = Block({RandomBases(80, 7)}, 20);
    NewLog();
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), -1000);
    EXPECT_EQ(NewLog(),
              "Try to get the accurate gap size using read number: 3\t20\n"
              "possible gap size number is: 0\n"
              "Too few long read cross over the short gap, try middle assemble\t0\n");
}

TEST_F(GetGapLenTest, MajorityWins) {
    EXPECT_EQ(SizeOf({7, 9, 7}), 7);
    EXPECT_EQ(Supporting(), Indices({1, 3}));
    const std::string log = NewLog();
    EXPECT_EQ(log.substr(log.find("possible gap size number")), "possible gap size number is: 3\n7\t2\n9\t1\n");
}

TEST_F(GetGapLenTest, LongestWinsOverTheMajorityWhenAReadMaySlide) {
    EXPECT_EQ(SizeOf({7, 9, 7}, true), 9);
    EXPECT_EQ(Supporting(), Indices({2}));
    EXPECT_TRUE(Logged("9\t1\nAccept the longer gap size, support read number is: 1\n"));
}

TEST_F(GetGapLenTest, MajorityThatIsTheLongestStandsWhenAReadMaySlide) {
    EXPECT_EQ(SizeOf({9, 7, 9}, true), 9);
    EXPECT_FALSE(Logged("Accept the longer"));
}

TEST_F(GetGapLenTest, AllOfOneSizeIsAMajority) {
    EXPECT_EQ(SizeOf({8, 8, 8}, true), 8);
    EXPECT_EQ(Supporting(), Indices({1, 2, 3}));
}

TEST_F(GetGapLenTest, RunnerUpOfThreeReadsIsTooManyForAMajority) {
    EXPECT_EQ(SizeOf({7, 7, 7, 7, 9, 9}), 7) << "4 against 2";
    EXPECT_EQ(SizeOf({7, 7, 7, 7, 7, 7, 9, 9, 9}), -1000) << "6 against 3";
    EXPECT_EQ(SizeOf({7, 7, 7, 9, 9}), -1000) << "3 against 2: less than double";
}

TEST_F(GetGapLenTest, UndecidedVoteKeepsTheReads) {
    EXPECT_EQ(SizeOf({5, 6, 9}), -1000) << "the two longest are 3 bases apart";
    EXPECT_EQ(Supporting(), Indices({1, 2, 3}));
    EXPECT_TRUE(Logged("5\t1\n6\t1\n9\t1\nGap length cannot decided!\n1\t1\t3\n"));
    EXPECT_EQ(SizeOf({5, 6, 9}, false, 10), -1000) << "sizes above 0, however short the gap";
}

TEST_F(GetGapLenTest, LongestOfThreeSizesWinsWhenAReadMaySlide) {
    EXPECT_EQ(SizeOf({5, 6, 9}, true), 9);
    EXPECT_EQ(Supporting(), Indices({3}));
}

TEST_F(GetGapLenTest, SizesOneApartAreDecided) {
    EXPECT_EQ(SizeOf({5, 8, 9}), 9);
    EXPECT_EQ(Supporting(), Indices({3}));
    EXPECT_TRUE(Logged("Accept the longer gap size, support read number is: 1\n"));
}

TEST_F(GetGapLenTest, OfEqualRunnersUpTheLongerOneCounts) {
    EXPECT_EQ(SizeOf({7, 7, 8, 8, 8, 12, 12}), -1000) << "8 is next to 7, but the runner-up is 12";
    EXPECT_EQ(SizeOf({7, 7, 8, 8, 8, 12}), 8);
}

TEST_F(GetGapLenTest, SlipOfTheRunnerUpOutweighsTheLongest) {
    EXPECT_EQ(SizeOf({8, 7, 8, 12, 7, 8}), 8) << "8 three times, 7 twice, 12 once";
    EXPECT_EQ(Supporting(), Indices({1, 3, 6}));
    EXPECT_TRUE(Logged("Accept the longer gap size, support read number is: 1\n"));
}

TEST_F(GetGapLenTest, SixShorterReadsOutweighOneLonger) {
    const std::string message =
        "Two possible gapsize, accept the longer one, but more support short one, accept shorter.\n";
    EXPECT_EQ(SizeOf({7, 7, 7, 9, 7, 7, 7}, true), 7);
    EXPECT_EQ(Supporting(), Indices({1, 2, 3, 5, 6, 7}));
    EXPECT_NE(NewLog().find(message), std::string::npos);
    EXPECT_EQ(SizeOf({7, 7, 7, 9, 7, 7}, true), 9) << "five don't";
    EXPECT_EQ(NewLog().find(message), std::string::npos);
    EXPECT_EQ(SizeOf({7, 7, 7, 9, 7, 7, 7, 8}, true), 9) << "nor do six when there is a third size";
    EXPECT_EQ(SizeOf({7, 7, 7, 7, 7, 7, 7, 9}, true), 7) << "seven to one are a majority";
    EXPECT_EQ(NewLog().find(message), std::string::npos);
}

// Edges that share up to nine T: a read with k of them implies a size of k - 18.
class GetGapLenOfOverlappingEdges : public GapSizeTest {
  protected:
    int SizeOfRuns(const std::vector<int>& runs, bool accept_long, int gap_length) {
        std::string left = RandomBases(100, 11);
        std::string right = RandomBases(100, 12);
        left.back() = 'G';
        right.front() = 'C';
        std::vector<std::string> spanning;
        for (const int run : runs)
            spanning.push_back(Last(left, 40) + std::string(static_cast<std::size_t>(run), 'T') + First(right, 40));
        std::vector<Read> reads = Block(spanning, gap_length, left + std::string(9, 'T'), std::string(9, 'T') + right);
        read.clear();
        Accept_Long = accept_long;
        return GetGapLen(reads, read, Accept_Long, 0);
    }
};

TEST_F(GetGapLenOfOverlappingEdges, NegativeSizeIsLegal) {
    EXPECT_EQ(SizeOfRuns({9}, false, 50), -9);
    EXPECT_TRUE(Logged("gap possible len: -9\n"));
    EXPECT_EQ(SizeOfRuns({13, 13, 13}, false, 50), -5);
}

TEST_F(GetGapLenOfOverlappingEdges, AShortGapLetsTheLongestNegativeSizeDecide) {
    EXPECT_EQ(SizeOfRuns({9, 11, 13}, false, 10), -5);
    EXPECT_EQ(SizeOfRuns({9, 11, 13}, false, 11), -1000);
}

TEST_F(GetGapLenOfOverlappingEdges, LongestOfMinusOneIsNoReasonToDecide) {
    EXPECT_EQ(SizeOfRuns({12, 14, 16}, true, 50), -2);
    EXPECT_EQ(SizeOfRuns({13, 15, 17}, true, 50), -1000);
}

TEST_F(GetGapLenTest, OverlapOfMinOverlapDoesNotCount) {
    std::vector<Read> reads = Block({Spanning(30, "GTA", 50), Spanning(50, "GTA", 30)}, 20);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), -1000);
    EXPECT_TRUE(read.empty());
    reads = Block({Spanning(31, "GTA", 31)}, 20);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), 3);
}

TEST_F(GetGapLenTest, TrimsAReadToTheEdges) {
    // Both contigs are shorter than the read, which begins 10 bases before the one and ends 8 behind the other.
    const std::string before = Last(kBefore, 50);
    const std::string after = First(kAfter, 45);
    std::vector<Read> reads =
        Block({RandomBases(10, 21) + before + "GTA" + after + RandomBases(8, 22)}, 20, before, after);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), 3);
    EXPECT_EQ(reads[1].seq, before + "GTA" + after);
    const std::map<int, int> expected = {{1, 0}};
    EXPECT_EQ(read, expected);
}

TEST_F(GetGapLenTest, AReadThatFailsStaysTrimmedAtItsStart) {
    const std::string before = Last(kBefore, 50);
    const std::string rest = before + "GTA" + First(kAfter, 20);
    std::vector<Read> reads = Block({RandomBases(10, 21) + rest}, 20, before);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), -1000);
    EXPECT_EQ(reads[1].seq, rest);
    EXPECT_TRUE(read.empty());
}

TEST_F(GetGapLenTest, ASlidingReadTurnsAcceptLongOnForGood) {
    // The gap part of the first read stands again 4 bases into the after edge.
    const std::string part = "ACGATTGCA";
    const std::string after = First(kAfter, 4) + part + kAfter;
    std::vector<Read> reads =
        Block({Last(kBefore, 40) + part + First(after, 40), Last(kBefore, 40) + Part(3) + First(after, 40)}, 20,
              kBefore, after);
    EXPECT_EQ(GetGapLen(reads, read, Accept_Long, 0), 9);
    EXPECT_TRUE(Accept_Long);
    EXPECT_EQ(Supporting(), Indices({1}));
    EXPECT_EQ(Log().find("Now check gap size: 3\n"), std::string::npos) << "no further read is checked";
}

class LongCheckTest : public GapSizeTest {};

TEST_F(LongCheckTest, GapPartTwiceInTheRead) {
    EXPECT_TRUE(LongCheck("", "", "TTTTTTTTTTACGCAGGGACGCAGGGGG", 10, 13, 0));
    EXPECT_EQ(Log(),
              "Now check gap size: 5\n"
              "Check whether exists more than once.\n"
              "Gap sequence may exists more than one copy in the gap region! So accept longest\n");
}

TEST_F(LongCheckTest, GapPartOfFourIsNotSought) {
    // ACGC stands twice, but no edge part does.
    EXPECT_FALSE(LongCheck("", "", "TTTTTTGTTTACGCAGGGACGCAGTGGG", 10, 14, 0));
    EXPECT_EQ(Log(), "Now check gap size: 4\n");
}

TEST_F(LongCheckTest, GapPartOnce) {
    EXPECT_FALSE(LongCheck("", "", "TTTTTTGTTTACGCATTCCGGTGGG", 10, 10, 0));
    EXPECT_EQ(Log(), "Now check gap size: 5\nCheck whether exists more than once.\n");
}

TEST_F(LongCheckTest, BeforePartAgainFurtherIn) {
    EXPECT_TRUE(LongCheck("", "", "ACGTCGGACGTCTTTTTTTTTT", 5, 15, 0));
    EXPECT_EQ(Log(),
              "Now check gap size: 2\n"
              "Using before pattern: ACGTC\n"
              "When gap length is 2, maybe other reads support gap length: -5\n");
}

TEST_F(LongCheckTest, AfterPartAgainFurtherIn) {
    EXPECT_TRUE(LongCheck("", "", "TTTTTTTTTTACGTCGGACGTC", 15, 5, 0));
    EXPECT_EQ(Log(),
              "Now check gap size: 2\n"
              "Using after pattern: ACGTC\n"
              "When gap length is 2, maybe other reads support gap length: -5\n");
}

TEST_F(LongCheckTest, EdgePartThatFillsTheReadIsNotSought) {
    EXPECT_FALSE(LongCheck("", "", "AAAAAAAAAA", 9, 9, 0)) << "9 of the 9 bases that are left";
    EXPECT_TRUE(LongCheck("", "", "AAAAAAAAAA", 8, 9, 0));
    EXPECT_TRUE(LongCheck("", "", "AAAAAAAAAA", 9, 8, 0));
    EXPECT_FALSE(LongCheck("", "", "AAAAAAAAAA", 12, 12, 0)) << "overlaps beyond the read";
}

class ValueBaseTest : public GapSizeTest {};

TEST_F(ValueBaseTest, KnownBaseIsHandedBackWithoutRecord) {
    EXPECT_EQ(value_base('g', 3, read, Block({}, 5), 0), 'g');
    EXPECT_EQ(Snp(), "");
}

TEST_F(ValueBaseTest, ColumnWithoutReadStaysOpen) {
    const std::vector<Read> reads = Block({"ACGT"}, 5);
    read = {{1, 10}};
    EXPECT_EQ(value_base('N', 9, read, reads, 0), 'N');
    EXPECT_EQ(value_base('N', 14, read, reads, 0), 'N');
    EXPECT_EQ(Snp(), "9\t0\t0\t0\t0\tN\t0\t0\n14\t0\t0\t0\t0\tN\t0\t0\n");
}

TEST_F(ValueBaseTest, HighestCountWins) {
    const std::vector<Read> reads = Block({"ACGT", "TTtT", "GGGG"}, 5);
    read = {{1, 10}, {2, 11}, {3, 10}};
    EXPECT_EQ(value_base('N', 13, read, reads, 0), 'T');
    EXPECT_EQ(Snp(), "13\t0\t0\t1\t2\tT\t3\t0.666667\n");
}

TEST_F(ValueBaseTest, ReadsOutsideTheListDoNotVote) {
    const std::vector<Read> reads = Block({"ACGT", "TTTT"}, 5);
    read = {{1, 10}};
    EXPECT_EQ(value_base('N', 10, read, reads, 0), 'A');
    EXPECT_EQ(value_base('N', 13, read, reads, 0), 'T');
}

TEST_F(ValueBaseTest, FirstBaseWinsATie) {
    const std::vector<Read> reads = Block({"T", "C", "G", "C", "T"}, 5);
    read = {{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}};
    EXPECT_EQ(value_base('N', 0, read, reads, 0), 'C');
    EXPECT_EQ(Snp(), "0\t0\t2\t1\t2\tC\t5\t0.4\n");
}

TEST(ShortCheck, TellsNegativeSizes) {
    const std::vector<Read> reads;
    const std::map<int, int> read;
    EXPECT_TRUE(ShortCheck(reads, -1, read));
    EXPECT_FALSE(ShortCheck(reads, 0, read));
    EXPECT_FALSE(ShortCheck(reads, 4, read));
}

}  // namespace
}  // namespace lintara
