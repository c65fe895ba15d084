#include "kmer/pair_overlap.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "align/overlap.h"
#include "kmer/overlap_matrix.h"
#include "kmer/random_block.h"
#include "kmer/seed_runs.h"
#include "kmer/seed_words.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::RandomBlock;

class PairOverlap : public testing::ThreadStreamsTest {};

int StartOf(int type) {
    return type == 1 || type == 3 ? 1 : 0;
}

int EndOf(int type, int num) {
    return type == 2 || type == 3 ? num - 1 : num;
}

/// Whether OverlapBlock() took the block; holds all it wrote against the plain road.
bool ExpectPlainCells(const std::vector<Read>& reads, int method, int type, const std::string& what) {
    const int num = static_cast<int>(reads.size());
    PairMarks marks;
    EXPECT_TRUE(MarkSharedKmers(reads, marks)) << what;
    std::uint8_t** plain = marks2matrix(marks);
    std::uint8_t** fast = marks2matrix(marks);
    EdgeOverlaps edges;
    const bool taken = OverlapBlock(fast, reads, marks, method, type, &edges);
    if (taken) {
        overlap_matrix(plain, reads, method, type, 0);
        int differ = 0;
        for (int i = 0; i < num; ++i) {
            for (int j = 0; j < num; ++j) differ += plain[i][j] != fast[i][j] ? 1 : 0;
        }
        EXPECT_EQ(differ, 0) << what;
        EXPECT_EQ(edges.with_before.empty(), StartOf(type) == 0) << what;
        EXPECT_EQ(edges.with_after.empty(), EndOf(type, num) == num) << what;
        for (int i = StartOf(type); i < EndOf(type, num); ++i) {
            if (StartOf(type) == 1) {
                EXPECT_EQ(edges.with_before[i], overlap(reads.front().seq, reads[i].seq, method, Match_ratio)) << what;
            }
            if (EndOf(type, num) < num) {
                EXPECT_EQ(edges.with_after[i], overlap(reads[i].seq, reads.back().seq, method, Match_ratio)) << what;
            }
        }
    }
    free_matrix(plain, static_cast<std::uint16_t>(num));
    free_matrix(fast, static_cast<std::uint16_t>(num));
    return taken;
}

TEST_F(PairOverlap, CellsAndEdgesAreThoseOfThePlainSearch) {
    std::mt19937 random(20261122);
    const int methods[] = {0, 1, 2, 5};
    const double ratios[] = {0.95, 0.9, 0.99, 1.0, 0.8};
    int taken = 0;
    for (int round = 0; round < 800; ++round) {
        BlockKind kind;
        kind.num = testing::Uniform(random, 3, 80);
        kind.genome = testing::Uniform(random, 260, 700);
        kind.unit = round % 3 == 0 ? testing::Uniform(random, 1, 45) : 0;
        kind.error = round % 4 * 0.01;
        kind.longest = round % 7 == 0 ? 255 : 100;
        kind.others = round % 5 == 0 ? "NNNacgtR-" : "N";
        Kmer = round % 2 == 0 ? 31 : 15;
        Match_ratio = ratios[round / 4 % 5];
        Min_overlap = round % 6 == 0 ? 20 : 30;
        false_ratio = round % 9 == 0 ? 0.2 : 0.15;
        const bool is_taken = ExpectPlainCells(RandomBlock(random, kind, 255), methods[round % 4], round / 2 % 5,
                                               "round " + std::to_string(round));
        taken += is_taken ? 1 : 0;
    }
    EXPECT_GT(taken, 700);
}

TEST_F(PairOverlap, EdgesMayBeLongerThanATabledRead) {
    std::mt19937 random(20261123);
    for (int round = 0; round < 60; ++round) {
        BlockKind kind;
        kind.genome = 900;
        kind.longest = 150;
        kind.unit = round % 2 == 0 ? 30 : 0;
        EXPECT_TRUE(ExpectPlainCells(RandomBlock(random, kind, 300), 1, 3, "round " + std::to_string(round)));
    }
}

TEST_F(PairOverlap, LeavesToThePlainSearchWhatTheTablesDoNotCover) {
    const std::string edge(200, 'A');
    const Read before(edge, 0);
    const auto taken = [&](const std::vector<Read>& reads, int method, int type) {
        PairMarks marks;
        EXPECT_TRUE(MarkSharedKmers(reads, marks));
        std::uint8_t** matrix = marks2matrix(marks);
        EdgeOverlaps edges;
        const bool result = OverlapBlock(matrix, reads, marks, method, type, &edges);
        free_matrix(matrix, static_cast<std::uint16_t>(reads.size()));
        return result;
    };
    const Read usual(std::string(100, 'C'), 0);
    EXPECT_TRUE(taken({before, usual, before}, 1, 3));
    EXPECT_TRUE(taken({before, Read(std::string(200, 'C'), 0), before}, 1, 3));
    EXPECT_FALSE(taken({before, Read(std::string(201, 'C'), 0), before}, 1, 3));  // to be cut at the edge
    const Read shorter(std::string(199, 'A'), 0);
    EXPECT_FALSE(taken({shorter, usual, before}, 1, 3));  // the after edge itself may be cut
    EXPECT_TRUE(taken({before, usual, shorter}, 1, 3));
    EXPECT_TRUE(taken({usual, Read(std::string(255, 'C'), 0), usual}, 1, 0));
    EXPECT_FALSE(taken({usual, Read(std::string(256, 'C'), 0), usual}, 1, 0));  // overlaps do not fit a cell
    EXPECT_TRUE(taken({before, Read("CCCCCCC", 0), before}, 1, 3));
    EXPECT_FALSE(taken({before, Read("CCCCCC", 0), before}, 1, 3));  // shorter than a seed
    EXPECT_FALSE(taken({before, usual, before}, 3, 3));              // a method that misses places
    EXPECT_FALSE(taken({before, usual, before}, 4, 3));
    EXPECT_FALSE(taken({before, before}, 1, 3));  // no inner read
    false_ratio = 0.1;                            // seeds of 10 bases
    EXPECT_FALSE(taken({before, usual, before}, 1, 3));
}

TEST_F(PairOverlap, WordsAreNumberedByTheirBytes) {
    const std::string seq = "ACGTACGTNACGTAaCGTA";
    std::vector<std::uint16_t> words(seq.size());
    NumberWords(seq, 4, words.data());
    for (std::size_t i = 0; i + 4 <= seq.size(); ++i) {
        const std::string word = seq.substr(i, 4);
        const bool is_word = word.find_first_not_of("ACGT") == std::string::npos;
        EXPECT_EQ(words[i] != NoWord(4), is_word) << i;
        for (std::size_t j = 0; is_word && j < i; ++j) {
            EXPECT_EQ(words[i] == words[j], word == seq.substr(j, 4)) << i << " and " << j;
        }
    }
}

TEST_F(PairOverlap, LeftmostPlaceOfAWordIsFoundInEachReadOfMany) {
    std::mt19937 random(20261124);
    FirstPlaces places(4);
    for (int round = 0; round < 700; ++round) {  // more reads than there are stamps
        std::string seq;
        const int length = testing::Uniform(random, 4, LONGEST_TABLED_READ);
        for (int i = 0; i < length; ++i) seq += "ACGTN"[random() % 41 / 10];
        std::vector<std::uint16_t> words(seq.size());
        NumberWords(seq, 4, words.data());
        places.Enter(words.data(), length);
        std::string other;
        for (int i = 0; i < 60; ++i) other += base[random() % 4];
        std::vector<std::uint16_t> sought(other.size());
        NumberWords(other, 4, sought.data());
        for (int i = 0; i + 4 <= 60; ++i) {
            const std::size_t place = seq.find(other.substr(i, 4));
            EXPECT_EQ(places.Find(sought[i]), place == std::string::npos ? -1 : static_cast<int>(place));
        }
        EXPECT_EQ(places.Find(NoWord(4)), -1);
    }
}

}  // namespace
}  // namespace lintara
