#include "run/options.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

class Options : public ::testing::Test {
  protected:
    void SetUp() override { testing::ResetSettings(); }
    void TearDown() override { testing::ResetSettings(); }

    static int Parse(std::vector<std::string> words) {
        words.insert(words.begin(), "lintara");
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        return mGetOptions(static_cast<int>(pointers.size()), pointers.data());
    }
};

TEST_F(Options, EachLetterSetsItsVariable) {
    EXPECT_EQ(
        Parse({"-E", "0.5", "-M", "0.9", "-a", "40", "-c", "c.fa", "-e",  "0.2", "-f",  "0.5", "-g", "g.fa", "-i",
               "77", "-k",  "25", "-m",  "3",  "-n", "12", "-o",   "out", "-r",  "150", "-s",  "9",  "-t",   "8"}),
        31);
    EXPECT_EQ(ECUTOFF, 0.5);
    EXPECT_EQ(Match_ratio, 0.9);
    EXPECT_EQ(Min_overlap, 40);
    EXPECT_EQ(contig_file, "c.fa");
    EXPECT_EQ(false_ratio, 0.2);
    EXPECT_EQ(load_factor, 0.5F);
    EXPECT_EQ(gap_file, "g.fa");
    EXPECT_EQ(initSize, 77U);
    EXPECT_EQ(Kmer, 25);
    EXPECT_EQ(Method, 3);
    EXPECT_EQ(GapId, 12);
    EXPECT_EQ(out_file, "out");
    EXPECT_EQ(ReadLen, 150);
    EXPECT_EQ(StartId, 9);
    EXPECT_EQ(threadNum, 8);
}

TEST_F(Options, DefaultsStand) {
    EXPECT_EQ(Parse({}), 1);
    EXPECT_EQ(Kmer, 31);
    EXPECT_EQ(initSize, 1048576U);
    EXPECT_EQ(Match_ratio, 0.97);
    EXPECT_EQ(load_factor, 0.75F);
    EXPECT_EQ(ReadLen, 100);
    EXPECT_EQ(threadNum, 1);
    EXPECT_EQ(Min_overlap, 30);
    EXPECT_EQ(false_ratio, 0.14);
    EXPECT_EQ(ECUTOFF, 0.6);
    EXPECT_EQ(Method, 5);
    EXPECT_EQ(GapId, -1);
    EXPECT_EQ(StartId, -1);
    EXPECT_EQ(min_align, 8);
    EXPECT_EQ(ContigLen, 32);
    EXPECT_EQ(TELEN, 250);
    EXPECT_EQ(readLen, 100);
    EXPECT_EQ(IsGz, 0);
    EXPECT_EQ(gz_gap_file, "");
}

TEST_F(Options, OnlyTheSecondCharacterCounts) {
    EXPECT_EQ(Parse({"-abc", "7"}), 3);
    EXPECT_EQ(Min_overlap, 7);
}

TEST_F(Options, TextThatIsNoNumberGivesZero) {
    Parse({"-k", "many", "-M", "high"});
    EXPECT_EQ(Kmer, 0);
    EXPECT_EQ(Match_ratio, 0.0);
}

TEST_F(Options, ParsingStopsAtAWordWithoutDash) {
    EXPECT_EQ(Parse({"stray", "-k", "25"}), 1);
    EXPECT_EQ(Parse({"-k", "25", "stray", "-r", "50"}), 3);
    EXPECT_EQ(Kmer, 25);
    EXPECT_EQ(ReadLen, 100);
}

TEST_F(Options, ValueMayBeginWithADash) {
    EXPECT_EQ(Parse({"-n", "-1", "-m", "-3"}), 5);
    EXPECT_EQ(Method, -3);
}

TEST_F(Options, MinOverlapDoesNotMoveTheOverlapCutoff) {
    Parse({"-a", "40"});
    EXPECT_EQ(Min_overlap, 40);
    EXPECT_EQ(OVERLAPLENCUTOFF, 15);
}

TEST_F(Options, MissingValueAborts) {
    for (const char* option : {"-k", "-c", "-M", "-f", "-t"}) {
        EXPECT_EXIT(Parse({option}), ::testing::KilledBySignal(SIGABRT), "") << option;
    }
}

TEST_F(Options, UnknownLetterAndLoneDashEndWithStatusOne) {
    for (const char* word : {"-h", "-x", "-", "--help", "-K"}) {
        EXPECT_EXIT(Parse({word}), ::testing::ExitedWithCode(1), "") << word;
    }
}

TEST(Itostr, WritesDecimals) {
    char buffer[12];
    for (const int value : {0, 7, -7, 4096, INT_MAX, INT_MIN}) {
        itostr(buffer, value);
        EXPECT_EQ(buffer, std::to_string(value));
    }
}

TEST(BaseTables, MapEveryByte) {
    const std::string bases = "AaCcGgTt";
    for (int c = 0; c < 256; ++c) {
        const std::size_t at = bases.find(static_cast<char>(c));
        const int code = at == std::string::npos ? 4 : static_cast<int>(at / 2);
        EXPECT_EQ(alphabet[c], code) << c;
        EXPECT_EQ(alphabet1[c], c == 'N' || c == 'n' ? 5 : code) << c;
    }
    EXPECT_STREQ(base, "ACGT");
    EXPECT_STREQ(sbase, "acgtN");
}

}  // namespace
}  // namespace lintara
