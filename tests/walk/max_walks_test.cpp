#include "walk/max_walks.h"

#include "run/settings.h"
#include "small_block.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Cut;
using testing::Numbers;
using testing::RandomBases;
using testing::SmallMatrix;
using testing::WithOtherBase;

class ForwardMax : public testing::ThreadStreamsTest {};
class RewardMax : public testing::ThreadStreamsTest {};
class GetLastMax : public testing::ThreadStreamsTest {};
class GetFirstMax : public testing::ThreadStreamsTest {};
class PlainSelectors : public testing::ThreadStreamsTest {};

/// Reads of 100 bases at 0, 10, 20, ... of one text, all overlaps of at least 10 bases in the matrix.
struct Row {
    explicit Row(int number, int step = 10) : num(static_cast<std::uint16_t>(number)), matrix(number) {
        const std::string text = RandomBases(100 + step * number, 21);
        for (int i = 0; i < number; ++i) reads.push_back(Cut(text, step * i, 100));
        for (int a = 0; a < number; ++a) {
            for (int b = a + 1; b < number && (b - a) * step <= 90; ++b) {
                matrix[a][b] = static_cast<std::uint8_t>(100 - (b - a) * step);
            }
        }
    }
    std::vector<int> Forward(int pos) {
        std::vector<int> starts;
        forwardmax(starts, reads, matrix.rows, num, pos, 0, 0);
        return starts;
    }
    std::vector<int> Reward(int pos) {
        std::vector<int> ends;
        rewardmax(ends, reads, matrix.rows, num, pos, 0, 0);
        return ends;
    }
    int Last(int start) { return get_last_max(start, accept, reads, matrix.rows, 0); }
    int First(int end) { return get_first_max(end, accept, reads, matrix.rows, 0); }

    std::uint16_t num;
    std::vector<Read> reads;
    SmallMatrix matrix;
    std::vector<int> accept;
};

// ---- walks ---------------------------------------------------------------------------------------------------------

TEST_F(ForwardMax, GoesReadByReadToTheRightEnd) {
    Row row(5);
    EXPECT_EQ(row.Forward(0), Numbers(0, 4));
    EXPECT_EQ(Log(),
              "start forward assembly...\n"
              "Before clean: 4\nafter clean: 4\n"
              "un accept num: 0\tratio: 0\nget last: 1 with accept size: 4\tratio: 0\n"
              "Before clean: 3\nafter clean: 3\n"
              "un accept num: 0\tratio: 0\nget last: 2 with accept size: 3\tratio: 0\n"
              "Before clean: 2\nafter clean: 2\n"
              "un accept num: 0\tratio: 0\nget last: 3 with accept size: 2\tratio: 0\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 0\nafter clean: 0\n"
              "Forward from 0 vector get finished! 5\n");
}

TEST_F(RewardMax, GoesReadByReadToTheLeftEnd) {
    Row row(4);
    EXPECT_EQ(row.Reward(3), (std::vector<int>{3, 2, 1, 0}));
    EXPECT_EQ(Log(),
              "start max reward assembly...\n"
              "Before clean: 3\nafter clean: 3\n"
              "un accept num: 0\tratio: 0\nget first: 2 with accept size: 3\tratio: 0\n"
              "Before clean: 2\nafter clean: 2\n"
              "un accept num: 0\tratio: 0\nget first: 1 with accept size: 2\tratio: 0\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 0\nafter clean: 0\n"
              "Reward from 3 vector get finished!4\n");
}

TEST_F(ForwardMax, OverlapOfTenBasesIsACandidate) {
    Row row(2, 90);
    EXPECT_EQ(row.matrix[0][1], 10);
    EXPECT_EQ(row.Forward(0), Numbers(0, 1));
    EXPECT_EQ(row.Reward(1), (std::vector<int>{1, 0}));
}

TEST_F(ForwardMax, SecondOfTwoSingleCandidatesEndsTheWalk) {
    Row row(4, 90);  // each read overlaps its neighbours alone
    EXPECT_EQ(row.Forward(0), Numbers(0, 1));
    EXPECT_EQ(row.Reward(3), (std::vector<int>{3, 2}));
}

TEST_F(ForwardMax, StepWithSeveralCandidatesAllowsAnotherSingleOne) {
    // 0 to 1 alone, 1 to 2 or 3, 2 to 3 alone.
    Row row(4);
    row.matrix[0][2] = row.matrix[0][3] = 0;
    EXPECT_EQ(row.Forward(0), Numbers(0, 3));
    Row mirror(4);
    mirror.matrix[1][3] = mirror.matrix[0][3] = 0;
    EXPECT_EQ(mirror.Reward(3), (std::vector<int>{3, 2, 1, 0}));
}

TEST_F(ForwardMax, SeveralThinnedToOneDoNotAllowAnotherSingleOne) {
    // 0 to 1 alone. Of 2, 3 and 4, the first two differ from read 1 inside their overlaps and go, for 4 is against
    // them.
    Row row(7);
    for (int a = 2; a < 7; ++a) row.matrix[0][a] = 0;
    row.matrix[1][5] = row.matrix[1][6] = row.matrix[2][4] = 0;
    row.matrix[4][6] = 0;
    row.reads[2].seq = WithOtherBase(row.reads[2].seq, 12);
    row.reads[3].seq = WithOtherBase(row.reads[3].seq, 2);
    EXPECT_EQ(row.Forward(0), (std::vector<int>{0, 1, 4}));
    EXPECT_EQ(Log(),
              "start forward assembly...\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 3\nafter clean: 3\n"
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 1\n"
              "Before clean: 1\nafter clean: 1\n"
              "Forward from 0 vector get finished! 3\n");
}

TEST_F(RewardMax, SeveralThinnedToOneDoNotAllowAnotherSingleOne) {
    // The mirror image: 6 to 5 alone, then 4, 3 and 2, of which the first two differ from read 5.
    Row row(7);
    for (int a = 0; a < 5; ++a) row.matrix[a][6] = 0;
    row.matrix[0][5] = row.matrix[1][5] = row.matrix[2][4] = 0;
    row.matrix[0][2] = 0;
    row.reads[4].seq = WithOtherBase(row.reads[4].seq, 87);
    row.reads[3].seq = WithOtherBase(row.reads[3].seq, 97);
    EXPECT_EQ(row.Reward(6), (std::vector<int>{6, 5, 2}));
}

TEST_F(ForwardMax, ReadMetAgainIsNamed) {
    Row row(3);
    row.matrix[1][0] = 95;
    EXPECT_EQ(row.Forward(0), Numbers(0, 1));
    const std::string log = Log();
    EXPECT_NE(
        log.find("get last: 0 with accept size: 2\tratio: 0\nnode repeat!0\nForward from 0 vector get finished! 2\n"),
        std::string::npos)
        << log;
}

TEST_F(RewardMax, ReadMetAgainGoesWithoutAWord) {
    Row row(3);
    row.matrix[2][1] = 95;
    EXPECT_EQ(row.Reward(2), (std::vector<int>{2, 1}));
    const std::string log = Log();
    EXPECT_NE(log.find("get first: 2 with accept size: 2\tratio: 0\nReward from 2 vector get finished!2\n"),
              std::string::npos)
        << log;
}

TEST_F(ForwardMax, ReadsAlreadyOnThePathCountAsMet) {
    Row row(3);
    std::vector<int> starts = {1};
    forwardmax(starts, row.reads, row.matrix.rows, 3, 1, 0, 0);
    EXPECT_EQ(starts, (std::vector<int>{1}));
    EXPECT_EQ(NewLog(), "start forward assembly...\nnode repeat!1\nForward from 1 vector get finished! 1\n");
    rewardmax(starts, row.reads, row.matrix.rows, 3, 1, 0, 0);
    EXPECT_EQ(starts, (std::vector<int>{1}));
    EXPECT_EQ(NewLog(), "start max reward assembly...\nReward from 1 vector get finished!1\n");
}

TEST_F(ForwardMax, EmptyBlockWalksNowhere) {
    Row row(1);
    std::vector<int> starts;
    forwardmax(starts, {}, row.matrix.rows, 0, 0, 0, 0);
    rewardmax(starts, {}, row.matrix.rows, 0, 0, 0, 0);
    EXPECT_TRUE(starts.empty());
}

// Eleven reads, ten candidates at the first step from read `from`; all but read 5 stand far off by their positions.
struct FarOff : Row {
    explicit FarOff(int from) : Row(11, 2) {
        for (Read& read : reads) read.pos = 1000;
        reads[from].pos = from == 0 ? 0 : 101;
        reads[5].pos = 55;
        for (int a = 0; a < 5; ++a) matrix[a][5] = from == 0 ? matrix[a][5] : 0;
    }
};

TEST_F(ForwardMax, PositionCleanComesAfterTheSingleCandidate) {
    FarOff block(0);
    // Read 5 alone is left, and the selector takes no single candidate.
    EXPECT_EQ(block.Forward(0), Numbers(0, 0));
    EXPECT_EQ(Log(),
              "start forward assembly...\nBefore clean: 10\nafter clean: 10\nAfter pos clean, left accept: 1\n"
              "Forward from 0 vector get finished! 1\n");
}

TEST_F(RewardMax, PositionCleanComesBeforeTheSingleCandidate) {
    FarOff block(10);
    EXPECT_EQ(block.Reward(10), (std::vector<int>{10, 5}));
    EXPECT_EQ(Log(),
              "start max reward assembly...\nBefore clean: 10\nafter clean: 10\nAfter pos clean, left accept: 1\n"
              "Before clean: 0\nafter clean: 0\nReward from 10 vector get finished!2\n");
}

TEST_F(ForwardMax, NineCandidatesOrAShortGapKeepTheirPositions) {
    Row nine(10, 2);
    for (Read& read : nine.reads) read.pos = 1000;
    nine.reads[0].pos = 0;
    nine.Forward(0);
    EXPECT_EQ(Log().find("After pos clean"), std::string::npos);
    FarOff short_gap(0);
    short_gap.reads[10].pos = 100;
    short_gap.Forward(0);
    nine.reads[9].pos = 1000;
    nine.Reward(9);
    FarOff short_gap_reward(10);
    short_gap_reward.reads[10].pos = 100;
    short_gap_reward.Reward(10);
    EXPECT_EQ(Log().find("After pos clean"), std::string::npos);
}

// ---- forward selector ----------------------------------------------------------------------------------------------

TEST_F(GetLastMax, FewerThanTwoCandidatesGiveNoRead) {
    Row row(3);
    row.accept = {1};
    EXPECT_EQ(row.Last(0), -1);
    row.accept.clear();
    EXPECT_EQ(row.Last(0), -1);
    row.accept = {0, 1};  // nothing right of the last read
    EXPECT_EQ(row.Last(2), -1);
    EXPECT_EQ(Log(), "");
}

TEST_F(GetLastMax, PairThatDisagreesGivesNoRead) {
    Row row(3);
    row.matrix[1][2] = 0;
    row.accept = {1, 2};
    EXPECT_EQ(row.Last(0), -1);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 1\nget last: 1 with accept size: 2\tratio: 1\n");
}

TEST_F(GetLastMax, PickThatAllAreAgainstIsDropped) {
    // Read 1 has no link to any other; read 2 agrees with the rest.
    Row row(5);
    for (int a = 2; a < 5; ++a) row.matrix[1][a] = 0;
    row.accept = {1, 2, 3, 4};
    EXPECT_EQ(row.Last(0), 2);
    EXPECT_EQ(row.accept, (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(Log(),
              "un accept num: 3\tratio: 1\nun accept num: 0\tratio: 0\nget last: 2 with accept size: 3\tratio: 0\n");
}

TEST_F(GetLastMax, SingleCandidateLeftIsTaken) {
    // Reads 1 and 2 differ from the start inside their overlaps.
    Row row(4);
    row.matrix[1][3] = 0;
    row.reads[1].seq = WithOtherBase(row.reads[1].seq, 11);
    row.reads[2].seq = WithOtherBase(row.reads[2].seq, 1);
    row.accept = {1, 2, 3};
    EXPECT_EQ(row.Last(0), 3);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\nAfter full match drop: 1\n");
}

TEST_F(GetLastMax, NoCandidateLeftGivesNoRead) {
    // All three differ from the start at the same base of the text.
    Row row(4);
    row.matrix[1][3] = 0;
    for (int a = 1; a <= 3; ++a) row.reads[a].seq = WithOtherBase(row.reads[a].seq, 50 - 10 * a);
    row.accept = {1, 2, 3};
    EXPECT_EQ(row.Last(0), -1);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\nAfter full match drop: 0\n");
}

// Reads 1, 2 and 3 right of read 0, and read 4 the after edge, which is no candidate. Reads 1 and 3 have no link, so
// that one of two others is against the pick.
struct OneAgainst : Row {
    OneAgainst() : Row(5) {
        matrix[1][3] = 0;
        accept = {1, 2, 3};
        for (int a = 0; a < 4; ++a) matrix[a][4] = 0;
    }
};

TEST_F(GetLastMax, NoEdgeReadLeadsToTheVerdict) {
    OneAgainst block;
    // 2 * 0.5 is not above 1.0, and there are three.
    EXPECT_EQ(block.Last(0), 1);
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\n"
              "Before full match clean: 3\nAccept left ratio: 1\taccept left num: 3\ttotal num: 3\n"
              "All fully matched!\nNo edge droped.\nget last: 1 with accept size: 3\tratio: 0.5\n");
}

TEST_F(GetLastMax, EdgeReadsAndTheirPartnersGo) {
    OneAgainst block;
    block.matrix[3][4] = 31;
    // Read 2 is a perfect partner of read 3.
    EXPECT_EQ(block.Last(0), 1);
    EXPECT_EQ(block.accept, (std::vector<int>{1}));
    EXPECT_EQ(block.matrix[0][1], 90);
    EXPECT_EQ(block.matrix[0][2], 0);
    EXPECT_EQ(block.matrix[0][3], 0);
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\n"
              "Before full match clean: 3\nAccept left ratio: 1\taccept left num: 3\ttotal num: 3\n"
              "All fully matched!\n");
}

TEST_F(GetLastMax, NothingBesideEdgeReadsMeetsTheEdge) {
    OneAgainst block;
    for (int a = 1; a < 4; ++a) block.matrix[a][4] = 40;
    EXPECT_EQ(block.Last(0), -1);
    for (int a = 1; a < 4; ++a) EXPECT_EQ(block.matrix[0][a], 0) << a;
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\n"
              "Before full match clean: 3\nAccept left ratio: 1\taccept left num: 3\ttotal num: 3\n"
              "All fully matched!\nMeet the edge.\n");
}

// Right of read 0: reads 1 to 3 agree; read 4 differs from read 0 inside its overlap; read 5 has no link at all; reads
// 6 on are linked to read 2, and not to read 1, the pick. Read `num` - 1 is an after edge out of reach.
struct ManyAgainst : Row {
    explicit ManyAgainst(int candidates) : Row(candidates + 2, 5) {
        const int edge = candidates + 1;
        for (int a = 0; a < edge; ++a) matrix[a][edge] = 0;
        for (int a = 1; a < edge; ++a) {
            matrix[a][4] = matrix[4][a] = matrix[a][5] = matrix[5][a] = 0;
            if (a >= 6) matrix[1][a] = 0;
        }
        reads[4].seq = WithOtherBase(reads[4].seq, 3);
        accept = Numbers(1, candidates);
    }
};

TEST_F(GetLastMax, ThirdCleaningCycleGoesToTheVerdict) {
    ManyAgainst block(7);
    EXPECT_EQ(block.Last(0), -1);
    EXPECT_EQ(block.accept, (std::vector<int>{1, 2, 3, 6, 7}));
    EXPECT_EQ(Log(),
              "un accept num: 4\tratio: 0.666667\nAfter full match drop: 6\n"
              "un accept num: 3\tratio: 0.6\nAfter full match drop: 6\n"
              "Before full match clean: 6\nAccept left ratio: 0.833333\taccept left num: 5\ttotal num: 6\n"
              "un accept num: 2\tratio: 0.5\nget last: 1 with accept size: 5\tratio: 0.5\n");
}

TEST_F(GetLastMax, OneUnacceptedInTheEndLetsThePickStand) {
    ManyAgainst block(6);
    EXPECT_EQ(block.Last(0), 1);
    EXPECT_EQ(block.accept, (std::vector<int>{1, 2, 3, 6}));
}

TEST_F(GetLastMax, FullMatchCleanRunsOnce) {
    // Without read 4 the first cycle cleans read 5 away, and the second goes on to the edge at once.
    ManyAgainst block(7);
    block.accept = {1, 2, 3, 5, 6, 7};
    EXPECT_EQ(block.Last(0), -1);
    EXPECT_EQ(Log(),
              "un accept num: 3\tratio: 0.6\nAfter full match drop: 6\n"
              "Before full match clean: 6\nAccept left ratio: 0.833333\taccept left num: 5\ttotal num: 6\n"
              "un accept num: 2\tratio: 0.5\nAfter full match drop: 5\nNo edge droped.\n"
              "get last: 1 with accept size: 5\tratio: 0.5\n");
}

TEST_F(GetLastMax, TwoOfTenUnacceptedAreAFifthAndStand) {
    ManyAgainst block(13);
    // Left are 1 to 3 and the eight from 6 on; six of those get their link to the pick back.
    for (int a = 8; a <= 13; ++a) block.matrix[1][a] = static_cast<std::uint8_t>(100 - 5 * (a - 1));
    block.accept = {1, 2, 3, 6, 7, 8, 9, 10, 11, 12, 13};
    EXPECT_EQ(block.Last(0), 1);
    // One read fewer, and 2 of 9 are too many.
    block.accept = {1, 2, 3, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_EQ(block.Last(0), -1);
}

// ---- reward selector -----------------------------------------------------------------------------------------------

TEST_F(GetFirstMax, NoCandidateGivesNoRead) {
    Row row(3);
    EXPECT_EQ(row.First(2), -1);
    row.accept = {1, 2};  // nothing left of the first read
    EXPECT_EQ(row.First(0), -1);
    EXPECT_EQ(Log(), "");
}

TEST_F(GetFirstMax, SingleCandidateIsTaken) {
    Row row(3);
    row.accept = {1};
    EXPECT_EQ(row.First(2), 1);
    EXPECT_EQ(Log(), "Error\nget first: 1 with accept size: 1\tratio: 1\n");
}

TEST_F(GetFirstMax, PairThatDisagreesGivesNoRead) {
    Row row(3);
    row.matrix[0][1] = 0;
    row.accept = {0, 1};
    EXPECT_EQ(row.First(2), -1);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 1\nget first: 1 with accept size: 2\tratio: 1\n");
}

TEST_F(GetFirstMax, PickThatAllAreAgainstIsDropped) {
    Row row(5);
    for (int a = 0; a < 3; ++a) row.matrix[a][3] = 0;
    row.accept = {0, 1, 2, 3};
    EXPECT_EQ(row.First(4), 2);
    EXPECT_EQ(row.accept, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(Log(),
              "un accept num: 3\tratio: 1\nun accept num: 0\tratio: 0\nget first: 2 with accept size: 3\tratio: 0\n");
}

TEST_F(GetFirstMax, SingleCandidateLeftGoesThroughTheCheck) {
    // Reads 2 and 3 differ from the end, read 4, inside their overlaps.
    Row row(5);
    row.matrix[1][3] = 0;
    row.reads[3].seq = WithOtherBase(row.reads[3].seq, 88);
    row.reads[2].seq = WithOtherBase(row.reads[2].seq, 98);
    row.accept = {1, 2, 3};
    EXPECT_EQ(row.First(4), 1);
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 1\nError\n"
              "get first: 1 with accept size: 1\tratio: 1\n");
}

// Reads 1, 2 and 3 left of read 4, and read 0 the before edge, which is no candidate. Reads 1 and 3 have no link.
struct OneAgainstReward : Row {
    OneAgainstReward() : Row(5) {
        matrix[1][3] = 0;
        accept = {1, 2, 3};
        for (int a = 1; a < 5; ++a) matrix[0][a] = 0;
    }
};

TEST_F(GetFirstMax, NoEdgeReadLeadsToTheVerdict) {
    OneAgainstReward block;
    EXPECT_EQ(block.First(4), 3);
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\nNo edge dropped!\n"
              "get first: 3 with accept size: 3\tratio: 0.5\n");
}

TEST_F(GetFirstMax, NothingBesideEdgeReadsMeetsTheEdge) {
    OneAgainstReward block;
    for (int a = 1; a < 4; ++a) block.matrix[0][a] = 40;
    EXPECT_EQ(block.First(4), -1);
    EXPECT_EQ(Log(), "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\nMeet the edge!\n");
    for (int a = 1; a < 4; ++a) EXPECT_NE(block.matrix[a][4], 0) << a;
}

TEST_F(GetFirstMax, EdgeReadsAndTheirPartnersGo) {
    OneAgainstReward block;
    block.matrix[0][1] = 31;
    EXPECT_EQ(block.First(4), 3);
    EXPECT_EQ(block.accept, (std::vector<int>{3}));
    EXPECT_EQ(Log(),
              "un accept num: 1\tratio: 0.5\nAfter full match drop: 3\nError\n"
              "get first: 3 with accept size: 1\tratio: 1\n");
}

TEST_F(GetFirstMax, ThirdCleaningCycleGoesToTheVerdict) {
    // Left of read 9: read 8 is the pick; reads 7 and 6 agree. Read 5 differs from read 9 inside its overlap. Read 4 is
    // an edge read without a link. Reads 3 and 2 are not linked to the pick.
    Row row(10, 5);
    for (int a = 1; a < 10; ++a) row.matrix[0][a] = 0;
    row.matrix[0][4] = 31;
    for (int a = 1; a < 9; ++a) row.matrix[a][4] = row.matrix[4][a] = 0;
    row.matrix[3][8] = row.matrix[2][8] = row.matrix[5][8] = 0;
    row.reads[5].seq = WithOtherBase(row.reads[5].seq, 90);
    row.accept = Numbers(2, 8);
    EXPECT_EQ(row.First(9), -1);
    EXPECT_EQ(row.accept, (std::vector<int>{2, 3, 6, 7, 8}));
    EXPECT_EQ(Log(),
              "un accept num: 4\tratio: 0.666667\nAfter full match drop: 6\n"
              "un accept num: 3\tratio: 0.6\nAfter full match drop: 6\n"
              "un accept num: 2\tratio: 0.5\nget first: 8 with accept size: 5\tratio: 0.5\n");
}

// ---- plain selectors -----------------------------------------------------------------------------------------------

TEST_F(PlainSelectors, SupportedPickIsTaken) {
    Row row(5);
    std::vector<int> accept = {1, 2, 3, 4};
    EXPECT_EQ(get_last_max(0, accept, row.matrix.rows), 1);
    EXPECT_EQ(accept.size(), 4U);
    accept = {0, 1, 2, 3};
    EXPECT_EQ(get_first_max(4, accept, row.matrix.rows), 3);
    EXPECT_EQ(accept.size(), 4U);
    EXPECT_EQ(Log(), "");
}

TEST_F(PlainSelectors, UnsupportedPickIsDropped) {
    Row row(5);
    row.matrix[1][3] = row.matrix[1][4] = 0;
    std::vector<int> accept = {1, 2, 3, 4};
    EXPECT_EQ(get_last_max(0, accept, row.matrix.rows), 2);
    EXPECT_EQ(accept, (std::vector<int>{2, 3, 4}));
    Row mirror(5);
    mirror.matrix[0][3] = mirror.matrix[1][3] = 0;
    accept = {0, 1, 2, 3};
    EXPECT_EQ(get_first_max(4, accept, mirror.matrix.rows), 2);
    EXPECT_EQ(accept, (std::vector<int>{0, 1, 2}));
}

TEST_F(PlainSelectors, RewardTakesTheLastOneLeftAndForwardDoesNot) {
    // Of two candidates only one other can agree, which is never enough.
    Row row(3);
    std::vector<int> accept = {1, 2};
    EXPECT_EQ(get_last_max(0, accept, row.matrix.rows), -1);
    EXPECT_EQ(accept, (std::vector<int>{2}));
    accept = {0, 1};
    EXPECT_EQ(get_first_max(2, accept, row.matrix.rows), 0);
}

TEST_F(PlainSelectors, FewCandidatesOnEntry) {
    Row row(3);
    std::vector<int> accept = {1};
    EXPECT_EQ(get_last_max(0, accept, row.matrix.rows), -1);
    EXPECT_EQ(accept.size(), 1U);
    // The reward form drops it, for lack of agreement, and has none left.
    EXPECT_EQ(get_first_max(2, accept, row.matrix.rows), -1);
    EXPECT_TRUE(accept.empty());
    EXPECT_EQ(get_last_max(0, accept, row.matrix.rows), -1);
    EXPECT_EQ(get_first_max(2, accept, row.matrix.rows), -1);
}

TEST_F(PlainSelectors, NoOverlapGivesNoRead) {
    Row row(4);
    std::vector<int> accept = {0, 1, 2};
    EXPECT_EQ(get_last_max(3, accept, row.matrix.rows), -1);
    accept = {1, 2, 3};
    EXPECT_EQ(get_first_max(0, accept, row.matrix.rows), -1);
    EXPECT_EQ(accept.size(), 3U);
    // A single candidate is handed back even so.
    accept = {2};
    EXPECT_EQ(get_first_max(0, accept, row.matrix.rows), 2);
}

}  // namespace
}  // namespace lintara
