#include "align/edge_seeds.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "align/byte_scan.h"
#include "align/placement.h"
#include "run/settings.h"

namespace lintara {

namespace {

const int kForwardSeeds = 4;
const int kKmp2 = 3;
const int kWash = 4;

// Bases that are looked at in every kSample-th place of a text. A seed of kShortest bases holds one such place wherever
// it stands.
const int kSample = 4;
const int kShortest = 2 * kSample - 1;

// Searches for which no table is made. Its making costs about three times as much, but an edge that has been asked for
// more than a read's few seeds is asked for those of many reads.
const int kPlainSearches = 4;

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

std::uint32_t Word(const char* text) {
    std::uint32_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// A number below 256 for 4 bytes, different for different upper-case bases.
std::uint32_t Sample(const char* text) {
    return (Word(text) >> 1 & 0x03030303) * 0x01041040 >> 24;
}

/// Whether two seeds are equal, most of which have two words.
bool Equal(const char* a, const char* b, int length) {
    if (Word(a) != Word(b) || Word(a + length - kSample) != Word(b + length - kSample)) return false;
    return length <= 2 * kSample || std::memcmp(a, b, static_cast<std::size_t>(length)) == 0;
}

/// A hash of the first and the last four bytes.
std::uint32_t Hash(const char* text, int length) {
    return Word(text) * 0x9E3779B1 ^ Word(text + length - kSample) * 0x85EBCA77;
}

}  // namespace

EdgeSeeds::EdgeSeeds(const std::string& edge) : edge_(edge) {
    const detail::SeedPlan plan = detail::PlanSeeds(0);
    length_ = plan.pattlen;
    const bool alike = length_ == Min_overlap / kForwardSeeds;
    if (!alike || length_ < kShortest || plan.pattnum > MOST_SEEDS || Size(edge) < length_) return;
    number_ = std::min(std::max(plan.pattnum, kForwardSeeds), Size(edge) / length_);
    FillSamples();
}

bool EdgeSeeds::Covers(const std::string& text, int method) const {
    return number_ > 0 && Size(text) >= length_ && method >= 0 && method <= 5 && method != kKmp2 && method != kWash;
}

void EdgeSeeds::FillSamples() {
    samples_.fill(0);
    for (int seed = 0; seed < number_; ++seed) {
        for (int offset = 0; offset < kSample; ++offset) {
            samples_[Sample(edge_.data() + seed * length_ + offset)] |= 1U << (seed * kSample + offset);
        }
    }
}

void EdgeSeeds::PlacesIn(const std::string& text, Places& places) const {
    places.fill(-1);
    std::uint32_t sought = ~0U;
    for (int at = 0; at + kSample <= Size(text) && sought != 0; at += kSample) {
        // Ascending offsets are descending places, the last of which stays.
        std::uint32_t hits = samples_[Sample(text.data() + at)] & sought;
        for (; hits != 0; hits &= hits - 1) {
            const int seed = std::countr_zero(hits) / kSample;
            const int place = at - std::countr_zero(hits) % kSample;
            if (place < 0 || place + length_ > Size(text)) continue;
            if (!Equal(text.data() + place, edge_.data() + seed * length_, length_)) continue;
            places[seed] = place;
            sought &= ~(15U << (seed * kSample));
        }
    }
}

void EdgeSeeds::FillTable() const {
    const int stretches = Size(edge_) - length_ + 1;
    const int bits = std::bit_width(static_cast<unsigned int>(2 * stretches));
    shift_ = 32 - bits;
    slots_.assign(std::size_t{1} << bits, -1);
    for (int place = 0; place < stretches; ++place) {
        const char* stretch = edge_.data() + place;
        std::size_t slot = Hash(stretch, length_) >> shift_;
        while (slots_[slot] >= 0 && !Equal(edge_.data() + slots_[slot], stretch, length_)) {
            slot = (slot + 1) % slots_.size();
        }
        if (slots_[slot] < 0) slots_[slot] = place;
    }
}

int EdgeSeeds::PlaceOf(const char* seed) const {
    if (slots_.empty()) {
        if (plain_searches_ < kPlainSearches) {
            ++plain_searches_;
            return detail::FindFirst(seed, length_, edge_.data(), Size(edge_));
        }
        FillTable();
    }
    std::size_t slot = Hash(seed, length_) >> shift_;
    while (slots_[slot] >= 0 && !Equal(edge_.data() + slots_[slot], seed, length_)) {
        slot = (slot + 1) % slots_.size();
    }
    return slots_[slot];
}

}  // namespace lintara
