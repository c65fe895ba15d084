#include "kmer/seed_words.h"

#include <algorithm>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

#ifdef __SSE2__

__m128i LoadBases(const char* bases) {
    __m128i bytes;
    std::memcpy(&bytes, bases, sizeof bytes);
    return bytes;
}

/// Numbers of the bases, two bits each, of 16 bytes.
__m128i BaseNumbers(const char* bases) {
    return _mm_and_si128(_mm_srli_epi16(LoadBases(bases), 1), _mm_set1_epi8(3));
}

/// A number before another one of so many bits. What is shifted leaves room in its byte.
template <int BITS>
__m128i Joined(__m128i before, __m128i behind) {
    return _mm_or_si128(_mm_slli_epi16(before, BITS), behind);
}

/// NumberPart() for words of LONGEST_WORD bases, a step at a time without a stay in memory between the passes.
void NumberSevens(const char* bases, int count, std::uint16_t* words) {
    const __m128i zero = _mm_setzero_si128();
    for (int i = 0; i < count; i += STEP_BYTES) {
        const char* at = bases + i;
        const __m128i first_two = Joined<2>(BaseNumbers(at), BaseNumbers(at + 1));
        const __m128i next_two = Joined<2>(BaseNumbers(at + 2), BaseNumbers(at + 3));
        const __m128i first_four = Joined<4>(first_two, next_two);
        const __m128i last_three = Joined<2>(Joined<2>(BaseNumbers(at + 4), BaseNumbers(at + 5)), BaseNumbers(at + 6));
        const __m128i low = Joined<6>(_mm_unpacklo_epi8(first_four, zero), _mm_unpacklo_epi8(last_three, zero));
        const __m128i high = Joined<6>(_mm_unpackhi_epi8(first_four, zero), _mm_unpackhi_epi8(last_three, zero));
        std::memcpy(words + i, &low, sizeof low);
        std::memcpy(words + i + STEP_BYTES / 2, &high, sizeof high);
    }
}

/// Whether 16 bytes are all upper-case bases.
bool AreBases(const char* bases) {
    const __m128i bytes = LoadBases(bases);
    const __m128i a_or_c =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('A')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('C')));
    const __m128i g_or_t =
        _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('G')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('T')));
    return _mm_movemask_epi8(_mm_or_si128(a_or_c, g_or_t)) == 0xFFFF;
}

#else

bool AreBases(const char* bases) {
    return std::all_of(bases, bases + STEP_BYTES, IsBase);
}

#endif

bool AllBases(const char* bases, int length) {
    if (length < STEP_BYTES) return std::all_of(bases, bases + length, IsBase);
    bool all = true;
    for (int i = 0; i + STEP_BYTES <= length; i += STEP_BYTES) all &= AreBases(bases + i);
    return all & AreBases(bases + length - STEP_BYTES);
}

/// Numbers all words as if all bytes were bases.
void NumberAll(const char* bases, int count, int pattlen, std::uint16_t* words) {
#ifdef __SSE2__
    if (pattlen == LONGEST_WORD) {
        NumberSevens(bases, count, words);
        return;
    }
#endif
    for (int from = 0; from < count; from += PART) {
        NumberPart(bases + from, std::min(PART, count - from), pattlen, words + from);
    }
}

}  // namespace

bool NumberWords(const char* bases, int length, int pattlen, std::uint16_t* words) {
    const int count = std::max(0, length - pattlen + 1);
    NumberAll(bases, count, pattlen, words);
    std::fill(words + count, words + length + WORDS_BEHIND, NoWord(pattlen));
    if (AllBases(bases, length)) return true;
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
