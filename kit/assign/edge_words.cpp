#include "kit/assign/edge_words.h"

#include <algorithm>
#include <bit>

#include "kit/base/fasta.h"

namespace lintara::kit {

namespace {

constexpr uint64_t kMask = (uint64_t{1} << (2 * EdgeWords::kWord)) - 1;
constexpr int kSieveBitsPerWord = 32;

uint64_t Mix(uint64_t word) {
    word ^= word >> 31;
    word *= 0x9E3779B97F4A7C15ULL;
    return word ^ (word >> 29);
}

/// Calls visit(word) for each word without other letters, until it returns true.
template <typename Visit>
bool AnyWord(const char* bases, long size, Visit visit) {
    uint64_t forward = 0;
    uint64_t turned = 0;
    int clean = 0;
    for (long i = 0; i < size; ++i) {
        int code = BaseCode(bases[i]);
        clean = code < 0 ? 0 : clean + 1;
        uint64_t base = static_cast<uint64_t>(std::max(code, 0));
        forward = ((forward << 2) | base) & kMask;
        turned = (turned >> 2) | ((3 - base) << (2 * (EdgeWords::kWord - 1)));
        if (clean >= EdgeWords::kWord && visit(std::min(forward, turned))) return true;
    }
    return false;
}

}  // namespace

EdgeWords::EdgeWords(const Layout& layout) {
    for (const Sequence& sequence : layout.sequences) {
        for (const LayoutGap& gap : sequence.gaps) {
            AddZone(sequence.text, std::max(gap.leftStart, gap.span.start - kZone), gap.span.start);
            AddZone(sequence.text, gap.span.end, std::min(gap.rightEnd, gap.span.end + kZone));
        }
    }
    sieve_.resize(std::bit_ceil(std::max<size_t>(words_.size() * kSieveBitsPerWord / 64, 1)));
    for (uint64_t word : words_) {
        uint64_t bit = Mix(word) & (sieve_.size() * 64 - 1);
        sieve_[bit / 64] |= uint64_t{1} << (bit % 64);
    }
}

void EdgeWords::AddZone(const std::string& text, long start, long end) {
    AnyWord(text.data() + start, end - start, [&](uint64_t word) {
        words_.insert(word);
        return false;
    });
}

bool EdgeWords::Touches(const std::string& bases) const {
    if (words_.empty()) return false;
    uint64_t bits = sieve_.size() * 64 - 1;
    return AnyWord(bases.data(), static_cast<long>(bases.size()), [&](uint64_t word) {
        uint64_t bit = Mix(word) & bits;
        return (sieve_[bit / 64] >> (bit % 64) & 1) != 0 && words_.contains(word);
    });
}

}  // namespace lintara::kit
