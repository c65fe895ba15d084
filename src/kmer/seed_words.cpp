#include "kmer/seed_words.h"

#include <algorithm>

namespace lintara {

namespace {

bool IsBase(char byte) {
    return byte == 'A' || byte == 'C' || byte == 'G' || byte == 'T';
}

// Words that are numbered at a time.
const int PART = 240;

// Bytes a step; loops over whole steps need no second loop for what is left.
const int STEP_BYTES = WORDS_BEHIND;

int WholeSteps(int count) {
    return (count + STEP_BYTES - 1) / STEP_BYTES * STEP_BYTES;
}

/// Numbers so many words as if all bytes were bases. In simple passes, each of which the compiler turns into one over
/// many bytes at once: bases, then words of two and of four bases, which fit a byte, then those of pattlen.
void NumberPart(const char* bases, int count, int pattlen, std::uint16_t* words) {
    std::uint8_t numbers[PART + 3 * STEP_BYTES] = {};
    const int whole = WholeSteps(count);
    const int length = whole + STEP_BYTES;
    // Bits 1 and 2 of the four letters differ.
    for (int i = 0; i < length; ++i) numbers[i] = static_cast<unsigned char>(bases[i]) >> 1 & 3;
    for (int i = 0; i < length; ++i) numbers[i] = static_cast<std::uint8_t>(numbers[i] * 4 + numbers[i + 1]);
    for (int i = 0; i < length; ++i) numbers[i] = static_cast<std::uint8_t>(numbers[i] * 16 + numbers[i + 2]);
    const int more = pattlen - 4;
    const unsigned int shift = 2U * static_cast<unsigned int>(more);
    const unsigned int mask = (1U << shift) - 1;
    for (int i = 0; i < whole; ++i) {
        words[i] =
            static_cast<std::uint16_t>(static_cast<unsigned int>(numbers[i]) << shift | (numbers[i + more] & mask));
    }
}

/// Bytes that are no upper-case base, of at most PART.
int CountStrange(const char* bases, int count) {
    std::uint8_t strange = 0;
    for (int i = 0; i < count; ++i) strange += IsBase(bases[i]) ? 0 : 1;
    return strange;
}

}  // namespace

bool NumberWords(const char* bases, int length, int pattlen, std::uint16_t* words) {
    const int count = std::max(0, length - pattlen + 1);
    int strange = 0;
    for (int from = 0; from < length; from += PART)
        strange += CountStrange(bases + from, std::min(PART, length - from));
    for (int from = 0; from < count; from += PART) {
        NumberPart(bases + from, std::min(PART, count - from), pattlen, words + from);
    }
    std::fill(words + count, words + length + WORDS_BEHIND, NoWord(pattlen));
    if (strange == 0) return true;
    for (int i = 0; i < length; ++i) {
        if (IsBase(bases[i])) continue;
        const int first = std::max(0, i - pattlen + 1);
        const int last = std::min(i, count - 1);
        for (int place = first; place <= last; ++place) words[place] = NoWord(pattlen);
    }
    return false;
}

void FirstPlaces::Enter(const std::uint16_t* words, int length, int pattlen) {
    stamp_ = (stamp_ + STEP) & 0xFFFFU;
    if (stamp_ == 0) {
        std::fill(entries_.begin(), entries_.end(), std::uint16_t{0});
        stamp_ = STEP;
    }
    // From the end on, so that the leftmost place stays.
    std::uint16_t* const entries = entries_.data();
    const unsigned int stamp = stamp_;
    bool repeated = false;
    for (int place = length - pattlen; place >= 0; --place) {
        repeated |= (entries[words[place]] ^ stamp) < STEP;
        entries[words[place]] = static_cast<std::uint16_t>(stamp | static_cast<unsigned int>(place));
    }
    repeated_ = repeated;
    entries_[NoWord(pattlen)] = 0;
}

}  // namespace lintara
