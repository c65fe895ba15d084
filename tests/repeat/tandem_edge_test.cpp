#include "repeat/tandem_edge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "repeat/tag_table.h"
#include "repeat/tandem_sample.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Copies;
using testing::Last;
using testing::ReadAt;
using testing::TagTable;

/// One edge of 60 bases and a flank of 30 between it and the repeat. Two reads of 100 bases grow it by 69, of which 39
/// are repeat.
class EdgeTandem : public testing::ThreadStreamsTest {
  protected:
    std::string Before() { return before_TR_assemble(reads, table.tagInfo, unit, TRNum, table.freq, 0); }
    std::string After() { return after_TR_assemble(reads, table.tagInfo, unit, TRNum, table.freq, 0); }
    void BeforeReads(const std::string& gap) {
        reads = {Read(edge, -60), ReadAt(edge + gap, 29, 100), ReadAt(edge + gap, 20, 100), other};
    }
    void AfterReads(const std::string& gap) {
        const int size = static_cast<int>(gap.size());
        reads = {other, ReadAt(gap + edge, size - 69, 100), ReadAt(gap + edge, size - 60, 100), Read(edge, size)};
    }
    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }

    TagTable table;
    std::string edge = Bases(1, 60);
    std::string flank = Bases(3, 30);
    std::string repeat = Copies("ACGTT", 20);
    std::string unit = "ACGTT";
    Read other{Bases(9, 100), 0};
    std::vector<Read> reads;
    int TRNum = 20;
};
using BeforeTRAssemble = EdgeTandem;
using AfterTRAssemble = EdgeTandem;

// ---- before edge ----

TEST_F(BeforeTRAssemble, FlankThenNThenTheCopiesNotYetSeen) {
    BeforeReads(flank + repeat);
    // Seven whole copies stand in the expansion, and one is counted for the flank.
    EXPECT_EQ(Before(), flank + "NNNNN" + Copies("ACGTT", 12));
    EXPECT_EQ(TRNum, 12);
    EXPECT_EQ(Log(),
              "Start tandem repeat assembly for before block\n"
              "caculate the units set\n"
              "ACGTT\t20\n"
              "caculate first read overlap\n"
              "Forward min_overlap id: 1\tmin_overlap length: 31\n"
              "Value base read number 3\n"
              "same base number: 100\tcheck length: 100\n"
              "connect the sequence\n"
              "Added number: 12 last number: 8\n");
}

TEST_F(BeforeTRAssemble, CopiesArePhasedByTheEndOfTheEdge) {
    edge = Bases(1, 50) + "ACGTTACGTT" + "AC";
    reads = {Read(edge, -62), other};
    // The edge stops with GTTAC and holds two copies of it.
    EXPECT_EQ(Before(), "NNNNN" + Copies("GTTAC", 17));
    EXPECT_TRUE(Logged("ACGTT\t20\n"));
    EXPECT_TRUE(Logged("Added number: 17 last number: 3\n"));
}

TEST_F(BeforeTRAssemble, NothingGrownIsOneUnitOfNInFrontOfTheCopies) {
    reads = {Read(edge, -60), other, other};
    EXPECT_EQ(Before(), "NNNNN" + Copies("ACGTT", 19));
}

TEST_F(BeforeTRAssemble, FewerCopiesThanFoundWritesNone) {
    BeforeReads(flank + repeat);
    TRNum = 3;
    EXPECT_EQ(Before(), flank + "NNNNN");
    EXPECT_EQ(TRNum, -5);
    BeforeReads(flank + repeat);
    TRNum = 8;
    EXPECT_EQ(Before(), flank + "NNNNN");
    EXPECT_EQ(TRNum, 0);
}

TEST_F(BeforeTRAssemble, RepeatWordAcrossTheEdgeKeepsTheWholeExpansion) {
    edge = Bases(1, 59) + "A";
    const std::string gap = "CGTT" + Bases(3, 200);
    BeforeReads(gap);
    // The reach of 70 exceeds the 69 bases grown; the one copy is the word across the edge.
    EXPECT_EQ(Before(), gap.substr(0, 69) + "NNNNN" + Copies("ACGTT", 18));
}

TEST_F(BeforeTRAssemble, LastReadSeedsNothing) {
    BeforeReads(flank + repeat);
    reads.pop_back();
    EXPECT_EQ(Before(), "NNNNN" + Copies("ACGTT", 19));  // one read alone never lengthens an edge
    EXPECT_TRUE(Logged("Value base read number 2\n"));
}

TEST_F(BeforeTRAssemble, ReadInFrontOfTheEdgeIsCut) {
    BeforeReads(flank + repeat);
    reads[1].seq = Bases(5, 7) + edge + flank;
    Before();
    EXPECT_EQ(reads[1].seq, edge + flank);
}

// ---- after edge ----

TEST_F(AfterTRAssemble, CopiesNotYetSeenThenNThenTheFlank) {
    AfterReads(repeat + flank);
    const std::string seq = Copies("ACGTT", 12) + "NNNNN" + flank;
    EXPECT_EQ(After(), seq);
    EXPECT_EQ(TRNum, 12);
    EXPECT_EQ(Log(),
              "Start tandem repeat assembly for after block\n"
              "caculate the units set\n"
              "check tail \n"
              "ACGTT\t20\n"
              "caculate  last read overlap\n"
              "Reward find the min_overlap id: 1\t min_overlap length: 31\n"
              "Value base read number is: 3\n"
              "100\t100\n"
              "Added number: 12 last number: 8\n"
              "Final seq is: " +
                  seq + " size: 95\n");
}

TEST_F(AfterTRAssemble, CopiesOfTheEdgeAreCountedInTheUnitsOwnPhase) {
    edge = "TT" + Copies("ACGTT", 2) + Bases(1, 50);
    reads = {other, Read(edge, 0)};
    // Nothing is grown, so the flank is a copy itself; two copies of the edge and that one are not written again.
    EXPECT_EQ(After(), Copies("ACGTT", 17) + "ACGTT");
    EXPECT_TRUE(Logged("Added number: 17 last number: 3\n"));
}

TEST_F(AfterTRAssemble, NothingGrownIsACopyOfTheUnit) {
    reads = {other, other, Read(edge, 0)};
    EXPECT_EQ(After(), Copies("ACGTT", 19) + "ACGTT");
}

TEST_F(AfterTRAssemble, FewerCopiesThanFoundWritesNone) {
    AfterReads(repeat + flank);
    TRNum = 3;
    EXPECT_EQ(After(), "NNNNN" + flank);
    EXPECT_EQ(TRNum, -5);
}

TEST_F(AfterTRAssemble, CopyThatEndsInTheEdgeTakesAllBehindIt) {
    edge = "GTT" + Bases(1, 57);
    AfterReads(Bases(3, 200) + "AC");
    EXPECT_EQ(After(), Copies("ACGTT", 18) + "NNNNN" + edge.substr(3));
}

TEST_F(AfterTRAssemble, FirstReadSeedsNothing) {
    AfterReads(repeat + flank);
    reads.erase(reads.begin());
    EXPECT_EQ(After(), Copies("ACGTT", 19) + "ACGTT");
    EXPECT_TRUE(Logged("Value base read number is: 2\n"));
}

TEST_F(AfterTRAssemble, ReadBehindTheEdgeIsCut) {
    AfterReads(repeat + flank);
    reads[1].seq = flank + edge + Bases(5, 7);
    After();
    EXPECT_EQ(reads[1].seq, flank + edge);
}

}  // namespace
}  // namespace lintara
