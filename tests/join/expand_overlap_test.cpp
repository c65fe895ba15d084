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

/// Another base in every place.
std::string Unlike(std::string seq) {
    for (std::size_t i = 0; i < seq.size(); ++i) seq = Changed(seq, i);
    return seq;
}

using RouteETest = ExpandGapTest;

TEST_F(RouteETest, NineBasesOrFewerMustBeEqual) {
    // Nothing at all agrees, which the alignment tells like an overlap of 8 bases.
    EXPECT_EQ(Connect(std::string(20, 'A'), std::string(20, 'C'), 30), Open(30));
    EXPECT_TRUE(Logged("before expand overlapped with after expand: 8\nover region is too short, cannot connect!\n"));
}

TEST_F(RouteETest, ShortExpansionSkipsToTheEnd) {
    Connect(Bases(5, 50), Bases(6, 7), 55);
    EXPECT_FALSE(Logged("before expand overlapped"));
    Connect(Bases(5, 50), Bases(6, 8), 55);
    EXPECT_TRUE(Logged("before expand overlapped"));
}

TEST_F(RouteETest, DistrustedOverlapIsStillAcceptedInASmallGap) {
    const std::string shared = Bases(7, 40);
    Distrust(shared);
    EXPECT_EQ(Connect(Bases(5, 30) + shared, shared + Bases(6, 50), 99), Bases(5, 30) + shared + Bases(6, 50));
    EXPECT_TRUE(
        Logged("before expand overlapped with after expand: 40\nnot passed the over check!\n"
               "Still accept the sequence.\n"));
    Connect(Bases(5, 30) + shared, shared + Bases(6, 50), 100);
    EXPECT_FALSE(Logged("Still accept the sequence.\n"));
    EXPECT_TRUE(Logged("not passed the over check!\nbefore: "));
}

TEST_F(RouteETest, AfterInsideBeforeIsKeptWithAHole) {
    const std::string inside = Bases(6, 15);
    const std::string grown = Bases(5, 50) + inside + Unlike(First(after_edge, 10));
    EXPECT_EQ(Connect(grown, inside, 80), Bases(5, 50) + Open(15) + inside);
    EXPECT_TRUE(
        Logged("before expand overlapped with after expand: 25\nafter is part of before sequence!\n"
               "after edge not support before! 0\n"));
}

TEST_F(RouteETest, BeforeInsideAfterGoesOn) {
    const std::string inside = Bases(6, 15);
    const std::string grown = Unlike(Last(before_edge, 10)) + inside + Bases(5, 20);
    Connect(inside, grown, 55);
    EXPECT_TRUE(
        Logged("before expand overlapped with after expand: 25\nbefore is part of after sequence!\n"
               "before and after exchange:  35\nbreak: 0\t0\nbefore: "));
    // From half a read on the rest of `after` counts as the gap.
    const std::string longer = Unlike(Last(before_edge, 10)) + inside + Bases(5, 35);
    EXPECT_EQ(Connect(inside, longer, 75), inside + Bases(5, 35));
}

TEST_F(RouteETest, ReadJoinsAnExpansionWithTheOneInsideIt) {
    // `before` is cut to fit the gap, and only the cut one meets the read.
    std::string inside = Bases(6, 10);
    const std::string cut = Bases(5, 20) + inside + Bases(7, 5);
    inner = {Last(cut, 25) + "AC" + inside + First(after_edge, 30)};
    EXPECT_EQ(Connect(cut + Bases(8, 50), inside, 45), cut + "AC" + inside);
    EXPECT_TRUE(Logged("after is part of before sequence!\n"));
    EXPECT_TRUE(Logged("before and after connected!\n"));

    inside = Bases(6, 20);
    const std::string grown = Bases(5, 10) + inside + Bases(7, 10);
    inner = {inside + "AC" + First(grown, 35)};
    EXPECT_EQ(Connect(inside + Bases(8, 50), grown, 60), inside + "AC" + grown);
    EXPECT_TRUE(Logged("before is part of after sequence!\n"));
    EXPECT_EQ(after, "AC" + grown);
}

TEST_F(RouteETest, CopiesAreLookedForWithoutAnyOverlap) {
    const std::string copy = Bases(6, 10);
    const std::string head = Bases(5, 40) + copy + Bases(7, 3) + copy;
    EXPECT_EQ(Connect(head + Bases(8, 5), copy, 70), head);
    EXPECT_TRUE(
        Logged("before expand overlapped with after expand: -12\n"
               "More than one copy of left after: " +
               copy + "\n"));
}

TEST_F(RouteETest, CopiesOfBeforeStartAtTheFirst) {
    const std::string copy = Bases(6, 10);
    const std::string tail = copy + Bases(7, 3) + copy + Bases(5, 40);
    EXPECT_EQ(Connect(copy, Bases(8, 5) + tail, 70), tail);
    EXPECT_TRUE(Logged("More than one copy of left before: " + copy + "\n"));
}

/// The start of `before` is the end of `after`.
class ExchangeTest : public ExpandGapTest {
  protected:
    ExchangeTest() { noreadbreak1 = noreadbreak2 = true; }
};

TEST_F(ExchangeTest, AfterHoldsTheBeforeEdge) {
    const std::string shared = Bases(5, 20);
    EXPECT_EQ(Connect(shared + Bases(6, 20), Bases(7, 10) + before_edge + shared, 100), shared);
    EXPECT_TRUE(
        Logged("before and after exchange:  20\nbreak: 1\t1\n"
               "The gap size is quite small and after contain before edge!\n"));
}

TEST_F(ExchangeTest, BeforeHoldsTheAfterEdge) {
    const std::string shared = Bases(5, 20);
    EXPECT_EQ(Connect(shared + after_edge + Bases(7, 10), Bases(6, 20) + shared, 100), shared);
    EXPECT_TRUE(Logged("The gap size is quite small and before contain after edge!\n"));
}

TEST_F(ExchangeTest, SmallShareOfTheGapIsKeptTwice) {
    const std::string shared = Bases(5, 39);
    EXPECT_EQ(Connect(shared + Bases(6, 20), Bases(7, 10) + shared, 100), shared + Open(12) + Bases(7, 10) + shared);
    EXPECT_TRUE(Logged("The two edge of the gap region sequence is the same!\n"));
    EXPECT_EQ(Connect(shared + Bases(6, 11), Bases(7, 50) + shared, 100), shared + Open(1) + Bases(7, 50) + shared);
    const std::string longer = Bases(5, 40);
    EXPECT_EQ(Connect(longer + Bases(6, 20), Bases(7, 10) + longer, 100), longer);
    EXPECT_TRUE(Logged("The gap size is quite small!\n"));
}

TEST_F(ExchangeTest, WithoutBothBreaksHalfAReadIsNeeded) {
    noreadbreak1 = false;
    Connect(Bases(5, 49) + Bases(6, 20), Bases(7, 10) + Bases(5, 49), 100);
    EXPECT_TRUE(Logged("exchange:  49\nbreak: 0\t1\ncut before for 28 bp.\nbefore: "));
    EXPECT_EQ(Connect(Bases(5, 50) + Bases(6, 20), Bases(7, 10) + Bases(5, 50), 100), Bases(5, 50));
}

using RouteFTest = ExpandGapTest;

TEST_F(RouteFTest, LongerSideIsCutToFit) {
    const std::string left = Bases(5, 60);
    std::string right = Bases(6, 60);
    EXPECT_EQ(Connect(left, right, 100), Open(100));
    EXPECT_TRUE(Logged("cut before for 20 bp.\nbefore: " + before_edge + First(left, 40) + "\n after: " + right +
                       after_edge + "\nNo read can connect before and after!\n"));
    right = Bases(6, 70);
    EXPECT_EQ(Connect(left, right, 100), Open(100));
    EXPECT_TRUE(Logged("cut after for 30 bp.\nbefore: " + before_edge + left + "\n after: " + Last(right, 40) +
                       after_edge + "\nNo read can connect before and after!\n"));
}

TEST_F(RouteFTest, NothingIsCutAtEightTenthsOrWhenTheSidesJustFit) {
    Connect(Bases(5, 80), Bases(6, 60), 100);
    EXPECT_FALSE(Logged(" bp.\n"));
    Connect(Bases(5, 79), Bases(6, 60), 100);
    EXPECT_TRUE(Logged("cut before for 39 bp.\n"));
    Connect(Bases(5, 60), Bases(6, 40), 100);
    EXPECT_FALSE(Logged(" bp.\n"));
}

TEST_F(RouteFTest, ReadJoinsTheCutSides) {
    const std::string left = Bases(5, 60);
    const std::string right = Bases(6, 60);
    inner = {left.substr(5, 35) + "ACG" + First(right, 35)};
    EXPECT_EQ(Connect(left, right, 100), First(left, 40) + "ACG" + right);
    EXPECT_TRUE(Logged("before and after connected!\tbefore size: 60\tafter size: 60\n"));
}

TEST_F(RouteFTest, ReadThatFillsTooLittleNeedsBothBreaks) {
    // 60 bases are not above 0.6 of the gap.
    const std::string shared = Bases(5, 40);
    const std::string right = shared + Bases(6, 20);
    inner = {before_edge.substr(30) + right};
    EXPECT_EQ(Connect(shared + Bases(7, 20), right, 100), Open(100));
    EXPECT_TRUE(Logged("before and after connected!\tbefore size: 60\tafter size: 60\nThe overlap with edge"));
    noreadbreak1 = noreadbreak2 = true;
    EXPECT_EQ(Connect(shared + Bases(7, 20), right, 100), right);
}

TEST_F(RouteFTest, ReadIntoTheAfterEdgeIsAMinusGap) {
    const std::string end = Bases(7, 20);
    const std::string left = Bases(5, 30) + end + First(after_edge, 10);
    inner = {left.substr(10, 40) + after_edge};
    EXPECT_EQ(Connect(left, Bases(6, 42) + end, 80), Open(80));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged("cut after for 42 bp.\n"));
    EXPECT_TRUE(Logged("gapsize maybe minus!\t-10\n"));
}

TEST_F(RouteFTest, TenBasesOfTheCutBeforeMustBeEqual) {
    const std::string left = Bases(5, 60);
    const std::string rest = Bases(6, 50);
    EXPECT_EQ(Connect(left, left.substr(30, 10) + rest, 100), First(left, 30) + left.substr(30, 10) + rest);
    EXPECT_TRUE(Logged("have overlap after cut!\t10\n"));
    const std::string bad = Changed(left.substr(30, 10), 5);
    EXPECT_EQ(Connect(left, bad + rest, 100), First(left, 30) + Open(10) + rest);
    EXPECT_TRUE(Logged("have overlap after cut!\t10\noverlap not accepted!\n"));
    // 11 bases are taken on trust.
    const std::string longer = Changed(left.substr(29, 11), 5) + First(rest, 49);
    EXPECT_EQ(Connect(left, longer, 100), First(left, 29) + longer);
    EXPECT_TRUE(Logged("have overlap after cut!\t11\n"));
}

TEST_F(RouteFTest, TenBasesOfTheCutAfterMustBeEqual) {
    const std::string end = Bases(7, 10);
    const std::string left = Bases(5, 50) + end;
    const std::string rest = Bases(6, 30);
    EXPECT_EQ(Connect(left, Bases(8, 30) + end + rest, 100), left + rest);
    EXPECT_TRUE(Logged("cut after for 30 bp.\n"));
    EXPECT_TRUE(Logged("have overlap after cut!\t10\n"));
    EXPECT_EQ(Connect(left, Bases(8, 30) + Changed(end, 5) + rest, 100), Bases(5, 50) + Open(10) + rest);
    EXPECT_TRUE(Logged("overlap not accepted!\n"));
}

using RouteGTest = ExpandGapTest;

TEST_F(RouteGTest, CutAfterNeedsBothBreaks) {
    const std::string left = Bases(5, 40);
    const std::string right = Bases(6, 90);
    inner = {Last(left, 35) + "ACG" + right.substr(30, 40)};
    Connect(left, right, 100);
    EXPECT_TRUE(Logged("cut after: " + Last(right, 60) + "\nread cross the two sequence: "));
    EXPECT_FALSE(Logged("before and after connected!"));
    noreadbreak1 = noreadbreak2 = true;
    EXPECT_EQ(Connect(left, right, 100), left + "ACG" + Last(right, 60));
}

TEST_F(RouteGTest, CutAfterMayCutBefore) {
    noreadbreak1 = noreadbreak2 = true;
    const std::string end = Bases(7, 20);
    const std::string left = Bases(5, 10) + end + First(after_edge, 10);
    inner = {Bases(5, 10) + end + after_edge};
    EXPECT_EQ(Connect(left, Bases(6, 40) + end, 60), Bases(5, 10) + end);
    EXPECT_TRUE(Logged("cut after: " + end + "\n"));
}

TEST_F(RouteGTest, CutAfterMayTellAMinusGap) {
    noreadbreak1 = noreadbreak2 = true;
    const std::string end = Bases(7, 20);
    before_edge = Bases(1, 35) + end + First(after_edge, 5);
    inner = {before_edge.substr(25, 30) + after_edge};
    EXPECT_EQ(Connect(after_edge.substr(5, 10), Bases(6, 10) + end, 30), Open(30));
    EXPECT_EQ(realgaplen, -5);
    EXPECT_TRUE(Logged("the gap size maybe minus!\t-5\n"));
}

TEST_F(RouteGTest, CutBeforeTakesTheReadForAYes) {
    const std::string left = Bases(5, 90);
    const std::string right = Bases(6, 40);
    inner = {left.substr(20, 40) + "ACG" + right};
    EXPECT_EQ(Connect(left, right, 100), First(left, 60) + right);
    EXPECT_TRUE(Logged("cut before: " + First(left, 60) + "\nread cross the two sequence: "));
}

TEST_F(RouteGTest, CutBeforeLooksAtReadsOfReadLenOnly) {
    const std::string left = Bases(5, 90);
    const std::string right = Bases(6, 40);
    inner = {left.substr(0, 60) + right};
    EXPECT_EQ(Connect(left, right, 100), First(left, 60) + right);
    inner = {Last(before_edge, 1) + left.substr(0, 60) + right};
    Connect(left, right, 100);
    EXPECT_FALSE(Logged("read cross the two sequence: "));
}

TEST_F(RouteGTest, CutToAlmostNothingKeepsNineBases) {
    Connect(Bases(5, 99), Bases(6, 95), 100);
    EXPECT_TRUE(Logged("cut before: " + First(Bases(5, 99), 9) + "\n"));
    Connect(Bases(5, 95), Bases(6, 99), 100);
    EXPECT_TRUE(Logged("cut after: " + Last(Bases(6, 99), 9) + "\n"));
}

}  // namespace
}  // namespace lintara
