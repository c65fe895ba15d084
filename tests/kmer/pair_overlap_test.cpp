#include "kmer/pair_overlap.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "align/overlap.h"
#include "align/placement.h"
#include "kmer/laid_reads.h"
#include "kmer/random_block.h"
#include "kmer/seed_words.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::RandomBlock;

class PairOverlap : public testing::ThreadStreamsTest {};

/// Whether the words cover the block; holds all overlaps against those of the plain search.
bool ExpectPlainOverlaps(const std::vector<Read>& reads, int method, int type, const std::string& what) {
    if (!WordsCover(reads, method, type)) return false;
    LaidReads laid;
    LayOut(reads, type, detail::PlanSeeds(method), laid);
    PairFinder finder;
    finder.Begin(laid, method);
    int differ = 0;
    for (int i = laid.start; i < laid.end; ++i) {
        finder.Enter(i);
        for (int j = laid.start; j < laid.end; ++j) {
            if (j == i) continue;
            const int one = i < j ? i : j;
            const int two = i < j ? j : i;
            const int plain = overlap(reads[one].seq, reads[two].seq, method, Match_ratio);
            const FoundOverlap entered = finder.OverlapWithEntered(j);
            differ += entered.length != plain ? 1 : 0;
            // Any diagonal may be known, the one that decides among them.
            const int n1 = laid.reads[i].length;
            const int n2 = laid.reads[j].length;
            const int found = plain == 0 || (plain > 0) == (i == one) ? n1 - std::abs(plain) : std::abs(plain) - n2;
            for (const int shift : {found, found - 7, 0, n1 - n2, n1 / 2}) {
                if (shift <= -n2 || shift >= n1) continue;
                Diagonal diagonal;
                LayUnder(laid.reads[i], laid.reads[j], shift, laid.longest, diagonal);
                differ += finder.OverlapWithEntered(j, diagonal).length != plain ? 1 : 0;
                if (one == i) differ += finder.Overlap(one, two, diagonal).length != plain ? 1 : 0;
            }
            if (one == i) differ += finder.Overlap(one, two).length != plain ? 1 : 0;
            if (entered.equal == 0) continue;
            // A read that starts or ends inside the other is compared over its whole length.
            const int n = std::abs(entered.length);
            EXPECT_LE(entered.equal, n) << what;
            EXPECT_GE(static_cast<double>(entered.equal) / n, Match_ratio) << what;
        }
    }
    EXPECT_EQ(differ, 0) << what;
    std::vector<int> with_edge;
    if (laid.start > 0) finder.OverlapBeforeEdge(with_edge);
    for (int i = laid.start; laid.start > 0 && i < laid.end; ++i) {
        EXPECT_EQ(with_edge[i], overlap(reads.front().seq, reads[i].seq, method, Match_ratio)) << what;
    }
    if (laid.end < laid.num()) finder.OverlapAfterEdge(with_edge);
    for (int i = laid.start; laid.end < laid.num() && i < laid.end; ++i) {
        EXPECT_EQ(with_edge[i], overlap(reads[i].seq, reads.back().seq, method, Match_ratio)) << what;
    }
    return true;
}

TEST_F(PairOverlap, AllPairsAndEdgesAreThoseOfThePlainSearch) {
    std::mt19937 random(20261122);
    const int methods[] = {0, 1, 2, 5};
    const double ratios[] = {0.95, 0.9, 0.99, 1.0, 0.8};
    int taken = 0;
    for (int round = 0; round < 600; ++round) {
        BlockKind kind;
        kind.num = testing::Uniform(random, 3, 60);
        kind.genome = testing::Uniform(random, 260, 700);
        kind.unit = round % 3 == 0 ? testing::Uniform(random, 1, 45) : 0;
        kind.error = round % 4 * 0.01;
        kind.longest = round % 7 == 0 ? 255 : 100;
        kind.others = round % 5 == 0 ? "NNNacgtR-" : "N";
        Match_ratio = ratios[round / 4 % 5];
        Min_overlap = round % 6 == 0 ? 20 : 30;
        false_ratio = round % 9 == 0 ? 0.2 : 0.15;
        const bool is_taken = ExpectPlainOverlaps(RandomBlock(random, kind, 255), methods[round % 4], round / 2 % 5,
                                                  "round " + std::to_string(round));
        taken += is_taken ? 1 : 0;
    }
    EXPECT_GT(taken, 520);
}

TEST_F(PairOverlap, EdgesMayBeLongerThanATabledRead) {
    std::mt19937 random(20261123);
    for (int round = 0; round < 60; ++round) {
        BlockKind kind;
        kind.genome = 900;
        kind.longest = 150;
        kind.unit = round % 2 == 0 ? 30 : 0;
        EXPECT_TRUE(ExpectPlainOverlaps(RandomBlock(random, kind, 300), 1, 3, "round " + std::to_string(round)));
    }
}

TEST_F(PairOverlap, LeavesToThePlainSearchWhatTheWordsDoNotCover) {
    const Read edge(std::string(200, 'A'), 0);
    const Read usual(std::string(100, 'C'), 0);
    EXPECT_TRUE(WordsCover({edge, usual, edge}, 1, 3));
    EXPECT_TRUE(WordsCover({edge, Read(std::string(255, 'C'), 0), edge}, 1, 3));
    EXPECT_FALSE(WordsCover({edge, Read(std::string(256, 'C'), 0), edge}, 1, 3));  // overlaps do not fit a cell
    EXPECT_TRUE(WordsCover({edge, Read("CCCCCCC", 0), edge}, 1, 3));
    EXPECT_FALSE(WordsCover({edge, Read("CCCCCC", 0), edge}, 1, 3));  // shorter than a seed
    EXPECT_TRUE(WordsCover({Read("C", 0), usual, Read("C", 0)}, 1, 3));
    EXPECT_FALSE(WordsCover({edge, usual, edge}, 3, 3));  // a method that misses places
    EXPECT_FALSE(WordsCover({edge, usual, edge}, 4, 3));
    EXPECT_FALSE(WordsCover({edge, edge}, 1, 3));  // no inner read
    false_ratio = 0.1;                             // seeds of 10 bases
    EXPECT_FALSE(WordsCover({edge, usual, edge}, 1, 3));
}

/// The words of four bases.
std::vector<std::uint16_t> Words(const std::string& seq) {
    const std::string bases = seq + std::string(BASES_BEHIND, '?');
    std::vector<std::uint16_t> words(seq.size() + WORDS_BEHIND);
    EXPECT_EQ(NumberWords(bases.data(), static_cast<int>(seq.size()), 4, words.data()),
              seq.find_first_not_of("ACGT") == std::string::npos);
    return words;
}

TEST_F(PairOverlap, WordsAreNumberedByTheirBytes) {
    const std::string seq = "ACGTACGTNACGTAaCGTA";
    const std::vector<std::uint16_t> words = Words(seq);
    for (std::size_t i = 0; i + 4 <= seq.size(); ++i) {
        const std::string word = seq.substr(i, 4);
        const bool is_word = word.find_first_not_of("ACGT") == std::string::npos;
        EXPECT_EQ(words[i] != NoWord(4), is_word) << i;
        for (std::size_t j = 0; is_word && j < i; ++j) {
            EXPECT_EQ(words[i] == words[j], word == seq.substr(j, 4)) << i << " and " << j;
        }
    }
}

TEST_F(PairOverlap, WordsOfAnyLengthAreThoseBuiltBaseByBase) {
    std::mt19937 random(20261123);
    for (int round = 0; round < 800; ++round) {
        const int pattlen = SHORTEST_WORD + round % 4;
        const int length = testing::Uniform(random, 0, 300);
        std::string seq;
        for (int i = 0; i < length; ++i) seq += "ACGTACGTACGTacN"[random() % (round % 3 == 0 ? 15 : 12)];
        const std::string bases = seq + std::string(BASES_BEHIND, 'C');
        std::vector<std::uint16_t> words(seq.size() + WORDS_BEHIND, 7);
        const bool all_bases = seq.find_first_not_of("ACGT") == std::string::npos;
        ASSERT_EQ(NumberWords(bases.data(), length, pattlen, words.data()), all_bases);
        for (int i = 0; i < length + WORDS_BEHIND; ++i) {
            int word = i + pattlen <= length ? 0 : NoWord(pattlen);
            for (int k = 0; k < pattlen && i + pattlen <= length; ++k) {
                const std::size_t base = std::string("ACTG").find(seq[i + k]);
                if (base == std::string::npos) {
                    word = NoWord(pattlen);
                    break;
                }
                word = word * 4 + static_cast<int>(base);
            }
            ASSERT_EQ(words[i], word) << i << " of " << length << ", " << pattlen;
        }
    }
}

TEST_F(PairOverlap, LeftmostPlaceOfAWordIsFoundInEachReadOfMany) {
    std::mt19937 random(20261124);
    FirstPlaces places;
    for (int round = 0; round < 700; ++round) {  // more reads than there are stamps
        std::string seq;
        const int length = testing::Uniform(random, 4, LONGEST_TABLED_READ);
        for (int i = 0; i < length; ++i) seq += "ACGTN"[random() % 41 / 10];
        const std::vector<std::uint16_t> words = Words(seq);
        places.Enter(words.data(), length, 4);
        std::string other;
        for (int i = 0; i < 60; ++i) other += base[random() % 4];
        const std::vector<std::uint16_t> sought = Words(other);
        for (int i = 0; i + 4 <= 60; ++i) {
            const std::size_t place = seq.find(other.substr(i, 4));
            EXPECT_EQ(places.Find(sought[i]), place == std::string::npos ? -1 : static_cast<int>(place));
        }
        EXPECT_EQ(places.Find(NoWord(4)), -1);
    }
}

}  // namespace
}  // namespace lintara
