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

/// The overlap of n columns that puts base 0 of two onto a base of one, signed as SignedLength() does it.
int Signed(int n, const LaidRead& one, const LaidRead& two, int shift) {
    const int end1 = one.length;
    const int end2 = two.length + shift;
    return (end2 != end1 ? end2 > end1 : shift <= 0) ? n : -n;
}

}  // namespace

/// The overlap that puts column pos1 of one onto column pos2 of two; 0 when it is turned down.
FoundOverlap PairFinder::Placed(const LaidRead& one, int pos1, const LaidRead& two, int pos2) const {
    const int before = std::min(pos1, pos2);
    const int n = std::min(one.length - pos1, two.length - pos2) + before;
    const int equal = CountEqualMasked(one.bases + pos1 - before, two.bases + pos2 - before, n, steps_);
    if (equal < fewest_[n]) return {};
    return {Signed(n, one, two, pos1 - pos2), equal};
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
    entered_ = read;
    places_.Enter(laid.words, laid.length, laid_->plan.pattlen);
    seeds_ = SeedsOf(laid);
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

/// How the seeds of a read stand in another one, of which only words are asked for. What is found where can't be
/// predicted, so that there are hardly any branches.
/// @param seeds  those of `from`, made ready
/// @param shift  base 0 of `in` stands under this base of `from`
PairFinder::SeedHits PairFinder::SeedsIn(const LaidRead& from, const Sought& seeds, const LaidRead& in,
                                         int shift) const {
    const int pattlen = laid_->plan.pattlen;
    const int pattnum = laid_->plan.pattnum;
    // Whether a place is the leftmost one of its seed is plain only where all seeds are sought, and differ.
    if (pattnum > SOUGHT_WORDS || from.seeds < pattnum || from.odd || from.same_seeds) return {false, true};
    bool on = false;
    std::uint64_t expected[Diagonal::WORDS] = {};  // a bit for each place: a seed stands there on the diagonal
    for (int k = 0; k < pattnum; ++k) {
        const auto place = static_cast<unsigned int>(k * pattlen - shift);
        const bool inside = place < static_cast<unsigned int>(in.length);
        const unsigned int at = place & (0U - static_cast<unsigned int>(inside));  // 0 when it isn't inside
        const bool stands = inside & (in.words[at] == from.seed_words[k]);
        expected[at / 64] |= std::uint64_t{stands} << (at % 64);
        on |= stands;
    }
    const int words = in.length - pattlen + 1;
    std::uint64_t unexpected = 0;
    for (int place = 0; place < words; place += LANES) {
        unexpected |= seeds.In(in.words + place) & ~(expected[place / 64] >> (place % 64));
    }
    return {on, unexpected != 0};
}

/// The seeds of a read, made ready to be sought.
Sought PairFinder::SeedsOf(const LaidRead& read) const {
    std::uint16_t words[SOUGHT_WORDS];
    for (int k = 0; k < SOUGHT_WORDS; ++k) words[k] = read.seed_words[std::min(k, laid_->plan.pattnum - 1)];
    return Sought(words);
}

/// Whether the first seed of a read stands at a place in another one, and nowhere left of it.
bool PairFinder::StartsFirstAt(int place, const LaidRead& read, const LaidRead& other) const {
    const std::uint16_t word = read.seed_words[0];
    return other.words[place] == word && word != NoWord(laid_->plan.pattlen) &&
           FindWord(other, laid_->plan.pattlen, word) == place;
}

/// Whether the first seed that overlap() finds is one on a diagonal. May say no where that is so.
/// @param shift   base 0 of `two` stands under this base of `one`
/// @param seeds   those of one, made ready
/// @param in_one  the same for the seeds of two in one
template <typename InOne>
bool PairFinder::FirstSeedOn(int shift, const LaidRead& one, const Sought& seeds, const LaidRead& two,
                             InOne in_one) const {
    if (shift <= 0) return StartsFirstAt(-shift, one, two);
    const SeedHits hits = SeedsIn(one, seeds, two, shift);
    return !hits.off && (hits.on || in_one());
}

/// Whether the first seed of another read that stands in the entered one does so on a diagonal; none stands there: by
/// the answer of `else_on`.
/// @param shift  base 0 of the other read stands under this base of the entered one
template <typename Else>
bool PairFinder::FirstSeedInEnteredOn(int shift, const LaidRead& other, Else else_on) const {
    if (other.odd) return false;
    for (int k = 0; k < other.seeds; ++k) {
        const int place = places_.Find(other.seed_words[k]);
        if (place >= 0) return place == k * laid_->plan.pattlen + shift;
    }
    return else_on();
}

FoundOverlap PairFinder::OverlapWithEntered(int other, const Diagonal& diagonal) const {
    if (diagonal.equal < fewest_[diagonal.columns]) return OverlapWithEntered(other);
    const LaidRead& entered = laid_->reads[entered_];
    const LaidRead& read = laid_->reads[other];
    const int shift = diagonal.shift;
    if (entered_ < other) {
        const auto in_entered = [&] { return FirstSeedInEnteredOn(shift, read, [] { return false; }); };
        if (!FirstSeedOn(shift, entered, seeds_, read, in_entered)) return OverlapWithEntered(other);
        return {Signed(diagonal.columns, entered, read, shift), diagonal.equal};
    }
    const auto in_read = [&] { return shift <= 0 && StartsFirstAt(-shift, entered, read); };
    if (!FirstSeedInEnteredOn(shift, read, in_read)) return OverlapWithEntered(other);
    return {Signed(diagonal.columns, read, entered, -shift), diagonal.equal};
}

FoundOverlap PairFinder::Overlap(int one, int two, const Diagonal& diagonal) const {
    const LaidRead& left = laid_->reads[one];
    const LaidRead& right = laid_->reads[two];
    const int shift = diagonal.shift;
    if (diagonal.equal < fewest_[diagonal.columns] ||
        !FirstSeedOn(shift, left, SeedsOf(left), right, [&] { return StartsFirstAt(shift, right, left); })) {
        return Overlap(one, two);
    }
    return {Signed(diagonal.columns, left, right, shift), diagonal.equal};
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
