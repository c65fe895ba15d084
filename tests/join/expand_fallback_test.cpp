#include <gtest/gtest.h>

#include "join/expand_gap.h"
#include "run/settings.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using testing::ExpandGapTest;
using testing::First;
using testing::Last;
using testing::Open;

const char kNotSure[] =
    "The overlap with edge is not sure. Then connect the before and after and cut the overlap region.\n"
    "zero gap check!\n";

/// A sequence that has another base than `seq` in each of its first 8 places.
std::string Unlike(std::string seq) {
    for (std::size_t i = 0; i < 8; ++i) seq = Changed(seq, i);
    return seq;
}

using RouteHTest = ExpandGapTest;

TEST_F(RouteHTest, EightTenthsOfTheGapAreNotEnough) {
    Connect(Bases(5, 80), Bases(6, 30), 100);
    EXPECT_FALSE(Logged("before possible overlap check!\n"));
    Connect(Bases(5, 81), Bases(6, 30), 100);
    EXPECT_TRUE(Logged("before possible overlap check!\n"));
}

TEST_F(RouteHTest, OverlapIsConfirmedByTheEndOfAfter) {
    const std::string piece = Bases(5, 30);
    EXPECT_EQ(Connect(piece + after_edge, Bases(6, 30) + piece, 100), piece);
    EXPECT_TRUE(Logged("before possible overlap check!\nBefore overlapped with after edge!\n"));
    EXPECT_EQ(Connect(First(piece, 25) + after_edge, Bases(6, 65) + First(piece, 25), 100), First(piece, 25));
    EXPECT_TRUE(Logged("Before overlapped with after edge!\n"));
}

TEST_F(RouteHTest, UnconfirmedOverlapGoesOn) {
    const std::string piece = Bases(5, 30);
    const std::string bad = Changed(Changed(Changed(piece, 3), 9), 15);
    EXPECT_EQ(Connect(piece + after_edge, Bases(6, 30) + bad, 100), Open(100));
    EXPECT_TRUE(Logged("Before overlapped with after edge!\n" + std::string(kNotSure)));
}

TEST_F(RouteHTest, EmptySequenceIsHeldAgainstTheBeforeEdge) {
    EXPECT_EQ(Connect(after_edge, Bases(6, 20), 70), "");
    EXPECT_TRUE(
        Logged("Before overlapped with after edge!\n" + std::string(kNotSure) + "Before contain after edge!\n"));
    EXPECT_EQ(Connect(Bases(6, 20), before_edge, 70), "");
    EXPECT_TRUE(
        Logged("After overlapped with before edge!\n" + std::string(kNotSure) + "After contain before edge!\n"));
}

TEST_F(RouteHTest, ReadToTheEdgeIsHeldAgainstALongerAfter) {
    const std::string left = Bases(5, 85);
    inner = {Changed(Last(left, 40) + "AC" + First(after_edge, 40), 30)};
    EXPECT_EQ(Connect(left, Bases(6, 90), 100), Open(100));
    EXPECT_TRUE(Logged("final check: \nbefore: " + left + "AC\nafter: " + Bases(6, 90) + "\nmatch ratio 0."));
    EXPECT_EQ(before, left + "AC");
}

TEST_F(RouteHTest, ReadToTheEdgeNeedsTheEndOfAfter) {
    // A mismatch in 40 bases of the read keeps it from joining the two sides.
    const std::string left = Bases(5, 85);
    inner = {Changed(Last(left, 40) + "ACGTA" + First(after_edge, 40), 30)};
    EXPECT_EQ(Connect(left, Last(left, 5) + "ACGTA", 90), left + "ACGTA");
    EXPECT_TRUE(Logged("read connect before and after edge!\nfinal check: \nbefore: " + left +
                       "ACGTA\nafter: " + Last(left, 5) + "ACGTA\n"));
    EXPECT_FALSE(Logged("match ratio "));
}

TEST_F(RouteHTest, ReadToTheEdgeAllowsTwoMistakesInAfter) {
    const std::string left = Bases(5, 85);
    inner = {Changed(Last(left, 40) + "AC" + First(after_edge, 40), 30)};
    const std::string bad = Changed(Changed(Last(left, 18) + "AC", 5), 10);
    EXPECT_EQ(Connect(left, bad, 100), left + "AC");
    EXPECT_TRUE(Logged("match ratio 0.9\nmaybe before or after have mistakes!\n"));
    EXPECT_EQ(Connect(left, Changed(bad, 15), 100), Open(100));
    EXPECT_TRUE(Logged("match ratio 0.85\n" + std::string(kNotSure)));
    EXPECT_EQ(before, left + "AC");
}

TEST_F(RouteHTest, ReadIntoBothEdgesIsAMinusGap) {
    const std::string start = Bases(10, 10);
    const std::string common = Bases(9, 10);
    before_edge = First(before_edge, 50) + common;
    after_edge = common + start + First(after_edge, 40);
    inner = {before_edge.substr(20) + after_edge.substr(10, 50)};
    EXPECT_EQ(Connect(start, "TTT", 12), Open(12));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged("read connect before and after edge!\nreal gapsize maybe minus!\t-10\n"));
}

using RouteITest = ExpandGapTest;

TEST_F(RouteITest, EightTenthsOfTheGapAreNotEnough) {
    Connect(Bases(5, 30), Bases(6, 80), 100);
    EXPECT_FALSE(Logged("after possible overlap check!\t"));
    Connect(Bases(5, 30), Bases(6, 81), 100);
    EXPECT_TRUE(Logged("after possible overlap check!\t"));
}

TEST_F(RouteITest, OverlapIsConfirmedByTheStartOfBefore) {
    const std::string piece = Bases(5, 30);
    EXPECT_EQ(Connect(piece + Bases(6, 30), before_edge + piece, 100), piece);
    EXPECT_TRUE(Logged("after possible overlap check!\t60\nAfter overlapped with before edge!\n"));
    EXPECT_EQ(Connect(First(piece, 25) + Bases(6, 65), before_edge + First(piece, 25), 100), First(piece, 25));
}

TEST_F(RouteITest, UnconfirmedOverlapGoesOn) {
    const std::string piece = Bases(5, 30);
    const std::string bad = Changed(Changed(Changed(piece, 3), 9), 15);
    EXPECT_EQ(Connect(bad + Bases(6, 30), before_edge + piece, 100), Open(100));
    EXPECT_TRUE(Logged("After overlapped with before edge!\n" + std::string(kNotSure)));
}

TEST_F(RouteITest, LongAfterIsCutAsIfItHadBeenLookedAtWhole) {
    // Its last 120 bases begin with the end of the before edge, 25 bases behind its start.
    const std::string grown = Bases(7, 25) + Last(before_edge, 30) + Bases(6, 90);
    EXPECT_EQ(Connect(grown.substr(30, 7), grown, 150), grown.substr(30));
    EXPECT_TRUE(Logged("after possible overlap check!\t30\nAfter overlapped with before edge!\n"));
}

TEST_F(RouteITest, ReadToTheEdgeIsTakenWhateverBeforeSays) {
    const std::string right = Bases(6, 85);
    inner = {Last(before_edge, 40) + "AC" + First(right, 40)};
    EXPECT_EQ(Connect(Unlike("AC" + First(right, 18)), right, 100), "AC" + right);
    EXPECT_TRUE(Logged("read connect after and before edge!\nnot support by before with ratio: 0\n"));
    EXPECT_EQ(Connect("AC" + First(right, 6) + Bases(8, 12), right, 100), "AC" + right);
    EXPECT_TRUE(Logged("read connect after and before edge!\nsupport by before.\n"));
    EXPECT_EQ(Connect(Bases(8, 7), right, 90), "AC" + right);
    EXPECT_FALSE(Logged("support by before"));
}

TEST_F(RouteITest, ReadIntoBothEdgesIsAMinusGap) {
    const std::string end = Bases(10, 10);
    const std::string common = Bases(9, 10);
    before_edge = First(before_edge, 40) + end + common;
    after_edge = common + First(after_edge, 50);
    inner = {before_edge.substr(10) + after_edge.substr(10, 40)};
    EXPECT_EQ(Connect("TTT", end, 12), Open(12));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(Logged("read connect after and before edge!\ngap size maybe minus!\t-10\n"));
}

using RouteJTest = ExpandGapTest;

TEST_F(RouteJTest, NothingSureLeavesTheGapOpen) {
    EXPECT_EQ(Connect(Bases(5, 60), Bases(6, 60), 110), Open(110));
    EXPECT_EQ(log.substr(log.size() - std::string(kNotSure).size()), kNotSure);
}

TEST_F(RouteJTest, BothExpansionsRepeatTheFarEdge) {
    const std::string left = First(after_edge, 8) + Bases(5, 42);
    const std::string right = Bases(6, 42) + Last(before_edge, 8);
    EXPECT_EQ(Connect(left, right, 95), "");
    EXPECT_TRUE(Logged("zero gap check!\nReal gapsize is zero!\n"));
    EXPECT_EQ(Connect(Changed(left, 7), right, 95), Open(95));
    EXPECT_EQ(Connect(left, Changed(right, 42), 95), Open(95));
}

TEST_F(RouteJTest, OneExpansionHoldsTheFarEdge) {
    EXPECT_EQ(Connect(Bases(5, 40), Bases(6, 10) + before_edge, 100), "");
    EXPECT_TRUE(Logged("After contain before edge!\n"));
    EXPECT_EQ(Connect(after_edge + Bases(6, 10), Bases(5, 40), 100), "");
    EXPECT_TRUE(Logged("Before contain after edge!\n"));
}

}  // namespace
}  // namespace lintara
