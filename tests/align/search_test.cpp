#include "align/search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "align/bases.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using lintara::testing::RandomBases;
using ::testing::Eq;
using ::testing::ExitedWithCode;

const int kExact[] = {0, 1, 2, 5};

class SearchTest : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }
};

using StringMatch = SearchTest;
using StringMatchDeathTest = SearchTest;
using PattNumTest = SearchTest;
using PattNumDeathTest = SearchTest;

TEST_F(StringMatch, ExactMethodsGiveTheLeftmostOccurrence) {
    for (const int method : kExact) {
        EXPECT_EQ(string_match("ACG", "TTACGACG", method), 2);
        EXPECT_EQ(string_match("ACG", "TTACCACC", method), -1);
    }
}

TEST_F(StringMatch, PatternMayBeTheWholeText) {
    for (const int method : kExact) EXPECT_EQ(string_match("ACGTA", "ACGTA", method), 0);
}

TEST_F(StringMatch, ComparesCaseAndN) {
    for (const int method : kExact) {
        EXPECT_EQ(string_match("ACG", "acgACG", method), 3);
        EXPECT_EQ(string_match("acg", "ACGacg", method), 3);
        EXPECT_EQ(string_match("NNA", "ANANNNA", method), 4);
        EXPECT_EQ(string_match("NAN", "NNNNAANNAN", method), 7);
    }
}

TEST_F(StringMatch, ExactMethodsEqualThePlainFindForAllBytes) {
    std::mt19937 random(21);
    const std::string letters[] = {"AC", "ACGT", "ACGTN", "ACGTNacgtn", std::string("\0\x80\xff-N", 5)};
    for (int round = 0; round < 30000; ++round) {
        const std::string& used = letters[random() % 5];
        const std::string str = RandomBases(random, 3 + random() % 60, used);
        std::string patt = RandomBases(random, 3 + random() % 6, used);
        if (random() % 2 == 0) patt = str.substr(random() % (str.size() - 2), 3 + random() % 12);
        if (patt.size() > str.size()) continue;
        const std::size_t place = str.find(patt);
        const int expected = place == std::string::npos ? -1 : static_cast<int>(place);
        for (const int method : kExact) {
            ASSERT_EQ(string_match(patt, str, method), expected) << method << ": " << patt << " in " << str;
        }
        ASSERT_EQ(Simple(patt, str, 0), expected) << patt << " in " << str;
    }
}

TEST_F(StringMatch, OneOrTwoBasesWorkWithoutTables) {
    for (const int method : {0, 2}) {
        EXPECT_EQ(string_match("C", "AACC", method), 2);
        EXPECT_EQ(string_match("CC", "AACC", method), 2);
    }
}

TEST_F(StringMatch, LongerPatternIsNotFoundByThePlainSearch) {
    EXPECT_EQ(string_match("ACGT", "ACG", 0), -1);
}

TEST_F(StringMatch, Methods3And4AreTheJumpSearchAndTheVote) {
    EXPECT_EQ(string_match("AAT", "AAAT", 3), -1);
    EXPECT_EQ(string_match("ACG", "TACG", 3), 1);
    // A, G and T vote for 0, and no occurrence stands there.
    EXPECT_EQ(string_match("ACGTC", "AAGTA", 4), 0);
}

TEST_F(StringMatch, NegativeMethodFindsNothing) {
    EXPECT_EQ(string_match("ACG", "ACG", -1), -1);
    EXPECT_EQ(string_match("A", "", -7), -1);
}

TEST_F(StringMatchDeathTest, ShortPatternEndsMethods1And5) {
    for (const int method : {1, 5}) {
        EXPECT_EXIT(string_match("AC", "AACCA", method), ExitedWithCode(255),
                    Eq("Error! pattern length should not be longer than string length!\t2\t5\n"));
        EXPECT_EXIT(string_match("A", "A", method), ExitedWithCode(255),
                    Eq("Error! pattern length should not be longer than string length!\t1\t1\n"));
    }
}

TEST_F(StringMatchDeathTest, PatternLongerThanTheTextIsFatal) {
    for (const int method : {1, 5}) {
        EXPECT_EXIT(string_match("ACGTA", "ACG", method), ExitedWithCode(255),
                    Eq("Error! pattern length should not be longer than string length!\t5\t3\n"));
    }
    for (const int method : {2, 3}) EXPECT_EXIT(string_match("ACGTA", "ACG", method), ExitedWithCode(255), Eq(""));
}

TEST_F(StringMatchDeathTest, EmptyPatternEndsMethod2) {
    EXPECT_EXIT(string_match("", "ACG", 2), ExitedWithCode(255), Eq(""));
}

TEST_F(StringMatchDeathTest, MethodAbove5IsFatal) {
    EXPECT_EXIT(string_match("ACG", "ACG", 6), ExitedWithCode(255), Eq("Method showed not be set larger than 5!\n"));
    EXPECT_EXIT(string_match("", "", 99), ExitedWithCode(255), Eq("Method showed not be set larger than 5!\n"));
}

TEST_F(PattNumTest, GivesOverlappingOccurrences) {
    for (const int method : kExact) {
        Method = method;
        EXPECT_EQ(PattNum("AAA", "AAAAA"), (std::vector<int>{0, 1, 2}));
        EXPECT_EQ(PattNum("ACA", "ACACATACA"), (std::vector<int>{0, 2, 6}));
        EXPECT_EQ(PattNum("GGG", "AAAAA"), std::vector<int>{});
    }
}

TEST_F(PattNumTest, SearchesWithTheRunWideMethod) {
    Method = -1;
    EXPECT_TRUE(PattNum("AAA", "AAAAA").empty());
    // The jump search goes through the rest ATAAAT without the occurrence at its end.
    Method = 3;
    EXPECT_EQ(PattNum("AAT", "AATAAAT"), std::vector<int>{0});
    // 0 and 4 have three votes each; the rest CGTACG is voted on anew, and CG behind the second one is too short.
    Method = 4;
    EXPECT_EQ(PattNum("ACG", "ACGTACG"), (std::vector<int>{0, 4}));
}

TEST_F(PattNumTest, EndsWithAPatternThatIsFoundEverywhere) {
    Method = 0;
    EXPECT_EQ(PattNum("", "AC"), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(PattNum("A", "AACA"), (std::vector<int>{0, 1, 3}));
}

TEST_F(PattNumTest, EqualsAListOfPlainFinds) {
    std::mt19937 random(22);
    for (int round = 0; round < 5000; ++round) {
        Method = kExact[random() % 4];
        const std::string str = RandomBases(random, 8 + random() % 40, "AC");
        const std::string patt = RandomBases(random, 3 + random() % 4, "AC");
        std::vector<int> expected;
        for (std::size_t place = str.find(patt); place != std::string::npos; place = str.find(patt, place + 1)) {
            expected.push_back(static_cast<int>(place));
        }
        ASSERT_EQ(PattNum(patt, str), expected) << patt << " in " << str;
    }
}

TEST_F(PattNumDeathTest, FirstSearchKeepsItsLengthLimits) {
    EXPECT_EXIT(PattNum("ACGTA", "ACG"), ExitedWithCode(255),
                Eq("Error! pattern length should not be longer than string length!\t5\t3\n"));
}

TEST(GetMatchRatio, ComparesTheEndOfTheFirstWithTheStartOfTheSecond) {
    EXPECT_EQ(GetMatchRatio("AACG", "CGTT", 2), 1.0);
    EXPECT_EQ(GetMatchRatio("AACG", "CGTT", 3), 0.0);
    EXPECT_EQ(GetMatchRatio("AACGTA", "CCTATT", 4), 0.75);
}

TEST(GetMatchRatio, ComparesAllOfTheShorterSecond) {
    const std::string read1 = std::string(20, 'A') + std::string(60, 'C') + std::string(20, 'G');
    EXPECT_EQ(GetMatchRatio(read1, std::string(60, 'C'), 80), 1.0);
    EXPECT_EQ(GetMatchRatio(read1, std::string(45, 'C') + std::string(15, 'T'), 80), 0.75);
}

TEST(GetMatchRatio, ComparesAllOfTheShorterFirst) {
    const std::string read2 = std::string(10, 'A') + std::string(100, 'C') + std::string(10, 'A');
    EXPECT_EQ(GetMatchRatio(std::string(100, 'C'), read2, 110), 1.0);
    EXPECT_EQ(GetMatchRatio(std::string(50, 'C') + std::string(50, 'G'), read2, 110), 0.5);
}

TEST(GetMatchRatio, TakesNAndCaseAsTheyAre) {
    EXPECT_EQ(GetMatchRatio("NA", "NC", 2), 0.5);
    EXPECT_EQ(GetMatchRatio("aN", "AA", 2), 0.0);
}

TEST(GetMatchRatioDeathTest, OverlapOutsideBothReadsIsFatal) {
    EXPECT_EXIT(GetMatchRatio(std::string(100, 'A'), std::string(60, 'A'), 101), ExitedWithCode(255),
                Eq("over check: 101\t100\t60\nPlease report the bug to the author!\n"));
    EXPECT_EXIT(GetMatchRatio("ACG", "ACGT", 0), ExitedWithCode(255),
                Eq("over check: 0\t3\t4\nPlease report the bug to the author!\n"));
    EXPECT_EXIT(GetMatchRatio("ACG", "ACGT", -2), ExitedWithCode(255),
                Eq("over check: -2\t3\t4\nPlease report the bug to the author!\n"));
}

TEST(Simple, GivesTheFirstOrTheLastOccurrence) {
    EXPECT_EQ(Simple("AAA", "AAAAA", 1), 2);
    EXPECT_EQ(Simple("AAA", "AAAAA", 0), 0);
    EXPECT_EQ(Simple("ACA", "TACACA", 2), 1);
    EXPECT_EQ(Simple("ACA", "TACACA", 1), 3);
    EXPECT_EQ(Simple("GG", "TACACA", 1), -1);
    EXPECT_EQ(Simple("ACGT", "ACG", 0), -1);
}

TEST(GetLast, GivesTheLastOccurrence) {
    EXPECT_EQ(GetLast("ACA", "TACACA"), 3);
    EXPECT_EQ(GetLast("TAC", "TACACA"), 0);
    EXPECT_EQ(GetLast("GG", "TACACA"), -1);
}

TEST(GetLast, GivesTheLengthDifferenceForAShortText) {
    EXPECT_EQ(GetLast("ACGT", "AC"), -2);
    EXPECT_EQ(GetLast("ACGT", ""), -4);
}

}  // namespace
}  // namespace lintara
