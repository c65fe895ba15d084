#include <gtest/gtest.h>

#include "walk/end_select_block.h"

namespace lintara::testing {
namespace {

using GetFirstEntry = EndSelectTest;
using GetFirstInner = EndSelectTest;
using GetFirstEdge = EndSelectTest;
using GetFirstAcceptance = EndSelectTest;

std::string Opening(int end, int size) {
    return "short over check!\nNot short over! " + std::to_string(size) + "\nReward for end: " + std::to_string(end) +
           "\t" + std::to_string(size) + "\tpos: 300\n";
}

/// From the entry to the first turn's line, for a pick that some are against.
std::string UpToTurn(int end, int size, int against) {
    return Opening(end, size) + EndSelectTest::Against(against, size - 1) + EndSelectTest::Matched(size) +
           EndSelectTest::Against(against, size - 1) + "drop read!\nposition check passed!\t1\n" +
           EndSelectTest::TurnLine(size);
}

// The pick is the last of the six, read 6, and the walk stands on read 7, unless a test says otherwise.

TEST_F(GetFirstEntry, ASingleCandidateComesBackWithoutAnyCheck) {
    Block block = LeftBlock(false, {{60}});
    block.reads[1].pos = -700;
    block.Mutate(1, 99);
    EXPECT_EQ(First(block, 2), 1);
    EXPECT_EQ(Log(), "short over check!\nNot short over! 1\n");
}

TEST_F(GetFirstEntry, OverlapsOfExactlyTheMinimumGiveNoRead) {
    Block block = LeftBlock(false, {{30}, {30}});
    EXPECT_EQ(First(block, 3), -1);
    EXPECT_EQ(Log(), "short over check!\nNot short over! 2\n");
}

TEST_F(GetFirstEntry, ThePickStandsWhenAllAgreeAndItsPositionFits) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    EXPECT_EQ(First(block, 4), 3);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2));
    EXPECT_FALSE(SHORTOVERLAP[0]);
}

TEST_F(GetFirstEntry, ShortOverlapsThroughoutRaiseTheFlagAndKeepAll) {
    Block block = LeftBlock(false, {{45}, {40}, {35}});
    EXPECT_EQ(First(block, 4), 3);
    EXPECT_TRUE(SHORTOVERLAP[0]);
    EXPECT_EQ(Log(), "short over check!\nIs short over! \nAfter short over drop: 3\nReward for end: 4\t3\tpos: 300\n" +
                         Against(0, 2));
}

TEST_F(GetFirstEntry, OfFiveCandidatesOneThatMatchesIsNotEnough) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}, {50}});
    for (int read : {1, 2, 4, 5}) block.Mutate(read, 99);
    block.Spoil(5, 1);
    changenode = true;
    EXPECT_EQ(First(block, 6), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(6, 5) + Against(1, 4) + Matched(1));
}

TEST_F(GetFirstEntry, OfFiveCandidatesNoMatchAsksForAnotherNode) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}, {50}});
    for (int read : {1, 2, 3, 4, 5}) block.Mutate(read, 99);
    block.Spoil(5, 1);
    EXPECT_EQ(First(block, 6), -1);
    EXPECT_TRUE(changenode);
    EXPECT_EQ(Log(), Opening(6, 5) + Against(1, 4) + Matched(0, true));
}

TEST_F(GetFirstEntry, OfFourCandidatesOneThatMatchesIsTakenInItsPosition) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 4}) block.Mutate(read, 99);
    block.Spoil(4, 1);
    EXPECT_EQ(First(block, 5), 3);
}

TEST_F(GetFirstEntry, OfFourCandidatesOneThatMatchesIsRefusedOutOfPosition) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 4}) block.Mutate(read, 99);
    block.Spoil(4, 1);
    block.reads[3].pos -= 50;
    EXPECT_EQ(First(block, 5), -1);
}

TEST_F(GetFirstEntry, MatchesOfExactlyTheMinimumGiveNoRead) {
    Block block = LeftBlock(false, {{30}, {30}, {50}});
    block.Mutate(3, 99);
    block.reads[3].pos -= 60;
    EXPECT_EQ(First(block, 4), -1);
}

TEST_F(GetFirstEntry, AnEdgeThatMatchesNoneOfFourIsSuspectAndAllComeBack) {
    jum = 0;
    Block block = LeftBlock(true, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 3, 4}) block.Mutate(read, 99);
    block.Spoil(4, 2);
    EXPECT_EQ(First(block, 5), 4);
    EXPECT_FALSE(changenode);
    EXPECT_TRUE(clean) << "the candidates' own comparison is skipped";
    EXPECT_EQ(Log(), Opening(5, 4) + Against(1, 3) + Matched(0, true) +
                         "contig edge has mistakes!\naccept recover! do not use full match drop!\n" + Against(1, 3) +
                         "drop read!\nposition check passed!\t1\n" + TurnLine(4) + "change to find a max \n" +
                         Against(3, 3) + "drop node: 1\n" + Against(1, 2) + "drop read!\n" + TurnLine(3) +
                         "position drop!\nAfter pos drop: 3\naccept more!\n");
}

TEST_F(GetFirstEntry, ThreeUnmatchedCandidatesOfTheEdgeDoNotComeBack) {
    Block block = LeftBlock(true, {{90}, {80}, {70}});
    for (int read : {1, 2, 3}) block.Mutate(read, 99);
    block.Spoil(3, 1);
    EXPECT_EQ(First(block, 4), -1);
    EXPECT_TRUE(changenode);
}

TEST_F(GetFirstEntry, APickOutOfPositionMakesRoomForTheNext) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    block.reads[3].pos -= 50;
    EXPECT_EQ(First(block, 4), 2);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2) + Matched(3) + Against(0, 2) + "position drop read: 3\n" +
                         Against(0, 1) + "position check passed!\t0\n");
}

TEST_F(GetFirstEntry, OutOfPositionDownToTheMinimumGivesNoRead) {
    Block block = LeftBlock(false, {{30}, {30}, {50}});
    block.reads[3].pos -= 50;
    EXPECT_EQ(First(block, 4), -1);
    EXPECT_EQ(accept, (std::vector<int>{1, 2}));
}

TEST_F(GetFirstEntry, APairWhosePickIsOutOfPositionEndsWithTheOtherInPosition) {
    Block block = LeftBlock(false, {{90}, {80}});
    block.reads[2].pos -= 50;
    EXPECT_EQ(First(block, 3), 1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(3, 2) + Against(0, 1) + Matched(2) + Against(0, 1) +
                         "fail pass position check!\naccept the last read in accept for pass position check!\n");
}

TEST_F(GetFirstEntry, APairOutOfPositionAsksForAnotherNode) {
    Block block = LeftBlock(false, {{90}, {80}});
    block.reads[1].pos += 50;
    block.reads[2].pos -= 50;
    EXPECT_EQ(First(block, 3), -1);
    EXPECT_TRUE(changenode);
    EXPECT_EQ(Log(), Opening(3, 2) + Against(0, 1) + Matched(2) + Against(0, 1) +
                         "fail pass position check!\nDo not accept the last one: 1\n");
}

TEST_F(GetFirstEntry, APairThatDisagreesInPositionStopsTheWalk) {
    Block block = LeftBlock(false, {{90}, {80}});
    block.Spoil(2, 1);
    EXPECT_EQ(First(block, 3), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(3, 2) + Against(1, 1) + Matched(2) + Against(1, 1) + "position check passed!\t0\n");
}

TEST_F(GetFirstEntry, APickThatAllAreAgainstIsDropped) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    block.Spoil(3, 1);
    block.Spoil(3, 2);
    EXPECT_EQ(First(block, 4), 2);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(2, 2) + Matched(3) + Against(2, 2) +
                         "try another node!\nposition check passed!\t1\ndrop node: 3\n" + Against(0, 1));
}

TEST_F(GetFirstEntry, DroppingThePickDownToTheMinimumGivesNoRead) {
    Block block = LeftBlock(false, {{30}, {30}, {70}});
    block.matrix[1][3] = block.matrix[2][3] = 0;
    EXPECT_EQ(First(block, 4), -1);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(2, 2) + Matched(3) + Against(2, 2) +
                         "try another node!\nposition check passed!\t1\ndrop node: 3\n");
}

// ---- inside the gap ------------------------------------------------------------------------------------------------

TEST_F(GetFirstInner, APassingPickIsTakenAfterTheFullMatchClean) {
    Block block = LeftBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_FALSE(clean);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6, 5) + "recheck!\n" + Against(0, 4));
}

TEST_F(GetFirstInner, APassingPickOutOfPositionIsDroppedAfterTheFullMatchClean) {
    Block block = LeftBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6}) block.Spoil(read, 1);
    block.reads[6].pos -= 50;
    EXPECT_EQ(First(block, 7), 5);
    EXPECT_EQ(Log(),
              UpToTurn(7, 6, 1) + Cleaned(6, 5) + "recheck!\n" + Against(0, 4) + "drop node: 6\n" + Against(0, 3));
}

TEST_F(GetFirstInner, APickThatNearlyAllAreAgainstIsDroppedAfterTheFullMatchClean) {
    std::vector<Candidate> candidates = {{97, 101}};
    for (int shared = 95; shared >= 40; shared -= 5) candidates.push_back({shared});
    Block block = LeftBlock(false, candidates);
    for (int read = 2; read <= 13; read++) block.Spoil(read, 1);
    for (int read = 3; read <= 12; read++) block.Spoil(13, read);
    EXPECT_EQ(First(block, 14), 12);
    EXPECT_EQ(Log(), UpToTurn(14, 13, 10) + Cleaned(13, 12) + "recheck!\n" + Against(10, 11) +
                         "try another node!\ndrop node: 13\n" + Against(0, 10));
}

TEST_F(GetFirstInner, APickThatFailsAfterTheFullMatchCleanGoesThroughMinAndMax) {
    Block block = LeftBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6}) block.Spoil(read, 1);
    block.Spoil(6, 2);
    EXPECT_EQ(First(block, 7), 2);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6, 5) + "recheck!\n" + Against(1, 4) + "drop read!\ntry min!\n" +
                         Against(1, 4) + "drop read!\ntry max!\n" + Against(1, 4) + TurnLine(5) +
                         "After long read clean: 5\nAfter edge clean: 5\nposition drop!\nAfter pos drop: 5\n");
}

TEST_F(GetFirstInner, TheMinStepOfTheFullMatchCleanMakesANewPick) {
    Block block = LeftBlock(false, {{90}, {80, 101}, {70, 101}, {60, 101}, {50, 101}, {40}});
    for (int read : {1, 2, 3, 4, 5}) block.Spoil(6, read);
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6, 5) + "try min!\n" + Against(0, 4));
}

// Short reads that only just overlap, so that the pick is a long one; two other long ones are against it.
Block LongPick() {
    Block block = LeftBlock(false, {{30}, {30}, {30}, {80, 138}, {75, 138}, {70, 138}});
    block.Spoil(6, 4);
    block.Spoil(6, 5);
    return block;
}

TEST_F(GetFirstInner, APickThatHasLeftTheCandidatesCanStillBeTaken) {
    Block block = LongPick();
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_EQ(accept, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) + "After long read clean: 3\ntry min!\n" + Against(0, 2));
}

TEST_F(GetFirstInner, WhenTheEdgeShouldBeNearAndIsNotTheWalkGoesBackToNormalSteps) {
    jum = 0;
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "drop edge test!\nNo edge related reads!\nposition drop!\nAfter pos drop: 6\n");
}

TEST_F(GetFirstInner, ThreeReadsAwayFromTheEdgeAreEnoughToLeaveIt) {
    jum = 0;
    Block block = LeftBlock(false, kSix);
    // Read 1 touches the before edge; reads 2 and 3 match it and leave with it.
    block.matrix[0][1] = 40;
    for (int read : {4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_EQ(accept, (std::vector<int>{4, 5, 6}));
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "drop edge test!\nAt least three read not accept the edge arrive, so drop edge\n"
                         "After edge clean: 3\nrecheck!\n" +
                         Against(0, 2));
}

TEST_F(GetFirstInner, AFailedRecheckAwayFromTheEdgeGoesThroughMinAndMax) {
    jum = 0;
    Block block = LeftBlock(false, kSix);
    block.matrix[0][1] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    block.Spoil(6, 3);
    EXPECT_EQ(First(block, 7), 3);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) +
                         "drop edge test!\nAt least three read not accept the edge arrive, so drop edge\n"
                         "After edge clean: 4\nrecheck!\n" +
                         Against(1, 3) + "drop read!\ntry min!\n" + Against(1, 3) + "drop read!\ntry max!\n" +
                         Against(1, 3) + TurnLine(4) +
                         "drop edge test!\nNo edge related reads!\nposition drop!\nAfter pos drop: 4\n");
}

TEST_F(GetFirstInner, TwoReadsAwayFromTheEdgeAcceptIt) {
    jum = 0;
    Block block = LeftBlock(false, kSix);
    block.matrix[0][1] = 40;
    for (int read : {5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_EQ(jum, 0);
    EXPECT_EQ(accept.size(), 6U);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "drop edge test!\npass the test, and few read left, accept the edge!\t\n"
                         "After short read clean: 6\nposition drop!\nAfter pos drop: 6\n");
}

TEST_F(GetFirstInner, AtTheEdgeLongReadsArePreferredButThePickIsNotMadeAnew) {
    jum = 0;
    Block block = LeftBlock(false, {{90}, {80, 140}, {70, 140}, {60, 140}, {40}});
    block.matrix[5][2] = 100;  // read 5 is the beginning of read 2
    block.matrix[0][4] = 40;
    block.Spoil(4, 2);
    block.Spoil(5, 1);
    EXPECT_EQ(First(block, 6), 5);
    EXPECT_EQ(jum, 0);
    EXPECT_EQ(accept, (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(Log(), UpToTurn(6, 5, 1) + Cleaned(5) +
                         "drop edge test!\npass the test, and few read left, accept the edge!\t\n"
                         "After short read clean: 3\ntry min!\n" +
                         Against(0, 2));
}

TEST_F(GetFirstInner, APickThatAllAreAgainstEndsTheTurnAfterTheEdgeClean) {
    Block block = LeftBlock(false, kSix);
    block.matrix[0][1] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    for (int read : {3, 4, 5}) block.Spoil(6, read);
    EXPECT_EQ(First(block, 7), 5);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 4) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\nrecheck!\n" +
                         Against(3, 3) + "try another node!\ndrop node: 6\n" + Against(0, 2));
}

TEST_F(GetFirstInner, TheMaxStepOfTheEdgeCleanDoesNotReportItself) {
    Block block = LeftBlock(false, kSix);
    block.matrix[0][1] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    block.Spoil(6, 3);
    EXPECT_EQ(First(block, 7), 3);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\nrecheck!\n" +
                         Against(1, 3) + "drop read!\ntry min!\n" + Against(1, 3) + "drop read!\ntry max!\n" +
                         Against(1, 3) + TurnLine(4) + "position drop!\nAfter pos drop: 4\n");
}

TEST_F(GetFirstInner, ThePickAtTheEdgeIsTestedAgainAfterItHasLeft) {
    Block block = LeftBlock(false, kSix);
    // Read 6 touches the edge and takes read 5 with it; four of three others are then against it.
    block.matrix[0][6] = 40;
    for (int read : {1, 2, 3, 4}) block.Spoil(6, read);
    EXPECT_EQ(First(block, 7), 4);
    EXPECT_EQ(accept, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(Log(), UpToTurn(7, 6, 4) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\ntry min!\n" +
                         Against(4, 3) + "try another node!\ndrop node: 6\n" + Against(0, 3));
}

TEST_F(GetFirstInner, AllCandidatesAtTheEdgeGiveNoRead) {
    Block block = LeftBlock(false, kSix);
    for (int read : {1, 2, 3, 4, 5, 6}) block.matrix[0][read] = 40;
    block.Spoil(6, 1);
    EXPECT_EQ(First(block, 7), -1);
    EXPECT_TRUE(accept.empty());
}

TEST_F(GetFirstInner, AfterThePositionDropAnUnchangedMaxPickEndsTheLadder) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    block.reads[2].pos = 301;
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(jum, 2);
    EXPECT_EQ(Log(),
              UpToTurn(7, 6, 1) + Cleaned(6) +
                  "After long read clean: 6\nAfter edge clean: 6\nposition drop!\nAfter pos drop: 5\nrecheck!\n" +
                  Against(1, 4) + "drop read!\ntry min!\n" + Against(1, 4) + "drop read!\ntry max!\n" + Against(1, 4) +
                  TurnLine(5) + "drop the last and use max step: 5\n");
}

TEST_F(GetFirstInner, AfterThePositionDropAChangedMaxPickIsTested) {
    Block block = LeftBlock(false, kSix);
    for (int read : {1, 3, 4, 5}) block.Spoil(6, read);
    for (int read : {1, 3}) block.Spoil(5, read);
    block.reads[2].pos = 301;
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(jum, 2);
    EXPECT_EQ(Log(),
              UpToTurn(7, 6, 4) + Cleaned(6) +
                  "After long read clean: 6\nAfter edge clean: 6\nposition drop!\nAfter pos drop: 5\nrecheck!\n" +
                  Against(4, 4) + "try another node!\ndrop node: 6\n" + Against(2, 3) + "drop read!\n" + TurnLine(4) +
                  "drop the last and use max step: 4\n" + Against(1, 3) + TurnLine(4));
}

TEST_F(GetFirstInner, ThePositionDropMayLeaveNothing) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    for (int read : {1, 2, 3, 4, 5, 6}) block.reads[read].pos = 301;
    EXPECT_EQ(First(block, 7), -1);
    EXPECT_EQ(Log(),
              UpToTurn(7, 6, 1) + Cleaned(6) +
                  "After long read clean: 6\nAfter edge clean: 6\nposition drop!\nAfter pos drop: 0\ntry min!\n");
}

// ---- at the after edge ---------------------------------------------------------------------------------------------

TEST_F(GetFirstEdge, APickThatAllAreAgainstGoesOnToTheMinStepAfterTheEdgeClean) {
    Block block = LeftBlock(true, kSix);
    block.matrix[0][1] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    for (int read : {3, 4, 5}) block.Spoil(6, read);
    EXPECT_EQ(First(block, 7), 5);
    EXPECT_EQ(block.matrix[1][7], 90) << "no cell is cut";
    EXPECT_EQ(Log(), UpToTurn(7, 6, 4) + Cleaned(6) + "After edge clean: 4\nrecheck!\n" + Against(3, 3) +
                         "try another node!\ntry min!\n" + Against(3, 3) + "try another node!\ndrop node: 6\n" +
                         Against(0, 2));
}

TEST_F(GetFirstEdge, AllCandidatesAtTheEdgeGiveNoRead) {
    Block block = LeftBlock(true, kSix);
    for (int read : {1, 2, 3, 4, 5, 6}) block.matrix[0][read] = 40;
    block.Spoil(6, 1);
    EXPECT_EQ(First(block, 7), -1);
    EXPECT_TRUE(accept.empty());
}

// Two short reads and five long ones; the last one is the pick.
const std::vector<Candidate> kLongs = {{95}, {90}, {80, 150}, {70, 150}, {60, 150}, {50, 150}, {40, 150}};

std::string LongsUpToMax() {
    return UpToTurn(8, 7, 2) + EndSelectTest::Cleaned(7) +
           "After edge clean: 7\nAfter short read clean: 5\nrecheck!\n" + EndSelectTest::Against(2, 4) +
           "drop read!\ntry min!\n" + EndSelectTest::Against(2, 4) + "drop read!\ntry max!\n";
}

TEST_F(GetFirstEdge, AMaxStepThatPassesIsNotMeasuredByItsCover) {
    Block block = LeftBlock(true, kLongs);
    block.Spoil(7, 3);
    block.Spoil(7, 4);
    EXPECT_EQ(First(block, 8), 3);
    EXPECT_EQ(Log(), LongsUpToMax() + Against(1, 4));
}

TEST_F(GetFirstEdge, AMaxStepWithSomeInFavourIsMeasuredByItsCover) {
    Block block = LeftBlock(true, kLongs);
    block.Spoil(7, 3);
    block.Spoil(6, 3);
    block.Spoil(7, 4);
    EXPECT_EQ(First(block, 8), 3);
    EXPECT_EQ(accept, (std::vector<int>{3, 4, 5}));
    EXPECT_EQ(Log(), LongsUpToMax() + Against(2, 4) + "Long read over ratio drop!\n" + Against(0, 2));
}

TEST_F(GetFirstEdge, AMaxPickThatAllAreAgainstIsDropped) {
    Block block = LeftBlock(true, kLongs);
    for (int read : {4, 5, 6, 7}) block.Spoil(read, 3);
    block.Spoil(7, 4);
    EXPECT_EQ(First(block, 8), 7);
    EXPECT_EQ(Log(), LongsUpToMax() + Against(4, 4) + "drop node: 3\n" + Against(1, 3));
}

TEST_F(GetFirstEdge, ShortReadsThatLeaveMayEndTheTurnAtTheRecheck) {
    Block block = LeftBlock(true, {{90}, {80}, {70}, {60, 150}, {50, 150}, {40, 150}});
    block.Spoil(6, 4);
    block.Spoil(6, 5);
    EXPECT_EQ(First(block, 7), 5);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) + "After edge clean: 6\nAfter short read clean: 3\nrecheck!\n" +
                         Against(2, 2) + "try another node!\ndrop node: 6\n" + Against(0, 1));
}

TEST_F(GetFirstEdge, TheCoverRatioIsFollowedByAMinStep) {
    Block block = LeftBlock(true, kSix);
    block.Spoil(6, 1);
    EXPECT_EQ(First(block, 7), 5);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After edge clean: 6\nAfter short read clean: 6\nAfter Long read over ratio drop!\t5\n"
                         "try min!\n" +
                         Against(0, 4));
}

TEST_F(GetFirstEdge, AMaxPickEqualToTheOldOneEndsTheLadder) {
    Block block = LeftBlock(true, kSix);
    block.Spoil(6, 1);
    block.Spoil(5, 1);
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After edge clean: 6\nAfter short read clean: 6\nAfter Long read over ratio drop!\t5\n"
                         "try min!\n" +
                         Against(1, 4) + "drop read!\ntry max!\n" + Against(1, 4) + TurnLine(5) +
                         "change to find a max \n");
}

TEST_F(GetFirstEdge, TheNumberAgainstThePickIsCutToAnInteger) {
    // One of 49: the share times 49 is just below one in double arithmetic, so that no read is asked to leave.
    std::vector<Candidate> candidates;
    for (int shared = 99; shared >= 50; shared--) candidates.push_back({shared});
    Block block = LeftBlock(true, candidates);
    block.Spoil(50, 1);
    EXPECT_EQ(First(block, 51), 1);
    EXPECT_EQ(Log(), UpToTurn(51, 50, 1) + Cleaned(50) +
                         "After edge clean: 50\nAfter short read clean: 50\nAfter Long read over ratio drop!\t50\n"
                         "change to find a max \n" +
                         Against(1, 49) + TurnLine(50) + "position drop!\nAfter pos drop: 50\naccept more!\n");
}

TEST_F(GetFirstEdge, AMaxPickThatFewAreAgainstIsAcceptedAsMore) {
    jum = 0;
    Block block = LeftBlock(true, kSix);
    block.Spoil(6, 1);
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "change to find a max \n" + Against(1, 5) + TurnLine(6) +
                         "position drop!\nAfter pos drop: 6\naccept more!\n");
}

TEST_F(GetFirstEdge, ThePositionDropOfTheMaxPickRechecksIt) {
    jum = 0;
    Block block = LeftBlock(true, kSix);
    block.Spoil(6, 1);
    block.reads[3].pos = 301;
    EXPECT_EQ(First(block, 7), 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "change to find a max \n" + Against(1, 5) + TurnLine(6) +
                         "position drop!\nAfter pos drop: 5\nrecheck!\n" + Against(0, 4));
}

TEST_F(GetFirstEdge, AMaxPickThatManyAreAgainstGivesWayToTheLongestStep) {
    jum = 0;
    Block block = LeftBlock(true, kSix);
    for (int read : {4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(First(block, 7), 6);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "change to find a max \n" + Against(3, 5) + TurnLine(6) +
                         "position drop!\nAfter pos drop: 6\n" + Against(0, 4));
}

TEST_F(GetFirstEdge, TheLongestStepIsTriedOnce) {
    jum = 0;
    Block block = LeftBlock(true, kSix);
    for (int read : {4, 5, 6}) block.Spoil(read, 1);
    for (int read : {2, 3}) block.Spoil(6, read);
    EXPECT_EQ(First(block, 7), -1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 3) + Cleaned(6) + "change to find a max \n" + Against(3, 5) + TurnLine(6) +
                         "position drop!\nAfter pos drop: 6\n" + Against(2, 4) + "drop read!\n" + TurnLine(5));
}

// ---- the final acceptance ------------------------------------------------------------------------------------------

TEST_F(GetFirstAcceptance, FourAgainstInALargeSetAreTooMany) {
    jum = 0;
    std::vector<Candidate> candidates;
    for (int shared = 99; shared >= 58; shared--) candidates.push_back({shared});
    Block block = LeftBlock(false, candidates);
    for (int read : {1, 2, 3, 4}) block.Spoil(42, read);
    EXPECT_EQ(First(block, 43), -1);
    EXPECT_EQ(Log(), UpToTurn(43, 42, 4) + Cleaned(42) +
                         "drop edge test!\nNo edge related reads!\nposition drop!\nAfter pos drop: 42\n");
}

TEST_F(GetFirstAcceptance, TwoAgainstAreToleratedBelowTwentyTwoPercent) {
    for (int against : {2, 3}) {
        jum = 0;
        std::vector<Candidate> candidates;
        for (int shared = 90; shared >= 60; shared -= 2) candidates.push_back({shared});
        Block block = LeftBlock(false, candidates);
        for (int read = 1; read <= against; read++) block.Spoil(16, read);
        EXPECT_EQ(First(block, 17), against == 2 ? 16 : -1);
    }
}

// Read 3 holds the pick, read 4, which is its beginning. A link below the pick's overlap keeps the case from being the
// easy one.
Block Nested() {
    Block block = LeftBlock(false, {{65, 70}, {62, 66}, {55, 70}, {45, 60}});
    block.matrix[4][3] = 60;
    block.matrix[4][1] = 40;
    return block;
}

std::string NestedUpToLong() {
    return Opening(5, 4) + EndSelectTest::Against(1, 3) + EndSelectTest::Matched(4) + EndSelectTest::Against(0, 3) +
           "position check passed!\t0\ntry long: ";
}

TEST_F(GetFirstAcceptance, ALongerReadThatHoldsThePickIsTaken) {
    Block block = Nested();
    EXPECT_EQ(First(block, 5), 3);
    EXPECT_EQ(Log(), NestedUpToLong() + "3\n" + Against(0, 3) + "use long!\n");
}

TEST_F(GetFirstAcceptance, ALongerReadThatFailsIsNotTaken) {
    Block block = Nested();
    block.Spoil(3, 1);
    EXPECT_EQ(First(block, 5), 4);
    EXPECT_EQ(Log(), NestedUpToLong() + "3\n" + Against(1, 3));
}

TEST_F(GetFirstAcceptance, ALongerReadOutOfPositionIsNotTaken) {
    Block block = Nested();
    block.reads[3].pos -= 50;
    EXPECT_EQ(First(block, 5), 4);
    EXPECT_EQ(Log(), NestedUpToLong() + "3\n" + Against(0, 3));
}

TEST_F(GetFirstAcceptance, ALongerReadWithoutOverlapIsNotTaken) {
    Block block = Nested();
    accept = block.Left(5);
    block.matrix[3][5] = 0;
    block.reads[3].pos = 240;  // where no overlap would put it
    EXPECT_EQ(get_first(5, accept, block.reads, block.matrix, jum, changenode, clean, 0), 4);
    EXPECT_EQ(Log().find("use long!"), std::string::npos);
    EXPECT_NE(Log().find("try long: 3\n" + Against(0, 3)), std::string::npos);
}

TEST_F(GetFirstAcceptance, WithoutALongerReadThePickStands) {
    Block block = Nested();
    block.Mutate(3, 0);
    EXPECT_EQ(First(block, 5), 4);
    EXPECT_EQ(Log(), NestedUpToLong() + "-1\n");
}

TEST_F(GetFirstAcceptance, APickOfTheReadLengthIsLongEnough) {
    Block block = Nested();
    ReadLen = 60;
    EXPECT_EQ(First(block, 5), 4);
    EXPECT_EQ(Log().find("try long: "), std::string::npos);
}

TEST_F(GetFirstAcceptance, ThreeCandidatesAreNoReasonToLookForALongerRead) {
    Block block = LeftBlock(false, {{65, 70}, {55, 70}, {45, 60}});
    block.matrix[3][2] = 60;
    block.matrix[3][1] = 40;
    EXPECT_EQ(First(block, 4), 3);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(1, 2) + Matched(3) + Against(0, 2) + "position check passed!\t0\n");
}

TEST_F(GetFirstAcceptance, AnEmptyPickEndsTheProcess) {
    Block block = LeftBlock(true, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 3, 4}) block.Mutate(read, 99);
    block.reads[4].seq.clear();
    block.reads[4].pos = 340;
    for (int read : {1, 2, 3}) {
        block.matrix[4][read] = 40;
        block.matrix[read][4] = 0;
    }
    EXPECT_EXIT(First(block, 5), ::testing::ExitedWithCode(255), "^get long error!\n$");
}

}  // namespace
}  // namespace lintara::testing
