#include "align/overlap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "align/bases.h"
#include "align/search.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using lintara::testing::Cut;
using lintara::testing::RandomBases;
using lintara::testing::UniqueBases;
using lintara::testing::WithErrors;
using ::testing::Eq;
using ::testing::ExitedWithCode;

const char kUnusable[] = "overlap too short or the false rate is too high!\n";

class OverlapTest : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }

    const std::string genome_ = UniqueBases(200, 1);
    const std::string other_ = UniqueBases(200, 2);

    std::string G(int start, int end) const { return Cut(genome_, start, end); }
    // The four seeds of G(0, 60) in reverse order, and then its first 40 bases.
    std::string SeedsElsewhere() const { return G(21, 28) + G(14, 21) + G(7, 14) + G(0, 7) + G(0, 40); }
};

using Overlap = OverlapTest;
using OverlapDeathTest = OverlapTest;
using Overlap2 = OverlapTest;
using Overlap2DeathTest = OverlapTest;
using ForwardOverlap = OverlapTest;
using ForwardOverlapDeathTest = OverlapTest;
using OverlapBeforeLen = OverlapTest;
using OverlapBeforeLenDeathTest = OverlapTest;
using OverlapAfterLen = OverlapTest;
using OverlapAfterLenDeathTest = OverlapTest;

TEST_F(Overlap, EqualSequencesArePositive) {
    EXPECT_EQ(overlap(G(0, 80), G(0, 80), 5, 0.97), 80);
    EXPECT_EQ(overlap(G(0, 80), G(0, 80), 1, 1.0), 80);
}

TEST_F(Overlap, SignIsTheOrder) {
    EXPECT_EQ(overlap(G(0, 60), G(30, 90), 5, 0.97), 30);
    EXPECT_EQ(overlap(G(30, 90), G(0, 60), 5, 0.97), -30);
}

TEST_F(Overlap, ContainedSequenceGivesItsOwnLength) {
    EXPECT_EQ(overlap(G(0, 100), G(20, 60), 5, 0.97), -40);
    EXPECT_EQ(overlap(G(20, 60), G(0, 100), 5, 0.97), 40);
}

TEST_F(Overlap, CommonEndIsPositiveUnlessTheFirstStartsFirst) {
    EXPECT_EQ(overlap(G(20, 100), G(0, 100), 5, 0.97), 80);
    EXPECT_EQ(overlap(G(0, 100), G(20, 100), 5, 0.97), -80);
}

// Errors leave no seed of the first sequence whole; the third seed of the second one stands at 24.
TEST_F(Overlap, CommonEndFromTheSecondSequencesSeeds) {
    EXPECT_EQ(overlap(WithErrors(G(0, 100), {15, 22}), G(10, 100), 5, 0.95), -90);
}

TEST_F(Overlap, SeedInAChancePlaceIsFollowedByTheNext) {
    const std::string str2 = G(0, 7) + Cut(other_, 0, 13) + G(0, 40);
    EXPECT_EQ(overlap(G(0, 60), str2, 5, 0.97), -40);
}

TEST_F(Overlap, AllSeedsElsewhereLeadToTheWholeStart) {
    EXPECT_EQ(overlap(G(0, 60), SeedsElsewhere(), 5, 0.97), -40);
    EXPECT_EQ(overlap(SeedsElsewhere(), G(0, 60), 5, 0.97), 40);
}

TEST_F(Overlap, ShortOverlapIsFoundFromTheSecondSequence) {
    EXPECT_EQ(overlap(G(0, 60), G(50, 110), 5, 0.97), 10);
    EXPECT_EQ(overlap(G(0, 60), G(53, 113), 5, 0.97), 7);
    EXPECT_EQ(overlap(G(0, 60), G(54, 114), 5, 0.97), 0);
    EXPECT_EQ(overlap(G(50, 110), G(0, 60), 5, 0.97), -10);
}

TEST_F(Overlap, ReachingTheRatioIsEnough) {
    const std::string str2 = WithErrors(G(20, 80), {30, 35});
    EXPECT_EQ(overlap(G(0, 60), str2, 5, 0.95), 40);
    EXPECT_EQ(overlap(G(0, 60), str2, 5, 0.951), 0);
}

TEST_F(Overlap, NEqualsOnlyN) {
    std::string str1 = G(0, 60);
    std::string str2 = G(20, 80);
    str1[50] = 'N';
    EXPECT_EQ(overlap(str1, str2, 5, 1.0), 0);
    str2[30] = 'N';
    EXPECT_EQ(overlap(str1, str2, 5, 1.0), 40);
}

TEST_F(Overlap, UnrelatedSequencesGive0) {
    EXPECT_EQ(overlap(G(0, 60), G(100, 160), 5, 0.9), 0);
}

TEST_F(Overlap, SeedsFollowTheSettings) {
    // One seed of 11 bases.
    Min_overlap = 11;
    EXPECT_EQ(overlap(G(0, 60), G(49, 110), 5, 1.0), 11);
    EXPECT_EQ(overlap(G(0, 60), G(50, 110), 5, 1.0), 0);
    // 6 seeds of 5 bases: only the last one is whole, at 25.
    Min_overlap = 30;
    false_ratio = 0.2;
    const std::string errors = WithErrors(G(0, 60), {2, 7, 12, 17, 22});
    EXPECT_EQ(overlap(errors, G(0, 60), 5, 0.9), 60);
    false_ratio = 0.14;
    EXPECT_EQ(overlap(WithErrors(errors, {27}), G(0, 60), 5, 0.9), 0);
}

// A, C, G and T vote for the start of the seed although one of its bases is changed.
TEST_F(Overlap, Method4VotesForOneSeedOf30) {
    const std::string str1 = "ACGT" + std::string(26, 'A') + std::string(30, 'C');
    const std::string str2 = WithErrors(str1, {10});
    ASSERT_EQ(string_match(str1.substr(0, 30), str2, 0), -1);
    EXPECT_EQ(overlap(str1, str2, 4, 0.98), 60);
    EXPECT_EQ(overlap(str1, str2, 4, 1.0), 0);
    EXPECT_EQ(overlap(G(0, 29), G(0, 29), 4, 0.9), 0);
}

TEST_F(OverlapDeathTest, EmptySequenceIsFatalWithoutAMessage) {
    EXPECT_EXIT(overlap("", G(0, 60), 5, 0.97), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(overlap(G(0, 60), "", 5, 0.97), ExitedWithCode(255), Eq(""));
    false_ratio = 0;
    EXPECT_EXIT(overlap("", "", 5, 0.97), ExitedWithCode(255), Eq(""));
}

TEST_F(OverlapDeathTest, UnusableSettingsAreFatal) {
    for (const double ratio : {0.0, 0.01, 0.3, 1e300, -1e300}) {
        false_ratio = ratio;
        EXPECT_EXIT(overlap(G(0, 60), G(0, 60), 5, 0.97), ExitedWithCode(255), Eq(kUnusable)) << ratio;
    }
    // Method 4 has seeds of its own.
    EXPECT_EQ(overlap(G(0, 20), G(0, 20), 4, 0.97), 0);
}

TEST_F(OverlapDeathTest, TextBelowASeedIsFatal) {
    EXPECT_EXIT(overlap(G(0, 60), G(0, 6), 5, 0.97), ExitedWithCode(255),
                Eq("Error! pattern length should not be longer than string length!\t7\t6\n"));
    EXPECT_EXIT(overlap(G(0, 6), G(0, 60), 1, 0.97), ExitedWithCode(255),
                Eq("Error! pattern length should not be longer than string length!\t7\t6\n"));
}

TEST_F(Overlap2, TakesTheRunWideRatio) {
    const std::string str2 = WithErrors(G(20, 80), {30, 35});
    EXPECT_EQ(overlap2(G(0, 60), str2, 5, 3, 4), 0);
    Match_ratio = 0.95;
    EXPECT_EQ(overlap2(G(0, 60), str2, 5, 3, 4), 40);
    EXPECT_EQ(overlap2(str2, G(0, 60), 5, 0, 0), -40);
}

TEST_F(Overlap2, HasNoSecondLookAtRepeats) {
    EXPECT_EQ(overlap2(G(0, 60), SeedsElsewhere(), 5, 0, 0), 0);
    EXPECT_EQ(overlap2(SeedsElsewhere(), G(0, 60), 5, 0, 0), 0);
}

TEST_F(Overlap2DeathTest, FailsWithoutAMessageOfItsOwn) {
    EXPECT_EXIT(overlap2("", G(0, 60), 5, 0, 0), ExitedWithCode(255),
                Eq("Error! pattern length should not be longer than string length!\t7\t0\n"));
    false_ratio = 0.3;
    EXPECT_EXIT(overlap2(G(0, 60), G(0, 60), 5, 0, 0), ExitedWithCode(255), Eq(""));
}

TEST_F(ForwardOverlap, GivesTheOverlap) {
    EXPECT_EQ(forward_overlap(G(0, 60), G(30, 90), 5, 0.97), 30);
    EXPECT_EQ(forward_overlap(G(0, 60), G(20, 60), 5, 0.97), 40);
    EXPECT_EQ(forward_overlap(G(0, 60), G(0, 60), 5, 0.97), 60);
}

TEST_F(ForwardOverlap, GoesToTheEndOfTheFirstWhenItPassesTheSecond) {
    EXPECT_EQ(forward_overlap(G(0, 70), G(20, 60), 5, 0.97), 50);
}

TEST_F(ForwardOverlap, LooksForNoOtherOrder) {
    EXPECT_EQ(forward_overlap(G(30, 90), G(0, 60), 5, 0.97), 0);
    EXPECT_EQ(forward_overlap(G(10, 70), G(0, 60), 5, 0.97), 0);
}

TEST_F(ForwardOverlap, EmptyOrShortSecondGives0) {
    EXPECT_EQ(forward_overlap("", G(0, 60), 5, 0.97), 0);
    EXPECT_EQ(forward_overlap(G(0, 60), "", 5, 0.97), 0);
    EXPECT_EQ(forward_overlap(G(0, 60), G(0, 6), 5, 0.97), 0);
    EXPECT_EQ(forward_overlap(G(0, 60), G(53, 60), 5, 0.97), 7);
}

TEST_F(ForwardOverlap, HasFourSeedsWhateverTheFalseRatioSays) {
    false_ratio = 0;
    EXPECT_EQ(forward_overlap(G(0, 60), G(30, 90), 5, 0.97), 30);
    // The one whole seed is the third one.
    EXPECT_EQ(forward_overlap(G(0, 60), WithErrors(G(20, 80), {3, 10, 24}), 5, 0.9), 40);
}

TEST_F(ForwardOverlap, AllSeedsElsewhereLeadToTheWholeStart) {
    EXPECT_EQ(forward_overlap(SeedsElsewhere(), G(0, 60), 5, 0.97), 40);
    // The first goes on: 50 bases behind the start of the second one's place, at 28.
    EXPECT_EQ(forward_overlap(SeedsElsewhere() + Cut(other_, 0, 10), G(0, 40), 5, 0.97), 50);
}

TEST_F(ForwardOverlap, FirstBelowTheWholeStartGives0) {
    // All four seeds are there and in no order that is accepted; 28 bases are less than the 30 that are then sought.
    EXPECT_EQ(forward_overlap(G(7, 14) + G(0, 7) + G(21, 28) + G(14, 21), G(0, 60), 5, 0.97), 0);
}

TEST_F(ForwardOverlap, LaterPlacesOfTheFirstSeedAreTried) {
    const std::string str1 = G(0, 7) + Cut(other_, 0, 13) + WithErrors(G(0, 40), {10, 17, 24});
    EXPECT_EQ(forward_overlap(str1, G(0, 60), 5, 0.9), 40);
    EXPECT_EQ(forward_overlap(str1, G(0, 60), 5, 0.93), 0);
}

// The later seeds are nowhere in the first sequence, and so 71 is its whole length and one more.
TEST_F(ForwardOverlap, LaterPlaceMeasuresFromTheLastSearch) {
    const std::string str1 = G(0, 7) + Cut(other_, 0, 13) + WithErrors(G(0, 40), {10, 17, 24}) + Cut(other_, 20, 30);
    EXPECT_EQ(forward_overlap(str1, G(0, 40), 5, 0.9), 71);
}

TEST_F(ForwardOverlap, LaterPlacesAreThoseOfTheRunWideMethod) {
    const std::string str1 = G(0, 7) + Cut(other_, 0, 13) + WithErrors(G(0, 40), {10, 17, 24});
    Method = -1;
    EXPECT_EQ(forward_overlap(str1, G(0, 60), 5, 0.9), 0);
}

TEST_F(ForwardOverlapDeathTest, UnusableSettingsAreFatalWithoutAMessage) {
    Min_overlap = 15;
    EXPECT_EXIT(forward_overlap(G(0, 60), G(0, 60), 5, 0.97), ExitedWithCode(255), Eq(""));
    EXPECT_EQ(forward_overlap("", G(0, 60), 5, 0.97), 0);
    EXPECT_EQ(forward_overlap(G(0, 60), "AC", 5, 0.97), 0);
}

TEST_F(ForwardOverlapDeathTest, FirstBelowASeedIsFatal) {
    EXPECT_EXIT(forward_overlap(G(0, 6), G(0, 60), 5, 0.97), ExitedWithCode(255),
                Eq("Error! pattern length should not be longer than string length!\t7\t6\n"));
}

// A call's result and its out-value.
using LenResult = std::pair<int, int>;

LenResult Before(const std::string& before, const std::string& str, double match_ratio = 0.97, int method = 5) {
    int before_len = -77;
    const int length = overlap_before_len(before, str, method, before_len, match_ratio);
    return {length, before_len};
}

LenResult After(const std::string& str, const std::string& after, double match_ratio = 0.97, int method = 5) {
    int after_len = -77;
    const int length = overlap_after_len(str, after, method, after_len, match_ratio);
    return {length, after_len};
}

TEST_F(OverlapBeforeLen, ContainedBeforeGivesItsOffset) {
    EXPECT_EQ(Before(G(5, 45), G(0, 60)), LenResult(40, 5));
}

TEST_F(OverlapBeforeLen, BeforeThatStartsLeftHasNoOffset) {
    EXPECT_EQ(Before(G(0, 40), G(20, 100)), LenResult(20, -1));
}

TEST_F(OverlapBeforeLen, SeedAtTheVeryStartIsPassedOver) {
    // The second seed gives the same placement.
    EXPECT_EQ(Before(G(0, 40), G(0, 80)), LenResult(40, 0));
    // There is no second seed, and the forward search decides.
    EXPECT_EQ(Before(G(0, 10), G(0, 80)), LenResult(10, -1));
}

TEST_F(OverlapBeforeLen, BeforeThatEndsBehindTheTextIsNone) {
    EXPECT_EQ(Before(G(20, 60), G(0, 50)), LenResult(0, -1));
}

TEST_F(OverlapBeforeLen, RejectedPlacementLeavesNoOffset) {
    EXPECT_EQ(Before(WithErrors(G(5, 45), {10, 17, 24, 30}), G(0, 60)), LenResult(0, -1));
}

TEST_F(OverlapBeforeLen, LongBeforeTakesOnlyThePositiveOrder) {
    EXPECT_EQ(Before(G(0, 60), G(30, 80)), LenResult(30, -1));
    EXPECT_EQ(Before(G(30, 90), G(0, 50)), LenResult(0, -1));
    EXPECT_EQ(Before(G(0, 60), G(10, 50)), LenResult(0, -1));
    EXPECT_EQ(Before(G(0, 60), G(0, 60)), LenResult(0, -1));
}

TEST_F(OverlapBeforeLenDeathTest, EmptySequenceIsFatalWithoutAMessage) {
    EXPECT_EXIT(Before("", G(0, 60)), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(Before(G(0, 60), ""), ExitedWithCode(255), Eq(""));
}

TEST_F(OverlapBeforeLenDeathTest, UnusableSettingsAreFatal) {
    false_ratio = 0.3;
    EXPECT_EXIT(Before("ACGTACG", "ACGTACGTT"), ExitedWithCode(255), Eq(std::string(kUnusable) + "ACGTACG\n"));
    // A long `before` meets the same limit in overlap().
    EXPECT_EXIT(Before("ACGTACGTT", "ACGTACG"), ExitedWithCode(255), Eq(kUnusable));
}

TEST_F(OverlapAfterLen, ContainedAfterGivesWhatIsLeftBehindIt) {
    EXPECT_EQ(After(G(0, 60), G(13, 53)), LenResult(40, 7));
    EXPECT_EQ(After(G(0, 60), G(20, 60)), LenResult(40, 0));
}

TEST_F(OverlapAfterLen, AfterThatRunsOnLeavesNothing) {
    EXPECT_EQ(After(G(0, 60), G(40, 90)), LenResult(20, -1));
}

TEST_F(OverlapAfterLen, SeedAtTheVeryStartIsPassedOver) {
    EXPECT_EQ(After(G(0, 60), G(0, 40)), LenResult(40, 20));
    // There is no second seed, and the forward search gives the bases up to the end.
    EXPECT_EQ(After(G(0, 60), G(0, 10)), LenResult(60, -1));
}

TEST_F(OverlapAfterLen, AfterThatStartsBeforeTheTextIsNone) {
    EXPECT_EQ(After(G(10, 80), G(0, 40)), LenResult(0, -1));
}

TEST_F(OverlapAfterLen, RejectedPlacementLeavesNothing) {
    EXPECT_EQ(After(G(0, 60), WithErrors(G(5, 45), {10, 17, 24, 30})), LenResult(0, -1));
}

TEST_F(OverlapAfterLen, LongAfterTakesOnlyThePositiveOrder) {
    EXPECT_EQ(After(G(0, 50), G(30, 90)), LenResult(20, -1));
    EXPECT_EQ(After(G(30, 80), G(0, 60)), LenResult(0, -1));
    EXPECT_EQ(After(G(10, 50), G(0, 60)), LenResult(0, -1));
    EXPECT_EQ(After(G(0, 60), G(0, 60)), LenResult(0, -1));
}

TEST_F(OverlapAfterLenDeathTest, EmptySequenceIsFatalWithoutAMessage) {
    EXPECT_EXIT(After("", G(0, 60)), ExitedWithCode(255), Eq(""));
    EXPECT_EXIT(After(G(0, 60), ""), ExitedWithCode(255), Eq(""));
}

TEST_F(OverlapAfterLenDeathTest, UnusableSettingsAreFatal) {
    false_ratio = 0.3;
    EXPECT_EXIT(After("ACGTACGTT", "ACGTACG"), ExitedWithCode(255), Eq(std::string(kUnusable) + "ACGTACG\n"));
    EXPECT_EXIT(After("ACGTACG", "ACGTACGTT"), ExitedWithCode(255), Eq(kUnusable));
}

// The plain twins: every seed is cut out, every placement compared column by column from the seed to both sides.
namespace plain {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

bool Holds(const std::string& a, int p, const std::string& b, int pos, int n, double match_ratio) {
    int count = 0;
    for (int j = 0; j < n; ++j) {
        if (p + j < Size(a) && pos + j < Size(b) && a[p + j] == b[pos + j]) ++count;
        if (p - j - 1 >= 0 && pos - j - 1 >= 0 && a[p - j - 1] == b[pos - j - 1]) ++count;
    }
    return static_cast<double>(count) / n >= match_ratio;
}

void Geometry(int method, int& pattnum, int& pattlen) {
    pattnum = method == 4 ? 1 : static_cast<int>(Min_overlap * false_ratio);
    pattlen = method == 4 ? 30 : Min_overlap / pattnum;
}

int FromFirst(const std::string& str1, const std::string& str2, int method, double match_ratio, int& matchnum) {
    int pattnum = 0;
    int pattlen = 0;
    Geometry(method, pattnum, pattlen);
    matchnum = 0;
    for (int i = 0; i < pattnum; ++i) {
        if ((i + 1) * pattlen > Size(str1)) break;
        const int p = i * pattlen;
        const int pos = string_match(str1.substr(p, pattlen), str2, method);
        if (pos < 0) continue;
        ++matchnum;
        const int tail1 = Size(str1) - p;
        const int tail2 = Size(str2) - pos;
        int n = 0;
        int sign = 1;
        if (tail2 > tail1) {
            n = tail1 + std::min(p, pos);
        } else if (tail2 == tail1) {
            n = p <= pos ? tail2 + p : tail2 + pos;
            sign = p <= pos ? 1 : -1;
        } else {
            n = tail2 + std::min(p, pos);
            sign = -1;
        }
        if (Holds(str1, p, str2, pos, n, match_ratio)) return sign * n;
    }
    return 0;
}

int FromSecond(const std::string& str1, const std::string& str2, int method, double match_ratio, int& matchnum) {
    int pattnum = 0;
    int pattlen = 0;
    Geometry(method, pattnum, pattlen);
    matchnum = 0;
    for (int i = 0; i < pattnum; ++i) {
        if ((i + 1) * pattlen > Size(str2)) break;
        const int p = i * pattlen;
        const int pos = string_match(str2.substr(p, pattlen), str1, method);
        if (pos < 0) continue;
        ++matchnum;
        const int tail1 = Size(str1) - pos;
        const int tail2 = Size(str2) - p;
        int n = 0;
        int sign = 1;
        if (tail1 > tail2) {
            n = tail2 + std::min(p, pos);
            sign = -1;
        } else if (tail1 == tail2) {
            n = p < pos ? tail1 + p : tail1 + pos;
            sign = p < pos ? -1 : 1;
        } else {
            n = tail1 + std::min(p, pos);
        }
        if (Holds(str2, p, str1, pos, n, match_ratio)) return sign * n;
    }
    return 0;
}

int WholeStart(const std::string& inner, const std::string& outer, int method, double match_ratio) {
    const std::string patt = inner.substr(0, Min_overlap);
    if (patt.size() > outer.size()) return 0;
    const int pos = string_match(patt, outer, method);
    if (pos < 0) return 0;
    const int n = std::min(Size(outer) - pos, Size(inner));
    int count = 0;
    for (int j = 0; j < n; ++j) count += outer[pos + j] == inner[j];
    return static_cast<double>(count) / n >= match_ratio ? n : 0;
}

int Overlap(const std::string& str1, const std::string& str2, int method, double match_ratio) {
    int pattnum = 0;
    int pattlen = 0;
    Geometry(method, pattnum, pattlen);
    int matchnum = 0;
    int result = FromFirst(str1, str2, method, match_ratio, matchnum);
    if (result == 0 && matchnum == pattnum) result = -WholeStart(str1, str2, method, match_ratio);
    if (result != 0) return result;
    result = FromSecond(str1, str2, method, match_ratio, matchnum);
    if (result == 0 && matchnum == pattnum) result = WholeStart(str2, str1, method, match_ratio);
    return result;
}

int Overlap2(const std::string& str1, const std::string& str2, int method) {
    int matchnum = 0;
    const int result = FromFirst(str1, str2, method, Match_ratio, matchnum);
    return result != 0 ? result : FromSecond(str1, str2, method, Match_ratio, matchnum);
}

int Forward(const std::string& str1, const std::string& str2, int method, double match_ratio) {
    const int pattlen = Min_overlap / 4;
    if (str1.empty() || Size(str2) < pattlen) return 0;
    int matchnum = 0;
    bool firstmatch = false;
    int pos = -1;
    for (int i = 0; i < 4 && (i + 1) * pattlen <= Size(str2); ++i) {
        const int p = i * pattlen;
        pos = string_match(str2.substr(p, pattlen), str1, method);
        if (pos >= 0) ++matchnum;
        if (p > pos) continue;
        if (i == 0) firstmatch = true;
        const int len = p + Size(str1) - pos;
        const int n = Size(str1) - pos < Size(str2) - p ? len : Size(str2);
        if (Holds(str2, p, str1, pos, n, match_ratio)) return n == Size(str2) && n < len ? len : n;
    }
    if (matchnum == 4) {
        const std::string patt = str2.substr(0, Min_overlap);
        if (str1.size() < patt.size()) return 0;
        pos = string_match(patt, str1, method);
        if (pos >= 0) {
            const int n = std::min(Size(str1) - pos, Size(str2));
            if (Holds(str1.substr(pos), 0, str2, 0, n, match_ratio)) {
                return n == Size(str2) && n < Size(str1) - pos ? Size(str1) - pos : n;
            }
        }
    }
    if (!firstmatch) return 0;
    const std::vector<int> places = PattNum(str2.substr(0, pattlen), str1);
    for (std::size_t k = 1; k < places.size(); ++k) {
        const int n = std::min(Size(str1) - places[k], Size(str2));
        if (!Holds(str1.substr(places[k]), 0, str2, 0, n, match_ratio)) continue;
        return n == Size(str2) && n < Size(str1) - pos ? Size(str1) - pos : n;
    }
    return 0;
}

LenResult BeforeLen(const std::string& before, const std::string& str, int method, double match_ratio) {
    if (before.size() >= str.size()) {
        const int r = Overlap(before, str, method, match_ratio);
        return {r < 1 || r >= Size(str) ? 0 : r, -1};
    }
    int pattnum = 0;
    int pattlen = 0;
    Geometry(method, pattnum, pattlen);
    for (int i = 0; i < pattnum && (i + 1) * pattlen <= Size(before); ++i) {
        const int p = i * pattlen;
        const int pos = string_match(before.substr(p, pattlen), str, method);
        if (pos <= 0 || Size(str) - pos < Size(before) - p) continue;
        const int part1 = p <= pos ? p : pos;
        const int n = part1 + Size(before) - p;
        if (Holds(before, p, str, pos, n, match_ratio)) return {n, p <= pos ? pos - p : -1};
    }
    return {Forward(before, str, method, match_ratio), -1};
}

LenResult AfterLen(const std::string& str, const std::string& after, int method, double match_ratio) {
    if (after.size() >= str.size()) {
        const int r = Overlap(str, after, method, match_ratio);
        return {r < 1 || r >= Size(str) ? 0 : r, -1};
    }
    int pattnum = 0;
    int pattlen = 0;
    Geometry(method, pattnum, pattlen);
    for (int i = 0; i < pattnum && (i + 1) * pattlen <= Size(after); ++i) {
        const int p = i * pattlen;
        const int pos = string_match(after.substr(p, pattlen), str, method);
        if (pos <= 0 || p > pos) continue;
        const bool short_tail = Size(str) - pos < Size(after) - p;
        const int part2 = short_tail ? Size(str) - pos : Size(after) - p;
        if (!Holds(after, p, str, pos, p + part2, match_ratio)) continue;
        return {p + part2, short_tail ? -1 : Size(str) - pos - part2};
    }
    return {Forward(str, after, method, match_ratio), -1};
}

}  // namespace plain

// Two stretches of one genome with errors; the genome is now and then one of short repeats.
std::pair<std::string, std::string> RandomPair(std::mt19937& random) {
    std::string genome = RandomBases(random, 160, random() % 4 == 0 ? "AC" : "ACGT");
    if (random() % 3 == 0) {
        const std::string unit = RandomBases(random, 5 + random() % 30);
        genome.clear();
        while (genome.size() < 160) genome += unit;
        if (random() % 2 == 0) genome = WithErrors(genome, {static_cast<int>(random() % 160)});
    }
    std::string pair[2];
    for (std::string& seq : pair) {
        seq = genome.substr(random() % 80, 8 + random() % 70);
        const int errors = random() % 5;
        for (int e = 0; e < errors; ++e) seq = WithErrors(seq, {static_cast<int>(random() % seq.size())});
    }
    return {pair[0], pair[1]};
}

TEST_F(Overlap, AllFindersEqualTheirPlainTwins) {
    std::mt19937 random(51);
    const int methods[] = {0, 1, 2, 3, 4, 5};
    const double ratios[] = {1.0, 0.99, 0.97, 0.95, 0.9, 0.7};
    const std::pair<int, double> settings[] = {{30, 0.14}, {30, 0.2}, {20, 0.1}, {40, 0.14}};
    int found[5] = {};
    for (int round = 0; round < 15000; ++round) {
        std::tie(Min_overlap, false_ratio) = settings[random() % 4];
        const auto [a, b] = RandomPair(random);
        const int method = methods[random() % 6];
        const double ratio = ratios[random() % 6];
        // Each text is at least as long as the seeds sought in it.
        int pattnum = 0;
        int pattlen = 0;
        plain::Geometry(method, pattnum, pattlen);
        const int shortest = std::max({pattlen, Min_overlap / 4, 3});
        if (plain::Size(a) < shortest || plain::Size(b) < shortest) continue;
        const std::string call = a + " " + b + " method " + std::to_string(method);

        const int both = overlap(a, b, method, ratio);
        ASSERT_EQ(both, plain::Overlap(a, b, method, ratio)) << call;
        const int both2 = overlap2(a, b, method, 1, 2);
        ASSERT_EQ(both2, plain::Overlap2(a, b, method)) << call;
        const int forward = forward_overlap(a, b, method, ratio);
        ASSERT_EQ(forward, plain::Forward(a, b, method, ratio)) << call;
        const LenResult before = Before(a, b, ratio, method);
        ASSERT_EQ(before, plain::BeforeLen(a, b, method, ratio)) << call;
        const LenResult after = After(a, b, ratio, method);
        ASSERT_EQ(after, plain::AfterLen(a, b, method, ratio)) << call;
        const int results[] = {both, both2, forward, before.first, after.first};
        for (int k = 0; k < 5; ++k) found[k] += results[k] != 0;
    }
    for (const int count : found) EXPECT_GT(count, 500);
}

}  // namespace
}  // namespace lintara
