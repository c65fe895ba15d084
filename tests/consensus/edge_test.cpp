#include "consensus/edge.h"

#include <gtest/gtest.h>

#include "covered_column.h"
#include "overlap_table.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::CoveredColumn;
using testing::OverlapTable;

class LooseEndVote : public testing::ThreadStreamsTest {};
class BeforeConsensus : public testing::ThreadStreamsTest {};
class AfterConsensus : public testing::ThreadStreamsTest {};
class MiddleConsensus : public testing::ThreadStreamsTest {};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

const int* const kUnused = nullptr;

// ---- the votes ----

TEST_F(LooseEndVote, OneAgainstTwoIsInDoubtButKeepsThePath) {
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("AGG").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t2\t0\tN   A\t3\t0.666667\n");
}

TEST_F(LooseEndVote, OneAgainstThreeChanges) {
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("AGGG").Map(), 0), 'G');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t3\t0\tG   A\t4\t0.75\n");
}

TEST_F(LooseEndVote, NoneAgainstTwoChanges) {
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("GG").Map(), 0), 'G');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t2\t0\tG   A\t2\t1\n");
}

TEST_F(LooseEndVote, PathWinsATie) {
    EXPECT_EQ(Enlong_value_base('T', 5, CoveredColumn("CCTT").Map(), 0), 'T');
    EXPECT_EQ(NewSnp(), "5\t0\t2\t0\t2\tT---T\t4\t0.5\n");
}

TEST_F(LooseEndVote, TieOfSingleReadsHasNoWinner) {
    EXPECT_EQ(Enlong_value_base('T', 5, CoveredColumn("CT").Map(), 0), 'T');
    EXPECT_EQ(NewSnp(), "5\t0\t1\t0\t1\tN   T\t2\t0.5\n");
}

TEST_F(LooseEndVote, OneCoveringReadOnlyIsN) {
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("A").Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t0\t0\tN   A\t1\t1\n");
}

TEST_F(LooseEndVote, NoCoveringReadKeepsThePath) {
    EXPECT_EQ(Enlong_value_base('A', 5, {}, 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t0\t0\tN   A\t0\t0\n");
}

TEST_F(LooseEndVote, PathBaseNHasNoReads) {
    EXPECT_EQ(Enlong_value_base('N', 5, CoveredColumn("CC").Map(), 0), 'C');
    EXPECT_EQ(NewSnp(), "5\t0\t2\t0\t0\tC   N\t2\t1\n");
    EXPECT_EQ(Enlong_value_base('N', 5, CoveredColumn("CCNN").Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t0\t2\t0\t0\tC   N\t4\t0.5\n");
    EXPECT_EQ(Enlong_value_base('N', 5, CoveredColumn("C").Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t0\t1\t0\t0\tN---N\t1\t1\n");
}

TEST_F(LooseEndVote, PlainFormAsksForTwoReads) {
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("A").Map(), 0), 'N');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t0\t0\tN   A\t1\t1\n");
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("AA").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t2\t0\t0\t0\tA---A\t2\t1\n");
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("GG").Map(), 0), 'G');
    EXPECT_EQ(NewSnp(), "5\t0\t0\t2\t0\tG   A\t2\t1\n");
}

TEST_F(LooseEndVote, PlainFormKnowsNoTieAndNoDoubt) {
    EXPECT_EQ(Enlong_value_base2('T', 5, CoveredColumn("CCTT").Map(), 0), 'T');
    EXPECT_EQ(NewSnp(), "5\t0\t2\t0\t2\tC   T\t4\t0.5\n");
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("AGG").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t2\t0\tG   A\t3\t0.666667\n");
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("AG").Map(), 0), 'A');
    EXPECT_EQ(NewSnp(), "5\t1\t0\t1\t0\tN   A\t2\t0.5\n");
    EXPECT_EQ(Enlong_value_base2('A', 5, {}, 0), 'A');
}

TEST_F(LooseEndVote, SevenTenthsChange) {
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("GGGGGGGAAA").Map(), 0), 'G');
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("GGGGGGGAAA").Map(), 0), 'G');
    EXPECT_EQ(Enlong_value_base('A', 5, CoveredColumn("GGGGGGAAAN").Map(), 0), 'A');
    EXPECT_EQ(Enlong_value_base2('A', 5, CoveredColumn("GGGGGGAAAN").Map(), 0), 'A');
}

// ---- from the before edge ----

// column  0         1
//         01234567890123
// read 0  ACGTACGTAC        before edge
// read 1      ACGTACGGTT    path
// read 2        GTACGG      follows the edge
class BeforeBlock : public BeforeConsensus {
  protected:
    std::vector<Read> reads_{{"ACGTACGTAC", -10}, {"ACGTACGGTT", -6}, {"GTACGG", -4}};
    OverlapTable table_{3};
    std::string seq_ = "GGTT";

    void SetUp() override {
        BeforeConsensus::SetUp();
        table_.Set(0, 1, 6).Set(0, 2, 4);
    }
    void Run(bool noreadbreak) { Get_snp_before(seq_, {0, 1}, table_.Rows(), reads_, kUnused, noreadbreak, 0); }
};

TEST_F(BeforeBlock, StrictVoteEndsAtTheFirstColumnInDoubt) {
    Run(false);
    EXPECT_EQ(seq_, "GG");
    EXPECT_EQ(Log(), "get the before position for each read\nGet snp finished!\n");
    // The four columns that only the edge covers differ from it, being N.
    EXPECT_EQ(Snp(),
              "get the before position for each read\n"
              "value base for each position\t10\n"
              "0\t1\t0\t0\t0\tN   A\t1\t1\n"
              "1\t0\t1\t0\t0\tN   C\t1\t1\n"
              "2\t0\t0\t1\t0\tN   G\t1\t1\n"
              "3\t0\t0\t0\t1\tN   T\t1\t1\n"
              "4\t2\t0\t0\t0\tA---A\t2\t1\n"
              "5\t0\t2\t0\t0\tC---C\t2\t1\n"
              "6\t0\t0\t3\t0\tG---G\t3\t1\n"
              "7\t0\t0\t0\t3\tT---T\t3\t1\n"
              "8\t3\t0\t0\t0\tA---A\t3\t1\n"
              "9\t0\t3\t0\t0\tC---C\t3\t1\n"
              "10\t0\t0\t2\t0\tG---G\t2\t1\n"
              "11\t0\t0\t2\t0\tG---G\t2\t1\n"
              "12\t0\t0\t0\t1\tN   T\t1\t1\n"
              "13\t0\t0\t0\t1\tN   T\t1\t1\n"
              "SNP get finished!\tused reads: 4\tunsame base: 4\n");
}

TEST_F(BeforeBlock, PlainVoteKeepsTheThinTail) {
    Run(true);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_EQ(Log(),
              "get the before position for each read\n"
              "lastid : 1\t14\n"
              "last read: ACGTACGGTT\n"
              "len: 10\tstart last order check!\n"
              "last order check passed!\n"
              "Get snp finished!\n");
    EXPECT_TRUE(Contains(Snp(), "\n12\t0\t0\t0\t1\tN   T\t1\t1\n"));
    EXPECT_TRUE(Contains(Snp(), "SNP get finished!\tused reads: 4\tunsame base: 4\n"));
}

TEST_F(BeforeBlock, ColumnsBehindTheEdgeChangeWithoutBeingCounted) {
    seq_ = "CGTT";
    Run(true);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_TRUE(Contains(Snp(), "unsame base: 4\n"));
}

TEST_F(BeforeBlock, ColumnsOfTheEdgeNeverChange) {
    // Reads 1 and 2 outvote the edge's column 9, and so it is counted; column 3 and below are N as ever.
    reads_[0].seq = "ACGTACGTAG";
    reads_.push_back({"TACGG", -3});
    OverlapTable wider(4);
    wider.Set(0, 1, 6).Set(0, 2, 4).Set(0, 3, 3);
    Get_snp_before(seq_, {0, 1}, wider.Rows(), reads_, kUnused, false, 0);
    EXPECT_EQ(seq_, "GG");
    EXPECT_TRUE(Contains(Snp(), "\n9\t0\t3\t1\t0\tC   G\t4\t0.75\n"));
    EXPECT_TRUE(Contains(Snp(), "used reads: 5\tunsame base: 5\n"));
}

TEST_F(BeforeBlock, TwoPlacedReadsAreNotVotedOn) {
    table_.Set(0, 2, 0);
    Run(false);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_EQ(Snp(),
              "get the before position for each read\n"
              "value base for each position\t10\n"
              "SNP get finished!\tused reads: 3\tunsame base: 0\n");
}

TEST_F(BeforeBlock, WithoutAVoteTheSequenceIsStillCutAtAnN) {
    table_.Set(0, 2, 0);
    seq_ = "GNTT";
    Run(false);
    EXPECT_EQ(seq_, "G");
}

TEST_F(BeforeBlock, NInsideTheEdgeLeavesNothing) {
    reads_[0].seq = "ACGTNCGTAC";
    Run(false);
    EXPECT_EQ(seq_, "");
}

TEST_F(BeforeBlock, NAtTheVeryFirstBaseIsLeftAlone) {
    reads_[0].seq = "NCGTACGTAC";
    table_.Set(0, 2, 0);
    Run(false);
    EXPECT_EQ(seq_, "GGTT");
}

TEST_F(BeforeBlock, NeighboursWithoutOverlapEndTheProcess) {
    table_.Set(0, 1, 0);
    Log();
    EXPECT_EXIT(Run(false), ::testing::ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "get the before position for each read\nError in order vector!\t1\n");
}

// Read 2 follows the edge and, elsewhere, read 1: the second placement is 5 columns further right.
class PlacedAnew : public BeforeBlock {
  protected:
    void SetUp() override {
        BeforeBlock::SetUp();
        table_.Set(1, 2, 3);
        reads_[1].pos = 0;
    }
    bool Moved(int pos) {
        reads_[2].pos = pos;
        Run(false);
        const std::string records = NewSnp();
        // Column 6 is covered by the edge, read 1 and the first placement of read 2.
        const bool moved = Contains(records, "\n6\t0\t0\t2\t0\t");
        EXPECT_EQ(moved, Contains(records, "used reads: 5\t"));
        EXPECT_EQ(!moved, Contains(records, "used reads: 4\t"));
        return moved;
    }
};

TEST_F(PlacedAnew, NotByAPathReadBehindIt) {
    EXPECT_FALSE(Moved(-1));
    EXPECT_TRUE(Moved(0));
}

TEST_F(PlacedAnew, NotByAPathReadTooFarInFront) {
    EXPECT_TRUE(Moved(200));
    EXPECT_FALSE(Moved(201));
    ReadLen = 90;
    EXPECT_FALSE(Moved(181));
    EXPECT_TRUE(Moved(180));
}

TEST_F(PlacedAnew, SkippedPlacementIsNoTailEither) {
    // The second placement would end in column 17, with an overlap of half the read.
    reads_[2].pos = -1;
    Run(true);
    EXPECT_TRUE(Contains(Log(), "lastid : 1\t14\n"));
}

TEST_F(PlacedAnew, HalfOfTheReadMakesATail) {
    reads_[2].pos = 0;
    Run(true);
    EXPECT_TRUE(Contains(Log(), "lastid : 2\t17\nlast read: GTACGG\nlen: 3\tstart last order check!\n"));
}

TEST_F(PlacedAnew, LessThanHalfMakesNoTail) {
    table_.Set(1, 2, 2);
    Run(true);
    EXPECT_TRUE(Contains(Log(), "lastid : 1\t14\n"));
}

// column  0         1
//         0123456789012345
// read 0  ACGTACGTAC          before edge
// read 1      ACGTACGGTT      path
// read 2         TACGGTTCA    follows read 1
class TailBlock : public BeforeConsensus {
  protected:
    std::vector<Read> reads_{{"ACGTACGTAC", -10}, {"ACGTACGGTT", -6}, {"TACGGTTCA", -3}};
    OverlapTable table_{3};
    std::string seq_ = "GGTT";

    void SetUp() override {
        BeforeConsensus::SetUp();
        table_.Set(0, 1, 6).Set(1, 2, 7);
    }
    void Run(bool noreadbreak) { Get_snp_before(seq_, {0, 1}, table_.Rows(), reads_, kUnused, noreadbreak, 0); }
};

TEST_F(TailBlock, AgreeingReadLengthensTheSequence) {
    Run(true);
    EXPECT_EQ(seq_, "GGTTCA");
    EXPECT_EQ(Log(),
              "get the before position for each read\n"
              "lastid : 2\t16\n"
              "last read: TACGGTTCA\n"
              "len: 7\tstart last order check!\n"
              "last order check passed!\n"
              "same base num: 7\t7\n"
              "Get snp finished!\n");
}

TEST_F(TailBlock, OneDisagreementIsTooMuch) {
    reads_[2].seq = "TACGCTTCA";
    Run(true);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_TRUE(Contains(Log(), "same base num: 6\t7\nGet snp finished!\n"));
}

TEST_F(TailBlock, AddedTailEndsAtItsFirstN) {
    reads_[2].seq = "TACGGTTCN";
    Run(true);
    EXPECT_EQ(seq_, "GGTTC");
}

TEST_F(TailBlock, WithoutNoreadbreakNothingIsAdded) {
    Run(false);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_FALSE(Contains(Log(), "lastid"));
}

TEST_F(TailBlock, OfEqualTailsTheFirstReadWins) {
    reads_.push_back({"ACGGTTCA", -3});
    OverlapTable wider(4);
    wider.Set(0, 1, 6).Set(1, 2, 7).Set(1, 3, 6);
    Get_snp_before(seq_, {0, 1}, wider.Rows(), reads_, kUnused, true, 0);
    EXPECT_TRUE(Contains(Log(), "lastid : 2\t16\n"));
}

TEST_F(TailBlock, PathReadThatFailsItsCheckAddsNothing) {
    // Read 1 stands in the sequence with 8 of its 10 bases; reads 2 and 3 outvote the other two.
    reads_.push_back({"TACAATTCA", -3});
    reads_[2].seq = "TACAATTCA";
    OverlapTable wider(4);
    wider.Set(0, 1, 6).Set(1, 2, 7).Set(1, 3, 7);
    seq_ = "AATT";
    Get_snp_before(seq_, {0, 1}, wider.Rows(), reads_, kUnused, true, 0);
    EXPECT_EQ(seq_, "AATT");
    EXPECT_TRUE(Contains(Log(), "len: 7\tstart last order check!\nGet snp finished!\n"));
}

TEST_F(BeforeConsensus, AddedTailIsShorterThanTheSequence) {
    // Read 1 begins in column 1; the sequence that is handed in lacks its last base. Read 2 begins where read 1 does,
    // 19 of its bases lie in the 20 of the sequence.
    const auto run = [&](int tail) {
        const std::string path_read = "CGTACGTACGTTGGAACCTT";
        const std::vector<Read> reads{
            {"ACGTACGTACG", -11}, {path_read, -10}, {path_read + std::string(tail, 'C'), -10}};
        OverlapTable table(3);
        table.Set(0, 1, 10).Set(1, 2, 20);
        std::string seq = "TTGGAACCT";
        Get_snp_before(seq, {0, 1}, table.Rows(), reads, kUnused, true, 0);
        EXPECT_TRUE(Contains(NewLog(), "last order check passed!\nsame base num: 19\t19\n"));
        return seq;
    };
    EXPECT_EQ(run(18), "TTGGAACCTT" + std::string(18, 'C'));
    EXPECT_EQ(run(19), "TTGGAACCT");
}

TEST_F(BeforeConsensus, NoSuccessorMeansNoTail) {
    const std::vector<Read> reads{{"ACGTACGTAC", -10}, {"GGGGGGGGGG", 0}};
    OverlapTable table(2);
    std::string seq;
    Get_snp_before(seq, {0}, table.Rows(), reads, kUnused, true, 0);
    EXPECT_EQ(seq, "");
    EXPECT_EQ(Log(),
              "get the before position for each read\n"
              "lastid : -1\t0\n"
              "len: 0\tstart last order check!\n"
              "Get snp finished!\n");
}

TEST_F(BeforeConsensus, ReadThatBeginsWithTheEdgeIsAPositionError) {
    const std::vector<Read> reads{{"ACGTACGTAC", -10}, {"ACGTACGTACGG", -10}};
    OverlapTable table(2);
    table.Set(0, 1, 10);
    std::string seq;
    Get_snp_before(seq, {0}, table.Rows(), reads, kUnused, true, 0);
    EXPECT_EQ(seq, "");
    EXPECT_EQ(Log(),
              "get the before position for each read\n"
              "lastid : 1\t12\n"
              "last read: ACGTACGTACGG\n"
              "Position error!\t10\t0\n"
              "len: 0\tstart last order check!\n"
              "Get snp finished!\n");
}

TEST_F(BeforeConsensus, ReadBehindTheSequenceIsAPositionError) {
    // The order has grown beyond the sequence that is handed in: read 1 stands in column 8 of 8.
    const std::vector<Read> reads{{"ACGTACGT", -8}, {"GGGGGGGG", 0}, {"GGGGGGGG", 0}};
    OverlapTable table(3);
    table.Set(0, 1, 4).Set(1, 2, 4);
    std::string seq;
    Get_snp_before(seq, {0, 1}, table.Rows(), reads, kUnused, true, 0);
    EXPECT_TRUE(Contains(Log(), "lastid : 2\t16\nlast read: GGGGGGGG\nPosition error!\t8\t8\nlen: 0\tstart last"));
}

// ---- to the after edge ----

// column  0         1
//         01234567890123
// read 0  GGTTACGTAC        path
// read 1    TTACGT          precedes the edge
// read 2      ACGTACGTAC    after edge
class AfterBlock : public AfterConsensus {
  protected:
    std::vector<Read> reads_{{"GGTTACGTAC", -4}, {"TTACGT", -2}, {"ACGTACGTAC", 0}};
    OverlapTable table_{3};
    std::string seq_ = "GGTT";

    void SetUp() override {
        AfterConsensus::SetUp();
        table_.Set(0, 2, 6).Set(1, 2, 4);
    }
    void Run(bool noreadbreak) { Get_snp_after(seq_, {0, 2}, table_.Rows(), reads_, kUnused, noreadbreak, 0); }
};

TEST_F(AfterBlock, StrictVoteBeginsBehindTheLastColumnInDoubt) {
    Run(false);
    EXPECT_EQ(seq_, "TT");
    EXPECT_EQ(Log(),
              "get the after position for each read\n"
              "add tail: GGTTACGTACGTAC\t14\n"
              "after value: TTACGTACGTAC\t12\n"
              "before cut: TTACGTACGTAC\t12\n"
              "after cut: TT\t2\n");
    EXPECT_EQ(Snp(),
              "get the after position for each read\n"
              "value base for each position\n"
              "0\t0\t0\t1\t0\tN   G\t1\t1\n"
              "1\t0\t0\t1\t0\tN   G\t1\t1\n"
              "2\t0\t0\t0\t2\tT---T\t2\t1\n"
              "3\t0\t0\t0\t2\tT---T\t2\t1\n"
              "4\t3\t0\t0\t0\tA---A\t3\t1\n"
              "5\t0\t3\t0\t0\tC---C\t3\t1\n"
              "6\t0\t0\t3\t0\tG---G\t3\t1\n"
              "7\t0\t0\t0\t3\tT---T\t3\t1\n"
              "8\t2\t0\t0\t0\tA---A\t2\t1\n"
              "9\t0\t2\t0\t0\tC---C\t2\t1\n"
              "10\t0\t0\t1\t0\tN   G\t1\t1\n"
              "11\t0\t0\t0\t1\tN   T\t1\t1\n"
              "12\t1\t0\t0\t0\tN   A\t1\t1\n"
              "13\t0\t1\t0\t0\tN   C\t1\t1\n"
              "SNP get finished!\tused reads: 3\tunsame base: 4\n");
}

TEST_F(AfterBlock, ShortenedToTheBareEdgeGivesNothing) {
    reads_.insert(reads_.begin() + 1, Read("ACGTACG", 0));
    OverlapTable wider(4);
    // Three placed reads, of which none but read 0 covers the four columns in front of the edge.
    wider.Set(0, 3, 6).Set(1, 3, 7);
    Get_snp_after(seq_, {0, 3}, wider.Rows(), reads_, kUnused, false, 0);
    EXPECT_EQ(seq_, "");
    EXPECT_TRUE(Contains(Log(), "before cut: ACGTACGTAC\t10\nafter cut: \t0\n"));
}

TEST_F(AfterBlock, TwoPlacedReadsAreNotVotedOn) {
    table_.Set(1, 2, 0);
    Run(false);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_TRUE(Contains(Snp(), "value base for each position\nSNP get finished!\tused reads: 2\tunsame base: 0\n"));
}

TEST_F(AfterBlock, WithoutPrecedingReadThereIsNoHead) {
    Run(true);
    EXPECT_EQ(seq_, "TT");
    EXPECT_TRUE(Contains(Log(), "no read: 1\t-1\nget the after position for each read\nadd tail: "));
}

TEST_F(AfterBlock, PlacedReadWithAHigherPositionStays) {
    // Read 1 precedes read 0's successor twice: the path is 0, 1, 3 and read 2 is off it.
    const auto used = [&](int pos) {
        std::vector<Read> reads{{"GGTTACGTAC", 0}, {"TTACGTACGT", 2}, {"TACGTAC", pos}, {"ACGTACGTAC", 4}};
        OverlapTable table(4);
        table.Set(0, 1, 8).Set(1, 3, 8).Set(2, 1, 5).Set(2, 3, 6);
        std::string seq = "GGTT";
        Get_snp_after(seq, {0, 1, 3}, table.Rows(), reads, kUnused, false, 0);
        return NewSnp();
    };
    // Reads 0 and 1 of the order; 0 and 2 in front of 1; 1 and 2 in front of 3, the latter only when it moves.
    EXPECT_TRUE(Contains(used(4), "used reads: 6\t"));
    EXPECT_TRUE(Contains(used(5), "used reads: 5\t"));
}

TEST_F(AfterBlock, NeighboursWithoutOverlapEndTheProcess) {
    table_.Set(0, 2, 0);
    Log();
    EXPECT_EXIT(Run(false), ::testing::ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "get the after position for each read\nError in order vector !\t0\n");
}

// column  0         1
//         0123456789012345
// read 0    GGTTACGTAC        path
// read 1      TTACGT          precedes the edge
// read 2  CAGGTTACG           precedes the path
// read 3        ACGTACGTAC    after edge
class HeadBlock : public AfterConsensus {
  protected:
    std::vector<Read> reads_{{"GGTTACGTAC", -4}, {"TTACGT", -2}, {"CAGGTTACG", -6}, {"ACGTACGTAC", 0}};
    OverlapTable table_{4};
    std::string seq_ = "GGTT";

    void SetUp() override {
        AfterConsensus::SetUp();
        table_.Set(0, 3, 6).Set(1, 3, 4).Set(2, 0, 7);
    }
    void Run(bool noreadbreak) { Get_snp_after(seq_, {0, 3}, table_.Rows(), reads_, kUnused, noreadbreak, 0); }
};

TEST_F(HeadBlock, AgreeingReadLengthensTheSequence) {
    Run(true);
    EXPECT_EQ(seq_, "CAGGTT");
    EXPECT_EQ(Log(),
              "no read: 1\t2\n"
              "get the after position for each read\n"
              "lastid : 2\t2\n"
              "last read: CAGGTTACG\n"
              "after add: CAGGTT\n"
              "add tail: CAGGTTACGTACGTAC\t16\n"
              "after value: CAGGTTACGTACGTAC\t16\n"
              "first order check passed!\n"
              "same base num: 7\t7\n"
              "before cut: CAGGTTACGTACGTAC\t16\n"
              "after cut: CAGGTT\t6\n");
    const std::string records = Snp();
    // Only the head read covers the first two columns, and the edge the last four.
    EXPECT_TRUE(
        Contains(records, "\n0\t0\t1\t0\t0\tN   C\t1\t1\n1\t1\t0\t0\t0\tN   A\t1\t1\n2\t0\t0\t2\t0\tG---G\t2\t1\n"));
    EXPECT_TRUE(Contains(records, "used reads: 3\tunsame base: 4\n"));
}

TEST_F(HeadBlock, HeadReadIsPlacedAtTheFrontAgain) {
    // By its overlap with the edge it would begin in column 1; its place at the front stands all the same.
    table_.Set(2, 3, 4);
    Run(true);
    EXPECT_EQ(seq_, "CAGGTT");
    const std::string records = Snp();
    EXPECT_TRUE(Contains(records, "\n0\t0\t1\t0\t0\tN   C\t1\t1\n1\t1\t0\t0\t0\tN   A\t1\t1\n"));
    EXPECT_TRUE(Contains(records, "used reads: 4\t"));
}

TEST_F(HeadBlock, DisagreeingReadIsTakenBack) {
    reads_[2].seq = "CAGGTTAGG";
    Run(true);
    EXPECT_EQ(seq_, "GGTT");
    EXPECT_TRUE(Contains(Log(), "same base num: 6\t7\nbefore cut: GGTTACGTACGTAC\t14\nafter cut: GGTT\t4\n"));
}

TEST_F(HeadBlock, WithoutNoreadbreakNothingIsAdded) {
    Run(false);
    EXPECT_EQ(seq_, "TT");
    EXPECT_FALSE(Contains(Log(), "no read"));
}

TEST_F(HeadBlock, SequenceAlsoBeginsBehindItsLastN) {
    // The N of the path stands in a column that read 0 alone covers besides the head read's N.
    reads_[0].seq = "NGTTACGTAC";
    reads_[2].seq = "CANGTTACG";
    seq_ = "NGTT";
    Run(true);
    // "GTT" and the edge are left; the check then compares in columns that have shifted, and fails on its own.
    EXPECT_EQ(seq_, "GTT");
    EXPECT_TRUE(Contains(Log(), "after value: GTTACGTACGTAC\t13\nbefore cut: GTTACGTACGTAC\t13\n"));
}

class SingleReadBeforeEdge : public AfterConsensus {
  protected:
    std::vector<Read> reads_{{"CAACGTACG", 0}, {"ACGTACGTAC", 0}};
    OverlapTable table_{2};
    std::string seq_;

    void SetUp() override {
        AfterConsensus::SetUp();
        table_.Set(0, 1, 7);
    }
    void Run() { Get_snp_after(seq_, {1}, table_.Rows(), reads_, kUnused, true, 0); }
};

TEST_F(SingleReadBeforeEdge, BareEdgeIsLengthened) {
    Run();
    EXPECT_EQ(seq_, "CA");
    EXPECT_TRUE(Contains(Snp(), "used reads: 0\tunsame base: 0\n"));
}

TEST_F(SingleReadBeforeEdge, HeadStaysWhenThePathFailsItsCheck) {
    seq_ = "TTTT";
    Run();
    EXPECT_EQ(seq_, "CATTTT");
    EXPECT_FALSE(Contains(Log(), "first order check"));
}

TEST_F(SingleReadBeforeEdge, HeadLongerThanTheRestIsTakenBack) {
    reads_[0].seq = "CCCCCCCCCCCCACGTAC";
    table_.Set(0, 1, 6);
    Run();
    EXPECT_EQ(seq_, "");
    EXPECT_TRUE(Contains(Log(), "same base num: 6\t6\nbefore cut: ACGTACGTAC\t10\n"));
}

TEST_F(SingleReadBeforeEdge, HeadAsLongAsTheRestStays) {
    reads_[0].seq = "CCCCCCCCCCACGTAC";
    table_.Set(0, 1, 6);
    Run();
    EXPECT_EQ(seq_, "CCCCCCCCCC");
}

TEST_F(SingleReadBeforeEdge, ThreeTenthsOfTheReadAreEnough) {
    reads_[0].seq = "CCCCCCCACG";
    table_.Set(0, 1, 3);
    Run();
    EXPECT_TRUE(Contains(Log(), "no read: 1\t0\n"));
    reads_[0].seq = "CCCCCCCCACG";
    seq_.clear();
    Run();
    EXPECT_TRUE(Contains(Log(), "no read: 1\t-1\n"));
}

TEST_F(AfterConsensus, OfEqualHeadsTheLaterReadWins) {
    const std::vector<Read> reads{{"CAACGTACG", 0}, {"GGACGTACG", 0}, {"TACGTACG", 0}, {"ACGTACGTAC", 0}};
    OverlapTable table(4);
    table.Set(0, 3, 7).Set(1, 3, 7).Set(2, 3, 7);
    std::string seq;
    Get_snp_after(seq, {3}, table.Rows(), reads, kUnused, true, 0);
    EXPECT_TRUE(Contains(Log(), "lastid : 1\t2\nlast read: GGACGTACG\n"));
    // Column 0 has C and G once each; column 1 A, G and, by the shorter read, T.
    EXPECT_TRUE(Contains(Snp(), "\n0\t0\t1\t1\t0\tN   G\t2\t0.5\n1\t1\t0\t1\t1\tN   G\t3\t0.333333\n"));
    EXPECT_EQ(seq, "GG");
}

TEST_F(AfterConsensus, ReadsInFrontOfAnAddedHeadBeginAtNegativeColumns) {
    // Read 0 overlaps the path in too few bases to be the head, and yet votes, from column -6 on.
    const std::vector<Read> reads{{"TTTTTTCAACG", 0}, {"CAACGTACG", 0}, {"ACGTACGTAC", 0}};
    OverlapTable table(3);
    table.Set(0, 2, 3).Set(1, 2, 7);
    std::string seq;
    Get_snp_after(seq, {2}, table.Rows(), reads, kUnused, true, 0);
    EXPECT_TRUE(Contains(Log(), "lastid : 1\t2\n"));
    EXPECT_TRUE(Contains(Snp(), "\n0\t0\t2\t0\t0\tC---C\t2\t1\n1\t2\t0\t0\t0\tA---A\t2\t1\n2\t3\t"));
    EXPECT_EQ(seq, "CA");
}

// ---- in the middle ----

// column  0         1
//         01234567890123456
// read 0  ACGTACGTAC           path
// read 1      ACGTACGGTT       path
// read 2       CGTACG          follows read 0; placed by read 1 it would begin in column 11
class MiddleBlock : public MiddleConsensus {
  protected:
    std::vector<Read> reads_{{"ACGTACGTAC", 0}, {"ACGTACGGTT", 4}, {"CGTACG", 5}};
    OverlapTable table_{3};
    std::string seq_ = "ACGTACGTACGGTT";

    void SetUp() override {
        MiddleConsensus::SetUp();
        table_.Set(0, 1, 6).Set(0, 2, 5).Set(1, 2, 3);
    }
    void Run() { Get_snp_middle(seq_, {0, 1}, table_.Rows(), reads_, 0); }
};

TEST_F(MiddleBlock, ColumnsInDoubtKeepTheirBase) {
    reads_[2].pos = 4;
    Run();
    EXPECT_EQ(seq_, "ACGTACGTACGGTT");
    EXPECT_EQ(Log(), "get the position for each read of middle block\nGet snp finished!\n");
    EXPECT_EQ(Snp(),
              "value base for each position\n"
              "0\t1\t0\t0\t0\tN   A\t1\t1\n"
              "1\t0\t1\t0\t0\tN   C\t1\t1\n"
              "2\t0\t0\t1\t0\tN   G\t1\t1\n"
              "3\t0\t0\t0\t1\tN   T\t1\t1\n"
              "4\t2\t0\t0\t0\tA---A\t2\t1\n"
              "5\t0\t3\t0\t0\tC---C\t3\t1\n"
              "6\t0\t0\t3\t0\tG---G\t3\t1\n"
              "7\t0\t0\t0\t3\tT---T\t3\t1\n"
              "8\t3\t0\t0\t0\tA---A\t3\t1\n"
              "9\t0\t3\t0\t0\tC---C\t3\t1\n"
              "10\t0\t0\t2\t0\tG---G\t2\t1\n"
              "11\t0\t0\t1\t0\tN   G\t1\t1\n"
              "12\t0\t0\t0\t1\tN   T\t1\t1\n"
              "13\t0\t0\t0\t1\tN   T\t1\t1\n"
              "SNP get finished!\tused reads: 4\tunsame base: 0\n");
}

TEST_F(MiddleBlock, PathReadInFrontPlacesAnewWithoutCounting) {
    reads_[2].pos = 5;
    Run();
    EXPECT_TRUE(Contains(Snp(), "\n5\t0\t2\t0\t0\tC---C\t2\t1\n"));
    EXPECT_TRUE(Contains(Snp(), "\n11\t0\t1\t1\t0\tN   G\t2\t0.5\n"));
    EXPECT_TRUE(Contains(Snp(), "used reads: 4\tunsame base: 0\n"));
}

TEST_F(MiddleBlock, ClearVoteChangesWithoutBeingCounted) {
    reads_[2].pos = 4;
    seq_ = "ACGTACATACGGTT";
    Run();
    EXPECT_EQ(seq_, "ACGTACGTACGGTT");
    EXPECT_TRUE(Contains(Snp(), "unsame base: 0\n"));
}

TEST_F(MiddleBlock, TwoPlacedReadsAreVotedOnToo) {
    table_.Set(0, 2, 0).Set(1, 2, 0);
    seq_ = "ACGTACATACGGTT";
    Run();
    EXPECT_EQ(seq_, "ACGTACGTACGGTT");
    EXPECT_TRUE(Contains(Snp(), "used reads: 3\tunsame base: 0\n"));
}

TEST_F(MiddleBlock, NeighboursWithoutOverlapEndTheProcess) {
    table_.Set(0, 1, 0);
    Log();
    EXPECT_EXIT(Run(), ::testing::ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "get the position for each read of middle block\nError in order vector!\t1\n");
}

// ---- helpers ----

TEST(ReverseVector, TurnsThePathAround) {
    EXPECT_EQ(reverse_vector({4, 9, 2}), (std::vector<int>{2, 9, 4}));
    EXPECT_TRUE(reverse_vector({}).empty());
}

std::string Dropped(std::string seq) {
    const std::string result = Drop_NTail(seq);
    EXPECT_EQ(seq, result);
    return result;
}

TEST(DropNTail, TrimsBothEnds) {
    EXPECT_EQ(Dropped("NNACGTNN"), "ACGT");
}

TEST(DropNTail, BaseAtTheFrontIsLostWhenAnotherKindFollows) {
    EXPECT_EQ(Dropped("ACGT"), "CGT");
    EXPECT_EQ(Dropped("AAACGT"), "CGT");
}

TEST(DropNTail, OneKindOfBaseAtTheFrontLeavesNothing) {
    EXPECT_EQ(Dropped("AAAA"), "");
}

TEST(DropNTail, NothingWithoutABaseBehindTheFirst) {
    EXPECT_EQ(Dropped(""), "");
    EXPECT_EQ(Dropped("NNNN"), "");
    EXPECT_EQ(Dropped("ANNN"), "");
}

TEST(DropNTail, SingleNLeavesTheLargerPart) {
    EXPECT_EQ(Dropped("NACNGTAC"), "GTAC");
    EXPECT_EQ(Dropped("NACGTNAC"), "ACGT");
    // Five bases and N in the middle: half is 2, and what follows stays.
    EXPECT_EQ(Dropped("NACNGT"), "GT");
}

TEST(DropNTail, SeveralN) {
    EXPECT_EQ(Dropped("NANCNGTACGTA"), "GTACGTA");
    EXPECT_EQ(Dropped("NACGTACGNANC"), "ACGTACG");
    EXPECT_EQ(Dropped("NANCGTACNG"), "CGTAC");
}

TEST(DropNTail, NAtHalfAmongSeveralEnds) {
    const std::string result = Dropped("NACGTNCNAC");
    EXPECT_EQ(result.find('N'), std::string::npos);
    EXPECT_EQ(result, "ACGT");
}

}  // namespace
}  // namespace lintara
