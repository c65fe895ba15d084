// Sixteen comparisons at once, their answers in the bits of a number, the first one lowest.
//
// The processor's own instructions where every processor of its kind has them, otherwise plain loops; both say the
// same.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace lintara {

const int LANES = 16;  ///< comparisons at once

/// Words that are sought together.
const int SOUGHT_WORDS = 4;

namespace detail {

/// Which of 16 bytes are equal.
inline std::uint64_t EqualBytesPlain(const char* a, const char* b) {
    std::uint64_t bits = 0;
    for (int i = 0; i < LANES; ++i) bits |= std::uint64_t{a[i] == b[i]} << i;
    return bits;
}

/// Which of 16 words are one of those sought.
inline std::uint64_t SoughtWordsPlain(const std::uint16_t* words, const std::uint16_t* sought) {
    std::uint64_t bits = 0;
    for (int i = 0; i < LANES; ++i) {
        for (int k = 0; k < SOUGHT_WORDS; ++k) bits |= std::uint64_t{words[i] == sought[k]} << i;
    }
    return bits;
}

}  // namespace detail

#ifdef __SSE2__

inline std::uint64_t EqualBytes(const char* a, const char* b) {
    __m128i of_a;
    __m128i of_b;
    std::memcpy(&of_a, a, sizeof of_a);
    std::memcpy(&of_b, b, sizeof of_b);
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(of_a, of_b)));
}

/// Which of 16 words are the one sought.
inline std::uint64_t EqualWords(const std::uint16_t* words, std::uint16_t word) {
    const __m128i sought = _mm_set1_epi16(static_cast<short>(word));
    __m128i low;
    __m128i high;
    std::memcpy(&low, words, sizeof low);
    std::memcpy(&high, words + LANES / 2, sizeof high);
    return static_cast<unsigned int>(
        _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(low, sought), _mm_cmpeq_epi16(high, sought))));
}

/// Words to be sought, made ready.
class Sought {
  public:
    Sought() : Sought(std::array<std::uint16_t, SOUGHT_WORDS>{}.data()) {}

    /// @param words  SOUGHT_WORDS of them
    explicit Sought(const std::uint16_t* words) {
        for (int k = 0; k < SOUGHT_WORDS; ++k) lanes_[k] = _mm_set1_epi16(static_cast<short>(words[k]));
    }

    /// Which of 16 words are one of those sought.
    std::uint64_t In(const std::uint16_t* words) const {
        __m128i low;
        __m128i high;
        std::memcpy(&low, words, sizeof low);
        std::memcpy(&high, words + LANES / 2, sizeof high);
        return static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(Among(low), Among(high))));
    }

  private:
    __m128i Among(__m128i words) const {
        return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(words, lanes_[0]), _mm_cmpeq_epi16(words, lanes_[1])),
                            _mm_or_si128(_mm_cmpeq_epi16(words, lanes_[2]), _mm_cmpeq_epi16(words, lanes_[3])));
    }

    __m128i lanes_[SOUGHT_WORDS];
};

#else

inline std::uint64_t EqualBytes(const char* a, const char* b) {
    return detail::EqualBytesPlain(a, b);
}

inline std::uint64_t EqualWords(const std::uint16_t* words, std::uint16_t word) {
    const std::uint16_t sought[SOUGHT_WORDS] = {word, word, word, word};
    return detail::SoughtWordsPlain(words, sought);
}

class Sought {
  public:
    Sought() = default;
    explicit Sought(const std::uint16_t* words) { std::memcpy(words_, words, sizeof words_); }
    std::uint64_t In(const std::uint16_t* words) const { return detail::SoughtWordsPlain(words, words_); }

  private:
    std::uint16_t words_[SOUGHT_WORDS] = {};
};

#endif

}  // namespace lintara
