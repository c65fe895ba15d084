// The road from the reads of one block to its overlap matrix, by the plain steps (k-mer table, seeds, comparisons) and
// by those that the block driver takes (open_matrix.h), all cells asked for. The block of the plain steps has 1,000
// reads of 100 bases at 40-fold depth. Wanted: at most 60 ms, and at most 8 MB of heap beyond the matrix itself, whose
// rows take num * num * 2 bytes. The argument is how many bases in 1,000 are drawn anew, a quarter of them unchanged.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "kmer/open_matrix.h"
#include "kmer/overlap_matrix.h"
#include "run/settings.h"
#include "run/streams.h"

namespace {

const int READS = 1000;
const int READ_LENGTH = 100;
const int DEPTH = 40;

std::vector<lintara::Read> Block(int errors_per_thousand, int num = READS, int length = READS * READ_LENGTH / DEPTH) {
    std::mt19937 random(11);
    std::string genome;
    for (int i = 0; i < length; ++i) genome += lintara::base[random() % 4];
    std::vector<lintara::Read> reads;
    for (int i = 0; i < num; ++i) {
        const int start = static_cast<int>(random() % (genome.size() - READ_LENGTH + 1));
        std::string seq = genome.substr(start, READ_LENGTH);
        for (char& letter : seq) {
            if (static_cast<int>(random() % 1000) < errors_per_thousand) letter = lintara::base[random() % 4];
        }
        reads.emplace_back(seq, start);
    }
    std::sort(reads.begin(), reads.end());
    return reads;
}

double HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void BM_ReadsToMatrix(benchmark::State& state) {
    std::ofstream log("/dev/null");
    lintara::logFile = &log;
    const std::vector<lintara::Read> reads = Block(static_cast<int>(state.range(0)));
    const std::uint16_t num = static_cast<std::uint16_t>(reads.size());
    const double matrix_bytes = 2.0 * num * num;
    double table = 0;
    double most = 0;
    double overlaps = 0;
    for (auto _ : state) {
        const double start = HeapBytes();
        lintara::HashSet* hash =
            lintara::init_hashset((lintara::ReadLen - lintara::Kmer + 1) * reads.size(), lintara::load_factor);
        lintara::fill_hash(hash, reads);
        table = HeapBytes() - start;
        std::uint8_t** matrix = lintara::hash2matrix(hash, num);
        // Nothing larger stands at any other time: the table goes before the reads are compared.
        most = HeapBytes() - start - matrix_bytes;
        lintara::free_hash(hash);
        lintara::overlap_matrix(matrix, reads, lintara::Method, 0, 0);
        overlaps = 0;
        for (int i = 0; i < num; ++i) overlaps += num - static_cast<double>(std::count(matrix[i], matrix[i] + num, 0));
        lintara::free_matrix(matrix, num);
    }
    lintara::logFile = nullptr;
    state.counters["table_MB"] = table / 1e6;
    state.counters["beyond_matrix_MB"] = most / 1e6;
    state.counters["overlaps"] = overlaps;
}
BENCHMARK(BM_ReadsToMatrix)->Arg(0)->Arg(5)->Arg(10)->Unit(benchmark::kMillisecond);

// The table alone, by its steps.
void BM_FillHash(benchmark::State& state) {
    const std::vector<lintara::Read> reads = Block(0);
    for (auto _ : state) {
        lintara::HashSet* hash =
            lintara::init_hashset((lintara::ReadLen - lintara::Kmer + 1) * reads.size(), lintara::load_factor);
        lintara::fill_hash(hash, reads);
        lintara::free_hash(hash);
    }
}
BENCHMARK(BM_FillHash)->Unit(benchmark::kMillisecond);

void BM_SeedMatrix(benchmark::State& state) {
    const std::vector<lintara::Read> reads = Block(0);
    const std::uint16_t num = static_cast<std::uint16_t>(reads.size());
    lintara::HashSet* hash =
        lintara::init_hashset((lintara::ReadLen - lintara::Kmer + 1) * reads.size(), lintara::load_factor);
    lintara::fill_hash(hash, reads);
    for (auto _ : state) {
        std::uint8_t** matrix = lintara::hash2matrix(hash, num);
        lintara::free_matrix(matrix, num);
    }
    lintara::free_hash(hash);
}
BENCHMARK(BM_SeedMatrix)->Unit(benchmark::kMillisecond);

// The driver's matrix, every cell settled, for a block of so many reads with 0.5 % errors: over a region of 600 bases,
// so that the depth grows with the reads, or (second argument 1) at 40-fold depth, so that the region grows.
void BM_BlockToMatrix(benchmark::State& state) {
    const int num = static_cast<int>(state.range(0));
    const std::vector<lintara::Read> reads = Block(5, num, state.range(1) != 0 ? num * READ_LENGTH / DEPTH : 600);
    double overlaps = 0;
    for (auto _ : state) {
        lintara::OpenMatrix open;
        open.Begin(reads, lintara::Method, 0);
        open.Release();
        std::uint8_t** matrix = open.cells();
        lintara::SettleAll(matrix, num);
        overlaps = 0;
        for (int i = 0; i < num; ++i) overlaps += num - static_cast<double>(std::count(matrix[i], matrix[i] + num, 0));
    }
    state.counters["overlaps"] = overlaps;
    // A rate per overlap, inverted: seconds for one.
    state.counters["per_overlap"] =
        benchmark::Counter(overlaps, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_BlockToMatrix)
    ->ArgsProduct({{100, 300, 1000, 2000}, {0, 1}})
    ->ArgNames({"reads", "same_depth"})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
