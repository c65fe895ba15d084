#include "join/three_way.h"

#include <gtest/gtest.h>

#include "join/bases.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::Changed;
using ::testing::ExitedWithCode;
using testing::First;
using testing::Last;
using testing::Open;

/// A value that no test expects, so that an untouched realgaplen shows.
constexpr int kUntouched = 777;

class ConnectThreeTest : public testing::ThreadStreamsTest {
  protected:
    std::string edge1 = Bases(1, 100);
    std::string edge2 = Bases(2, 100);
    std::string mid = Bases(3, 80);
    std::vector<std::string> reads;  ///< between the edges
    int realgaplen = kUntouched;
    std::string cut;  ///< what is left of the sequence

    std::string Connect(const std::string& seq, int gapsize) {
        std::vector<Read> block{Read(edge1, -static_cast<int>(edge1.size()))};
        for (const std::string& read : reads) block.emplace_back(read, 0);
        block.emplace_back(edge2, gapsize);
        realgaplen = kUntouched;
        cut = seq;
        return ConnectThree(edge1, cut, edge2, block, gapsize, realgaplen, 0);
    }

    /// The log of the last call behind its two opening lines, which are checked here.
    std::string Told(const std::string& seq) {
        const std::string log = NewLog();
        const std::string opening = "Starting to connect three!\nseq: " + seq + "\n";
        EXPECT_EQ(log.substr(0, opening.size()), opening);
        return log.size() < opening.size() ? "" : log.substr(opening.size());
    }

    static std::string Crossed(const std::string& read, int est_len, int over1, int over2) {
        return "read cross the two sequence: " + read + "\nThe two sequence have " + (est_len < 0 ? "" : "no ") +
               "overlap!\t" + std::to_string(est_len) + "\t" + std::to_string(over1) + "\t" + std::to_string(over2) +
               "\n";
    }
};

TEST_F(ConnectThreeTest, BelowMinAlignNothingIsTried) {
    EXPECT_EQ(Connect("ACGTACG", 12), Open(12));
    EXPECT_EQ(Told("ACGTACG"), "");
    EXPECT_EQ(realgaplen, kUntouched);
    EXPECT_EQ(Connect(First(mid, 8), 12), Open(12));
    EXPECT_EQ(Told(First(mid, 8)),
              "have no clear overlap with before and after!\nfailed to connect with after edge.\n"
              "failed to connect with before edge!\ncannot fullfill the gap!\n");
}

using ConnectThreeBothTest = ConnectThreeTest;

TEST_F(ConnectThreeBothTest, LeavesTheMiddle) {
    const std::string seq = Last(edge1, 20) + First(mid, 30) + First(edge2, 25);
    EXPECT_EQ(Connect(seq, 10), First(mid, 30));
    EXPECT_EQ(Told(seq), "both have overlap!\n");
}

TEST_F(ConnectThreeBothTest, OverlapsThatMeetLeaveNothing) {
    EXPECT_EQ(Connect(Last(edge1, 20) + First(edge2, 25), 10), "");
}

TEST_F(ConnectThreeBothTest, OverlapsThatCrossAreMinus) {
    // The edges share 10 bases; the sequence covers 20 of the one behind that, and 20 of the other.
    edge2 = Last(edge1, 10) + Bases(2, 90);
    const std::string seq = Last(edge1, 30) + First(Bases(2, 90), 20);
    EXPECT_EQ(Connect(seq, 13), Open(13));
    EXPECT_EQ(Told(seq), "both have overlap!\nthe real gapsize is minus!\n");
    EXPECT_EQ(realgaplen, kUntouched);
}

class ConnectThreeBeforeTest : public ConnectThreeTest {
  protected:
    std::string Seq(const std::string& rest) { return Last(edge1, 20) + rest; }
};

TEST_F(ConnectThreeBeforeTest, SequenceInsideTheEdgeLeavesTheGapOpen) {
    EXPECT_EQ(Connect(Last(edge1, 40), 25), Open(25));
    EXPECT_EQ(Told(Last(edge1, 40)), "have overlap before!40\nthe assembled is part of before edge\n");
}

TEST_F(ConnectThreeBeforeTest, ReadClosesTheGap) {
    const std::string m = First(mid, 40);
    const std::string between = Bases(4, 20);
    reads = {Last(m, 35) + between + First(edge2, 40)};
    EXPECT_EQ(Connect(Seq(m), 60), m + between);
    EXPECT_EQ(Told(Seq(m)), "have overlap before!20\n" + Crossed(reads[0], 20, 35, 40) +
                                "read connect the sequence and after edge!\n");
}

TEST_F(ConnectThreeBeforeTest, ShortPieceIsPlacedWithTheEdge) {
    const std::string m = First(mid, 15);
    const std::string between = Bases(4, 10);
    reads = {Last(edge1 + m, 40) + between + First(edge2, 40)};
    EXPECT_EQ(Connect(Seq(m), 60), m + between);
    EXPECT_EQ(Told(Seq(m)), "have overlap before!20\n" + Crossed(reads[0], 10, 40, 40) +
                                "read connect the sequence and after edge!\n");
}

TEST_F(ConnectThreeBeforeTest, ReadThatEatsIntoTheEdgeIsMinus) {
    const std::string m = First(mid, 15);
    const std::string more = Bases(4, 5);
    // The edges share 40 bases and the sequence. The read reaches 60 back and 5 beyond: 65 - 60 - 60.
    edge2 = Last(edge1, 40) + m + more + Bases(2, 60);
    reads = {Last(edge1 + m, 60) + more};
    EXPECT_EQ(Connect(Seq(m), 60), m);
    const std::string log = Told(Seq(m));
    EXPECT_NE(log.find("The two sequence have overlap!\t-55\t60\t60\n"), std::string::npos) << log;
    EXPECT_NE(log.find("read connect the sequence and after edge!\ngapsize maybe minus!\n"), std::string::npos) << log;
}

TEST_F(ConnectThreeBeforeTest, OverlapOfMinAlignWithTheAfterEdgeCounts) {
    const std::string m = First(mid, 40);
    // An overlap of exactly min_align is none for the choice of the case, but one here.
    EXPECT_EQ(Connect(Seq(m + First(edge2, 8)), 60), m);
    EXPECT_EQ(Told(Seq(m + First(edge2, 8))), "have overlap before!20\n");
    const std::string s = First(mid, 12);
    EXPECT_EQ(Connect(Seq(s + First(edge2, 8)), 60), s);
}

TEST_F(ConnectThreeBeforeTest, OverlapLongerThanThePieceIsMinus) {
    const std::string m = First(mid, 40);
    edge2 = Bases(5, 20) + m + Bases(2, 60);
    EXPECT_EQ(Connect(Seq(m), 60), m);
    EXPECT_EQ(Told(Seq(m)), "have overlap before!20\ngapsize maybe minus!\n");
    const std::string s = First(mid, 12);
    edge2 = Last(edge1, 40) + s + Bases(2, 60);
    EXPECT_EQ(Connect(Seq(s), 60), s);
    EXPECT_EQ(Told(Seq(s)), "have overlap before!20\ngapsize maybe minus!\n");
}

TEST_F(ConnectThreeBeforeTest, SequenceBeyondTheGapMayOverlapTheAfterEdge) {
    const std::string m = First(mid, 40);
    const std::string unit = Bases(6, 18);
    // 18 and 36 bases overlap alike, so that no alignment is clear.
    edge2 = unit + unit + Bases(2, 60);
    EXPECT_EQ(Connect(Seq(m + unit + unit), 40), m);
    EXPECT_EQ(Told(Seq(m + unit + unit)), "have overlap before!20\nseq overlap with after edge!\n 36\t76");
}

TEST_F(ConnectThreeBeforeTest, OpenSideIsFilledUp) {
    EXPECT_EQ(Connect(Seq(First(mid, 40)), 50), First(mid, 40) + Open(10));
    EXPECT_EQ(Connect(Seq(First(mid, 20)), 50), First(mid, 20) + Open(30));
    EXPECT_EQ(Connect(Seq(First(mid, 50)), 50), First(mid, 50) + "N");
    // Cut to the gap only above Min_overlap.
    EXPECT_EQ(Connect(Seq(First(mid, 50)), 31), First(mid, 31) + "N");
    EXPECT_EQ(Connect(Seq(First(mid, 50)), 30), First(mid, 50) + "N");
    // Below min_align to min_align + 1 bases.
    EXPECT_EQ(Connect(Seq(First(mid, 50)), 8), First(mid, 50) + "N");
    EXPECT_EQ(Connect(Seq(First(mid, 50)), 7), First(mid, 9) + "N");
    EXPECT_EQ(Connect(Seq(First(mid, 9)), 1), First(mid, 9) + "N");
    EXPECT_EQ(realgaplen, kUntouched);
}

class ConnectThreeAfterTest : public ConnectThreeTest {
  protected:
    std::string Seq(const std::string& rest) { return rest + First(edge2, 20); }
};

TEST_F(ConnectThreeAfterTest, ReadClosesTheGapOfAShortPiece) {
    const std::string m = First(mid, 20);
    const std::string between = Bases(4, 5);
    reads = {Last(edge1, 40) + between + First(m + edge2, 40)};
    EXPECT_EQ(Connect(Seq(m), 60), between + m);
    EXPECT_EQ(Told(Seq(m)),
              "have overlap after!\n" + Crossed(reads[0], 5, 40, 40) + "read connect the sequence and before edge!\n");
}

TEST_F(ConnectThreeAfterTest, AfterEdgeIsTakenOffThoughItWasNotAdded) {
    const std::string m = First(mid, 40);
    const std::string between = Bases(4, 10);
    reads = {Last(edge1, 40) + between + First(m, 35)};
    EXPECT_EQ(Connect(Seq(m), 60), Open(10) + between + m);
    EXPECT_EQ(Told(Seq(m)), "have overlap after!\n" + Crossed(reads[0], 10, 40, 35) +
                                "read connect the sequence and before edge!\ngapsize maybe minus!\n");
    // With an edge of 40 bases, 10 of the 50 remain.
    edge2 = First(edge2, 40);
    EXPECT_EQ(Connect(Seq(m), 60), between);
}

TEST_F(ConnectThreeAfterTest, ReadThatEatsIntoTheEdgeLeavesAllOfThePiece) {
    // The edges share 5 bases beyond the 2 of the piece; too few for an alignment.
    const std::string shared = Bases(7, 40);
    edge1 = Bases(1, 60) + shared;
    const std::string m = Bases(8, 2);
    edge1 += m + First(edge2, 3);
    reads = {Last(edge1, 45) + edge2.substr(3, 30)};
    // The 5 shared bases go, so that 97 are left; they are fewer than the edge has, and stay whole. The N are reckoned
    // as if the edge had gone: 60 + 100 - 97.
    EXPECT_EQ(Connect(Seq(m), 60), Open(63) + edge2.substr(3));
    EXPECT_EQ(Told(Seq(m)), "have overlap after!\n" + Crossed(reads[0], -5, 45, 35) +
                                "read connect the sequence and before edge!\ngapsize maybe minus!\n");
}

TEST_F(ConnectThreeAfterTest, OverlapOfMinAlignWithTheBeforeEdgeCounts) {
    const std::string m = First(mid, 15);
    EXPECT_EQ(Connect(Seq(Last(edge1, 8) + m), 60), m);
    EXPECT_EQ(Told(Seq(Last(edge1, 8) + m)), "have overlap after!\n");
    // Not added, the edge is asked for all the same.
    const std::string longer = Last(edge1, 8) + First(mid, 40);
    EXPECT_EQ(Connect(Seq(longer), 60), Open(12) + longer);
    EXPECT_EQ(Told(Seq(longer)), "have overlap after!\ngapsize maybe minus!\n");
}

TEST_F(ConnectThreeAfterTest, SequenceBeyondTheGapMayOverlapTheBeforeEdge) {
    const std::string m = First(mid, 40);
    const std::string unit = Bases(6, 18);
    edge1 = Bases(1, 60) + unit + unit;
    EXPECT_EQ(Connect(Seq(unit + unit + m), 40), m);
    EXPECT_EQ(Told(Seq(unit + unit + m)), "have overlap after!\noverlapped with before edge.\n");
}

TEST_F(ConnectThreeAfterTest, OpenSideIsFilledUp) {
    EXPECT_EQ(Connect(Seq(First(mid, 40)), 50), Open(10) + First(mid, 40));
    EXPECT_EQ(Connect(Seq(First(mid, 20)), 50), Open(30) + First(mid, 20));
    // Unlike on the other side, a gap of Min_overlap cuts, and below it 60 bases are kept.
    EXPECT_EQ(Connect(Seq(First(mid, 40)), 30), "N" + Last(First(mid, 40), 30));
    EXPECT_EQ(Connect(Seq(mid), 29), "N" + Last(mid, 60));
    EXPECT_EQ(Connect(Seq(First(mid, 60)), 29), "N" + First(mid, 60));
    EXPECT_EQ(Connect(Seq(mid), 8), "N" + Last(mid, 60));
    EXPECT_EQ(Connect(Seq(mid), 7), "N" + Last(mid, 9));
}

TEST_F(ConnectThreeAfterTest, SequenceInsideTheEdgeLeavesTheGapOpenWithoutAWord) {
    EXPECT_EQ(Connect(First(edge2, 40), 25), Open(25));
    EXPECT_EQ(Told(First(edge2, 40)), "have overlap after!\n");
}

class ConnectThreeNeitherTest : public ConnectThreeTest {
  protected:
    const std::string start = "have no clear overlap with before and after!\n";
    const std::string to_after = "read connect the sequence and after edge!\nTo connect with before edge!\n";
    const std::string to_before = "read connect the sequence and before edge!\n";
    const std::string no_after = "failed to connect with after edge.\n";
    const std::string no_before = "failed to connect with before edge!\n";
};

TEST_F(ConnectThreeNeitherTest, ReadsOnBothSidesCloseTheGap) {
    const std::string front = Bases(4, 10);
    reads = {Last(mid, 40) + Bases(5, 15) + First(edge2, 40), Last(edge1, 40) + front + First(mid, 40)};
    // The bases that the read to the after edge holds are not used.
    EXPECT_EQ(Connect(mid, 100), front + mid);
    EXPECT_EQ(Told(mid), start + Crossed(reads[0], 15, 40, 40) + to_after + Crossed(reads[1], 10, 40, 40) + to_before);
}

TEST_F(ConnectThreeNeitherTest, ReadToTheAfterEdgeAloneKeepsTheTail) {
    reads = {Last(mid, 40) + Bases(5, 15) + First(edge2, 40)};
    EXPECT_EQ(Connect(mid, 100), Open(20) + mid);
    EXPECT_EQ(Told(mid), start + Crossed(reads[0], 15, 40, 40) + to_after);
    EXPECT_EQ(Connect(mid, 80), "N" + mid);
    EXPECT_EQ(Connect(mid, 50), "N" + Last(mid, 50));
    EXPECT_EQ(Connect(mid, 30), "N" + mid);
    EXPECT_EQ(Connect(mid, 29), "N" + Last(mid, 60));
    EXPECT_EQ(cut, Last(mid, 60));
}

TEST_F(ConnectThreeNeitherTest, SequenceThatAReadSwallowsIsNotSure) {
    const std::string m = First(mid, 40);
    edge1 = Bases(1, 60) + Bases(4, 10) + m + First(edge2, 10);
    const std::string swallows = Last(edge1, 60) + edge2.substr(10, 20);
    reads = {Last(m, 35) + First(edge2, 40), swallows};
    EXPECT_EQ(Connect(m, 45), Open(45));
    EXPECT_EQ(Told(m), start + Crossed(reads[0], 0, 35, 40) + to_after + Crossed(swallows, -50, 60, 70) + to_before +
                           "have overlap between before edge and after edge, overlap not sure!\n");
}

TEST_F(ConnectThreeNeitherTest, ReadToTheBeforeEdgeAloneKeepsTheHead) {
    reads = {Last(edge1, 40) + Bases(4, 10) + First(mid, 40)};
    EXPECT_EQ(Connect(mid, 100), mid + Open(20));
    EXPECT_EQ(Told(mid), start + no_after + Crossed(reads[0], 10, 40, 40) + to_before);
    EXPECT_EQ(Connect(mid, 80), mid + "N");
    EXPECT_EQ(Connect(mid, 50), First(mid, 50) + "N");
    EXPECT_EQ(Connect(mid, 30), mid + "N");
    EXPECT_EQ(Connect(mid, 29), First(mid, 60) + "N");
}

TEST_F(ConnectThreeNeitherTest, LongReadCountsOnlyBehindAReadToTheAfterEdge) {
    const std::string front = Bases(4, 21);
    const std::string read = Last(edge1, 40) + front + First(mid, 40);
    reads = {read};
    EXPECT_EQ(Connect(mid, 100), Open(100));
    EXPECT_EQ(Told(mid), start + no_after + no_before + "cannot fullfill the gap!\n");
    reads.push_back(Last(mid, 40) + Bases(5, 15) + First(edge2, 40));
    EXPECT_EQ(Connect(mid, 100), front + mid);
}

TEST_F(ConnectThreeNeitherTest, CutSequenceWithAReadLosesTheSizeOfTheAfterEdge) {
    const std::string head = First(mid, 50);
    reads = {Last(edge1, 40) + Bases(4, 10) + First(mid, 40), Last(head, 35) + First(edge2, 45)};
    // 150 bases of before edge and sequence without 100.
    EXPECT_EQ(Connect(mid, 50), First(edge1, 50));
    EXPECT_EQ(Told(mid), start + no_after + Crossed(reads[0], 10, 40, 40) + to_before + Crossed(reads[1], 0, 35, 45) +
                             "sequence cutted and have read connect it with after edge!\n");
    edge2 += Bases(9, 51);
    EXPECT_EQ(Connect(mid, 50), Open(50));
    const std::string log = Told(mid);
    EXPECT_NE(log.find("with after edge!\nhave overlap between before edge and after edge, overlap not sure!\n"),
              std::string::npos)
        << log;
}

TEST_F(ConnectThreeNeitherTest, NotLongerThanTheGapGivesUp) {
    EXPECT_EQ(Connect(mid, 80), Open(80));
    EXPECT_EQ(Told(mid), start + no_after + no_before + "cannot fullfill the gap!\n");
    EXPECT_EQ(realgaplen, kUntouched);
}

/// Sequences longer than the gap, of which the edges' anchors (9 bases) may tell the place.
class ConnectThreeAnchorTest : public ConnectThreeNeitherTest {
  protected:
    const std::string unit1 = Bases(21, 12);  ///< twice at an end it overlaps by 12 and 24 bases alike
    const std::string unit2 = Bases(22, 12);
    const std::string m = First(mid, 50);
    const std::string opening = start + no_after + no_before;

    void RepeatBefore() { edge1 = Bases(1, 60) + unit1 + unit1; }
    void RepeatAfter() { edge2 = unit2 + unit2 + Bases(2, 60); }
};

TEST_F(ConnectThreeAnchorTest, NoAnchorLeavesTheGapOpen) {
    EXPECT_EQ(Connect(mid, 79), Open(79));
    EXPECT_EQ(Told(mid), opening + "gap size maybe minus!\n");
}

TEST_F(ConnectThreeAnchorTest, CrossingAnchorsAreMinusForAGapOfOneOnly) {
    // From the first base of the after anchor to the last one of the before anchor: 9 + 5 + 9.
    const std::string seq = Bases(5, 20) + First(edge2, 9) + Bases(6, 5) + Last(edge1, 9) + Bases(7, 20);
    EXPECT_EQ(Connect(seq, 1), "N");
    EXPECT_EQ(realgaplen, -23);
    EXPECT_EQ(Told(seq), opening + "gap size is checked to be minus\t-23\n");
    EXPECT_EQ(Connect(seq, 20), Open(20));
    EXPECT_EQ(realgaplen, 0);
    EXPECT_EQ(Told(seq), opening + "gap size is checked to be minus\t-23\n");
}

TEST_F(ConnectThreeAnchorTest, AnchorsThatMeetDontCross) {
    const std::string seq = Bases(5, 20) + Last(edge1, 9) + First(edge2, 9) + Bases(7, 20);
    Connect(seq, 1);
    EXPECT_EQ(realgaplen, kUntouched);
    const std::string one_less = Bases(5, 20) + Last(edge1, 9) + edge2.substr(1, 8) + Bases(7, 20);
    edge2 = Last(edge1, 1) + edge2.substr(1);
    Connect(one_less, 1);
    EXPECT_EQ(realgaplen, -1);
}

TEST_F(ConnectThreeAnchorTest, BeforeAnchorAloneCutsToTheGap) {
    RepeatBefore();
    const std::string seq = unit1 + unit1 + m;
    // The anchor stands 3 bases into the first unit.
    EXPECT_EQ(Connect(seq, 30), First(unit1 + m, 29) + "N");
    EXPECT_EQ(Told(seq), opening + "check before overlap: 12\nbefore overlap accept 1\nsequence cut!\n");
    const std::string held = First(unit1 + m, 30);
    reads = {Last(edge1 + held, 40) + Bases(5, 5) + First(edge2, 40)};
    EXPECT_EQ(Connect(seq, 30), held + Bases(5, 5));
    EXPECT_EQ(Told(seq), opening + "check before overlap: 12\nbefore overlap accept 1\nsequence cut!\n" +
                             Crossed(reads[0], 5, 40, 40) + "read connect seq and after edge. \n");
}

TEST_F(ConnectThreeAnchorTest, BeforeAnchorWithAReadIntoTheEdgeIsMinus) {
    RepeatBefore();
    const std::string seq = unit1 + unit1 + m;
    const std::string held = First(unit1 + m, 30);
    const std::string more = Bases(5, 5);
    edge2 = Last(edge1, 28) + held + more + Bases(2, 60);
    reads = {Last(edge1, 30) + held + more};
    EXPECT_EQ(Connect(seq, 30), First(held, 29) + "N");
    const std::string log = Told(seq);
    EXPECT_NE(log.find("The two sequence have overlap!\t-58\t60\t63\n"), std::string::npos) << log;
    EXPECT_NE(log.find("read connect seq and after edge. \ngap size maybe minus!\n"), std::string::npos) << log;
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ConnectThreeAnchorTest, BothAnchorsCutAtTheUncutPlace) {
    RepeatBefore();
    RepeatAfter();
    const std::string seq = unit1 + unit1 + m + unit2 + unit2;
    // The after anchor stands at 74 of the uncut sequence, which has lost 12 bases by then.
    EXPECT_EQ(Connect(seq, 40), unit1 + m + unit2);
    EXPECT_EQ(Told(seq), opening +
                             "check before overlap: 12\nbefore overlap accept 1\n"
                             "check after overlap: 24\t1\nafter overlap accept 1\n");
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ConnectThreeAnchorTest, AfterAnchorThatDoesntHoldLeavesOneN) {
    RepeatBefore();
    const std::string seq = unit1 + unit1 + m + First(edge2, 9) + Bases(5, 31);
    EXPECT_EQ(Connect(seq, 40), First(unit1 + m, 39) + "N");
    const std::string log = Told(seq);
    EXPECT_NE(log.find("before overlap accept 1\ncheck after overlap: 40\t0."), std::string::npos) << log;
    EXPECT_EQ(log.find("after overlap accept"), std::string::npos) << log;
}

TEST_F(ConnectThreeAnchorTest, BeforeAnchorThatDoesntHoldIsCutOffAllTheSame) {
    RepeatAfter();
    const std::string seq = Bases(5, 20) + Last(edge1, 9) + m + unit2 + unit2;
    // Without a read to the before edge the gap stays open.
    EXPECT_EQ(Connect(seq, 60), Open(60));
    EXPECT_EQ(Told(seq), opening + "check before overlap: 29\nafter overlap check\nafter overlap accept 1\n");
    EXPECT_EQ(cut, m);
    reads = {Last(edge1, 40) + Bases(6, 10) + First(m, 40)};
    EXPECT_EQ(Connect(seq, 60), Bases(6, 10) + m);
    EXPECT_EQ(Told(seq), opening + "check before overlap: 29\nafter overlap check\nafter overlap accept 1\n" +
                             Crossed(reads[0], 10, 40, 40) + "read connect seq and before edge. \nfullfill the gap!\n");
    // Only the last bases of the gap's number are kept.
    reads = {Last(edge1, 40) + Bases(6, 10) + First(Last(m, 45), 40)};
    EXPECT_EQ(Connect(seq, 45), Bases(6, 10) + Last(m, 45));
}

TEST_F(ConnectThreeAnchorTest, BeforeAnchorThatDoesntHoldAloneLeavesTheGapOpen) {
    const std::string seq = Bases(5, 20) + Last(edge1, 9) + m;
    EXPECT_EQ(Connect(seq, 60), Open(60));
    EXPECT_EQ(Told(seq), opening + "check before overlap: 29\ngap size maybe minus!\n");
}

TEST_F(ConnectThreeAnchorTest, AfterAnchorThatDoesntHoldAloneLeavesTheGapOpen) {
    const std::string seq = m + First(edge2, 9) + Bases(5, 31);
    EXPECT_EQ(Connect(seq, 60), Open(60));
    EXPECT_EQ(Told(seq), opening + "after overlap check\ncannot fullfill the gap!\n");
    EXPECT_EQ(cut, m);
}

TEST_F(ConnectThreeAnchorTest, ReadThatSwallowsTheSequenceBeforeTheAnchorIsMinus) {
    RepeatAfter();
    // The before edge holds the sequence and one base of the after edge; a changed base hides its anchor.
    edge1 = Bases(1, 60) + Bases(4, 10) + Changed(m, 45) + First(edge2, 1);
    const std::string seq = Bases(5, 20) + m + unit2 + unit2;
    reads = {Last(edge1, 61) + edge2.substr(1, 29)};
    EXPECT_EQ(Connect(seq, 50), Open(50));
    EXPECT_EQ(Told(seq), opening + "after overlap check\nafter overlap accept 1\n" + Crossed(reads[0], -51, 61, 80) +
                             "read connect seq and before edge. \ngap size maybe minus!\n");
}

using ConnectThreeDeathTest = ConnectThreeNeitherTest;

TEST_F(ConnectThreeDeathTest, AnchorLongerThanTheSequenceEndsTheProcess) {
    EXPECT_EXIT(Connect(First(mid, 8), 7), ExitedWithCode(255), "");
}

}  // namespace
}  // namespace lintara
