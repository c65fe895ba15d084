// Consensus of one path between two edges: placing the reads, voting on the columns and writing their records.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "consensus/edge.h"
#include "consensus/path.h"
#include "run/settings.h"
#include "run/streams.h"
#include "store/gap.h"

namespace {

using namespace lintara;

// A path through a block of simulated reads without errors, each of which overlaps its successors.
struct Block {
    std::vector<Read> reads;
    std::vector<std::vector<std::uint8_t>> cells;
    std::vector<std::uint8_t*> rows;
    std::vector<int> order;
    std::vector<int> none;
    std::string raw;  // without the edges
};

const int kEdgeLen = 100;
const int kReadLen = 100;

// columns counts the edges in; inner is the number of reads between them.
Block SimulatedBlock(int columns, int inner) {
    std::mt19937 random(1);
    std::string truth;
    for (int i = 0; i < columns; ++i) truth += base[random() % 4];
    std::vector<int> starts;
    for (int i = 0; i < inner; ++i) starts.push_back(1 + static_cast<int>(random() % (columns - kReadLen - 1)));
    std::sort(starts.begin(), starts.end());
    starts.insert(starts.begin(), 0);
    starts.push_back(columns - kEdgeLen);

    Block block;
    for (const int start : starts) block.reads.emplace_back(truth.substr(start, kReadLen), start - kEdgeLen);
    const int num = static_cast<int>(starts.size());
    block.cells.assign(num, std::vector<std::uint8_t>(num, 0));
    for (int a = 0; a < num; ++a) {
        for (int b = a + 1; b < num; ++b) {
            const int over = starts[a] + kReadLen - starts[b];
            if (over >= Min_overlap && over < kReadLen) block.cells[a][b] = static_cast<std::uint8_t>(over);
        }
    }
    for (auto& row : block.cells) block.rows.push_back(row.data());
    block.order.push_back(0);
    while (block.order.back() != num - 1) {
        int next = num - 1;
        while (block.cells[block.order.back()][next] == 0) --next;
        block.order.push_back(next);
    }
    block.none.assign(num, 0);
    block.raw = truth.substr(kEdgeLen, columns - 2 * kEdgeLen);
    return block;
}

class Streams : public benchmark::Fixture {
  public:
    void SetUp(benchmark::State&) override {
        logFile = new std::ofstream[1];
        snp = new std::ofstream[1];
        logFile[0].open(kLogName);
        snp[0].open(kSnpName);
    }
    void TearDown(benchmark::State&) override {
        delete[] logFile;
        delete[] snp;
        logFile = snp = nullptr;
        std::remove(kLogName);
        std::remove(kSnpName);
    }

  protected:
    // All rounds write over the same records, so that the file doesn't grow.
    static void Rewind() {
        logFile[0].seekp(0);
        snp[0].seekp(0);
    }

  private:
    static constexpr const char* kLogName = "/tmp/lintara-consensus-bench.log";
    static constexpr const char* kSnpName = "/tmp/lintara-consensus-bench.snp";
};

BENCHMARK_DEFINE_F(Streams, PathConsensus)(benchmark::State& state) {
    const Block block = SimulatedBlock(1500, 598);
    for (auto _ : state) {
        Rewind();
        std::string seq = get_gap_seq(block.rows.data(), block.reads, block.order, 2, block.none.data(), 0);
        Get_snp(seq, block.order, block.rows.data(), block.reads, block.none.data(), block.none.data(), 0);
        snp[0].flush();
        if (seq != block.raw) state.SkipWithError("the consensus differs from the sequence that the reads came from");
    }
    state.counters["path"] = static_cast<double>(block.order.size());
}
BENCHMARK_REGISTER_F(Streams, PathConsensus)->Unit(benchmark::kMillisecond);

BENCHMARK_DEFINE_F(Streams, ConsensusFromTheBeforeEdge)(benchmark::State& state) {
    const Block block = SimulatedBlock(1500, 598);
    const std::string raw = get_gap_seq(block.rows.data(), block.reads, block.order, 0, block.none.data(), 0);
    for (auto _ : state) {
        Rewind();
        std::string seq = raw;
        Get_snp_before(seq, block.order, block.rows.data(), block.reads, block.none.data(), true, 0);
        snp[0].flush();
        benchmark::DoNotOptimize(seq);
    }
}
BENCHMARK_REGISTER_F(Streams, ConsensusFromTheBeforeEdge)->Unit(benchmark::kMillisecond);

}  // namespace
