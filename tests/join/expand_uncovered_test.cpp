#include <gtest/gtest.h>

#include "join/expand_gap.h"
#include "run/settings.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using testing::ExpandGapTest;
using testing::First;
using testing::Last;
using testing::Open;

const char kNoRead[] = "No read can connect before and after!\n";

/// Expansions that don't overlap. `truth` is what lies in the gap.
class HoleTest : public ExpandGapTest {
  protected:
    std::string truth = Bases(5, 150);
    std::string Truth(std::size_t start, std::size_t end) const { return truth.substr(start, end - start); }
};

TEST_F(HoleTest, ThreeReadLengthsAreStillTriedAndOneBaseMoreIsNot) {
    before = Bases(3, 20);
    after = Bases(4, 20);
    EXPECT_EQ(Connect(before, after, 340), before + Open(300) + after);
    EXPECT_EQ(log, "expand sequence may be not cover the gap!\n" + std::string(kNoRead));
    EXPECT_EQ(Connect(before, after, 341), before + Open(301) + after);
    EXPECT_EQ(log, "expand sequence may be not cover the gap!\n");
}

TEST_F(HoleTest, ReadIsBelievedOnlyWhenBothWalksEndedForLackOfReads) {
    inner = {Truth(20, 130)};
    before = Truth(0, 60);
    after = Truth(90, 150);
    noreadbreak1 = true;
    EXPECT_EQ(Connect(before, after, 150), before + Open(30) + after);
    EXPECT_TRUE(Logged("before and after connected!\t1\t0\n"));
    noreadbreak2 = true;
    EXPECT_EQ(Connect(before, after, 150), truth);
    EXPECT_TRUE(Logged("before and after connected!\t1\t1\n"));
}

TEST_F(HoleTest, ReadThatGivesAnotherSizeIsWrong) {
    inner = {Truth(20, 130)};
    before = Truth(0, 60);
    after = Truth(90, 150);
    noreadbreak1 = noreadbreak2 = true;
    // 150 of 214 bases are above 0.7; 150 of 215 are not.
    EXPECT_EQ(Connect(before, after, 214), truth);
    EXPECT_FALSE(Logged("The connect may be wrong!\n"));
    EXPECT_EQ(Connect(before, after, 215), before + Open(95) + after);
    EXPECT_TRUE(Logged("before and after connected!\t1\t1\nThe connect may be wrong!\n"));
}

TEST_F(HoleTest, BeforeMeetsTheAfterEdgeAndAfterConfirms) {
    // One mismatch in 40 bases is too much for the first read test and passes the one against the edge.
    truth = Bases(5, 100);
    inner = {Changed(Truth(20, 100) + First(after_edge, 40), 35)};
    const std::string filled = Truth(0, 60) + Truth(60, 100);
    EXPECT_EQ(Connect(Truth(0, 60), Truth(80, 100), 110), filled);
    EXPECT_TRUE(Logged(kNoRead));
    EXPECT_TRUE(Logged("before and after edge connected!\n"));
    EXPECT_EQ(Connect(Truth(0, 60), "", 110), filled);
}

TEST_F(HoleTest, BeforeMeetsTheAfterEdgeAndAfterObjects) {
    truth = Bases(5, 100);
    inner = {Changed(Truth(20, 100) + First(after_edge, 40), 35)};
    const std::string other = Changed(Truth(80, 100), 19);
    EXPECT_EQ(Connect(Truth(0, 60), other, 110), Truth(0, 60) + Open(30) + other);
    EXPECT_TRUE(Logged("before and after edge connected!\nmay be exists edge repeat!\n"));
}

TEST_F(HoleTest, BeforeOfHalfTheGapIsNotTriedAgainstTheEdge) {
    truth = Bases(5, 100);
    inner = {Changed(Truth(20, 100) + First(after_edge, 40), 35)};
    Connect(Truth(0, 60), "", 120);
    EXPECT_FALSE(Logged("before and after edge connected!\n"));
    Connect(Truth(0, 60), "", 119);
    EXPECT_TRUE(Logged("before and after edge connected!\n"));
}

TEST_F(HoleTest, AfterMeetsTheBeforeEdgeAndBeforeConfirms) {
    truth = Bases(5, 100);
    inner = {Last(before_edge, 40) + Truth(0, 80)};
    // Its last base keeps `before` from meeting the read.
    const std::string cut = Changed(Truth(0, 20), 19);
    EXPECT_EQ(Connect(cut, Truth(40, 100), 110), truth);
    EXPECT_TRUE(Logged("after and before edge connected!\t160\t60\n"));
    // Without a `before` the read already joins the two sides, and the walks have not ended there.
    EXPECT_EQ(Connect("", Truth(40, 100), 110), Open(50) + Truth(40, 100));
    const std::string other = Changed(Truth(0, 20), 0);
    EXPECT_EQ(Connect(Changed(other, 19), Truth(40, 100), 110), Changed(other, 19) + Open(30) + Truth(40, 100));
    EXPECT_TRUE(Logged("may be exists edge repeat!\n"));
}

TEST_F(HoleTest, ReadThatJoinsInsideTheAfterEdgeCutsBefore) {
    // The edge begins with one piece twice, so that the overlap of the sides is not clear.
    const std::string piece = Bases(9, 10);
    after_edge = piece + piece + Bases(2, 40);
    inner = {Truth(20, 60) + after_edge};
    noreadbreak1 = noreadbreak2 = true;
    EXPECT_EQ(Connect(Truth(0, 60) + piece + piece, "", 81), Truth(0, 60));
    EXPECT_TRUE(Logged("before and after connected!\t1\t1\nbefore crossed the gap\n"));
    EXPECT_EQ(realgaplen, 77);
}

/// Edges that share 20 bases, of which `before` is the last 10.
class OverlappingEdgesTest : public HoleTest {
  protected:
    OverlappingEdgesTest() {
        before_edge = First(before_edge, 50) + Bases(9, 10);
        after_edge = Bases(9, 10) + start + Bases(2, 40);
        read = before_edge.substr(20) + start + Bases(2, 40);
    }
    const std::string start = Bases(10, 10);
    std::string read;
};

TEST_F(OverlappingEdgesTest, ReadAcrossTheHoleTellsTheMinusGap) {
    inner = {read};
    noreadbreak1 = noreadbreak2 = true;
    EXPECT_EQ(Connect(start, "", 50), start + Open(40));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged("before crossed the gap\ngap size maybe minus!\t-10\n"));
}

TEST_F(OverlappingEdgesTest, ReadToTheAfterEdgeTellsTheMinusGap) {
    inner = {Changed(read, 28)};
    EXPECT_EQ(Connect(start, "", 19), start + Open(9));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged(std::string(kNoRead) + "read cross the two sequence: "));
    EXPECT_TRUE(Logged("the gap size maybe minus!\t-10\n"));
}

TEST_F(HoleTest, LongSequenceIsComparedWithAfterInItsLastReadLength) {
    truth = Bases(5, 105);
    inner = {Truth(65, 105) + after_edge};
    const std::string grown = truth + First(after_edge, 40);
    std::string other = Bases(6, 43) + Truth(5, 105);
    for (int place = 50; place < 53; ++place) other = Changed(other, static_cast<std::size_t>(place));
    EXPECT_EQ(Connect(grown, other, 289), truth);
    other = Changed(other, 60);
    EXPECT_EQ(Connect(grown, other, 289), grown + Open(1) + other);
    EXPECT_TRUE(Logged("before and after edge connected!\ngap maybe not so small!\n"));
}

TEST_F(HoleTest, LongSequenceIsComparedWithBeforeInItsFirstReadLength) {
    truth = Bases(5, 105);
    inner = {before_edge + Truth(0, 40)};
    const std::string grown = Last(before_edge, 40) + truth;
    std::string other = Truth(0, 100) + Bases(6, 43);
    for (int place = 50; place < 53; ++place) other = Changed(other, static_cast<std::size_t>(place));
    EXPECT_EQ(Connect(other, grown, 289), truth);
    other = Changed(other, 60);
    EXPECT_EQ(Connect(other, grown, 289), other + Open(1) + grown);
    EXPECT_TRUE(Logged("after and before edge connected!\t165\t60\ngap maybe not so small!\n"));
}

TEST_F(HoleTest, ReadLengthCountsAsLongOnTheAfterSideOnly) {
    // One mismatch in 100 bases passes as a ratio, not as an exact match.
    truth = Bases(5, 100);
    inner = {Truth(60, 100) + after_edge};
    std::string grown = truth + First(after_edge, 40);
    std::string other = Bases(6, 38) + Changed(truth, 50);
    EXPECT_EQ(Connect(grown, other, 279), grown + Open(1) + other);
    inner = {before_edge + Truth(0, 40)};
    grown = Last(before_edge, 40) + truth;
    other = Changed(truth, 50) + Bases(6, 38);
    EXPECT_EQ(Connect(other, grown, 279), truth);
}

TEST_F(HoleTest, ShortSequenceIsComparedExactly) {
    truth = Bases(5, 30);
    inner = {truth + after_edge};
    std::string grown = truth + First(after_edge, 40);
    EXPECT_EQ(Connect(grown, Bases(6, 38) + truth, 139), truth);
    std::string other = Bases(6, 38) + Changed(truth, 15);
    EXPECT_EQ(Connect(grown, other, 139), grown + Open(1) + other);
    EXPECT_TRUE(Logged("gap maybe not so small!\n"));
    inner = {before_edge + truth};
    grown = Last(before_edge, 40) + truth;
    EXPECT_EQ(Connect(truth + Bases(6, 38), grown, 139), truth);
    other = Changed(truth, 15) + Bases(6, 38);
    EXPECT_EQ(Connect(other, grown, 139), other + Open(1) + grown);
    EXPECT_TRUE(Logged("gap maybe not so small!\n"));
}

TEST_F(HoleTest, EmptySequenceIsComparedByTheEdge) {
    inner = {before_edge.substr(20) + after_edge};
    EXPECT_EQ(Connect(First(after_edge, 40), Bases(6, 30) + Last(before_edge, 8), 79), "");
    EXPECT_TRUE(Logged("before and after edge connected!\n"));
    Connect(First(after_edge, 40), Bases(6, 30) + Changed(Last(before_edge, 8), 7), 79);
    EXPECT_TRUE(Logged("gap maybe not so small!\n"));
    inner = {before_edge + First(after_edge, 40)};
    EXPECT_EQ(Connect(First(after_edge, 8) + Bases(6, 30), Last(before_edge, 40), 79), "");
    EXPECT_TRUE(Logged("after and before edge connected!\t60\t60\n"));
    Connect(Changed(First(after_edge, 8), 0) + Bases(6, 30), Last(before_edge, 40), 79);
    EXPECT_TRUE(Logged("gap maybe not so small!\n"));
}

TEST_F(HoleTest, EmptySequenceIsComparedWithAShortExpansionWhole) {
    // The overlap of the sides, 37 bases, begins and ends with the same 8, so that it isn't clear.
    const std::string common = Bases(9, 8);
    before_edge = First(before_edge, 55) + First(common, 5);
    after_edge = Last(common, 3) + Bases(10, 21) + common + Bases(2, 28);
    inner = {Changed(before_edge.substr(30) + after_edge, 10)};
    EXPECT_EQ(Connect(First(after_edge, 32), First(common, 5), 40), "");
    EXPECT_TRUE(Logged("before and after edge connected!\n"));

    before_edge = Bases(1, 28) + common + Bases(10, 21) + First(common, 3);
    after_edge = Last(common, 5) + Bases(2, 55);
    inner = {Changed(before_edge + First(after_edge, 30), 62)};
    EXPECT_EQ(Connect(Last(common, 5), Last(before_edge, 32), 40), "");
    EXPECT_TRUE(Logged("after and before edge connected!\t60\t60\n"));
}

TEST_F(HoleTest, ExpansionThatRepeatsItsOppositeEdgeMakesTheGapZero) {
    // A period of 16 bases makes two overlaps equally good.
    const std::string twice = Bases(9, 16) + Bases(9, 16);
    const std::string far_edge = after_edge;
    before_edge = First(before_edge, 28) + twice;
    EXPECT_EQ(Connect("", twice, 140), "");
    EXPECT_EQ(log,
              "expand sequence may be not cover the gap!\n" + std::string(kNoRead) + "The real gap size is zero!\n");
    before_edge = Bases(1, 60);
    after_edge = twice + First(far_edge, 28);
    EXPECT_EQ(Connect(twice, "", 140), "");
    EXPECT_TRUE(Logged("The real gap size is zero!\n"));
}

/// Expansions whose sides overlap although they are together shorter than the gap.
using MeetingInHoleTest = ExpandGapTest;

TEST_F(MeetingInHoleTest, AfterIntoTheBeforeEdgeIsTakenWithoutABefore) {
    const std::string rest = Bases(5, 20);
    const std::string grown = Last(before_edge, 40) + rest;
    EXPECT_EQ(Connect("", grown, 200), rest);
    EXPECT_EQ(log,
              "expand sequence may be not cover the gap!\nGet the overlap 40\twith min overlap length: 8\n"
              "The after sequence overlapped with the before edge\nCheck overlap with before edge: " +
                  First(grown, 40) + "\t40\n");
    EXPECT_EQ(after, grown);
}

TEST_F(MeetingInHoleTest, AfterIntoTheBeforeEdgeStaysOpenWithABefore) {
    const std::string start = Bases(6, 10);
    const std::string rest = Bases(5, 20);
    const std::string text = Connect(start, Last(before_edge, 30) + start + rest, 200);
    // The overlap is counted twice: the answer is longer than the estimate.
    EXPECT_EQ(text, start + Open(130) + Open(40) + rest);
    EXPECT_EQ(text.size(), 200U);
    EXPECT_TRUE(Logged("over not passed the check and no read connect the after and before edge.\n"));
    EXPECT_EQ(after, rest);
}

TEST_F(MeetingInHoleTest, DistrustedAfterIntoTheBeforeEdgeStaysOpen) {
    const std::string rest = Bases(5, 20);
    Distrust(Last(before_edge, 40));
    EXPECT_EQ(Connect("", Last(before_edge, 40) + rest, 200), Open(140) + Open(40) + rest);
}

TEST_F(MeetingInHoleTest, BeforeIntoTheAfterEdgeIsCut) {
    const std::string start = Bases(5, 40);
    const std::string mid = Bases(6, 10);
    const std::string grown = start + mid + First(after_edge, 30);
    EXPECT_EQ(Connect(grown, mid, 200), start + mid);
    EXPECT_TRUE(Logged("The before sequence overlapped with the after edge\nCheck overlap with after edge: " +
                       Last(grown, 40) + "\t40\n"));
    EXPECT_EQ(before, grown);
    Distrust(Last(grown, 40));
    EXPECT_EQ(Connect(grown, mid, 200), start + mid + Open(110) + Open(30) + mid);
    EXPECT_TRUE(Logged("over not passed the check and no read connect the before and after edge.\n"));
    EXPECT_EQ(before, start + mid);
}

TEST_F(MeetingInHoleTest, BeforeIntoTheAfterEdgeNeedsEqualCopies) {
    // 39 of 40 bases are enough for the alignment and too few here.
    const std::string start = Bases(5, 40);
    const std::string grown = start + Changed(First(after_edge, 40), 20);
    EXPECT_EQ(Connect(grown, "", 200), start + Open(120) + Open(40));
}

TEST_F(MeetingInHoleTest, OverlapBeyondBothSidesIsAMinusGap) {
    // The whole before edge stands in the after side, with 10 more bases in front of it.
    const std::string tail = Bases(6, 10);
    after = Bases(7, 10) + First(before_edge, 50);
    after_edge = Last(before_edge, 10) + tail + Bases(8, 40);
    EXPECT_EQ(Connect(tail, after, 200), Open(200));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged("Get the overlap 80\t"));
    EXPECT_TRUE(Logged("The gap size may be minus!\t-10\n"));
}

TEST_F(MeetingInHoleTest, OverlapOfTheWholeAfterIsAZeroGap) {
    for (const int size : {200, 201}) {
        EXPECT_EQ(Connect("", Last(before_edge, 40), size), "");
        EXPECT_TRUE(Logged("The real gap size maybe zero!\n"));
        EXPECT_EQ(Connect(First(after_edge, 40), "", size), "");
        EXPECT_TRUE(Logged("The real gap size maybe zero!\n"));
    }
    EXPECT_EQ(realgaplen, 77);
}

TEST_F(MeetingInHoleTest, OverlapOfTheSumIsAZeroGap) {
    // Each expansion is the near end of the opposite edge.
    EXPECT_EQ(Connect(First(after_edge, 20), Last(before_edge, 20), 100), "");
    EXPECT_TRUE(Logged("The real gap size maybe zero!\nover equal the sum of the before and after!\n"));
}

TEST_F(MeetingInHoleTest, SmallSequenceInAWideGapIsTakenOrKeptTwice) {
    const std::string core = Bases(5, 40);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 300), core);
    EXPECT_TRUE(Logged("Get the overlap 100\t"));
    EXPECT_TRUE(Logged("The edge of gap region maybe the same!\n"));
    Distrust(core);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 300), core + Open(220) + core);
}

TEST_F(MeetingInHoleTest, HoleOfThreeReadLengthsIsTooWideForASmallSequence) {
    const std::string core = Bases(5, 40);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 379), core);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 380), core + Open(300) + core);
}

TEST_F(MeetingInHoleTest, SmallSequenceInANarrowGap) {
    const std::string core = Bases(5, 40);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 299), core);
    EXPECT_TRUE(Logged("The real gap size may be quite small!\nrepeat check: " + core + "\n"));
    Distrust(core);
    EXPECT_EQ(Connect(core + First(after_edge, 30), Last(before_edge, 30) + core, 299), core + Open(219) + core);
}

TEST_F(MeetingInHoleTest, OrdinaryOverlapJoins) {
    const std::string shared = Bases(5, 40);
    const std::string left = Bases(6, 30);
    const std::string right = Bases(7, 30);
    EXPECT_EQ(Connect(left + shared, shared + right, 200), left + shared + right);
    EXPECT_TRUE(Logged("Have overlap between before and after\nover number in after: 1\tin before: 1\n"));
    Distrust(shared);
    EXPECT_EQ(Connect(left + shared, shared + right, 200), left + shared + Open(60) + shared + right);
    EXPECT_TRUE(Logged("more than twice repeat in the gap!\n"));
}

TEST_F(MeetingInHoleTest, OrdinaryOverlapOfFewBasesNeedsASmallHole) {
    const std::string shared = Bases(5, 40);
    const std::string left = Bases(6, 30);
    const std::string right = Bases(7, 30);
    EXPECT_EQ(Connect(left + shared, shared + right, 440), left + shared + right);
    EXPECT_EQ(Connect(left + shared, shared + right, 441), left + shared + Open(301) + shared + right);
}

TEST_F(MeetingInHoleTest, OrdinaryOverlapWithASecondCopyIsRefused) {
    const std::string shared = Bases(5, 40);
    const std::string left = Bases(6, 30);
    const std::string right = Bases(7, 10) + shared;
    EXPECT_EQ(Connect(left + shared, shared + right, 200), left + shared + Open(40) + shared + right);
    EXPECT_TRUE(Logged("over number in after: 2\tin before: 1\n"));
}

TEST_F(MeetingInHoleTest, OrdinaryOverlapBelowHalfAReadMustBeExact) {
    // 49 bases with one mismatch don't stand in `before` as they are; 50 may do so.
    const std::string right = Bases(7, 30);
    for (const int length : {49, 50}) {
        const std::string shared = Bases(5, length);
        const std::string left = Bases(6, 30) + Changed(shared, 20);
        const std::string open = left + Open(static_cast<std::size_t>(200 - 60 - 2 * length)) + shared + right;
        EXPECT_EQ(Connect(left, shared + right, 200), length == 49 ? open : left + right);
    }
}

}  // namespace
}  // namespace lintara
