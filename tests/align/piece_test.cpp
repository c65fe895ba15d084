#include "align/piece.h"

#include <gtest/gtest.h>

namespace lintara::join {
namespace {

TEST(Piece, HeadOfANegativeCountIsTheWhole) {
    EXPECT_EQ(Head("ACGT", 2), "AC");
    EXPECT_EQ(Head("ACGT", 0), "");
    EXPECT_EQ(Head("ACGT", 9), "ACGT");
    EXPECT_EQ(Head("ACGT", -1), "ACGT");
}

TEST(Piece, TailAndFromAreClamped) {
    EXPECT_EQ(Tail("ACGT", 3), "CGT");
    EXPECT_EQ(Tail("ACGT", 9), "ACGT");
    EXPECT_EQ(Tail("ACGT", 0), "");
    EXPECT_EQ(Tail("ACGT", -1), "");
    EXPECT_EQ(From("ACGT", 3), "T");
    EXPECT_EQ(From("ACGT", 4), "");
    EXPECT_EQ(From("ACGT", 9), "");
    EXPECT_EQ(From("ACGT", -1), "ACGT");
}

TEST(Piece, CutBeyondTheFrontLeavesTheWhole) {
    EXPECT_EQ(WithoutLast("ACGT", 1), "ACG");
    EXPECT_EQ(WithoutLast("ACGT", 4), "");
    EXPECT_EQ(WithoutLast("ACGT", 5), "ACGT");
    EXPECT_EQ(WithoutLast("ACGT", -2), "ACGT");
}

TEST(Piece, RunOfNIsEmptyBelowOne) {
    EXPECT_EQ(Ns(3), "NNN");
    EXPECT_EQ(Ns(0), "");
    EXPECT_EQ(Ns(-4), "");
    EXPECT_EQ(Length("ACGT"), 4);
}

}  // namespace
}  // namespace lintara::join
