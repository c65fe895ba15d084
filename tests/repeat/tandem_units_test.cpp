// Tandem gaps of one unit, from the reads to the text: what the detector names, which road the gap takes, what the log
// tells and what stays N.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "repeat/tag_table.h"
#include "repeat/tandem_block.h"
#include "repeat/tandem_piece.h"
#include "repeat/tandem_sample.h"
#include "repeat/type.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Copies;
using testing::Last;
using testing::ReadAt;
using testing::TagTable;

struct UnitCase {
    std::string unit;
    int copies;  // such that the repeat is a multiple of 5 bases
};

std::string N(int count) {
    return std::string(static_cast<std::size_t>(count), 'N');
}

/// A gap of a flank of 45 bases, the repeat and another flank of 45, between two edges of 200. A read of 100 bases
/// starts every 5 bases, so that both edges grow by 65 bases, 20 of them repeat.
class TandemUnits : public testing::ThreadStreamsTest, public ::testing::WithParamInterface<UnitCase> {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        repeat = Copies(GetParam().unit, GetParam().copies);
        truth = edge1 + flank1 + repeat + flank2 + edge2;
        gap_len = 90 + static_cast<int>(repeat.size());
    }
    /// Names the unit from the reads, and lays out the block.
    int Find() {
        reads.emplace_back(edge1, -200);
        std::vector<std::string> sequences;
        for (int place = 105; place + 100 <= 200 + gap_len + 95; place += 5) {
            reads.push_back(ReadAt(truth, place, 100));
            sequences.push_back(reads.back().seq);
        }
        reads.emplace_back(edge2, gap_len);
        return find_type(sequences, table.tagInfo, TRSeq, table.freq, isMultiTR, 0);
    }
    std::string Solve() {
        std::string unit = TRSeq.begin()->first;
        TRNum = TRSeq.begin()->second;
        return solve_TR_block(reads, table.tagInfo, unit, TRNum, gap_len, table.freq, type, realgaplen, 0);
    }
    bool Logged(const std::string& text) { return Log().find(text) != std::string::npos; }

    TagTable table;
    std::map<std::string, int> TRSeq;
    int isMultiTR = 0;
    std::string edge1 = Bases(31, 200);
    std::string edge2 = Bases(22, 200);
    std::string flank1 = Bases(23, 45);
    std::string flank2 = Bases(24, 45);
    std::string repeat;
    std::string truth;
    int gap_len = 0;
    std::vector<Read> reads;
    int TRNum = 0;
    int type = 3;
    int realgaplen = 0;
};

TEST_P(TandemUnits, UnitIsNamedInSomePhase) {
    const int unit_len = static_cast<int>(GetParam().unit.size());
    EXPECT_EQ(Find(), unit_len);
    EXPECT_EQ(isMultiTR, 0);
    ASSERT_EQ(TRSeq.size(), 1U);
    std::set<std::string> rotations;
    tandem::AddRotations(GetParam().unit, rotations);
    EXPECT_EQ(rotations.count(TRSeq.begin()->first), 1U);
    EXPECT_GT(TRSeq.begin()->second, 1);
    EXPECT_TRUE(Logged("There is only a single TR unit.\nTR sequence: " + TRSeq.begin()->first +
                       "\tTR number: " + std::to_string(TRSeq.begin()->second) + "\n"));
}

TEST_P(TandemUnits, FlanksStandAndTheRepeatStaysOpen) {
    Find();
    ASSERT_EQ(TRSeq.size(), 1U);
    const std::string unit = TRSeq.begin()->first;
    const int copies = TRSeq.begin()->second;
    NewLog();
    const std::string seq = Solve();
    // In front the first word of the repeat in any phase ends the flank, behind it the last copy of the named phase
    // starts it. The longest unit shows no whole word in the 20 bases.
    const std::string seen1 = flank1 + repeat.substr(0, 20);
    const std::string seen2 = Last(repeat, 20) + flank2;
    std::set<std::string> rotations;
    tandem::AddRotations(unit, rotations);
    std::size_t first = seen1.size();
    for (const std::string& word : rotations) first = std::min(first, seen1.find(word));
    const std::size_t last = seen2.rfind(unit);
    const std::size_t reach = last == std::string::npos ? 0 : last + unit.size();
    const std::string before = seen1.substr(0, first);
    const std::string after = seen2.substr(reach);
    EXPECT_EQ(seq, before + N(gap_len - static_cast<int>(before.size() + after.size())) + after);
    const std::string log = NewLog();
    EXPECT_EQ(log.find("caculate the units set\ncheck contig edge \nlast unit: " + unit +
                       "\ttotal number: " + std::to_string(copies) + "\tbefore edge num: 0\t after edge num: 0\n"),
              0U);
    const std::string n_part = N(static_cast<int>(unit.size()));
    EXPECT_NE(
        log.find("\nLast unit is: " + unit + "\t" + std::to_string(unit.size()) +
                 "\nbefore expand length: " + std::to_string(seen1.size() - first) +
                 "\tafter expand length: " + std::to_string(reach) + "\nGet final sequence with before: " + before +
                 n_part + " after: " + n_part + after + "\ntotal repeat time: " + std::to_string(copies - 2) +
                 "\tbefore repeat time: 1\tafter repeat time: 1\nTR unfull filled!\t" + std::to_string(gap_len) + "\n"),
        std::string::npos);
    EXPECT_EQ(TRNum, copies - 2);
}

TEST_P(TandemUnits, GapShorterThanTwoReadsTakesTheOrdinaryRoad) {
    Find();
    ASSERT_EQ(TRSeq.size(), 1U);
    NewLog();
    ReadLen = gap_len / 2 + 1;
    Solve();
    EXPECT_NE(NewLog().find("Using TE to assemble the TR gap!\tlast num1: 0\tlast num2: 0\nthe read number is: "),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Units, TandemUnits,
                         ::testing::Values(UnitCase{"T", 120}, UnitCase{"GT", 60}, UnitCase{"CGT", 40},
                                           UnitCase{"ACGTGT", 20}, UnitCase{"ACGTGTT", 20},
                                           UnitCase{"ACGTGTTAGCGATAC", 8},
                                           UnitCase{"GTACGTGTTAGCGATACGGATTCGCCATGTCAA", 5}),
                         [](const ::testing::TestParamInfo<UnitCase>& unit_case) {
                             return "Length" + std::to_string(unit_case.param.unit.size());
                         });

}  // namespace
}  // namespace lintara
