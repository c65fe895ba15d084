#include "repeat/repeat_runs.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "repeat/tag_table.h"

namespace lintara {

// For the comparisons of whole lists.
static bool operator==(const RepeatRun& a, const RepeatRun& b) {
    return std::tie(a.read, a.first, a.end) == std::tie(b.read, b.first, b.end);
}

namespace {

using Runs = std::vector<RepeatRun>;

TagReads LaidOut(const std::vector<std::string>& reads) {
    TagReads laid;
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
    return laid;
}

Runs PlainRuns(const TagReads& laid, const RepeatTags& repeat) {
    Runs runs;
    for (int read = 0; read < laid.num(); ++read) {
        bool inside = false;
        for (int p = laid.First(read); p < laid.TagsEnd(read); ++p) {
            const bool is_repeat = repeat.marks[laid.Tag(p)] == 1;
            if (is_repeat && !inside) runs.push_back({read, p, p});
            if (is_repeat) ++runs.back().end;
            inside = is_repeat;
        }
    }
    return runs;
}

TEST(AddRepeatTags, TakesTheTagsThatRecurAtTheLength) {
    testing::TagTable table;
    table.Mark("ACACAC", 2);
    table.Mark("CACACA", 2);
    table.Mark("CACACA", 4);
    table.Mark("GGGGGG", 1);
    RepeatTags repeat;
    AddRepeatTags(table.tagInfo, 2, repeat);
    EXPECT_EQ(repeat.tags, (std::vector<int>{273, 1092}));  // 010101 and 101010 to the base 4
    EXPECT_TRUE(repeat.Has(273));
    EXPECT_FALSE(repeat.Has(2730)) << "GGGGGG";
    repeat.Clear();
    EXPECT_FALSE(repeat.Has(273));
    EXPECT_TRUE(repeat.tags.empty());
}

TEST(FindRuns, StayInsideTheirReads) {
    testing::TagTable table;
    table.Mark("ACACAC", 2);
    RepeatTags repeat;
    AddRepeatTags(table.tagInfo, 2, repeat);
    // The second read's end and the third's start make the tag only together.
    const TagReads laid = LaidOut({"TACACACT", "TTTTTTACA", "CACTTTT", "GGGGGG", "", "ACACAC"});
    FindRuns(laid, repeat);
    EXPECT_EQ(repeat.runs, (Runs{{0, 1, 2}, {5, 30, 31}}));
}

TEST(FindRuns, AreAsLongAsTheyCanBe) {
    testing::TagTable table;
    table.Mark("ACACAC", 2);
    table.Mark("CACACA", 2);
    RepeatTags repeat;
    AddRepeatTags(table.tagInfo, 2, repeat);
    const TagReads laid = LaidOut({"GG", "ACACACTACACACAC"});
    FindRuns(laid, repeat);
    EXPECT_EQ(repeat.runs, (Runs{{1, 2, 3}, {1, 9, 12}}));  // behind the T, place 7 of the read
}

TEST(FindRuns, EqualsThePlainSearchForFewAndManyTags) {
    std::mt19937 random(46);
    RepeatTags repeat;
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> reads(random() % 40);
        const unsigned int letters = 1 + random() % 4;
        for (std::string& read : reads) {
            for (int size = static_cast<int>(random() % 100); size > 0; --size) read += "ACGT"[random() % letters];
        }
        TagReads laid = LaidOut(reads);
        repeat.Clear();
        for (int tags = round % 9; tags > 0; --tags) {
            const int tag = laid.bases.empty() ? tags : laid.Tag(static_cast<int>(random() % laid.bases.size()));
            if (!repeat.Has(tag)) repeat.Add(tag);
        }
        FindRuns(laid, repeat);
        ASSERT_EQ(repeat.runs, PlainRuns(laid, repeat)) << round;

        // Other runs in some of the reads that have one.
        std::vector<int> changed;
        for (const RepeatRun& run : Runs(repeat.runs)) {
            if (random() % 3 != 0 || (!changed.empty() && changed.back() == run.read)) continue;
            changed.push_back(run.read);
            for (int p = laid.First(run.read); p < laid.TagsEnd(run.read); ++p) {
                if (random() % 2 == 0) laid.tags[p] = static_cast<std::uint16_t>(repeat.tags[0]);
            }
            laid.tags[run.first] = static_cast<std::uint16_t>(repeat.tags[0]);
        }
        FindRunsAgain(laid, changed, repeat);
        ASSERT_EQ(repeat.runs, PlainRuns(laid, repeat)) << round;
    }
}

}  // namespace
}  // namespace lintara
