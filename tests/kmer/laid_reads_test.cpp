#include "kmer/laid_reads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "kmer/random_block.h"
#include "run/settings.h"

namespace lintara {
namespace {

std::vector<Read> Reads(const std::vector<std::string>& seqs) {
    std::vector<Read> reads;
    for (const std::string& seq : seqs) reads.emplace_back(seq, 0);
    return reads;
}

TEST(LaidReads, InnerReadsAreThoseBetweenTheEdges) {
    const std::vector<Read> reads = Reads({std::string(200, 'A'), "ACGTACGTAC", "ACGTACG", std::string(150, 'C')});
    LaidReads laid;
    const int starts[] = {0, 1, 0, 1, 0};
    const int ends[] = {4, 4, 3, 3, 4};
    const int longest[] = {200, 150, 200, 10, 200};
    for (int type = 0; type < 5; ++type) {
        LayOut(reads, type, {4, 7}, laid);
        EXPECT_EQ(laid.num(), 4);
        EXPECT_EQ(laid.start, starts[type]) << type;
        EXPECT_EQ(laid.end, ends[type]) << type;
        EXPECT_EQ(laid.longest, longest[type]) << type;
    }
}

TEST(LaidReads, SeedsAreTheWordsAtMultiplesOfTheirLength) {
    const std::vector<Read> reads = Reads({"ACGTACGTAC", "ACGTNCGTACGT", "acgtACGT", "ACG"});
    LaidReads laid;
    LayOut(reads, 0, {3, 4}, laid);
    EXPECT_EQ(laid.reads[0].seeds, 2);
    EXPECT_EQ(laid.reads[0].seed_words[0], laid.reads[0].words[0]);
    EXPECT_EQ(laid.reads[0].seed_words[1], laid.reads[0].words[4]);
    EXPECT_EQ(laid.reads[0].seed_words[2], NoWord(4));
    EXPECT_FALSE(laid.reads[0].strange);
    EXPECT_EQ(laid.reads[1].seeds, 3);
    EXPECT_EQ(laid.reads[1].seed_words[1], NoWord(4));  // NCGT
    EXPECT_TRUE(laid.reads[1].strange);
    EXPECT_TRUE(laid.reads[1].odd);
    EXPECT_TRUE(laid.reads[2].strange);
    EXPECT_TRUE(laid.reads[2].odd);
    EXPECT_EQ(laid.reads[3].seeds, 0);
    EXPECT_FALSE(laid.reads[3].strange);
}

TEST(LaidReads, OnlySeedsMakeAReadOdd) {
    LaidReads laid;
    const std::vector<Read> reads = Reads({"ACGTACGTNAC"});
    LayOut(reads, 0, {2, 4}, laid);
    EXPECT_TRUE(laid.reads[0].strange);
    EXPECT_FALSE(laid.reads[0].odd);
}

TEST(LaidReads, ReadThatBecameShorterIsLaidOutAnew) {
    std::vector<Read> reads = Reads({"ACGTACGTAC", "CCCCGGGGTTTT"});
    LaidReads laid;
    LayOut(reads, 0, {2, 4}, laid);
    reads[1].seq.erase(0, 4);
    LayOutAgain(reads, 1, laid);
    EXPECT_EQ(laid.reads[1].length, 8);
    EXPECT_EQ(std::string(laid.reads[1].bases, 8), "GGGGTTTT");
    const std::vector<Read> other = Reads({"CCCC"});
    LaidReads laid_other;
    LayOut(other, 0, {2, 4}, laid_other);
    EXPECT_EQ(FindWord(laid.reads[1], 4, laid_other.reads[0].words[0]), -1);
}

TEST(LaidReads, WordsAndSeedsAreFoundWhereTheTextHasThem) {
    std::mt19937 random(20261127);
    for (int round = 0; round < 2000; ++round) {
        testing::BlockKind kind;
        kind.genome = testing::Uniform(random, 20, 400);
        kind.unit = round % 3 == 0 ? testing::Uniform(random, 1, 30) : 0;
        kind.error = round % 4 * 0.02;
        const int pattlen = 4 + round % 4;
        const detail::SeedPlan plan{testing::Uniform(random, 1, MOST_SEEDS), pattlen};
        const std::string genome = testing::RandomGenome(random, kind);
        const std::vector<Read> reads =
            Reads({testing::ReadOf(random, genome, testing::Uniform(random, pattlen, 255), kind),
                   testing::ReadOf(random, genome, testing::Uniform(random, pattlen, 255), kind)});
        LaidReads laid;
        LayOut(reads, 0, plan, laid);
        const LaidRead& from = laid.reads[0];
        const LaidRead& in = laid.reads[1];
        const std::string& text = reads[1].seq;
        int first = -1;
        for (int k = 0; k < from.seeds; ++k) {
            const std::string seed = reads[0].seq.substr(static_cast<std::size_t>(k) * pattlen, pattlen);
            if (seed.find_first_not_of("ACGT") != std::string::npos) continue;
            int expected = static_cast<int>(text.find(seed));
            EXPECT_EQ(FindWord(in, pattlen, from.seed_words[k]), expected);
            if (expected >= 0) {
                first = first < 0 ? expected : std::min(first, expected);
                const int next = static_cast<int>(text.find(seed, static_cast<std::size_t>(expected) + 1));
                EXPECT_EQ(FindWord(in, pattlen, from.seed_words[k], expected + 1), next);
            }
        }
        const int skipped = SkipToSeeds(in, pattlen, from);
        EXPECT_EQ(skipped >= 0, first >= 0) << round;
        if (first >= 0) {
            EXPECT_LE(skipped, first);
            EXPECT_GT(skipped + 16, first);
        }
    }
}

}  // namespace
}  // namespace lintara
