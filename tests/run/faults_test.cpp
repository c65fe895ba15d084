// Whole runs on a machine that fails: full disks, inputs that cannot be read or are cut, kills and missing memory.
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/program.h"
#include "support/thread_streams.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LINTARA_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LINTARA_SANITIZED 1
#endif
#endif

namespace lintara {
namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

class Faults : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        std::string contigs;
        std::string gaps;
        for (int id = 1; id <= 3; ++id) AddGap(id, id, 300, contigs, gaps);
        Write("contig.fa", contigs);
        Write("gap.fa", gaps);
        ClearOut();
    }

    /// A scaffold of two contigs of 500 bases with one gap between them, over which a read begins every 6 bases.
    void AddGap(int id, int scaffold, int length, std::string& contigs, std::string& gaps) {
        const std::string genome = RandomBases(static_cast<std::size_t>(1000 + length));
        const std::string number = std::to_string(scaffold);
        contigs += ">scaffold" + number + "_0\t0\n" + genome.substr(0, 500) + "\n>scaffold" + number + "_1\t" +
                   std::to_string(length) + "\n" + genome.substr(static_cast<std::size_t>(500 + length)) + "\n";
        for (int from = 410; from < 500 + length; from += 6) {
            gaps += ">" + std::to_string(id) + "\t" + std::to_string(length) + "\t" + std::to_string(from - 500) +
                    "\t" + number + "\t0\n" + genome.substr(static_cast<std::size_t>(from), 100) + "\n";
        }
    }

    std::string RandomBases(std::size_t size) {
        std::string bases(size, 'A');
        for (char& c : bases) c = "ACGT"[random_() % 4];
        return bases;
    }

    std::string Path(const std::string& name) const { return Directory() + "/" + name; }
    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary) << text;
    }
    void ClearOut() const {
        std::filesystem::remove_all(Path("out"));
        std::filesystem::create_directory(Path("out"));
    }

    std::string Command(const std::string& gap_file = "gap.fa", const std::string& contig_file = "contig.fa") const {
        return std::string(LINTARA_PROGRAM) + " -g " + Path(gap_file) + " -c " + Path(contig_file) + " -o " +
               Path("out");
    }
    testing::ProgramResult Run(const std::string& gap_file = "gap.fa",
                               const std::string& contig_file = "contig.fa") const {
        return testing::RunCommand("exec " + Command(gap_file, contig_file), Directory());
    }
    /// As one who may not read whatever file it is, as root may.
    testing::ProgramResult RunWithoutPrivileges() const {
        const std::string drop = geteuid() == 0 ? "setpriv --bounding-set=-all --inh-caps=-all " : "";
        return testing::RunCommand("exec " + drop + Command(), Directory());
    }
    /// On a disk that is full after so many blocks of 1,024 bytes in one file. The captured texts go through a pipe,
    /// which is not bound by that.
    testing::ProgramResult RunOnFullDisk(int blocks) const {
        return testing::RunCommand(
            "{ (ulimit -f " + std::to_string(blocks) + "; exec " + Command() + " 2>&1) | cat; exit ${PIPESTATUS[0]}; }",
            Directory());
    }

    std::string OutText(const std::string& name) const { return testing::FileText(Path("out/" + name)); }
    std::string Log() const {
        return std::regex_replace(OutText("Log/log.thread1"), std::regex("\ttime: [0-9]+\n"), "\ttime: #\n");
    }
    std::string Seq() const { return OutText("FilledScaf/seq.thread1"); }
    std::string Snp() const { return OutText("Snp/snp.thread1"); }

  private:
    std::mt19937 random_{5};
};

// ---- full disks ----------------------------------------------------------------------------------------------------

#ifndef LINTARA_SANITIZED

TEST_F(Faults, FullDiskUnderTheSequencesIsReported) {
    // A scaffold without gaps: the sequences are long, the log is not.
    Write("contig.fa", ">scaffold1_0\t0\n" + RandomBases(50000) + "\n");
    Write("gap.fa", "");
    const testing::ProgramResult result = RunOnFullDisk(20);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.out, "\nFailed to write " + Path("out/FilledScaf/seq.thread1") + "\n")) << result.out;
}

TEST_F(Faults, FullDiskUnderTheColumnsIsReported) {
    ASSERT_EQ(Run().status, 0);
    const std::size_t log = Log().size();
    const std::size_t snp = Snp().size();
    ASSERT_GT(snp, log + 4096);
    ClearOut();
    const testing::ProgramResult result = RunOnFullDisk(static_cast<int>((log + snp) / 2 / 1024));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.out, "\nFailed to write " + Path("out/Snp/snp.thread1") + "\n")) << result.out;
}

TEST_F(Faults, FullDiskUnderTheLogIsReported) {
    // Gaps without reads: each has a line in the log and nothing but a few bases in the sequences.
    std::string contigs;
    for (int i = 0; i < 500; ++i) contigs += ">scaffold1_" + std::to_string(i) + "\t5\nACGT\n";
    Write("contig.fa", contigs);
    Write("gap.fa", "");
    const testing::ProgramResult result = RunOnFullDisk(10);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.out, "\nFailed to write " + Path("out/Log/log.thread1") + "\n")) << result.out;
}

#endif

TEST_F(Faults, FullStandardOutputLeavesNoTable) {
    const testing::ProgramResult result = testing::RunCommand("{ " + Command() + " >/dev/full; }", Directory());
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.err, "\nFailed to write the standard output\n")) << result.err;
    EXPECT_EQ(result.err.find("All the gaps treated finish!"), std::string::npos);
}

// ---- inputs that cannot be read ------------------------------------------------------------------------------------

TEST_F(Faults, UnreadableInputsAreNamed) {
    for (const char* name : {"gap.fa", "contig.fa"}) {
        std::filesystem::permissions(Path(name), std::filesystem::perms::none);
        const testing::ProgramResult result = RunWithoutPrivileges();
        std::filesystem::permissions(Path(name), std::filesystem::perms::owner_all);
        if (result.err.find("setpriv") != std::string::npos) GTEST_SKIP() << result.err;
        EXPECT_EQ(result.status, 255) << name;
        EXPECT_TRUE(EndsWith(result.err, "Fail to load file " + Path(name) + "\n")) << result.err;
        EXPECT_TRUE(std::filesystem::is_empty(Path("out"))) << name;
    }
}

TEST_F(Faults, DirectoryAsContigFileEndsTheRun) {
    std::filesystem::create_directory(Path("folder"));
    const testing::ProgramResult result = Run("gap.fa", "folder");
    EXPECT_EQ(result.status, 255);
    EXPECT_TRUE(EndsWith(result.err, "\nFail to load gap and contig files\n")) << result.err;
    EXPECT_TRUE(std::filesystem::is_empty(Path("out")));
}

TEST_F(Faults, DirectoryAsGapFileIsAFileWithoutReads) {
    std::filesystem::create_directory(Path("folder"));
    const testing::ProgramResult result = Run("folder");
    // Nothing is filled.
    EXPECT_EQ(result.status, -SIGFPE);
    EXPECT_NE(result.err.find("\nIs gapread.fa or contig.fa empty? Can't find read or contig seq\n"),
              std::string::npos);
    EXPECT_EQ(result.out, "");
}

TEST_F(Faults, FileInPlaceOfTheOutputDirectoryIsNamed) {
    std::filesystem::remove_all(Path("out"));
    Write("out", "a file\n");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(EndsWith(result.err, "\nFailed to create directory: " + Path("out/FilledScaf") + "\n")) << result.err;
    EXPECT_EQ(testing::FileText(Path("out")), "a file\n");
}

// ---- cut inputs ----------------------------------------------------------------------------------------------------

/// What can still be taken out of a cut gzip file.
std::string Remains(const std::string& path) {
    std::string text;
    const gzFile in = gzopen(path.c_str(), "rb");
    char c;
    while (gzread(in, &c, 1) == 1) text += c;
    gzclose(in);
    return text;
}

TEST_F(Faults, GzipCutAtEachTenthRunsOnWhatRemains) {
    const std::string text = testing::FileText(Path("gap.fa"));
    const gzFile out = gzopen(Path("gap.fa.gz").c_str(), "wb");
    ASSERT_EQ(gzwrite(out, text.data(), static_cast<unsigned>(text.size())), static_cast<int>(text.size()));
    gzclose(out);
    const std::string packed = testing::FileText(Path("gap.fa.gz"));
    std::size_t last_size = 0;
    for (std::size_t tenth = 1; tenth <= 10; ++tenth) {
        Write("cut.gz", packed.substr(0, packed.size() * tenth / 10));
        const std::string remains = Remains(Path("cut.gz"));
        EXPECT_EQ(remains, text.substr(0, remains.size()));
        EXPECT_GE(remains.size(), last_size);
        last_size = remains.size();
        Write("plain", remains);

        ClearOut();
        const testing::ProgramResult plain = Run("plain");
        EXPECT_TRUE(plain.status == 0 || plain.status == -SIGFPE) << plain.err;
        const std::vector<std::string> expected = {plain.out, Log(), Seq(), Snp()};
        ClearOut();
        const testing::ProgramResult cut = Run("cut.gz");
        EXPECT_EQ(cut.status, plain.status) << tenth;
        EXPECT_EQ((std::vector<std::string>{cut.out, Log(), Seq(), Snp()}), expected) << tenth;
    }
    EXPECT_EQ(last_size, text.size());
}

TEST_F(Faults, PlainFilesCutAtEachTenthAreTreatedOrRefused) {
    for (const char* name : {"gap.fa", "contig.fa"}) {
        const std::string text = testing::FileText(Path(name));
        for (std::size_t tenth = 0; tenth < 10; ++tenth) {
            Write("cut", text.substr(0, text.size() * tenth / 10));
            ClearOut();
            const bool gaps = name == std::string("gap.fa");
            const testing::ProgramResult result = gaps ? Run("cut") : Run("gap.fa", "cut");
            // A gap file may end at any byte. A contig file may lack the contigs that the gap file speaks of.
            if (result.status == 255 && !gaps) {
                EXPECT_TRUE(std::regex_search(result.err, std::regex("(: line [0-9]+: contig |position error |"
                                                                     "Fail to load gap and contig files).*\n$")))
                    << result.err;
            } else {
                EXPECT_TRUE(result.status == 0 || result.status == -SIGFPE) << name << tenth << "\n" << result.err;
            }
        }
    }
}

// ---- reads that are none ------------------------------------------------------------------------------------------

/// A gap of 1,600 bases between contigs of 500 bases; its reads are pieces of the genome, or given.
class OddReads : public Faults {
  protected:
    void SetUp() override {
        Faults::SetUp();
        genome_ = RandomBases(2600);
        Write("contig.fa",
              ">scaffold1_0\t0\n" + genome_.substr(0, 500) + "\n>scaffold1_1\t1600\n" + genome_.substr(2100) + "\n");
    }

    std::string Record(int position, const std::string& bases) const {
        return ">1\t1600\t" + std::to_string(position) + "\t1\t0\n" + bases + "\n";
    }
    std::string Record(int position) const {
        return Record(position, genome_.substr(static_cast<std::size_t>(500 + position), 100));
    }

    testing::ProgramResult RunOn(const std::string& records) const {
        Write("gap.fa", records);
        ClearOut();
        return Run();
    }

  private:
    std::string genome_;
};

TEST_F(OddReads, FirstReadWithoutABaseGivesNoEdge) {
    const std::string open = ">gap1\t1600\t1600\tscaffold1\t0\t500\t500\n" + std::string(1600, 'N') + "\n";
    // Two blocks of one read each, where the edges are cut as long as the first read.
    for (const std::string& records : {Record(-5, "") + Record(1000), Record(5, "") + Record(1550)}) {
        const testing::ProgramResult result = RunOn(records);
        EXPECT_EQ(result.status, -SIGFPE) << result.err;
        EXPECT_EQ(result.out, open);
    }
}

TEST_F(OddReads, ReadShorterThanASeedChangesNothingInTheLastBlock) {
    const std::string whole = RunOn(Record(100) + Record(1500) + Record(1550)).out;
    ASSERT_FALSE(whole.empty());
    // It stands where it touches the next read, so that the blocks stay as they are.
    const std::pair<int, const char*> odd[] = {{1550, ""}, {1549, "A"}, {1548, "ACG"}, {1548, "ACGTAC"}};
    for (const auto& [position, bases] : odd) {
        const testing::ProgramResult result =
            RunOn(Record(100) + Record(1500) + Record(position, bases) + Record(1550));
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, whole) << bases;
    }
}

// ---- ends from outside ---------------------------------------------------------------------------------------------

TEST_F(Faults, KilledRunLeavesWholeLinesOfWhatAWholeRunLeaves) {
    std::string contigs;
    std::string gaps;
    for (int id = 1; id <= 300; ++id) AddGap(id, id, 1200, contigs, gaps);
    Write("contig.fa", contigs);
    Write("gap.fa", gaps);
    ASSERT_EQ(Run().status, 0);
    const std::string log = Log();
    const std::string seq = Seq();
    const std::string snp = Snp();
    ClearOut();
    // Killed as soon as there are columns of some gaps, and long before there can be those of all.
    const testing::ProgramResult result = testing::RunCommand(
        "{ " + Command() + " & run=$!; file=" + Path("out/Snp/snp.thread1") +
            "; until [ -s $file ] || ! kill -0 $run; do sleep 0.005; done; kill -9 $run; wait $run; }",
        Directory());
    EXPECT_EQ(result.status, 128 + SIGKILL);
    EXPECT_FALSE(Snp().empty());
    EXPECT_LT(Snp().size(), snp.size());
    // A kill that falls inside a write lets the kernel finish the page that it is at.
    const std::size_t page = 4096;
    for (const std::string& text : {OutText("Log/log.thread1"), Seq(), Snp(), result.out}) {
        EXPECT_TRUE(text.empty() || text.back() == '\n' || text.size() % page == 0) << text.size();
    }
    // The clock readings of the log do not count.
    const std::string log_start =
        Log().substr(0, Log().rfind("\ttime: ") == std::string::npos ? std::string::npos : Log().rfind("\ttime: "));
    EXPECT_EQ(log_start, log.substr(0, log_start.size()));
    EXPECT_EQ(Seq(), seq.substr(0, Seq().size()));
    EXPECT_EQ(Snp(), snp.substr(0, Snp().size()));
    EXPECT_EQ(result.err.find("totalGapNum"), std::string::npos);
}

TEST_F(Faults, SecondRunLeavesTheOutputsOfTheFirst) {
    ASSERT_EQ(Run().status, 0);
    const std::vector<std::string> first = {Log(), Seq(), Snp()};
    const testing::ProgramResult second = Run();
    EXPECT_EQ(second.status, 2);
    EXPECT_TRUE(EndsWith(second.err, "\nFailed to create directory: " + Path("out/FilledScaf") + "\n")) << second.err;
    EXPECT_EQ(second.out, "");
    EXPECT_EQ((std::vector<std::string>{Log(), Seq(), Snp()}), first);
}

// ---- reads that no seed fits into ----------------------------------------------------------------------------------

class TinyReads : public Faults {
  protected:
    /// One gap of 1,600 bases with the reads given as position and text, between contigs whose bases are their own. A
    /// "+" in the text stands for the 80 bases of the genome at that position.
    testing::ProgramResult RunWith(const std::vector<std::pair<int, std::string>>& reads) {
        const std::string genome = RandomBases(2600);
        Write("contig.fa",
              ">scaffold1_0\t0\n" + genome.substr(0, 500) + "\n>scaffold1_1\t1600\n" + genome.substr(2100) + "\n");
        std::string gaps;
        for (const auto& [position, text] : reads) {
            gaps += ">1\t1600\t" + std::to_string(position) + "\t1\t0\n" +
                    (text == "+" ? genome.substr(static_cast<std::size_t>(500 + position), 80) : text) + "\n";
        }
        Write("gap.fa", gaps);
        return Run();
    }
};

// Each of these once ended the process in the search for a seed in a text that is shorter.
TEST_F(TinyReads, OverlapNoEdge) {
    const std::vector<std::vector<std::pair<int, std::string>>> runs = {
        {{-5, ""}, {1000, "+"}},
        {{5, ""}, {1550, "+"}},
        {{100, "+"}, {1500, "+"}, {1550, ""}, {1550, "+"}},
        {{100, "+"}, {1550, "+"}, {1599, "ACG"}},
    };
    for (std::size_t i = 0; i < runs.size(); ++i) {
        ClearOut();
        const testing::ProgramResult result = RunWith(runs[i]);
        // The signal: nothing was filled, but all outputs are complete.
        EXPECT_TRUE(result.status == 0 || result.status == -SIGFPE) << i << ": " << result.status << result.err;
        EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << i;
        EXPECT_NE(Seq().find(">scaffold1\n"), std::string::npos) << i;
    }
}

// ---- memory --------------------------------------------------------------------------------------------------------

#ifndef LINTARA_SANITIZED

TEST_F(Faults, InputThatDoesNotFitIntoMemoryEndsTheRun) {
    const std::string line(1000000, 'A');
    std::string lines;
    std::string one_line;
    for (int i = 0; i < 100; ++i) {
        lines += line + "\n";
        one_line += line;
    }
    const std::string header = ">scaffold1_0\t0\n";
    const std::string read = ">1\t100\t0\t1\t0\n";
    // The last gap file holds one read of 100 million bases.
    const std::vector<std::pair<std::string, std::string>> inputs = {
        {header + lines, ""}, {header + one_line + "\n", ""}, {header + "ACGT\n", read + one_line + "\n"}};
    for (const auto& [contigs, gaps] : inputs) {
        Write("contig.fa", contigs);
        Write("gap.fa", gaps);
        const testing::ProgramResult result = testing::RunCommand("ulimit -v 100000; exec " + Command(), Directory());
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(EndsWith("\n" + result.err, "\nOut of memory\n")) << result.err;
        EXPECT_TRUE(std::filesystem::is_empty(Path("out")));
    }
}

TEST_F(Faults, GapThatDoesNotFitIntoMemoryEndsTheRun) {
    // A stated length of 400 million: its N do not fit.
    Write("gap.fa", ">1\t400000000\t0\t1\t0\nACGT\n");
    const testing::ProgramResult result = testing::RunCommand("ulimit -v 300000; exec " + Command(), Directory());
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.err, "\nOut of memory\n")) << result.err;
}

TEST_F(Faults, TableThatDoesNotFitIntoMemoryEndsTheRun) {
    // Fewer than no k-mers in a read make a table of no size that there is.
    const testing::ProgramResult result =
        testing::RunCommand("ulimit -v 300000; exec " + Command() + " -k 200", Directory());
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(EndsWith(result.err, "\nOut of memory!\n")) << result.err;
}

#endif

}  // namespace
}  // namespace lintara
