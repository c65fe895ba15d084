// Whole runs of `fill` with real mappers and the core program.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>

#include "support.h"

namespace lintara::kit {
namespace {

using test::Installed;
using test::RandomBases;

const std::string kExample = std::string(LINTARA_SOURCE_DIR) + "/examples/kit";

class EndToEnd : public test::FillTest {
  protected:
    int FillExample(const std::string& out, const std::string& more = "") const {
        return Kit("fill -s " + kExample + "/scaffolds.fa -1 " + kExample + "/R1.fq.gz -2 " + kExample +
                   "/R2.fq.gz -o " + Path(out) + " " + more);
    }
    int Tool(const std::string& command) const { return Shell("cd " + folder_ + " && { " + command + "; } 2>log"); }
    /// The scaffolds that the AGP makes of `scaffolds` and the fills, in the order of the AGP.
    std::vector<std::string> Rebuild(const std::string& scaffolds, const std::string& out) const {
        std::map<std::string, std::string> components;
        for (const std::string& file : {scaffolds, Path(out + "/fills.fa")}) {
            for (const FastaRecord& record : ReadFasta(file)) components[record.name] = record.sequence;
        }
        std::vector<std::string> texts;
        std::string last;
        for (const std::string& line : Lines(out + "/filled.agp")) {
            if (line[0] == '#') continue;
            std::vector<std::string> fields = SplitTabs(line);
            if (texts.empty() || fields[0] != last) texts.emplace_back();
            last = fields[0];
            if (fields[4] == "N") {
                texts.back() += std::string(std::stoul(fields[5]), 'N');
            } else {
                size_t from = std::stoul(fields[6]);
                texts.back() += components.at(fields[5]).substr(from - 1, std::stoul(fields[7]) - from + 1);
            }
        }
        return texts;
    }
};

TEST_F(EndToEnd, FilesOfTheExampleAgree) {
    for (const char* program : {"samtools", "bedtools"}) {
        if (!Installed(program)) GTEST_SKIP() << program << " is not installed";
    }
    ASSERT_EQ(FillExample("a"), 0) << Err();
    std::vector<FastaRecord> before = ReadFasta(kExample + "/scaffolds.fa");
    std::vector<FastaRecord> after = ReadFasta(Path("a/filled.fa"));
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after[0].name, before[0].name);
    EXPECT_EQ(after[0].description, before[0].description);
    EXPECT_EQ(Rebuild(kExample + "/scaffolds.fa", "a"), (std::vector<std::string>{after[0].sequence}));

    ASSERT_EQ(Tool("samtools faidx a/filled.fa --fai-idx index"), 0) << Get("log");
    EXPECT_EQ(Get("a/filled.fa.fai"), Get("index"));

    // Just the filled stretches are in lower case, since the example's contigs are in upper case.
    ASSERT_EQ(Tool("bedtools getfasta -fi a/filled.fa -bed a/filled.bed -fo taken"), 0) << Get("log");
    size_t lower = 0;
    for (const FastaRecord& record : ReadFasta(Path("taken"))) {
        EXPECT_EQ(record.sequence.find_first_not_of("acgt"), std::string::npos);
        lower += record.sequence.size();
    }
    EXPECT_GT(lower, 500U);
    EXPECT_EQ(std::count_if(after[0].sequence.begin(), after[0].sequence.end(), [](char c) { return c >= 'a'; }),
              static_cast<long>(lower));
    ASSERT_EQ(Tool("bedtools sort -i a/filled.bed >sorted && bedtools merge -i sorted >merged"), 0) << Get("log");
    EXPECT_EQ(Get("sorted"), Get("a/filled.bed"));
    EXPECT_GT(Lines("merged").size(), 0U);

    // The table of gaps counts the same bases.
    long filled = 0;
    long open = 0;
    for (const std::string& value : Column("a", "filled")) filled += std::stol(value);
    for (const std::string& value : Column("a", "open")) open += std::stol(value);
    EXPECT_EQ(filled, static_cast<long>(lower));
    EXPECT_EQ(open, std::count(after[0].sequence.begin(), after[0].sequence.end(), 'N'));
    EXPECT_EQ(Column("a", "outcome").at(0), "closed");
    for (const std::string& reason : Column("a", "reason")) EXPECT_NE(reason, "");
    for (const std::string& line : Lines("a/columns.tsv.gz")) EXPECT_EQ(SplitTabs(line).size(), 4U);
    nlohmann::json run = nlohmann::json::parse(Get("a/run.json"));
    EXPECT_GE(run["rounds"].size(), 1U);
    EXPECT_GE(run["commands"].size(), 3U);
    EXPECT_GT(run["peak_memory_mb"], 0.0);
    EXPECT_EQ(Files("a"),
              (std::vector<std::string>{"columns.tsv.gz", "filled.agp", "filled.bed", "filled.fa", "filled.fa.fai",
                                        "fills.fa", "gaps.tsv", "lintara_mqc.json", "report.html"}));
}

TEST_F(EndToEnd, TwoThreadsGiveTheSameBytes) {
    ASSERT_EQ(Tool("mkdir one two"), 0);
    ASSERT_EQ(FillExample("one/out", "-t 1"), 0) << Err();
    ASSERT_EQ(FillExample("two/out", "-t 2"), 0) << Err();
    ExpectSame("one/out", "two/out");
}

TEST_F(EndToEnd, GapsOfAKnownGenomeAreFilledWithItsBases) {
    ASSERT_EQ(Fill("a"), 0) << Err();
    EXPECT_EQ(Column("a", "outcome"), (std::vector<std::string>{"closed", "extended"}));
    std::string filled = ReadFasta(Path("a/filled.fa"))[0].sequence;
    EXPECT_EQ(filled.substr(0, 1700),
              genome_.substr(0, 800) + Lower(genome_.substr(800, 60)) + genome_.substr(860, 840));
    // From both sides of the other gap up to the stretch that no read covers.
    size_t first = filled.find('N');
    size_t last = filled.rfind('N');
    ASSERT_NE(first, std::string::npos);
    EXPECT_GT(first, 1700U);
    EXPECT_LE(first, 1750U);
    EXPECT_EQ(Upper(filled.substr(0, first)), genome_.substr(0, first));
    std::string rest = Upper(filled.substr(last + 1));
    EXPECT_LT(rest.size(), genome_.size() - 1735);
    EXPECT_EQ(rest, genome_.substr(genome_.size() - rest.size()));
    EXPECT_EQ(Lines("a/filled.fa").at(0), ">alpha some words");
}

TEST_F(EndToEnd, MappedReadsAreFilledInOneRound) {
    if (!Installed("samtools")) GTEST_SKIP() << "samtools is not installed";
    ASSERT_EQ(
        Tool("bwa index -p ix scaffolds.fa && bwa mem -v 1 ix 1.fq 2.fq | samtools sort -o s.bam && samtools view "
             "-C -T scaffolds.fa -o s.cram s.bam && samtools sort -n -o n.bam s.bam && mkdir x y z"),
        0)
        << Get("log");
    std::string words = "fill -s " + Path("scaffolds.fa") + " --bam " + folder_;
    ASSERT_EQ(Kit(words + "/s.bam -o " + Path("x/out")), 0) << Err();
    EXPECT_EQ(Column("x/out", "outcome").at(0), "closed");
    EXPECT_EQ(nlohmann::json::parse(Get("x/out/run.json"))["rounds"].size(), 1U);
    std::string filled = ReadFasta(Path("x/out/filled.fa"))[0].sequence;
    EXPECT_EQ(Upper(filled.substr(0, 1700)), genome_.substr(0, 1700));
    ASSERT_EQ(Kit(words + "/s.cram -o " + Path("y/out")), 0) << Err();
    ASSERT_EQ(Kit(words + "/n.bam -o " + Path("z/out")), 0) << Err();
    ExpectSame("x/out", "y/out");
    ExpectSame("x/out", "z/out");
    // Cut short: no file but the working folder.
    std::string bam = Get("s.bam");
    Put("half.bam", bam.substr(0, bam.size() / 2));
    EXPECT_EQ(Kit("fill --quiet -s " + Path("scaffolds.fa") + " --bam " + Path("half.bam") + " -o " + Path("h")), 1);
    EXPECT_EQ(Err(), "lintara-kit: " + Path("half.bam") + ": the file is cut short\n");
    EXPECT_EQ(Files("h"), (std::vector<std::string>{"work"}));
}

TEST_F(EndToEnd, Minimap2IsTheOtherMapper) {
    if (!Installed("minimap2")) GTEST_SKIP() << "minimap2 is not installed";
    ASSERT_EQ(Fill("a", "--mapper minimap2"), 0) << Err();
    EXPECT_EQ(Column("a", "outcome").at(0), "closed");
    std::string filled = ReadFasta(Path("a/filled.fa"))[0].sequence;
    EXPECT_EQ(Upper(filled.substr(0, 1700)), genome_.substr(0, 1700));
}

TEST_F(EndToEnd, OddScaffoldsKeepTheirNamesOrderAndCase) {
    if (!Installed("samtools")) GTEST_SKIP() << "samtools is not installed";
    std::string longName(10000, 'n');
    std::string lower = Lower(scaffold_);
    lower[100] = 'r';  // a letter that stands for two bases
    lower[2500] = 'Y';
    std::string text = ">empty\r\n>twice first\r\nACGTacgt\r\n>" + longName + " " + longName + "\r\n" + lower +
                       "\r\n>twice\r\nNNNACGTACGTACGTNNN\r\n>tiny\r\nANA\r\n>all\r\nNNNN\r\n";
    {
        AtomicFile file(Path("scaffolds.fa"), AtomicFile::Format::kGzip);
        file.Write(text);
        file.Commit();
    }
    ASSERT_EQ(Fill("a"), 0) << Err();
    EXPECT_NE(Err().find("holds letters other than A, C, G, T and N, which are kept: 1 Y, 1 r"), std::string::npos);
    std::vector<FastaRecord> after = ReadFasta(Path("a/filled.fa"));
    ASSERT_EQ(after.size(), 6U);
    std::vector<std::string> names;
    for (const FastaRecord& record : after) names.push_back(record.name);
    EXPECT_EQ(names, (std::vector<std::string>{"empty", "twice", longName, "twice", "tiny", "all"}));
    EXPECT_EQ(after[1].description, "first");
    EXPECT_EQ(after[2].description, longName);
    EXPECT_EQ(after[0].sequence, "");
    EXPECT_EQ(after[1].sequence, "ACGTacgt");
    EXPECT_EQ(after[3].sequence, "NNNACGTACGTACGTNNN");
    EXPECT_EQ(after[4].sequence, "ANA");
    EXPECT_EQ(after[5].sequence, "NNNN");
    const std::string& filled = after[2].sequence;
    EXPECT_EQ(filled.substr(0, 800), lower.substr(0, 800));
    EXPECT_EQ(filled.substr(800, 60), Lower(genome_.substr(800, 60)));
    EXPECT_EQ(filled.substr(filled.size() - 100), lower.substr(lower.size() - 100));
    EXPECT_EQ(filled.find('\r'), std::string::npos);
    std::vector<std::string> outcomes = Column("a", "outcome");
    EXPECT_EQ(outcomes, (std::vector<std::string>{"closed", "extended", "open", "open", "open", "open"}));
    for (const std::string& reason : Column("a", "reason")) EXPECT_NE(reason, "");
    ASSERT_EQ(Tool("samtools faidx a/filled.fa --fai-idx index"), 0) << Get("log");
    EXPECT_EQ(Get("a/filled.fa.fai"), Get("index"));
}

TEST_F(EndToEnd, ScaffoldsWithoutGapsComeBackAsTheyWere) {
    std::string text = ">a x\nACGTacgt\n>b\nACG\n";
    Put("scaffolds.fa", text);
    ASSERT_EQ(Fill("a", "--quiet"), 0) << Err();
    EXPECT_EQ(Get("a/filled.fa"), text);
    EXPECT_EQ(Lines("a/gaps.tsv").size(), 1U);
    EXPECT_TRUE(Exists("a/report.html"));
    EXPECT_TRUE(Exists("a/run.json"));
}

TEST_F(EndToEnd, WithoutReadsEveryGapStaysOpen) {
    Put("1.fq", "");
    Put("2.fq", "");
    ASSERT_EQ(Fill("a"), 0) << Err();
    EXPECT_EQ(Column("a", "outcome"), (std::vector<std::string>{"open", "open"}));
    EXPECT_EQ(Column("a", "reason"), (std::vector<std::string>{"no reads were assigned", "no reads were assigned"}));
    EXPECT_EQ(ReadFasta(Path("a/filled.fa"))[0].sequence, scaffold_);
}

TEST_F(EndToEnd, SeveralLibrariesOfSeveralReadLengths) {
    // The second library's reads cover what those of the first one leave out.
    test::WritePairs(genome_, Path("3.fq"), Path("4.fq"), 70, 500, 40, 5, [](long, long) { return true; });
    ASSERT_EQ(Fill("a", "-1 " + Path("3.fq") + " -2 " + Path("4.fq")), 0) << Err();
    EXPECT_EQ(Column("a", "outcome"), (std::vector<std::string>{"closed", "closed"}));
    EXPECT_EQ(Upper(ReadFasta(Path("a/filled.fa"))[0].sequence), genome_);
    nlohmann::json libraries = nlohmann::json::parse(Get("a/run.json"))["rounds"][0]["libraries"];
    ASSERT_EQ(libraries.size(), 2U);
    EXPECT_NEAR(libraries[0]["insert_median"].get<double>(), 350, 10);
    EXPECT_NEAR(libraries[1]["insert_median"].get<double>(), 500, 10);
}

TEST_F(EndToEnd, QuietSaysNothing) {
    ASSERT_EQ(Fill("a", "--quiet"), 0);
    EXPECT_EQ(Err(), "");
    EXPECT_EQ(Get("out"), "");
}

TEST_F(EndToEnd, WithoutATerminalEachStageIsALine) {
    ASSERT_EQ(Fill("a"), 0);
    std::vector<std::string> lines = Lines("err");
    ASSERT_GT(lines.size(), 3U);
    for (const std::string& line : lines) {
        EXPECT_EQ(line.find_first_of("\r\033"), std::string::npos);
        EXPECT_NE(line.find(": "), std::string::npos);
        EXPECT_TRUE(line.ends_with(" s)")) << line;
    }
    EXPECT_TRUE(lines.back().starts_with("write " + Path("a") + ": 2 gaps: 1 closed, 0 merged, 1 extended, 0 open; "))
        << lines.back();
}

TEST_F(EndToEnd, OnATerminalStagesHaveABar) {
    if (!Installed("script")) GTEST_SKIP() << "script is not installed";
    if (Shell("script -qec true /dev/null >" + Path("none")) != 0) GTEST_SKIP() << "there are no pseudo-terminals";
    std::string words = std::string(LINTARA_KIT_BINARY) + " " + FillWords("a", "--rounds 1");
    ASSERT_EQ(Shell("script -qec '" + words + "' /dev/null >" + Path("out")), 0) << Get("out");
    std::string shown = Get("out");
    for (const char* stage : {"map ", "fill", "look closer"}) {
        size_t at = shown.find(std::string("round 1: ") + stage);
        EXPECT_NE(at, std::string::npos) << stage;
    }
    EXPECT_NE(shown.find("1.fq ["), std::string::npos) << shown;
    // How far a bar gets depends on the clock; its first state is always drawn.
    EXPECT_TRUE(std::regex_search(shown, std::regex("look closer \\[[#.]{30}\\] [0-9]+ %"))) << shown;
}

TEST_F(EndToEnd, UnevenReadsAndReadsOfOtherGenomesAreWarnedOf) {
    Put("2.fq", "");
    ASSERT_EQ(Fill("a"), 0) << Err();
    std::string warning = "lintara-kit: warning: " + Path("1.fq") + ": ";
    EXPECT_NE(Err().find(warning + "[W::bseq_read] the 2nd file has fewer sequences."), std::string::npos) << Err();
    EXPECT_NE(Err().find(warning + "no read maps to the scaffolds\n"), std::string::npos) << Err();
}

TEST_F(EndToEnd, ReadsLongerThanAnOverlapMayBeAreWarnedOfOnce) {
    const std::string warning =
        "lintara-kit: warning: " + Path("1.fq") + ": reads of up to 256 bases: overlaps of more";
    for (int length : {255, 256}) {
        test::WritePairs(genome_, Path("1.fq"), Path("2.fq"), length, 600, 30, 4, [](long, long) { return true; });
        ASSERT_EQ(Fill("a", "--force"), 0) << Err();
        const std::vector<std::string> lines = Lines("err");
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                [&](const std::string& line) { return line.starts_with(warning); }),
                  length == 255 ? 0 : 1)
            << Err();
    }
}

TEST_F(EndToEnd, ExistingFolderNeedsAWord) {
    ASSERT_EQ(Fill("a", "--quiet"), 0);
    std::string before = Get("a/run.json");
    EXPECT_EQ(Fill("a"), 1);
    EXPECT_EQ(Err(), "lintara-kit: " + Path("a") + " exists: go on with --resume or begin anew with --force\n");
    EXPECT_EQ(Get("a/run.json"), before);
    ASSERT_EQ(Fill("a", "--resume"), 0);
    EXPECT_NE(Err().find(Path("a") + " is complete"), std::string::npos) << Err();
    EXPECT_EQ(Get("a/run.json"), before);
    Put("a/mine.txt", "mine");
    ASSERT_EQ(Fill("a", "--force --rounds 1"), 0) << Err();
    EXPECT_NE(Get("a/run.json"), before);
    EXPECT_EQ(Get("a/mine.txt"), "mine");
}

TEST_F(EndToEnd, AFolderNamedWorkOfTheUsersIsNotRemoved) {
    std::filesystem::create_directories(Path("a/work"));
    Put("a/work/mine.txt", "mine");
    for (const char* word : {"--force", "--resume"}) {
        EXPECT_EQ(Fill("a", word), 1);
        EXPECT_EQ(Err(), "lintara-kit: " + Path("a/work/mine.txt") +
                             " is not of lintara-kit and would be removed: move " + Path("a/work") +
                             " away or give another OUT\n");
        EXPECT_EQ(Get("a/work/mine.txt"), "mine");
    }
}

TEST_F(EndToEnd, ResumeNeedsTheSameScaffolds) {
    ASSERT_EQ(Fill("a", "--rounds 1 --keep"), 0);
    Put("scaffolds.fa", ">alpha\n" + genome_.substr(0, 700) + "NNN" + genome_.substr(800) + "\n");
    EXPECT_EQ(Fill("a", "--resume"), 1);
    EXPECT_EQ(Err(), "lintara-kit: " + Path("a") + " was begun with other scaffolds or another --min-gap\n");
    Put("a/work/state.json", "{\"half\":");
    EXPECT_EQ(Fill("a", "--resume"), 1);
    EXPECT_TRUE(Err().starts_with("lintara-kit: " + Path("a/work/state.json") + " cannot be used: ")) << Err();
}

TEST_F(EndToEnd, ResumeNeedsTheSameReadsUnderWhateverName) {
    ASSERT_EQ(Fill("a", "--rounds 1 --keep"), 0);
    const std::string reads = Get("1.fq");
    Put("1.fq", reads.substr(0, reads.size() / 2));
    EXPECT_EQ(Fill("a", "--resume"), 1);
    EXPECT_EQ(Err(), "lintara-kit: " + Path("a") + " was begun with other reads\n");
    // As many bytes, but others.
    std::string other = reads;
    other[other.find('\n') + 1] ^= 'A' ^ 'C';
    Put("1.fq", other);
    EXPECT_EQ(Fill("a", "--resume"), 1);
    EXPECT_EQ(Err(), "lintara-kit: " + Path("a") + " was begun with other reads\n");
    Put("moved.fq", reads);
    EXPECT_EQ(Kit("fill -s " + Path("scaffolds.fa") + " -1 " + Path("moved.fq") + " -2 " + Path("2.fq") + " -o " +
                  Path("a") + " --rounds 1 --resume"),
              0)
        << Err();
}

TEST_F(EndToEnd, OptionsThatContradictAreTold) {
    std::string words = "fill -s " + Path("scaffolds.fa") + " -o " + Path("a");
    std::string reads = " -1 " + Path("1.fq") + " -2 " + Path("2.fq");
    auto expect = [&](const std::string& more, const std::string& message) {
        EXPECT_EQ(Kit(words + more), 1);
        EXPECT_EQ(Err(), "lintara-kit: " + message + "\n");
        EXPECT_FALSE(Exists("a"));
    };
    expect("", "give either read pairs (-1 and -2) or --bam");
    expect(reads + " --bam " + Path("x.bam"), "give either read pairs (-1 and -2) or --bam");
    expect(reads + " -1 " + Path("1.fq"), "-1 was given 2 times and -2 1 times");
    expect(" -1 " + Path("1.fq") + " -2 " + Path("no.fq"),
           "cannot read " + Path("no.fq") + ": No such file or directory");
    expect(reads + " --core " + Path("core"), "the program " + Path("core") + " was not found");
    expect(reads + " --core no-such-core",
           "the program no-such-core was not found beside lintara-kit or in PATH; --core takes its path");
    expect(" -1 " + Path("1.fq") + " -2 " + Path("./1.fq"),
           Path("1.fq") + " and " + Path("./1.fq") + " are the same file: the two mates of a pair are needed");
    expect(" -1 " + Path("1.fq") + " -2 " + folder_,
           "cannot read " + folder_ + ": this is no file; reads are read more than once");
    EXPECT_NE(Kit(words + reads + " --mapper other"), 0);
    EXPECT_NE(Kit(words + reads + " -t 0"), 0);
    EXPECT_FALSE(Exists("a"));
}

}  // namespace
}  // namespace lintara::kit
