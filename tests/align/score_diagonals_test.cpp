#include "align/score_diagonals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "align/bases.h"
#include "align/edge_align.h"
#include "run/settings.h"

namespace lintara::detail {
namespace {

using lintara::testing::RandomBases;

// The plain table, row by row.
struct PlainTable {
    PlainTable(const std::string& seq_i, const std::string& seq_j) : j_size(static_cast<int>(seq_j.size()) + 1) {
        const int i_size = static_cast<int>(seq_i.size()) + 1;
        scores.resize(i_size * j_size);
        directions.resize(i_size * j_size);
        for (int i = 1; i < i_size; ++i) {
            for (int j = 1; j < j_size; ++j) {
                const int at = i * j_size + j;
                const int pair = alphabet[seq_i[i - 1]] == alphabet[seq_j[j - 1]] ? 3 : -5;
                get_max_score(scores[at - j_size - 1] + pair, scores[at - 1] - 5, scores[at - j_size] - 5, scores[at],
                              directions[at]);
            }
        }
    }

    int j_size;
    std::vector<int> scores;
    std::vector<int> directions;
};

// A second sequence that shares stretches with the first, with changes, gaps and insertions.
std::string Relative(std::mt19937& random, const std::string& seq, const std::string& letters) {
    std::string other = RandomBases(random, random() % 20, letters);
    for (const char letter : seq.substr(random() % (seq.size() + 1))) {
        if (random() % 12 == 0) other += letters[random() % letters.size()];
        if (random() % 12 != 0) other += letter;
    }
    return other;
}

TEST(ScoreDiagonals, EqualThePlainTableForAllShapes) {
    std::mt19937 random(21);
    const std::string letters[] = {"A", "AC", "ACGT", "ACGTNacgtn-"};
    for (int round = 0; round < 3000; ++round) {
        const std::string& used = letters[random() % 4];
        const int most = round % 100 == 0 ? 400 : 40;
        const std::string seq_i = RandomBases(random, random() % most, used);
        std::string seq_j = RandomBases(random, random() % most, used);
        if (random() % 2 == 0) seq_j = Relative(random, seq_i, used);
        const PlainTable plain(seq_i, seq_j);
        const ScoreDiagonals table(seq_i, seq_j);
        for (int i = 0; i <= static_cast<int>(seq_i.size()); ++i) {
            for (int j = 0; j < plain.j_size; ++j) {
                const int at = i * plain.j_size + j;
                ASSERT_EQ(table.Score(i, j), plain.scores[at]) << seq_i << " " << seq_j << " " << i << " " << j;
                if (i == 0 || j == 0) continue;
                ASSERT_EQ(table.Direction(i, j), plain.directions[at]) << seq_i << " " << seq_j << " " << i << " " << j;
            }
        }
        int plain_i = static_cast<int>(seq_i.size());
        int plain_j = static_cast<int>(seq_j.size());
        int plain_score = -1;
        locate_max_score(plain.scores.data(), plain_i, plain_j, plain.j_size, plain_score);
        int i = -1;
        int j = -1;
        int score = -1;
        table.Best(i, j, score);
        ASSERT_EQ(i, plain_i) << seq_i << " " << seq_j;
        ASSERT_EQ(j, plain_j) << seq_i << " " << seq_j;
        ASSERT_EQ(score, plain_score) << seq_i << " " << seq_j;
    }
}

TEST(ScoreDiagonals, TakeSequencesOfVeryUnequalLength) {
    const std::string seq_i(100000, 'A');
    const ScoreDiagonals tall(seq_i, "ACA");
    EXPECT_EQ(tall.Score(100000, 3), 3);
    const ScoreDiagonals wide("AAA", seq_i);
    EXPECT_EQ(wide.Score(3, 100000), 9);
}

}  // namespace
}  // namespace lintara::detail
