#include "walk/position_check.h"

#include "run/settings.h"
#include "small_block.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Cut;
using testing::Numbers;
using testing::RandomBases;
using testing::SmallMatrix;
using testing::Unrelated;
using testing::WithOtherBase;

class PosCheck : public testing::ThreadStreamsTest {};
class IsBreak : public testing::ThreadStreamsTest {};
class MinForwardPass : public testing::ThreadStreamsTest {};
class MinRewardPass : public testing::ThreadStreamsTest {};
class MaxForwardPass : public testing::ThreadStreamsTest {};
class MaxRewardPass : public testing::ThreadStreamsTest {};
class ExactClean : public testing::ThreadStreamsTest {};

// Blocks of `candidates` reads of 100 bases that all agree. Read 0 is the one that the walk stands on, read 1 the pick;
// the other candidates lie one base each further from the pick. Reads to come are put in place of the last ones.

struct Block {
    explicit Block(int candidates) : matrix(candidates + 1), accept(Numbers(1, candidates)) {}

    /// Puts a read without anything in common with the pick in place of a candidate; its cell with read 0 stays.
    void MakeStranger(int a, int length = 100) {
        reads[a] = Read(RandomBases(length, 77U + a), reads[a].pos);
        matrix[a][1] = matrix[1][a] = 0;
    }
    int Last() const { return accept.back(); }

    std::vector<Read> reads;
    SmallMatrix matrix;
    std::vector<int> accept;
    double ratio = 9;
};

const std::string& Text() {
    static const std::string text = RandomBases(400, 3);
    return text;
}

/// Longest step to the right: read 0 at 100, the pick at 160, the others at 159, 158, ...
struct MinForwardBlock : Block {
    explicit MinForwardBlock(int candidates) : Block(candidates) {
        reads.push_back(Cut(Text(), 100, 100));
        for (int a = 1; a <= candidates; ++a) {
            reads.push_back(Cut(Text(), 161 - a, 100));
            matrix[0][a] = static_cast<std::uint8_t>(39 + a);
            if (a > 1) matrix[a][1] = static_cast<std::uint8_t>(101 - a);
        }
    }
    bool Pass() { return PassMinForward(0, 1, accept, reads, matrix.rows, 0, ratio); }
};

/// Longest step to the left: read 0 at 100, the pick at 40, the others at 41, 42, ...
struct MinRewardBlock : Block {
    explicit MinRewardBlock(int candidates) : Block(candidates) {
        reads.push_back(Cut(Text(), 100, 100));
        for (int a = 1; a <= candidates; ++a) {
            reads.push_back(Cut(Text(), 39 + a, 100));
            matrix[a][0] = static_cast<std::uint8_t>(39 + a);
            if (a > 1) matrix[1][a] = static_cast<std::uint8_t>(101 - a);
        }
    }
    bool Pass() { return PassMinReward(0, 1, accept, reads, matrix.rows, 0, ratio); }
};

/// Shortest step to the right: read 0 at 100, the pick at 110, the others at 111, 112, ...
struct MaxForwardBlock : Block {
    explicit MaxForwardBlock(int candidates) : Block(candidates) {
        reads.push_back(Cut(Text(), 100, 100));
        for (int a = 1; a <= candidates; ++a) {
            reads.push_back(Cut(Text(), 109 + a, 100));
            matrix[0][a] = static_cast<std::uint8_t>(91 - a);
            if (a > 1) matrix[1][a] = static_cast<std::uint8_t>(101 - a);
        }
    }
    bool Pass() { return PassMaxForward(0, 1, accept, reads, matrix.rows, 0, ratio); }
};

/// Shortest step to the left: read 0 at 100, the pick at 90, the others at 89, 88, ...
struct MaxRewardBlock : Block {
    explicit MaxRewardBlock(int candidates) : Block(candidates) {
        reads.push_back(Cut(Text(), 100, 100));
        for (int a = 1; a <= candidates; ++a) {
            reads.push_back(Cut(Text(), 91 - a, 100));
            matrix[a][0] = static_cast<std::uint8_t>(91 - a);
            if (a > 1) matrix[a][1] = static_cast<std::uint8_t>(101 - a);
        }
    }
    bool Pass() { return PassMaxReward(0, 1, accept, reads, matrix.rows, 0, ratio); }
};

// ---- estimated positions -------------------------------------------------------------------------------------------

TEST_F(PosCheck, ForwardLimitsAreExclusive) {
    // The overlap puts the pick at 10 + 80 - 40 = 50; half a read is 50 bases.
    std::vector<Read> reads = Unrelated(2, 100);
    reads[0] = Read(RandomBases(80, 1), 10);
    SmallMatrix matrix(2);
    matrix[0][1] = 40;
    for (const auto& [pos, fits] : {std::pair{0, false}, {1, true}, {50, true}, {99, true}, {100, false}}) {
        reads[1].pos = pos;
        EXPECT_EQ(ForwardPosCheck(0, 1, reads, matrix.rows), fits) << pos;
    }
}

TEST_F(PosCheck, RewardLimitsAreExclusive) {
    // The overlap puts the pick at 10 + 40 - 70 = -20.
    std::vector<Read> reads = Unrelated(2, 100);
    reads[0].pos = 10;
    reads[1].seq = RandomBases(70, 1);
    SmallMatrix matrix(2);
    matrix[1][0] = 40;
    for (const auto& [pos, fits] : {std::pair{-70, false}, {-69, true}, {-20, true}, {29, true}, {30, false}}) {
        reads[1].pos = pos;
        EXPECT_EQ(RewardPosCheck(0, 1, reads, matrix.rows), fits) << pos;
    }
}

TEST_F(PosCheck, HalfAnOddReadLengthIsCut) {
    ReadLen = 101;
    std::vector<Read> reads = Unrelated(2, 100);
    SmallMatrix matrix(2);
    matrix[0][1] = 40;
    reads[1].pos = 110;  // 60 is implied
    EXPECT_FALSE(ForwardPosCheck(0, 1, reads, matrix.rows));
    reads[1].pos = 109;
    EXPECT_TRUE(ForwardPosCheck(0, 1, reads, matrix.rows));
}

TEST_F(PosCheck, ExtremePositionsDoNotWrap) {
    std::vector<Read> reads = Unrelated(2, 100);
    reads[0].pos = reads[1].pos = 2147483647;
    SmallMatrix matrix(2);
    matrix[0][1] = 99;
    EXPECT_TRUE(ForwardPosCheck(0, 1, reads, matrix.rows));
    reads[0].pos = reads[1].pos = -2147483647 - 1;
    matrix[1][0] = 99;
    EXPECT_TRUE(RewardPosCheck(0, 1, reads, matrix.rows));
}

// ---- breaks --------------------------------------------------------------------------------------------------------

TEST_F(IsBreak, AgreeingCandidatesAreNone) {
    MinForwardBlock forward(4);
    EXPECT_FALSE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    MinRewardBlock reward(4);
    EXPECT_FALSE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
}

TEST_F(IsBreak, BadArgumentsAreABreakWithoutALine) {
    MinForwardBlock forward(3);
    EXPECT_TRUE(IsForwardBreak(-1, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_TRUE(IsForwardBreak(0, -1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_TRUE(IsForwardBreak(0, 1, {1}, forward.reads, forward.matrix.rows, 0));
    EXPECT_TRUE(IsForwardBreak(0, 1, {}, forward.reads, forward.matrix.rows, 0));
    MinRewardBlock reward(3);
    EXPECT_TRUE(IsRewardBreak(-1, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
    EXPECT_TRUE(IsRewardBreak(0, -1, reward.accept, reward.reads, reward.matrix.rows, 0));
    EXPECT_TRUE(IsRewardBreak(0, 1, {1}, reward.reads, reward.matrix.rows, 0));
    EXPECT_EQ(Log(), "");
}

TEST_F(IsBreak, LinkShorterThanTheStepIsOne) {
    MinForwardBlock forward(4);
    // Another length, so that the offsets have no say; 39 is shorter than the step's 40 in either direction.
    forward.reads[4].seq.resize(90);
    forward.matrix[4][1] = 39;
    EXPECT_TRUE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.333333\n");
    forward.matrix[1][4] = 40;
    EXPECT_FALSE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));

    MinRewardBlock reward(4);
    reward.reads[4].seq.resize(90);
    reward.matrix[1][4] = 39;
    EXPECT_TRUE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
    reward.matrix[4][1] = 40;
    EXPECT_FALSE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
}

TEST_F(IsBreak, LinkThatTheOffsetsRuleOutIsOne) {
    MinForwardBlock forward(3);
    forward.matrix[3][1] = 97;  // 98 is implied
    EXPECT_TRUE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\n");
    MinRewardBlock reward(3);
    reward.matrix[1][3] = 99;
    EXPECT_TRUE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\n");
}

TEST_F(IsBreak, OneCandidateCanCountTwice) {
    MinForwardBlock forward(2);
    forward.matrix[2][1] = 20;
    EXPECT_TRUE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 2\n");
    MinRewardBlock reward(2);
    reward.matrix[1][2] = 20;
    EXPECT_TRUE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 2\n");
}

TEST_F(IsBreak, OffsetsOnlyBindCandidatesShortOfThePick) {
    MinForwardBlock forward(2);
    forward.matrix[0][2] = 39;  // reaches further than the pick: its link of 99 is not looked at
    EXPECT_FALSE(IsForwardBreak(0, 1, forward.accept, forward.reads, forward.matrix.rows, 0));
    MinRewardBlock reward(2);
    reward.matrix[2][0] = 39;
    EXPECT_FALSE(IsRewardBreak(0, 1, reward.accept, reward.reads, reward.matrix.rows, 0));
}

// ---- longest step, forward -----------------------------------------------------------------------------------------

TEST_F(MinForwardPass, AgreementPassesWithRatioZero) {
    MinForwardBlock block(4);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    EXPECT_EQ(Log(), "un accept num: 0\tratio: 0\n");
}

TEST_F(MinForwardPass, BadArgumentsGiveNoFailureAndRatioOne) {
    MinForwardBlock block(3);
    EXPECT_FALSE(PassMinForward(-1, 1, block.accept, block.reads, block.matrix.rows, 0, block.ratio));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMinForward(0, -1, block.accept, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMinForward(0, 1, {1}, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "");
}

TEST_F(MinForwardPass, PairThatDisagreesStandsWithRatioOne) {
    MinForwardBlock block(2);
    block.MakeStranger(2);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 1\n");
}

TEST_F(MinForwardPass, OneOfFifteenOthersIsLetThrough) {
    MinForwardBlock block(16);
    block.MakeStranger(16);
    EXPECT_FALSE(block.Pass());
    EXPECT_DOUBLE_EQ(block.ratio, 1.0 / 15);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.0666667\nAccept the unsupport!\n");
}

TEST_F(MinForwardPass, OneOfFourteenOthersIsNot) {
    MinForwardBlock block(15);
    block.MakeStranger(15);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.0714286\n");
}

TEST_F(MinForwardPass, RatioOfExactlyATenthFailsWithoutAWord) {
    MinForwardBlock block(11);
    block.MakeStranger(11);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(block.ratio, 0.1);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.1\n");
}

TEST_F(MinForwardPass, ExactTenthOfManyIsNotLetThrough) {
    MinForwardBlock block(21);
    block.MakeStranger(20);
    block.MakeStranger(21);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 2\tratio: 0.1\n");
}

TEST_F(MinForwardPass, SomeDisagreementAsksForADrop) {
    MinForwardBlock block(11);
    block.MakeStranger(10);
    block.MakeStranger(11);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 2\tratio: 0.2\ntry drop read!\n");
}

TEST_F(MinForwardPass, ShareOfExactlyNineTenthsIsStillADrop) {
    MinForwardBlock block(11);
    for (int a = 3; a <= 11; ++a) block.MakeStranger(a);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 9\tratio: 0.9\ntry drop read!\n");
}

TEST_F(MinForwardPass, ThreeThatAllDisagreeAskForAnotherPick) {
    MinForwardBlock block(3);
    block.MakeStranger(2);
    block.MakeStranger(3);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "un accept num: 2\tratio: 1\ntry another node!\n");
}

TEST_F(MinForwardPass, SingleLongReadHasNoWeight) {
    MinForwardBlock block(4);
    block.MakeStranger(4, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.333333\n");
    // A second read beside it, and both count.
    block.MakeStranger(3);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 0.666667\ntry drop read!\n");
}

TEST_F(MinForwardPass, PairRuleComesBeforeTheLongRead) {
    MinForwardBlock block(2);
    block.MakeStranger(2, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
}

TEST_F(MinForwardPass, LinkThatTheOffsetsRuleOutCounts) {
    MinForwardBlock block(3);
    block.matrix[3][1] = 97;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
}

TEST_F(MinForwardPass, SameOffsetWithOtherBasesMismatchesOnlyWithACell) {
    // Read 3 has the offset of the pick, so a link would have to be 100 bases, which no cell between them is.
    MinForwardBlock block(3);
    block.reads[3].seq = WithOtherBase(block.reads[1].seq, 60);
    block.matrix[0][3] = 40;
    block.matrix[3][1] = 50;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
    // The cell of the other direction is a link, and no mismatch.
    block.matrix[3][1] = 0, block.matrix[1][3] = 50;
    EXPECT_FALSE(block.Pass());
    // Without a cell the witnesses decide. Read 2 overlaps read 3 by 100 here and is one: it doesn't hold the stretch.
    block.matrix[1][3] = 0, block.matrix[3][2] = 100;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\nun accept num: 0\tratio: 0\n");
}

TEST_F(MinForwardPass, EqualReadsWithoutALinkAgree) {
    MinForwardBlock block(3);
    block.reads[3].seq = block.reads[1].seq;
    block.matrix[3][1] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
}

TEST_F(MinForwardPass, LinkThatTheMatrixMissedCounts) {
    // Shorter than the pick and left of it; longer, and holding it.
    MinForwardBlock block(3);
    block.reads[2] = Cut(Text(), 130, 80);
    block.reads[3] = Cut(Text(), 120, 150);
    block.matrix[2][1] = block.matrix[3][1] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    // Not exact any more, one after the other.
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 70);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 100);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 1\ntry another node!\n");
}

TEST_F(MinForwardPass, FurtherReadWithoutALinkIsUnaccepted) {
    MinForwardBlock block(3);
    block.MakeStranger(3);
    block.matrix[0][3] = 39;
    block.matrix[3][2] = 99;  // would be a witness in its favour
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
}

TEST_F(MinForwardPass, WitnessesDecideOnAReadWithoutALink) {
    // Read 3 overlaps read 0 by 42, two more than the pick, so its bases from 2 on, 98, are the stretch.
    MinForwardBlock block(3);
    block.MakeStranger(3);
    // No witness: 97 is one short.
    block.matrix[3][2] = 97;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
    // Read 2 is a witness and doesn't hold the stretch: read 3 stands alone.
    block.matrix[3][2] = 98;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    // Read 2 holds it. Its own link with the pick is untouched.
    block.reads[2].seq = block.reads[3].seq.substr(2) + "AC";
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
}

TEST_F(MinForwardPass, WitnessOnTheOtherSideNeedsTheWholeLength) {
    // 42 for the overlap with read 0 and 98 for the stretch.
    MinForwardBlock block(3);
    block.MakeStranger(3);
    block.matrix[2][3] = 139;
    EXPECT_TRUE(block.Pass());
    block.matrix[2][3] = 140;
    EXPECT_FALSE(block.Pass());
}

TEST_F(MinForwardPass, EdgeOverlapBeyondTheReadLeavesNoStretch) {
    // The before edge can go on past a read that lies inside it: 150 for a read of 100 bases.
    MinForwardBlock block(3);
    block.MakeStranger(3);
    block.matrix[0][3] = 150;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\ntry drop read!\n");
}

TEST_F(MinForwardPass, StretchBelowThreeBasesEndsTheProcess) {
    MinForwardBlock block(3);
    block.MakeStranger(3);
    block.matrix[0][3] = 138;
    block.matrix[3][2] = 98;
    EXPECT_EXIT(block.Pass(), ::testing::ExitedWithCode(255),
                "Error! pattern length should not be longer than string length!\t2\t100\n");
}

// ---- longest step, reward ------------------------------------------------------------------------------------------

TEST_F(MinRewardPass, AgreementPassesWithRatioZero) {
    MinRewardBlock block(4);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    MinRewardBlock pair(2);
    EXPECT_FALSE(pair.Pass());
    EXPECT_EQ(pair.ratio, 0.0);
}

TEST_F(MinRewardPass, BadArgumentsGiveNoFailureAndRatioOne) {
    MinRewardBlock block(3);
    EXPECT_FALSE(PassMinReward(-1, 1, block.accept, block.reads, block.matrix.rows, 0, block.ratio));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMinReward(0, -1, block.accept, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMinReward(0, 1, {1}, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "");
}

TEST_F(MinRewardPass, PairThatDisagreesStandsWithRatioOne) {
    MinRewardBlock block(2);
    block.MakeStranger(2);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 1\n");
    // Neither does a long one count for nothing in a pair.
    block.MakeStranger(2, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
}

TEST_F(MinRewardPass, NoShareIsSmallEnoughToBeLetThrough) {
    MinRewardBlock block(16);
    block.MakeStranger(16);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.0666667\ndrop read!\n");
}

TEST_F(MinRewardPass, ShareAboveNineTenthsAsksForAnotherPick) {
    MinRewardBlock block(11);
    for (int a = 3; a <= 11; ++a) block.MakeStranger(a);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 9\tratio: 0.9\ndrop read!\n");
    block.MakeStranger(2);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 10\tratio: 1\ntry another node!\n");
}

TEST_F(MinRewardPass, SingleLongReadHasNoWeightAmongThree) {
    MinRewardBlock block(3);
    block.MakeStranger(3, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
}

TEST_F(MinRewardPass, LinkThatTheOffsetsRuleOutCounts) {
    MinRewardBlock block(3);
    block.matrix[1][3] = 97;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ndrop read!\n");
    // The cell of the other direction is a link without a claim.
    block.matrix[1][3] = 0, block.matrix[3][1] = 97;
    EXPECT_FALSE(block.Pass());
}

TEST_F(MinRewardPass, SameOffsetWithOtherBasesIsLeftToTheWitnesses) {
    MinRewardBlock block(3);
    block.reads[3].seq = WithOtherBase(block.reads[1].seq, 60);
    block.matrix[3][0] = 40;
    block.matrix[1][3] = 0;
    EXPECT_TRUE(block.Pass());  // no witness
    block.matrix[2][3] = 100;   // read 2 doesn't hold read 3
    EXPECT_FALSE(block.Pass());
    block.matrix[1][3] = 50;
    EXPECT_TRUE(block.Pass());  // 100 is what the same offset implies
}

TEST_F(MinRewardPass, LinkThatTheMatrixMissedCounts) {
    // Shorter than the pick and right of it; longer, and reaching from inside the pick past its end.
    MinRewardBlock block(3);
    block.reads[2] = Cut(Text(), 90, 80);
    block.reads[3] = Cut(Text(), 60, 150);
    block.matrix[1][2] = block.matrix[1][3] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 40);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.5\ndrop read!\n");
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 70);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 1\ntry another node!\n");
}

TEST_F(MinRewardPass, EqualReadsWithoutALinkAgree) {
    MinRewardBlock block(3);
    block.reads[3].seq = block.reads[1].seq;
    block.matrix[1][3] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
}

TEST_F(MinRewardPass, FurtherReadWithoutALinkIsUnaccepted) {
    MinRewardBlock block(3);
    block.MakeStranger(3);
    block.matrix[3][0] = 39;
    block.matrix[2][3] = 99;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\ndrop read!\n");
}

TEST_F(MinRewardPass, WitnessesDecideOnAReadWithoutALink) {
    // Read 3 overlaps read 0 by 42, two more than the pick, so its first 98 bases are the stretch.
    MinRewardBlock block(3);
    block.MakeStranger(3);
    block.matrix[2][3] = 97;
    EXPECT_TRUE(block.Pass());
    block.matrix[2][3] = 98;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    block.reads[2].seq = "AC" + block.reads[3].seq.substr(0, 98);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(block.ratio, 0.5);
    block.matrix[2][3] = 0, block.matrix[3][2] = 140;
    EXPECT_TRUE(block.Pass());
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 50);
    EXPECT_FALSE(block.Pass());
    block.matrix[3][2] = 139;
    EXPECT_TRUE(block.Pass());
}

TEST_F(MinRewardPass, OverlapBeyondTheReadLeavesNoStretch) {
    MinRewardBlock block(3);
    block.MakeStranger(3);
    block.matrix[3][0] = 150;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\ndrop read!\n");
}

// ---- shortest step -------------------------------------------------------------------------------------------------

TEST_F(MaxForwardPass, AgreementPasses) {
    MaxForwardBlock block(4);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    MaxForwardBlock pair(2);
    EXPECT_FALSE(pair.Pass());
    EXPECT_EQ(pair.ratio, 0.0);
    EXPECT_EQ(Log(), "un accept num: 0\tratio: 0\nun accept num: 0\tratio: 0\n");
}

TEST_F(MaxForwardPass, BadArgumentsGiveNoFailureAndNoLine) {
    MaxForwardBlock block(3);
    EXPECT_FALSE(PassMaxForward(-1, 1, block.accept, block.reads, block.matrix.rows, 0, block.ratio));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMaxForward(0, -1, block.accept, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMaxForward(0, 1, {1}, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "");
}

TEST_F(MaxForwardPass, PairThatDisagreesStandsWithRatioOne) {
    MaxForwardBlock block(2);
    block.MakeStranger(2);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 1\n");
}

TEST_F(MaxForwardPass, OneDifferingBaseInEitherOrderIsUnaccepted) {
    MaxForwardBlock block(4);
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 97);  // the last base inside the pick
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 1\tratio: 0.333333\n");
    block.reads[3] = Cut(Text(), 112, 100);
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 98);  // the first one beyond it
    EXPECT_FALSE(block.Pass());
    // Left of the pick.
    block.reads[4] = Cut(Text(), 108, 100);
    block.matrix[1][4] = 0, block.matrix[4][1] = 98;
    EXPECT_FALSE(block.Pass());
    block.reads[4].seq = WithOtherBase(block.reads[4].seq, 2);
    EXPECT_TRUE(block.Pass());
}

TEST_F(MaxForwardPass, SingleLongReadHasNoWeightAmongThree) {
    MaxForwardBlock block(3);
    block.MakeStranger(3, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    MaxForwardBlock pair(2);
    pair.MakeStranger(2, 101);
    EXPECT_FALSE(pair.Pass());
    EXPECT_EQ(pair.ratio, 1.0);
}

TEST_F(MaxForwardPass, LinkThatTheMatrixMissedCounts) {
    // Shorter and right of the pick; longer, and holding it.
    MaxForwardBlock block(3);
    block.reads[2] = Cut(Text(), 150, 80);
    block.reads[3] = Cut(Text(), 100, 150);
    block.matrix[1][2] = block.matrix[1][3] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    // A longer read whose overlap has the pick on its right is not looked for.
    block.reads[3] = Cut(Text(), 20, 150);
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 20);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 1\n");
}

TEST_F(MaxForwardPass, EqualReadWithoutALinkIsStillUnaccepted) {
    MaxForwardBlock block(3);
    block.reads[3].seq = block.reads[1].seq;
    block.matrix[1][3] = 0;
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(block.ratio, 0.5);
}

TEST_F(MaxRewardPass, AgreementPasses) {
    MaxRewardBlock block(4);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
    EXPECT_EQ(Log(), "un accept num: 0\tratio: 0\n");
}

TEST_F(MaxRewardPass, BadArgumentsLogAnError) {
    MaxRewardBlock block(3);
    EXPECT_FALSE(PassMaxReward(-1, 1, block.accept, block.reads, block.matrix.rows, 0, block.ratio));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMaxReward(0, -1, block.accept, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_FALSE(PassMaxReward(0, 1, {1}, block.reads, block.matrix.rows, 0, block.ratio = 9));
    EXPECT_EQ(block.ratio, 1.0);
    EXPECT_EQ(Log(), "Error\nError\nError\n");
}

TEST_F(MaxRewardPass, PairThatDisagreesStandsWithRatioOne) {
    MaxRewardBlock block(2);
    block.MakeStranger(2);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0);
}

TEST_F(MaxRewardPass, OneDifferingBaseInEitherOrderIsUnaccepted) {
    MaxRewardBlock block(4);
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 2);  // the first base inside the pick
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(block.ratio, 1.0 / 3);
    block.reads[3] = Cut(Text(), 88, 100);
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 1);
    EXPECT_FALSE(block.Pass());
    block.reads[4] = Cut(Text(), 92, 100);
    block.matrix[4][1] = 0, block.matrix[1][4] = 98;
    EXPECT_FALSE(block.Pass());
    block.reads[4].seq = WithOtherBase(block.reads[4].seq, 97);
    EXPECT_TRUE(block.Pass());
}

TEST_F(MaxRewardPass, SingleLongReadHasNoWeightAmongThree) {
    MaxRewardBlock block(3);
    block.MakeStranger(3, 101);
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
}

TEST_F(MaxRewardPass, LinkThatTheMatrixMissedCounts) {
    // Shorter and left of the pick; longer, and holding it.
    MaxRewardBlock block(3);
    block.reads[2] = Cut(Text(), 60, 80);
    block.reads[3] = Cut(Text(), 50, 150);
    block.matrix[2][1] = block.matrix[3][1] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 0\tratio: 0\n");
    // A longer read whose overlap has the pick on its left is not looked for.
    block.reads[3] = Cut(Text(), 150, 150);
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 70);
    EXPECT_TRUE(block.Pass());
    EXPECT_EQ(NewLog(), "un accept num: 2\tratio: 1\n");
}

TEST_F(MaxRewardPass, EqualReadWithoutALinkIsAccepted) {
    MaxRewardBlock block(3);
    block.reads[3].seq = block.reads[1].seq;
    block.matrix[3][1] = 0;
    EXPECT_FALSE(block.Pass());
    EXPECT_EQ(block.ratio, 0.0);
}

// ---- exact overlaps ------------------------------------------------------------------------------------------------

TEST_F(ExactClean, ForwardRemovesWhatDiffersInsideTheOverlap) {
    MinForwardBlock block(4);
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 40);  // the last base of its overlap of 41
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 42);  // just beyond 42
    EXPECT_FALSE(ForwardCleanAccept(0, block.accept, block.reads, block.matrix.rows));
    EXPECT_EQ(block.accept, (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(Log(), "");
}

TEST_F(ExactClean, RewardRemovesWhatDiffersInsideTheOverlap) {
    MinRewardBlock block(4);
    block.reads[2].seq = WithOtherBase(block.reads[2].seq, 59);
    block.reads[3].seq = WithOtherBase(block.reads[3].seq, 57);
    EXPECT_FALSE(RewardCleanAccept(0, block.accept, block.reads, block.matrix.rows));
    EXPECT_EQ(block.accept, (std::vector<int>{1, 3, 4}));
}

TEST_F(ExactClean, TrueWhenAllOfSeveralWent) {
    MinForwardBlock forward(2);
    for (int a : forward.accept) forward.reads[a].seq = WithOtherBase(forward.reads[a].seq, 0);
    EXPECT_TRUE(ForwardCleanAccept(0, forward.accept, forward.reads, forward.matrix.rows));
    EXPECT_TRUE(forward.accept.empty());
    EXPECT_FALSE(ForwardCleanAccept(0, forward.accept, forward.reads, forward.matrix.rows));
    MinRewardBlock reward(2);
    for (int a : reward.accept) reward.reads[a].seq = WithOtherBase(reward.reads[a].seq, 99);
    EXPECT_TRUE(RewardCleanAccept(0, reward.accept, reward.reads, reward.matrix.rows));
    EXPECT_TRUE(reward.accept.empty());
}

TEST_F(ExactClean, FalseWhenTheOnlyOneWent) {
    MinForwardBlock forward(1);
    forward.reads[1].seq = WithOtherBase(forward.reads[1].seq, 0);
    EXPECT_FALSE(ForwardCleanAccept(0, forward.accept, forward.reads, forward.matrix.rows));
    EXPECT_TRUE(forward.accept.empty());
    MinRewardBlock reward(1);
    reward.reads[1].seq = WithOtherBase(reward.reads[1].seq, 99);
    EXPECT_FALSE(RewardCleanAccept(0, reward.accept, reward.reads, reward.matrix.rows));
    EXPECT_TRUE(reward.accept.empty());
}

TEST_F(ExactClean, ReadInsideTheEdgeDiffers) {
    // 150 bases of the edge against the 100 that the read has.
    const std::vector<Read> reads = {Cut(Text(), 0, 200), Cut(Text(), 50, 100), Cut(Text(), 120, 100)};
    SmallMatrix matrix(3);
    matrix[0][1] = 150, matrix[0][2] = 80;
    std::vector<int> accept = {1, 2};
    EXPECT_FALSE(ForwardCleanAccept(0, accept, reads, matrix.rows));
    EXPECT_EQ(accept, (std::vector<int>{2}));
}

TEST_F(ExactClean, RatioCheckIsStrictlyBelowHalf) {
    std::vector<Read> reads = Unrelated(2, 101);
    SmallMatrix matrix(2);
    matrix[1][0] = 50;
    EXPECT_TRUE(RatioCheck(0, 1, reads, matrix.rows));
    matrix[1][0] = 51;
    EXPECT_FALSE(RatioCheck(0, 1, reads, matrix.rows));
    reads[1].seq.resize(100);
    matrix[1][0] = 50;
    EXPECT_FALSE(RatioCheck(0, 1, reads, matrix.rows));
}

}  // namespace
}  // namespace lintara
