#include "solve/short_solver.h"

#include "block_of_reads.h"

namespace lintara {
namespace {

using testing::BlockOfReads;
using testing::Genome;

const std::string kStart = "Starting to treat the matrix use max overlap mathod\n";
const std::string kMiddle = "Middle assembly starting from id: ";
const std::string kShortGap = "Starting to treat the matrix use overlap expand mathod\n";
const std::string kJoin = "try to connect the forward and reward!\n";

class ShortSolverWalks : public testing::SolverTest {};
class ShortSolverShortGap : public testing::SolverTest {};
class ShortSolverMiddle : public testing::SolverTest {};

// ---- walks from the edges ------------------------------------------------------------------------------------------

TEST_F(ShortSolverWalks, ForwardPathAcrossTheGapIsTakenAsItIs) {
    for (const int gap_length : {200, 900}) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        block.Tile(110, 390);
        block.CutAt(400, 600, gap_length);
        block.Link();
        EXPECT_EQ(SolveMatrix3(block), Genome(200, 400));
        EXPECT_EQ(log.find(kStart + "start forward assembly...\n"), 0U);
        EXPECT_TRUE(LogEndsWith("get the position for each read\nGet snp finished!\n")) << log;
        EXPECT_FALSE(Logged(">starts number: "));
        EXPECT_FALSE(Logged("start max reward assembly"));
        EXPECT_EQ(realgaplen, 1);
    }
}

TEST_F(ShortSolverWalks, ForwardPathOverOverlappingEdgesGivesTheOverlapAsN) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(140, 240);
    block.Cut(141, 241);
    block.CutAt(190, 390, 5);
    block.Link();
    EXPECT_EQ(SolveMatrix3(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
    EXPECT_EQ(Snp(), "");
}

/// Adds two strangers whose only links, set by Stop...(), contradict each other and the true read at an edge: of the
/// three the true one, with the lowest number, is cleaned away, and no step is taken.
struct Strangers {
    explicit Strangers(BlockOfReads& block) : first(block.Stranger(100, 0)), second(block.Stranger(100, 0)) {}
    void StopAtBeforeEdge(BlockOfReads& block, int true_read) const {
        block.KeepOnlyRight(0, {true_read});
        block.Set(0, first, 55);
        block.Set(0, second, 50);
    }
    void StopAtAfterEdge(BlockOfReads& block, int true_read) const {
        const int last = block.Num() - 1;
        block.KeepOnlyLeft(last, {true_read});
        block.Set(first, last, 55);
        block.Set(second, last, 50);
    }
    int first;
    int second;
};

/// A gap from 200 to the after edge that the walk from the before edge cannot enter, while the walk from the after edge
/// reaches the before edge through reads 3, 2 and 1. Read 4 keeps the step to read 1 from being a single one: of
/// another length than read 1, it is held against it by its bases.
BlockOfReads OnlyRewardCrosses(int after_from, int after_to, int gap_length) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(130, 230);
    block.Cut(175, 275);
    block.Cut(176, 276);
    block.Cut(120, 219);
    const Strangers strangers(block);
    block.CutAt(after_from, after_to, gap_length);
    block.Link();
    block.Set(4, 1, 0);
    strangers.StopAtBeforeEdge(block, 1);
    return block;
}

TEST_F(ShortSolverWalks, RewardPathAcrossTheGapIsTakenAsItIs) {
    for (const int gap_length : {40, 500}) {
        BlockOfReads block = OnlyRewardCrosses(240, 440, gap_length);
        EXPECT_EQ(SolveMatrix3(block), Genome(200, 240));
        EXPECT_TRUE(
            LoggedInOrder({"Forward from 0 vector get finished! 1\nNo reads forward\nstart max reward assembly...\n",
                           "reward have the first one!\nGet the sequence of order, order size 5\n",
                           "get the position for each read\n"}));
        EXPECT_TRUE(LogEndsWith("Get snp finished!\n")) << log;
        EXPECT_EQ(realgaplen, 1);
    }
}

TEST_F(ShortSolverWalks, RewardPathOverOverlappingEdgesGivesTheOverlapAsN) {
    BlockOfReads block = OnlyRewardCrosses(190, 390, 5);
    EXPECT_EQ(SolveMatrix3(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LoggedInOrder({"reward have the first one!\n"}));
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
}

TEST_F(ShortSolverWalks, HalvesAreJoined) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Tile(110, 200);
    block.Tile(600, 770);
    block.Cut(800, 1000);
    block.Link();
    // No reads are taken to have run out here: what one read alone covers is cut off at both loose ends.
    EXPECT_EQ(SolveMatrix3(block), Genome(200, 290) + std::string(320, 'N') + Genome(610, 800));
    EXPECT_TRUE(
        LoggedInOrder({">starts number: ", "\t90\t600\n" + Genome(200, 290) + "\n", "start max reward assembly...\n",
                       ">end number: ", "\t190\n" + Genome(610, 800) + "\n" + kJoin}));
    EXPECT_FALSE(Logged("no read: "));
    EXPECT_FALSE(Logged(kMiddle));
}

// ---- short gaps ----------------------------------------------------------------------------------------------------

/// One read at each edge, which reaches so many bases into the gap.
BlockOfReads ShortSteps(int before, int after, int gap_length) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    if (before > 0) block.Cut(100 + before, 200 + before);
    if (after > 0) block.Cut(600 - after, 700 - after);
    block.CutAt(600, 800, gap_length);
    block.Link();
    return block;
}

TEST_F(ShortSolverShortGap, TwoHalvesOfMinAlignBasesAreFilledInAGapBelowAReadsLength) {
    BlockOfReads block = ShortSteps(5, 6, 99);
    SolveMatrix3(block);
    // The middle of the block isn't asked, although both halves are below min_align.
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t5\t99\n" + Genome(200, 205) + "\n",
                               BlockLine(">end number: ", 2, Genome(594, 600)) + kShortGap}));
    EXPECT_FALSE(Logged(kMiddle));
    BlockOfReads eight = ShortSteps(8, 8, 99);
    SolveMatrix3(eight);
    EXPECT_TRUE(Logged(BlockLine(">end number: ", 2, Genome(592, 600)) + kShortGap));
}

TEST_F(ShortSolverShortGap, HalfAboveMinAlignIsJoined) {
    for (const auto& [before, after] : {std::pair{9, 8}, std::pair{8, 9}}) {
        BlockOfReads block = ShortSteps(before, after, 99);
        EXPECT_EQ(SolveMatrix3(block), Genome(200, 200 + before) + std::string(82, 'N') + Genome(600 - after, 600));
        EXPECT_FALSE(Logged(kShortGap));
        EXPECT_FALSE(Logged(kMiddle));
        EXPECT_TRUE(Logged(kJoin));
    }
}

TEST_F(ShortSolverShortGap, GapOfAReadsLengthIsNotShort) {
    BlockOfReads block = ShortSteps(8, 8, 100);
    EXPECT_EQ(SolveMatrix3(block), Genome(200, 208) + std::string(84, 'N') + Genome(592, 600));
    EXPECT_FALSE(Logged(kShortGap));
    EXPECT_FALSE(Logged(kMiddle)) << "eight bases are not below min_align";
    EXPECT_TRUE(Logged(kJoin));
    BlockOfReads shorter = ShortSteps(7, 7, 100);
    EXPECT_EQ(SolveMatrix3(shorter), std::string(100, 'N'));
    EXPECT_TRUE(LoggedInOrder(
        {kMiddle + "0\n", "ends size 1\nends size 2\n", "Raw seq: " + Genome(200, 207) + "\t7\n" + kJoin}));
    EXPECT_TRUE(LogEndsWith("Expand too short!\n")) << log;
    EXPECT_FALSE(Logged(kShortGap));
}

TEST_F(ShortSolverShortGap, HalfOnOneSideOnlyGoesByTheMiddle) {
    BlockOfReads block = ShortSteps(7, 0, 99);
    SolveMatrix3(block);
    EXPECT_TRUE(LoggedInOrder({">starts number: 2\t7\t99\n", "No reads reward\n" + kMiddle + "0\n",
                               "ends size 1\nends size 2\n", "Raw seq: " + Genome(200, 207) + "\t7\n" + kShortGap}));
    BlockOfReads mirror = ShortSteps(0, 7, 99);
    SolveMatrix3(mirror);
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", ">end number: 2\t7\n", kMiddle + "1\n", kShortGap}));
}

TEST_F(ShortSolverShortGap, BlockWithoutLinksStaysOpen) {
    BlockOfReads block = ShortSteps(0, 0, 99);
    EXPECT_EQ(SolveMatrix3(block), std::string(99, 'N'));
    EXPECT_TRUE(LoggedInOrder(
        {"No reads forward\n", "No reads reward\n" + kMiddle + "0\n", "ends size 1\nends size 1\n" + kShortGap}));
}

// ---- from the middle -----------------------------------------------------------------------------------------------

/// A block whose best-linked read is 2: reads 1 to 5 stand at 130, 175, 176, 240 and 251. Reads 6 (120 to 219) and 5
/// (251 to 350) keep steps from being single ones; of another length than reads 1 and 4, they are held against these by
/// their bases. Neither edge lets a walk go.
BlockOfReads Middle(std::pair<int, int> before, std::pair<int, int> after, int gap_length) {
    BlockOfReads block(before.second);
    block.Cut(before.first, before.second);
    block.Cut(130, 230);
    block.Cut(175, 275);
    block.Cut(176, 276);
    block.Cut(240, 340);
    block.Cut(251, 350);
    block.Cut(120, 219);
    const Strangers strangers(block);
    block.CutAt(after.first, after.second, gap_length);
    block.Link(10);
    block.Set(6, 1, 0);
    block.Set(4, 5, 0);
    const bool touches_before = block.Matrix()[0][1] != 0;
    const bool touches_after = block.Matrix()[4][block.Num() - 1] != 0;
    if (touches_before) {
        strangers.StopAtBeforeEdge(block, 1);
    } else {
        block.KeepOnlyRight(0, {});
    }
    if (touches_after) {
        strangers.StopAtAfterEdge(block, 4);
    } else {
        block.KeepOnlyLeft(block.Num() - 1, {});
    }
    return block;
}

TEST_F(ShortSolverMiddle, PathThatReachesBothEdgesIsTheText) {
    BlockOfReads block = Middle({0, 200}, {300, 500}, 100);
    EXPECT_EQ(SolveMatrix3(block), Genome(200, 300));
    EXPECT_TRUE(LoggedInOrder({"No reads forward\n", "No reads reward\n" + kMiddle + "2\nstart forward assembly...\n",
                               "Forward from 2 vector get finished! 4\n", "start max reward assembly...\n",
                               "Reward from 2 vector get finished!3\nends size 3\nends size 6\n",
                               "Get the sequence of order, order size 6\nshow order list: \n0\n1\t",
                               "get the position for each read\n"}));
    EXPECT_TRUE(LogEndsWith("Get snp finished!\n")) << log;
    EXPECT_EQ(realgaplen, 1);
}

TEST_F(ShortSolverMiddle, PathOverOverlappingEdgesGivesTheOverlapAsN) {
    // Read 1 leads to both edges. Two reads inside these make it the best-linked one, and agree with the steps to them.
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Cut(145, 245);
    const Strangers at_before(block);
    const int in_before = block.Cut(65, 165);
    const int in_after = block.Cut(225, 325);
    const Strangers at_after(block);
    block.CutAt(190, 390, 5);
    block.Link();
    block.Set(in_before, 1, 20);
    block.Set(1, in_after, 20);
    at_before.StopAtBeforeEdge(block, 1);
    at_after.StopAtAfterEdge(block, 1);
    EXPECT_EQ(SolveMatrix3(block), std::string(10, 'N'));
    EXPECT_EQ(realgaplen, -10);
    EXPECT_TRUE(LoggedInOrder({kMiddle + "1\n", "ends size 2\nends size 3\n"}));
    EXPECT_TRUE(LogEndsWith("Two edge connected with each other: -10\n")) << log;
}

TEST_F(ShortSolverMiddle, PathFromTheBeforeEdgeSetsThatHalf) {
    BlockOfReads block = Middle({0, 200}, {1000, 1200}, 600);
    EXPECT_EQ(SolveMatrix3(block), Genome(200, 340) + std::string(460, 'N'));
    EXPECT_TRUE(LoggedInOrder(
        {kMiddle + "2\n", "ends size 3\nends size 5\n", "Raw seq: " + Genome(200, 340) + "\t140\n" + kJoin}));
    // No vote, and no block line.
    EXPECT_FALSE(Logged("get the before position for each read\n"));
    EXPECT_FALSE(Logged(">starts number: "));
    EXPECT_FALSE(Logged(">middle "));
}

TEST_F(ShortSolverMiddle, PathToTheAfterEdgeSetsThatHalf) {
    BlockOfReads block = Middle({1000, 1200}, {300, 500}, 600);
    EXPECT_EQ(SolveMatrix3(block), std::string(430, 'N') + Genome(130, 300));
    EXPECT_TRUE(LoggedInOrder(
        {kMiddle + "2\n", "ends size 2\nends size 5\n", "Raw seq: " + Genome(130, 300) + "\t170\n" + kJoin}));
    EXPECT_FALSE(Logged("get the after position for each read\n"));
    EXPECT_FALSE(Logged(">end number: "));
}

TEST_F(ShortSolverMiddle, LoosePathIsConnectedWithBothEdges) {
    // 20 bases are shared with each edge, which is no link here.
    BlockOfReads block = Middle({0, 150}, {320, 520}, 170);
    block.KeepOnlyRight(0, {});
    block.KeepOnlyLeft(block.Num() - 1, {});
    EXPECT_EQ(SolveMatrix3(block), Genome(150, 320));
    EXPECT_TRUE(
        LoggedInOrder({kMiddle + "2\n", "ends size 2\nends size 4\n", "Raw seq: " + Genome(130, 340) + "\t210\n",
                       "get the position for each read of middle block\n"}));
    // The block line shows what the edges have left.
    EXPECT_TRUE(LogEndsWith(BlockLine(">middle ", 4, Genome(150, 320)))) << log;
}

TEST_F(ShortSolverMiddle, LoosePathInAShortGapIsConnectedAsWell) {
    BlockOfReads block = Middle({0, 150}, {320, 520}, 99);
    block.KeepOnlyRight(0, {});
    block.KeepOnlyLeft(block.Num() - 1, {});
    SolveMatrix3(block);
    EXPECT_TRUE(Logged(">middle 4\t"));
    EXPECT_FALSE(Logged(kShortGap));
}

TEST_F(ShortSolverMiddle, PathThatEndsInTheBeforeEdgeMayBeAGapOfZero) {
    BlockOfReads block(420);
    block.Cut(220, 420);
    block.Cut(130, 230);
    block.Cut(175, 275);
    block.Cut(176, 276);
    block.CutAt(1000, 1200, 50);
    block.Link();
    EXPECT_EQ(SolveMatrix3(block), "");
    EXPECT_TRUE(LoggedInOrder({kMiddle + "2\n", "show order list: \n1\n"}));
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
    EXPECT_EQ(realgaplen, 1);
    EXPECT_EQ(Snp(), "");
}

TEST_F(ShortSolverMiddle, PathThatBeginsInTheAfterEdgeMayBeAGapOfZero) {
    BlockOfReads block(1200);
    block.Cut(1000, 1200);
    block.Cut(130, 230);
    block.Cut(175, 275);
    block.Cut(176, 276);
    block.CutAt(0, 190, 500);
    block.Link();
    EXPECT_EQ(SolveMatrix3(block), "");
    EXPECT_TRUE(LogEndsWith("\nThe gap size may be zero!\n")) << log;
}

TEST_F(ShortSolverMiddle, BlockWithoutLinksStaysOpen) {
    BlockOfReads block(200);
    block.Cut(0, 200);
    block.Stranger(100, 200);
    block.CutAt(600, 800, 400);
    block.Link();
    EXPECT_EQ(SolveMatrix3(block), std::string(400, 'N'));
    EXPECT_EQ(log, kStart +
                       "start forward assembly...\n"
                       "Before clean: 0\nafter clean: 0\n"
                       "Forward from 0 vector get finished! 1\n"
                       "No reads forward\n"
                       "start max reward assembly...\n"
                       "Before clean: 0\nafter clean: 0\n"
                       "Reward from 2 vector get finished!1\n"
                       "No reads reward\n"
                       "Middle assembly starting from id: 0\n"
                       "start forward assembly...\n"
                       "Before clean: 0\nafter clean: 0\n"
                       "Forward from 0 vector get finished! 1\n"
                       "start max reward assembly...\n"
                       "Before clean: 0\nafter clean: 0\n"
                       "Reward from 0 vector get finished!1\n"
                       "ends size 1\n"
                       "ends size 1\n");
    EXPECT_EQ(realgaplen, 1);
    EXPECT_EQ(Snp(), "");
}

TEST_F(ShortSolverMiddle, EmptyHalfAndATenthOfTheGapAskTheMiddle) {
    // The forward half of 60 bases, but for the column that one read alone covers.
    const auto block_with = [](int before) {
        BlockOfReads block(200);
        block.Cut(0, 200);
        for (int i = 98; i < 102; ++i) block.Cut(i, 100 + before + i);
        block.CutAt(1000, 1200, 600);
        block.Link();
        return block;
    };
    BlockOfReads block = block_with(60);
    SolveMatrix3(block);
    EXPECT_TRUE(LoggedInOrder({"\t60\t600\n" + Genome(200, 260) + "\n", "No reads reward\n" + kMiddle}));
    BlockOfReads longer = block_with(61);
    EXPECT_EQ(SolveMatrix3(longer), Genome(200, 261) + std::string(539, 'N'));
    EXPECT_TRUE(LoggedInOrder({"\t61\t600\n", "No reads reward\n" + kJoin}));
    EXPECT_FALSE(Logged(kMiddle));
}

}  // namespace
}  // namespace lintara
