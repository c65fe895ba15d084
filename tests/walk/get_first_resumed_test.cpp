#include <gtest/gtest.h>

#include "walk/end_select_block.h"

namespace lintara::testing {
namespace {

using ResumedFirstEntry = EndSelectTest;
using ResumedFirstInner = EndSelectTest;
using ResumedFirstEdge = EndSelectTest;
using ResumedFirstAcceptance = EndSelectTest;

std::string Opening(int end, int size) {
    return "Reward for end: " + std::to_string(end) + "\t" + std::to_string(size) + "\tpos: 300\n";
}

/// From the entry to the first turn's line, for a pick that some are against.
std::string UpToTurn(int end, int size, int against) {
    return Opening(end, size) + EndSelectTest::Against(against, size - 1) + EndSelectTest::Matched(size) +
           "Pass position check!\n" + EndSelectTest::Against(against, size - 1) + "drop read!\n" +
           EndSelectTest::TurnLine(size);
}

/// A sequence that no read overlaps.
const std::string kOther = MadeUpBases(99, 100);

// The pick is the last of the six, read 6, and the walk stands on read 7, unless a test says otherwise.

TEST_F(ResumedFirstEntry, ASingleCandidateComesBackWithoutAnyLine) {
    Block block = LeftBlock(false, {{60}});
    SHORTOVERLAP[0] = true;
    EXPECT_EQ(ResumedFirst(block, 2, kOther), 1);
    EXPECT_EQ(Log(), "");
    EXPECT_TRUE(SHORTOVERLAP[0]);
}

TEST_F(ResumedFirstEntry, TheShortOverlapFlagStaysAsItWas) {
    for (bool flag : {false, true}) {
        SHORTOVERLAP[0] = flag;
        Block block = LeftBlock(
            false, flag ? std::vector<Candidate>{{90}, {80}, {70}} : std::vector<Candidate>{{45}, {40}, {35}});
        EXPECT_EQ(ResumedFirst(block, 4, kOther), 3);
        EXPECT_EQ(SHORTOVERLAP[0], flag);
    }
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2) + Opening(4, 3) + Against(0, 2));
}

TEST_F(ResumedFirstEntry, AnEmptySequenceDoesNotMatterInTheEasyCase) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    EXPECT_EQ(ResumedFirst(block, 4, ""), 3);
}

TEST_F(ResumedFirstEntry, OfFourCandidatesOneThatMatchesIsTakenWhateverItsPosition) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 4}) block.Mutate(read, 99);
    block.Spoil(4, 1);
    block.reads[3].pos -= 500;
    EXPECT_EQ(ResumedFirst(block, 5, kOther), 3);
    EXPECT_EQ(Log(), Opening(5, 4) + Against(1, 3) + Matched(1));
}

TEST_F(ResumedFirstEntry, OfFiveCandidatesOneThatMatchesIsNotEnough) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}, {50}});
    for (int read : {1, 2, 4, 5}) block.Mutate(read, 99);
    block.Spoil(5, 1);
    EXPECT_EQ(ResumedFirst(block, 6, kOther), -1);
    EXPECT_EQ(Log(), Opening(6, 5) + Against(1, 4) + Matched(1));
}

TEST_F(ResumedFirstEntry, OfFiveCandidatesNoMatchAsksForAnotherNode) {
    Block block = LeftBlock(false, {{90}, {80}, {70}, {60}, {50}});
    for (int read : {1, 2, 3, 4, 5}) block.Mutate(read, 99);
    block.Spoil(5, 1);
    EXPECT_EQ(ResumedFirst(block, 6, kOther), -1);
    EXPECT_TRUE(changenode);
}

TEST_F(ResumedFirstEntry, AnEdgeThatMatchesNoneOfFourIsSuspectAndAllComeBack) {
    Block block = LeftBlock(true, {{90}, {80}, {70}, {60}});
    for (int read : {1, 2, 3, 4}) block.Mutate(read, 99);
    block.Spoil(4, 2);
    EXPECT_EQ(ResumedFirst(block, 5, kOther), 3);
    EXPECT_FALSE(changenode);
    EXPECT_TRUE(clean);
    // The longest step is tested as a shortest one: its changed last base is part of each link, so all are against it.
    EXPECT_EQ(Log(), Opening(5, 4) + Against(1, 3) + Matched(0, true) +
                         "contig edge has mistakes!\naccept recover! do not use full match drop!\n"
                         "Pass position check!\n" +
                         Against(1, 3) + "drop read!\n" + TurnLine(4) + "After seq clean: 4\nchange to find a max \n" +
                         Against(3, 3) + "drop node: 4\n" + Against(0, 2));
}

TEST_F(ResumedFirstEntry, PicksOutOfPositionAreDroppedDownToThePair) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    block.reads[3].pos -= 50;
    EXPECT_EQ(ResumedFirst(block, 4, kOther), 2);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2) + Matched(3) + "Pass position check!\n" + Against(0, 1));
}

TEST_F(ResumedFirstEntry, OutOfPositionDownToTheMinimumGivesNoRead) {
    Block block = LeftBlock(false, {{30}, {30}, {50}});
    block.reads[3].pos -= 50;
    EXPECT_EQ(ResumedFirst(block, 4, kOther), -1);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2) + Matched(3));
}

TEST_F(ResumedFirstEntry, TheLastOfAPairInPositionStopsTheWalkAllTheSame) {
    Block block = LeftBlock(false, {{90}, {80}});
    block.reads[2].pos -= 50;
    EXPECT_EQ(ResumedFirst(block, 3, kOther), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(3, 2) + Against(0, 1) + Matched(2) + "Pass position check!\n");
}

TEST_F(ResumedFirstEntry, NoReadInPositionGivesNoRead) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    block.reads[1].pos += 50;
    block.reads[2].pos -= 50;
    block.reads[3].pos -= 50;
    EXPECT_EQ(ResumedFirst(block, 4, kOther), -1);
    EXPECT_FALSE(changenode);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(0, 2) + Matched(3) + "No read passed position check!\n");
}

TEST_F(ResumedFirstEntry, APickThatAllAreAgainstIsDropped) {
    Block block = LeftBlock(false, {{90}, {80}, {70}});
    block.Spoil(3, 1);
    block.Spoil(3, 2);
    EXPECT_EQ(ResumedFirst(block, 4, kOther), 2);
    EXPECT_EQ(Log(), Opening(4, 3) + Against(2, 2) + Matched(3) + "Pass position check!\n" + Against(2, 2) +
                         "try another node!\ndrop node: 3\n" + Against(0, 1));
}

// ---- inside the gap ------------------------------------------------------------------------------------------------

TEST_F(ResumedFirstInner, AllCleansRunInTurnAndThePositionDropEndsTheLadder) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 6);
    EXPECT_EQ(jum, 1);
    EXPECT_FALSE(clean);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After long read clean: 6\nAfter edge clean: 6\nAfter seq clean: 6\nAfter pos drop: 6\n");
}

TEST_F(ResumedFirstInner, NearTheEdgeTheEdgeAndTheSequenceAreLeftOut) {
    jum = 0;
    Block block = LeftBlock(false, kSix);
    for (int read : {1, 2, 3, 4, 5, 6}) block.matrix[0][read] = 40;
    block.Spoil(6, 1);
    EXPECT_EQ(ResumedFirst(block, 7, block.reads[1].seq), 6);
    EXPECT_EQ(jum, 0);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "After long read clean: 6\nAfter pos drop: 6\n");
}

TEST_F(ResumedFirstInner, AfterTheFullMatchCleanThePickIsRecheckedOnly) {
    Block block = LeftBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 6);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6, 5) + "recheck!\n" + Against(0, 4));
}

TEST_F(ResumedFirstInner, AFailedRecheckGoesStraightToTheMaxStep) {
    Block block = LeftBlock(false, kSix);
    for (int read : {2, 3, 4, 5, 6}) block.Spoil(read, 1);
    block.Spoil(6, 2);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 2);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6, 5) + "recheck!\n" + Against(1, 4) + "drop read!\n" + Against(1, 4) +
                         TurnLine(5) +
                         "After long read clean: 5\nAfter edge clean: 5\nAfter seq clean: 5\nAfter pos drop: 5\n");
}

TEST_F(ResumedFirstInner, APickThatNearlyAllAreAgainstGoesOnToTheMaxStepToo) {
    std::vector<Candidate> candidates = {{97, 101}};
    for (int shared = 95; shared >= 40; shared -= 5) candidates.push_back({shared});
    Block block = LeftBlock(false, candidates);
    for (int read = 2; read <= 13; read++) block.Spoil(read, 1);
    for (int read = 3; read <= 12; read++) block.Spoil(13, read);
    EXPECT_EQ(ResumedFirst(block, 14, kOther), 2);
    EXPECT_EQ(Log(), UpToTurn(14, 13, 10) + Cleaned(13, 12) + "recheck!\n" + Against(10, 11) + "try another node!\n" +
                         Against(0, 11));
}

TEST_F(ResumedFirstInner, LongReadsLeaveInEveryStepMode) {
    for (int mode : {0, 1}) {
        jum = mode;
        Block block = LeftBlock(false, {{90}, {80}, {70}, {60}, {50}, {40, 150}});
        block.Spoil(5, 1);
        EXPECT_EQ(ResumedFirst(block, 7, kOther), 1);
        EXPECT_EQ(NewLog(), UpToTurn(7, 6, 1) + Cleaned(6) + "After long read clean: 5\nrecheck!\n" + Against(1, 4) +
                                "drop read!\n" + Against(1, 4) + TurnLine(5) +
                                (mode == 1 ? "After edge clean: 5\nAfter seq clean: 5\n" : "") + "After pos drop: 5\n");
    }
}

TEST_F(ResumedFirstInner, CandidatesAtTheEdgeLeave) {
    Block block = LeftBlock(false, kSix);
    block.matrix[0][1] = 40;
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 6);
    EXPECT_EQ(accept, (std::vector<int>{3, 4, 5, 6}));
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 4\nrecheck!\n" +
                         Against(0, 3));
}

TEST_F(ResumedFirstInner, AllCandidatesAtTheEdgeGiveNoRead) {
    Block block = LeftBlock(false, kSix);
    for (int read : {1, 2, 3, 4, 5, 6}) block.matrix[0][read] = 40;
    block.Spoil(6, 1);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), -1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 0\n");
}

// Shares the last 14 bases of read 1, and 4 of read 2, which are less than a seed.
std::string RepeatOfRead1() {
    Block block;
    block.Cut(376, 100);
    return block.reads[0].seq;
}

TEST_F(ResumedFirstInner, CandidatesThatRepeatTheSequenceLeaveWithTheirPerfectPartners) {
    Block block = LeftBlock(false, kSix);
    for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
    EXPECT_EQ(ResumedFirst(block, 7, RepeatOfRead1()), 6);
    EXPECT_EQ(accept, (std::vector<int>{3, 4, 5, 6}));
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After long read clean: 6\nAfter edge clean: 6\nAfter seq clean: 4\nrecheck!\n" +
                         Against(0, 3));
}

TEST_F(ResumedFirstInner, AllCandidatesThatRepeatTheSequenceGiveNoRead) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    EXPECT_EQ(ResumedFirst(block, 7, block.reads[3].seq), -1);
    EXPECT_TRUE(accept.empty());
    EXPECT_EQ(Log(),
              UpToTurn(7, 6, 1) + Cleaned(6) + "After long read clean: 6\nAfter edge clean: 6\nAfter seq clean: 0\n");
}

TEST_F(ResumedFirstInner, ThePositionDropIsFollowedByMinAndMaxAndEndsTheLadderTheSecondTime) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 1);
    block.reads[2].pos = 301;
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 1);
    EXPECT_EQ(jum, 1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After long read clean: 6\nAfter edge clean: 6\nAfter seq clean: 6\nAfter pos drop: 5\n"
                         "recheck!\n" +
                         Against(1, 4) + "drop read!\ntry min!\n" + Against(1, 4) + "drop read!\ntry max!\n" +
                         Against(1, 4) + TurnLine(5));
}

TEST_F(ResumedFirstInner, APickThatPassesThePositionRecheckIsTaken) {
    Block block = LeftBlock(false, kSix);
    block.Spoil(6, 2);
    block.reads[2].pos = 301;
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 6);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 1) + Cleaned(6) +
                         "After long read clean: 6\nAfter edge clean: 6\nAfter seq clean: 6\nAfter pos drop: 5\n"
                         "recheck!\n" +
                         Against(0, 4));
}

// The pick starts right of the walk's read by its estimated position, yet near enough to where its overlap puts it.
Block PickOutOfDropRange() {
    Block block = LeftBlock(false, {{99}, {98}, {97}, {96}, {95}});
    block.reads[5].pos = 301;
    return block;
}

TEST_F(ResumedFirstInner, TheMinStepTestsThePickThatHasLeft) {
    Block block = PickOutOfDropRange();
    block.Spoil(5, 1);
    block.Spoil(5, 2);
    block.Spoil(5, 3);
    EXPECT_EQ(ResumedFirst(block, 6, kOther), 1);
    // All others are against it, which does not end the turn here.
    EXPECT_EQ(Log(), UpToTurn(6, 5, 3) + Cleaned(5) +
                         "After long read clean: 5\nAfter edge clean: 5\nAfter seq clean: 5\nAfter pos drop: 4\n"
                         "try min!\n" +
                         Against(3, 3) + "try another node!\ntry max!\n" + Against(0, 3));
}

TEST_F(ResumedFirstInner, AMinStepThatPassesIsTakenAfterThePickHasLeft) {
    Block block = PickOutOfDropRange();
    // The one against it leaves by its position, too.
    block.Spoil(5, 1);
    block.reads[1].pos = 301;
    EXPECT_EQ(ResumedFirst(block, 6, kOther), 5);
    EXPECT_EQ(accept, (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(Log(), UpToTurn(6, 5, 1) + Cleaned(5) +
                         "After long read clean: 5\nAfter edge clean: 5\nAfter seq clean: 5\nAfter pos drop: 3\n"
                         "try min!\n" +
                         Against(0, 2));
}

// ---- at the after edge ---------------------------------------------------------------------------------------------

TEST_F(ResumedFirstEdge, TheMaxPickIsTheLongestStepAndIsAcceptedAsMore) {
    for (int mode : {0, 1}) {
        jum = mode;
        Block block = LeftBlock(true, kSix);
        block.Spoil(6, 1);
        EXPECT_EQ(ResumedFirst(block, 7, kOther), 6);
        EXPECT_EQ(NewLog(), UpToTurn(7, 6, 1) + Cleaned(6) + "After seq clean: 6\nchange to find a max \n" +
                                Against(1, 5) + TurnLine(6) + "accept more!\n");
    }
}

TEST_F(ResumedFirstEdge, ALongestStepThatManyAreAgainstGivesWayToTheNext) {
    Block block = LeftBlock(true, kSix);
    block.Spoil(6, 1);
    block.Spoil(6, 2);
    EXPECT_EQ(ResumedFirst(block, 7, kOther), 5);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) + "After seq clean: 6\nchange to find a max \n" + Against(2, 5) +
                         TurnLine(6) + Against(0, 4));
}

TEST_F(ResumedFirstEdge, TheNextIsTriedOnce) {
    Block block = LeftBlock(true, kSix);
    for (int read : {1, 2}) {
        block.Spoil(6, read);
        block.Spoil(5, read);
    }
    EXPECT_EQ(ResumedFirst(block, 7, kOther), -1);
    EXPECT_EQ(Log(), UpToTurn(7, 6, 2) + Cleaned(6) + "After seq clean: 6\nchange to find a max \n" + Against(2, 5) +
                         TurnLine(6) + Against(2, 4) + "drop read!\n" + TurnLine(5));
}

TEST_F(ResumedFirstEdge, CandidatesThatRepeatTheSequenceLeave) {
    for (int mode : {0, 1}) {
        jum = mode;
        Block block = LeftBlock(true, kSix);
        for (int read : {3, 4, 5, 6}) block.Spoil(read, 1);
        EXPECT_EQ(ResumedFirst(block, 7, RepeatOfRead1()), 6);
        EXPECT_EQ(NewLog(), UpToTurn(7, 6, 1) + Cleaned(6) + "After seq clean: 4\nrecheck!\n" + Against(0, 3));
    }
}

// ---- the final acceptance ------------------------------------------------------------------------------------------

Block Nested() {
    Block block = LeftBlock(false, {{65, 70}, {62, 66}, {55, 70}, {45, 60}});
    block.matrix[4][3] = 60;
    block.matrix[4][1] = 40;
    return block;
}

std::string NestedUpToLong() {
    return Opening(5, 4) + EndSelectTest::Against(1, 3) + EndSelectTest::Matched(4) + "Pass position check!\n" +
           EndSelectTest::Against(0, 3) + "try long: ";
}

TEST_F(ResumedFirstAcceptance, ALongerReadThatHoldsThePickIsTakenWhateverItsPosition) {
    Block block = Nested();
    block.reads[3].pos -= 50;
    EXPECT_EQ(ResumedFirst(block, 5, kOther), 3);
    EXPECT_EQ(Log(), NestedUpToLong() + "3\n" + Against(0, 3) + "Using long!\n");
}

TEST_F(ResumedFirstAcceptance, ALongerReadThatFailsIsNotTaken) {
    Block block = Nested();
    block.Spoil(3, 1);
    EXPECT_EQ(ResumedFirst(block, 5, kOther), 4);
    EXPECT_EQ(Log(), NestedUpToLong() + "3\n" + Against(1, 3));
}

TEST_F(ResumedFirstAcceptance, WithoutALongerReadThePickStands) {
    Block block = Nested();
    block.Mutate(3, 0);
    EXPECT_EQ(ResumedFirst(block, 5, kOther), 4);
    EXPECT_EQ(Log(), NestedUpToLong() + "-1\n");
}

}  // namespace
}  // namespace lintara::testing
