#include "align/slide_counts.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace lintara::detail {

namespace {

using Lanes = std::uint8_t __attribute__((vector_size(16)));
const int kLanes = 16;
const int kVectors = SlideCounts::LENGTHS / kLanes;

// Columns between two looks at what can still be reached: few enough for a count of them to fit a byte.
const int kBlock = 64;

// Each byte, 16 times.
struct Spread {
    alignas(kLanes) std::uint8_t bytes[256][kLanes] = {};
    constexpr Spread() {
        for (int byte = 0; byte < 256; ++byte) {
            for (std::uint8_t& lane : bytes[byte]) lane = static_cast<std::uint8_t>(byte);
        }
    }
};
constexpr Spread kSpread;

template <typename Byte>
Lanes Load(const Byte* from) {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

std::string Reversed(const std::string& seq) {
    return {seq.rbegin(), seq.rend()};
}

std::string Padded(const std::string& seq) {
    const std::string behind(SlideCounts::LENGTHS, 'N');
    return behind + seq + behind;
}

}  // namespace

// Read from the other end, the twin is the same.
SlideCounts::SlideCounts(const std::string& read_a, const std::string& read_b, bool from_left)
    : fixed_(from_left ? read_b : Reversed(read_a)),
      text_(Padded(from_left ? read_a : Reversed(read_b))),
      longest_(static_cast<int>(from_left ? read_a.size() : read_b.size())) {}

bool SlideCounts::Count(int first, int unequal) {
    first_ = first;
    std::fill_n(totals_, LENGTHS, short{0});
    // The lanes of a vector lie by ascending place in the text, which is by descending length.
    const char* text = text_.data() + LENGTHS + longest_ - first - (LENGTHS - 1);
    const int size = static_cast<int>(fixed_.size());
    const int columns = std::min(first + LENGTHS - 1, size);
    const int of_all = std::min(first, size);  // columns that the shortest of them has
    for (int at = 0; at < columns; at += kBlock) {
        const int end = std::min(at + kBlock, columns);
        Lanes sums[kVectors] = {};
        for (int i = at; i < end; ++i) {
            const Lanes fixed = Load(kSpread.bytes[static_cast<unsigned char>(fixed_[i])]);
            for (int k = 0; k < kVectors; ++k) sums[k] -= Load(text + i + k * kLanes) == fixed;
        }
        std::uint8_t counts[LENGTHS];
        std::memcpy(counts, sums, sizeof counts);
        for (int k = 0; k < LENGTHS; ++k) totals_[k] = static_cast<short>(totals_[k] + counts[k]);
        if (end < columns && end <= of_all && !AnyReaches(end - unequal)) return false;
    }
    return true;
}

bool SlideCounts::AnyReaches(int equal) const {
    return *std::max_element(totals_, totals_ + LENGTHS) >= equal;
}

}  // namespace lintara::detail
