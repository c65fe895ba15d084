#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "align/bases.h"
#include "align/search.h"
#include "align/search_detail.h"

namespace lintara {
namespace {

using lintara::testing::RandomBases;
using ::testing::Eq;
using ::testing::ExitedWithCode;

// Runs BM_match and keeps what it prints.
int QuietMatch(const std::string& patt, const std::string& str, std::string* printed = nullptr) {
    std::ostringstream text;
    std::streambuf* const before = std::cout.rdbuf(text.rdbuf());
    const int pos = BM_match(patt, str);
    std::cout.rdbuf(before);
    if (printed != nullptr) *printed = text.str();
    return pos;
}

TEST(BoyerMoore, AllFormsEqualThePlainFind) {
    std::mt19937 random(31);
    const std::string letters[] = {"AC", "ACGT", "ACGTN", "ACGTNacgtn", std::string("\0\x80\xff-N", 5)};
    for (int round = 0; round < 30000; ++round) {
        const std::string& used = letters[random() % 5];
        const std::string str = RandomBases(random, 3 + random() % 60, used);
        std::string patt = RandomBases(random, 3 + random() % 9, used);
        if (random() % 2 == 0) patt = str.substr(random() % (str.size() - 2), 3 + random() % 12);
        if (patt.size() > str.size()) continue;
        const std::size_t place = str.find(patt);
        const int expected = place == std::string::npos ? -1 : static_cast<int>(place);
        ASSERT_EQ(BM3(patt, str), expected) << patt << " in " << str;
        ASSERT_EQ(BM4(patt, str), expected) << patt << " in " << str;
        ASSERT_EQ(QuietMatch(patt, str), expected) << patt << " in " << str;
    }
}

// At the last position N meets n, both of code 4 and both in the pattern.
TEST(BoyerMoore, LettersOfOneCodeDoNotStopTheSearch) {
    for (const auto& search : {BM3, BM4}) {
        EXPECT_EQ(search("NAn", "NANNANNAn"), 6);
        EXPECT_EQ(search("CCA", "CCaCCA"), 3);
        EXPECT_EQ(search("NNN", "ANNANNN"), 4);
    }
}

TEST(BoyerMooreDeathTest, BadLengthsAreFatal) {
    for (const auto& search : {BM3, BM4}) {
        EXPECT_EXIT(search("ACGT", "ACG"), ExitedWithCode(255),
                    Eq("Error! pattern length should not be longer than string length!\t4\t3\n"));
        EXPECT_EXIT(search("AC", "ACG"), ExitedWithCode(255),
                    Eq("Error! pattern length should not be longer than string length!\t2\t3\n"));
    }
    EXPECT_EXIT(BM_match("ACGT", "ACG"), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(BM_match("AC", "ACG"), ExitedWithCode(255), Eq(""));
}

TEST(BoyerMooreDeathTest, StandingStillIsFatal) {
    EXPECT_EXIT(detail::CheckLastStep(0, "ACG", "TTTG", 'G', 2), ExitedWithCode(255),
                Eq("patt: ACG\nstr: TTTG\nbase: 2 delta1 2\n"));
    EXPECT_EXIT(detail::CheckLastStep(-1, "ACG", "TTTN", 'N', 7), ExitedWithCode(255),
                Eq("patt: ACG\nstr: TTTN\nbase: 4 delta1 7\n"));
    EXPECT_EXIT(detail::CheckInnerStep(0, "ACG", "TTTG", 2, 0), ExitedWithCode(255),
                Eq("step :0delta0 value: 2\t0\npatt: ACG\nstr: TTTG\n"));
    detail::CheckLastStep(1, "ACG", "TTTG", 'G', 2);
    detail::CheckInnerStep(1, "ACG", "TTTG", 2, 0);
}

// The suffix AC stands 2 to its left, its A and C too; C of position 1 has no place before it and takes its entry from
// the right.
TEST(SuffixShifts, NeverRiseToTheRight) {
    const std::string patt = "ACAC";
    const auto shifts = detail::SuffixShifts(
        4, [&patt](int i, int j) { return GetLast(patt.substr(i, j), patt.substr(0, i + j - 1)); });
    EXPECT_EQ(shifts, (std::vector<int>{-1, 2, 2, 2}));
}

TEST(SuffixShifts, WithoutAnEarlierPlaceTheWholePrefixIsPassed) {
    const std::string patt = "ACGT";
    const auto shifts = detail::SuffixShifts(
        4, [&patt](int i, int j) { return GetLast(patt.substr(i, j), patt.substr(0, i + j - 1)); });
    EXPECT_EQ(shifts, (std::vector<int>{-1, 3, 3, 3}));
}

TEST(GetMaxdis, GivesTheLargestDistance) {
    EXPECT_EQ(GetMaxdis("AC", "ACACAC", 4), 2);
    EXPECT_EQ(GetMaxdis("GA", "GATTGA", 4), 4);
    // T stands 2 to the left, TA and TAT 4, and TATG nowhere.
    EXPECT_EQ(GetMaxdis("TATG", "TATCTATG", 4), 4);
}

TEST(GetMaxdis, GivesMinusOneWithoutAnEarlierPlace) {
    EXPECT_EQ(GetMaxdis("T", "ACGT", 3), -1);
}

// T is no base of the pattern: without a repeat of its last base the window goes on by 1, to offset 3; A there moves it
// by 2.
TEST(BMMatch, PrintsItsOffsetAfterEachShift) {
    std::string printed;
    EXPECT_EQ(QuietMatch("ACG", "TTTACG", &printed), 3);
    EXPECT_EQ(printed, "3\n5\n");
}

// ATG fits, C does not: the last G stands 3 to its left, so that the window's end moves from 3 to 6.
TEST(BMMatch, ShiftsByTheNearestRepeatOfASuffix) {
    std::string printed;
    EXPECT_EQ(QuietMatch("GATG", "CATGATG", &printed), 3);
    EXPECT_EQ(printed, "6\n");
}

}  // namespace
}  // namespace lintara
