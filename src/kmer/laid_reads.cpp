#include "kmer/laid_reads.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace lintara {

namespace {

// Words that are compared at once; a lane of a comparison is all ones where the words are equal.
using WordLanes = std::uint16_t __attribute__((vector_size(16)));
const int WORD_LANES = 8;
const int STEP = 2 * WORD_LANES;
static_assert(STEP <= WORDS_BEHIND);

WordLanes LoadWords(const std::uint16_t* from) {
    WordLanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

bool AnyLane(WordLanes lanes) {
    std::uint64_t halves[2];
    std::memcpy(halves, &lanes, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// Seeds that are compared in one pass, and a number that is no word's and not NoWord() either.
const int SEEDS_A_PASS = 4;
const std::uint16_t NEVER = 0xFFFF;

LaidRead LayOutRead(const std::string& seq, detail::SeedPlan plan, char* bases, std::uint16_t* words) {
    const int length = static_cast<int>(seq.size());
    const std::uint16_t none = NoWord(plan.pattlen);
    std::memcpy(bases, seq.data(), seq.size());
    LaidRead read{&seq, bases, words, length, std::min(plan.pattnum, length / plan.pattlen), false, false, {}};
    read.strange = !NumberWords(bases, length, plan.pattlen, words);
    for (int k = 0; k < MOST_SEEDS; ++k) {
        read.seed_words[k] = k < read.seeds ? words[k * plan.pattlen] : none;
        read.odd |= k < read.seeds && read.seed_words[k] == none;
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
    const std::size_t room = static_cast<std::size_t>(laid.longest) + BASES_BEHIND;
    std::size_t total_bases = 0;
    std::size_t total_words = 0;
    for (const Read& read : reads) {
        total_bases += read.seq.size() + room;
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
        bases += read.seq.size() + room;
        words += read.seq.size() + WORDS_BEHIND;
    }
}

void LayOutAgain(const std::vector<Read>& reads, int read, LaidReads& laid) {
    LaidRead& old = laid.reads[read];
    old = LayOutRead(reads[read].seq, laid.plan, old.bases, old.words);
}

int FindWord(const LaidRead& read, int pattlen, std::uint16_t word, int from) {
    const WordLanes sought = WordLanes{} + word;
    const int count = read.length - pattlen + 1;
    for (int place = from; place < count; place += STEP) {
        const WordLanes first = LoadWords(read.words + place) == sought;
        const WordLanes second = LoadWords(read.words + place + WORD_LANES) == sought;
        if (!AnyLane(first | second)) continue;
        int hit = place;
        while (read.words[hit] != word) ++hit;
        return hit;
    }
    return -1;
}

int SkipToSeeds(const LaidRead& read, int pattlen, const LaidRead& from) {
    const int count = read.length - pattlen + 1;
    int skipped = count;
    for (int k = 0; k < from.seeds; k += SEEDS_A_PASS) {
        WordLanes sought[SEEDS_A_PASS];
        for (int i = 0; i < SEEDS_A_PASS; ++i) {
            const bool is_word = k + i < from.seeds && from.seed_words[k + i] != NoWord(pattlen);
            const std::uint16_t word = is_word ? from.seed_words[k + i] : NEVER;
            sought[i] = WordLanes{} + word;
        }
        for (int place = 0; place < skipped; place += STEP) {
            const WordLanes first = LoadWords(read.words + place);
            const WordLanes second = LoadWords(read.words + place + WORD_LANES);
            WordLanes hits{};
            for (const WordLanes& word : sought) hits |= (first == word) | (second == word);
            if (AnyLane(hits)) skipped = place;
        }
    }
    return skipped < count ? skipped : -1;
}

}  // namespace lintara
