#include "consensus/path.h"

#include <gtest/gtest.h>

#include <random>

#include "covered_column.h"
#include "overlap_table.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::CoveredColumn;
using testing::OverlapTable;

class GapSequence : public testing::ThreadStreamsTest {};
class PathConsensus : public testing::ThreadStreamsTest {};
class PathVote : public testing::ThreadStreamsTest {};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// ACGTACGTAC                  before edge
//     ACGTACGGTT              read 1, 6 bases over the edge
//           GGTTCCAA          read 2, 4 bases over read 1
//               CCAATTGGCC    after edge, 4 bases over read 2
class ThreeSteps : public GapSequence {
  protected:
    std::vector<Read> reads_{{"ACGTACGTAC", -10}, {"ACGTACGGTT", -6}, {"GGTTCCAA", 0}, {"CCAATTGGCC", 4}};
    OverlapTable table_{4};
    std::vector<int> order_{0, 1, 2, 3};
    int end_[4] = {0, 0, 0, 0};

    void SetUp() override {
        GapSequence::SetUp();
        table_.Set(0, 1, 6).Set(1, 2, 4).Set(2, 3, 4);
    }
    std::string Run(int posit) { return get_gap_seq(table_.Rows(), reads_, order_, posit, end_, 0); }
};

TEST_F(ThreeSteps, BothEdgesAreCutOff) {
    // ACGTACGTAC GGTT CCAA TTGGCC: 24 bases, of which 10 at each end are edge.
    EXPECT_EQ(Run(2), "GGTT");
}

TEST_F(ThreeSteps, OneEdgeIsCutOff) {
    EXPECT_EQ(Run(0), "GGTTCCAATTGGCC");
    EXPECT_EQ(Run(1), "ACGTACGTACGGTT");
    EXPECT_EQ(Run(-1), "ACGTACGTACGGTTCCAATTGGCC");
}

TEST_F(ThreeSteps, LogFramesTheList) {
    Run(2);
    const std::string log = Log();
    const std::string head = "Get the sequence of order, order size 4\nshow order list: \n0";
    const std::string tail = "\n4 order element used to creat get the gap sequence\nRaw seq: GGTT\t4\n";
    EXPECT_EQ(log.substr(0, head.size()), head);
    ASSERT_GT(log.size(), tail.size());
    EXPECT_EQ(log.substr(log.size() - tail.size()), tail);
}

TEST_F(ThreeSteps, FirstReadBeyondTheAfterEdgeEndsTheList) {
    end_[0] = 12;
    table_.Set(0, 3, 5);
    EXPECT_EQ(Run(-1), "ACGTACGTAC");
    EXPECT_TRUE(Contains(Log(), "\n4 order element used"));
}

TEST_F(ThreeSteps, FirstReadMustBothReachAndTouchTheAfterEdge) {
    end_[0] = 12;
    EXPECT_EQ(Run(2), "GGTT");
    end_[0] = 0;
    table_.Set(0, 3, 5);
    EXPECT_EQ(Run(2), "GGTT");
    end_[0] = -1;
    EXPECT_EQ(Run(2), "GGTT");
}

TEST_F(ThreeSteps, SkippedRestLeavesTheAfterEdgeMissing) {
    end_[0] = 12;
    table_.Set(0, 3, 5);
    // Only the 10 bases of the before edge stand against 20 of both edges.
    EXPECT_EQ(Run(2), std::string(10, 'N'));
}

TEST_F(GapSequence, TwoEdgesInARowLeaveNothing) {
    const std::vector<Read> reads{{"ACGTACGTAC", -10}, {"GTACTTTTTT", -4}};
    OverlapTable table(2);
    table.Set(0, 1, 4);
    const int end[2] = {5, 0};
    EXPECT_EQ(get_gap_seq(table.Rows(), reads, {0, 1}, 2, end, 0), "");
    EXPECT_EQ(Log(), "Get the sequence of order, order size 2\n");
}

TEST_F(GapSequence, TwoReadsInARowAreNoSpecialCaseForOneEdge) {
    const std::vector<Read> reads{{"ACGTACGTAC", -10}, {"GTACTTTTTT", -4}};
    OverlapTable table(2);
    table.Set(0, 1, 4);
    const int end[2] = {0, 0};
    EXPECT_EQ(get_gap_seq(table.Rows(), reads, {0, 1}, 0, end, 0), "TTTTTT");
}

TEST_F(GapSequence, OverlappingEdgesGiveARunOfN) {
    // 20 bases, 7 more by the read, 1 more by the after edge: 28 of the 40 that both edges have.
    const std::vector<Read> reads{{std::string(20, 'A'), -20}, {std::string(25, 'A'), -18}, {std::string(20, 'A'), 0}};
    OverlapTable table(3);
    table.Set(0, 1, 18).Set(1, 2, 19);
    const int end[3] = {0, 0, 0};
    EXPECT_EQ(get_gap_seq(table.Rows(), reads, {0, 1, 2}, 2, end, 0), "NNNNNNNNNNNN");
    const std::string log = Log();
    EXPECT_TRUE(Contains(log, "gap sequence\nTwo edge connected with each other: -12\n"));
    EXPECT_FALSE(Contains(log, "Raw seq"));
}

TEST_F(GapSequence, EdgesThatJustMeetOverAReadGiveNothing) {
    const std::vector<Read> reads{{std::string(20, 'A'), -20}, {std::string(25, 'A'), -18}, {std::string(20, 'A'), 0}};
    OverlapTable table(3);
    table.Set(0, 1, 18).Set(1, 2, 7);
    const int end[3] = {0, 0, 0};
    EXPECT_EQ(get_gap_seq(table.Rows(), reads, {0, 1, 2}, 2, end, 0), "");
    EXPECT_TRUE(Contains(Log(), "Raw seq: \t0\n"));
}

TEST_F(PathVote, ExactlySevenTenthsChangeTheBase) {
    EXPECT_EQ(value_base('A', 5, CoveredColumn("GGGGGGGAAA").Map(), 0), 'G');
    EXPECT_EQ(NewSnp(), "5\t3\t0\t7\t0\tG   A\t10\t0.7\n");
}

TEST_F(PathVote, ReadsWithNLowerTheRatio) {
    EXPECT_EQ(value_base('A', 5, CoveredColumn("GGGGGGAAAN").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t3\t0\t6\t0\tG   A\t10\t0.6\n");
}

TEST_F(PathVote, TieNamesTheEarlierLetterAndKeepsThePath) {
    EXPECT_EQ(value_base('T', 5, CoveredColumn("CCCCCTTTTT").Map(), 0), 'T');
    EXPECT_EQ(NewSnp(), "5\t0\t5\t0\t5\tC   T\t10\t0.5\n");
}

TEST_F(PathVote, OnlyReadsWithNKeepThePath) {
    EXPECT_EQ(value_base('A', 5, CoveredColumn("NN").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t0\t0\tN   A\t2\t0\n");
}

TEST_F(PathVote, NoReadKeepsThePath) {
    EXPECT_EQ(value_base('C', 5, {}, 0), 'C');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t0\t0\tN   C\t0\t0\n");
    EXPECT_EQ(value_base('N', 5, {}, 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t0\t0\tN---N\t0\t0\n");
}

TEST_F(PathVote, OneReadIsEnough) {
    EXPECT_EQ(value_base('A', 5, CoveredColumn("T").Map(), 0), 'T');
    EXPECT_EQ(value_base('N', 5, CoveredColumn("T").Map(), 0), 'T');
}

TEST_F(PathVote, WeakMajorityForThePathKeepsIt) {
    EXPECT_EQ(value_base('A', 5, CoveredColumn("AACG").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t2\t1\t1\t0\tA---A\t4\t0.5\n");
}

// A block of five reads, worked out by hand.
//
//   column   0         1         2
//            012345678901234567890123
//   read 0   AACCGGTTAC                 before edge
//   read 1       GGTTACTGCA             path
//   read 2         TTACTGCAGT           path
//   read 3          TACAGCAGTC          off the path, follows 0, 1 and 2; an error in column 10
//   read 4                 GTCATGAACC   after edge
//
// Overlaps, the left read by row:
//        0  1  2  3  4
//    0   0  6  4  3  0
//    1   0  0  8  7  0
//    2   0  0  0  9  2
//    3   0  0  0  0  3
//    4   0  0  0  0  0
class FiveReads : public PathConsensus {
  protected:
    std::vector<Read> reads_{
        {"AACCGGTTAC", -10}, {"GGTTACTGCA", -6}, {"TTACTGCAGT", -4}, {"TACAGCAGTC", -3}, {"GTCATGAACC", 4}};
    OverlapTable table_{5};
    std::vector<int> order_{0, 1, 2, 4};
    int none_[5] = {0, 0, 0, 0, 0};

    void SetUp() override {
        PathConsensus::SetUp();
        table_.Set(0, 1, 6).Set(0, 2, 4).Set(0, 3, 3);
        table_.Set(1, 2, 8).Set(1, 3, 7);
        table_.Set(2, 3, 9).Set(2, 4, 2);
        table_.Set(3, 4, 3);
    }
};

TEST_F(FiveReads, SequenceAndConsensusOfThePath) {
    std::string seq = get_gap_seq(table_.Rows(), reads_, order_, 2, none_, 0);
    EXPECT_EQ(seq, "TGCA");
    NewLog();
    Get_snp(seq, order_, table_.Rows(), reads_, none_, none_, 0);
    EXPECT_EQ(seq, "TGCA");
    EXPECT_EQ(NewLog(), "get the position for each read\nGet snp finished!\n");
    // Placements: read 0 and its three successors, read 1 and two, read 2 and two, read 4.
    EXPECT_EQ(NewSnp(),
              "value base for each position\n"
              "0\t1\t0\t0\t0\tA---A\t1\t1\n"
              "1\t1\t0\t0\t0\tA---A\t1\t1\n"
              "2\t0\t1\t0\t0\tC---C\t1\t1\n"
              "3\t0\t1\t0\t0\tC---C\t1\t1\n"
              "4\t0\t0\t2\t0\tG---G\t2\t1\n"
              "5\t0\t0\t2\t0\tG---G\t2\t1\n"
              "6\t0\t0\t0\t3\tT---T\t3\t1\n"
              "7\t0\t0\t0\t4\tT---T\t4\t1\n"
              "8\t4\t0\t0\t0\tA---A\t4\t1\n"
              "9\t0\t4\t0\t0\tC---C\t4\t1\n"
              "10\t1\t0\t0\t2\tT---T\t3\t0.666667\n"
              "11\t0\t0\t3\t0\tG---G\t3\t1\n"
              "12\t0\t3\t0\t0\tC---C\t3\t1\n"
              "13\t3\t0\t0\t0\tA---A\t3\t1\n"
              "14\t0\t0\t3\t0\tG---G\t3\t1\n"
              "15\t0\t0\t0\t3\tT---T\t3\t1\n"
              "16\t0\t2\t0\t0\tC---C\t2\t1\n"
              "17\t1\t0\t0\t0\tA---A\t1\t1\n"
              "18\t0\t0\t0\t1\tT---T\t1\t1\n"
              "19\t0\t0\t1\t0\tG---G\t1\t1\n"
              "20\t1\t0\t0\t0\tA---A\t1\t1\n"
              "21\t1\t0\t0\t0\tA---A\t1\t1\n"
              "22\t0\t1\t0\t0\tC---C\t1\t1\n"
              "23\t0\t1\t0\t0\tC---C\t1\t1\n"
              "SNP get finished!\tused reads: 11\tunsame base: 0\n");
}

TEST_F(FiveReads, ClearVoteReplacesTheBaseAndIsCounted) {
    // All three reads over column 12 say C, and two thirds over column 10 are no clear vote.
    std::string seq = "AGGA";
    Get_snp(seq, order_, table_.Rows(), reads_, none_, none_, 0);
    EXPECT_EQ(seq, "AGCA");
    const std::string records = Snp();
    EXPECT_TRUE(Contains(records, "\n10\t1\t0\t0\t2\tT   A\t3\t0.666667\n"));
    EXPECT_TRUE(Contains(records, "\n12\t0\t3\t0\t0\tC   G\t3\t1\n"));
    EXPECT_TRUE(Contains(records, "unsame base: 1\n"));
}

TEST_F(FiveReads, LastPlacementStands) {
    // Seen from the last path read in front of it, read 3 now stands in column 8.
    table_.Set(2, 3, 8);
    std::string seq = "TGCA";
    Get_snp(seq, order_, table_.Rows(), reads_, none_, none_, 0);
    const std::string records = Snp();
    EXPECT_TRUE(Contains(records, "\n7\t0\t0\t0\t3\tT---T\t3\t1\n"));
    EXPECT_TRUE(Contains(records, "\n8\t3\t0\t0\t1\tA---A\t4\t0.75\n"));
    EXPECT_TRUE(Contains(records, "used reads: 11\t"));
}

TEST_F(FiveReads, EdgesAreVotedOnAndCutOff) {
    reads_[0].seq = "AACCGGTTAG";
    std::string seq = "TGCA";
    Get_snp(seq, order_, table_.Rows(), reads_, none_, none_, 0);
    EXPECT_EQ(seq, "TGCA");
    const std::string records = Snp();
    EXPECT_TRUE(Contains(records, "\n9\t0\t3\t1\t0\tC   G\t4\t0.75\n"));
    EXPECT_TRUE(Contains(records, "unsame base: 1\n"));
}

TEST_F(FiveReads, NeighboursWithoutOverlapEndTheProcess) {
    table_.Set(1, 2, 0);
    std::string seq = "TGCA";
    Log();
    EXPECT_EXIT(Get_snp(seq, order_, table_.Rows(), reads_, none_, none_, 0), ::testing::ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "get the position for each read\nError in order vector!\t2\n");
}

TEST_F(PathConsensus, AgreesWithOneVoteAColumn) {
    std::mt19937 random(611);
    for (int round = 0; round < 40; ++round) {
        const int num = 12;
        std::vector<Read> reads;
        for (int i = 0; i < num; ++i) {
            std::string seq;
            for (int j = 0; j < 20; ++j) seq += "ACGTN"[random() % 5];
            reads.emplace_back(seq, i);
        }
        OverlapTable table(num);
        for (int a = 0; a < num; ++a) {
            for (int b = a + 1; b < num; ++b) table.Set(a, b, static_cast<int>(random() % 3 ? random() % 19 + 1 : 0));
        }
        const std::vector<int> order{0, 4, 7, num - 1};
        table.Set(0, 4, 11).Set(4, 7, 9).Set(7, num - 1, 12);

        ReadMap placed;
        int offset = 0;
        for (std::size_t k = 0; k < order.size(); ++k) {
            if (k > 0) offset += 20 - table.Rows()[order[k - 1]][order[k]];
            placed[&reads[order[k]].seq] = offset;
            for (int r = 0; r < num; ++r) {
                const int over = table.Rows()[order[k]][r];
                if (over != 0) placed[&reads[r].seq] = offset + 20 - over;
            }
        }
        const int unused[12] = {};
        std::string seq;
        for (int j = 0; j < 8; ++j) seq += "ACGTN"[random() % 5];
        std::string wanted = reads[0].seq + seq + reads[num - 1].seq;
        NewSnp();
        snp[0] << "value base for each position\n";
        for (std::size_t o = 0; o < wanted.size(); ++o) {
            const char voted = value_base(wanted[o], static_cast<int>(o), placed, 0);
            if (voted != 'N') wanted[o] = voted;
        }
        const std::string records = NewSnp();
        Get_snp(seq, order, table.Rows(), reads, unused, unused, 0);
        EXPECT_EQ(seq, wanted.substr(20, wanted.size() - 40));
        EXPECT_EQ(NewSnp().substr(0, records.size()), records);
    }
}

TEST(LastOrderCheck, NineOfTenAreTooFew) {
    std::vector<Read> reads{{"ACGTACGTACG", 0}, {"AAAAAAAAAA", 0}};
    ReadMap read{{&reads[1].seq, 2}};
    EXPECT_FALSE(LastOrderCheck("CCAAAAAAAAAC", read, reads, {0, 1}));
    EXPECT_TRUE(LastOrderCheck("CCAAAAAAAAAA", read, reads, {0, 1}));
}

TEST(LastOrderCheck, TenOfElevenAreEnough) {
    std::vector<Read> reads{{"C", 0}, {"AAAAAAAAAAA", 0}};
    ReadMap read{{&reads[1].seq, 0}};
    EXPECT_TRUE(LastOrderCheck("AAAAACAAAAA", read, reads, {0, 1}));
}

TEST(LastOrderCheck, PlacesPastTheEndAreUnequal) {
    std::vector<Read> reads{{"C", 0}, {"AAAA", 0}};
    ReadMap read{{&reads[1].seq, 3}};
    // Of four places compared only the two in columns 3 and 4 exist.
    EXPECT_FALSE(LastOrderCheck("AAAAA", read, reads, {0, 1}));
}

TEST(LastOrderCheck, ConsensusShorterThanTheReadBoundsTheCheck) {
    std::vector<Read> reads{{"C", 0}, {"AAAATTTT", 0}};
    ReadMap read{{&reads[1].seq, 0}};
    EXPECT_TRUE(LastOrderCheck("AAAA", read, reads, {0, 1}));
}

TEST(LastOrderCheck, NothingToCompareFails) {
    std::vector<Read> reads{{"C", 0}, {"AAAA", 0}};
    ReadMap read{{&reads[1].seq, 0}};
    EXPECT_FALSE(LastOrderCheck("", read, reads, {0, 1}));
    EXPECT_FALSE(LastOrderCheck("AAAA", read, reads, {}));
}

TEST(FirstOrderCheck, LooksAtTheFirstReadOfTheOrder) {
    std::vector<Read> reads{{"CCCC", 0}, {"AAAA", 0}};
    ReadMap read{{&reads[0].seq, 1}, {&reads[1].seq, 5}};
    EXPECT_TRUE(FirstOrderCheck("GCCCCTTTT", read, reads, {0, 1}));
    EXPECT_FALSE(LastOrderCheck("GCCCCTTTT", read, reads, {0, 1}));
    EXPECT_FALSE(FirstOrderCheck("GCCCTAAAA", read, reads, {0, 1}));
    EXPECT_TRUE(LastOrderCheck("GCCCTAAAA", read, reads, {0, 1}));
}

TEST(FirstOrderCheck, NegativeOffsetMakesTheHeadUnequal) {
    std::vector<Read> reads{{"CCCC", 0}};
    ReadMap read{{&reads[0].seq, -1}};
    EXPECT_FALSE(FirstOrderCheck("CCCCCC", read, reads, {0}));
}

}  // namespace
}  // namespace lintara
