// Repeat detection on 1,000 reads of 100 bases at 40-fold depth with 1 % errors: a locus without a repeat, and loci
// that hold a tandem repeat, where most time goes into tag pairs and correction passes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "repeat/type.h"
#include "run/settings.h"
#include "run/streams.h"

namespace {

constexpr int kReads = 1000;
constexpr int kReadBases = 100;
constexpr int kLocusBases = 2500;

std::string RandomBases(std::mt19937& random, int size) {
    std::string seq(size, ' ');
    for (char& c : seq) c = "ACGT"[random() % 4];
    return seq;
}

/// @param unit_bases    length of the repeat's unit; 0: no repeat
/// @param repeat_bases  length of the repeat in the middle of the locus
std::vector<std::string> MakeReads(int unit_bases, int repeat_bases) {
    std::mt19937 random(17);
    std::string locus = RandomBases(random, kLocusBases);
    if (unit_bases > 0) {
        const std::string unit = RandomBases(random, unit_bases);
        const int from = (kLocusBases - repeat_bases) / 2;
        for (int i = 0; i < repeat_bases; ++i) locus[from + i] = unit[i % unit_bases];
    }
    std::vector<std::string> reads;
    for (int i = 0; i < kReads; ++i) {
        std::string read = locus.substr(random() % (kLocusBases - kReadBases + 1), kReadBases);
        for (char& c : read) {
            if (random() % 100 == 0) c = "ACGT"[random() % 4];
        }
        reads.push_back(read);
    }
    return reads;
}

void FindType(benchmark::State& state) {
    const std::vector<std::string> input =
        MakeReads(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    lintara::logFile = new std::ofstream[1];
    lintara::logFile[0].open("/dev/null");
    int unit = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::string> reads = input;
        state.ResumeTiming();
        lintara::TagInfo* tagInfo = new lintara::TagInfo[lintara::TAG];
        int* freq = new int[lintara::TAG];
        std::map<std::string, int> TRSeq;
        int isMultiTR = 0;
        unit = lintara::find_type(reads, tagInfo, TRSeq, freq, isMultiTR, 0);
        benchmark::DoNotOptimize(unit);
        lintara::FreetagInfo(tagInfo);
        delete[] freq;
    }
    state.counters["unit"] = unit;
    delete[] lintara::logFile;
    lintara::logFile = nullptr;
}

BENCHMARK(FindType)
    ->ArgNames({"unit", "repeat"})
    ->Args({0, 0})
    ->Args({1, 400})
    ->Args({2, 400})
    ->Args({7, 400})
    ->Args({33, 400})
    ->Args({1, 2400})
    ->Args({2, 2400})
    ->Args({7, 2400})
    ->Args({33, 2400})
    ->Unit(benchmark::kMillisecond);

}  // namespace
