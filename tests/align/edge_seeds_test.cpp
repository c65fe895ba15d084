#include "align/edge_seeds.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "align/bases.h"
#include "align/overlap.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using lintara::testing::RandomBases;
using ::testing::ExitedWithCode;

class EdgeSeedsTest : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }
};

using EdgeSeedsDeathTest = EdgeSeedsTest;

TEST_F(EdgeSeedsTest, CoversTheSearchesThatFindTheLeftmostPlace) {
    const std::string edge = "ACGTACGTACGT";
    const EdgeSeeds seeds(edge);
    for (const int method : {0, 1, 2, 5}) EXPECT_TRUE(seeds.Covers("ACGTACG", method));
    for (const int method : {-1, 3, 4, 6}) EXPECT_FALSE(seeds.Covers("ACGTACG", method));
    EXPECT_FALSE(seeds.Covers("ACGTAC", 1));
    const std::string small = "ACGTAC";
    EXPECT_FALSE(EdgeSeeds(small).Covers("ACGTACG", 1));
}

TEST_F(EdgeSeedsTest, CoversSeedsOfOneLengthOnly) {
    const std::string edge = "ACGTACGTACGT";
    // 2 seeds of 10 bases, but 4 of 5 in forward_overlap().
    Min_overlap = 20;
    EXPECT_FALSE(EdgeSeeds(edge).Covers(edge, 1));
    Min_overlap = 30;
    EXPECT_TRUE(EdgeSeeds(edge).Covers(edge, 1));
}

TEST_F(EdgeSeedsTest, GivesTheLeftmostPlaces) {
    const std::string edge = "ACGTACGTTTTACGTACG";
    const EdgeSeeds seeds(edge);
    // First by searches, then by the table.
    for (int round = 0; round < 30; ++round) {
        EXPECT_EQ(seeds.PlaceOf("ACGTACG"), 0);
        EXPECT_EQ(seeds.PlaceOf("TTTTACG"), 7);
        EXPECT_EQ(seeds.PlaceOf("NTTTACG"), -1);
    }
    EdgeSeeds::Places places;
    // The seeds are ACGTACG and TTTTACG.
    seeds.PlacesIn("TACGTACGTTTTACGACGTACG", places);
    EXPECT_EQ(places[0], 1);
    EXPECT_EQ(places[1], 8);
    EXPECT_EQ(places[2], -1);
}

// A read that shares a stretch with the edge, with some changes.
std::string ReadOf(std::mt19937& random, const std::string& edge, const std::string& letters) {
    std::string read = RandomBases(random, random() % 40, letters);
    read += edge.substr(random() % edge.size(), random() % 80);
    read += RandomBases(random, random() % 40, letters) + "A";
    for (int changes = random() % 5; changes > 0; --changes) read[random() % read.size()] = letters[0];
    return read;
}

TEST_F(EdgeSeedsTest, EqualThePlainFinders) {
    std::mt19937 random(91);
    const std::string letters[] = {"A", "AC", "ACGT", "ACGTNacgtn-"};
    int found = 0;
    for (int round = 0; round < 1500; ++round) {
        Min_overlap = 28 + random() % 12;
        false_ratio = round % 3 == 0 ? 0.1 + random() % 10 * 0.01 : 0.14;
        const std::string& used = letters[random() % 4];
        const std::string unit = RandomBases(random, 1 + random() % 30, used);
        std::string edge = RandomBases(random, Min_overlap + random() % 150, used);
        if (round % 4 == 0) {
            while (edge.size() < 120) edge += unit;
        }
        const EdgeSeeds seeds(edge);
        for (int asked = 0; asked < 20; ++asked) {
            const std::string read = RandomBases(random, Min_overlap, used) + ReadOf(random, edge, used);
            const std::string text = read.substr(random() % 10);
            const double ratio = asked % 3 == 0 ? 1.0 : 0.9;
            const int method = asked % 2 == 0 ? 1 : 5;
            int plain_len = -7;
            int len = -7;
            const int before = overlap_before_len(seeds, text, method, len, ratio);
            ASSERT_EQ(before, overlap_before_len(edge, text, method, plain_len, ratio)) << edge << " " << text;
            ASSERT_EQ(len, plain_len) << edge << " " << text;
            const int after = overlap_after_len(text, seeds, method, len, ratio);
            ASSERT_EQ(after, overlap_after_len(text, edge, method, plain_len, ratio)) << text << " " << edge;
            ASSERT_EQ(len, plain_len) << text << " " << edge;
            const int forward = forward_overlap(seeds, text, method, ratio);
            ASSERT_EQ(forward, forward_overlap(edge, text, method, ratio)) << edge << " " << text;
            found += (before != 0) + (after != 0) + (forward != 0);
        }
    }
    EXPECT_GT(found, 10000);
}

TEST_F(EdgeSeedsTest, ShortReadsTakeThePlainRoad) {
    const std::string edge = "ACGTACGTACGTACGTACGTACGTACGTACGTACGT";
    const EdgeSeeds seeds(edge);
    EXPECT_EQ(forward_overlap(seeds, "ACGT", 1, 0.9), 0);
    EXPECT_EQ(forward_overlap(seeds, "", 1, 0.9), 0);
}

TEST_F(EdgeSeedsDeathTest, ShortReadsEndTheProcessAsThePlainFindersDo) {
    const std::string edge = "ACGTACGTACGTACGTACGTACGTACGTACGTACGT";
    const EdgeSeeds seeds(edge);
    int len = 0;
    EXPECT_EXIT(overlap_before_len(seeds, "ACGT", 1, len, 0.9), ExitedWithCode(255), "pattern length");
    EXPECT_EXIT(overlap_after_len("", seeds, 1, len, 0.9), ExitedWithCode(255), "");
}

}  // namespace
}  // namespace lintara
