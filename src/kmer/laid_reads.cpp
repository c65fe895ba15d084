#include "kmer/laid_reads.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "kmer/lanes.h"

namespace lintara {

namespace {

static_assert(LANES <= WORDS_BEHIND);

// A number that is no word's and not NoWord() either.
const std::uint16_t NEVER = 0xFFFF;

LaidRead LayOutRead(const std::string& seq, detail::SeedPlan plan, char* bases, std::uint16_t* words) {
    const int length = static_cast<int>(seq.size());
    const std::uint16_t none = NoWord(plan.pattlen);
    std::memcpy(bases, seq.data(), seq.size());
    LaidRead read{&seq, bases, words, length, std::min(plan.pattnum, length / plan.pattlen), false, false, false, {}};
    read.strange = !NumberWords(bases, length, plan.pattlen, words);
    for (int k = 0; k < MOST_SEEDS; ++k) {
        read.seed_words[k] = k < read.seeds ? words[k * plan.pattlen] : none;
        read.odd |= k < read.seeds && read.seed_words[k] == none;
        for (int i = 0; i < k && k < read.seeds; ++i) read.same_seeds |= read.seed_words[i] == read.seed_words[k];
    }
    return read;
}

}  // namespace

void LayOut(const std::vector<Read>& reads, int type, detail::SeedPlan plan, LaidReads& laid) {
    const int num = static_cast<int>(reads.size());
    laid.start = type == 1 || type == 3 ? 1 : 0;
    laid.end = type == 2 || type == 3 ? num - 1 : num;
    laid.plan = plan;
    laid.longest = 0;
    for (int i = laid.start; i < laid.end; ++i) {
        laid.longest = std::max(laid.longest, static_cast<int>(reads[i].seq.size()));
    }
    // What is read behind a read's bases may be those of the next one.
    std::size_t total_bases = BASES_BEHIND;
    std::size_t total_words = 0;
    for (const Read& read : reads) {
        total_bases += read.seq.size();
        total_words += read.seq.size() + WORDS_BEHIND;
    }
    if (laid.bases.size() < total_bases) laid.bases.resize(total_bases);
    if (laid.words.size() < total_words) laid.words.resize(total_words);
    laid.reads.clear();
    laid.reads.reserve(reads.size());
    char* bases = laid.bases.data();
    std::uint16_t* words = laid.words.data();
    for (const Read& read : reads) {
        laid.reads.push_back(LayOutRead(read.seq, plan, bases, words));
        bases += read.seq.size();
        words += read.seq.size() + WORDS_BEHIND;
    }
}

void LayOutAgain(const std::vector<Read>& reads, int read, LaidReads& laid) {
    LaidRead& old = laid.reads[read];
    old = LayOutRead(reads[read].seq, laid.plan, old.bases, old.words);
}

int FindWord(const LaidRead& read, int pattlen, std::uint16_t word, int from) {
    const int count = read.length - pattlen + 1;
    for (int place = from; place < count; place += LANES) {
        const std::uint64_t hits = EqualWords(read.words + place, word);
        if (hits != 0) return place + std::countr_zero(hits);
    }
    return -1;
}

int SkipToSeeds(const LaidRead& read, int pattlen, const LaidRead& from) {
    const int count = read.length - pattlen + 1;
    int skipped = count;
    for (int k = 0; k < from.seeds; k += SOUGHT_WORDS) {
        std::uint16_t words[SOUGHT_WORDS];
        for (int i = 0; i < SOUGHT_WORDS; ++i) {
            const bool is_word = k + i < from.seeds && from.seed_words[k + i] != NoWord(pattlen);
            words[i] = is_word ? from.seed_words[k + i] : NEVER;
        }
        const Sought sought(words);
        for (int place = 0; place < skipped; place += LANES) {
            const std::uint64_t hits = sought.In(read.words + place);
            if (hits != 0) skipped = std::min(skipped, place + std::countr_zero(hits));
        }
    }
    return skipped < count ? skipped : -1;
}

}  // namespace lintara
