#include "repeat/tag_reads.h"

#include <algorithm>
#include <cstring>

namespace lintara {
namespace {

// Each pass goes a whole vector further than the next one reads.
constexpr int kTriples = TagReads::kStretch + 16;
constexpr int kBases = kTriples + 16;

using Lanes = std::uint8_t __attribute__((vector_size(16)));
using Words = std::uint64_t __attribute__((vector_size(16)));

/// Base codes; bits 1 and 2 of a base's letter tell the four apart.
///
/// @return whether all bytes are bases; if not, the codes mean nothing
bool FillCodes(const char* bases, unsigned char* codes) {
    const std::uint8_t a = 'a', c = 'c', g = 'g', t = 't';
    Lanes all = ~Lanes{};
    for (int i = 0; i < kBases; i += static_cast<int>(sizeof(Lanes))) {
        Lanes letters;
        std::memcpy(&letters, bases + i, sizeof letters);
        const Lanes low = letters | std::uint8_t{0x20};
        all &= static_cast<Lanes>((low == a) | (low == c) | (low == g) | (low == t));
        // What the shifts bring over from the next byte is masked.
        const Words twice = reinterpret_cast<Words>(letters) >> 1;
        const Words code = ((twice ^ (twice >> 1)) & 0x0101010101010101U) | (twice & 0x0202020202020202U);
        std::memcpy(codes + i, &code, sizeof code);
    }
    std::uint64_t halves[2];
    std::memcpy(halves, &all, sizeof halves);
    return (halves[0] & halves[1]) == ~std::uint64_t{0};
}

void FillCodesOfAnyBytes(const char* bases, unsigned char* codes) {
    for (int i = 0; i < kBases; ++i) codes[i] = static_cast<unsigned char>(alphabet[bases[i]]);
}

// The loops below have a fixed length, no branch and no carried value, so that the compiler turns them into vector
// code.

void FillTriples(const unsigned char* codes, unsigned char* triples) {
    for (int i = 0; i < kTriples; ++i) {
        triples[i] = static_cast<unsigned char>((codes[i] << 4) | (codes[i + 1] << 2) | codes[i + 2]);
    }
}

void FillFromTriples(const unsigned char* triples, std::uint16_t* tags) {
    for (int i = 0; i < TagReads::kStretch; ++i) {
        tags[i] = static_cast<std::uint16_t>((triples[i] << 6) | triples[i + 3]);
    }
}

void FillStretch(const char* bases, std::uint16_t* tags) {
    unsigned char codes[kBases];
    unsigned char triples[kTriples];
    if (!FillCodes(bases, codes)) FillCodesOfAnyBytes(bases, codes);
    FillTriples(codes, triples);
    FillFromTriples(triples, tags);
}

}  // namespace

void TagReads::Clear() {
    bases.clear();
    starts.assign(1, 0);
}

void TagReads::Append(const std::string& read) {
    bases += read;
    starts.push_back(static_cast<int>(bases.size()));
}

void TagReads::FillTags() {
    const int num = static_cast<int>(bases.size());
    const std::size_t room = bases.size() + kStretch;
    if (tags.size() < room) tags.resize(room);
    int from = 0;
    for (; from + kBases <= num; from += kStretch) FillStretch(bases.data() + from, tags.data() + from);
    for (; from < num; from += kStretch) {
        // The tags of the last places reach past the bases; none of them is a read's.
        char rest[kBases];
        std::fill(rest, rest + kBases, 'A');
        std::copy(bases.begin() + from, bases.begin() + std::min(from + kBases, num), rest);
        FillStretch(rest, tags.data() + from);
    }
}

std::string TagReads::ReadAt(int read) const {
    return bases.substr(static_cast<std::size_t>(First(read)), static_cast<std::size_t>(End(read) - First(read)));
}

void CountTags(const TagReads& laid, int* freq) {
    std::fill(freq, freq + kTagValues, 0);
    // All places in one loop, which costs less than one for each read, and off again what runs past the reads' ends.
    const std::uint16_t* tags = laid.tags.data();
    const int num = static_cast<int>(laid.bases.size());
    for (int p = 0; p < num; ++p) ++freq[tags[p]];
    for (int read = 0; read < laid.num(); ++read) {
        const int end = laid.End(read);
        for (int p = std::max(laid.First(read), laid.TagsEnd(read)); p < end; ++p) --freq[tags[p]];
    }
}

int CountTag(const TagReads& laid, int tag) {
    const std::uint16_t* tags = laid.tags.data();
    const std::uint16_t sought = static_cast<std::uint16_t>(tag);
    const int all = static_cast<int>(laid.bases.size());
    int num = 0;
    for (int from = 0; from < all; from += TagReads::kStretch) {
        // The count of a stretch fits the type of a tag, which keeps the compiler from widening each tag.
        const int end = std::min(all, from + TagReads::kStretch);
        std::uint16_t equal = 0;
        for (int p = from; p < end; ++p) equal = static_cast<std::uint16_t>(equal + (tags[p] == sought ? 1 : 0));
        num += equal;
    }
    for (int read = 0; read < laid.num(); ++read) {
        const int end = laid.End(read);
        for (int p = std::max(laid.First(read), laid.TagsEnd(read)); p < end; ++p) num -= tags[p] == tag ? 1 : 0;
    }
    return num;
}

}  // namespace lintara
