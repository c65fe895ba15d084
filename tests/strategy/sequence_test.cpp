#include "strategy/sequence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "run/settings.h"
#include "strategy/sample_bases.h"

namespace lintara {
namespace {

using testing::Repeat;

TEST(NNum, CountsUpperCaseNOnly) {
    EXPECT_EQ(n_num("NnAN-"), 2);
    EXPECT_EQ(n_num(""), 0);
    EXPECT_EQ(n_num(ToLow("nnN")), 3) << "ToLow leaves no lower-case n";
}

TEST(ScreenReads, TakesBasesOfEitherCase) {
    EXPECT_EQ(ScreenReads("ACGTacgt"), 1);
    EXPECT_EQ(ScreenReads(""), 1);
}

TEST(ScreenReads, TurnsDownAnythingElse) {
    EXPECT_EQ(ScreenReads("ACGTN"), 0);
    EXPECT_EQ(ScreenReads("nACGT"), 0);
    EXPECT_EQ(ScreenReads("AC-GT"), 0);
    EXPECT_EQ(ScreenReads("ACGT\r"), 0);
    EXPECT_EQ(ScreenReads("AC\xFFGT"), 0);
}

TEST(ToUp, TurnsWhatIsNoBaseIntoA) {
    std::string read = "ACGNn";
    ToUp(read);
    EXPECT_EQ(read, "ACGAA");
    read = "acgt-R\xFF";
    ToUp(read);
    EXPECT_EQ(read, "ACGTAAA");
}

TEST(ScreenReads, FindsAnyByteAtAnyPlace) {
    for (int length = 1; length < 70; ++length) {
        for (int c = 0; c < 256; ++c) {
            std::string read(static_cast<std::size_t>(length), 'g');
            read[static_cast<std::size_t>((length * 7 + c) % length)] = static_cast<char>(c);
            ASSERT_EQ(ScreenReads(read), alphabet[c] < 4 ? 1 : 0) << length << ' ' << c;
        }
    }
}

TEST(ToLow, TurnsWhatIsNoBaseIntoN) {
    EXPECT_EQ(ToLow("ACGNn"), "acgNN");
    EXPECT_EQ(ToLow("a-CT\xFF"), "aNctN");
    EXPECT_EQ(ToLow(""), "");
}

class SortReadsTest : public ::testing::Test {
  protected:
    std::vector<std::pair<int, std::string>> Sorted(std::vector<int> position, std::vector<std::string> reads) {
        Gap gap;
        gap.greadSum = static_cast<Len_t>(position.size());
        gap.position = position.data();
        gap.reads = reads.data();
        SortReads(gap);
        std::vector<std::pair<int, std::string>> sorted;
        for (std::size_t i = 0; i < position.size(); ++i) sorted.emplace_back(position[i], reads[i]);
        return sorted;
    }
};

TEST_F(SortReadsTest, MovesReadsWithTheirPositions) {
    const std::vector<std::pair<int, std::string>> expected = {{-7, "c"}, {0, "d"}, {5, "a"}, {9, "b"}};
    EXPECT_EQ(Sorted({5, 9, -7, 0}, {"a", "b", "c", "d"}), expected);
}

TEST_F(SortReadsTest, EqualPositionsMayChangeTheirOrder) {
    // The 3 changes places with the first 5, which so comes to stand behind the second one.
    const std::vector<std::pair<int, std::string>> expected = {{3, "c"}, {5, "b"}, {5, "a"}};
    EXPECT_EQ(Sorted({5, 5, 3}, {"a", "b", "c"}), expected);
}

TEST_F(SortReadsTest, EqualsThePlainExchangesOnRandomPositions) {
    std::mt19937 random(61);
    for (int round = 0; round < 2000; ++round) {
        std::vector<int> position(random() % 50);
        std::vector<std::string> reads(position.size());
        const int range = 1 + static_cast<int>(random() % 40);  // a small one makes many equal positions
        for (std::size_t i = 0; i < position.size(); ++i) {
            position[i] = static_cast<int>(random() % range) - 10;
            reads[i] = std::to_string(i);
        }
        const auto sorted = Sorted(position, reads);
        for (std::size_t i = 0; i + 1 < position.size(); ++i) {
            for (std::size_t j = i + 1; j < position.size(); ++j) {
                if (position[i] <= position[j]) continue;
                std::swap(position[i], position[j]);
                std::swap(reads[i], reads[j]);
            }
        }
        for (std::size_t i = 0; i < position.size(); ++i) {
            ASSERT_EQ(sorted[i], std::make_pair(position[i], reads[i]));
        }
    }
}

TEST_F(SortReadsTest, LeavesOneReadOrNoneAlone) {
    const std::vector<std::pair<int, std::string>> one = {{4, "a"}};
    EXPECT_EQ(Sorted({4}, {"a"}), one);
    Gap gap;
    SortReads(gap);
    EXPECT_EQ(gap.greadSum, 0U);
}

TEST(SetTmpRead, CutsBothSlicesToTheGivenLength) {
    std::string tmp1;
    std::string tmp2;
    set_tmp_read(tmp1, tmp2, "AACCGGTT", "TTGGCCAA", 3);
    EXPECT_EQ(tmp1, "GTT");
    EXPECT_EQ(tmp2, "TTG");
}

TEST(SetTmpRead, EqualisesToTheShorterContig) {
    std::string tmp1;
    std::string tmp2;
    set_tmp_read(tmp1, tmp2, "AACCGGTT", "TG", 5);
    EXPECT_EQ(tmp1, "TT") << "keeps its last bases";
    EXPECT_EQ(tmp2, "TG");
    set_tmp_read(tmp1, tmp2, "CG", "TTGGCCAA", 5);
    EXPECT_EQ(tmp1, "CG");
    EXPECT_EQ(tmp2, "TT") << "keeps its first bases";
}

TEST(SetTmpRead, GivesUpperCaseBasesOnly) {
    std::string tmp1;
    std::string tmp2;
    set_tmp_read(tmp1, tmp2, "acgN", "nTgc", 200);
    EXPECT_EQ(tmp1, "ACGA");
    EXPECT_EQ(tmp2, "ATGC");
}

TEST(SetTmpRead, EmptyContigEmptiesBoth) {
    std::string tmp1 = "x";
    std::string tmp2 = "y";
    set_tmp_read(tmp1, tmp2, "", "ACGT", 200);
    EXPECT_EQ(tmp1, "");
    EXPECT_EQ(tmp2, "");
    set_tmp_read(tmp1, tmp2, "ACGT", "", 200);
    EXPECT_EQ(tmp1, "");
    EXPECT_EQ(tmp2, "");
}

TEST(SetTmpRead, NoLengthLeavesNothing) {
    std::string tmp1;
    std::string tmp2;
    set_tmp_read(tmp1, tmp2, "ACGT", "ACGT", 0);
    EXPECT_EQ(tmp1 + tmp2, "");
    set_tmp_read(tmp1, tmp2, "ACGT", "ACGT", -3);
    EXPECT_EQ(tmp1 + tmp2, "");
}

// Different bytes all along: a trial overlap that is off by any number of columns has no equal column.
const std::string kDistinct = "abcdefghijklmnopqrstuvwxyz0123456789";

TEST(GetOverlapLen, FindsTheOneOverlap) {
    const std::string shared = kDistinct.substr(0, 20);
    EXPECT_EQ(GetOverlapLen("######" + shared, shared + "======", -5), 20);
}

TEST(GetOverlapLen, ShortSequencesHaveNone) {
    const std::string shared = kDistinct.substr(0, 14);
    EXPECT_EQ(GetOverlapLen(shared, shared, -20), -1);
    EXPECT_EQ(GetOverlapLen(kDistinct.substr(0, 15), kDistinct.substr(0, 15), -20), 15);
    EXPECT_EQ(GetOverlapLen("", "", -20), -1);
}

TEST(GetOverlapLen, TriesLengthsBelowThirtyBeyondTheDistance) {
    EXPECT_EQ(GetOverlapLen(kDistinct.substr(0, 34), kDistinct.substr(0, 34), -5), 34);
    EXPECT_EQ(GetOverlapLen(kDistinct.substr(0, 35), kDistinct.substr(0, 35), -5), -1);
}

TEST(GetOverlapLen, IdentityMustExceedNineTenths) {
    const std::string shared = kDistinct.substr(0, 20);
    std::string changed = shared;
    changed[3] = '#';
    EXPECT_EQ(GetOverlapLen(shared, changed, -5), 20) << "19 of 20";
    changed[11] = '#';
    EXPECT_EQ(GetOverlapLen(shared, changed, -5), -1) << "18 of 20 is nine tenths";
}

TEST(GetOverlapLen, SecondPlacingOfFourFifthsRejects) {
    // Three units of 10: placed 30 columns deep all are equal, 20 deep those of the first two units and of the third
    // one but for the bytes changed there.
    const std::string unit = kDistinct.substr(0, 10);
    EXPECT_EQ(GetOverlapLen(unit + unit + "1234" + unit.substr(4), unit + unit + "1234" + unit.substr(4), -1), -1)
        << "16 of 20 is four fifths of 30 of 30";
    EXPECT_EQ(GetOverlapLen(unit + unit + "12345" + unit.substr(5), unit + unit + "12345" + unit.substr(5), -1), 30)
        << "15 of 20 is less";
}

TEST(GetOverlapLen, SimilarLongerTrialRejects) {
    // Halves of ten: 20 of 20 columns at 20, and 18 of 21 at 21.
    const std::string shared = Repeat("G", 10) + Repeat("T", 10);
    EXPECT_EQ(GetOverlapLen(Repeat("A", 10) + shared, shared + Repeat("C", 10), -5), -1);
}

/// The trials one by one, all of them kept, and the two best picked afterwards.
int PlainOverlapLen(const std::string& sequence1, const std::string& sequence2, int distance) {
    std::vector<std::pair<int, int>> trials = {{0, 0}, {0, 0}};  // score, length
    for (int pos = 15; pos < 30 - distance; ++pos) {
        if (pos > static_cast<int>(sequence1.size()) || pos > static_cast<int>(sequence2.size())) break;
        const std::string end = sequence1.substr(sequence1.size() - static_cast<std::size_t>(pos));
        int score = 0;
        for (std::size_t i = 0; i < end.size(); ++i) score += end[i] == sequence2[i] ? 1 : 0;
        trials.emplace_back(score, pos);
    }
    std::stable_sort(trials.begin(), trials.end());
    const auto best = trials[trials.size() - 1];
    const auto second = trials[trials.size() - 2];
    const float max = static_cast<float>(best.first) / static_cast<float>(std::max(best.second, 1));
    const float next = static_cast<float>(second.first) / static_cast<float>(std::max(second.second, 1));
    return max > 0.9F && 0.8F * max > next ? best.second : -1;
}

TEST(GetOverlapLen, AgreesWithSortedTrialsOnRandomSequences) {
    std::mt19937 random(20240917);
    int found = 0;
    for (int round = 0; round < 3000; ++round) {
        const int shared_length = static_cast<int>(random() % 60);
        const std::string shared = testing::RandomBases(shared_length, random());
        const std::string before = testing::RandomBases(static_cast<int>(random() % 40), random()) + shared;
        std::string after = shared + testing::RandomBases(static_cast<int>(random() % 40), random());
        if (!after.empty()) after[random() % after.size()] = 'A';
        const int distance = -static_cast<int>(random() % 40);
        const int expected = PlainOverlapLen(before, after, distance);
        ASSERT_EQ(GetOverlapLen(before, after, distance), expected) << before << " " << after << " " << distance;
        if (expected > 0) ++found;
    }
    EXPECT_GT(found, 100);
}

std::string Strung(const std::string& start, std::vector<std::pair<int, std::string>> contigs) {
    std::vector<ContigInfo> infos(contigs.size());
    for (std::size_t i = 0; i < contigs.size(); ++i) {
        infos[i].startPos = contigs[i].first;
        infos[i].contigSeq = contigs[i].second;
    }
    ContigInfo* contigsInfo = infos.data();
    std::string text = start;
    GetContigSeqInGap(text, contigsInfo, static_cast<int>(infos.size()));
    return text;
}

TEST(GetContigSeqInGap, FillsDistancesWithN) {
    EXPECT_EQ(Strung("", {{0, "ACG"}, {3, "TT"}, {8, "GG"}}), "ACGTTNNNGG");
    EXPECT_EQ(Strung("", {{2, "ACG"}}), "NNACG");
    EXPECT_EQ(Strung("AC", {}), "AC");
}

TEST(GetContigSeqInGap, MarksASmallCollisionWithOneN) {
    // Collisions of 1 and of 14 bases, the latter although the bases agree.
    EXPECT_EQ(Strung("ACG", {{2, "GTT"}}), "ACGNGTT");
    const std::string shared = kDistinct.substr(0, 14);
    EXPECT_EQ(Strung(shared, {{0, shared + "A"}}), shared + "N" + shared + "A");
}

TEST(GetContigSeqInGap, MergesAnOverlap) {
    const std::string shared = kDistinct.substr(0, 20);
    EXPECT_EQ(Strung("##" + shared, {{7, shared + "===="}}), "##" + shared + "====") << "collision of 15";
    EXPECT_EQ(Strung("##" + shared, {{2, shared}}), "##" + shared) << "the contig is there already";
}

TEST(GetContigSeqInGap, MarksALargeCollisionWithoutOverlapWithOneN) {
    EXPECT_EQ(Strung(Repeat("A", 30), {{10, Repeat("C", 30)}}), Repeat("A", 30) + "N" + Repeat("C", 30));
    EXPECT_EQ(Strung(Repeat("A", 30), {{10, ""}}), Repeat("A", 30) + "N");
}

TEST(GetContigSeqInGap, ReckonsFromThePresentLength) {
    // After the N of the collision at 3 the text is 7 long, so that the contig at 8 lies one base on.
    EXPECT_EQ(Strung("", {{0, "ACG"}, {2, "CCC"}, {8, "TT"}}), "ACGNCCCNTT");
}

TEST(GetScaffoldSeq, ContigsKeepTheirCaseAndGapsAreLower) {
    std::string contigs[] = {"AcG", "tT", "Nn"};
    Scaf scaffold;
    scaffold.gapSum = 2;
    scaffold.contigs = contigs;
    std::map<int, std::string> gap_id_seq = {{0, "ACNgt-"}, {1, "N"}};
    EXPECT_EQ(get_scaffold_seq(gap_id_seq, scaffold), "AcGacNgtNtTNNn");
}

TEST(GetScaffoldSeq, MissingEntryJoinsTheContigsAndIsCreated) {
    std::string contigs[] = {"AAA", "CCC", "GGG"};
    Scaf scaffold;
    scaffold.gapSum = 2;
    scaffold.contigs = contigs;
    std::map<int, std::string> gap_id_seq = {{1, "T"}};
    EXPECT_EQ(get_scaffold_seq(gap_id_seq, scaffold), "AAACCCtGGG");
    ASSERT_EQ(gap_id_seq.count(0), 1U);
    EXPECT_EQ(gap_id_seq[0], "");
}

TEST(GetScaffoldSeq, ScaffoldWithoutGapsIsItsContig) {
    std::string contigs[] = {"AcgT"};
    Scaf scaffold;
    scaffold.contigs = contigs;
    std::map<int, std::string> gap_id_seq;
    EXPECT_EQ(get_scaffold_seq(gap_id_seq, scaffold), "AcgT");
}

}  // namespace
}  // namespace lintara
