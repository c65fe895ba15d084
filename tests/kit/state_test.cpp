#include "kit/fill/state.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace lintara::kit {
namespace {

const std::string kLeft = std::string(390, 'a') + "ACGTACGTAC";
const std::string kRight = "GGTTGGTTGG" + std::string(390, 'c');

std::vector<FastaRecord> Records() {
    return {{"x", "words", kLeft + std::string(20, 'N') + kRight, 1}};
}

std::string Text(const State& state, const std::vector<FastaRecord>& records) {
    std::string text;
    for (const Piece& piece : state.scaffolds[0].pieces) text += PieceText(piece, records[0]);
    return text;
}

GapResult Filled(const std::string& text) {
    GapResult result;
    result.gap = 1;
    result.known = true;
    result.text = text;
    result.strategy = "small";
    return result;
}

struct OneRun {
    std::vector<FastaRecord> records = Records();
    State state = StartState(records, 1);
    std::vector<PiecePlace> places;
    RoundGain Round(const GapResult& result, bool trim) {
        if (trim) TrimForNextRound(state);
        LayoutOf(state, records, places);
        return ApplyResults(state, records, places, {result}, trim ? 2 : 1);
    }
};

TEST(State, TrimmingHidesTenBasesOnEachSide) {
    OneRun run;
    TrimForNextRound(run.state);
    Layout layout = LayoutOf(run.state, run.records, run.places);
    ASSERT_EQ(layout.gapCount, 1);
    EXPECT_EQ(layout.sequences[0].gaps[0].span, (Span{390, 430}));
    EXPECT_EQ(Text(run.state, run.records), run.records[0].sequence);
}

TEST(State, ContigsOf300BasesAreNotTrimmed) {
    std::vector<FastaRecord> records = {{"x", "", std::string(300, 'A') + "N" + std::string(301, 'C'), 1}};
    State state = StartState(records, 1);
    TrimForNextRound(state);
    EXPECT_EQ(state.scaffolds[0].pieces[1].trimLeft, 0);
    EXPECT_EQ(state.scaffolds[0].pieces[1].trimRight, 10);
}

TEST(State, FreshEndsAreTrimmedOnce) {
    OneRun run;
    TrimFreshEnds(run.state);
    run.state.scaffolds[0].pieces[1].trimRight = 0;
    TrimFreshEnds(run.state);
    EXPECT_EQ(run.state.scaffolds[0].pieces[1].trimLeft, 10);
    EXPECT_EQ(run.state.scaffolds[0].pieces[1].trimRight, 10);
}

TEST(State, GainNamesItsGaps) {
    OneRun run;
    EXPECT_EQ(run.Round(Filled(std::string(20, 'N')), false).gained, std::vector<int>());
    EXPECT_EQ(run.Round(Filled("GGG" + std::string(12, 'N') + "TTTTT"), false).gained, std::vector<int>{1});
}

TEST(State, FillThatRepeatsTrimmedBasesLeavesTheContigs) {
    OneRun run;
    RoundGain gain = run.Round(Filled("ACGTACGTACTTTGGTTGGTTGG"), true);
    EXPECT_EQ(gain.closed, 1);
    EXPECT_EQ(gain.bases, 3);
    EXPECT_EQ(Text(run.state, run.records), kLeft + "ttt" + kRight);
}

TEST(State, FillThatDiffersReplacesTrimmedBases) {
    OneRun run;
    run.Round(Filled("ACGTACGTTTGGTTGGTTGG"), true);  // the contig's last AC is TT in the reads
    EXPECT_EQ(Text(run.state, run.records), kLeft.substr(0, 398) + "tt" + kRight);
}

TEST(State, OverlapCutsTheContigInFront) {
    OneRun run;
    GapResult result = Filled("");
    result.cutBefore = 7;
    EXPECT_EQ(run.Round(result, false).closed, 1);
    EXPECT_EQ(Text(run.state, run.records), kLeft.substr(0, 393) + kRight);
    EXPECT_TRUE(run.state.gaps[0].cut);
}

TEST(State, OpenGapKeepsItsTrimmedBases) {
    OneRun run;
    EXPECT_EQ(run.Round(Filled(std::string(40, 'N')), true).gaps, 0);
    EXPECT_EQ(Text(run.state, run.records), run.records[0].sequence);
}

TEST(State, ExtensionShorterThanTheTrimmedBasesIsNoGain) {
    OneRun run;
    EXPECT_EQ(run.Round(Filled("ACGT" + std::string(36, 'N')), true).gaps, 0);
    EXPECT_EQ(Text(run.state, run.records), run.records[0].sequence);
    EXPECT_EQ(run.state.scaffolds[0].pieces[1].trimLeft, 6);
}

TEST(State, ExtensionOnBothSidesLeavesTheRestOpen) {
    OneRun run;
    EXPECT_EQ(run.Round(Filled("GGG" + std::string(12, 'N') + "TTTTT"), false).bases, 8);
    EXPECT_EQ(Text(run.state, run.records), kLeft + "ggg" + std::string(12, 'N') + "ttttt" + kRight);
}

TEST(State, SurvivesItsFile) {
    OneRun run;
    run.Round(Filled("GGG" + std::string(12, 'N') + "TTTTT"), false);
    State again = StateFromJson(nlohmann::json::parse(StateToJson(run.state).dump()));
    EXPECT_EQ(Text(again, run.records), Text(run.state, run.records));
    EXPECT_EQ(StateToJson(again), StateToJson(run.state));
}

}  // namespace
}  // namespace lintara::kit
