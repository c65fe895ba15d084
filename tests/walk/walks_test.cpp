#include "walk/walks.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "run/settings.h"
#include "support/thread_streams.h"
#include "walk/small_block.h"

namespace lintara::testing {
namespace {

// All reads are of 100 bases from nowhere. So a set of candidates is settled by the matrix alone: candidates that are
// linked with the pick agree, and those that are not fall to the comparison base by base, which asks for the last step
// to be replaced. The pick is the candidate of the smallest overlap.
//
// Where a read x overlaps the walk's read by n bases and the pick p does by k, their link is 100 + k - n.

// ---- the log of the parts that a walk calls ------------------------------------------------------------------------

std::string Clean(int before, int after) {
    return "Before clean: " + std::to_string(before) + "\nafter clean: " + std::to_string(after) + "\n";
}
std::string Clean(int size) {
    return Clean(size, size);
}
std::string PosLeft(int size) {
    return "After pos clean, left accept: " + std::to_string(size) + "\n";
}
std::string Agreed() {
    return "un accept num: 0\tratio: 0\n";
}
/// All candidates differ from the read the walk stands on.
std::string Refused(int against, const std::string& ratio) {
    return "un accept num: " + std::to_string(against) + "\tratio: " + ratio +
           "\nAfter full match drop: 0\tchangenode: 1\n";
}
/// The two of a pair have no link.
std::string Refused() {
    return Refused(1, "1");
}
std::string Right(int start, int size, int pos) {
    return "short over check!\nNot short over! \nForward for end: " + std::to_string(start) + "\t" +
           std::to_string(size) + "\tpos: " + std::to_string(pos) + "\n";
}
std::string ResumedLeft(int end, int size, int pos) {
    return "Reward for end: " + std::to_string(end) + "\t" + std::to_string(size) + "\tpos: " + std::to_string(pos) +
           "\n";
}
std::string Left(int end, int size, int pos) {
    return "short over check!\nNot short over! " + std::to_string(size) + "\n" + ResumedLeft(end, size, pos);
}

class Walks : public ThreadStreamsTest {
  protected:
    static constexpr int kGap = 1000;  // 14 steps of 70 bases

    /// num reads of 100 bases; the before edge is read 0, the after edge the last, at the gap's length.
    void Build(int num, int gap_length = kGap) {
        num_ = num;
        matrix_ = std::make_unique<SmallMatrix>(num);
        reads_ = Unrelated(num, 100);
        reads_[0].pos = -100;
        reads_[static_cast<std::size_t>(num - 1)].pos = gap_length;
    }
    void Link(int a, int b, int overlap) { (*matrix_)[a][b] = static_cast<std::uint8_t>(overlap); }
    int Cell(int a, int b) { return (*matrix_)[a][b]; }
    void Place(int read, int pos) { reads_[static_cast<std::size_t>(read)].pos = pos; }
    int Pos(int read) const { return reads_[static_cast<std::size_t>(read)].pos; }
    void SetBases(int read, const std::string& seq) { reads_[static_cast<std::size_t>(read)].seq = seq; }

    bool Forward(int pos = 0) {
        path_.clear();
        return forward(reads_, path_, matrix_->rows, static_cast<std::uint16_t>(num_), pos, 3, cycled_, ER_, 0);
    }
    bool Reward(int pos) {
        path_.clear();
        return reward(reads_, path_, matrix_->rows, static_cast<std::uint16_t>(num_), pos, 3, ER_, 0);
    }
    bool Reward() { return Reward(num_ - 1); }
    void Resume(const std::vector<int>& so_far, int pos) {
        path_ = so_far;
        reward(reads_, path_, matrix_->rows, static_cast<std::uint16_t>(num_), pos, 3, RandomBases(60, 5), false, 0);
    }

    static std::string ForwardLog(const std::string& steps, int size, int pos = 0) {
        return "start forward assembly...\n" + steps + "Forward from " + std::to_string(pos) +
               " start vector get finished, with size " + std::to_string(size) + "\n";
    }
    std::string RewardLog(const std::string& steps, int size, int noreadbreak, int pos = -1) const {
        return "start reward assembly...\t" + std::to_string(num_) + "\n" + steps + "Reward from " +
               std::to_string(pos == -1 ? num_ - 1 : pos) + " end vector get finished, with size " +
               std::to_string(size) + "no read: " + std::to_string(noreadbreak) + "\n";
    }
    std::string ResumedLog(const std::string& steps, int size, int pos) const {
        return "start continued reward assembly...\t" + std::to_string(num_) + "\n" + steps + "Reward from " +
               std::to_string(pos) + " end vector get finished, with size " + std::to_string(size) + "\n";
    }

    using Path = std::vector<int>;
    int num_ = 0;
    std::unique_ptr<SmallMatrix> matrix_;
    std::vector<Read> reads_;
    Path path_;
    bool cycled_ = false;
    bool ER_ = false;
};

using ForwardWalk = Walks;
using RewardWalk = Walks;
using ResumedRewardWalk = Walks;

// ---- to the right: the top of a turn -------------------------------------------------------------------------------

TEST_F(ForwardWalk, TwoStepsWithOneCandidateEndTheWalk) {
    Build(5);
    Link(0, 1, 60);
    Link(1, 2, 60);
    Link(2, 3, 60);
    Place(1, -60);
    Place(2, -20);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(1), 2));
    EXPECT_FALSE(ER_);
    EXPECT_FALSE(cycled_);
}

TEST_F(ForwardWalk, OneCandidateOutOfPositionIsRefused) {
    Build(4);
    Link(0, 1, 60);
    Place(1, -10);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0}));
    EXPECT_EQ(Pos(1), -10);
    EXPECT_EQ(Log(), ForwardLog(Clean(1), 1));
}

TEST_F(ForwardWalk, OverlapsBelowTheMinimumAreNoCandidates) {
    Build(4);
    Link(0, 1, 29);
    Place(1, -29);
    Forward();
    EXPECT_EQ(path_, (Path{0}));
    Link(0, 1, 30);
    Forward();
    EXPECT_EQ(path_, (Path{0, 1}));
}

TEST_F(ForwardWalk, FirstStepFixesThePositionToTheBeforeEdge) {
    Build(4);
    Link(0, 1, 60);
    Link(1, 2, 60);
    Place(1, -11);
    Place(2, -25);
    Forward();
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_EQ(Pos(0), -100);
    EXPECT_EQ(Pos(1), -60);
    EXPECT_EQ(Pos(2), -25) << "only the first step's read";
}

TEST_F(ForwardWalk, FarEdgeKeepsItsPositionAndEndsTheWalk) {
    Build(3, -20);
    Link(0, 1, 70);
    Link(0, 2, 40);
    Link(1, 2, 70);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 2}));
    EXPECT_EQ(Pos(2), -20);
    EXPECT_EQ(Log(), ForwardLog("Meet last read!\n" + Clean(2) + Right(0, 2, -100) + Agreed(), 2));
}

TEST_F(ForwardWalk, FirstStepWithoutAnyCandidateRaisesER) {
    Build(4);
    SHORTOVERLAP[0] = true;
    cycled_ = true;
    EXPECT_TRUE(Forward());
    EXPECT_TRUE(ER_);
    EXPECT_FALSE(cycled_);
    EXPECT_FALSE(SHORTOVERLAP[0]);
    EXPECT_EQ(path_, (Path{0})) << "only the seed: no walk";
    EXPECT_EQ(Log(), ForwardLog("Before ERgap!\n" + Clean(0), 1));
}

TEST_F(ForwardWalk, LaterDeadEndLeavesERAlone) {
    Build(4);
    Link(0, 1, 60);
    Place(1, -60);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_FALSE(ER_);
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(0), 2));
    ER_ = true;
    Forward();
    EXPECT_TRUE(ER_);
}

TEST_F(ForwardWalk, ReadMetASecondTimeEndsTheWalkAndIsNotAddedAgain) {
    Build(5);
    Link(0, 1, 90);
    Link(1, 2, 80);
    Link(1, 3, 90);
    Link(2, 1, 80);
    Link(2, 3, 90);
    Link(3, 2, 90);
    Link(3, 1, 90);
    Place(1, -90);
    Place(2, -110);
    EXPECT_FALSE(Forward());
    EXPECT_TRUE(cycled_);
    EXPECT_EQ(path_, (Path{0, 1, 2}));
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(2) + Right(1, 2, -90) + Agreed() + Clean(2) + Right(2, 2, -110) +
                                    Agreed() + "start repeat in the nodes!\t1\n",
                                3));
}

TEST_F(ForwardWalk, NineOfTenAreNotEnoughToTakeTheFarEdge) {
    // A gap of 0 bases; the far edge is the smallest overlap and so the pick of the ordinary step.
    Build(11, 0);
    for (int i = 1; i <= 9; ++i) {
        Link(0, i, 60);
        Link(i, 10, 71);
    }
    Link(0, 10, 31);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 10}));
    EXPECT_EQ(Log(), ForwardLog("Meet last read!\n" + Clean(10) + Right(0, 10, -100) + Agreed(), 2));
}

TEST_F(ForwardWalk, TenOfElevenTakeTheFarEdge) {
    Build(12, 0);
    for (int i = 1; i <= 10; ++i) {
        Link(0, i, 60);
        Link(i, 11, 71);
    }
    Link(0, 11, 31);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 11}));
    EXPECT_EQ(Log(), ForwardLog("Meet last read!\nAccept the last!\t10\t11\n", 2));
}

TEST_F(ForwardWalk, PositionsAreCleanedFromFiveCandidatesInAGapLongerThanARead) {
    for (const int gap_length : {101, 100}) {
        for (const int candidates : {5, 4}) {
            Build(7, gap_length);
            for (int i = 1; i <= candidates; ++i) {
                Link(0, i, 60);
                if (i > 1) Link(i, 1, 60);
                Place(i, 500);
            }
            Forward();
            const std::string log = NewLog();
            EXPECT_EQ(log.find(Clean(candidates) + PosLeft(0)) != std::string::npos,
                      gap_length == 101 && candidates == 5)
                << log;
        }
    }
}

TEST_F(ForwardWalk, AllOutOfPositionIsADeadEndAndNoER) {
    Build(7);
    for (int i = 1; i <= 5; ++i) {
        Link(0, i, 60);
        if (i > 1) Link(i, 1, 60);
        Place(i, 500);
    }
    EXPECT_TRUE(Forward());
    EXPECT_FALSE(ER_);
    EXPECT_EQ(Log(), ForwardLog(Clean(5) + PosLeft(0), 1));
}

// ---- to the right: several candidates ------------------------------------------------------------------------------

TEST_F(ForwardWalk, StepAmongSeveralAllowsAnotherSingleStep) {
    // One candidate, then two, then one; only the next single step is one too many.
    Build(7);
    Link(0, 1, 60);
    Link(1, 2, 40);
    Link(1, 3, 70);
    Link(3, 2, 70);
    Link(2, 4, 60);
    Link(4, 5, 60);
    Place(1, -60);
    Place(2, 0);
    Place(4, 40);
    Place(5, 80);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 1, 2, 4}));
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(2) + Right(1, 2, -60) + Agreed() + Clean(1) + Clean(1), 4));
}

TEST_F(ForwardWalk, NoPickOfTwoCountsAsReadsRunOut) {
    Build(4);
    Link(0, 1, 30);
    Link(0, 2, 30);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(path_, (Path{0}));
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + "short over check!\nNot short over! \n", 1));
}

TEST_F(ForwardWalk, NoPickOfThreeIsARefusal) {
    Build(5);
    for (int i = 1; i <= 3; ++i) Link(0, i, 30);
    Link(1, 2, 60);
    Link(2, 3, 60);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0}));
    EXPECT_TRUE(SHORTOVERLAP[0]);
    EXPECT_EQ(Log(), ForwardLog(Clean(3) + "short over check!\nIs short over! \nAfter short over drop: 3\n", 1));
}

TEST_F(ForwardWalk, ReplacementOfTheFirstStepIsRefused) {
    Build(4);
    Link(0, 1, 40);
    Link(0, 2, 70);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0}));
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + Right(0, 2, -100) + Refused(), 1));
}

TEST_F(ForwardWalk, NoStepIsReplacedInAGapUpToTheReadLength) {
    for (const int gap_length : {100, 101}) {
        Build(5, gap_length);
        Link(0, 1, 60);
        Link(1, 2, 40);
        Link(1, 3, 70);
        Place(1, -60);
        const bool noreadbreak = Forward();
        const std::string steps = Clean(1) + Clean(2) + Right(1, 2, -60) + Refused();
        if (gap_length == 100) {
            EXPECT_FALSE(noreadbreak);
            EXPECT_EQ(path_, (Path{0, 1}));
            EXPECT_EQ(NewLog(), ForwardLog(steps, 2));
            EXPECT_EQ(Cell(0, 1), 60);
        } else {
            EXPECT_TRUE(noreadbreak) << "nothing is left in the place of the step";
            EXPECT_EQ(path_, (Path{0}));
            EXPECT_EQ(NewLog(), ForwardLog(steps + "cycle node!\n", 1));
            EXPECT_EQ(Cell(0, 1), 0) << "barred for good";
        }
    }
}

TEST_F(ForwardWalk, ShortOverlapsKeepTheStep) {
    // Three candidates of less than half a read, linked by too little to agree; without any link the clean would go
    // down to two, and two are never short.
    Build(6);
    Link(0, 1, 60);
    for (int i = 2; i <= 4; ++i) Link(1, i, 36 + i);
    Link(3, 4, 10);
    Link(2, 4, 10);
    Place(1, -60);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_EQ(Cell(0, 1), 60);
    // Read 3 disagrees with the pick, read 2, as does read 4.
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(3) +
                                    "short over check!\nIs short over! \nAfter short over drop: 3\n"
                                    "Forward for end: 1\t3\tpos: -60\n" +
                                    Refused(2, "1"),
                                2));
}

TEST_F(ForwardWalk, ReplacedStepTakesTheOneOtherWithoutAnyCheck) {
    Build(6);
    Link(0, 1, 40);
    Link(0, 2, 70);
    Link(2, 1, 70);
    Link(1, 3, 40);
    Link(1, 4, 70);
    Place(1, -40);
    Place(2, 700);  // far from its place, which is asked only of a choice or of a single step
    EXPECT_TRUE(Forward());
    // Read 2 leads to read 1 once more, and that step is barred, too.
    EXPECT_EQ(path_, (Path{0, 2}));
    EXPECT_EQ(Cell(0, 1), 0);
    EXPECT_EQ(Cell(0, 2), 70);
    EXPECT_EQ(Cell(2, 1), 0);
    EXPECT_EQ(Pos(2), -70) << "the first step, a second time";
    const std::string replaced = Clean(2) + Right(1, 2, -40) + Refused() + "cycle node!\n";
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + Right(0, 2, -100) + Agreed() + replaced + Clean(1) + replaced, 2));
}

TEST_F(ForwardWalk, ReplacedStepWithoutAPickEndsByTheNumberOfCandidates) {
    for (const int others : {2, 3}) {
        Build(7);
        Link(0, 1, 60);
        for (int i = 2; i <= 1 + others; ++i) {
            Link(0, i, 30);
            Link(1, i, 59 + i);
            if (i > 2) Link(2, i, 10);
        }
        Place(1, -60);
        EXPECT_EQ(Forward(), others == 2);
        EXPECT_EQ(path_, (Path{0}));
        const std::string log = NewLog();
        const std::string last = "cycle node!\n" + Clean(others) + "short over check!\n" +
                                 (others == 2 ? "Not short over! \n" : "Is short over! \nAfter short over drop: 3\n") +
                                 "Forward from 0 start vector get finished, with size 1\n";
        ASSERT_GE(log.size(), last.size());
        EXPECT_EQ(log.substr(log.size() - last.size()), last);
    }
}

TEST_F(ForwardWalk, ReplacementThatAsksForAReplacementIsARefusal) {
    Build(6);
    Link(0, 1, 60);
    Link(0, 2, 70);
    Link(0, 3, 80);
    Link(1, 2, 61);
    Link(1, 3, 62);
    Place(1, -60);
    EXPECT_FALSE(Forward());
    EXPECT_EQ(path_, (Path{0}));
    EXPECT_EQ(Log(), ForwardLog(Clean(3) + Right(0, 3, -100) + Agreed() + Clean(2) + Right(1, 2, -60) + Refused() +
                                    "cycle node!\n" + Clean(2) + Right(0, 2, -100) + Refused(),
                                1));
}

TEST_F(ForwardWalk, AsManyStepsAsReadsAreTheLimit) {
    // Reads 1 to 4 follow the edge and agree, but behind each of them nothing agrees, so each is taken back and makes
    // room for the next. Read 5 behind read 4 leads to the first three once more.
    Build(7);
    for (int i = 1; i <= 4; ++i) {
        Link(0, i, 50 + i);
        Place(i, -50);
        for (int j = i + 1; j <= 5; ++j) Link(i, j, 99 - i);
    }
    Link(0, 5, 95);
    for (int i = 1; i <= 3; ++i) Link(5, i, 55 + i);
    Place(5, -95);
    EXPECT_FALSE(Forward()) << "not for want of reads";
    EXPECT_EQ(path_, (Path{0, 4, 5})) << "the seventh step, to read 3, is chosen and not taken";
    const std::string behind1 = Clean(4) + Right(1, 4, -51) + Refused(4, "1.33333") + "cycle node!\n";
    const std::string behind2 = Clean(3) + Right(2, 3, -52) + Refused(3, "1.5") + "cycle node!\n";
    const std::string behind3 = Clean(2) + Right(3, 2, -53) + Refused() + "cycle node!\n";
    EXPECT_EQ(Log(), ForwardLog(Clean(5) + PosLeft(5) + Right(0, 5, -100) + Agreed() +              // to 1
                                    behind1 + Clean(4) + Right(0, 4, -100) + Agreed() +             // to 2
                                    behind2 + Clean(3) + Right(0, 3, -100) + Agreed() +             // to 3
                                    behind3 + Clean(2) + Right(0, 2, -100) + Agreed() + Clean(1) +  // to 4 and 5
                                    Clean(3) + Right(5, 3, -95) + Agreed() +                        // to 1
                                    behind1 + Clean(2) + Right(5, 2, -95) + Agreed() +              // to 2
                                    behind2,
                                3));
}

// ---- to the right: a dead end --------------------------------------------------------------------------------------

TEST_F(ForwardWalk, DeadEndBehindASingleOtherThatLeadsBackStays) {
    Build(4);
    Link(0, 1, 40);
    Link(0, 2, 70);
    Link(2, 1, 70);
    Place(1, -40);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_EQ(Cell(0, 1), 40);
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + Right(0, 2, -100) + Agreed() + Clean(0) +
                                    "change other node!\nnew start accept size: 1\n"
                                    "new start is meaningless, not change the node\n",
                                2));
}

TEST_F(ForwardWalk, DeadEndGivesWayToTheOneOther) {
    Build(6);
    Link(0, 1, 40);
    Link(0, 2, 70);
    Link(2, 1, 70);
    Link(2, 3, 60);
    Link(3, 1, 60);
    Place(1, -40);
    Place(2, 500);
    Place(3, -50);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(path_, (Path{0, 2, 3, 1}));
    EXPECT_EQ(Cell(0, 1), 0);
    EXPECT_EQ(Pos(2), -70);
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + Right(0, 2, -100) + Agreed() + Clean(0) +
                                    "change other node!\nnew start accept size: 2\n" + Clean(2) + Right(2, 2, -70) +
                                    Agreed() + Clean(1) + Clean(0),
                                4));
}

TEST_F(ForwardWalk, DeadEndAmongSeveralOthersTakesTheirPick) {
    for (const bool agree : {true, false}) {
        Build(5);
        Link(0, 1, 40);
        Link(0, 2, 70);
        Link(0, 3, 60);
        Link(2, 1, 70);
        Link(3, 1, 80);
        if (agree) Link(2, 3, 90);
        Place(1, -40);
        Place(3, -60);
        EXPECT_TRUE(Forward());
        EXPECT_EQ(path_, (Path{0, 1}));
        const std::string others = agree ? Agreed() +
                                               "Get a new start 3\nnew start accept size: 1\n"
                                               "new start is meaningless, not change the node\n"
                                         : Refused() + "Get a new start -1\n";
        EXPECT_EQ(NewLog(), ForwardLog(Clean(3) + Right(0, 3, -100) + Agreed() + Clean(0) + "change other node!\n" +
                                           Right(0, 2, -100) + others,
                                       2));
    }
}

TEST_F(ForwardWalk, OtherThatLeadsNowhereIsLeftAlone) {
    // Read 2 holds read 1 within it, so there is no link between the two, and neither leads on.
    Build(4);
    const std::string genome = RandomBases(160, 3);
    SetBases(0, genome.substr(0, 100));
    SetBases(1, genome.substr(50, 100));
    SetBases(2, genome.substr(40, 120));
    Link(0, 1, 50);
    Link(0, 2, 60);
    Place(1, -50);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(path_, (Path{0, 1}));
    EXPECT_EQ(Log(), ForwardLog(Clean(2) + Right(0, 2, -100) +
                                    "un accept num: 1\tratio: 1\nAfter full match drop: 2\tchangenode: 0\n" + Agreed() +
                                    Clean(0) + "change other node!\nnew start accept size: 0\n",
                                2));
}

TEST_F(ForwardWalk, DeadEndFarAlongTheGapIsTheEnd) {
    // 1000, 280, 210, 50 and -300 bases are 14, 4, 3, 0 and -4 steps; the walk stands at its third read.
    for (const int gap_length : {1000, 280, 210, 50, -300}) {
        Build(5, gap_length);
        Link(0, 1, 60);
        Link(1, 2, 40);
        Link(1, 3, 70);
        Link(3, 2, 70);
        Place(1, -60);
        Place(2, 0);
        EXPECT_TRUE(Forward());
        EXPECT_EQ(path_, (Path{0, 1, 2}));
        const std::string back = gap_length < 280 ? ""
                                                  : "change other node!\nnew start accept size: 1\n"
                                                    "new start is meaningless, not change the node\n";
        EXPECT_EQ(NewLog(), ForwardLog(Clean(1) + Clean(2) + Right(1, 2, -60) + Agreed() + Clean(0) + back, 3))
            << gap_length;
    }
}

TEST_F(ForwardWalk, DeadEndNextToTheEdgeIsLeftWhateverTheGap) {
    Build(4, 50);
    Link(0, 1, 40);
    Link(0, 2, 70);
    Link(2, 1, 70);
    Place(1, -40);
    EXPECT_TRUE(Forward());
    EXPECT_NE(Log().find("change other node!\n"), std::string::npos);
}

TEST_F(ForwardWalk, StepsOfNoLengthExpectTheFarEdgeAtOnce) {
    ReadLen = 30;
    Build(5);
    Link(0, 1, 60);
    Link(1, 2, 40);
    Link(1, 3, 70);
    Link(3, 2, 70);
    Place(1, -60);
    Place(2, 0);
    EXPECT_TRUE(Forward());
    EXPECT_EQ(Log(), ForwardLog(Clean(1) + Clean(2) + Right(1, 2, -60) + Agreed() + Clean(0), 3));
}

// ---- to the right: the end -----------------------------------------------------------------------------------------

TEST_F(ForwardWalk, FarEdgeClosesAPathOfMoreStepsThanExpected) {
    for (const int gap_length : {69, 70}) {
        for (const int overlap : {31, 30}) {
            Build(4, gap_length);
            Link(0, 1, 40);
            Link(0, 2, 70);
            Link(0, 3, overlap);
            EXPECT_FALSE(Forward());
            EXPECT_EQ(path_, gap_length == 69 && overlap == 31 ? (Path{0, 3}) : (Path{0}));
        }
    }
}

// ---- to the left: the top of a turn --------------------------------------------------------------------------------

TEST_F(RewardWalk, TwoStepsWithOneCandidateEndTheWalk) {
    Build(5);
    Link(3, 4, 60);
    Link(2, 3, 60);
    Link(1, 2, 60);
    Place(3, 995);
    Place(2, 920);
    SHORTOVERLAP[0] = true;
    EXPECT_FALSE(Reward());
    EXPECT_FALSE(SHORTOVERLAP[0]);
    EXPECT_EQ(path_, (Path{4, 3}));
    EXPECT_EQ(Pos(3), 995) << "no position is written";
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(1), 2, 0));
    EXPECT_FALSE(ER_);
}

TEST_F(RewardWalk, OneCandidateOutOfPositionIsRefused) {
    Build(4);
    Link(2, 3, 60);
    Place(2, 900);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{3}));
    EXPECT_EQ(Log(), RewardLog(Clean(1), 1, 0));
}

TEST_F(RewardWalk, OverlapsBelowTheMinimumAreNoCandidates) {
    Build(4);
    Link(2, 3, 29);
    Place(2, 930);
    Reward();
    EXPECT_EQ(path_, (Path{3}));
    Link(2, 3, 30);
    Reward();
    EXPECT_EQ(path_, (Path{3, 2}));
}

TEST_F(RewardWalk, BeforeEdgeEndsTheWalk) {
    Build(3);
    Link(0, 1, 60);
    Place(1, -60);
    EXPECT_FALSE(Reward(1));
    EXPECT_EQ(path_, (Path{1, 0}));
    EXPECT_EQ(Log(), RewardLog(Clean(1), 2, 0, 1));
}

TEST_F(RewardWalk, FirstStepWithoutAnyCandidateRaisesER) {
    Build(4);
    EXPECT_TRUE(Reward());
    EXPECT_TRUE(ER_);
    EXPECT_EQ(path_, (Path{3})) << "only the seed: no walk";
    EXPECT_EQ(Log(), RewardLog("After ER!\n" + Clean(0), 1, 1));
}

TEST_F(RewardWalk, LaterDeadEndLeavesERAlone) {
    Build(4);
    Link(2, 3, 60);
    Place(2, 960);
    EXPECT_TRUE(Reward());
    EXPECT_FALSE(ER_);
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(0), 2, 1));
    ER_ = true;
    Reward();
    EXPECT_TRUE(ER_);
}

TEST_F(RewardWalk, ReadMetASecondTimeEndsTheWalkAndIsNotAddedAgain) {
    Build(5);
    Link(3, 4, 90);
    Link(2, 3, 80);
    Link(1, 3, 90);
    Link(2, 1, 90);
    Link(3, 2, 80);
    Link(1, 2, 90);
    Link(3, 1, 90);
    Place(3, 990);
    Place(2, 1010);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{4, 3, 2}));
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(2) + Left(3, 2, 990) + Agreed() + "get end 2\n" + Clean(2) +
                                   Left(2, 2, 1010) + Agreed() + "get end 3\nend repeat exists in the nodes!\t3\n",
                               3, 0));
}

TEST_F(RewardWalk, AllOutOfPositionEndsTheWalk) {
    for (const int gap_length : {101, 100}) {
        for (const int candidates : {5, 4}) {
            Build(7, gap_length);
            for (int i = 1; i <= candidates; ++i) {
                Link(i, 6, 60);
                if (i > 1) Link(i, 1, 60);
                Place(i, 500);
            }
            const bool noreadbreak = Reward();
            EXPECT_FALSE(ER_);
            if (gap_length == 101 && candidates == 5) {
                EXPECT_FALSE(noreadbreak);
                EXPECT_EQ(NewLog(), RewardLog(Clean(5) + PosLeft(0) + "Position filter all!\n", 1, 0));
            } else {
                EXPECT_EQ(NewLog().find(PosLeft(0)), std::string::npos);
            }
        }
    }
}

// ---- to the left: several candidates -------------------------------------------------------------------------------

TEST_F(RewardWalk, TwoCandidatesAtTheEdgeEndTheWalkAtOnce) {
    Build(4);
    Link(1, 3, 40);
    Link(2, 3, 70);
    Link(1, 2, 70);
    Place(1, 940);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{3}));
    EXPECT_EQ(Log(), RewardLog(Clean(2), 1, 1));
}

TEST_F(RewardWalk, StepAmongSeveralAllowsAnotherSingleStep) {
    Build(7);
    Link(5, 6, 60);
    Link(4, 5, 40);
    Link(3, 5, 70);
    Link(4, 3, 70);
    Link(2, 4, 60);
    Link(1, 2, 60);
    Place(5, 960);
    Place(4, 900);
    Place(2, 860);
    Place(1, 820);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{6, 5, 4, 2}));
    EXPECT_EQ(Log(),
              RewardLog(Clean(1) + Clean(2) + Left(5, 2, 960) + Agreed() + "get end 4\n" + Clean(1) + Clean(1), 4, 0));
}

TEST_F(RewardWalk, NoPickOfTwoCountsAsReadsRunOut) {
    Build(5);
    Link(3, 4, 60);
    Link(1, 3, 30);
    Link(2, 3, 30);
    Place(3, 960);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(2) + "short over check!\nNot short over! 2\nget end -1\n", 2, 1));
}

TEST_F(RewardWalk, NoPickOfThreeIsARefusal) {
    Build(5);
    for (int i = 1; i <= 3; ++i) Link(i, 4, 30);
    Link(1, 2, 60);
    Link(2, 3, 60);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{4}));
    EXPECT_EQ(Log(),
              RewardLog(Clean(3) + "short over check!\nIs short over! \nAfter short over drop: 3\nget end -1\n", 1, 0));
}

TEST_F(RewardWalk, NoStepIsReplacedInAGapUpToTheReadLength) {
    for (const int gap_length : {100, 101}) {
        Build(6, gap_length);
        Link(4, 5, 60);
        Link(1, 4, 40);
        Link(2, 4, 70);
        Place(4, gap_length - 40);
        const bool noreadbreak = Reward();
        const std::string steps = Clean(1) + Clean(2) + Left(4, 2, gap_length - 40) + Refused() + "get end -1\n";
        if (gap_length == 100) {
            EXPECT_FALSE(noreadbreak);
            EXPECT_EQ(path_, (Path{5, 4}));
            EXPECT_EQ(NewLog(), RewardLog(steps, 2, 0));
            EXPECT_EQ(Cell(4, 5), 60);
        } else {
            EXPECT_TRUE(noreadbreak) << "nothing is left in the place of the step";
            EXPECT_EQ(path_, (Path{5}));
            EXPECT_EQ(NewLog(), RewardLog(steps + "cycle node!\n" + Clean(0), 1, 1));
            EXPECT_EQ(Cell(4, 5), 0) << "barred for good";
        }
    }
}

TEST_F(RewardWalk, ShortOverlapsKeepTheStep) {
    Build(6);
    Link(4, 5, 60);
    for (int i = 1; i <= 3; ++i) Link(i, 4, 37 + i);
    Link(3, 1, 10);
    Link(3, 2, 10);
    Place(4, 960);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{5, 4}));
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(3) +
                                   "short over check!\nIs short over! \nAfter short over drop: 3\n"
                                   "Reward for end: 4\t3\tpos: 960\n" +
                                   Refused(2, "1") + "get end -1\n",
                               2, 0));
}

/// Read 5 leads nowhere that agrees, and read 4 is the one read in its place. Its position is checked the other way
/// round: read 6, the end of the path, has to stand where its own overlap with read 4 on its right says.
class RewardReplacement : public Walks {
  protected:
    void BuildReplacement() {
        Build(8);
        Link(6, 7, 60);
        Link(5, 6, 40);
        Link(4, 6, 70);
        Link(5, 4, 70);
        Link(1, 5, 40);
        Link(2, 5, 70);
        Link(6, 4, 29);
        Place(6, 960);
        Place(5, 930);
    }
    static std::string ToReadFive() { return Clean(1) + Clean(2) + Left(6, 2, 960) + Agreed() + "get end 5\n"; }
    static std::string Replaced() { return Clean(2) + Left(5, 2, 930) + Refused() + "get end -1\ncycle node!\n"; }
};

TEST_F(RewardReplacement, OneOtherInItsPositionIsTaken) {
    BuildReplacement();
    Place(4, 1000);  // read 6 at 929, give or take half a read
    EXPECT_TRUE(Reward());
    // Read 4 leads to read 5 once more, and that step is barred, too.
    EXPECT_EQ(path_, (Path{7, 6, 4}));
    EXPECT_EQ(Cell(5, 6), 0);
    EXPECT_EQ(Cell(4, 6), 70);
    EXPECT_EQ(Cell(5, 4), 0);
    EXPECT_EQ(Log(), RewardLog(ToReadFive() + Replaced() + Clean(1) + Clean(1) + Replaced() + Clean(0), 3, 1));
}

TEST_F(RewardReplacement, OneOtherOutOfPositionHasTheNextStepReplaced) {
    BuildReplacement();
    Place(4, 931);  // read 6 at 860
    EXPECT_FALSE(Reward());
    // Without a link from the after edge back to read 6, that is out of position in its turn.
    EXPECT_EQ(path_, (Path{7}));
    EXPECT_EQ(Cell(5, 6), 0);
    EXPECT_EQ(Cell(6, 7), 60) << "barred is the step from the first read taken back, which there is none of";
    EXPECT_EQ(Log(), RewardLog(ToReadFive() + Replaced() + Clean(1) + "cycle node!\n" + Clean(1), 1, 0));
}

TEST_F(RewardReplacement, SeveralOthersThatDisagreeHaveTheNextStepReplaced) {
    // The forward walk would end at the first -1.
    BuildReplacement();
    Link(3, 6, 80);
    Link(5, 3, 60);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{7}));
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(3) + Left(6, 3, 960) + Agreed() + "get end 5\n" + Replaced() +
                                   Clean(2) + Left(6, 2, 960) + Refused() + "cycle node!\n" + Clean(1),
                               1, 0));
}

// ---- to the left: a dead end ---------------------------------------------------------------------------------------

TEST_F(RewardWalk, DeadEndAmongSeveralOthersTakesTheirPick) {
    for (const bool agree : {true, false}) {
        Build(6);
        Link(1, 5, 40);
        Link(2, 5, 70);
        Link(3, 5, 60);
        Link(1, 2, 70);
        Link(1, 3, 80);
        if (agree) Link(3, 2, 90);
        Place(1, 940);
        Place(3, 960);
        EXPECT_TRUE(Reward());
        EXPECT_EQ(path_, (Path{5, 1}));
        const std::string others = agree ? Agreed() +
                                               "Get a new end: 3\nnew end accept size: 1\n"
                                               "new end is meaningless, not change the node\n"
                                         : Refused() + "Get a new end: -1\n";
        EXPECT_EQ(NewLog(), RewardLog(Clean(3) + Left(5, 3, 1000) + Agreed() + "get end 1\n" + Clean(0) +
                                          "change other node!\t1\t5\naccept size: 2\n" + Left(5, 2, 1000) + others,
                                      2, 1));
    }
}

TEST_F(RewardWalk, DeadEndGivesWayToAnother) {
    Build(6);
    Link(1, 5, 40);
    Link(2, 5, 70);
    Link(3, 5, 60);
    Link(1, 2, 70);
    Link(1, 3, 80);
    Link(3, 2, 90);
    Link(4, 3, 60);
    Link(1, 4, 60);
    Place(1, 940);
    Place(3, 960);
    Place(4, 950);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{5, 3, 4, 1}));
    EXPECT_EQ(Cell(1, 5), 0);
    EXPECT_EQ(Log(), RewardLog(Clean(3) + Left(5, 3, 1000) + Agreed() + "get end 1\n" + Clean(0) +
                                   "change other node!\t1\t5\naccept size: 2\n" + Left(5, 2, 1000) + Agreed() +
                                   "Get a new end: 3\nnew end accept size: 2\nchange the node!\n" + Clean(2) +
                                   Left(3, 2, 960) + Agreed() + "get end 4\n" + Clean(1) + Clean(0),
                               4, 1));
}

TEST_F(RewardWalk, OtherThatLeadsNowhereIsLeftAlone) {
    Build(6);
    const std::string genome = RandomBases(180, 4);
    Link(4, 5, 60);
    SetBases(4, genome.substr(80, 100));
    SetBases(1, genome.substr(30, 100));
    SetBases(2, genome.substr(20, 120));
    Link(1, 4, 50);
    Link(2, 4, 60);
    Place(4, 960);
    Place(1, 910);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{5, 4, 1}));
    EXPECT_EQ(Log(), RewardLog(Clean(1) + Clean(2) + Left(4, 2, 960) +
                                   "un accept num: 1\tratio: 1\nAfter full match drop: 2\tchangenode: 0\n" + Agreed() +
                                   "position check passed!\t0\nget end 1\n" + Clean(0) +
                                   "change other node!\t1\t4\nnew end accept size: 0\n",
                               3, 1));
}

TEST_F(RewardWalk, DeadEndOfFiveReadsFarAlongTheGapIsTheEnd) {
    // A pair behind each read: 7, 5 and 3 are the picks, the reads below them the others.
    for (const int gap_length : {1000, 0}) {
        for (const bool five : {false, true}) {
            Build(10, gap_length);
            Link(8, 9, 60);
            Place(8, gap_length - 40);
            for (int end : {8, 7, 5}) {
                if (end == 5 && !five) continue;
                const int pick = end == 8 ? 7 : end - 2;
                Link(pick, end, 40);
                Link(pick - 1, end, 70);
                Link(pick, pick - 1, 70);
                Place(pick, Pos(end) - 60);
            }
            EXPECT_TRUE(Reward());
            EXPECT_EQ(path_, five ? (Path{9, 8, 7, 5, 3}) : (Path{9, 8, 7, 5}));
            const std::string log = NewLog();
            const std::string change = five ? "change other node!\t3\t5\n" : "change other node!\t5\t7\n";
            const bool goes_back = gap_length == 1000 || !five;
            EXPECT_EQ(log.find(change + "new end accept size: 1\nnew end is meaningless, not change the node\n") !=
                          std::string::npos,
                      goes_back)
                << log;
            EXPECT_EQ(log.find("change other node!") != std::string::npos, goes_back);
        }
    }
}

// ---- to the left: one candidate behind many ------------------------------------------------------------------------

/// The end read 7 has four candidates, 1 to 4, and the pick, read 1, has one, read 5.
class RewardBranch : public Walks {
  protected:
    /// @param lead  the end read is not the after edge but one step behind it
    void BuildBranch(bool lead, int gap_length, bool others_agree) {
        Build(lead ? 9 : 8, gap_length);
        if (lead) {
            Link(7, 8, 60);
            Place(7, gap_length - 40);
        }
        for (int i = 1; i <= 4; ++i) {
            Link(i, 7, 30 + 10 * i);
            Place(i, Pos(7) - 70 + 10 * i);
            if (i > 1) Link(1, i, 110 - 10 * i);
            if (i > 2 && others_agree) Link(2, i, 120 - 10 * i);
        }
        Link(5, 1, 60);
        Place(5, Pos(1) - 40);
    }
    std::string ToReadOne() const { return Clean(4) + Left(7, 4, Pos(7)) + Agreed() + "get end 1\n" + Clean(1); }
    std::string Tried() const { return "change other node!\naccept size: 3 for id: 7\n" + Left(7, 3, Pos(7)); }
};

TEST_F(RewardBranch, WithoutAPickTheSingleStepNeedsNoPosition) {
    BuildBranch(false, kGap, false);
    Place(5, 0);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{7, 1, 5}));
    EXPECT_EQ(Log(), RewardLog(ToReadOne() + Tried() + Refused(2, "1") + "Get a new end -1\n" + Clean(0), 3, 1));
}

TEST_F(RewardBranch, UselessBranchLendsItsReadToThePositionCheck) {
    // From read 2 at 950, without an overlap, read 5 should stand at 850; from read 1 it should stand at 900.
    for (const int pos : {880, 905}) {
        BuildBranch(false, kGap, true);
        Place(5, pos);
        EXPECT_EQ(Reward(), pos == 880);
        EXPECT_EQ(path_, pos == 880 ? (Path{7, 1, 5}) : (Path{7, 1}));
        const std::string steps = ToReadOne() + Tried() + Agreed() +
                                  "Get a new end 2\nnew end accept size: 1\nchange node is useless, not change!\n";
        EXPECT_EQ(NewLog(), pos == 880 ? RewardLog(steps + Clean(0), 3, 1) : RewardLog(steps, 2, 0));
        EXPECT_EQ(Cell(1, 7), 40);
    }
}

TEST_F(RewardBranch, BranchWithMoreCandidatesTakesThePlace) {
    BuildBranch(false, kGap, true);
    Link(6, 2, 60);
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{7}));
    EXPECT_EQ(Cell(1, 7), 0);
    EXPECT_EQ(Cell(2, 7), 0);
    // Read 2 fails in its turn, since its candidates disagree, and so do those that are left behind read 7.
    EXPECT_EQ(Log(),
              RewardLog(ToReadOne() + Tried() + Agreed() +
                            "Get a new end 2\nnew end accept size: 2\nchange the node!\n" + Clean(2) + Left(2, 2, 950) +
                            Refused() + "get end -1\ncycle node!\n" + Clean(2) + Left(7, 2, 1000) + Refused(),
                        1, 0));
}

TEST_F(RewardBranch, OthersAreCleanedByThePositionOfTheRead) {
    // Five others stand more than a third of a read right of read 1.
    Build(9);
    Link(1, 8, 40);
    Place(1, 940);
    for (int i = 2; i <= 6; ++i) {
        Link(i, 8, 73 + i);
        Link(1, i, 67 - i);
        Place(i, 973 + i);
    }
    Link(7, 1, 60);
    Place(7, 0);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{8, 1, 7}));
    EXPECT_EQ(Log(), RewardLog(Clean(6) + PosLeft(6) + Left(8, 6, 1000) + Agreed() + "get end 1\n" + Clean(1) +
                                   "change other node!\n" + PosLeft(0) + Clean(0),
                               3, 1));
}

TEST_F(RewardBranch, FarAlongTheGapItIsTriedNextToTheEdgeOnly) {
    for (const int gap_length : {kGap, 0}) {
        for (const bool lead : {false, true}) {
            BuildBranch(lead, gap_length, false);
            Reward();
            EXPECT_EQ(NewLog().find(Tried()) != std::string::npos, gap_length == kGap || !lead) << gap_length << lead;
            EXPECT_EQ(path_, lead ? (Path{8, 7, 1, 5}) : (Path{7, 1, 5}));
        }
    }
}

TEST_F(RewardBranch, ThreeCandidatesAreTooFewForIt) {
    BuildBranch(false, kGap, false);
    Link(4, 7, 0);
    EXPECT_TRUE(Reward());
    EXPECT_EQ(path_, (Path{7, 1, 5}));
    EXPECT_EQ(Log(), RewardLog(Clean(3) + Left(7, 3, 1000) + Agreed() + "get end 1\n" + Clean(1) + Clean(0), 3, 1));
}

// ---- to the left: the end ------------------------------------------------------------------------------------------

TEST_F(RewardWalk, BeforeEdgeClosesAPathOfMoreStepsThanExpected) {
    for (const int gap_length : {69, 70}) {
        for (const int overlap : {31, 30}) {
            Build(4, gap_length);
            Link(0, 3, overlap);
            Link(1, 3, 70);
            EXPECT_TRUE(Reward());
            EXPECT_EQ(path_, gap_length == 69 && overlap == 31 ? (Path{3, 0}) : (Path{3}));
        }
    }
}

TEST_F(RewardWalk, BeforeEdgeClosesNoPathThatWasRefused) {
    Build(4, 69);
    Link(0, 3, 40);  // a single candidate, out of its position
    EXPECT_FALSE(Reward());
    EXPECT_EQ(path_, (Path{3}));
}

// ---- to the left, resumed ------------------------------------------------------------------------------------------

TEST_F(ResumedRewardWalk, TwoStepsWithOneCandidateEndAndTheBeforeEdgeCloses) {
    Build(4);
    Link(1, 2, 60);
    Link(0, 1, 31);
    Place(2, 960);
    Place(1, 920);
    SHORTOVERLAP[0] = true;
    Resume({3}, 2);
    EXPECT_TRUE(SHORTOVERLAP[0]);
    EXPECT_EQ(path_, (Path{3, 2, 1, 0})) << "whatever the number of steps";
    EXPECT_EQ(Log(), ResumedLog(Clean(1) + Clean(1), 4, 2));
    Link(0, 1, 30);
    Resume({3}, 2);
    EXPECT_EQ(path_, (Path{3, 2, 1}));
}

TEST_F(ResumedRewardWalk, OneCandidateOutOfPositionIsRefused) {
    Build(4);
    Link(1, 2, 60);
    Place(2, 960);
    Resume({3}, 2);
    EXPECT_EQ(path_, (Path{3, 2}));
    EXPECT_EQ(Log(), ResumedLog(Clean(1), 2, 2));
}

TEST_F(ResumedRewardWalk, NoCandidateAtAllIsNoER) {
    Build(4);
    Resume({}, 3);
    EXPECT_EQ(path_, (Path{3}));
    EXPECT_FALSE(ER_);
    EXPECT_EQ(Log(), ResumedLog(Clean(0), 1, 3));
}

TEST_F(ResumedRewardWalk, ReadOfThePathEndsTheWalk) {
    Build(4);
    Link(0, 2, 50);
    Resume({3, 2}, 3);
    EXPECT_EQ(path_, (Path{3, 2, 0}));
    EXPECT_EQ(Log(), ResumedLog("end repeat exists in the nodes!\t3\n", 3, 3));
}

TEST_F(ResumedRewardWalk, BeforeEdgeEndsTheWalk) {
    Build(3);
    Link(1, 0, 60);
    Resume({2}, 0);
    EXPECT_EQ(path_, (Path{2, 0}));
    EXPECT_EQ(Log(), ResumedLog("", 2, 0));
}

TEST_F(ResumedRewardWalk, PathOfAllReadsTakesNoFurtherStep) {
    Build(3);
    Link(1, 2, 60);
    Resume({2, 1, 0}, 2);
    EXPECT_EQ(path_, (Path{2, 1, 0}));
    EXPECT_EQ(Log(), ResumedLog("", 3, 2));
}

TEST_F(ResumedRewardWalk, TwoCandidatesAtTheEdgeAreAChoice) {
    Build(4);
    Link(1, 3, 40);
    Link(2, 3, 70);
    Link(1, 2, 70);
    Place(1, 940);
    Resume({}, 3);
    EXPECT_EQ(path_, (Path{3, 1}));
    EXPECT_EQ(Cell(1, 3), 40);
    // Read 1 leads nowhere, and the one other leads back to it only.
    EXPECT_EQ(Log(), ResumedLog(Clean(2) + ResumedLeft(3, 2, 1000) + Agreed() + "get end 1\n" + Clean(0) +
                                    "change other node!\nGet a new end 2\nnew end accept size: 1\n"
                                    "change node is useless, not change!\n",
                                2, 3));
}

TEST_F(ResumedRewardWalk, StepAmongSeveralAllowsAnotherSingleStep) {
    Build(7);
    Link(5, 6, 60);
    Link(4, 5, 40);
    Link(3, 5, 70);
    Link(4, 3, 70);
    Link(2, 4, 60);
    Link(1, 2, 60);
    Place(5, 960);
    Place(4, 900);
    Place(2, 860);
    Place(1, 820);
    Resume({}, 6);
    EXPECT_EQ(path_, (Path{6, 5, 4, 2}));
    EXPECT_EQ(Log(),
              ResumedLog(Clean(1) + Clean(2) + ResumedLeft(5, 2, 960) + Agreed() + "get end 4\n" + Clean(1) + Clean(1),
                         4, 6));
}

TEST_F(ResumedRewardWalk, DeadEndGivesWayAndStepsAreReplacedUpToTheFirst) {
    Build(5);
    Link(1, 4, 40);
    Link(2, 4, 70);
    Link(1, 2, 70);
    Link(3, 2, 60);
    Place(1, 940);
    Place(2, 970);
    Resume({}, 4);
    EXPECT_EQ(path_, (Path{4}));
    EXPECT_EQ(Cell(1, 4), 0);
    EXPECT_EQ(Cell(2, 4), 0);
    EXPECT_EQ(Log(),
              ResumedLog(Clean(2) + ResumedLeft(4, 2, 1000) + Agreed() + "get end 1\n" + Clean(0) +
                             "change other node!\nGet a new end 2\nnew end accept size: 2\nchange the node!\n" +
                             Clean(2) + ResumedLeft(2, 2, 970) + Refused() + "get end -1\ncycle node!\n" + Clean(0),
                         1, 4));
}

TEST_F(ResumedRewardWalk, DeadEndAmongSeveralOthersTakesTheirPick) {
    Build(6);
    Link(1, 5, 40);
    Link(2, 5, 70);
    Link(3, 5, 60);
    Link(1, 2, 70);
    Link(1, 3, 80);
    Place(1, 940);
    Resume({}, 5);
    EXPECT_EQ(path_, (Path{5, 1}));
    EXPECT_EQ(Log(), ResumedLog(Clean(3) + ResumedLeft(5, 3, 1000) + Agreed() + "get end 1\n" + Clean(0) +
                                    "change other node!\n" + ResumedLeft(5, 2, 1000) + Refused() + "Get a new end -1\n",
                                2, 5));
}

TEST_F(ResumedRewardWalk, NothingHoldsAReplacementBackAndTheOneOtherNeedsNoPosition) {
    Build(6, 50);
    Link(4, 5, 60);
    Link(3, 5, 60);
    Link(1, 4, 40);
    Link(2, 4, 70);
    Place(4, 10);
    Place(3, 700);
    SHORTOVERLAP[0] = true;
    Resume({5}, 4);
    EXPECT_EQ(path_, (Path{5, 3}));
    EXPECT_EQ(Cell(4, 5), 0);
    EXPECT_EQ(Log(), ResumedLog(Clean(2) + ResumedLeft(4, 2, 10) + Refused() + "get end -1\ncycle node!\n" + Clean(1) +
                                    Clean(0),
                                2, 4));
}

TEST_F(ResumedRewardWalk, ReplacedStepAmongSeveralTakesTheirPick) {
    Build(7);
    Link(5, 6, 40);
    Link(4, 6, 70);
    Link(3, 6, 80);
    Link(5, 4, 70);
    Link(5, 3, 60);
    Link(4, 3, 90);
    Link(1, 5, 40);
    Link(2, 5, 70);
    Place(5, 940);
    Place(4, 970);
    Resume({}, 6);
    // Read 4 leads to read 5 once more, and with that step barred it leads nowhere.
    EXPECT_EQ(path_, (Path{6, 4}));
    EXPECT_EQ(Cell(5, 6), 0);
    EXPECT_EQ(Cell(5, 4), 0);
    const std::string replaced = Clean(2) + ResumedLeft(5, 2, 940) + Refused() + "get end -1\ncycle node!\n";
    EXPECT_EQ(Log(), ResumedLog(Clean(3) + ResumedLeft(6, 3, 1000) + Agreed() + "get end 5\n" + replaced + Clean(2) +
                                    ResumedLeft(6, 2, 1000) + Agreed() + Clean(1) + replaced + Clean(0),
                                2, 6));
}

TEST_F(ResumedRewardWalk, OneStepLessIsExpectedAndThePathMustBeLonger) {
    // 280 bases are 4 steps, 210 are 3. The walk stands at its third read: 3 is not above 4 less 1, but above 3 less 1.
    for (const int gap_length : {280, 210}) {
        Build(5, gap_length);
        Link(1, 3, 40);
        Link(2, 3, 70);
        Link(1, 2, 70);
        Place(3, 240);
        Place(1, 180);
        Resume({4}, 3);
        EXPECT_EQ(path_, (Path{4, 3, 1}));
        const std::string back = gap_length == 210 ? ""
                                                   : "change other node!\nGet a new end 2\nnew end accept size: 1\n"
                                                     "change node is useless, not change!\n";
        EXPECT_EQ(NewLog(),
                  ResumedLog(Clean(2) + ResumedLeft(3, 2, 240) + Agreed() + "get end 1\n" + Clean(0) + back, 3, 3));
    }
}

TEST_F(ResumedRewardWalk, PositionsAreCleanedFromTenCandidatesInAGapOfMoreThanTwoReads) {
    for (const int gap_length : {201, 200}) {
        for (const int candidates : {10, 9}) {
            Build(13, gap_length);
            for (int i = 1; i <= candidates; ++i) {
                Link(i, 12, 60);
                if (i > 1) Link(i, 1, 60);
                Place(i, 500);
            }
            Resume({}, 12);
            if (gap_length == 201 && candidates == 10) {
                EXPECT_EQ(NewLog(), ResumedLog(Clean(10) + PosLeft(0) + "Position filter all!\n", 1, 12));
            } else {
                EXPECT_EQ(NewLog().find(PosLeft(0)), std::string::npos);
            }
        }
    }
}

}  // namespace
}  // namespace lintara::testing
