#include "join/checks.h"

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
using testing::TagTable;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

/// Reads between two edges that play no part.
std::vector<Read> Block(const std::vector<std::string>& inner) {
    std::vector<Read> reads{Read(Bases(901, 100), -100)};
    for (const std::string& seq : inner) reads.emplace_back(seq, 0);
    reads.emplace_back(Bases(902, 100), 100);
    return reads;
}

class CheckOverTest : public testing::ThreadStreamsTest {
  protected:
    TagTable tags;
};

TEST_F(CheckOverTest, HundredBasesAreStillAskedForRepeatsAndOneMoreIsNot) {
    const std::string patt = Bases(1, 101);
    tags.SetAll(patt, 150);
    EXPECT_FALSE(CheckOver(First(patt, 100), tags.Info(), {}));
    EXPECT_TRUE(CheckOver(patt, tags.Info(), {}));
}

TEST_F(CheckOverTest, MinAlignBasesAreCountedInTheReadsAndOneFewerIsRefused) {
    const std::vector<Read> once = Block({"TTTTACGGATCATTTT"});
    const std::vector<Read> twice = Block({"ACGGATCATTACGGATCA"});
    EXPECT_TRUE(CheckOver("ACGGATCA", tags.Info(), once));
    EXPECT_FALSE(CheckOver("ACGGATCA", tags.Info(), twice));
    EXPECT_FALSE(CheckOver("ACGGATC", tags.Info(), once));
    EXPECT_FALSE(CheckOver("", tags.Info(), once));
}

TEST_F(CheckOverTest, TwelveBasesAreCountedInTheReadsAndThirteenAreAskedForRepeats) {
    const std::string patt = "ACGGATCATTGCA";
    const std::vector<Read> reads = Block({patt + "GG" + patt});
    EXPECT_FALSE(CheckOver(First(patt, 12), tags.Info(), reads));
    EXPECT_TRUE(CheckOver(patt, tags.Info(), reads));
    tags.SetAll(patt, 20);
    EXPECT_FALSE(CheckOver(patt, tags.Info(), reads));
}

TEST_F(CheckOverTest, ShortPatternLongerThanAReadEndsTheProcess) {
    const std::vector<Read> reads = Block({"ACGGATCATT"});
    EXPECT_EXIT(CheckOver("ACGGATCATTGC", tags.Info(), reads), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t12\t10\n$");
}

TEST_F(CheckOverTest, PatternBelowThreeBasesEndsTheProcess) {
    min_align = 2;
    EXPECT_EXIT(CheckOver("AC", tags.Info(), Block({})), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t2\t100\n$");
}

using ShortOverCheckTest = CheckOverTest;

TEST_F(ShortOverCheckTest, TheEdgesCountToo) {
    std::vector<Read> reads = Block({Bases(3, 50)});
    EXPECT_TRUE(ShortOverCheck("ACGGATCAT", reads));
    reads.front().seq = "ACGGATCATGGACGGATCAT";
    EXPECT_FALSE(ShortOverCheck("ACGGATCAT", reads));
    std::swap(reads.front().seq, reads.back().seq);
    EXPECT_FALSE(ShortOverCheck("ACGGATCAT", reads));
}

TEST_F(ShortOverCheckTest, OccurrencesMayOverlap) {
    EXPECT_FALSE(ShortOverCheck("ACACACAC", Block({"GGACACACACACGG"})));
    EXPECT_TRUE(ShortOverCheck("ACACACAC", Block({"GGACACACACGG", "GGACACACACGG"})));
    EXPECT_TRUE(ShortOverCheck("ACACACAC", {}));
}

using IsRepeatSeqTest = CheckOverTest;

TEST_F(IsRepeatSeqTest, OneVoteSufficesForElevenAndForTwelveBases) {
    const std::string seq = "ACGGATCATTGC";
    EXPECT_FALSE(IsRepeatSeq(First(seq, 11), tags.Info()));
    EXPECT_FALSE(IsRepeatSeq(seq, tags.Info()));
    tags.Set("GATCAT", {13});
    EXPECT_TRUE(IsRepeatSeq(First(seq, 11), tags.Info()));
    EXPECT_TRUE(IsRepeatSeq(seq, tags.Info()));
}

TEST_F(IsRepeatSeqTest, DistancesThatFitInsideTheSequenceDoNotCount) {
    const std::string seq = "ACGGATCATTG";
    tags.Set("GATCAT", {6, 11});
    EXPECT_FALSE(IsRepeatSeq(seq, tags.Info()));
    tags.Set("GATCAT", {6, 11, 12});
    EXPECT_TRUE(IsRepeatSeq(seq, tags.Info()));
}

TEST_F(IsRepeatSeqTest, VotesMustAgreeOnTheDistance) {
    // Eight tags, of which one change spoils six: two votes are needed.
    const std::string seq = "ACGGATCATTGCA";
    tags.Set("ACGGAT", {20, 30});
    EXPECT_FALSE(IsRepeatSeq(seq, tags.Info()));
    tags.Set("CGGATC", {40});
    EXPECT_FALSE(IsRepeatSeq(seq, tags.Info()));
    tags.Set("TTGCAA", {30});
    EXPECT_FALSE(IsRepeatSeq(seq, tags.Info()));
    tags.Set("ATTGCA", {30});
    EXPECT_TRUE(IsRepeatSeq(seq, tags.Info()));
}

TEST_F(IsRepeatSeqTest, ATagThatComesTwiceVotesTwice) {
    // ACACACACACACA: ACACAC at 0, 2, 4 and 6.
    tags.Set("ACACAC", {14});
    EXPECT_TRUE(IsRepeatSeq("ACACACACACACA", tags.Info()));
}

TEST_F(IsRepeatSeqTest, TheLastFiveBasesAreNoTag) {
    // Their code is that of the tag with one A more in front.
    tags.Set("AATTGC", {13});
    EXPECT_FALSE(IsRepeatSeq("ACGGATCATTGC", tags.Info()));
}

TEST_F(IsRepeatSeqTest, WithoutTagsOrTableNothingIsARepeat) {
    TagInfo* none = nullptr;
    EXPECT_FALSE(IsRepeatSeq(Bases(4, 40), none));
    EXPECT_FALSE(IsRepeatSeq("ACG", tags.Info()));
    EXPECT_FALSE(IsRepeatSeq("", tags.Info()));
    EXPECT_FALSE(IsRepeatSeq(testing::Open(40), tags.Info()));
}

class BeforeCrossCheckTest : public testing::ThreadStreamsTest {
  protected:
    /// 200 bases that end in the first `over1` of the read.
    std::string Seq(int over1) const { return Bases(10, 200 - over1) + First(r, over1); }
    /// 150 bases that begin with the last `over2` of the read.
    std::string Edge(int over2) const { return Last(r, over2) + Bases(11, 150 - over2); }

    const std::string r = Bases(12, 100);
};

TEST_F(BeforeCrossCheckTest, ReadFillsWhatLiesBetween) {
    std::string seq = Seq(40);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
    EXPECT_EQ(seq, Seq(40) + r.substr(40, 20));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have no overlap!\t20\t40\t40\n");
}

TEST_F(BeforeCrossCheckTest, OverlapIsCutOffTheEnd) {
    std::string seq = Seq(60);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({r}), Edge(60), 0));
    EXPECT_EQ(seq, First(Seq(60), 180));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have overlap!\t-20\t60\t60\n" +
                         First(r, 40) + "\t40\n");
}

TEST_F(BeforeCrossCheckTest, TouchingSequencesStayAsTheyAre) {
    std::string seq = Seq(50);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({r}), Edge(50), 0));
    EXPECT_EQ(seq, Seq(50));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have no overlap!\t0\t50\t50\n");
}

TEST_F(BeforeCrossCheckTest, BothOverlapsNeedMinOverlapBases) {
    std::string seq = Seq(30);
    EXPECT_TRUE(BeforeCrossCheck(seq, Block({r}), Edge(30), 0));
    EXPECT_EQ(seq, Seq(30) + r.substr(30, 40));
    NewLog();
    seq = Seq(29);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
    EXPECT_EQ(seq, Seq(29));
    seq = Seq(40);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Edge(29), 0));
    EXPECT_EQ(seq, Seq(40));
    EXPECT_EQ(NewLog(), "");
}

TEST_F(BeforeCrossCheckTest, TheGrownSequenceMayDifferMoreThanTheEdge) {
    // One change in 40 columns is 0.975: enough for the sequence, not for the edge.
    std::string seq = Changed(Seq(40), 195);
    EXPECT_TRUE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
    seq = Seq(40);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Changed(Edge(40), 35), 0));
    // Two changes are 0.95.
    seq = Changed(Changed(Seq(40), 195), 199);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
}

TEST_F(BeforeCrossCheckTest, NinetyNinePercentOfTheEdgeSuffice) {
    // One change in 100 columns.
    const std::string read = Bases(12, 200);
    const std::string edge = Changed(read.substr(100), 60) + Bases(11, 50);
    std::string seq = Bases(10, 160) + First(read, 40);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({read}), edge, 0));
    EXPECT_EQ(seq, Bases(10, 160) + First(read, 100));
}

TEST_F(BeforeCrossCheckTest, OverlapsMayTakeAllOfBothSequences) {
    std::string seq = First(r, 40);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({r}), Last(r, 40), 0));
    EXPECT_EQ(seq, First(r, 60));
}

TEST_F(BeforeCrossCheckTest, TheFirstReadThatSpansDecides) {
    std::string seq = Seq(40);
    const std::string other = First(r, 40) + Bases(13, 10) + Last(r, 40);
    ASSERT_TRUE(BeforeCrossCheck(seq, Block({Bases(14, 100), other, r}), Edge(40), 0));
    EXPECT_EQ(seq, Seq(40) + Bases(13, 10));
}

TEST_F(BeforeCrossCheckTest, EdgesOfTheBlockAreNoBridges) {
    std::string seq = Seq(40);
    EXPECT_FALSE(BeforeCrossCheck(seq, {Read(r, 0), Read(Bases(14, 100), 0), Read(r, 0)}, Edge(40), 0));
    EXPECT_FALSE(BeforeCrossCheck(seq, {Read(r, 0), Read(r, 0)}, Edge(40), 0));
    EXPECT_FALSE(BeforeCrossCheck(seq, {}, Edge(40), 0));
    EXPECT_EQ(seq, Seq(40));
    EXPECT_EQ(Log(), "");
}

TEST_F(BeforeCrossCheckTest, ReadInsideEitherSequenceIsNoBridge) {
    std::string seq = Bases(10, 200) + r;
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
    seq = Bases(10, 200) + r + Bases(15, 7);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), Edge(40), 0));
    seq = Seq(40);
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), r + Bases(11, 50), 0));
    // An edge inside the read: the read runs on behind it.
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), r.substr(50, 40), 0));
}

TEST_F(BeforeCrossCheckTest, OnlyTheEndOfTheSequenceIsLookedAt) {
    // Without its first seed, which a change hides, the read finds its other seeds first at the front of the sequence.
    const std::string head = Changed(First(r, 40), 3);
    std::string seq = head + Bases(16, 300) + head;
    const std::string edge = First(Edge(40), 100);
    EXPECT_TRUE(BeforeCrossCheck(seq, Block({r}), edge, 0));
    seq = head + Bases(16, 100) + head;
    EXPECT_FALSE(BeforeCrossCheck(seq, Block({r}), edge, 0));
}

TEST_F(BeforeCrossCheckTest, SequenceShorterThanASeedEndsTheProcess) {
    std::string seq = "ACG";
    EXPECT_EXIT(BeforeCrossCheck(seq, Block({r}), Edge(40), 0), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t7\t3\n$");
}

class AfterCrossCheckTest : public testing::ThreadStreamsTest {
  protected:
    /// 150 bases that end in the first `over1` of the read.
    std::string Edge(int over1) const { return Bases(20, 150 - over1) + First(r, over1); }
    /// 200 bases that begin with the last `over2` of the read.
    std::string Seq(int over2) const { return Last(r, over2) + Bases(21, 200 - over2); }

    const std::string r = Bases(22, 100);
};

TEST_F(AfterCrossCheckTest, ReadFillsWhatLiesBetween) {
    std::string seq = Seq(40);
    ASSERT_TRUE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, r.substr(40, 20) + Seq(40));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have no overlap!\t20\t40\t40\n");
}

TEST_F(AfterCrossCheckTest, OverlapIsCutOffTheFront) {
    std::string seq = Seq(60);
    ASSERT_TRUE(AfterCrossCheck(Edge(60), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, Last(Seq(60), 180));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have overlap!\t-20\t60\t60\n");
}

TEST_F(AfterCrossCheckTest, ReadsBeyondTheLimitAreLeftOut) {
    std::string seq = Seq(40);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 99, 0));
    EXPECT_EQ(seq, Seq(40));
    EXPECT_TRUE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
}

TEST_F(AfterCrossCheckTest, TheEdgeNeedsMinAlignBasesAndTheSequenceMinOverlap) {
    std::string seq = Seq(30);
    EXPECT_TRUE(AfterCrossCheck(Edge(8), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, r.substr(8, 62) + Seq(30));
    seq = Seq(40);
    EXPECT_FALSE(AfterCrossCheck(Edge(7), Block({r}), seq, 100, 0));
    seq = Seq(29);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, Seq(29));
}

TEST_F(AfterCrossCheckTest, TheGrownSequenceMayDifferMoreThanTheEdge) {
    // Two changes in 40 columns are 0.95: just enough for the sequence. One is too many for the edge.
    std::string seq = Changed(Changed(Seq(40), 30), 35);
    EXPECT_TRUE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    seq = Changed(Changed(Changed(Seq(40), 30), 35), 39);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    seq = Seq(40);
    EXPECT_FALSE(AfterCrossCheck(Changed(Edge(40), 148), Block({r}), seq, 100, 0));
}

TEST_F(AfterCrossCheckTest, NinetyNinePercentOfTheEdgeSuffice) {
    // One change in 100 columns.
    const std::string read = Bases(22, 200);
    std::string seq = read.substr(160) + Bases(21, 160);
    ASSERT_TRUE(AfterCrossCheck(Bases(20, 50) + Changed(First(read, 100), 60), Block({read}), seq, 200, 0));
    EXPECT_EQ(seq, read.substr(100) + Bases(21, 160));
}

TEST_F(AfterCrossCheckTest, OverlapsMayTakeAllOfBothSequences) {
    std::string seq = Last(r, 30);
    ASSERT_TRUE(AfterCrossCheck(First(r, 40), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, Last(r, 60));
}

TEST_F(AfterCrossCheckTest, TouchingSequencesStayAsTheyAre) {
    std::string seq = Seq(50);
    ASSERT_TRUE(AfterCrossCheck(Edge(50), Block({r}), seq, 100, 0));
    EXPECT_EQ(seq, Seq(50));
    EXPECT_EQ(Log(), "read cross the two sequence: " + r +
                         "\n"
                         "The two sequence have no overlap!\t0\t50\t50\n");
}

TEST_F(AfterCrossCheckTest, SequenceThatEqualsBothOverlapsVanishes) {
    // The first and the last 40 bases of a read of 60, and nothing of the sequence behind them.
    const std::string read = First(r, 60);
    std::string seq = Last(read, 40);
    const std::string edge = Bases(20, 110) + First(read, 40);
    ASSERT_TRUE(AfterCrossCheck(edge, Block({read}), seq, 100, 0));
    EXPECT_EQ(seq, "");
    EXPECT_EQ(Log(), "Gap size is zero!\n");
}

TEST_F(AfterCrossCheckTest, ReadInsideEitherSequenceIsNoBridge) {
    std::string seq = Seq(40);
    EXPECT_FALSE(AfterCrossCheck(Bases(20, 50) + r, Block({r}), seq, 100, 0));
    EXPECT_FALSE(AfterCrossCheck(Bases(20, 50) + r + "ACG", Block({r}), seq, 100, 0));
    seq = r + Bases(21, 100);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    // A sequence inside the read: the read runs on behind it.
    seq = r.substr(50, 40);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
    EXPECT_EQ(Log(), "");
}

TEST_F(AfterCrossCheckTest, EdgesOfTheBlockAreNoBridgesAndAnEmptySequenceHasNone) {
    std::string seq = Seq(40);
    EXPECT_FALSE(AfterCrossCheck(Edge(40), {Read(r, 0), Read(Bases(14, 100), 0), Read(r, 0)}, seq, 100, 0));
    EXPECT_FALSE(AfterCrossCheck(Edge(40), {}, seq, 100, 0));
    seq.clear();
    EXPECT_FALSE(AfterCrossCheck(Edge(40), Block({r}), seq, 100, 0));
}

TEST_F(AfterCrossCheckTest, EdgeShorterThanASeedEndsTheProcess) {
    std::string seq = Seq(40);
    EXPECT_EXIT(AfterCrossCheck("ACGT", Block({r}), seq, 100, 0), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t7\t4\n$");
}

class PassMinusCheckTest : public testing::ThreadStreamsTest {
  protected:
    const std::string shared = Bases(30, 40);
    const std::string left = Bases(31, 60);
    const std::string right = Bases(32, 60);
};

TEST_F(PassMinusCheckTest, ExactOverlapCountsTwice) {
    CaptureStderr();
    EXPECT_TRUE(pass_minus_check(left + shared, shared + right, 40));
    EXPECT_EQ(GetCapturedStderr(), "40\n80\n");
    CaptureStderr();
    EXPECT_TRUE(pass_minus_check(left + shared, shared + right, 88));
    EXPECT_EQ(GetCapturedStderr(), "40\n80\n");
    CaptureStderr();
    EXPECT_FALSE(pass_minus_check(left + shared, shared + right, 89));
    GetCapturedStderr();
}

TEST_F(PassMinusCheckTest, OneEndAloneMustExceedNineTenths) {
    CaptureStderr();
    // Seen from the end of the first sequence alone: the run goes left up to the change.
    EXPECT_FALSE(pass_minus_check(left + shared, Changed(shared, 3) + right, 40));
    EXPECT_TRUE(pass_minus_check(left + shared, Changed(shared, 2) + right, 40));
    // Seen from the start of the second one alone.
    EXPECT_FALSE(pass_minus_check(left + Changed(shared, 36), shared + right, 40));
    EXPECT_TRUE(pass_minus_check(left + Changed(shared, 37), shared + right, 40));
    EXPECT_EQ(GetCapturedStderr(), "36\n37\n36\n37\n");
}

TEST_F(PassMinusCheckTest, EndsOfOneBaseMoreThanMinAlignAreSought) {
    const std::string nine = First(shared, 9);
    CaptureStderr();
    EXPECT_TRUE(pass_minus_check(left + nine, nine + right, 9));
    EXPECT_TRUE(pass_minus_check(nine, nine + right, 9));
    EXPECT_FALSE(pass_minus_check(left + First(shared, 8), First(shared, 8) + right, 8));
    EXPECT_EQ(GetCapturedStderr(), "9\n18\n9\n18\n");
}

TEST_F(PassMinusCheckTest, NoSharedEndFails) {
    CaptureStderr();
    EXPECT_FALSE(pass_minus_check(left, right, 20));
    EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(PassMinusCheckTest, OverlapBelowMinAlignIsNeverLookedAt) {
    CaptureStderr();
    EXPECT_FALSE(pass_minus_check(left + shared, shared + right, 7));
    EXPECT_FALSE(pass_minus_check("", "", -3));
    EXPECT_EQ(GetCapturedStderr(), "");
    CaptureStderr();
    EXPECT_TRUE(pass_minus_check(left + shared, shared + right, 8));
    GetCapturedStderr();
}

TEST_F(PassMinusCheckTest, SequencesThatAreTooShortEndTheProcess) {
    EXPECT_EXIT(pass_minus_check("ACGTA", "ACG", 10), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t5\t3\n$");
}

TEST(GetMatchLen, LeftRunStopsAtADifferenceAndAtEitherFront) {
    CaptureStderr();
    int match = 0;
    get_match_len("TTCGT", "AACGTA", 4, match, false);
    EXPECT_EQ(match, 3);
    get_match_len("GT", "ACGTA", 3, match, false);
    EXPECT_EQ(match, 5);
    get_match_len("AAACG", "ACGTA", 2, match, false);
    EXPECT_EQ(match, 8);
    EXPECT_EQ(GetCapturedStderr(), "3\n5\n8\n");
}

TEST(GetMatchLen, RightRunStopsAtADifferenceAndAtEitherEnd) {
    CaptureStderr();
    int match = 10;
    get_match_len("TTACGT", "ACTT", 2, match, true);
    EXPECT_EQ(match, 12);
    get_match_len("TTAC", "ACG", 2, match, true);
    EXPECT_EQ(match, 14);
    get_match_len("TTACGT", "ACG", 2, match, true);
    EXPECT_EQ(match, 17);
    get_match_len("TTACGT", "GGG", 2, match, true);
    EXPECT_EQ(match, 17);
    EXPECT_EQ(GetCapturedStderr(), "12\n14\n17\n17\n");
}

TEST(GetMatchLen, PlacesOutsideAreHarmless) {
    CaptureStderr();
    int match = 0;
    get_match_len("ACGT", "ACGT", 9, match, false);
    get_match_len("ACGT", "ACGT", 9, match, true);
    get_match_len("ACGT", "ACGT", -2, match, true);
    get_match_len("", "", 0, match, false);
    EXPECT_EQ(match, 0);
    EXPECT_EQ(GetCapturedStderr(), "0\n0\n0\n0\n");
}

TEST(GetN, KeepsAtLeastOneN) {
    EXPECT_EQ(getN(10, 4), "NNNNNN");
    EXPECT_EQ(getN(10, 9), "N");
    EXPECT_EQ(getN(10, 10), "N");
    EXPECT_EQ(getN(10, 15), "N");
}

TEST(GetForwardMatchLen, PassesOverDifferencesUpToTheNearerEnd) {
    // Behind the three known columns: T/A differs, four equal ones follow.
    EXPECT_EQ(GetForwardMatchLen("ACGTACGT", 0, "ACGAACGTGG", 0, 3), 7);
    EXPECT_EQ(GetForwardMatchLen("GGACGTACGT", 2, "ACGAACG", 0, 3), 6);
    EXPECT_EQ(GetForwardMatchLen("GGACGT", 2, "TACGTT", 1, 4), 4);
    EXPECT_EQ(GetForwardMatchLen("ACG", 0, "ACG", 0, 20), 20);
}

class CutBeforeTest : public testing::ThreadStreamsTest {
  protected:
    const std::string after = Bases(40, 160);
    const std::string front = Bases(41, 120);
};

TEST_F(CutBeforeTest, SplicesAtTheOnePlaceOfTheAnchor) {
    std::string seq = front + First(after, 130);
    ASSERT_TRUE(CutBefore(seq, after));
    EXPECT_EQ(seq, front + after);
}

TEST_F(CutBeforeTest, MoreThanReadLenColumnsMustBeEqual) {
    std::string seq = front + First(after, 100);
    EXPECT_FALSE(CutBefore(seq, after));
    EXPECT_EQ(seq, front + First(after, 100));
    seq = front + First(after, 101);
    EXPECT_TRUE(CutBefore(seq, after));
    // A difference takes its own column only.
    seq = front + Changed(First(after, 102), 50);
    EXPECT_TRUE(CutBefore(seq, after));
    EXPECT_EQ(seq, front + after);
    seq = front + Changed(First(after, 101), 50);
    EXPECT_FALSE(CutBefore(seq, after));
}

TEST_F(CutBeforeTest, NothingEqualBehindTheAnchorFails) {
    std::string seq = front + First(after, 20);
    EXPECT_FALSE(CutBefore(seq, after));
}

TEST_F(CutBeforeTest, AnchorGrowsUntilItIsTheOnlyOne) {
    // 20, 30 and 45 bases occur twice, 67 once.
    const std::string twice = front + First(after, 50) + Bases(42, 30);
    std::string seq = twice + First(after, 130);
    ASSERT_TRUE(CutBefore(seq, after));
    EXPECT_EQ(seq, twice + after);
}

TEST_F(CutBeforeTest, AnchorBeyondReadLenIsRefusedEvenWhenUnique) {
    // 100 bases occur twice, 150 once.
    const std::string whole = First(after, 120) + front + after;
    std::string seq = whole;
    EXPECT_FALSE(CutBefore(seq, after));
    EXPECT_EQ(seq, whole);
    // 67 bases occur twice, 100 once.
    seq = First(after, 90) + front + after;
    EXPECT_TRUE(CutBefore(seq, after));
}

TEST_F(CutBeforeTest, MissingAnchorFails) {
    std::string seq = front;
    EXPECT_FALSE(CutBefore(seq, after));
    EXPECT_EQ(seq, front);
}

TEST_F(CutBeforeTest, AnchorOfOneBaseEndsTheSearch) {
    Method = 0;
    ReadLen = 5;
    std::string seq = "AAAA";
    EXPECT_FALSE(CutBefore(seq, "ACGT"));
}

TEST_F(CutBeforeTest, SequenceShorterThanTheAnchorEndsTheProcess) {
    std::string seq = First(after, 19);
    EXPECT_EXIT(CutBefore(seq, after), ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t20\t19\n$");
}

TEST(JoinMin, GivesTheLargestOfTheNumbersAndTheirSum) {
    EXPECT_EQ(min(1, 2, 3), 6);
    EXPECT_EQ(min(-5, -2, -3), -2);
    EXPECT_EQ(min(-1, -1, 10), 10);
    EXPECT_EQ(min(7, -1, -2), 7);
    EXPECT_EQ(min(0, 0, 0), 0);
}

}  // namespace
}  // namespace lintara
