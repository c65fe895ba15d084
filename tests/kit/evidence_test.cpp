#include "kit/fill/evidence.h"

#include <gtest/gtest.h>

#include "kit/base/error.h"
#include "kit/fill/core_run.h"
#include "support.h"

namespace lintara::kit {
namespace {

using test::RandomBases;

class EvidenceFiles : public test::KitTest {
  protected:
    std::map<int, std::vector<GapLog>> Logs(const std::string& text) const {
        std::map<int, std::vector<GapLog>> logs;
        ReadLog(Put("log", text), logs);
        return logs;
    }
    GapLog OneGap(const std::string& lines) const {
        return Logs("Treat with scaffold 1 and 1 gaps in the scaffold\nfill gap1\tlength is: 62\n" + lines).at(1).at(0);
    }
    std::map<int, std::vector<ColumnBlock>> Columns(const std::string& text) const {
        std::map<int, std::vector<ColumnBlock>> columns;
        ReadColumns(Put("snp", text), columns);
        return columns;
    }
};

TEST_F(EvidenceFiles, GapsOfEachScaffoldInTheirOrder) {
    auto logs = Logs(
        "Treat with scaffold 3 and 2 gaps in the scaffold\nfill gap7\tlength is: 62\nno read of the gap, before contig "
        "size: 5\tafter contig size: 9\nScaffold 3 finished!\nTreat with scaffold 12 and 1 gaps in the scaffold\nfill "
        "gap9\tlength is: 1\n");
    ASSERT_EQ(logs.size(), 2U);
    ASSERT_EQ(logs[3].size(), 2U);
    EXPECT_EQ(logs[3][0].gap, 7);
    EXPECT_FALSE(logs[3][0].noReads);
    EXPECT_TRUE(logs[3][1].noReads);
    ASSERT_EQ(logs[12].size(), 1U);
    EXPECT_EQ(logs[12][0].gap, 9);
}

TEST_F(EvidenceFiles, EachLineOfALogIsToldOfItsGap) {
    EXPECT_TRUE(OneGap("Treat the gap as middle size gap\t2\n").middle);
    EXPECT_TRUE(OneGap("Meet last read!\n").metLast);
    EXPECT_TRUE(OneGap("Meet first read!\n").metLast);
    EXPECT_TRUE(OneGap("MinusOneNGap with check read number: 3\n").minus);
    EXPECT_TRUE(OneGap("Starting to fill gap of TR type\t1\n").repeat);
    EXPECT_TRUE(OneGap("Too few long read cross over the short gap, try middle assemble\t0\n").noSize);
    EXPECT_TRUE(OneGap("No reads forward\n").noStart);
    EXPECT_TRUE(OneGap("No reads reward\n").noStart);
    EXPECT_TRUE(OneGap("Gap sequence may exists more than one copy in the gap region! So accept longest\n").unclear);
    EXPECT_EQ(OneGap("Get the gap size -1000\tsupport read number: 4\n").spanningReads, 0);
    EXPECT_EQ(OneGap("Get the gap size 62\tsupport read number: 4\n").spanningReads, 4);
    EXPECT_EQ(OneGap("Get the gap size -3\tsupport read number: 5\n").spanningReads, 5);
    GapLog none = OneGap("0\t12\tMeet last read!\n\n");  // a table's row, not a message
    EXPECT_FALSE(none.metLast);
}

TEST_F(EvidenceFiles, GapsWithoutReadsHaveTheirOwnLines) {
    std::string head = "Treat with scaffold 1 and 1 gaps in the scaffold\nno read of the gap, before contig size: 5\t";
    head += "after contig size: 9\n";
    EXPECT_TRUE(Logs(head + "MinusOneNGap1 with check read number: 0\n").at(1).at(0).mergedByEnds);
    EXPECT_TRUE(Logs(head + "Before edge is included in after edge!\n").at(1).at(0).beforeIncluded);
    EXPECT_TRUE(Logs(head + "After edge is included in before edge!\n").at(1).at(0).afterIncluded);
    EXPECT_FALSE(Logs(head + "Meet last read!\n").at(1).at(0).metLast);
}

TEST_F(EvidenceFiles, LinesInFrontOfAnyScaffoldAreNoGaps) {
    EXPECT_TRUE(Logs("fill gap1\tlength is: 62\nMeet last read!\nno read of the gap, before\n").empty());
    EXPECT_TRUE(Logs("").empty());
}

TEST_F(EvidenceFiles, ColumnsOfAPath) {
    auto columns = Columns(
        "gap4\tlength is: 62\nvalue base for each position\n"
        "0\t0\t0\t9\t0\tG---G\t9\t1\n"
        "1\t7\t3\t0\t0\tA   C\t10\t0.7\n"
        "2\t6\t4\t0\t0\tA   C\t10\t0.6\n"
        "3\t0\t0\t0\t123\tT---T\t124\t0.991935\n"
        "SNP get finished!\tused reads: 194\tunsame base: 1\n");
    ASSERT_EQ(columns.size(), 1U);
    ASSERT_EQ(columns[4].size(), 1U);
    const ColumnBlock& block = columns[4][0];
    EXPECT_EQ(block.bases, "GACT");  // the called base from a ratio of 0.7 on, else the path's
    EXPECT_EQ(block.support, (std::vector<int>{9, 7, 4, 123}));
    EXPECT_EQ(block.depth, (std::vector<int>{9, 10, 10, 124}));
}

TEST_F(EvidenceFiles, CalledNLeavesThePathsBase) {
    auto columns = Columns(
        "gap1\tlength is: 62\nvalue base for each position\t200\n0\t0\t0\t1\t0\tN   G\t1\t1\n1\t0\t0\t0\t0\tN   "
        "C\t0\t0\n");
    ASSERT_EQ(columns[1].size(), 1U);
    EXPECT_EQ(columns[1][0].bases, "GC");
    EXPECT_EQ(columns[1][0].support, (std::vector<int>{1, 0}));
    EXPECT_EQ(columns[1][0].depth, (std::vector<int>{1, 0}));
}

TEST_F(EvidenceFiles, ColumnsOfALengthenedEdge) {
    auto columns = Columns(
        "gap1\tlength is: 62\nForward snp: \n250\t0\t0\t9\t0\tG\tG\t9\t1\n251\t0\t49\t0\t0\tC\tC\t49\t1\n"
        "252\t0\t0\t0\t1234\tT\tT\t1300\t0.949231\n253\t2\t2\t0\t0\tN\tA\t4\t0.5\n");
    ASSERT_EQ(columns[1].size(), 1U);
    EXPECT_EQ(columns[1][0].bases, "GCTA");
    EXPECT_EQ(columns[1][0].support, (std::vector<int>{9, 49, 1234, 2}));
    EXPECT_EQ(columns[1][0].depth, (std::vector<int>{9, 49, 1300, 4}));
}

TEST_F(EvidenceFiles, ColumnsOfASmallGap) {
    auto columns = Columns(
        "gap17\tlength is: 48\n200\t0\t0\t7\t0\tG\t7\t1\n201\t6\t1\t0\t0\tA\t7\t0.857143\n202\t60\t60\t0\t0\tA\t120\t0."
        "5\n");
    ASSERT_EQ(columns[17].size(), 1U);
    EXPECT_EQ(columns[17][0].bases, "GAA");
    EXPECT_EQ(columns[17][0].support, (std::vector<int>{7, 6, 60}));
    EXPECT_EQ(columns[17][0].depth, (std::vector<int>{7, 7, 120}));
}

TEST_F(EvidenceFiles, RowsOfColumnsEndWhereAnotherPathBegins) {
    auto columns = Columns(
        "0\t1\t0\t0\t0\tA---A\t1\t1\n"  // of no gap
        "gap1\tlength is: 62\nvalue base for each position\n0\t2\t0\t0\t0\tA---A\t2\t1\n1\t2\t0\t0\t0\tA---A\t2\t1\n"
        "5\t0\t2\t0\t0\tC---C\t2\t1\n"  // a place is missing
        "value base for each position\n6\t0\t0\t2\t0\tG---G\t2\t1\n"
        "gap2\tlength is: 9\n7\t0\t0\t0\t2\tT---T\t2\t1\n"
        "words\n8\t0\t0\t0\n8\t0\t0\t0\t2\tT---T\n");  // no columns
    ASSERT_EQ(columns.size(), 2U);
    ASSERT_EQ(columns[1].size(), 3U);
    EXPECT_EQ(columns[1][0].bases, "AA");
    EXPECT_EQ(columns[1][1].bases, "C");
    EXPECT_EQ(columns[1][2].bases, "G");
    ASSERT_EQ(columns[2].size(), 1U);
    EXPECT_EQ(columns[2][0].bases, "T");
}

ColumnBlock Block(const std::string& bases, int support, int depth) {
    return {bases, std::vector<int>(bases.size(), support), std::vector<int>(bases.size(), depth)};
}

struct Placed {
    std::vector<int> support;
    std::vector<int> depth;
};

Placed Place(const std::vector<ColumnBlock>& blocks, const std::string& before, const std::string& text,
             const std::string& after) {
    Placed placed;
    PlaceColumns(blocks, before, text, after, placed.support, placed.depth);
    return placed;
}

TEST(PlaceColumns, ColumnsAreFoundByTheirBases) {
    std::string genome = RandomBases(300, 5);
    std::string text = genome.substr(100, 80);
    // The row begins 40 bases in front of the text and ends within it.
    Placed placed = Place({Block(genome.substr(60, 100), 4, 5)}, genome.substr(0, 100), text, genome.substr(180));
    ASSERT_EQ(placed.support.size(), 80U);
    for (int i = 0; i < 60; ++i) EXPECT_EQ(placed.support[static_cast<size_t>(i)], 4) << i;
    for (int i = 60; i < 80; ++i) EXPECT_EQ(placed.support[static_cast<size_t>(i)], -1) << i;
    EXPECT_EQ(placed.depth[0], 5);
    EXPECT_EQ(placed.depth[60], -1);
}

TEST(PlaceColumns, ShortTextsArePlacedWithTheirContigs) {
    std::string genome = RandomBases(100, 6);
    Placed placed =
        Place({Block(genome.substr(30, 40), 3, 3)}, genome.substr(0, 50), genome.substr(50, 2), genome.substr(52));
    EXPECT_EQ(placed.support, (std::vector<int>{3, 3}));
}

TEST(PlaceColumns, OfSeveralRowsTheDeepestCounts) {
    std::string genome = RandomBases(200, 7);
    std::string text = genome.substr(50, 100);
    std::vector<ColumnBlock> blocks = {Block(text, 2, 3), Block(text.substr(10, 40), 8, 9), Block(text, 1, 4)};
    Placed placed = Place(blocks, genome.substr(0, 50), text, genome.substr(150));
    EXPECT_EQ(placed.depth[0], 4);
    EXPECT_EQ(placed.support[0], 1);
    EXPECT_EQ(placed.depth[20], 9);
    EXPECT_EQ(placed.support[20], 8);
}

TEST(PlaceColumns, AroundABaseThatDiffersNothingIsPlaced) {
    std::string genome = RandomBases(200, 8);
    std::string row = genome.substr(50, 100);
    row[50] = row[50] == 'A' ? 'C' : 'A';
    Placed placed = Place({Block(row, 2, 2)}, genome.substr(0, 50), genome.substr(50, 100), genome.substr(150));
    EXPECT_EQ(placed.support[49], 2);
    EXPECT_EQ(placed.support[50], -1);
    EXPECT_EQ(placed.support[51], 2);
}

TEST(PlaceColumns, NothingIsKnownWithoutColumnsOrBases) {
    EXPECT_EQ(Place({}, "ACGT", "ACG", "ACGT").support, (std::vector<int>{-1, -1, -1}));
    EXPECT_TRUE(Place({Block("ACGT", 1, 1)}, "ACGT", "", "ACGT").support.empty());
    EXPECT_EQ(Place({Block("ACGT", 1, 1)}, "", "AC", "").support, (std::vector<int>{-1, -1}));
    EXPECT_EQ(Place({Block(std::string(40, 'A'), 1, 1)}, "", std::string(30, 'N'), "").support,
              std::vector<int>(30, -1));
}

TEST(ReasonWords, EachOutcomeHasItsWords) {
    GapLog log;
    EXPECT_EQ(ReasonWords(log, "ACGT", 50), "what grew from the two sides was joined");
    EXPECT_EQ(ReasonWords(log, "", 50), "the contig ends overlap or touch");
    EXPECT_EQ(ReasonWords(log, "NNN", 9), "only 9 reads were assigned");
    EXPECT_EQ(ReasonWords(log, "NNN", 10), "the reads do not connect the two sides");
    EXPECT_EQ(ReasonWords(log, "ACNNN", 10), "grew from the sides, but the reads do not connect the two sides");
    log.noSize = true;
    EXPECT_EQ(ReasonWords(log, "NNN", 10), "too few reads cross the gap to tell its size");
    log.middle = log.noStart = true;
    EXPECT_EQ(ReasonWords(log, "NNN", 10), "no read goes on from a contig end without doubt");
    log.unclear = log.repeat = true;
    EXPECT_EQ(ReasonWords(log, "NNN", 10), "the reads allow more than one sequence; a tandem repeat was found");
    EXPECT_EQ(ReasonWords(log, "AC", 10), "what grew from the two sides was joined, which holds a tandem repeat");
    log.metLast = true;
    EXPECT_EQ(ReasonWords(log, "AC", 10), "a path of overlapping reads crosses the gap, which holds a tandem repeat");
    log.spanningReads = 3;
    EXPECT_EQ(ReasonWords(log, "AC", 10), "3 reads that cross the gap agree on its size");
    log = {};
    log.noReads = true;
    EXPECT_EQ(ReasonWords(log, "NNN", 0), "no reads were assigned");
    log.mergedByEnds = true;
    EXPECT_EQ(ReasonWords(log, "", 0), "no reads, but the contig ends overlap");
    log.beforeIncluded = true;
    EXPECT_EQ(ReasonWords(log, "", 0), "no reads, but one contig lies within the other");
}

/// The files of a run on two scaffolds: the first with two gaps, the second with one.
class CoreResults : public test::KitTest {
  protected:
    CoreResults() {
        for (size_t i = 0; i < 5; ++i) contigs_.push_back(RandomBases(100, static_cast<unsigned>(20 + i)));
        AddSequence(layout_, "s1", contigs_[0] + std::string(30, 'N') + contigs_[1] + "N" + contigs_[2], 1);
        AddSequence(layout_, "s2", contigs_[3] + std::string(2000, 'N') + contigs_[4], 1);
        scaffolds_ = CoreScaffolds(layout_, false);
        assigned_.resize(4);
        assigned_[1].resize(12);
        assigned_[3].resize(40);
        for (const char* folder : {"FilledScaf", "Log", "Snp"}) std::filesystem::create_directory(Path(folder));
        gaps_ = ">gap1\t28\t30\tscaffold1\t0\t98\t100\n" + fill_ + "\n";
        gaps_ += ">gap3\t2000\t2000\tscaffold2\t0\t100\t100\n" + std::string(1990, 'N') + "acgtacgtac\n";
        filled_ = ">scaffold1\n" + contigs_[0].substr(0, 98) + fill_ + contigs_[1] + contigs_[2].substr(7) + "\n";
        filled_ += ">scaffold2\n" + contigs_[3] + std::string(1990, 'N') + "ACGTACGTAC" + contigs_[4] + "\n";
        // The last seven bases of the contig in front are the first ones of the contig behind.
        log_ =
            "Treat with scaffold 1 and 2 gaps in the scaffold\nfill gap1\tlength is: 30\nMeet last read!\nno read of "
            "the gap, before contig size: 100\tafter contig size: 100\nMinusOneNGap1 with check read number: "
            "0\nScaffold 1 finished!\nTreat with scaffold 2 and 1 gaps in the scaffold\nfill gap3\tlength is: 2000\n";
        snp_ = "gap1\tlength is: 30\nvalue base for each position\n";
        std::string path = contigs_[0].substr(50, 48) + fill_ + contigs_[1].substr(0, 50);
        for (size_t i = 0; i < path.size(); ++i) {
            int counts[4] = {0, 0, 0, 0};
            counts[std::string("ACGT").find(path[i])] = 6;
            snp_ += std::to_string(i);
            for (int count : counts) snp_ += "\t" + std::to_string(count);
            snp_ += std::string("\t") + path[i] + "---" + path[i] + "\t6\t1\n";
        }
    }
    CoreRun Read() const {
        Put("gaps.fa", gaps_);
        Put("FilledScaf/seq.thread1", filled_);
        Put("Log/log.thread1", log_);
        Put("Snp/snp.thread1", snp_);
        CoreRun run;
        ReadCoreResults(folder_, 1, 100, layout_, scaffolds_, assigned_, run);
        return run;
    }

    std::string fill_ = RandomBases(28, 40);
    std::vector<std::string> contigs_;
    Layout layout_;
    std::vector<CoreScaffold> scaffolds_;
    std::vector<std::vector<AssignedRead>> assigned_;
    std::string gaps_;
    std::string filled_;
    std::string log_;
    std::string snp_;
};

TEST_F(CoreResults, TextCutsStrategyAndSupportOfEachGap) {
    // A merge at a gap without reads cuts the contig in front, so that its text must really end like that.
    std::string merged = contigs_[1].substr(0, 93) + contigs_[2];
    size_t at = filled_.find(contigs_[1]);
    filled_.replace(at, filled_.find('\n', at) - at, merged);
    CoreRun run = Read();
    EXPECT_TRUE(run.warnings.empty());
    ASSERT_EQ(run.results.size(), 3U);
    EXPECT_EQ(run.results[0].gap, 1);
    EXPECT_TRUE(run.results[0].known);
    EXPECT_EQ(run.results[0].text, fill_);
    EXPECT_EQ(run.results[0].cutBefore, 2);
    EXPECT_EQ(run.results[0].cutAfter, 0);
    EXPECT_EQ(run.results[0].strategy, "small");  // 30 bases, less than a read
    EXPECT_EQ(run.results[0].reads, 12);
    EXPECT_EQ(run.results[0].support, std::vector<int>(28, 6));
    EXPECT_EQ(run.results[0].reason, "a path of overlapping reads crosses the gap");
    EXPECT_EQ(run.results[1].text, "");
    EXPECT_EQ(run.results[1].cutBefore, 7);
    EXPECT_EQ(run.results[1].strategy, "none");
    EXPECT_EQ(run.results[1].reason, "no reads, but the contig ends overlap");
    EXPECT_EQ(run.results[2].text, std::string(1990, 'N') + "ACGTACGTAC");
    EXPECT_EQ(run.results[2].strategy, "big");
    EXPECT_EQ(run.results[2].support, std::vector<int>(2000, -1));
}

TEST_F(CoreResults, ScaffoldThatDoesNotAgreeIsLeftAsItWas) {
    // Here the scaffold file has cut the contig behind, which no outcome tells of.
    CoreRun run = Read();
    ASSERT_EQ(run.warnings.size(), 1U);
    EXPECT_EQ(run.warnings[0],
              "what the core program says of " + folder_ + " does not make up its scaffold 1; it is left as it was");
    ASSERT_EQ(run.results.size(), 1U);
    EXPECT_EQ(run.results[0].gap, 3);
}

TEST_F(CoreResults, FaultyRecordsAreNamed) {
    gaps_ = "words\nACGT\n";
    try {
        Read();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.what(), Path("gaps.fa") + ":1: no gap record: \"words\"");
    }
}

TEST_F(CoreResults, ScaffoldFilesWithShortHeadersAreSafe) {
    filled_ = ">\nACGT\n>x\nACGT\n";
    EXPECT_EQ(Read().results.size(), 0U);
}

}  // namespace
}  // namespace lintara::kit
