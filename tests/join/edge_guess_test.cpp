#include <gtest/gtest.h>

#include "join/bases.h"
#include "join/edge_connect.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using testing::First;
using testing::Last;
using testing::Open;

std::string OverlapLine(int overlen) {
    return "The Two enlonged part maybe have overlap with each other, with overlap length: " + std::to_string(overlen) +
           "\n";
}

const char* const kZeroLine = "Zero gap size check!\n";
const char* const kTryLine = "Try to connect before and after expand sequence\n";
const char* const kUndecidedLine = "the overlap of the two sequence cannot be decided, try to connect with edge\n";
const char* const kCutLine =
    "The overlap with edge is not sure. Then connect the before and after and cut the overlap region.\n";

class CutSeqTest : public testing::ThreadStreamsTest {
  protected:
    std::string Run(int overlen) { return cut_seq(before, after, overlen, before_edge, after_edge, 0); }

    const std::string before_edge = Bases(90, 100);
    const std::string after_edge = Bases(91, 100);
    std::string before;
    std::string after;
};

TEST_F(CutSeqTest, ExpansionsThatBothReachTheFarEdgesLeaveAZeroGap) {
    before = Bases(92, 20) + First(after_edge, 20);
    after = Last(before_edge, 20) + Bases(93, 20);
    EXPECT_EQ(Run(10), Bases(92, 20));
    EXPECT_EQ(Log(), OverlapLine(10) + kZeroLine + "The real gap size may be zero or less than 8\n");
}

TEST_F(CutSeqTest, ZeroGapAsksForEqualRests) {
    before = Bases(92, 20) + First(after_edge, 20);
    after = Last(before_edge, 20) + Bases(93, 21);
    EXPECT_EQ(Run(10), First(before, 30) + Open(10) + Last(after, 31));
    EXPECT_EQ(Log(), OverlapLine(10) + kZeroLine + kTryLine + kUndecidedLine + kCutLine);
}

TEST_F(CutSeqTest, ZeroGapAsksForMoreThanMinAlignBases) {
    // Overlaps of exactly 8 bases.
    before = Bases(92, 20) + First(after_edge, 8);
    after = Last(before_edge, 8) + Bases(93, 20);
    EXPECT_EQ(Run(10), First(before, 18) + Open(10) + Last(after, 18));
    EXPECT_EQ(Log(), OverlapLine(10) + kZeroLine + kTryLine + kUndecidedLine + kCutLine);
}

TEST_F(CutSeqTest, ZeroGapTakesNineBases) {
    before = Bases(92, 20) + First(after_edge, 9);
    after = Last(before_edge, 9) + Bases(93, 20);
    EXPECT_EQ(Run(10), Bases(92, 20));
}

TEST_F(CutSeqTest, ZeroGapAsksForBothEdges) {
    // Overlaps of 8 and of 20 bases, with rests that would agree.
    before = Bases(92, 20) + First(after_edge, 8);
    after = Last(before_edge, 20) + Bases(93, 20);
    EXPECT_EQ(Run(10), First(before, 18) + Open(10) + Last(after, 30));
}

TEST_F(CutSeqTest, JoinAsksForMoreThanMinAlignBases) {
    const std::string shared = Bases(94, 9);
    before = Bases(92, 100) + First(shared, 8);
    after = First(shared, 8) + Bases(93, 100);
    EXPECT_EQ(Run(8), Bases(92, 100) + Open(8) + Bases(93, 100));
    EXPECT_EQ(Log(), OverlapLine(8) + kTryLine + kUndecidedLine + kCutLine);
    before = Bases(92, 100) + shared;
    after = shared + Bases(93, 100);
    EXPECT_EQ(Run(9), before + Bases(93, 100));
}

TEST_F(CutSeqTest, ExpansionsOfMinAlignBasesAreAligned) {
    before = Bases(92, 8);
    after = Bases(93, 8);
    EXPECT_EQ(Run(2), First(before, 6) + Open(2) + Last(after, 6));
    EXPECT_EQ(NewLog(), OverlapLine(2) + kZeroLine + kTryLine + kUndecidedLine + kCutLine);
    after = Bases(93, 7);
    EXPECT_EQ(Run(2), First(before, 6) + Open(2) + Last(after, 5));
    EXPECT_EQ(NewLog(), OverlapLine(2) + kCutLine);
}

TEST_F(CutSeqTest, GapOfHundredFiftyIsNoZeroGap) {
    const std::string shared = Bases(94, 40);
    before = Bases(92, 60) + shared;
    after = shared + Bases(93, 49);
    EXPECT_EQ(Run(40), before + Bases(93, 49));
    EXPECT_EQ(NewLog(), OverlapLine(40) + kZeroLine + kTryLine);
    after = shared + Bases(93, 50);
    EXPECT_EQ(Run(40), Bases(92, 60) + after);
    EXPECT_EQ(NewLog(), OverlapLine(40) + kTryLine);
}

TEST_F(CutSeqTest, ExpansionInsideTheOtherEndsTheJoinThere) {
    after = Bases(93, 60);
    before = Bases(92, 100) + after + Bases(95, 20);
    EXPECT_EQ(Run(0), Bases(92, 100) + after);
    before = Bases(92, 60);
    after = Bases(95, 20) + before + Bases(93, 100);
    EXPECT_EQ(Run(0), before + Bases(93, 100));
}

TEST_F(CutSeqTest, LongBeforeExpansionIsConnectedWithTheAfterEdge) {
    before = Bases(92, 150) + First(after_edge, 60);
    after = Bases(93, 20);
    EXPECT_EQ(Run(100), Bases(92, 150));
    EXPECT_EQ(Log(), OverlapLine(100) + kZeroLine + kTryLine + kUndecidedLine + "connect with after edge\t52\t8\t\n");
}

TEST_F(CutSeqTest, AfterExpansionWithTheSameEndsIsPreferred) {
    const std::string same = Bases(96, 10);
    before = same + First(after_edge, 60);
    after = same + Bases(93, 10) + same;
    EXPECT_EQ(Run(90), after);
    EXPECT_EQ(Log(), OverlapLine(90) + kZeroLine + kTryLine + kUndecidedLine +
                         "connect with after edge\t50\t10\t\nSame edge in the gap, using after sequence\n");
    // The result itself is no longer sequence.
    after = Changed(after, 25);
    EXPECT_EQ(Run(90), same);
}

TEST_F(CutSeqTest, LongAfterExpansionIsConnectedWithTheBeforeEdge) {
    before = Bases(92, 20);
    after = Last(before_edge, 60) + Bases(93, 150);
    EXPECT_EQ(Run(100), Bases(93, 150));
    EXPECT_EQ(Log(), OverlapLine(100) + kZeroLine + kTryLine + kUndecidedLine + "before read: " + before_edge +
                         "\noverlap with the before edge: 52\tMin8\n");
}

TEST_F(CutSeqTest, BeforeExpansionWithTheSameEndsIsPreferred) {
    const std::string same = Bases(96, 10);
    before = same + Bases(92, 10) + same;
    after = Last(before_edge, 60) + same;
    EXPECT_EQ(Run(90), before);
    EXPECT_EQ(Log(), OverlapLine(90) + kZeroLine + kTryLine + kUndecidedLine + "before read: " + before_edge +
                         "\noverlap with the before edge: 50\tMin10\nSame edge in the gap, using before sequence\n");
}

TEST_F(CutSeqTest, ConnectionMustReachMinOverlapBeyondTheGap) {
    // 210 bases against a gap of 180 and of 179.
    before = Bases(92, 150) + First(after_edge, 60);
    after = Bases(93, 20);
    EXPECT_EQ(Run(50), First(before, 160) + Open(50) + after);
    EXPECT_EQ(Run(51), Bases(92, 150));
    before = Bases(92, 20);
    after = Last(before_edge, 60) + Bases(93, 150);
    EXPECT_EQ(Run(50), before + Open(50) + Last(after, 160));
    EXPECT_EQ(Run(51), Bases(93, 150));
}

TEST_F(CutSeqTest, UndecidedOverlapIsCutOffWhereItFits) {
    before = Bases(92, 60);
    after = Bases(93, 70);
    EXPECT_EQ(Run(30), First(before, 30) + Open(30) + Last(after, 40));
    EXPECT_EQ(NewLog(), OverlapLine(30) + kZeroLine + kTryLine + kUndecidedLine + kCutLine);
    before = Bases(92, 20);
    EXPECT_EQ(Run(30), before + Open(30) + Last(after, 40));
    EXPECT_EQ(Run(20), Open(20) + Last(after, 50));
    before = Bases(92, 60);
    after = Bases(93, 20);
    EXPECT_EQ(Run(30), First(before, 30) + Open(30) + after);
    EXPECT_EQ(Run(20), First(before, 40) + Open(20));
    before = Bases(92, 20);
    EXPECT_EQ(Run(30), Open(10));
}

TEST_F(CutSeqTest, EmptyExpansionsAreNotAligned) {
    after = Bases(93, 20);
    EXPECT_EQ(Run(0), after);
    EXPECT_EQ(Log(), OverlapLine(0) + kCutLine);
}

const char* const kExchangeLine = "Can not decide the real overlap, try to exchange the before and after.\n";

class CheckPossibleOverTest : public testing::ThreadStreamsTest {
  protected:
    std::string Run(int gapsize) { return Check_possible_over(before, after, contig1, contig2, gapsize, 0); }

    const std::string contig1 = Bases(90, 100);
    const std::string contig2 = Bases(91, 100);
    const std::string shared = Bases(94, 40);
    std::string before;
    std::string after;
};

TEST_F(CheckPossibleOverTest, ShortExpansionsStayApart) {
    before = Bases(92, 60);
    after = Bases(93, 39);
    EXPECT_EQ(Run(200), before + Open(101) + after);
    before = Bases(92, 5);
    EXPECT_EQ(Run(60), before + Open(16) + after);
    before = Bases(92, 60);
    after = Bases(93, 5);
    EXPECT_EQ(Run(80), before + Open(15) + after);
    EXPECT_EQ(Log(), "");
}

TEST_F(CheckPossibleOverTest, ExpansionsOfSixBasesAndOfHalfTheGapAreAligned) {
    before = Bases(92, 6);
    after = Bases(93, 60);
    EXPECT_EQ(Run(100), before + Open(34) + after);
    EXPECT_EQ(NewLog(), kExchangeLine);
    before = Bases(92, 60);
    after = Bases(93, 6);
    EXPECT_EQ(Run(100), before + Open(34) + after);
    EXPECT_EQ(NewLog(), kExchangeLine);
    before = Bases(92, 60) + First(shared, 20);
    after = First(shared, 20) + Bases(93, 20);
    EXPECT_EQ(Run(240), before + Bases(93, 20));
    EXPECT_EQ(Run(241), before + Open(121) + after);
}

TEST_F(CheckPossibleOverTest, OverlapOfMinAlignBasesCounts) {
    before = Bases(92, 60) + First(shared, 8);
    after = First(shared, 8) + Bases(93, 60);
    EXPECT_EQ(Run(160), before + Bases(93, 60));
    // In the wrong order too.
    before = First(shared, 8) + Bases(92, 60);
    after = Bases(93, 60) + First(shared, 8);
    EXPECT_EQ(Run(140), First(shared, 8));
}

TEST_F(CheckPossibleOverTest, ExpansionsOfTheGapsLengthAreATenthApart) {
    before = Bases(92, 60);
    after = Bases(93, 5);
    EXPECT_EQ(Run(65), before + Open(6) + after);
    // Longer than the gap: no N at all.
    EXPECT_EQ(Run(64), before + after);
}

TEST_F(CheckPossibleOverTest, SmallGapMayBeZero) {
    before = Bases(92, 20) + First(contig2, 20);
    after = Last(contig1, 20) + Bases(93, 20);
    EXPECT_EQ(Run(149), Bases(92, 20));
    EXPECT_EQ(NewLog(), std::string(kZeroLine) + "The real gap size may be zero or less than 8\n");
    EXPECT_EQ(Run(150), before + Open(70) + after);
    EXPECT_EQ(NewLog(), kExchangeLine);
}

TEST_F(CheckPossibleOverTest, PlainOverlapIsJoined) {
    before = Bases(92, 100) + shared;
    after = shared + Bases(93, 100);
    EXPECT_EQ(Run(240), Bases(92, 100) + shared + Bases(93, 100));
    EXPECT_EQ(Log(), "");
}

TEST_F(CheckPossibleOverTest, AfterExpansionInsideTheBeforeOneEndsThere) {
    after = Bases(93, 60);
    before = Bases(92, 100) + after + Bases(95, 20);
    EXPECT_EQ(Run(320), Bases(92, 100) + after);
    // 160 bases are less than half of 321, and less than all of it with the other expansion.
    EXPECT_EQ(Run(321), Bases(92, 100) + after + Open(101) + after);
}

TEST_F(CheckPossibleOverTest, BeforeExpansionInsideTheAfterOneBeginsThere) {
    before = Bases(92, 60);
    after = Bases(95, 20) + before + Bases(93, 100);
    EXPECT_EQ(Run(320), before + Bases(93, 100));
    EXPECT_EQ(Run(321), before + Open(101) + before + Bases(93, 100));
}

TEST_F(CheckPossibleOverTest, UndecidedOverlapInALongGapStaysOpen) {
    before = Bases(92, 60);
    after = Bases(93, 60);
    EXPECT_EQ(Run(151), before + Open(31) + after);
    EXPECT_EQ(NewLog(), "");
    EXPECT_EQ(Run(150), before + Open(30) + after);
    EXPECT_EQ(NewLog(), kExchangeLine);
}

TEST_F(CheckPossibleOverTest, ExpansionsInTheWrongOrderShareAShortGap) {
    before = shared + Bases(92, 30);
    after = Bases(93, 30) + shared;
    EXPECT_EQ(Run(100), shared);
    EXPECT_EQ(Log(), std::string(kZeroLine) + kExchangeLine +
                         "The real gap size may be much less than the estimate gap size\n");
}

class CheckPossibleAfterTest : public testing::ThreadStreamsTest {
  protected:
    const std::string shared = Bases(94, 40);
};

TEST_F(CheckPossibleAfterTest, ExpansionIsCutAtTheOverlap) {
    EXPECT_EQ(Check_possible_after(Bases(92, 60) + shared, shared + Bases(93, 30), 200, 0), Bases(92, 60));
    EXPECT_EQ(Log(), "The gap fullfilled with length: 60\n");
}

TEST_F(CheckPossibleAfterTest, LessThanThreeTenthsIsFilledUp) {
    EXPECT_EQ(Check_possible_after(Bases(92, 60) + shared, shared + Bases(93, 30), 201, 0), Bases(92, 60) + Open(141));
    EXPECT_EQ(Log(), "");
}

TEST_F(CheckPossibleAfterTest, ShortExpansionsAreFilledUp) {
    EXPECT_EQ(Check_possible_after("ACGTACG", Bases(93, 30), 20, 0), "ACGTACG" + Open(13));
    EXPECT_EQ(Check_possible_after(Bases(92, 30), "ACGTACG", 40, 0), Bases(92, 30) + Open(10));
    EXPECT_EQ(Check_possible_after("", "", 5, 0), Open(5));
}

TEST_F(CheckPossibleAfterTest, OverlapOfMinAlignBasesCounts) {
    EXPECT_EQ(Check_possible_after(Bases(92, 60) + First(shared, 8), First(shared, 8) + Bases(93, 30), 90, 0),
              Bases(92, 60));
}

TEST_F(CheckPossibleAfterTest, LongGapAsksForHalfOfIt) {
    const std::string before = Bases(92, 111) + shared;
    const std::string after = shared + Bases(93, 30);
    EXPECT_EQ(Check_possible_after(before, after, 302, 0), Bases(92, 111));
    EXPECT_EQ(Check_possible_after(before, after, 303, 0), before + Open(152));
    EXPECT_EQ(Check_possible_after(Last(before, 140), after, 300, 0), Last(Bases(92, 111), 100));
}

TEST_F(CheckPossibleAfterTest, OverlapOfAWholeExpansionOrNoneIsFilledUp) {
    const std::string before = Bases(92, 60) + shared;
    EXPECT_EQ(Check_possible_after(before, shared, 120, 0), before + Open(20));
    EXPECT_EQ(Check_possible_after(shared, shared + Bases(93, 30), 60, 0), shared + Open(20));
    EXPECT_EQ(Check_possible_after(before, Bases(93, 60), 120, 0), before + Open(20));
    // Longer than the gap: no N.
    EXPECT_EQ(Check_possible_after(before, Bases(93, 60), 90, 0), before);
}

using CheckPossibleBeforeTest = CheckPossibleAfterTest;

TEST_F(CheckPossibleBeforeTest, ExpansionIsCutAtTheOverlap) {
    EXPECT_EQ(Check_possible_before(Bases(92, 30) + shared, shared + Bases(93, 60), 200, 0), Bases(93, 60));
    EXPECT_EQ(Log(), "The gap fullfilled with length: 60\n");
}

TEST_F(CheckPossibleBeforeTest, LessThanThreeTenthsIsFilledUp) {
    EXPECT_EQ(Check_possible_before(Bases(92, 30) + shared, shared + Bases(93, 60), 201, 0), Open(141) + Bases(93, 60));
    EXPECT_EQ(Log(), "");
}

TEST_F(CheckPossibleBeforeTest, ShortExpansionsAreFilledUp) {
    EXPECT_EQ(Check_possible_before(Bases(92, 30), "ACGTACG", 20, 0), Open(13) + "ACGTACG");
    EXPECT_EQ(Check_possible_before("ACGTACG", Bases(93, 30), 40, 0), Open(10) + Bases(93, 30));
}

TEST_F(CheckPossibleBeforeTest, OverlapOfMinAlignBasesCounts) {
    EXPECT_EQ(Check_possible_before(Bases(92, 30) + First(shared, 8), First(shared, 8) + Bases(93, 60), 90, 0),
              Bases(93, 60));
}

TEST_F(CheckPossibleBeforeTest, LongGapAsksForHalfOfIt) {
    const std::string before = Bases(92, 30) + shared;
    const std::string after = shared + Bases(93, 111);
    EXPECT_EQ(Check_possible_before(before, after, 302, 0), Bases(93, 111));
    EXPECT_EQ(Check_possible_before(before, after, 303, 0), Open(152) + after);
    EXPECT_EQ(Check_possible_before(before, First(after, 140), 300, 0), First(Bases(93, 111), 100));
}

TEST_F(CheckPossibleBeforeTest, OverlapOfAWholeExpansionOrNoneIsFilledUp) {
    const std::string after = shared + Bases(93, 60);
    EXPECT_EQ(Check_possible_before(shared, after, 120, 0), Open(20) + after);
    EXPECT_EQ(Check_possible_before(Bases(92, 30) + shared, shared, 60, 0), Open(20) + shared);
    EXPECT_EQ(Check_possible_before(Bases(92, 60), after, 120, 0), Open(20) + after);
    EXPECT_EQ(Check_possible_before(Bases(92, 60), after, 90, 0), after);
}

}  // namespace
}  // namespace lintara
