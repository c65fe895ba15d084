#include "solve/matrix_solver.h"

#include "block_of_reads.h"

namespace lintara {
namespace {

using testing::BlockOfReads;
using testing::Genome;
using testing::RandomBases;

// In all blocks the before edge is 200 bases up to place 200 of the genome, unless a test says otherwise. Position 0 of
// the gap's axis stands there. Tiles of a read each 10 bases give walks without a choice to argue about.

const std::string kStart = "starting to solve the gap and its matrix\n";
const std::string kShortSteps = "Starting to treat the matrix use max overlap mathod\n";
const std::string kJoin = "Try to connect forward path and reward path in the matrix\n";

class SolveMatrixForward : public testing::SolverTest {};
class SolveMatrixReward : public testing::SolverTest {};
class SolveMatrixHalves : public testing::SolverTest {};
class SolveMatrixRetry : public testing::SolverTest {};
class SolveMatrixFinish : public testing::SolverTest {};

// ---- the forward walk reaches the after edge -----------------------------------------------------------------------

TEST_F(SolveMatrixForward, PathAcrossTheGapIsItsText) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 390);
    block.Cut(400, 600);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), Genome(200, 400));
    EXPECT_EQ(log.find(kStart + "start forward assembly...\n"), 0U);
    EXPECT_TRUE(LogEndsWith("get the position for each read\nGet snp finished!\n")) << log;
    EXPECT_FALSE(Logged(">starts number: "));
    EXPECT_FALSE(Logged("start reward assembly..."));
    EXPECT_EQ(type, 3);
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SolveMatrixForward, EdgesThatOverlapGiveNothing) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.CutAt(160, 360, 5);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), "");
    EXPECT_EQ(realgaplen, -40);
    EXPECT_TRUE(LogEndsWith("before edge and afer edge have overlap, the gap size is minus -40\n")) << log;
    EXPECT_EQ(type, 3);
    EXPECT_EQ(Snp(), "");
}

TEST_F(SolveMatrixForward, PathOverOverlappingEdgesGivesTheOverlapAsN) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(140, 240);
    block.CutAt(190, 390, 5);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
    EXPECT_EQ(Snp(), "") << "no vote";
}

/// A gap of 40 bases that is said to be longer.
BlockOfReads FortyBases(int gap_length) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(160, 280);
    block.Cut(161, 281);
    block.CutAt(240, 440, gap_length);
    block.Link();
    return block;
}

TEST_F(SolveMatrixForward, PathOfAThirdOfTheGapIsTaken) {
    BlockOfReads block = FortyBases(122);  // a third is 40 in whole bases
    EXPECT_EQ(SolveMatrix(block), Genome(200, 240));
    EXPECT_FALSE(Logged(kShortSteps));
    EXPECT_TRUE(LogEndsWith("Get snp finished!\n"));
}

TEST_F(SolveMatrixForward, PathBelowAThirdOfTheGapGoesToTheShortSteps) {
    BlockOfReads block = FortyBases(123);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 240)) << "the short steps take it as it is";
    EXPECT_TRUE(LoggedInOrder({kStart, "Get snp finished!\n" + kShortSteps}));
    EXPECT_FALSE(Logged("start reward assembly..."));
}

/// A gap of 150 bases between edges of the lengths given.
BlockOfReads BetweenEdges(int before_length, int after_length, int gap_length) {
    BlockOfReads block(200);
    block.Cut(200 - before_length, 200);
    block.Tile(110, 340);
    block.CutAt(350, 350 + after_length, gap_length);
    block.Link();
    return block;
}

TEST_F(SolveMatrixForward, TextLongerThanAnEdgeIsLookedThroughForTheEdges) {
    const std::string cut = "Begin long cut!\tinitial size: 150\nafter cut size: 150\n";
    for (const auto& [before_length, after_length] : {std::pair{149, 200}, std::pair{200, 149}}) {
        BlockOfReads block = BetweenEdges(before_length, after_length, 150);
        EXPECT_EQ(SolveMatrix(block), Genome(200, 350));
        EXPECT_TRUE(LogEndsWith(cut)) << log;
    }
    BlockOfReads block = BetweenEdges(150, 150, 150);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 350));
    EXPECT_FALSE(Logged("Begin long cut!"));
}

TEST_F(SolveMatrixForward, GapOfAReadIsNotLookedThrough) {
    BlockOfReads block = BetweenEdges(149, 149, 100);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 350));
    EXPECT_FALSE(Logged("Begin long cut!"));
    BlockOfReads longer = BetweenEdges(149, 149, 101);
    EXPECT_EQ(SolveMatrix(longer), Genome(200, 350));
    EXPECT_TRUE(Logged("Begin long cut!"));
}

// ---- the reward walk reaches the before edge -----------------------------------------------------------------------

/// The edge has three candidates that contradict each other, two of which the walk cannot choose between: no step is
/// taken from it. Read 1 is the one that leads on, and the one that the walk back from the after edge reaches.
void SetStuckAtTheEdge(BlockOfReads& block, int first_stranger) {
    block.KeepOnlyRight(0, {1});
    block.Set(0, first_stranger, 55);
    block.Set(0, first_stranger + 1, 50);
}
int AddStrangersAtTheEdge(BlockOfReads& block) {
    const int first = block.Stranger(Genome(145, 200) + RandomBases(45, 1), -55);
    block.Stranger(Genome(150, 200) + RandomBases(50, 2), -50);
    return first;
}

/// A gap of 40 bases that is said to be longer; the reads behind it shift half the way.
BlockOfReads StuckAtTheEdge(int gap_length) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(140, 240);
    const int strangers = AddStrangersAtTheEdge(block);
    block.Cut(141, 241);
    for (int i = 175; i < 178; ++i) block.CutAt(i, i + 100, i - 200 + (gap_length - 40) / 2);
    block.CutAt(240, 440, gap_length);
    block.Link();
    SetStuckAtTheEdge(block, strangers);
    return block;
}

TEST_F(SolveMatrixReward, PathAcrossTheGapIsItsText) {
    BlockOfReads block = StuckAtTheEdge(122);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 240));
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", "start reward assembly...\t", "show order list: \n0\n1\t"}));
    EXPECT_TRUE(LogEndsWith("get the position for each read\nGet snp finished!\n")) << log;
    EXPECT_FALSE(Logged(">end number: "));
    EXPECT_EQ(type, 3) << "there were reads at both edges";
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SolveMatrixReward, PathBelowAThirdOfTheGapGoesToTheShortSteps) {
    BlockOfReads block = StuckAtTheEdge(123);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", "Get snp finished!\n" + kShortSteps}));
    EXPECT_FALSE(Logged(">end number: 4"));
}

TEST_F(SolveMatrixReward, PathOverOverlappingEdgesGivesTheOverlapAsN) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(140, 240);
    const int strangers = AddStrangersAtTheEdge(block);
    block.Cut(141, 241);
    block.Cut(142, 242);
    block.CutAt(190, 390, 5);
    block.Link();
    SetStuckAtTheEdge(block, strangers);
    EXPECT_EQ(SolveMatrix(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
}

/// The forward walk gets as far as read 1, where it cannot choose; a read behind that lengthens its half to place 290.
/// The walk back passes by read 2 and reaches the edge: Genome(200, 300).
BlockOfReads StuckInTheGap(int right_reads, int gap_length) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(150, 250);
    block.Cut(145, 245);
    block.Cut(190, 290);
    const int first = block.Stranger(Genome(205, 250) + RandomBases(55, 1), 5);
    const int second = block.Stranger(Genome(208, 250) + RandomBases(58, 2), 8);
    const int shift = (gap_length - 100) / 2;
    for (int i = 231; i < 231 + right_reads; ++i) block.CutAt(i, i + 100, i - 200 + shift);
    block.CutAt(300, 500, gap_length);
    block.Link();
    block.KeepOnlyRight(0, {1, 2});
    block.Set(1, first, 45);
    block.Set(1, second, 42);
    return block;
}

TEST_F(SolveMatrixReward, PathBelowAThirdStaysWithTheSupportOfTheForwardHalf) {
    ReadLen = 300;  // so that the positions may lie so far off
    BlockOfReads block = StuckInTheGap(3, 330);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 300));
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t90\t330\n" + Genome(200, 290) + "\n", "start reward assembly...\t",
                               "Get snp finished!\n"}));
    EXPECT_TRUE(LogEndsWith("before and after edge have no overlap.\nbefore support!\n")) << log;
}

// ---- both walks end inside the gap ---------------------------------------------------------------------------------

TEST_F(SolveMatrixHalves, HalvesWithAHoleBetweenThemAreJoinedByN) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 200);
    block.Tile(600, 770);
    block.Cut(800, 1000);
    block.Link();
    // Ten columns on the left of the reward half have one read alone.
    EXPECT_EQ(SolveMatrix(block), Genome(200, 300) + std::string(310, 'N') + Genome(610, 800));
    EXPECT_TRUE(LoggedInOrder({">starts number: 3\t100\t600\n" + Genome(200, 300) + "\n", "start reward assembly...\t",
                               "no read: 1\t-1\n", "after expand end, overlapped with before: -",
                               BlockLine(">end number: ", 5, Genome(610, 800)) + kJoin}));
    EXPECT_FALSE(Logged("start continued reward assembly"));
    EXPECT_FALSE(Logged("reword reassemble: "));
    EXPECT_EQ(type, 3);
}

TEST_F(SolveMatrixHalves, ResumedWalkWithoutGainLeavesTheHalf) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 200);
    block.Tile(280, 370);
    block.Cut(400, 600);
    block.Link();
    // The reward half begins at 290; it shares 10 bases with the forward half, too few for a link.
    EXPECT_EQ(SolveMatrix(block), Genome(200, 400));
    EXPECT_TRUE(LoggedInOrder({">starts number: 3\t100\t200\n", "after expand end, overlapped with before: 10\n",
                               "start continued reward assembly...\t22\n",
                               BlockLine(">end number: ", 0, Genome(290, 400)) + kJoin}));
    EXPECT_EQ(Times(">end number: "), 1);
}

/// A block in which the reward walk stops at the first read of its tile, number `right`, for two pairs of candidates
/// that contradict each other. One pair runs through what the forward walk has built.
struct TwoBranches {
    TwoBranches() : block(200) {
        block.Cut(0, 200);
        block.Tile(110, 400);
        known1 = block.Cut(432, 532);
        known2 = block.Cut(433, 533);
    }
    /// @param branch  bases of the other pair, which begin at the first base of its first read
    void AddBranch(const std::string& branch, int pos) {
        new1 = block.Stranger(branch.substr(0, 100), pos);
        new2 = block.Stranger(branch.substr(1, 100), pos + 1);
    }
    void Finish(int branch_overlap) {
        right = block.Num();
        block.Tile(480, 670);
        block.Cut(700, 900);
        block.Link();
        // The forward walk doesn't see the known pair.
        for (int a = 0; a < known1; ++a) {
            block.Set(a, known1, 0);
            block.Set(a, known2, 0);
        }
        for (int b = right + 1; b < block.Num(); ++b) {
            block.Set(known1, b, 0);
            block.Set(known2, b, 0);
        }
        block.Set(new1, new2, 99);
        block.Set(new1, right, branch_overlap);
        block.Set(new2, right, branch_overlap + 1);
    }

    BlockOfReads block;
    int known1 = 0;
    int known2 = 0;
    int new1 = 0;
    int new2 = 0;
    int right = 0;
};

TEST_F(SolveMatrixHalves, ResumedWalkTakesTheBranchThatIsNotYetBuilt) {
    TwoBranches two;
    const std::string branch = RandomBases(50, 9);
    two.AddBranch(branch + Genome(480, 531), 230);
    two.Finish(50);
    SolveMatrix(two.block);
    // First the half begins at 490, where a second read covers it; then it is longer by the branch, but for the
    // column that its first read covers alone.
    EXPECT_TRUE(
        LoggedInOrder({">starts number: 6\t300\t500\n" + Genome(200, 500) + "\n",
                       "after expand end, overlapped with before: 10\n", "start continued reward assembly...\t56\n",
                       BlockLine(">end number: ", 6, branch.substr(1) + Genome(480, 700)) + kJoin}));
    EXPECT_EQ(Times("no read: 1"), 0) << "neither consensus of this half takes reads to have run out";
}

TEST_F(SolveMatrixHalves, ResumedWalkMayReachTheBeforeEdge) {
    // The branch is a gap without the bases from 200 to 480.
    TwoBranches two;
    const std::string branch = Genome(130, 200) + Genome(480, 600);
    const int link = two.block.Stranger(branch.substr(0, 100), 210);
    two.AddBranch(branch.substr(50), 260);
    two.Finish(80);
    two.block.Set(0, link, 70);
    two.block.Set(link, two.new1, 50);
    two.block.Set(link, two.new2, 49);
    EXPECT_EQ(SolveMatrix(two.block), Genome(480, 700));
    EXPECT_TRUE(
        LoggedInOrder({"after expand end, overlapped with before: 10\n", "start continued reward assembly...\t57\n",
                       "show order list: \n0\n" + std::to_string(link) + "\t", "get the position for each read\n",
                       "Get snp finished!\n"}));
    EXPECT_TRUE(LogEndsWith("before and after edge have no overlap.\nbefore not support!\n")) << log;
    EXPECT_FALSE(Logged(">end number: "));
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(SolveMatrixHalves, ResumedWalkMayFindOverlappingEdges) {
    // The before edge ends with bases 280 to 299 of the genome, the after edge begins at 295. The forward walk goes
    // astray over 40 bases of its own, which the known pair has as well.
    const std::string joined = Genome(0, 180) + Genome(280, 495);
    const std::string edge = joined.substr(0, 200);
    const std::string astray = RandomBases(40, 12);
    BlockOfReads block(200);
    block.Stranger(edge, -200);
    const std::string forward_read = edge.substr(140) + astray + Genome(280, 290);
    const int forward1 = block.Stranger(forward_read, -60);
    const int forward2 = block.Stranger(forward_read.substr(1), -59);
    const int known1 = block.Stranger(astray + Genome(280, 330), 245);
    const int known2 = block.Stranger(astray.substr(1) + Genome(280, 331), 246);
    const int link = block.Stranger(joined.substr(130, 100), 235);
    const int new1 = block.Stranger(joined.substr(160, 100), 265);
    const int new2 = block.Stranger(joined.substr(161, 100), 266);
    const int right = block.CutAt(280, 380, 285);
    block.CutAt(281, 381, 286);
    block.CutAt(282, 382, 287);
    block.CutAt(295, 495, 300);
    block.Link();
    block.Set(0, forward1, 60);
    block.Set(0, forward2, 59);
    block.Set(forward1, forward2, 109);
    block.Set(0, link, 70);
    block.Set(link, new1, 70);
    block.Set(link, new2, 69);
    block.Set(new1, new2, 99);
    block.Set(known1, known2, 89);
    block.Set(known1, right, 50);
    block.Set(known2, right, 51);
    block.Set(new1, right, 80);
    block.Set(new2, right, 81);
    EXPECT_EQ(SolveMatrix(block), std::string(5, 'N'));
    EXPECT_EQ(realgaplen, -5);
    EXPECT_TRUE(
        LoggedInOrder({">starts number: 2\t50\t300\n" + astray + Genome(280, 290) + "\n",
                       // Genome(281, 290)
                       "after expand end, overlapped with before: 9\n", "start continued reward assembly...\t12\n"}));
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -5\n")) << log;
}

TEST_F(SolveMatrixHalves, ShortBarredStretchTakesTheBeforeEdgeWithIt) {
    // The reward half begins like the before edge, and so do all four reads behind it end. Only with the edge in front
    // of the barred stretch are they barred.
    const auto block_with = [](int barred) {
        const std::string edge = Genome(0, 200);
        const std::string to_after = edge.substr(0, 50) + Genome(1000, 1210);
        const std::string forward_read = edge.substr(140) + RandomBases(barred - 1, 12) + edge.substr(0, 10);
        BlockOfReads block(200);
        block.Stranger(edge, -200);
        block.Stranger(forward_read, -60);
        block.Stranger(forward_read.substr(1), -59);
        for (const unsigned seed : {13U, 14U}) {
            const std::string branch = RandomBases(50, seed);
            block.Stranger(branch + to_after.substr(0, 50), 390);
            block.Stranger(branch.substr(1) + to_after.substr(0, 51), 391);
        }
        for (int i = 0; i < 3; ++i) block.Stranger(to_after.substr(static_cast<std::size_t>(i), 100), 440 + i);
        block.Stranger(to_after.substr(60), 500);
        block.Set(0, 1, 60);
        block.Set(0, 2, 59);
        block.Set(1, 2, 68 + barred);
        for (const int branch : {3, 5}) {
            block.Set(branch, branch + 1, 99);
            block.Set(branch, 7, 50);
            block.Set(branch + 1, 7, 51);
        }
        for (int i = 0; i < 3; ++i) {
            block.Set(7 + i, 10, 40 + i);
            for (int j = i + 1; j < 3; ++j) block.Set(7 + i, 7 + j, 100 - j + i);
        }
        return block;
    };
    BlockOfReads block = block_with(30);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t39\t500\n", "after expand end, overlapped with before: 9\n",
                               "start continued reward assembly...\t11\n", "After seq clean: 0\n"}));
    BlockOfReads longer = block_with(31);
    SolveMatrix(longer);
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t40\t500\n", "after expand end, overlapped with before: 9\n",
                               "start continued reward assembly...\t11\n", "After seq clean: 4\n"}));
}

TEST_F(SolveMatrixHalves, ForwardHalfAtTheStartOfTheRewardHalfIsCutFromIt) {
    // Twenty A, which overlap themselves in all lengths, so that no length stands out.
    const std::string poly(20, 'A');
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Stranger(Genome(140, 200) + poly, -60);
    block.Stranger(poly + Genome(500, 560), 20);
    block.CutAt(530, 730, 70);
    block.Link();
    block.Set(0, 1, 60);
    block.Set(2, 3, 30);
    EXPECT_EQ(SolveMatrix(block), poly + std::string(20, 'N') + Genome(500, 530));
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t20\t70\n" + poly + "\n",
                               // 8 bases, and minus the index of 20
                               "after expand end, overlapped with before: -4\n",
                               BlockLine(">end number: ", 2, Genome(500, 530)) + kJoin}));
    // The words of the walks, which both ran out of reads, are taken back.
    EXPECT_TRUE(Logged("before and after connected!\t0\t0\n"));
}

TEST_F(SolveMatrixHalves, HalfOfMinAlignBasesIsNotCompared) {
    const auto block_with = [](int bases) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Cut(100, 200 + bases);
        block.Tile(600, 770);
        block.Cut(800, 1000);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(8);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 208) + std::string(402, 'N') + Genome(610, 800));
    EXPECT_FALSE(Logged("after expand end, overlapped with before: "));
    BlockOfReads longer = block_with(9);
    EXPECT_EQ(SolveMatrix(longer), Genome(200, 209) + std::string(401, 'N') + Genome(610, 800));
    EXPECT_TRUE(Logged("after expand end, overlapped with before: "));
}

// ---- the reward walk takes no step ---------------------------------------------------------------------------------

TEST_F(SolveMatrixRetry, EdgeWithoutReadsIsAnError) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 200);
    block.Cut(800, 1000);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), Genome(200, 300) + std::string(500, 'N'));
    EXPECT_EQ(type, -1);
    EXPECT_TRUE(
        LoggedInOrder({">starts number: 3\t100\t600\n", "After ER!\n", ">end number: 1\t0\n\nreword reassemble: 0\n",
                       "start continued reward assembly...\t12\n", ">end number: 1\t0\n\n" + kJoin}));
    EXPECT_EQ(Times(">end number: 1\t0\n\n"), 2);
    EXPECT_FALSE(Logged("No reads reward\n"));
}

TEST_F(SolveMatrixRetry, SecondTryNeedsMoreThanMinAlignBases) {
    const auto block_with = [](int bases) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Cut(100, 200 + bases);
        block.Cut(270, 470);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(8);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({">end number: 1\t0\n\nreword reassemble: 0\nNo reads reward\n"}));
    EXPECT_FALSE(Logged("start continued reward assembly"));
    BlockOfReads longer = block_with(9);
    SolveMatrix(longer);
    EXPECT_TRUE(LoggedInOrder({">end number: 1\t0\n\nreword reassemble: 0\n", "start continued reward assembly...\t3\n",
                               ">end number: 1\t0\n\n"}));
    EXPECT_FALSE(Logged("No reads reward\n"));
}

TEST_F(SolveMatrixRetry, SecondTryMayGiveTheRewardHalf) {
    // The first walk refuses two candidates at the edge, the second doesn't.
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 200);
    block.Cut(600, 700);
    block.Cut(610, 710);
    block.Cut(660, 860);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), Genome(200, 300) + std::string(310, 'N') + Genome(610, 660));
    EXPECT_TRUE(
        LoggedInOrder({">end number: 1\t0\n\nreword reassemble: 0\n", "start continued reward assembly...\t14\n",
                       BlockLine(">end number: ", 2, Genome(610, 660)) + kJoin}));
    EXPECT_EQ(type, 3);
}

TEST_F(SolveMatrixRetry, SecondTryMayReachTheBeforeEdge) {
    BlockOfReads block = StuckInTheGap(2, 100);
    EXPECT_EQ(SolveMatrix(block), Genome(200, 300));
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t90\t100\n", ">end number: 1\t0\n\nreword reassemble: 0\n",
                               "start continued reward assembly...\t"}));
    // No weighing against the forward half here.
    EXPECT_TRUE(LogEndsWith("get the position for each read\nGet snp finished!\n")) << log;
    EXPECT_EQ(Times(">end number: "), 1);
}

TEST_F(SolveMatrixRetry, SecondTryMayFindOverlappingEdges) {
    // The forward walk goes astray.
    const std::string astray = RandomBases(60, 3);
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Stranger(Genome(150, 200) + astray.substr(0, 50), -50);
    block.Stranger(Genome(151, 200) + astray.substr(0, 51), -49);
    const int link = block.Cut(140, 240);
    block.Cut(141, 241);
    block.CutAt(190, 390, 5);
    block.Link();
    block.KeepOnlyRight(0, {link});
    block.Set(0, 1, 50);
    block.Set(0, 2, 49);
    block.Set(1, 2, 99);
    EXPECT_EQ(SolveMatrix(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t51\t5\n", "reword reassemble: 0\n"}));
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
}

TEST_F(SolveMatrixRetry, OverlapWithTheAfterEdgeIsNotBarred) {
    // The forward half shares its last 10 bases with the start of the after edge, and its last 15 with one of two
    // branches behind the first step of the second try. Only where the 10 bases are barred too does that branch go.
    const auto block_with = [](int bases) {
        const int end = 200 + bases;
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Tile(110, end - 101);
        block.Cut(end - 101, end - 1);
        block.Cut(end - 100, end);
        const std::string edge = Genome(end - 10, end) + Genome(1000, 1190);
        const std::string to_edge = Genome(900, 960) + edge;
        const std::string known = Genome(end - 15, end) + RandomBases(35, 5);
        const std::string other = RandomBases(50, 6);
        const int step = block.Stranger(to_edge.substr(0, 100), 440);
        block.Stranger(to_edge.substr(1, 100), 441);
        for (const std::string& branch : {known, other}) {
            block.Stranger(branch + to_edge.substr(0, 50), 390);
            block.Stranger(branch.substr(1) + to_edge.substr(0, 51), 391);
        }
        const int last = block.Stranger(edge, 500);
        block.Link();
        block.Set(step, step + 1, 99);
        block.Set(step, last, 40);
        block.Set(step + 1, last, 41);
        for (const int branch : {step + 2, step + 4}) {
            block.Set(branch, branch + 1, 99);
            block.Set(branch, step, 50);
            block.Set(branch + 1, step, 51);
        }
        return block;
    };
    // More than twice min_align and the index of the overlap, 18, is cut by the overlap.
    for (const int bases : {100, 19}) {
        BlockOfReads block = block_with(bases);
        SolveMatrix(block);
        EXPECT_TRUE(LoggedInOrder({"\t" + std::to_string(bases) + "\t500\n", "reword reassemble: 0\n",
                                   "After seq clean: 4\n", ">end number: 2\t"}));
    }
    BlockOfReads block = block_with(18);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({"\t18\t500\n", "reword reassemble: 0\n", "After seq clean: 2\n", ">end number: 4\t"}));
}

// ---- the choice of the finish --------------------------------------------------------------------------------------

TEST_F(SolveMatrixFinish, TwoHalvesBelowMinAlignGoToTheShortSteps) {
    const auto block_with = [](int before, int after) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Cut(100, 200 + before);
        block.Cut(700 - after, 800 - after);
        block.Cut(700, 900);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(7, 7);
    EXPECT_EQ(SolveMatrix(block), std::string(500, 'N'));
    EXPECT_TRUE(
        LoggedInOrder({">starts number: 2\t7\t500\n", BlockLine(">end number: ", 2, Genome(693, 700)) + kShortSteps}));
    for (const auto& [before, after] : {std::pair{8, 7}, std::pair{7, 8}}) {
        BlockOfReads longer = block_with(before, after);
        EXPECT_EQ(SolveMatrix(longer), Genome(200, 200 + before) + std::string(485, 'N') + Genome(700 - after, 700));
        EXPECT_TRUE(Logged(kJoin));
        EXPECT_FALSE(Logged(kShortSteps));
    }
}

TEST_F(SolveMatrixFinish, RewardHalfAloneMustExceedATenthOfTheGap) {
    // The column of the first read alone doesn't count.
    const auto block_with = [](int after) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Stranger(100, 300);
        for (int i = 799 - after; i < 802 - after; ++i) block.Cut(i, i + 150);
        block.Cut(800, 1000);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(60);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder(
        {"Before ERgap!\n", "No reads forward\n", BlockLine(">end number: ", 2, Genome(740, 800)) + kShortSteps}));
    EXPECT_FALSE(Logged(kJoin));
    EXPECT_EQ(type, -1);
    BlockOfReads longer = block_with(61);
    EXPECT_EQ(SolveMatrix(longer), std::string(539, 'N') + Genome(739, 800));
    EXPECT_TRUE(Logged(BlockLine(">end number: ", 2, Genome(739, 800)) + kJoin));
    EXPECT_FALSE(Logged(kShortSteps));
}

TEST_F(SolveMatrixFinish, ForwardHalfAloneMustExceedATenthOfTheGap) {
    const auto block_with = [](int before) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        for (int i = 98; i < 101; ++i) block.Cut(i, 100 + before + i);
        block.Cut(800, 1000);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(60);
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t60\t600\n" + Genome(200, 260) + "\n", "After ER!\n",
                               ">end number: 1\t0\n\n" + kShortSteps}));
    EXPECT_FALSE(Logged(kJoin));
    BlockOfReads longer = block_with(61);
    EXPECT_EQ(SolveMatrix(longer), Genome(200, 261) + std::string(539, 'N'));
    EXPECT_TRUE(Logged(">end number: 1\t0\n\n" + kJoin));
    EXPECT_FALSE(Logged(kShortSteps));
}

TEST_F(SolveMatrixFinish, SmallRewardHalfWithoutAForwardHalfGoesToTheShortSteps) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(295, 395);
    block.CutAt(300, 500, 100);
    block.Link();
    SolveMatrix(block);
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", BlockLine(">end number: ", 2, Genome(295, 300)) + kShortSteps}));
}

TEST_F(SolveMatrixFinish, NoStepAtEitherEdgeEndsInN) {
    // With nothing grown there is no second try; the short steps have the last word.
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Stranger(100, 30);
    block.Cut(700, 900);
    block.Link();
    EXPECT_EQ(SolveMatrix(block), std::string(500, 'N'));
    EXPECT_EQ(log.find(kStart + "start forward assembly...\nBefore ERgap!\n"), 0U) << log;
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", "After ER!\n",
                               ">end number: 1\t0\n\nreword reassemble: 0\nNo reads reward\n" + kShortSteps}));
    EXPECT_EQ(type, -1);
    EXPECT_EQ(realgaplen, 1);
}

}  // namespace
}  // namespace lintara
