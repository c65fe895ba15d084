#include "walk/drop.h"

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

class EdgeDrop : public testing::ThreadStreamsTest {};
class SequenceDrop : public testing::ThreadStreamsTest {};
class PosDrop : public testing::ThreadStreamsTest {};
class RatioDrop : public testing::ThreadStreamsTest {};
class LengthDrop : public testing::ThreadStreamsTest {};
class ShortOver : public testing::ThreadStreamsTest {};
class Longer : public testing::ThreadStreamsTest {};
class ShowBreak : public testing::ThreadStreamsTest {};

const std::string& Text() {
    static const std::string text = RandomBases(400, 11);
    return text;
}

/// Reads of 100 bases at 0, 10, 20, ... of one text.
std::vector<Read> Row(int num) {
    std::vector<Read> reads;
    for (int i = 0; i < num; ++i) reads.push_back(Cut(Text(), 10 * i, 100));
    return reads;
}

// ---- reads at the far edge -----------------------------------------------------------------------------------------

TEST_F(EdgeDrop, ForwardTakesReadsAboveTheFloorAtTheAfterEdge) {
    const std::vector<Read> reads = Row(6);
    SmallMatrix matrix(6);
    matrix[2][5] = 31, matrix[3][5] = 30, matrix[4][5] = 90;
    for (int a = 2; a <= 4; ++a) matrix[1][a] = 50;
    std::vector<int> accept = {2, 3, 4};
    bool changenode = true;
    EXPECT_TRUE(DropEdgeRead(1, accept, reads, matrix.rows, 6, changenode));
    EXPECT_EQ(accept, (std::vector<int>{3}));
    EXPECT_TRUE(changenode);
    // Only the before edge loses its cells.
    EXPECT_EQ(matrix[1][2], 50);
    EXPECT_FALSE(DropEdgeRead(1, accept, reads, matrix.rows, 6, changenode = false));
    EXPECT_FALSE(changenode);
}

TEST_F(EdgeDrop, ForwardFromTheBeforeEdgeCutsItsCells) {
    const std::vector<Read> reads = Row(6);
    SmallMatrix matrix(6);
    for (int a = 1; a <= 4; ++a) matrix[0][a] = 50;
    matrix[2][5] = 40;
    matrix[2][3] = 90;  // a perfect partner
    std::vector<int> accept = {1, 2, 3, 4};
    bool changenode = false;
    EXPECT_TRUE(DropEdgeRead(0, accept, reads, matrix.rows, 6, changenode));
    EXPECT_EQ(accept, (std::vector<int>{1, 4}));
    EXPECT_EQ(matrix[0][1], 50);
    EXPECT_EQ(matrix[0][2], 0);
    EXPECT_EQ(matrix[0][3], 0);
    EXPECT_EQ(matrix[0][4], 50);
    EXPECT_EQ(matrix[2][3], 90);
    EXPECT_EQ(matrix[2][5], 40);
}

TEST_F(EdgeDrop, PartnersMustAgreeInEveryBase) {
    std::vector<Read> reads = Row(6);
    SmallMatrix matrix(6);
    matrix[3][5] = 40;
    matrix[2][3] = 90, matrix[3][4] = 90;
    reads[4].seq = WithOtherBase(reads[4].seq, 89);
    std::vector<int> accept = {2, 3, 4};
    bool changenode = false;
    EXPECT_TRUE(DropEdgeRead(1, accept, reads, matrix.rows, 6, changenode));
    EXPECT_EQ(accept, (std::vector<int>{4}));
}

TEST_F(EdgeDrop, OnePerfectPartnerAmongSeveralIsEnough) {
    // Read 2 is linked to both reads at the edge, and differs from the one that is looked at first.
    for (int differing : {3, 4}) {
        std::vector<Read> reads = Row(6);
        SmallMatrix matrix(6);
        matrix[3][5] = matrix[4][5] = 40;
        matrix[2][3] = 90, matrix[2][4] = 80;
        reads[differing].seq = WithOtherBase(reads[differing].seq, 5);
        std::vector<int> accept = {2, 3, 4};
        bool changenode = false;
        EXPECT_TRUE(DropEdgeRead(1, accept, reads, matrix.rows, 6, changenode));
        EXPECT_TRUE(accept.empty()) << differing;
    }
}

TEST_F(EdgeDrop, PartnersTakeNoPartnersAlong) {
    const std::vector<Read> reads = Row(6);
    SmallMatrix matrix(6);
    matrix[4][5] = 40;
    matrix[3][4] = 90, matrix[2][3] = 90;
    std::vector<int> accept = {2, 3, 4};
    bool changenode = false;
    EXPECT_TRUE(DropEdgeRead(1, accept, reads, matrix.rows, 6, changenode));
    EXPECT_EQ(accept, (std::vector<int>{2}));
}

TEST_F(EdgeDrop, RewardTakesReadsAboveTheFloorAtTheBeforeEdge) {
    const std::vector<Read> reads = Row(6);
    SmallMatrix matrix(6);
    matrix[0][1] = 31, matrix[0][2] = 30, matrix[0][4] = 70;
    matrix[3][4] = 90;  // a perfect partner
    for (int a = 1; a <= 4; ++a) matrix[a][5] = 50;
    std::vector<int> accept = {1, 2, 3, 4};
    bool changenode = true;
    EXPECT_TRUE(DropEdgeRead(5, accept, reads, matrix.rows, changenode));
    EXPECT_EQ(accept, (std::vector<int>{2}));
    EXPECT_TRUE(changenode);
    for (int a = 1; a <= 4; ++a) EXPECT_EQ(matrix[a][5], 50);
    EXPECT_EQ(matrix[0][1], 31);
    EXPECT_FALSE(DropEdgeRead(5, accept, reads, matrix.rows, changenode));
}

TEST_F(EdgeDrop, EmptyAcceptStaysUnchanged) {
    const std::vector<Read> reads = Row(2);
    SmallMatrix matrix(2);
    std::vector<int> accept;
    bool changenode = false;
    EXPECT_FALSE(DropEdgeRead(0, accept, reads, matrix.rows, 2, changenode));
    EXPECT_FALSE(DropEdgeRead(1, accept, reads, matrix.rows, changenode));
    EXPECT_FALSE(DropEdgeRead("", 1, accept, reads, matrix.rows, changenode));
    EXPECT_FALSE(DropUnseqRead("", 1, accept, reads, matrix.rows, changenode));
}

TEST_F(SequenceDrop, ReadsThatOverlapTheSequenceGo) {
    // Reads 1 and 2 overlap the sequence in 50 and 40 bases, one of them with an error; read 3 is a partner of read 1.
    std::vector<Read> reads = Row(5);
    reads[1] = Cut(Text(), 150, 100);
    reads[2] = Cut(Text(), 160, 100);
    reads[2].seq = WithOtherBase(reads[2].seq, 3);
    reads[3] = Cut(Text(), 220, 100);
    SmallMatrix matrix(5);
    matrix[1][3] = 30;
    const std::string drop_seq = Text().substr(100, 100);
    std::vector<int> accept = {1, 2, 3};
    bool changenode = true;
    EXPECT_TRUE(DropEdgeRead(drop_seq, 4, accept, reads, matrix.rows, changenode));
    EXPECT_EQ(accept, (std::vector<int>{2}));
    EXPECT_TRUE(changenode);
    EXPECT_FALSE(DropEdgeRead(drop_seq, 4, accept, reads, matrix.rows, changenode));
}

TEST_F(SequenceDrop, EitherOrderIsAnOverlap) {
    std::vector<Read> reads = Row(3);
    reads[1] = Cut(Text(), 50, 100);  // left of the sequence, which gives a negative length
    SmallMatrix matrix(3);
    std::vector<int> accept = {1};
    bool changenode = false;
    EXPECT_TRUE(DropEdgeRead(Text().substr(100, 100), 2, accept, reads, matrix.rows, changenode));
    EXPECT_TRUE(accept.empty());
}

TEST_F(SequenceDrop, UnseqTakesTheOthersWithTheirPartners) {
    std::vector<Read> reads = Row(6);
    reads[1] = Cut(Text(), 110, 100);
    reads[2] = Cut(Text(), 150, 100);
    reads[3] = Cut(Text(), 220, 100);  // no overlap with the sequence
    reads[4] = Cut(Text(), 120, 100);
    SmallMatrix matrix(6);
    matrix[2][3] = 30;
    const std::string drop_seq = Text().substr(100, 100);
    std::vector<int> accept = {1, 2, 3, 4};
    bool changenode = true;
    EXPECT_TRUE(DropUnseqRead(drop_seq, 5, accept, reads, matrix.rows, changenode));
    EXPECT_EQ(accept, (std::vector<int>{1, 4}));
    EXPECT_TRUE(changenode);
    EXPECT_FALSE(DropUnseqRead(drop_seq, 5, accept, reads, matrix.rows, changenode));
}

TEST_F(SequenceDrop, EmptySequenceEndsTheProcess) {
    const std::vector<Read> reads = Row(2);
    SmallMatrix matrix(2);
    std::vector<int> accept = {0};
    bool changenode = false;
    EXPECT_EXIT(DropEdgeRead("", 1, accept, reads, matrix.rows, changenode), ::testing::ExitedWithCode(255), "^$");
}

// ---- estimated positions -------------------------------------------------------------------------------------------

TEST_F(PosDrop, ForwardLimitsAreInclusive) {
    // start at 10, 80 bases, overlap 40: from 10 to 10 + 100 + 80 - 40 = 150.
    std::vector<Read> reads = Unrelated(5, 100);
    reads[0] = Read(RandomBases(80, 1), 10);
    SmallMatrix matrix(5);
    for (int a = 1; a < 5; ++a) matrix[0][a] = 40;
    reads[1].pos = 10, reads[2].pos = 9, reads[3].pos = 150, reads[4].pos = 151;
    std::vector<int> accept = {1, 2, 3, 4};
    EXPECT_TRUE(DropPosRead(0, accept, reads, matrix.rows));
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_FALSE(DropPosRead(0, accept, reads, matrix.rows));
}

TEST_F(PosDrop, RewardLimitsAreInclusive) {
    // end at 10, candidates of 80 bases, overlap 40: from 10 - 100 - 80 + 40 = -130 to 10.
    std::vector<Read> reads = Unrelated(5, 80);
    reads[0] = Read(RandomBases(100, 1), 10);
    SmallMatrix matrix(5);
    for (int a = 1; a < 5; ++a) matrix[a][0] = 40;
    reads[1].pos = 10, reads[2].pos = 11, reads[3].pos = -130, reads[4].pos = -131;
    std::vector<int> accept = {1, 2, 3, 4};
    EXPECT_TRUE(DropPosRead(accept, 0, reads, matrix.rows));
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_FALSE(DropPosRead(accept, 0, reads, matrix.rows));
}

TEST_F(PosDrop, ExtremePositionsDoNotWrap) {
    std::vector<Read> reads = Unrelated(2, 100);
    reads[0].pos = reads[1].pos = 2147483647;
    SmallMatrix matrix(2);
    std::vector<int> accept = {1};
    EXPECT_FALSE(DropPosRead(0, accept, reads, matrix.rows));
    reads[0].pos = reads[1].pos = -2147483647 - 1;
    EXPECT_FALSE(DropPosRead(accept, 0, reads, matrix.rows));
}

// ---- length and overlap --------------------------------------------------------------------------------------------

/// Reads 1 to n of 100 bases with the given overlaps with read 0, in the reward direction.
struct RatioBlock {
    explicit RatioBlock(const std::vector<int>& overlaps)
        : reads(Unrelated(static_cast<int>(overlaps.size()) + 1, 100)),
          matrix(static_cast<int>(overlaps.size()) + 1),
          accept(Numbers(1, static_cast<int>(overlaps.size()))) {
        for (int a : accept) matrix[a][0] = matrix[0][a] = static_cast<std::uint8_t>(overlaps[a - 1]);
    }
    std::vector<Read> reads;
    SmallMatrix matrix;
    std::vector<int> accept;
};

TEST_F(RatioDrop, DropcutZeroStaysAtTheFirstRatio) {
    // 100 > 2.5 * 39 = 97.5, but not 2.5 * 40.
    RatioBlock block({39, 40, 60});
    EXPECT_TRUE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 0));
    EXPECT_EQ(block.accept, (std::vector<int>{2, 3}));
    RatioBlock none({40, 60});
    EXPECT_FALSE(DropRatioRead(none.accept, 0, none.reads, none.matrix.rows, 0));
    EXPECT_EQ(none.accept, (std::vector<int>{1, 2}));
}

TEST_F(RatioDrop, RatioFallsUntilDropcutReadsAreAbove) {
    // 2.5: one above; 2.0: 100 > 2 * 49 gives two; read 3, at exactly 2 * 50, stays.
    RatioBlock block({30, 49, 50, 80});
    EXPECT_TRUE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 2));
    EXPECT_EQ(block.accept, (std::vector<int>{3, 4}));
    // 1.5 gives the third: 1.5 * 50 = 75.
    RatioBlock three({30, 49, 50, 80});
    EXPECT_TRUE(DropRatioRead(three.accept, 0, three.reads, three.matrix.rows, 3));
    EXPECT_EQ(three.accept, (std::vector<int>{4}));
}

TEST_F(RatioDrop, AllAboveRaisesTheRatioOnce) {
    // 2.5: 97.5, both above; 2.7: 39 gives 105.3 and 30 gives 81, so one is left below.
    RatioBlock block({30, 39});
    EXPECT_TRUE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 1));
    EXPECT_EQ(block.accept, (std::vector<int>{2}));
}

TEST_F(RatioDrop, AllFarAboveRaisesTwiceAndStops) {
    // 2.5 and 2.7 have both above; the search ends at 3.1 without a count: 33 gives 102.3 and stays, 32 gives 99.2.
    RatioBlock block({32, 33});
    EXPECT_TRUE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 1));
    EXPECT_EQ(block.accept, (std::vector<int>{2}));
    RatioBlock all({32, 31});
    EXPECT_TRUE(DropRatioRead(all.accept, 0, all.reads, all.matrix.rows, 1));
    EXPECT_TRUE(all.accept.empty());
}

TEST_F(RatioDrop, FallAfterARiseEndsTheSearchAtTheNextRise) {
    // Equal overlaps of 39: all at 2.5, none at 2.7, all at 2.2, where the second rise ends at 2.6: 101.4 keeps them.
    RatioBlock block({39, 39});
    EXPECT_FALSE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 1));
    EXPECT_EQ(block.accept.size(), 2U);
}

TEST_F(RatioDrop, DropcutBeyondTheReadsStillEnds) {
    RatioBlock block({40, 60});
    EXPECT_TRUE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 5));
    EXPECT_TRUE(block.accept.empty());
    EXPECT_FALSE(DropRatioRead(block.accept, 0, block.reads, block.matrix.rows, 5));
}

TEST_F(RatioDrop, ForwardTakesTwiceTheOverlapWhateverDropcutIs) {
    for (int dropcut : {0, 1, 3, 9}) {
        RatioBlock block({30, 49, 50, 80});
        EXPECT_TRUE(DropRatioRead(0, block.accept, block.reads, block.matrix.rows, dropcut));
        EXPECT_EQ(block.accept, (std::vector<int>{3, 4})) << dropcut;
        EXPECT_FALSE(DropRatioRead(0, block.accept, block.reads, block.matrix.rows, dropcut));
    }
}

TEST_F(LengthDrop, LongReadsGoWhenThreeShortOnesAreThere) {
    std::vector<Read> reads = Unrelated(5, 100);
    reads[1].seq = RandomBases(101, 1), reads[3].seq = RandomBases(150, 2);
    SmallMatrix matrix(5);
    std::vector<int> accept = {0, 1, 2, 3, 4};
    EXPECT_TRUE(DropLongRead(accept, reads, matrix.rows));
    EXPECT_EQ(accept, (std::vector<int>{0, 2, 4}));
    EXPECT_FALSE(DropLongRead(accept, reads, matrix.rows));
    EXPECT_EQ(accept.size(), 3U);
}

TEST_F(LengthDrop, TwoShortReadsAreNotEnough) {
    std::vector<Read> reads = Unrelated(3, 100);
    reads[1].seq = RandomBases(101, 1);
    SmallMatrix matrix(3);
    std::vector<int> accept = {0, 1, 2};
    EXPECT_FALSE(DropLongRead(accept, reads, matrix.rows));
    EXPECT_EQ(accept.size(), 3U);
}

TEST_F(LengthDrop, ShortReadsGoWhenThreeLongOnesAreThere) {
    std::vector<Read> reads = Unrelated(5, 101);
    reads[1].seq.resize(100), reads[3].seq.resize(40);
    SmallMatrix matrix(5);
    std::vector<int> accept = {0, 1, 2, 3, 4};
    EXPECT_TRUE(DropShortRead(accept, reads, matrix.rows));
    EXPECT_EQ(accept, (std::vector<int>{0, 2, 4}));
    EXPECT_FALSE(DropShortRead(accept, reads, matrix.rows));
    accept = {0, 1, 2};
    EXPECT_FALSE(DropShortRead(accept, reads, matrix.rows));
    EXPECT_EQ(accept.size(), 3U);
}

TEST_F(ShortOver, AllOfFourAreNeeded) {
    SmallMatrix matrix(5);
    matrix[0][1] = matrix[0][2] = matrix[0][3] = 49, matrix[0][4] = 50;
    std::vector<int> accept = {1, 2, 3, 4};
    EXPECT_FALSE(AcceptShortOverCheck(0, accept, matrix.rows));
    EXPECT_EQ(accept.size(), 4U);
    matrix[0][4] = 49;
    EXPECT_TRUE(AcceptShortOverCheck(0, accept, matrix.rows));
    EXPECT_EQ(accept.size(), 4U);

    SmallMatrix mirror(5);
    mirror[1][0] = mirror[2][0] = mirror[3][0] = 49, mirror[4][0] = 50;
    EXPECT_FALSE(AcceptShortOverCheck(accept, 0, mirror.rows));
    mirror[4][0] = 49;
    EXPECT_TRUE(AcceptShortOverCheck(accept, 0, mirror.rows));
}

TEST_F(ShortOver, FewerThanThreeNeverAre) {
    SmallMatrix matrix(4);
    for (int a = 1; a < 4; ++a) matrix[0][a] = matrix[a][0] = 35;
    EXPECT_FALSE(AcceptShortOverCheck(0, {1, 2}, matrix.rows));
    EXPECT_TRUE(AcceptShortOverCheck(0, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(AcceptShortOverCheck({1, 2}, 0, matrix.rows));
    EXPECT_TRUE(AcceptShortOverCheck({1, 2, 3}, 0, matrix.rows));
    EXPECT_FALSE(AcceptShortOverCheck(0, {}, matrix.rows));
}

// ---- one read ------------------------------------------------------------------------------------------------------

TEST_F(Longer, FirstStrictlyLongerHolderIsFound) {
    const std::vector<Read> reads = {Cut(Text(), 50, 60),  Cut(Text(), 50, 60),  Cut(Text(), 200, 100),
                                     Cut(Text(), 30, 100), Cut(Text(), 20, 120), Cut(Text(), 55, 50)};
    EXPECT_EQ(GetLonger(0, {0, 1, 2, 3, 4, 5}, reads), 3);
    EXPECT_EQ(GetLonger(0, {4, 3}, reads), 4);
    EXPECT_EQ(GetLonger(0, {0, 1, 2, 5}, reads), -1);
    EXPECT_EQ(GetLonger(0, {}, reads), -1);
}

TEST_F(Longer, EmptyReadEndsTheProcess) {
    const std::vector<Read> reads = {Read("", 0), Read("ACGT", 0)};
    EXPECT_EXIT(GetLonger(0, {1}, reads), ::testing::ExitedWithCode(255), "^get long error!\n$");
    EXPECT_EXIT(GetLonger(0, {}, reads), ::testing::ExitedWithCode(255), "^get long error!\n$");
}

TEST_F(Longer, ReadOfTwoBasesEndsTheProcess) {
    const std::vector<Read> reads = {Read("AC", 0), Read("ACGT", 0)};
    EXPECT_EXIT(GetLonger(0, {1}, reads), ::testing::ExitedWithCode(255),
                "^Error! pattern length should not be longer than string length!\t2\t4\n$");
    EXPECT_EQ(GetLonger(0, {0}, reads), -1);
}

TEST_F(ShowBreak, ReadsStandUnderTheLongestOverhang) {
    const std::vector<Read> reads = {Read("TTTT", 0), Read("AATT", 0), Read("CCCT", 0), Read("GGGGTT", 0)};
    SmallMatrix matrix(4);
    matrix[1][0] = 2, matrix[2][0] = 1, matrix[3][0] = 2;
    ::testing::internal::CaptureStderr();
    ShowRewardBreak({1, 2, 3}, reads, matrix.rows, 0, 0);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "show break: \n  AATT\tid: 1\n CCCT\tid: 2\nGGGGTT\tid: 3\n");
    ::testing::internal::CaptureStderr();
    ShowRewardBreak({}, reads, matrix.rows, 0, 0);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "show break: \n");
    EXPECT_EQ(Log(), "");
}

}  // namespace
}  // namespace lintara
