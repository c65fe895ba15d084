// A whole gap through one strategy. LINTARA_FUZZ_STRATEGY picks it: 0 small, 1 middle, 2 big. At default settings an
// end of the process is a finding; with options it may be what they ask for.
//
// With the environment variable LINTARA_FUZZ_DUMP set to a directory, the gap is written there as input files of the
// program, so that a finding can be tried on it.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <map>

#include "gap_input.h"
#include "harness.h"
#include "run/settings.h"
#include "run/streams.h"
#include "strategy/fillgap.h"
#include "strategy/sequence.h"

namespace {

using lintara::Gap;
using lintara::Len_t;
using lintara::ReadLen;
using lintara::fuzz::GapInput;
using lintara::fuzz::LengthRange;

LengthRange Lengths() {
    switch (LINTARA_FUZZ_STRATEGY) {
        case 0:
            return {0, ReadLen};
        case 1:
            return {ReadLen + 1, 1499};
        default:
            return {1500, 6000};
    }
}

/// A gap of the store, with the life of the input.
struct StoredGap {
    Gap gap;

    explicit StoredGap(const GapInput& input) {
        gap.id = 1;
        gap.gap_length = input.gap_length;
        gap.greadSum = static_cast<Len_t>(input.reads.size());
        gap.reads = new std::string[gap.greadSum];
        gap.position = new int[gap.greadSum];
        for (Len_t i = 0; i < gap.greadSum; ++i) {
            gap.reads[i] = input.reads[i].seq;
            gap.position[i] = input.reads[i].pos;
        }
    }
    ~StoredGap() {
        delete[] gap.reads;
        delete[] gap.position;
    }
    StoredGap(const StoredGap&) = delete;
    StoredGap& operator=(const StoredGap&) = delete;
};

std::string Assemble(Gap& gap, std::string& before, std::string& after) {
    int realgaplen = 1;
    switch (LINTARA_FUZZ_STRATEGY) {
        case 0:
            return lintara::SmallGapAssemble(gap, before, after, realgaplen, 0);
        case 1:
            return lintara::MiddleGapAssemble(gap, before, after, realgaplen, 0);
        default:
            return lintara::BigGapAssemble(gap, before, after, 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lintara::fuzz;
    Prepare();
    ResetRun();
    ApplyOptions(DecodeOptions(data, size));
    const GapInput input = Decode(data, size, Lengths());
    // A gap without reads never reaches a strategy.
    if (input.reads.empty()) return 0;
    if (const char* directory = std::getenv("LINTARA_FUZZ_DUMP")) WriteFiles(input, directory);
    RunGuarded(input.options.used ? Ends::kAll : Ends::kOnlyTold, [&input] {
        StoredGap stored(input);
        std::string before = input.before;
        std::string after = input.after;
        const std::string text = Assemble(stored.gap, before, after);
        if (text.find('\0') != std::string::npos) std::abort();
        // Contigs are cut at the gap and nowhere else.
        if (input.before.compare(0, before.size(), before) != 0) std::abort();
        if (!after.empty() && after != input.after) std::abort();
    });
    return 0;
}
