// Whether two reads of a block share a k-mer, asked pair by pair.
//
// Replaces, for the block driver, the table of all k-mers with the reads that hold them (hashSet.h): the walks ask for
// few of a block's pairs. The keys are those of fill_hash_set31(), bit for bit: the spare high bits of a key below 32
// bases hold the k-mers before it, and a byte that is no base spills into its neighbour.
//
// Every k-mer, or the 32 bases of it that a key holds, covers one whole word out of those at certain steps, the sampled
// words. So a shared k-mer shows in a sampled word of one read that stands in the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kmer/laid_reads.h"
#include "kmer/seed_words.h"

namespace lintara {

/// Writes the keys of all k-mers of a read, in order; none for a read shorter than Kmer, which is at least 1.
void WriteKeys(const char* bases, int length, std::vector<std::uint64_t>& keys);

/// Whether two reads of a block share a key. pattlen: bases of their words.
bool ShareKey(const LaidRead& a, const LaidRead& b, int pattlen);

/// The same, with b entered in a table of words.
bool ShareKeyWithEntered(const LaidRead& a, const LaidRead& b, int pattlen, const FirstPlaces& places);

/// Whether n columns of two reads are such that the reads share a key for sure. Says so of nearly all overlaps that
/// share one, and costs less.
/// @param equal  how many of the columns are equal, or less
bool SurelyShareKey(const char* a, const char* b, int n, int equal);

/// Whether no key can occur more than 65535 times in the block, which is what the table counts in 16 bits. May say no
/// where none does.
bool CountsFit(const LaidReads& laid);

/// The sampled words of the inner reads of a block: which reads may share a k-mer with a given one.
class SampledWords {
  public:
    void Index(const LaidReads& laid);

    /// All inner reads that may share a k-mer with one, itself perhaps included; each once. Good until the next call.
    const std::vector<int>& Partners(const LaidReads& laid, int read);

  private:
    struct Entry {
        std::uint32_t read;
        std::uint32_t next;  // entry of the same word, or 0
        std::uint16_t word;
    };
    bool whole_words_ = false;              // a k-mer is no shorter than a word
    std::vector<std::uint64_t> sampled_{};  // a bit for each word: it has an entry
    std::vector<std::uint32_t> heads_{};    // by word: its last entry, or 0
    std::vector<std::uint32_t> walked_{};   // by word: the last turn in which its entries were gone through
    std::uint32_t turn_ = 0;                // of Partners()
    std::vector<Entry> entries_{};          // entry 0 is none
    std::vector<int> strange_{};            // inner reads with a byte that is no base
    std::vector<int> partners_{};
    std::vector<int> met_{};  // by read: number of the last one whose partner it was, + 1
};

}  // namespace lintara
