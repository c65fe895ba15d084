// The searches and comparisons that the walks and joins spend their time in, at the sizes that they are called with:
// seeds of 7 bases in reads of 100, and edges of a few hundred bases.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "align/edge_align.h"
#include "align/overlap.h"
#include "align/search.h"

namespace {

const int kRead = 100;
const int kSeed = 7;

std::string RandomBases(std::mt19937& random, int size) {
    std::string seq;
    for (int i = 0; i < size; ++i) seq += "ACGT"[random() % 4];
    return seq;
}

// A seed that the read does not hold, so that each search runs to the end.
std::string AbsentSeed(std::mt19937& random, const std::string& read) {
    std::string seed;
    do {
        seed = RandomBases(random, kSeed);
    } while (read.find(seed) != std::string::npos);
    return seed;
}

void StringMatchAbsent(benchmark::State& state) {
    std::mt19937 random(1);
    const std::string read = RandomBases(random, kRead);
    const std::string seed = AbsentSeed(random, read);
    for (auto _ : state) {
        benchmark::DoNotOptimize(lintara::string_match(seed, read, static_cast<int>(state.range(0))));
    }
}
BENCHMARK(StringMatchAbsent)->Arg(0)->Arg(1)->Arg(2)->Arg(3)->Arg(4)->Arg(5);

void StringMatchAtEnd(benchmark::State& state) {
    std::mt19937 random(2);
    const std::string read = RandomBases(random, kRead);
    const std::string seed = read.substr(kRead - kSeed);
    for (auto _ : state) {
        benchmark::DoNotOptimize(lintara::string_match(seed, read, static_cast<int>(state.range(0))));
    }
}
BENCHMARK(StringMatchAtEnd)->Arg(1)->Arg(5);

// The named searches, each with its own tables, beside the front that stands for all of them.
void NamedSearchAbsent(benchmark::State& state, int (*search)(const std::string&, const std::string&)) {
    std::mt19937 random(1);
    const std::string read = RandomBases(random, kRead);
    const std::string seed = AbsentSeed(random, read);
    for (auto _ : state) benchmark::DoNotOptimize(search(seed, read));
}
BENCHMARK_CAPTURE(NamedSearchAbsent, BM3, lintara::BM3);
BENCHMARK_CAPTURE(NamedSearchAbsent, BM4, lintara::BM4);
BENCHMARK_CAPTURE(NamedSearchAbsent, KMP, lintara::KMP);

void GetMatchRatio(benchmark::State& state) {
    std::mt19937 random(3);
    const std::string read1 = RandomBases(random, kRead);
    const std::string read2 = RandomBases(random, kRead);
    for (auto _ : state) {
        benchmark::DoNotOptimize(lintara::GetMatchRatio(read1, read2, static_cast<int>(state.range(0))));
    }
}
BENCHMARK(GetMatchRatio)->Arg(30)->Arg(100);

void OverlapUnrelated(benchmark::State& state) {
    std::mt19937 random(4);
    const std::string read1 = RandomBases(random, kRead);
    const std::string read2 = RandomBases(random, kRead);
    for (auto _ : state) benchmark::DoNotOptimize(lintara::overlap(read1, read2, 5, 0.97));
}
BENCHMARK(OverlapUnrelated);

void OverlapOf60(benchmark::State& state) {
    std::mt19937 random(5);
    const std::string both = RandomBases(random, 140);
    const std::string read1 = both.substr(0, kRead);
    const std::string read2 = both.substr(40);
    for (auto _ : state) benchmark::DoNotOptimize(lintara::overlap(read1, read2, 5, 0.97));
}
BENCHMARK(OverlapOf60);

void AlignConnect(benchmark::State& state) {
    std::mt19937 random(6);
    const int size = static_cast<int>(state.range(0));
    const std::string both = RandomBases(random, 2 * size);
    const std::string left = both.substr(0, size);
    const std::string right = both.substr(size - 40, size);
    for (auto _ : state) benchmark::DoNotOptimize(lintara::align_connect(left, right, 8));
}
BENCHMARK(AlignConnect)->Arg(200)->Arg(500);

void OverlapCtgEdge(benchmark::State& state) {
    std::mt19937 random(7);
    const std::string both = RandomBases(random, 360);
    const std::string left = both.substr(0, 200);
    const std::string right = both.substr(160);
    int over1 = 0;
    int over2 = 0;
    int containing = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lintara::overlap_ctg_edge(left, right, over1, over2, containing));
    }
}
BENCHMARK(OverlapCtgEdge);

}  // namespace
