#include "solve/block.h"

#include "block_of_reads.h"

namespace lintara {
namespace {

using testing::BlockOfReads;
using testing::Genome;
using testing::RandomBases;
using testing::SmallMatrix;

class SolveMiddle : public testing::SolverTest {};
class SolveBefore : public testing::SolverTest {};
class SolveAfter : public testing::SolverTest {};
class SolveBlockMatrix : public testing::SolverTest {};
class AssembleBlock : public testing::SolverTest {};

// ---- GetMax --------------------------------------------------------------------------------------------------------

TEST(GetMaxRule, AllZeroMatrixGivesReadZero) {
    SmallMatrix matrix(4);
    EXPECT_EQ(GetMax(matrix.rows, 4), 0);
    EXPECT_EQ(GetMax(matrix.rows, 0), 0);
}

TEST(GetMaxRule, LinksCountInBothDirections) {
    SmallMatrix matrix(4);
    matrix[0][1] = 40;
    matrix[0][3] = 40;  // read 0: 2 links
    matrix[2][1] = 40;
    matrix[1][3] = 1;  // read 1: 3 links, two of them to its left
    EXPECT_EQ(GetMax(matrix.rows, 4), 1);
}

TEST(GetMaxRule, FirstOfEqualsWins) {
    SmallMatrix matrix(4);
    matrix[1][2] = matrix[2][3] = matrix[3][1] = 50;
    EXPECT_EQ(GetMax(matrix.rows, 4), 1);
}

TEST(GetMaxRule, PairLinkedBothWaysAndOwnCellCountOnce) {
    SmallMatrix matrix(4);
    matrix[0][0] = 60;
    matrix[0][1] = matrix[1][0] = 60;  // one link for 0 and 1
    matrix[2][1] = 30;                 // reads 1 (two links) and 2 (one)
    EXPECT_EQ(GetMax(matrix.rows, 4), 1);
}

// ---- type 0 --------------------------------------------------------------------------------------------------------

TEST_F(SolveMiddle, WalksBothWaysFromTheBestLinkedRead) {
    // Links by place: 0 with 1, 2, 3; read 1 with all others, like read 2 and read 3; so the seed is read 1.
    BlockOfReads block;
    for (int i = 0; i < 5; ++i) block.Cut(30 * i, 30 * i + 100);
    block.Link(10);
    EXPECT_EQ(SolveBlock(block, 0), Genome(0, 220));
    EXPECT_EQ(log.substr(0, log.find("start forward")),
              "Treat the middle block of the large gap\n"
              "Start from id: 1\n");
    EXPECT_TRUE(LoggedInOrder(
        {"Forward from 1 vector get finished! 4\n", "start max reward assembly...\n",
         "Reward from 1 vector get finished!2\n", "Get the sequence of order, order size 5\nshow order list: \n0\n",
         "Raw seq: " + Genome(0, 220) + "\t220\n", "get the position for each read of middle block\n",
         BlockLine(">middle ", 5, Genome(0, 220))}));
    EXPECT_TRUE(LogEndsWith(BlockLine(">middle ", 5, Genome(0, 220))));
    EXPECT_EQ(type, 0);
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SolveMiddle, PathOfOneReadGivesNothing) {
    BlockOfReads block;
    block.Cut(0, 100);
    block.Cut(200, 300);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 0), "");
    EXPECT_TRUE(LogEndsWith("Reward from 0 vector get finished!1\n")) << log;
    EXPECT_EQ(Snp(), "");
}

TEST_F(SolveMiddle, PathThatEndsInReadZeroMayBeAGapOfZero) {
    BlockOfReads block;
    block.Cut(60, 160);
    block.Cut(0, 100);
    block.Cut(30, 130);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 0), "");
    EXPECT_TRUE(LoggedInOrder({"Get the sequence of order, order size 3\nshow order list: \n1\n"}));
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
    EXPECT_EQ(Snp(), "") << "no vote";
}

TEST_F(SolveMiddle, PathThatBeginsInTheLastReadMayBeAGapOfZero) {
    BlockOfReads block;
    block.Cut(30, 130);
    block.Cut(60, 160);
    block.Cut(0, 100);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 0), "");
    EXPECT_TRUE(LoggedInOrder({"show order list: \n2\n"}));
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
}

// ---- type 1 --------------------------------------------------------------------------------------------------------

TEST_F(SolveBefore, WalkFromTheEdgeGivesWhatLiesBehindIt) {
    BlockOfReads block(100);
    for (int i = 0; i < 4; ++i) block.Cut(10 * i, 10 * i + 100);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 1), Genome(100, 130));
    EXPECT_EQ(log.find("Treat the before block of the large gap\nstart forward assembly...\n"), 0U);
    EXPECT_TRUE(LoggedInOrder({"Forward from 0 vector get finished! 4\n", "Get the sequence of order, order size 4\n",
                               "get the before position for each read\n",
                               // Only a walk that may have run out of reads looks for one that lengthens it.
                               "lastid : 3\t130\n", BlockLine(">starts number: ", 4, Genome(100, 130))}));
    EXPECT_TRUE(LogEndsWith(BlockLine(">starts number: ", 4, Genome(100, 130))));
    EXPECT_FALSE(Logged("Start from id: "));
}

/// Read 0 sees a stranger and the read behind it, which contradict each other, so that no walk leaves it. The walk back
/// from the best-linked read 2 meets no such choice.
BlockOfReads StuckAtTheBeforeEdge() {
    BlockOfReads block(100);
    block.Cut(0, 100);
    block.Stranger(100, -60);
    block.Cut(50, 150);
    block.Cut(75, 175);
    block.Cut(95, 195);
    block.Link();
    block.Set(0, 1, 60);
    return block;
}

TEST_F(SolveBefore, JoinedPathMayReachTheEdgeFromInside) {
    BlockOfReads block = StuckAtTheBeforeEdge();
    EXPECT_EQ(SolveBlock(block, 1), Genome(100, 195));
    EXPECT_TRUE(LoggedInOrder({"Forward from 0 vector get finished! 1\nStart from id: 2\n",
                               "Forward from 2 vector get finished! 3\n", "Reward from 2 vector get finished!2\n",
                               "Get the sequence of order, order size 4\nshow order list: \n0\n",
                               "get the before position for each read\n", "lastid : 4\t195\n"}));
    // The line tells of the walk from the edge, which is empty by now.
    EXPECT_TRUE(LogEndsWith(">middle with starts: 0\t0\n\n")) << log;
}

/// An edge of these bases without a cell, and reads of which read 1 is linked best.
BlockOfReads LooseBeforeEdge(int edge_from, int edge_to) {
    BlockOfReads block(100);
    block.Cut(edge_from, edge_to);
    block.Cut(80, 180);
    block.Cut(110, 210);
    block.Cut(140, 240);
    block.Link();
    block.KeepOnlyRight(0, {});
    return block;
}

TEST_F(SolveBefore, LoosePathIsCutWhereItOverlapsTheEdge) {
    BlockOfReads block = LooseBeforeEdge(0, 100);
    EXPECT_EQ(SolveBlock(block, 1), Genome(100, 240));
    EXPECT_TRUE(LoggedInOrder({"Forward from 0 vector get finished! 1\nStart from id: 1\n",
                               "Get the sequence of order, order size 3\nshow order list: \n1\n",
                               "get the position for each read of middle block\n"}));
    // The block line shows the path ahead of the cut, and the match goes without a word.
    EXPECT_TRUE(LogEndsWith(BlockLine(">middle ", 3, Genome(80, 240)))) << log;
}

TEST_F(SolveBefore, LoosePathWithoutAnOverlapIsMarked) {
    BlockOfReads block = LooseBeforeEdge(500, 600);
    EXPECT_EQ(SolveBlock(block, 1), "N" + Genome(80, 240));
}

TEST_F(SolveBefore, OverlapOfTheWholeEdgeIsNoOverlap) {
    BlockOfReads block = LooseBeforeEdge(80, 120);  // 40 bases, all in the path
    EXPECT_EQ(SolveBlock(block, 1), "N" + Genome(80, 240));
    BlockOfReads longer = LooseBeforeEdge(79, 120);
    EXPECT_EQ(SolveBlock(longer, 1), Genome(120, 240));
}

TEST_F(SolveBefore, OverlapOfTheWholePathIsNoOverlap) {
    BlockOfReads block = LooseBeforeEdge(0, 240);
    EXPECT_EQ(SolveBlock(block, 1), "N" + Genome(80, 240));
    BlockOfReads shorter = LooseBeforeEdge(0, 239);
    EXPECT_EQ(SolveBlock(shorter, 1), Genome(239, 240));
}

/// Two short reads that make a path of Genome(200, 200 + length); the edge ends in the same 8 bases.
BlockOfReads ShortLoosePath(int edge_from, int edge_to, int length) {
    BlockOfReads block(100);
    block.Cut(edge_from, edge_to);
    block.Cut(200, 205);
    block.Cut(203, 200 + length);
    block.Set(1, 2, 2);
    return block;
}

TEST_F(SolveBefore, PathOfMinAlignBasesIsNotTried) {
    BlockOfReads block = ShortLoosePath(150, 208, 8);
    EXPECT_EQ(SolveBlock(block, 1), "N" + Genome(200, 208));
    BlockOfReads longer = ShortLoosePath(150, 208, 9);
    EXPECT_EQ(SolveBlock(longer, 1), Genome(208, 209));
}

TEST_F(SolveBefore, PathOfOneReadGivesNothing) {
    BlockOfReads block(100);
    block.Cut(0, 100);
    block.Cut(300, 400);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 1), "");
    EXPECT_TRUE(LogEndsWith("Reward from 0 vector get finished!1\n")) << log;
    EXPECT_FALSE(Logged("Get the sequence of order"));
}

TEST_F(SolveBefore, PathIntoTheEdgeFromTheLeftMayBeAGapOfZero) {
    BlockOfReads block(100);
    block.Cut(60, 160);
    block.Cut(0, 100);
    block.Cut(30, 130);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 1), "");
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
    EXPECT_EQ(Snp(), "");
}

TEST_F(SolveBefore, PathFromTheLastReadMayBeAGapOfZero) {
    BlockOfReads block(100);
    block.Stranger(100, -100);
    block.Cut(30, 130);
    block.Cut(60, 160);
    block.Cut(0, 100);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 1), "");
    EXPECT_TRUE(LoggedInOrder({"show order list: \n3\n"}));
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
}

// ---- type 2 --------------------------------------------------------------------------------------------------------

TEST_F(SolveAfter, WalkFromTheEdgeGivesWhatLiesInFrontOfIt) {
    BlockOfReads block;
    for (int i = 0; i < 4; ++i) block.Cut(10 * i, 10 * i + 100);
    block.Link();
    // One read alone covers the first ten columns, which this vote doesn't believe.
    EXPECT_EQ(SolveBlock(block, 2), Genome(10, 30));
    EXPECT_EQ(log.find("Treat the after block of the large gap\nstart max reward assembly...\n"), 0U);
    EXPECT_TRUE(LoggedInOrder({"Reward from 3 vector get finished!4\n",
                               "Get the sequence of order, order size 4\nshow order list: \n0\n",
                               // As at the before edge, reads are taken to have run out.
                               "no read: 1\t-1\nget the after position for each read\n"}));
    EXPECT_TRUE(LogEndsWith(BlockLine(">end number: ", 4, Genome(10, 30)))) << log;
    EXPECT_FALSE(Logged("Start from id: "));
}

/// The mirror of the block that is stuck at the before edge; read 2 is linked best.
BlockOfReads StuckAtTheAfterEdge() {
    BlockOfReads block;
    block.Cut(5, 105);
    block.Cut(25, 125);
    block.Cut(50, 150);
    block.Stranger(100, 40);
    block.Cut(100, 200);
    block.Link();
    block.Set(3, 4, 60);
    return block;
}

TEST_F(SolveAfter, JoinedPathMayReachTheEdgeFromInside) {
    BlockOfReads block = StuckAtTheAfterEdge();
    // Columns 0 to 19 of the path, Genome(5, 25), have one read.
    EXPECT_EQ(SolveBlock(block, 2), Genome(25, 100));
    EXPECT_TRUE(LoggedInOrder({"Reward from 4 vector get finished!1\nStart from id: 2\n",
                               "Forward from 2 vector get finished! 2\n", "Reward from 2 vector get finished!3\n",
                               "Get the sequence of order, order size 4\nshow order list: \n0\n", "no read: 1\t-1\n"}));
    // Unlike the mirror, this line tells of the joined path.
    EXPECT_TRUE(LogEndsWith(BlockLine(">middle with end: ", 4, Genome(25, 100)))) << log;
}

BlockOfReads LooseAfterEdge(int edge_from, int edge_to) {
    BlockOfReads block;
    block.Cut(0, 100);
    block.Cut(30, 130);
    block.Cut(60, 160);
    block.Cut(edge_from, edge_to);
    block.Link();
    block.KeepOnlyLeft(3, {});
    return block;
}

TEST_F(SolveAfter, LoosePathIsCutWhereItOverlapsTheEdge) {
    BlockOfReads block = LooseAfterEdge(140, 240);
    EXPECT_EQ(SolveBlock(block, 2), Genome(0, 140));
    EXPECT_TRUE(LoggedInOrder({"Reward from 3 vector get finished!1\nStart from id: 0\n"}));
    // 20 bases, of which 8 are the shortest that is tried.
    EXPECT_TRUE(LogEndsWith(BlockLine(">middle ", 3, Genome(0, 160)) + "Middle overlapped with after edge: 12\n"))
        << log;
}

TEST_F(SolveAfter, LoosePathWithoutAnOverlapIsMarked) {
    BlockOfReads block = LooseAfterEdge(500, 600);
    EXPECT_EQ(SolveBlock(block, 2), Genome(0, 160) + "N");
    EXPECT_TRUE(LoggedInOrder({"Middle overlapped with after edge: -"}));
}

TEST_F(SolveAfter, OverlapOfTheWholeEdgeIsNoOverlap) {
    BlockOfReads block = LooseAfterEdge(120, 160);
    EXPECT_EQ(SolveBlock(block, 2), Genome(0, 160) + "N");
    EXPECT_TRUE(LogEndsWith("Middle overlapped with after edge: 32\n")) << log;
    BlockOfReads longer = LooseAfterEdge(120, 161);
    EXPECT_EQ(SolveBlock(longer, 2), Genome(0, 120));
}

TEST_F(SolveAfter, OverlapOfTheWholePathIsNoOverlap) {
    BlockOfReads block = LooseAfterEdge(0, 240);
    EXPECT_EQ(SolveBlock(block, 2), Genome(0, 160) + "N");
    EXPECT_TRUE(LogEndsWith("Middle overlapped with after edge: 152\n")) << log;
    BlockOfReads shorter = LooseAfterEdge(1, 240);
    EXPECT_EQ(SolveBlock(shorter, 2), Genome(0, 1));
}

TEST_F(SolveAfter, PathOfMinAlignBasesIsNotTried) {
    const auto short_path = [](int length) {
        BlockOfReads block;
        block.Cut(200, 205);
        block.Cut(203, 200 + length);
        block.Cut(200 + length - 8, 260);
        block.Set(0, 1, 2);
        return block;
    };
    BlockOfReads block = short_path(8);
    EXPECT_EQ(SolveBlock(block, 2), Genome(200, 208) + "N");
    EXPECT_FALSE(Logged("Middle overlapped with after edge: "));
    BlockOfReads longer = short_path(9);
    EXPECT_EQ(SolveBlock(longer, 2), Genome(200, 201));
    EXPECT_TRUE(LogEndsWith("Middle overlapped with after edge: 0\n"));
}

TEST_F(SolveAfter, PathOfOneReadGivesNothing) {
    BlockOfReads block;
    block.Cut(0, 100);
    block.Cut(300, 400);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 2), "");
    EXPECT_FALSE(Logged("Get the sequence of order"));
}

TEST_F(SolveAfter, PathThatTurnsRoundTheEdgeMayBeAGapOfZero) {
    BlockOfReads into_first;
    into_first.Cut(60, 160);
    into_first.Cut(0, 100);
    into_first.Cut(30, 130);
    into_first.Stranger(100, 300);
    into_first.Link();
    EXPECT_EQ(SolveBlock(into_first, 2), "");
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
    BlockOfReads from_last;
    from_last.Cut(30, 130);
    from_last.Cut(60, 160);
    from_last.Cut(0, 100);
    from_last.Link();
    EXPECT_EQ(SolveBlock(from_last, 2), "");
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
}

// ---- the choice by type --------------------------------------------------------------------------------------------

TEST_F(SolveBlockMatrix, TypeThreeGoesToTheSolverForBothEdges) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.CutAt(160, 360, 5);
    block.Link();
    EXPECT_EQ(SolveBlock(block, 3), "");
    EXPECT_EQ(log.find("starting to solve the gap and its matrix\n"), 0U);
    EXPECT_EQ(realgaplen, -40);
}

TEST_F(SolveBlockMatrix, AnyOtherTypeGivesNothing) {
    for (const int other : {-1, 4}) {
        BlockOfReads block;
        for (int i = 0; i < 4; ++i) block.Cut(10 * i, 10 * i + 100);
        block.Link();
        EXPECT_EQ(SolveBlock(block, other), "");
        EXPECT_EQ(log, "");
        EXPECT_EQ(type, other);
    }
}

// ---- assemble_block ------------------------------------------------------------------------------------------------

std::vector<Read> Cuts(std::initializer_list<std::pair<int, int>> places) {
    std::vector<Read> reads;
    for (const auto& [from, to] : places) reads.emplace_back(Genome(from, to), from);
    return reads;
}

TEST_F(AssembleBlock, BuildsTheMatrixAndSolvesIt) {
    std::vector<Read> reads = Cuts({{0, 100}, {30, 130}, {60, 160}, {90, 190}});
    EXPECT_EQ(Assemble(reads, 0), Genome(0, 190));
    // Reads 1 and 2 have three links each; reads 0 and 3 share 10 bases, which is no overlap.
    EXPECT_EQ(log.find("the read number is: 4\n"
                       "caculate the overlap values\n"
                       "caculate finish!\n"
                       "Treat the middle block of the large gap\n"
                       "Start from id: 1\n"),
              0U)
        << log;
}

TEST_F(AssembleBlock, AsksForAsManySlotsAsTheBlockCanHoldKmers) {
    std::vector<Read> reads = Cuts({{0, 100}, {300, 400}, {600, 700}});
    Assemble(reads, 0);
    EXPECT_EQ(initSizes[0], 3U * (100 - 31 + 1));
}

TEST_F(AssembleBlock, ReadInsideTheBeforeEdgeHasNoCell) {
    std::vector<Read> reads = Cuts({{0, 200}, {50, 150}, {120, 220}, {150, 250}});
    EXPECT_EQ(Assemble(reads, 1), Genome(200, 250));
    EXPECT_TRUE(LoggedInOrder({"show order list: \n0\n2\tlength: 100\tafter: 0\toverlap: 80\n"}));
}

TEST_F(AssembleBlock, ReadPastTheBeforeEdgeIsCutToIt) {
    // 81 bases, of which 20 stand left of the edge.
    std::vector<Read> reads = Cuts({{100, 160}, {80, 161}});
    EXPECT_EQ(Assemble(reads, 1), Genome(160, 161));
    EXPECT_EQ(reads[1].seq, Genome(100, 161));
    EXPECT_EQ(reads[1].pos, 80) << "positions are left alone";
    EXPECT_TRUE(LoggedInOrder({"1\tlength: 61\tafter: 0\toverlap: 60\n"}));
}

TEST_F(AssembleBlock, ReadCutToTheLengthOfTheBeforeEdgeLosesItsCell) {
    std::vector<Read> reads = Cuts({{100, 160}, {80, 160}});
    EXPECT_EQ(Assemble(reads, 1), "");
    EXPECT_EQ(reads[1].seq, Genome(100, 160));
    EXPECT_TRUE(LoggedInOrder({"start forward assembly...\nBefore clean: 0\n"}));
}

TEST_F(AssembleBlock, ReadPastTheAfterEdgeIsCutToIt) {
    // Read 0 of an after block isn't compared with the edge; here it stands far away.
    std::vector<Read> reads = Cuts({{500, 600}, {99, 180}, {100, 160}});
    EXPECT_EQ(Assemble(reads, 2), Genome(99, 100));
    EXPECT_EQ(reads[1].seq, Genome(99, 160));
    // A first read that passes beyond the edge is all that its path needs.
    EXPECT_TRUE(LoggedInOrder({"Before clean: 1\n", "show order list: \n1\n2 order element used"}));
}

TEST_F(AssembleBlock, ReadCutToTheLengthOfTheAfterEdgeLosesItsCell) {
    std::vector<Read> reads = Cuts({{500, 600}, {100, 180}, {100, 160}});
    EXPECT_EQ(Assemble(reads, 2), "");
    EXPECT_EQ(reads[1].seq, Genome(100, 160));
    EXPECT_TRUE(LoggedInOrder({"start max reward assembly...\nBefore clean: 0\n"}));
}

TEST_F(AssembleBlock, OverlapBelowMinOverlapIsNoLinkToAnEdge) {
    std::vector<Read> reads = Cuts({{0, 100}, {71, 171}});
    EXPECT_EQ(Assemble(reads, 1), "");
    EXPECT_TRUE(LoggedInOrder({"start forward assembly...\nBefore clean: 0\n"}));
    reads = Cuts({{0, 100}, {70, 170}});
    EXPECT_EQ(Assemble(reads, 1), Genome(100, 170));

    reads = Cuts({{500, 600}, {0, 100}, {71, 171}});
    EXPECT_EQ(Assemble(reads, 2), "");
    EXPECT_TRUE(LoggedInOrder({"start max reward assembly...\nBefore clean: 0\n"}));
    reads = Cuts({{500, 600}, {0, 100}, {70, 170}});
    EXPECT_EQ(Assemble(reads, 2), Genome(0, 70));
}

TEST_F(AssembleBlock, FirstReadOfAnAfterBlockKeepsTheMarkOfItsSharedKmer) {
    // The edge's column begins at read 1, and the matrix leaves it out, so that the 1 of the shared k-mers stays.
    std::vector<Read> reads = Cuts({{0, 100}, {60, 160}});
    Assemble(reads, 2);
    EXPECT_TRUE(LoggedInOrder({"start max reward assembly...\nBefore clean: 1\n", "show order list: \n0\n",
                               "1\tlength: 100\tafter: 0\toverlap: 1\n"}));
}

TEST_F(AssembleBlock, CellsOfLongEdgesAreTestedAsStored) {
    // 300 is 44 in 8 bits, 280 is 24. The read covers the edge and goes on for 60 bases.
    std::vector<Read> reads = Cuts({{100, 400}, {90, 460}});
    Assemble(reads, 1);
    EXPECT_TRUE(
        LoggedInOrder({"start forward assembly...\nBefore clean: 1\n", "1\tlength: 360\tafter: 0\toverlap: 44\n"}));
    reads = Cuts({{100, 380}, {90, 440}});
    EXPECT_EQ(Assemble(reads, 1), "");
    EXPECT_TRUE(LoggedInOrder({"start forward assembly...\nBefore clean: 0\n"}));
    reads = Cuts({{600, 700}, {40, 410}, {100, 400}});
    Assemble(reads, 2);
    EXPECT_TRUE(LoggedInOrder({"start max reward assembly...\nBefore clean: 1\n"}));
    reads = Cuts({{600, 700}, {40, 390}, {100, 380}});
    EXPECT_EQ(Assemble(reads, 2), "");
    EXPECT_TRUE(LoggedInOrder({"start max reward assembly...\nBefore clean: 0\n"}));
}

TEST_F(AssembleBlock, ReadThatCoversBothEdgesIsCutTwice) {
    // Edges of 60 and 40 bases with a gap of 50 between them.
    std::vector<Read> reads = Cuts({{100, 160}, {80, 280}, {210, 250}});
    reads[2].pos = 50;
    Assemble(reads, 3);
    EXPECT_EQ(reads[1].seq, Genome(100, 250));
}

TEST_F(AssembleBlock, CellWithTheBeforeEdgeIsTestedAgainstTheFinalLength) {
    // The after edge ends inside the before edge, so that what is left of the read may be less than the overlap.
    std::vector<Read> reads = Cuts({{100, 160}, {80, 170}, {110, 159}});
    Assemble(reads, 3);
    EXPECT_EQ(reads[1].seq, Genome(100, 159));
    EXPECT_TRUE(Logged("Before ERgap!\n")) << log;
    reads = Cuts({{100, 160}, {80, 170}, {110, 160}});
    Assemble(reads, 3);
    EXPECT_EQ(reads[1].seq, Genome(100, 160));
    // The read has the length of the before edge as well, but only its cut at that edge would take the cell for it.
    EXPECT_FALSE(Logged("Before ERgap!\n")) << log;
}

TEST_F(AssembleBlock, BlockOfTheEdgeAloneGivesNothing) {
    for (const int one_edge : {1, 2}) {
        std::vector<Read> reads = Cuts({{0, 100}});
        EXPECT_EQ(Assemble(reads, one_edge), "");
        EXPECT_EQ(log.find("the read number is: 1\ncaculate the overlap values\ncaculate finish!\n"), 0U);
        EXPECT_EQ(reads[0].seq, Genome(0, 100));
    }
}

TEST_F(AssembleBlock, EdgesWithoutReadsAreAnErrorOfTypeThree) {
    std::vector<Read> reads = Cuts({{0, 200}, {700, 900}});
    reads[1].pos = 500;
    EXPECT_EQ(Assemble(reads, 3), std::string(500, 'N'));
    EXPECT_EQ(type, -1);
    EXPECT_EQ(realgaplen, 1);
}

}  // namespace
}  // namespace lintara
