#include "repeat/type.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "repeat/tag.h"
#include "repeat/tag_table.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::TagTable;

class FindType : public testing::ThreadStreamsTest {
  protected:
    int Run(std::vector<std::string>& reads) {
        return find_type(reads, table.tagInfo, TRSeq, table.freq, isMultiTR, 0);
    }

    TagTable table;
    std::map<std::string, int> TRSeq;
    int isMultiTR = 7;
};
using TagTableTest = FindType;
using IsTandemRepeatTest = FindType;
using CheckAnotherTRLenTest = FindType;
using GetTagInfoTest = FindType;
using FreqCheckPassTest = FindType;

int RecordsWithDistances(const TagTable& table) {
    return static_cast<int>(std::count_if(table.tagInfo, table.tagInfo + TAG,
                                          [](const TagInfo& tag) { return tag.differentDistanceNum > 0; }));
}

// ---- tags ----

TEST(Tag, ValueIsThatOfThePackedBases) {
    EXPECT_EQ(TagAt("ACGTCA", 0), 436);  // 0 1 2 3 1 0 in base 4
    EXPECT_EQ(TagAt("ACGTAN", 0), 436);  // the N's code 4 becomes 1 in the base before it
    EXPECT_EQ(TagAt("acgtca", 0), 436);
    EXPECT_EQ(TagAt("NNNNNN", 0), 5460);  // 4 + 16 + 64 + 256 + 1024 + 4096, the largest
}

TEST(Tag, ShortEndCountsTheBasesThatAreThere) {
    EXPECT_EQ(TagAt("TTCG", 2), 6);  // C G
    EXPECT_EQ(TagAt("TT", 2), 0);
    EXPECT_EQ(TagAt("TT", 9), 0);
}

TEST(Tag, EqualsTheGeneralPackingOnRandomSequences) {
    std::mt19937 random(20);
    for (int round = 0; round < 2000; ++round) {
        std::string seq(20, ' ');
        for (char& c : seq) c = "ACGTNacgtnX-"[random() % 12];
        for (int pos = 0; pos < 20; ++pos) {
            ASSERT_EQ(static_cast<std::uint64_t>(TagAt(seq, pos)), seq2bit(seq.substr(pos, TAGL))) << seq << ' ' << pos;
        }
    }
}

TEST(Tag, NumberIsSigned) {
    EXPECT_EQ(TagNum(""), -5);
    EXPECT_EQ(TagNum("ACGTA"), 0);
    EXPECT_EQ(TagNum("ACGTAC"), 1);
}

// ---- the table ----

TEST_F(TagTableTest, DistancesKeepTheOrderOfFirstAppearance) {
    AddDistance(table.tagInfo, 5, 9);
    AddDistance(table.tagInfo, 5, 3);
    AddDistance(table.tagInfo, 5, 9);
    AddDistance(table.tagInfo, 5, 12);
    AddDistance(table.tagInfo, 5, 3);
    AddDistance(table.tagInfo, 5, 9);
    const TagInfo& tag = table.tagInfo[5];
    ASSERT_EQ(tag.differentDistanceNum, 3);
    EXPECT_EQ(std::vector<int>(tag.distancesArr, tag.distancesArr + 3), (std::vector<int>{9, 3, 12}));
    EXPECT_EQ(std::vector<int>(tag.timesArr, tag.timesArr + 3), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(RecordsWithDistances(table), 1);
}

TEST_F(TagTableTest, DistanceIsFoundWithItsTimes) {
    AddDistance(table.tagInfo, 5, 9);
    AddDistance(table.tagInfo, 5, 3);
    AddDistance(table.tagInfo, 5, 3);
    EXPECT_EQ(ExistTRLen(table.tagInfo[5], 9), 1);
    EXPECT_EQ(ExistTRLen(table.tagInfo[5], 3), 1);
    EXPECT_EQ(ExistTRLen(table.tagInfo[5], 6), 0);
    EXPECT_EQ(ExistTRLen(table.tagInfo[6], 3), 0);
    EXPECT_EQ(GetAppearedTimes(table.tagInfo[5], 9), 1);
    EXPECT_EQ(GetAppearedTimes(table.tagInfo[5], 3), 2);
    EXPECT_EQ(GetAppearedTimes(table.tagInfo[5], 6), 0);
    EXPECT_EQ(GetAppearedTimes(table.tagInfo[6], 3), 0);
}

TEST_F(TagTableTest, FreeingLeavesANullPointerAndAllowsOne) {
    TagInfo* tagInfo = new TagInfo[TAG];
    AddDistance(tagInfo, 0, 1);
    AddDistance(tagInfo, TAG - 1, 1);
    FreetagInfo(tagInfo);
    EXPECT_EQ(tagInfo, nullptr);
    FreetagInfo(tagInfo);
    EXPECT_EQ(tagInfo, nullptr);
}

// ---- the tag scan ----

TEST_F(FindType, EmptyReadSetHasNoRepeat) {
    std::vector<std::string> reads;
    std::fill_n(table.freq, TAG, 5);
    EXPECT_EQ(Run(reads), 0);
    EXPECT_TRUE(TRSeq.empty());
    EXPECT_EQ(isMultiTR, 0);
    EXPECT_EQ(std::count(table.freq, table.freq + TAG, 0), TAG);
    EXPECT_EQ(Log(), "get kmer finished!\n");
}

TEST_F(FindType, FiveBasesHaveNoTagAndFourOrLessAreSkipped) {
    std::vector<std::string> reads{"ACGTA", "ACGT", "A", ""};
    EXPECT_EQ(Run(reads), 0);
    EXPECT_EQ(std::count(table.freq, table.freq + TAG, 0), TAG);
    EXPECT_EQ(RecordsWithDistances(table), 0);
}

TEST_F(FindType, SixBasesHaveOneTagAndNoPair) {
    std::vector<std::string> reads{"ACGTCA"};
    EXPECT_EQ(Run(reads), 0);
    EXPECT_EQ(table.freq[436], 1);
    EXPECT_EQ(std::count(table.freq, table.freq + TAG, 0), TAG - 1);
    EXPECT_EQ(RecordsWithDistances(table), 0);
}

TEST_F(FindType, PairsOfDifferentReadsAreNotCompared) {
    std::vector<std::string> reads{"ACGTCA", "GACGTCA"};
    EXPECT_EQ(Run(reads), 0);
    EXPECT_EQ(table.Freq("ACGTCA"), 2);
    EXPECT_EQ(RecordsWithDistances(table), 0);
}

TEST_F(FindType, AllPairsOfATagCount) {
    // ACGACG at 0, 3, 6; CGACGA at 1, 4; GACGAC at 2, 5.
    std::vector<std::string> reads{"ACGACGACGACG"};
    EXPECT_EQ(Run(reads), 3);
    const TagInfo& first = table.Info("ACGACG");
    ASSERT_EQ(first.differentDistanceNum, 2);
    EXPECT_EQ(std::vector<int>(first.distancesArr, first.distancesArr + 2), (std::vector<int>{3, 6}));
    EXPECT_EQ(std::vector<int>(first.timesArr, first.timesArr + 2), (std::vector<int>{2, 1}));
    EXPECT_EQ(GetAppearedTimes(table.Info("CGACGA"), 3), 1);
    EXPECT_EQ(GetAppearedTimes(table.Info("GACGAC"), 3), 1);
    EXPECT_EQ(RecordsWithDistances(table), 3);
    EXPECT_EQ(table.Freq("ACGACG"), 3);
    EXPECT_EQ(table.Freq("CGACGA"), 2);
}

TEST_F(FindType, TagsWithNAreFoldedAndCounted) {
    std::vector<std::string> reads{"ACGTANN"};
    EXPECT_EQ(Run(reads), 0);
    EXPECT_EQ(table.Freq("ACGTCA"), 1);  // ACGTAN
    EXPECT_EQ(std::count(table.freq, table.freq + TAG, 0), TAG - 2);
}

TEST_F(FindType, ScanEqualsThePlainOneOnRandomReads) {
    std::mt19937 random(101);
    for (int round = 0; round < 50; ++round) {
        TagTable fresh;
        std::vector<std::string> reads(1 + random() % 6);
        // Two letters make tags recur; the set is drawn so that no distance is consistent most of the time.
        for (std::string& read : reads) {
            read.resize(random() % 90);
            for (char& c : read) c = "ACNc"[random() % 16 == 0 ? 2 + random() % 2 : random() % 2];
        }
        std::map<std::uint64_t, std::vector<std::pair<int, int>>> plain;
        std::map<std::uint64_t, int> plain_freq;
        for (const std::string& read : reads) {
            for (int i = 0; i + 6 <= static_cast<int>(read.size()); ++i) {
                const std::uint64_t tag = seq2bit(read.substr(i, 6));
                ++plain_freq[tag];
                for (int j = i + 1; j + 6 <= static_cast<int>(read.size()); ++j) {
                    if (seq2bit(read.substr(j, 6)) != tag) continue;
                    auto& list = plain[tag];
                    auto at = std::find_if(list.begin(), list.end(), [&](auto& entry) { return entry.first == j - i; });
                    if (at == list.end()) {
                        list.emplace_back(j - i, 1);
                    } else {
                        ++at->second;
                    }
                }
            }
        }
        std::map<std::string, int> units;
        const int unit = find_type(reads, fresh.tagInfo, units, fresh.freq, isMultiTR, 0);
        for (int tag = 0; tag < TAG; ++tag) {
            std::vector<std::pair<int, int>> found;
            for (int k = 0; k < fresh.tagInfo[tag].differentDistanceNum; ++k) {
                found.emplace_back(fresh.tagInfo[tag].distancesArr[k], fresh.tagInfo[tag].timesArr[k]);
            }
            ASSERT_EQ(found, plain.count(tag) ? plain[tag] : (std::vector<std::pair<int, int>>{}));
            // Correction may have moved frequencies when a repeat was found.
            if (unit < 2) {
                ASSERT_EQ(fresh.freq[tag], plain_freq.count(tag) ? plain_freq[tag] : 0);
            }
        }
        EXPECT_EQ(isMultiTR, 0);
    }
}

// ---- the unit length ----

TEST_F(FindType, HomopolymerHasUnitOneAndIsNotCorrected) {
    // AAAAAC ends a run, is rare, and one base makes it a repeat tag: only the unit of 1 saves it from correction.
    std::vector<std::string> reads{"AAAAAAAAAAAC"};
    EXPECT_EQ(Run(reads), 1);
    EXPECT_EQ(reads[0], "AAAAAAAAAAAC");
    EXPECT_EQ(isMultiTR, 0);
}

TEST_F(FindType, RepeatWithoutFlanksHasALengthAndNoUnit) {
    std::vector<std::string> reads{"AAAAAAAAAA", "AAAAAAA"};
    EXPECT_EQ(Run(reads), 1);
    EXPECT_TRUE(TRSeq.empty());
    EXPECT_EQ(Log(), "get kmer finished!\nThere is only a single TR unit.\n");
}

TEST_F(FindType, AdjacentCopiesAreComparedByByte) {
    // Both cases have the same tags, so the distance 3 is consistent, but no two neighbouring words are equal.
    std::vector<std::string> reads{"ACGacgACGacg"};
    EXPECT_EQ(Run(reads), 0);
    EXPECT_EQ(isMultiTR, 0);
    EXPECT_EQ(Log(), "get kmer finished!\n");
}

TEST_F(FindType, UnitOfTwoWithBothFlanks) {
    // ATATAT stands at 6, 8, 10, 12; the flank tags CATATA and TATATC stand once. 2 * 4 / 2, and 6 / 2 copies in a tag.
    std::vector<std::string> reads{"GTTAGCATATATATATATCGGCTA"};
    EXPECT_EQ(Run(reads), 2);
    EXPECT_EQ(TRSeq, (std::map<std::string, int>{{"AT", 7}}));
    EXPECT_EQ(reads[0], "GTTAGCATATATATATATCGGCTA");
    EXPECT_EQ(Log(), "get kmer finished!\nThere is only a single TR unit.\nTR sequence: AT\tTR number: 7\n");
}

TEST_F(FindType, UnitOfSevenAddsOneCopy) {
    // ACGTTG stands 4 times, each flank tag once: 2 * 4 / 2, 6 / 7 and 1.
    std::vector<std::string> reads{"CCATGCACGTTGAACGTTGAACGTTGAACGTTGAGGTCAA"};
    EXPECT_EQ(Run(reads), 7);
    EXPECT_EQ(TRSeq, (std::map<std::string, int>{{"ACGTTGA", 5}}));
    EXPECT_EQ(Log(), "get kmer finished!\nThere is only a single TR unit.\nTR sequence: ACGTTGA\tTR number: 5\n");
}

TEST_F(FindType, ReadsWithNCountInTheFrequenciesAlone) {
    // The read with N adds two ATATAT to the four of the other read, and no flank: 2 * 6 / 2 and 6 / 2.
    std::vector<std::string> reads{"GTTAGCATATATATATATCGGCTA", "ATATATATN"};
    EXPECT_EQ(Run(reads), 2);
    EXPECT_EQ(table.Freq("ATATAT"), 6);
    EXPECT_EQ(TRSeq, (std::map<std::string, int>{{"AT", 9}}));
}

TEST_F(FindType, EmptyUnitIsKeptAndNotLogged) {
    // Only the read with N holds a whole word of the unit. The other one gives the front tag CACGTT (once) and the
    // repeat tag ACGTTG (4 + 1 times): 5 / 1, 6 / 7 and 1.
    std::vector<std::string> reads{"NACGTTGAACGTTGAACGTTGAACGTTGA", "CCATGCACGTTG"};
    EXPECT_EQ(Run(reads), 7);
    EXPECT_EQ(TRSeq, (std::map<std::string, int>{{"", 6}}));
    EXPECT_EQ(Log(), "get kmer finished!\nThere is only a single TR unit.\n");
}

TEST_F(FindType, ReadsAreCorrectedBeforeTheUnitIsTaken) {
    const std::string clean = "ACGACGACGACGACGACGACG";
    std::vector<std::string> reads{clean, clean, clean, "ACGACGACGACTACGACGACG"};
    EXPECT_EQ(Run(reads), 3);
    EXPECT_EQ(reads, (std::vector<std::string>{clean, clean, clean, clean}));
    // The frequencies follow from the tag behind the suspect one on.
    EXPECT_EQ(table.Freq("ACGACT"), 1);
    EXPECT_EQ(table.Freq("CGACTA"), 0);
    // The tag table keeps what the uncorrected reads said: 3 times 5 pairs, and one on each side of the error.
    EXPECT_EQ(GetAppearedTimes(table.Info("ACGACG"), 3), 17);
}

struct UnitCase {
    std::string unit;
    int copies;
    int number;
};

class FindTypeUnits : public FindType, public ::testing::WithParamInterface<UnitCase> {};

TEST_P(FindTypeUnits, LengthUnitAndCopyNumber) {
    const UnitCase& expected = GetParam();
    std::string read = "GATTGGCTCAACCGTATGCT";
    for (int copy = 0; copy < expected.copies; ++copy) read += expected.unit;
    read += "GGTCTTCATAGGCCAATTCC";
    std::vector<std::string> reads{read};
    EXPECT_EQ(Run(reads), static_cast<int>(expected.unit.size()));
    // The word that starts the run is taken, since its first tag follows the flank.
    EXPECT_EQ(TRSeq, (std::map<std::string, int>{{expected.unit, expected.number}}));
    EXPECT_EQ(reads[0], read);
}

// The copy number is how often the unit's first tag stands in the run, (copies * length - 6) / length + 1, and what one
// tag spans: 6 / length, or 1 above 6.
INSTANTIATE_TEST_SUITE_P(Lengths, FindTypeUnits,
                         ::testing::Values(UnitCase{"A", 30, 25 + 6}, UnitCase{"AC", 15, 13 + 3},
                                           UnitCase{"ACG", 10, 9 + 2}, UnitCase{"ACGAGC", 6, 6 + 1},
                                           UnitCase{"ACGAGCC", 6, 6 + 1}, UnitCase{"ACGAGCCTTGACATC", 4, 4 + 1},
                                           UnitCase{"ACGAGCCTTGACATCGTGGATATTTACCCGAAC", 3, 3 + 1}));

TEST_F(IsTandemRepeatTest, EmptyTableHasNone) {
    std::vector<std::string> reads{"AAAAAAAAAA"};
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 0);
    EXPECT_EQ(isMultiTR, 7);
}

TEST_F(IsTandemRepeatTest, SmallerDistanceWinsATie) {
    std::vector<std::string> reads{"ACACAA"};
    table.Mark("AAAAAA", 1);
    table.Mark("AAAAAA", 1);
    table.Mark("ACACAC", 2);
    table.Mark("CACACA", 2);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 1);
    table.Mark("CACACA", 2);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 2);
}

TEST_F(IsTandemRepeatTest, FailedConfirmationTriesNoSecondCandidate) {
    std::vector<std::string> reads{"AAAAAAAAAA"};
    table.Mark("AAAAAA", 1);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 1);
    for (const char* tag : {"CCCCCC", "CCCCCG", "CCCCCT", "CCCCGG", "CCCCGT", "CCCCTT", "CCCGGG"}) table.Mark(tag, 7);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 0);
}

TEST_F(IsTandemRepeatTest, InconsistentDistancesNeverMakeSeveralUnits) {
    std::vector<std::string> reads{"ACGTACACGTAC"};
    for (int i = 0; i < 100; ++i) table.Mark("ACGTAC", 2);  // one tag at a distance of 2
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 0);
    EXPECT_EQ(isMultiTR, 7);
}

TEST_F(IsTandemRepeatTest, ConsistentDistanceHasExactlyAsManyTags) {
    std::vector<std::string> reads{"AAAAAAACACAC"};
    table.Mark("ACACAC", 2);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 0);
    table.Mark("CACACA", 2);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 2);
    table.Mark("ACACAT", 2);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, TAG, isMultiTR, reads, 0), 0);
}

TEST_F(IsTandemRepeatTest, OnlyTheFirstRecordsAreVisited) {
    std::vector<std::string> reads{"AAAAAAAAAA"};
    table.Mark("AAAAAC", 1);  // value 1
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, 1, isMultiTR, reads, 0), 0);
    EXPECT_EQ(IsTandemRepeat(table.tagInfo, 2, isMultiTR, reads, 0), 1);
}

TEST_F(CheckAnotherTRLenTest, ShortUnitNeedsTwoAdjacentCopies) {
    std::vector<std::string> reads{"ACA"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 2, 0), 0);
    reads = {"ACA", "ACAC"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 2, 0), 2);
    reads = {"TACAC"};  // the last place counts
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 2, 0), 2);
    reads = {"ACGTACACGTAT"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 6, 0), 0);
    reads = {"ACGTACACGTAC"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 6, 0), 6);
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 0, 0), 0);
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, -3, 0), 0);
}

TEST_F(CheckAnotherTRLenTest, LongUnitNeedsOneWordOfRepeatTags) {
    table.Mark("ACGTTG", 7);
    std::vector<std::string> reads{"ACGTTGA"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 7, 0), 0);
    table.Mark("CGTTGA", 7);
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 7, 0), 7);
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 8, 0), 0);  // longer than the read
    reads = {"ACGTTG", "TTACGTTGA"};
    EXPECT_EQ(CheckAnotherTRLen(reads, table.tagInfo, 7, 0), 7);
}

TEST_F(CheckAnotherTRLenTest, SkippingBehindAFailedTagMissesNoWord) {
    std::mt19937 random(10);
    int confirmed = 0;
    for (int round = 0; round < 400; ++round) {
        TagTable fresh;
        const int TRLen = 7 + static_cast<int>(random() % 4);
        for (int tag = 0; tag < 4096; ++tag) {
            if (random() % 2) AddDistance(fresh.tagInfo, tag, TRLen);
        }
        std::vector<std::string> reads(1);
        reads[0].resize(random() % 30);
        for (char& c : reads[0]) c = "ACGT"[random() % 4];
        int plain = 0;
        for (int pos = 0; pos + TRLen <= static_cast<int>(reads[0].size()); ++pos) {
            bool all = true;
            for (int sub = 0; sub + 6 <= TRLen; ++sub) {
                all = all && ExistTRLen(fresh.Info(reads[0].substr(pos + sub, 6)), TRLen);
            }
            if (all) plain = TRLen;
        }
        ASSERT_EQ(CheckAnotherTRLen(reads, fresh.tagInfo, TRLen, 0), plain) << reads[0];
        confirmed += plain != 0;
    }
    EXPECT_GT(confirmed, 50);
    EXPECT_LT(confirmed, 350);
}

// ---- routines beside the road ----

TEST_F(GetTagInfoTest, TagsWithNArePassedOverAndDistancesStayTrue) {
    std::vector<Read> reads{Read("ACGTACNACGTAC", -4), Read("AAAAA", 0)};
    GetTagInfo(reads, table.tagInfo, 0);
    EXPECT_EQ(RecordsWithDistances(table), 1);
    EXPECT_EQ(GetAppearedTimes(table.Info("ACGTAC"), 7), 1);
    EXPECT_EQ(Log(), "load taginfo finished!\n");
}

TEST_F(GetTagInfoTest, LowerCaseNIsNoN) {
    std::vector<Read> reads{Read("nAAAAAnAAAAA", 0)};  // nAAAAA at 0 and 6
    GetTagInfo(reads, table.tagInfo, 0);
    EXPECT_EQ(GetAppearedTimes(table.tagInfo[4096], 6), 1);
}

TEST(PossbleTR, LargestFrequencyOfTwiceTheCommonestMakesARepeat) {
    std::vector<int> values{0, 1, 1, 1, 2, 2, 4};
    int* freq = values.data();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(PossbleTR(freq, 7), 1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "freq: 2\t2\nfreq: 4\t1\n");
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(PossbleTR(freq, 6), 0);  // commonest and largest are 2
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "freq: 2\t2\n");
}

TEST(PossbleTR, LowerFrequencyWinsATie) {
    std::vector<int> values{7, 3, 7, 3};
    int* freq = values.data();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(PossbleTR(freq, 4), 1);  // 2 * 3 <= 7
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "freq: 3\t2\nfreq: 7\t2\n");
}

TEST(PossbleTR, NothingCountedIsARepeatAndHighFrequenciesAreLeftOut) {
    std::vector<int> values{0, 1, 256, 100000, -4};
    int* freq = values.data();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(PossbleTR(freq, 0), 1);
    EXPECT_EQ(PossbleTR(freq, 5), 1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(FreqCheckPassTest, CountsInReadsThatAreLongEnough) {
    // AAA: 3 in AAAAA, 2 in AAAAC, 1 in AAA; AAC: 1. AAAA: 2 and 1; AAAC: 1; the short reads are left out.
    std::vector<Read> reads{Read("AAAAA", 0), Read("AAAAC", 0), Read("AAA", 0), Read("AA", 0)};
    EXPECT_EQ(FreqCheckPass(reads, "AAA", "AAC", "AAAA", "AAAC", 0), 1);
    EXPECT_EQ(Log(), "freq: 6\t1\t3\t1\n");
    reads.clear();
    EXPECT_EQ(FreqCheckPass(reads, "AAA", "AAC", "AAAA", "AAAC", 0), 1);
    EXPECT_EQ(NewLog(), "freq: 6\t1\t3\t1\nfreq: 0\t0\t0\t0\n");
}

}  // namespace
}  // namespace lintara
