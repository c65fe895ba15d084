#include "kmer/seed_runs.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "kmer/hashSet.h"
#include "kmer/overlap_matrix.h"
#include "kmer/random_block.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::RandomBlock;

class SeedRuns : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }
};

/// The seeds by the table of read lists.
std::uint8_t** PlainSeeds(const std::vector<Read>& reads) {
    HashSet* hash = init_hashset(1000, 0.75F);
    fill_hash(hash, reads);
    std::uint8_t** matrix = hash2matrix(hash, static_cast<std::uint16_t>(reads.size()));
    free_hash(hash);
    return matrix;
}

bool IsMarked(const PairMarks& marks, int i, int j) {
    return (marks.Row(i)[j / 64] >> (j % 64) & 1) != 0;
}

void ExpectSeedsOfTable(const std::vector<Read>& reads, const std::string& what) {
    const int num = static_cast<int>(reads.size());
    PairMarks marks;
    ASSERT_TRUE(MarkSharedKmers(reads, marks)) << what;
    std::uint8_t** plain = PlainSeeds(reads);
    std::uint8_t** fast = marks2matrix(marks);
    int differ = 0;
    for (int i = 0; i < num; ++i) {
        for (int j = 0; j < num; ++j) {
            differ += plain[i][j] != fast[i][j] ? 1 : 0;
            differ += IsMarked(marks, i, j) != (plain[i][j] != 0 || plain[j][i] != 0) ? 1 : 0;
        }
    }
    EXPECT_EQ(differ, 0) << what;
    free_matrix(plain, static_cast<std::uint16_t>(num));
    free_matrix(fast, static_cast<std::uint16_t>(num));
}

TEST_F(SeedRuns, MarksThePairsOfTheTable) {
    std::mt19937 random(20261121);
    const int lengths[] = {1, 2, 5, 11, 15, 16, 21, 29, 30, 31, 32, 33, 35, 40};
    for (int round = 0; round < 600; ++round) {
        BlockKind kind;
        Kmer = lengths[round % 14];
        kind.num = testing::Uniform(random, 3, 150);
        kind.genome = testing::Uniform(random, 60, 800);
        kind.unit = round % 3 == 0 ? testing::Uniform(random, 1, 45) : 0;
        kind.error = round % 4 * 0.02;
        kind.others = round % 5 == 0 ? "NNNacgtR-" : "N";
        ExpectSeedsOfTable(RandomBlock(random, kind, 200), "round " + std::to_string(round));
    }
}

TEST_F(SeedRuns, FirstKmerOfAReadMatchesItsLikeOnlyBehindAnA) {
    // The spare bits of a 31-mer's key hold its last base but one when there is a k-mer before it, and 0 (A) else.
    Kmer = 31;
    const std::string with_c = "ACGGTCATTGACCTGATCGATTTACGGATCT";
    const std::string with_a = "ACGGTCATTGACCTGATCGATTTACGGATAT";
    PairMarks marks;
    ASSERT_TRUE(MarkSharedKmers({Read(with_c, 0), Read("G" + with_c, 0), Read("C" + with_c, 0)}, marks));
    EXPECT_FALSE(IsMarked(marks, 0, 1));
    EXPECT_TRUE(IsMarked(marks, 1, 2));
    ASSERT_TRUE(MarkSharedKmers({Read(with_a, 0), Read("G" + with_a, 0)}, marks));
    EXPECT_TRUE(IsMarked(marks, 0, 1));
    EXPECT_TRUE(IsMarked(marks, 1, 0));
}

TEST_F(SeedRuns, ReadIsNoPairWithItself) {
    Kmer = 5;
    PairMarks marks;
    ASSERT_TRUE(MarkSharedKmers({Read("ACGTACGTACGTACGT", 0), Read("GGGGGGGG", 0)}, marks));
    EXPECT_FALSE(IsMarked(marks, 0, 0));
    EXPECT_FALSE(IsMarked(marks, 0, 1));
}

TEST_F(SeedRuns, LeavesToTheTableWhatATableCountsIn16Bits) {
    // A key of 5 bases has room for the six k-mers before it, so that 90 of the 96 keys of each read are equal.
    Kmer = 5;
    const std::vector<Read> most(728, Read(std::string(100, 'C'), 0));
    const std::vector<Read> more(729, Read(std::string(100, 'C'), 0));
    PairMarks marks;
    EXPECT_TRUE(MarkSharedKmers(most, marks));   // 728 * 90 = 65,520
    EXPECT_FALSE(MarkSharedKmers(more, marks));  // 729 * 90 = 65,610
    Kmer = 0;
    EXPECT_FALSE(MarkSharedKmers({Read("ACGT", 0)}, marks));
}

TEST_F(SeedRuns, ReadsShorterThanAKmerHaveNoPairs) {
    Kmer = 31;
    PairMarks marks;
    ASSERT_TRUE(MarkSharedKmers({Read(std::string(30, 'A'), 0), Read(std::string(30, 'A'), 0), Read("", 0)}, marks));
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) EXPECT_FALSE(IsMarked(marks, i, j));
    }
}

}  // namespace
}  // namespace lintara
