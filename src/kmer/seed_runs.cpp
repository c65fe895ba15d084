#include "kmer/seed_runs.h"

#include <algorithm>
#include <cstddef>

#include "run/settings.h"

namespace lintara {

namespace {

const int MOST_READS = 65535;
const std::uint64_t MOST_OCCURRENCES = 65535;  // of one k-mer; the road over the table counts in 16 bits
const std::size_t FEWEST_SLOTS = 1024;
const std::size_t SLOTS_A_READ = 32;  // enough for reads with a wrong base in two

/// The distinct keys of a block, numbered in the order in which they are met.
struct KeyNumbers {
    std::vector<std::uint64_t> keys;   // by number
    std::vector<std::uint32_t> slots;  // open addressing; number + 1, or 0 for a free slot

    explicit KeyNumbers(std::size_t reads) {
        std::size_t size = FEWEST_SLOTS;
        while (size < reads * SLOTS_A_READ) size *= 2;
        slots.resize(size);
        keys.reserve(size / 2);
    }

    std::size_t FirstSlot(std::uint64_t key) const {
        const std::uint64_t mixed = (key ^ (key >> 29)) * 0x9E3779B97F4A7C15U;
        return (mixed >> 32) & (slots.size() - 1);
    }

    std::size_t Next(std::size_t slot) const { return (slot + 1) & (slots.size() - 1); }

    void Grow() {
        slots.assign(slots.size() * 2, 0);
        for (std::size_t number = 0; number < keys.size(); ++number) {
            std::size_t slot = FirstSlot(keys[number]);
            while (slots[slot] != 0) slot = Next(slot);
            slots[slot] = static_cast<std::uint32_t>(number + 1);
        }
    }

    std::uint32_t NumberOf(std::uint64_t key) {
        std::size_t slot = FirstSlot(key);
        while (slots[slot] != 0) {
            if (keys[slots[slot] - 1] == key) return slots[slot] - 1;
            slot = Next(slot);
        }
        keys.push_back(key);
        slots[slot] = static_cast<std::uint32_t>(keys.size());
        if (keys.size() * 2 > slots.size()) Grow();
        return static_cast<std::uint32_t>(keys.size() - 1);
    }
};

/// K-mers of one read whose numbers follow on each other.
struct Run {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t read;
};

/// Writes the keys of all k-mers of a read. The spare high bits of a key below 32 bases hold the k-mers before it.
void WriteKeys(const std::string& seq, std::vector<std::uint64_t>& keys) {
    keys.clear();
    const int length = static_cast<int>(seq.size());
    if (length < Kmer) return;
    keys.resize(static_cast<std::size_t>(length - Kmer + 1));
    std::uint64_t bases = 0;  // all bases so far, the last one lowest
    for (int i = 0; i < Kmer - 1; ++i) bases = (bases << LEN_TO_BITLEN) | alphabet[seq[i]];
    if (Kmer >= static_cast<int>(DATA_LEN)) {
        for (int i = Kmer - 1; i < length; ++i) {
            bases = (bases << LEN_TO_BITLEN) | alphabet[seq[i]];
            keys[i - Kmer + 1] = bases;
        }
        return;
    }
    const unsigned int width = LEN_TO_BITLEN * static_cast<unsigned int>(Kmer);
    const std::uint64_t window = (std::uint64_t{1} << width) - 1;
    std::uint64_t key = 0;
    for (int i = Kmer - 1; i < length; ++i) {
        bases = (bases << LEN_TO_BITLEN) | alphabet[seq[i]];
        // The code of a byte that is no base has a third bit, which at the first base stands left of the window.
        const std::uint64_t spill = static_cast<std::uint64_t>(alphabet[seq[i - Kmer + 1]] >> 2) << width;
        key = (key << width) | (bases & window) | spill;
        keys[i - Kmer + 1] = key;
    }
}

/// Appends the runs of one read.
void AppendRuns(const std::vector<std::uint64_t>& keys, std::uint32_t read, KeyNumbers& numbers,
                std::vector<Run>& runs) {
    std::size_t pos = 0;
    while (pos < keys.size()) {
        const std::uint32_t first = numbers.NumberOf(keys[pos]);
        std::uint32_t last = first;
        ++pos;
        while (pos < keys.size()) {
            if (last + 1 < numbers.keys.size()) {
                if (numbers.keys[last + 1] != keys[pos]) break;
            } else if (numbers.NumberOf(keys[pos]) != last + 1) {
                break;
            }
            ++last;
            ++pos;
        }
        runs.push_back({first, last, read});
    }
}

/// Whether some k-mer occurs more often than the 16-bit count of the table's road can say.
bool CountOverflows(const std::vector<Run>& runs, std::size_t distinct) {
    std::uint64_t occurrences = 0;
    for (const Run& run : runs) occurrences += run.last - run.first + 1;
    if (occurrences <= MOST_OCCURRENCES) return false;
    std::vector<std::int64_t> change(distinct + 1);
    for (const Run& run : runs) {
        ++change[run.first];
        --change[run.last + 1];
    }
    std::int64_t frequency = 0;
    for (const std::int64_t step : change) {
        frequency += step;
        if (frequency > static_cast<std::int64_t>(MOST_OCCURRENCES)) return true;
    }
    return false;
}

void MarkPair(PairMarks& marks, std::uint32_t a, std::uint32_t b) {
    marks.Row(static_cast<int>(a))[b / 64] |= std::uint64_t{1} << (b % 64);
    marks.Row(static_cast<int>(b))[a / 64] |= std::uint64_t{1} << (a % 64);
}

/// Marks the pairs whose runs meet: goes through the runs by their first number and keeps the reads of those that are
/// not over. Runs of one read that meet, as in a tandem repeat, count as one.
void SweepRuns(const std::vector<Run>& runs, std::size_t distinct, PairMarks& marks) {
    const std::uint32_t NONE = static_cast<std::uint32_t>(runs.size());
    std::vector<std::uint32_t> first_run(distinct, NONE);  // by first number
    std::vector<std::uint32_t> next_run(runs.size(), NONE);
    for (std::uint32_t i = NONE; i-- > 0;) {
        next_run[i] = first_run[runs[i].first];
        first_run[runs[i].first] = i;
    }
    std::vector<std::uint32_t> open(static_cast<std::size_t>(marks.num) + 1);  // reads
    std::vector<std::uint32_t> reach(marks.num);                               // number behind the read's open run
    std::size_t open_count = 0;
    for (std::uint32_t number = 0; number < distinct; ++number) {
        for (std::uint32_t i = first_run[number]; i != NONE; i = next_run[i]) {
            const Run& run = runs[i];
            if (reach[run.read] <= number) {
                std::size_t kept = 0;
                for (std::size_t k = 0; k < open_count; ++k) {
                    const std::uint32_t other = open[k];
                    if (reach[other] <= number) continue;
                    MarkPair(marks, other, run.read);
                    open[kept++] = other;
                }
                open[kept] = run.read;
                open_count = kept + 1;
            }
            reach[run.read] = std::max(reach[run.read], run.last + 1);
        }
    }
}

}  // namespace

bool MarkSharedKmers(const std::vector<Read>& reads, PairMarks& marks) {
    if (reads.size() > MOST_READS || Kmer < 1) return false;
    KeyNumbers numbers(reads.size());
    std::vector<Run> runs;
    runs.reserve(reads.size() * 4);
    std::vector<std::uint64_t> keys;
    for (std::size_t i = 0; i < reads.size(); ++i) {
        WriteKeys(reads[i].seq, keys);
        AppendRuns(keys, static_cast<std::uint32_t>(i), numbers, runs);
    }
    if (CountOverflows(runs, numbers.keys.size())) return false;
    marks.num = static_cast<int>(reads.size());
    marks.words = (marks.num + 63) / 64;
    marks.bits.assign(static_cast<std::size_t>(marks.num) * marks.words, 0);
    SweepRuns(runs, numbers.keys.size(), marks);
    return true;
}

}  // namespace lintara
