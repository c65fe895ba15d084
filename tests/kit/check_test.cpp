#include "kit/check/check.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>

#include "kit/base/error.h"
#include "kit/base/file.h"

namespace lintara::kit {
namespace {

namespace fs = std::filesystem;

class Check : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kit-check-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
    }
    void TearDown() override { fs::remove_all(root_); }

    std::string Put(const std::string& name, const std::string& text) const {
        std::ofstream(root_ + "/" + name, std::ios::binary) << text;
        return root_ + "/" + name;
    }
    /// What the command prints, with the directory taken out, and its status in front.
    std::string Run(const std::vector<std::string>& files) const {
        testing::internal::CaptureStdout();
        int status = RunCheck(files);
        std::string text = testing::internal::GetCapturedStdout();
        for (size_t at; (at = text.find(root_ + "/")) != std::string::npos;) text.erase(at, root_.size() + 1);
        return std::to_string(status) + "\n" + text;
    }
    std::string Run(const std::string& name, const std::string& text) const { return Run({Put(name, text)}); }

    std::string Contigs() const {
        return Put("contig.fa", ">scaffold1_0\t0\nACGT\nACGT\n>scaffold1_1\t57\nACGT\n>scaffold2_0\t0\nACGTN\n");
    }

    std::string root_;
};

TEST_F(Check, KindIsToldFromTheContent) {
    EXPECT_EQ(KindOf(Put("a", ">scaffold1_0\t0\nA\n")), FileKind::kContig);
    EXPECT_EQ(KindOf(Put("b", ">1\t57\t-3\t1\t0\nA\n")), FileKind::kGap);
    EXPECT_EQ(KindOf(Put("c", "gap\tscaffold\tcontig\tstated\ttrue\tkind\tbases\n")), FileKind::kTruth);
    EXPECT_EQ(KindOf(Put("d", "\n>1 first scaffold\nA\n")), FileKind::kScaffold);
    EXPECT_EQ(KindOf(Put("e", "ACGT\n")), FileKind::kUnknown);
    EXPECT_EQ(KindOf(Put("f", "")), FileKind::kUnknown);
}

TEST_F(Check, GoodFilesAreToldInOneLineEach) {
    std::string scaffolds = Put("s.fa", ">a one\r\nACGTNN\r\nNNacgtRYN\r\n>b\r\nAC\r\n");
    std::string gaps = Put("gap.fa", ">1\t57\t-4\t1\t0\nACGTAC\n>1\t57\t9\t1\t0\nACNT\n");
    std::string truth = Put("truth.tsv",
                            "gap\tscaffold\tcontig\tstated\ttrue\tkind\tbases\n1\t1\t0\t57\t3\treal\tACG\n"
                            "-1\t2\t0\t1\t-5\treal\t\n");
    EXPECT_EQ(Run({scaffolds, gaps, truth}),
              "0\ns.fa: good scaffold file (2 scaffolds, 2 runs of N, 17 bases)\n"
              "gap.fa: good gap file (1 gap, 2 reads, longest 6, 1 with other letters than A, C, G, T take no part)\n"
              "truth.tsv: good truth table (2 gaps)\n");
    EXPECT_EQ(Run({Contigs()}), "0\ncontig.fa: good contig file (2 scaffolds, 3 contigs, 1 gap)\n");
}

TEST_F(Check, GzipIsReadLikePlain) {
    gzFile out = gzopen((root_ + "/s.fa.gz").c_str(), "wb");
    gzputs(out, ">a\nAC*GT\n");
    gzclose(out);
    EXPECT_EQ(Run({root_ + "/s.fa.gz"}), "1\ns.fa.gz:2: no base in column 3: '*'\n");
}

TEST_F(Check, TruncatedGzipIsAFault) {
    gzFile out = gzopen((root_ + "/s.fa.gz").c_str(), "wb");
    std::string bases;
    unsigned state = 1;
    for (int i = 0; i < 200000; ++i) bases += "ACGT"[(state = state * 1664525u + 1013904223u) >> 30];
    gzputs(out, (">a\n" + bases + "\n").c_str());
    gzclose(out);
    fs::resize_file(root_ + "/s.fa.gz", fs::file_size(root_ + "/s.fa.gz") / 2);
    EXPECT_EQ(Run({root_ + "/s.fa.gz"}), "1\ncannot read s.fa.gz: the compressed file is cut short\n");
}

TEST_F(Check, FilesWithoutContentAreFaults) {
    EXPECT_EQ(Run("a.fa", ""), "1\na.fa: empty file\n");
    EXPECT_EQ(Run("b.fa", "ACGT\n"), "1\nb.fa:1: neither FASTA nor a truth table: 'ACGT'\n");
    EXPECT_EQ(Run({root_ + "/none.fa"}), "1\ncannot read none.fa: No such file or directory\n");
}

TEST_F(Check, ScaffoldFaults) {
    EXPECT_EQ(Run("s.fa", ">a\nACGT\n>b x\n>\nAC\n>a y\nAC-GT\nA\xff\n"),
              "1\ns.fa:3: scaffold without bases: 'b'\n"
              "s.fa:4: scaffold without a name: '>'\n"
              "s.fa:6: name already used in line 1: 'a'\n"
              "s.fa:7: no base in column 3: '-'\n"
              "s.fa:8: no base in column 2: byte 255\n");
}

TEST_F(Check, LongNamesAreCutInTheMessage) {
    std::string name(10000, 'x');
    EXPECT_EQ(Run("s.fa", ">" + name + "\nA\n>" + name + "\nC\n"),
              "1\ns.fa:3: name already used in line 1: '" + std::string(57, 'x') + "...'\n");
}

TEST_F(Check, ContigFaults) {
    EXPECT_EQ(Run("c.fa", ">scaffold1_0\t0\nACGT\n>scaffold1_2\t5\nAC\n>scaffold2_0\t0\n>scaffold1_3\t7\nA+\n"),
              "1\nc.fa:3: contig 1 expected in scaffold 1: 2\n"
              "c.fa:5: contig without bases\n"
              "c.fa:6: scaffold goes on behind another one: 1\n"
              "c.fa:7: no base in column 2: '+'\n");
    EXPECT_EQ(Run("c.fa",
                  ">scaffold1_0\t0\nA\n>scaffold0_0\t0\nA\n>scaffold3_x\t0\nA\n>scaffold3_0\t-4\nA\n>contig\nA\n"
                  ">scaffold4_0 9\nA\n"),
              "1\nc.fa:3: scaffold number is not a number from 1: '0'\n"
              "c.fa:5: contig index is not a number from 0: 'x'\n"
              "c.fa:7: gap length is not a number from 0: '-4'\n"
              "c.fa:9: header does not begin with '>scaffold': '>contig'\n"
              "c.fa:11: header is not '>scaffold<number>_<contig><tab><gap length>': '>scaffold4_0 9'\n");
}

TEST_F(Check, CarriageReturnsInAContigFileAreToldOnce) {
    EXPECT_EQ(Run("c.fa", ">scaffold1_0\t0\r\nACGT\r\nAC\r\n"),
              "1\nc.fa:1: line ends in a carriage return, which would become part of the contig: byte 13\n");
}

TEST_F(Check, CompressedContigFileIsAFault) {
    gzFile out = gzopen((root_ + "/c.fa").c_str(), "wb");
    gzputs(out, ">scaffold1_0\t0\nACGT\n");
    gzclose(out);
    EXPECT_EQ(Run({root_ + "/c.fa"}), "1\nc.fa: contig files must not be compressed\n");
}

TEST_F(Check, GapFaults) {
    EXPECT_EQ(Run("g.fa",
                  ">1\t57\t-4\t1\t0\nACGT\n>1\t57\t0\t1\nACGT\n>0\t57\t0\t1\t0\nAC\n>2\t57\tx\t1\t1\nAC\n"
                  ">1\t58\t0\t1\t0\nAC\n>1\t57\t0\t1\t1\nAC\n>3\t9\t0\t1\t0\nA.C\nACGT\n>4\t9\t0\t1\t5\n"),
              "1\ng.fa:3: 4 instead of 5 fields: '>1\t57\t0\t1'\n"
              "g.fa:5: gap id is not a number from 1: '0'\n"
              "g.fa:7: position is not a number: 'x'\n"
              "g.fa:9: gap 1 has length 57 in line 1: 58\n"
              "g.fa:11: gap 1 lies elsewhere in line 1: scaffold 1, contig 1\n"
              "g.fa:14: no base in column 2: '.'\n"
              "g.fa:13: the place of gap 3 is also that of gap 1\n"
              "g.fa:15: a read's header begins with '>': 'ACGT'\n"
              "g.fa:16: header without a read behind it: '>4\t9\t0\t1\t5'\n");
}

TEST_F(Check, HeaderInThePlaceOfAReadIsReadAsAHeader) {
    EXPECT_EQ(Run("g.fa", ">1\t57\t0\t1\t0\n>2\t9\tx\t1\t1\nAC\n>3\t9\t0\t1\t2\nA*\x01\n>4\x02 9 0 1\n"),
              "1\ng.fa:1: header without a read behind it: '>1\t57\t0\t1\t0'\n"
              "g.fa:2: position is not a number: 'x'\n"
              "g.fa:5: no base in column 2: '*'\n"
              "g.fa:6: header without a read behind it: '>4? 9 0 1'\n");
}

TEST_F(Check, GapsAreHeldAgainstTheContigsInAnyOrder) {
    std::string gaps = Put("g.fa", ">1\t58\t-4\t1\t0\nACGT\n>2\t9\t0\t1\t1\nAC\n>3\t9\t0\t7\t0\nAC\n");
    std::string expected =
        "g.fa:1: gap 1 has length 57 in the contig file: 58\n"
        "g.fa:3: no gap lies behind contig 1 of scaffold 1, which has 2 contigs\n"
        "g.fa:5: the contig file has no such scaffold: 7\n";
    std::string good = "contig.fa: good contig file (2 scaffolds, 3 contigs, 1 gap)\n";
    EXPECT_EQ(Run({Contigs(), gaps}), "1\n" + good + expected);
    EXPECT_EQ(Run({gaps, Contigs()}), "1\n" + expected + good);
}

TEST_F(Check, TruthFaults) {
    std::string truth = Put("t.tsv",
                            "gap\tscaffold\tcontig\tstated\ttrue\tkind\tbases\n"
                            "1\t1\t0\t57\t3\treal\tACGT\n"
                            "1\t2\t0\t57\t1\treal\tA\n"
                            "-2\t1\t0\tx\t1\treal\tA\n"
                            "-1\t1\t0\t5\t-2\treal\t\n"
                            "3\t1\t4\t5\t2\treal\tA!\n"
                            "4\t1\n");
    EXPECT_EQ(Run({truth, Contigs()}),
              "1\nt.tsv:2: 4 true bases where the true length is 3\n"
              "t.tsv:3: gap id already used in line 2: 1\n"
              "t.tsv:3: no gap lies behind contig 0 of scaffold 2, which has 1 contig\n"
              "t.tsv:4: gap id is not a number from -1: '-2'\n"
              "t.tsv:4: stated length is not a number from 0: 'x'\n"
              "t.tsv:5: the gap of line 2 again: scaffold 1, contig 0\n"
              "t.tsv:6: no base in place 2 of the true bases: '!'\n"
              "t.tsv:6: no gap lies behind contig 4 of scaffold 1, which has 2 contigs\n"
              "t.tsv:7: 2 instead of 7 fields: '4\t1'\n"
              "contig.fa: good contig file (2 scaffolds, 3 contigs, 1 gap)\n");
}

}  // namespace
}  // namespace lintara::kit
