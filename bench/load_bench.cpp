// Loading of a plain gap file: bytes a second of one pass, and the memory that the store takes for each byte and read.
// The file has LINTARA_BENCH_MB megabytes (default 1000) and is written to the directory for temporary files.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "run/settings.h"
#include "store/load.h"

namespace lintara {
namespace {

class Input {
  public:
    Input() : directory_(std::filesystem::temp_directory_path() / "lintara-load-bench") {
        std::filesystem::create_directories(directory_);
        gaps = directory_ / "gap.fa";
        contigs = directory_ / "contig.fa";
        const char* megabytes = std::getenv("LINTARA_BENCH_MB");
        const long wanted = (megabytes == nullptr ? 1000 : std::atol(megabytes)) * 1000000L;
        std::ofstream gap_file_out(gaps);
        std::ofstream contig_file_out(contigs);
        std::mt19937 random(1);
        std::string read(100, 'A');
        long written = 0;
        for (int gap = 0; written < wanted; ++gap) {
            contig_file_out << ">scaffold" << gap + 1 << "_0\t0\nACGT\n>scaffold" << gap + 1 << "_1\t500\nACGT\n";
            for (int i = 0; i < 200; ++i) {
                for (int j = 0; j < 10; ++j) read[random() % 100] = "ACGT"[random() % 4];
                std::string record(1, '>');
                record.append(std::to_string(gap + 1)).append("\t500\t").append(std::to_string(i * 3 - 50));
                record.append("\t").append(std::to_string(gap + 1)).append("\t0\n").append(read).append("\n");
                gap_file_out << record;
                written += static_cast<long>(record.size());
                ++reads;
            }
        }
        bytes = written;
    }
    ~Input() { std::filesystem::remove_all(directory_); }

    std::string gaps;
    std::string contigs;
    long bytes = 0;
    long reads = 0;

  private:
    std::filesystem::path directory_;
};

Input& TheInput() {
    static Input input;
    return input;
}

void CountingPass(benchmark::State& state) {
    Input& input = TheInput();
    for (auto _ : state) {
        std::map<int, int> counts;
        Loadgapnum(input.gaps, counts);
    }
    state.SetBytesProcessed(state.iterations() * input.bytes);
}
BENCHMARK(CountingPass)->Unit(benchmark::kMillisecond)->Iterations(1);

/// Both passes over the gap file; the rate is that of one pass.
void BothPasses(benchmark::State& state) {
    Input& input = TheInput();
    for (auto _ : state) {
        Scaf* store = nullptr;
        std::map<int, int> ids;
        const auto before = mallinfo2();
        Loadgapfile(input.gaps, input.contigs, store, ids);
        const auto after = mallinfo2();
        state.PauseTiming();
        const double used = static_cast<double>(after.uordblks + after.hblkhd - before.uordblks - before.hblkhd);
        state.counters["bytes_used"] = used;
        state.counters["bytes_allowed"] =
            1.3 * 100.0 * static_cast<double>(input.reads) + 100.0 * static_cast<double>(input.reads);
        for (const auto& [id, num] : ids) scaffold_delete(store[num]);
        delete[] store;
        state.ResumeTiming();
    }
    state.SetBytesProcessed(2 * state.iterations() * input.bytes);
}
BENCHMARK(BothPasses)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace lintara
