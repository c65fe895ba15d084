#include <gtest/gtest.h>

#include <new>
#include <random>
#include <string>
#include <vector>

#include "align/bases.h"
#include "align/search.h"

namespace {

bool no_memory = false;

}  // namespace

// The one allocation that may fail without an exception, made to fail on demand.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return no_memory ? nullptr : ::operator new[](size);
}

namespace lintara {
namespace {

using lintara::testing::RandomBases;
using ::testing::Eq;
using ::testing::ExitedWithCode;

std::vector<int> Prefix(const char* patt) {
    std::vector<int> prefix(CharLen(patt), -9);
    SetPrefix(patt, prefix.data());
    std::vector<int> same(prefix.size(), -9);
    SetPrefix(std::string(patt), same.data());
    EXPECT_EQ(prefix, same);
    return prefix;
}

TEST(SetPrefix, HoldsTheLongestBorder) {
    EXPECT_EQ(Prefix("ACACAG"), (std::vector<int>{0, 0, 1, 2, 3, 0}));
    EXPECT_EQ(Prefix("AAAA"), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(Prefix("AACAAA"), (std::vector<int>{0, 1, 0, 1, 2, 2}));
}

TEST(CharLen, CountsOrGivesMinusOne) {
    EXPECT_EQ(CharLen("ACG"), 3);
    EXPECT_EQ(CharLen(""), 0);
    EXPECT_EQ(CharLen(nullptr), -1);
}

TEST(KMP, BothFormsEqualThePlainFind) {
    std::mt19937 random(41);
    for (int round = 0; round < 20000; ++round) {
        const std::string letters = round % 2 == 0 ? "AC" : "ACGTNn";
        const std::string str = RandomBases(random, 1 + random() % 40, letters);
        const std::string patt = RandomBases(random, 1 + random() % 6, letters);
        if (patt.size() > str.size()) continue;
        const std::size_t place = str.find(patt);
        ASSERT_EQ(KMP(patt, str), place == std::string::npos ? -1 : static_cast<int>(place)) << patt << " in " << str;
        const int pos = static_cast<int>(random() % (str.size() + 2));
        const std::size_t later = str.find(patt, pos);
        ASSERT_EQ(KMP(str.c_str(), pos, patt.c_str()), later == std::string::npos ? -1 : static_cast<int>(later))
            << patt << " in " << str << " from " << pos;
    }
}

TEST(KMP, TextFormStartsAtItsPosition) {
    EXPECT_EQ(KMP("ACACA", 0, "ACA"), 0);
    EXPECT_EQ(KMP("ACACA", 1, "ACA"), 2);
    EXPECT_EQ(KMP("ACACA", 3, "ACA"), -1);
    EXPECT_EQ(KMP("ACACA", 9, "ACA"), -1);
    EXPECT_EQ(KMP("ACACA", -1, "ACA"), -1);
}

TEST(KMP, TextFormTakesNullAndEmptyAsNotFound) {
    EXPECT_EQ(KMP(nullptr, 0, "ACA"), -1);
    EXPECT_EQ(KMP("ACA", 0, nullptr), -1);
    EXPECT_EQ(KMP("", 0, "ACA"), -1);
    EXPECT_EQ(KMP("ACA", 0, ""), -1);
    EXPECT_EQ(KMP("AC", 0, "ACA"), -1);
}

TEST(KMPDeathTest, BadLengthsAreFatalWithoutAMessage) {
    EXPECT_EXIT(KMP("", "ACG"), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(KMP("ACGT", "ACG"), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(KMP2("AC", "ACG"), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(KMP2("ACGT", "ACG"), ExitedWithCode(255), Eq(""));
}

TEST(KMP2, FindsAnOccurrenceAfterAMiss) {
    EXPECT_EQ(KMP2("ACG", "TACG"), 1);
    EXPECT_EQ(KMP2("ACG", "ACG"), 0);
    EXPECT_EQ(KMP2("ACG", "TTTT"), -1);
}

TEST(KMP2, PassesOverAStartAfterOneOrTwoEqualCharacters) {
    EXPECT_EQ(KMP2("AAT", "AAAT"), -1);
    EXPECT_EQ(KMP2("ACG", "AACG"), -1);
    // The start at 1 is passed over, that at 5 stands behind a T and is met.
    EXPECT_EQ(KMP2("AAT", "AAATTAAT"), 5);
}

// 7 characters fit at 0; ACG stands 4 to its left, so that the search goes on at 5, behind the occurrence at 4.
TEST(KMP2, PassesOverAnOccurrenceByItsJump) {
    EXPECT_EQ(KMP2("ACGTACGA", "ACGTACGTACGA"), -1);
}

// 7 characters fit at 0; T has a repeat at distance 1, C and A at 5: the longer one counts, and the search goes on at
// 6, behind the occurrence at 5.
TEST(KMP2, JumpsByTheLongestRepeat) {
    EXPECT_EQ(KMP2("CATTTCAG", "CATTTCATTTCAG"), -1);
}

TEST(KMP2, ReportsOnlyOccurrences) {
    std::mt19937 random(42);
    int found = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::string letters = round % 2 == 0 ? "AC" : "ACGT";
        const std::string str = RandomBases(random, 12 + random() % 40, letters);
        const std::string patt = str.substr(random() % (str.size() - 3), 3 + random() % 9);
        const int pos = KMP2(patt, str);
        if (pos < 0) continue;
        ++found;
        ASSERT_EQ(str.compare(pos, patt.size(), patt), 0) << patt << " in " << str;
    }
    EXPECT_GT(found, 5000);
}

std::vector<int> Next(const std::string& patt) {
    std::vector<int> next(patt.size() + 1, -9);
    GetNextValue(patt, next.data());
    return next;
}

TEST(GetNextValue, PassesOverCharactersThatWouldMissAgain) {
    EXPECT_EQ(Next("AAAT"), (std::vector<int>{-1, -1, -1, 2, 0}));
    EXPECT_EQ(Next("ACAC"), (std::vector<int>{-1, 0, -1, 0, 2}));
    EXPECT_EQ(Next(""), std::vector<int>{-1});
}

TEST(KMPSearch, TakesTheTextFirst) {
    EXPECT_EQ(KMPSearch("TTACGACG", "ACG"), 2);
    EXPECT_EQ(KMPSearch("ACG", "TTACGACG"), -1);
    EXPECT_EQ(KMPSearch("AACAACAAT", "AACAAT"), 3);
}

TEST(KMPSearch, EmptyIsNotFound) {
    EXPECT_EQ(KMPSearch("", "A"), -1);
    EXPECT_EQ(KMPSearch("A", ""), -1);
}

TEST(KMPSearch, EqualsThePlainFind) {
    std::mt19937 random(43);
    for (int round = 0; round < 20000; ++round) {
        const std::string letters = round % 2 == 0 ? "AC" : "ACGTNn";
        const std::string str = RandomBases(random, 1 + random() % 50, letters);
        const std::string patt = RandomBases(random, 1 + random() % 8, letters);
        const std::size_t place = str.find(patt);
        ASSERT_EQ(KMPSearch(str, patt), place == std::string::npos ? -1 : static_cast<int>(place))
            << patt << " in " << str;
    }
}

TEST(KMPSearchDeathTest, EndsWithStatus1WithoutMemory) {
    EXPECT_EXIT(
        {
            no_memory = true;
            KMPSearch("ACGACG", "ACG");
        },
        ExitedWithCode(1), Eq(""));
}

}  // namespace
}  // namespace lintara
