#include "evaluate/evaluate.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cctype>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "support/thread_streams.h"

namespace lintara::evaluate {
namespace {

std::string RandomBases(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bases(size, 'A');
    for (char& c : bases) c = "ACGT"[random() % 4];
    return bases;
}

TrueGap GapAt(int contig, int length, const std::string& sequence) {
    TrueGap gap;
    gap.id = contig + 1;
    gap.scaffold = 1;
    gap.contig = contig;
    gap.length = length;
    gap.sequence = sequence;
    return gap;
}

/// The outcome of the one gap between two contigs.
GapResult JudgeOne(const std::string& before, const TrueGap& gap, const std::string& after, const std::string& text) {
    return Evaluate({{1, {before, after}}}, {gap}, {{1, text}}, 31).at(0);
}

class OneGap : public ::testing::Test {
  protected:
    const std::string before_ = RandomBases(400, 1);
    const std::string after_ = RandomBases(300, 2);
    const std::string bases_ = RandomBases(250, 3);
    const TrueGap gap_ = GapAt(0, 250, bases_);

    GapResult Judge(const std::string& fill) const { return JudgeOne(before_, gap_, after_, before_ + fill + after_); }
};

TEST_F(OneGap, TrueBasesAreExact) {
    const GapResult result = Judge(bases_);
    EXPECT_EQ(result.outcome, Outcome::kExact);
    EXPECT_EQ(result.edits, 0);
    EXPECT_EQ(result.filled, 250);
    EXPECT_EQ(result.open, 0);
}

TEST_F(OneGap, TwoEditsAreNearAndThreeAreWrong) {
    std::string fill = bases_;
    fill[100] = fill[100] == 'A' ? 'C' : 'A';
    fill.erase(50, 1);
    EXPECT_EQ(Judge(fill).outcome, Outcome::kNear);
    EXPECT_EQ(Judge(fill).edits, 2);
    fill[180] = fill[180] == 'A' ? 'C' : 'A';
    EXPECT_EQ(Judge(fill).outcome, Outcome::kWrong) << "3 edits are above 1 % of 250";
    EXPECT_EQ(Judge(fill).edits, 3);
}

TEST(Evaluate, OnePercentOfALongGapIsNear) {
    const std::string before = RandomBases(400, 1);
    const std::string after = RandomBases(300, 2);
    const std::string bases = RandomBases(300, 3);
    std::string fill = bases;
    for (const std::size_t i : {20U, 120U, 220U}) fill[i] = fill[i] == 'A' ? 'C' : 'A';
    EXPECT_EQ(JudgeOne(before, GapAt(0, 300, bases), after, before + fill + after).outcome, Outcome::kNear);
}

TEST_F(OneGap, OnlyNIsOpen) {
    const GapResult result = Judge(std::string(240, 'N'));
    EXPECT_EQ(result.outcome, Outcome::kOpen);
    EXPECT_EQ(result.open, 240);
    EXPECT_EQ(result.filled, 0);
    EXPECT_EQ(result.edits, -1);
}

TEST_F(OneGap, BasesAndNArePartly) {
    const GapResult result = Judge(bases_.substr(0, 30) + std::string(200, 'N') + bases_.substr(230));
    EXPECT_EQ(result.outcome, Outcome::kPartly);
    EXPECT_EQ(result.open, 200);
    EXPECT_EQ(result.filled, 50);
}

TEST_F(OneGap, NothingBetweenTheContigsIsWrongForARealGap) {
    EXPECT_EQ(Judge("").outcome, Outcome::kWrong);
}

TEST_F(OneGap, MissingScaffoldIsNotFound) {
    EXPECT_EQ(Evaluate({{1, {before_, after_}}}, {gap_}, {{2, "ACGT"}}, 31).at(0).outcome, Outcome::kNotFound);
    EXPECT_EQ(Evaluate({{2, {before_, after_}}}, {gap_}, {{1, "ACGT"}}, 31).at(0).outcome, Outcome::kNotFound);
    EXPECT_EQ(Evaluate({{1, {before_}}}, {gap_}, {{1, before_}}, 31).at(0).outcome, Outcome::kNotFound);
}

TEST_F(OneGap, CutContigEndIsJudgedFromAnAnchorFurtherInside) {
    // The last 70 bases of the before contig are gone, so that nothing of its end can be an anchor.
    const std::string text = before_.substr(0, 330) + bases_ + after_;
    const GapResult result = JudgeOne(before_, gap_, after_, text);
    EXPECT_EQ(result.outcome, Outcome::kWrong);
    EXPECT_GT(result.edits, 30);
}

class OverlappingContigs : public ::testing::Test {
  protected:
    // The two contigs share 60 bases.
    const std::string genome_ = RandomBases(640, 4);
    const std::string before_ = genome_.substr(0, 400);
    const std::string after_ = genome_.substr(340);
    const TrueGap gap_ = GapAt(0, -60, "");
};

TEST_F(OverlappingContigs, MergedTextIsExact) {
    const GapResult result = JudgeOne(before_, gap_, after_, genome_);
    EXPECT_EQ(result.outcome, Outcome::kExact);
    EXPECT_EQ(result.filled, 0);
}

TEST_F(OverlappingContigs, KeptOverlapIsWrong) {
    const GapResult result = JudgeOne(before_, gap_, after_, before_ + after_);
    EXPECT_EQ(result.outcome, Outcome::kWrong);
    EXPECT_EQ(result.edits, 60);
}

TEST_F(OverlappingContigs, CutByOneBaseTooManyIsNear) {
    const GapResult result = JudgeOne(before_, gap_, after_, before_.substr(0, 339) + after_);
    EXPECT_EQ(result.outcome, Outcome::kNear);
    EXPECT_EQ(result.edits, 1);
}

TEST_F(OverlappingContigs, NBetweenThemIsOpen) {
    const GapResult result = JudgeOne(before_, gap_, after_, before_ + "N" + after_);
    EXPECT_EQ(result.outcome, Outcome::kOpen);
    EXPECT_EQ(result.open, 1);
}

TEST(Evaluate, TouchingContigs) {
    const std::string before = RandomBases(200, 5);
    const std::string after = RandomBases(200, 6);
    EXPECT_EQ(JudgeOne(before, GapAt(0, 0, ""), after, before + after).outcome, Outcome::kExact);
    EXPECT_EQ(JudgeOne(before, GapAt(0, 0, ""), after, before + "ACG" + after).outcome, Outcome::kWrong);
    EXPECT_EQ(JudgeOne(before, GapAt(0, 0, ""), after, before + "N" + after).outcome, Outcome::kOpen);
}

class ShortContigBetweenTwoGaps : public ::testing::Test {
  protected:
    const std::string first_ = RandomBases(300, 7);
    const std::string second_ = RandomBases(20, 8);  // shorter than an anchor of 31
    const std::string third_ = RandomBases(300, 9);
    const std::string left_ = RandomBases(80, 10);
    const std::string right_ = RandomBases(90, 11);

    std::vector<GapResult> Judge(const std::string& left, const std::string& right) const {
        return Evaluate({{1, {first_, second_, third_}}}, {GapAt(0, 80, left_), GapAt(1, 90, right_)},
                        {{1, first_ + left + second_ + right + third_}}, 31);
    }
};

TEST_F(ShortContigBetweenTwoGaps, BothGapsAreJudgedAlone) {
    std::vector<GapResult> results = Judge(left_, std::string(90, 'N'));
    EXPECT_EQ(results[0].outcome, Outcome::kExact);
    EXPECT_EQ(results[1].outcome, Outcome::kOpen);
    results = Judge(RandomBases(80, 12), right_);
    EXPECT_EQ(results[0].outcome, Outcome::kWrong);
    EXPECT_EQ(results[1].outcome, Outcome::kExact);
}

TEST(Evaluate, ContigTooShortToBePlacedLeavesItsGapsNotFound) {
    const std::string first = RandomBases(300, 7);
    const std::string third = RandomBases(300, 9);
    const std::string gap = RandomBases(50, 10);
    const std::vector<GapResult> results =
        Evaluate({{1, {first, "ACG", third}}}, {GapAt(0, 50, gap), GapAt(1, 50, gap)},
                 {{1, first + gap + "ACG" + gap + third}}, 31);
    EXPECT_EQ(results[0].outcome, Outcome::kNotFound);
    EXPECT_EQ(results[1].outcome, Outcome::kNotFound);
}

TEST(Evaluate, RepeatedContigEndsAreNoAnchors) {
    // Both contigs end in the same 100 bases, and these stand in the gap once more.
    const std::string repeat = RandomBases(100, 13);
    const std::string before = RandomBases(300, 14) + repeat;
    const std::string after = repeat + RandomBases(300, 15);
    const std::string bases = RandomBases(40, 16) + repeat + RandomBases(40, 17);
    const TrueGap gap = GapAt(0, 180, bases);
    EXPECT_EQ(JudgeOne(before, gap, after, before + bases + after).outcome, Outcome::kExact);
    // A fill that jumps from one copy of the repeat to the next lacks 140 bases or more.
    const GapResult jumped = JudgeOne(before, gap, after, before + after.substr(100));
    EXPECT_EQ(jumped.outcome, Outcome::kWrong);
    EXPECT_EQ(jumped.edits, 280);
}

TEST(Evaluate, ContigThatIsARepeatIsPlacedBetweenItsNeighbours) {
    const std::string repeat = RandomBases(80, 18);
    const std::string first = RandomBases(200, 19);
    const std::string third = RandomBases(200, 20) + repeat + RandomBases(50, 21);
    const std::string gap = RandomBases(30, 22);
    const std::string gap2 = RandomBases(30, 23);
    const std::vector<GapResult> results =
        Evaluate({{1, {first, repeat, third}}}, {GapAt(0, 30, gap), GapAt(1, 30, gap2)},
                 {{1, first + gap + repeat + gap2 + third}}, 31);
    EXPECT_EQ(results[0].outcome, Outcome::kExact);
    EXPECT_EQ(results[1].outcome, Outcome::kExact);
}

TEST(Evaluate, CountsAndRowsArePrinted) {
    GapResult exact;
    exact.truth = GapAt(0, 3, "ACG");
    exact.truth.kind = "plain";
    exact.truth.stated = 5;
    exact.outcome = Outcome::kExact;
    exact.edits = 0;
    exact.filled = 3;
    GapResult open;
    open.truth = GapAt(1, 7, "ACGTACG");
    open.outcome = Outcome::kOpen;
    open.open = 6;
    std::ostringstream counts;
    PrintCounts({exact, open, open}, counts);
    EXPECT_EQ(counts.str(), "exact\t1\nnear\t0\nwrong\t0\npartly\t0\nopen\t2\nnot found\t0\ntotal\t3\n");
    std::ostringstream rows;
    PrintPerGap({exact, open}, rows);
    EXPECT_EQ(rows.str(),
              "gap\tscaffold\tcontig\tkind\tstated\ttrue\tfilled\tn\tedits\toutcome\n"
              "1\t1\t0\tplain\t5\t3\t3\t0\t0\texact\n2\t1\t1\t\t0\t7\t0\t6\t\topen\n");
}

GapResult Result(int length, const std::string& kind, Outcome outcome) {
    GapResult result;
    result.truth.length = length;
    result.truth.kind = kind;
    result.outcome = outcome;
    return result;
}

TEST(PrintByLength, ClassesMeetAtTheirBounds) {
    const std::vector<GapResult> results = {
        Result(-90, "", Outcome::kExact),   Result(-1, "", Outcome::kWrong),    Result(0, "", Outcome::kNear),
        Result(1, "", Outcome::kExact),     Result(100, "", Outcome::kExact),   Result(101, "", Outcome::kPartly),
        Result(600, "", Outcome::kOpen),    Result(601, "", Outcome::kOpen),    Result(1499, "", Outcome::kNotFound),
        Result(1500, "", Outcome::kPartly), Result(90000, "", Outcome::kPartly)};
    std::ostringstream out;
    PrintByLength(results, out);
    EXPECT_EQ(out.str(),
              "true length\texact\tnear\twrong\tpartly\topen\tnot found\ttotal\n"
              "overlap\t1\t0\t1\t0\t0\t0\t2\n"
              "0\t0\t1\t0\t0\t0\t0\t1\n"
              "1-100\t2\t0\t0\t0\t0\t0\t2\n"
              "101-600\t0\t0\t0\t1\t1\t0\t2\n"
              "601-1499\t0\t0\t0\t0\t1\t1\t2\n"
              "1500+\t0\t0\t0\t2\t0\t0\t2\n");
}

TEST(PrintByLength, ClassesWithoutGapsAreRowsOfZeros) {
    std::ostringstream out;
    PrintByLength({}, out);
    EXPECT_EQ(out.str(),
              "true length\texact\tnear\twrong\tpartly\topen\tnot found\ttotal\n"
              "overlap\t0\t0\t0\t0\t0\t0\t0\n0\t0\t0\t0\t0\t0\t0\t0\n1-100\t0\t0\t0\t0\t0\t0\t0\n"
              "101-600\t0\t0\t0\t0\t0\t0\t0\n601-1499\t0\t0\t0\t0\t0\t0\t0\n1500+\t0\t0\t0\t0\t0\t0\t0\n");
}

TEST(PrintByKind, NumbersStandInTheirOrderAndNoNameIsADash) {
    const std::vector<GapResult> results = {
        Result(1, "tandem12", Outcome::kExact), Result(1, "tandem3", Outcome::kWrong),
        Result(1, "plain", Outcome::kOpen),     Result(1, "tandem", Outcome::kNear),
        Result(1, "", Outcome::kNotFound),      Result(1, "plain", Outcome::kExact),
        Result(1, "tandem03", Outcome::kExact), Result(1, "7", Outcome::kPartly),
        Result(1, "tandem3", Outcome::kOpen)};
    std::ostringstream out;
    PrintByKind(results, out);
    EXPECT_EQ(out.str(),
              "kind\texact\tnear\twrong\tpartly\topen\tnot found\ttotal\n"
              "7\t0\t0\t0\t1\t0\t0\t1\n"
              "-\t0\t0\t0\t0\t0\t1\t1\n"
              "plain\t1\t0\t0\t0\t1\t0\t2\n"
              "tandem\t0\t1\t0\t0\t0\t0\t1\n"
              "tandem3\t0\t0\t1\t0\t1\t0\t2\n"
              "tandem03\t1\t0\t0\t0\t0\t0\t1\n"
              "tandem12\t1\t0\t0\t0\t0\t0\t1\n");
}

class EvaluateProgram : public testing::ThreadStreamsTest {
  protected:
    std::string Write(const std::string& name, const std::string& text) {
        const std::string path = Directory() + "/" + name;
        std::ofstream(path) << text;
        return path;
    }

    int Run(const std::string& arguments) {
        const std::string command =
            std::string(EVALUATE_PROGRAM) + " " + arguments + " >" + Directory() + "/out 2>" + Directory() + "/err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string Out() { return testing::FileText(Directory() + "/out"); }
    std::string Err() { return testing::FileText(Directory() + "/err"); }
};

TEST_F(EvaluateProgram, ReadsTheThreeFilesAndIgnoresCase) {
    const std::string before = RandomBases(120, 30);
    const std::string after = RandomBases(120, 31);
    std::string lower = after;
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    const std::string contigs =
        Write("contig.fa", ">scaffold1_0\t0\n" + before.substr(0, 60) + "\n" + before.substr(60) +
                               "\r\n>scaffold1_1\t4\n" + after + "\n>scaffold2_0\t0\nACGT\n");
    const std::string truth =
        Write("truth.tsv", "gap\tscaffold\tcontig\tstated\ttrue\tkind\tbases\n1\t1\t0\t4\t5\tplain\tACGTT\n");
    const std::string one = Write("seq.thread1", ">scaffold1\n" + before + "acgtt" + lower + "\n");
    const std::string two = Write("seq.thread2", ">Scaffold2\t4\nACGT\n");
    const std::string table = Directory() + "/table.tsv";
    ASSERT_EQ(Run("-c " + contigs + " -T " + truth + " --per-gap " + table + " " + one + " " + two), 0) << Err();
    EXPECT_EQ(Out(), "exact\t1\nnear\t0\nwrong\t0\npartly\t0\nopen\t0\nnot found\t0\ntotal\t1\n");
    EXPECT_EQ(
        testing::FileText(table),
        "gap\tscaffold\tcontig\tkind\tstated\ttrue\tfilled\tn\tedits\toutcome\n1\t1\t0\tplain\t4\t5\t5\t0\t0\texact\n");
}

TEST_F(EvaluateProgram, BreakdownsFollowTheCountsOnRequest) {
    const std::string before = RandomBases(120, 30);
    const std::string after = RandomBases(120, 31);
    const std::string files = "-c " +
                              Write("contig.fa", ">scaffold1_0\t0\n" + before + "\n>scaffold1_1\t4\n" + after + "\n") +
                              " -T " + Write("truth.tsv", "1\t1\t0\t4\t5\tplain\tACGTT\n") + " " +
                              Write("seq", ">scaffold1\n" + before + "ACGTT" + after + "\n");
    const std::string counts = "exact\t1\nnear\t0\nwrong\t0\npartly\t0\nopen\t0\nnot found\t0\ntotal\t1\n";
    const std::string kinds =
        "\nkind\texact\tnear\twrong\tpartly\topen\tnot found\ttotal\nplain\t1\t0\t0\t0\t0\t0\t1\n";
    const std::string lengths =
        "\ntrue length\texact\tnear\twrong\tpartly\topen\tnot found\ttotal\n"
        "overlap\t0\t0\t0\t0\t0\t0\t0\n0\t0\t0\t0\t0\t0\t0\t0\n1-100\t1\t0\t0\t0\t0\t0\t1\n"
        "101-600\t0\t0\t0\t0\t0\t0\t0\n601-1499\t0\t0\t0\t0\t0\t0\t0\n1500+\t0\t0\t0\t0\t0\t0\t0\n";
    ASSERT_EQ(Run(files), 0) << Err();
    EXPECT_EQ(Out(), counts);
    ASSERT_EQ(Run("--by-kind " + files), 0) << Err();
    EXPECT_EQ(Out(), counts + kinds);
    ASSERT_EQ(Run("--by-kind --by-length " + files), 0) << Err();
    EXPECT_EQ(Out(), counts + lengths + kinds);
}

TEST_F(EvaluateProgram, FaultsNameFileLineAndValue) {
    const std::string contigs = Write("contig.fa", ">scaffold1_0\t0\nACGT\n");
    const std::string truth = Write("truth.tsv", "1\t1\t0\t4\t5\tplain\tACGTT\n");
    const std::string filled = Write("seq", ">scaffold1\nACGT\n");
    const auto fault = [&](const std::string& c, const std::string& t, const std::string& f) {
        EXPECT_EQ(Run("-c " + c + " -T " + t + " " + f), 1);
        return Err();
    };
    EXPECT_EQ(fault("/none", truth, filled), "lintara-evaluate: /none: cannot be read\n");
    EXPECT_EQ(fault(Write("c1", ">scaffold1_1\t0\n"), truth, filled),
              "lintara-evaluate: " + Directory() + "/c1: line 1: contig out of order: >scaffold1_1\t0\n");
    EXPECT_EQ(fault(Write("c2", ">chr1\nAC\n"), truth, filled),
              "lintara-evaluate: " + Directory() + "/c2: line 1: not a scaffold header: >chr1\n");
    EXPECT_EQ(fault(Write("c3", ">scaffold1\t0\nAC\n"), truth, filled),
              "lintara-evaluate: " + Directory() + "/c3: line 1: not a contig header: >scaffold1\t0\n");
    EXPECT_EQ(fault(contigs, Write("t1", "1\t1\t0\n"), filled),
              "lintara-evaluate: " + Directory() + "/t1: line 1: not seven fields but 3\n");
    EXPECT_EQ(fault(contigs, Write("t2", "1\t1\tx\t4\t5\tplain\tACGTT\n"), filled),
              "lintara-evaluate: " + Directory() + "/t2: line 1: not a number: x\n");
    EXPECT_EQ(
        fault(contigs, Write("t3", "1\t1\t0\t4\t6\tplain\tACGTT\n"), filled),
        "lintara-evaluate: " + Directory() + "/t3: line 1: the bases are not as many as the true length tells: 6\n");
    EXPECT_EQ(fault(contigs, truth, Write("f1", "ACGT\n")),
              "lintara-evaluate: " + Directory() + "/f1: line 1: sequence before the first header\n");
    EXPECT_EQ(fault(contigs, truth, Write("f2", ">scaffold1\nA\n>Scaffold1\t1\nA\n")),
              "lintara-evaluate: " + Directory() + "/f2: line 3: scaffold seen twice: >Scaffold1\t1\n");
}

}  // namespace
}  // namespace lintara::evaluate
