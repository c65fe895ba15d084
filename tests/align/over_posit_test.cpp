#include <gtest/gtest.h>

#include <random>
#include <string>

#include "align/bases.h"
#include "align/overlap.h"
#include "align/search.h"
#include "align/search_detail.h"

namespace lintara {
namespace {

using lintara::testing::RandomBases;
using ::testing::Eq;
using ::testing::ExitedWithCode;

TEST(OverPosit, FindsAPatternWithoutRepeats) {
    EXPECT_EQ(over_posit("ACGT", "TTACGTACGT"), 2);
    EXPECT_EQ(over_posit("ACGT", "TTACTTACCT"), -1);
    EXPECT_EQ(over_posit("ACGT", "ACGT"), 0);
}

TEST(OverPosit, TakesShortPatterns) {
    EXPECT_EQ(over_posit("C", "AACC"), 2);
    EXPECT_EQ(over_posit("CC", "AACC"), 2);
    EXPECT_EQ(over_posit("", "AACC"), 0);
}

// The table counts only what ends left of a position: in AAAA the pair AA at 2 has its earlier place at 0, not at 1.
TEST(OverPosit, TableLeavesOutOverlappingPlaces) {
    const std::string patt = "AAAA";
    const auto shifts =
        detail::SuffixShifts(4, [&patt](int i, int j) { return Simple(patt.substr(i, j), patt.substr(0, i), 1); });
    EXPECT_EQ(shifts, (std::vector<int>{-1, 2, 2, 1}));
}

// AAA fits at the text's offset 2 and C does not; the shift of 2 for AAA passes over the place at 1.
TEST(OverPosit, PassesOverAPlaceOfASelfOverlappingPattern) {
    EXPECT_EQ(over_posit("CAAAA", "GCAAAA"), -1);
    EXPECT_EQ(BM3("CAAAA", "GCAAAA"), 1);
}

TEST(OverPosit, ReportsOnlyOccurrences) {
    std::mt19937 random(61);
    for (int round = 0; round < 10000; ++round) {
        const std::string str = RandomBases(random, 10 + random() % 40, round % 2 == 0 ? "ACN" : "ACGTNn");
        const std::string patt = str.substr(random() % (str.size() - 3), 1 + random() % 8);
        const int pos = over_posit(patt, str);
        if (pos < 0) continue;
        ASSERT_EQ(str.compare(pos, patt.size(), patt), 0) << patt << " in " << str;
    }
}

TEST(OverPositDeathTest, LongerPatternIsFatalWithoutAMessage) {
    EXPECT_EXIT(over_posit("ACGT", "ACG"), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(over_posit("AC", "A"), ExitedWithCode(255), Eq(""));
}

}  // namespace
}  // namespace lintara
