#include "support/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/thread_streams.h"

namespace lintara {
namespace {

std::string RandomBases(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bases(size, 'A');
    for (char& c : bases) c = "ACGT"[random() % 4];
    return bases;
}

class Program : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        std::filesystem::create_directory(Out());
        // Scaffold 1 holds a gap of one N without reads whose contigs overlap by 50 bases, scaffold 2 no gap.
        const std::string genome = RandomBases(450, 1);
        Write("contig.fa", ">scaffold1_0\t0\n" + genome.substr(0, 250) + "\n>scaffold1_1\t1\n" + genome.substr(200) +
                               "\n>scaffold2_0\t0\nACGTac\n");
        merged_ = genome;
        Write("gap.fa", "");
    }

    void Write(const std::string& name, const std::string& text) {
        std::ofstream(Directory() + "/" + name, std::ios::binary) << text;
    }

    std::string Out() const { return Directory() + "/out"; }
    std::string OutText(const std::string& name) const { return testing::FileText(Out() + name); }

    std::string Command(const std::string& options = "") const {
        return std::string(LINTARA_PROGRAM) + " -g " + Directory() + "/gap.fa -c " + Directory() + "/contig.fa -o " +
               Out() + " " + options;
    }
    testing::ProgramResult Run(const std::string& options = "") const {
        return testing::RunCommand("exec " + Command(options), Directory());
    }
    testing::ProgramResult RunBare(const std::string& arguments) const {
        return testing::RunCommand("exec " + std::string(LINTARA_PROGRAM) + " " + arguments, Directory());
    }

    /// The error stream with its clock readings blanked.
    static std::string Timeless(const std::string& text) {
        return std::regex_replace(text, std::regex("(using time: |used time: )[0-9.e+-]+min"), "$1#min");
    }

    static std::vector<std::string> SortedLines(const std::string& text) {
        std::istringstream in(text);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    std::string merged_;
};

const char* const kHelpBehindContact =
    "\t-g  <str>   gap file \n\t-c  <str>   contig file in fasta\n\t-s  <str>   scaffold file in fasta\n"
    "\t-o  <str>   output directory\n\t-k  <int>   kmer length(<=63), default=31\n"
    "\t-i  <int>   initSize, default=1048576\n\t-M\t <float> overlap match ratio 0.97\n"
    "\t-f  <float>   Load factor 0.75\n\t-r  <int>   max read length 100\n"
    "\t-t  <int>\t thread number, default=1\n\t-a  <int>   the Min_overlap , default=30\n"
    "\t-e  <float> the false ratio , default=0.14\n\t-h          this help\n\nExample:\n"
    "lintara -c yeast.scafasm.SCAF.contig -g gapread.fa(.gz) -m 5 -t 4 >gapSeq.fa 2>lintara.log\n\n\n";

TEST_F(Program, HelpGoesToTheStandardOutputWithStatusOne) {
    for (const char* arguments : {"", "-h", "-x", "-"}) {
        const testing::ProgramResult result = RunBare(arguments);
        EXPECT_EQ(result.status, 1) << arguments;
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out.rfind("Usage:\t\tLintara [option]\nVersion:\tlintara 1.19\nCompile Date:\t", 0), 0U);
        const std::size_t contact = result.out.find("\nContact:\t");
        ASSERT_NE(contact, std::string::npos);
        EXPECT_NE(result.out.find("\nAuthor:\t"), std::string::npos);
        EXPECT_EQ(result.out.substr(result.out.find('\n', contact + 1) + 1), kHelpBehindContact);
    }
}

TEST_F(Program, HelpShowsTheValuesSetBeforeIt) {
    const std::string help = RunBare("-k 25 -M 0.9 -f 0.5 -h").out;
    EXPECT_NE(help.find("\t-k  <int>   kmer length(<=63), default=25\n"), std::string::npos);
    EXPECT_NE(help.find("\t-M\t <float> overlap match ratio 0.9\n"), std::string::npos);
    EXPECT_NE(help.find("\t-f  <float>   Load factor 0.5\n"), std::string::npos);
}

TEST_F(Program, StrayWordsEndTheRun) {
    for (const char* arguments : {"stray", "-k 31 stray", "-k 31 stray -t 2"}) {
        const testing::ProgramResult result = RunBare(arguments);
        EXPECT_EQ(result.status, 255) << arguments;
        EXPECT_EQ(result.err, "Please check input!\n");
    }
}

TEST_F(Program, OptionWithoutValueAborts) {
    EXPECT_EQ(RunBare("-r 100 -k").status, -SIGABRT);
}

TEST_F(Program, NegativeThreadNumberIsRefused) {
    const testing::ProgramResult result = Run("-t -2");
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.err, "The thread number must not be negative: -2\n");
}

TEST_F(Program, NoThreadsTreatNothing) {
    const testing::ProgramResult result = Run("-t 0");
    EXPECT_EQ(result.status, -SIGFPE);
    EXPECT_NE(result.err.find("0 threads created!\nWaiting for threads to exit...\n0 threads exited.\n"),
              std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(Out() + "/Log"));
}

TEST_F(Program, MissingInputIsNamed) {
    const testing::ProgramResult result = RunBare("-k 31");
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.err, "Fail to load file \n");
}

TEST_F(Program, EmptyContigFileEndsTheRun) {
    Write("contig.fa", "");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.err,
              "Number count finished!\nGap number: 0\nStart to count contig number\ncontig number count finished!\t0\n"
              "scaffold number in total: 0\nIs gapread.fa or contig.fa empty? Can't find read or contig seq\n"
              "Start to load contig file\ncontig file load finished!\nFail to load gap and contig files\n");
}

TEST_F(Program, WholeRunPrintsItsProgressAndTable) {
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    // No gap with reads: the ratio of 1 to 0 is what the conversion to int gives, and one merge is one base.
    EXPECT_EQ(Timeless(result.err),
              "Number count finished!\nGap number: 0\nStart to count contig number\ncontig number count finished!\t2\n"
              "scaffold number in total: 2\nIs gapread.fa or contig.fa empty? Can't find read or contig seq\n"
              "Start to load contig file\ncontig file load finished!\n"
              "Load file and creat file using time: #min\n1 threads created!\nWaiting for threads to exit...\n"
              "1 threads exited.\nAll the scaffold gaps treat finished!\n\n"
              "totalGapNum\ttotalGapLen\tnoReadGap\tfillGapNum\tfillGapRatio\tfillLen\tfullFillNum\tfullFillRatio\t"
              "unfullfillNum\n0\t0\t1\t1\t-2.14748e+07\t1\t1\t100\t-1\n"
              "All the gaps treated finish!\nTotal used time: #min\n");
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\n" + merged_ + "\n>Scaffold2\t6\nACGTac\n");
    EXPECT_EQ(OutText("/Snp/snp.thread1"), "");
    EXPECT_EQ(OutText("/Log/log.thread1"),
              "Start to fill the gaps by thread 0\nTreat with scaffold 1 and 1 gaps in the scaffold\n"
              "no read of the gap, before contig size: 250\tafter contig size: 250\nOne N gap check, 200\t200\n"
              "MinusOneNGap1 with check read number: 0\nScaffold 1 finished!\n"
              "Treat with scaffold 2 and 0 gaps in the scaffold\nScaffold 2 finished!\nThread 1 exits.\n");
}

TEST_F(Program, RatiosOfTheTableAreCutToTwoDecimals) {
    // Two gaps of overlapping contigs that one useless read each makes gaps with reads, and one that stays open.
    const std::string other = RandomBases(450, 2);
    Write("contig.fa", ">scaffold1_0\t0\n" + merged_.substr(0, 250) + "\n>scaffold1_1\t1\n" + merged_.substr(200) +
                           "\n>scaffold2_0\t0\n" + other.substr(0, 250) + "\n>scaffold2_1\t1\n" + other.substr(200) +
                           "\n>scaffold3_0\t0\nACGTACGT\n>scaffold3_1\t20\nGGGGCCCC\n");
    Write("gap.fa", ">5\t1\t0\t1\t0\nACGTAC\n>6\t1\t0\t2\t0\nACGTAC\n>7\t20\t0\t3\t0\nACGTAC\n");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("\tunfullfillNum\n3\t22\t0\t2\t66.66\t0\t2\t100\t1\n"), std::string::npos) << result.err;
}

TEST_F(Program, ShareOfFullGapsIsZeroWhenOneIsNotFull) {
    // Behind the merge a gap of 300 bases whose reads end with base 154 of it.
    const std::string genome = RandomBases(1300, 8);
    Write("contig.fa", ">scaffold1_0\t0\n" + merged_.substr(0, 250) + "\n>scaffold1_1\t1\n" + merged_.substr(200) +
                           "\n>scaffold2_0\t0\n" + genome.substr(0, 500) + "\n>scaffold2_1\t300\n" +
                           genome.substr(800) + "\n");
    std::string gaps;
    for (int from = 410; from <= 554; from += 6) {
        gaps += ">5\t300\t" + std::to_string(from - 500) + "\t2\t0\n" +
                genome.substr(static_cast<std::size_t>(from), 100) + "\n";
    }
    Write("gap.fa", gaps);
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 0);
    // The merge without reads counts as filled, though not as a gap: two of one is 200 percent.
    EXPECT_NE(result.err.find("\tunfullfillNum\n1\t300\t1\t2\t200\t155\t1\t0\t0\n"), std::string::npos) << result.err;
    std::string filled = genome.substr(500, 154);
    for (char& c : filled) c = static_cast<char>(c - 'A' + 'a');
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\n" + merged_ + "\n>scaffold2\n" + genome.substr(0, 500) +
                                                      filled + std::string(146, 'N') + genome.substr(800) + "\n");
}

TEST_F(Program, NothingFilledEndsByArithmeticFaultWithOutputsComplete) {
    Write("contig.fa", ">scaffold1_0\t0\nACGTACGT\n>scaffold1_1\t4\nGGGGCCCC\n");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, -SIGFPE);
    const std::string last = "All the scaffold gaps treat finished!\n\n";
    EXPECT_EQ(result.err.substr(result.err.size() - last.size()), last);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\nACGTACGTNNNNGGGGCCCC\n");
    EXPECT_NE(OutText("/Log/log.thread1").find("Thread 1 exits.\n"), std::string::npos);
}

TEST_F(Program, SecondRunIntoTheSameDirectoryIsRefused) {
    ASSERT_EQ(Run().status, 0);
    const std::string before = OutText("/FilledScaf/seq.thread1");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 2);
    const std::string last = "Failed to create directory: " + Out() + "/FilledScaf\n";
    EXPECT_EQ(result.err.substr(result.err.size() - last.size()), last);
    EXPECT_EQ(result.err.find("threads created"), std::string::npos);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), before);
}

TEST_F(Program, OutputDirectoryMustExist) {
    std::filesystem::remove(Out());
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("Failed to create directory: " + Out() + "/FilledScaf\n"), std::string::npos);
}

TEST_F(Program, TheFirstSubDirectoryThatFailsIsNamed) {
    for (const char* name : {"/Log", "/Snp"}) {
        std::filesystem::remove_all(Out());
        std::filesystem::create_directories(Out() + name);
        const testing::ProgramResult result = Run();
        EXPECT_EQ(result.status, 2);
        const std::string last = "Failed to create directory: " + Out() + name + "\n";
        ASSERT_GE(result.err.size(), last.size());
        EXPECT_EQ(result.err.substr(result.err.size() - last.size()), last);
    }
}

TEST_F(Program, FilesThatCannotBeOpenedEndTheRun) {
    // The leak check of an instrumented build needs files of its own when the process ends.
    const testing::ProgramResult result =
        testing::RunCommand("ulimit -n 60; ASAN_OPTIONS=detect_leaks=0 " + Command("-t 40"), Directory());
    EXPECT_EQ(result.status, 1);
    const std::string last = "Can't open output files!\n";
    EXPECT_EQ(result.err.substr(result.err.size() - last.size()), last);
}

TEST_F(Program, SurplusThreadsLeaveTheirFilesAndLogLines) {
    ASSERT_EQ(Run("-t 4").status, 0);
    std::string scaffolds;
    for (int i = 1; i <= 4; ++i) {
        const std::string number = std::to_string(i);
        const std::string log = OutText("/Log/log.thread" + number);
        EXPECT_EQ(log.rfind("Start to fill the gaps by thread " + std::to_string(i - 1) + "\n", 0), 0U);
        const std::string last = "Thread " + number + " exits.\n";
        EXPECT_EQ(log.substr(log.size() - last.size()), last);
        EXPECT_EQ(OutText("/Snp/snp.thread" + number), "");
        scaffolds += OutText("/FilledScaf/seq.thread" + number);
    }
    EXPECT_EQ(SortedLines(scaffolds), SortedLines(">scaffold1\n" + merged_ + "\n>Scaffold2\t6\nACGTac\n"));
}

TEST_F(Program, SelectorsLeaveTheContigsTouching) {
    Write("contig.fa", ">scaffold1_0\t0\nACGTACGT\n>scaffold1_1\t4\nGGGGCCCC\n");
    EXPECT_EQ(Run("-n 9999").status, -SIGFPE);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\nACGTACGTGGGGCCCC\n");
    std::filesystem::remove_all(Out());
    std::filesystem::create_directory(Out());
    EXPECT_EQ(Run("-s 3").status, -SIGFPE);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\nACGTACGTGGGGCCCC\n");
}

TEST_F(Program, SelectedGapEndsTheRunAfterItsScaffold) {
    Write(
        "contig.fa",
        ">scaffold1_0\t0\nACGTACGT\n>scaffold1_1\t4\nGGGGCCCC\n>scaffold2_0\t0\nTTTTTTTT\n>scaffold2_1\t4\nCCCCCCCC\n");
    Write("gap.fa", ">5\t4\t0\t1\t0\nACGTAC\n");
    EXPECT_EQ(Run("-n 5").status, -SIGFPE);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">scaffold1\nACGTACGTNNNNGGGGCCCC\n");
    const std::string log = OutText("/Log/log.thread1");
    const std::string last = "Scaffold 1 finished!\nThread 1 exits.\n";
    EXPECT_EQ(log.substr(log.size() - last.size()), last);
}

TEST_F(Program, ScaffoldZeroIsPassedOver) {
    // Its contig stands in the place of the other scaffold's, which is written once and under its own id.
    Write("contig.fa", ">scaffold4_0\t0\nAAAA\n>scaffold0_0\t7\nGGGGG\n");
    EXPECT_EQ(Run().status, -SIGFPE);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), ">Scaffold4\t5\nGGGGG\n");
    EXPECT_EQ(OutText("/Log/log.thread1"),
              "Start to fill the gaps by thread 0\nTreat with scaffold 4 and 0 gaps in the scaffold\n"
              "Scaffold 4 finished!\nThread 1 exits.\n");
}

TEST_F(Program, UnknownScaffoldIdHasTheFirstScaffoldTreatedTwice) {
    Write("contig.fa", ">scaffold1_0\t0\nACGTACGT\n>scaffold1_1\t4\nGGGGCCCC\n");
    Write("gap.fa", ">5\t4\t0\t77\t0\nACGTAC\n");
    const testing::ProgramResult result = Run();
    EXPECT_EQ(result.status, -SIGFPE);
    EXPECT_EQ(result.out, ">gap5\t4\t4\tscaffold1\t0\t8\t8\nNNNN\n>gap5\t4\t4\tscaffold77\t0\t8\t8\nNNNN\n");
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"),
              ">scaffold1\nACGTACGTNNNNGGGGCCCC\n>scaffold77\nACGTACGTNNNNGGGGCCCC\n");
}

TEST_F(Program, IdsThatShareAScaffoldAreTreatedInTurn) {
    std::string contigs =
        ">scaffold1_0\t0\n" + RandomBases(300, 2) + "\n>scaffold1_1\t1\n" + RandomBases(300, 3) + "\n";
    std::string gaps;
    for (int id = 2; id <= 40; ++id) gaps += ">1\t1\t0\t" + std::to_string(id) + "\t0\nACGTAC\n";
    Write("contig.fa", contigs);
    Write("gap.fa", gaps);
    const int status = Run("-t 1").status;
    const std::string once = OutText("/FilledScaf/seq.thread1");
    EXPECT_EQ(std::count(once.begin(), once.end(), '>'), 40);
    for (int repeat = 0; repeat < 3; ++repeat) {
        std::filesystem::remove_all(Out());
        std::filesystem::create_directory(Out());
        EXPECT_EQ(Run("-t 4").status, status);
        std::string all;
        for (int i = 1; i <= 4; ++i) all += OutText("/FilledScaf/seq.thread" + std::to_string(i));
        EXPECT_EQ(SortedLines(all), SortedLines(once));
    }
}

TEST_F(Program, MethodAboveFiveRunsAsFive) {
    Write("gap.fa", ">5\t1\t0\t1\t0\nACGTAC\n");
    EXPECT_EQ(Run("-m 9").status, 0);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1").rfind(">scaffold1\n" + merged_ + "\n", 0), 0U);
}

TEST_F(Program, InitSizeChangesNothing) {
    ASSERT_EQ(Run().status, 0);
    const std::string seq = OutText("/FilledScaf/seq.thread1");
    const std::string log = OutText("/Log/log.thread1");
    std::filesystem::remove_all(Out());
    std::filesystem::create_directory(Out());
    ASSERT_EQ(Run("-i 3").status, 0);
    EXPECT_EQ(OutText("/FilledScaf/seq.thread1"), seq);
    EXPECT_EQ(OutText("/Log/log.thread1"), log);
}

TEST_F(Program, FullStandardOutputIsReported) {
    Write("gap.fa", ">5\t4\t0\t1\t0\nACGTAC\n");
    const testing::ProgramResult result = testing::RunCommand("{ " + Command() + " >/dev/full; }", Directory());
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("\nFailed to write the standard output\n"), std::string::npos);
    EXPECT_EQ(testing::RunCommand("{ " + std::string(LINTARA_PROGRAM) + " -h >/dev/full; }", Directory()).err,
              "Failed to write the standard output\n");
}

TEST_F(Program, ClosedPipeIsReported) {
    Write("gap.fa", ">5\t4\t0\t1\t0\nACGTAC\n");
    const testing::ProgramResult result =
        testing::RunCommand("{ { sleep 0.2; " + Command() + "; } | true; exit ${PIPESTATUS[0]}; }", Directory());
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("\nFailed to write the standard output\n"), std::string::npos);
}

TEST_F(Program, OutputFileThatCannotGrowIsReported) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer's own files fall under the limit before the program begins";
#endif
    // A file size limit of zero blocks stands for a full disk; the captured streams are pipes and not bound by it.
    const testing::ProgramResult result = testing::RunCommand(
        "{ (ulimit -f 0; exec " + Command() + " 2>&1) | cat; exit ${PIPESTATUS[0]}; }", Directory());
    EXPECT_EQ(result.status, 1);
    const std::string last = "\nFailed to write " + Out() + "/Log/log.thread1\n";
    ASSERT_GE(result.out.size(), last.size());
    EXPECT_EQ(result.out.substr(result.out.size() - last.size()), last);
}

}  // namespace
}  // namespace lintara
