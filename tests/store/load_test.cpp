#include "store/load.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/thread_streams.h"

namespace lintara {
namespace {

using ::testing::ExitedWithCode;

class Load : public testing::ThreadStreamsTest {
  protected:
    void TearDown() override {
        Free();
        ThreadStreamsTest::TearDown();
    }

    void WriteGaps(const std::string& text) { std::ofstream(gaps_, std::ios::binary) << text; }
    void WriteContigs(const std::string& text) { std::ofstream(contigs_, std::ios::binary) << text; }

    void SetUp() override {
        ThreadStreamsTest::SetUp();
        gaps_ = Directory() + "/gap.fa";
        contigs_ = Directory() + "/contig.fa";
    }

    /// Loads both files. @return what came on the error stream
    std::string LoadBoth() {
        ::testing::internal::CaptureStderr();
        Loadgapfile(gaps_, contigs_, store_, ids_);
        Loadcontigfile(contigs_, store_, ids_);
        return ::testing::internal::GetCapturedStderr();
    }

    /// For death tests: loads both files and says so when it comes to the end.
    void LoadToTheEnd() {
        Loadgapfile(gaps_, contigs_, store_, ids_);
        Loadcontigfile(contigs_, store_, ids_);
        std::exit(0);
    }

    void Free() {
        for (const auto& [id, num] : ids_) scaffold_delete(store_[num]);
        delete[] store_;
        store_ = nullptr;
        ids_.clear();
    }

    std::string gaps_;
    std::string contigs_;
    Scaf* store_ = nullptr;
    std::map<int, int> ids_;
};

const char* const kTwoScaffolds =
    ">scaffold7_0\t0\nACGT\nacgt\n>scaffold7_1\t25\nGGGG\n>scaffold3_0\t0\nTTTT\n>scaffold3_1\t1\nCCCC\n"
    ">scaffold3_2\t40\nAAAA\n";

TEST_F(Load, EveryFieldOfTheStoreIsFilled) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(
        ">12\t25\t-30\t7\t0\nACGTACGT\n"
        ">5 41 3 3 1 anything behind\nTTTTGG\n"
        ">12\t99\t4\t7\t0\nGGTT\n");
    EXPECT_EQ(LoadBoth(),
              "Number count finished!\nGap number: 2\nStart to count contig number\n"
              "contig number count finished!\t2\nscaffold number in total: 2\nstart to load gap file\n"
              "gap file load finished!\nStart to load contig file\ncontig file load finished!\n");
    ASSERT_EQ(ids_, (std::map<int, int>{{3, 0}, {7, 1}}));

    const Scaf& seven = store_[1];
    ASSERT_EQ(seven.gapSum, 1U);
    EXPECT_EQ(seven.contigs[0], "ACGTacgt");
    EXPECT_EQ(seven.contigs[1], "GGGG");
    EXPECT_EQ(seven.front_gap_lens[0], 0);
    EXPECT_EQ(seven.front_gap_lens[1], 25);
    const Gap& gap = seven.gaps[0];
    EXPECT_EQ(gap.id, 12);
    EXPECT_EQ(gap.gap_length, 25) << "the first record tells it";
    EXPECT_EQ(gap.before_contig_id, 0);
    ASSERT_EQ(gap.greadSum, 2U);
    EXPECT_EQ(gap.reads[0], "ACGTACGT");
    EXPECT_EQ(gap.reads[1], "GGTT") << "the records of a gap need not be adjacent";
    EXPECT_EQ(gap.position[0], -30);
    EXPECT_EQ(gap.position[1], 4);

    const Scaf& three = store_[0];
    ASSERT_EQ(three.gapSum, 2U);
    EXPECT_EQ(three.gaps[0].id, -1) << "a gap without reads";
    EXPECT_EQ(three.gaps[0].greadSum, 0U);
    EXPECT_EQ(three.gaps[0].gap_length, 0);
    EXPECT_EQ(three.gaps[0].before_contig_id, 0);
    EXPECT_EQ(three.gaps[0].reads, nullptr);
    EXPECT_EQ(three.gaps[0].position, nullptr);
    EXPECT_EQ(three.gaps[1].id, 5);
    EXPECT_EQ(three.gaps[1].before_contig_id, 1);
    EXPECT_EQ(three.gaps[1].reads[0], "TTTTGG");
    EXPECT_EQ(three.front_gap_lens[2], 40);
}

TEST_F(Load, CompressedCopyGivesTheSameRecords) {
    WriteContigs(kTwoScaffolds);
    const std::string text = ">1\t25\t-3\t7\t0\nACGTACGT\n>2\t40\t9\t3\t1\nGG\n";
    gzFile file = gzopen(gaps_.c_str(), "wb");
    gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
    gzclose(file);
    LoadBoth();
    EXPECT_EQ(store_[1].gaps[0].reads[0], "ACGTACGT");
    EXPECT_EQ(store_[0].gaps[1].reads[0], "GG");
    EXPECT_EQ(store_[0].gaps[1].position[0], 9);
}

TEST_F(Load, CutCompressedFileEndsAtTheDamage) {
    WriteContigs(kTwoScaffolds);
    gzFile file = gzopen(gaps_.c_str(), "wb");
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) {
        std::string record = ">12\t25\t" + std::to_string(i) + "\t7\t0\n";
        for (int k = 0; k < 100; ++k) record += "ACGT"[random() % 4];
        record += '\n';
        gzwrite(file, record.data(), static_cast<unsigned>(record.size()));
    }
    gzclose(file);
    std::filesystem::resize_file(gaps_, std::filesystem::file_size(gaps_) / 2);
    const std::string said = LoadBoth();
    EXPECT_NE(said.find("gap file load finished!\n"), std::string::npos);
    const Gap& gap = store_[1].gaps[0];
    EXPECT_GT(gap.greadSum, 100U);
    EXPECT_LT(gap.greadSum, 3000U);
    for (int i = 0; i + 1 < static_cast<int>(gap.greadSum); ++i) {
        ASSERT_EQ(gap.position[i], i);
        ASSERT_EQ(gap.reads[i].size(), 100U);
    }
}

TEST_F(Load, ReadOfTwoTrailingNonBasesLosesOne) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">1\t25\t0\t7\t0\nACGT**\n>1\t25\t0\t7\t0\nACGT*N\n>1\t25\t0\t7\t0\nACGT \r\n");
    LoadBoth();
    EXPECT_EQ(store_[1].gaps[0].reads[0], "ACGT*");
    EXPECT_EQ(store_[1].gaps[0].reads[1], "ACGT*N");
    EXPECT_EQ(store_[1].gaps[0].reads[2], "ACGT ");
}

TEST_F(Load, CountsComeFirst) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">12\t25\t0\t7\t0\nACGT\n>5\t40\t0\t3\t1\nGG\n>12\t25\t0\t7\t0\nACGT\n");
    std::map<int, int> counts;
    Loadgapnum(gaps_, counts);
    EXPECT_EQ(counts, (std::map<int, int>{{5, 1}, {12, 2}}));
    Loadcontignum(contigs_, store_, ids_);
    EXPECT_EQ(ids_, (std::map<int, int>{{3, 0}, {7, 1}}));
    EXPECT_EQ(store_[0].gapSum, 2U);
    EXPECT_EQ(store_[1].gapSum, 1U);
    EXPECT_EQ(store_[0].contigs[2], "") << "no sequence is kept yet";
}

TEST_F(Load, EmptyGapFileIsNoError) {
    WriteContigs(kTwoScaffolds);
    WriteGaps("");
    EXPECT_NE(LoadBoth().find("Is gapread.fa or contig.fa empty? Can't find read or contig seq\n"), std::string::npos);
    EXPECT_EQ(store_[1].contigs[1], "GGGG");
    EXPECT_EQ(store_[1].gaps[0].id, -1);
}

TEST_F(Load, EmptyContigFileGivesAnEmptyStore) {
    WriteContigs("");
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n");
    EXPECT_NE(LoadBoth().find("contig number count finished!\t0\nscaffold number in total: 0\n"
                              "Is gapread.fa or contig.fa empty? Can't find read or contig seq\n"),
              std::string::npos);
    EXPECT_TRUE(ids_.empty());
}

TEST_F(Load, SingleBaseBeginsTheNextContig) {
    WriteContigs(">scaffold1_0\t0\nA\n>scaffold1_1\t9\nCCGG\n>scaffold1_2\t8\nTT\n");
    WriteGaps("");
    LoadBoth();
    EXPECT_EQ(store_[0].contigs[0], "");
    EXPECT_EQ(store_[0].contigs[1], "ACCGG");
    EXPECT_EQ(store_[0].contigs[2], "TT");
    EXPECT_EQ(store_[0].front_gap_lens[0], 0) << "an entry that is never set is 0";
    EXPECT_EQ(store_[0].front_gap_lens[1], 9);
}

TEST_F(Load, ScaffoldZeroOverwritesTheScaffoldAtIndexZero) {
    WriteContigs(">scaffold4_0\t0\nAAAA\n>scaffold0_0\t7\nGGGG\n");
    WriteGaps("");
    const std::string said = LoadBoth();
    EXPECT_NE(said.find("scaffold id >scaffold0_0\t7\t0\n"), std::string::npos);
    EXPECT_NE(said.find("contig number count finished!\t1\n"), std::string::npos);
    EXPECT_EQ(ids_, (std::map<int, int>{{0, 0}, {4, 0}}));
    EXPECT_EQ(store_[0].contigs[0], "GGGG");
    EXPECT_EQ(store_[0].front_gap_lens[0], 7);
}

TEST_F(Load, ScaffoldZeroStaysWhenItIsNotTheLowest) {
    WriteContigs(">scaffold-2_0\t0\nAAAA\n>scaffold0_0\t0\nGGGG\n");
    WriteGaps("");
    LoadBoth();
    EXPECT_EQ(ids_, (std::map<int, int>{{-2, 0}, {0, 1}}));
    EXPECT_EQ(store_[1].contigs[0], "GGGG");
}

TEST_F(Load, UnknownScaffoldIdIsAnAliasOfIndexZero) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">1\t25\t-3\t99\t1\nACGT\n");
    LoadBoth();
    EXPECT_EQ(ids_, (std::map<int, int>{{3, 0}, {7, 1}, {99, 0}}));
    EXPECT_EQ(store_[0].gaps[1].id, 1);
    // Both ids free the same scaffold; the second time there is nothing left.
    Free();
}

TEST_F(Load, ScaffoldZeroInTheGapFileUsesTheKeptIndex) {
    WriteContigs(kTwoScaffolds);
    // At first no lookup has been made and the kept index is 0; behind scaffold 7 the lookup inserts key 0.
    WriteGaps(">1\t25\t-3\t0\t0\nACGT\n>2\t25\t-3\t7\t0\nACGT\n>3\t25\t-3\t0\t1\nGGGG\n");
    LoadBoth();
    EXPECT_EQ(store_[0].gaps[0].id, 1);
    EXPECT_EQ(store_[1].gaps[0].id, 2);
    EXPECT_EQ(store_[0].gaps[1].id, 3);
    EXPECT_EQ(ids_.count(0), 1U);
}

TEST_F(Load, LinesBeforeTheFirstHeaderBelongToScaffoldZero) {
    WriteContigs(std::string("TTTTTT\n") + ">scaffold4_0\t0\nAA\n");
    WriteGaps("");
    LoadBoth();
    EXPECT_EQ(ids_, (std::map<int, int>{{0, 0}, {4, 0}}));
    EXPECT_EQ(store_[0].contigs[0], "AA") << "written over by the scaffold's own contig";
}

TEST_F(Load, CarriageReturnLeavesReadsOnly) {
    WriteContigs(">scaffold1_0\t0\r\nACGT\r\n>scaffold1_1\t5\r\nGGTT\r\n");
    WriteGaps(">1\t5\t0\t1\t0\r\nACGT\r\n");
    LoadBoth();
    EXPECT_EQ(store_[0].gaps[0].reads[0], "ACGT");
    EXPECT_EQ(store_[0].contigs[0], "ACGT\r");
    EXPECT_EQ(store_[0].front_gap_lens[1], 5);
}

TEST_F(Load, ShortReadsAreReportedAndKept) {
    WriteContigs(">scaffold1_0\t0\nACGT\n>scaffold1_1\t5\nGGTT\n");
    WriteGaps(">1\t5\t0\t1\t0\n?\n>1\t5\t1\t1\t0\n\n>1\t5\t2\t1\t0\nAC\n>1\t5\t3\t1\t0");
    const std::string said = LoadBoth();
    EXPECT_NE(said.find("start to load gap file\nshort read: ?\nshort read: \nshort read: \ngap file load finished!\n"),
              std::string::npos);
    ASSERT_EQ(store_[0].gaps[0].greadSum, 4U);
    EXPECT_EQ(store_[0].gaps[0].reads[0], "?");
    EXPECT_EQ(store_[0].gaps[0].reads[1], "");
    EXPECT_EQ(store_[0].gaps[0].reads[2], "AC");
    EXPECT_EQ(store_[0].gaps[0].reads[3], "") << "a last header without a line end";
    EXPECT_EQ(store_[0].gaps[0].position[3], 3);
}

TEST_F(Load, NumberThatDoesNotFitEndsTheReading) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n>2\t40\t99999999999\t3\t1\nGGGG\n>3\t40\t0\t3\t1\nTTTT\n");
    const std::string said = LoadBoth();
    EXPECT_NE(said.find("Gap number: 1\n"), std::string::npos);
    EXPECT_EQ(store_[0].gaps[1].id, -1);
    EXPECT_EQ(store_[1].gaps[0].id, 1);
}

TEST_F(Load, HeaderWithoutUnderscoreTakesItsNumbersFromTheLine) {
    // The scaffold id stands from character 9 on; the index is read from '>' on and so is 0.
    WriteContigs(">scaffold5\t3\nACGT\n");
    WriteGaps("");
    LoadBoth();
    EXPECT_EQ(ids_, (std::map<int, int>{{5, 0}}));
    EXPECT_EQ(store_[0].contigs[0], "ACGT");
    EXPECT_EQ(store_[0].front_gap_lens[0], 3);
}

TEST_F(Load, EmptyContigIndexIsZeroAndDoesNotRunIntoTheLength) {
    WriteContigs(">scaffold5_\t3\nACGT\n");
    WriteGaps("");
    LoadBoth();
    EXPECT_EQ(store_[0].contigs[0], "ACGT");
    EXPECT_EQ(store_[0].front_gap_lens[0], 3);
}

TEST_F(Load, MissingFilesAreNamed) {
    WriteContigs(kTwoScaffolds);
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "^Fail to load file .*/gap\\.fa\n$");
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n");
    std::string none = Directory() + "/none";
    EXPECT_EXIT(Loadgapfile(gaps_, none, store_, ids_), ExitedWithCode(255),
                "Start to count contig number\nFail to load file .*/none\n$");
    EXPECT_EXIT(Loadcontigfile(none, store_, ids_), ExitedWithCode(255),
                "^Start to load contig file\nFail to load file .*/none\n$");
    std::map<int, int> counts;
    std::string empty;
    EXPECT_EXIT(Loadgapnum(empty, counts), ExitedWithCode(255), "^Fail to load file \n$");
}

TEST_F(Load, RecordWithoutMarkEndsTheRunDuringTheCount) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n2\t25\t-3\t7\t0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "^Error in load gap file\n$");
}

TEST_F(Load, HeaderWithoutTabOrWithAnEarlyTabIsAPositionError) {
    WriteGaps("");
    WriteContigs(">scaffold1_0 0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "Start to load contig file\nposition error \n10\t-1\n$");
    WriteContigs(">scaffold1\t_0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "position error \n11\t10\n$");
    WriteContigs(">scaffold\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "position error \n-1\t-1\n$");
}

TEST_F(Load, ShortHeaderNamesFileLineAndValue) {
    WriteGaps("");
    WriteContigs(">scaffold1_0\t0\nACGT\n>sc_1\t2\nAC\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255),
                "contig\\.fa: line 3: contig header is shorter than nine characters: >sc_1\t2\n$");
}

TEST_F(Load, ContigIndexOutsideTheScaffoldNamesFileLineAndValue) {
    WriteContigs(kTwoScaffolds);
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n\n>2\t25\t-3\t7\t1\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255),
                "gap\\.fa: line 4: contig index 1 is outside the gaps of scaffold 7, which has 1\n$");
    WriteGaps(">1\t25\t-3\t7\t-1\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "gap\\.fa: line 1: contig index -1 is outside the gaps");
    WriteGaps("");
    WriteContigs(">scaffold7_0\t0\nACGT\n>scaffold7_2\t0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255),
                "contig\\.fa: line 3: contig index 2 is outside the contigs of scaffold 7, which has 2\n$");
}

TEST_F(Load, MoreReadsThanCountedNamesFileLineAndValue) {
    WriteContigs(kTwoScaffolds);
    // Gap 2 claims the place that gap 1 has taken with room for its one read.
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n>2\t25\t-3\t7\t0\nACGT\n>2\t25\t-3\t7\t0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "gap\\.fa: line 5: more reads for gap 2 than counted: 1\n$");
}

TEST_F(Load, EntriesThatNoRecordFillsHoldTheirInitialN) {
    WriteContigs(kTwoScaffolds);
    // One gap id at two places: both have room for all of its reads, and each record fills one entry of its place.
    WriteGaps(">1\t25\t-3\t7\t0\nACGT\n>1\t25\t8\t3\t0\nGG\n>1\t25\t9\t7\t0\n\n>1\t25\t6\t3\t0\n" +
              std::string(120, 'T') + "\n");
    LoadBoth();
    const std::string initial(100, 'N');
    const Gap& seven = store_[1].gaps[0];
    const Gap& three = store_[0].gaps[0];
    ASSERT_EQ(seven.greadSum, 4U);
    ASSERT_EQ(three.greadSum, 4U);
    EXPECT_EQ(std::vector<std::string>(seven.reads, seven.reads + 4),
              (std::vector<std::string>{"ACGT", initial, "", initial}));
    EXPECT_EQ(std::vector<std::string>(three.reads, three.reads + 4),
              (std::vector<std::string>{initial, "GG", initial, std::string(120, 'T')}));
    EXPECT_EQ(std::vector<int>(seven.position, seven.position + 4), (std::vector<int>{-3, 0, 9, 0}));
    EXPECT_EQ(std::vector<int>(three.position, three.position + 4), (std::vector<int>{0, 8, 0, 6}));
}

TEST_F(Load, ContigOfAScaffoldOutsideTheStoreNamesFileLineAndValue) {
    WriteGaps("");
    WriteContigs(">scaffold0_0\t0\nACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "contig\\.fa: line 1: scaffold 0 is not in the store\n$");
    WriteContigs("ACGT\n");
    EXPECT_EXIT(LoadToTheEnd(), ExitedWithCode(255), "contig\\.fa: line 1: scaffold 0 is not in the store\n$");
}

TEST(ChompRead, DropsOneTrailingNonBase) {
    for (const auto& [given, kept] : std::map<std::string, std::string>{
             {"", ""}, {"ACGT", "ACGT"}, {"ACN", "ACN"}, {"acn", "acn"}, {"AC\r", "AC"}, {"AC--", "AC-"}, {"\r", ""}}) {
        std::string text = given;
        chomp_read(text);
        EXPECT_EQ(text, kept);
        std::string buffer = given;
        chomp_read(buffer.data());
        EXPECT_STREQ(buffer.c_str(), kept.c_str());
    }
    chomp_read(static_cast<char*>(nullptr));
}

TEST(Initial, FillsNumbersWithZeroAndStringsWithN) {
    int numbers[3] = {5, 6, 7};
    int* number = numbers;
    Initial(number, 2);
    EXPECT_EQ(numbers[0], 0);
    EXPECT_EQ(numbers[1], 0);
    EXPECT_EQ(numbers[2], 7) << "only as many as asked for";
    std::string strings[2];
    std::string* string = strings;
    Initial(string, 1);
    EXPECT_EQ(strings[0], std::string(100, 'N'));
    EXPECT_EQ(strings[1], "");
}

TEST(FindSetMax, IsZeroForAnEmptySetAndForNegativeNumbers) {
    EXPECT_EQ(findsetmax({}), 0);
    EXPECT_EQ(findsetmax({-5, -1}), 0);
    EXPECT_EQ(findsetmax({-5, 3, 8}), 8);
}

TEST(Read, IsOrderedByPositionAndComparedWhole) {
    const Read left("ACGT", -4);
    const Read right("ACGT", 10);
    EXPECT_LT(left, right);
    EXPECT_FALSE(left == right);
    EXPECT_TRUE(left == Read("ACGT", -4));
}

}  // namespace
}  // namespace lintara
