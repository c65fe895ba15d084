// overlap() of two reads of a block, with the seeds looked up as words.
//
// Replaces, for the block driver, the search of one read's text for each seed of the other. Order of seeds and stages,
// and so every result, is that of overlap(); what the words do not cover (bytes that are no base; all seeds found and
// none accepted, as in a repeat) goes to the plain search.
#pragma once

#include <cstdint>
#include <vector>

#include "kmer/diagonal.h"
#include "kmer/laid_reads.h"
#include "kmer/lanes.h"
#include "kmer/seed_words.h"
#include "store/gap.h"

namespace lintara {

/// Whether settings and lengths are such that words stand for the seeds: seeds of a word's length and not too many, a
/// search that misses no place, inner reads no shorter than a seed and no longer than LONGEST_TABLED_READ.
bool WordsCover(const std::vector<Read>& reads, int method, int type);

/// What overlap() finds, and how many columns of it are equal.
struct FoundOverlap {
    int length = 0;  ///< as overlap() returns it
    int equal = 0;   ///< columns; not filled in (0) for what the plain search found
};

/// Measures overlaps of the reads of one block.
class PairFinder {
  public:
    /// @param laid    the block, which must outlive its use here
    /// @param method  exact-search method of the seeds, see WordsCover()
    void Begin(const LaidReads& laid, int method);

    /// overlap(one, two) of two inner reads.
    FoundOverlap Overlap(int one, int two) const;

    /// The same where a diagonal of the two is known, which nearly always decides.
    /// @param diagonal  two under one
    FoundOverlap Overlap(int one, int two, const Diagonal& diagonal) const;

    /// Takes an inner read as the one that others are compared with.
    void Enter(int read);

    /// Leftmost places of the words of the entered read.
    const FirstPlaces& entered_places() const { return places_; }

    /// overlap() of the entered read and another inner one, the read of the lower number first.
    FoundOverlap OverlapWithEntered(int other) const;

    /// The same where a diagonal of the two is known, which nearly always decides.
    /// @param diagonal  the other read under the entered one
    FoundOverlap OverlapWithEntered(int other, const Diagonal& diagonal) const;

    /// overlap(before edge, read) of all inner reads.
    /// @param overlaps  out: by read; 0 for the edges
    void OverlapBeforeEdge(std::vector<int>& overlaps);

    /// overlap(read, after edge) of all inner reads.
    void OverlapAfterEdge(std::vector<int>& overlaps);

  private:
    class SeedSearch;
    template <typename InTwo, typename InOne>
    FoundOverlap Settle(const LaidRead& one, const LaidRead& two, InTwo in_two, InOne in_one) const;
    FoundOverlap Placed(const LaidRead& one, int pos1, const LaidRead& two, int pos2) const;
    struct SeedHits {
        bool on;   ///< one stands on the diagonal
        bool off;  ///< one stands off it, or that can't be told
    };
    SeedHits SeedsIn(const LaidRead& from, const Sought& seeds, const LaidRead& in, int shift) const;
    Sought SeedsOf(const LaidRead& read) const;
    bool StartsFirstAt(int place, const LaidRead& read, const LaidRead& other) const;
    template <typename InOne>
    bool FirstSeedOn(int shift, const LaidRead& one, const Sought& seeds, const LaidRead& two, InOne in_one) const;
    template <typename Else>
    bool FirstSeedInEnteredOn(int shift, const LaidRead& other, Else else_on) const;
    void EnterEdge(const LaidRead& edge);
    void LeaveEdge(const LaidRead& edge);
    int SearchEdge(int k, const LaidRead& read, const LaidRead& edge) const;
    int SearchText(int k, const LaidRead& from, const LaidRead& in) const;

    const LaidReads* laid_ = nullptr;
    int method_ = 0;
    int steps_ = 0;              // steps that compare any two inner reads
    double ratio_ = -1;          // for which fewest_ holds
    std::vector<int> fewest_{};  // [n]: equal columns of n that make an accepted overlap
    int entered_ = -1;
    FirstPlaces places_{};            // of its words
    Sought seeds_{};                  // its seeds
    std::vector<int> edge_places_{};  // by word of one edge at a time: leftmost place + 1, or 0
};

}  // namespace lintara
