#include "kmer/seed_words.h"

#include <algorithm>

namespace lintara {

namespace {

bool IsBase(char byte) {
    return byte == 'A' || byte == 'C' || byte == 'G' || byte == 'T';
}

}  // namespace

void NumberWords(const std::string& seq, int pattlen, std::uint16_t* words) {
    const int length = static_cast<int>(seq.size());
    const int count = length - pattlen + 1;
    if (count <= 0) return;
    const char* bases = seq.data();
    // Bits 1 and 2 of the four letters differ. One simple pass a base lets the compiler take many words at once.
    std::fill_n(words, count, std::uint16_t{0});
    for (int k = 0; k < pattlen; ++k) {
        for (int i = 0; i < count; ++i) {
            const unsigned int code = static_cast<unsigned char>(bases[i + k]) >> 1 & 3U;
            words[i] = static_cast<std::uint16_t>(words[i] << 2 | code);
        }
    }
    int strange = 0;
    for (int i = 0; i < length; ++i) strange += IsBase(bases[i]) ? 0 : 1;
    if (strange == 0) return;
    for (int i = 0; i < length; ++i) {
        if (IsBase(bases[i])) continue;
        const int first = std::max(0, i - pattlen + 1);
        const int last = std::min(i, count - 1);
        for (int place = first; place <= last; ++place) words[place] = NoWord(pattlen);
    }
}

void FirstPlaces::Enter(const std::uint16_t* words, int length) {
    stamp_ = (stamp_ + STEP) & 0xFFFFU;
    if (stamp_ == 0) {
        std::fill(entries_.begin(), entries_.end(), std::uint16_t{0});
        stamp_ = STEP;
    }
    // From the end on, so that the leftmost place stays.
    for (int place = length - pattlen_; place >= 0; --place) {
        entries_[words[place]] = static_cast<std::uint16_t>(stamp_ | static_cast<unsigned int>(place));
    }
    entries_[NoWord(pattlen_)] = 0;
}

}  // namespace lintara
