#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "align/bases.h"
#include "align/edge_align.h"

namespace lintara {
namespace {

using lintara::testing::UniqueBases;

struct Alignment {
    std::string i = "left";
    std::string j = "alone";
    int score = -7;
    int i_start = -7;
    int j_start = -7;
    int i_end = -7;
    int j_end = -7;
};

Alignment Align(const std::string& seq_i, const std::string& seq_j) {
    Alignment out;
    local_aligning(seq_i, seq_j, out.i, out.j, out.score, out.i_start, out.j_start, out.i_end, out.j_end);
    return out;
}

TEST(LocalAligning, DeclinesSmallTables) {
    const Alignment out = Align("AC", "AC");
    EXPECT_EQ(out.i_start, 0);
    EXPECT_EQ(out.j_start, 0);
    EXPECT_EQ(out.i, "left");
    EXPECT_EQ(out.j, "alone");
    EXPECT_EQ(out.score, -7);
    EXPECT_EQ(out.i_end, -7);
    EXPECT_EQ(out.j_end, -7);
}

TEST(LocalAligning, TakesTwelveCells) {
    const Alignment out = Align("AC", "AAC");
    EXPECT_EQ(out.i, "AC");
    EXPECT_EQ(out.j, "AC");
    EXPECT_EQ(out.score, 6);
    EXPECT_EQ(out.i_start, 1);
    EXPECT_EQ(out.j_start, 2);
    EXPECT_EQ(out.i_end, 2);
    EXPECT_EQ(out.j_end, 3);
}

TEST(LocalAligning, DeclinesTablesAboveFourMillionCells) {
    const std::string seq = UniqueBases(200, 4) + std::string(1799, 'A');
    const Alignment largest = Align(seq, seq);
    EXPECT_EQ(largest.score, 3 * 1999);
    EXPECT_EQ(largest.i_start, 1);
    const Alignment declined = Align(seq, seq + "A");
    EXPECT_EQ(declined.i_start, 0);
    EXPECT_EQ(declined.score, -7);
}

TEST(LocalAligning, PutsAGapIntoTheFirst) {
    const Alignment out = Align("AAACCCGGGTTT", "AAACCCTGGGTTT");
    EXPECT_EQ(out.i, "AAACCC-GGGTTT");
    EXPECT_EQ(out.j, "AAACCCTGGGTTT");
    EXPECT_EQ(out.score, 12 * 3 - 5);
    EXPECT_EQ(out.i_start, 1);
    EXPECT_EQ(out.j_start, 1);
    EXPECT_EQ(out.i_end, 12);
    EXPECT_EQ(out.j_end, 13);
}

TEST(LocalAligning, PutsAGapIntoTheSecond) {
    const Alignment out = Align("AAACCCTGGGTTT", "AAACCCGGGTTT");
    EXPECT_EQ(out.i, "AAACCCTGGGTTT");
    EXPECT_EQ(out.j, "AAACCC-GGGTTT");
    EXPECT_EQ(out.i_end, 13);
    EXPECT_EQ(out.j_end, 12);
}

TEST(LocalAligning, KeepsAMismatchInside) {
    const Alignment out = Align("TTAAACCCGGG", "AAACACGGG");
    EXPECT_EQ(out.i, "AAACCCGGG");
    EXPECT_EQ(out.j, "AAACACGGG");
    EXPECT_EQ(out.score, 8 * 3 - 5);
    EXPECT_EQ(out.i_start, 3);
    EXPECT_EQ(out.j_start, 1);
}

TEST(LocalAligning, OtherLettersMatchEachOtherAndCaseIsFolded) {
    EXPECT_EQ(Align("NNN", "N-X").score, 9);
    EXPECT_EQ(Align("acg", "ACG").score, 9);
}

TEST(LocalAligning, WithoutAnEqualBaseNothingIsTraced) {
    const Alignment out = Align("AAA", "CCCC");
    EXPECT_EQ(out.score, 0);
    EXPECT_EQ(out.i, "");
    EXPECT_EQ(out.j, "");
    EXPECT_EQ(out.i_start, -7);
    EXPECT_EQ(out.j_start, -7);
    EXPECT_EQ(out.i_end, 3);
    EXPECT_EQ(out.j_end, 4);
}

// AAA stands three times; the last place in both has the largest end.
TEST(LocalAligning, OfEqualScoresTheLastCellWins) {
    const Alignment out = Align("AAATCAAA", "AAAGGGAAA");
    EXPECT_EQ(out.score, 9);
    EXPECT_EQ(out.i_start, 6);
    EXPECT_EQ(out.j_start, 7);
    EXPECT_EQ(out.i_end, 8);
    EXPECT_EQ(out.j_end, 9);
}

TEST(LocalAligning, TakesAnEmptySequence) {
    const Alignment out = Align("", "ACGTACGTAC");
    EXPECT_EQ(out.score, 0);
    EXPECT_EQ(out.i, "");
}

struct Cell {
    int score = -7;
    int direction = -7;
};

bool operator==(const Cell& a, const Cell& b) {
    return a.score == b.score && a.direction == b.direction;
}

Cell BestOf(int sub, int gapi, int gapj) {
    Cell cell;
    get_max_score(sub, gapi, gapj, cell.score, cell.direction);
    return cell;
}

TEST(GetMaxScore, TiesPreferTheDiagonalThenTheLeft) {
    EXPECT_EQ(BestOf(5, 5, 5), (Cell{5, 0}));
    EXPECT_EQ(BestOf(4, 5, 5), (Cell{5, 1}));
    EXPECT_EQ(BestOf(4, 4, 5), (Cell{5, 2}));
    EXPECT_EQ(BestOf(5, 4, 5), (Cell{5, 0}));
    EXPECT_EQ(BestOf(3, 5, 4), (Cell{5, 1}));
}

TEST(GetMaxScore, NegativeScoreBecomesZeroWithItsDirection) {
    EXPECT_EQ(BestOf(-1, -2, -3), (Cell{0, 0}));
    EXPECT_EQ(BestOf(-3, -1, -2), (Cell{0, 1}));
    EXPECT_EQ(BestOf(-3, -2, -1), (Cell{0, 2}));
}

TEST(LocateMaxScore, PrefersTheLargestRowThenColumn) {
    const std::vector<int> scores = {0, 0, 0,  //
                                     0, 5, 5,  //
                                     0, 5, 3};
    int pos_i = 2;
    int pos_j = 2;
    int score = -1;
    locate_max_score(scores.data(), pos_i, pos_j, 3, score);
    EXPECT_EQ(pos_i, 2);
    EXPECT_EQ(pos_j, 1);
    EXPECT_EQ(score, 5);
}

TEST(TraceBack, FollowsTheDirectionsToAZero) {
    // From (2, 3): left, above, diagonal; (0, 1) is 0.
    const std::vector<int> scores = {0, 0, 0, 0,  //
                                     0, 0, 3, 1,  //
                                     0, 1, 2, 4};
    const std::vector<int> directions = {0, 1, 1, 1,  //
                                         2, 0, 0, 0,  //
                                         2, 0, 2, 1};
    std::string align_i;
    std::string align_j;
    int i_start = 0;
    int j_start = 0;
    trace_back(scores.data(), directions.data(), "AC", "GTA", 2, 3, 4, align_i, align_j, i_start, j_start);
    EXPECT_EQ(align_i, "-CA");
    EXPECT_EQ(align_j, "A-T");
    EXPECT_EQ(i_start, 1);
    EXPECT_EQ(j_start, 2);
}

TEST(TraceBack, DoesNothingOnAZero) {
    const std::vector<int> scores(4, 0);
    std::string align_i = "x";
    std::string align_j = "y";
    int i_start = 8;
    int j_start = 9;
    trace_back(scores.data(), scores.data(), "A", "C", 1, 1, 2, align_i, align_j, i_start, j_start);
    EXPECT_EQ(align_i, "x");
    EXPECT_EQ(align_j, "y");
    EXPECT_EQ(i_start, 8);
    EXPECT_EQ(j_start, 9);
}

}  // namespace
}  // namespace lintara
