#include "kit/assign/mapping.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "kit/base/error.h"
#include "support.h"

namespace lintara::kit {
namespace {

using test::End;
using test::Sam;

constexpr long kContig = 3000;
constexpr long kGap = 100;

/// Contigs [0,3000) and [3100,6100) around one gap. The library is measured on three pairs far from it: 380, 400 and
/// 420 bases, so that the median is 400 and the deviation 1.4826 * 20; three deviations are 88.956 bases.
class Mapping : public test::KitTest {
  protected:
    Mapping() : sam_("@SQ\tSN:s\tLN:6100\n") {
        AddSequence(layout_, "s", std::string(kContig, 'A') + std::string(kGap, 'N') + std::string(kContig, 'C'), 1);
        for (long size : {380, 400, 420}) Measure(sam_, size, "");
    }

    static void Measure(Sam& sam, long size, const std::string& tags) {
        sam.Pair("measure" + std::to_string(size) + tags.substr(tags.size() > 1 ? 1 : 0), End{500},
                 End{500 + size - 100, true}, true, size, tags);
    }

    static End Forward(long start, int quality = 60) { return End{start, false, quality}; }
    static End Reverse(long start, int quality = 60) { return End{start, true, quality}; }
    static End Nowhere(const std::string& bases = "AACCG" + std::string(95, 'T')) {
        End end;
        end.bases = bases;
        return end;
    }

    /// Reads of the gaps, in order. The pairs that measure the library take no part.
    std::vector<AssignedRead> Assigned(const std::string& name = "reads.sam") {
        MappingInput input{Put(name, sam_.Text()), -1, ""};
        summary_ = SummarizeMapping(input, layout_, "");
        std::vector<std::vector<AssignedRead>> assigned;
        AssignMapping(input, layout_, summary_, assigned);
        std::vector<AssignedRead> all;
        for (std::vector<AssignedRead>& reads : assigned) {
            OrderAndThin(reads);
            all.insert(all.end(), reads.begin(), reads.end());
        }
        return all;
    }
    size_t Count() { return Assigned().size(); }

    Layout layout_;
    Sam sam_;
    MappingSummary summary_;
};

TEST_F(Mapping, LibraryIsMeasured) {
    Assigned();
    ASSERT_EQ(summary_.libraries.size(), 1U);
    EXPECT_DOUBLE_EQ(summary_.libraries[0].median, 400);
    EXPECT_DOUBLE_EQ(summary_.libraries[0].deviation, 29.652);
    EXPECT_EQ(summary_.libraries[0].pairs, 3);
    EXPECT_EQ(summary_.reads, 6);
    EXPECT_EQ(summary_.longestRead, 100);
}

TEST_F(Mapping, PairsOfQuality30AndLessDoNotMeasure) {
    sam_.Pair("a", Forward(500, 30), Reverse(900), true, 500);
    sam_.Pair("b", Forward(500, 31), Reverse(900), false, 500);
    Assigned();
    EXPECT_EQ(summary_.libraries[0].pairs, 3);
    sam_.Pair("c", Forward(500, 31), Reverse(900), true, 500);
    Assigned();
    EXPECT_EQ(summary_.libraries[0].pairs, 4);
    EXPECT_DOUBLE_EQ(summary_.libraries[0].median, 410);  // 380, 400, 420, 500
}

TEST_F(Mapping, ClippedReadsKeepTheirExactPlaceInBothDirections) {
    for (bool reverse : {false, true}) {
        sam_ = Sam("@SQ\tSN:s\tLN:6100\n");
        End before{2940, reverse, 60, "60M40S"};
        End after{3100, reverse, 60, "70S30M"};
        before.bases = std::string(60, 'A') + std::string(40, 'G');
        sam_.Record("before", reverse ? 16 : 0, before, {}, 0);
        sam_.Record("after", reverse ? 16 : 0, after, {}, 0);
        std::vector<AssignedRead> reads = Assigned();
        ASSERT_EQ(reads.size(), 2U);
        EXPECT_EQ(reads[0].position, -60);
        EXPECT_EQ(reads[0].bases, before.bases);  // a mapping holds reads in the scaffold's direction already
        EXPECT_TRUE(reads[0].exact);
        EXPECT_EQ(reads[1].position, 30);  // 70 bases in front of the gap's end
        EXPECT_EQ(reads[1].name, "after");
    }
}

TEST_F(Mapping, ClipsOfTwoAndThreeBasesAtTheContigEnd) {
    sam_.Record("two", 0, End{2902, false, 60, "98M2S"}, {}, 0);
    sam_.Record("three", 0, End{2903, false, 60, "97M3S"}, {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].position, -98);
    EXPECT_EQ(reads[1].position, -97);
}

TEST_F(Mapping, ClipWithinTheContigDoesNotMakeAReadHangOver) {
    sam_.Record("far", 0, End{2700, false, 60, "60M40S"}, {}, 0);  // ends at 2760
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Mapping, HardClippedBasesAreNoPartOfTheRead) {
    End read{3100, false, 60, "20H10S70M"};
    read.bases = std::string(80, 'C');
    sam_.Record("r", 0, read, {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].position, 90);
}

TEST_F(Mapping, DeletionsMoveTheEnd) {
    sam_.Record("near", 0, End{2740, false, 60, "50M10D50M"}, {}, 0);  // ends at 2850
    sam_.Record("far", 0, End{2739, false, 60, "50M10D50M"}, {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "near");
}

TEST_F(Mapping, EndsWithin150BasesOfTheContigEndInBothDirections) {
    for (bool reverse : {false, true}) {
        int flag = reverse ? 16 : 0;
        sam_.Record("before150", flag, End{2750, reverse}, {}, 0);
        sam_.Record("before151", flag, End{2749, reverse}, {}, 0);
        sam_.Record("after150", flag, End{3250, reverse}, {}, 0);
        sam_.Record("after151", flag, End{3251, reverse}, {}, 0);
    }
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 4U);
    EXPECT_EQ(reads[0].name, "before150");
    EXPECT_EQ(reads[0].position, -250);
    EXPECT_EQ(reads[1].name, "before150");
    EXPECT_EQ(reads[2].name, "after150");
    EXPECT_EQ(reads[2].position, 250);
    EXPECT_EQ(reads[3].name, "after150");
}

TEST_F(Mapping, QualityOf20ForItself) {
    sam_.Record("q20", 0, Forward(2900, 20), {}, 0);
    sam_.Record("q19", 0, Forward(2900, 19), {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "q20");
}

TEST_F(Mapping, QualityOf20OfTheMateOnTheSameContigIsEnough) {
    sam_.Pair("q20", Forward(2500, 20), Reverse(2800, 0), true, 400);
    sam_.Pair("q19", Forward(2500, 19), Reverse(2800, 0), true, 400);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "q20");
    EXPECT_EQ(reads[0].mate, 2);
    EXPECT_EQ(reads[0].position, -200);
    EXPECT_TRUE(reads[0].exact);
}

TEST_F(Mapping, MateOnTheOtherContigDoesNotVouch) {
    // The mate's own direction leads away from the gap, so that it cannot place the read either.
    sam_.Pair("r", Forward(2900, 0), Forward(4000, 60), false);
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Mapping, MatePlacesWithinThreeDeviations) {
    // A forward mate at x expects the read at [x + 300, x + 400); the gap is [3000, 3100).
    sam_.Pair("in", Forward(2512), Nowhere(), false);   // ends at 2912, 88 bases in front of the gap
    sam_.Pair("out", Forward(2511), Nowhere(), false);  // 89 bases
    // A reverse mate that ends at y expects it at [y - 400, y - 300).
    sam_.Pair("inback", Reverse(3488), Nowhere(), false);   // 3188: 88 bases behind the gap
    sam_.Pair("outback", Reverse(3489), Nowhere(), false);  // 89 bases
    std::vector<AssignedRead> reads = Assigned();
    std::vector<std::string> names;
    for (const AssignedRead& read : reads) {
        if (!read.exact) names.push_back(read.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"in", "inback"}));
    EXPECT_EQ(reads.front().position, 2512 + 300 - 3000);
    EXPECT_EQ(reads.back().position, 3588 - 400 - 3000);
}

TEST_F(Mapping, ClippedMateCountsFromItsFirstBaseAsRead) {
    sam_.Pair("forward", End{2600, false, 60, "10S90M"}, Nowhere(), false);
    sam_.Pair("reverse", End{3400, true, 60, "90M10S"}, Nowhere(), false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].position, 2590 + 300 - 3000);
    EXPECT_EQ(reads[1].position, 3500 - 400 - 3000);
}

TEST_F(Mapping, MateNeedsQuality20ToPlace) {
    sam_.Pair("q20", Forward(2650, 20), Nowhere(), false);
    sam_.Pair("q19", Forward(2650, 19), Nowhere(), false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "q20");
}

TEST_F(Mapping, ReadIsTurnedIntoTheScaffoldsDirection) {
    sam_.Pair("forward", Forward(2650), Nowhere("AACCG" + std::string(95, 'T')), false);
    sam_.Pair("reverse", Reverse(3400), Nowhere("AACCG" + std::string(95, 'T')), false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].name, "forward");
    EXPECT_EQ(reads[0].bases, std::string(95, 'A') + "CGGTT");
    EXPECT_EQ(reads[1].bases, "AACCG" + std::string(95, 'T'));
}

TEST_F(Mapping, UnmappedReadThatIsStoredTurnedIsTurnedBack) {
    // Flag 4 with 16: the bases stand the other way round than they were read.
    End read = Nowhere("AACCG" + std::string(95, 'T'));
    End mate = Forward(2650);
    sam_.Record("r", Sam::Flags(mate, read, 1, false), mate, read, 0);
    sam_.Record("r", Sam::Flags(read, mate, 2, false) | 0x10, read, mate, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].bases, "AACCG" + std::string(95, 'T'));
}

TEST_F(Mapping, BothReadsForwardIsNoPairAndTheReadIsTurned) {
    // The second read lies somewhere else in the direction of the first one.
    End wrong = Forward(5000, 60);
    wrong.bases = "A" + std::string(99, 'C');
    sam_.Pair("r", Forward(2650), wrong, false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].mate, 2);
    EXPECT_EQ(reads[0].position, -50);
    EXPECT_EQ(reads[0].bases, std::string(99, 'G') + "T");
}

TEST_F(Mapping, ReadsThatPointAwayFromEachOtherStayOut) {
    // Reverse in front of the gap, forward behind it: both mates expect their partner far from the gap.
    sam_.Pair("r", Reverse(2500), Forward(3500), false);
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Mapping, WellPlacedReadOfAProperPairStaysThere) {
    sam_.Pair("proper", Forward(2650), Reverse(3400), true, 850);
    EXPECT_EQ(Count(), 0U);
    sam_.Pair("improper", Forward(2650), Reverse(3400), false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);  // each read expects the other within the gap
    EXPECT_EQ(reads[0].name, "improper");
    sam_.Pair("doubtful", Forward(2650), Reverse(3400, 19), true, 850);
    EXPECT_EQ(Count(), 3U);
}

TEST_F(Mapping, ExactPlaceComesBeforeTheExpectedOne) {
    sam_.Pair("r", Forward(2650), End{2950, true, 60, "50M50S"}, false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_TRUE(reads[0].exact);
    EXPECT_EQ(reads[0].position, -50);
}

TEST_F(Mapping, ReadsWithNStayOut) {
    End read = Forward(2900);
    read.bases[99] = 'N';
    sam_.Record("r", 0, read, {}, 0);
    sam_.Pair("mate", Forward(2650), Nowhere("N" + std::string(99, 'T')), false);
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Mapping, ReadsWithoutBasesStayOut) {
    End read = Forward(2900);
    read.bases = "*";
    sam_.Record("r", 0, read, {}, 0);
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Mapping, MoreThan1900ReadsAreThinnedTheSameInAnyOrder) {
    for (int i = 0; i < 2500; ++i) sam_.Record("r" + std::to_string(i), 0, Forward(2850 + i % 40), {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1900U);
    std::mt19937 random(3);
    std::shuffle(sam_.Records().begin(), sam_.Records().end(), random);
    std::vector<AssignedRead> again = Assigned();
    ASSERT_EQ(again.size(), 1900U);
    for (size_t i = 0; i < reads.size(); ++i) EXPECT_EQ(reads[i].name, again[i].name);
    // Evenly: each place had 62 or 63 reads and keeps about 76 of a hundred.
    std::map<long, int> places;
    for (const AssignedRead& read : reads) ++places[read.position];
    EXPECT_EQ(places.size(), 40U);
    for (const auto& [place, count] : places) EXPECT_NEAR(count, 47.5, 1.5) << place;
}

TEST_F(Mapping, UnpairedReadsHaveTheirOwnPlaceOnly) {
    sam_.Record("near", 16, Reverse(2850), {}, 0);
    sam_.Record("far", 0, Forward(2650), {}, 0);  // a paired one would place its mate
    sam_.Record("nowhere", 4, Nowhere(), {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "near");
    EXPECT_EQ(reads[0].mate, 0);
}

TEST_F(Mapping, MissingMateLeavesAReadItsOwnPlace) {
    End lost = Nowhere();
    End here = Forward(2900);
    sam_.Record("alone", Sam::Flags(here, lost, 1, false), here, lost, 0);
    End low = Forward(2900, 0);
    sam_.Record("low", Sam::Flags(low, here, 1, true), low, here, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].name, "alone");
}

TEST_F(Mapping, SecondaryAndSupplementaryRecordsAreNoReads) {
    sam_.Record("secondary", 0x100, Forward(2900), {}, 0);
    sam_.Record("supplementary", 0x800, End{3100, false, 60, "50H50M", std::string(50, 'C')}, {}, 0);
    EXPECT_EQ(Count(), 0U);
    EXPECT_EQ(summary_.reads, 6);
    // A supplementary record between the reads of a pair does not part them.
    End mate = Forward(2650);
    End read = Nowhere();
    sam_.Record("r", Sam::Flags(mate, read, 1, false), mate, read, 0);
    sam_.Record("r", Sam::Flags(mate, read, 1, false) | 0x800, Forward(100), read, 0);
    sam_.Record("r", Sam::Flags(read, mate, 2, false), read, mate, 0);
    EXPECT_EQ(Count(), 1U);
}

TEST_F(Mapping, MarkedDuplicatesAreReadsLikeAnyOther) {
    // A mapping gives what its FASTQ files would give, whether duplicates were marked or not.
    sam_.Record("r", 0x400, Forward(2900), {}, 0);
    EXPECT_EQ(Count(), 1U);
}

TEST_F(Mapping, ReadsOfSeveralLengths) {
    End shorter = Forward(2900);
    shorter.cigar = "36M";
    shorter.bases = std::string(36, 'A');
    sam_.Record("short", 0, shorter, {}, 0);
    End longer = Nowhere(std::string(150, 'T'));
    sam_.Pair("long", Forward(2650), longer, false);
    sam_.Pair("tiny", Forward(2650), Nowhere("ACG"), false);
    std::vector<AssignedRead> reads = Assigned();
    EXPECT_EQ(summary_.longestRead, 150);
    ASSERT_EQ(reads.size(), 3U);
    EXPECT_EQ(reads[0].name, "long");
    EXPECT_EQ(reads[0].position, 2650 + 400 - 150 - 3000);
    EXPECT_EQ(reads[1].name, "short");
    EXPECT_EQ(reads[1].position, -100);
    EXPECT_EQ(reads[2].name, "tiny");
    EXPECT_EQ(reads[2].position, 2650 + 400 - 3 - 3000);
}

TEST_F(Mapping, TwoPairsOfOneNameAreNotMixed) {
    // Read 1 of the second pair comes while read 1 of the first one waits.
    End here = Forward(2900);
    End lost = Nowhere();
    sam_.Record("r", Sam::Flags(here, lost, 1, false), here, lost, 0);
    sam_.Pair("r", Forward(2650), Nowhere(), false);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_TRUE(reads[0].exact);
    EXPECT_FALSE(reads[1].exact);
}

TEST_F(Mapping, LibrariesAreMeasuredByThemselves) {
    sam_ = Sam("@SQ\tSN:s\tLN:6100\n@RG\tID:a\tLB:short\n@RG\tID:b\tLB:long\n@RG\tID:c\tLB:short\n@RG\tID:d\n");
    for (long size : {380, 400}) Measure(sam_, size, "\tRG:Z:a");
    Measure(sam_, 420, "\tRG:Z:c");  // the same library as a
    for (long size : {980, 1000, 1020}) Measure(sam_, size, "\tRG:Z:b");
    // An expected read at the gap's first base: 300 bases behind a mate of the one library, 900 of the other.
    sam_.Pair("short", Forward(2700), Nowhere(), false, 0, "\tRG:Z:c");
    sam_.Pair("long", Forward(2100), Nowhere(), false, 0, "\tRG:Z:b");
    sam_.Pair("unmeasured", Forward(2700), Nowhere(), false, 0, "\tRG:Z:d");
    std::vector<AssignedRead> reads = Assigned();
    EXPECT_EQ(summary_.names, (std::vector<std::string>{"short", "long", "d"}));
    EXPECT_DOUBLE_EQ(summary_.libraries[0].median, 400);
    EXPECT_EQ(summary_.libraries[0].pairs, 3);
    EXPECT_DOUBLE_EQ(summary_.libraries[1].median, 1000);
    EXPECT_EQ(summary_.libraries[2].pairs, 0);
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].name, "long");
    EXPECT_EQ(reads[0].position, 0);
    EXPECT_EQ(reads[1].name, "short");
    EXPECT_EQ(reads[1].position, 0);
}

TEST_F(Mapping, ReadsWithoutAKnownGroupBelongToTheFirstLibrary) {
    sam_ = Sam("@SQ\tSN:s\tLN:6100\n@RG\tID:a\tLB:one\n");
    Measure(sam_, 400, "\tRG:Z:a");
    Measure(sam_, 401, "");
    Measure(sam_, 402, "\tRG:Z:unknown");
    Measure(sam_, 403, "\tRG:i:5");  // a number is no name of a group
    Assigned();
    EXPECT_EQ(summary_.libraries[0].pairs, 4);
}

TEST_F(Mapping, NeighbouringGapsCloserThanARead) {
    layout_ = {};
    // Gaps [3000,3010) and [3050,3060): the contig between them has 40 bases.
    AddSequence(layout_, "s",
                std::string(3000, 'A') + std::string(10, 'N') + std::string(40, 'G') + std::string(10, 'N') +
                    std::string(3040, 'C'),
                1);
    sam_.Record("over", 0, End{3010, false, 60, "30S40M30S"}, {}, 0);
    sam_.Pair("mate", Forward(2680), Nowhere(), false);  // expected at [2980, 3080)
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 4U);
    EXPECT_EQ(reads[0].gap, 1);
    EXPECT_EQ(reads[0].name, "mate");
    EXPECT_EQ(reads[0].position, -20);
    EXPECT_EQ(reads[1].name, "over");
    EXPECT_EQ(reads[1].position, -20);
    EXPECT_EQ(reads[2].gap, 2);
    EXPECT_EQ(reads[2].position, -70);
    EXPECT_EQ(reads[3].position, -70);
}

TEST_F(Mapping, ContigShorterThanARead) {
    layout_ = {};
    // Contigs of 60 bases at both ends of the scaffold.
    AddSequence(layout_, "s", std::string(60, 'A') + std::string(5980, 'N') + std::string(60, 'C'), 1);
    sam_.Record("first", 0, End{0, false, 60, "15S60M25S"}, {}, 0);
    sam_.Record("last", 0, End{6040, false, 60, "30S60M10S"}, {}, 0);
    std::vector<AssignedRead> reads = Assigned();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].position, -75);
    EXPECT_EQ(reads[1].position, 5980 - 30);
}

TEST_F(Mapping, GapsAtTheScaffoldsEndsTakeNoReads) {
    layout_ = {};
    AddSequence(layout_, "s", std::string(50, 'N') + std::string(6000, 'A') + std::string(50, 'N'), 1);
    sam_.Record("front", 0, End{50, false, 60, "40S60M"}, {}, 0);
    sam_.Record("back", 0, End{5990, false, 60, "60M40S"}, {}, 0);
    sam_.Pair("mate", Forward(5700), Nowhere(), false);
    EXPECT_EQ(Count(), 0U);
}

/// One mapping of many pairs around three gaps, and the same assignment without any short cut.
class MappingShortCuts : public Mapping {
  protected:
    MappingShortCuts() {
        layout_ = {};
        AddSequence(layout_, "s",
                    std::string(1500, 'A') + std::string(200, 'N') + std::string(60, 'A') + std::string(40, 'N') +
                        std::string(2200, 'C') + "N" + std::string(2099, 'C'),
                    1);
        AddSequence(layout_, "t", std::string(2000, 'A'), 1);
        sam_ = Sam("@SQ\tSN:s\tLN:6100\n@SQ\tSN:t\tLN:2000\n");
        std::mt19937 random(11);
        auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        const char* cigars[] = {"100M", "30S70M", "70M30S", "2S96M2S", "50M5D50M"};
        for (int i = 0; i < 4000; ++i) {
            End ends[2];
            for (End& end : ends) {
                if (below(6) == 0) continue;
                end.start = below(5900);
                end.reverse = below(2) == 1;
                end.quality = below(3) == 0 ? below(40) : 60;
                end.cigar = cigars[below(5)];
                if (below(12) == 0) {
                    end.target = "t";
                    end.start = below(1800);
                }
            }
            bool proper = ends[0].start >= 0 && ends[1].start >= 0 && ends[0].target == ends[1].target;
            long size = 0;
            if (proper && below(4) > 0) {
                // Most pairs lie as pairs do.
                ends[0].reverse = false;
                ends[1].reverse = true;
                ends[1].start = std::min(ends[0].start + 280 + below(40), ends[0].target == "t" ? 1850L : 5950L);
                size = ends[1].start + 100 - ends[0].start;
            }
            proper = size > 0 && below(5) > 0;
            sam_.Pair("p" + std::to_string(i), ends[0], ends[1], proper, size);
        }
    }

    using Row = std::tuple<int, long, std::string, int, bool, std::string>;
    static std::vector<Row> Rows(const std::vector<std::vector<AssignedRead>>& assigned) {
        std::vector<Row> rows;
        for (const std::vector<AssignedRead>& reads : assigned) {
            for (const AssignedRead& read : reads) {
                rows.emplace_back(read.gap, read.position, read.name, read.mate, read.exact, read.bases);
            }
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    MappedRead Parse(const std::string& line) const {
        std::vector<std::string> fields = SplitTabs(line);
        int flag = std::stoi(fields[1]);
        MappedRead read;
        read.name = fields[0];
        read.mate = (flag & 0x80) != 0 ? 2 : 1;
        read.mapped = (flag & 4) == 0;
        read.sequence = fields[2] == "t" ? 1 : 0;
        read.reverse = (flag & 16) != 0;
        read.proper = (flag & 2) != 0;
        read.quality = std::stoi(fields[4]);
        read.bases = fields[9];
        read.start = read.end = std::stol(fields[3]) - 1;
        long number = 0;
        bool front = true;
        for (char letter : fields[5]) {
            if (std::isdigit(static_cast<unsigned char>(letter)) != 0) {
                number = number * 10 + (letter - '0');
                continue;
            }
            if (letter == 'S') (front ? read.leadClip : read.tailClip) = number;
            if (letter == 'M' || letter == 'D') read.end += number;
            front = front && letter == 'S';
            number = 0;
        }
        return read;
    }
};

TEST_F(MappingShortCuts, ReadsThatAreLetGoAtOnceBelongToNoGap) {
    MappingInput input{Put("all.sam", sam_.Text()), -1, ""};
    MappingSummary summary = SummarizeMapping(input, layout_, "");
    ASSERT_GT(summary.libraries[0].pairs, 100);
    std::vector<std::vector<AssignedRead>> assigned;
    AssignMapping(input, layout_, summary, assigned);

    std::vector<std::vector<AssignedRead>> plain(4);
    for (size_t i = 0; i < sam_.Records().size(); i += 2) {
        MappedRead first = Parse(sam_.Records()[i]);
        MappedRead second = Parse(sam_.Records()[i + 1]);
        AssignPair(first, &second, layout_, summary.libraries[0], plain[0]);
    }
    ASSERT_GT(plain[0].size(), 500U);
    EXPECT_EQ(Rows(assigned), Rows(plain));
}

TEST_F(MappingShortCuts, PairsThatAreNotKeptBelongToNoGap) {
    MappingInput input{Put("all.sam", sam_.Text()), -1, ""};
    MappingSummary summary = SummarizeMapping(input, layout_, Path("kept.bam"));
    std::vector<std::vector<AssignedRead>> all;
    AssignMapping(input, layout_, summary, all);
    std::vector<std::vector<AssignedRead>> kept;
    AssignMapping({Path("kept.bam"), -1, ""}, layout_, summary, kept);
    EXPECT_EQ(Rows(kept), Rows(all));
    EXPECT_LT(SummarizeMapping({Path("kept.bam"), -1, ""}, layout_, "").reads, summary.reads);
}

TEST_F(MappingShortCuts, OrderOfTheRecordsIsNothingToTheAssignment) {
    MappingInput input{Put("all.sam", sam_.Text()), -1, ""};
    MappingSummary summary = SummarizeMapping(input, layout_, "");
    std::vector<std::vector<AssignedRead>> ordered;
    AssignMapping(input, layout_, summary, ordered);
    std::mt19937 random(5);
    std::shuffle(sam_.Records().begin(), sam_.Records().end(), random);
    std::vector<std::vector<AssignedRead>> shuffled;
    AssignMapping({Put("shuffled.sam", sam_.Text()), -1, ""}, layout_, summary, shuffled);
    EXPECT_EQ(Rows(shuffled), Rows(ordered));
}

TEST_F(Mapping, FaultsOfAFileAreTold) {
    auto words = [&](const std::string& name, const std::string& text) -> std::string {
        try {
            SummarizeMapping({Put(name, text), -1, ""}, layout_, "");
        } catch (const Error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(words("empty.sam", ""), Path("empty.sam") + ": this is no SAM, BAM or CRAM file");
    EXPECT_EQ(words("reads.fq", "@r\nACGT\n+\nIIII\n"), Path("reads.fq") + ": this is no SAM, BAM or CRAM file");
    EXPECT_EQ(words("reads.fa", ">r\nACGT\n"), Path("reads.fa") + ": this is no SAM, BAM or CRAM file");
    EXPECT_EQ(words("other.sam", "@SQ\tSN:x\tLN:6100\n"),
              Path("other.sam") + ": the reads are mapped to \"x\", which is no scaffold");
    EXPECT_EQ(words("longer.sam", "@SQ\tSN:s\tLN:6101\n"),
              Path("longer.sam") + ": \"s\" has 6101 bases in the mapping and 6100 in the scaffolds");
    EXPECT_EQ(words("bad.sam", sam_.Text() + "r\t0\ts\tx\t60\t100M\t*\t0\t0\tA\t*\n"),
              Path("bad.sam") + ": damaged or cut short behind record 6");
    EXPECT_EQ(words("good.sam", sam_.Text()), "");
    EXPECT_THROW(SummarizeMapping({Path("missing.sam"), -1, ""}, layout_, ""), Error);
}

TEST_F(Mapping, ScaffoldsOfOneNameCannotBeMappedTo) {
    AddSequence(layout_, "s", std::string(6100, 'A'), 1);
    std::string path = Put("twice.sam", "@SQ\tSN:s\tLN:6100\n@SQ\tSN:s\tLN:6100\n");
    try {
        SummarizeMapping({path, -1, ""}, layout_, "");
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.what(), path + ": more than one scaffold is named \"s\"");
    }
}

}  // namespace
}  // namespace lintara::kit
