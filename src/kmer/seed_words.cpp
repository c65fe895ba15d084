#include "kmer/seed_words.h"

#include <algorithm>

namespace lintara {

namespace {

bool IsBase(char byte) {
    return byte == 'A' || byte == 'C' || byte == 'G' || byte == 'T';
}

/// Makes each word longer by the last `more` bases of the word `more` places on.
void Join(std::uint16_t* words, int count, int more) {
    const unsigned int shift = 2U * static_cast<unsigned int>(more);
    const unsigned int mask = (1U << shift) - 1;
    for (int i = 0; i < count; ++i) {
        words[i] = static_cast<std::uint16_t>(static_cast<unsigned int>(words[i]) << shift | (words[i + more] & mask));
    }
}

}  // namespace

bool NumberWords(const std::string& seq, int pattlen, std::uint16_t* words) {
    const int length = static_cast<int>(seq.size());
    const int count = length - pattlen + 1;
    const char* bases = seq.data();
    int strange = 0;
    for (int i = 0; i < length; ++i) strange += IsBase(bases[i]) ? 0 : 1;
    if (count <= 0) return strange == 0;
    // In simple passes, each of which the compiler turns into one over many words at once: bases, then words of two, of
    // four and of pattlen bases. Bits 1 and 2 of the four letters differ.
    for (int i = 0; i < length; ++i) words[i] = static_cast<unsigned char>(bases[i]) >> 1 & 3U;
    Join(words, length - 1, 1);
    Join(words, length - 3, 2);
    if (pattlen > 4) Join(words, count, pattlen - 4);
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
    for (int place = length - pattlen; place >= 0; --place) {
        entries_[words[place]] = static_cast<std::uint16_t>(stamp_ | static_cast<unsigned int>(place));
    }
    entries_[NoWord(pattlen)] = 0;
}

}  // namespace lintara
