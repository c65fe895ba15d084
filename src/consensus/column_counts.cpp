#include "consensus/column_counts.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace lintara::consensus {

namespace {

const int kWord = 8;  // columns that are compared at once

// The case bit is left out of the comparison, which is what the table of base codes does.
const std::uint64_t kButForCase = 0xDFDFDFDFDFDFDFDF;

/// Eight bytes, the first one lowest.
std::uint64_t Word(const char* text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

/// The bits in which eight bytes differ but for their case.
std::uint64_t Difference(const char* a, const char* b) {
    return (Word(a) ^ Word(b)) & kButForCase;
}

/// The same of below eight bytes, of which those behind are taken as equal.
std::uint64_t ShortDifference(const char* a, const char* b, int size) {
    std::uint64_t bits = 0;
    for (int i = 0; i < size; ++i) bits |= std::uint64_t{static_cast<unsigned char>(a[i] ^ b[i])} << (8 * i);
    return bits & kButForCase;
}

}  // namespace

void ColumnCounts::Begin(const std::string& path, int first, int last) {
    first_ = first;
    last_ = std::max(first, last);
    path_ = path.data() + first;
    sites_.assign(Entry(last_ - first_) + 1, Site{0, 0});
    differing_.clear();
}

void ColumnCounts::Add(const std::string& seq, int start) {
    const int begin = std::max(first_, start);
    const int end = std::min(last_, start + static_cast<int>(seq.size()));
    if (begin >= end) return;
    const int index = begin - first_;
    const char* const bases = seq.data() + (begin - start);
    ++sites_[Entry(index)].change;
    --sites_[Entry(end - first_)].change;
    const char* const path = path_ + index;
    const int size = end - begin;
    if (size < kWord) {
        AddDiffering(index, bases, ShortDifference(bases, path, size));
        return;
    }
    const int last = size - kWord;
    for (int i = 0; i < last; i += kWord) {
        const std::uint64_t bits = Difference(bases + i, path + i);
        if (bits != 0) AddDiffering(index + i, bases + i, bits);
    }
    // The last word ends with the read; the columns in it that have been met before are left out.
    const int met = 8 * (-size & (kWord - 1));
    const std::uint64_t bits = Difference(bases + last, path + last) >> met << met;
    if (bits != 0) AddDiffering(index + last, bases + last, bits);
}

// Not taken into the loop over a read's words, most of which never come here.
[[gnu::noinline]] void ColumnCounts::AddDiffering(int index, const char* bases, std::uint64_t bits) {
    while (bits != 0) {
        const int byte = std::countr_zero(bits) / 8;
        AddDifferingBase(index + byte, bases[byte]);
        bits &= ~(std::uint64_t{0xFF} << (8 * byte));
    }
}

void ColumnCounts::AddDifferingBase(int index, char letter) {
    Site& site = sites_[Entry(index)];
    if (site.differing == 0) {
        differing_.emplace_back();
        site.differing = static_cast<int>(differing_.size());
    }
    Column& column = differing_[Entry(site.differing - 1)];
    ++column.read_num;
    const int code = alphabet[letter];
    if (code < 4) ++column.num[code];
}

ColumnCounts& SpareCounts() {
    thread_local ColumnCounts counts;
    return counts;
}

}  // namespace lintara::consensus
