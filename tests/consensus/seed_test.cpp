#include "consensus/seed.h"

#include <gtest/gtest.h>

#include "covered_column.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::CoveredColumn;

class RestrictVote : public testing::ThreadStreamsTest {};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(RestrictVote, RecordHasTabsAndNoMarker) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGA").Map(), 0), 'G');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t3\t0\tG\tA\t4\t0.75\n");
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("", 3).Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t0\t0\tN\tA\t0\t0\n");
}

TEST_F(RestrictVote, ManyPlacedReadsAskForThree) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GG", 3).Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t2\t0\tN\tA\t2\t1\n");
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGG", 2).Map(), 0), 'G');
}

TEST_F(RestrictVote, ManyPlacedReadsAskForNineTenthsRoundedDown) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGGA").Map(), 0), 'G');  // 4.5 down to 4
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGAA").Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGGGGGGGA").Map(), 0), 'G');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGGGGGGAA").Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GGGGGGGGAN").Map(), 0), 'N');
}

TEST_F(RestrictVote, FourPlacedReadsAreNotTested) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GAC", 1).Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t1\t1\t1\t0\tA\tA\t3\t0.333333\n");
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("T", 3).Map(), 0), 'T');
}

TEST_F(RestrictVote, ThreePlacedReadsMustAgreeWhereTheyCover) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("G", 2).Map(), 0), 'G');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GG", 1).Map(), 0), 'G');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GC", 1).Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GN", 1).Map(), 0), 'N');
}

TEST_F(RestrictVote, TwoPlacedReadsAreNotConfirmedByAgreement) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("A", 1).Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("AA").Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("GC").Map(), 0), 'C');
}

TEST_F(RestrictVote, OnePlacedReadIsNothing) {
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, CoveredColumn("A").Map(), 0), 'N');
    EXPECT_EQ(Enlong_value_base_restrict('A', 5, {}, 0), 'N');
}

// An edge of 40 bases and the nine that truly follow it.
const char kEdge[] = "ACGGTCATTGCCAGATACCTGTTAGCAAGTCTGACCATGG";
const char kRest[] = "TCAGCTTAC";

class ForwardExpand : public testing::ThreadStreamsTest {
  protected:
    std::vector<Read> reads_{{kEdge, -40}};
    std::vector<int> start_{0};

    /// A read that overlaps the edge in over bases, followed by tail.
    void Add(int over, const std::string& tail) {
        reads_.emplace_back(std::string(kEdge).substr(40 - over) + tail, -over);
        start_.push_back(over);
    }
    /// The expansion alone.
    std::string Run() {
        const std::string seq = forward_expand(start_.data(), reads_, 0);
        EXPECT_EQ(seq.substr(0, 40), reads_[0].seq);
        return seq.substr(std::min<std::size_t>(40, seq.size()));
    }
};

TEST_F(ForwardExpand, ThirtyBasesAreTooFew) {
    Add(30, "TCAG");
    Add(12, "TCAG");
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Snp(), "");
}

TEST_F(ForwardExpand, ThreePlacedReadsConfirmTheWholeRead) {
    Add(31, kRest);
    Add(35, "TCAGC");
    EXPECT_EQ(Run(), kRest);
    EXPECT_EQ(Log(),
              "Forward min_overlap id: 1\tmin_overlap length: 31\n"
              "Value base read number 3\n"
              "same base number: 40\tcheck length: 40\n");
    // From column 45 on read 1 is alone, and agrees with itself.
    EXPECT_EQ(Snp(),
              "Forward snp: \n"
              "40\t0\t0\t0\t2\tT\tT\t2\t1\n"
              "41\t0\t2\t0\t0\tC\tC\t2\t1\n"
              "42\t2\t0\t0\t0\tA\tA\t2\t1\n"
              "43\t0\t0\t2\t0\tG\tG\t2\t1\n"
              "44\t0\t2\t0\t0\tC\tC\t2\t1\n"
              "45\t0\t0\t0\t1\tT\tT\t1\t1\n"
              "46\t0\t0\t0\t1\tT\tT\t1\t1\n"
              "47\t1\t0\t0\t0\tA\tA\t1\t1\n"
              "48\t0\t1\t0\t0\tC\tC\t1\t1\n");
}

TEST_F(ForwardExpand, LoneReadAddsNothing) {
    Add(31, kRest);
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Log(), "Forward min_overlap id: 1\tmin_overlap length: 31\nValue base read number 2\n");
    EXPECT_TRUE(Contains(Snp(), "Forward snp: \n40\t0\t0\t0\t1\tN\tT\t1\t1\n"));
}

TEST_F(ForwardExpand, ReadsWithShortOverlapsVote) {
    Add(31, kRest);
    Add(8, "TCAGC");
    EXPECT_EQ(Run(), kRest);
    EXPECT_TRUE(Contains(Snp(), "\n40\t0\t0\t0\t2\tT\tT\t2\t1\n"));
}

TEST_F(ForwardExpand, TieStaysWithTheLowerRead) {
    Add(36, "TC");
    Add(33, "TCAG");
    Add(33, "TCAGCT");
    EXPECT_EQ(Run(), "TCAG");
    EXPECT_TRUE(Contains(Log(), "Forward min_overlap id: 2\tmin_overlap length: 33\n"));
}

TEST_F(ForwardExpand, DisagreementEndsTheSequence) {
    // 33 of the read's bases stand in the sequence, of which a read of 131 would have to have 40.
    Add(31, kRest + std::string(91, 'A'));
    Add(35, "TCTGC");
    EXPECT_EQ(Run(), "TC");
    EXPECT_TRUE(Contains(Log(), "same base number: 33\tcheck length: 33\n"));
    EXPECT_TRUE(Contains(Snp(), "\n42\t1\t0\t0\t1\tN\tA\t2\t0.5\n"));
}

TEST_F(ForwardExpand, ConfirmedPartGivesBackTheRead) {
    Add(31, kRest);
    Add(35, "TCTGC");
    EXPECT_EQ(Run(), kRest);
}

TEST_F(ForwardExpand, ThreeTenthsOfTheReadMustBeExceeded) {
    Add(31, kRest + std::string(69, 'A'));  // 109 bases, 33 against 32.7
    Add(35, "TCTGC");
    EXPECT_EQ(Run(), kRest + std::string(69, 'A'));
    reads_[1].seq += "A";  // 110 bases, 33 against 33
    EXPECT_EQ(Run(), "TC");
}

TEST_F(ForwardExpand, ReadThatDiffersFromTheEdgeIsNotGivenBack) {
    Add(31, kRest);
    reads_[1].seq[3] = reads_[1].seq[3] == 'A' ? 'C' : 'A';
    Add(35, "TCTGC");
    EXPECT_EQ(Run(), "TC");
    EXPECT_TRUE(Contains(Log(), "same base number: 32\tcheck length: 33\n"));
}

TEST_F(ForwardExpand, BareEdgeIsNotLengthened) {
    Add(31, kRest);
    Add(35, "ACAGC");
    EXPECT_EQ(Run(), "");
    EXPECT_TRUE(Contains(Log(), "same base number: 31\tcheck length: 31\n"));
}

TEST_F(ForwardExpand, ReadInsideTheEdgeAddsNothing) {
    // The overlap counts up to the end of the edge and so exceeds the read.
    Add(36, "");
    reads_[1].seq.resize(20);
    Add(38, "");
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Snp(), "Forward snp: \n");
}

TEST_F(ForwardExpand, NInsideTheEdgeCutsNoDeeperThanTheEdge) {
    reads_[0].seq[5] = 'N';
    Add(31, kRest);
    Add(35, "TCAGC");
    const std::string seq = forward_expand(start_.data(), reads_, 0);
    EXPECT_EQ(seq, reads_[0].seq);
}

TEST_F(ForwardExpand, LastReadTakesPartToo) {
    Add(35, "TCAGC");
    Add(31, kRest);
    EXPECT_EQ(Run(), kRest);
    EXPECT_TRUE(Contains(Log(), "Forward min_overlap id: 2\t"));
}

// The mirror: nine bases and the edge that truly follows them.
class RewardExpand : public testing::ThreadStreamsTest {
  protected:
    std::vector<Read> reads_{{kEdge, 0}};
    std::vector<int> end_{0};

    /// A read that ends with the first over bases of the edge, behind head. The edge stays last.
    void Add(int over, const std::string& head) {
        reads_.insert(reads_.end() - 1, Read(head + std::string(kEdge).substr(0, over), 0));
        end_.insert(end_.end() - 1, over);
    }
    std::string Run() {
        const std::string seq = reward_expand(end_.data(), reads_, 0);
        EXPECT_GE(seq.size(), 40U);
        EXPECT_EQ(seq.substr(seq.size() - 40), reads_.back().seq);
        return seq.substr(0, seq.size() - 40);
    }
};

TEST_F(RewardExpand, ThirtyBasesAreTooFew) {
    Add(30, "TCAG");
    Add(12, "TCAG");
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Snp(), "");
}

TEST_F(RewardExpand, ThreePlacedReadsConfirmTheWholeRead) {
    Add(31, kRest);
    Add(35, "CTTAC");
    EXPECT_EQ(Run(), kRest);
    EXPECT_EQ(Log(),
              "Reward find the min_overlap id: 0\t min_overlap length: 31\n"
              "Value base read number is: 3\n"
              "40\t40\n");
    EXPECT_EQ(Snp(),
              "Reward snp: \n"
              "0\t0\t0\t0\t1\tT\tT\t1\t1\n"
              "1\t0\t1\t0\t0\tC\tC\t1\t1\n"
              "2\t1\t0\t0\t0\tA\tA\t1\t1\n"
              "3\t0\t0\t1\t0\tG\tG\t1\t1\n"
              "4\t0\t2\t0\t0\tC\tC\t2\t1\n"
              "5\t0\t0\t0\t2\tT\tT\t2\t1\n"
              "6\t0\t0\t0\t2\tT\tT\t2\t1\n"
              "7\t2\t0\t0\t0\tA\tA\t2\t1\n"
              "8\t0\t2\t0\t0\tC\tC\t2\t1\n");
}

TEST_F(RewardExpand, LoneReadAddsNothing) {
    Add(31, kRest);
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Log(), "Reward find the min_overlap id: 0\t min_overlap length: 31\nValue base read number is: 2\n");
}

TEST_F(RewardExpand, ReadsWithShortOverlapsVote) {
    Add(31, kRest);
    Add(8, "CTTAC");
    EXPECT_EQ(Run(), kRest);
    EXPECT_TRUE(Contains(Snp(), "\n8\t0\t2\t0\t0\tC\tC\t2\t1\n"));
}

TEST_F(RewardExpand, TieStaysWithTheLowerRead) {
    Add(36, "AC");
    Add(33, "TTAC");
    Add(33, "GCTTAC");
    EXPECT_EQ(Run(), "TTAC");
    EXPECT_TRUE(Contains(Log(), "Reward find the min_overlap id: 1\t min_overlap length: 33\n"));
}

TEST_F(RewardExpand, DisagreementBeginsTheSequence) {
    Add(31, std::string(91, 'A') + kRest);
    Add(35, "CTAAC");
    EXPECT_EQ(Run(), "AC");
    EXPECT_TRUE(Contains(Log(), "\n33\t33\n"));
}

TEST_F(RewardExpand, ConfirmedPartGivesBackTheRead) {
    Add(31, kRest);
    Add(35, "CTAAC");
    EXPECT_EQ(Run(), kRest);
}

TEST_F(RewardExpand, ThreeTenthsOfTheReadMustBeExceeded) {
    Add(31, std::string(69, 'A') + kRest);
    Add(35, "CTAAC");
    EXPECT_EQ(Run(), std::string(69, 'A') + kRest);
    reads_[0].seq = "A" + reads_[0].seq;
    EXPECT_EQ(Run(), "AC");
}

TEST_F(RewardExpand, ReadThatDiffersFromTheEdgeIsNotGivenBack) {
    Add(31, kRest);
    char& differing = reads_[0].seq[20];
    differing = differing == 'A' ? 'C' : 'A';
    Add(35, "CTAAC");
    EXPECT_EQ(Run(), "AC");
    EXPECT_TRUE(Contains(Log(), "\n32\t33\n"));
}

TEST_F(RewardExpand, BareEdgeIsLengthened) {
    // The very column in front of the edge is in doubt: the twin would give the edge alone.
    Add(31, kRest);
    Add(35, "CTTAA");
    EXPECT_EQ(Run(), kRest);
    EXPECT_TRUE(Contains(Log(), "\n31\t31\n"));
}

TEST_F(RewardExpand, OverlapBeyondTheReadAddsNothing) {
    Add(36, "");
    reads_[0].seq.resize(30);
    Add(38, "");
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Snp(), "Reward snp: \n");
}

TEST_F(RewardExpand, OverlapOneBeyondALongReadAddsNothing) {
    // 100 of 101 places agree, which is enough to give the read back; but none of it lies in front of the edge.
    std::string edge;
    for (int i = 0; i < 120; ++i) edge += "ACGT"[(i * i + i / 3) % 4];
    const std::vector<Read> reads{{edge.substr(1, 100), 0}, {edge.substr(0, 110), 0}, {edge, 0}};
    const int end[] = {101, 110, 0};
    EXPECT_EQ(reward_expand(end, reads, 0), edge);
    EXPECT_TRUE(Contains(Log(), "\n100\t101\n"));
}

TEST_F(RewardExpand, NInsideTheEdgeCutsNoDeeperThanTheEdge) {
    Add(31, kRest);
    Add(35, "CTTAC");
    reads_.back().seq[5] = 'N';
    const std::string seq = reward_expand(end_.data(), reads_, 0);
    EXPECT_EQ(seq, reads_.back().seq);
}

TEST_F(RewardExpand, FirstReadTakesPartToo) {
    Add(35, "CTTAC");
    Add(31, kRest);
    EXPECT_EQ(Run(), kRest);
    EXPECT_TRUE(Contains(Log(), "Reward find the min_overlap id: 1\t"));
}

}  // namespace
}  // namespace lintara
