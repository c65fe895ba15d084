#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run/settings.h"
#include "strategy/fillgap.h"
#include "strategy/sample_bases.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::First;
using testing::Last;
using testing::RandomBases;
using testing::Repeat;

// A gap that is handed on has more reads here than the middle strategy takes, 120 a base; so it comes back as N with
// whatever the solvers would make of it. The reads that make up the number are single bases, which no block takes in.
const std::string kMiddle = "Treat the gap as middle size gap!\n";

class SmallGapTest : public testing::ThreadStreamsTest {
  protected:
    /// Runs the strategy on a gap with these reads, made up to `read_number` with single bases.
    std::string Fill(std::vector<std::string> sequences, int gap_length, std::size_t read_number) {
        sequences.resize(std::max(read_number, sequences.size()), "A");
        std::vector<int> position(sequences.size(), 0);
        Gap gap;
        gap.id = 4;
        gap.greadSum = static_cast<Len_t>(sequences.size());
        gap.reads = sequences.data();
        gap.position = position.data();
        gap.gap_length = gap_length;
        gap.before_contig_id = 0;
        realgaplen = 1;
        NewLog();
        return SmallGapAssemble(gap, contig1, contig2, realgaplen, 0);
    }
    std::string FillOrHandOn(const std::vector<std::string>& sequences, int gap_length) {
        return Fill(sequences, gap_length, static_cast<std::size_t>(120 * gap_length + 1));
    }
    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }
    std::string Spanning(int over1, const std::string& gap_part, int over2) const {
        return Last(contig1, over1) + gap_part + First(contig2, over2);
    }

    std::string contig1 = RandomBases(300, 41);
    std::string contig2 = RandomBases(300, 42);
    const std::string whole1 = contig1;
    const std::string whole2 = contig2;
    int realgaplen = 1;
};

TEST_F(SmallGapTest, MoreThanAThousandReadsABaseAreRefused) {
    EXPECT_EQ(Fill({}, 1, 1001), "N");
    EXPECT_EQ(NewLog(), "Too many reads for the gap.\t1001\t1\nOr the edge is too short: 300\t300\n");
    EXPECT_EQ(Fill({}, 1, 1000), "N");
    EXPECT_TRUE(Logged("Filling small gap using Small gap assemble\t1000\t2\t1\n"));
}

TEST_F(SmallGapTest, GapOfZeroWithReadsIsRefused) {
    EXPECT_EQ(Fill({}, 0, 1), "");
    EXPECT_EQ(NewLog(), "Too many reads for the gap.\t1\t0\nOr the edge is too short: 300\t300\n");
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SmallGapTest, ContigBelowContigLenIsRefused) {
    contig1 = First(whole1, 31);
    EXPECT_EQ(Fill({}, 3, 2), "NNN");
    EXPECT_EQ(NewLog(), "Too many reads for the gap.\t2\t3\nOr the edge is too short: 31\t300\n");
    contig1 = whole1;
    contig2 = First(whole2, 31);
    EXPECT_EQ(Fill({}, 3, 2), "NNN");
    EXPECT_EQ(NewLog(), "Too many reads for the gap.\t2\t3\nOr the edge is too short: 300\t31\n");
    contig1 = First(whole1, 32);
    contig2 = First(whole2, 32);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_TRUE(Logged("Filling small gap using Small gap assemble\t361\t2\t3\n"));
}

TEST_F(SmallGapTest, ReadsOfMinOverlapWithoutNAreGathered) {
    const std::string read = RandomBases(30, 43);
    EXPECT_EQ(FillOrHandOn({read, First(read, 29), First(read, 29) + "N", read + "n", read + "ac"}, 3), "NNN");
    EXPECT_TRUE(Logged("Filling small gap using Small gap assemble\t361\t4\t3\n"));
}

class SmallGapShortContig : public SmallGapTest {
  protected:
    const std::string message = "short contig is part of long contig, do not treat the gap!\n";
};

TEST_F(SmallGapShortContig, BeforeEdgeInsideTheAfterEdgeStopsTheGap) {
    contig2 = First(whole2, 101);
    contig1 = contig2.substr(20, 49);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog(), "Filling small gap using Small gap assemble\t361\t2\t3\n" + message);
    contig1 = contig2.substr(20, 50);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog().find(message), std::string::npos) << "50 bases are not short";
    contig2.pop_back();
    contig1 = contig2.substr(20, 49);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog().find(message), std::string::npos) << "100 bases are not long";
    contig2 = First(whole2, 101);
    contig1 = First(whole1, 49);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog().find(message), std::string::npos) << "not inside";
}

TEST_F(SmallGapShortContig, AfterEdgeInsideTheBeforeEdgeStopsTheGap) {
    contig1 = First(whole1, 101);
    contig2 = contig1.substr(20, 49);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog(), "Filling small gap using Small gap assemble\t361\t2\t3\n" + message);
    contig2 = contig1.substr(20, 50);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog().find(message), std::string::npos) << "50 bases are not short";
    contig1.pop_back();
    contig2 = contig1.substr(20, 49);
    EXPECT_EQ(FillOrHandOn({}, 3), "NNN");
    EXPECT_EQ(NewLog().find(message), std::string::npos) << "100 bases are not long";
}

class SmallGapOfOneN : public SmallGapTest {
  protected:
    /// A gap of one N with reads, none of which a block takes in.
    std::string FillOneN() { return FillOrHandOn({}, 1); }
};

TEST_F(SmallGapOfOneN, OverlappingEdgesAreJoined) {
    contig2 = Last(whole1, 50) + whole2;
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(realgaplen, -50);
    EXPECT_EQ(contig1, First(whole1, 250));
    EXPECT_EQ(contig2, Last(whole1, 50) + whole2);
    EXPECT_EQ(NewLog(),
              "Filling small gap using Small gap assemble\t121\t2\t1\n"
              "One N gap check, 200\t200\n"
              "MinusOneNGap with check read number: 0\n");
}

TEST_F(SmallGapOfOneN, EdgesAreCutToEqualLength) {
    contig1 = First(whole1, 150);
    contig2 = Last(contig1, 50) + whole2;
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(realgaplen, -50);
    EXPECT_TRUE(Logged("One N gap check, 150\t150\n"));
    contig1 = whole1;
    contig2 = Last(contig1, 50) + First(whole2, 70);
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(realgaplen, -50);
    EXPECT_TRUE(Logged("One N gap check, 120\t120\n"));
}

TEST_F(SmallGapOfOneN, ContainedContigIsCleared) {
    contig2 = Last(whole1, 60);
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(contig2, "");
    EXPECT_EQ(contig1, whole1);
    EXPECT_EQ(realgaplen, 0);
    EXPECT_TRUE(Logged("One N gap check, 60\t60\nAfter edge is included in before edge!\n"));
    contig2 = whole2;
    contig1 = First(whole2, 60);
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(contig1, "");
    EXPECT_EQ(contig2, whole2);
    EXPECT_EQ(realgaplen, 0);
    EXPECT_TRUE(Logged("One N gap check, 60\t60\nBefore edge is included in after edge!\n"));
    contig1 = contig2 = First(whole1, 60);
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(contig2, "") << "of equal contigs the after one goes";
    EXPECT_EQ(contig1, First(whole1, 60));
}

TEST_F(SmallGapOfOneN, EdgesThatContainEachOtherAreCutAnew) {
    // The after edge is the last 199 bases of the before edge's end with one base more in its middle: the 200 bases of
    // both edges align from their first ones on, and with 201 the before edge starts one base earlier.
    const std::string end = Last(whole1, 200);
    contig2 = First(end, 100) + (end[100] == 'A' || end[99] == 'A' ? "C" : "A") + Last(end, 100) + whole2;
    ASSERT_NE(contig2[100], end[99]);
    EXPECT_EQ(FillOneN(), "");
    EXPECT_EQ(realgaplen, -200);
    EXPECT_EQ(contig1, First(whole1, 100));
    EXPECT_TRUE(Logged("One N gap check, 200\t200\nMinusOneNGap with check read number: 0\n"));
}

TEST_F(SmallGapOfOneN, EqualEdgesStayOpen) {
    contig2 = Last(whole1, 200) + whole2;
    EXPECT_EQ(FillOneN(), "N");
    EXPECT_EQ(contig1, whole1);
    EXPECT_EQ(realgaplen, 1);
    EXPECT_TRUE(Logged("One N gap check, 200\t200\nTry to get the accurate gap size using read number: 2\t1\n"));
}

TEST_F(SmallGapOfOneN, OtherEdgesGoOnToTheReads) {
    EXPECT_EQ(FillOneN(), "N");
    EXPECT_EQ(NewLog(),
              "Filling small gap using Small gap assemble\t121\t2\t1\n"
              "One N gap check, 200\t200\n"
              "Try to get the accurate gap size using read number: 2\t1\n"
              "Too few long read for the small gap, try to use middle method\n"
              "Get the gap size -1000\tsupport read number: 0\n" +
                  kMiddle + "Too Many reads for gap4\t121\t1\n");
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SmallGapOfOneN, PairWithoutNStays) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GT", 40), Spanning(50, "GT", 45)}, 1), "GT");
}

class SmallMinusGap : public SmallGapTest {
  protected:
    void SetUp() override {
        SmallGapTest::SetUp();
        contig2 = Last(whole1, 5) + whole2;
        joined2 = contig2;
    }
    /// Reads that run over the five shared bases, each beginning somewhere else.
    std::vector<std::string> Over(int number) const {
        std::vector<std::string> reads;
        for (int i = 0; i < number; ++i) reads.push_back(Last(whole1, 40 + i) + First(whole2, 40));
        return reads;
    }
    /// Reads that hold the last or first 13 bases of an edge twice, so that the overlap looks like a repeat.
    std::vector<std::string> Repeats() const {
        const std::string part1 = Last(whole1, 13);
        const std::string part2 = First(joined2, 13);
        return {RandomBases(10, 51) + part1 + "ACCA" + part1 + RandomBases(10, 52),
                RandomBases(10, 53) + part2 + "ACCA" + part2 + RandomBases(10, 54)};
    }

    std::string joined2;
};

TEST_F(SmallMinusGap, ThreeReadsCutTheBeforeContig) {
    EXPECT_EQ(FillOrHandOn(Over(3), 3), "");
    EXPECT_EQ(realgaplen, -5);
    EXPECT_EQ(contig1, First(whole1, 295));
    EXPECT_EQ(contig2, joined2);
    EXPECT_TRUE(
        Logged("Get the gap size -5\tsupport read number: 3\nThe gap size is minus -5\nCut the before contig "
               "edge!\n"));
    EXPECT_FALSE(Logged(kMiddle));
}

TEST_F(SmallMinusGap, TwoReadsHandTheGapOn) {
    EXPECT_EQ(FillOrHandOn(Over(2), 3), "NNN");
    EXPECT_EQ(contig1, whole1);
    EXPECT_TRUE(Logged("Get the gap size -5\tsupport read number: 2\nThe gap size is minus -5\n" + kMiddle));
}

TEST_F(SmallMinusGap, RepeatsHandTheGapOnWithUpToNineReads) {
    std::vector<std::string> reads = Over(9);
    for (const std::string& read : Repeats()) reads.push_back(read);
    EXPECT_EQ(FillOrHandOn(reads, 3), "NNN");
    EXPECT_EQ(contig1, whole1);
    EXPECT_TRUE(Logged("Get the gap size -5\tsupport read number: 9\nThe gap size is minus -5\n" + kMiddle));
}

TEST_F(SmallMinusGap, TenReadsAreBelievedDespiteRepeats) {
    std::vector<std::string> reads = Over(10);
    for (const std::string& read : Repeats()) reads.push_back(read);
    EXPECT_EQ(FillOrHandOn(reads, 3), "");
    EXPECT_EQ(realgaplen, -5);
    EXPECT_EQ(contig1, First(whole1, 295));
    EXPECT_TRUE(
        Logged("Get the gap size -5\tsupport read number: 10\nThe gap size is minus -5\nCut the before contig "
               "edge!\n"));
}

TEST_F(SmallMinusGap, ContigBelowAHundredBasesStaysOpen) {
    contig1 = Last(whole1, 99);
    EXPECT_EQ(FillOrHandOn(Over(3), 3), "NNN");
    EXPECT_EQ(contig1, Last(whole1, 99));
    EXPECT_EQ(realgaplen, 1);
    EXPECT_TRUE(Logged("The gap size is minus -5\nOne edge contig is too short and the same as part of the other!\n"));
    EXPECT_FALSE(Logged(kMiddle));
    contig1 = Last(whole1, 100);
    EXPECT_EQ(FillOrHandOn(Over(3), 3), "");
    EXPECT_EQ(contig1, First(Last(whole1, 100), 95));
    contig1 = whole1;
    contig2 = First(joined2, 99);
    EXPECT_EQ(FillOrHandOn(Over(3), 3), "NNN");
    EXPECT_NE(NewLog().find("One edge contig is too short and the same as part of the other!\n"), std::string::npos);
    EXPECT_EQ(contig1, whole1);
    contig2 = First(joined2, 100);
    EXPECT_EQ(FillOrHandOn(Over(3), 3), "");
}

TEST_F(SmallMinusGap, OverlapOfAWholeContigIsARepeat) {
    const std::string log = "Get the gap size -60\tsupport read number: 1\nThe gap size is minus -60\ncontig repeat!\n";
    contig1 = First(whole2, 60);
    contig2 = First(whole2, 90);
    EXPECT_EQ(FillOrHandOn({First(whole2, 110)}, 3), "NNN");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_EQ(contig1, First(whole2, 60));
    const std::string log1 = NewLog();
    EXPECT_EQ(log1.substr(log1.size() - log.size()), log);
    contig1 = Last(whole1, 90);
    contig2 = Last(whole1, 60);
    EXPECT_EQ(FillOrHandOn({Last(whole1, 110)}, 3), "NNN");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_EQ(contig1, Last(whole1, 90));
    const std::string log2 = NewLog();
    EXPECT_EQ(log2.substr(log2.size() - log.size()), log);
}

class SmallZeroGap : public SmallGapTest {};

TEST_F(SmallZeroGap, OneReadIsNotEnough) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "", 45)}, 3), "NNN");
    EXPECT_TRUE(Logged("Get the gap size 0\tsupport read number: 1\n" + kMiddle));
}

TEST_F(SmallZeroGap, OneReadThatMaySlideIsEnough) {
    // The unit that ends the before contig eight times begins the after contig once more.
    const std::string unit = "ACGGT";
    contig1 += Repeat(unit, 8);
    contig2 = unit + contig2;
    EXPECT_EQ(FillOrHandOn({Spanning(40, "", 45)}, 3), "");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_TRUE(Logged("Using before pattern: " + Repeat(unit, 8) + "\n"));
    const std::string log = NewLog();
    const std::string end = "Get the gap size 0\tsupport read number: 1\n";
    EXPECT_EQ(log.substr(log.size() - end.size()), end) << "nothing else is looked at";
}

TEST_F(SmallZeroGap, TwoReadsMustPassTheCrossCheck) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "", 45), Spanning(50, "", 40)}, 3), "");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_TRUE(Logged("Get the gap size 0\tsupport read number: 2\npass: " + Spanning(40, "", 45) + "\n"));
    const std::string doubled = RandomBases(5, 61) + Last(contig1, 36) + "ACA" + Last(contig1, 36) + RandomBases(5, 62);
    EXPECT_EQ(FillOrHandOn({Spanning(35, "", 45), Spanning(36, "", 40), doubled}, 3), "NNN");
    EXPECT_TRUE(Logged(
        "Get the gap size 0\tsupport read number: 2\nFail to Pass Cross check, use middle gap assemble\n" + kMiddle));
}

class SmallSpannedGap : public SmallGapTest {};

TEST_F(SmallSpannedGap, OneReadFillsAGapOfThree) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GTA", 45)}, 5), "GTA");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_FALSE(Logged(kMiddle));
}

TEST_F(SmallSpannedGap, OneReadWithoutSupportHandsTheGapOn) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GTACCGATAG", 45)}, 5), "NNNNN");
    EXPECT_TRUE(Logged("pass: "));
    EXPECT_TRUE(Logged("\tread num: 3\n" + kMiddle));
}

TEST_F(SmallSpannedGap, TwoReadsGiveTheFirst) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GTAC", 45), Spanning(45, "GTCC", 40)}, 5), "GTAC");
    EXPECT_TRUE(Logged("unsame base: 2 A C\n"));
}

TEST_F(SmallSpannedGap, ThreeReadsVote) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GTAC", 45), Spanning(45, "GTCC", 40), Spanning(50, "GTCC", 40)}, 5), "GTCC");
    EXPECT_EQ(Snp(),
              "200\t0\t0\t3\t0\tG\t3\t1\n"
              "201\t0\t0\t0\t3\tT\t3\t1\n"
              "202\t1\t2\t0\t0\tC\t3\t0.666667\n"
              "203\t0\t3\t0\t0\tC\t3\t1\n");
}

TEST_F(SmallSpannedGap, LowerCaseContigsAndReadsOutsideTheGapAreAsGood) {
    const std::string read = Spanning(40, "GTA", 45);
    for (char& c : contig1) c = static_cast<char>(c + ('a' - 'A'));
    EXPECT_EQ(FillOrHandOn({read, RandomBases(80, 71)}, 5), "GTA");
}

TEST_F(SmallSpannedGap, UndecidedSizeHandsTheGapOn) {
    EXPECT_EQ(FillOrHandOn({Spanning(40, "GTACCG", 45), Spanning(45, "GTC", 40)}, 5), "NNNNN");
    EXPECT_TRUE(Logged("Get the gap size -1000\tsupport read number: 0\n" + kMiddle));
}

}  // namespace
}  // namespace lintara
