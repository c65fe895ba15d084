#include "repeat/tandem_multi.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "repeat/tag_table.h"
#include "repeat/tandem_sample.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Copies;
using testing::Last;
using testing::ReadAt;
using testing::TagTable;

std::string N(int count) {
    return std::string(static_cast<std::size_t>(count), 'N');
}

/// A gap between two edges of 60 bases. Two reads of 100 at an edge grow it by 69.
class SolveMTRBlock : public testing::ThreadStreamsTest {
  protected:
    std::string Run(int gap_len) {
        reads.insert(reads.begin(), Read(edge1, -static_cast<int>(edge1.size())));
        reads.emplace_back(edge2, gap_len);
        return solve_MTR_block(reads, table.tagInfo, units, gap_len, type, realgaplen, 0);
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
    /// The same gap again, with nothing but its edges and what a test adds.
    void Clear() {
        reads.clear();
        units = {{"ACGTT", 3}, {"CGTGG", 2}};
    }
    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }

    TagTable table;
    std::map<std::string, int> units{{"ACGTT", 3}, {"CGTGG", 2}};
    std::string edge1 = Bases(1, 60);
    std::string edge2 = Bases(2, 60);
    std::string gap;
    std::vector<Read> reads;
    int type = 3;
    int realgaplen = 0;
};

const char* const kOrdinaryRoad = "Using TE to assemble the TR gap!\nthe read number is: 2\n";

TEST_F(SolveMTRBlock, EdgesAloneLeaveTheGapOpen) {
    EXPECT_EQ(Run(200), N(200));
    EXPECT_EQ(Log(),
              "Solve the Multi tandem repeat unit block\n"
              "caculate the units set\n"
              "repeat units: \n"
              "ACGTT\n"
              "CGTGG\n"
              "check contig edge \n"
              "before edge len: -1\tafter edge len: 4\n"
              "caculate first and last read overlap\n"
              "get the start and end\tlast_num1: 0\tlast num2 0\n"
              "before seq(Containing first read): " +
                  edge1 +
                  "\tsize: 60\n"
                  "Last unit is: \n"
                  "after seq: " +
                  edge2 +
                  "\tsize: 60\n"
                  "Last unit is: \t5\n"
                  "before expand length: -1\tafter expand length: -1\n"
                  "Get final sequence with before:  after: \n"
                  "TR unfull filled!\t200\n");
}

// ---- the ordinary road ----

TEST_F(SolveMTRBlock, LittleRepeatInTheEdgesOfAShortGapGoesTheOrdinaryRoad) {
    Run(199);
    EXPECT_TRUE(Logged(kOrdinaryRoad));
    // A run of 25 bases and a unit make 30.
    NewLog();
    Clear();
    edge1 = Bases(1, 35) + Copies("CGTGG", 5);
    Run(199);
    const std::string log = NewLog();
    EXPECT_NE(log.find("before edge len: 25\tafter edge len: 4\n"), std::string::npos);
    EXPECT_EQ(log.find("Using TE"), std::string::npos);
    Clear();
    edge1.pop_back();
    Run(199);
    EXPECT_TRUE(Logged("before edge len: 24\tafter edge len: 4\nUsing TE to assemble the TR gap!\n"));
}

TEST_F(SolveMTRBlock, UnitOfOneBaseGoesTheOrdinaryRoad) {
    units = {{"A", 30}};
    Run(1000);
    EXPECT_TRUE(Logged(kOrdinaryRoad));
}

TEST_F(SolveMTRBlock, GapOfOneAndAHalfUnitsGoesTheOrdinaryRoad) {
    // The edge shows enough of the repeat, so the size alone decides.
    const auto takes_ordinary_road = [this](const std::string& unit, int gap_len) {
        reads.clear();
        units = {{unit, 3}};
        edge1 = Bases(1, 30) + Copies(unit, 7);
        Run(gap_len);
        return NewLog().find(kOrdinaryRoad) != std::string::npos;
    };
    EXPECT_TRUE(takes_ordinary_road("ACGTTA", 9));
    EXPECT_FALSE(takes_ordinary_road("ACGTTA", 10));
    EXPECT_TRUE(takes_ordinary_road("ACGTT", 7));
    EXPECT_FALSE(takes_ordinary_road("ACGTT", 8));
}

TEST_F(SolveMTRBlock, NoUnitAtAllIsSafe) {
    units.clear();
    EXPECT_EQ(Run(200), N(200));
    EXPECT_TRUE(Logged("repeat units: \ncheck contig edge \nbefore edge len: -1\tafter edge len: -1\n"));
}

// ---- anchors ----

TEST_F(SolveMTRBlock, ReadAtTheBeforeEdgeIsNeitherCutNorAnchoredBehind) {
    const std::string left = Bases(5, 7);
    const std::string right = Bases(6, 9);
    gap = Bases(3, 20);
    edge1 = Bases(1, 40);
    edge2 = Bases(2, 45);
    ReadLen = 10;
    reads.emplace_back(left + Truth() + right, 0);
    Run(20);
    EXPECT_EQ(reads[1].seq, left + Truth() + right);
    EXPECT_TRUE(Logged("Forward min_overlap id: 1\tmin_overlap length: 40\n"));
    EXPECT_FALSE(Logged("Reward find the min_overlap id"));
}

TEST_F(SolveMTRBlock, ReadAtTheAfterEdgeAloneIsCutBehindIt) {
    gap = Bases(3, 300);
    reads.emplace_back(Last(gap, 40) + edge2 + Bases(6, 9), 0);
    Run(300);
    EXPECT_EQ(reads[1].seq, Last(gap, 40) + edge2);
    EXPECT_TRUE(Logged("Reward find the min_overlap id: 1\t min_overlap length: 60\n"));
}

// ---- joins ----

TEST_F(SolveMTRBlock, BothExpansionsMeet) {
    ReadLen = 50;
    gap = Bases(3, 110);
    GrowBefore();
    GrowAfter();
    EXPECT_EQ(Run(110), gap);  // a surplus of 28, a third of which is the shortest overlap
    EXPECT_TRUE(
        Logged("match 19 min 9\n"
               "Have overlap between before and after expand sequence, with overlap length: 28\n"));
    EXPECT_EQ(table.tagInfo, nullptr);
    EXPECT_TRUE(reads.empty());
    EXPECT_TRUE(units.empty());
}

TEST_F(SolveMTRBlock, ShortestOverlapIsTheGapAtMost) {
    ReadLen = 4;
    gap = Bases(3, 110);
    GrowBefore();
    GrowAfter();
    Run(12);
    EXPECT_TRUE(Logged("match 16 min 12\n"));  // and not 42
}

TEST_F(SolveMTRBlock, BeforeMeetsTheAfterEdge) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowBefore();
    EXPECT_EQ(Run(40), gap);
    EXPECT_TRUE(Logged("match with after edge: 10\nBefore seq have overlap with the last read\t10\t9\n"));
    EXPECT_NE(table.tagInfo, nullptr);
}

TEST_F(SolveMTRBlock, AfterMeetsTheBeforeEdge) {
    ReadLen = 20;
    gap = Bases(3, 50);
    GrowAfter();
    EXPECT_EQ(Run(40), gap);
    EXPECT_TRUE(
        Logged("match with before edge: 10\nHave overlap with the before edge 19\n"
               "After seq have overlap with the first read\t10\t9\n"));
}

TEST_F(SolveMTRBlock, OverlapOfRepeatOnlyIsRefused) {
    ReadLen = 50;
    const std::string flank1 = Bases(3, 30);
    const std::string flank2 = Bases(4, 30);
    gap = flank1 + Copies("ACGTT", 16) + flank2;
    GrowBefore();
    GrowAfter();
    const std::string seq = Run(126);
    EXPECT_TRUE(
        Logged("match 32 min 6\n"
               "Have overlap between before and after expand sequence, with overlap length: 38\n"
               "Failed to make sure the overlap\n"));
    // The right form looks for the empty phase, so the repeat in front of the after flank stays.
    EXPECT_TRUE(Logged("before expand length: 39\tafter expand length: 0\n"));
    EXPECT_EQ(seq, flank1 + N(27) + Last(gap, 69));
    EXPECT_NE(table.tagInfo, nullptr);
}

// ---- flanks ----

/// Two sides that do not belong together, each grown by 69 bases.
class MultiFlanks : public SolveMTRBlock {
  protected:
    void SetUp() override {
        SolveMTRBlock::SetUp();
        gap = Bases(3, 300);
    }
    std::string Fill(int gap_len) {
        Clear();
        ReadLen = 4;
        GrowBefore();
        GrowAfter();
        return Run(gap_len);
    }
    std::string Left(int count) const { return gap.substr(0, static_cast<std::size_t>(count)); }
};

TEST_F(MultiFlanks, ShorterThanTheGapHaveItsRestBetweenThem) {
    EXPECT_EQ(Fill(150), Left(69) + N(12) + Last(gap, 69));
    EXPECT_EQ(Fill(138), Left(69) + Last(gap, 69));
}

TEST_F(MultiFlanks, LongerThanTheGapAreCutAtTheBeforeFlankToLeaveOneN) {
    EXPECT_EQ(Fill(137), Left(67) + "N" + Last(gap, 69));
    EXPECT_EQ(Fill(100), Left(30) + "N" + Last(gap, 69));
    EXPECT_EQ(Fill(71), Left(1) + "N" + Last(gap, 69));
}

TEST_F(MultiFlanks, OneThatFillsTheGapButForOneBaseLeavesItOpen) {
    EXPECT_EQ(Fill(70), N(70));
    EXPECT_EQ(Fill(69), N(69));
}

TEST_F(MultiFlanks, BeyondTheGapAreTrimmedByAUnitFirst) {
    EXPECT_EQ(Fill(68), Left(4) + "N" + Last(gap, 63));
    EXPECT_EQ(Fill(60), Left(4) + "N" + Last(gap, 55));
    EXPECT_TRUE(Logged("Get final sequence with before: " + Left(55) + " after: " + Last(gap, 55) +
                       "\n"
                       "TR unfull filled!\t60\n"));
}

TEST_F(MultiFlanks, RepeatBehindTheFlankIsDropped) {
    const std::string flank = Bases(4, 30);
    gap = flank + "ACGTTCGTGG" + Copies("CGTGG", 3) + Bases(3, 300);
    GrowBefore();
    EXPECT_EQ(Run(300), flank + N(270));
    EXPECT_TRUE(Logged("before expand length: 39\tafter expand length: -1\n"));
}

TEST_F(MultiFlanks, WordAcrossTheEdgeKeepsTheWholeExpansion) {
    edge1 = Bases(1, 59) + "A";
    gap = "CGTT" + Bases(3, 300);
    GrowBefore();
    EXPECT_EQ(Run(300), Left(69) + N(231));
    EXPECT_TRUE(Logged("before expand length: 70\tafter expand length: -1\n"));
}

}  // namespace
}  // namespace lintara
