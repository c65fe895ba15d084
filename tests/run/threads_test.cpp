// Whole runs with several threads: which thread takes which scaffold is left to chance, what comes out is not.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using Records = std::vector<std::string>;

/// Cuts a text into records, each from a line that begins one up to the next; lines in front of the first are dropped.
/// The records come sorted.
Records Cut(const std::string& text, const std::function<bool(const std::string&)>& begins) {
    Records records;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (begins(line)) {
            records.push_back(line);
        } else if (!records.empty()) {
            records.back() += "\n" + line;
        }
    }
    std::sort(records.begin(), records.end());
    return records;
}

bool BeginsWith(const std::string& line, const char* head) {
    return line.rfind(head, 0) == 0;
}

/// Everything that a run leaves, without what tells of threads and clocks.
struct Outputs {
    Records gaps;
    Records scaffolds;
    Records columns;
    Records logs;

    bool operator==(const Outputs& other) const = default;
};

class Threads : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        std::ofstream contigs(Directory() + "/contig.fa");
        std::ofstream gaps(Directory() + "/gap.fa");
        for (int id = 1; id <= kScaffolds; ++id) MakeScaffold(id, contigs, gaps);
    }

    /// Three contigs of 400 bases; a gap of 60 to 300 bases that reads cover, and one of 1,600 that they cover in part.
    void MakeScaffold(int id, std::ofstream& contigs, std::ofstream& gaps) {
        const std::string genome = RandomBases(3100);
        const int small = 60 + id % 5 * 60;
        const int second = 400 + small;
        const int third = second + 400 + 1600;
        const std::string head = ">scaffold" + std::to_string(id);
        contigs << head << "_0\t0\n"
                << genome.substr(0, 400) << "\n"
                << head << "_1\t" << small << "\n"
                << genome.substr(static_cast<std::size_t>(second), 400) << "\n"
                << head << "_2\t1600\n"
                << genome.substr(static_cast<std::size_t>(third), 400) << "\n";
        const std::string place = "\t" + std::to_string(id);
        for (int from = 310; from < second; from += 9) {
            gaps << ">" << 2 * id << "\t" << small << "\t" << from - 400 << place << "\t0\n" << Read(genome, from);
        }
        const int origin = second + 400;
        for (int from = -90; from < 700; from += 9) {
            gaps << ">" << 2 * id + 1 << "\t1600\t" << from << place << "\t1\n" << Read(genome, origin + from);
        }
        for (int from = 900; from < 1590; from += 9) {
            gaps << ">" << 2 * id + 1 << "\t1600\t" << from << place << "\t1\n" << Read(genome, origin + from);
        }
    }

    /// 100 bases, one of which is wrong in every third read.
    std::string Read(const std::string& genome, int from) {
        std::string bases = genome.substr(static_cast<std::size_t>(from), 100);
        if (random_() % 3 == 0) bases[random_() % bases.size()] = "ACGT"[random_() % 4];
        return bases + "\n";
    }

    std::string RandomBases(std::size_t size) {
        std::string bases(size, 'A');
        for (char& c : bases) c = "ACGT"[random_() % 4];
        return bases;
    }

    Outputs Run(int threads) {
        const std::string out = Directory() + "/out";
        std::filesystem::remove_all(out);
        std::filesystem::create_directory(out);
        const testing::ProgramResult result =
            testing::RunCommand("exec " + std::string(LINTARA_PROGRAM) + " -g " + Directory() + "/gap.fa -c " +
                                    Directory() + "/contig.fa -o " + out + " -t " + std::to_string(threads),
                                Directory());
        EXPECT_EQ(result.status, 0) << result.err;
        std::string sequences;
        std::string columns;
        std::string logs;
        for (int i = 1; i <= threads; ++i) {
            const std::string number = std::to_string(i);
            sequences += testing::FileText(out + "/FilledScaf/seq.thread" + number);
            columns += testing::FileText(out + "/Snp/snp.thread" + number);
            logs += testing::FileText(out + "/Log/log.thread" + number);
        }
        logs = std::regex_replace(logs, std::regex("\ttime: [0-9]+\n"), "\ttime: #\n");
        logs = std::regex_replace(logs,
                                  std::regex("Thread [0-9]+ exits\\.\n|Start to fill the gaps by thread [0-9]+\n"), "");
        const auto head = [](const std::string& line) { return BeginsWith(line, ">"); };
        return {Cut(result.out, head), Cut(sequences, head),
                Cut(columns,
                    [](const std::string& line) {
                        return BeginsWith(line, "gap") && line.find("\tlength is: ") != std::string::npos;
                    }),
                Cut(logs, [](const std::string& line) { return BeginsWith(line, "Treat with scaffold "); })};
    }

    static constexpr int kScaffolds = 10;

  private:
    std::mt19937 random_{11};
};

TEST_F(Threads, LeaveTheSameRecordsInAnySplit) {
    const Outputs one = Run(1);
    ASSERT_EQ(one.gaps.size(), 2U * kScaffolds);
    ASSERT_EQ(one.scaffolds.size(), 1U * kScaffolds);
    ASSERT_EQ(one.columns.size(), 2U * kScaffolds);
    ASSERT_EQ(one.logs.size(), 1U * kScaffolds);
    // 16 are more than there are scaffolds.
    for (const int threads : {2, 4, 16}) {
        for (int repeat = 0; repeat < 3; ++repeat) {
            const Outputs many = Run(threads);
            EXPECT_EQ(many.gaps, one.gaps) << threads;
            EXPECT_EQ(many.scaffolds, one.scaffolds) << threads;
            EXPECT_EQ(many.columns, one.columns) << threads;
            EXPECT_EQ(many.logs, one.logs) << threads;
        }
    }
}

TEST_F(Threads, OneThreadLeavesTheSameBytesAgain) {
    EXPECT_EQ(Run(1), Run(1));
}

}  // namespace
}  // namespace lintara
