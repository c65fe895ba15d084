#include "consensus/column_counts.h"

#include <algorithm>

namespace lintara::consensus {

namespace {

const int kMostReadsOfAByte = 255;
const int kStep = 16;  // columns that are counted at once

// The case bit is left out of the comparison, which is what the table of base codes does.
unsigned char Upper(char letter) {
    return static_cast<unsigned char>(letter) & 0xDFU;
}

// 16 bytes that are 0, then 16 that are 255: read from n on, they take in the last n of 16 columns only.
const std::uint8_t kTakesLast[2 * kStep] = {0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,
                                            0,   0,   0,   0,   0,   255, 255, 255, 255, 255, 255,
                                            255, 255, 255, 255, 255, 255, 255, 255, 255, 255};

/// The counts of one read's columns, by base.
struct CountsAt {
    std::uint8_t* a;
    std::uint8_t* c;
    std::uint8_t* g;
    std::uint8_t* t;
};

void CountBases(CountsAt counts, int at, const char* bases, int size) {
    for (int i = at; i < at + size; ++i) {
        const unsigned char upper = Upper(bases[i]);
        counts.a[i] = static_cast<std::uint8_t>(counts.a[i] + (upper == 'A'));
        counts.c[i] = static_cast<std::uint8_t>(counts.c[i] + (upper == 'C'));
        counts.g[i] = static_cast<std::uint8_t>(counts.g[i] + (upper == 'G'));
        counts.t[i] = static_cast<std::uint8_t>(counts.t[i] + (upper == 'T'));
    }
}

/// Counts 16 columns. Of a known size and with no overlap, so that the loop becomes a handful of instructions.
///
/// @param taken  the columns that count, by 16 bytes of 0 or 255; null: all
void CountStep(std::uint8_t* __restrict a, std::uint8_t* __restrict c, std::uint8_t* __restrict g,
               std::uint8_t* __restrict t, const char* __restrict bases, const std::uint8_t* __restrict taken) {
    for (int i = 0; i < kStep; ++i) {
        const unsigned char upper = static_cast<unsigned char>(Upper(bases[i]) & (taken == nullptr ? 0xFFU : taken[i]));
        a[i] = static_cast<std::uint8_t>(a[i] + (upper == 'A'));
        c[i] = static_cast<std::uint8_t>(c[i] + (upper == 'C'));
        g[i] = static_cast<std::uint8_t>(g[i] + (upper == 'G'));
        t[i] = static_cast<std::uint8_t>(t[i] + (upper == 'T'));
    }
}

void CountRead(CountsAt counts, const char* bases, int size) {
    if (size < kStep) {
        CountBases(counts, 0, bases, size);
        return;
    }
    int i = 0;
    for (; i + kStep <= size; i += kStep) {
        CountStep(counts.a + i, counts.c + i, counts.g + i, counts.t + i, bases + i, nullptr);
    }
    if (i == size) return;
    // The last step begins earlier and passes over the columns that have been counted.
    const int at = size - kStep;
    CountStep(counts.a + at, counts.c + at, counts.g + at, counts.t + at, bases + at, kTakesLast + (size - i));
}

}  // namespace

void ColumnCounts::Begin(int first, int last) {
    first_ = first;
    last_ = std::max(first, last);
    const std::size_t columns = static_cast<std::size_t>(last_ - first_);
    stride_ = columns;
    counted_ = 0;
    carried_ = false;
    bytes_.assign(4 * columns, 0);
    changes_.assign(columns + 1, 0);
}

void ColumnCounts::Add(const std::string& seq, int start) {
    const int begin = std::max(first_, start);
    const int end = std::min(last_, start + static_cast<int>(seq.size()));
    if (begin >= end) return;
    std::uint8_t* const a = bytes_.data() + (begin - first_);
    const CountsAt counts{a, a + stride_, a + 2 * stride_, a + 3 * stride_};
    CountRead(counts, seq.data() + (begin - start), end - begin);
    ++changes_[static_cast<std::size_t>(begin - first_)];
    --changes_[static_cast<std::size_t>(end - first_)];
    if (++counted_ == kMostReadsOfAByte) Carry();
}

void ColumnCounts::Carry() {
    if (!carried_) carry_.assign(bytes_.size(), 0);
    carried_ = true;
    for (std::size_t i = 0; i < bytes_.size(); ++i) carry_[i] += bytes_[i];
    std::fill(bytes_.begin(), bytes_.end(), std::uint8_t{0});
    counted_ = 0;
}

ColumnCounts& SpareCounts() {
    thread_local ColumnCounts counts;
    return counts;
}

}  // namespace lintara::consensus
