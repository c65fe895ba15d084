#include <gtest/gtest.h>

#include "strategy/block_gap.h"
#include "strategy/fillgap.h"

namespace lintara {
namespace {

using testing::GapBases;
using testing::Genome;
using testing::Last;
using testing::RandomBases;
using testing::Repeat;

class MiddleGapTest : public testing::BlockGapTest {
  protected:
    std::string Fill(int gap_length) {
        Gap gap = MakeGap(gap_length);
        NewLog();
        const std::string seq = MiddleGapAssemble(gap, contig1, contig2, realgaplen, 0);
        log = NewLog();
        return seq;
    }
    bool Refused(int gap_length) {
        return log == "Treat the gap as middle size gap!\nToo Many reads for gap4\t" + std::to_string(reads.size()) +
                          "\t" + std::to_string(gap_length) + "\n";
    }

    int realgaplen = 1;
};

class MiddleGapAdmission : public MiddleGapTest {};
class MiddleGapBlock : public MiddleGapTest {};
class MiddleGapRoad : public MiddleGapTest {};
class MiddleGapMinus : public MiddleGapTest {};

// ---- admission -----------------------------------------------------------------------------------------------------

TEST_F(MiddleGapAdmission, TwoThousandReadsAtMost) {
    SetGapLength(1400);
    AddSingleBases(2000);
    EXPECT_EQ(Fill(1400), Ns(1400));
    EXPECT_TRUE(Logged("gap read num: 2000\tusing read num: 2\n"));
    AddSingleBases(1);
    EXPECT_EQ(Fill(1400), Ns(1400));
    EXPECT_TRUE(Refused(1400)) << log;
}

TEST_F(MiddleGapAdmission, HundredAndTwentyReadsABaseAtMost) {
    SetGapLength(10);
    AddSingleBases(1200);
    Fill(10);
    EXPECT_TRUE(Logged("gap read num: 1200\tusing read num: 2\n"));
    AddSingleBases(1);
    EXPECT_EQ(Fill(10), Ns(10));
    EXPECT_TRUE(Refused(10)) << log;
}

TEST_F(MiddleGapAdmission, ContigsOfContigLenAtLeast) {
    const std::string whole1 = Genome(0, 400);
    const std::string whole2 = GapBases(300, 700);
    AddTrue({100});
    contig1 = Last(whole1, 31);
    contig2 = whole2;
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_TRUE(Refused(300)) << log;
    contig1 = whole1;
    contig2 = whole2.substr(0, 31);
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_TRUE(Refused(300)) << log;
    contig1 = Last(whole1, 32);
    contig2 = whole2.substr(0, 32);
    Fill(300);
    EXPECT_TRUE(Logged("gap read num: 1\tusing read num: 3\n"));
}

TEST_F(MiddleGapAdmission, NoBlockHoldsMoreReadsThanSixteenBitsCount) {
    // Read numbers are kept in 16 bits. The strategies that assemble blocks refuse such numbers of reads; the small
    // one, which takes them in, builds no block itself.
    SetGapLength(1400);
    AddSingleBases(65536);
    EXPECT_EQ(Fill(1400), Ns(1400));
    EXPECT_TRUE(Refused(1400));

    Gap gap = MakeGap(1400);
    EXPECT_EQ(BigGapAssemble(gap, contig1, contig2, 0), Ns(1400));
    EXPECT_EQ(NewLog(), "Treat as big size gap \nToo Many reads for the gap4\t65536\t1400\n");

    gap.gap_length = 100;
    EXPECT_EQ(SmallGapAssemble(gap, contig1, contig2, realgaplen, 0), Ns(100));
    log = NewLog();
    EXPECT_TRUE(Logged("Treat the gap as middle size gap!\nToo Many reads for gap4\t65536\t100\n"));
    EXPECT_FALSE(Logged("the read number is: "));
}

// ---- the block -----------------------------------------------------------------------------------------------------

TEST_F(MiddleGapBlock, HoldsEdgesAndAcceptedReads) {
    SetGapLength(300);
    contig2.resize(150);
    contig1[399] = 'n';
    contig1[398] = 'a';
    contig1[397] = 'R';
    const std::string read = GapBases(100, 131);
    Add(read, 100);                // 31 bases
    Add(read.substr(0, 30), 100);  // of exactly Min_overlap bases
    Add(read + "N", 100);
    Add(read + "n", 100);
    Add(read + "R", 100);
    Add(RandomBases(40, 5) + "acgt", 20);  // either case
    EXPECT_EQ(Fill(300), Ns(300));
    // Whatever is no base counts as A in an edge.
    EXPECT_EQ(log.substr(0, log.find("get kmer finished!\n")),
              "Treat the gap as middle size gap!\n"
              "gap read num: 6\tusing read num: 4\n"
              "Before contig edge: " +
                  Genome(200, 397) +
                  "AAA\t200\t400\n"
                  "After  contig edge: " +
                  GapBases(300, 450) + "\t150\t150\n");
    EXPECT_TRUE(Logged("the read number is: 4\n"));
    EXPECT_EQ(contig1.substr(397), "Ran") << "the contigs are left alone";
}

TEST_F(MiddleGapBlock, ContigOfTwoReadLengthsIsAWholeEdge) {
    ReadLen = 60;
    SetGapLength(300);
    contig1 = Last(contig1, 120);
    contig2.resize(121);
    AddTrue({100});
    Fill(300);
    EXPECT_TRUE(LoggedInOrder({"Before contig edge: " + Genome(280, 400) + "\t120\t120\n",
                               "After  contig edge: " + GapBases(300, 420) + "\t120\t121\n"}));
}

TEST_F(MiddleGapBlock, EdgesAloneAreSolvedAsWell) {
    SetGapLength(300);
    AddSingleBases(3);
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_TRUE(LoggedInOrder({"gap read num: 3\tusing read num: 2\n", "get kmer finished!\n",
                               "Starting to fill gaps of TE type\nthe read number is: 2\n",
                               "starting to solve the gap and its matrix\n"}));
}

// ---- which solver --------------------------------------------------------------------------------------------------

TEST_F(MiddleGapRoad, ReadsWithoutARepeatGoTheOrdinaryRoad) {
    SetGapLength(300);
    AddTile(-90, 290);
    EXPECT_EQ(Fill(300), GapBases(0, 300));
    EXPECT_TRUE(LoggedInOrder(
        {"gap read num: 39\tusing read num: 41\n", "Starting to fill gaps of TE type\n", "the read number is: 41\n"}));
    EXPECT_FALSE(Logged("ERGAP"));
    EXPECT_EQ(realgaplen, 1);
    EXPECT_EQ(contig1, Genome(0, 400));
}

TEST_F(MiddleGapRoad, EdgeWithoutReadsIsAnErrorGap) {
    SetGapLength(300);
    AddTrue({100});
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_TRUE(LogEndsWith("gap4\t300\tERGAP\n")) << log;
}

/// One read with a run in it: its flanks show once, so that the copy number follows from the run alone.
std::string RunOf(const std::string& run) {
    return "CTGATCTGCC" + run + "GGTCATTGCG";
}

class MiddleGapRepeat : public MiddleGapRoad {
  protected:
    /// Runs a gap with one read. @return whether the repeat solver was taken
    bool RebuildsRepeat(const std::string& read, int gap_length) {
        SetGapLength(500);
        reads.clear();
        position.clear();
        Add(read, 20);
        realgaplen = 1;
        Fill(gap_length);
        EXPECT_TRUE(LoggedInOrder({"TR sequence: ", "Starting to fill gap of TR type\t1\nfind the type "}));
        EXPECT_FALSE(Logged("TE type"));
        return Logged("gap4\t" + std::to_string(gap_length) + "\tTRGAP\n");
    }
};

TEST_F(MiddleGapRepeat, RunOfOneBaseMustBeAsLongAsARead) {
    // A run of m bases holds m - 5 tags, and each tag spans 6 copies: m + 1.
    EXPECT_FALSE(RebuildsRepeat(RunOf(Repeat("A", 98)), 500));
    EXPECT_TRUE(Logged("find the type 1\trepeat time: 99\trepeat unit: A\n"));
    EXPECT_TRUE(RebuildsRepeat(RunOf(Repeat("A", 99)), 500));
    EXPECT_TRUE(Logged("find the type 1\trepeat time: 100\trepeat unit: A\n"));
}

TEST_F(MiddleGapRepeat, RepeatOfThirtyBasesGoesTheOrdinaryRoad) {
    // k copies of a pair hold k - 2 of its tags, and each tag spans 3 copies: k + 1.
    EXPECT_FALSE(RebuildsRepeat(RunOf(Repeat("GT", 14)), 500));
    EXPECT_TRUE(LoggedInOrder({"find the type 2\trepeat time: 15\trepeat unit: GT\nthe read number is: 3\n"}));
    EXPECT_TRUE(RebuildsRepeat(RunOf(Repeat("GT", 15)), 500));
    EXPECT_TRUE(Logged("find the type 2\trepeat time: 16\trepeat unit: GT\n"));
}

TEST_F(MiddleGapRepeat, LongUnitOfFewCopiesThatOverfillsTheGapGoesTheOrdinaryRoad) {
    // Two copies and 5 bases of a unit of 51: two of each tag, and one copy for the tags' span.
    const std::string unit = "A" + RandomBases(49, 60) + "A";
    const std::string read = RunOf(unit + unit + unit.substr(0, 5));
    EXPECT_FALSE(RebuildsRepeat(read, 152));
    EXPECT_TRUE(Logged("find the type 51\trepeat time: 3\t")) << log;
    EXPECT_TRUE(RebuildsRepeat(read, 153)) << "153 bases do not overfill it";
    ReadLen = 102;
    EXPECT_TRUE(RebuildsRepeat(read, 152)) << "two units fit into a read";
}

TEST_F(MiddleGapRepeat, LongUnitOfFourCopiesIsRebuilt) {
    const std::string unit = "A" + RandomBases(49, 60) + "A";
    EXPECT_TRUE(RebuildsRepeat(RunOf(unit + unit + unit + unit.substr(0, 5)), 152));
    EXPECT_TRUE(Logged("find the type 51\trepeat time: 4\t")) << log;
}

TEST_F(MiddleGapRepeat, RepeatWithoutFlanksGoesTheOrdinaryRoad) {
    // There is a unit length, and no unit.
    SetGapLength(500);
    Add(Repeat("A", 100), 20);
    EXPECT_EQ(Fill(500), Ns(500));
    EXPECT_TRUE(LoggedInOrder({"There is only a single TR unit.\n", "Starting to fill gaps of TE type\n"}));
    EXPECT_FALSE(Logged("Starting to fill gap of TR type"));
}

// ---- gaps of negative size -----------------------------------------------------------------------------------------

TEST_F(MiddleGapMinus, OverlapOfTheEdgesIsCutFromTheBeforeContig) {
    contig1 = Genome(0, 400);
    contig2 = Genome(360, 700);
    AddSingleBases(1);
    EXPECT_EQ(Fill(5), "");
    EXPECT_EQ(realgaplen, -40);
    EXPECT_EQ(contig1, Genome(0, 360));
    EXPECT_EQ(contig2, Genome(360, 700));
    EXPECT_TRUE(LogEndsWith("the gap size is minus -40\nCut contig edge for the minus gap!\n")) << log;
}

TEST_F(MiddleGapMinus, TextThatComesWithItIsDropped) {
    // A read joins edges that overlap by 10 bases; the solver hands these back as N.
    contig1 = Genome(0, 400);
    contig2 = Genome(390, 700);
    Add(Genome(340, 440), -60);
    EXPECT_EQ(Fill(5), "");
    EXPECT_EQ(realgaplen, -10);
    EXPECT_EQ(contig1, Genome(0, 390));
}

TEST_F(MiddleGapMinus, ContigIsCutToNothingAtMost) {
    SetGapLength(300);
    AddTrue({100});
    realgaplen = -400;  // the caller's word stands when the solver says nothing
    EXPECT_EQ(Fill(300), "");
    EXPECT_EQ(contig1, "");
    EXPECT_EQ(realgaplen, -400);
    EXPECT_TRUE(LogEndsWith("gap4\t300\tERGAP\nCut contig edge for the minus gap!\n")) << log;

    SetGapLength(300);
    realgaplen = -401;
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_EQ(contig1, Genome(0, 400));
    EXPECT_EQ(realgaplen, -401);
    EXPECT_TRUE(LogEndsWith("gap4\t300\tERGAP\n")) << log;
}

TEST_F(MiddleGapMinus, ZeroIsNoMinusGap) {
    SetGapLength(300);
    AddTrue({100});
    realgaplen = 0;
    EXPECT_EQ(Fill(300), Ns(300));
    EXPECT_EQ(contig1, Genome(0, 400));
}

}  // namespace
}  // namespace lintara
