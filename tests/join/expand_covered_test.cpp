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

using CoveredTest = ExpandGapTest;

TEST_F(CoveredTest, LongOverlapWithAShortRestFillsTheEstimateWithN) {
    before_edge = Bases(1, 400);
    const std::string rest = Bases(5, 50);
    EXPECT_EQ(Connect("", Last(before_edge, 300) + rest, 200), Open(150) + rest);
    EXPECT_EQ(log,
              "the expand sequence cover the gap region!\nMax: 350\t400\t410\n"
              "Get the overlap 300\twith min overlap length: 8\n"
              "The after sequence overlapped with the before edge\nCheck overlap: " +
                  Last(before_edge, 300) + "\t300\nPass overlap check!\n");
    // 250 bases are not above 2.5 reads.
    EXPECT_EQ(Connect("", Last(before_edge, 250) + rest, 200), rest);
}

TEST_F(CoveredTest, LongOverlapWithTheAfterEdgeFillsTheEstimateWithN) {
    after_edge = Bases(2, 400);
    const std::string rest = Bases(5, 50);
    EXPECT_EQ(Connect(rest + First(after_edge, 300), "", 200), rest + Open(150));
    EXPECT_TRUE(Logged("The before sequence overlapped with the after edge\nCheck overlap: " + First(after_edge, 300) +
                       "\t300\nPass overlap check!\n"));
    EXPECT_EQ(Connect(rest + First(after_edge, 250), "", 200), rest);
}

TEST_F(CoveredTest, AfterEdgeInsideTheRestCutsItsTail) {
    const std::string junk = Bases(6, 20);
    EXPECT_EQ(Connect("", Last(before_edge, 40) + after_edge + junk, 100), "");
    EXPECT_TRUE(Logged(" after edge is part of gap sequence, cut tail, and final length is 0\n"));
    const std::string core = Bases(5, 30);
    EXPECT_EQ(Connect("", Last(before_edge, 40) + core + after_edge + junk, 100), core);
    EXPECT_TRUE(Logged("final length is 30\n"));
}

TEST_F(CoveredTest, BeforeEdgeInsideTheRestIsNotLookedFor) {
    const std::string rest = Bases(6, 20) + before_edge;
    EXPECT_EQ(Connect(rest + First(after_edge, 40), "", 100), rest);
}

TEST_F(CoveredTest, DistrustedAfterOverlapIsAcceptedWithABefore) {
    const std::string start = Bases(5, 20);
    const std::string rest = Bases(6, 30);
    Distrust(Last(before_edge, 40));
    EXPECT_EQ(Connect(start, Last(before_edge, 40) + start + rest, 60), start + rest);
    EXPECT_TRUE(Logged("Check overlap: " + Last(before_edge, 40) +
                       "\t40\nFail to pass overlap check!\n"
                       "before expand! accept the overlap!\n"));
}

TEST_F(CoveredTest, DistrustedBeforeOverlapIsAcceptedWithAnAfter) {
    const std::string end = Bases(5, 20);
    const std::string rest = Bases(6, 30);
    // On this side the whole overlap is checked, the part that `after` has included.
    Distrust(end + First(after_edge, 40));
    EXPECT_EQ(Connect(rest + end + First(after_edge, 40), end, 60), rest + end);
    EXPECT_TRUE(Logged("Check overlap: " + end + First(after_edge, 40) +
                       "\t60\nFail to pass overlap check!\n"
                       "After expand! accept the overlap!\n"));
}

TEST_F(CoveredTest, DistrustedAfterOverlapAloneAsksForARead) {
    const std::string rest = Bases(6, 50);
    Distrust(Last(before_edge, 40));
    EXPECT_EQ(Connect("", Last(before_edge, 40) + rest, 80), rest + Open(30));
    EXPECT_EQ(after, rest);
    inner = {before_edge.substr(20) + "ACG" + First(rest, 40)};
    EXPECT_EQ(Connect("", Last(before_edge, 40) + rest, 80), "ACG" + rest);
    EXPECT_TRUE(Logged("Have read connect before edge and after!\n"));
}

TEST_F(CoveredTest, DistrustedBeforeOverlapAloneAsksForARead) {
    const std::string rest = Bases(6, 50);
    Distrust(First(after_edge, 40));
    EXPECT_EQ(Connect(rest + First(after_edge, 40), "", 80), rest + Open(30));
    EXPECT_EQ(before, rest);
    inner = {Last(rest, 40) + "ACG" + First(after_edge, 40)};
    EXPECT_EQ(Connect(rest + First(after_edge, 40), "", 80), rest + "ACG");
    EXPECT_TRUE(Logged("Have read connect before and after edge!\n"));
}

TEST_F(CoveredTest, ReadBeyondTheRestIsAMinusGap) {
    // The edges share 5 bases, and the 10 of the rest stand in front of them.
    const std::string rest = Bases(9, 10);
    const std::string common = Bases(10, 5);
    const std::string far = after_edge;
    before_edge = Bases(1, 45) + rest + common;
    after_edge = common + First(far, 55);
    Distrust(Last(before_edge, 40));
    inner = {before_edge.substr(10) + after_edge.substr(5, 50)};
    EXPECT_EQ(Connect("", Last(before_edge, 40) + rest, 45), rest);
    EXPECT_EQ(realgaplen, -5);
    EXPECT_TRUE(Logged("Have read connect before edge and after!\nafter minus!\t-5\n"));

    realgaplen = 77;
    before_edge = Bases(1, 55) + common;
    after_edge = common + rest + First(far, 45);
    Distrust(First(after_edge, 40));
    inner = {before_edge.substr(15) + after_edge.substr(5)};
    EXPECT_EQ(Connect(rest + First(after_edge, 40), "", 45), rest);
    EXPECT_EQ(realgaplen, -5);
    EXPECT_TRUE(Logged("Have read connect before and after edge!\nbefore minus!\t-5\n"));
}

/// Both expansions are `core` and then `over` bases of the edge that follows.
class SmallGapTest : public ExpandGapTest {
  protected:
    std::string ConnectCore(const std::string& core, std::size_t over, int size) {
        return Connect(core + First(after_edge, over), Last(before_edge, over) + core, size);
    }
    const std::string cover = "Real gapsize may be quite small!\n two expand overlapped with two edge!\n";
};

TEST_F(SmallGapTest, ReadLengthStillAsksForTrust) {
    const std::string core = Bases(5, 100);
    EXPECT_EQ(ConnectCore(core, 30, 200), core);
    EXPECT_TRUE(Logged(cover + "Pass small repeat check!\n"));
    const std::string longer = Bases(5, 101);
    EXPECT_EQ(ConnectCore(longer, 30, 200), longer);
    EXPECT_TRUE(Logged(cover + "Both of the expand sequence crossed the gap region!\n"));
}

TEST_F(SmallGapTest, LongCoreIsTakenWhenBothPassFarBeyondIt) {
    const std::string core = Bases(5, 101);
    EXPECT_EQ(ConnectCore(core, 51, 302), core);
    EXPECT_TRUE(Logged("Two expand support, accept the small gap!\n"));
    // One base less behind it, and 151 bases are not above half of 302.
    EXPECT_EQ(ConnectCore(core, 50, 302), core + Open(100) + core);
    EXPECT_TRUE(Logged("The edge of gap region maybe the same!\n"));
}

TEST_F(SmallGapTest, LongCoreIsTakenWhenBothCrossTheMiddle) {
    // 2 * ReadLen < over = 201, and 151 bases are more than half of the gap.
    const std::string core = Bases(5, 101);
    EXPECT_EQ(ConnectCore(core, 50, 301), core);
    EXPECT_TRUE(Logged("Both of the expand sequence crossed the gap region!\n"));
}

TEST_F(SmallGapTest, DistrustedCoreIsTakenWhenBothPassFarBeyondIt) {
    const std::string core = Bases(5, 60);
    Distrust(core);
    EXPECT_EQ(ConnectCore(core, 51, 160), core);
    EXPECT_TRUE(Logged("maybe edge same TE!\nTwo expand support, accept the small repeat!\n"));
    EXPECT_EQ(ConnectCore(core, 50, 160), core + Open(40) + core);
    EXPECT_EQ(ConnectCore(core, 50, 120), core + core);
    EXPECT_EQ(ConnectCore(core, 50, 119), core + Open(1) + core);
}

TEST_F(SmallGapTest, GapOfMinAlignTakesTheCoreUnasked) {
    const std::string core = Bases(5, 60);
    Distrust(core);
    EXPECT_EQ(ConnectCore(core, 20, 8), core);
    EXPECT_EQ(log.substr(log.find("Real gapsize")), cover);
    EXPECT_EQ(ConnectCore(core, 20, 9), core + Open(1) + core);
}

TEST_F(SmallGapTest, TinyCoreBetweenLongSidesIsTakenUnasked) {
    before_edge = Bases(1, 200);
    after_edge = Bases(2, 200);
    const std::string core = Bases(5, 5);
    EXPECT_EQ(ConnectCore(core, 60, 101), core);
    EXPECT_TRUE(Logged("Long edge, over estimated gapsize and small real size gap.\n"));
    // Up to the read length the small core must be trusted, and 5 bases never are.
    EXPECT_EQ(ConnectCore(core, 60, 100), core);
    EXPECT_TRUE(Logged("Two expand support, accept the small repeat!\n"));
}

TEST_F(SmallGapTest, OverlapOfTheSumIsAZeroGap) {
    EXPECT_EQ(ConnectCore("", 30, 60), "");
    EXPECT_TRUE(Logged("Real gapsize may be quite small!\n over is the sum of before and after!\n"));
    EXPECT_EQ(Connect(First(after_edge, 30), "", 30), "");
    EXPECT_FALSE(Logged("over is the sum"));
    EXPECT_EQ(Connect("", Last(before_edge, 30), 30), "");
    EXPECT_FALSE(Logged("over is the sum"));
}

TEST_F(SmallGapTest, OverlapBeyondTheSumLeavesRealgaplenAlone) {
    const std::string tail = Bases(6, 10);
    after = Bases(7, 10) + First(before_edge, 50);
    after_edge = Last(before_edge, 10) + tail + Bases(8, 40);
    EXPECT_EQ(Connect(tail, after, 70), Open(70));
    EXPECT_EQ(realgaplen, 77);
    EXPECT_TRUE(Logged("Real gapsize may be quite small!\n gap size maybe minus!\n"));
}

/// `before` ends and `after` begins with `shared`.
class OrdinaryOverlapTest : public ExpandGapTest {
  protected:
    std::string shared = Bases(5, 40);
    std::string left = Bases(6, 30);
    std::string right = Bases(7, 50);
    std::string ConnectShared(int size) { return Connect(left + shared, shared + right, size); }
};

TEST_F(OrdinaryOverlapTest, TrustedOverlapJoins) {
    EXPECT_EQ(ConnectShared(100), left + shared + right);
    EXPECT_TRUE(Logged("Have overlap between before and after\n"));
}

TEST_F(OrdinaryOverlapTest, OverlapInsideBothEdgesIsARepeat) {
    before_edge = Bases(1, 10) + shared + Bases(3, 30);
    after_edge = Bases(4, 10) + shared + Bases(2, 30);
    // It doesn't join here; the two expansions without their edges are believed later.
    EXPECT_EQ(ConnectShared(100), left + shared + right);
    EXPECT_TRUE(Logged("overlap region exists in the edge, must be part of repeat.\n"));
    EXPECT_TRUE(Logged("No read connect before and after!\n"));
    EXPECT_TRUE(Logged("before cutted part have mistakes!, now before and after overlap: 40\n"));
}

TEST_F(OrdinaryOverlapTest, VeryStartOfAnEdgeDoesNotCount) {
    before_edge = Bases(1, 10) + shared + Bases(3, 30);
    after_edge = shared + Bases(2, 40);
    EXPECT_EQ(ConnectShared(100), left + shared + right);
    EXPECT_FALSE(Logged("overlap region exists"));
}

TEST_F(OrdinaryOverlapTest, DistrustedOverlapCutsTheLongerSide) {
    shared = Bases(5, 51);
    Distrust(shared);
    ConnectShared(110);
    EXPECT_EQ(before, left + shared);
    EXPECT_EQ(after, right);
    // `before` keeps the overlap when it is the one that is cut.
    left = Bases(6, 55);
    ConnectShared(110);
    EXPECT_EQ(before, shared);
    EXPECT_EQ(after, shared + right);
}

TEST_F(OrdinaryOverlapTest, DistrustedOverlapUpToHalfAReadCutsNothing) {
    shared = Bases(5, 50);
    Distrust(shared);
    ConnectShared(120);
    EXPECT_EQ(before, left + shared);
    EXPECT_EQ(after, shared + right);
}

TEST_F(OrdinaryOverlapTest, DistrustedOverlapIsJoinedByARead) {
    shared = Bases(5, 51);
    Distrust(shared);
    inner = {left + shared + First(right, 40)};
    EXPECT_EQ(ConnectShared(110), left + shared + right);
    EXPECT_TRUE(Logged("Have read connect before and after!\n"));
}

}  // namespace
}  // namespace lintara
