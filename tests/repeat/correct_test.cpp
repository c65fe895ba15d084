#include "repeat/correct.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "repeat/tag_table.h"

namespace lintara {
namespace {

using testing::TagTable;

/// AAAAAA is the one repeat tag, of a unit of 1, and common.
class Correct : public ::testing::Test {
  protected:
    Correct() {
        table.Mark("AAAAAA", 1);
        table.Freq("AAAAAA") = 4;
    }
    int Pass(std::vector<std::string>& reads, int TRLen = 1) {
        return CorrectReads(reads, table.tagInfo, TRLen, table.freq, 0);
    }
    int Pass(std::string& read) {
        std::vector<std::string> reads{read};
        const int corrected = Pass(reads);
        read = reads[0];
        return corrected;
    }
    std::vector<int> Frequencies() const { return std::vector<int>(table.freq, table.freq + TAG); }

    TagTable table;
};
using CorrectReadsTest = Correct;
using ReplaceTest = Correct;

TEST_F(CorrectReadsTest, ReadsOfFiveBasesOrFewerAreSkipped) {
    std::vector<std::string> reads{"", "C", "CAAAA"};
    const std::vector<std::string> before = reads;
    EXPECT_EQ(Pass(reads), 0);
    EXPECT_EQ(reads, before);
}

TEST_F(CorrectReadsTest, RareTagAtTheReadsStartGetsItsFirstBase) {
    table.Freq("CAAAAA") = 3;
    std::string read = "CAAAAAAAAA";
    EXPECT_EQ(Pass(read), 1);
    EXPECT_EQ(read, "AAAAAAAAAA");
    EXPECT_EQ(table.Freq("CAAAAA"), 2);
    EXPECT_EQ(table.Freq("AAAAAA"), 5);
}

TEST_F(CorrectReadsTest, FrontCorrectionLooksAtSevenTagStarts) {
    // The run starts at 8 and the C before it is wrong. The starts 1 to 7 are looked at: those from 2 on hold the C.
    const std::string read = "TGGCCTTCAAAAAAAA";
    for (const char* tag : {"GGCCTT", "GCCTTA", "CCTTAA", "CTTAAA", "TTAAAA", "TAAAAA"}) table.Freq(tag) = 4;
    for (const char* tag : {"TGGCCT", "GCCTTC", "CCTTCA", "CTTCAA", "TTCAAA", "TCAAAA", "CAAAAA"}) table.Freq(tag) = 1;

    table.Freq("GGCCTT") = 3;  // at 1; the change does not even touch it
    const std::vector<int> before = Frequencies();
    std::string same = read;
    EXPECT_EQ(Pass(same), 0);
    EXPECT_EQ(same, read);
    EXPECT_EQ(Frequencies(), before);

    table.Freq("GGCCTT") = 4;
    std::string changed = read;
    EXPECT_EQ(Pass(changed), 1);
    EXPECT_EQ(changed, "TGGCCTTAAAAAAAAA");
    EXPECT_EQ(table.Freq("TGGCCT"), 1);
    EXPECT_EQ(table.Freq("GGCCTT"), 4);
    for (const char* tag : {"GCCTTC", "CCTTCA", "CTTCAA", "TTCAAA", "TCAAAA", "CAAAAA"}) {
        EXPECT_EQ(table.Freq(tag), 0) << tag;
    }
    for (const char* tag : {"GCCTTA", "CCTTAA", "CTTAAA", "TTAAAA", "TAAAAA", "AAAAAA"}) {
        EXPECT_EQ(table.Freq(tag), 5) << tag;
    }
}

TEST_F(CorrectReadsTest, RareNeighbourRefusesTheChangeAndLeavesTheFrequencies) {
    for (const char* tag : {"GGCCTT", "GCCTTA", "CCTTAA", "CTTAAA", "TTAAAA", "TAAAAA"}) table.Freq(tag) = 4;
    table.Freq("CTTAAA") = 3;
    const std::vector<int> before = Frequencies();
    std::string read = "GGCCTTCAAAAAAAA";
    EXPECT_EQ(Pass(read), 0);
    EXPECT_EQ(read, "GGCCTTCAAAAAAAA");
    EXPECT_EQ(Frequencies(), before);
}

TEST_F(CorrectReadsTest, BaseBehindARunJoinsTwoRuns) {
    for (const char* tag : {"AAAAAC", "AAAACA", "AAACAA", "AACAAA", "ACAAAA", "CAAAAA"}) table.Freq(tag) = 1;
    std::string read = "AAAAAACAAAAAA";
    EXPECT_EQ(Pass(read), 1);
    EXPECT_EQ(read, "AAAAAAAAAAAAA");
    // Starts 2 to 6 follow the change; the suspect tag at 1 itself keeps its count.
    EXPECT_EQ(table.Freq("AAAAAC"), 1);
    for (const char* tag : {"AAAACA", "AAACAA", "AACAAA", "ACAAAA", "CAAAAA"}) EXPECT_EQ(table.Freq(tag), 0) << tag;
    EXPECT_EQ(table.Freq("AAAAAA"), 9);
}

TEST_F(CorrectReadsTest, LastBaseOfAReadNeedsNoNeighbour) {
    table.Freq("AAAAAA") = 1;
    std::string read = "AAAAAAC";
    const std::vector<int> before = Frequencies();
    EXPECT_EQ(Pass(read), 1);
    EXPECT_EQ(read, "AAAAAAA");
    EXPECT_EQ(Frequencies(), before);
}

TEST_F(CorrectReadsTest, NIsReplacedLikeAnyMismatch) {
    std::string behind = "AAAAAAN";
    EXPECT_EQ(Pass(behind), 1);
    EXPECT_EQ(behind, "AAAAAAA");
    std::string front = "NAAAAAA";
    EXPECT_EQ(Pass(front), 1);
    EXPECT_EQ(front, "AAAAAAA");
}

TEST_F(CorrectReadsTest, FrequentOtherTagEndsTheRunAndStartsAFront) {
    for (const char* tag : {"AAAAAC", "AAAACA", "AAACAA", "AACAAA", "ACAAAA", "CAAAAA"}) table.Freq(tag) = 4;
    std::string read = "AAAAAACAAAAAA";
    EXPECT_EQ(Pass(read), 0);
    EXPECT_EQ(read, "AAAAAACAAAAAA");
    // The tag behind the run is frequent, but the one before the next run is not.
    table.Freq("CAAAAA") = 3;
    EXPECT_EQ(Pass(read), 1);
    EXPECT_EQ(read, "AAAAAAAAAAAAA");
}

TEST_F(CorrectReadsTest, BasesAreTriedInOrderUntilOneIsAccepted) {
    for (const char* tag : {"ACCCCC", "CCCCCC"}) {
        table.Mark(tag, 3);
        table.Freq(tag) = 4;
    }
    std::vector<std::string> reads{"TCCCCCC"};
    EXPECT_EQ(Pass(reads, 3), 1);
    EXPECT_EQ(reads[0], "ACCCCCC");

    reads = {"TCCCCCC"};
    table.Freq("ACCCCC") = 3;
    EXPECT_EQ(Pass(reads, 3), 1);
    EXPECT_EQ(reads[0], "CCCCCCC");
}

TEST_F(CorrectReadsTest, SecondPassFindsWhatTheFirstMadeRare) {
    // CAAAAA is too frequent in the first pass until the second read gives one up.
    table.Freq("CAAAAA") = 4;
    for (const char* tag : {"AAAAAC", "AAAACA", "AAACAA", "AACAAA", "ACAAAA"}) table.Freq(tag) = 1;
    std::vector<std::string> reads{"CAAAAAA", "AAAAAACAAAAAA"};
    EXPECT_EQ(Pass(reads), 1);
    EXPECT_EQ(reads, (std::vector<std::string>{"CAAAAAA", "AAAAAAAAAAAAA"}));
    EXPECT_EQ(Pass(reads), 1);
    EXPECT_EQ(reads, (std::vector<std::string>{"AAAAAAA", "AAAAAAAAAAAAA"}));
    EXPECT_EQ(Pass(reads), 0);
}

TEST_F(ReplaceTest, FrequenciesFollowOnTheGivenStartsAlone) {
    table.Freq("CCCCCC") = 5;
    table.Freq("CCCCCG") = 4;
    std::string read = "CCCCCCT";
    table.Freq("CCCCCT") = 2;
    EXPECT_TRUE(Replace(read, 'G', 1, 2, 7, table.freq, 0));
    EXPECT_EQ(read, "CCCCCCG");
    EXPECT_EQ(table.Freq("CCCCCC"), 5);
    EXPECT_EQ(table.Freq("CCCCCG"), 5);
    EXPECT_EQ(table.Freq("CCCCCT"), 1);
}

TEST_F(ReplaceTest, RareTagRefuses) {
    table.Freq("CCCCCC") = 5;
    table.Freq("CCCCCG") = 3;
    std::string read = "CCCCCCT";
    const std::vector<int> before = Frequencies();
    EXPECT_FALSE(Replace(read, 'G', 0, 2, 7, table.freq, 0));
    EXPECT_EQ(read, "CCCCCCT");
    EXPECT_EQ(Frequencies(), before);
}

TEST_F(ReplaceTest, EmptyRangeAcceptsAndPlacesOutsideAreRefused) {
    std::string read = "CCCCCCT";
    EXPECT_TRUE(Replace(read, 'G', 3, 3, 1, table.freq, 0));
    EXPECT_EQ(read, "GCCCCCT");
    EXPECT_FALSE(Replace(read, 'A', 3, 3, 0, table.freq, 0));
    EXPECT_FALSE(Replace(read, 'A', 3, 3, 8, table.freq, 0));
    EXPECT_EQ(read, "GCCCCCT");
    EXPECT_FALSE(Replace(read, 'A', -2, 100, 7, table.freq, 0));
    EXPECT_EQ(read, "GCCCCCT");
}

// ---- a plain twin on random tandem reads ----

int PlainCorrect(std::vector<std::string>& reads, TagInfo* tagInfo, int TRLen, int* freq) {
    auto tag = [](const std::string& seq, int p) { return seq2bit(seq.substr(p, 6)); };
    auto repeat = [&](const std::string& six) { return ExistTRLen(tagInfo[seq2bit(six)], TRLen) > 0; };
    auto replace = [&](std::string& read, char c, int start, int end, int place) {
        std::string changed = read;
        changed[place] = c;
        for (int p = start; p < end; ++p) {
            if (freq[tag(changed, p)] < 4) return false;
        }
        for (int p = start; p < end; ++p) --freq[tag(read, p)];
        for (int p = start; p < end; ++p) ++freq[tag(changed, p)];
        read = changed;
        return true;
    };
    int corrected = 0;
    for (std::string& read : reads) {
        const int len = static_cast<int>(read.size());
        bool in_run = false;
        bool front = false;
        std::string front_seq;
        for (int pos = 0; pos < len - 5; ++pos) {
            const std::string six = read.substr(pos, 6);
            if (repeat(six)) {
                in_run = true;
                if (front && freq[seq2bit(front_seq)] < 4) {
                    for (char c : {'A', 'C', 'G', 'T'}) {
                        if (c == front_seq[0] || !repeat(c + front_seq.substr(1))) continue;
                        if (replace(read, c, pos < 7 ? 0 : pos - 7, pos, pos - 1)) {
                            ++corrected;
                            break;
                        }
                    }
                }
                front = false;
                continue;
            }
            bool replaced = false;
            if (in_run && freq[seq2bit(six)] < 4) {
                for (char c : {'A', 'C', 'G', 'T'}) {
                    if (c == six[5] || !repeat(six.substr(0, 5) + c)) continue;
                    if (replace(read, c, pos + 1, pos + 6 > len - 5 ? len - 5 : pos + 6, pos + 5)) {
                        ++corrected;
                        replaced = true;
                        break;
                    }
                }
            }
            if (replaced) continue;
            in_run = false;
            front = true;
            front_seq = six;
        }
    }
    return corrected;
}

TEST(CorrectReadsRandom, EqualsThePlainTwin) {
    std::mt19937 random(103);
    int corrected_in_all = 0;
    for (int round = 0; round < 150; ++round) {
        std::string unit(2 + random() % 12, ' ');
        for (char& c : unit) c = "ACGT"[random() % 4];
        std::string genome;
        for (int i = 0; i < 40; ++i) genome += "ACGT"[random() % 4];
        while (genome.size() < 140) genome += unit;
        for (int i = 0; i < 40; ++i) genome += "ACGT"[random() % 4];
        std::vector<std::string> reads;
        for (int i = 0; i < 60; ++i) {
            std::string read = genome.substr(random() % (genome.size() - 30), 20 + random() % 40);
            for (char& c : read) {
                if (random() % 50 == 0) c = "ACGTN"[random() % 5];
            }
            reads.push_back(read);
        }
        TagTable table;
        for (const std::string& read : reads) {
            const int tags = static_cast<int>(read.size()) - 5;
            for (int i = 0; i < tags; ++i) {
                ++table.Freq(read.substr(i, 6));
                for (int j = i + 1; j < tags; ++j) {
                    if (read.compare(i, 6, read, j, 6) == 0) table.Mark(read.substr(i, 6), j - i);
                }
            }
        }
        std::vector<std::string> plain_reads = reads;
        std::vector<int> plain_freq(table.freq, table.freq + TAG);
        const int TRLen = static_cast<int>(unit.size());
        for (int pass = 0; pass < 4; ++pass) {
            const int plain = PlainCorrect(plain_reads, table.tagInfo, TRLen, plain_freq.data());
            ASSERT_EQ(CorrectReads(reads, table.tagInfo, TRLen, table.freq, 0), plain);
            ASSERT_EQ(reads, plain_reads);
            ASSERT_EQ(std::vector<int>(table.freq, table.freq + TAG), plain_freq);
            corrected_in_all += plain;
        }
    }
    EXPECT_GT(corrected_in_all, 500);
}

}  // namespace
}  // namespace lintara
