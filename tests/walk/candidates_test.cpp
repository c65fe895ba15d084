#include "walk/candidates.h"

#include <random>

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

class Candidates : public testing::ThreadStreamsTest {};
class MinStep : public Candidates {};
class MaxStep : public Candidates {};
class CheckMin : public Candidates {};
class CheckMax : public Candidates {};
class CreatLast : public Candidates {};
class CreatFirst : public Candidates {};
class CleanAccept : public Candidates {};
class FullMatchClean : public Candidates {};
class PosClean : public Candidates {};

// ---- picks ---------------------------------------------------------------------------------------------------------

TEST_F(MinStep, SmallestOverlapAboveTheFloorIsPicked) {
    SmallMatrix matrix(5);
    matrix[0][1] = 80, matrix[0][2] = 31, matrix[0][3] = 30, matrix[0][4] = 32;
    EXPECT_EQ(min_forward(0, {1, 2, 3, 4}, matrix.rows), 2);
    EXPECT_EQ(min_reward(0, {1, 2, 3, 4}, matrix.rows), -1);
    SmallMatrix mirror(5);
    mirror[1][4] = 80, mirror[2][4] = 31, mirror[3][4] = 30, mirror[0][4] = 32;
    EXPECT_EQ(min_reward(4, {0, 1, 2, 3}, mirror.rows), 2);
    EXPECT_EQ(min_forward(4, {0, 1, 2, 3}, mirror.rows), -1);
}

TEST_F(MinStep, TieStaysWithTheEarlierCandidate) {
    SmallMatrix matrix(4);
    matrix[0][1] = 50, matrix[0][2] = 40, matrix[0][3] = 40;
    EXPECT_EQ(min_forward(0, {1, 2, 3}, matrix.rows), 2);
    EXPECT_EQ(min_forward(0, {3, 2, 1}, matrix.rows), 3);
    SmallMatrix mirror(4);
    mirror[1][0] = 50, mirror[2][0] = 40, mirror[3][0] = 40;
    EXPECT_EQ(min_reward(0, {1, 2, 3}, mirror.rows), 2);
    EXPECT_EQ(min_reward(0, {3, 2, 1}, mirror.rows), 3);
}

TEST_F(MinStep, OverlapsOfExactlyTheFloorAreNeverPicked) {
    SmallMatrix matrix(3);
    matrix[0][1] = 30, matrix[0][2] = 30;
    EXPECT_EQ(min_forward(0, {1, 2}, matrix.rows), -1);
    Min_overlap = 29;
    EXPECT_EQ(min_forward(0, {1, 2}, matrix.rows), 1);
}

TEST_F(MinStep, EmptyAcceptGivesNoRead) {
    SmallMatrix matrix(1);
    EXPECT_EQ(min_forward(0, {}, matrix.rows), -1);
    EXPECT_EQ(min_reward(0, {}, matrix.rows), -1);
    EXPECT_EQ(max_forward(0, {}, matrix.rows), -1);
    EXPECT_EQ(max_reward(0, {}, matrix.rows), -1);
}

TEST_F(MinStep, LimitIsInclusive) {
    const std::vector<Read> reads = {Read(RandomBases(90, 1), 0), Read(RandomBases(101, 2), 0),
                                     Read(RandomBases(100, 3), 0), Read(RandomBases(99, 4), 0)};
    SmallMatrix matrix(4);
    matrix[0][1] = 35, matrix[0][2] = 36, matrix[0][3] = 37;
    EXPECT_EQ(min_forward(0, {1, 2, 3}, matrix.rows, reads, 100), 2);
    EXPECT_EQ(min_forward(0, {1, 2, 3}, matrix.rows, reads, 101), 1);
    EXPECT_EQ(min_forward(0, {1, 2, 3}, matrix.rows, reads, 98), -1);
    SmallMatrix mirror(4);
    mirror[1][0] = 35, mirror[2][0] = 36, mirror[3][0] = 37;
    EXPECT_EQ(min_reward(0, {1, 2, 3}, mirror.rows, reads, 100), 2);
    EXPECT_EQ(min_reward(0, {1, 2, 3}, mirror.rows, reads, 101), 1);
    EXPECT_EQ(min_reward(0, {1, 2, 3}, mirror.rows, reads, 98), -1);
}

TEST_F(MaxStep, LargestOverlapIsPickedWithoutAFloor) {
    SmallMatrix matrix(4);
    matrix[0][1] = 3, matrix[0][2] = 10, matrix[0][3] = 10;
    EXPECT_EQ(max_forward(0, {1, 2, 3}, matrix.rows), 2);
    EXPECT_EQ(max_forward(0, {1}, matrix.rows), 1);
    EXPECT_EQ(max_reward(0, {1, 2, 3}, matrix.rows), -1);
    SmallMatrix mirror(4);
    mirror[1][0] = 3, mirror[2][0] = 10, mirror[3][0] = 10;
    EXPECT_EQ(max_reward(0, {1, 2, 3}, mirror.rows), 2);
    EXPECT_EQ(max_forward(0, {1, 2, 3}, mirror.rows), -1);
}

// ---- agreement around a pick ---------------------------------------------------------------------------------------

TEST_F(CheckMin, NegativeReadsAndASingleCandidateFail) {
    SmallMatrix matrix(4);
    matrix[0][1] = 40, matrix[2][1] = 50, matrix[3][1] = 50;
    EXPECT_TRUE(check_min_forward(0, 1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_min_forward(-1, 1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_min_forward(0, -1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_min_forward(0, 1, {1}, matrix.rows));
    EXPECT_FALSE(check_min_forward(0, 1, {}, matrix.rows));
    EXPECT_FALSE(check_min_reward(-1, 1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_min_reward(0, -1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_min_reward(0, 1, {1}, matrix.rows));
}

TEST_F(CheckMin, TwoOfTwoOthersAgree) {
    SmallMatrix matrix(4);
    matrix[0][1] = 40, matrix[2][1] = 40, matrix[3][1] = 39;
    // Read 3 overlaps the pick by less than the step does.
    EXPECT_FALSE(check_min_forward(0, 1, {1, 2, 3}, matrix.rows));
    matrix[3][1] = 40;
    EXPECT_TRUE(check_min_forward(0, 1, {1, 2, 3}, matrix.rows));
    // One of one other is no case of its own.
    EXPECT_FALSE(check_min_forward(0, 1, {1, 2}, matrix.rows));
}

TEST_F(CheckMin, AllButOneOfThreeOthersIsEnough) {
    SmallMatrix matrix(5);
    matrix[0][1] = 40, matrix[2][1] = 40, matrix[3][1] = 40;
    EXPECT_TRUE(check_min_forward(0, 1, {1, 2, 3, 4}, matrix.rows));
    matrix[3][1] = 0;
    EXPECT_FALSE(check_min_forward(0, 1, {1, 2, 3, 4}, matrix.rows));
    SmallMatrix mirror(5);
    mirror[1][0] = 40, mirror[1][2] = 40, mirror[1][3] = 40;
    EXPECT_TRUE(check_min_reward(0, 1, {1, 2, 3, 4}, mirror.rows));
    mirror[1][3] = 39;
    EXPECT_FALSE(check_min_reward(0, 1, {1, 2, 3, 4}, mirror.rows));
}

TEST_F(CheckMin, ShareNeedsSevenThatAgree) {
    // 10 others: 6 are a share of 0.6 but fewer than 7; 7 are enough.
    SmallMatrix matrix(12);
    matrix[0][1] = 40;
    for (int a = 2; a < 8; ++a) matrix[a][1] = 40;
    EXPECT_FALSE(check_min_forward(0, 1, Numbers(1, 11), matrix.rows));
    matrix[8][1] = 40;
    EXPECT_TRUE(check_min_forward(0, 1, Numbers(1, 11), matrix.rows));
    ECUTOFF = 0.71;
    EXPECT_FALSE(check_min_forward(0, 1, Numbers(1, 11), matrix.rows));
    ECUTOFF = 0.7;
    EXPECT_TRUE(check_min_forward(0, 1, Numbers(1, 11), matrix.rows));
}

TEST_F(CheckMax, NoReadFails) {
    SmallMatrix matrix(4);
    EXPECT_FALSE(check_max_forward(-1, 1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_max_forward(0, -1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_max_reward(-1, 1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_max_reward(0, -1, {1, 2, 3}, matrix.rows));
    EXPECT_FALSE(check_max_forward(0, 1, {}, matrix.rows));
}

TEST_F(CheckMax, PickCountsAmongAllCandidates) {
    // Three candidates: both others must agree, since the pick itself is the one that may be missing.
    SmallMatrix matrix(4);
    matrix[0][1] = 60, matrix[0][2] = 50, matrix[0][3] = 40;
    matrix[1][2] = 50, matrix[1][3] = 39;
    EXPECT_FALSE(check_max_forward(0, 1, {1, 2, 3}, matrix.rows));
    matrix[1][3] = 40;
    EXPECT_TRUE(check_max_forward(0, 1, {1, 2, 3}, matrix.rows));
    // Of two candidates only one other can agree, which is never enough.
    EXPECT_FALSE(check_max_forward(0, 1, {1, 2}, matrix.rows));

    SmallMatrix mirror(4);
    mirror[1][0] = 60, mirror[2][0] = 50, mirror[3][0] = 40;
    mirror[2][1] = 50, mirror[3][1] = 39;
    EXPECT_FALSE(check_max_reward(0, 1, {1, 2, 3}, mirror.rows));
    mirror[3][1] = 40;
    EXPECT_TRUE(check_max_reward(0, 1, {1, 2, 3}, mirror.rows));
    EXPECT_FALSE(check_max_reward(0, 1, {1, 2}, mirror.rows));
}

TEST_F(CheckMax, TwoOfTwoHoldsForAPickOutsideTheSet) {
    SmallMatrix matrix(4);
    matrix[1][2] = 50, matrix[1][3] = 50;
    EXPECT_TRUE(check_max_forward(0, 1, {2, 3}, matrix.rows));
}

// ---- picks by the place of the walk --------------------------------------------------------------------------------

TEST_F(CreatLast, OnlyCandidateIsTakenAsItIs) {
    SmallMatrix matrix(3);
    const std::vector<Read> reads = Unrelated(3, 100);
    int last = 7;
    EXPECT_FALSE(creat_last(1, {2}, reads, matrix.rows, last));
    EXPECT_EQ(last, 2);
    EXPECT_FALSE(creat_max_last(1, {2}, matrix.rows, last = 7));
    EXPECT_EQ(last, 2);
    EXPECT_FALSE(creat_first(1, {0}, reads, matrix.rows, last));
    EXPECT_EQ(last, 0);
    EXPECT_FALSE(creat_max_first(1, {2}, reads, matrix.rows, last));
    EXPECT_EQ(last, 2);
}

TEST_F(CreatLast, NoCandidateGivesNoRead) {
    SmallMatrix matrix(3);
    const std::vector<Read> reads = Unrelated(3, 100);
    int last = 7;
    EXPECT_FALSE(creat_last(1, {}, reads, matrix.rows, last));
    EXPECT_EQ(last, -1);
    EXPECT_FALSE(creat_first(1, {}, reads, matrix.rows, last = 7));
    EXPECT_EQ(last, -1);
    EXPECT_FALSE(creat_max_last(1, {}, matrix.rows, last = 7));
    EXPECT_EQ(last, -1);
    EXPECT_FALSE(creat_max_first(1, {}, reads, matrix.rows, last = 7));
    EXPECT_EQ(last, -1);
}

TEST_F(CreatLast, CandidatesOfExactlyTheFloorGiveNoRead) {
    SmallMatrix matrix(4);
    const std::vector<Read> reads = Unrelated(4, 100);
    for (int a : {2, 3}) matrix[1][a] = matrix[0][a] = 30;
    int last = 7;
    EXPECT_FALSE(creat_last(1, {2, 3}, reads, matrix.rows, last));
    EXPECT_EQ(last, -1);
    EXPECT_FALSE(creat_last(0, {2, 3}, reads, matrix.rows, last = 7));
    EXPECT_EQ(last, -1);
    EXPECT_TRUE(creat_max_last(1, {2, 3}, matrix.rows, last));
    EXPECT_EQ(last, 2);
}

TEST_F(CreatLast, ShortReadsComeFirstAwayFromTheEdge) {
    ReadLen = 150;  // has no say in the limit of 100 bases
    std::vector<Read> reads = Unrelated(4, 100);
    reads[2].seq = RandomBases(101, 9);
    SmallMatrix matrix(4);
    matrix[1][2] = 35, matrix[1][3] = 60;
    matrix[0][2] = 35, matrix[0][3] = 60;
    int last = -1;
    EXPECT_TRUE(creat_last(1, {2, 3}, reads, matrix.rows, last));
    EXPECT_EQ(last, 3);
    EXPECT_TRUE(creat_last(0, {2, 3}, reads, matrix.rows, last));
    EXPECT_EQ(last, 2);
}

TEST_F(CreatLast, LongReadsServeWhenThereAreNoOthers) {
    const std::vector<Read> reads = Unrelated(4, 101);
    SmallMatrix matrix(4);
    matrix[1][2] = 60, matrix[1][3] = 35;
    int last = -1;
    EXPECT_TRUE(creat_last(1, {2, 3}, reads, matrix.rows, last));
    EXPECT_EQ(last, 3);
}

TEST_F(CreatFirst, ShortReadsComeFirstAwayFromTheAfterEdge) {
    std::vector<Read> reads = Unrelated(4, 100);
    reads[1].seq = RandomBases(101, 9);
    SmallMatrix matrix(4);
    matrix[1][2] = 35, matrix[0][2] = 60;
    matrix[1][3] = 35, matrix[0][3] = 60;
    int first = -1;
    EXPECT_TRUE(creat_first(2, {0, 1}, reads, matrix.rows, first));
    EXPECT_EQ(first, 0);
    EXPECT_TRUE(creat_first(3, {0, 1}, reads, matrix.rows, first));
    EXPECT_EQ(first, 1);
}

TEST_F(CreatFirst, ReadZeroIsNoEdgeOfARewardWalk) {
    std::vector<Read> reads = Unrelated(4, 100);
    reads[1].seq = RandomBases(101, 9);
    SmallMatrix matrix(4);
    matrix[1][0] = 35, matrix[2][0] = 60;
    int first = -1;
    EXPECT_TRUE(creat_first(0, {1, 2}, reads, matrix.rows, first));
    EXPECT_EQ(first, 2);
}

TEST_F(CreatFirst, MaxFormTakesTheLargestOverlapOrNothing) {
    const std::vector<Read> reads = Unrelated(4, 120);
    SmallMatrix matrix(4);
    matrix[0][3] = 5, matrix[1][3] = 9, matrix[2][3] = 9;
    int first = -1;
    EXPECT_TRUE(creat_max_first(3, {0, 1, 2}, reads, matrix.rows, first));
    EXPECT_EQ(first, 1);
    EXPECT_FALSE(creat_max_first(2, {0, 1}, reads, matrix.rows, first));
    EXPECT_EQ(first, -1);
    EXPECT_FALSE(creat_max_last(3, {0, 1}, matrix.rows, first = 7));
    EXPECT_EQ(first, -1);
}

// ---- the vectors ---------------------------------------------------------------------------------------------------

TEST_F(Candidates, DropRemovesTheFirstEqualEntryOnly) {
    std::vector<int> accept = {4, 2, 4};
    drop(4, accept);
    EXPECT_EQ(accept, (std::vector<int>{2, 4}));
    drop(7, accept);
    EXPECT_EQ(accept, (std::vector<int>{2, 4}));
}

TEST_F(Candidates, FindAndVecfindLookForAReadNumber) {
    EXPECT_TRUE(Find(2, {1, 2}));
    EXPECT_FALSE(Find(3, {1, 2}));
    EXPECT_FALSE(Find(-1, {}));
    EXPECT_TRUE(Vecfind({5, 0}, 0));
    EXPECT_FALSE(Vecfind({5, 0}, 1));
}

// ---- cleaning ------------------------------------------------------------------------------------------------------

TEST_F(CleanAccept, CandidatesWithoutALinkGo) {
    SmallMatrix matrix(5);
    matrix[3][1] = 1;  // far below the floor of a candidate, and still a link
    std::vector<int> accept = {1, 2, 3, 4};
    clean_accept(accept, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_EQ(Log(), "Before clean: 4\nafter clean: 2\n");
}

TEST_F(CleanAccept, TwoUnlinkedCandidatesStay) {
    SmallMatrix matrix(3);
    std::vector<int> accept = {1, 2};
    clean_accept(accept, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1, 2}));
    EXPECT_EQ(NewLog(), "Before clean: 2\nafter clean: 2\n");
    accept.clear();
    clean_accept(accept, matrix.rows, 0);
    EXPECT_EQ(NewLog(), "Before clean: 0\nafter clean: 0\n");
}

TEST_F(CleanAccept, NeverGoesBelowTwo) {
    SmallMatrix matrix(6);
    std::vector<int> accept = {1, 2, 3, 4, 5};
    clean_accept(accept, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{4, 5}));
}

TEST_F(CleanAccept, LinkToAReadOutsideTheSetDoesNotCount) {
    SmallMatrix matrix(5);
    matrix[0][1] = matrix[0][2] = matrix[0][3] = 50;
    matrix[1][4] = 50;
    std::vector<int> accept = {1, 2, 3};
    clean_accept(accept, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{2, 3}));
}

TEST_F(FullMatchClean, OnlyExactOverlapsAreLinks) {
    const std::string text = RandomBases(300, 5);
    std::vector<Read> reads = {Cut(text, 0, 100), Cut(text, 20, 100), Cut(text, 30, 100), Cut(text, 40, 100)};
    SmallMatrix matrix(4);
    matrix[1][2] = 90, matrix[1][3] = 80, matrix[2][3] = 90;
    reads[2].seq = WithOtherBase(reads[2].seq, 50);
    std::vector<int> accept = {1, 2, 3};
    bool clean = true;
    EXPECT_TRUE(clean_accept(accept, reads, matrix.rows, clean, 0));
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_FALSE(clean);
    EXPECT_EQ(Log(), "Before full match clean: 3\nAccept left ratio: 0.666667\taccept left num: 2\ttotal num: 3\n");
}

TEST_F(FullMatchClean, NothingRemovedIsFalse) {
    const std::string text = RandomBases(300, 5);
    const std::vector<Read> reads = {Cut(text, 0, 100), Cut(text, 20, 100), Cut(text, 30, 100), Cut(text, 40, 100)};
    SmallMatrix matrix(4);
    matrix[1][2] = 90, matrix[1][3] = 80;
    std::vector<int> accept = {1, 2, 3};
    bool clean = true;
    EXPECT_FALSE(clean_accept(accept, reads, matrix.rows, clean, 0));
    EXPECT_EQ(accept.size(), 3U);
    EXPECT_FALSE(clean);
    EXPECT_EQ(Log(), "Before full match clean: 3\nAccept left ratio: 1\taccept left num: 3\ttotal num: 3\n");
}

TEST_F(FullMatchClean, TwoDifferingCandidatesStay) {
    const std::vector<Read> reads = Unrelated(3, 100);
    SmallMatrix matrix(3);
    matrix[1][2] = 50;
    std::vector<int> accept = {1, 2};
    bool clean = true;
    EXPECT_FALSE(clean_accept(accept, reads, matrix.rows, clean, 0));
    EXPECT_EQ(accept.size(), 2U);
    EXPECT_FALSE(clean);
}

TEST_F(FullMatchClean, EmptyAcceptLeavesTheFlagAndTheLogAlone) {
    SmallMatrix matrix(1);
    std::vector<int> accept;
    bool clean = true;
    EXPECT_FALSE(clean_accept(accept, {}, matrix.rows, clean, 0));
    EXPECT_TRUE(clean);
    EXPECT_EQ(Log(), "");
}

TEST_F(FullMatchClean, CellOfTheOtherDirectionOverrules) {
    // Both cells of the pair 1, 2 are set, which the matrix itself never does: the one from 2 to 1 decides, and it
    // fails.
    const std::string text = RandomBases(300, 5);
    const std::vector<Read> reads = {Cut(text, 0, 100), Cut(text, 20, 100), Cut(text, 30, 100),
                                     Read(RandomBases(100, 6), 0)};
    SmallMatrix matrix(4);
    matrix[1][2] = 90, matrix[2][1] = 40;
    std::vector<int> accept = {1, 2, 3};
    bool clean = true;
    EXPECT_TRUE(clean_accept(accept, reads, matrix.rows, clean, 0));
    EXPECT_EQ(accept, (std::vector<int>{2, 3}));
}

TEST_F(CleanAccept, AgreesWithTheLiteralLoop) {
    std::mt19937 engine(17);
    for (int round = 0; round < 300; ++round) {
        const int num = 1 + static_cast<int>(engine() % 12);
        SmallMatrix matrix(num);
        for (int links = static_cast<int>(engine() % 8); links > 0; --links) {
            matrix[static_cast<int>(engine() % num)][static_cast<int>(engine() % num)] = 40;
        }
        std::vector<int> plain = Numbers(0, num - 1);
        for (std::size_t i = 0; i < plain.size() && plain.size() >= 3;) {
            int count = 0;
            for (int b : plain) count += matrix[plain[i]][b] != 0 || matrix[b][plain[i]] != 0;
            if (count == 0) {
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(i));
            } else {
                ++i;
            }
        }
        std::vector<int> accept = Numbers(0, num - 1);
        clean_accept(accept, matrix.rows, 0);
        EXPECT_EQ(accept, plain) << "round " << round;
    }
}

TEST_F(PosClean, ForwardLimitsAreInclusive) {
    // start at 0, 100 bases, overlap 40: from -33 to 0 + 100 - 40 + 50 = 110.
    std::vector<Read> reads = Unrelated(5, 100);
    SmallMatrix matrix(5);
    for (int a = 1; a < 5; ++a) matrix[0][a] = 40;
    reads[1].pos = -33, reads[2].pos = -34, reads[3].pos = 110, reads[4].pos = 111;
    std::vector<int> accept = {1, 2, 3, 4};
    PosCleanAccept(0, accept, reads, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_EQ(Log(), "After pos clean, left accept: 2\n");
}

TEST_F(PosClean, RewardLimitsAreInclusive) {
    // end at 0, candidates of 100 bases, overlap 40: from 0 - 100 + 40 - 50 = -110 to 33.
    std::vector<Read> reads = Unrelated(5, 100);
    SmallMatrix matrix(5);
    for (int a = 1; a < 5; ++a) matrix[a][0] = 40;
    reads[0].seq = RandomBases(70, 1);
    reads[1].pos = 33, reads[2].pos = 34, reads[3].pos = -110, reads[4].pos = -111;
    std::vector<int> accept = {1, 2, 3, 4};
    PosCleanAccept(accept, 0, reads, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1, 3}));
    EXPECT_EQ(Log(), "After pos clean, left accept: 2\n");
}

TEST_F(PosClean, ExtremePositionsDoNotWrap) {
    std::vector<Read> reads = Unrelated(3, 100);
    reads[0].pos = 2147483647, reads[1].pos = 2147483647, reads[2].pos = -2147483647 - 1;
    SmallMatrix matrix(3);
    matrix[0][1] = matrix[0][2] = matrix[1][0] = matrix[2][0] = 40;
    std::vector<int> accept = {1, 2};
    PosCleanAccept(0, accept, reads, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1}));
    accept = {1, 2};
    PosCleanAccept(accept, 0, reads, matrix.rows, 0);
    EXPECT_EQ(accept, (std::vector<int>{1}));
}

}  // namespace
}  // namespace lintara
