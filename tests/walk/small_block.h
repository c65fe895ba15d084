// A block of reads by hand: the overlap matrix as an object that owns its rows, and reads cut from one random text, so
// that two cuts agree in every base of their overlap and two places have no stretch in common.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara::testing {

/// A matrix of num reads, all cells 0.
class SmallMatrix {
  public:
    explicit SmallMatrix(int num)
        : cells_(static_cast<std::size_t>(num) * static_cast<std::size_t>(num)),
          pointers_(num),
          rows(pointers_.data()) {
        for (int i = 0; i < num; ++i) pointers_[i] = cells_.data() + static_cast<std::ptrdiff_t>(i) * num;
    }
    SmallMatrix(const SmallMatrix&) = delete;
    SmallMatrix& operator=(const SmallMatrix&) = delete;

    std::uint8_t* operator[](int a) { return rows[a]; }

  private:
    std::vector<std::uint8_t> cells_;
    std::vector<std::uint8_t*> pointers_;

  public:
    std::uint8_t** rows;  ///< as the walks take it
};

/// The same length random bases at each call with the same seed.
inline std::string RandomBases(int length, unsigned seed) {
    std::mt19937 engine(seed);
    std::string bases;
    for (int i = 0; i < length; ++i) bases += "ACGT"[engine() % 4];
    return bases;
}

/// `seq` with another base at offset `at`.
inline std::string WithOtherBase(std::string seq, int at) {
    seq[at] = seq[at] == 'A' ? 'C' : 'A';
    return seq;
}

/// A read of `length` bases of `text` from `offset`, at that position.
inline Read Cut(const std::string& text, int offset, int length) {
    return Read(text.substr(offset, length), offset);
}

/// `num` reads of `length` bases without an overlap of any use, all at position 0.
inline std::vector<Read> Unrelated(int num, int length) {
    std::vector<Read> reads;
    for (int i = 0; i < num; ++i) reads.emplace_back(RandomBases(length, 1000U + i), 0);
    return reads;
}

/// The read numbers from `from` to `to`, both included.
inline std::vector<int> Numbers(int from, int to) {
    std::vector<int> numbers;
    for (int i = from; i <= to; ++i) numbers.push_back(i);
    return numbers;
}

}  // namespace lintara::testing
