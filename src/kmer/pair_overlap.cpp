#include "kmer/pair_overlap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "align/placement.h"
#include "kmer/overlap_matrix.h"
#include "kmer/seed_words.h"
#include "run/settings.h"

namespace lintara {

namespace {

const int MOST_SEEDS = 8;               // seeds a read
const std::size_t LONGEST_EDGE = 4000;  // bases; any bound below 65535 would do

/// Places of a read's seeds in another read, a byte a seed, seed 0 lowest; ABSENT where there is none.
using SeedPlaces = std::uint64_t;
const SeedPlaces ABSENT = 255;  // no word of the longest read starts there
const SeedPlaces NONE = ~SeedPlaces{0};

// 16 bytes that are compared at once; a lane of a comparison is all ones where the bytes are equal.
using Lanes = std::uint8_t __attribute__((vector_size(16)));
const int LANES = 16;

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

/// A sequence laid out for the comparison.
struct Laid {
    const std::string* seq;
    const char* bases;           // the same, with room behind for all steps of a comparison
    const std::uint16_t* words;  // see NumberWords()
    int length;
    int seeds;  // seeds that fit into it
    bool odd;   // a seed has a byte that is no base
    std::uint16_t seed_words[MOST_SEEDS];
};

/// Leftmost place of each word of an edge, which may be longer than a FirstPlaces takes.
class EdgePlaces {
  public:
    /// @param used  false: nothing is looked up
    EdgePlaces(const Laid& edge, int pattlen, bool used) {
        if (!used) return;
        places_.resize(std::size_t{NoWord(pattlen)} + 1);
        for (int place = edge.length - pattlen; place >= 0; --place) {
            places_[edge.words[place]] = static_cast<std::uint16_t>(place + 1);
        }
        places_[NoWord(pattlen)] = 0;
    }
    int Find(std::uint16_t word) const { return places_[word] - 1; }

  private:
    std::vector<std::uint16_t> places_;  // place + 1, or 0
};

/// One block laid out for the comparison. Reads start..end - 1 are its inner reads.
class BlockComparer {
  public:
    BlockComparer(std::uint8_t** matrix, const std::vector<Read>& reads, int start, int end, int method,
                  detail::SeedPlan plan)
        : matrix_(matrix), reads_(reads), start_(start), end_(end), method_(method), plan_(plan), in_(plan.pattlen) {
        LayOutReads();
    }

    void CompareAll(const PairMarks& marks, EdgeOverlaps& edges) {
        const EdgePlaces in_before(laid_.front(), plan_.pattlen, !edges.with_before.empty());
        const EdgePlaces in_after(laid_.back(), plan_.pattlen, !edges.with_after.empty());
        std::vector<SeedPlaces> places(CountPairs(marks));  // of pairs, by lower read and then by higher
        std::vector<SeedPlaces*> next(laid_.size());        // next pair of each lower read
        SeedPlaces* free = places.data();
        for (int i = start_; i < end_; ++i) {
            in_.Enter(laid_[i].words, laid_[i].length);
            if (!edges.with_before.empty()) edges.with_before[i] = WithBefore(laid_.front(), laid_[i], in_before);
            if (!edges.with_after.empty()) edges.with_after[i] = WithAfter(laid_[i], laid_.back(), in_after);
            ForEach(marks.Row(i), start_, i, [&](int lo) { Settle(lo, i, *next[lo]++); });
            next[i] = free;
            ForEach(marks.Row(i), i + 1, end_, [&](int hi) { *free++ = PlacesOf(hi, i); });
        }
    }

  private:
    /// Copies the bases, with room to read past each end, numbers the words of each read and settles what is accepted.
    void LayOutReads() {
        int longest = 0;
        for (int i = start_; i < end_; ++i) longest = std::max(longest, static_cast<int>(reads_[i].seq.size()));
        steps_ = (longest + LANES - 1) / LANES;
        const std::size_t room = static_cast<std::size_t>(steps_) * LANES;
        std::size_t total = 0;
        for (const Read& read : reads_) total += read.seq.size() + room;
        bases_.resize(total);
        words_.resize(total);
        laid_.reserve(reads_.size());
        std::size_t at = 0;
        for (const Read& read : reads_) {
            const int length = static_cast<int>(read.seq.size());
            std::memcpy(bases_.data() + at, read.seq.data(), read.seq.size());
            NumberWords(read.seq, plan_.pattlen, words_.data() + at);
            laid_.push_back(LayOut(read.seq, bases_.data() + at, words_.data() + at, length));
            at += read.seq.size() + room;
        }
        SettleThresholds(longest);
    }

    Laid LayOut(const std::string& seq, const char* bases, const std::uint16_t* words, int length) const {
        Laid laid{&seq, bases, words, length, std::min(plan_.pattnum, length / plan_.pattlen), false, {}};
        for (int k = 0; k < MOST_SEEDS; ++k) {
            laid.seed_words[k] = k < laid.seeds ? words[k * plan_.pattlen] : NoWord(plan_.pattlen);
            laid.odd |= k < laid.seeds && laid.seed_words[k] == NoWord(plan_.pattlen);
        }
        return laid;
    }

    /// fewest_[n]: equal columns of n that make an accepted overlap.
    void SettleThresholds(int longest) {
        fewest_.resize(static_cast<std::size_t>(longest) + 1);
        int count = 0;
        for (int n = 1; n <= longest; ++n) {
            while (count > 0 && static_cast<double>(count - 1) / n >= Match_ratio) --count;
            while (count <= n && !(static_cast<double>(count) / n >= Match_ratio)) ++count;
            fewest_[n] = count;
        }
    }

    std::size_t CountPairs(const PairMarks& marks) const {
        std::size_t count = 0;
        for (int i = start_; i < end_; ++i) ForEach(marks.Row(i), i + 1, end_, [&](int) { ++count; });
        return count;
    }

    template <typename Each>
    static void ForEach(const std::uint64_t* row, int from, int to, Each each) {
        for (int word = from / 64; word * 64 < to; ++word) {
            std::uint64_t left = row[word];
            if (word == from / 64) left &= ~std::uint64_t{0} << (from % 64);
            for (; left != 0; left &= left - 1) {
                const int j = word * 64 + __builtin_ctzll(left);
                if (j >= to) return;
                each(j);
            }
        }
    }

    /// The overlap that puts column pos1 of one onto column pos2 of two, as SignedLength() gives it; 0 when it is
    /// turned down.
    int Placed(const Laid& one, int pos1, const Laid& two, int pos2, bool tie_is_plus) const {
        const int before = std::min(pos1, pos2);
        const int tail1 = one.length - pos1;
        const int tail2 = two.length - pos2;
        const int n = std::min(tail1, tail2) + before;
        if (CountEqualMasked(one.bases + pos1 - before, two.bases + pos2 - before, n, steps_) < fewest_[n]) return 0;
        const bool plus = tail2 != tail1 ? tail2 > tail1 : tie_is_plus;
        return plus ? n : -n;
    }

    /// Place of seed k of `from` in `in`, or -1.
    /// @param places  what is known of the words of `in`
    template <typename Places>
    int PlaceOf(int k, const Laid& from, const Laid& in, const Places& places) const {
        const int place = places.Find(from.seed_words[k]);
        if (place >= 0 || !from.odd) return place;
        return detail::FindSeed(*from.seq, k * plan_.pattlen, plan_.pattlen, *in.seq, method_);
    }

    /// overlap(one, two).
    /// @param in_two  place of seed k of one in two, or -1
    /// @param in_one  place of seed k of two in one, or -1
    template <typename InTwo, typename InOne>
    int Overlap(const Laid& one, const Laid& two, InTwo in_two, InOne in_one) const {
        int found = 0;
        for (int k = 0; k < one.seeds; ++k) {
            const int pos = in_two(k);
            if (pos < 0) continue;
            ++found;
            const int p = k * plan_.pattlen;
            const int length = Placed(one, p, two, pos, p <= pos);
            if (length != 0) return length;
        }
        if (found == plan_.pattnum) {
            const int length = detail::StartInside(*one.seq, *two.seq, method_, Match_ratio);
            if (length != 0) return -length;
        }
        found = 0;
        for (int k = 0; k < two.seeds; ++k) {
            const int pos = in_one(k);
            if (pos < 0) continue;
            ++found;
            const int p = k * plan_.pattlen;
            const int length = Placed(one, pos, two, p, p >= pos);
            if (length != 0) return length;
        }
        return found == plan_.pattnum ? detail::StartInside(*two.seq, *one.seq, method_, Match_ratio) : 0;
    }

    int WithBefore(const Laid& edge, const Laid& read, const EdgePlaces& in_edge) const {
        return Overlap(
            edge, read, [&](int k) { return PlaceOf(k, edge, read, in_); },
            [&](int k) { return PlaceOf(k, read, edge, in_edge); });
    }

    int WithAfter(const Laid& read, const Laid& edge, const EdgePlaces& in_edge) const {
        return Overlap(
            read, edge, [&](int k) { return PlaceOf(k, read, edge, in_edge); },
            [&](int k) { return PlaceOf(k, edge, read, in_); });
    }

    /// Where the seeds of read `from` stand in read `in`, which is entered.
    SeedPlaces PlacesOf(int from, int in) const {
        const Laid& read = laid_[from];
        SeedPlaces places = NONE;
        for (int k = 0; k < plan_.pattnum; ++k) {
            const SeedPlaces place = std::min<unsigned int>(in_.Look(read.seed_words[k]), ABSENT);
            places ^= (ABSENT - place) << (8 * k);
        }
        return read.odd ? AddOddPlaces(read, laid_[in], places) : places;
    }

    SeedPlaces AddOddPlaces(const Laid& read, const Laid& in, SeedPlaces places) const {
        for (int k = 0; k < read.seeds; ++k) {
            if (read.seed_words[k] != NoWord(plan_.pattlen)) continue;
            const int place = detail::FindSeed(*read.seq, k * plan_.pattlen, plan_.pattlen, *in.seq, method_);
            if (place >= 0) places ^= (ABSENT - static_cast<SeedPlaces>(place)) << (8 * k);
        }
        return places;
    }

    static int PlaceAt(SeedPlaces places, int k) {
        const SeedPlaces place = places >> (8 * k) & ABSENT;
        return place == ABSENT ? -1 : static_cast<int>(place);
    }

    /// Settles the pair of lo and hi, hi being entered. Nearly always the first seed that is found settles it, so this
    /// one is looked at without asking in which of the two reads it stands.
    ///
    /// @param in_lo  places of the seeds of hi in lo
    void Settle(int lo, int hi, SeedPlaces in_lo) {
        const Laid& one = laid_[lo];
        const Laid& two = laid_[hi];
        const SeedPlaces in_hi = PlacesOf(lo, hi);
        const bool first_stage = in_hi != NONE;
        const SeedPlaces places = first_stage ? in_hi : in_lo;
        int length = 0;
        if (places != NONE) {
            const int k = __builtin_ctzll(~places) / 8;
            const int seed = k * plan_.pattlen;
            const int place = static_cast<int>(places >> (8 * k) & ABSENT);
            const int pos1 = first_stage ? seed : place;
            const int pos2 = first_stage ? place : seed;
            length = Placed(one, pos1, two, pos2, pos1 <= pos2);
            if (length == 0) {
                length = Overlap(
                    one, two, [&](int i) { return PlaceAt(in_hi, i); }, [&](int i) { return PlaceAt(in_lo, i); });
            }
        }
        detail::SettleCells(matrix_, lo, hi, one.length, two.length, length);
    }

    std::uint8_t** matrix_;
    const std::vector<Read>& reads_;
    int start_;
    int end_;
    int method_;
    detail::SeedPlan plan_;
    int steps_ = 0;  // steps that compare any two inner reads
    std::vector<char> bases_;
    std::vector<std::uint16_t> words_;
    std::vector<Laid> laid_;  // by read
    std::vector<int> fewest_;
    FirstPlaces in_;  // the read that is entered
};

bool TablesTake(const std::vector<Read>& reads, int start, int end, int method, detail::SeedPlan plan) {
    if (method != 0 && method != 1 && method != 2 && method != 5) return false;
    if (plan.pattlen < SHORTEST_WORD || plan.pattlen > LONGEST_WORD) return false;
    if (plan.pattnum < 1 || plan.pattnum > MOST_SEEDS) return false;
    int longest = 0;
    for (int i = start; i < end; ++i) {
        const int length = static_cast<int>(reads[i].seq.size());
        if (length < plan.pattlen) return false;
        longest = std::max(longest, length);
    }
    return longest <= LONGEST_TABLED_READ;
}

/// Whether no inner read is longer than an edge of the block, and the after edge not longer than the before edge: what
/// is longer than an edge may be cut there, the other edge included, before anything is held against it.
bool NothingIsCut(const std::vector<Read>& reads, int start, int end) {
    const int num = static_cast<int>(reads.size());
    std::size_t longest = 0;
    for (int i = start; i < end; ++i) longest = std::max(longest, reads[i].seq.size());
    const std::size_t before = reads.front().seq.size();
    const std::size_t after = reads.back().seq.size();
    if (start > 0 && (before < longest || before > LONGEST_EDGE)) return false;
    if (end < num && (after < longest || after > LONGEST_EDGE)) return false;
    return start == 0 || end == num || before >= after;
}

}  // namespace

bool OverlapBlock(std::uint8_t** matrix, const std::vector<Read>& reads, const PairMarks& marks, int method, int type,
                  EdgeOverlaps* edges) {
    const int num = static_cast<int>(reads.size());
    const int start = type == 1 || type == 3 ? 1 : 0;
    const int end = type == 2 || type == 3 ? num - 1 : num;
    const detail::SeedPlan plan = detail::PlanSeeds(method);
    if (marks.num != num || start >= end || !TablesTake(reads, start, end, method, plan)) return false;
    EdgeOverlaps none;
    if (edges != nullptr) {
        if (!NothingIsCut(reads, start, end)) return false;
        if (start > 0) edges->with_before.assign(reads.size(), 0);
        if (end < num) edges->with_after.assign(reads.size(), 0);
    }
    BlockComparer(matrix, reads, start, end, method, plan).CompareAll(marks, edges != nullptr ? *edges : none);
    return true;
}

}  // namespace lintara
