#include "join/edge_connect.h"

#include <gtest/gtest.h>

#include "join/bases.h"
#include "join/tag_table.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using ::testing::ExitedWithCode;
using testing::First;
using testing::Last;
using testing::Open;
using testing::TagTable;

/// Three times 8 bases: two sequences that share it at their ends overlap in 8, 16 or 24 bases alike.
const char* const kThrice = "ACGGTCATACGGTCATACGGTCAT";

class ConnectBeforeTest : public testing::ThreadStreamsTest {
  protected:
    const std::string edge = Bases(50, 100);
    const std::string unclear = Bases(50, 76) + kThrice;
};

TEST_F(ConnectBeforeTest, ClearOverlapGivesWhatLiesBehindTheEdge) {
    const std::string filling = Bases(51, 120);
    EXPECT_EQ(connect_before(edge, Last(edge, 60) + filling, 100, 0), filling);
    EXPECT_EQ(Log(), "before read: " + edge + "\noverlap with the before edge: 52\tMin8\n");
}

TEST_F(ConnectBeforeTest, ThreeTimesTheGapIsBelievedOnlyBelowAHundred) {
    const std::string filling = Bases(51, 300);
    EXPECT_EQ(connect_before(edge, Last(edge, 60) + filling, 100, 0), Open(100));
    EXPECT_EQ(connect_before(edge, Last(edge, 60) + First(filling, 299), 100, 0), First(filling, 299));
    EXPECT_EQ(connect_before(edge, Last(edge, 60) + filling, 99, 0), filling);
}

TEST_F(ConnectBeforeTest, ShortestOverlapFollowsTheOverhang) {
    // Overhang 100: the smaller of 100 - 3 * 20 and 20.
    EXPECT_EQ(connect_before(edge, Last(edge, 40) + Bases(51, 80), 20, 0), Bases(51, 80));
    EXPECT_EQ(NewLog(), "before read: " + edge + "\noverlap with the before edge: 20\tMin20\n");
    // Overhang 85: the smaller of 85 - 3 * 25 and 25.
    EXPECT_EQ(connect_before(edge, Last(edge, 40) + Bases(51, 70), 25, 0), Bases(51, 70));
    EXPECT_EQ(NewLog(), "before read: " + edge + "\noverlap with the before edge: 30\tMin10\n");
    // Overhang 210: the smaller of 210 - 3 * 50 and 50, but at most 30.
    EXPECT_EQ(connect_before(edge, Last(edge, 40) + Bases(51, 220), 50, 0), Bases(51, 220));
    EXPECT_EQ(NewLog(), "before read: " + edge + "\noverlap with the before edge: 10\tMin30\n");
}

TEST_F(ConnectBeforeTest, SequencesBelowTheShortestOverlapStayOpen) {
    EXPECT_EQ(connect_before("ACGTACG", Bases(51, 60), 30, 0), Open(30));
    EXPECT_EQ(Log(), "before read: ACGTACG\n");
    EXPECT_EQ(connect_before(edge, "ACGTACG", 5, 0), Open(5));
}

TEST_F(ConnectBeforeTest, UnclearOverlapWithinTheOverhangStandsAsN) {
    // 150 bases for a gap of 100: overhang 50, candidate 24.
    const std::string seq2 = kThrice + Bases(52, 126);
    EXPECT_EQ(connect_before(unclear, seq2, 100, 0), Open(24) + Last(seq2, 76));
    EXPECT_EQ(Log(), "before read: " + unclear + "\noverlap with the before edge: -16\tMin8\n");
}

TEST_F(ConnectBeforeTest, UnclearOverlapBeyondTheOverhangLeavesItsExcessAsN) {
    const std::string seq2 = kThrice + Bases(52, 86);
    EXPECT_EQ(connect_before(unclear, seq2, 100, 0), Open(14) + Last(seq2, 86));
    EXPECT_EQ(Log(), "before read: " + unclear + "\noverlap with the before edge: -16\tMin8\n110\t24\t10\n");
    // An overhang of the candidate's own length leaves the whole candidate.
    EXPECT_EQ(connect_before(unclear, kThrice + Bases(52, 100), 100, 0), Open(24) + Last(kThrice + Bases(52, 100), 76));
}

TEST_F(ConnectBeforeTest, UnclearOverlapTooLongForTheSequenceStaysOpen) {
    EXPECT_EQ(connect_before(unclear, kThrice, 20, 0), Open(20));
    EXPECT_EQ(Log(), "before read: " + unclear + "\noverlap with the before edge: -16\tMin8\n");
    // Overhang 30 and candidate 24 are more than the 40 bases.
    EXPECT_EQ(connect_before(unclear, kThrice + Bases(52, 16), 10, 0), Open(10));
    // With 54 bases they leave nothing.
    EXPECT_EQ(connect_before(unclear, kThrice + Bases(52, 30), 24, 0), Open(24));
}

TEST_F(ConnectBeforeTest, SequenceInsideTheEdgeMayBeMinus) {
    EXPECT_EQ(connect_before(edge, edge.substr(40, 50), 20, 0), Open(20));
    EXPECT_EQ(Log(),
              "before read: " + edge + "\noverlap with the before edge: 52\tMin8\nThe real gap size may be minus!\n");
}

TEST_F(ConnectBeforeTest, SequenceThatIsAllOverlapGivesAnEmptyText) {
    EXPECT_EQ(connect_before(edge, Last(edge, 50), 20, 0), "");
}

TEST_F(ConnectBeforeTest, OverlapOfTheShortestLengthIsClear) {
    const std::string seq2 = Bases(51, 60);
    EXPECT_EQ(connect_before(First(seq2, 8), seq2, 30, 0), Last(seq2, 52));
    EXPECT_EQ(NewLog(), "before read: " + First(seq2, 8) + "\noverlap with the before edge: 0\tMin8\n");
    EXPECT_EQ(connect_before(edge, Last(edge, 8), 5, 0), "");
}

TEST_F(ConnectBeforeTest, SequenceOfTheGapsLengthIsTaken) {
    EXPECT_EQ(connect_before(edge, Last(edge, 20) + Bases(51, 30), 50, 0), Bases(51, 30));
}

TEST_F(ConnectBeforeTest, SequenceShorterThanTheGapEndsTheProcess) {
    EXPECT_EXIT(connect_before("ACGT", "ACG", 5, 0), ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "Decision Error!\t3\t5\n");
}

class ConnectAfterTest : public testing::ThreadStreamsTest {
  protected:
    const std::string edge = Bases(60, 100);
    const std::string unclear = kThrice + Bases(60, 76);
};

TEST_F(ConnectAfterTest, ClearOverlapGivesWhatLiesBeforeTheEdge) {
    const std::string filling = Bases(61, 120);
    EXPECT_EQ(connect_after(filling + First(edge, 60), edge, 100, 0), filling);
    EXPECT_EQ(Log(), "connect with after edge\t52\t8\t\n");
}

TEST_F(ConnectAfterTest, ThreeTimesTheGapIsBelievedOnlyBelowAHundred) {
    const std::string filling = Bases(61, 300);
    EXPECT_EQ(connect_after(filling + First(edge, 60), edge, 100, 0), Open(100));
    EXPECT_EQ(connect_after(First(filling, 299) + First(edge, 60), edge, 100, 0), First(filling, 299));
    EXPECT_EQ(connect_after(filling + First(edge, 60), edge, 99, 0), filling);
}

TEST_F(ConnectAfterTest, SequencesBelowTheShortestOverlapStayOpenWithoutALine) {
    EXPECT_EQ(connect_after(Bases(61, 60), "ACGTACG", 30, 0), Open(30));
    EXPECT_EQ(connect_after("ACGTACG", edge, 5, 0), Open(5));
    EXPECT_EQ(Log(), "");
}

TEST_F(ConnectAfterTest, UnclearOverlapWithinTheOverhangStandsAsN) {
    const std::string seq1 = Bases(62, 126) + kThrice;
    EXPECT_EQ(connect_after(seq1, unclear, 100, 0), First(seq1, 76) + Open(24));
    EXPECT_EQ(Log(), "connect with after edge\t-16\t8\t\n");
}

TEST_F(ConnectAfterTest, UnclearOverlapBeyondTheOverhangLeavesItsExcessAsN) {
    const std::string seq1 = Bases(62, 86) + kThrice;
    EXPECT_EQ(connect_after(seq1, unclear, 100, 0), First(seq1, 86) + Open(14));
    EXPECT_EQ(Log(), "connect with after edge\t-16\t8\t\n");
    EXPECT_EQ(connect_after(Bases(62, 100) + kThrice, unclear, 100, 0), First(Bases(62, 100), 76) + Open(24));
}

TEST_F(ConnectAfterTest, UnclearOverlapTooLongForTheSequenceStaysOpen) {
    EXPECT_EQ(connect_after(kThrice, unclear, 20, 0), Open(20));
    EXPECT_EQ(connect_after(Bases(62, 16) + kThrice, unclear, 10, 0), Open(10));
    EXPECT_EQ(connect_after(Bases(62, 30) + kThrice, unclear, 24, 0), Open(24));
}

TEST_F(ConnectAfterTest, SequenceThatIsAllOverlapMayBeMinus) {
    // The mirror gives an empty text here.
    EXPECT_EQ(connect_after(First(edge, 50), edge, 20, 0), Open(20));
    EXPECT_EQ(Log(), "connect with after edge\t42\t8\t\nGap real size may be minus!\n");
    EXPECT_EQ(connect_after("A" + First(edge, 50), edge, 20, 0), "A");
}

TEST_F(ConnectAfterTest, OverlapOfTheShortestLengthIsClear) {
    const std::string seq1 = Bases(61, 60);
    EXPECT_EQ(connect_after(seq1, Last(seq1, 8), 30, 0), First(seq1, 52));
    EXPECT_EQ(NewLog(), "connect with after edge\t0\t8\t\n");
    EXPECT_EQ(connect_after(First(edge, 8), edge, 5, 0), Open(5));
    EXPECT_EQ(NewLog(), "connect with after edge\t0\t8\t\nGap real size may be minus!\n");
}

TEST_F(ConnectAfterTest, SequenceOfTheGapsLengthIsTaken) {
    EXPECT_EQ(connect_after(Bases(61, 30) + First(edge, 20), edge, 50, 0), Bases(61, 30));
}

TEST_F(ConnectAfterTest, SequenceShorterThanTheGapEndsTheProcess) {
    EXPECT_EXIT(connect_after("ACGT", "ACGTACGT", 6, 0), ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "Decision Error!\t4\t6\n");
}

class RewardCheckTest : public testing::ThreadStreamsTest {
  protected:
    std::string Run(int gapsize, bool initial_support = false) {
        support = initial_support;
        const std::vector<Read> reads{Read(before_edge, -200), Read(Bases(72, 100), 0), Read(after_edge, gapsize)};
        return RewardCheck(before, after, gapsize, reads, tags.Info(), support, 0);
    }

    std::string before_edge = Bases(70, 200);
    std::string after_edge = Bases(71, 200);
    std::string before;
    std::string after;
    bool support = false;
    TagTable tags;
};

TEST_F(RewardCheckTest, OverlapOfTheWholeAfterEdgeIsAccepted) {
    after_edge = Bases(71, 60);
    before = Bases(73, 80) + after_edge;
    after = Bases(74, 70);
    EXPECT_EQ(Run(80), Bases(73, 80));
    EXPECT_TRUE(support);
    EXPECT_EQ(Log(), "Have overlap with after edge!\t60\nAccept the long overlap.\n");
}

TEST_F(RewardCheckTest, OverlapBeyondTheExpansionMayBeMinus) {
    before_edge = Bases(70, 150) + First(after_edge, 20);
    before = after_edge.substr(20, 30);
    after = Bases(74, 70);
    EXPECT_EQ(Run(80, true), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(Log(), "Have overlap with after edge!\t50\ngapsize maybe minus.\n");
}

TEST_F(RewardCheckTest, OverlapOfTheWholeExpansionLeavesNothing) {
    before = First(after_edge, 40);
    after = Bases(74, 50);
    EXPECT_EQ(Run(10), "");
    EXPECT_TRUE(support);
    EXPECT_EQ(NewLog(), "Have overlap with after edge!\t40\npass over check!\n");
    after_edge = Bases(71, 60);
    before = after_edge;
    EXPECT_EQ(Run(80), "");
    EXPECT_TRUE(support);
    EXPECT_EQ(NewLog(), "Have overlap with after edge!\t60\nAccept the long overlap.\n");
}

TEST_F(RewardCheckTest, OverlapOfMinAlignBasesCounts) {
    before = Bases(73, 80) + First(after_edge, 8);
    after = Bases(74, 200);
    EXPECT_EQ(Run(80), Bases(73, 80));
    EXPECT_TRUE(support);
    EXPECT_EQ(Log(), "Have overlap with after edge!\t8\npass over check!\n");
}

TEST_F(RewardCheckTest, TheSequenceNearerTheEstimateWinsAndATieGoesToTheRewardWalk) {
    before = Bases(73, 80) + First(after_edge, 40);
    after = Bases(74, 90);
    EXPECT_EQ(Run(84), Bases(73, 80));
    EXPECT_TRUE(support);
    EXPECT_EQ(Log(), "Have overlap with after edge!\t40\npass over check!\n");
    EXPECT_EQ(Run(85), after);
    EXPECT_TRUE(support);
    EXPECT_EQ(Run(86), after);
}

TEST_F(RewardCheckTest, OverlapThatLooksLikeARepeatLeavesTheRewardWalk) {
    before = Bases(73, 80) + First(after_edge, 40);
    after = Bases(74, 200);
    tags.SetAll(First(after_edge, 40), 60);
    EXPECT_EQ(Run(80), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(NewLog(), "Have overlap with after edge!\t40\n");
    EXPECT_EQ(Run(80, true), after);
    EXPECT_TRUE(support);
}

TEST_F(RewardCheckTest, OverlapOfNinetyNinePercentIsNone) {
    before = Bases(73, 80) + Changed(First(after_edge, 100), 50);
    after = Bases(74, 190);
    EXPECT_EQ(Run(100), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(NewLog(), "before and after edge have no overlap.\n");
    // One change in 101 columns.
    before = Bases(73, 80) + Changed(First(after_edge, 101), 50);
    EXPECT_EQ(Run(80), Bases(73, 80));
    EXPECT_EQ(NewLog(), "Have overlap with after edge!\t101\npass over check!\n");
}

TEST_F(RewardCheckTest, ExpansionThatBeginsTheRewardWalkSupportsIt) {
    after = Bases(74, 100);
    before = Changed(Changed(Changed(First(after, 40), 5), 20), 30);
    EXPECT_EQ(Run(80), Bases(74, 100));
    EXPECT_TRUE(support);
    EXPECT_EQ(NewLog(), "before and after edge have no overlap.\nbefore support!\n");
    // Four changes in 40 bases are exactly 0.9.
    before = Changed(before, 10);
    EXPECT_EQ(Run(80), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(NewLog(), "before and after edge have no overlap.\n");
}

TEST_F(RewardCheckTest, SupportNeedsMoreThanNineTenths) {
    // 19 changes in 200 bases are 0.905.
    after = Bases(74, 220);
    before = First(after, 200);
    for (std::size_t place = 5; place < 195; place += 10) before = Changed(before, place);
    EXPECT_EQ(Run(300), after);
    EXPECT_TRUE(support);
    EXPECT_EQ(Log(), "before and after edge have no overlap.\nbefore support!\n");
}

TEST_F(RewardCheckTest, ExpansionsOfOneLengthAreNotCompared) {
    before = Bases(74, 60);
    after = before;
    EXPECT_EQ(Run(60), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(Log(), "before and after edge have no overlap.\n");
}

TEST_F(RewardCheckTest, RewardWalkLosesWhatStandsAheadOfTheExpansion) {
    before = Bases(73, 50);
    after = Bases(75, 20) + before + Bases(76, 30);
    EXPECT_EQ(Run(60), before + Bases(76, 30));
    EXPECT_EQ(after, before + Bases(76, 30));
    EXPECT_TRUE(support);
    EXPECT_EQ(Log(), "before and after edge have no overlap.\n");
}

TEST_F(RewardCheckTest, LongExpansionIsCutToTheGapAheadOfTheSearch) {
    before = Bases(73, 180);
    after = Bases(75, 20) + First(before, 150) + Bases(76, 50);
    EXPECT_EQ(Run(150), First(before, 150) + Bases(76, 50));
    EXPECT_EQ(before, First(Bases(73, 180), 150));
    EXPECT_TRUE(support);
}

TEST_F(RewardCheckTest, ExpansionStaysWholeInAGapOfReadLen) {
    before = Bases(73, 180);
    after = Bases(75, 20) + First(before, 150) + Bases(76, 50);
    const std::string whole = after;
    EXPECT_EQ(Run(100), whole);
    EXPECT_EQ(before, Bases(73, 180));
    EXPECT_EQ(after, whole);
    EXPECT_FALSE(support);
}

TEST_F(RewardCheckTest, LongerExpansionIsLinkedAtTheLastPlaceOfTheRewardWalk) {
    after = Bases(74, 40);
    before = Bases(73, 50) + after + Bases(76, 30);
    EXPECT_EQ(Run(100), Bases(73, 50) + after);
    EXPECT_TRUE(support);
    before = Bases(73, 50) + after + Bases(76, 30) + after + Bases(77, 10);
    EXPECT_EQ(Run(100), Bases(73, 50) + after + Bases(76, 30) + after);
    EXPECT_TRUE(support);
    before = Bases(73, 100);
    EXPECT_EQ(Run(100), after);
    EXPECT_FALSE(support);
}

TEST_F(RewardCheckTest, LongerExpansionMustExceedFourFifthsOfTheGap) {
    after = Bases(74, 40);
    before = Bases(73, 20) + after + Bases(76, 20);
    EXPECT_EQ(Run(100), after);
    EXPECT_FALSE(support);
    EXPECT_EQ(Run(99), Bases(73, 20) + after);
    EXPECT_TRUE(support);
}

class LongCutTest : public testing::ThreadStreamsTest {
  protected:
    std::string Cut(std::string seq, const std::string& before, const std::string& after) {
        LongCut(seq, before, after, 0, 0);
        return seq;
    }

    /// An edge that is longer than all sequences here, and so left out.
    const std::string longedge = Bases(80, 500);
};

TEST_F(LongCutTest, ShortAfterEdgeIsCutWithFewerThanTwoErrors) {
    const std::string after = Bases(81, 50);
    const std::string inside = Bases(82, 50);
    EXPECT_EQ(Cut(inside + Changed(after, 20), longedge, after), inside);
    EXPECT_EQ(Log(), "Begin long cut!\tinitial size: 100\nafter cut size: 50\n");
    const std::string two = inside + Changed(Changed(after, 20), 30);
    EXPECT_EQ(Cut(two, longedge, after), two);
    // 64 bases, so that the two errors are reckoned exactly.
    const std::string exact = Bases(82, 64) + Changed(Changed(Bases(81, 64), 20), 30);
    EXPECT_EQ(Cut(exact, longedge, Bases(81, 64)), exact);
}

TEST_F(LongCutTest, AfterEdgeIsComparedFromTheOverlapsLengthOn) {
    // The edge ends the sequence, but base 50 is not where it begins.
    const std::string after = Bases(81, 50);
    const std::string seq = Bases(82, 70) + after;
    EXPECT_EQ(Cut(seq, longedge, after), seq);
    // The edge 10 bases ahead of the end of 120.
    EXPECT_EQ(Cut(Bases(82, 60) + after + Bases(83, 10), longedge, after), Bases(82, 60));
}

TEST_F(LongCutTest, AfterEdgeOfReadLenIsNeverCut) {
    for (const int size : {99, 100, 101}) {
        const std::string after = Bases(81, size);
        const std::string seq = Bases(82, size) + after;
        EXPECT_EQ(Cut(seq, longedge, after), size == 100 ? seq : Bases(82, size)) << size;
    }
}

TEST_F(LongCutTest, LongAfterEdgeIsCutAboveNinetyNinePercent) {
    std::string after = Bases(81, 100);
    ReadLen = 90;
    EXPECT_EQ(Cut(Bases(82, 100) + after, longedge, after), Bases(82, 100));
    const std::string seq = Bases(82, 100) + Changed(after, 50);
    EXPECT_EQ(Cut(seq, longedge, after), seq);
    after = Bases(81, 101);
    EXPECT_EQ(Cut(Bases(82, 101) + Changed(after, 50), longedge, after), Bases(82, 101));
}

TEST_F(LongCutTest, UnclearAfterEdgeIsCutAtItsFirstPlace) {
    const std::string after = Bases(81, 20);
    EXPECT_EQ(Cut(Bases(82, 60) + after + after + "ACGTA", longedge, after), Bases(82, 60));
    EXPECT_EQ(Cut(Bases(82, 60), longedge, after), Bases(82, 60));
}

TEST_F(LongCutTest, AfterEdgeThatOpensTheSequenceIsLeft) {
    // The overlap is the whole sequence, and nothing stands behind it.
    const std::string after = Bases(81, 50);
    EXPECT_EQ(Cut(after + Bases(82, 60), longedge, after), after + Bases(82, 60));
}

TEST_F(LongCutTest, ShortBeforeEdgeIsCutWithFewerThanTwoErrors) {
    const std::string before = Bases(81, 50);
    const std::string inside = Bases(82, 60);
    EXPECT_EQ(Cut(Changed(before, 20) + inside, before, longedge), inside);
    EXPECT_EQ(Log(), "Begin long cut!\tinitial size: 110\nafter cut size: 60\n");
    const std::string two = Changed(Changed(before, 20), 30) + inside;
    EXPECT_EQ(Cut(two, before, longedge), two);
    // All ahead of the edge goes with it.
    EXPECT_EQ(Cut(Bases(83, 10) + before + inside, before, longedge), inside);
}

TEST_F(LongCutTest, LongBeforeEdgeAsksForALongAfterEdge) {
    const std::string before = Bases(81, 120);
    const std::string seq = before + Bases(82, 180);
    EXPECT_EQ(Cut(seq, before, longedge), Bases(82, 180));
    EXPECT_EQ(Cut(seq, before, Bases(84, 101)), Bases(82, 180));
    EXPECT_EQ(Cut(seq, before, Bases(84, 100)), seq);
    EXPECT_EQ(Cut(seq, before, Bases(84, 50)), seq);
}

TEST_F(LongCutTest, ShortBeforeEdgeAboveNinetyNinePercentGoesByTheAfterEdgeToo) {
    // As long as a read: only the first test can cut it, and it looks at the other edge.
    const std::string before = Bases(81, 100);
    EXPECT_EQ(Cut(before + Bases(82, 180), before, longedge), Bases(82, 180));
    EXPECT_EQ(Cut(before + Bases(82, 180), before, Bases(84, 60)), before + Bases(82, 180));
}

TEST_F(LongCutTest, UnclearBeforeEdgeIsCutBehindItsFirstPlace) {
    const std::string before = Bases(81, 20);
    EXPECT_EQ(Cut("ACGTA" + before + before + Bases(82, 60), before, longedge), before + Bases(82, 60));
    EXPECT_EQ(Cut(Bases(82, 60), before, longedge), Bases(82, 60));
}

TEST_F(LongCutTest, BothEdgesAreCutAndEdgesThatAreNotShorterLeftOut) {
    const std::string before = Bases(81, 40);
    const std::string after = Bases(85, 70);
    EXPECT_EQ(Cut(before + Bases(82, 30) + after, before, after), Bases(82, 30));
    EXPECT_EQ(Cut(before, before, before), before);
    EXPECT_EQ(Cut("", before, after), "");
}

TEST_F(LongCutTest, UnclearEdgeOfTwoBasesEndsTheProcess) {
    EXPECT_EXIT(Cut("ACACACACACACACACACAC", longedge, "AC"), ExitedWithCode(255),
                "Error! pattern length should not be longer than string length!\t2\t20\n$");
}

std::vector<int> Cleaned(std::vector<int> order) {
    clearn_order(order);
    return order;
}

TEST(ClearnOrder, LoopGoesAndTheLaterPlaceStays) {
    EXPECT_EQ(Cleaned({1, 5, 7, 5, 9}), (std::vector<int>{1, 5, 9}));
    EXPECT_EQ(Cleaned({1, 5, 7}), (std::vector<int>{1, 5, 7}));
    EXPECT_EQ(Cleaned({}), (std::vector<int>{}));
}

TEST(ClearnOrder, LaterPlaceMayStartOneMoreLoop) {
    EXPECT_EQ(Cleaned({1, 5, 7, 5, 9, 5, 3}), (std::vector<int>{1, 5, 3}));
    EXPECT_EQ(Cleaned({4, 4}), (std::vector<int>{4}));
    EXPECT_EQ(Cleaned({4, 4, 4}), (std::vector<int>{4}));
}

TEST(ClearnOrder, LoopsInsideALoopGoWithIt) {
    EXPECT_EQ(Cleaned({1, 2, 3, 2, 1, 6}), (std::vector<int>{1, 6}));
    // The loop of 2 closes behind the one of 1 and no longer begins ahead of it.
    EXPECT_EQ(Cleaned({1, 2, 1, 2}), (std::vector<int>{1, 2}));
}

TEST(ClearnOrder, NoReadEntriesGoAndTwoOfThemAreALoopToo) {
    EXPECT_EQ(Cleaned({-1, 3, 4}), (std::vector<int>{3, 4}));
    EXPECT_EQ(Cleaned({2, -1, 3, -1, 4}), (std::vector<int>{2, 4}));
}

TEST(Connect, PathsMeetAtASharedRead) {
    std::uint8_t** matrix = nullptr;
    std::vector<int> starts{0, 3, 5};
    std::vector<int> ends{3, 7, 9};
    EXPECT_EQ(connect(starts, ends, matrix), (std::vector<int>{0, 3, 7, 9}));
    EXPECT_EQ(starts, (std::vector<int>{0, 3, 5}));
    EXPECT_TRUE(ends.empty());
}

TEST(Connect, WithoutASharedReadTheFirstPathStands) {
    std::uint8_t** matrix = nullptr;
    std::vector<int> starts{0, 3, 5};
    std::vector<int> ends{6, 7, 9};
    EXPECT_EQ(connect(starts, ends, matrix), (std::vector<int>{0, 3, 5}));
    EXPECT_EQ(ends, (std::vector<int>{6, 7, 9}));
}

class UndistriCheckTest : public testing::ThreadStreamsTest {
  protected:
    /// A block whose before edge has the first number of neighbours and whose after edge has the second.
    bool Check(int before, int after, int num = 6) {
        std::vector<std::vector<std::uint8_t>> cells(num, std::vector<std::uint8_t>(num, 0));
        for (int i = 1; i <= before; ++i) cells[0][i] = 50;
        for (int i = 1; i <= after; ++i) cells[i][num - 1] = 255;
        std::vector<std::uint8_t*> rows;
        for (auto& row : cells) rows.push_back(row.data());
        std::uint8_t** matrix = rows.data();
        return UndistriCheck(matrix, num, 0);
    }
};

TEST_F(UndistriCheckTest, ExactlyOneEdgeHasTwoNeighbours) {
    EXPECT_TRUE(Check(1, 2));
    EXPECT_EQ(NewLog(), "before num: 1\tafter num: 2\n");
    EXPECT_TRUE(Check(3, 0));
    EXPECT_FALSE(Check(2, 2));
    EXPECT_FALSE(Check(1, 1));
    EXPECT_FALSE(Check(0, 1));
}

TEST_F(UndistriCheckTest, FewerThanFourReadsAlwaysCount) {
    EXPECT_TRUE(Check(2, 2, 3));
    EXPECT_EQ(NewLog(), "");
    EXPECT_FALSE(Check(2, 2, 4));
}

}  // namespace
}  // namespace lintara
