#include <gtest/gtest.h>

#include "align/edge_align.h"
#include "strategy/block_gap.h"
#include "strategy/fillgap.h"

namespace lintara {
namespace {

using testing::BigGapTest;
using testing::First;
using testing::GapBases;
using testing::Genome;
using testing::Last;
using testing::RandomBases;

class BigGapWhole : public BigGapTest {};

// ---- one block -----------------------------------------------------------------------------------------------------

TEST_F(BigGapWhole, BlockAtTheBeforeEdgeIsFilledUpBehind) {
    SetGapLength(300);
    AddTile(-60, 100);
    EXPECT_EQ(Fill(300), GapBases(0, 200) + Ns(100));
    EXPECT_TRUE(LoggedInOrder({"block number of the gap 4\t1\nTreat as before block in the gap\nBefore Edge: ",
                               "the before block repeat tyep is 0\nthe read number is: 18\n",
                               "Treat the before block of the large gap\n"}));
}

TEST_F(BigGapWhole, BlockAtTheBeforeEdgeGoesFirstThoughItReachesTheAfterEdge) {
    SetGapLength(300);
    AddTile(-60, 250);
    EXPECT_EQ(Fill(300), GapBases(0, 300)) << "350 bases, of which 50 are the after contig's";
    EXPECT_TRUE(LoggedInOrder({"Treat as before block in the gap\n", "connect with after edge\t"}));
    EXPECT_FALSE(Logged("Treat as after block in the gap\n"));
}

TEST_F(BigGapWhole, TextOfTheGapsLengthIsNotConnected) {
    SetGapLength(300);
    AddTile(-60, 200);
    EXPECT_EQ(Fill(300), GapBases(0, 300));
    EXPECT_FALSE(Logged("connect with after edge"));
    Fill(299);
    EXPECT_TRUE(Logged("connect with after edge"));
}

TEST_F(BigGapWhole, BlockAtTheAfterEdgeIsFilledUpInFront) {
    SetGapLength(300);
    AddTile(100, 250);
    EXPECT_EQ(Fill(300), Ns(110) + GapBases(110, 300));
    EXPECT_TRUE(LoggedInOrder({"Treat as after block in the gap\nAfter  Edge: ", "the read number is: 17\n",
                               "Treat the after block of the large gap\n"}));
    EXPECT_FALSE(Logged("the before block repeat tyep is "));
}

TEST_F(BigGapWhole, BlockAtTheAfterEdgeThatIsTooLongIsCutAtTheBeforeEdge) {
    // The reads begin in the before contig, which their positions don't say: 340 bases are to be 300.
    SetGapLength(340);
    for (int i = -20; i <= 290; i += 10) Add(GapBases(i, i + 100), i + 20);
    EXPECT_EQ(Fill(300), GapBases(0, 340));
    EXPECT_TRUE(
        LoggedInOrder({"Treat as after block in the gap\n", "before read: ", "overlap with the before edge: "}));
}

TEST_F(BigGapWhole, LastReadMustEndBeyondTheGapForTheAfterEdge) {
    SetGapLength(300);
    AddTile(100, 200);
    EXPECT_EQ(Fill(300), Ns(50) + GapBases(100, 300) + Ns(50));
    EXPECT_TRUE(Logged("Treat the gap as middle block. \n"));
    Fill(299);
    EXPECT_TRUE(Logged("Treat as after block in the gap\n"));
}

TEST_F(BigGapWhole, OddDifferenceLeavesTheTextOneBaseShort) {
    SetGapLength(301);
    AddTile(100, 200);
    EXPECT_EQ(Fill(301), Ns(50) + GapBases(100, 300) + Ns(50));
}

TEST_F(BigGapWhole, MiddleBlockThatIsTooLongIsFittedBetweenTheEdges) {
    // The gap has 100 bases, and the block 8 of either contig besides, which its positions don't say. 16 bases too many
    // make 6 the shortest overlap.
    SetGapLength(100);
    for (int i = -8; i <= 8; i += 8) Add(GapBases(i, i + 100), 0);
    EXPECT_EQ(Fill(100), GapBases(0, 100));
    EXPECT_TRUE(LoggedInOrder({"Treat the gap as middle block. \n", "the before block repeat tyep is 0\n"}));
}

TEST_F(BigGapWhole, ShortAfterContigCannotBeFittedAndEndsTheProcess) {
    SetGapLength(100);
    contig2.resize(99);
    for (int i = -30; i <= 30; i += 10) Add(GapBases(i, i + 100), 0);
    EXPECT_EXIT(Fill(100), ::testing::ExitedWithCode(255), "^$");
}

TEST_F(BigGapWhole, BlockWithoutATextLeavesTheGapOpen) {
    SetGapLength(300);
    AddTrue({-50, 60});  // far apart in the genome's text: 110 bases
    position[1] = 40;
    EXPECT_EQ(Fill(300), GapBases(0, 50) + Ns(250));
    Clear();
    Add(GapBases(-50, 50), -50);
    EXPECT_EQ(Fill(300), Ns(300)) << "an edge and one read are no block";
    Clear();
    Add(GapBases(250, 350), 250);
    EXPECT_EQ(Fill(300), Ns(300));
}

class SolveBlockOf : public BigGapTest {
  protected:
    std::string Before(const std::string& contig) {
        Gap gap = MakeGap(300);
        std::string copy = contig;
        const std::string seq = solve_block_before(gap, copy, 0);
        EXPECT_EQ(copy, contig);
        log = NewLog();
        return seq;
    }
    std::string After(const std::string& contig) {
        Gap gap = MakeGap(300);
        std::string copy = contig;
        const std::string seq = solve_block_after(gap, copy, 0);
        log = NewLog();
        return seq;
    }
    std::string Middle() {
        Gap gap = MakeGap(300);
        const std::string seq = solve_block_middle(gap, 0);
        log = NewLog();
        return seq;
    }
};

TEST_F(SolveBlockOf, ContigBelowContigLenGivesNothing) {
    AddTile(-60, 260);
    EXPECT_EQ(Before(Genome(369, 400)), "");
    EXPECT_EQ(log, "Treat as before block in the gap\n");
    EXPECT_EQ(After(GapBases(300, 331)), "");
    EXPECT_EQ(log, "Treat as after block in the gap\n");
    EXPECT_EQ(Before(Genome(368, 400)), GapBases(0, 360));
    EXPECT_TRUE(Logged("Before Edge: " + Genome(368, 400) + "\t32\n"));
    EXPECT_NE(After(GapBases(300, 332)), "");
    EXPECT_TRUE(Logged("After  Edge: " + GapBases(300, 332) + "\t32\n"));
}

TEST_F(SolveBlockOf, EdgeIsTwoReadLengthsInUpperCase) {
    AddTile(-60, 260);
    std::string contig = Genome(0, 400);
    contig[399] = static_cast<char>(contig[399] + ('a' - 'A'));
    Before(contig);
    EXPECT_TRUE(LoggedInOrder({"Before Edge: " + Genome(200, 400) + "\t200\n", "get kmer finished!\n",
                               "the before block repeat tyep is 0\nthe read number is: 34\n"}));
    contig = GapBases(300, 700);
    contig[0] = static_cast<char>(contig[0] + ('a' - 'A'));
    After(contig);
    EXPECT_TRUE(LoggedInOrder(
        {"After  Edge: " + GapBases(300, 500) + "\t200\n", "get kmer finished!\nthe read number is: 34\n"}));
}

TEST_F(SolveBlockOf, FewerThanThreeReadsGiveNothing) {
    Add(GapBases(-40, 60), -40);
    EXPECT_EQ(Before(Genome(0, 400)), "");
    EXPECT_EQ(log, "Treat as before block in the gap\n");
    EXPECT_EQ(After(GapBases(20, 400)), "");
    EXPECT_EQ(log, "Treat as after block in the gap\n");
    Add(GapBases(-39, 61), -39);
    EXPECT_EQ(Before(Genome(0, 400)), GapBases(0, 61)) << "the edge counts";
    EXPECT_NE(After(GapBases(20, 400)), "");
    EXPECT_EQ(Middle(), "") << "here there is none to count";
    EXPECT_EQ(log, "Treat the gap as middle block. \n");
    Add(GapBases(-38, 62), -38);
    EXPECT_EQ(Middle(), GapBases(-40, 62));
}

TEST_F(SolveBlockOf, ReadsWithoutNAndOfMinOverlapBasesAreTaken) {
    const std::string read = GapBases(-20, 80);
    Add(read, -20);
    Add(First(read, 30), -20);
    Add(First(read, 29), -20);
    Add(read + "N", -20);
    Add(GapBases(-10, 90) + "n", -10);
    Before(Genome(0, 400));
    EXPECT_TRUE(Logged("the read number is: 4\n"));
    After(GapBases(60, 400));
    EXPECT_TRUE(Logged("the read number is: 4\n"));
    Middle();
    EXPECT_TRUE(Logged("the read number is: 3\n"));
}

TEST_F(SolveBlockOf, RepeatIsFoundInTheReadsAndNotRebuilt) {
    // The copy number isn't known here, so that the ordinary road is taken whatever the repeat.
    for (int i = 0; i < 3; ++i) Add(GapBases(-40 + i, 0) + std::string(100, 'A') + "CG", -40 + i);
    EXPECT_NE(Before(Genome(0, 400)), "");
    EXPECT_TRUE(LoggedInOrder(
        {"There is only a single TR unit.\n", "the before block repeat tyep is 1\nthe read number is: 4\n"}));
    Middle();
    EXPECT_TRUE(LoggedInOrder({"the before block repeat tyep is 1\nthe read number is: 3\n"}));
    After(Genome(0, 400));
    EXPECT_TRUE(LoggedInOrder({"There is only a single TR unit.\n", "the read number is: 4\n"}));
    EXPECT_FALSE(Logged("the before block repeat tyep is "));
}

TEST_F(SolveBlockOf, EdgeHasNoPartInTheSearchForARepeat) {
    AddTile(-40, 60);
    Before(Genome(200, 300) + std::string(100, 'A') + Genome(300, 400));
    EXPECT_TRUE(Logged("the before block repeat tyep is 0\n"));
}

// ---- check_middle_overlap ------------------------------------------------------------------------------------------

class CheckMiddleOverlap : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    /// @param head  bases of the after contig, 130, so that the shortest overlap for a gap of 100 is (int)(30 - 10)
    static std::string Check(std::string tail, std::string text, std::string head) {
        return check_middle_overlap(tail, text, head, 100);
    }
    /// Contigs that share so many bases with the block.
    static std::string Tail(const std::string& seq, int shared) {
        return RandomBases(130 - shared, 21) + First(seq, shared);
    }
    static std::string Head(const std::string& seq, int shared) {
        return Last(seq, shared) + RandomBases(130 - shared, 22);
    }
    static std::string Ns(int count) { return std::string(static_cast<std::size_t>(count), 'N'); }

    const std::string seq = RandomBases(130, 23);
};

TEST_F(CheckMiddleOverlap, OverlapsOnBothSidesAreCutOff) {
    EXPECT_EQ(Check(Tail(seq, 25), seq, Head(seq, 23)), seq.substr(25, 82));
}

TEST_F(CheckMiddleOverlap, OverlapsThatTakeAllLeaveTheGapOpen) {
    const std::string all = First(seq, 48);
    EXPECT_EQ(Check(Tail(all, 25), all, Head(all, 23)), Ns(100));
    const std::string more = First(seq, 49);
    EXPECT_EQ(Check(Tail(more, 25), more, Head(more, 23)), more.substr(25, 1));
}

TEST_F(CheckMiddleOverlap, OverlapOfTheShortestLengthIsNone) {
    // Both indexes are 0: 20 bases are N on either side.
    EXPECT_EQ(Check(Tail(seq, 20), seq, Head(seq, 20)), Ns(20) + seq.substr(20, 90) + Ns(20));
    const std::string all = First(seq, 40);
    EXPECT_EQ(Check(Tail(all, 20), all, Head(all, 20)), Ns(100));
    const std::string more = First(seq, 41);
    EXPECT_EQ(Check(Tail(more, 20), more, Head(more, 20)), Ns(20) + more.substr(20, 1) + Ns(20));
}

TEST_F(CheckMiddleOverlap, OverlapOnTheLeftAloneLeavesTheRightInDoubt) {
    // 105 bases are left, the last 20 of which are in doubt.
    EXPECT_EQ(Check(Tail(seq, 25), seq, Head(seq, 20)), seq.substr(25, 85) + Ns(20));
    // 100 bases are no less than the gap, 99 are.
    const std::string fits = First(seq, 125);
    EXPECT_EQ(Check(Tail(fits, 25), fits, Head(fits, 20)), fits.substr(25, 80) + Ns(20));
    const std::string less = First(seq, 124);
    EXPECT_EQ(Check(Tail(less, 25), less, Head(less, 20)), less.substr(25) + Ns(1));
}

TEST_F(CheckMiddleOverlap, OverlapOnTheRightAloneLeavesTheLeftInDoubt) {
    EXPECT_EQ(Check(Tail(seq, 20), seq, Head(seq, 23)), Ns(20) + seq.substr(20, 87));
    const std::string fits = First(seq, 123);
    EXPECT_EQ(Check(Tail(fits, 20), fits, Head(fits, 23)), Ns(20) + fits.substr(20, 80));
    const std::string less = First(seq, 122);
    EXPECT_EQ(Check(Tail(less, 20), less, Head(less, 23)), Ns(1) + First(less, 99));
}

TEST_F(CheckMiddleOverlap, AmbiguousOverlapsWidenTheDoubt) {
    const std::string tail = RandomBases(130, 24);
    const std::string head = RandomBases(130, 25);
    const int match1 = align_connect(tail, seq, 20);
    const int match2 = align_connect(seq, head, 20);
    ASSERT_LT(match1, 0);
    ASSERT_LT(match2, 0);
    const int left = 20 - match1;
    const int right = 20 - match2;
    const int inner = 130 - left - right;
    EXPECT_EQ(Check(tail, seq, head), inner <= 0 ? Ns(100) : Ns(left) + seq.substr(left, inner) + Ns(right));
    EXPECT_EQ(Check(tail, seq, Head(seq, 23)), Ns(left) + seq.substr(0, 107).substr(std::min(left, 107)));
    const int kept = 105 - right;
    // A cut of more than there is leaves the whole.
    EXPECT_EQ(Check(Tail(seq, 25), seq, head), (kept < 0 ? seq.substr(25) : seq.substr(25, kept)) + Ns(right));
}

TEST_F(CheckMiddleOverlap, ShortestOverlapIsSixAtLeast) {
    // 27 - 10.5 is 16 in whole bases; 15 - 10.5 is 4 and becomes 6.
    for (const auto& [extra, shortest] : {std::pair{27, 16}, std::pair{15, 6}}) {
        std::string tail = RandomBases(140 - shortest - 2, 26) + First(seq, shortest + 2);
        std::string head = Last(seq, shortest + 1) + RandomBases(105 + extra - shortest - 1, 27);
        std::string text = seq;
        EXPECT_EQ(check_middle_overlap(tail, text, head, 105), seq.substr(shortest + 2, 130 - 2 * shortest - 3));
        tail = RandomBases(140 - shortest, 26) + First(seq, shortest);
        text = seq;
        const std::string one_sided = seq.substr(0, 130 - shortest - 1);
        EXPECT_EQ(check_middle_overlap(tail, text, head, 105), Ns(shortest) + one_sided.substr(shortest));
    }
}

TEST_F(CheckMiddleOverlap, HeadShorterThanTheGapEndsTheProcess) {
    std::string tail = RandomBases(130, 24);
    std::string text = seq;
    std::string head = RandomBases(99, 25);
    EXPECT_EXIT(check_middle_overlap(tail, text, head, 100), ::testing::ExitedWithCode(255), "^$");
}

// ---- GapLenCheck ---------------------------------------------------------------------------------------------------

/// A text whose letters alone count: runs of C and of N.
std::string Runs(std::initializer_list<std::pair<char, int>> runs) {
    std::string text;
    for (const auto& [letter, count] : runs) text += std::string(static_cast<std::size_t>(count), letter);
    return text;
}
std::string Checked(std::string seq, int gaplen) {
    const std::string result = GapLenCheck(seq, gaplen, 0);
    return result;
}

TEST(GapLenCheckRule, TenthMoreOrLessIsLeftAlone) {
    for (const int length : {900, 1000, 1100}) {
        const std::string text = Runs({{'C', 100}, {'N', 400}, {'C', length - 500}});
        EXPECT_EQ(Checked(text, 1000), text);
    }
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 400}, {'C', 601}}), 1000), Runs({{'C', 100}, {'N', 299}, {'C', 601}}));
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 400}, {'C', 399}}), 1000), Runs({{'C', 100}, {'N', 501}, {'C', 399}}));
}

TEST(GapLenCheckRule, TooLongATextLosesNOnly) {
    // 300 bases too many: no run of more than 300 N, so nothing is cut.
    const std::string text = Runs({{'C', 500}, {'N', 300}, {'C', 500}});
    EXPECT_EQ(Checked(text, 1000), text);
    EXPECT_EQ(Checked(Runs({{'C', 500}, {'N', 301}, {'C', 500}}), 1001), Runs({{'C', 500}, {'N', 1}, {'C', 500}}));
    const std::string bases = Runs({{'C', 1500}});
    EXPECT_EQ(Checked(bases, 1000), bases);
}

TEST(GapLenCheckRule, LaterRunReplacesAnEarlierOne) {
    // 300 too many; two runs of 301 and 310 N.
    EXPECT_EQ(Checked(Runs({{'C', 300}, {'N', 301}, {'C', 289}, {'N', 310}, {'C', 100}}), 1000),
              Runs({{'C', 300}, {'N', 301}, {'C', 289}, {'N', 10}, {'C', 100}}));
    // The later one too short.
    EXPECT_EQ(Checked(Runs({{'C', 300}, {'N', 301}, {'C', 299}, {'N', 300}, {'C', 100}}), 1000),
              Runs({{'C', 300}, {'N', 1}, {'C', 299}, {'N', 300}, {'C', 100}}));
}

TEST(GapLenCheckRule, FirstLongRunStopsTheSearch) {
    // 300 too many: 316 N and more stop it at once, though a later run is longer.
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 316}, {'C', 384}, {'N', 400}, {'C', 100}}), 1000),
              Runs({{'C', 100}, {'N', 16}, {'C', 384}, {'N', 400}, {'C', 100}}));
    // 315 don't: the later run is the one.
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 315}, {'C', 385}, {'N', 400}, {'C', 100}}), 1000),
              Runs({{'C', 100}, {'N', 315}, {'C', 385}, {'N', 100}, {'C', 100}}));
    // It also takes the place of an earlier, shorter one.
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 301}, {'C', 399}, {'N', 400}, {'C', 100}}), 1000),
              Runs({{'C', 100}, {'N', 301}, {'C', 399}, {'N', 100}, {'C', 100}}));
}

TEST(GapLenCheckRule, RunAtTheEndNeverEnds) {
    const std::string text = Runs({{'C', 985}, {'N', 315}});
    EXPECT_EQ(Checked(text, 1000), text);
    EXPECT_EQ(Checked(Runs({{'C', 984}, {'N', 316}}), 1000), Runs({{'C', 984}, {'N', 16}}));
}

TEST(GapLenCheckRule, RunAtTheStartMustLeaveAPlaceAboveZero) {
    // The cut begins at the run's end less 300: at 1 for 301 N.
    EXPECT_EQ(Checked(Runs({{'N', 301}, {'C', 999}}), 1000), Runs({{'N', 1}, {'C', 999}}));
}

TEST(GapLenCheckRule, TooShortATextGrowsAtItsLastN) {
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 1}, {'C', 100}, {'N', 2}, {'C', 97}}), 1000),
              Runs({{'C', 100}, {'N', 1}, {'C', 100}, {'N', 702}, {'C', 97}}));
    EXPECT_EQ(Checked(Runs({{'N', 1}, {'C', 100}}), 1000), Runs({{'N', 900}, {'C', 100}}));
    EXPECT_EQ(Checked(Runs({{'C', 100}, {'N', 1}}), 1000), Runs({{'C', 100}, {'N', 900}}));
}

TEST(GapLenCheckRule, TooShortATextWithoutNIsLeftAlone) {
    const std::string text = Runs({{'C', 300}});
    EXPECT_EQ(Checked(text, 1000), text);
    EXPECT_EQ(Checked("", 1000), "");
}

}  // namespace
}  // namespace lintara
