// One small block, step by step, from the reads to the records of its consensus: the k-mer table, the matrix, the
// walks, the path, the sequence, the vote. The numbers are worked out on paper from the drawing of the reads below.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "consensus/edge.h"
#include "consensus/path.h"
#include "join/edge_connect.h"
#include "kmer/hashSet.h"
#include "kmer/overlap_matrix.h"
#include "run/settings.h"
#include "solve/block.h"
#include "support/thread_streams.h"
#include "walk/max_walks.h"

namespace lintara {
namespace {

// Five reads of 46 bases, each 4 further on than the one before. Read 0 has an A for the T in column 13, read 2 a G for
// the A in column 51.
//
//   column     0         1         2         3         4         5         6
//              0123456789 123456789 123456789 123456789 123456789 123456789 1
const std::vector<std::string> kReads = {
    /* 0 */ "ATGCCATTGACGTACAGGCTAAGTCGCATAGGTACTTCCGATCAAC",
    /* 4 */ "CATTGACGTTCAGGCTAAGTCGCATAGGTACTTCCGATCAACGGTG",
    /* 8 */ "GACGTTCAGGCTAAGTCGCATAGGTACTTCCGATCAACGGTGTGGC",
    /* 12 */ "TTCAGGCTAAGTCGCATAGGTACTTCCGATCAACGGTGTAGCTTGA",
    /* 16 */ "GGCTAAGTCGCATAGGTACTTCCGATCAACGGTGTAGCTTGACCAG",
};
const std::string kPath = "ATGCCATTGACGTACAGGCTAAGTCGCATAGGTACTTCCGATCAACGGTGTAGCTTGACCAG";
const std::string kConsensus = "ATGCCATTGACGTTCAGGCTAAGTCGCATAGGTACTTCCGATCAACGGTGTAGCTTGACCAG";

using Table = std::array<std::array<int, 5>, 5>;

// Reads 0 and 4 share 30 bases, which hold no word of 31.
const Table kSharedWords = {{
    {0, 1, 1, 1, 0},
    {0, 0, 1, 1, 1},
    {0, 0, 0, 1, 1},
    {0, 0, 0, 0, 1},
    {0, 0, 0, 0, 0},
}};

// Each 4 bases further on cost 4 bases of the overlap. The odd bases cost one column of 34 at most, within the 3
// percent that may differ.
const Table kOverlaps = {{
    {0, 42, 38, 34, 0},
    {0, 0, 42, 38, 34},
    {0, 0, 0, 42, 38},
    {0, 0, 0, 0, 42},
    {0, 0, 0, 0, 0},
}};

// Column 13: three reads of four against the path, which is enough to change it. Column 51: two of three for it. Where
// one read stands alone the column is called N, and the path's base stays.
const std::string kRecords =
    "0\t1\t0\t0\t0\tN   A\t1\t1\n"
    "1\t0\t0\t0\t1\tN   T\t1\t1\n"
    "2\t0\t0\t1\t0\tN   G\t1\t1\n"
    "3\t0\t1\t0\t0\tN   C\t1\t1\n"
    "4\t0\t2\t0\t0\tC---C\t2\t1\n"
    "5\t2\t0\t0\t0\tA---A\t2\t1\n"
    "6\t0\t0\t0\t2\tT---T\t2\t1\n"
    "7\t0\t0\t0\t2\tT---T\t2\t1\n"
    "8\t0\t0\t3\t0\tG---G\t3\t1\n"
    "9\t3\t0\t0\t0\tA---A\t3\t1\n"
    "10\t0\t3\t0\t0\tC---C\t3\t1\n"
    "11\t0\t0\t3\t0\tG---G\t3\t1\n"
    "12\t0\t0\t0\t4\tT---T\t4\t1\n"
    "13\t1\t0\t0\t3\tT   A\t4\t0.75\n"
    "14\t0\t4\t0\t0\tC---C\t4\t1\n"
    "15\t4\t0\t0\t0\tA---A\t4\t1\n"
    "16\t0\t0\t5\t0\tG---G\t5\t1\n"
    "17\t0\t0\t5\t0\tG---G\t5\t1\n"
    "18\t0\t5\t0\t0\tC---C\t5\t1\n"
    "19\t0\t0\t0\t5\tT---T\t5\t1\n"
    "20\t5\t0\t0\t0\tA---A\t5\t1\n"
    "21\t5\t0\t0\t0\tA---A\t5\t1\n"
    "22\t0\t0\t5\t0\tG---G\t5\t1\n"
    "23\t0\t0\t0\t5\tT---T\t5\t1\n"
    "24\t0\t5\t0\t0\tC---C\t5\t1\n"
    "25\t0\t0\t5\t0\tG---G\t5\t1\n"
    "26\t0\t5\t0\t0\tC---C\t5\t1\n"
    "27\t5\t0\t0\t0\tA---A\t5\t1\n"
    "28\t0\t0\t0\t5\tT---T\t5\t1\n"
    "29\t5\t0\t0\t0\tA---A\t5\t1\n"
    "30\t0\t0\t5\t0\tG---G\t5\t1\n"
    "31\t0\t0\t5\t0\tG---G\t5\t1\n"
    "32\t0\t0\t0\t5\tT---T\t5\t1\n"
    "33\t5\t0\t0\t0\tA---A\t5\t1\n"
    "34\t0\t5\t0\t0\tC---C\t5\t1\n"
    "35\t0\t0\t0\t5\tT---T\t5\t1\n"
    "36\t0\t0\t0\t5\tT---T\t5\t1\n"
    "37\t0\t5\t0\t0\tC---C\t5\t1\n"
    "38\t0\t5\t0\t0\tC---C\t5\t1\n"
    "39\t0\t0\t5\t0\tG---G\t5\t1\n"
    "40\t5\t0\t0\t0\tA---A\t5\t1\n"
    "41\t0\t0\t0\t5\tT---T\t5\t1\n"
    "42\t0\t5\t0\t0\tC---C\t5\t1\n"
    "43\t5\t0\t0\t0\tA---A\t5\t1\n"
    "44\t5\t0\t0\t0\tA---A\t5\t1\n"
    "45\t0\t5\t0\t0\tC---C\t5\t1\n"
    "46\t0\t0\t4\t0\tG---G\t4\t1\n"
    "47\t0\t0\t4\t0\tG---G\t4\t1\n"
    "48\t0\t0\t0\t4\tT---T\t4\t1\n"
    "49\t0\t0\t4\t0\tG---G\t4\t1\n"
    "50\t0\t0\t0\t3\tT---T\t3\t1\n"
    "51\t2\t0\t1\t0\tA---A\t3\t0.666667\n"
    "52\t0\t0\t3\t0\tG---G\t3\t1\n"
    "53\t0\t3\t0\t0\tC---C\t3\t1\n"
    "54\t0\t0\t0\t2\tT---T\t2\t1\n"
    "55\t0\t0\t0\t2\tT---T\t2\t1\n"
    "56\t0\t0\t2\t0\tG---G\t2\t1\n"
    "57\t2\t0\t0\t0\tA---A\t2\t1\n"
    "58\t0\t1\t0\t0\tN   C\t1\t1\n"
    "59\t0\t1\t0\t0\tN   C\t1\t1\n"
    "60\t1\t0\t0\t0\tN   A\t1\t1\n"
    "61\t0\t0\t1\t0\tN   G\t1\t1\n";

class SmallBlockWalk : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        for (int i = 0; i < 5; ++i) reads.emplace_back(kReads[static_cast<std::size_t>(i)], 4 * i);
    }
    Table Cells(std::uint8_t** matrix) const {
        Table table{};
        for (std::size_t a = 0; a < 5; ++a) {
            for (std::size_t b = 0; b < 5; ++b) table[a][b] = matrix[a][b];
        }
        return table;
    }

    std::vector<Read> reads;
};

TEST_F(SmallBlockWalk, FromReadsToRecords) {
    HashSet* hash = init_hashset(5 * 16, load_factor);
    fill_hash(hash, reads);
    std::uint8_t** matrix = hash2matrix(hash, 5);
    free_hash(hash);
    EXPECT_EQ(Cells(matrix), kSharedWords);

    overlap_matrix(matrix, reads, Method, 0, 0);
    EXPECT_EQ(Cells(matrix), kOverlaps);
    EXPECT_EQ(NewLog(), "caculate the overlap values\ncaculate finish!\n");

    // Reads 1, 2 and 3 are linked to all others.
    const int seed = GetMax(matrix, 5);
    EXPECT_EQ(seed, 1);

    // To the right: the nearest read, 2, differs from reads 3 and 4 in column 51 and is given up; read 3 is the next,
    // and read 4 the only one behind it.
    std::vector<int> starts;
    forwardmax(starts, reads, matrix, 5, seed, 0, 0);
    EXPECT_EQ(starts, (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(NewLog(),
              "start forward assembly...\n"
              "Before clean: 3\nafter clean: 3\n"
              "un accept num: 2\tratio: 1\n"
              "un accept num: 0\tratio: 0\n"
              "get last: 3 with accept size: 2\tratio: 0\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 0\nafter clean: 0\n"
              "Forward from 1 vector get finished! 3\n");

    // To the left there is read 0 alone.
    std::vector<int> ends;
    rewardmax(ends, reads, matrix, 5, seed, 0, 0);
    EXPECT_EQ(ends, (std::vector<int>{1, 0}));
    EXPECT_EQ(NewLog(),
              "start max reward assembly...\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 0\nafter clean: 0\n"
              "Reward from 1 vector get finished!2\n");

    std::vector<int> path = reverse_vector(ends);
    path.insert(path.end(), starts.begin() + 1, starts.end());
    clearn_order(path);
    EXPECT_EQ(path, (std::vector<int>{0, 1, 3, 4}));

    const int end[5] = {0, 0, 0, 0, 0};
    std::string seq = get_gap_seq(matrix, reads, path, -1, end, 0);
    EXPECT_EQ(seq, kPath);
    EXPECT_EQ(NewLog(),
              "Get the sequence of order, order size 4\n"
              "show order list: \n"
              "0\n"
              "1\tlength: 46\tafter: 0\toverlap: 42\n"
              "3\tlength: 46\tafter: 1\toverlap: 38\n"
              "4\tlength: 46\tafter: 3\toverlap: 42\n"
              "4 order element used to creat get the gap sequence\n"
              "Raw seq: " +
                  kPath + "\t62\n");

    // Placed by the path: reads 0, 1, 3 and 4; for the first time by a read on their left: 1, 2, 3 and 4.
    Get_snp_middle(seq, path, matrix, reads, 0);
    EXPECT_EQ(seq, kConsensus);
    EXPECT_EQ(Snp(),
              "value base for each position\n" + kRecords + "SNP get finished!\tused reads: 8\tunsame base: 0\n");
    EXPECT_EQ(NewLog(), "get the position for each read of middle block\nGet snp finished!\n");
    free_matrix(matrix, 5);
}

TEST_F(SmallBlockWalk, OneCallDoesTheSame) {
    TagInfo* tagInfo = nullptr;
    int type = 0;
    int realgaplen = 1;
    EXPECT_EQ(assemble_block(reads, Method, type, tagInfo, realgaplen, 0), kConsensus);
    EXPECT_EQ(Snp(),
              "value base for each position\n" + kRecords + "SNP get finished!\tused reads: 8\tunsame base: 0\n");
    EXPECT_EQ(initSizes[0], 5U * (100 - 31 + 1));
}

TEST_F(SmallBlockWalk, WithReadZeroAsTheBeforeEdge) {
    // The edge is compared with all reads, without the table of words, so that it has its 30 bases with read 4 as well.
    // The walk from the edge takes reads 1, 3 and 4, and what lies behind column 45 is the block's sequence. Read 4
    // reaches furthest, and is in the path already.
    TagInfo* tagInfo = nullptr;
    int type = 1;
    int realgaplen = 1;
    EXPECT_EQ(assemble_block(reads, Method, type, tagInfo, realgaplen, 0), kConsensus.substr(46));
    EXPECT_EQ(Log(),
              "the read number is: 5\n"
              "caculate the overlap values\ncaculate finish!\n"
              "Treat the before block of the large gap\n"
              "start forward assembly...\n"
              "Before clean: 4\nafter clean: 4\n"
              "un accept num: 0\tratio: 0\n"
              "get last: 1 with accept size: 4\tratio: 0\n"
              "Before clean: 3\nafter clean: 3\n"
              "un accept num: 2\tratio: 1\n"
              "un accept num: 0\tratio: 0\n"
              "get last: 3 with accept size: 2\tratio: 0\n"
              "Before clean: 1\nafter clean: 1\n"
              "Before clean: 0\nafter clean: 0\n"
              "Forward from 0 vector get finished! 4\n"
              "Get the sequence of order, order size 4\n"
              "show order list: \n"
              "0\n"
              "1\tlength: 46\tafter: 0\toverlap: 42\n"
              "3\tlength: 46\tafter: 1\toverlap: 38\n"
              "4\tlength: 46\tafter: 3\toverlap: 42\n"
              "4 order element used to creat get the gap sequence\n"
              "Raw seq: GGTGTAGCTTGACCAG\t16\n"
              "get the before position for each read\n"
              "lastid : 4\t62\n"
              "last read: " +
                  kReads[4] +
                  "\n"
                  "len: 46\tstart last order check!\n"
                  "last order check passed!\n"
                  "Get snp finished!\n"
                  ">starts number: 4\t16\n"
                  "GGTGTAGCTTGACCAG\n");
    // Reads are placed anew by each path read here: 1 + 4 by the edge, 1 + 3 by read 1, 1 + 1 by read 3, and read 4.
    // Inside the edge the vote differs in the four columns of one read and in column 13, and changes nothing.
    EXPECT_EQ(Snp(),
              "get the before position for each read\n"
              "value base for each position\t46\n" +
                  kRecords + "SNP get finished!\tused reads: 12\tunsame base: 5\n");
}

}  // namespace
}  // namespace lintara
