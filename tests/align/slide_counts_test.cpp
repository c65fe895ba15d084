#include "align/slide_counts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "align/bases.h"

namespace lintara::detail {
namespace {

using lintara::testing::RandomBases;

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

/// Equal columns of one length, by two texts that are cut out.
int PlainCount(const std::string& read_a, const std::string& read_b, bool from_left, int i) {
    std::string end_a = read_a.substr(static_cast<std::size_t>(std::max(0, Size(read_a) - i)));
    std::string start_b = read_b.substr(0, static_cast<std::size_t>(i));
    if (!from_left) {
        std::reverse(end_a.begin(), end_a.end());
        std::reverse(start_b.begin(), start_b.end());
    }
    int equal = 0;
    for (int k = 0; k < std::min(Size(end_a), Size(start_b)); ++k) equal += end_a[k] == start_b[k] ? 1 : 0;
    return equal;
}

TEST(SlideCounts, CountsEachLength) {
    SlideCounts counts("TTACGT", "ACGTCC", true);
    EXPECT_EQ(counts.Longest(), 6);
    ASSERT_TRUE(counts.Count(1, 100));
    const int equal[] = {0, 0, 0, 4, 0, 0};
    for (int i = 1; i <= 6; ++i) EXPECT_EQ(counts.Equal(i), equal[i - 1]) << i;
}

TEST(SlideCounts, EqualsThePlainCount) {
    std::mt19937 random(2718);
    int given_up = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::string letters = round % 3 == 0 ? "ACGT" : round % 3 == 1 ? "AC" : "ACGTacgt-";
        const std::string genome = RandomBases(random, 700, letters);
        const auto piece = [&] {
            const std::size_t start = random() % 300;
            return genome.substr(start, 1 + random() % (round % 2 == 0 ? 400 : 40));
        };
        std::string a = piece();
        std::string b = piece();
        const bool from_left = a.size() > b.size() || (a.size() == b.size() && round % 2 == 0);
        if (!from_left && a.size() > b.size()) std::swap(a, b);
        SlideCounts counts(a, b, from_left);
        ASSERT_EQ(counts.Longest(), Size(from_left ? a : b));
        const int first = 1 + static_cast<int>(random() % counts.Longest());
        const int last = std::min(counts.Longest(), first + SlideCounts::LENGTHS - 1);
        const int unequal = static_cast<int>(random() % 200);
        const bool told = counts.Count(first, unequal);
        given_up += told ? 0 : 1;
        for (int i = first; i <= last; ++i) {
            const int equal = PlainCount(a, b, from_left, i);
            const int columns = std::min(i, Size(from_left ? b : a));
            if (told) {
                ASSERT_EQ(counts.Equal(i), equal) << a << " " << b << " " << i;
            } else {
                ASSERT_GT(columns - equal, unequal) << a << " " << b << " " << i;
            }
        }
    }
    EXPECT_GT(given_up, 50);
}

TEST(SlideCounts, CountsBeyondAByte) {
    const std::string all(2000, 'A');
    SlideCounts counts(all, all, true);
    ASSERT_TRUE(counts.Count(1937, 0));
    EXPECT_EQ(counts.Equal(2000), 2000);
    EXPECT_EQ(counts.Equal(1937), 1937);
}

TEST(SlideCounts, CoversSizesThatFitItsCounts) {
    EXPECT_TRUE(SlideCounts::Covers(30000, 30000));
    EXPECT_FALSE(SlideCounts::Covers(30001, 10));
    EXPECT_FALSE(SlideCounts::Covers(10, 30001));
}

}  // namespace
}  // namespace lintara::detail
