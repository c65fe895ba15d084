#include "kmer/shared_kmer.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "run/settings.h"

namespace lintara {

namespace {

const int WHOLE_KEY = static_cast<int>(DATA_LEN);  // bases that fill a key
const std::int64_t MOST_OCCURRENCES = 65535;       // of one k-mer that the table's 16-bit count tells
const std::uint32_t AT_ONCE = 4;                   // entries that are always copied
const int NO_SHIFT = 1 << 20;

// Of sampled words that closer ones are worth no look: reads share so many of them by chance that it takes less to
// compare all reads.
const int LEAST_DISTANCE = 6;

unsigned int KeyWidth() {
    return LEN_TO_BITLEN * static_cast<unsigned int>(Kmer);
}

/// Distance of the sampled words: each k-mer, or the 32 bases of it that its key holds, begins so that a whole sampled
/// word lies in it. Below 1 when a k-mer is shorter than a word.
int SampleDistance(int pattlen) {
    return std::min(Kmer, WHOLE_KEY) - pattlen + 1;
}

int KeyCount(const LaidRead& read) {
    return std::max(0, read.length - Kmer + 1);
}

/// Whether a key may stand twice in a read.
bool MayRepeatKey(const LaidRead& read, int pattlen) {
    const int distance = SampleDistance(pattlen);
    if (read.strange || distance < 1) return true;
    const int words = read.length - pattlen + 1;
    for (int place = 0; place < words; place += distance) {
        if (std::count(read.words, read.words + words, read.words[place]) > 1) return true;
    }
    return false;
}

/// The k-mers before it that reach into a key; each starts one base further left.
int EarlierKmers() {
    return Kmer >= WHOLE_KEY ? 0 : (64 - 1) / static_cast<int>(KeyWidth());
}

/// Length of a stretch of equal bytes that two reads need, one under the other, to be sure to share a key.
int SureStretch() {
    return Kmer + EarlierKmers();
}

/// Appends a base to the key of the k-mer that ended before it.
struct KeyRoller {
    std::uint64_t bases = 0;  // all bases so far, the last one lowest
    std::uint64_t key = 0;

    void Add(char byte) { bases = (bases << LEN_TO_BITLEN) | alphabet[byte]; }

    /// Ends a k-mer with the base that was added last.
    /// @param first  the first byte of the k-mer
    void EndKmer(char first) {
        if (Kmer >= WHOLE_KEY) {
            key = bases;
            return;
        }
        const unsigned int width = KeyWidth();
        const std::uint64_t window = (std::uint64_t{1} << width) - 1;
        // The code of a byte that is no base has a third bit, which at the first base stands left of the window.
        const std::uint64_t spill = static_cast<std::uint64_t>(alphabet[first] >> 2) << width;
        key = (key << width) | (bases & window) | spill;
    }
};

/// The key of the k-mer at a place.
std::uint64_t KeyAt(const char* seq, int place) {
    const int from = std::max(0, place - EarlierKmers());
    KeyRoller roller;
    for (int i = from; i < from + Kmer - 1; ++i) roller.Add(seq[i]);
    for (int first = from; first <= place; ++first) {
        roller.Add(seq[first + Kmer - 1]);
        roller.EndKmer(seq[first]);
    }
    return roller.key;
}

/// Whether two reads share a key in the stretch of equal bytes around two places.
bool ShareKeyAround(const LaidRead& left, int place, const LaidRead& right, int other) {
    const char* a = left.bases + place;
    const char* b = right.bases + other;
    int before = 0;
    while (before < place && before < other && a[-before - 1] == b[-before - 1]) ++before;
    int behind = 0;
    while (place + behind < left.length && other + behind < right.length && a[behind] == b[behind]) ++behind;
    const int stretch = before + behind;
    if (stretch >= SureStretch()) return true;
    // What is left depends on the bases before the stretch, or on the reads' starts.
    for (int end = std::min(Kmer, WHOLE_KEY) - before; end <= behind; ++end) {
        const int p = place + end - Kmer;
        const int q = other + end - Kmer;
        if (p >= 0 && q >= 0 && KeyAt(left.bases, p) == KeyAt(right.bases, q)) return true;
    }
    return false;
}

/// Bases of the longest stretch in which n columns of a and b are equal.
int LongestEqualStretch(const char* a, const char* b, int n) {
    int longest = 0;
    int from = 0;  // start of the stretch that reaches to i
    int i = 0;
    while (i + 8 <= n) {
        std::uint64_t eight_of_a = 0;
        std::uint64_t eight_of_b = 0;
        std::memcpy(&eight_of_a, a + i, sizeof eight_of_a);
        std::memcpy(&eight_of_b, b + i, sizeof eight_of_b);
        if (eight_of_a == eight_of_b) {
            i += 8;
            continue;
        }
        while (a[i] == b[i]) ++i;
        longest = std::max(longest, i - from);
        from = ++i;
    }
    for (; i < n; ++i) {
        if (a[i] == b[i]) continue;
        longest = std::max(longest, i - from);
        from = i + 1;
    }
    return std::max(longest, n - from);
}

}  // namespace

void WriteKeys(const char* bases, int length, std::vector<std::uint64_t>& keys) {
    keys.clear();
    if (length < Kmer) return;
    keys.resize(static_cast<std::size_t>(length - Kmer + 1));
    KeyRoller roller;
    for (int i = 0; i < Kmer - 1; ++i) roller.Add(bases[i]);
    for (int i = Kmer - 1; i < length; ++i) {
        roller.Add(bases[i]);
        roller.EndKmer(bases[i - Kmer + 1]);
        keys[i - Kmer + 1] = roller.key;
    }
}

namespace {

/// Whether two reads share a key, by all their keys.
bool KeysMeet(const LaidRead& a, const LaidRead& b) {
    // Asked in loops over reads, so that the thread keeps the memory.
    thread_local std::vector<std::uint64_t> keys_of_a;
    thread_local std::vector<std::uint64_t> keys_of_b;
    WriteKeys(a.bases, a.length, keys_of_a);
    WriteKeys(b.bases, b.length, keys_of_b);
    std::sort(keys_of_a.begin(), keys_of_a.end());
    return std::any_of(keys_of_b.begin(), keys_of_b.end(),
                       [](std::uint64_t key) { return std::binary_search(keys_of_a.begin(), keys_of_a.end(), key); });
}

}  // namespace

bool ShareKey(const LaidRead& a, const LaidRead& b, int pattlen) {
    const int distance = SampleDistance(pattlen);
    if (a.strange || b.strange || distance < 1) return KeysMeet(a, b);
    for (int place = 0; place <= a.length - pattlen; place += distance) {
        const std::uint16_t word = a.words[place];
        for (int found = FindWord(b, pattlen, word); found >= 0; found = FindWord(b, pattlen, word, found + 1)) {
            if (ShareKeyAround(a, place, b, found)) return true;
        }
    }
    return false;
}

bool SurelyShareKey(const char* a, const char* b, int n, int equal) {
    const int stretch = SureStretch();
    // The columns that differ part the others into at most one stretch more than they are.
    if (equal > (stretch - 1) * (n - equal + 1)) return true;
    return LongestEqualStretch(a, b, n) >= stretch;
}

bool CountsFit(const LaidReads& laid) {
    std::int64_t keys = 0;
    for (const LaidRead& read : laid.reads) keys += KeyCount(read);
    if (keys <= MOST_OCCURRENCES) return true;
    std::int64_t most = 0;  // occurrences of one key: one a read, but for reads that may hold it again
    for (const LaidRead& read : laid.reads) {
        if (KeyCount(read) > 0) most += MayRepeatKey(read, laid.plan.pattlen) ? KeyCount(read) : 1;
    }
    return most <= MOST_OCCURRENCES;
}

void SampledWords::Index(const LaidReads& laid) {
    pattlen_ = laid.plan.pattlen;
    key_bases_ = std::min(Kmer, WHOLE_KEY);
    sure_stretch_ = SureStretch();
    slots_.resize(std::size_t{NoWord(LONGEST_WORD)} + 1);
    for (const std::uint16_t word : sampled_) slots_[word] = {0, 0};
    sampled_.clear();
    strange_.clear();
    last_shift_.resize(laid.reads.size());
    const int distance = SampleDistance(pattlen_);
    sparse_ = distance >= LEAST_DISTANCE;
    if (!sparse_) return;
    for (int i = laid.start; i < laid.end; ++i) {
        const LaidRead& read = laid.reads[i];
        if (read.strange) {
            strange_.push_back(i);
            continue;
        }
        for (int place = 0; place <= read.length - pattlen_; place += distance) {
            sampled_.push_back(read.words[place]);
            ++slots_[read.words[place]].count;
        }
    }
    entries_.resize(sampled_.size() + AT_ONCE);
    std::uint32_t room = 0;
    for (const std::uint16_t word : sampled_) {
        Slot& slot = slots_[word];
        if (slot.first != 0) continue;
        room += slot.count;
        slot.first = room;  // and down to its first entry, as they are written
    }
    const std::uint16_t* word = sampled_.data();
    for (int i = laid.start; i < laid.end; ++i) {
        const LaidRead& read = laid.reads[i];
        if (read.strange) continue;
        for (int place = 0; place <= read.length - pattlen_; place += distance) {
            entries_[--slots_[*word++].first] = {static_cast<std::uint32_t>(i), static_cast<std::uint16_t>(place),
                                                 static_cast<std::uint16_t>(read.length)};
        }
    }
}

void SampledWords::StartTurns() {
    walked_.assign(slots_.size(), 0);
    turn_ = 1;
}

/// Which words a read has in common with which, and so on, can't be predicted: what is done for each has no branches.
void SampledWords::GatherLeads(int number, const LaidRead& read, const FirstPlaces* places) {
    again_.clear();
    const bool may_repeat = places == nullptr || places->repeated();
    std::size_t hit_count = 0;
    for (int place = 0, words = read.length - pattlen_ + 1; place < words; ++place) {
        const std::uint16_t word = read.words[place];
        if (may_repeat && (places == nullptr || places->Find(word) != place)) {
            again_.push_back(place);
            continue;
        }
        const Slot slot = slots_[word];
        const std::size_t room = hit_count + slot.count + AT_ONCE;
        if (hits_.size() < room) {
            hits_.resize(2 * room);
            at_.resize(2 * room);
        }
        Entry* hits = hits_.data() + hit_count;
        std::uint16_t* at = at_.data() + hit_count;
        const Entry* entries = entries_.data() + slot.first;
        const auto here = static_cast<std::uint16_t>(place);
        std::memcpy(hits, entries, AT_ONCE * sizeof *hits);
        for (std::uint32_t i = 0; i < AT_ONCE; ++i) at[i] = here;
        for (std::uint32_t i = AT_ONCE; i < slot.count; ++i) {
            hits[i] = entries[i];
            at[i] = here;
        }
        hit_count += slot.count;
    }
    std::fill(last_shift_.begin(), last_shift_.end(), NO_SHIFT);
    Lead* ends[KINDS];
    for (int kind = 0; kind < KINDS; ++kind) {
        if (leads_[kind].size() < hit_count + 1) leads_[kind].resize(hit_count + 1);
        ends[kind] = leads_[kind].data();
    }
    for (std::size_t i = 0; i < hit_count; ++i) {
        const Entry hit = hits_[i];
        const int place = at_[i];
        const int other = static_cast<int>(hit.read);
        const int shift = place - hit.place;
        int& last = last_shift_[other];
        const bool leads = (Columns(read, place, hit) >= key_bases_) & (last != shift);
        Lead*& end = ends[(other < number ? 2 : 0) + (shift < 0 ? 1 : 0)];
        *end = {other, shift};
        end += static_cast<std::ptrdiff_t>(leads);
        last ^= (last ^ shift) & -static_cast<int>(leads);
    }
    for (int kind = 0; kind < KINDS; ++kind)
        lead_counts_[kind] = static_cast<std::size_t>(ends[kind] - leads_[kind].data());
}

bool SampledWords::ShareKeyOn(const LaidRead& a, const LaidRead& b, const Diagonal& diagonal) const {
    // The columns that differ part the others into at most one stretch more than they are.
    if (diagonal.equal > (sure_stretch_ - 1) * (diagonal.columns - diagonal.equal + 1)) return true;
    if (!HasEqualStretch(diagonal, key_bases_)) return false;
    if (HasEqualStretch(diagonal, sure_stretch_)) return true;
    return AnyEqualStretch(diagonal, [&](int column, int columns) {
        if (columns < key_bases_) return false;
        return columns >= sure_stretch_ ||
               ShareKeyAround(a, column + std::max(diagonal.shift, 0), b, column + std::max(-diagonal.shift, 0));
    });
}

}  // namespace lintara
