// Short words of the reads of a block, and the table that tells where a read has a word first.
//
// Replaces, for whole blocks, the search of one read's text for each seed of another: a seed is a word, and its
// leftmost place is one look into the table. A word is a number for pattlen bases in a row; which number a base has
// does not matter as long as equal words mean equal bytes, and a stretch with any other byte has no word.
#pragma once

#include <cstdint>
#include <vector>

namespace lintara {

const int SHORTEST_WORD = 4;          ///< bases
const int LONGEST_WORD = 7;           ///< bases; a table has an entry for each word
const int LONGEST_TABLED_READ = 255;  ///< bases of a read that FirstPlaces takes
const int WORDS_BEHIND = 16;          ///< entries behind the words of a sequence
const int BASES_BEHIND = 256;         ///< bytes behind its bases

/// The number that stands for "no word here".
inline std::uint16_t NoWord(int pattlen) {
    return static_cast<std::uint16_t>(1U << (2 * pattlen));
}

/// Numbers the words of a sequence.
///
/// @param bases    length bytes and BASES_BEHIND that can be read behind them
/// @param pattlen  bases of a word, SHORTEST_WORD to LONGEST_WORD
/// @param words    out: length + WORDS_BEHIND entries; entry i is the word at i, NoWord() where a byte is no upper-case
///                 base, and where no whole word is left
/// @return whether all bytes are upper-case bases
bool NumberWords(const char* bases, int length, int pattlen, std::uint16_t* words);

/// Leftmost place of each word of one read at a time.
class FirstPlaces {
  public:
    FirstPlaces() : entries_(std::size_t{NoWord(LONGEST_WORD)} + 1) {}

    /// Forgets the read before and takes this one.
    /// @param words    as NumberWords() wrote them
    /// @param length   bases of the read, at most LONGEST_TABLED_READ
    /// @param pattlen  bases of a word
    void Enter(const std::uint16_t* words, int length, int pattlen);

    /// Place of a word, or a value above LONGEST_TABLED_READ that says there is none, as for NoWord().
    unsigned int Look(std::uint16_t word) const { return entries_[word] ^ stamp_; }

    /// Whether a word of the read stands there more than once.
    bool repeated() const { return repeated_; }

    /// Place of a word, or -1.
    int Find(std::uint16_t word) const {
        const unsigned int place = Look(word);
        return place < STEP ? static_cast<int>(place) : -1;
    }

  private:
    static const unsigned int STEP = 256;

    bool repeated_ = false;
    unsigned int stamp_ = 0;              // of the present read: a multiple of STEP
    std::vector<std::uint16_t> entries_;  // by word: stamp of the read that wrote it, and the place
};

}  // namespace lintara
