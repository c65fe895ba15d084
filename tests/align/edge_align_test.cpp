#include "align/edge_align.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "align/bases.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using lintara::testing::Cut;
using lintara::testing::RandomBases;
using lintara::testing::UniqueBases;
using ::testing::Eq;
using ::testing::ExitedWithCode;

class EdgeAlignTest : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }

    const std::string genome_ = UniqueBases(200, 3);
    std::string G(int start, int end) const { return Cut(genome_, start, end); }
};

using GetMax = EdgeAlignTest;
using AlignConnect = EdgeAlignTest;
using AlignConnectDeathTest = EdgeAlignTest;

int Max(std::vector<double> scores, double match_ratio = 0.9, double dif = 0.9) {
    double* value = scores.data();
    return get_max(value, static_cast<int>(scores.size()), match_ratio, dif);
}

TEST_F(GetMax, ClearlyBestScoreWins) {
    EXPECT_EQ(Max({0, 85, 0, 95}), 3);
    EXPECT_EQ(Max({30, 95, 85}), 1);
    EXPECT_EQ(Max({95}), 0);
}

TEST_F(GetMax, CloseSecondMakesItAmbiguous) {
    EXPECT_EQ(Max({0, 86, 0, 95}), -3);
    EXPECT_EQ(Max({0, 95, 10, 86}), -3);
    EXPECT_EQ(Max({95, 86}), -1);
}

TEST_F(GetMax, SecondMustStayBelowItsShare) {
    // 100 * 0.5 is not above 50, but a perfect score wins all the same; 90 * 0.5 is not above 45.
    EXPECT_EQ(Max({0, 100, 50}, 0.9, 0.5), 1);
    EXPECT_EQ(Max({0, 90, 45}, 0.9, 0.5), -2);
    EXPECT_EQ(Max({0, 90, 44}, 0.9, 0.5), 1);
}

TEST_F(GetMax, LowBestNeverWins) {
    EXPECT_EQ(Max({0, 89}), -1);
    EXPECT_EQ(Max({0, 90}), 1);
    EXPECT_EQ(Max({0, 1}, 0), 1);
}

TEST_F(GetMax, PerfectScoreWinsAgainstAnyOther) {
    EXPECT_EQ(Max({0, 100, 99}), 1);
    EXPECT_EQ(Max({0, 99, 100}), 2);
}

TEST_F(GetMax, OfTwoPerfectOnesTheLongerNeedsMinOverlap) {
    std::vector<double> scores(50, 25.0);
    scores[12] = scores[42] = 100;
    EXPECT_EQ(Max(scores), 42);
    Min_overlap = 42;
    EXPECT_EQ(Max(scores), 42);
    Min_overlap = 50;
    EXPECT_EQ(Max(scores), -42);
}

TEST_F(GetMax, EqualScoresAreAmbiguous) {
    EXPECT_EQ(Max({0, 95, 95}), -2);
    EXPECT_EQ(Max({0, 95, 95, 95}), -3);
}

TEST_F(GetMax, NothingGives0) {
    EXPECT_EQ(Max({0, 0, 0}), 0);
    EXPECT_EQ(Max({}), 0);
    EXPECT_EQ(Max({0, 0}, 0), 0);
}

TEST_F(AlignConnect, GivesTheOverlapBeyondMin) {
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 8), 22);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 70), 8), 22);
    EXPECT_EQ(align_connect(G(20, 60), G(30, 90), 8), 22);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 30), 0);
}

TEST_F(AlignConnect, EqualSequencesWinWithTheirWholeLength) {
    EXPECT_EQ(align_connect(G(0, 60), G(0, 60), 8), 52);
}

TEST_F(AlignConnect, ContainedSequenceWins) {
    // The last 50 bases of the longer one begin with all of the shorter one.
    EXPECT_EQ(align_connect(G(0, 60), G(10, 40), 8), 42);
    // The first 40 bases of the longer one end with all of the shorter one.
    EXPECT_EQ(align_connect(G(10, 40), G(0, 60), 8), 32);
}

TEST_F(AlignConnect, RepeatMakesItAmbiguous) {
    const std::string repeat = "ACGTGCATTAACGTGCATTA";
    // 10 and 20 bases are both perfect: indices 2 and 12.
    EXPECT_EQ(align_connect("TTGAC" + repeat, repeat + "GGCTC", 8), -12);
    Min_overlap = 12;
    EXPECT_EQ(align_connect("TTGAC" + repeat, repeat + "GGCTC", 8), 12);
}

TEST_F(AlignConnect, NCountsAgainstTheOverlap) {
    std::string read_a = G(0, 40);
    std::string read_b = G(20, 60);
    read_a[30] = 'N';
    read_b[10] = 'N';
    // 19 of 20 columns.
    EXPECT_EQ(align_connect(read_a, read_b, 8, 0.95), 12);
    EXPECT_EQ(align_connect(read_a, read_b, 8, 0.96), -12);
    EXPECT_EQ(align_connect("TT" + read_a, read_b, 8, 0.95), 12);
    EXPECT_EQ(align_connect("TT" + read_a, read_b, 8, 0.96), -12);
}

// All four bases of ACGT stand at the right end; the N at the left end of the second sequence costs the first column.
TEST_F(AlignConnect, NIsLookedForAtTheLeftEndOfALongerSecond) {
    EXPECT_EQ(align_connect("ACGT", "NCCCACGT", 7, 0.75), 1);
    EXPECT_EQ(align_connect("ACGT", "NCCCACGT", 7, 0.76), -1);
    EXPECT_EQ(align_connect("ACGT", "CCCCACGT", 7, 0.76), 1);
}

TEST_F(AlignConnect, UpperBoundLimitsTheLengths) {
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 8, 40), 22);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 8, 30), 22);
    EXPECT_LE(align_connect(G(0, 60), G(30, 90), 8, 29), 0);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 8, 7), 0);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 80, 7), 0);
}

TEST_F(AlignConnect, UpperBoundMayExceedBoth) {
    // The same 8 columns for each length from 8 on: all are perfect, and no index reaches Min_overlap.
    EXPECT_EQ(align_connect("ACGTTGCA", "ACGTTGCA", 8, 30), -22);
    EXPECT_EQ(align_connect("ACGTTGCA", "ACGTTGCA", 7, 9), -2);
    EXPECT_EQ(align_connect("ACGTTGCA", "ACGTTGCA", 7, 8), 1);
}

TEST_F(AlignConnect, NothingEqualGives0) {
    EXPECT_EQ(align_connect("AAAAAAAAAA", "CCCCCCCCCC", 8), 0);
    EXPECT_EQ(align_connect("ACGTACGTAC", "ACGTACGTAC", 11), 0);
}

// The empty overlap has no score; the index is then the length.
TEST_F(AlignConnect, MinBelowOneIsHarmless) {
    EXPECT_EQ(align_connect(G(0, 60), G(30, 90), 0), 30);
    EXPECT_EQ(align_connect(G(0, 60), G(30, 80), -3), 33);
}

TEST_F(AlignConnect, EmptySequenceGivesMinusOne) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(align_connect("", "ACGT", 8), -1);
    EXPECT_EQ(align_connect("ACGTA", "", 8, 0.8), -1);
    EXPECT_EQ(align_connect("", "", 8, 20), -1);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "cannot connect: 0\t4\ncannot connect: 5\t0\ncannot connect: 0\t0\n");
}

TEST_F(AlignConnectDeathTest, MinAboveTheLongerByMoreThanOneIsFatal) {
    EXPECT_EXIT(align_connect("ACGT", "ACG", 6), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(align_connect("ACG", "ACGT", 6, 0.8), ExitedWithCode(255), Eq(""));
    EXPECT_EQ(align_connect("ACGT", "ACG", 5), 0);
}

// Cuts both strings out for each length and lists all scores.
int PlainConnect(const std::string& read_a, const std::string& read_b, int Min, int Max, bool from_left,
                 double match_ratio) {
    std::vector<double> value;
    for (int i = Min; i <= Max; ++i) {
        const int size_a = static_cast<int>(read_a.size());
        const int size_b = static_cast<int>(read_b.size());
        const std::string end_a = i < size_a ? read_a.substr(size_a - i) : read_a;
        const std::string start_b = i < size_b ? read_b.substr(0, i) : read_b;
        const std::string& stay = from_left ? end_a : start_b;
        const std::string& move = from_left ? start_b : end_a;
        const int len = static_cast<int>(move.size());
        double sum = 0;
        for (int j = 0; j < len; ++j) {
            if (j >= static_cast<int>(stay.size()) || stay[j] == 'N' || move[j] == 'N') continue;
            const int column = from_left ? j : i - len + j;
            if (stay[column] == move[j]) ++sum;
        }
        value.push_back(sum / len * 100.0);
    }
    double* list = value.data();
    return get_max(list, static_cast<int>(value.size()), match_ratio, 0.9);
}

TEST_F(AlignConnect, EqualsItsPlainTwin) {
    std::mt19937 random(71);
    int positive = 0;
    int negative = 0;
    for (int round = 0; round < 6000; ++round) {
        Min_overlap = 8 + static_cast<int>(random() % 20);
        const std::string letters = round % 3 == 0 ? "AC" : "ACGT";
        std::string genome = RandomBases(random, 120, round % 2 == 0 ? letters : letters + "N");
        if (round % 4 == 0) genome = RandomBases(random, 12) + genome.substr(0, 30) + genome.substr(0, 60);
        const std::string a = genome.substr(random() % 30, 1 + random() % 50);
        const std::string b = genome.substr(random() % 50, 1 + random() % 50);
        const int longer = static_cast<int>(std::max(a.size(), b.size()));
        const int Min = 1 + static_cast<int>(random() % (longer + 1));
        const double ratio = round % 2 == 0 ? 0.8 : 0.5;
        const int result = align_connect(a, b, Min, ratio);
        ASSERT_EQ(result, PlainConnect(a, b, Min, longer, a.size() > b.size(), ratio)) << a << " " << b << " " << Min;
        ASSERT_EQ(align_connect(a, b, Min), PlainConnect(a, b, Min, longer, a.size() > b.size(), 0.9));
        const int Max = Min + static_cast<int>(random() % 60) - 2;
        ASSERT_EQ(align_connect(a, b, Min, Max), PlainConnect(a, b, Min, Max, true, 0.9)) << a << " " << b;
        positive += result > 0;
        negative += result < 0;
    }
    EXPECT_GT(positive, 300);
    EXPECT_GT(negative, 300);
}

// Long enough that a length is given up before it is counted out.
TEST_F(AlignConnect, EqualsItsPlainTwinOnLongSequences) {
    std::mt19937 random(72);
    for (int round = 0; round < 200; ++round) {
        std::string genome = RandomBases(random, 900, round % 4 == 0 ? "AC" : round % 2 == 0 ? "ACGTN" : "ACGT");
        if (round % 5 == 0) genome.replace(400, 300, genome.substr(round, 300));
        const std::string a = genome.substr(random() % 100, 200 + random() % 300);
        std::string b = genome.substr(random() % 400, 200 + random() % 300);
        for (int changes = round % 2 == 0 ? random() % 60 : 0; changes > 0; --changes) b[random() % b.size()] = 'A';
        const int longer = static_cast<int>(std::max(a.size(), b.size()));
        const double ratio = round % 3 == 0 ? 0.9 : 0.5;
        ASSERT_EQ(align_connect(a, b, 8, ratio), PlainConnect(a, b, 8, longer, a.size() > b.size(), ratio)) << round;
        ASSERT_EQ(align_connect(a, b, 8, 700), PlainConnect(a, b, 8, 700, true, 0.9)) << round;
    }
}

}  // namespace
}  // namespace lintara
