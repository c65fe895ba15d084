#include "consensus/column.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <sstream>

#include "covered_column.h"
#include "support/thread_streams.h"

namespace lintara::consensus {
namespace {

using lintara::testing::CoveredColumn;

class ColumnStreams : public lintara::testing::ThreadStreamsTest {
  protected:
    /// Votes on the columns of seq from first to last one by one and at once, and holds both against each other.
    template <typename Vote>
    void ExpectSameVotes(const std::string& seq, int first, int last, const ReadMap& read, Vote vote) {
        std::string one_by_one = seq;
        for (int posit = first; posit < last; ++posit) one_by_one[posit] = VoteColumn(seq[posit], posit, read, 0, vote);
        const std::string wanted = NewSnp();
        std::string at_once = seq;
        VoteColumns(at_once, first, last, read, 0, vote, [&](int posit, char voted) {
            ASSERT_NE(voted, seq[posit]) << "nothing to keep";
            at_once[posit] = voted;
        });
        ASSERT_EQ(at_once, one_by_one);
        ASSERT_EQ(NewSnp(), wanted);
    }
};

bool Same(const Column& a, const Column& b) {
    return std::equal(std::begin(a.num), std::end(a.num), std::begin(b.num)) && a.read_num == b.read_num;
}

std::string RandomBases(std::mt19937& random, int size) {
    std::string seq;
    for (int i = 0; i < size; ++i) seq += "ACGTNacgt-"[random() % 10];
    return seq;
}

TEST(CountColumn, SpanRunsFromTheFirstToTheLastBase) {
    CoveredColumn placed("");
    placed.Place("ACG", 3);
    EXPECT_EQ(CountColumn(2, placed.Map()).read_num, 0);
    EXPECT_EQ(CountColumn(3, placed.Map()).num[0], 1);
    EXPECT_EQ(CountColumn(4, placed.Map()).num[1], 1);
    EXPECT_EQ(CountColumn(5, placed.Map()).num[2], 1);
    EXPECT_EQ(CountColumn(6, placed.Map()).read_num, 0);
}

TEST(CountColumn, ReadsMayBeginInFrontOfTheConsensus) {
    CoveredColumn placed("");
    placed.Place("AACT", -2);
    EXPECT_EQ(CountColumn(0, placed.Map()).num[1], 1);
    EXPECT_EQ(CountColumn(1, placed.Map()).num[3], 1);
}

TEST(CountColumn, NonBasesCountAsReadsOnly) {
    const CoveredColumn placed("AaN-");
    const Column column = CountColumn(5, placed.Map());
    EXPECT_EQ(column.num[0], 2);
    EXPECT_EQ(column.read_num, 4);
}

/// A piece of a path as a read has it: with some bases changed, some in lower case.
std::string ReadOf(std::mt19937& random, const std::string& path, int start, int size) {
    std::string read = RandomBases(random, size);
    const bool true_to_path = random() % 4 != 0;
    for (int i = 0; i < size && true_to_path; ++i) {
        const int posit = start + i;
        if (posit < 0 || posit >= static_cast<int>(path.size()) || random() % 30 == 0) continue;
        read[i] = path[posit];
        if (random() % 30 == 0) read[i] = static_cast<char>(read[i] ^ 0x20);
    }
    return read;
}

TEST(CountColumns, AgreesWithTheCountOfEachColumn) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 600; ++round) {
        const std::string path = RandomBases(random, 120);
        CoveredColumn placed("");
        const int reads = static_cast<int>(random() % 20);
        for (int i = 0; i < reads; ++i) {
            const int start = static_cast<int>(random() % 120) - 20;
            placed.Place(ReadOf(random, path, start, static_cast<int>(random() % 50)), start);
        }
        const int first = static_cast<int>(random() % 20);
        const int last = first + static_cast<int>(random() % 100);
        const std::vector<Column> columns = CountColumns(path, first, last, placed.Map());
        ASSERT_EQ(columns.size(), static_cast<std::size_t>(last - first));
        for (int posit = first; posit < last; ++posit) {
            ASSERT_TRUE(Same(columns[posit - first], CountColumn(posit, placed.Map()))) << posit;
        }
    }
}

TEST(CountColumns, ManyReadsOnOneColumn) {
    for (const int reads : {254, 255, 256, 511, 1000}) {
        CoveredColumn placed("");
        for (int i = 0; i < reads; ++i) placed.Place(i % 3 == 0 ? "acg" : i % 3 == 1 ? "ACG" : "NNT", i % 2);
        for (const std::string path : {"ACGTA", "AACGT", "NNNNN"}) {
            const std::vector<Column> columns = CountColumns(path, 0, 5, placed.Map());
            for (int posit = 0; posit < 5; ++posit) {
                ASSERT_TRUE(Same(columns[posit], CountColumn(posit, placed.Map()))) << posit << " of " << reads;
            }
        }
    }
}

TEST(CountColumns, EveryByteCountsAsTheTableSays) {
    std::string bytes;
    for (int c = 0; c < 256; ++c) bytes += static_cast<char>(c);
    CoveredColumn placed("");
    placed.Place(bytes, 0);
    for (int c = 0; c < 256; ++c) {
        for (const std::string& path : {std::string(256, static_cast<char>(c)), bytes}) {
            const std::vector<Column> columns = CountColumns(path, 0, 256, placed.Map());
            for (int posit = 0; posit < 256; ++posit) {
                ASSERT_TRUE(Same(columns[posit], CountColumn(posit, placed.Map()))) << posit << " on " << c;
            }
        }
    }
}

TEST(CountColumns, EmptyRangeHasNoColumns) {
    const CoveredColumn placed("A");
    EXPECT_TRUE(CountColumns("ACGTACGT", 7, 7, placed.Map()).empty());
    EXPECT_TRUE(CountColumns("ACGTACGT", 7, 5, placed.Map()).empty());
}

TEST(MostFrequent, TieStaysWithTheEarlierLetter) {
    const Winner winner = MostFrequent({{1, 3, 3, 2}, 10});
    EXPECT_EQ(winner.bases, 'C');
    EXPECT_EQ(winner.value, 3);
    EXPECT_DOUBLE_EQ(winner.ratio, 0.3);
}

TEST(MostFrequent, NoBaseIsN) {
    EXPECT_EQ(MostFrequent({{0, 0, 0, 0}, 3}).bases, 'N');
    EXPECT_EQ(MostFrequent({{0, 0, 0, 0}, 3}).ratio, 0.0);
    EXPECT_EQ(MostFrequent({{0, 0, 0, 0}, 0}).ratio, 0.0);
}

TEST(AppendRecord, FieldsInOrder) {
    std::string text = "before\n";
    AppendRecord(text, 12, {{1, 20, 3, 4}, 29}, 'C', "   ", 'T', 20);
    EXPECT_EQ(text, "before\n12\t1\t20\t3\t4\tC   T\t29\t0.689655\n");
}

TEST(AppendRecord, NumbersOfAnySize) {
    const int most = std::numeric_limits<int>::max();
    std::string text;
    AppendRecord(text, most, {{9, 10, 99, most}, most}, 'T', "---", 'T', most);
    AppendRecord(text, 0, {{0, 0, 0, 0}, 3}, 'N', "\t", 'a', 0);
    EXPECT_EQ(text,
              "2147483647\t9\t10\t99\t2147483647\tT---T\t2147483647\t1\n"
              "0\t0\t0\t0\t0\tN\ta\t3\t0\n");
    for (const int posit : {0, 9, 10, 99, 100, 999, 1000, 1007, 1070, 1700, 54321, 999999, 1000000, 1234567}) {
        text.clear();
        AppendRecord(text, posit, {{0, 0, 0, 0}, 0}, 'N', "   ", 'A', 0);
        EXPECT_EQ(text, std::to_string(posit) + "\t0\t0\t0\t0\tN   A\t0\t0\n");
    }
}

TEST(AppendRecord, SharesOfAnyNumbers) {
    for (int round = 0; round < 2; ++round) {
        for (int read_num = 0; read_num <= 300; ++read_num) {
            for (int value = 0; value <= read_num; ++value) {
                std::ostringstream wanted;
                wanted << "5\t0\t0\t0\t0\tA---A\t" << read_num << '\t'
                       << (read_num > 0 ? static_cast<double>(value) / read_num : 0.0) << '\n';
                std::string text;
                AppendRecord(text, 5, {{0, 0, 0, 0}, read_num}, 'A', "---", 'A', value);
                ASSERT_EQ(text, wanted.str());
            }
        }
    }
}

/// The quotient as a stream prints it.
std::string StreamRatio(int value, int read_num) {
    std::ostringstream plain;
    plain << (read_num > 0 ? static_cast<double>(value) / read_num : 0.0);
    return plain.str();
}

std::string Ratio(int value, int read_num) {
    char text[kRatioSize];
    return {text, WriteRatio(text, value, read_num)};
}

TEST(WriteRatio, LooksAsAStreamPrintsIt) {
    // printf's %g is what a stream's default comes down to, and quicker to set up for some millions of quotients.
    char wanted[32];
    for (int read_num = 1; read_num <= 3000; ++read_num) {
        for (int value = 0; value <= read_num; ++value) {
            std::snprintf(wanted, sizeof wanted, "%g", static_cast<double>(value) / read_num);
            ASSERT_EQ(Ratio(value, read_num), wanted) << value << " / " << read_num;
        }
    }
    for (int read_num = 1; read_num <= 400; ++read_num) {
        for (int value = 0; value <= read_num; ++value) ASSERT_EQ(Ratio(value, read_num), StreamRatio(value, read_num));
    }
}

TEST(WriteRatio, LargeNumbersLookAsAStreamPrintsThem) {
    std::mt19937 random(5);
    for (int round = 0; round < 200000; ++round) {
        const int read_num = 1 + static_cast<int>(random() >> (1 + random() % 30));
        const int value = static_cast<int>(random() % (static_cast<unsigned>(read_num) + 1));
        ASSERT_EQ(Ratio(value, read_num), StreamRatio(value, read_num)) << value << " / " << read_num;
        const int few = static_cast<int>(random() % 40);
        if (few > read_num) continue;
        ASSERT_EQ(Ratio(few, read_num), StreamRatio(few, read_num)) << few << " / " << read_num;
    }
    EXPECT_EQ(Ratio(0, 0), "0");
    EXPECT_EQ(Ratio(1, 10000), "0.0001");
    EXPECT_EQ(Ratio(1, 10001), "9.999e-05");
    EXPECT_EQ(Ratio(127, 128), "0.992188") << "0.9921875 lies in the middle";
    EXPECT_EQ(Ratio(125, 128), "0.976562") << "0.9765625 lies in the middle";
}

TEST(ClearWinner, SevenTenthsAreEnough) {
    EXPECT_EQ(ClearWinner('G', 'A', 7.0 / 10), 'G');
    EXPECT_EQ(ClearWinner('G', 'A', 0.69), 'A');
    EXPECT_EQ(ClearWinner('A', 'A', 0.1), 'A');
}

TEST_F(ColumnStreams, ManyColumnsWriteWhatSingleColumnsWrite) {
    std::mt19937 random(7);
    const auto vote = [](char seq_base, const Column& column) {
        const Winner winner = MostFrequent(column);
        return Verdict{winner.bases, Marker(winner.bases, seq_base), winner.value, winner.bases};
    };
    // One that says something else of columns in which all reads agree.
    const auto careful = [](char seq_base, const Column& column) {
        const Winner winner = MostFrequent(column);
        const char bases = winner.value > 2 ? winner.bases : 'N';
        return Verdict{bases, bases == seq_base ? "\t" : "??", winner.value / 2, bases};
    };
    for (int round = 0; round < 200; ++round) {
        const std::string seq = RandomBases(random, 80);
        CoveredColumn placed("");
        for (int i = 0; i < 12; ++i) {
            const int start = static_cast<int>(random() % 90) - 10;
            placed.Place(ReadOf(random, seq, start, 30), start);
        }
        ExpectSameVotes(seq, 4, 75, placed.Map(), vote);
        ExpectSameVotes(seq, 4, 75, placed.Map(), careful);
        // A vote with a member is asked for each column.
        const int least = static_cast<int>(random() % 5);
        ExpectSameVotes(seq, 4, 75, placed.Map(), [least](char seq_base, const Column& column) {
            const Winner winner = MostFrequent(column);
            const char bases = winner.value >= least ? winner.bases : 'N';
            return Verdict{bases, Marker(bases, seq_base), winner.value, bases};
        });
    }
}

TEST_F(ColumnStreams, ManyReadsThatAgreeWriteWhatSingleColumnsWrite) {
    const auto vote = [](char seq_base, const Column& column) {
        const Winner winner = MostFrequent(column);
        return Verdict{winner.bases, Marker(winner.bases, seq_base), winner.value, winner.bases};
    };
    // 1 of 255 has the longest share.
    const auto longest = [](char seq_base, const Column& column) {
        return Verdict{seq_base, Marker(seq_base, seq_base), column.read_num > 0 ? 1 : 0, seq_base};
    };
    const std::string seq = "ACGTTGCAAC";
    CoveredColumn placed("");
    for (const int more : {99, 1, 1, 153, 1, 1, 1, 300}) {
        for (int i = 0; i < more; ++i) placed.Place(seq, 0);
        ExpectSameVotes(seq, 0, 10, placed.Map(), vote);
        ExpectSameVotes(seq, 0, 10, placed.Map(), longest);
    }
}

TEST_F(ColumnStreams, FinishingLine) {
    WriteFinish(17, 3, 0);
    EXPECT_EQ(Snp(), "SNP get finished!\tused reads: 17\tunsame base: 3\n");
}

TEST_F(ColumnStreams, IllegalOrderEndsTheProcessWithTheMessageInTheLog) {
    Log();
    EXPECT_EXIT(IllegalOrder("Error in order vector!\t", 4, 0), ::testing::ExitedWithCode(255), "^$");
    EXPECT_EQ(Log(), "Error in order vector!\t4\n");
}

TEST(Head, NegativeCountKeepsAll) {
    EXPECT_EQ(Head("ACGT", 2), "AC");
    EXPECT_EQ(Head("ACGT", 0), "");
    EXPECT_EQ(Head("ACGT", 9), "ACGT");
    EXPECT_EQ(Head("ACGT", -1), "ACGT");
}

TEST(From, OffsetIsClamped) {
    EXPECT_EQ(From("ACGT", 1), "CGT");
    EXPECT_EQ(From("ACGT", 4), "");
    EXPECT_EQ(From("ACGT", 5), "");
    EXPECT_EQ(From("ACGT", -2), "ACGT");
}

TEST(DropFrontAndEnd, NeverMoreThanIsThere) {
    std::string seq = "ACGTA";
    DropFront(seq, 2);
    EXPECT_EQ(seq, "GTA");
    DropEnd(seq, 1);
    EXPECT_EQ(seq, "GT");
    DropEnd(seq, -1);
    DropFront(seq, -1);
    EXPECT_EQ(seq, "GT");
    DropFront(seq, 3);
    EXPECT_EQ(seq, "");
    DropEnd(seq, 1);
    EXPECT_EQ(seq, "");
}

TEST(SameBases, ColumnsOutsideAreUnequal) {
    EXPECT_EQ(SameBases("ACGT", 0, "ACGA", 0, 4), 3);
    EXPECT_EQ(SameBases("ACGT", 2, "GTAA", 0, 4), 2);
    EXPECT_EQ(SameBases("ACGT", -1, "AACG", 0, 4), 3);
    EXPECT_EQ(SameBases("ACGT", 0, "ACGT", 9, 4), 0);
    EXPECT_EQ(SameBases("ACGT", 0, "ACGT", 0, -3), 0);
}

}  // namespace
}  // namespace lintara::consensus
