#include <gtest/gtest.h>

#include <limits>

#include "align/edge_align.h"
#include "solve/block.h"
#include "strategy/block_gap.h"
#include "strategy/fillgap.h"

namespace lintara {
namespace {

using testing::BigGapTest;
using testing::First;
using testing::GapBases;
using testing::Genome;
using testing::RandomBases;

class BigGapAdmission : public BigGapTest {};
class BigGapBlocks : public BigGapTest {};
class BigGapFirstBlock : public BigGapTest {};
class BigGapInnerBlock : public BigGapTest {};
class BigGapLastBlock : public BigGapTest {};

// What an empty block would leave in the log.
const std::string kEmptyBlock =
    "the read number is: 0\n"
    "caculate the overlap values\n"
    "caculate finish!\n"
    "Treat the middle block of the large gap\n"
    "Start from id: 0\n"
    "start forward assembly...\n"
    "Forward from 0 vector get finished! 0\n"
    "start max reward assembly...\n"
    "Reward from 0 vector get finished!0\n";

// ---- admission -----------------------------------------------------------------------------------------------------

TEST_F(BigGapAdmission, ThousandReadsAtMost) {
    SetGapLength(1600);
    AddSingleBases(1000);
    EXPECT_EQ(Fill(1600), Ns(1600));
    EXPECT_EQ(log,
              "Treat as big size gap \n"
              "start filling the big gap\t1000\t1600\t400\t400\n"
              "block number of the gap 4\t1\n"
              "Treat the gap as middle block. \n");
    AddSingleBases(1);
    EXPECT_EQ(Fill(1600), Ns(1600));
    EXPECT_EQ(log, "Treat as big size gap \nToo Many reads for the gap4\t1001\t1600\n");
}

TEST_F(BigGapAdmission, FiftyReadsABaseAtMost) {
    SetGapLength(6);
    AddSingleBases(300);
    EXPECT_EQ(Fill(6), Ns(6));
    EXPECT_TRUE(Logged("start filling the big gap\t300\t6\t"));
    AddSingleBases(1);
    EXPECT_EQ(Fill(6), Ns(6));
    EXPECT_EQ(log, "Treat as big size gap \nToo Many reads for the gap4\t301\t6\n");
}

TEST_F(BigGapAdmission, ContigsOfContigLenAtLeast) {
    AddTrue({500});
    for (const auto& [before, after] : {std::pair{31, 400}, std::pair{400, 31}}) {
        contig1 = Genome(400 - before, 400);
        contig2 = GapBases(1600, 1600 + after);
        EXPECT_EQ(Fill(1600), Ns(1600));
        EXPECT_EQ(log, "Treat as big size gap \nToo Many reads for the gap4\t1\t1600\n");
    }
    contig1 = Genome(368, 400);
    contig2 = GapBases(1600, 1632);
    Fill(1600);
    EXPECT_TRUE(Logged("start filling the big gap\t1\t1600\t32\t32\n"));
}

// ---- blocks --------------------------------------------------------------------------------------------------------

TEST_F(BigGapBlocks, ReadsThatTouchStayTogether) {
    SetGapLength(1600);
    AddTrue({100, 200});
    Fill(1600);
    EXPECT_TRUE(Logged("block number of the gap 4\t1\n"));
    Clear();
    AddTrue({100, 201});
    Fill(1600);
    EXPECT_TRUE(Logged("block number of the gap 4\t2\n"));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as middle block\n", "Treat last block\t1\n",
                               "Treat last as middle block\n", "assemble for each block finished!\n"}));
}

TEST_F(BigGapBlocks, ReadsAreSortedFirst) {
    SetGapLength(1600);
    AddTrue({400, 100, 1000});
    Fill(1600);
    EXPECT_TRUE(LoggedInOrder({"block number of the gap 4\t3\n", "Treat first block as middle block\n",
                               "Treat block 1\n", "Treat last block\t2\n"}));
    EXPECT_EQ(position, (std::vector<int>{100, 400, 1000}));
    EXPECT_EQ(reads[1], GapBases(400, 500));
}

TEST_F(BigGapBlocks, PartsStandAtTheirPlaces) {
    SetGapLength(1000);
    AddBlock(-60);
    AddBlock(300);
    AddBlock(880);
    // The first part may lean on its edge, the inner one on nothing, and the last one begins with the second of its
    // reads, since its vote doesn't believe a single read.
    EXPECT_EQ(Fill(1000), GapBases(0, 100) + Ns(200) + GapBases(300, 460) + Ns(440) + GapBases(900, 1000));
    EXPECT_TRUE(LoggedInOrder({"block number of the gap 4\t3\n", "Treat first block as before block\n",
                               "Treat the before block of the large gap\n", "Treat block 1\n",
                               "Treat the middle block of the large gap\n", "Treat last block\t2\n",
                               "Treat last as after block\n", "Treat the after block of the large gap\n"}));
    EXPECT_TRUE(LogEndsWith("assemble for each block finished!\n")) << log;
    EXPECT_EQ(contig1, Genome(0, 400));
    EXPECT_EQ(contig2, GapBases(1000, 1400));
}

TEST_F(BigGapBlocks, LengthIsCorrectedInTheEnd) {
    // The inner block has 440 bases on 185 bases of the axis, so that the last block collides with it, which one N
    // marks: 891 bases for 700. The 250 N ahead of the inner block give way.
    SetGapLength(1000);
    AddBlock(-60);
    for (int i = 0; i < 18; ++i) Add(GapBases(350 + 20 * i, 450 + 20 * i), 350 + 5 * i);
    for (int i = 0; i < 4; ++i) Add(GapBases(880 + 20 * i, 980 + 20 * i), 560 + 20 * i);
    EXPECT_EQ(Fill(700), GapBases(0, 100) + Ns(59) + GapBases(350, 790) + "N" + GapBases(900, 1000));
    EXPECT_TRUE(LoggedInOrder({"block number of the gap 4\t3\n", "Treat block 1\n", "Treat last as after block\n"}));
}

// ---- the first of several blocks -----------------------------------------------------------------------------------

// In these tests a last block of one read, inside the gap, gives the N that stand behind the text of the first one.

TEST_F(BigGapFirstBlock, WithoutTheEdgeItMayGoOnFromTheBeforeContig) {
    // The positions are 30 too high: the block has the last 30 bases of the contig.
    SetGapLength(600);
    for (int i = -30; i <= 30; i += 20) Add(GapBases(i, i + 100), i + 30);
    AddTrue({400});
    EXPECT_EQ(Fill(600), GapBases(0, 130) + Ns(470));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as middle block\nthe read number is: 4\n"}));
}

TEST_F(BigGapFirstBlock, WithoutTheEdgeItElseStandsAtItsFirstRead) {
    SetGapLength(600);
    AddBlock(40);
    AddTrue({400});
    EXPECT_EQ(Fill(600), Ns(40) + GapBases(40, 200) + Ns(400));
}

TEST_F(BigGapFirstBlock, WithoutTheEdgeAndWithoutATextItIsOpenToItsEnd) {
    // 140 N, the end of the read at 40; they stand behind the 40 in front of the block, so that the next one collides
    // with them.
    SetGapLength(600);
    AddTrue({40});
    AddBlock(150);
    AddTrue({400});
    EXPECT_EQ(Fill(600), Ns(180) + "N" + GapBases(150, 310) + Ns(259));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as middle block\nthe read number is: 1\n", "Treat block 1\n"}));
}

TEST_F(BigGapFirstBlock, NoReadOfItKept) {
    // The first read of the block in the gap stands at 40, and the last one, of 20 bases, at 60: 80 N.
    SetGapLength(600);
    Add(GapBases(40, 59) + "N", 40);
    Add(GapBases(60, 80), 60);
    AddBlock(85);
    AddTrue({400});
    EXPECT_EQ(Fill(600), Ns(120) + "N" + GapBases(85, 245) + Ns(319));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as middle block\n" + kEmptyBlock + "Treat block 1\n"}));
}

TEST_F(BigGapFirstBlock, EmptyBlockLeavesTheTracesOfOne) {
    // The words are those of the block solver itself.
    std::vector<Read> none;
    TagInfo* no_tags = nullptr;
    int type = 0;
    int realgaplen = 1;
    NewLog();
    EXPECT_EQ(assemble_block(none, Method, type, no_tags, realgaplen, 0), "");
    EXPECT_EQ(NewLog(), kEmptyBlock);
}

TEST_F(BigGapFirstBlock, WithTheEdgeItBeginsWhereTheContigEnds) {
    SetGapLength(600);
    contig1[399] = static_cast<char>(contig1[399] + ('a' - 'A'));
    AddBlock(-60);
    AddTrue({400});
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    // The edge is as long as the first read.
    EXPECT_TRUE(LoggedInOrder(
        {"Treat first block as before block\nthe read number is: 5\n", "1\tlength: 100\tafter: 0\toverlap: 60\n"}));
}

TEST_F(BigGapFirstBlock, WithTheEdgeReadsOfBasesAloneAreTaken) {
    SetGapLength(600);
    AddBlock(-60);
    Add(GapBases(-20, 79) + "R", -20);  // an N alone would keep it out of other blocks
    Add(GapBases(-20, 79) + "n", -20);
    Add(GapBases(-20, 9), -20);  // 29 bases
    Add(GapBases(-20, 10), -20);
    AddTrue({400});
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    EXPECT_TRUE(Logged("Treat first block as before block\nthe read number is: 6\n"));
}

TEST_F(BigGapFirstBlock, WithTheEdgeAndWithoutATextItIsOpenToItsEnd) {
    SetGapLength(600);
    Add(RandomBases(100, 9), -60);
    AddBlock(300);
    AddTrue({500});
    // 40 N up to the end of its read, and as before on to 300.
    EXPECT_EQ(Fill(600), Ns(300) + GapBases(300, 460) + Ns(140));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as before block\nthe read number is: 2\n"}));
}

TEST_F(BigGapFirstBlock, WithTheEdgeAndNoReadKept) {
    SetGapLength(600);
    Add(GapBases(-60, 39) + "N", -60);
    AddBlock(300);
    AddTrue({500});
    EXPECT_EQ(Fill(600), Ns(300) + GapBases(300, 460) + Ns(140));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as before block\nthe read number is: 1\n",
                               "Treat the before block of the large gap\n", "Treat block 1\n"}));
}

TEST_F(BigGapFirstBlock, WithTheEdgeAndNoReadKeptItLeavesOneN) {
    // The last block is longer than its places tell and begins 70 bases behind the edge. 80 N up to the end of the read
    // that was not kept would stand in its way.
    SetGapLength(600);
    Add("N" + GapBases(-19, 80), -20);
    for (int start = 50; start <= 550; start += 20) Add(GapBases(start, start + 100), std::max(start, 83 + start / 50));
    EXPECT_EQ(Fill(600), Ns(70) + GapBases(70, 600));
    EXPECT_TRUE(
        LoggedInOrder({"Treat first block as before block\nthe read number is: 1\n", "Treat last as after block\n"}));
}

TEST_F(BigGapFirstBlock, WithTheEdgeAndInFrontOfTheGapItLeavesOneN) {
    // Its read ends 50 bases in front of the gap, and the next block begins there too and collides with the N.
    SetGapLength(600);
    Add(RandomBases(100, 9), -150);
    AddTrue({-49, -29, -9});
    AddTrue({400});
    EXPECT_EQ(Fill(600), "NN" + GapBases(-49, 91) + Ns(458));
    EXPECT_TRUE(LoggedInOrder({"Treat first block as before block\nthe read number is: 2\n", "Treat block 1\n"}));
}

TEST_F(BigGapFirstBlock, WithTheEdgeAtTheLowestPositionThereIsItLeavesOneN) {
    SetGapLength(600);
    Add(RandomBases(100, 9), std::numeric_limits<int>::min());
    AddTrue({-49, -29, -9});
    AddTrue({400});
    EXPECT_EQ(Fill(600), "NN" + GapBases(-49, 91) + Ns(458));
}

TEST_F(BigGapFirstBlock, ReadsAtTheLowestAndTheHighestPositionDontTouch) {
    SetGapLength(600);
    Add(RandomBases(100, 9), std::numeric_limits<int>::min());
    Add(RandomBases(100, 10), std::numeric_limits<int>::max());
    EXPECT_EQ(Fill(600), Ns(600));
    EXPECT_TRUE(LoggedInOrder({"block number of the gap ", "\t2\n", "Treat first block as before block\n",
                               "Treat last block\t1\nTreat last as after block\n"}));
}

// ---- inner blocks --------------------------------------------------------------------------------------------------

TEST_F(BigGapInnerBlock, WithoutATextItIsOpenFromItsFirstToItsLastRead) {
    // Two reads that don't fit together; the next block stands right behind them.
    SetGapLength(600);
    AddBlock(-60);
    Add(RandomBases(100, 9), 200);
    Add(RandomBases(100, 10), 250);
    AddTile(351, 391, 20);
    AddTrue({500});
    const std::string seq = Fill(600);
    EXPECT_EQ(seq, GapBases(0, 100) + Ns(251) + GapBases(351, 491) + Ns(109));
    EXPECT_TRUE(LoggedInOrder({"Treat block 1\nthe read number is: 2\n", "Treat block 2\nthe read number is: 3\n"}));
}

TEST_F(BigGapInnerBlock, NoReadOfItKept) {
    SetGapLength(600);
    AddBlock(-60);
    Add(GapBases(200, 299) + "N", 200);
    Add(GapBases(250, 279), 250);  // 29 bases
    AddBlock(320);
    AddTrue({500});
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(220) + GapBases(320, 480) + Ns(120));
    EXPECT_TRUE(LoggedInOrder({"Treat block 1\n" + kEmptyBlock + "Treat block 2\n"}));
}

TEST_F(BigGapInnerBlock, StandsAtItsFirstKeptRead) {
    SetGapLength(600);
    AddBlock(-60);
    Add(GapBases(190, 289) + "N", 190);
    AddBlock(200);
    AddTrue({500});
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(100) + GapBases(200, 360) + Ns(240));
}

// ---- the last block ------------------------------------------------------------------------------------------------

TEST_F(BigGapLastBlock, InsideTheGapItMayLeadIntoTheAfterContig) {
    // The positions are 30 too low: the block has the first 30 bases of the contig.
    SetGapLength(600);
    AddBlock(-60);
    for (int i = 470; i <= 530; i += 20) Add(GapBases(i, i + 100), i - 30);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(370) + GapBases(470, 600));
    EXPECT_TRUE(LoggedInOrder({"Treat last block\t1\nTreat last as middle block\nthe read number is: 4\n",
                               "last position: 470 last seqsize: 130\nassemble for each block finished!\n"}));
}

TEST_F(BigGapLastBlock, InsideTheGapItIsElseFilledUp) {
    SetGapLength(600);
    AddBlock(-60);
    AddBlock(400);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(300) + GapBases(400, 560) + Ns(40));
    EXPECT_TRUE(Logged("last position: 400 last seqsize: 200\n"));
}

TEST_F(BigGapLastBlock, ThatOverrunsTheGapShrinksToAStub) {
    // Reads of 160 bases in the genome on 100 bases of the axis. How many bases are left follows from how ambiguous the
    // overlap with the contig is: 6 bases and the index of the longer one of the two best.
    SetGapLength(600);
    AddBlock(-60);
    const std::string text = RandomBases(160, 77);
    for (int i = 0; i < 4; ++i) Add(text.substr(static_cast<std::size_t>(20 * i), 100), 500);
    const int pos = align_connect(text, First(contig2, 160), 6);
    ASSERT_LT(pos, 0);
    const int stub = std::min(6 - pos, 160);
    ASSERT_LT(500 + stub + 6 - pos, 540);
    // More than a tenth too short, the whole grows at its end.
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(400) + First(text, stub) + Ns(100 - stub));
    EXPECT_TRUE(Logged("last position: 500 last seqsize: " + std::to_string(stub + 6 - pos) + "\n")) << log;
}

TEST_F(BigGapLastBlock, ThatJustFillsTheGapShrinksAsWell) {
    // The end of the text at the gap's end leaves no room.
    SetGapLength(600);
    AddBlock(-60);
    const std::string text = RandomBases(160, 77);
    for (int i = 0; i < 4; ++i) Add(text.substr(static_cast<std::size_t>(20 * i), 100), 440 + 20 * i);
    const int pos = align_connect(text, First(contig2, 160), 6);
    ASSERT_LT(pos, 0);
    Fill(600);
    EXPECT_TRUE(Logged("last position: 440 last seqsize: " + std::to_string(std::min(6 - pos, 160) + 6 - pos) + "\n"));
    for (int& place : position) {
        if (place >= 440) --place;
    }
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(339) + text + Ns(1));
    EXPECT_TRUE(Logged("last position: 439 last seqsize: 161\n"));
}

TEST_F(BigGapLastBlock, InsideTheGapAndWithoutATextItIsOpen) {
    SetGapLength(600);
    AddBlock(-60);
    AddTrue({450});
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    EXPECT_TRUE(Logged("last position: 450 last seqsize: 150\n"));
}

TEST_F(BigGapLastBlock, ShortReadsStayIn) {
    SetGapLength(600);
    AddBlock(-60);
    AddBlock(400);
    Add(GapBases(410, 430), 410);
    Add(GapBases(410, 509) + "N", 410);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(300) + GapBases(400, 560) + Ns(40));
    EXPECT_TRUE(Logged("Treat last as middle block\nthe read number is: 5\n"));
}

TEST_F(BigGapLastBlock, InsideTheGapAndNoReadKept) {
    SetGapLength(600);
    AddBlock(-60);
    Add(GapBases(450, 549) + "N", 450);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    EXPECT_TRUE(Logged("Treat last as middle block\n" + kEmptyBlock + "last position: 450 last seqsize: 150\n"));
}

TEST_F(BigGapLastBlock, EndAtTheGapsEndIsInside) {
    SetGapLength(600);
    AddBlock(-60);
    AddTrue({500});
    Fill(600);
    EXPECT_TRUE(Logged("Treat last as middle block\n"));
    Clear();
    AddBlock(-60);
    AddTrue({501});
    Fill(600);
    EXPECT_TRUE(Logged("Treat last as after block\n"));
}

TEST_F(BigGapLastBlock, BeyondTheGapItLeansOnTheAfterContig) {
    SetGapLength(600);
    contig2[0] = static_cast<char>(contig2[0] + ('a' - 'A'));
    AddBlock(-60);
    AddBlock(480);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(400) + GapBases(500, 600));
    EXPECT_TRUE(LoggedInOrder({"Treat last block\t1\nTreat last as after block\nthe read number is: 5\n",
                               "Treat the after block of the large gap\n"}));
    EXPECT_FALSE(Logged("last position: "));
}

TEST_F(BigGapLastBlock, BeyondTheGapAndWithoutATextItIsOpen) {
    SetGapLength(600);
    AddBlock(-60);
    Add(RandomBases(100, 9), 550);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    EXPECT_TRUE(Logged("Treat last as after block\nthe read number is: 2\n"));
}

TEST_F(BigGapLastBlock, BehindTheGapAndWithoutATextItIsNothing) {
    SetGapLength(600);
    AddBlock(-60);
    AddBlock(400);
    Add(RandomBases(100, 9), 700);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(300) + GapBases(400, 560) + Ns(40));
}

TEST_F(BigGapLastBlock, BeyondTheGapAndNoReadKept) {
    SetGapLength(600);
    AddBlock(-60);
    Add(GapBases(550, 649) + "N", 550);
    EXPECT_EQ(Fill(600), GapBases(0, 100) + Ns(500));
    EXPECT_TRUE(LoggedInOrder(
        {"Treat last as after block\nthe read number is: 1\n", "Treat the after block of the large gap\n"}));
}

TEST_F(BigGapLastBlock, BeyondTheGapAndNoReadKeptItBeginsAtTheGapsEnd) {
    // The first block's text reaches 40 bases beyond the place of the first read that was not kept, which is no
    // collision.
    SetGapLength(600);
    for (int i = 0; i < 16; ++i) Add(GapBases(20 * i - 60, 20 * i + 40), i - 60);
    for (const int start : {300, 400, 500, 550}) Add("N" + GapBases(start + 1, start + 100), start);
    EXPECT_EQ(Fill(600), GapBases(0, 340) + Ns(260));
    EXPECT_TRUE(LoggedInOrder({"Treat last as after block\nthe read number is: 1\n"}));
}

}  // namespace
}  // namespace lintara
