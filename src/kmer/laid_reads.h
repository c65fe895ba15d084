// The reads of one block laid out for fast comparison: bases with room behind them, so that whole vectors can be read,
// and the numbers of their short words.
//
// A read is laid out once for its block; what compares reads (pair_overlap.h, shared_kmer.h) works on this form. The
// layout keeps its memory from block to block.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "align/placement.h"
#include "kmer/seed_words.h"
#include "store/gap.h"

namespace lintara {

const int MOST_SEEDS = 8;  ///< seeds a read, of the overlap finders

/// A read laid out for the comparison.
struct LaidRead {
    const std::string* seq;
    char* bases;           ///< the same, with room behind for all steps of a comparison
    std::uint16_t* words;  ///< see NumberWords()
    int length;            ///< bases
    int seeds;             ///< seeds that fit into it
    bool strange;          ///< a byte is no upper-case base
    bool odd;              ///< a seed has such a byte
    bool same_seeds;       ///< two seeds are equal
    std::uint16_t seed_words[MOST_SEEDS];
};

/// A block laid out. Reads start..end - 1 are its inner reads, the others its edges.
struct LaidReads {
    int start = 0;
    int end = 0;
    detail::SeedPlan plan{0, 0};
    int longest = 0;  ///< bases, of the inner reads
    std::vector<LaidRead> reads{};
    std::vector<char> bases{};           // of all reads
    std::vector<std::uint16_t> words{};  // of all reads

    int num() const { return static_cast<int>(reads.size()); }
};

/// Lays out the reads of a block. They must outlive the layout.
/// @param type  kind of the block: 1 has the before edge as read 0, 2 the after edge as the last read, 3 both
/// @param plan  seeds of the finders; words of plan.pattlen bases, SHORTEST_WORD to LONGEST_WORD
void LayOut(const std::vector<Read>& reads, int type, detail::SeedPlan plan, LaidReads& laid);

/// Lays out one read anew, which has become shorter.
void LayOutAgain(const std::vector<Read>& reads, int read, LaidReads& laid);

/// Leftmost place of a word in a laid out read, from a place on, by looking at all its words; or -1.
/// @param word  not NoWord()
int FindWord(const LaidRead& read, int pattlen, std::uint16_t word, int from = 0);

/// A place of `read` in front of which no seed of `from` stands, or -1 when none stands anywhere in it. Of the seeds
/// only words count.
int SkipToSeeds(const LaidRead& read, int pattlen, const LaidRead& from);

}  // namespace lintara
