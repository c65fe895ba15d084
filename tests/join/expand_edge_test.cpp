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

using UncutTest = ExpandGapTest;

TEST_F(UncutTest, ReadAcrossFillsTheGap) {
    const std::string truth = Bases(5, 150);
    inner = {truth.substr(20, 110)};
    EXPECT_EQ(Connect(First(truth, 60), Last(truth, 60), 100), truth);
    EXPECT_TRUE(Logged("Read connect before and after without cut!\n"));
    inner.clear();
    EXPECT_EQ(Connect(First(truth, 60), Last(truth, 60), 119), Open(119));
    EXPECT_TRUE(Logged("Max: 120\t120\t120\nNo read connect before and after!\n"));
}

TEST_F(UncutTest, ShortExpansionIsNotLookedUp) {
    Connect(Bases(5, 60), Bases(6, 8), 65);
    EXPECT_FALSE(Logged("No read connect before and after!\n"));
    Connect(Bases(5, 60), Bases(6, 9), 65);
    EXPECT_TRUE(Logged("No read connect before and after!\n"));
}

TEST_F(UncutTest, ReadIntoTheAfterEdgeCutsBefore) {
    // `after` has 3 errors, too many for an overlap of 20 bases and few enough for a read.
    const std::string truth = Bases(5, 60);
    const std::string bad = Changed(Changed(Changed(Last(truth, 10), 7), 8), 9);
    inner = {Last(truth, 40) + after_edge};
    EXPECT_EQ(Connect(truth + First(after_edge, 10), bad, 75), truth);
    EXPECT_TRUE(Logged("Read connect before and after without cut!\nbefore cover the gap!\n"));
}

TEST_F(UncutTest, ReadIntoBothEdgesIsAMinusGap) {
    const std::string common = Bases(9, 30);
    before_edge = First(before_edge, 30) + common;
    after_edge = common + First(after_edge, 30);
    inner = {before_edge.substr(10) + Last(after_edge, 30)};
    EXPECT_EQ(Connect(after_edge.substr(30, 10), before_edge.substr(20, 10), 20), Open(20));
    EXPECT_EQ(realgaplen, -30);
    EXPECT_TRUE(Logged("Read connect before and after without cut!\ngap size maybe minus!\t-30\n"));
}

/// An expansion from the before edge that is longer than the gap.
using BeforeOverGapTest = ExpandGapTest;

TEST_F(BeforeOverGapTest, StartThatIsTheAfterEdgeMakesTheGapZero) {
    // Two copies of the edge, each with its own mismatch, so that no overlap is clear.
    const std::string grown = Changed(after_edge, 20) + Bases(6, 20) + Changed(after_edge, 40);
    EXPECT_EQ(Connect(grown, "", 139), "");
    EXPECT_EQ(before, "");
    EXPECT_EQ(log,
              "the expand sequence cover the gap region!\nMax: 140\t200\t60\n"
              "No clear overlap between before and after edge.\nAfter failed to expand!\n");
}

TEST_F(BeforeOverGapTest, AloneItIsCutAndKeptOpenByOneN) {
    const std::string grown = Bases(6, 140);
    EXPECT_EQ(Connect(grown, "", 139), First(grown, 139) + "N");
    EXPECT_EQ(before, First(grown, 139));
    EXPECT_TRUE(Logged("After failed to expand!\n"));
}

TEST_F(BeforeOverGapTest, AloneAReadMayJoinItWholeOrCut) {
    const std::string grown = Bases(6, 60);
    inner = {Last(grown, 40) + "ACG" + First(after_edge, 40)};
    EXPECT_EQ(Connect(grown, "", 50), grown + "ACG");
    inner = {grown.substr(10, 40) + "ACG" + First(after_edge, 40)};
    EXPECT_EQ(Connect(grown, "", 50), First(grown, 50) + "ACG");
}

TEST_F(BeforeOverGapTest, LongerAfterIsJoinedToTheCutSide) {
    // The whole `before` stays in the answer although the read joins its first 50 bases.
    const std::string grown = Bases(6, 60);
    const std::string other = Bases(7, 70);
    inner = {grown.substr(10, 40) + "ACG" + First(other, 40)};
    EXPECT_EQ(Connect(grown, other, 50), grown + "ACG" + other);
    inner = {grown.substr(10, 40) + "ACG" + First(after_edge, 40)};
    EXPECT_EQ(Connect(grown, other, 50), First(grown, 50) + "ACG");
    inner.clear();
    Connect(grown, other, 50);
    EXPECT_EQ(before, grown);
}

TEST_F(BeforeOverGapTest, ReadIntoTheAfterEdgeCutsOneOfTwoLongOnes) {
    const std::string astray = Bases(6, 8);
    inner = {before_edge.substr(20) + after_edge};
    EXPECT_EQ(Connect(First(after_edge, 10) + astray, Last(before_edge, 20), 10), First(after_edge, 8));
    // The edges share 5 bases.
    before_edge = First(before_edge, 55) + First(after_edge, 5);
    inner = {before_edge.substr(15, 40) + after_edge};
    EXPECT_EQ(Connect(after_edge.substr(5, 10) + astray, Bases(7, 20), 10), Last(Bases(7, 20), 15));
    // A short `after` gives no answer, and nothing is cut.
    Connect(after_edge.substr(5, 10) + astray, Bases(7, 5), 10);
    EXPECT_TRUE(Logged("read cross the two sequence: "));
    EXPECT_EQ(before, after_edge.substr(5, 10) + astray);
}

TEST_F(BeforeOverGapTest, NoLongerAfterCutsItToHalfTheGap) {
    Connect(Bases(6, 60), Bases(7, 60), 50);
    EXPECT_EQ(before, Bases(6, 25));
    Connect(Bases(6, 60), Bases(7, 60), 17);
    EXPECT_EQ(before, Bases(6, 8));
    Connect(Bases(6, 60), Bases(7, 60), 16);
    EXPECT_EQ(before, Bases(6, 8));
    Connect(Bases(6, 8), Bases(7, 8), 4);
    EXPECT_EQ(before, Bases(6, 8));
}

TEST_F(BeforeOverGapTest, ShortAfterCutsItToFit) {
    const std::string grown = Bases(6, 60);
    Connect(grown, Bases(7, 20), 50);
    EXPECT_EQ(before, First(grown, 30));
    inner = {grown.substr(10, 40) + "ACG" + First(after_edge, 40)};
    EXPECT_EQ(Connect(grown, Bases(7, 20), 50), First(grown, 50) + "ACG");
}

TEST_F(BeforeOverGapTest, OverlapOfAllOfItIsNoMinusGap) {
    EXPECT_EQ(Connect(First(after_edge, 51), Bases(7, 40), 50), "");
    EXPECT_TRUE(Logged("overlap between before and after edge is clear\t51\n"));
    EXPECT_EQ(realgaplen, 77);
}

TEST_F(BeforeOverGapTest, OverlapOfOneBaseMoreIsAMinusGap) {
    before_edge.back() = after_edge.front();
    EXPECT_EQ(Connect(after_edge.substr(1, 51), Bases(7, 40), 50), Open(50));
    EXPECT_EQ(realgaplen, -1);
    EXPECT_TRUE(Logged("edge is clear\t52\nHave overlap between the two edge!\t-1\n"));
}

TEST_F(BeforeOverGapTest, LongSequenceIsAccepted) {
    after_edge = Bases(2, 150);
    const std::string truth = Bases(6, 1010);
    EXPECT_EQ(Connect(truth + First(after_edge, 120), Bases(7, 20), 1100), truth);
    EXPECT_TRUE(Logged("edge is clear\t120\nAccept the long gap sequence!\n"));
    const std::string shorter = Bases(6, 1000);
    Connect(shorter + First(after_edge, 120), Bases(7, 20), 1100);
    EXPECT_FALSE(Logged("Accept the long gap sequence!\n"));
}

const char kWrong[] = "the before overlap with after edge maybe wrong!\n";

TEST_F(BeforeOverGapTest, OneMismatchOfTenIsInDoubt) {
    const std::string piece = Bases(6, 10);
    Connect(piece + after_edge, Bases(7, 20) + Changed(piece, 5), 60);
    EXPECT_TRUE(Logged("edge is clear\t60\n" + std::string(kWrong)));
}

TEST_F(BeforeOverGapTest, NineTenthsAreNotInDoubt) {
    const std::string piece = Bases(6, 20);
    EXPECT_EQ(Connect(piece + after_edge, Bases(7, 20) + Changed(Changed(piece, 5), 9), 79), piece);
    EXPECT_FALSE(Logged(kWrong));
    EXPECT_TRUE(Logged("Have overlap between before and after edge!\nThe gap sequence is part of before sequence.\n"));
    Connect(piece + after_edge, Bases(7, 20) + Changed(Changed(Changed(piece, 5), 9), 12), 79);
    EXPECT_TRUE(Logged(kWrong));
}

TEST_F(BeforeOverGapTest, SequenceInDoubtThatStandsInAfterBecomesBefore) {
    const std::string piece = Bases(6, 20);
    const std::string rest = Bases(7, 20);
    EXPECT_EQ(Connect(piece + after_edge, piece + rest, 79), piece + rest);
    EXPECT_TRUE(Logged(kWrong));
    EXPECT_EQ(before, piece);
}

TEST_F(BeforeOverGapTest, LongSequenceInDoubtBecomesBeforeForALongAfter) {
    const std::string piece = Bases(6, 60);
    Connect(piece + after_edge, Bases(7, 50), 80);
    EXPECT_TRUE(Logged(kWrong));
    EXPECT_EQ(before, piece + after_edge);
    const std::string grown = piece + First(after_edge, 30);
    Connect(grown, Bases(7, 50), 40);
    EXPECT_TRUE(Logged(kWrong));
    EXPECT_EQ(before, piece);
}

TEST_F(BeforeOverGapTest, CopiesInAfterAreToldApart) {
    const std::string piece = Bases(6, 20);
    const std::string two = piece + Bases(7, 20) + piece;
    Connect(piece + after_edge, two, 79);
    EXPECT_TRUE(Logged("Maybe repeat+unrepeat+repeat model.\n"));
    EXPECT_EQ(before, piece);
    const std::string one = Bases(8, 10) + piece + Bases(7, 20) + Changed(Changed(piece, 5), 9);
    EXPECT_EQ(Connect(piece + after_edge, one, 79), one.substr(10));
    EXPECT_TRUE(
        Logged("Find before part sequence in after sequence.\n"
               "May be once short over. Using after part sequence!\n"));
    // The copy is the end of `after`: nothing more to use.
    EXPECT_EQ(Connect(piece + after_edge, Bases(7, 20) + piece, 79), piece);
    EXPECT_FALSE(Logged("May be once short over."));
}

TEST_F(BeforeOverGapTest, DistrustedEdgePartCutsTheOverlap) {
    Distrust(after_edge);
    const std::string piece = Bases(6, 20);
    Connect(piece + after_edge, Bases(7, 20) + piece, 79);
    EXPECT_TRUE(Logged("Overlap between before and after edge is unsure, cut overlap region!\n"));
    EXPECT_EQ(before, piece);
    // Above 0.7 of the gap it isn't asked.
    EXPECT_EQ(Connect(Bases(6, 60) + after_edge, Bases(7, 5), 85), Bases(6, 60));
}

TEST_F(BeforeOverGapTest, FewBasesBetweenTheEdgesMustEndAfter) {
    const std::string piece = Bases(6, 5);
    EXPECT_EQ(Connect(piece + after_edge, Bases(7, 20) + piece, 64), piece);
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\n"));
    Connect(piece + after_edge, Bases(7, 20) + Changed(piece, 4), 64);
    EXPECT_EQ(before, piece);
    EXPECT_EQ(Connect("G" + after_edge, Bases(7, 20) + "T", 60), "G");
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\nMaybe structure error!\n"));
}

TEST_F(BeforeOverGapTest, DistrustedSequenceIsAlignedWithAfter) {
    const std::string piece = Bases(6, 30);
    Distrust(piece);
    EXPECT_EQ(Connect(piece + after_edge, Bases(7, 30) + Changed(Changed(piece, 5), 9), 89), piece);
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\nGet the two same edge!\n"));
    Connect(piece + after_edge, Bases(7, 38 - 30), 89);
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\n"));
    EXPECT_EQ(before, piece);
}

/// An expansion from the after edge that is longer than the gap.
using AfterOverGapTest = ExpandGapTest;

TEST_F(AfterOverGapTest, AloneItIsCutAndKeptOpen) {
    const std::string grown = Bases(6, 70);
    EXPECT_EQ(Connect("", grown, 50), "N" + Last(grown, 50));
    EXPECT_EQ(after, Last(grown, 50));
    EXPECT_TRUE(Logged("Max: 70\t60\t130\nafter cross check!\t" + Last(grown, 50) + after_edge + "\n"));
}

TEST_F(AfterOverGapTest, AloneAndHardlyLongerItLosesItsStart) {
    EXPECT_EQ(Connect("", Bases(6, 57), 50), "NN" + Last(Bases(6, 57), 48));
    EXPECT_EQ(Connect("", Bases(6, 58), 50), "N" + Last(Bases(6, 58), 50));
}

TEST_F(AfterOverGapTest, AloneInALongGapItKeepsHalfAReadMore) {
    EXPECT_EQ(Connect("", Bases(6, 153), 101), "N" + Last(Bases(6, 153), 151));
    EXPECT_EQ(Connect("", Bases(6, 151), 101), "N" + Last(Bases(6, 151), 101));
    EXPECT_EQ(Connect("", Bases(6, 153), 100), "N" + Last(Bases(6, 153), 100));
}

TEST_F(AfterOverGapTest, AloneItMayBeJoinedByARead) {
    const std::string grown = Bases(6, 70);
    inner = {Last(before_edge, 40) + "ACG" + grown.substr(20, 40)};
    EXPECT_EQ(Connect("", grown, 50), "ACG" + Last(grown, 50));
}

TEST_F(AfterOverGapTest, ShortBeforeCutsItToFit) {
    const std::string grown = Bases(6, 70);
    Connect(Bases(7, 20), grown, 50);
    EXPECT_TRUE(Logged("after cut gapsize part \n"));
    EXPECT_EQ(after, Last(grown, 30));
    inner = {Last(before_edge, 40) + "ACG" + grown.substr(20, 40)};
    EXPECT_EQ(Connect(Bases(7, 20), grown, 50), "ACG" + Last(grown, 50));
    EXPECT_TRUE(Logged("have read connect after cutted left part with before edge.\n"));
}

TEST_F(AfterOverGapTest, CutPartInsideTheEdgesIsAMinusGap) {
    // The last 10 bases of `after` and the first 5 of the after edge are the end of the before edge.
    const std::string rest = Bases(9, 10);
    const std::string common = Bases(10, 5);
    before_edge = First(before_edge, 45) + rest + common;
    after_edge = common + First(after_edge, 55);
    inner = {before_edge.substr(10) + after_edge.substr(5, 50)};
    EXPECT_EQ(Connect("TTTT", Bases(6, 60) + rest, 10), Open(10));
    EXPECT_EQ(realgaplen, -5);
    EXPECT_TRUE(Logged("gap size maybe minus.\t-5\n"));
}

TEST_F(AfterOverGapTest, LongBeforeCutsItToTheGapOrAlmostToNothing) {
    Connect(Bases(7, 50), Bases(6, 70), 50);
    EXPECT_EQ(after, Last(Bases(6, 70), 50));
    Connect(Bases(7, 50), Bases(6, 70), 8);
    EXPECT_EQ(after, Last(Bases(6, 70), 9));
}

TEST_F(AfterOverGapTest, WorksOnTheBeforeThatWasCutAndOnTheUncutSide) {
    // `before` is cut to half the gap of 50; so `after` is cut to fit 25 bases beside it.
    Connect(Bases(7, 60), Bases(6, 60), 50);
    EXPECT_EQ(before, Bases(7, 25));
    EXPECT_TRUE(Logged("after cut gapsize part \n"));
    EXPECT_EQ(after, Last(Bases(6, 60), 25));
    // Here `after` has lost the overlap, and the alignment with the before edge still sees it.
    const std::string shared = Bases(8, 51);
    const std::string rest = Bases(9, 120);
    before_edge = First(before_edge, 9) + shared;
    Distrust(shared);
    EXPECT_EQ(Connect(Bases(7, 20) + shared, shared + rest, 90), rest.substr(51));
    EXPECT_TRUE(Logged("overlap between after and before edge is clear\t51\n"));
    EXPECT_EQ(after, rest);
}

TEST_F(AfterOverGapTest, AfterThatEndsInTheWholeBeforeEdgeMakesTheGapZero) {
    // The edge ends as `after` begins, so that two overlaps of `after` with it are equally good.
    const std::string ends = Bases(1, 6);
    const std::string link = Bases(3, 4);
    before_edge = ends + Bases(4, 16) + link + ends;
    EXPECT_EQ(Connect(Bases(7, 34), link + before_edge, 34), "");
    EXPECT_EQ(after, "");
    EXPECT_TRUE(
        Logged("The real gapsize maybe zero! one edge of after is the same as before edge, the other is part "
               "of before edge!\nThe gapsize is zero!\n"));
    Connect(Bases(7, 34), Bases(6, 40), 34);
    EXPECT_TRUE(Logged("The real gapsize maybe zero!"));
    EXPECT_FALSE(Logged("The gapsize is zero!\n"));
}

TEST_F(AfterOverGapTest, OverlapBeyondItLeavesRealgaplenAlone) {
    before_edge.back() = after_edge.front();
    EXPECT_EQ(Connect(Bases(7, 20), before_edge.substr(8, 51), 50), Open(50));
    EXPECT_EQ(realgaplen, 77);
    EXPECT_TRUE(Logged("edge is clear\t52\nHave overlap between the two edge!\n"));
}

const char kError[] = "start of after position may be error!\n";

TEST_F(AfterOverGapTest, WrongStartIsCutWhereBeforeStands) {
    const std::string grown = Last(before_edge, 40) + Bases(6, 10) + Bases(7, 20) + Bases(8, 30);
    EXPECT_EQ(Connect(Bases(7, 20), grown, 90), Bases(7, 20) + Bases(8, 30));
    EXPECT_TRUE(Logged("overlap between after and before edge is clear\t40\n" + std::string(kError)));
}

TEST_F(AfterOverGapTest, StartThatAgreesIsNotWrong) {
    // 7 of 8 bases are above 0.8, 6 are not.
    const std::string rest = Bases(6, 70);
    const std::string start = Changed(First(rest, 8), 2);
    EXPECT_EQ(Connect(start + Bases(7, 12), Last(before_edge, 40) + rest, 90), rest);
    EXPECT_FALSE(Logged(kError));
    EXPECT_EQ(Connect(Changed(start, 5) + Bases(7, 12), Last(before_edge, 40) + rest, 90), rest);
    EXPECT_TRUE(Logged(kError));
}

TEST_F(AfterOverGapTest, WrongStartIsCutByAReadFromTheEdge) {
    const std::string rest = Bases(6, 60);
    inner = {Last(before_edge, 40) + "ACG" + First(rest, 40)};
    const std::string grown = Last(before_edge, 40) + Bases(8, 10) + rest;
    EXPECT_EQ(Connect(Bases(7, 20), grown, 60), "ACG" + rest);
    EXPECT_TRUE(Logged("cut the wrong part, overlapped with before edge!\n"));
}

TEST_F(AfterOverGapTest, WrongStartOfALongOneLosesAFifth) {
    const std::string rest = Bases(8, 10) + Bases(6, 150);
    inner = {Last(before_edge, 40) + First(rest, 40)};
    EXPECT_EQ(Connect(Bases(7, 120), Last(before_edge, 40) + rest, 20), rest);
    EXPECT_TRUE(Logged(kError));
    EXPECT_TRUE(Logged("cut the wrong part, overlapped with before edge!\n"));
    EXPECT_FALSE(Logged("cut the wrong part, overlapped with before !\n"));
}

TEST_F(AfterOverGapTest, WrongStartIsCutByAReadFromBefore) {
    const std::string start = Bases(7, 20);
    std::string grown = Last(before_edge, 40) + Bases(6, 70);
    inner = {start + "AC" + grown.substr(69, 38)};
    EXPECT_EQ(Connect(start, grown, 60), start + "AC" + grown.substr(69));
    EXPECT_TRUE(Logged(grown.substr(69) + "\t41\n"));
    EXPECT_TRUE(Logged("cut the wrong part, overlapped with before !\n"));
    // From ReadLen bases on the edge is not needed.
    grown = Last(before_edge, 40) + Bases(6, 160);
    inner = {start + "AC" + grown.substr(69, 38)};
    EXPECT_EQ(Connect(start, grown, 150), start + "AC" + grown.substr(69));
    EXPECT_TRUE(Logged(grown.substr(69) + "\t131\n"));
}

TEST_F(AfterOverGapTest, TrustedEdgePartAndSequenceAreTaken) {
    const std::string piece = Bases(6, 20);
    EXPECT_EQ(Connect(Bases(7, 30), before_edge + piece, 79), piece);
    EXPECT_TRUE(Logged("edge is clear\t60\nHave overlap between after and before edge!\n"));
    Distrust(before_edge);
    Connect(Bases(7, 30), before_edge + piece, 79);
    EXPECT_TRUE(Logged("Overlap between before and after edge is unsure, cut overlap region\n"));
    EXPECT_EQ(after, piece);
}

TEST_F(AfterOverGapTest, FewBasesBetweenTheEdgesMustStartBefore) {
    const std::string piece = Bases(6, 5);
    EXPECT_EQ(Connect(piece + Bases(7, 20), before_edge + piece, 64), piece);
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\n"));
    Connect(Changed(piece, 0) + Bases(7, 20), before_edge + piece, 64);
    EXPECT_EQ(after, piece);
    EXPECT_EQ(Connect("T" + Bases(7, 20), before_edge + "G", 60), "G");
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\nMaybe structure error!\n"));
}

TEST_F(AfterOverGapTest, DistrustedSequenceIsAlignedWithBefore) {
    const std::string piece = Bases(6, 40);
    Distrust(piece);
    const std::string other = Bases(8, 20) + First(piece, 20) + Bases(7, 20);
    EXPECT_EQ(Connect(other, before_edge + piece, 99), Bases(8, 20) + piece);
    EXPECT_TRUE(Logged("The two edge of gap region is the same!\nGet the two same edge!\n"));
    Connect(Bases(8, 60), before_edge + piece, 99);
    EXPECT_FALSE(Logged("Get the two same edge!\n"));
    Connect(Bases(8, 48), before_edge + piece, 99);
    EXPECT_EQ(after, piece);
}

TEST_F(AfterOverGapTest, SequenceThatIsBeforeIsKeptTwice) {
    // A short exact overlap of the sides hides the long one; a read that holds it twice makes it untrusted.
    const std::string start = before_edge.substr(20, 10);
    const std::string piece = Bases(6, 10) + start;
    Distrust(piece);
    inner = {start + Bases(8, 5) + start};
    const std::string grown = Changed(Last(before_edge, 40), 20) + piece;
    EXPECT_EQ(Connect(piece, grown, 55), piece + Open(15) + piece);
    EXPECT_TRUE(Logged("Get the overlap 10\t"));
    EXPECT_EQ(Connect(piece, grown, 40), piece + Open(1) + piece);
}

}  // namespace
}  // namespace lintara
