#include "kmer/shared_kmer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kmer/hashSet.h"
#include "kmer/laid_reads.h"
#include "kmer/overlap_matrix.h"
#include "kmer/plain_seeds.h"
#include "kmer/random_block.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::PlainSeeds;
using testing::RandomBlock;

const detail::SeedPlan SEEDS_OF_SEVEN{4, 7};

class SharedKmer : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }
};

bool Share(const std::string& a, const std::string& b) {
    const std::vector<Read> reads{Read(a, 0), Read(b, 0)};
    LaidReads laid;
    LayOut(reads, 0, SEEDS_OF_SEVEN, laid);
    return ShareKey(laid.reads[0], laid.reads[1], SEEDS_OF_SEVEN.pattlen);
}

/// The reads that share a key with one, by the sampled words as far as they go.
std::set<int> Partners(SampledWords& samples, const LaidReads& laid, int read) {
    std::set<int> partners;
    const LaidRead& given = laid.reads[read];
    if (!samples.Covers(given)) {
        for (int i = 0; i < laid.num(); ++i) {
            if (ShareKey(given, laid.reads[i], laid.plan.pattlen)) partners.insert(i);
        }
        return partners;
    }
    FirstPlaces places;
    places.Enter(given.words, given.length, laid.plan.pattlen);
    samples.EachLead(read, given, read % 2 == 0 ? &places : nullptr, [&](int other, int shift) {
        const LaidRead& met = laid.reads[other];
        Diagonal diagonal;
        LayUnder(given, met, shift, laid.longest, diagonal);
        if (!samples.ShareKeyOn(given, met, diagonal)) return false;
        partners.insert(other);
        return true;
    });
    for (const int other : samples.strange()) {
        if (ShareKey(given, laid.reads[other], laid.plan.pattlen)) partners.insert(other);
    }
    return partners;
}

TEST_F(SharedKmer, PairsAreThoseOfTheTable) {
    std::mt19937 random(20261121);
    const int lengths[] = {1, 2, 5, 7, 11, 15, 16, 21, 29, 30, 31, 32, 33, 35, 40};
    LaidReads laid;
    SampledWords samples;
    for (int round = 0; round < 450; ++round) {
        BlockKind kind;
        Kmer = lengths[round % 15];
        kind.num = testing::Uniform(random, 3, 90);
        kind.genome = testing::Uniform(random, 60, 800);
        kind.unit = round % 4 == 0 ? testing::Uniform(random, 1, 45) : 0;
        kind.error = round % 5 * 0.02;
        kind.others = round % 7 == 0 ? "NNNacgtR-" : round % 2 == 0 ? "N" : "ACGT";
        const std::vector<Read> reads = RandomBlock(random, kind, 200);
        const int num = static_cast<int>(reads.size());
        LayOut(reads, 0, {4, 4 + round % 4}, laid);
        samples.Index(laid);
        std::uint8_t** plain = PlainSeeds(reads);
        int differ = 0;
        for (int i = 0; i < num; ++i) {
            const std::set<int> partners = Partners(samples, laid, i);
            for (int j = i + 1; j < num; ++j) {
                const bool share = plain[i][j] != 0;
                differ += ShareKey(laid.reads[i], laid.reads[j], laid.plan.pattlen) != share ? 1 : 0;
                differ += (partners.count(j) != 0) != share ? 1 : 0;
            }
        }
        EXPECT_EQ(differ, 0) << "round " << round;
        free_matrix(plain, static_cast<std::uint16_t>(num));
    }
}

TEST_F(SharedKmer, KeysAreThoseOfTheTable) {
    std::mt19937 random(20261125);
    for (int round = 0; round < 300; ++round) {
        Kmer = 1 + round % 45;
        BlockKind kind;
        kind.genome = 120;
        kind.error = 0.1;
        kind.others = round % 2 == 0 ? "NNNacgtR-" : "N";
        const std::string seq = testing::ReadOf(random, testing::RandomGenome(random, kind), 100, kind);
        HashSet* hash = init_hashset(1000, 0.75F);
        fill_hash_set31(hash, seq, 0);
        std::set<std::uint64_t> expected;
        for (std::uint64_t slot = 0; slot < hash->size; ++slot) {
            if (!is_entity_null(hash->nul_flag, slot)) expected.insert(hash->array[slot].kmer);
        }
        free_hash(hash);
        std::vector<std::uint64_t> keys;
        WriteKeys(seq.data(), static_cast<int>(seq.size()), keys);
        EXPECT_EQ(std::set<std::uint64_t>(keys.begin(), keys.end()), expected) << "Kmer " << Kmer;
    }
}

TEST_F(SharedKmer, FirstKmerOfAReadMatchesItsLikeOnlyBehindAnA) {
    // The spare bits of a 31-mer's key hold its last base but one when there is a k-mer before it, and 0 (A) else.
    Kmer = 31;
    const std::string with_c = "ACGGTCATTGACCTGATCGATTTACGGATCT";
    const std::string with_a = "ACGGTCATTGACCTGATCGATTTACGGATAT";
    EXPECT_FALSE(Share(with_c, "G" + with_c));
    EXPECT_FALSE(Share("G" + with_c, with_c));
    EXPECT_TRUE(Share("G" + with_c, "C" + with_c));
    EXPECT_TRUE(Share(with_a, "G" + with_a));
    EXPECT_TRUE(Share("G" + with_a, with_a));
    EXPECT_TRUE(Share(with_c, with_c));
}

TEST_F(SharedKmer, ReadsShorterThanAKmerShareNone) {
    Kmer = 31;
    EXPECT_FALSE(Share(std::string(30, 'A'), std::string(30, 'A')));
    EXPECT_FALSE(Share("", std::string(40, 'A')));
    EXPECT_TRUE(Share(std::string(31, 'A'), std::string(31, 'A')));
}

TEST_F(SharedKmer, LowerCaseBasesHaveTheKeysOfUpperCaseOnes) {
    Kmer = 31;
    const std::string seq = "ACGGTCATTGACCTGATCGATTTACGGATATC";
    std::string lower = seq;
    for (char& byte : lower) byte = static_cast<char>(byte | 0x20);
    EXPECT_TRUE(Share(seq, lower));
}

TEST_F(SharedKmer, SureOnlyOfAStretchThatFillsAKey) {
    // A 31-mer's key has room for the last base but one of the k-mer before it, so that 32 equal bases are enough.
    Kmer = 31;
    const std::string a(70, 'A');
    std::string b = a;
    EXPECT_TRUE(SurelyShareKey(a.data(), b.data(), 32, 32));
    EXPECT_TRUE(SurelyShareKey(a.data(), b.data(), 32, 0));
    EXPECT_FALSE(SurelyShareKey(a.data(), b.data(), 31, 31));
    b[32] = 'C';
    EXPECT_TRUE(SurelyShareKey(a.data(), b.data(), 70, 69));
    b[20] = 'C';
    EXPECT_TRUE(SurelyShareKey(a.data(), b.data(), 70, 68));
    EXPECT_TRUE(SurelyShareKey(a.data(), b.data(), 65, 63));
    EXPECT_FALSE(SurelyShareKey(a.data(), b.data(), 64, 62));
    b = a;
    b[31] = b[63] = 'C';
    EXPECT_FALSE(SurelyShareKey(a.data(), b.data(), 70, 68));
}

TEST_F(SharedKmer, LongestStretchIsFoundWhereverItLies) {
    std::mt19937 random(20261126);
    for (int round = 0; round < 3000; ++round) {
        Kmer = testing::Uniform(random, 32, 40);
        const int n = testing::Uniform(random, 1, 120);
        std::string a(n, 'A');
        std::string b = a;
        for (int k = testing::Uniform(random, 0, 4); k > 0; --k) b[random() % b.size()] = 'C';
        int longest = 0;
        int stretch = 0;
        int equal = 0;
        for (int i = 0; i < n; ++i) {
            stretch = a[i] == b[i] ? stretch + 1 : 0;
            longest = std::max(longest, stretch);
            equal += a[i] == b[i] ? 1 : 0;
        }
        EXPECT_EQ(SurelyShareKey(a.data(), b.data(), n, equal), longest >= Kmer) << b;
        EXPECT_EQ(SurelyShareKey(a.data(), b.data(), n, 0), longest >= Kmer) << b;
    }
}

TEST_F(SharedKmer, CountsOfAKmerFitSixteenBits) {
    const auto fit = [](int num, const std::string& seq) {
        const std::vector<Read> reads(static_cast<std::size_t>(num), Read(seq, 0));
        LaidReads laid;
        LayOut(reads, 0, SEEDS_OF_SEVEN, laid);
        return CountsFit(laid);
    };
    Kmer = 31;
    const std::string repeat(100, 'C');  // 70 k-mers
    EXPECT_TRUE(fit(936, repeat));       // 936 * 70 = 65,520
    EXPECT_FALSE(fit(937, repeat));      // 937 * 70 = 65,590
    std::mt19937 random(5);
    const std::string unique = testing::RandomGenome(random, BlockKind{}).substr(0, 100);
    EXPECT_TRUE(fit(5000, unique));  // each k-mer stands once in a read
    Kmer = 5;                        // shorter than a word: 96 k-mers that may all be the same
    EXPECT_TRUE(fit(682, unique));
    EXPECT_FALSE(fit(683, unique));
}

}  // namespace
}  // namespace lintara
