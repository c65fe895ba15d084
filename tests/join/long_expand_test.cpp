#include "join/long_expand.h"

#include <gtest/gtest.h>

#include "join/bases.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using testing::First;
using testing::Last;

class LongExpandFillTest : public testing::ThreadStreamsTest {
  protected:
    std::string before_edge = Bases(1, 60);
    std::string after_edge = Bases(2, 60);
    std::string before;
    std::string after;
    std::string seq = "default";
    std::string gap = Bases(5, 30);
    std::string beyond = Bases(6, 80);
    std::string log;

    bool Fill(const std::string& new_before, const std::string& new_after, int gapsize) {
        before = new_before;
        after = new_after;
        const bool filled = LongExpandFill(before, after, before_edge, after_edge, gapsize, seq, 0);
        log = NewLog();
        return filled;
    }
};

TEST_F(LongExpandFillTest, GapAndEdgeTogetherAreNotYetLong) {
    EXPECT_FALSE(Fill(gap + after_edge, "", 30));
    EXPECT_EQ(log, "");
    EXPECT_TRUE(Fill(gap + after_edge + "A", "", 30));
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\n");
    EXPECT_EQ(seq, gap);
    EXPECT_FALSE(Fill("", before_edge + gap, 30));
    EXPECT_EQ(log, "");
    EXPECT_TRUE(Fill("", "A" + before_edge + gap, 30));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log, "long after check!\nafter cover the before edge!\n");
}

TEST_F(LongExpandFillTest, EdgeAtTheStartOfBeforeHangsOnTheEndOfAfter) {
    EXPECT_TRUE(Fill(after_edge + beyond, "A" + Last(before_edge, 8), 30));
    EXPECT_EQ(seq, "");
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\nzero after check!\n");
    EXPECT_FALSE(Fill(after_edge + beyond, "A" + Changed(Last(before_edge, 8), 7), 30));
    EXPECT_EQ(before, "");
    // 8 bases of `after` are too few to ask.
    EXPECT_TRUE(Fill(after_edge + beyond, Changed(Last(before_edge, 8), 7), 30));
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\n");
}

TEST_F(LongExpandFillTest, LongerAfterChecksTheWholeGap) {
    EXPECT_TRUE(Fill(gap + after_edge + beyond, "A" + Changed(Changed(gap, 3), 9), 30));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\ngap region after check!\n");
    // 27 of 30 bases are not above 0.9.
    EXPECT_FALSE(Fill(gap + after_edge + beyond, "A" + Changed(Changed(Changed(gap, 3), 9), 12), 30));
    EXPECT_EQ(before, gap);
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\ngap region after check!\n");
}

TEST_F(LongExpandFillTest, ShorterAfterChecksTheEndOfTheGap) {
    EXPECT_TRUE(Fill(gap + after_edge + beyond, Last(gap, 20), 30));
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\nafter check!\n");
    EXPECT_FALSE(Fill(gap + after_edge + beyond, Bases(7, 30), 30));
    EXPECT_EQ(before, gap);
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\nafter check!\n");
}

TEST_F(LongExpandFillTest, LongAfterIsSplicedIn) {
    // `after` disagrees at the end of what `before` gives, but its start is found there and runs on for 101 bases.
    const std::string shared = Bases(8, 110);
    after = shared + Bases(9, 50);
    EXPECT_TRUE(Fill(gap + shared + Bases(10, 80) + after_edge + beyond, after, 30));
    EXPECT_EQ(seq, gap + after);
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\nafter check!\ntry cut before!\n");
    EXPECT_EQ(before, gap + shared + Bases(10, 80));
}

TEST_F(LongExpandFillTest, FailedSpliceEndsTheSearch) {
    before_edge = Bases(1, 40);
    const std::string long_gap = Bases(8, 201);
    // `after` holds the before edge, and would fill the gap if it were asked.
    EXPECT_FALSE(Fill(long_gap + after_edge + beyond, before_edge + Bases(9, 100), 30));
    EXPECT_EQ(log, "long before check!\nbefore cover the after edge!\nafter check!\ntry cut before!\n");
    // One base less is not cut, and the other phase runs.
    EXPECT_FALSE(Fill(First(long_gap, 200) + after_edge + beyond, before_edge + Bases(9, 100), 30));
    EXPECT_EQ(log,
              "long before check!\nbefore cover the after edge!\nafter check!\nlong after check!\n"
              "after cover the before edge!\ngap region before check!\n");
}

TEST_F(LongExpandFillTest, BothPhasesRunWhenTheFirstFindsNothing) {
    EXPECT_TRUE(Fill(gap + Bases(7, 100), beyond + before_edge + gap, 30));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log, "long before check!\nlong after check!\nafter cover the before edge!\ngap region before check!\n");
}

TEST_F(LongExpandFillTest, BothPhasesRunWhenTheFirstRefusesItsFind) {
    EXPECT_TRUE(Fill(First(gap, 20) + after_edge + beyond, beyond + before_edge + gap, 30));
    EXPECT_EQ(before, First(gap, 20));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log,
              "long before check!\nbefore cover the after edge!\ngap region after check!\nlong after check!\n"
              "after cover the before edge!\nbefore check!\n");
}

TEST_F(LongExpandFillTest, HalfOfTheAfterEdgeInsideBefore) {
    EXPECT_TRUE(Fill(gap + First(after_edge, 30) + beyond, "", 30));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log,
              "long before check!\nzero after check!\nafter len: 80\toverlap: 30\n"
              "before cover the after edge!\n");
    // With an `after` the edge's half is not looked for.
    EXPECT_FALSE(Fill(gap + First(after_edge, 30) + beyond, "ACGT", 30));
    EXPECT_EQ(log, "long before check!\n");
}

TEST_F(LongExpandFillTest, HalfOfTheAfterEdgeAtTheEndOfBefore) {
    const std::string grown = Bases(7, 75) + First(after_edge, 20);
    EXPECT_TRUE(Fill(grown, "", 30));
    EXPECT_EQ(seq, Bases(7, 75));
    EXPECT_EQ(log,
              "long before check!\nzero after check!\nafter len: -1\toverlap: 20\n"
              "before overlapped with the after edge!\n");
}

TEST_F(LongExpandFillTest, BeforeWithoutTheEdgeIsNoFill) {
    EXPECT_FALSE(Fill(Bases(7, 120), "", 30));
    EXPECT_EQ(log, "long before check!\nzero after check!\nafter len: -1\toverlap: 0\n");
}

TEST_F(LongExpandFillTest, LongerBeforeChecksTheWholeGap) {
    EXPECT_TRUE(Fill(gap + "A", beyond + before_edge + gap, 30));
    EXPECT_EQ(log, "long after check!\nafter cover the before edge!\ngap region before check!\n");
    const std::string other = Changed(Changed(Changed(gap, 3), 9), 12) + "A";
    EXPECT_FALSE(Fill(other, beyond + before_edge + gap, 30));
    EXPECT_EQ(before, other);
}

TEST_F(LongExpandFillTest, ShorterBeforeChecksTheStartOfTheGap) {
    EXPECT_TRUE(Fill(First(gap, 20), beyond + before_edge + gap, 30));
    EXPECT_EQ(log, "long after check!\nafter cover the before edge!\nbefore check!\n");
    EXPECT_FALSE(Fill(Bases(7, 20), beyond + before_edge + gap, 30));
}

TEST_F(LongExpandFillTest, EdgeAtTheEndOfAfterHangsOnTheStartOfBefore) {
    EXPECT_TRUE(Fill("", beyond + before_edge, 30));
    EXPECT_EQ(seq, "");
    EXPECT_EQ(log, "long after check!\nafter cover the before edge!\nzero before check!\n");
    EXPECT_TRUE(Fill(First(after_edge, 8) + "ACGT", beyond + before_edge, 30));
    EXPECT_FALSE(Fill(Changed(First(after_edge, 8), 7), beyond + before_edge, 30));
    EXPECT_TRUE(Fill(First(after_edge, 7), beyond + before_edge, 30));
    EXPECT_FALSE(Fill(Changed(First(after_edge, 7), 6), beyond + before_edge, 30));
}

TEST_F(LongExpandFillTest, HalfOfTheBeforeEdgeInsideAfter) {
    EXPECT_TRUE(Fill("", beyond + Last(before_edge, 30) + gap, 30));
    EXPECT_EQ(seq, gap);
    EXPECT_EQ(log, "long after check!\nafter cover the before edge!\n");
    EXPECT_FALSE(Fill("ACGT", beyond + Last(before_edge, 30) + gap, 30));
}

TEST_F(LongExpandFillTest, HalfOfTheBeforeEdgeAtTheStartOfAfter) {
    EXPECT_TRUE(Fill("", Changed(before_edge, 5).substr(35) + Bases(7, 80), 30));
    EXPECT_EQ(seq, Bases(7, 80));
    EXPECT_EQ(log, "long after check!\nafter overlapped with the before edge!\n");
    EXPECT_FALSE(Fill("", Bases(7, 120), 30));
}

TEST_F(LongExpandFillTest, ShortBeforeEdgeIsLookedForWhole) {
    before_edge = Bases(1, 17);
    // Half of 17 bases is not above min_align, so the whole edge with a mismatch is compared: 16 of 17 fail 0.95.
    EXPECT_FALSE(Fill("", beyond + Changed(before_edge, 2) + gap, 30));
    before_edge = Bases(1, 18);
    EXPECT_TRUE(Fill("", beyond + Changed(before_edge, 2) + gap, 30));
    EXPECT_EQ(seq, gap);
}

}  // namespace
}  // namespace lintara
