#include "strategy/spanning.h"

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

const std::string kBefore = RandomBases(60, 31);
const std::string kAfter = RandomBases(60, 32);

/// A read with `over1` bases on the before edge and `over2` on the after edge; it begins at 60 - over1.
std::string Spanning(int over1, const std::string& gap_part, int over2) {
    return Last(kBefore, over1) + gap_part + First(kAfter, over2);
}

/// Before edge, the given reads from index 1 on, after edge.
std::vector<Read> Block(const std::vector<std::string>& between) {
    std::vector<Read> reads;
    reads.emplace_back(kBefore, -60);
    for (const std::string& seq : between) reads.emplace_back(seq, 0);
    reads.emplace_back(kAfter, 5);
    return reads;
}

class SpanningTest : public testing::ThreadStreamsTest {
  protected:
    TagInfo* tagInfo = nullptr;
};

class CrossCheckTest : public SpanningTest {};

TEST_F(CrossCheckTest, EdgePartsThatStandOnceEverywherePass) {
    const std::vector<Read> reads = Block({Spanning(10, "GTA", 12), Spanning(30, "GTA", 5), "ACG"});
    EXPECT_TRUE(CrossCheck(reads, 3, 1, 50, tagInfo));
}

TEST_F(CrossCheckTest, BeforePartTwiceInAnyReadFails) {
    const std::string part = Last(kBefore, 10);
    EXPECT_FALSE(CrossCheck(Block({Spanning(10, "GTA", 12), part + part}), 3, 1, 50, tagInfo));
    EXPECT_TRUE(CrossCheck(Block({Spanning(10, "GTA", 12), part}), 3, 1, 50, tagInfo));
}

TEST_F(CrossCheckTest, AfterPartTwiceInAnyReadFails) {
    const std::string part = First(kAfter, 12);
    EXPECT_FALSE(CrossCheck(Block({Spanning(10, "GTA", 12), part + "C" + part}), 3, 1, 50, tagInfo));
    EXPECT_TRUE(CrossCheck(Block({Spanning(10, "GTA", 12), part + "C"}), 3, 1, 50, tagInfo));
}

TEST_F(CrossCheckTest, EdgesAndTheReadItselfAreSearched) {
    std::vector<Read> reads = Block({Spanning(10, "GTA", 12)});
    reads[0].seq = First(kBefore, 40) + Last(kBefore, 10) + Last(kBefore, 10);
    EXPECT_FALSE(CrossCheck(reads, 3, 1, 50, tagInfo)) << "twice in the before edge";
    reads = Block({Spanning(10, "GTA", 12)});
    reads[2].seq += First(kAfter, 12);
    EXPECT_FALSE(CrossCheck(reads, 3, 1, 50, tagInfo)) << "twice in the after edge";
    reads = Block({Spanning(10, "GTA" + Last(kBefore, 10), 12)});
    EXPECT_FALSE(CrossCheck(reads, 13, 1, 50, tagInfo)) << "twice in itself";
}

TEST_F(CrossCheckTest, AThousandReadsABaseLeaveTheFirstHundredABase) {
    // 997 reads that say nothing, one that holds the before part twice in place 500, and the spanning read.
    std::vector<std::string> between(998, "ACG");
    between[0] = Spanning(10, "G", 12);
    between[499] = Last(kBefore, 10) + Last(kBefore, 10);
    const std::vector<Read> reads = Block(between);
    ASSERT_EQ(reads.size(), 1000U);
    EXPECT_TRUE(CrossCheck(reads, 1, 1, 50, tagInfo));
    std::vector<Read> one_less(reads);
    one_less.erase(one_less.begin() + 2);
    EXPECT_FALSE(CrossCheck(one_less, 1, 1, 50, tagInfo));
    std::vector<Read> early(reads);
    std::swap(early[99], early[500]);
    EXPECT_FALSE(CrossCheck(early, 1, 1, 50, tagInfo)) << "the last of the first hundred";
}

TEST_F(CrossCheckTest, GapOfZeroLooksAtAllReads) {
    std::vector<std::string> between(998, "ACG");
    between[0] = Spanning(10, "", 12);
    between[499] = Last(kBefore, 10) + Last(kBefore, 10);
    EXPECT_FALSE(CrossCheck(Block(between), 0, 1, 50, tagInfo));
}

class MultiCrossCheckTest : public SpanningTest {};

TEST_F(MultiCrossCheckTest, FirstPassIsNamed) {
    const std::string doubled = First(kAfter, 12) + "C" + First(kAfter, 12);
    const std::vector<Read> reads =
        Block({Spanning(10, "GTA", 12), Spanning(11, "GTA", 13), Spanning(9, "GTA", 14), doubled});
    const std::map<int, int> read = {{1, 50}, {2, 49}, {3, 51}};
    EXPECT_TRUE(MultiCrossCheck(reads, 3, read, tagInfo, 0));
    EXPECT_EQ(Log(), "pass: " + Spanning(11, "GTA", 13) + "\n");
}

TEST_F(MultiCrossCheckTest, NonePasses) {
    const std::string doubled = First(kAfter, 12) + "C" + First(kAfter, 12);
    const std::vector<Read> reads = Block({Spanning(10, "GTA", 12), Spanning(11, "GTA", 12), doubled});
    EXPECT_FALSE(MultiCrossCheck(reads, 3, {{1, 50}, {2, 49}}, tagInfo, 0));
    EXPECT_FALSE(MultiCrossCheck(reads, 3, {}, tagInfo, 0));
    EXPECT_EQ(Log(), "");
}

const std::string kAccepted =
    "The overlap is not part of repeat, supported by more than 2 reads, and not exitst more than once in one read. so "
    "the one read is acceptable.\n";

class OneReadCrossTest : public SpanningTest {
  protected:
    /// Runs the check on a read with 10 and 12 bases on the edges and the given other reads.
    std::string Cross(const std::string& gap_part, const std::vector<std::string>& others) {
        std::vector<std::string> between = {Spanning(10, gap_part, 12)};
        between.insert(between.end(), others.begin(), others.end());
        gapsize = static_cast<int>(gap_part.size());
        NewLog();
        return OneReadCross(Block(between), gapsize, {{1, 50}}, 0);
    }
    std::string Checking(int reads) const {
        return "Checking patt: " + Last(kBefore, 10) + "\t" + First(kAfter, 12) +
               "\tread num: " + std::to_string(reads) + "\n";
    }

    int gapsize = 0;
};

TEST_F(OneReadCrossTest, GapOfThreeNeedsNoSupport) {
    EXPECT_EQ(Cross("GTA", {"GTAGTAGTAGTA"}), "GTA");
    EXPECT_EQ(gapsize, 3);
    EXPECT_EQ(NewLog(), "Min num: -1\n" + Checking(4) + kAccepted);
}

TEST_F(OneReadCrossTest, GapOfFourNeedsTwoOtherReads) {
    const std::string gap = "GATTACAGC";
    EXPECT_EQ(Cross(gap, {}), "NNNNNNNNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(NewLog(), "Min num: 1\n" + Checking(3));
    EXPECT_EQ(Cross(gap, {"C" + gap}), "NNNNNNNNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(Cross(gap, {"C" + gap, gap + "T"}), gap);
    EXPECT_EQ(gapsize, 9);
    EXPECT_EQ(NewLog(), "Min num: 1\n" + Checking(5) + kAccepted);
}

TEST_F(OneReadCrossTest, ReadNoLongerThanTheGapIsNoSupport) {
    const std::string gap = "GATTACAGC";
    EXPECT_EQ(Cross(gap, {"C" + gap, gap}), "NNNNNNNNN");
}

TEST_F(OneReadCrossTest, SupportStartsAtFourBases) {
    std::string gap = "GTAC";
    // Kept out of the edges, so that both occurrences counted are those of the two other reads.
    ASSERT_EQ((kBefore + kAfter).find(gap), std::string::npos);
    EXPECT_EQ(Cross(gap, {"AGTACA"}), "NNNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(Cross(gap, {"AGTACA", "TGTACT"}), "GTAC");
    EXPECT_EQ(gapsize, 4);
}

TEST_F(OneReadCrossTest, GapPartTwiceInARead) {
    const std::string gap = "GATTACAGC";
    EXPECT_EQ(Cross(gap, {"C" + gap, gap + "T", gap + gap}), "NNNNNNNNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(NewLog(),
              "Min num: 1\n" + Checking(6) + "Gap sequence may exists more than one copy in the gap region!\n");
}

TEST_F(OneReadCrossTest, GapPartMayStandAsOftenAsInEdgesAndGap) {
    const std::string gap = "GATTACAGC";
    std::vector<Read> reads = Block({Spanning(10, gap, 12), "C" + gap, gap + "T", gap + gap});
    reads.front().seq = gap + kBefore.substr(9);
    gapsize = 9;
    EXPECT_EQ(OneReadCross(reads, gapsize, {{1, 50}}, 0), gap);
    EXPECT_EQ(Log().substr(0, 11), "Min num: 2\n");
    reads[2].seq = reads[3].seq = "ACG";  // which leaves the before edge, and the read that holds it twice
    EXPECT_EQ(OneReadCross(reads, gapsize, {{1, 50}}, 0), "NNNNNNNNN") << "twice is no support";
}

TEST_F(OneReadCrossTest, TooFewBasesOnAnEdge) {
    gapsize = 3;
    EXPECT_EQ(OneReadCross(Block({Spanning(7, "GTA", 30)}), gapsize, {{1, 53}}, 0), "NNN");
    EXPECT_EQ(gapsize, -1000);
    gapsize = 3;
    EXPECT_EQ(OneReadCross(Block({Spanning(30, "GTA", 7)}), gapsize, {{1, 30}}, 0), "NNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(Log(), "Min num: -1\nMin num: -1\n");
    gapsize = 3;
    EXPECT_EQ(OneReadCross(Block({Spanning(8, "GTA", 8)}), gapsize, {{1, 52}}, 0), "GTA");
}

TEST_F(OneReadCrossTest, EdgePartTwiceInAnotherRead) {
    EXPECT_EQ(Cross("GTA", {Last(kBefore, 10) + Last(kBefore, 10)}), "NNN");
    EXPECT_EQ(gapsize, -1000);
    EXPECT_EQ(NewLog(), "Min num: -1\n" + Checking(4));
    EXPECT_EQ(Cross("GTA", {First(kAfter, 12) + First(kAfter, 12)}), "NNN");
    EXPECT_EQ(gapsize, -1000);
}

TEST_F(OneReadCrossTest, EdgePartsAreEnlargedUntilTheReadHoldsThemOnce) {
    // Before edge ...GGGGGGGG, and the read begins with 8 of ten G: 8 and 9 of them stand more than once, and the tenth
    // that makes the pattern unique is the gap's first base. The after edge begins with 9 C of ten in the read.
    std::vector<Read> reads;
    reads.emplace_back("ACTGATTGGGGGGGG", -15);
    reads.emplace_back("GGGGGGGGGGACCCCCCCCCC", 0);
    reads.emplace_back("CCCCCCCCCTTGATC", 4);
    gapsize = 4;
    EXPECT_EQ(OneReadCross(reads, gapsize, {{1, 7}}, 0), "NNNN") << "no support for GGAC";
    EXPECT_EQ(Log(), "Min num: 1\nChecking patt: GGGGGGGGGG\tCCCCCCCCCC\tread num: 3\n");
    // With the enlarged part of 10 G a read with 10 of them is fine, and one with 11 isn't.
    reads.insert(reads.begin() + 2, {Read("TGGACT", 0), Read("AGGACA", 0), Read("TGGGGGGGGGGT", 0)});
    gapsize = 4;
    EXPECT_EQ(OneReadCross(reads, gapsize, {{1, 7}}, 0), "GGAC") << "taken behind the first 8 bases, not behind 10";
    reads[4].seq = "TGGGGGGGGGGGT";
    gapsize = 4;
    EXPECT_EQ(OneReadCross(reads, gapsize, {{1, 7}}, 0), "NNNN");
}

TEST_F(OneReadCrossTest, AThousandReadsABaseLeaveTheFirstHundredABase) {
    std::vector<std::string> others(997, "ACG");
    others[500] = Last(kBefore, 10) + Last(kBefore, 10);
    EXPECT_EQ(Cross("G", others), "G");
    others.pop_back();
    EXPECT_EQ(Cross("G", others), "N");
}

TEST_F(OneReadCrossTest, AReadTooShortForItsGapEndsTheProcess) {
    gapsize = 30;
    const std::vector<Read> reads = Block({"ACGTACGTACGTACGTACGT"});
    EXPECT_EXIT(OneReadCross(reads, gapsize, {{1, 50}}, 0), ::testing::ExitedWithCode(255),
                "^gapsize: 30\tposition: 50\tover1: 10\tread: ACGTACGTACGTACGTACGT\n$");
}

class TwoReadCrossTest : public SpanningTest {};

TEST_F(TwoReadCrossTest, FirstReadIsTakenAndDifferencesAreTold) {
    const std::vector<Read> reads = Block({"ACG", Spanning(10, "AACGT", 12), Spanning(20, "AGCGC", 12)});
    EXPECT_EQ(TwoReadCross(reads, 5, {{2, 50}, {3, 40}}, 0), "AACGT");
    EXPECT_EQ(Log(),
              "Two reads cross the gap and support same gapsize\n"
              "choise one(used): AACGT\n"
              "choise two(unuse) AGCGC\n"
              "unsame base: 1 A G\n"
              "unsame base: 4 T C\n"
              "the two reads same ratio: 0.6\n");
}

TEST_F(TwoReadCrossTest, FirstReadIsTakenWhenNothingAgrees) {
    const std::vector<Read> reads = Block({Spanning(10, "AAA", 12), Spanning(20, "CGT", 12)});
    EXPECT_EQ(TwoReadCross(reads, 3, {{1, 50}, {2, 40}}, 0), "AAA");
    EXPECT_NE(Log().find("unsame base: 2 A T\nthe two reads same ratio: 0\n"), std::string::npos);
}

TEST_F(TwoReadCrossTest, GapOfZeroIsTheSame) {
    const std::vector<Read> reads = Block({Spanning(10, "", 12), Spanning(20, "", 12)});
    EXPECT_EQ(TwoReadCross(reads, 0, {{1, 50}, {2, 40}}, 0), "");
    EXPECT_EQ(Log(),
              "Two reads cross the gap and support same gapsize\n"
              "choise one(used): \n"
              "choise two(unuse) \n"
              "the two reads same ratio: 1\n");
}

class AssembleSmallBlockTest : public SpanningTest {
  protected:
    const std::string refusal = "Support reads number should not be less than 2 or more than 1000 times of gap size!\n";
};

TEST_F(AssembleSmallBlockTest, ColumnsAreSettledByVote) {
    const std::vector<Read> reads =
        Block({Spanning(10, "ACG", 12), "TTTT", Spanning(20, "ACT", 12), Spanning(30, "CCT", 12)});
    EXPECT_EQ(AssembleSmallBlock(reads, 3, {{1, 50}, {3, 40}, {4, 30}}, 0), "ACT");
    EXPECT_EQ(Snp(),
              "60\t2\t1\t0\t0\tA\t3\t0.666667\n"
              "61\t0\t3\t0\t0\tC\t3\t1\n"
              "62\t0\t0\t1\t2\tT\t3\t0.666667\n");
    EXPECT_EQ(Log(), "");
}

TEST_F(AssembleSmallBlockTest, TwoReadsAreNotPutToTheVote) {
    const std::vector<Read> reads = Block({Spanning(10, "GCG", 12), Spanning(20, "ACT", 12)});
    EXPECT_EQ(AssembleSmallBlock(reads, 3, {{1, 50}, {2, 40}}, 0), "GCG");
    EXPECT_EQ(Snp(), "");
}

TEST_F(AssembleSmallBlockTest, OneReadIsTooFew) {
    EXPECT_EQ(AssembleSmallBlock(Block({Spanning(10, "GCG", 12)}), 3, {{1, 50}}, 0), "NNN");
    EXPECT_EQ(Log(), refusal);
}

TEST_F(AssembleSmallBlockTest, AnyReadIsTooManyForAGapOfZero) {
    const std::vector<Read> reads = Block({Spanning(10, "", 12), Spanning(20, "", 12)});
    EXPECT_EQ(AssembleSmallBlock(reads, 0, {{1, 50}, {2, 40}}, 0), "");
    EXPECT_EQ(Log(), refusal);
}

TEST_F(AssembleSmallBlockTest, AThousandReadsABaseAreTheLimit) {
    const std::vector<Read> reads = Block(std::vector<std::string>(1001, Spanning(10, "G", 12)));
    std::map<int, int> read;
    for (int i = 1; i <= 1000; ++i) read[i] = 50;
    EXPECT_EQ(AssembleSmallBlock(reads, 1, read, 0), "G");
    EXPECT_EQ(Snp(), "60\t0\t0\t1000\t0\tG\t1000\t1\n");
    EXPECT_EQ(Log(), "");
    read[1001] = 50;
    EXPECT_EQ(AssembleSmallBlock(reads, 1, read, 0), "N");
    EXPECT_EQ(Log(), refusal);
}

class MinusCheckTest : public SpanningTest {
  protected:
    /// The last n bases of the before edge, and the first n of the after edge, twice over.
    std::string BeforeTwice(int n) const { return Last(kBefore, n) + "A" + Last(kBefore, n); }
    std::string AfterTwice(int n) const { return First(kAfter, n) + "A" + First(kAfter, n); }
};

TEST_F(MinusCheckTest, AgreeingEdgesAreBelieved) {
    std::vector<Read> reads = Block({BeforeTwice(13), AfterTwice(13)});
    EXPECT_FALSE(MinusCheck(-13, reads));
    reads.back().seq = Last(kBefore, 13) + "ACG";
    EXPECT_TRUE(MinusCheck(-13, reads)) << "although the part stands twice in a read";
}

TEST_F(MinusCheckTest, BothPartsTwiceAreNotBelieved) {
    EXPECT_FALSE(MinusCheck(-9, Block({BeforeTwice(9), AfterTwice(9)})));
    EXPECT_FALSE(MinusCheck(-9, Block({AfterTwice(9), BeforeTwice(9)})));
    EXPECT_FALSE(MinusCheck(-9, Block({BeforeTwice(9) + AfterTwice(9)})));
    EXPECT_TRUE(MinusCheck(-9, Block({BeforeTwice(9), BeforeTwice(9)})));
    EXPECT_TRUE(MinusCheck(-9, Block({AfterTwice(9)})));
    EXPECT_TRUE(MinusCheck(-9, Block({First(kAfter, 9), Last(kBefore, 9), "ACGTACG"})));
}

TEST_F(MinusCheckTest, EdgesAreSearchedToo) {
    std::vector<Read> reads = Block({AfterTwice(9)});
    reads.front().seq = Last(kBefore, 9) + kBefore;
    EXPECT_FALSE(MinusCheck(-9, reads));
}

TEST_F(MinusCheckTest, AShortPatternGrowsByMinAlign) {
    // 12 bases twice over: enough for patterns of 8, too little for one of 13.
    EXPECT_TRUE(MinusCheck(-5, Block({BeforeTwice(12), AfterTwice(12)})));
    EXPECT_FALSE(MinusCheck(-5, Block({BeforeTwice(13), AfterTwice(13)})));
    EXPECT_FALSE(MinusCheck(-8, Block({BeforeTwice(8), AfterTwice(8)})));
    EXPECT_TRUE(MinusCheck(-8, Block({BeforeTwice(7), AfterTwice(7)})));
    EXPECT_FALSE(MinusCheck(-7, Block({BeforeTwice(15), AfterTwice(15)})));
    EXPECT_TRUE(MinusCheck(-7, Block({BeforeTwice(14), AfterTwice(14)})));
}

}  // namespace
}  // namespace lintara
