#include "repeat/tandem_block.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "repeat/tag_table.h"
#include "repeat/tandem_sample.h"
#include "run/settings.h"
#include "solve/block.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Copies;
using testing::Last;
using testing::ReadAt;
using testing::TagTable;

const int kEdge = 60;

std::string N(int count) {
    return std::string(static_cast<std::size_t>(count), 'N');
}

/// A gap between two edges of 60 bases. Reads are 100 long; the pair at an edge overlaps it by 31 and 40 bases, so
/// that the edge grows by 69.
class SolveTRBlock : public testing::ThreadStreamsTest {
  protected:
    std::string Run(int gap_len) {
        reads.insert(reads.begin(), Read(edge1, -kEdge));
        reads.emplace_back(edge2, gap_len);
        return solve_TR_block(reads, table.tagInfo, unit, TRNum, gap_len, table.freq, type, realgaplen, 0);
    }
    std::string Truth() const { return edge1 + gap + edge2; }
    void GrowBefore() {
        reads.push_back(ReadAt(Truth(), static_cast<int>(edge1.size()) - 31, 100));
        reads.push_back(ReadAt(Truth(), static_cast<int>(edge1.size()) - 40, 100));
    }
    void GrowAfter() {
        const int after = static_cast<int>(edge1.size() + gap.size());
        reads.push_back(ReadAt(Truth(), after + 31 - 100, 100));
        reads.push_back(ReadAt(Truth(), after + 40 - 100, 100));
    }
    /// Makes every tag of `seq` recur at a distance that is no read's own, as in a repeat.
    void MarkAsRepeat(const std::string& seq) {
        for (std::size_t i = 0; i + 6 <= seq.size(); ++i) table.Mark(seq.substr(i, 6), 500);
    }
    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }

    TagTable table;
    std::string edge1 = Bases(1, kEdge);
    std::string edge2 = Bases(2, kEdge);
    std::string gap;
    std::string unit = "ACGTT";
    std::vector<Read> reads;
    int TRNum = 10;
    int type = 3;
    int realgaplen = 0;
};

// ---- edges ----

TEST_F(SolveTRBlock, ShortGapWithoutRepeatInTheEdgesGoesTheOrdinaryRoad) {
    unit = "CTGAT";
    TRNum = 12;
    gap = Bases(3, 130);
    GrowBefore();
    std::vector<Read> copy = reads;
    const std::string seq = Run(130);
    EXPECT_EQ(Log().find("caculate the units set\n"
                         "check contig edge \n"
                         "last unit: CTGAT\ttotal number: 12\tbefore edge num: 0\t after edge num: 0\n"
                         "before edge len: -1\tafter edge len: -1\n"
                         "caculate first and last read overlap\t130\t100\n"
                         "Using TE to assemble the TR gap!\tlast num1: 0\tlast num2: 0\n"
                         "the read number is: 4\n"),
              0U);
    EXPECT_EQ(TRNum, 12);
    copy.insert(copy.begin(), Read(edge1, -kEdge));
    copy.emplace_back(edge2, 130);
    int plain_type = 3;
    int plain_realgaplen = 0;
    EXPECT_EQ(seq, assemble_block(copy, Method, plain_type, table.tagInfo, plain_realgaplen, 0));
    EXPECT_EQ(reads, copy);
}

TEST_F(SolveTRBlock, TwiceTheReadLengthIsTooLongForTheOrdinaryRoad) {
    EXPECT_EQ(Run(200), N(200));
    EXPECT_EQ(Log(),
              "caculate the units set\n"
              "check contig edge \n"
              "last unit: ACGTT\ttotal number: 10\tbefore edge num: 0\t after edge num: 0\n"
              "before edge len: -1\tafter edge len: -1\n"
              "caculate first and last read overlap\t200\t100\n"
              "get the start and end\tlast_num1: 0\tlast num2 0\n"
              "before seq(Containing first read): " +
                  edge1 +
                  "\tsize: 60\n"
                  "after seq: " +
                  edge2 +
                  "\tsize: 60\n"
                  "Last unit is: ACGTT\t5\n"
                  "before expand length: -1\tafter expand length: -1\n"
                  "Get final sequence with before: NNNNN after: NNNNN\n"
                  "total repeat time: 8\tbefore repeat time: 1\tafter repeat time: 1\n"
                  "TR unfull filled!\t200\n");
    EXPECT_EQ(TRNum, 8);
    EXPECT_EQ(realgaplen, 0);
    EXPECT_EQ(type, 3);
}

TEST_F(SolveTRBlock, OneBaseLessGoesTheOrdinaryRoad) {
    Run(199);
    EXPECT_TRUE(Logged("Using TE to assemble the TR gap!\tlast num1: 0\tlast num2: 0\n"));
}

TEST_F(SolveTRBlock, ThirtyBasesOfRepeatInOneEdgeKeepAShortGapHere) {
    edge1 = Bases(1, 30) + Copies("ACGTT", 6);
    EXPECT_EQ(Run(100), N(100));
    EXPECT_TRUE(Logged("before edge num: 6\t after edge num: 0\nbefore edge len: 30\tafter edge len: -1\n"));
    EXPECT_EQ(TRNum, 10 - 7 - 1);
    reads.clear();
    TRNum = 10;
    edge1 = Bases(1, 30) + Copies("ACGTT", 5) + "ACGT";
    Run(100);
    // The phase is the one with which the edge stops: of TACGT there are five copies.
    EXPECT_TRUE(
        Logged("last unit: TACGT\ttotal number: 10\tbefore edge num: 5\t after edge num: 0\n"
               "before edge len: 29\tafter edge len: -1\n"));
    EXPECT_TRUE(Logged("Using TE to assemble the TR gap!\tlast num1: 5\tlast num2: 0\n"));
}

TEST_F(SolveTRBlock, HomopolymerUnitCountsEveryBaseOfTheEdges) {
    unit = "A";
    edge1 = Bases(1, 30) + std::string(30, 'A');
    edge2 = std::string(12, 'A') + Bases(2, 30);
    Run(100);
    EXPECT_TRUE(
        Logged("last unit: A\ttotal number: 10\tbefore edge num: 30\t after edge num: 12\n"
               "before edge len: 30\tafter edge len: 12\n"));
}

TEST_F(SolveTRBlock, EmptyUnitIsSafe) {
    unit.clear();
    ReadLen = 50;
    gap = Bases(3, 300);
    GrowBefore();
    GrowAfter();
    // No word is a repeat word, but the empty phase stands everywhere, at the last base of the expansion first.
    EXPECT_EQ(Run(300), gap.substr(0, 69) + N(230) + Last(gap, 1));
}

// ---- joins ----

TEST_F(SolveTRBlock, BothExpansionsMeet) {
    ReadLen = 50;
    gap = Bases(3, 110);
    GrowBefore();
    GrowAfter();
    // 129 + 129 bases against 110 + 120 leave a surplus of 28; half of it is the shortest overlap.
    EXPECT_EQ(Run(110), gap);
    EXPECT_TRUE(
        Logged("get the start and end\tlast_num1: 0\tlast num2 0\n"
               "Forward min_overlap id: 1\tmin_overlap length: 31\n"));
    EXPECT_TRUE(
        Logged("\tsize: 129\nHave overlap between before and after expand sequence, with overlap length: 28\n"));
    EXPECT_FALSE(Logged("Last unit is: "));
    EXPECT_EQ(TRNum, 10);
}

TEST_F(SolveTRBlock, NoOverlapIsLookedForWithoutASurplusOfMoreThanTwoUnits) {
    ReadLen = 50;
    gap = Bases(3, 110);
    GrowBefore();
    GrowAfter();
    EXPECT_EQ(Run(128), gap.substr(0, 69) + N(15) + Last(gap, 69));
    EXPECT_FALSE(Logged("Have overlap between"));
    EXPECT_FALSE(Logged("Failed to make sure the overlap\n"));
}

TEST_F(SolveTRBlock, SurplusOfOneMoreFindsIt) {
    ReadLen = 50;
    gap = Bases(3, 110);
    GrowBefore();
    GrowAfter();
    EXPECT_EQ(Run(127), gap);  // a surplus of 11 gives 5, raised to 6
    EXPECT_TRUE(Logged("Have overlap between before and after expand sequence, with overlap length: 28\n"));
}

TEST_F(SolveTRBlock, OverlapOfRepeatOnlyIsRefused) {
    ReadLen = 50;
    const std::string flank1 = Bases(3, 30);
    const std::string flank2 = Bases(4, 30);
    gap = flank1 + Copies("ACGTT", 16) + flank2;
    GrowBefore();
    GrowAfter();
    TRNum = 16;
    // Each side has 39 bases of repeat; shifted into phase they share 38.
    EXPECT_EQ(Run(126), flank1 + N(5) + N(56) + N(5) + flank2);
    EXPECT_TRUE(
        Logged("Have overlap between before and after expand sequence, with overlap length: 38\n"
               "Failed to make sure the overlap\n"
               "Last unit is: ACGTT\t5\n"
               "before expand length: 39\tafter expand length: 39\n"
               "Get final sequence with before: " +
               flank1 + "NNNNN after: NNNNN" + flank2 +
               "\n"
               "total repeat time: 14\tbefore repeat time: 1\tafter repeat time: 1\n"
               "TR unfull filled!\t126\n"));
    EXPECT_EQ(TRNum, 14);
}

TEST_F(SolveTRBlock, BeforeMeetsTheAfterEdge) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowBefore();  // reaches 19 bases into the after edge
    EXPECT_EQ(Run(40), gap);
    EXPECT_TRUE(Logged("Before seq have overlap with the last read\t5\t14\n"));
    EXPECT_FALSE(Logged("Have overlap between"));
}

TEST_F(SolveTRBlock, BeforeThatMeetsTheAfterEdgeInARepeatIsRefused) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowBefore();
    MarkAsRepeat(edge2.substr(0, 19));
    const std::string grown = gap + edge2.substr(0, 19);
    EXPECT_EQ(Run(40), grown + N(5) + N(5) + N(5));
    EXPECT_FALSE(Logged("Before seq have overlap"));
    EXPECT_TRUE(
        Logged("Failed to make sure the overlap\nLast unit is: ACGTT\t5\n"
               "before expand length: 0\tafter expand length: -1\n"));
}

TEST_F(SolveTRBlock, AfterMeetsTheBeforeEdge) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowAfter();
    EXPECT_EQ(Run(40), gap);
    EXPECT_TRUE(
        Logged("Have overlap with the before edge 19\n"
               "After seq have overlap with the first read\t5\t14\n"));
}

TEST_F(SolveTRBlock, AfterThatMeetsTheBeforeEdgeInARepeatIsRefused) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowAfter();
    MarkAsRepeat(Last(edge1, 19));
    // The flank exceeds the gap, but a cut would take its N.
    EXPECT_EQ(Run(40), N(5) + N(5) + N(5) + Last(edge1, 19) + gap);
    EXPECT_TRUE(
        Logged("Have overlap with the before edge 19\nLast unit is: ACGTT\t5\n"
               "before expand length: -1\tafter expand length: 0\n"));
    EXPECT_EQ(TRNum, 8);
}

// ---- anchors ----

TEST_F(SolveTRBlock, ReadThatCoversAnEdgeIsCutThere) {
    ReadLen = 50;
    edge1 = Bases(1, 40);
    edge2 = Bases(2, 45);
    gap = Bases(3, 300);
    const std::string left = Bases(5, 7);
    const std::string right = Bases(6, 9);
    reads.emplace_back(left + edge1 + gap.substr(0, 50), 0);
    reads.emplace_back(Last(gap, 50) + edge2 + right, 0);
    Run(300);
    EXPECT_EQ(reads[1].seq, edge1 + gap.substr(0, 50));
    EXPECT_EQ(reads[2].seq, Last(gap, 50) + edge2);
}

TEST_F(SolveTRBlock, ReadThatCoversBothEdgesAnchorsOnTheLongerOverlapOnly) {
    ReadLen = 10;
    edge1 = Bases(1, 40);
    edge2 = Bases(2, 45);
    gap = Bases(3, 20);
    const std::string left = Bases(5, 7);
    const std::string right = Bases(6, 9);
    reads.emplace_back(left + Truth() + right, 0);
    Run(20);
    EXPECT_EQ(reads[1].seq, left + Truth());
    EXPECT_TRUE(Logged("Reward find the min_overlap id: 1\t min_overlap length: 45\n"));
    EXPECT_FALSE(Logged("Forward min_overlap id"));
    // The before edge must share more to win; on a tie the after edge does.
    NewLog();
    edge1 = edge1.substr(0, 20) + Bases(7, 25);
    reads.assign(1, Read(left + Truth() + right, 0));
    Run(20);
    EXPECT_EQ(reads[1].seq, left + Truth());
    edge1 = Bases(8, 46);
    reads.assign(1, Read(left + Truth() + right, 0));
    Run(20);
    EXPECT_EQ(reads[1].seq, Truth() + right);
    EXPECT_TRUE(Logged("Forward min_overlap id: 1\tmin_overlap length: 46\n"));
}

TEST_F(SolveTRBlock, ReadInsideAnEdgeIsNoAnchor) {
    gap = Bases(3, 300);
    GrowBefore();
    reads.emplace_back(Last(edge1, 50), -50);
    Run(300);
    EXPECT_TRUE(Logged("Value base read number 3\n"));
}

TEST_F(SolveTRBlock, AnchorMustReachPastTheRepeatOfTheEdge) {
    edge1 = Bases(1, 40) + Copies("ACGTT", 8);
    gap = Copies("ACGTT", 4) + Bases(3, 280);
    // 40 bases of repeat stand in the edge; an overlap of 40 is not enough, one of 60 is.
    reads.push_back(ReadAt(Truth(), 40, 90));
    Run(300);
    EXPECT_FALSE(Logged("Forward min_overlap id"));
    reads.assign(1, ReadAt(Truth(), 20, 90));
    Run(300);
    EXPECT_TRUE(
        Logged("get the start and end\tlast_num1: 8\tlast num2 0\n"
               "Forward min_overlap id: 1\tmin_overlap length: 60\n"));
}

// ---- flanks ----

/// An edge that ends in the repeat, and two reads that prolong it by 40 bases.
class TandemFlank : public SolveTRBlock {
  protected:
    void GrowRepeatEdge(int copies) {
        edge1 = Bases(1, 60) + Copies(unit, copies);
        gap = Copies(unit, 2) + Bases(3, 300);
        const int size = static_cast<int>(edge1.size());
        reads.push_back(ReadAt(Truth(), size - copies * static_cast<int>(unit.size()) - 30, 70 + 60));
        reads.push_back(ReadAt(Truth(), size - copies * static_cast<int>(unit.size()) - 40, 80 + 60));
    }
};

TEST_F(TandemFlank, ExpansionBehindARepeatAtTheEdgeIsDropped) {
    GrowRepeatEdge(8);
    EXPECT_EQ(Run(300), N(300));
    EXPECT_TRUE(
        Logged("before expand length: 60\tafter expand length: -1\n"
               "Get final sequence with before: NNNNN after: NNNNN\n"
               "total repeat time: 0\tbefore repeat time: 9\tafter repeat time: 1\n"));
    EXPECT_EQ(TRNum, 0);  // raised to 1 only without any expansion
}

TEST_F(TandemFlank, UnitOfMoreThanTenBasesIsWrittenOnceInstead) {
    unit = "ACGTTAGGATC";
    GrowRepeatEdge(4);
    const std::string seq = Run(300);
    EXPECT_TRUE(Logged("last unit: ACGTTAGGATC\ttotal number: 10\tbefore edge num: 4\t"));
    EXPECT_EQ(seq, unit + N(278) + N(11));
    EXPECT_EQ(TRNum, 10 - 5 - 1);
    unit = "ACGTTAGGAT";
    reads.clear();
    GrowRepeatEdge(4);
    EXPECT_EQ(Run(300), N(300));
}

TEST_F(TandemFlank, ExpansionThatIsRepeatFromTheEdgeOnKeepsOneUnitAndGivesThePhase) {
    // The edge stops one base short of a word, so it counts no repeat, and the first word reaches across its end.
    gap = "CGTT" + Copies("ACGTT", 10) + Bases(3, 300);
    edge1 = Bases(1, 59) + "A";
    GrowBefore();
    const std::string seq = Run(360);
    EXPECT_TRUE(Logged("before edge len: -1\t"));
    EXPECT_TRUE(Logged("Last unit is: CGTTA\t5\nbefore expand length: 64\tafter expand length: -1\n"));
    EXPECT_EQ(seq, "CGTTA" + N(5) + N(345) + N(5));
}

TEST_F(TandemFlank, AfterExpansionThatEndsInTheRepeatKeepsOneUnit) {
    gap = Bases(3, 300) + "ACG";
    edge2 = "TT" + Bases(2, 58);
    GrowAfter();
    const std::string seq = Run(360);
    EXPECT_TRUE(Logged("before expand length: -1\tafter expand length: 66\n"));
    EXPECT_EQ(seq, N(5) + N(347) + N(5) + "ACG");
    EXPECT_EQ(TRNum, 8);
}

TEST_F(TandemFlank, NothingPlacedIsOneCopyAtLeastAndNegativeStays) {
    TRNum = 2;
    Run(200);
    EXPECT_TRUE(Logged("total repeat time: 1\tbefore repeat time: 1\tafter repeat time: 1\n"));
    EXPECT_EQ(TRNum, 1);
    reads.clear();
    TRNum = 1;
    Run(200);
    EXPECT_EQ(TRNum, -1);
}

TEST_F(TandemFlank, FlanksThatFillTheGapStillHaveOneUnitOfNBetweenThem) {
    ReadLen = 4;
    EXPECT_EQ(Run(8), N(15));
    reads.clear();
    EXPECT_EQ(Run(15), N(15));
    reads.clear();
    EXPECT_EQ(Run(16), N(16));
    reads.clear();
    ReadLen = 2;
    EXPECT_EQ(Run(4), N(15));
}

TEST_F(TandemFlank, FlankBeyondTheGapIsCutWhereAnNStaysInIt) {
    ReadLen = 30;
    gap = Bases(3, 300);
    gap[50] = 'N';
    reads.push_back(ReadAt(Truth(), kEdge - 31, 100));
    reads.push_back(ReadAt(Truth(), kEdge - 40, 90));
    // Grown by 69 bases, the last 19 of them given back whole. The gap of 60 leaves 55 of them.
    EXPECT_EQ(Run(60), gap.substr(0, 55) + N(5) + N(5));
    EXPECT_TRUE(Logged("total repeat time: 9\tbefore repeat time: 0\tafter repeat time: 1\n"));
    EXPECT_EQ(TRNum, 9);
}

TEST_F(TandemFlank, AfterFlankBeyondTheGapIsCutWhereAnNStaysInIt) {
    ReadLen = 30;
    gap = Bases(3, 300);
    gap[249] = 'N';
    const int after = kEdge + 300;
    reads.push_back(ReadAt(Truth(), after + 31 - 100, 100));
    reads.push_back(ReadAt(Truth(), after + 40 - 90, 90));
    EXPECT_EQ(Run(60), N(5) + N(5) + Last(gap, 55));
    EXPECT_TRUE(Logged("total repeat time: 9\tbefore repeat time: 1\tafter repeat time: 0\n"));
}

}  // namespace
}  // namespace lintara
