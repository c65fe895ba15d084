// One middle gap of 600 bases with 300 reads of 100 bases, from reads to text, the log and the columns included.
#include <benchmark/benchmark.h>

#include <fstream>
#include <random>
#include <string>

#include "run/settings.h"
#include "run/streams.h"
#include "strategy/fillgap.h"

namespace lintara {
namespace {

const int kContig = 500;
const int kGapLength = 600;
const int kReads = 300;

/// A gap whose reads lie where a random genome has them, with one error in 200 bases.
struct SampleGap {
    std::string genome;
    Gap gap;

    SampleGap() {
        std::mt19937 random(5);
        const auto base_at_random = [&] { return "ACGT"[random() % 4]; };
        for (int i = 0; i < 2 * kContig + kGapLength; ++i) genome += base_at_random();
        gap.id = 1;
        gap.gap_length = kGapLength;
        gap.greadSum = kReads;
        gap.reads = new std::string[kReads];
        gap.position = new int[kReads];
        for (int i = 0; i < kReads; ++i) {
            const int start = kContig - 90 + static_cast<int>(random() % (kGapLength + 80));
            gap.reads[i] = genome.substr(static_cast<std::size_t>(start), 100);
            for (char& c : gap.reads[i]) {
                if (random() % 200 == 0) c = base_at_random();
            }
            gap.position[i] = start - kContig + static_cast<int>(random() % 21) - 10;
        }
    }
    ~SampleGap() {
        delete[] gap.reads;
        delete[] gap.position;
    }
};

void MiddleGap(benchmark::State& state) {
    SampleGap sample;
    logFile = new std::ofstream[1];
    snp = new std::ofstream[1];
    logFile[0].open("/dev/null");
    snp[0].open("/dev/null");
    SHORTOVERLAP = new bool[1]();
    initSizes = new std::uint64_t[1]();
    std::string seq;
    for (auto _ : state) {
        std::string before = sample.genome.substr(0, kContig);
        std::string after = sample.genome.substr(kContig + kGapLength);
        int realgaplen = 1;
        seq = MiddleGapAssemble(sample.gap, before, after, realgaplen, 0);
        benchmark::DoNotOptimize(seq);
    }
    if (seq.size() != static_cast<std::size_t>(kGapLength)) state.SkipWithError("the gap was not filled");
    delete[] logFile;
    delete[] snp;
    delete[] SHORTOVERLAP;
    delete[] initSizes;
}
BENCHMARK(MiddleGap)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lintara
