#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "run/settings.h"
#include "run/streams.h"
#include "run/worker.h"
#include "store/load.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

std::string RandomBases(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bases(size, 'A');
    for (char& c : bases) c = "ACGT"[random() % 4];
    return bases;
}

class GapLoop : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        for (int** counter : Counters()) *counter = new int[1]{0};
    }

    void TearDown() override {
        scaffold_delete(scaffold_);
        for (int** counter : Counters()) delete[] * counter;
        ThreadStreamsTest::TearDown();
    }

    static std::vector<int**> Counters() {
        return {&total_gap_num, &total_gap_length, &no_read_gap, &fill_num, &fill_len, &full_fill_num};
    }

    /// A scaffold of these contigs; every gap is without reads and of the given length.
    void Build(const std::vector<std::string>& contigs, int front_gap_len) {
        scaffold_delete(scaffold_);
        scaffold_.gapSum = static_cast<Len_t>(contigs.size() - 1);
        scaffold_.gaps = new Gap[contigs.size() - 1];
        scaffold_.contigs = new std::string[contigs.size()];
        scaffold_.front_gap_lens = new int[contigs.size()];
        for (std::size_t i = 0; i < contigs.size(); ++i) {
            scaffold_.contigs[i] = contigs[i];
            scaffold_.front_gap_lens[i] = front_gap_len;
        }
    }

    void GiveReads(int index, int id, int gap_length, const std::vector<std::string>& reads) {
        Gap& gap = scaffold_.gaps[index];
        gap.id = id;
        gap.gap_length = gap_length;
        gap.before_contig_id = index;
        gap.greadSum = static_cast<Len_t>(reads.size());
        gap.reads = new std::string[reads.size()];
        gap.position = new int[reads.size()]();
        for (std::size_t i = 0; i < reads.size(); ++i) gap.reads[i] = reads[i];
    }

    /// Gives gap 0 reads of 100 bases that begin in the genome from first to last in steps of step, with their places
    /// on the gap's axis; the before contig is what the genome begins with.
    void GiveTiles(int id, int gap_length, const std::string& genome, int first, int last, int step) {
        std::vector<std::string> reads;
        for (int from = first; from <= last; from += step) {
            reads.push_back(genome.substr(static_cast<std::size_t>(from), 100));
        }
        GiveReads(0, id, gap_length, reads);
        const int before_size = static_cast<int>(scaffold_.contigs[0].size());
        for (std::size_t i = 0; i < reads.size(); ++i) {
            scaffold_.gaps[0].position[i] = first + static_cast<int>(i) * step - before_size;
        }
    }

    /// Treats the scaffold as number 9. @return what came on the standard output
    std::string Fill() {
        texts_.clear();
        ::testing::internal::CaptureStdout();
        FillGaps(9, scaffold_, texts_, 0);
        return ::testing::internal::GetCapturedStdout();
    }

    /// The six counters in the order of their declaration.
    static std::vector<int> Counts() {
        std::vector<int> counts;
        for (int** counter : Counters()) counts.push_back((*counter)[0]);
        return counts;
    }

    Scaf scaffold_;
    std::map<int, std::string> texts_;
};

// A contig below ContigLen is refused by each strategy with words of its own, which tell the class that was taken.
TEST_F(GapLoop, SizeClassesMeetAtTheirBounds) {
    const std::map<int, std::string> words = {{100, "Too many reads for the gap.\t"},
                                              {101, "Treat the gap as middle size gap!\n"},
                                              {1499, "Treat the gap as middle size gap!\n"},
                                              {1500, "Treat as big size gap \n"}};
    for (const auto& [length, expected] : words) {
        Build({"ACGTACGT", "ACGTACGT"}, 5);
        GiveReads(0, 4, length, {"ACGT"});
        Fill();
        const std::string head = "fill gap4\tlength is: " + std::to_string(length) + "\n";
        EXPECT_EQ(NewLog().substr(0, head.size() + expected.size()), head + expected);
        EXPECT_EQ(NewSnp(), "gap4\tlength is: " + std::to_string(length) + "\n");
        EXPECT_EQ(texts_[0], std::string(static_cast<std::size_t>(length), 'N'));
    }
}

TEST_F(GapLoop, BigGoesFirstWhateverTheReadLength) {
    ReadLen = 2000;
    Build({"ACGTACGT", "ACGTACGT"}, 5);
    GiveReads(0, 4, 1500, {"ACGT"});
    Fill();
    EXPECT_NE(NewLog().find("Treat as big size gap \n"), std::string::npos);
}

TEST_F(GapLoop, UnfilledGapIsRecordedAndCountedAsTreated) {
    Build({"ACGTACGT", "ACGTACGTAA"}, 5);
    GiveReads(0, 4, 20, {"ACGT"});
    EXPECT_EQ(Fill(), ">gap4\t20\t20\tscaffold9\t0\t8\t10\nNNNNNNNNNNNNNNNNNNNN\n");
    EXPECT_EQ(Counts(), (std::vector<int>{1, 20, 0, 0, 0, 0}));
    EXPECT_NE(NewLog().find("gap4 seq: NNNNNNNNNNNNNNNNNNNN\t20\ttime: 0\n"), std::string::npos);
}

TEST_F(GapLoop, MinusGapReportsItsOverlapAndFillsNoBase) {
    const std::string genome = RandomBases(450, 1);
    Build({genome.substr(0, 250), genome.substr(200)}, 1);
    GiveReads(0, 4, 1, {"ACGT"});
    EXPECT_EQ(Fill(), ">gap4\t-50\t1\tscaffold9\t0\t200\t250\n\n");
    EXPECT_EQ(Counts(), (std::vector<int>{1, 1, 0, 1, 0, 1}));
    EXPECT_EQ(scaffold_.contigs[0] + texts_[0] + scaffold_.contigs[1], genome);
}

TEST_F(GapLoop, MiddleGapOfOverlappingEdgesIsAMinusGapToo) {
    // The contigs share 50 bases where 120 were estimated to lie between them, and each read holds all of the 50.
    const std::string genome = RandomBases(1100, 7);
    Build({genome.substr(0, 500), genome.substr(450)}, 120);
    GiveTiles(4, 120, genome, 402, 446, 4);
    EXPECT_EQ(Fill(), ">gap4\t-50\t120\tscaffold9\t0\t450\t650\n\n");
    EXPECT_EQ(Counts(), (std::vector<int>{1, 120, 0, 1, 0, 1}));
    EXPECT_EQ(scaffold_.contigs[0] + texts_[0] + scaffold_.contigs[1], genome);
}

TEST_F(GapLoop, PartlyFilledGapCountsItsBasesAndIsNotFull) {
    // The last read begins 54 bases into the gap and so ends with base 154.
    const std::string genome = RandomBases(1300, 8);
    Build({genome.substr(0, 500), genome.substr(800)}, 300);
    GiveTiles(4, 300, genome, 410, 554, 6);
    const std::string text = genome.substr(500, 154) + std::string(146, 'N');
    EXPECT_EQ(Fill(), ">gap4\t300\t300\tscaffold9\t0\t500\t500\n" + text + "\n");
    EXPECT_EQ(Counts(), (std::vector<int>{1, 300, 0, 1, 154, 0}));
}

TEST_F(GapLoop, FilledGapReportsTheLengthOfItsText) {
    // Estimated 20 bases too long: the record tells the real length first.
    const std::string genome = RandomBases(1300, 9);
    Build({genome.substr(0, 500), genome.substr(800)}, 320);
    GiveTiles(4, 320, genome, 410, 794, 6);
    EXPECT_EQ(Fill(), ">gap4\t300\t320\tscaffold9\t0\t500\t500\n" + genome.substr(500, 300) + "\n");
    EXPECT_EQ(Counts(), (std::vector<int>{1, 320, 0, 1, 300, 1}));
}

TEST_F(GapLoop, GapWithoutReadsKeepsItsN) {
    Build({"ACGTACGT", "ACG", "ACGTACGTAA"}, 5);
    EXPECT_EQ(Fill(), "");
    // The sizes are those of the first two contigs, whichever gap it is.
    const std::string line = "no read of the gap, before contig size: 8\tafter contig size: 3\n";
    EXPECT_EQ(NewLog(), line + line);
    EXPECT_EQ(NewSnp(), "");
    EXPECT_EQ(texts_, (std::map<int, std::string>{{0, "NNNNN"}, {1, "NNNNN"}}));
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 2, 0, 0, 0}));
}

TEST_F(GapLoop, GapWithoutReadsOfNoOrNegativeLengthIsEmpty) {
    for (const int length : {0, -5}) {
        Build({"ACGTACGT", "ACGTACGT"}, length);
        Fill();
        EXPECT_EQ(texts_, (std::map<int, std::string>{{0, ""}}));
        EXPECT_EQ(NewLog().find("One N gap check"), std::string::npos);
    }
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 2, 0, 0, 0}));
}

TEST_F(GapLoop, OneNWithOverlappingContigsIsMerged) {
    const std::string genome = RandomBases(450, 2);
    Build({genome.substr(0, 250), genome.substr(200)}, 1);
    Fill();
    EXPECT_EQ(NewLog(),
              "no read of the gap, before contig size: 250\tafter contig size: 250\nOne N gap check, 200\t200\n"
              "MinusOneNGap1 with check read number: 0\n");
    EXPECT_EQ(scaffold_.contigs[0], genome.substr(0, 200));
    EXPECT_EQ(texts_[0], "");
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 1, 1, 1, 1})) << "a merge counts as one base";
}

TEST_F(GapLoop, OneNWithoutOverlapStays) {
    Build({RandomBases(250, 3), RandomBases(250, 4)}, 1);
    Fill();
    EXPECT_EQ(texts_[0], "N");
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 1, 0, 0, 0}));
}

TEST_F(GapLoop, ContainedContigIsCleared) {
    const std::string genome = RandomBases(400, 5);
    // The slices have the length of the shorter contig. A before contig that begins where the after contig does is
    // no overlap of an end with a start.
    Build({genome.substr(0, 120), genome}, 1);
    Fill();
    EXPECT_NE(NewLog().find("One N gap check, 120\t120\nBefore edge is included in after edge!\n"), std::string::npos);
    EXPECT_EQ(scaffold_.contigs[0], "");
    EXPECT_EQ(scaffold_.contigs[1], genome);
    EXPECT_EQ(texts_[0], "");
    Build({genome, genome.substr(280)}, 1);
    Fill();
    EXPECT_NE(NewLog().find("One N gap check, 120\t120\nAfter edge is included in before edge!\n"), std::string::npos);
    EXPECT_EQ(scaffold_.contigs[0], genome);
    EXPECT_EQ(scaffold_.contigs[1], "");
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 2, 2, 2, 2}));
}

TEST_F(GapLoop, OverlapLongerThanTheSliceIsCutAnew) {
    // 230 shared bases: in slices of 200 the after contig stands 30 bases to the left. Cut anew at 230, the slices are
    // equal and begin together, which is no overlap of an end with a start either.
    const std::string genome = RandomBases(770, 6);
    Build({genome.substr(0, 500), genome.substr(270)}, 1);
    Fill();
    EXPECT_EQ(NewLog(),
              "no read of the gap, before contig size: 500\tafter contig size: 500\nOne N gap check, 200\t200\n");
    EXPECT_EQ(texts_[0], "N");
    EXPECT_EQ(scaffold_.contigs[0].size(), 500U);
}

TEST_F(GapLoop, SelectedGapAloneIsTreated) {
    Build({"ACGTACGT", "ACGTACGT", "ACGTACGT", "ACGTACGT"}, 5);
    GiveReads(0, 3, 20, {"ACGT"});
    GiveReads(1, 4, 20, {"ACGT"});
    GapId = 4;
    Fill();
    EXPECT_EQ(GapId, -2);
    EXPECT_EQ(texts_.size(), 1U) << "gaps that are passed over have no text";
    EXPECT_EQ(texts_.count(1), 1U);
    EXPECT_EQ(Counts(), (std::vector<int>{1, 20, 0, 0, 0, 0}));
}

TEST_F(GapLoop, SelectorThatNamesNoGapPassesAllOver) {
    Build({"ACGTACGT", "ACGTACGT", "ACGTACGT"}, 5);
    GiveReads(0, 3, 20, {"ACGT"});
    GapId = 99;
    EXPECT_EQ(Fill(), "");
    EXPECT_TRUE(texts_.empty());
    EXPECT_EQ(GapId, 99);
    EXPECT_EQ(Counts(), (std::vector<int>{0, 0, 0, 0, 0, 0}));
}

TEST_F(GapLoop, StartIdPassesLowerIdsAndGapsWithoutReadsOver) {
    Build({"ACGTACGT", "ACGTACGT", "ACGTACGT", "ACGTACGT"}, 5);
    GiveReads(0, 3, 20, {"ACGT"});
    GiveReads(1, 4, 20, {"ACGT"});
    StartId = 4;
    Fill();
    EXPECT_EQ(texts_.size(), 1U);
    EXPECT_EQ(texts_.count(1), 1U);
    EXPECT_EQ(Counts(), (std::vector<int>{1, 20, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace lintara
