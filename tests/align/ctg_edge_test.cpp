#include <gtest/gtest.h>

#include <string>

#include "align/bases.h"
#include "align/edge_align.h"

namespace lintara {
namespace {

using lintara::testing::Cut;
using lintara::testing::UniqueBases;
using lintara::testing::WithErrors;

class CtgEdgeTest : public ::testing::Test {
  protected:
    const std::string genome_ = UniqueBases(200, 5);
    std::string G(int start, int end) const { return Cut(genome_, start, end); }

    int over1_ = -7;
    int over2_ = -7;
    int containing_ = -7;
};

using OverlapCtgEdge = CtgEdgeTest;
using OverlapCtgEdge2 = CtgEdgeTest;

TEST_F(OverlapCtgEdge, EndMeetsStart) {
    EXPECT_TRUE(overlap_ctg_edge(G(0, 60), G(30, 90), over1_, over2_, containing_));
    EXPECT_EQ(over1_, 30);
    EXPECT_EQ(over2_, 30);
    EXPECT_EQ(containing_, -7);
}

// The alignment has 31 columns; the second one's part of the overlap is one base longer.
TEST_F(OverlapCtgEdge, TakesAnIndel) {
    const std::string inserted = genome_[44] == 'A' || genome_[45] == 'A' ? "G" : "A";
    ASSERT_TRUE(genome_[44] != inserted[0] && genome_[45] != inserted[0]);
    EXPECT_TRUE(overlap_ctg_edge(G(0, 60), G(30, 45) + inserted + G(45, 90), over1_, over2_, containing_));
    EXPECT_EQ(over1_, 30);
    EXPECT_EQ(over2_, 31);
}

TEST_F(OverlapCtgEdge, OverlapMustCoverItsShare) {
    // 30 columns of an overlap of 70 bases.
    const std::string ctg1 = G(0, 60) + std::string(40, 'A');
    const std::string ctg2 = G(30, 60) + std::string(40, 'C');
    EXPECT_FALSE(overlap_ctg_edge(ctg1, ctg2, over1_, over2_, containing_));
    EXPECT_EQ(over1_, 70);
    EXPECT_EQ(over2_, 70);
    EXPECT_EQ(containing_, -7);
}

TEST_F(OverlapCtgEdge, SecondThatStartsLeftIsNone) {
    EXPECT_FALSE(overlap_ctg_edge(G(30, 90), G(0, 60), over1_, over2_, containing_));
    EXPECT_EQ(over1_, -7);
    EXPECT_EQ(over2_, 60 + 60 - 30);
    EXPECT_EQ(containing_, 0);
}

TEST_F(OverlapCtgEdge, CommonStartMayContain) {
    EXPECT_FALSE(overlap_ctg_edge(G(0, 60), G(0, 60), over1_, over2_, containing_));
    EXPECT_EQ(over2_, 60);
    EXPECT_EQ(containing_, 1);
}

TEST_F(OverlapCtgEdge, DeclinedPairIsNone) {
    EXPECT_FALSE(overlap_ctg_edge("AC", "AC", over1_, over2_, containing_));
    EXPECT_EQ(containing_, 0);
    containing_ = -7;
    EXPECT_FALSE(overlap_ctg_edge("", "", over1_, over2_, containing_));
    EXPECT_EQ(containing_, 0);
    containing_ = -7;
    EXPECT_FALSE(overlap_ctg_edge("AAA", "CCCC", over1_, over2_, containing_));
    EXPECT_EQ(containing_, 0);
}

TEST_F(OverlapCtgEdge2, ShortSequencesAreNone) {
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 9), G(0, 60), 5, over1_, over2_));
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 60), G(0, 9), 5, over1_, over2_));
    EXPECT_EQ(over1_, -7);
    EXPECT_EQ(over2_, -7);
}

TEST_F(OverlapCtgEdge2, BothEdgesFound) {
    for (const int method : {0, 1, 2, 5}) {
        EXPECT_TRUE(overlap_ctg_edge2(G(0, 60), G(30, 90), method, over1_, over2_));
        EXPECT_EQ(over1_, 60 - 32 + 1);
        EXPECT_EQ(over2_, 21 + 8);
    }
}

TEST_F(OverlapCtgEdge2, BothEdgesMustTellTheSameLength) {
    // The insertion of 11 bases makes 29 and 40; one of 10 makes 29 and 39.
    const std::string insertion = UniqueBases(11, 9);
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 60), G(30, 45) + insertion + G(45, 90), 5, over1_, over2_));
    EXPECT_EQ(over1_, 29);
    EXPECT_EQ(over2_, 40);
    // Found are the pieces 1 to 8 and those behind the insertion, 25 to 32: (39 - 16) / 7 / 32 is 0.1.
    EXPECT_TRUE(overlap_ctg_edge2(G(0, 60), G(30, 45) + insertion.substr(0, 10) + G(45, 90), 5, over1_, over2_));
    EXPECT_EQ(over2_, 39);
}

// The pieces 5 to 22 of the second one are found, which makes (29 - 18) / 7 / 22 broken.
TEST_F(OverlapCtgEdge2, OnlyTheFirstsEdgeFound) {
    EXPECT_TRUE(overlap_ctg_edge2(G(0, 60), WithErrors(G(30, 90), {4}), 5, over1_, over2_));
    EXPECT_EQ(over1_, 30);
    EXPECT_EQ(over2_, 29);
}

// The pieces 31 to 47 of the first one are found.
TEST_F(OverlapCtgEdge2, OnlyTheSecondsEdgeFound) {
    EXPECT_TRUE(overlap_ctg_edge2(WithErrors(G(0, 60), {54}), G(30, 90), 5, over1_, over2_));
    EXPECT_EQ(over1_, 29);
    EXPECT_EQ(over2_, 30);
}

// Only the first one's last bases are shared: pieces 21 and 22 of 29 bases.
TEST_F(OverlapCtgEdge2, FewPiecesAreNone) {
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 60), UniqueBases(21, 6) + G(51, 100), 5, over1_, over2_));
    EXPECT_EQ(over2_, 29);
}

TEST_F(OverlapCtgEdge2, NeitherEdgeFoundIsNone) {
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 60), G(100, 160), 5, over1_, over2_));
    // An edge at the very start does not count either.
    EXPECT_FALSE(overlap_ctg_edge2(G(0, 60), G(51, 58) + UniqueBases(40, 7), 5, over1_, over2_));
    EXPECT_EQ(over1_, -7);
}

}  // namespace
}  // namespace lintara
