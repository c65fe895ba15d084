#include "repeat/unit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "repeat/tag_table.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::TagTable;
using Units = std::map<std::string, int>;

class UnitTest : public testing::ThreadStreamsTest {
  protected:
    void Single(int TRLen) { GetTRInfo(units, TRLen, table.tagInfo, total, table.freq, reads, 0); }
    void Short(int TRLen) { GetMultiShortTRInfo(units, TRLen, table.tagInfo, total, table.freq, reads, 0); }
    void Long(int TRLen) { GetMultiLongTRInfo(units, TRLen, table.tagInfo, total, table.freq, reads, 0); }
    /// Fills table and frequencies from `reads`.
    void Scan() {
        for (const std::string& read : reads) {
            const int tags = static_cast<int>(read.size()) - 5;
            for (int i = 0; i < tags; ++i) {
                ++table.Freq(read.substr(i, 6));
                for (int j = i + 1; j < tags; ++j) {
                    if (read.compare(i, 6, read, j, 6) == 0) table.Mark(read.substr(i, 6), j - i);
                }
            }
        }
    }

    TagTable table;
    std::uint64_t total = TAG;
    Units units;
    std::vector<std::string> reads;
};
using GetTRInfoTest = UnitTest;
using GetMultiShortTRInfoTest = UnitTest;
using GetMultiLongTRInfoTest = UnitTest;

// ---- a single unit; reads of six bases are single tags ----

TEST_F(GetTRInfoTest, RepeatThatFillsEveryReadHasNoEntry) {
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 9;
    reads = {"AAAAAAAA", "AAAAAA"};
    Single(1);
    EXPECT_TRUE(units.empty());
    reads = {"AAAAA", ""};
    Single(1);
    EXPECT_TRUE(units.empty());
}

TEST_F(GetTRInfoTest, StateCarriesOverFromReadToRead) {
    // The flank ends one read, the run fills the next, the flank behind starts the third.
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 20;
    table.Freq("GGCCTT") = 4;
    table.Freq("CCGGTT") = 1;
    reads = {"GGCCTT", "AAAAAAA"};
    Single(1);
    EXPECT_EQ(units, (Units{{"A", 20 / 4 + 6}}));
    reads = {"GGCCTT", "AAAAAAA", "CCGGTT"};
    Single(1);
    EXPECT_EQ(units, (Units{{"A", 2 * 20 / 5 + 6}}));
}

TEST_F(GetTRInfoTest, ReadsWithNAreIgnored) {
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 20;
    table.Freq("GGCCTT") = 4;
    reads = {"GGCCTTN", "AAAAAA", "GGCCTTN"};
    Single(1);
    EXPECT_TRUE(units.empty());
}

TEST_F(GetTRInfoTest, SmallestTagWinsATie) {
    table.Mark("TTTTTT", 1);
    table.Mark("AAAAAA", 1);
    table.Freq("TTTTTT") = 90;
    table.Freq("AAAAAA") = 10;
    table.Freq("GGCCTT") = 5;
    reads = {"GGCCTT", "TTTTTT", "CCCCCC", "GGCCTT", "AAAAAA"};  // one behind tag, of frequency 0
    Single(1);
    EXPECT_EQ(units, (Units{{"A", 2 * 10 / 5 + 6}}));
    units.clear();
    reads.insert(reads.end(), {"CCCCCC", "GGCCTT", "TTTTTT"});
    Single(1);
    EXPECT_EQ(units, (Units{{"T", 2 * 90 / 5 + 6}}));
}

TEST_F(GetTRInfoTest, WithoutAFrontTheLastScannedTagIsPicked) {
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 50;
    table.Freq("GGCCTT") = 2;
    table.Freq("GGCCTA") = 6;
    reads = {"AAAAAA", "GGCCTT", "GGCCTA"};
    Single(1);
    EXPECT_EQ(units, (Units{{"G", 6 / 2 + 6}}));
}

TEST_F(GetTRInfoTest, QuotientIsTruncatedAndTheTagSpansCopies) {
    table.Mark("ACACAC", 2);
    table.Freq("ACACAC") = 11;
    table.Freq("GGCCTT") = 3;
    table.Freq("TTTTTT") = 1;
    reads = {"GGCCTT", "ACACAC", "TTTTTT"};
    Single(2);
    EXPECT_EQ(units, (Units{{"AC", 5 + 3}}));  // 22 / 4
    units.clear();
    table.Mark("ACACAC", 4);
    Single(4);
    EXPECT_EQ(units, (Units{{"ACAC", 5 + 1}}));
}

TEST_F(GetTRInfoTest, FlanksWithoutFrequencyCountAsTheRepeatItself) {
    table.Mark("ACACAC", 2);
    table.Freq("ACACAC") = 11;
    reads = {"GGCCTT", "ACACAC", "TTTTTT"};
    Single(2);
    EXPECT_EQ(units, (Units{{"AC", 1 + 3}}));
    table.Freq("ACACAC") = 0;
    Single(2);
    EXPECT_EQ(units, (Units{{"AC", 0 + 3}}));
}

TEST_F(GetTRInfoTest, LongUnitIsTheFirstWholeWordAndGetsOneMore) {
    for (const char* tag : {"ACGTTG", "CGTTGA", "GTTGAC"}) table.Mark(tag, 7);
    table.Freq("ACGTTG") = 8;
    table.Freq("GGCCTT") = 2;
    reads = {"GGCCTT", "ACGTTG", "NCGTTGAC", "CGTTGAC", "ACGTTGA"};
    Single(7);
    EXPECT_EQ(units, (Units{{"CGTTGAC", 4 + 0 + 1}}));
}

TEST_F(GetTRInfoTest, LongUnitWithoutAWordIsEmpty) {
    table.Mark("ACGTTG", 7);
    table.Freq("ACGTTG") = 8;
    table.Freq("GGCCTT") = 2;
    reads = {"GGCCTT", "ACGTTG", "AC"};
    Single(7);
    EXPECT_EQ(units, (Units{{"", 5}}));
}

TEST_F(GetTRInfoTest, LengthBelowOneDoesNothing) {
    table.Mark("AAAAAA", 0);
    reads = {"GGCCTT", "AAAAAA"};
    Single(0);
    EXPECT_TRUE(units.empty());
}

// ---- rotations ----

int Same(std::string target, const std::string& query) {
    return IsSameTR(target, query);
}
int Got(Units units, std::string TRSeq) {
    return GotSameTR(units, TRSeq);
}

TEST(IsSameTR, WordAndItsRotations) {
    for (const char* query : {"ACGTT", "CGTTA", "GTTAC", "TTACG", "TACGT"}) EXPECT_EQ(Same("ACGTT", query), 1) << query;
    EXPECT_EQ(Same("ACGTT", "ACGTA"), 0);
    EXPECT_EQ(Same("ACGTT", "GGGGG"), 0);
    EXPECT_EQ(Same("ACGTT", "TTGCA"), 0);
    EXPECT_EQ(Same("ACGTT", "AGCGT"), 0);  // only the tail is there, and it does not fit
}

TEST(IsSameTR, HomopolymersAndSingleBases) {
    EXPECT_EQ(Same("AAAA", "AAAA"), 1);
    EXPECT_EQ(Same("A", "A"), 1);
    EXPECT_EQ(Same("A", "C"), 0);
    EXPECT_EQ(Same("AC", "CA"), 1);
}

TEST(IsSameTR, OnlyTheFirstPlaceOfTheHeadIsTried) {
    EXPECT_EQ(Same("AAAC", "AACA"), 0);
    EXPECT_EQ(Same("AACA", "AAAC"), 0);
}

TEST(IsSameTR, OtherLengthsStayInside) {
    EXPECT_EQ(Same("AC", "ACG"), 1);  // all of the target fits
    EXPECT_EQ(Same("ACG", "AC"), 0);
    EXPECT_EQ(Same("ACGTACGT", "GT"), 0);
    EXPECT_EQ(Same("", "A"), 0);
    EXPECT_EQ(Same("A", ""), 0);
    EXPECT_EQ(Same("", ""), 0);
}

TEST(IsSameTR, NeverTakesAnotherWordForARotation) {
    std::mt19937 random(102);
    int same = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string target(1 + random() % 6, ' ');
        for (char& c : target) c = "AC"[random() % 2];
        std::string query = target;
        for (char& c : query) c = "AC"[random() % 2];
        const bool rotation = (target + target).find(query) != std::string::npos;
        const bool got = Got({{target, 1}}, query);
        if (Same(target, query)) {
            ASSERT_TRUE(rotation) << target << ' ' << query;
            ASSERT_TRUE(got) << target << ' ' << query;
            ++same;
        }
        if (got) {
            ASSERT_TRUE(rotation) << target << ' ' << query;
        }
    }
    EXPECT_GT(same, 2000);
}

TEST(GotSameTR, AnyKeyMayFit) {
    EXPECT_EQ(Got({}, "ACG"), 0);
    EXPECT_EQ(Got({{"AAC", 1}, {"GTC", 1}}, "CGT"), 1);
    EXPECT_EQ(Got({{"AAC", 1}, {"GTC", 1}}, "CAA"), 1);
    EXPECT_EQ(Got({{"AAC", 1}, {"GTC", 1}}, "TTT"), 0);
    EXPECT_EQ(Got({{"", 1}}, "ACG"), 0);
}

TEST(GotSameTR, TailIsTriedAlsoBehindAFoundHead) {
    EXPECT_EQ(Same("AACA", "AAAC"), 0);
    EXPECT_EQ(Got({{"AACA", 1}}, "AAAC"), 1);
}

// ---- several units, no longer than a tag ----

TEST_F(GetMultiShortTRInfoTest, EachUnitOnceWithItsCopies) {
    // ATATAT and GAGAGA stand 4 times, the flank tags once: 2 * 4 / 2 and 6 / 2.
    reads = {"GTTAGCATATATATATATCGGCTA", "AACCTTGAGAGAGAGAGATTCCAA"};
    Scan();
    Short(2);
    EXPECT_EQ(units, (Units{{"AT", 7}, {"GA", 7}}));
    units.clear();
    table.Freq("GAGAGA") = 8;
    Short(2);
    EXPECT_EQ(units, (Units{{"AT", 7}, {"GA", 11}}));
    EXPECT_EQ(Log(), "");
}

TEST_F(GetMultiShortTRInfoTest, ReadsOfSixBasesAreLeftOut) {
    table.Mark("AAAAAA", 1);
    reads = {"AAAAAA"};
    Short(1);
    EXPECT_TRUE(units.empty());
    reads = {"AAAAAAA"};
    Short(1);
    EXPECT_EQ(units, (Units{{"A", 1}}));  // no flank
}

TEST_F(GetMultiShortTRInfoTest, TagsArePickedByFrequencyNotByCount) {
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 18;
    table.Freq("CAAAAA") = 2;  // two times the front
    table.Freq("GAAAAA") = 9;  // once
    reads = {"CAAAAAAA", "CAAAAAAA", "GAAAAAAA"};
    Short(1);
    EXPECT_EQ(units, (Units{{"A", 18 / 9 + 6}}));
}

TEST_F(GetMultiShortTRInfoTest, StateStartsAnewWithEachRead) {
    table.Mark("AAAAAA", 1);
    table.Freq("AAAAAA") = 20;
    table.Freq("GCCTTG") = 4;
    reads = {"GGCCTTG", "AAAAAAA", "CCGGTTC"};
    Short(1);
    EXPECT_EQ(units, (Units{{"A", 1}}));
}

TEST_F(GetMultiShortTRInfoTest, TagOfAnotherUnitEndsTheRun) {
    // All tags but the last recur. The run of C follows that of A at once, so only C has a flank behind it.
    const std::string read = "AAAAAACCCCCCG";
    for (int pos = 0; pos < 7; ++pos) table.Mark(read.substr(pos, 6), 1);
    table.Freq("CCCCCG") = 2;
    reads = {read};
    Short(1);
    EXPECT_EQ(units, (Units{{"A", 1}, {"C", 2 / 2 + 6}}));  // the last scanned tag stands for the repeat's
}

// ---- several units, longer than a tag ----

TEST_F(GetMultiLongTRInfoTest, UnitWithItsCopiesAndTheLog) {
    reads = {"CCATGCACGTTGAACGTTGAACGTTGAACGTTGAGGTCAA"};
    Scan();
    Long(7);
    EXPECT_EQ(units, (Units{{"ACGTTGA", 5}}));
    EXPECT_EQ(Log(),
              "TRSeq:\nACGTTGA\n"
              "minimum tag frequence: 4\n"
              "maximum front tag frequence: 1\t1\n"
              "maximum behide tag frequence: 1\t1\n"
              "TRNum=5\n");
}

TEST_F(GetMultiLongTRInfoTest, TwoUnitsEachWithItsOwnFlanks) {
    reads = {"CCATGCACGTTGAACGTTGAACGTTGAACGTTGAGGTCAA", "TTGTAGCCCATCTCCCATCTCCCATCTGGTGTA"};
    Scan();
    table.Freq("CCCATC") = 12;
    Long(7);
    // The second repeat: 12 over a front tag GCCCAT and a behind tag ATCTGG, each once, and 1. Its words start with C.
    EXPECT_EQ(units, (Units{{"ACGTTGA", 5}, {"CCCATCT", 13}}));
}

TEST_F(GetMultiLongTRInfoTest, RepeatWithoutFlanksKeepsOneCopy) {
    for (const char* tag : {"ACGTTG", "CGTTGA", "GTTGAA", "TTGAAC", "TGAACG", "GAACGT", "AACGTT"}) table.Mark(tag, 7);
    table.Freq("ACGTTG") = 20000;
    reads = {"ACGTTGAACGTTGA", "ACGTTGA"};
    Long(7);
    EXPECT_EQ(units, (Units{{"ACGTTGA", 1}}));
    EXPECT_EQ(Log(),
              "TRSeq:\nACGTTGA\n"
              "minimum tag frequence: 10000\n"
              "maximum front tag frequence: 0\t0\n"
              "maximum behide tag frequence: 0\t0\n");
}

TEST_F(GetMultiLongTRInfoTest, ReadsNoLongerThanTheUnitAreLeftOut) {
    for (const char* tag : {"ACGTTG", "CGTTGA"}) table.Mark(tag, 7);
    reads = {"ACGTTGA"};
    Long(7);
    EXPECT_TRUE(units.empty());
    reads = {"ACGTTGAC"};
    Long(7);
    EXPECT_EQ(units.size(), 1U);
}

TEST_F(GetMultiLongTRInfoTest, FrontTagIsCountedOnceARun) {
    for (const char* tag : {"ACGTTG", "CGTTGA", "GTTGAA", "TTGAAC"}) table.Mark(tag, 7);
    table.Freq("ACGTTG") = 6;
    table.Freq("TACGTT") = 3;
    table.Freq("GACGTT") = 1;
    // Three words in the first run and one in each of the two others.
    reads = {"TACGTTGAAC", "GACGTTGA", "GACGTTGA"};
    Long(7);
    EXPECT_EQ(units, (Units{{"ACGTTGA", 6 / 1 + 1}}));
    EXPECT_NE(Log().find("maximum front tag frequence: 2\t1\n"), std::string::npos);
}

}  // namespace
}  // namespace lintara
