#include "kit/verify/verify.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "kit/base/child.h"
#include "kit/base/error.h"

namespace lintara::kit {
namespace {

namespace fs = std::filesystem;

/// One scaffold "s" of 400 bases without a repeat longer than a few bases; its fill is 200..220.
class Verify : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kit-verify-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        unsigned state = 12345;
        text_.clear();
        for (int i = 0; i < 400; ++i) {
            state = state * 1664525u + 1013904223u;
            text_ += "ACGT"[state >> 30];
        }
        for (int i = 200; i < 220; ++i)
            text_[static_cast<size_t>(i)] = static_cast<char>(std::tolower(text_[static_cast<size_t>(i)]));
        sam_ = "@SQ\tSN:s\tLN:400\n";
    }
    void TearDown() override { fs::remove_all(root_); }

    std::string Put(const std::string& name, const std::string& text) const {
        std::ofstream(root_ + "/" + name, std::ios::binary) << text;
        return root_ + "/" + name;
    }
    std::string Get(const std::string& name) const { return ReadWhole(root_ + "/" + name); }
    std::string Bases(int start, int length) const {
        return Upper(text_.substr(static_cast<size_t>(start), static_cast<size_t>(length)));
    }

    /// Record with `start` 0-based; flag 99 is the left read of a proper pair.
    void Add(int start, const std::string& cigar, const std::string& bases, int flag = 0, int quality = 60,
             int length = 0) {
        sam_ += "r" + std::to_string(++reads_) + "\t" + std::to_string(flag) + "\ts\t" + std::to_string(start + 1) +
                "\t" + std::to_string(quality) + "\t" + cigar + "\t" + (length != 0 ? "=" : "*") + "\t" +
                std::to_string(length != 0 ? start + 1 : 0) + "\t" + std::to_string(length) + "\t" + bases + "\t*\n";
    }
    void AddPlain(int start, int length = 50) { Add(start, std::to_string(length) + "M", Bases(start, length)); }
    void Tile(int from, int to, int step = 10) {
        for (int start = from; start <= to; start += step) AddPlain(start);
    }

    Stretch Judge(int start = 200, int end = 220) const {
        std::vector<FastaRecord> scaffolds(1);
        scaffolds[0].name = "s";
        scaffolds[0].sequence = text_;
        Stretch stretch;
        stretch.start = start;
        stretch.end = end;
        Evidence evidence(scaffolds, {stretch});
        evidence.Take(Put("reads.sam", sam_), -1, "", false);
        return evidence.Finish().at(0);
    }

    std::string root_;
    std::string text_;
    std::string sam_;
    int reads_ = 0;
};

TEST_F(Verify, DepthSupportAndBridgesAreCounted) {
    Tile(100, 300);
    Stretch s = Judge();
    // Reads of 50 bases at every tenth base: each base lies under five of them.
    EXPECT_EQ(s.leastDepth, 5);
    EXPECT_DOUBLE_EQ(s.meanDepth, 5);
    EXPECT_EQ(s.leastSupport, 5);
    // Step 200|201 counts the reads that begin at 190 or before and end at 210 or behind: those at 160, 170, 180, 190.
    EXPECT_EQ(s.leastBridge, 3);
    EXPECT_EQ(s.doubt, "");
}

TEST_F(Verify, ABaseWithoutReadsIsDoubted) {
    AddPlain(160);
    AddPlain(211);
    EXPECT_EQ(Judge().doubt, "no read over base 211");
}

TEST_F(Verify, ReadsThatOnlyTouchAreNoBridge) {
    Tile(100, 160);
    Tile(210, 300);
    // The read at 160 ends behind 209: ten bases behind the first seam, nine behind the next step. The one at 210
    // begins behind all of them.
    Stretch s = Judge();
    EXPECT_EQ(s.leastDepth, 1);
    EXPECT_EQ(s.leastBridge, 0);
    EXPECT_EQ(s.doubt, "no read runs unbroken from base 201 to 202");
}

TEST_F(Verify, BridgeNeedsTenBasesOnEitherSide) {
    // Step 199|200 (0-based) with reads that hold exactly ten bases in front of it, then nine.
    Tile(210 - 50, 210 - 50);
    AddPlain(190);
    AddPlain(190);
    Stretch ten = Judge(200, 201);
    EXPECT_EQ(ten.leastBridge, 2);
    sam_ = "@SQ\tSN:s\tLN:400\n";
    AddPlain(191);
    EXPECT_EQ(Judge(200, 201).leastBridge, 0);
}

TEST_F(Verify, OneContradictedBaseIsCountedAndTwoAreDoubted) {
    Tile(100, 160);
    auto altered = [&](int start, std::vector<int> places) {
        std::string bases = Bases(start, 50);
        for (int place : places) {
            char& wrong = bases[static_cast<size_t>(place - start)];
            wrong = wrong == 'A' ? 'C' : 'A';
        }
        Add(start, "50M", bases);
    };
    for (int start : {170, 172, 174}) altered(start, {212});
    Tile(190, 300);
    // Over base 212 lie the three altered reads and those at 190, 200 and 210: half of six is not contradicted.
    Stretch s = Judge();
    EXPECT_EQ(s.leastSupport, 3);
    EXPECT_EQ(s.contradicted, 0);
    altered(171, {212, 205});
    s = Judge();
    EXPECT_EQ(s.contradicted, 1);
    EXPECT_EQ(s.doubt, "");
    // Over base 205 lie the seven that show it otherwise, the three altered elsewhere, and those at 160, 190 and 200.
    altered(171, {205});
    for (int i = 0; i < 5; ++i) altered(171, {212, 205});
    s = Judge();
    EXPECT_EQ(s.contradicted, 2);
    EXPECT_EQ(s.doubt, "most reads contradict 2 bases, first base 206");
}

TEST_F(Verify, LongStretchesMayHoldMoreContradictedBases) {
    auto altered = [&](std::vector<int> places) {
        std::string bases = Bases(0, 400);
        for (int place : places)
            bases[static_cast<size_t>(place)] = bases[static_cast<size_t>(place)] == 'A' ? 'C' : 'A';
        Add(0, "400M", bases);
    };
    altered({50, 90});
    EXPECT_EQ(Judge(0, 400).doubt, "");
    sam_ = "@SQ\tSN:s\tLN:400\n";
    altered({50, 90, 91});
    EXPECT_EQ(Judge(0, 400).doubt, "most reads contradict 3 bases, first base 51");
}

TEST_F(Verify, DeletionCountsAsDepthWithoutSupport) {
    for (int i = 0; i < 3; ++i) Add(180, "25M2D25M", Bases(180, 25) + Bases(207, 25));
    Tile(170, 172);
    Stretch s = Judge();
    EXPECT_EQ(s.leastDepth, 4);
    EXPECT_EQ(s.leastSupport, 1);
    EXPECT_EQ(s.doubt, "most reads contradict 2 bases, first base 206");
}

TEST_F(Verify, InsertionBreaksTheBridge) {
    for (int i = 0; i < 3; ++i) Add(180, "30M4I30M", Bases(180, 30) + "ACGT" + Bases(210, 30));
    Stretch s = Judge();
    EXPECT_EQ(s.leastDepth, 3);
    EXPECT_EQ(s.leastBridge, 0);
    EXPECT_EQ(s.doubt, "no read runs unbroken from base 210 to 211");
}

TEST_F(Verify, MoreBreaksThanBridgesInsideAreDoubted) {
    // Step 210 is bridged by the reads at 170, 180, 190 and 200: four.
    Tile(100, 300);
    for (int i = 0; i < 4; ++i) Add(180, "30M4I30M", Bases(180, 30) + "ACGT" + Bases(210, 30));
    EXPECT_EQ(Judge().doubt, "");
    Add(180, "30M4I30M", Bases(180, 30) + "ACGT" + Bases(210, 30), 0, 0);
    EXPECT_EQ(Judge().doubt, "");
    Add(170, "42M20S", Bases(170, 42) + std::string(20, 'A'));
    EXPECT_EQ(Judge().doubt, "more reads break off around base 211 than the 4 that run over it");
}

TEST_F(Verify, SkippedRecordsDoNotCount) {
    for (int flag : {4, 256, 512, 1024, 2048}) Add(180, "60M", Bases(180, 60), flag);
    EXPECT_EQ(Judge().leastDepth, 0);
}

TEST_F(Verify, ClippedReadsAtTheSeamsAreCountedAndWeighed) {
    Tile(100, 300);
    for (int i = 0; i < 5; ++i) Add(150, "45M15S", Bases(150, 45) + std::string(15, 'A'));
    Add(225, "10S50M", std::string(10, 'C') + Bases(225, 50));
    Add(226, "10S50M", std::string(10, 'C') + Bases(226, 50));
    Stretch s = Judge();
    // Ends at 195, five bases in front of the seam; 226 is six bases behind the other one.
    EXPECT_EQ(s.clippedStart, 5);
    EXPECT_EQ(s.clippedEnd, 1);
    EXPECT_EQ(s.doubt, "5 reads break off at its begin and 4 run over it");
}

TEST_F(Verify, ClippedReadsOfManyPlacesAreNoDoubt) {
    Tile(100, 300);
    for (int i = 0; i < 5; ++i) Add(150, "50M10S", Bases(150, 50) + std::string(10, 'A'), 0, 0);
    Stretch s = Judge();
    EXPECT_EQ(s.clippedStart, 5);
    EXPECT_EQ(s.doubt, "");
}

TEST_F(Verify, SpanningPairsBeginInFrontAndEndBehind) {
    Tile(100, 300);
    Add(199, "50M", Bases(199, 50), 99, 60, 22);    // 199..221
    Add(200, "50M", Bases(200, 50), 99, 60, 100);   // begins with the stretch
    Add(150, "50M", Bases(150, 50), 99, 60, 70);    // ends with it
    Add(150, "50M", Bases(150, 50), 97, 60, 100);   // no proper pair
    Add(190, "50M", Bases(190, 50), 147, 60, -90);  // the right read of a pair
    EXPECT_EQ(Judge().spanningPairs, 1);
}

TEST_F(Verify, ExpectedPairsFollowFromTheLibrary) {
    Tile(100, 300);
    // Ten pairs of 100 bases and ten of 60: each has 100 - 21 and 60 - 21 places over 20 bases, of 400 altogether.
    for (int i = 0; i < 10; ++i) {
        Add(0, "50M", Bases(0, 50), 99, 60, 100);
        Add(0, "50M", Bases(0, 50), 99, 60, 60);
    }
    EXPECT_NEAR(Judge().expectedPairs, (10 * 79 + 10 * 39) / 400.0, 1e-9);
}

TEST_F(Verify, SpanningPairsOfOddLengthAreDoubted) {
    Tile(100, 300);
    for (int i = 0; i < 400; ++i) Add(0, "50M", Bases(0, 50), 99, 60, 140 + i % 21);
    for (int i = 0; i < 8; ++i) Add(150, "50M", Bases(150, 50), 99, 60, 110 + i % 2);
    // Each length has length - 21 places: mean 149.7 over both groups, and the eight that span have 110.5.
    Stretch s = Judge();
    EXPECT_EQ(s.spanningPairs, 8);
    EXPECT_LT(s.shiftScore, -5);
    EXPECT_EQ(s.doubt, "the pairs that span it are 39 bases shorter than expected");
}

TEST_F(Verify, SeamNextToNIsNoStep) {
    for (int i = 220; i < 260; ++i) text_[static_cast<size_t>(i)] = 'N';
    Tile(100, 170);
    AddPlain(160, 60);
    AddPlain(165, 55);
    Stretch s = Judge();
    EXPECT_EQ(s.doubt, "");
    EXPECT_GE(s.leastBridge, 1);
}

TEST_F(Verify, TwoLibrariesAddUp) {
    Tile(100, 300);
    std::vector<FastaRecord> scaffolds(1);
    scaffolds[0].name = "s";
    scaffolds[0].sequence = text_;
    Stretch stretch;
    stretch.start = 200;
    stretch.end = 220;
    Evidence evidence(scaffolds, {stretch});
    std::string path = Put("reads.sam", sam_);
    evidence.Take(path, -1, "", false);
    evidence.Take(path, -1, "", false);
    EXPECT_EQ(evidence.Finish().at(0).leastDepth, 10);
}

template <typename Run>
std::string Fault(Run run) {
    try {
        run();
    } catch (const Error& error) {
        return error.what();
    }
    return "no fault";
}

TEST_F(Verify, MappingToOtherScaffoldsIsAFault) {
    sam_ = "@SQ\tSN:s\tLN:401\n";
    EXPECT_EQ(Fault([&] { Judge(); }),
              root_ + "/reads.sam: mapped to other scaffolds: 's' of 401 bases is not among them");
}

TEST_F(Verify, ReadsAreNoMapping) {
    std::vector<FastaRecord> scaffolds(1);
    scaffolds[0] = {"s", "", "ACGTACGT", 1};
    std::string reads = Put("reads.fq", "@r\nACGT\n+\nIIII\n");
    Evidence evidence(scaffolds, {});
    EXPECT_EQ(Fault([&] { evidence.Take(reads, -1, "", false); }), reads + ": this is no SAM, BAM or CRAM file");
}

TEST_F(Verify, BedLinesAreHeldAgainstTheScaffolds) {
    std::vector<FastaRecord> scaffolds(1);
    scaffolds[0].name = "s";
    scaffolds[0].sequence = std::string(30, 'A');
    auto fault = [&](const std::string& bed) { return Fault([&] { ReadStretches(Put("a.bed", bed), scaffolds); }); };
    std::string at = root_ + "/a.bed:2: ";
    EXPECT_EQ(fault("s\t1\t2\nx\t1\t2\n"), at + "no such scaffold: 'x'");
    EXPECT_EQ(fault("s\t1\t2\ns\t-1\t2\n"), at + "not a coordinate: '-1'");
    EXPECT_EQ(fault("s\t1\t2\ns\t5\t4\n"), at + "5-4 does not lie in 's' of 30 bases");
    EXPECT_EQ(fault("s\t1\t2\ns\t5\t31\n"), at + "5-31 does not lie in 's' of 30 bases");
    EXPECT_EQ(fault("s\t1\t2\ns\t5\n"), at + "3 fields expected: 's\t5'");
    EXPECT_EQ(fault("#a\ntrack x\n\ns\t5\t30\tgap1\r\n"), "no fault");
}

TEST_F(Verify, ScaffoldsOfOneNameFollowTheOrderOfTheLines) {
    std::vector<FastaRecord> scaffolds(3);
    for (FastaRecord& record : scaffolds) record.sequence = std::string(30, 'A');
    scaffolds[0].name = scaffolds[2].name = "s";
    scaffolds[1].name = "t";
    auto list = ReadStretches(Put("a.bed", "s\t1\t2\ns\t9\t10\nt\t3\t4\ns\t5\t6\n"), scaffolds);
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[1].scaffold, 0);
    EXPECT_EQ(list[2].scaffold, 1);
    EXPECT_EQ(list[3].scaffold, 2);
}

TEST_F(Verify, MaskTurnsOnlyDoubtfulStretchesToN) {
    Tile(100, 250);
    VerifyOptions options;
    options.scaffolds = Put("filled.fa", ">s some words\n" + text_ + "\n");
    options.bed = Put("filled.bed", "s\t200\t220\tgap1\ns\t340\t350\tgap2\n");
    options.bam = Put("reads.sam", sam_);
    options.output = root_ + "/table.tsv";
    options.mask = true;
    options.quiet = true;
    EXPECT_EQ(RunVerify(options), 0);
    std::string expected = text_;
    for (size_t i = 340; i < 350; ++i) expected[i] = 'N';
    std::string lines = ">s some words\n";
    for (size_t i = 0; i < 400; i += 80) lines += expected.substr(i, 80) + "\n";
    EXPECT_EQ(Get("filled.masked.fa"), lines);
    EXPECT_EQ(Get("table.tsv"),
              "scaffold\tstart\tend\tname\tleast_depth\tmean_depth\tleast_support\tcontradicted\tleast_"
              "bridge\tspanning_pairs\t"
              "expected_pairs\tinsert_shift\tclipped_start\tclipped_end\tverdict\n"
              "s\t200\t220\tgap1\t5\t5.00\t5\t0\t3\t0\t0.0\t0.0\t0\t0\tsupported\n"
              "s\t340\t350\tgap2\t0\t0.00\t0\t0\t0\t0\t0.0\t0.0\t0\t0\tno read over base 341\n");
}

TEST_F(Verify, OptionsThatContradictAreFaults) {
    VerifyOptions options;
    EXPECT_EQ(Fault([&] { RunVerify(options); }), "either -1 and -2 or --bam is needed");
    options.reads1 = {"a"};
    EXPECT_EQ(Fault([&] { RunVerify(options); }), "-1 is given 1 times and -2 0 times");
    options.reads2 = {"b"};
    options.mapper = "x";
    EXPECT_EQ(Fault([&] { RunVerify(options); }), "unknown mapper: 'x' (bwa or minimap2)");
}

/// Pairs of 2 x 60 bases at every second place, as both mappers take them.
TEST_F(Verify, RealMappersGiveTheSameVerdictWithAnyNumberOfThreads) {
    std::string one;
    std::string two;
    for (int start = 0; start + 160 <= 400; start += 2) {
        std::string name = "@r" + std::to_string(start) + "\n";
        std::string quality = "\n+\n" + std::string(60, 'I') + "\n";
        one += name + Bases(start, 60) + quality;
        two += name + ReverseComplement(Bases(start + 100, 60)) + quality;
    }
    VerifyOptions options;
    options.scaffolds = Put("filled.fa", ">same\n" + text_ + "\n>same\nACGTACGTAAACCCGGGTTT\n");
    options.bed = Put("filled.bed", "same\t200\t220\tgap1\n");
    options.reads1 = {Put("1.fq", one)};
    options.reads2 = {Put("2.fq", two)};
    options.output = root_ + "/table.tsv";
    options.quiet = true;
    int tried = 0;
    for (const char* mapper : {"bwa", "minimap2"}) {
        if (FindProgram(mapper).empty()) continue;
        ++tried;
        options.mapper = mapper;
        options.threads = 1;
        EXPECT_EQ(RunVerify(options), 0);
        std::string first = Get("table.tsv");
        EXPECT_NE(first.find("\tsupported\n"), std::string::npos) << first;
        options.threads = 2;
        EXPECT_EQ(RunVerify(options), 0);
        EXPECT_EQ(Get("table.tsv"), first);
    }
    if (tried == 0) GTEST_SKIP() << "neither bwa nor minimap2 is installed";
    for (const fs::directory_entry& entry : fs::directory_iterator(root_)) {
        EXPECT_NE(entry.path().filename().string().rfind(".lintara-verify", 0), 0u) << "left behind: " << entry;
    }
}

TEST_F(Verify, MissingReadsAreTold) {
    VerifyOptions options;
    options.scaffolds = Put("filled.fa", ">s\n" + text_ + "\n");
    options.bed = Put("filled.bed", "s\t200\t220\tgap1\n");
    options.reads1 = {root_ + "/none.fq"};
    options.reads2 = {root_ + "/none2.fq"};
    options.quiet = true;
    EXPECT_EQ(Fault([&] { RunVerify(options); }), "cannot read " + root_ + "/none.fq: No such file or directory");
}

}  // namespace
}  // namespace lintara::kit
