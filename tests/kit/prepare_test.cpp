#include <gtest/gtest.h>

#include "support.h"

namespace lintara::kit {
namespace {

using test::Installed;
using test::RandomBases;

/// Read pairs over a genome of 5,000 bases, mapped to its scaffold with bases 2,000 to 2,150 unknown.
class Prepare : public test::KitTest {
  protected:
    int Run(const std::string& mapping, const std::string& more = "") const {
        std::filesystem::remove_all(Path("p"));
        return Kit("prepare -s " + Path("scaffolds.fa") + " --bam " + Path(mapping) + " -o " + Path("p") + " " + more);
    }
    /// An error is one line, and leaves no file behind.
    void ExpectFault(const std::string& mapping, const std::string& words) const {
        EXPECT_EQ(Run(mapping), 1) << mapping;
        EXPECT_EQ(Err(), "lintara-kit: " + words + "\n");
        for (const char* name : {"p/contig.fa", "p/gap.fa.gz", "p/names.tsv"}) EXPECT_FALSE(Exists(name)) << name;
        EXPECT_TRUE(!Exists("p") || std::filesystem::is_empty(Path("p")));
    }
};

class PrepareMapped : public Prepare {
  protected:
    void SetUp() override {
        for (const char* program : {"bwa", "samtools"}) {
            if (!Installed(program)) GTEST_SKIP() << program << " is not installed";
        }
        std::string genome = RandomBases(5000, 1);
        std::string scaffold = genome;
        std::fill(scaffold.begin() + 2000, scaffold.begin() + 2150, 'N');
        Put("scaffolds.fa", ">s some words\n" + Lower(scaffold) + "\n>t\n" + RandomBases(1000, 2) + "\n");
        test::WritePairs(genome, Path("1.fq"), Path("2.fq"), 100, 350, 30, 7, [](long, long) { return true; });
        ASSERT_EQ(Shell("cd " + folder_ +
                        " && { bwa index -p index scaffolds.fa && bwa mem -v 1 index 1.fq 2.fq >reads.sam; } 2>log"),
                  0)
            << Get("log");
    }
    int Samtools(const std::string& arguments) const {
        return Shell("cd " + folder_ + " && samtools " + arguments + " 2>log");
    }
};

TEST_F(PrepareMapped, OrderAndFormatOfTheMappingMakeNoDifference) {
    ASSERT_EQ(Samtools("sort -o position.bam reads.sam"), 0);
    ASSERT_EQ(Samtools("sort -n -o name.bam reads.sam"), 0);
    ASSERT_EQ(Samtools("collate -o mixed.bam position.bam"), 0);
    ASSERT_EQ(Samtools("view -C -T scaffolds.fa -o position.cram position.bam"), 0);
    ASSERT_EQ(Samtools("view -C -T scaffolds.fa -o name.cram name.bam"), 0);
    ASSERT_EQ(Run("reads.sam"), 0) << Err();
    std::string contigs = Get("p/contig.fa");
    std::string reads = Get("p/gap.fa.gz");
    std::string names = Get("p/names.tsv");
    EXPECT_GT(Lines("p/gap.fa.gz").size(), 100U);
    for (const char* mapping : {"position.bam", "name.bam", "mixed.bam", "position.cram", "name.cram"}) {
        ASSERT_EQ(Run(mapping), 0) << Err();
        EXPECT_EQ(Get("p/contig.fa"), contigs) << mapping;
        EXPECT_EQ(Get("p/gap.fa.gz"), reads) << mapping;
        EXPECT_EQ(Get("p/names.tsv"), names) << mapping;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Path("p")), {}), 3) << mapping;
    }
}

TEST_F(PrepareMapped, EachReadLiesWhereTheGenomeHasIt) {
    ASSERT_EQ(Run("reads.sam"), 0) << Err();
    std::string genome = RandomBases(5000, 1);
    std::vector<std::string> lines = Lines("p/gap.fa.gz");
    int exact = 0;
    for (size_t i = 0; i + 1 < lines.size(); i += 2) {
        std::vector<std::string> fields = SplitTabs(lines[i]);
        ASSERT_EQ(fields.size(), 5U);
        EXPECT_EQ(fields[0], ">1");
        EXPECT_EQ(fields[1], "150");
        EXPECT_EQ(fields[3], "1");
        EXPECT_EQ(fields[4], "0");
        long position = std::stol(fields[2]);
        size_t at = genome.find(lines[i + 1]);
        ASSERT_NE(at, std::string::npos) << "turned the wrong way: " << lines[i];
        // A place by the insert size is off by as much as its pair's fragment: at most 30 bases here.
        EXPECT_NEAR(static_cast<double>(position), static_cast<double>(at) - 2000, 32);
        exact += position == static_cast<long>(at) - 2000;
    }
    EXPECT_GT(exact, 50);
}

TEST_F(PrepareMapped, CheckFindsNoFaultInWhatPrepareWrites) {
    ASSERT_EQ(Run("reads.sam"), 0) << Err();
    EXPECT_EQ(Kit("check " + Path("p/contig.fa") + " " + Path("p/gap.fa.gz")), 0) << Get("out");
}

TEST_F(PrepareMapped, ReadsAreWrittenInBlocks) {
    ASSERT_EQ(Run("reads.sam"), 0) << Err();
    std::string bytes = Get("p/gap.fa.gz");
    ASSERT_GT(bytes.size(), 14U);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x1f\x8b\x08\x04"));
    EXPECT_EQ(bytes.substr(12, 2), "BC");
}

TEST_F(PrepareMapped, CutShortFilesAreFaults) {
    ASSERT_EQ(Samtools("sort -o position.bam reads.sam"), 0);
    ASSERT_EQ(Samtools("view -C -T scaffolds.fa -o position.cram position.bam"), 0);
    std::string bam = Get("position.bam");
    Put("half.bam", bam.substr(0, bam.size() / 2));
    ExpectFault("half.bam", Path("half.bam") + ": the file is cut short");
    Put("noend.bam", bam.substr(0, bam.size() - 28));  // only the mark at the end is missing
    ExpectFault("noend.bam", Path("noend.bam") + ": the file is cut short");
    std::string cram = Get("position.cram");
    Put("half.cram", cram.substr(0, cram.size() / 2));
    ExpectFault("half.cram", Path("half.cram") + ": the file is cut short");
    Put("noend.cram", cram.substr(0, cram.size() - 38));
    ExpectFault("noend.cram", Path("noend.cram") + ": the file is cut short");
}

TEST_F(PrepareMapped, DamagedBlocksAreFaults) {
    ASSERT_EQ(Samtools("view -b -o reads.bam reads.sam"), 0);
    std::string bam = Get("reads.bam");
    for (size_t i = bam.size() / 2; i < bam.size() / 2 + 100; ++i) bam[i] = static_cast<char>(~bam[i]);
    Put("bad.bam", bam);
    EXPECT_EQ(Run("bad.bam"), 1);
    std::string fault = Err();
    EXPECT_EQ(fault.substr(0, fault.find(" behind record")),
              "lintara-kit: " + Path("bad.bam") + ": damaged or cut short");
    EXPECT_FALSE(Exists("p/gap.fa.gz"));
}

TEST_F(PrepareMapped, MappingWithoutReadsGivesContigsOnly) {
    ASSERT_EQ(Samtools("view -H -b -o head.bam reads.sam"), 0);
    ASSERT_EQ(Run("head.bam"), 0) << Err();
    EXPECT_EQ(Lines("p/contig.fa").size(), 6U);
    EXPECT_EQ(Lines("p/gap.fa.gz").size(), 0U);
}

TEST_F(PrepareMapped, SeveralMappingsAddUp) {
    ASSERT_EQ(Run("reads.sam"), 0);
    size_t once = Lines("p/gap.fa.gz").size();
    ASSERT_EQ(Run("reads.sam", "--bam " + Path("reads.sam")), 0);
    EXPECT_EQ(Lines("p/gap.fa.gz").size(), 2 * once);
}

TEST_F(PrepareMapped, QuietSaysNothing) {
    ASSERT_EQ(Run("reads.sam", "--quiet"), 0);
    EXPECT_EQ(Err(), "");
    EXPECT_EQ(Get("out"), "");
}

TEST_F(Prepare, FilesThatAreNoMappingAreFaults) {
    Put("scaffolds.fa", ">s\nACGTNNACGT\n");
    Put("empty.bam", "");
    ExpectFault("empty.bam", Path("empty.bam") + ": this is no SAM, BAM or CRAM file");
    Put("text.bam", "these are words\n");
    ExpectFault("text.bam", Path("text.bam") + ": this is no SAM, BAM or CRAM file");
    ExpectFault("missing.bam", "cannot read " + Path("missing.bam") + ": No such file or directory");
    Put("other.sam", "@SQ\tSN:s\tLN:10\n@SQ\tSN:x\tLN:10\n");
    ExpectFault("other.sam", Path("other.sam") + ": the reads are mapped to \"x\", which is no scaffold");
    Put("longer.sam", "@SQ\tSN:s\tLN:11\n");
    ExpectFault("longer.sam", Path("longer.sam") + ": \"s\" has 11 bases in the mapping and 10 in the scaffolds");
}

TEST_F(Prepare, ScaffoldsAreCutAtTheirRunsOfN) {
    // Carriage returns, lower case, other letters, descriptions, gaps at both ends, an empty scaffold and one base.
    Put("scaffolds.fa",
        ">one first words\r\nNNacgt\r\nRYACnnnAC\r\nGTN\r\n>two\r\nACGTACGT\r\n>three\r\n>four "
        "x\r\nA\r\n>five\r\nACNAC\r\n");
    Put("empty.sam", "@SQ\tSN:one\tLN:18\n");
    ASSERT_EQ(Run("empty.sam"), 0) << Err();
    EXPECT_EQ(Get("p/contig.fa"),
              ">scaffold1_0\t0\nACGTRYAC\n>scaffold1_1\t3\nACGT\n>scaffold2_0\t0\nACGTACGT\n>scaffold3_0\t0\nAC\n"
              ">scaffold3_1\t1\nAC\n");
    EXPECT_EQ(Get("p/names.tsv"),
              "scaffold\tname\tdescription\tgap\tstart\tend\n1\tone\tfirst words\t1\t10\t13\n2\ttwo\t\t.\t.\t.\n"
              "3\tfive\t\t2\t2\t3\n");
    EXPECT_EQ(
        Err().substr(0, Err().find('\n')),
        "lintara-kit: warning: scaffold \"one\" holds letters other than A, C, G, T and N, which are kept: 1 R, 1 "
        "Y");
}

TEST_F(Prepare, ShortRunsOfNStayInTheirContig) {
    Put("scaffolds.fa", ">s\nACGTNNACGTNNNACGT\n");
    Put("empty.sam", "@SQ\tSN:s\tLN:17\n");
    ASSERT_EQ(Run("empty.sam", "--min-gap 3"), 0);
    EXPECT_EQ(Get("p/contig.fa"), ">scaffold1_0\t0\nACGTNNACGT\n>scaffold1_1\t3\nACGT\n");
}

TEST_F(Prepare, NamesOfTenThousandCharactersAreKept) {
    std::string name(10000, 'n');
    std::string words(10000, 'w');
    Put("scaffolds.fa", ">" + name + " " + words + "\nACGTNACGT\n");
    std::string place = "\t0\t" + name + "\t1\t60\t4M1S\t*\t0\t0\tACGTA\t*\n";
    Put("reads.sam", "@SQ\tSN:" + name + "\tLN:9\nr" + place);
    ASSERT_EQ(Run("reads.sam"), 0) << Err();
    EXPECT_EQ(Lines("p/names.tsv").at(1), "1\t" + name + "\t" + words + "\t1\t4\t5");
    EXPECT_EQ(Lines("p/gap.fa.gz"), (std::vector<std::string>{">1\t1\t-4\t1\t0", "ACGTA"}));
}

TEST_F(Prepare, TabsInADescriptionDoNotShiftTheTable) {
    Put("scaffolds.fa", ">s\tone\ttwo\nACGTNACGT\n");
    Put("empty.sam", "@SQ\tSN:s\tLN:9\n");
    ASSERT_EQ(Run("empty.sam"), 0) << Err();
    EXPECT_EQ(Lines("p/names.tsv").at(1), "1\ts\tone two\t1\t4\t5");
    EXPECT_NE(Err().find("0 reads, 0 mapped, longest 0, no proper pairs"), std::string::npos) << Err();
}

TEST_F(Prepare, ScaffoldsOfOneNameCannotBeToldApartInAMapping) {
    Put("scaffolds.fa", ">s\nACGTNACGT\n>s\nACGTACGTA\n>t\nACGT\n");
    Put("twice.sam", "@SQ\tSN:s\tLN:9\n@SQ\tSN:s\tLN:9\n@SQ\tSN:t\tLN:4\n");
    ExpectFault("twice.sam", Path("twice.sam") + ": more than one scaffold is named \"s\"");
    Put("other.sam", "@SQ\tSN:t\tLN:4\n");
    EXPECT_EQ(Run("other.sam"), 0) << Err();
}

TEST_F(Prepare, CompressedScaffolds) {
    Put("empty.sam", "@SQ\tSN:s\tLN:9\n");
    {
        AtomicFile file(Path("scaffolds.fa"), AtomicFile::Format::kGzip);
        file.Write(">s\nACGTNACGT\n");
        file.Commit();
    }
    ASSERT_EQ(Run("empty.sam"), 0) << Err();
    EXPECT_EQ(Get("p/contig.fa"), ">scaffold1_0\t0\nACGT\n>scaffold1_1\t1\nACGT\n");
    std::string bytes = Get("scaffolds.fa");
    Put("scaffolds.fa", bytes.substr(0, bytes.size() - 10));
    ExpectFault("empty.sam", "cannot read " + Path("scaffolds.fa") + ": the compressed file is cut short");
}

TEST_F(Prepare, FaultsOfTheScaffoldFileAreTold) {
    Put("empty.sam", "@SQ\tSN:s\tLN:9\n");
    ExpectFault("empty.sam", "cannot read " + Path("scaffolds.fa") + ": No such file or directory");
    Put("scaffolds.fa", "");
    ExpectFault("empty.sam", Path("scaffolds.fa") + ": the file holds no FASTA record");
    Put("scaffolds.fa", "ACGT\n");
    ExpectFault("empty.sam", Path("scaffolds.fa") + ":1: a FASTA record begins with '>', not with \"ACGT\"");
    Put("scaffolds.fa", ">s\nAC\nAC7T\n");
    ExpectFault("empty.sam", Path("scaffolds.fa") + ":3: '7' is no base");
}

TEST_F(Prepare, FolderThatCannotBeMadeIsTold) {
    Put("scaffolds.fa", ">s\nACGTNACGT\n");
    Put("empty.sam", "@SQ\tSN:s\tLN:9\n");
    Put("file", "");
    EXPECT_EQ(Kit("prepare -s " + Path("scaffolds.fa") + " --bam " + Path("empty.sam") + " -o " + Path("file/p")), 1);
    EXPECT_EQ(Err(), "lintara-kit: cannot make the folder " + Path("file/p") + ": Not a directory\n");
}

}  // namespace
}  // namespace lintara::kit
