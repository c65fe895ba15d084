#include "kit/assign/assign.h"

#include <gtest/gtest.h>

#include <set>

#include "kit/assign/edge_words.h"
#include "kit/assign/mapping.h"
#include "tests/kit/support.h"

namespace lintara::kit {
namespace {

/// Contigs of 1000 bases on both sides of a gap of 100: [0,1000) N [1100,2100).
Layout OneGap() {
    Layout layout;
    AddSequence(layout, "s", std::string(1000, 'A') + std::string(100, 'N') + std::string(1000, 'C'), 1);
    return layout;
}

MappedRead At(long start, long length, int quality, bool reverse = false) {
    MappedRead read;
    read.name = "r";
    read.mate = 1;
    read.mapped = true;
    read.sequence = 0;
    read.start = start;
    read.end = start + length;
    read.quality = quality;
    read.reverse = reverse;
    read.bases = std::string(static_cast<size_t>(length), 'A');
    return read;
}

MappedRead Unmapped(const std::string& bases) {
    MappedRead read;
    read.name = "r";
    read.mate = 2;
    read.bases = bases;
    return read;
}

std::vector<AssignedRead> Assign(const MappedRead& first, const MappedRead* second, const InsertSize& insert) {
    std::vector<AssignedRead> assigned;
    AssignPair(first, second, OneGap(), insert, assigned);
    return assigned;
}

const InsertSize kInsert{400, 20, 1000};

TEST(AssignByOwnPlace, ClippedReadHasItsExactPlace) {
    MappedRead read = At(960, 40, 60);
    read.tailClip = 60;
    read.bases = std::string(100, 'G');
    auto assigned = Assign(read, nullptr, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].position, -40);
    EXPECT_TRUE(assigned[0].exact);
}

TEST(AssignByOwnPlace, ReadOfTheAfterContigCountsItsLeadingClip) {
    MappedRead read = At(1100, 40, 60);
    read.leadClip = 60;
    auto assigned = Assign(read, nullptr, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].position, 40);
}

TEST(AssignByOwnPlace, ReadMustEndWithin150Bases) {
    EXPECT_EQ(Assign(At(750, 100, 60), nullptr, kInsert).size(), 1U);  // ends at 850
    EXPECT_EQ(Assign(At(749, 100, 60), nullptr, kInsert).size(), 0U);
    EXPECT_EQ(Assign(At(1250, 100, 60), nullptr, kInsert).size(), 1U);
    EXPECT_EQ(Assign(At(1251, 100, 60), nullptr, kInsert).size(), 0U);
}

TEST(AssignByOwnPlace, QualityOf20IsEnough) {
    EXPECT_EQ(Assign(At(900, 100, 20), nullptr, kInsert).size(), 1U);
    EXPECT_EQ(Assign(At(900, 100, 19), nullptr, kInsert).size(), 0U);
}

TEST(AssignByOwnPlace, MateOnTheSameContigVouches) {
    MappedRead mate = At(500, 100, 20);
    mate.mate = 2;
    mate.proper = true;
    MappedRead read = At(900, 100, 0, true);
    auto assigned = Assign(read, &mate, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].position, -100);
    mate.quality = 19;
    EXPECT_EQ(Assign(read, &mate, kInsert).size(), 0U);
}

TEST(AssignByOwnPlace, MateOnTheOtherContigDoesNotVouch) {
    MappedRead mate = At(1500, 100, 60);  // forward, its mate is expected at 1800
    mate.mate = 2;
    EXPECT_EQ(Assign(At(900, 100, 0), &mate, kInsert).size(), 0U);
}

TEST(AssignByMate, ReadOfAForwardMateIsTurned) {
    MappedRead mate = At(700, 100, 20);
    MappedRead read = Unmapped("AACCG" + std::string(95, 'T'));
    auto assigned = Assign(mate, &read, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].position, 700 + 400 - 100 - 1000);
    EXPECT_EQ(assigned[0].bases, std::string(95, 'A') + "CGGTT");
    EXPECT_FALSE(assigned[0].exact);
}

TEST(AssignByMate, ReadOfAReverseMateKeepsItsDirection) {
    MappedRead mate = At(1300, 100, 60, true);
    MappedRead read = Unmapped("AACCG" + std::string(95, 'T'));
    auto assigned = Assign(mate, &read, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].position, 1400 - 400 - 1000);
    EXPECT_EQ(assigned[0].bases, read.bases);
}

TEST(AssignByMate, ReadMappedInTheWrongDirectionIsTurnedBack) {
    MappedRead mate = At(700, 100, 60);
    MappedRead read = At(1900, 100, 0);  // forward, as its mate
    read.bases = std::string(99, 'C') + "A";
    auto assigned = Assign(mate, &read, kInsert);
    ASSERT_EQ(assigned.size(), 1U);
    EXPECT_EQ(assigned[0].bases, "T" + std::string(99, 'G'));
}

TEST(AssignByMate, PlaceReachesTheGapWithinThreeDeviations) {
    MappedRead read = Unmapped(std::string(100, 'T'));
    // Expected [start+300, start+400), and 60 bases beyond it.
    EXPECT_EQ(Assign(At(541, 100, 60), &read, kInsert).size(), 1U);
    EXPECT_EQ(Assign(At(540, 100, 60), &read, kInsert).size(), 0U);
}

TEST(AssignByMate, MateNeedsQuality20) {
    MappedRead read = Unmapped(std::string(100, 'T'));
    EXPECT_EQ(Assign(At(700, 100, 19), &read, kInsert).size(), 0U);
}

TEST(AssignByMate, WellPlacedProperReadStaysWhereItIs) {
    MappedRead mate = At(700, 100, 60);
    MappedRead read = At(1900, 100, 60, true);
    read.proper = true;
    EXPECT_EQ(Assign(mate, &read, kInsert).size(), 0U);
    read.quality = 19;
    EXPECT_EQ(Assign(mate, &read, kInsert).size(), 1U);
    read.quality = 60;
    read.proper = false;
    EXPECT_EQ(Assign(mate, &read, kInsert).size(), 1U);
}

TEST(AssignByMate, WithoutInsertSizeNoMateIsPlaced) {
    MappedRead read = Unmapped(std::string(100, 'T'));
    EXPECT_EQ(Assign(At(700, 100, 60), &read, {}).size(), 0U);
}

TEST(Assign, ReadsWithNStayOut) {
    MappedRead read = At(900, 100, 60);
    read.bases[50] = 'N';
    EXPECT_EQ(Assign(read, nullptr, kInsert).size(), 0U);
}

TEST(Assign, ReadOverAShortContigBelongsToBothItsGaps) {
    Layout layout;
    AddSequence(layout, "s", std::string(500, 'A') + "NN" + std::string(50, 'C') + "NN" + std::string(500, 'A'), 1);
    std::vector<AssignedRead> assigned;
    MappedRead read = At(502, 50, 60);
    read.leadClip = 25;
    read.tailClip = 25;
    AssignPair(read, nullptr, layout, kInsert, assigned);
    ASSERT_EQ(assigned.size(), 2U);
    EXPECT_EQ(assigned[0].position, -23);
    EXPECT_EQ(assigned[1].position, -75);
}

TEST(OrderAndThin, Keeps1900EvenlySpread) {
    std::vector<AssignedRead> reads;
    for (int i = 3799; i >= 0; --i) reads.push_back({1, i, true, "r", 1, "A"});
    OrderAndThin(reads);
    ASSERT_EQ(reads.size(), 1900U);
    for (size_t i = 0; i < reads.size(); ++i) EXPECT_EQ(reads[i].position, static_cast<long>(2 * i));
}

TEST(Layout, GapsAtTheEndsAndBesideSingleBasesCannotBeFilled) {
    Layout layout;
    AddSequence(layout, "s", "NNACGTnACNNNAnACGTNN", 1);
    ASSERT_EQ(layout.gapCount, 1);
    EXPECT_EQ(layout.sequences[0].gaps[0].span, (Span{6, 7}));
}

TEST(EdgeWords, ReadsThatShareAWordWithAContigEndTouchIt) {
    std::string left = test::RandomBases(500, 1);
    std::string right = test::RandomBases(500, 2);
    Layout layout;
    AddSequence(layout, "s", left + "NNN" + right, 1);
    EdgeWords words(layout);
    std::string beyond = test::RandomBases(100, 3);
    EXPECT_TRUE(words.Touches(left.substr(469) + beyond));  // 31 bases
    EXPECT_FALSE(words.Touches(left.substr(470) + beyond));
    EXPECT_TRUE(words.Touches(ReverseComplement(left.substr(469) + beyond)));
    EXPECT_TRUE(words.Touches(beyond + right.substr(0, 31)));
    EXPECT_FALSE(words.Touches(beyond + right.substr(0, 30)));
    // Words lie within the last 64 bases.
    EXPECT_TRUE(words.Touches(left.substr(400, 36 + 31)));
    EXPECT_FALSE(words.Touches(left.substr(400, 36 + 30)));
    // An N cuts a word.
    EXPECT_FALSE(words.Touches(left.substr(469, 15) + "N" + left.substr(485)));
    EXPECT_FALSE(EdgeWords(Layout()).Touches(left));
}

class AssignmentFiles : public test::KitTest {
  protected:
    /// Both contigs have 1000 bases, the gap 100.
    AssignmentFiles() { AddSequence(layout_, "s", left_ + std::string(100, 'N') + right_, 1); }
    static std::string Head() { return "@SQ\tSN:s\tLN:2100\n"; }
    static std::string Record(const std::string& name, int flag, long start, int quality, const std::string& cigar,
                              long mate, const std::string& bases) {
        bool placed = start > 0;
        return name + "\t" + std::to_string(flag) + "\t" + (placed ? "s" : "*") + "\t" + std::to_string(start) + "\t" +
               std::to_string(quality) + "\t" + cigar + "\t" + (mate > 0 ? "s" : "*") + "\t" + std::to_string(mate) +
               "\t0\t" + bases + "\t*\n";
    }
    std::string left_ = test::RandomBases(1000, 1);
    std::string right_ = test::RandomBases(1000, 2);
    Layout layout_;
};

TEST_F(AssignmentFiles, NoMoreThanTwiceTheMostReadsAreHeldWhateverTheirOrder) {
    std::vector<std::string> records;
    for (int i = 0; i < 20000; ++i) {
        // 50 places in the contig in front of the gap
        records.push_back(Record("r" + std::to_string(i), 0, 880 + i % 50, 60, "100M", 0,
                                 left_.substr(static_cast<size_t>(i % 50), 100)));
    }
    auto names = [&](const std::string& file) {
        std::string text = Head();
        for (const std::string& record : records) text += record;
        std::ofstream(Path(file)) << text;
        MappingInput input{Path(file), -1, ""};
        std::vector<std::vector<AssignedRead>> assigned;
        AssignMapping(input, layout_, SummarizeMapping(input, layout_, ""), assigned);
        std::map<long, int> places;
        std::set<std::string> kept;
        for (const AssignedRead& read : assigned[1]) {
            kept.insert(read.name);
            ++places[read.position];
        }
        EXPECT_EQ(kept.size(), assigned[1].size());
        EXPECT_EQ(places.size(), 50U);
        for (const auto& [place, count] : places) EXPECT_GT(count, 1900 / 50 / 2) << place;
        return kept;
    };
    std::set<std::string> kept = names("ordered.sam");
    EXPECT_GE(kept.size(), kMostReads);
    EXPECT_LE(kept.size(), 2 * kMostReads);
    std::reverse(records.begin(), records.end());
    EXPECT_EQ(names("turned.sam"), kept);
}

TEST_F(AssignmentFiles, PairsWithoutAPlaceAreKeptAndStraysAreWrittenApart) {
    std::string hangs = left_.substr(960) + test::RandomBases(60, 5);
    std::string far = left_.substr(100, 100);
    std::ofstream(Path("all.sam")) << Head()
                                   // without a place
                                   << Record("nowhere", 77, 0, 0, "*", 0, std::string(100, 'A'))
                                   << Record("nowhere", 141, 0, 0, "*", 0, std::string(100, 'C'))
                                   // well placed elsewhere, as a proper pair
                                   << Record("stray", 99, 101, 60, "100M", 301, far)
                                   << Record("stray", 147, 301, 60, "100M", 101, hangs)
                                   << Record("far", 99, 101, 60, "100M", 301, far)
                                   << Record("far", 147, 301, 60, "100M", 101, far);
    SummarizeMapping({Path("all.sam"), -1, ""}, layout_, Path("kept.bam"), Path("stray.fq"));
    // The second read of a pair is stored turned.
    EXPECT_EQ(ReadWhole(Path("stray.fq")),
              "@stray\n" + ReverseComplement(hangs) + "\n+\n" + std::string(100, 'I') + "\n");
    WriteKeptPairs(Path("kept.bam"), Path("1.fq"), Path("2.fq"));
    EXPECT_EQ(ReadWhole(Path("1.fq")), "@nowhere\n" + std::string(100, 'A') + "\n+\n" + std::string(100, 'I') + "\n");
    EXPECT_EQ(ReadWhole(Path("2.fq")), "@nowhere\n" + std::string(100, 'C') + "\n+\n" + std::string(100, 'I') + "\n");
}

TEST(InsertHistogram, MedianAndDeviation) {
    InsertHistogram histogram;
    for (long length : {300, 390, 400, 410, 1000}) histogram.Add(length);
    EXPECT_DOUBLE_EQ(histogram.Size().median, 400);
    EXPECT_DOUBLE_EQ(histogram.Size().deviation, 14.826);  // distances 0, 10, 10, 100, 600
    EXPECT_EQ(InsertHistogram().Size().pairs, 0);
}

}  // namespace
}  // namespace lintara::kit
