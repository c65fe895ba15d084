#include "repeat/tag_reads.h"

#include "repeat/type.h"

namespace lintara {
namespace {

// The loops below have no branch and no carried value, so that the compiler turns them into vector code.

void FillCodes(const char* bases, int num, unsigned char* codes) {
    for (int i = 0; i < num; ++i) {
        const unsigned char c = static_cast<unsigned char>(bases[i]);
        const unsigned char low = c | 0x20;
        // Bits 1 and 2 of a base's letter tell the four apart.
        unsigned char code = ((c >> 1) ^ (c >> 2)) & 1;
        code |= (c >> 1) & 2;
        const unsigned char other =
            (low != 'a' ? 1 : 0) & (low != 'c' ? 1 : 0) & (low != 'g' ? 1 : 0) & (low != 't' ? 1 : 0);
        codes[i] = other ? 4 : code;
    }
}

void FillTriples(const unsigned char* codes, int num, unsigned char* triples) {
    for (int i = 0; i < num; ++i) {
        triples[i] = static_cast<unsigned char>((codes[i] << 4) | (codes[i + 1] << 2) | codes[i + 2]);
    }
}

void FillFromTriples(const unsigned char* triples, int num, std::uint16_t* tags) {
    for (int i = 0; i < num; ++i) tags[i] = static_cast<std::uint16_t>((triples[i] << 6) | triples[i + 3]);
}

}  // namespace

void TagReads::Clear() {
    bases.clear();
    starts.assign(1, 0);
    holding.clear();
}

void TagReads::Append(const std::string& read) {
    bases += read;
    starts.push_back(static_cast<int>(bases.size()));
}

void TagReads::FillTags() {
    const int num = static_cast<int>(bases.size());
    // The tags of the last places reach past the bases; none of them is a read's.
    const std::size_t room = bases.size() + TAGL;
    if (codes_.size() < room) {
        codes_.resize(room);
        triples_.resize(room);
        tags.resize(room);
    }
    FillCodes(bases.data(), num, codes_.data());
    FillTriples(codes_.data(), num, triples_.data());
    FillFromTriples(triples_.data(), num, tags.data());
}

std::string TagReads::ReadAt(int read) const {
    return bases.substr(static_cast<std::size_t>(First(read)), static_cast<std::size_t>(End(read) - First(read)));
}

RepeatTags FindRepeatTags(const TagInfo* tagInfo, int TRLen) {
    RepeatTags repeat{};
    for (int tag = 0; tag < kTagValues; ++tag) {
        if (tagInfo[tag].differentDistanceNum > 0 && ExistTRLen(tagInfo[tag], TRLen)) repeat[tag] = 1;
    }
    return repeat;
}

void FindHolding(TagReads& laid, const RepeatTags& repeat) {
    laid.holding.clear();
    for (int read = 0; read < laid.num(); ++read) {
        unsigned char any = 0;
        for (int p = laid.First(read); p < laid.TagsEnd(read); ++p) any |= repeat[laid.Tag(p)];
        if (any) laid.holding.push_back(read);
    }
}

int FirstRun(const TagReads& laid, int read, const RepeatTags& repeat, int num) {
    int run = 0;
    for (int p = laid.First(read); p < laid.TagsEnd(read); ++p) {
        run = repeat[laid.Tag(p)] ? run + 1 : 0;
        if (run == num) return p - num + 1;
    }
    return -1;
}

}  // namespace lintara
