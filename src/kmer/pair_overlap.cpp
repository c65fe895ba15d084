#include "kmer/pair_overlap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "align/placement.h"
#include "kmer/lanes.h"
#include "run/settings.h"

namespace lintara {

namespace {

// 16 bytes that are compared at once; a lane of a comparison is all ones where the bytes are equal.
using Lanes = std::uint8_t __attribute__((vector_size(16)));

/// LONGEST_TABLED_READ lanes of all ones and as many of zeros; n lanes from the end of the ones on mask n bytes.
struct Masks {
    std::uint8_t lanes[2 * (LONGEST_TABLED_READ + 1)];
};

constexpr Masks MakeMasks() {
    Masks masks{};
    for (int i = 0; i <= LONGEST_TABLED_READ; ++i) masks.lanes[i] = 255;
    return masks;
}

constexpr Masks MASKS = MakeMasks();

Lanes LoadLanes(const void* from) {
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

/// Number of i < n with a[i] == b[i], for n up to LONGEST_TABLED_READ. All of steps * LANES bytes of both ranges are
/// read, which must be n at least: a number of steps that is the same for all pairs costs less than one that fits.
int CountEqualMasked(const char* a, const char* b, int n, int steps) {
    const std::uint8_t* mask = MASKS.lanes + LONGEST_TABLED_READ + 1 - n;
    Lanes equal{};
    for (int i = 0; i < steps * LANES; i += LANES) {
        equal -= static_cast<Lanes>(LoadLanes(a + i) == LoadLanes(b + i)) & LoadLanes(mask + i);
    }
    std::uint64_t halves[2];
    std::memcpy(halves, &equal, sizeof halves);
    // No lane holds more than 16 and all of them together no more than 255, so that nothing carries over.
    return static_cast<int>(((halves[0] + halves[1]) * 0x0101010101010101U) >> 56);
}

}  // namespace

bool WordsCover(const std::vector<Read>& reads, int method, int type) {
    if (method != 0 && method != 1 && method != 2 && method != 5) return false;
    const detail::SeedPlan plan = detail::PlanSeeds(method);
    if (plan.pattlen < SHORTEST_WORD || plan.pattlen > LONGEST_WORD) return false;
    if (plan.pattnum < 1 || plan.pattnum > MOST_SEEDS) return false;
    const int num = static_cast<int>(reads.size());
    const int start = type == 1 || type == 3 ? 1 : 0;
    const int end = type == 2 || type == 3 ? num - 1 : num;
    for (int i = start; i < end; ++i) {
        const int length = static_cast<int>(reads[i].seq.size());
        if (length < plan.pattlen || length > LONGEST_TABLED_READ) return false;
    }
    return start < end;
}

void PairFinder::Begin(const LaidReads& laid, int method) {
    laid_ = &laid;
    method_ = method;
    steps_ = (laid.longest + LANES - 1) / LANES;
    if (ratio_ == Match_ratio && static_cast<int>(fewest_.size()) > laid.longest) return;
    ratio_ = Match_ratio;
    fewest_.assign(static_cast<std::size_t>(laid.longest) + 1, 0);
    int count = 0;
    for (int n = 1; n <= laid.longest; ++n) {
        while (count > 0 && static_cast<double>(count - 1) / n >= Match_ratio) --count;
        while (count <= n && !(static_cast<double>(count) / n >= Match_ratio)) ++count;
        fewest_[n] = count;
    }
}

namespace {

/// The overlap of n columns that puts column pos1 of one onto column pos2 of two, signed as SignedLength() does it.
int Signed(int n, const LaidRead& one, int pos1, const LaidRead& two, int pos2) {
    const int tail1 = one.length - pos1;
    const int tail2 = two.length - pos2;
    return (tail2 != tail1 ? tail2 > tail1 : pos1 <= pos2) ? n : -n;
}

}  // namespace

/// The overlap that puts column pos1 of one onto column pos2 of two; 0 when it is turned down.
FoundOverlap PairFinder::Placed(const LaidRead& one, int pos1, const LaidRead& two, int pos2) const {
    const int before = std::min(pos1, pos2);
    const int n = std::min(one.length - pos1, two.length - pos2) + before;
    const int equal = CountEqualMasked(one.bases + pos1 - before, two.bases + pos2 - before, n, steps_);
    if (equal < fewest_[n]) return {};
    return {Signed(n, one, pos1, two, pos2), equal};
}

/// overlap(one, two).
/// @param in_two  place of seed k of one in two, or -1
/// @param in_one  place of seed k of two in one, or -1
template <typename InTwo, typename InOne>
FoundOverlap PairFinder::Settle(const LaidRead& one, const LaidRead& two, InTwo in_two, InOne in_one) const {
    const int pattlen = laid_->plan.pattlen;
    const int pattnum = laid_->plan.pattnum;
    int found = 0;
    for (int k = 0; k < one.seeds; ++k) {
        const int pos = in_two(k);
        if (pos < 0) continue;
        ++found;
        const FoundOverlap overlap = Placed(one, k * pattlen, two, pos);
        if (overlap.length != 0) return overlap;
    }
    if (found == pattnum) {
        const int length = detail::StartInside(*one.seq, *two.seq, method_, Match_ratio);
        if (length != 0) return {-length, 0};
    }
    found = 0;
    for (int k = 0; k < two.seeds; ++k) {
        const int pos = in_one(k);
        if (pos < 0) continue;
        ++found;
        const FoundOverlap overlap = Placed(one, pos, two, k * pattlen);
        if (overlap.length != 0) return overlap;
    }
    return {found == pattnum ? detail::StartInside(*two.seq, *one.seq, method_, Match_ratio) : 0, 0};
}

int PairFinder::SearchText(int k, const LaidRead& from, const LaidRead& in) const {
    const int pattlen = laid_->plan.pattlen;
    return detail::FindSeed(*from.seq, k * pattlen, pattlen, *in.seq, method_);
}

/// The seeds of one read in another, by going over its words.
class PairFinder::SeedSearch {
  public:
    SeedSearch(const PairFinder& finder, const LaidRead& from, const LaidRead& in)
        : finder_(finder), from_(from), in_(in), pattlen_(finder.laid_->plan.pattlen) {}

    /// Place of seed k, or -1.
    int operator()(int k) {
        if (!skipped_) {
            first_ = SkipToSeeds(in_, pattlen_, from_);
            skipped_ = true;
        }
        const std::uint16_t word = from_.seed_words[k];
        if (word == NoWord(pattlen_)) return finder_.SearchText(k, from_, in_);
        return first_ < 0 ? -1 : FindWord(in_, pattlen_, word, first_);
    }

  private:
    const PairFinder& finder_;
    const LaidRead& from_;
    const LaidRead& in_;
    int pattlen_;
    bool skipped_ = false;
    int first_ = -1;  // no seed stands in front of it; -1: none at all
};

FoundOverlap PairFinder::Overlap(int one, int two) const {
    const LaidRead& left = laid_->reads[one];
    const LaidRead& right = laid_->reads[two];
    return Settle(left, right, SeedSearch(*this, left, right), SeedSearch(*this, right, left));
}

void PairFinder::Enter(int read) {
    const LaidRead& laid = laid_->reads[read];
    const int pattnum = laid_->plan.pattnum;
    entered_ = read;
    places_.Enter(laid.words, laid.length, laid_->plan.pattlen);
    plain_seeds_ = pattnum <= SOUGHT_WORDS && laid.seeds == pattnum && !laid.odd && !laid.same_seeds;
    std::uint16_t words[SOUGHT_WORDS];
    for (int k = 0; k < SOUGHT_WORDS; ++k) words[k] = laid.seed_words[std::min(k, pattnum - 1)];
    seeds_ = Sought(words);
}

FoundOverlap PairFinder::OverlapWithEntered(int other) const {
    const LaidRead& entered = laid_->reads[entered_];
    const LaidRead& read = laid_->reads[other];
    const auto in_entered = [&](int k) {
        const int place = places_.Find(read.seed_words[k]);
        return place >= 0 || !read.odd ? place : SearchText(k, read, entered);
    };
    const SeedSearch in_read(*this, entered, read);
    return other < entered_ ? Settle(read, entered, in_entered, in_read) : Settle(entered, read, in_read, in_entered);
}

/// Whether a seed of the entered read or another stands in the other one, and none in any other way than on a diagonal.
/// May say no where that is so. What is found where can't be predicted, so that there are hardly any branches.
/// @param shift  base 0 of the other read stands under this base of the entered one
bool PairFinder::SeedsOnlyOn(int shift, const LaidRead& other) const {
    const int pattlen = laid_->plan.pattlen;
    const int pattnum = laid_->plan.pattnum;
    if (!plain_seeds_ || other.seeds < pattnum || other.odd) return false;
    const LaidRead& entered = laid_->reads[entered_];
    bool on = false;
    bool off = false;
    std::uint64_t expected[Diagonal::WORDS] = {};  // a bit for each place of the other read: a seed stands there
    for (int k = 0; k < pattnum; ++k) {
        const unsigned int place = places_.Look(other.seed_words[k]);
        const bool stands = place == static_cast<unsigned int>(k * pattlen + shift);
        on |= stands;
        off |= (place <= LONGEST_TABLED_READ) & !stands;
    }
    for (int k = 0; k < pattnum; ++k) {
        const auto place = static_cast<unsigned int>(k * pattlen - shift);
        const bool inside = place < static_cast<unsigned int>(other.length);
        const unsigned int at = place & (0U - static_cast<unsigned int>(inside));  // 0 when it isn't inside
        const bool stands = inside & (other.words[at] == entered.seed_words[k]);
        expected[at / 64] |= std::uint64_t{stands} << (at % 64);
        on |= stands;
    }
    const int words = other.length - pattlen + 1;
    std::uint64_t unexpected = 0;
    for (int from = 0; from < words; from += LANES) {
        unexpected |= seeds_.In(other.words + from) & ~(expected[from / 64] >> (from % 64));
    }
    return on & !off & (unexpected == 0);
}

/// Whether the first seed of the entered read stands at a place in another read, and nowhere left of it.
bool PairFinder::StartsFirstAt(int place, const LaidRead& other) const {
    const std::uint16_t word = laid_->reads[entered_].seed_words[0];
    return other.words[place] == word && word != NoWord(laid_->plan.pattlen) &&
           FindWord(other, laid_->plan.pattlen, word) == place;
}

/// Whether the first seed that overlap() finds is one on a diagonal. May say no where that is so.
/// @param shift  base 0 of the other read stands under this base of the entered one
bool PairFinder::FirstSeedOn(int shift, int other) const {
    const LaidRead& read = laid_->reads[other];
    if (entered_ < other) return shift <= 0 ? StartsFirstAt(-shift, read) : SeedsOnlyOn(shift, read);
    if (read.odd) return false;
    for (int k = 0; k < read.seeds; ++k) {
        const int place = places_.Find(read.seed_words[k]);
        if (place >= 0) return place == k * laid_->plan.pattlen + shift;
    }
    return shift <= 0 && StartsFirstAt(-shift, read);
}

FoundOverlap PairFinder::OverlapWithEntered(int other, const Diagonal& diagonal) const {
    if (diagonal.equal < fewest_[diagonal.columns] || !FirstSeedOn(diagonal.shift, other)) {
        return OverlapWithEntered(other);
    }
    const int under = std::max(diagonal.shift, 0);
    const int above = std::max(-diagonal.shift, 0);
    const LaidRead& entered = laid_->reads[entered_];
    const LaidRead& read = laid_->reads[other];
    return {other < entered_ ? Signed(diagonal.columns, read, above, entered, under)
                             : Signed(diagonal.columns, entered, under, read, above),
            diagonal.equal};
}

void PairFinder::EnterEdge(const LaidRead& edge) {
    const int pattlen = laid_->plan.pattlen;
    edge_places_.resize(std::size_t{NoWord(LONGEST_WORD)} + 1);
    for (int place = edge.length - pattlen; place >= 0; --place) edge_places_[edge.words[place]] = place + 1;
    edge_places_[NoWord(pattlen)] = 0;
}

void PairFinder::LeaveEdge(const LaidRead& edge) {
    for (int place = edge.length - laid_->plan.pattlen; place >= 0; --place) edge_places_[edge.words[place]] = 0;
}

int PairFinder::SearchEdge(int k, const LaidRead& read, const LaidRead& edge) const {
    const int place = edge_places_[read.seed_words[k]] - 1;
    return place >= 0 || !read.odd ? place : SearchText(k, read, edge);
}

void PairFinder::OverlapBeforeEdge(std::vector<int>& overlaps) {
    const LaidRead& edge = laid_->reads.front();
    overlaps.assign(laid_->reads.size(), 0);
    EnterEdge(edge);
    for (int i = laid_->start; i < laid_->end; ++i) {
        const LaidRead& read = laid_->reads[i];
        const FoundOverlap overlap =
            Settle(edge, read, SeedSearch(*this, edge, read), [&](int k) { return SearchEdge(k, read, edge); });
        overlaps[i] = overlap.length;
    }
    LeaveEdge(edge);
}

void PairFinder::OverlapAfterEdge(std::vector<int>& overlaps) {
    const LaidRead& edge = laid_->reads.back();
    overlaps.assign(laid_->reads.size(), 0);
    EnterEdge(edge);
    for (int i = laid_->start; i < laid_->end; ++i) {
        const LaidRead& read = laid_->reads[i];
        const FoundOverlap overlap = Settle(
            read, edge, [&](int k) { return SearchEdge(k, read, edge); }, SeedSearch(*this, edge, read));
        overlaps[i] = overlap.length;
    }
    LeaveEdge(edge);
}

}  // namespace lintara
