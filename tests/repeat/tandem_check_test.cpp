#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "repeat/tandem_block.h"
#include "repeat/tandem_multi.h"
#include "repeat/tandem_piece.h"

namespace lintara {
namespace {

using Units = std::set<std::string>;

Units RotationsOf(const std::string& unit) {
    Units units;
    tandem::AddRotations(unit, units);
    return units;
}

class TailCheck : public ::testing::Test {
  protected:
    Units units{"ACG", "CGA", "GAC"};
    int num = 0;
    std::string last_unit;
};
using UnitCheck = TailCheck;
using MultiTailCheck = TailCheck;

TEST(AddRotations, AllRotationsOfAUnitOnce) {
    EXPECT_EQ(RotationsOf("ACG"), (Units{"ACG", "CGA", "GAC"}));
    EXPECT_EQ(RotationsOf("ACAC"), (Units{"ACAC", "CACA"}));
    EXPECT_EQ(RotationsOf(""), Units{});
}

TEST(AddRotations, HomopolymerGivesOneWord) {
    EXPECT_EQ(RotationsOf("AAA"), Units{"AAA"});
    EXPECT_EQ(RotationsOf("T"), Units{"T"});
}

// ---- run at the end ----

TEST_F(TailCheck, RunAtTheEndIsMeasuredInBasesAndItsLastPhaseCounted) {
    std::string seq = "TTTTACGACGA";
    EXPECT_EQ(tail_check(seq, units, 3, num, last_unit), 7);
    EXPECT_EQ(last_unit, "CGA");
    EXPECT_EQ(num, 2);
}

TEST_F(TailCheck, WordAtTheVeryStartIsNotPartOfTheRunAtTheEnd) {
    std::string seq = "ACGACG";
    EXPECT_EQ(tail_check(seq, units, 3, num, last_unit), 5);
    EXPECT_EQ(last_unit, "ACG");
    EXPECT_EQ(num, 1);
}

TEST_F(TailCheck, EndThatIsNoRepeatWordLeavesThePhaseAlone) {
    last_unit = "kept";
    for (std::string seq : {"ACGACGT", "AC", "ACG", ""}) {
        num = 5;
        EXPECT_EQ(tail_check(seq, units, 3, num, last_unit), -1) << seq;
        EXPECT_EQ(num, 0) << seq;
    }
    EXPECT_EQ(last_unit, "kept");
}

// ---- run at the start ----

TEST_F(TailCheck, RunAtTheStartEndsWithItsLastCopyOfThePhase) {
    std::string seq = "GACGACTTTT";
    last_unit = "ACG";
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), 4);
    EXPECT_EQ(num, 1);
    last_unit = "GAC";
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), 6);
    EXPECT_EQ(num, 2);
}

TEST_F(TailCheck, LastWordOfTheSequenceIsNotPartOfTheRunAtTheStart) {
    std::string seq = "ACGACG";
    last_unit = "ACG";
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), 3);
    EXPECT_EQ(num, 1);
}

TEST_F(TailCheck, StartWithoutTheCopyGivesNone) {
    last_unit = "ACG";
    num = 7;
    std::string seq = "TTTACG";
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), -1);
    EXPECT_EQ(num, 0);
    seq = "CGATTTT";  // a repeat word, but not of the phase
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), -1);
    num = 7;
    seq = "AC";
    EXPECT_EQ(tail_check(units, seq, 3, num, last_unit), -1);
    EXPECT_EQ(num, 7);
}

// ---- expansions ----

TEST_F(TailCheck, LeftFormReachesFromTheFirstRepeatWordToTheEnd) {
    std::string before = "TTTTTGTACGAC";
    num = 5;
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 5), 5);
    EXPECT_EQ(num, 6);
    EXPECT_EQ(tail_check(before, units, 3, num, "", 5), 5);
    EXPECT_EQ(num, 6);
}

TEST_F(TailCheck, LeftFormTakesAWordAcrossTheEdge) {
    std::string before = "TTTACGT";
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 5), 4);
    EXPECT_EQ(num, 1);
    // One base further left the word lies in the edge wholly.
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 6), 0);
}

TEST_F(TailCheck, LeftFormPassesPlacesInFrontOfTheSequence) {
    std::string before = "ACGT";
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 0), 4);
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 1), 4);
    EXPECT_EQ(num, 2);
    before = "AC";
    EXPECT_EQ(tail_check(before, units, 3, num, "ACG", 1), 0);
}

TEST_F(TailCheck, RightFormReachesToTheEndOfTheLastCopy) {
    std::string after = "TTACGTTT";
    num = 5;
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 3), 5);
    EXPECT_EQ(num, 6);
    after = "ACGACGTTT";
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 3), 6);
    EXPECT_EQ(num, 8);
}

TEST_F(TailCheck, RightFormLooksForThePhaseAndNotForAnyRepeatWord) {
    std::string after = "TTCGATTT";
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 3), 0);
    EXPECT_EQ(num, 0);
    Units none;
    EXPECT_EQ(tail_check(none, after, 3, num, "CGA", 3), 5);
}

TEST_F(TailCheck, RightFormStartsInTheExpansionAndMayEndInTheEdge) {
    std::string after = "TTACGTTT";
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 5), 5);
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 6), 0);
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 8), 0);
    EXPECT_EQ(tail_check(units, after, 3, num, "ACG", 9), 0);
}

TEST_F(TailCheck, UnknownPhaseBecomesTheLastRepeatWordAndDoesNotCountItself) {
    std::string after = "CGATCGATTT";
    EXPECT_EQ(tail_checknolast(units, after, 3, num, last_unit, 3), 7);
    EXPECT_EQ(last_unit, "CGA");
    EXPECT_EQ(num, 1);
}

TEST_F(TailCheck, KnownPhaseIsKeptAndAnyRepeatWordStillSetsTheReach) {
    std::string after = "ACGTCGATTT";
    last_unit = "ACG";
    EXPECT_EQ(tail_checknolast(units, after, 3, num, last_unit, 3), 7);
    EXPECT_EQ(last_unit, "ACG");
    EXPECT_EQ(num, 1);
}

TEST_F(TailCheck, UnknownPhaseGivesUpTheUnitThatEndsInTheEdge) {
    std::string after = "TTCGATTT";
    EXPECT_EQ(tail_checknolast(units, after, 3, num, last_unit, 3), 5);
    EXPECT_EQ(tail_checknolast(units, after, 3, num, last_unit, 4), 2);
}

// ---- more than repeat ----

TEST_F(UnitCheck, LastWordIsNotTested) {
    std::string seq = "ACGACGT";
    EXPECT_EQ(Unit_check(seq, units, 3), 0);
    seq = "ACGACGTA";
    EXPECT_EQ(Unit_check(seq, units, 3), 1);
}

TEST_F(UnitCheck, RepeatOfAnyLengthIsNoMore) {
    std::string seq;
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(Unit_check(seq, units, 3), 0) << i;
        seq += "ACG"[i % 3];
    }
    seq[17] = 'T';
    EXPECT_EQ(Unit_check(seq, units, 3), 1);
}

// ---- several units ----

TEST_F(MultiTailCheck, LeftEndScan) {
    std::string seq = "TTTTACGACGA";
    EXPECT_EQ(Multi_tail_check(seq, units, 3), 7);
    seq = "ACGACG";
    EXPECT_EQ(Multi_tail_check(seq, units, 3), 5);
    for (std::string none : {"ACGT", "AC", "ACG", ""}) EXPECT_EQ(Multi_tail_check(none, units, 3), -1) << none;
}

TEST_F(MultiTailCheck, LeftLimitStopsTheScanAtItsPlace) {
    std::string seq = "TTTTACGACGA";
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 4), 6);
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 5), 5);
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 7), 3);
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 8), -1);
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 0), 7);
    seq = "AC";
    EXPECT_EQ(Multi_tail_check(seq, units, 3, 0), -1);
}

TEST_F(MultiTailCheck, RightEndScan) {
    std::string seq = "GACGACTTTT";
    EXPECT_EQ(Multi_tail_check(units, seq, 3), 6);
    seq = "ACGACG";
    EXPECT_EQ(Multi_tail_check(units, seq, 3), 5);
    // No repeat word at the start is a run of less than a unit, unlike at the left.
    seq = "TTTACG";
    EXPECT_EQ(Multi_tail_check(units, seq, 3), 2);
    seq = "AC";
    EXPECT_EQ(Multi_tail_check(units, seq, 3), -1);
}

TEST_F(MultiTailCheck, RightLimitStopsTheScanInFrontOfIt) {
    std::string seq = "GACGACTTTT";
    EXPECT_EQ(Multi_tail_check(units, seq, 3, 5), 4);
    EXPECT_EQ(Multi_tail_check(units, seq, 3, 3), 2);
    EXPECT_EQ(Multi_tail_check(units, seq, 3, 0), 2);
    EXPECT_EQ(Multi_tail_check(units, seq, 3, 100), 6);
    seq = "AC";
    EXPECT_EQ(Multi_tail_check(units, seq, 3, 5), -1);
}

TEST_F(MultiTailCheck, WordsOfAllUnitsMakeOneRun) {
    Units both = units;
    tandem::AddRotations("ATG", both);
    std::string seq = "CCACGATGATGC";
    EXPECT_EQ(Multi_tail_check(seq, both, 3), -1);
    seq.pop_back();
    EXPECT_EQ(Multi_tail_check(seq, both, 3), 9);
    seq = seq.substr(2) + "CCC";
    EXPECT_EQ(Multi_tail_check(both, seq, 3), 9);
}

// ---- all forms on any input ----

TEST(TandemChecks, AnyLengthLimitAndUnitStaysInBounds) {
    std::mt19937 random(10);
    for (int turn = 0; turn < 20000; ++turn) {
        std::string seq;
        for (int i = static_cast<int>(random() % 14); i > 0; --i) seq += "AC"[random() % 2];
        std::string unit;
        for (int i = static_cast<int>(random() % 5); i > 0; --i) unit += "AC"[random() % 2];
        Units units = RotationsOf(unit);
        const int unit_len = static_cast<int>(unit.size());
        const int size = static_cast<int>(seq.size());
        const int limit = static_cast<int>(random() % 16);
        int num = 0;
        std::string last_unit = unit;
        ASSERT_LE(tail_check(seq, units, unit_len, num, last_unit), size);
        ASSERT_LE(tail_check(units, seq, unit_len, num, last_unit), size);
        ASSERT_LE(tail_check(seq, units, unit_len, num, last_unit, limit), size);
        ASSERT_LE(tail_check(units, seq, unit_len, num, last_unit, limit), size);
        last_unit.clear();
        ASSERT_LE(tail_checknolast(units, seq, unit_len, num, last_unit, limit), size);
        ASSERT_LE(Multi_tail_check(seq, units, unit_len), size);
        ASSERT_LE(Multi_tail_check(seq, units, unit_len, limit), Multi_tail_check(seq, units, unit_len));
        ASSERT_LE(Multi_tail_check(units, seq, unit_len, limit), Multi_tail_check(units, seq, unit_len));
        Unit_check(seq, units, unit_len);
    }
}

}  // namespace
}  // namespace lintara
