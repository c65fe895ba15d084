#include <gtest/gtest.h>

#include "walk/end_select_block.h"

namespace lintara::testing {
namespace {

using GetLastEntry = EndSelectTest;
using GetLastInner = EndSelectTest;
using GetLastEdge = EndSelectTest;
using GetLastAcceptance = EndSelectTest;

std::string Opening(int start, int size) {
    return "short over check!\nNot short over! \nForward for end: " + std::to_string(start) + "\t" +
           std::to_string(size) + "\tpos: 0\n";
}

// The pick is the last of the six, read 7 (inside the gap) or 6 (at the edge), unless a test says otherwise.

TEST_F(GetLastEntry, ASingleCandidateComesBackWithoutAnyCheck) {
    Block block = RightBlock(false, {{60}});
    block.reads[2].pos = 700;
    block.Mutate(2, 0);
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(Log(), "short over check!\nNot short over! \n");
}

TEST_F(GetLastEntry, NoCandidateGivesNoRead) {
    Block block = RightBlock(false, {{20}});
    EXPECT_EQ(Last(block, 1), -1);
}

TEST_F(GetLastEntry, OverlapsOfExactlyTheMinimumGiveNoRead) {
    Block block = RightBlock(false, {{30}, {30}});
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(Log(), "short over check!\nNot short over! \n");
}

TEST_F(GetLastEntry, ThePickStandsWhenAllAgreeAndItsPositionFits) {
    Block block = RightBlock(false, {{90}, {80}, {70}});
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(0, 2));
    EXPECT_FALSE(SHORTOVERLAP[0]);
    EXPECT_TRUE(clean);
}

TEST_F(GetLastEntry, ShortOverlapsThroughoutRaiseTheFlagAndKeepAll) {
    Block block = RightBlock(false, {{45}, {40}, {35}});
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_TRUE(SHORTOVERLAP[0]);
    EXPECT_EQ(Log(), "short over check!\nIs short over! \nAfter short over drop: 3\nForward for end: 1\t3\tpos: 0\n" +
                         Against(0, 2));
}

TEST_F(GetLastEntry, AnEarlierFlagOfShortOverlapsIsCleared) {
    SHORTOVERLAP[0] = true;
    Block block = RightBlock(false, {{90}});
    Last(block, 1);
    EXPECT_FALSE(SHORTOVERLAP[0]);
}

TEST_F(GetLastEntry, OfFiveCandidatesOneThatMatchesIsNotEnough) {
    Block block = RightBlock(false, {{90}, {80}, {70}, {60}, {50}});
    for (int read : {2, 3, 5, 6}) block.Mutate(read, 0);
    block.Spoil(2, 6);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(Log(), Opening(1, 5) + Against(1, 4) + Matched(1));
    EXPECT_FALSE(changenode);
}

TEST_F(GetLastEntry, OfFourCandidatesOneThatMatchesIsTakenInItsPosition) {
    Block block = RightBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {2, 3, 5}) block.Mutate(read, 0);
    block.Spoil(2, 5);
    EXPECT_EQ(Last(block, 1), 4);
}

TEST_F(GetLastEntry, OfFourCandidatesOneThatMatchesIsRefusedOutOfPosition) {
    Block block = RightBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {2, 3, 5}) block.Mutate(read, 0);
    block.Spoil(2, 5);
    block.reads[4].pos += 50;
    EXPECT_EQ(Last(block, 1), -1);
}

TEST_F(GetLastEntry, NoMatchInsideTheGapAsksForAnotherNode) {
    Block block = RightBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {2, 3, 4, 5}) block.Mutate(read, 0);
    block.Spoil(2, 5);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_TRUE(changenode);
    EXPECT_EQ(Log(), Opening(1, 4) + Against(1, 3) + Matched(0, true));
}

TEST_F(GetLastEntry, MatchesOfExactlyTheMinimumGiveNoRead) {
    Block block = RightBlock(false, {{30}, {30}, {50}});
    block.Mutate(4, 0);
    block.reads[4].pos += 60;
    EXPECT_EQ(Last(block, 1), -1);
}

TEST_F(GetLastEntry, AnEdgeThatMatchesNoneOfFourIsSuspectAndAllComeBack) {
    Block block = RightBlock(true, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 3, 4}) block.Mutate(read, 0);
    block.Spoil(2, 4);
    EXPECT_EQ(Last(block, 0), 4);
    EXPECT_FALSE(changenode);
    EXPECT_TRUE(clean) << "the candidates' own comparison is skipped";
    // No candidate shares less than half of its bases, so that the cover ratio removes none. The shortest step, read 1,
    // has all others against it, since their first base differs; without it read 4 is opposed by read 2 alone.
    EXPECT_EQ(Log(), Opening(0, 4) + Against(1, 3) + Matched(0, true) +
                         "Contig edge hase mistakes!\naccept recover and do not use full match drop!\n" +
                         Against(1, 3) + "try drop read!\n" + TurnLine(4) +
                         "After edge clean: 4\nAfter short read clean: 4\t0\nAfter long read cover ratio drop: 4\n"
                         "change to find a max \n" +
                         Against(3, 3) + "drop node: 1\n" + Against(1, 2) + "try drop read!\n" + TurnLine(3) +
                         "position drop!\nAfter position read drop: 3\t0\nfind a more one! 4\naccept more!\n");
}

TEST_F(GetLastEntry, ThreeUnmatchedCandidatesOfTheEdgeDoNotComeBack) {
    Block block = RightBlock(true, {{90}, {80}, {70}});
    for (int read : {1, 2, 3}) block.Mutate(read, 0);
    block.Spoil(1, 3);
    EXPECT_EQ(Last(block, 0), -1);
    EXPECT_TRUE(changenode);
}

TEST_F(GetLastEntry, APickOutOfPositionMakesRoomForTheNext) {
    Block block = RightBlock(false, {{90}, {80}, {70}});
    block.reads[4].pos += 50;
    EXPECT_EQ(Last(block, 1), 3);
    EXPECT_EQ(Log(),
              Opening(1, 3) + Against(0, 2) + Matched(3) + Against(0, 2) + "change position node!\n" + Against(0, 1));
}

TEST_F(GetLastEntry, OutOfPositionDownToTheMinimumGivesNoRead) {
    Block block = RightBlock(false, {{30}, {30}, {50}});
    block.reads[4].pos += 50;
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(accept, (std::vector<int>{2, 3}));
}

TEST_F(GetLastEntry, APairWhosePickIsOutOfPositionStopsTheWalkEvenWithTheOtherInPosition) {
    Block block = RightBlock(false, {{90}, {80}});
    block.reads[3].pos += 50;
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(1, 2) + Against(0, 1) + Matched(2) + Against(0, 1) + "pass position check\n");
    EXPECT_EQ(accept, (std::vector<int>{2}));
}

TEST_F(GetLastEntry, APairOutOfPositionAsksForAnotherNode) {
    Block block = RightBlock(false, {{90}, {80}});
    block.reads[2].pos -= 50;
    block.reads[3].pos += 50;
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_TRUE(changenode);
}

TEST_F(GetLastEntry, APairThatDisagreesInPositionStopsTheWalk) {
    Block block = RightBlock(false, {{90}, {80}});
    block.Spoil(2, 3);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(1, 2) + Against(1, 1) + Matched(2) + Against(1, 1));
}

TEST_F(GetLastEntry, APickThatAllAreAgainstIsDropped) {
    Block block = RightBlock(false, {{90}, {80}, {70}});
    block.Spoil(2, 4);
    block.Spoil(3, 4);
    EXPECT_EQ(Last(block, 1), 3);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(2, 2) + Matched(3) + Against(2, 2) + "try another node!\ndrop node: 4\n" +
                         Against(0, 1));
}

TEST_F(GetLastEntry, DroppingThePickDownToTheMinimumGivesNoRead) {
    Block block = RightBlock(false, {{30}, {30}, {70}});
    // Without a link to the pick, a candidate that reaches further than it is against it.
    block.matrix[4][2] = block.matrix[4][3] = 0;
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(2, 2) + Matched(3) + Against(2, 2) + "try another node!\ndrop node: 4\n");
}

// ---- inside the gap ------------------------------------------------------------------------------------------------

TEST_F(GetLastInner, TheMaxStepFollowsTheCleansAndThePositionDropEndsTheLadder) {
    Block block = RightBlock(false, kSix);
    block.Spoil(2, 7);
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(jum, 2);
    EXPECT_FALSE(clean);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After long read clean: 6\nAfter edge clean: 6\nuse max step: 6\n" +
                         Against(1, 5) + TurnLine(6) + "position drop!\nAfter position read drop: 6\t0\n");
}

TEST_F(GetLastInner, ACandidateWithoutExactPartnerLeaves) {
    Block block = RightBlock(false, kSix);
    for (int read : {3, 4, 5, 6, 7}) block.Spoil(2, read);
    EXPECT_EQ(Last(block, 1), 7);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6, 5) + "recheck!\n" + Against(0, 4));
}

TEST_F(GetLastInner, AfterTheFullMatchCleanAPassingPickOutOfPositionIsDropped) {
    Block block = RightBlock(false, kSix);
    for (int read : {3, 4, 5, 6, 7}) block.Spoil(2, read);
    block.reads[7].pos += 50;
    EXPECT_EQ(Last(block, 1), 6);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6, 5) + "recheck!\n" + Against(0, 4) + "drop node: 7\n" + Against(0, 3));
}

TEST_F(GetLastInner, AfterTheFullMatchCleanAPickThatFailsGoesThroughMinAndMax) {
    Block block = RightBlock(false, kSix);
    for (int read : {3, 4, 5, 6, 7}) block.Spoil(2, read);
    block.Spoil(3, 7);
    EXPECT_EQ(Last(block, 1), 3);
    EXPECT_EQ(jum, 2) << "of the max step that stands as a stage of its own";
    EXPECT_EQ(Log(), Opening(1, 6) + Against(2, 5) + Matched(6) + Against(2, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6, 5) + "recheck!\n" + Against(1, 4) + "try drop read!\ntry min!\n" + Against(1, 4) +
                         "try drop read!\ntry max!\n" + Against(1, 4) + TurnLine(5) +
                         "After long read clean: 5\nAfter edge clean: 5\nuse max step: 5\n" + Against(1, 4) +
                         TurnLine(5) + "position drop!\nAfter position read drop: 5\t0\n");
}

TEST_F(GetLastInner, AfterTheFullMatchCleanAPickThatNearlyAllAreAgainstIsDropped) {
    // Read 2 is longer by one base, so that its offset isn't compared; it has no exact partner. Of the other eleven ten
    // are against the last.
    std::vector<Candidate> candidates = {{97, 101}};
    for (int shared = 95; shared >= 40; shared -= 5) candidates.push_back({shared});
    Block block = RightBlock(false, candidates);
    ASSERT_EQ(block.Num(), 16);
    for (int read = 3; read <= 14; read++) block.Spoil(2, read);
    for (int read = 4; read <= 13; read++) block.Spoil(read, 14);
    EXPECT_EQ(Last(block, 1), 13);
    EXPECT_EQ(Log(), Opening(1, 13) + Against(10, 12) + Matched(13) + Against(10, 12) + "try drop read!\n" +
                         TurnLine(13) + Cleaned(13, 12) + "recheck!\n" + Against(10, 11) +
                         "try another node!\ndrop node: 14\n" + Against(0, 10));
}

TEST_F(GetLastInner, LongReadsLeaveInFavourOfShortOnes) {
    Block block = RightBlock(false, {{90}, {80}, {70}, {60}, {50}, {40, 150}});
    block.Spoil(2, 6);
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After long read clean: 5\nrecheck!\n" + Against(1, 4) +
                         "try drop read!\ntry min!\n" + Against(1, 4) + "try drop read!\ntry max!\n" + Against(1, 4) +
                         TurnLine(5) + "After edge clean: 5\nuse max step: 5\n" + Against(1, 4) + TurnLine(5) +
                         "position drop!\nAfter position read drop: 5\t0\n");
}

TEST_F(GetLastInner, CandidatesAtTheFarEdgeLeave) {
    Block block = RightBlock(false, kSix);
    // Read 2 touches the far edge; read 3 alone matches it exactly and goes with it. All that are left are against the
    // last, which does not end the recheck here: the min step comes first.
    block.matrix[2][8] = 40;
    for (int read : {4, 5, 6, 7}) block.Spoil(2, read);
    for (int read : {4, 5, 6}) block.Spoil(read, 7);
    EXPECT_EQ(Last(block, 1), 6);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(4, 5) + Matched(6) + Against(4, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\nrecheck!\n" + Against(3, 3) +
                         "try another node!\ntry min!\n" + Against(3, 3) + "try another node!\ndrop node: 7\n" +
                         Against(0, 2));
}

TEST_F(GetLastInner, TheMaxStepOfTheEdgeCleanReportsItself) {
    Block block = RightBlock(false, kSix);
    block.matrix[2][8] = 40;
    for (int read : {4, 5, 6, 7}) block.Spoil(2, read);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(jum, 2);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(2, 5) + Matched(6) + Against(2, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\nrecheck!\n" + Against(1, 3) +
                         "try drop read!\ntry min!\n" + Against(1, 3) + "try drop read!\ntry max!\n" + Against(1, 3) +
                         TurnLine(4) + "position drop!\nAfter position read drop: 4\t0\n");
}

TEST_F(GetLastInner, AllCandidatesAtTheFarEdgeGiveNoRead) {
    Block block = RightBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6, 7}) block.matrix[read][8] = 40;
    block.Spoil(2, 7);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_TRUE(accept.empty());
    EXPECT_NE(Log().find("After edge clean: 0\n"), std::string::npos);
}

TEST_F(GetLastInner, WhenTheEdgeShouldBeNearAndIsNotTheWalkGoesBackToNormalSteps) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    block.Spoil(2, 7);
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(jum, 2);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "Drop edge test!\nNot dropped, not meet the edge!\nuse max step: 6\n" +
                         Against(1, 5) + TurnLine(6) + "After long read clean: 6\nposition drop!\n" +
                         "After position read drop: 6\t0\n");
}

TEST_F(GetLastInner, AnUndecidedEdgeIsLeftToThePosition) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    for (int read : {2, 3, 4, 5}) block.matrix[read][8] = 40;
    block.Spoil(2, 7);
    EXPECT_EQ(Last(block, 1), 7);
    EXPECT_EQ(jum, 0);
    EXPECT_EQ(accept.size(), 6U);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) +
                         "Drop edge test!\ncan not decide edge!\tleft size: 0 init size: 6\n"
                         "After position read drop: 6\t0\n");
}

TEST_F(GetLastInner, TheEdgeTestRunsAgainAfterAnUndecidedEdge) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    for (int read : {2, 3, 4, 5}) block.matrix[read][8] = 40;
    block.reads[2].pos = -1;
    block.Spoil(3, 7);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(jum, 2);
    EXPECT_EQ(Log(),
              Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                  Cleaned(6) +
                  "Drop edge test!\ncan not decide edge!\tleft size: 0 init size: 6\n"
                  "After position read drop: 5\t1\nrecheck!\n" +
                  Against(1, 4) + "try drop read!\ntry min!\n" + Against(1, 4) + "try drop read!\ntry max!\n" +
                  Against(1, 4) + TurnLine(5) +
                  "Drop edge test!\nEdge meet!\t0\nAfter short read drop, accept left: 5\nAfter edge clean: 0\n");
}

TEST_F(GetLastInner, FewReadsAtTheEdgeLeaveAndTheShortestStepFollows) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    block.matrix[7][8] = 40;
    block.Spoil(2, 7);
    for (int read : {3, 4, 5}) block.Spoil(read, 7);
    // Read 6 alone matches read 7 and leaves with it.
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(jum, 0);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(4, 5) + Matched(6) + Against(4, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "Drop edge test!\nNot meet edge!\t4\n" + Against(0, 3));
    EXPECT_EQ(accept, (std::vector<int>{2, 3, 4, 5}));
    EXPECT_EQ(block.matrix[1][7], 40) << "only the before edge's own cells are cut";
}

TEST_F(GetLastInner, APickThatStaysAfterTheEdgeTestIsRechecked) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    block.matrix[2][8] = 40;
    for (int read : {4, 5, 6, 7}) block.Spoil(2, read);
    EXPECT_EQ(Last(block, 1), 7);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "Drop edge test!\nNot meet edge!\t4\nrecheck!\n" + Against(0, 3));
}

TEST_F(GetLastInner, APickThatFailsItsRecheckAfterTheEdgeTestGivesWayToTheShortestStep) {
    jum = 0;
    Block block = RightBlock(false, kSix);
    block.matrix[2][8] = 40;
    for (int read : {4, 5, 6, 7}) block.Spoil(2, read);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(2, 5) + Matched(6) + Against(2, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "Drop edge test!\nNot meet edge!\t4\nrecheck!\n" + Against(1, 3) +
                         "try drop read!\n" + Against(1, 3) + TurnLine(4) +
                         "Drop edge test!\nNot dropped, not meet the edge!\nuse max step: 4\n" + Against(1, 3) +
                         TurnLine(4) + "After long read clean: 4\nposition drop!\nAfter position read drop: 4\t0\n");
}

TEST_F(GetLastInner, AtTheEdgeLongReadsArePreferred) {
    jum = 0;
    Block block = RightBlock(false, {{90}, {80, 140}, {70, 140}, {60, 140}, {40}});
    // Read 5 touches the far edge and takes read 4 with it.
    block.matrix[5][7] = 40;
    block.Spoil(2, 5);
    block.Spoil(3, 5);
    block.Spoil(2, 6);
    EXPECT_EQ(Last(block, 1), 5);
    EXPECT_EQ(jum, 0);
    // Read 3 is against read 5, and is long: such a read carries no weight.
    EXPECT_EQ(Log(), Opening(1, 5) + Against(1, 4) + Matched(5) + Against(1, 4) + "try drop read!\n" + TurnLine(5) +
                         Cleaned(5) + "Drop edge test!\nEdge meet!\t3\nAfter short read drop, accept left: 3\n" +
                         "try min!\n" + Against(1, 2));
}

TEST_F(GetLastInner, TheMaxStepAtTheEdgeReportsItself) {
    jum = 0;
    Block block = RightBlock(false, {{90}, {85}, {80, 140}, {75, 140}, {70, 140}, {60, 140}, {40}});
    for (int read : {4, 5, 6, 7}) block.matrix[read][9] = 40;
    block.reads[2].pos = -1;
    block.Spoil(3, 8);
    block.Spoil(4, 7);
    block.Spoil(5, 7);
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(jum, 2);
    // The second test comes after the position drop. It leaves the long reads, of which two are against read 7.
    EXPECT_EQ(Log(), Opening(1, 7) + Against(1, 6) + Matched(7) + Against(1, 6) + "try drop read!\n" + TurnLine(7) +
                         Cleaned(7) +
                         "Drop edge test!\ncan not decide edge!\tleft size: 0 init size: 7\n"
                         "After position read drop: 6\t1\nrecheck!\n" +
                         Against(1, 5) + "try drop read!\ntry min!\n" + Against(1, 5) + "try drop read!\ntry max!\n" +
                         Against(1, 5) + TurnLine(6) +
                         "Drop edge test!\nEdge meet!\t0\nAfter short read drop, accept left: 4\ntry min!\n" +
                         Against(2, 3) + "try drop read!\ntry max!\n" + Against(1, 3));
}

TEST_F(GetLastInner, ThePositionDropRechecksThePick) {
    Block block = RightBlock(false, kSix);
    block.Spoil(2, 7);
    block.reads[3].pos = -1;
    EXPECT_EQ(Last(block, 1), 2);
    EXPECT_EQ(Log(), Opening(1, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After long read clean: 6\nAfter edge clean: 6\nuse max step: 6\n" +
                         Against(1, 5) + TurnLine(6) + "position drop!\nAfter position read drop: 5\t1\nrecheck!\n" +
                         Against(0, 4));
}

TEST_F(GetLastInner, ThePositionDropMayLeaveNothing) {
    Block block = RightBlock(false, kSix);
    block.Spoil(2, 7);
    for (int read : {2, 3, 4, 5, 6}) block.reads[read].pos = -1;
    block.reads[7].pos = -1;
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_NE(Log().find("After position read drop: 0\t1\n"), std::string::npos);
}

// ---- at the before edge --------------------------------------------------------------------------------------------

TEST_F(GetLastEdge, AMaxPickEqualToTheOldOneKeepsItsVerdictAndIsAcceptedAsMore) {
    Block block = RightBlock(true, kSix);
    block.Spoil(1, 6);
    block.Spoil(1, 2);
    EXPECT_EQ(Last(block, 0), 1);
    EXPECT_EQ(jum, 1);
    // Read 6 shares less than half of its bases with the edge and leaves by the cover ratio.
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) +
                         "After edge clean: 6\nAfter short read clean: 6\t0\nAfter long read cover ratio drop: 5\n" +
                         Against(1, 4) + TurnLine(5) + "change to find a max \n" + TurnLine(5) +
                         "position drop!\nAfter position read drop: 5\t0\nfind a more one! 1\naccept more!\n");
}

TEST_F(GetLastEdge, AStepWithoutTheEdgeNearGoesStraightToTheMaxPick) {
    jum = 0;
    Block block = RightBlock(true, kSix);
    block.Spoil(1, 6);
    EXPECT_EQ(Last(block, 0), 1);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "change to find a max \n" + Against(1, 5) + TurnLine(6) +
                         "position drop!\nAfter position read drop: 6\t0\nfind a more one! 1\naccept more!\n");
}

TEST_F(GetLastEdge, ThePositionDropOfTheMaxPickRechecksIt) {
    jum = 0;
    Block block = RightBlock(true, kSix);
    block.Spoil(1, 6);
    block.reads[3].pos = -1;
    EXPECT_EQ(Last(block, 0), 1);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "change to find a max \n" + Against(1, 5) + TurnLine(6) +
                         "position drop!\nAfter position read drop: 5\t1\nrecheck!\n" + Against(0, 4));
}

TEST_F(GetLastEdge, AMaxPickThatManyAreAgainstGivesWayToTheNextShortestStep) {
    jum = 0;
    Block block = RightBlock(true, kSix);
    for (int read : {2, 3, 6}) block.Spoil(1, read);
    EXPECT_EQ(Last(block, 0), 2);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "change to find a max \n" + Against(3, 5) + TurnLine(6) +
                         "position drop!\nAfter position read drop: 6\t0\nfind a more one! 1\n" + Against(0, 4));
}

TEST_F(GetLastEdge, TheNextShortestStepIsTriedOnce) {
    jum = 0;
    Block block = RightBlock(true, kSix);
    for (int read : {2, 3, 6}) block.Spoil(1, read);
    for (int read : {3, 4}) block.Spoil(2, read);
    EXPECT_EQ(Last(block, 0), -1);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "change to find a max \n" + Against(3, 5) + TurnLine(6) +
                         "position drop!\nAfter position read drop: 6\t0\nfind a more one! 1\n" + Against(2, 4) +
                         TurnLine(5));
}

TEST_F(GetLastEdge, CandidatesAtTheFarEdgeLeaveAndTheirCellsAreCut) {
    Block block = RightBlock(true, kSix);
    block.matrix[1][7] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(1, read);
    EXPECT_EQ(Last(block, 0), 6);
    EXPECT_EQ(block.matrix[0][1], 0);
    EXPECT_EQ(block.matrix[0][2], 0) << "the exact partner of read 1";
    EXPECT_EQ(block.matrix[0][3], 70);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(1, 5) + Matched(6) + Against(1, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After edge clean: 4\nrecheck!\n" + Against(0, 3));
}

TEST_F(GetLastEdge, APickThatAllAreAgainstEndsTheTurnAfterTheEdgeClean) {
    Block block = RightBlock(true, kSix);
    block.matrix[1][7] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(1, read);
    for (int read : {3, 4, 5}) block.Spoil(read, 6);
    EXPECT_EQ(Last(block, 0), 5);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(4, 5) + Matched(6) + Against(4, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After edge clean: 4\nrecheck!\n" + Against(3, 3) +
                         "try another node!\ndrop node: 6\n" + Against(0, 2));
}

TEST_F(GetLastEdge, AllCandidatesAtTheFarEdgeGiveNoRead) {
    Block block = RightBlock(true, kSix);
    for (int read : {1, 2, 3, 4, 5, 6}) block.matrix[read][7] = 40;
    block.Spoil(1, 6);
    EXPECT_EQ(Last(block, 0), -1);
    EXPECT_TRUE(accept.empty());
}

// Two short reads and five long ones; the last one is the pick.
const std::vector<Candidate> kLongs = {{95}, {90}, {80, 150}, {70, 150}, {60, 150}, {50, 150}, {40, 150}};

std::string LongsUpToMax(int against) {
    return Opening(0, 7) + EndSelectTest::Against(against, 6) + EndSelectTest::Matched(7) +
           EndSelectTest::Against(against, 6) + "try drop read!\n" + EndSelectTest::TurnLine(7) +
           EndSelectTest::Cleaned(7) + "After edge clean: 7\nAfter short read clean: 5\t1\nrecheck!\n" +
           EndSelectTest::Against(against, 4) + "try drop read!\ntry min!\n" + EndSelectTest::Against(against, 4) +
           "try drop read!\ntry max!\n";
}

TEST_F(GetLastEdge, AMaxStepThatPassesIsStillMeasuredByItsCover) {
    Block block = RightBlock(true, kLongs);
    block.Spoil(3, 7);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 0), 3);
    // One long read against the max pick carries no weight, so nothing is asked to leave; the clean takes all the same.
    EXPECT_EQ(Log(), LongsUpToMax(2) + Against(1, 4) + "Long read over ratio drop!\t0\n");
    EXPECT_EQ(accept, (std::vector<int>{3}));
}

TEST_F(GetLastEdge, AMaxPickThatAllAreAgainstIsDroppedInPlaceOfACoverClean) {
    Block block = RightBlock(true, kLongs);
    for (int read : {4, 5, 6, 7}) block.Spoil(3, read);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 0), 7);
    EXPECT_EQ(Log(), LongsUpToMax(2) + Against(4, 4) + "Long read over ratio drop!\t4\ndrop node: 3\n" + Against(1, 3));
}

TEST_F(GetLastEdge, AMaxPickWithSomeInFavourTakesTheCoverRatioInTheNextTurn) {
    Block block = RightBlock(true, kLongs);
    block.Spoil(3, 6);
    block.Spoil(3, 7);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 0), 3);
    EXPECT_EQ(Log(), LongsUpToMax(2) + Against(2, 4) + TurnLine(5) + "After long read cover ratio drop: 1\n");
    EXPECT_EQ(accept, (std::vector<int>{3}));
}

TEST_F(GetLastEdge, ACoverCleanThatTakesNothingLeavesTheMaxPick) {
    // All share more than half of their bases with the edge.
    Block block = RightBlock(true, {{98}, {97}, {92, 150}, {88, 150}, {84, 150}, {80, 150}, {76, 150}});
    block.Spoil(3, 7);
    block.Spoil(4, 7);
    EXPECT_EQ(Last(block, 0), 3);
    EXPECT_EQ(Log(), LongsUpToMax(2) + Against(1, 4) + "Long read over ratio drop!\t0\n");
    EXPECT_EQ(accept.size(), 5U);
}

TEST_F(GetLastEdge, ShortReadsThatLeaveMayEndTheTurnAtTheRecheck) {
    Block block = RightBlock(true, {{90}, {80}, {70}, {60, 150}, {50, 150}, {40, 150}});
    block.Spoil(4, 6);
    block.Spoil(5, 6);
    EXPECT_EQ(Last(block, 0), 5);
    EXPECT_EQ(Log(), Opening(0, 6) + Against(2, 5) + Matched(6) + Against(2, 5) + "try drop read!\n" + TurnLine(6) +
                         Cleaned(6) + "After edge clean: 6\nAfter short read clean: 3\t1\nrecheck!\n" + Against(2, 2) +
                         "try another node!\ndrop node: 6\n" + Against(0, 1));
}

// ---- the final acceptance ------------------------------------------------------------------------------------------

TEST_F(GetLastAcceptance, TwoAndMoreAgainstInASmallSetRefuseThePick) {
    Block block = RightBlock(false, kSix);
    block.Spoil(2, 6);
    block.Spoil(2, 7);
    EXPECT_EQ(Last(block, 1), -1);
    EXPECT_EQ(jum, 2);
    EXPECT_NE(Log().find("use max step: 6\n" + Against(2, 5)), std::string::npos);
}

// Forty-one others at steps of one base; the last one is the pick.
Block Crowd(int against) {
    std::vector<Candidate> candidates;
    for (int shared = 99; shared >= 58; shared--) candidates.push_back({shared});
    Block block = RightBlock(false, candidates);
    for (int read = 2; read < 2 + against; read++) block.Spoil(read, 43);
    return block;
}

TEST_F(GetLastAcceptance, FourAgainstInALargeSetAreTolerated) {
    Block block = Crowd(4);
    EXPECT_EQ(Last(block, 1), 43);
    EXPECT_EQ(Log(), Opening(1, 42) + Against(4, 41) + Matched(42) + Against(4, 41) + "Accept the unsupport!\n");
}

// Fifteen others: two of them are 0.13 and so below 0.22; three are 0.2 and too many.
TEST_F(GetLastAcceptance, LessThanThreeAgainstAreToleratedBelowTwentyTwoPercent) {
    for (int against : {2, 3}) {
        jum = 0;
        std::vector<Candidate> candidates;
        for (int shared = 90; shared >= 60; shared -= 2) candidates.push_back({shared});
        Block block = RightBlock(false, candidates);
        const int far = block.Num() - 1;
        // The far edge stays undecided, and all positions fit: the ladder ends with the first pick.
        for (int read : {2, 3, 4, 5}) block.matrix[read][far] = 40;
        for (int read = 2; read < 2 + against; read++) block.Spoil(read, far - 1);
        EXPECT_EQ(Last(block, 1), against == 2 ? far - 1 : -1);
    }
}

// Read 3 holds the pick, read 4, and ends with it. Read 2 ends ten bases earlier; its cell is below the pick's overlap,
// so that the case isn't the easy one.
Block Nested() {
    Block block = RightBlock(false, {{65, 70}, {55, 70}, {45, 60}});
    block.matrix[2][4] = 40;
    return block;
}

TEST_F(GetLastAcceptance, ALongerReadThatHoldsThePickIsTaken) {
    Block block = Nested();
    EXPECT_EQ(Last(block, 1), 3);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(1, 2) + Matched(3) + Against(0, 2) + "try long: 3\n" + Against(0, 2));
}

TEST_F(GetLastAcceptance, ALongerReadThatFailsIsNotTaken) {
    Block block = Nested();
    block.Spoil(2, 3);
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(1, 2) + Matched(3) + Against(0, 2) + "try long: 3\n" + Against(1, 2));
}

TEST_F(GetLastAcceptance, WithoutALongerReadThePickStands) {
    Block block = Nested();
    block.Mutate(3, 69);
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(Log(), Opening(1, 3) + Against(1, 2) + Matched(3) + Against(0, 2) + "try long: -1\n");
}

TEST_F(GetLastAcceptance, APickOfTheReadLengthIsLongEnough) {
    Block block = Nested();
    ReadLen = 60;
    EXPECT_EQ(Last(block, 1), 4);
    EXPECT_EQ(Log().find("try long: "), std::string::npos);
}

TEST_F(GetLastAcceptance, TwoCandidatesAreNoReasonToLookForALongerRead) {
    Block block = RightBlock(false, {{55, 70}, {45, 60}});
    block.matrix[2][3] = 40;
    EXPECT_EQ(Last(block, 1), 3);
    EXPECT_EQ(Log(), Opening(1, 2) + Against(1, 1) + Matched(2) + Against(0, 1));
}

TEST_F(GetLastAcceptance, AnEmptyPickEndsTheProcess) {
    Block block = RightBlock(true, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 3, 4}) block.Mutate(read, 0);
    block.reads[4].seq.clear();
    // No easy case: the links are shorter than the pick's overlap.
    for (int read : {1, 2, 3}) block.matrix[read][4] = 40;
    EXPECT_EXIT(Last(block, 0), ::testing::ExitedWithCode(255), "^get long error!\n$");
}

}  // namespace
}  // namespace lintara::testing
