#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "kit/base/error.h"
#include "kit/base/fasta.h"
#include "kit/base/file.h"
#include "tests/kit/support.h"

namespace lintara::kit {
namespace {

namespace fs = std::filesystem;

const std::string kExample = std::string(LINTARA_SOURCE_DIR) + "/examples/kit";

class Fill : public testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/lintara-kit-XXXXXX";
        folder_ = mkdtemp(name);
        if (std::system("command -v bwa >/dev/null") != 0) GTEST_SKIP() << "bwa is not installed";
    }
    void TearDown() override { fs::remove_all(folder_); }
    int Kit(const std::string& arguments) const {
        std::string command = std::string(LINTARA_KIT_BINARY) + " " + arguments + " 2>" + folder_ + "/err";
        return WEXITSTATUS(std::system(command.c_str()));
    }
    int FillExample(const std::string& out, const std::string& more = "") const {
        return Kit("fill -s " + kExample + "/scaffolds.fa -1 " + kExample + "/R1.fq.gz -2 " + kExample +
                   "/R2.fq.gz -o " + folder_ + "/" + out + " " + more);
    }
    std::string Text(const std::string& file) const { return ReadWhole(folder_ + "/" + file); }
    std::string folder_;
};

TEST_F(Fill, ExampleIsFilled) {
    ASSERT_EQ(FillExample("a"), 0) << Text("err");
    auto before = ReadFasta(kExample + "/scaffolds.fa");
    auto after = ReadFasta(folder_ + "/a/filled.fa");
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after[0].name, before[0].name);
    auto letters = [](const std::string& text) { return std::count(text.begin(), text.end(), 'N'); };
    EXPECT_LT(letters(after[0].sequence), letters(before[0].sequence) / 4);
    EXPECT_FALSE(fs::exists(folder_ + "/a/work"));
}

TEST_F(Fill, AgpRebuildsTheFilledScaffolds) {
    ASSERT_EQ(FillExample("a"), 0);
    std::map<std::string, std::string> components;
    for (const std::string& file : {kExample + "/scaffolds.fa", folder_ + "/a/fills.fa"}) {
        for (const FastaRecord& record : ReadFasta(file)) components[record.name] = record.sequence;
    }
    std::string text;
    LineReader agp(folder_ + "/a/filled.agp");
    for (std::string line; agp.Next(line);) {
        if (line[0] == '#') continue;
        auto fields = SplitTabs(line);
        ASSERT_EQ(fields.size(), 9U);
        EXPECT_EQ(std::stoul(fields[1]), text.size() + 1);
        if (fields[4] == "N") {
            text += std::string(std::stoul(fields[5]), 'N');
        } else {
            size_t from = std::stoul(fields[6]);
            text += components.at(fields[5]).substr(from - 1, std::stoul(fields[7]) - from + 1);
        }
        EXPECT_EQ(std::stoul(fields[2]), text.size());
    }
    EXPECT_EQ(text, ReadFasta(folder_ + "/a/filled.fa")[0].sequence);
}

TEST_F(Fill, TwoThreadsGiveTheSameTables) {
    ASSERT_EQ(FillExample("a"), 0);
    ASSERT_EQ(FillExample("b", "-t 2"), 0);
    for (const char* name : {"filled.fa", "filled.fa.fai", "filled.agp", "fills.fa", "filled.bed", "gaps.tsv"}) {
        EXPECT_EQ(Text(std::string("a/") + name), Text(std::string("b/") + name)) << name;
    }
}

TEST_F(Fill, ExistingFolderIsRefused) {
    fs::create_directory(folder_ + "/a");
    EXPECT_EQ(FillExample("a"), 1);
    EXPECT_EQ(Text("err"), "lintara-kit: " + folder_ + "/a exists: go on with --resume or begin anew with --force\n");
}

TEST_F(Fill, ResumeGoesOnWithTheNextRound) {
    ASSERT_EQ(FillExample("a"), 0);
    ASSERT_EQ(FillExample("b", "--rounds 1 --keep"), 0);
    ASSERT_EQ(FillExample("b", "--resume"), 0);
    EXPECT_NE(Text("err").find("goes on after round 1"), std::string::npos);
    EXPECT_EQ(Text("a/filled.fa"), Text("b/filled.fa"));
    EXPECT_EQ(Text("a/gaps.tsv"), Text("b/gaps.tsv"));
}

/// A gap of 700 bases, deeper than the mates reach, and one in the second copy of a repeat of 600 bases.
TEST_F(Fill, OneRoundGoesOnWhileItGainsAndThroughARepeat) {
    std::string repeat = test::RandomBases(600, 9);
    std::string genome = test::RandomBases(2500, 1) + repeat + test::RandomBases(2500, 2) + repeat +
                         test::RandomBases(2000, 3) + test::RandomBases(3000, 4);
    test::WritePairs(genome, folder_ + "/1.fq", folder_ + "/2.fq", 100, 300, 30, 3, [](long, long) { return true; });
    std::string scaffold = genome;
    scaffold.replace(5800, 120, 100, 'N');  // within the repeat's second copy
    scaffold.replace(7980, 700, 690, 'N');
    {
        AtomicFile file(folder_ + "/s.fa");
        WriteFasta(file, "s", "", scaffold);
        file.Commit();
    }
    ASSERT_EQ(Kit("fill -s " + folder_ + "/s.fa -1 " + folder_ + "/1.fq -2 " + folder_ + "/2.fq --rounds 1 -o " +
                  folder_ + "/a"),
              0)
        << Text("err");
    EXPECT_EQ(Upper(ReadFasta(folder_ + "/a/filled.fa")[0].sequence), genome);
    // Each filled base has its support.
    LineReader table(folder_ + "/a/gaps.tsv");
    std::string line;
    table.Next(line);
    while (table.Next(line)) EXPECT_NE(SplitTabs(line)[13], ".") << line;
    size_t rows = 0;
    LineReader columns(folder_ + "/a/columns.tsv.gz");
    while (columns.Next(line)) ++rows;
    EXPECT_EQ(rows, 1 + 120 + 700U);
}

TEST_F(Fill, RunFileHoldsTheCommandAsItWasGiven) {
    ASSERT_EQ(FillExample("a", "--rounds 1"), 0);
    EXPECT_NE(
        Text("a/run.json")
            .find("\"command\": \"" + std::string(LINTARA_KIT_BINARY) + " fill -s " + kExample + "/scaffolds.fa -1 " +
                  kExample + "/R1.fq.gz -2 " + kExample + "/R2.fq.gz -o " + folder_ + "/a --rounds 1\""),
        std::string::npos);
}

TEST_F(Fill, MappedReadsAreFilledInOneRound) {
    if (std::system("command -v samtools >/dev/null") != 0) GTEST_SKIP() << "samtools is not installed";
    std::string scaffolds = folder_ + "/s.fa";
    fs::copy_file(kExample + "/scaffolds.fa", scaffolds);
    std::string map = "bwa index " + scaffolds + " 2>/dev/null && bwa mem -v 1 " + scaffolds + " " + kExample +
                      "/R1.fq.gz " + kExample + "/R2.fq.gz 2>/dev/null | samtools sort -o " + folder_ +
                      "/m.bam 2>/dev/null";
    ASSERT_EQ(std::system(map.c_str()), 0);
    ASSERT_EQ(Kit("fill -s " + scaffolds + " --bam " + folder_ + "/m.bam -o " + folder_ + "/a"), 0) << Text("err");
    EXPECT_NE(Text("err").find("round 1: fill: "), std::string::npos);
    EXPECT_EQ(Text("err").find("round 2"), std::string::npos);
    // Only fills in lower case: the contigs of the example are in upper case.
    std::string filled = ReadFasta(folder_ + "/a/filled.fa")[0].sequence;
    EXPECT_GT(std::count_if(filled.begin(), filled.end(), [](unsigned char c) { return std::islower(c); }), 500);
}

TEST_F(Fill, FailingCoreIsToldWithItsLastWords) {
    AtomicFile script(folder_ + "/core");
    script.Write("#!/bin/sh\necho gone wrong >&2\nexit 3\n");
    script.Commit();
    fs::permissions(folder_ + "/core", fs::perms::owner_all);
    EXPECT_EQ(FillExample("a", "--quiet --core " + folder_ + "/core"), 1);
    EXPECT_EQ(Text("err"), "lintara-kit: core ended with status 3: gone wrong\n");
}

TEST_F(Fill, EmptyScaffoldFileIsAnError) {
    AtomicFile empty(folder_ + "/empty.fa");
    empty.Commit();
    EXPECT_EQ(Kit("prepare -s " + folder_ + "/empty.fa --bam x -o " + folder_ + "/p"), 1);
    EXPECT_EQ(Text("err"), "lintara-kit: " + folder_ + "/empty.fa: the file holds no FASTA record\n");
}

TEST(Fasta, CarriageReturnsAndDescriptionsAreRead) {
    char name[] = "/tmp/lintara-kit-fasta-XXXXXX";
    close(mkstemp(name));
    {
        AtomicFile file(name);
        file.Write(">a b c\r\nACgt\r\nNN\r\n>a\r\n");
        file.Commit();
    }
    auto records = ReadFasta(name);
    unlink(name);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].name, "a");
    EXPECT_EQ(records[0].description, "b c");
    EXPECT_EQ(records[0].sequence, "ACgtNN");
    EXPECT_EQ(records[1].sequence, "");
}

}  // namespace
}  // namespace lintara::kit
