#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "align/search.h"

namespace lintara {
namespace {

// Each base stands at two places 4 apart; A, C, G and T of the pattern's first half vote for 2.
TEST(Wash, MostVotedStartWins) {
    EXPECT_EQ(Wash("ACGTACGT", "TTACGTACGTTT"), 2);
}

TEST(Wash, LowestStartWinsATie) {
    EXPECT_EQ(Wash("ACG", "ACGTACG"), 0);
}

TEST(Wash, FewerThanThreeVotesAreNone) {
    EXPECT_EQ(Wash("ACG", "AC"), -1);
    EXPECT_EQ(Wash("ACG", "ACG"), 0);
    EXPECT_EQ(Wash("ACG", ""), -1);
    EXPECT_EQ(Wash("", "ACGT"), -1);
}

TEST(Wash, ImpliesNoOccurrence) {
    EXPECT_EQ(Wash("ACGTC", "AAGTA"), 0);
}

TEST(Wash, BaseThatThePatternLacksHasNoVote) {
    EXPECT_EQ(Wash("ACG", "TTTTTT"), -1);
    EXPECT_EQ(Wash("ACG", "TTTTTACG"), 5);
}

TEST(Wash, OtherLettersHaveNoVote) {
    EXPECT_EQ(Wash("ACGN", "NNNNNACG"), 5);
}

// A's second place would lie behind the text, which leaves two votes.
TEST(Wash, PairBehindTheTextHasNoVote) {
    EXPECT_EQ(Wash("ACGA", "ACG"), -1);
}

// Each base would put the start one before the text.
TEST(Wash, StartBeforeTheTextHasNoVote) {
    EXPECT_EQ(Wash("ACGT", "CGT"), -1);
}

TEST(Tod, TurnsLettersToUpperCase) {
    EXPECT_EQ(Tod('a'), 'A');
    EXPECT_EQ(Tod('z'), 'Z');
    EXPECT_EQ(Tod('N'), 'N');
    EXPECT_EQ(Tod('-'), '-');
    EXPECT_EQ(Tod('{'), '{');
}

TEST(Seq2Array, SetsOnlyTheBasesThere) {
    std::vector<int> A(6, 7);
    std::vector<int> T(6, 7);
    std::vector<int> G(6, 7);
    std::vector<int> C(6, 7);
    seq2array("ACGTNa", A.data(), T.data(), G.data(), C.data());
    EXPECT_EQ(A, (std::vector<int>{1, 7, 7, 7, 7, 1}));
    EXPECT_EQ(C, (std::vector<int>{7, 1, 7, 7, 7, 7}));
    EXPECT_EQ(G, (std::vector<int>{7, 7, 1, 7, 7, 7}));
    EXPECT_EQ(T, (std::vector<int>{7, 7, 7, 1, 7, 7}));
}

}  // namespace
}  // namespace lintara
