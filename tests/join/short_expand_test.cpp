#include "join/short_expand.h"

#include <gtest/gtest.h>

#include "join/bases.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using testing::Bases;
using testing::First;
using testing::Last;
using testing::Open;

constexpr int kUntouched = 777;

/// As many bases, none of them the same: in front of or behind an overlap they keep it from going on by chance.
std::string Unlike(std::string seq) {
    for (char& c : seq) c = base[(alphabet[c] + 1) % 4];
    return seq;
}

class ShortJoinTest : public testing::ThreadStreamsTest {
  protected:
    std::string edge0 = Bases(1, 100);
    std::string edge1 = Bases(2, 100);
    std::vector<std::string> reads;  ///< between the edges
    int realgaplen = kUntouched;

    std::string Join(std::string before, std::string after, int gapsize) {
        std::vector<Read> block{Read(edge0, -static_cast<int>(edge0.size()))};
        for (const std::string& read : reads) block.emplace_back(read, 0);
        block.emplace_back(edge1, gapsize);
        TagInfo* tagInfo = nullptr;
        realgaplen = kUntouched;
        return ExpandConnectShort(before, after, gapsize, block, tagInfo, realgaplen, 0);
    }

    /// The log of the last call behind its two opening lines, which are checked here.
    std::string Told(int gapsize) {
        const std::string log = NewLog();
        const std::string opening = "connect for short gap " + std::to_string(gapsize) + "\nDirect align: \n";
        EXPECT_EQ(log.substr(0, opening.size()), opening);
        return log.size() < opening.size() ? "" : log.substr(opening.size());
    }

    static std::string Crossed(const std::string& read, int est_len, int over1, int over2) {
        return "read cross the two sequence: " + read + "\nThe two sequence have " + (est_len < 0 ? "" : "no ") +
               "overlap!\t" + std::to_string(est_len) + "\t" + std::to_string(over1) + "\t" + std::to_string(over2) +
               "\n";
    }
    static std::string Before(const std::string& before) { return "check cut before: " + before + "\n"; }
    static std::string After(const std::string& after) { return "after seq: " + after + "\n"; }

    const std::string direct = "Direct connect: 200\n";
};

using ShortJoinDirectTest = ShortJoinTest;

TEST_F(ShortJoinDirectTest, OverlapWithinAfter) {
    const std::string seq = Bases(3, 60);
    EXPECT_EQ(Join(First(seq, 40), Last(seq, 30), 70), seq);
    EXPECT_EQ(Told(70), "Have overlap: 10\tbefore size: 40\tafter size: 30\n");
    // All of the after expansion.
    EXPECT_EQ(Join(seq, Last(seq, 30), 70), seq);
}

TEST_F(ShortJoinDirectTest, OverlapOfMinAlignCounts) {
    const std::string seq = Bases(3, 60);
    EXPECT_EQ(Join(First(seq, 38), Last(seq, 30), 70), seq);
    EXPECT_EQ(Told(70), "Have overlap: 8\tbefore size: 38\tafter size: 30\n");
    EXPECT_EQ(Join(First(seq, 37), Last(seq, 30), 70), First(seq, 37) + Open(3) + Last(seq, 30));
}

TEST_F(ShortJoinDirectTest, OverlapWithinBefore) {
    const std::string after = Bases(4, 10);
    EXPECT_EQ(Join(Bases(3, 30) + after + First(edge1, 10), after, 70), Bases(3, 30) + after);
    EXPECT_EQ(Told(70), "Have overlap: 20\tbefore size: 50\tafter size: 10\n");
}

TEST_F(ShortJoinDirectTest, OverlapOfMoreThanEitherLeavesWhatBothLeave) {
    // 20 common bases: 5 of the before edge and 15 of the one, 15 of the other and 5 of the after edge.
    const std::string common = Bases(5, 20);
    edge0 = Bases(1, 95) + First(common, 5);
    edge1 = Last(common, 5) + Bases(2, 95);
    EXPECT_EQ(Join(Last(common, 15), First(common, 15), 70), common.substr(5, 10));
    EXPECT_EQ(Told(70), "Have overlap: 20\tbefore size: 15\tafter size: 15\n");
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinDirectTest, OverlapOfExactlyBothLeavesNothing) {
    const std::string common = Bases(5, 30);
    edge0 = Bases(1, 85) + First(common, 15);
    edge1 = Last(common, 15) + Bases(2, 85);
    EXPECT_EQ(Join(Last(common, 15), First(common, 15), 70), "");
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinDirectTest, OverlapPastBothIsMinus) {
    const std::string common = Bases(5, 35);
    edge0 = Bases(1, 80) + First(common, 20);
    edge1 = Last(common, 20) + Bases(2, 80);
    EXPECT_EQ(Join(Last(common, 15), First(common, 15), 22), Open(22));
    EXPECT_EQ(Told(22), "Have overlap: 35\tbefore size: 15\tafter size: 15\ngap size maybe minus\t-5\n");
    EXPECT_EQ(realgaplen, -5);
}

TEST_F(ShortJoinDirectTest, LimitIsOneReadOnlyForLongExpansionsThatLieApart) {
    const auto limit = [this](int before, int after, int gapsize) {
        Join(Bases(3, before), Bases(4, after), gapsize);
        return Told(gapsize).substr(0, direct.size());
    };
    EXPECT_EQ(limit(100, 100, 200), "Direct connect: 100\n");
    EXPECT_EQ(limit(99, 100, 200), direct);
    EXPECT_EQ(limit(100, 99, 200), direct);
    EXPECT_EQ(limit(100, 100, 199), direct);
    EXPECT_EQ(limit(101, 100, 200), direct);
    EXPECT_EQ(limit(100, 101, 200), direct);
}

TEST_F(ShortJoinDirectTest, ReadClosesTheGap) {
    const std::string before = Bases(3, 20);
    const std::string after = Bases(4, 15);
    const std::string between = Bases(5, 10);
    reads = {Last(edge0 + before, 40) + between + First(after + edge1, 40)};
    EXPECT_EQ(Join(before, after, 60), before + between + after);
    EXPECT_EQ(Told(60), direct + Crossed(reads[0], 10, 40, 40) + "read connect before and after!\n");
}

/// A read shows 5 common bases, 3 of the after expansion and 2 of the edge.
class ShortJoinDirectReadTest : public ShortJoinTest {
  protected:
    std::string Cross(int before_size, int edge1_size) {
        const std::string before = Bases(3, before_size);
        const std::string after = Last(before, 5).substr(0, 3);
        edge1 = Last(before, 2) + Bases(2, edge1_size - 2);
        reads = {Last(edge0 + before, 40) + edge1.substr(2, 28)};
        return Join(before, after, 60);
    }
};

TEST_F(ShortJoinDirectReadTest, CutIsReckonedFromTheWholeAfterExpansion) {
    // 32 - 3 bases go, not 2.
    EXPECT_EQ(Cross(40, 32), First(Bases(3, 40), 11));
    EXPECT_EQ(Told(60), direct + Crossed(reads[0], -5, 40, 33) + "read connect before and after!\n");
    EXPECT_EQ(Cross(29, 32), "");
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinDirectReadTest, CutOfMoreThanBeforeIsMinus) {
    EXPECT_EQ(Cross(20, 100), Open(60));
    EXPECT_EQ(Told(60),
              direct + Crossed(reads[0], -5, 40, 33) + "read connect before and after!\ngap size maybe minus\t-77\n");
    EXPECT_EQ(realgaplen, -77);
}

/// Junk stands behind the first bases of the before expansion; cut to the gap, it shows what it holds.
class ShortJoinBeforeTest : public ShortJoinTest {
  protected:
    const std::string junk = Bases(30, 40);
    const std::string read_joins = "read connect short before and after!\n";
};

TEST_F(ShortJoinBeforeTest, ReadJoinsTheCutExpansion) {
    const std::string head = Bases(3, 40);
    const std::string before = head + First(junk, 20);
    const std::string after = Bases(4, 15);
    reads = {Last(edge0 + head, 35) + Bases(5, 5) + First(after + edge1, 40)};
    EXPECT_EQ(Join(before, after, 40), head + Bases(5, 5) + after);
    EXPECT_EQ(Told(40), direct + Before(before) + Crossed(reads[0], 5, 35, 40) + read_joins);
}

TEST_F(ShortJoinBeforeTest, GapBelowMinAlignKeepsSixteenBases) {
    const std::string head = Bases(3, 16);
    const std::string after = Bases(4, 15);
    reads = {Last(edge0 + head, 35) + Bases(5, 5) + First(after + edge1, 40)};
    EXPECT_EQ(Join(head + First(junk, 20), after, 7), head + Bases(5, 5) + after);
    // 8 bases in a gap of 8.
    reads = {Last(edge0 + First(head, 8), 35) + Bases(5, 5) + First(after + edge1, 40)};
    EXPECT_EQ(Join(head + First(junk, 20), after, 8), First(head, 8) + Bases(5, 5) + after);
}

TEST_F(ShortJoinBeforeTest, LongReadThatEatsTheExpansionCutsTheOtherSide) {
    // Too long for the direct join. 5 common bases: 2 of the edge and 3, 4 and 1 of the other edge.
    edge0 = Bases(1, 198) + "TT";
    edge1 = "G" + Bases(2, 199);
    reads = {Last(edge0 + "ACG", 105) + edge1.substr(1, 105)};
    EXPECT_EQ(Join("ACG", "TTAC", 60), "AC");
    EXPECT_EQ(Told(60), direct + Before("ACG") + "read cross the two sequence: " + reads[0] +
                            "\nThe two sequence have overlap!\t-5\t105\t110\n" + First(reads[0], 100) + "\t100\n" +
                            read_joins);
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinBeforeTest, LongReadThatEatsBothExpansionsIsMinus) {
    edge0 = Bases(1, 195) + "ACCTT";
    edge1 = "CCTTG" + Bases(2, 195);
    reads = {Last(edge0 + "G", 105) + edge1.substr(5, 105)};
    EXPECT_EQ(Join("G", "A", 60), Open(60));
    const std::string log = Told(60);
    EXPECT_NE(log.find("overlap!\t-6\t105\t111\n"), std::string::npos) << log;
    EXPECT_NE(log.find(read_joins + "real gap size may be minus!\t-4\n"), std::string::npos) << log;
    EXPECT_EQ(realgaplen, -4);
}

TEST_F(ShortJoinBeforeTest, OverlapWithinTheCutExpansionEndsIt) {
    const std::string head = Bases(3, 40);
    // Nothing of the other expansion follows.
    EXPECT_EQ(Join(head + First(junk, 20), Last(head, 15), 40), First(head, 25));
    EXPECT_EQ(Told(40), direct + Before(head + First(junk, 20)) + "have overlap with after : 15\n");
}

TEST_F(ShortJoinBeforeTest, OverlapBeyondTheCutExpansionCutsTheOtherSide) {
    // 15 common bases, 5 of them of the edge; the gap holds the other 10.
    const std::string common = Bases(5, 15);
    edge0 = Bases(1, 95) + First(common, 5);
    const std::string after = common + Bases(4, 5);
    const std::string behind = Unlike(Bases(4, 5) + First(edge1, 3));
    const auto join = [&](int junk_size) { return Join(Last(common, 10) + First(behind, junk_size), after, 10); };
    EXPECT_EQ(join(2), after.substr(3));
    EXPECT_EQ(Told(10), direct + Before(Last(common, 10) + First(behind, 2)) + "have overlap with after : 15\n");
    // Reckoned from the whole expansion, nothing or less than nothing is to go.
    EXPECT_EQ(join(5), after);
    EXPECT_EQ(join(8), after);
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinBeforeTest, OverlapOfMoreThanEitherLeavesWhatBothLeave) {
    const std::string common = Bases(5, 15);
    edge0 = Bases(1, 95) + First(common, 5);
    edge1 = Last(common, 1) + Bases(2, 99);
    const std::string before = Last(common, 10) + First(junk, 2);
    // 12 + 14 - 15.
    EXPECT_EQ(Join(before, First(common, 14), 10), First(before, 11));
    // Both as long as the overlap: neither is longer than what is left, and nothing is to go.
    edge1 = Bases(2, 100);
    EXPECT_EQ(Join(Last(common, 10) + First(junk, 5), common, 10), common);
}

TEST_F(ShortJoinBeforeTest, OverlapOfMoreThanEitherTakesTheTailOfTheOtherSide) {
    // 13 + 15 - 15: the before expansion isn't longer than 13, the other one is.
    const std::string common = Bases(5, 15);
    edge0 = Bases(1, 95) + First(common, 5);
    EXPECT_EQ(Join(Last(common, 10) + Unlike(First(edge1, 3)), common, 10), Last(common, 13));
}

TEST_F(ShortJoinBeforeTest, OverlapPastBothIsMinus) {
    const std::string common = Bases(5, 30);
    edge0 = Bases(1, 80) + First(common, 20);
    edge1 = Last(common, 16) + Bases(2, 84);
    const std::string before = Last(common, 10) + Unlike(First(Bases(2, 84), 4));
    EXPECT_EQ(Join(before, First(common, 14), 10), Open(10));
    EXPECT_EQ(Told(10), direct + Before(before) + "have overlap with after : 30\nreal gap size may be minus!\t-2\n");
    EXPECT_EQ(realgaplen, -2);
}

TEST_F(ShortJoinBeforeTest, EmptyAfterEndsHereWithTheWholeExpansion) {
    const std::string before = Bases(3, 50);
    EXPECT_EQ(Join(First(before, 30), "", 40), First(before, 30) + Open(10));
    EXPECT_EQ(Told(40), direct + Before(First(before, 30)) + "after not expand!\n");
    EXPECT_EQ(Join(First(before, 40), "", 40), First(before, 40) + "N");
    EXPECT_EQ(Join(before, "", 40), before + "N");
    EXPECT_EQ(Join("ACG", "", 1), "ACGN");
}

class ShortJoinBeforeEdgeTest : public ShortJoinBeforeTest {
  protected:
    const std::string read_joins = "read connect short before and after edge!\n";
};

TEST_F(ShortJoinBeforeEdgeTest, ReadLeadsToTheBareEdge) {
    const std::string before = Bases(3, 40);
    const std::string after = First(junk, 12);
    reads = {Last(before, 40) + Bases(5, 5) + First(edge1, 40)};
    reads[0] = Last(edge0, 5) + reads[0];
    EXPECT_EQ(Join(before, after, 45), before + Bases(5, 5));
    EXPECT_EQ(Told(45), direct + Before(before) + Crossed(reads[0], 5, 45, 40) + read_joins);
    // Only an expansion of more than 0.8 of the gap.
    EXPECT_EQ(Join(before, after, 49), before + Bases(5, 5));
    EXPECT_EQ(Join(before, after, 50), First(before, 37) + "N" + after);
}

TEST_F(ShortJoinBeforeEdgeTest, ReadThatEatsTheExpansionIsMinus) {
    edge0 = Bases(1, 98) + "TT";
    edge1 = "TTACG" + Bases(2, 95);
    reads = {Last(edge0 + "ACG", 40) + edge1.substr(5, 35)};
    EXPECT_EQ(Join("ACG", First(junk, 12), 3), Open(3));
    EXPECT_EQ(Told(3), direct + Before("ACG") + "read cross the two sequence: " + reads[0] +
                           "\nThe two sequence have overlap!\t-5\t40\t40\n" + First(reads[0], 35) + "\t35\n" +
                           read_joins + "real gap size may be minus!\t-2\n");
    EXPECT_EQ(realgaplen, -2);
}

TEST_F(ShortJoinBeforeEdgeTest, OverlapWithTheBareEdgeIsTakenOff) {
    const std::string before = Bases(3, 30) + First(edge1, 10);
    EXPECT_EQ(Join(before, First(junk, 12), 40), Bases(3, 30));
    EXPECT_EQ(Told(40), direct + Before(before) + "have overlap with after edge: 10\n");
}

TEST_F(ShortJoinBeforeEdgeTest, OverlapPastTheExpansionIsMinus) {
    const std::string common = Bases(5, 20);
    edge0 = Bases(1, 92) + First(common, 8);
    edge1 = common + Bases(2, 80);
    EXPECT_EQ(Join(Last(common, 12), First(junk, 9), 12), Open(12));
    EXPECT_EQ(Told(12), direct + Before(Last(common, 12)) +
                            "have overlap with after edge: 20\nreal gap size may be minus!\t-8\n");
    EXPECT_EQ(realgaplen, -8);
}

/// Junk stands in front of the last bases of the after expansion.
class ShortJoinAfterTest : public ShortJoinTest {
  protected:
    const std::string junk = Bases(30, 40);
    const std::string read_joins = "read connect short after and before!\n";
};

TEST_F(ShortJoinAfterTest, ReadJoinsTheCutExpansion) {
    const std::string tail = Bases(4, 40);
    const std::string after = First(junk, 20) + tail;
    reads = {Last(edge0 + "ACGTT", 40) + Bases(5, 5) + First(tail, 35)};
    EXPECT_EQ(Join("ACGTT", after, 40), "ACGTT" + Bases(5, 5) + tail);
    EXPECT_EQ(Told(40), direct + Before("ACGTT") + After(after) + Crossed(reads[0], 5, 40, 35) + read_joins);
    reads = {Last(edge0, 40) + Bases(5, 5) + First(tail, 35)};
    EXPECT_EQ(Join("", after, 40), Bases(5, 5) + tail);
}

/// Gap of 4, so that 16 bases of the after expansion are held: 20 common bases reach 4 into the after edge. Fewer than
/// Min_overlap bases of the edge alone are in the read.
class ShortJoinAfterReadTest : public ShortJoinAfterTest {
  protected:
    const std::string common = Bases(5, 20);

    std::string Cross(int before_size) {
        edge0 = Bases(1, 80 + before_size) + First(common, 20 - before_size);
        edge1 = Last(common, 4) + Bases(2, 96);
        reads = {Last(Bases(1, 80 + before_size), 20) + common + edge1.substr(4, 16)};
        return Join(Last(common, before_size), First(junk, 30) + First(common, 16), 4);
    }
};

TEST_F(ShortJoinAfterReadTest, ReadThatEatsTheExpansionCutsTheOtherSide) {
    EXPECT_EQ(Cross(10), common.substr(10, 6));
    EXPECT_EQ(Told(4), direct + Before(Last(common, 10)) + After(First(junk, 30) + First(common, 16)) +
                           Crossed(reads[0], -20, 40, 36) + read_joins);
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinAfterReadTest, ReadThatEatsBothExpansionsIsMinus) {
    EXPECT_EQ(Cross(0), Open(4));
    EXPECT_EQ(Told(4), direct + After(First(junk, 30) + First(common, 16)) + Crossed(reads[0], -20, 40, 36) +
                           read_joins + "real gaps size maybe minus! -4\n");
    EXPECT_EQ(realgaplen, -4);
}

TEST_F(ShortJoinAfterTest, OverlapWithinTheCutExpansionJoins) {
    const std::string before = Bases(3, 30);
    const std::string tail = Last(before, 15) + Bases(4, 25);
    const std::string after = First(junk, 20) + tail;
    EXPECT_EQ(Join(before, after, 40), before + Bases(4, 25));
    EXPECT_EQ(Told(40), direct + Before(before) + After(after) + "have overlap with before: 15\n");
}

/// A gap of 10; the common bases reach from the before edge into the after edge.
class ShortJoinAfterOverlapTest : public ShortJoinAfterTest {
  protected:
    std::string Overlap(int over, int before_size, int junk_size) {
        const std::string common = Bases(5, over);
        edge0 = Bases(1, 80) + First(common, over - before_size);
        edge1 = common.substr(10) + Bases(2, 80);
        return Join(Last(common, before_size), Unlike(Last(Bases(1, 80), junk_size)) + First(common, 10), 10);
    }
};

TEST_F(ShortJoinAfterOverlapTest, BeyondTheCutExpansionCutsTheOtherSide) {
    EXPECT_EQ(Overlap(15, 10, 6), Bases(5, 15).substr(5, 5));
    const std::string log = Told(10);
    EXPECT_NE(log.find("have overlap with before: 15\n"), std::string::npos) << log;
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinAfterOverlapTest, OfMoreThanEitherLeavesWhatBothLeave) {
    // 10 + 13 - 15.
    EXPECT_EQ(Overlap(15, 10, 3), Bases(5, 15).substr(5, 8));
}

TEST_F(ShortJoinAfterOverlapTest, BeyondBothIsMinus) {
    EXPECT_EQ(Overlap(23, 8, 20), Open(10));
    std::string log = Told(10);
    EXPECT_NE(log.find("have overlap with before: 23\nreal gap size may be minus!\t-5\n"), std::string::npos) << log;
    EXPECT_EQ(realgaplen, -5);
    // 8 + 13 - 23: past the sum of the whole expansions.
    EXPECT_EQ(Overlap(23, 8, 3), Open(10));
    log = Told(10);
    EXPECT_NE(log.find("have overlap with before: 23\nreal gap size may be minus!\t-2\n"), std::string::npos) << log;
    EXPECT_EQ(realgaplen, -2);
}

class ShortJoinAfterEdgeTest : public ShortJoinAfterTest {
  protected:
    const std::string read_joins = "read connect short after and before edge!\n";
    const std::string before = First(junk, 12);
};

TEST_F(ShortJoinAfterEdgeTest, ReadLeadsToTheBareEdge) {
    const std::string after = Bases(4, 40);
    reads = {Last(edge0, 40) + Bases(5, 5) + after};
    reads[0] += First(edge1, 5);
    EXPECT_EQ(Join(before, after, 49), Bases(5, 5) + after);
    EXPECT_EQ(Told(49), direct + Before(before) + After(after) + Crossed(reads[0], 5, 40, 45) + read_joins);
    // Only an expansion of more than 0.8 of the gap.
    EXPECT_EQ(Join(before, after, 50), before + "N" + Last(after, 37));
}

TEST_F(ShortJoinAfterEdgeTest, ReadThatEatsTheExpansionIsMinus) {
    edge0 = Bases(1, 95) + "ACGTT";
    edge1 = "TT" + Bases(2, 98);
    reads = {Last(edge0, 40) + edge1.substr(2, 35)};
    EXPECT_EQ(Join(before, "ACG", 3), Open(3));
    const std::string log = Told(3);
    EXPECT_NE(log.find(After("ACG") + Crossed(reads[0], -5, 40, 40) + read_joins + "real gap size may be minus!-2\n"),
              std::string::npos)
        << log;
    EXPECT_EQ(realgaplen, -2);
}

TEST_F(ShortJoinAfterEdgeTest, OverlapWithTheBareEdgeIsTakenOff) {
    const std::string after = Last(edge0, 10) + Bases(4, 30);
    EXPECT_EQ(Join(before, after, 40), Bases(4, 30));
    EXPECT_EQ(Told(40), direct + Before(before) + After(after) + "have overlap with before edge: 10\n");
}

TEST_F(ShortJoinAfterEdgeTest, OverlapPastTheExpansionIsMinus) {
    const std::string common = Bases(5, 20);
    edge0 = Bases(1, 80) + common;
    edge1 = Last(common, 8) + Bases(2, 92);
    EXPECT_EQ(Join(First(junk, 9), First(common, 12), 12), Open(12));
    EXPECT_EQ(Told(12), direct + Before(First(junk, 9)) + After(First(common, 12)) +
                            "have overlap with before edge: 20\nreal gap size may be minus!\t-8\n");
    EXPECT_EQ(realgaplen, -8);
}

class ShortJoinFillTest : public ShortJoinTest {
  protected:
    const std::string b = Bases(3, 60);
    const std::string a = Bases(4, 60);
};

TEST_F(ShortJoinFillTest, MissingBasesStandBetween) {
    EXPECT_EQ(Join(First(b, 10), Last(a, 12), 40), First(b, 10) + Open(18) + Last(a, 12));
    EXPECT_EQ(Told(40), direct + Before(First(b, 10)) + After(Last(a, 12)));
    EXPECT_EQ(Join(First(b, 20), Last(a, 19), 40), First(b, 20) + "N" + Last(a, 19));
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(ShortJoinFillTest, LongerSideIsCut) {
    EXPECT_EQ(Join(First(b, 30), Last(a, 20), 40), First(b, 19) + "N" + Last(a, 20));
    EXPECT_EQ(Join(b, Last(a, 20), 40), First(b, 19) + "N" + Last(a, 20));
    EXPECT_EQ(Join(First(b, 20), Last(a, 30), 40), First(b, 20) + "N" + Last(a, 19));
    EXPECT_EQ(Join(First(b, 20), Last(a, 20), 40), First(b, 20) + "N" + Last(a, 19));
    EXPECT_EQ(Join(First(b, 38), a, 40), First(b, 38) + "N" + Last(a, 1));
}

TEST_F(ShortJoinFillTest, SideOfAllButOneBaseLeavesNothingOfTheLongerOne) {
    EXPECT_EQ(Join(First(b, 39), Last(a, 50), 40), First(b, 39) + "N");
    EXPECT_EQ(Join(First(b, 50), Last(a, 39), 40), "N" + Last(a, 39));
}

TEST_F(ShortJoinFillTest, BothAsLongAsTheGapOrAllButOneLeaveItOpen) {
    EXPECT_EQ(Join(First(b, 39), Last(a, 39), 40), Open(40));
    EXPECT_EQ(Join(First(b, 40), Last(a, 40), 40), Open(40));
    EXPECT_EQ(Join(First(b, 50), Last(a, 50), 40), Open(40));
    EXPECT_EQ(Join(First(b, 3), Last(a, 16), 1), "N");
}

TEST_F(ShortJoinFillTest, EmptyBeforeKeepsTheEndOfAfter) {
    EXPECT_EQ(Join("", Last(a, 38), 40), "NN" + Last(a, 38));
    EXPECT_EQ(Told(40), direct + After(Last(a, 38)));
    EXPECT_EQ(Join("", Last(a, 39), 40), "N" + Last(a, 39));
    EXPECT_EQ(Join("", Last(a, 50), 40), "N" + Last(a, 39));
    EXPECT_EQ(Join("", Last(a, 5), 1), "N");
}

TEST_F(ShortJoinFillTest, BothEmptyLeaveItOpen) {
    EXPECT_EQ(Join("", "", 40), Open(40));
}

class SmallExpandFillTest : public testing::ThreadStreamsTest {
  protected:
    std::string Fill(const std::vector<Read>& reads, std::vector<std::vector<std::uint8_t>> cells) {
        std::vector<std::uint8_t*> rows;
        for (std::vector<std::uint8_t>& row : cells) rows.push_back(row.data());
        starts.assign(reads.size(), -1);
        ends.assign(reads.size(), -1);
        std::uint8_t** matrix = rows.data();
        int* start = starts.data();
        int* end = ends.data();
        TagInfo* tagInfo = nullptr;
        return SmallExpandFill(matrix, reads, start, end, tagInfo, realgaplen, 0);
    }

    std::vector<int> starts;
    std::vector<int> ends;
    int realgaplen = kUntouched;
    const std::string edge0 = Bases(1, 100);
    const std::string edge1 = Bases(2, 100);
    const std::string grown = Bases(3, 60);
};

TEST_F(SmallExpandFillTest, EdgesThatDontGrowLeaveTheGapOpen) {
    EXPECT_EQ(Fill({Read(edge0, -100), Read(Bases(7, 80), 0), Read(edge1, 33)}, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}),
              Open(33));
    EXPECT_EQ(starts, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(ends, (std::vector<int>{3, 6, 9}));
    EXPECT_EQ(Log(),
              "Starting to treat the matrix use overlap expand mathod\nexpand result : before size 0\tafter size: 0\n");
    EXPECT_EQ(realgaplen, kUntouched);
}

TEST_F(SmallExpandFillTest, GrownBeforeSideIsJoined) {
    // Two reads on the before edge: the one that reaches further gives 60 bases, the other agrees in 40 of them.
    const std::vector<Read> reads{Read(edge0, -100), Read(Last(edge0, 40) + grown, -40),
                                  Read(Last(edge0, 60) + First(grown, 40), -60), Read(edge1, 80)};
    EXPECT_EQ(Fill(reads, {{0, 40, 60, 0}, {0, 0, 0, 0}, {0, 80, 0, 0}, {0, 0, 0, 0}}), grown + Open(20));
    const std::string log = Log();
    EXPECT_NE(log.find("expand result : before size 60\tafter size: 0\nconnect for short gap 80\n"), std::string::npos)
        << log;
}

TEST_F(SmallExpandFillTest, GrownAfterSideIsJoined) {
    const std::vector<Read> reads{Read(edge0, -100), Read(grown + First(edge1, 40), 20),
                                  Read(Last(grown, 40) + First(edge1, 60), 40), Read(edge1, 80)};
    EXPECT_EQ(Fill(reads, {{0, 0, 0, 0}, {0, 0, 80, 40}, {0, 0, 0, 60}, {0, 0, 0, 0}}), Open(20) + grown);
    const std::string log = Log();
    EXPECT_NE(log.find("expand result : before size 0\tafter size: 60\nconnect for short gap 80\n"), std::string::npos)
        << log;
}

}  // namespace
}  // namespace lintara
