// Whether two reads of a block share a k-mer, asked pair by pair.
//
// Replaces, for the block driver, the table of all k-mers with the reads that hold them (hashSet.h): the walks ask for
// few of a block's pairs. The keys are those of fill_hash_set31(), bit for bit: the spare high bits of a key below 32
// bases hold the k-mers before it, and a byte that is no base spills into its neighbour.
//
// Every k-mer, or the 32 bases of it that a key holds, covers one whole word out of those at certain steps, the sampled
// words. So a shared k-mer shows in a sampled word of one read that stands in the other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kmer/diagonal.h"
#include "kmer/laid_reads.h"
#include "kmer/seed_words.h"

namespace lintara {

/// Writes the keys of all k-mers of a read, in order; none for a read shorter than Kmer, which is at least 1.
void WriteKeys(const char* bases, int length, std::vector<std::uint64_t>& keys);

/// Whether two reads of a block share a key. pattlen: bases of their words.
bool ShareKey(const LaidRead& a, const LaidRead& b, int pattlen);

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

    /// Whether EachLead() can tell who shares a key with a read, the strange() ones aside: not for a read with a byte
    /// that is no base, and for none when a k-mer is hardly longer than a word.
    bool Covers(const LaidRead& read) const { return sparse_ && !read.strange; }

    /// The inner reads with a byte that is no base, where there are others that Covers() takes.
    const std::vector<int>& strange() const { return strange_; }

    /// Calls meet(other, shift) for inner reads that share a sampled word with a read, where base 0 of the other then
    /// stands under base `shift` of the read. Whoever shares a key with the read is met at the shift of the key; the
    /// read itself may be among them. Most shifts that leave too few columns for a key are passed over.
    ///
    /// @param number  of the read in the block
    /// @param read    Covers() it
    /// @param places  the read is entered there; null: it is not
    /// @param meet    returns whether the other read need not be met again
    template <typename Meet>
    void EachLead(int number, const LaidRead& read, const FirstPlaces* places, Meet meet) {
        GatherLeads(number, read, places);
        for (int kind = 0; kind < KINDS; ++kind) {
            for (std::size_t i = 0; i < lead_counts_[kind]; ++i) meet(leads_[kind][i].other, leads_[kind][i].shift);
        }
        // In a repeat the same words come again and again, and most of their reads need no second look.
        if (again_.empty()) return;
        if (walked_.empty() || ++turn_ == 0) StartTurns();
        for (const int place : again_) {
            const std::uint16_t word = read.words[place];
            const Slot slot = slots_[word];
            if (walked_[word] == turn_) continue;
            bool done = true;
            for (std::uint32_t i = slot.first; i < slot.first + slot.count; ++i) {
                done &= meet(static_cast<int>(entries_[i].read), place - entries_[i].place);
            }
            if (done) walked_[word] = turn_;
        }
    }

    /// Whether two reads share a key whose bases stand under each other.
    /// @param diagonal  b under a
    bool ShareKeyOn(const LaidRead& a, const LaidRead& b, const Diagonal& diagonal) const;

  private:
    struct Entry {
        std::uint32_t read;
        std::uint16_t place;   // of the word
        std::uint16_t length;  // of the read
    };
    struct Slot {
        std::uint32_t first;  // entry
        std::uint32_t count;
    };
    static const int KINDS = 4;  // of leads
    struct Lead {
        int other;
        int shift;
    };

    /// Columns of a read and that of an entry when their words stand under each other.
    static int Columns(const LaidRead& read, int place, const Entry& entry) {
        return std::min<int>(place, entry.place) + std::min<int>(read.length - place, entry.length - entry.place);
    }
    void GatherLeads(int number, const LaidRead& read, const FirstPlaces* places);
    void StartTurns();

    int pattlen_ = 0;
    int key_bases_ = 0;                     // that are equal in all that share a key
    int sure_stretch_ = 0;                  // equal bases that are sure to hold one
    bool sparse_ = false;                   // sampled words are few enough to be of use
    std::vector<std::uint16_t> sampled_{};  // words of all entries, in the order of reads and places
    std::vector<Slot> slots_{};             // by word
    std::vector<Entry> entries_{};          // those of a word together
    std::vector<int> strange_{};            // inner reads with a byte that is no base
    std::vector<Entry> hits_{};             // of one EachLead(), and room behind them
    std::vector<std::uint16_t> at_{};       // by hit: place of its word in the given read
    std::vector<Lead> leads_[KINDS]{};      // with room behind them
    std::size_t lead_counts_[KINDS] = {};
    std::vector<int> again_{};             // its places where a word may stand that has stood before
    std::vector<int> last_shift_{};        // by read: of its last lead
    std::vector<std::uint32_t> walked_{};  // by word: the last turn in which its entries needed no second look
    std::uint32_t turn_ = 0;               // of EachLead()
};

}  // namespace lintara
