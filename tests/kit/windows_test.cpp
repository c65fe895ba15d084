#include "kit/fill/windows.h"

#include <gtest/gtest.h>

#include "tests/kit/support.h"

namespace lintara::kit {
namespace {

/// Contigs of 5000, 300 and 5000 bases; gaps of 100 and 60.
Layout TwoGaps() {
    Layout layout;
    std::string text = test::RandomBases(10300, 1);
    AddSequence(layout, "s",
                text.substr(0, 5000) + std::string(100, 'N') + text.substr(5000, 300) + std::string(60, 'N') +
                    text.substr(5300),
                1);
    return layout;
}

TEST(CutWindows, HoldsTheReachOfEachContig) {
    Layout layout = TwoGaps();
    Windows windows = CutWindows(layout, {1}, {}, 500);
    ASSERT_EQ(windows.layout.sequences.size(), 1U);
    const Sequence& window = windows.layout.sequences[0];
    // The contig behind is shorter than the reach.
    EXPECT_EQ(window.text, layout.sequences[0].text.substr(4500, 500 + 100 + 300));
    ASSERT_EQ(window.gaps.size(), 1U);
    EXPECT_EQ(window.gaps[0].span, (Span{500, 600}));
    EXPECT_EQ(window.gaps[0].leftStart, 0);
    EXPECT_EQ(window.gaps[0].rightEnd, 900);
    EXPECT_EQ(windows.gaps, std::vector<int>{1});
}

TEST(CutWindows, NeighboursShareAWindow) {
    Layout layout = TwoGaps();
    Windows windows = CutWindows(layout, {1, 2}, {}, 200);
    ASSERT_EQ(windows.layout.sequences.size(), 1U);
    const Sequence& window = windows.layout.sequences[0];
    EXPECT_EQ(window.text, layout.sequences[0].text.substr(4800, 200 + 100 + 300 + 60 + 200));
    ASSERT_EQ(window.gaps.size(), 2U);
    EXPECT_EQ(window.gaps[0].rightEnd, 600);
    EXPECT_EQ(window.gaps[1].leftStart, 300);
    EXPECT_EQ(window.gaps[1].span, (Span{600, 660}));
    EXPECT_EQ(window.gaps[1].rightEnd, 860);
}

TEST(CutWindows, GapsTwiceTheReachApartDoNot) {
    EXPECT_EQ(CutWindows(TwoGaps(), {1, 2}, {}, 150).layout.sequences.size(), 2U);
    EXPECT_EQ(CutWindows(TwoGaps(), {1, 2}, {}, 151).layout.sequences.size(), 1U);
}

TEST(CutWindows, MoreRoomIsAThirdAnd50Bases) {
    Windows windows = CutWindows(TwoGaps(), {2}, {2}, 100);
    EXPECT_EQ(windows.layout.sequences[0].gaps[0].span.Length(), 60 + 20 + 50);
    EXPECT_EQ(windows.gaps, std::vector<int>{2});
}

class Branches : public testing::Test {
  protected:
    /// Reads of 60 bases at every 5 bases of `text`.
    void AddReads(const std::string& text, int times = 1) {
        for (size_t at = 0; at + 60 <= text.size(); at += 5) {
            for (int i = 0; i < times; ++i) reads_.push_back({1, 0, true, "r", 1, text.substr(at, 60)});
        }
    }
    static GapResult With(const std::string& text) {
        GapResult result;
        result.gap = 1;
        result.known = true;
        result.text = text;
        result.support.assign(text.size(), 7);
        result.depth.assign(text.size(), 7);
        return result;
    }
    std::string Cut(const std::string& text, long stated) {
        GapResult result = With(text);
        CutAtBranches(result, before_, after_, reads_, stated);
        EXPECT_EQ(result.support.size(), result.text.size());
        EXPECT_EQ(result.depth.size(), result.text.size());
        return result.text;
    }
    static std::string Other(char base) { return base == 'A' ? "C" : "A"; }

    std::string before_ = test::RandomBases(200, 2);
    std::string fill_ = test::RandomBases(150, 3);
    std::string after_ = test::RandomBases(200, 4);
    std::vector<AssignedRead> reads_;
};

TEST_F(Branches, TextThatTheReadsKnowInOneWayStays) {
    AddReads(before_ + fill_ + after_);
    EXPECT_EQ(Cut(fill_, 100), fill_);
}

TEST_F(Branches, BaseWithTwoWaysIsLeftOpen) {
    AddReads(before_ + fill_ + after_);
    std::string other = fill_;
    other.replace(70, 1, Other(fill_[70]));
    AddReads(before_ + other + after_);
    EXPECT_EQ(Cut(fill_, 100), fill_.substr(0, 70) + "N" + fill_.substr(71));
}

TEST_F(Branches, OneReadMakesNoWay) {
    AddReads(before_ + fill_ + after_);
    std::string other = fill_;
    other.replace(70, 1, Other(fill_[70]));
    reads_.push_back({1, 0, true, "r", 1, other.substr(35, 60)});
    EXPECT_EQ(Cut(fill_, 100), fill_);
}

TEST_F(Branches, BetweenTwoBranchesTheStatedLengthStaysOpen) {
    AddReads(before_ + fill_ + after_);
    std::string other = fill_;
    other.replace(40, 1, Other(fill_[40]));
    other.replace(110, 1, Other(fill_[110]));
    AddReads(before_ + other + after_);
    EXPECT_EQ(Cut(fill_, 200), fill_.substr(0, 40) + std::string(200 - 40 - 39, 'N') + fill_.substr(111));
}

TEST_F(Branches, OpenTextIsCutOnBothSides) {
    AddReads(before_ + fill_.substr(0, 80));
    AddReads(before_ + fill_.substr(0, 30) + test::RandomBases(60, 5));
    AddReads(fill_.substr(90) + after_);
    std::string text = fill_.substr(0, 60) + std::string(40, 'N') + fill_.substr(120);
    EXPECT_EQ(Cut(text, 130), fill_.substr(0, 30) + std::string(70, 'N') + fill_.substr(120));
}

TEST_F(Branches, TextWithoutReadsGoesAltogether) {
    EXPECT_EQ(Cut(fill_, 120), std::string(120, 'N'));
}

TEST_F(Branches, ContigsThatTouchNeedReadsOverTheirJunction) {
    EXPECT_EQ(Cut("", 10), std::string(10, 'N'));
    AddReads(before_ + after_);
    EXPECT_EQ(Cut("", 10), "");
}

TEST_F(Branches, ShortContigLeadsNowhere) {
    AddReads(before_ + fill_ + after_);
    before_ = before_.substr(170);  // 30 bases
    EXPECT_EQ(Cut(fill_, 100), "N" + fill_);
}

TEST_F(Branches, OverlapWithoutProofIsNotTaken) {
    GapResult result = With("");
    result.cutBefore = 12;
    CutAtBranches(result, before_, after_, reads_, 5);
    EXPECT_FALSE(result.known);
    AddReads(before_ + after_);
    result.known = true;
    CutAtBranches(result, before_, after_, reads_, 5);
    EXPECT_TRUE(result.known);
    EXPECT_EQ(result.cutBefore, 12);
}

TEST_F(Branches, NMakesUpTheStatedLength) {
    auto fitted = [](const std::string& text, long stated) {
        GapResult result = With(text);
        FitLength(result, stated);
        EXPECT_EQ(result.support.size(), result.text.size());
        return result.text;
    };
    EXPECT_EQ(fitted("ACNNNGT", 10), "ACNNNNNNGT");
    EXPECT_EQ(fitted("ACNNNGT", 5), "ACNGT");
    EXPECT_EQ(fitted("ACNNNGT", 3), "ACNGT");
    EXPECT_EQ(fitted("NACNNNGT", 10), "NACNNNNNGT");
    EXPECT_EQ(fitted("ACGT", 10), "ACGT");
}

}  // namespace
}  // namespace lintara::kit
