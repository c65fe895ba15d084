#include "kit/fill/outputs.h"

#include <gtest/gtest.h>

#include <map>

#include "kit/base/error.h"
#include "support.h"

namespace lintara::kit {
namespace {

using test::Installed;
using test::RandomBases;

Piece Contig(long start, long end) {
    Piece piece;
    piece.span = {start, end};
    return piece;
}

Piece FillOf(int gap, const std::string& bases, std::vector<int> support, int round = 1) {
    Piece piece;
    piece.kind = PieceKind::kFill;
    piece.gap = gap;
    piece.bases = bases;
    piece.support = std::move(support);
    piece.depth = piece.support;
    for (int& depth : piece.depth) depth += depth >= 0;
    piece.round = round;
    piece.strategy = "small";
    return piece;
}

Piece Open(int gap, long length) {
    Piece piece;
    piece.kind = PieceKind::kOpen;
    piece.gap = gap;
    piece.length = length;
    return piece;
}

class Outputs : public test::KitTest {
  protected:
    void Write() const { WriteOutputs(state_, records_, folder_); }

    /// The scaffolds that the AGP makes of the original ones and the fills. Names must be unique.
    std::map<std::string, std::string> Rebuild() const {
        std::map<std::string, std::string> components;
        for (const FastaRecord& record : records_) components[record.name] = record.sequence;
        if (std::filesystem::file_size(Path("fills.fa")) > 0) {
            for (const FastaRecord& record : ReadFasta(Path("fills.fa"))) {
                EXPECT_TRUE(components.emplace(record.name, record.sequence).second) << record.name;
            }
        }
        std::map<std::string, std::string> texts;
        std::map<std::string, int> parts;
        for (const std::string& line : Lines("filled.agp")) {
            if (line[0] == '#') continue;
            std::vector<std::string> fields = SplitTabs(line);
            EXPECT_EQ(fields.size(), 9U) << line;
            std::string& text = texts[fields[0]];
            EXPECT_EQ(std::stoul(fields[1]), text.size() + 1) << line;
            EXPECT_EQ(std::stoi(fields[3]), ++parts[fields[0]]) << line;
            if (fields[4] == "N") {
                EXPECT_EQ(fields[6] + fields[7] + fields[8], "scaffoldyespaired-ends");
                text += std::string(std::stoul(fields[5]), 'N');
            } else {
                EXPECT_EQ(fields[4] + fields[8], "W+");
                size_t from = std::stoul(fields[6]);
                text += components.at(fields[5]).substr(from - 1, std::stoul(fields[7]) - from + 1);
            }
            EXPECT_EQ(std::stoul(fields[2]), text.size()) << line;
        }
        return texts;
    }

    /// A scaffold in all its states: closed, merged, extended and open gaps, the last one at its end.
    void MakeOne() {
        records_ = {{"x", "some words", "acGTnnACGTNGGGGNNNNNNNNNNCCCCNN", 1}};
        state_ = StartState(records_, 1);
        ASSERT_EQ(state_.gaps.size(), 4U);
        state_.scaffolds[0].pieces = {
            Contig(0, 4), FillOf(1, "TTT", {3, 1, 2}), Contig(6, 9),   Contig(11, 15), FillOf(3, "AC", {-1, 5}, 2),
            Open(3, 6),   FillOf(3, "G", {7}, 3),      Contig(25, 29), Open(4, 2)};
        state_.gaps[0].round = 1;
        state_.gaps[0].strategy = "small";
        state_.gaps[0].reads = 17;
        state_.gaps[0].reason = "joined";
        state_.gaps[1].round = 1;
        state_.gaps[2].round = 3;
        state_.gaps[2].strategy = "middle";
    }

    State state_;
    std::vector<FastaRecord> records_;
};

TEST_F(Outputs, EachFileOfOneScaffold) {
    MakeOne();
    Write();
    EXPECT_EQ(Get("filled.fa"), ">x some words\nacGTtttACGGGGGacNNNNNNgCCCCNN\n");
    EXPECT_EQ(Get("filled.fa.fai"), "x\t29\t14\t29\t30\n");
    EXPECT_EQ(Get("fills.fa"), ">gap1.1\nttt\n>gap3.1\nac\n>gap3.2\ng\n");
    EXPECT_EQ(Get("filled.agp"),
              "##agp-version\t2.1\n"
              "x\t1\t4\t1\tW\tx\t1\t4\t+\n"
              "x\t5\t7\t2\tW\tgap1.1\t1\t3\t+\n"
              "x\t8\t10\t3\tW\tx\t7\t9\t+\n"
              "x\t11\t14\t4\tW\tx\t12\t15\t+\n"
              "x\t15\t16\t5\tW\tgap3.1\t1\t2\t+\n"
              "x\t17\t22\t6\tN\t6\tscaffold\tyes\tpaired-ends\n"
              "x\t23\t23\t7\tW\tgap3.2\t1\t1\t+\n"
              "x\t24\t27\t8\tW\tx\t26\t29\t+\n"
              "x\t28\t29\t9\tN\t2\tscaffold\tyes\tpaired-ends\n");
    EXPECT_EQ(Get("filled.bed"),
              "x\t4\t7\tgap1\t1\tsmall\t2.00\nx\t14\t16\tgap3\t2\tsmall\t5.00\nx\t22\t23\tgap3\t3\tsmall\t7.00\n");
    EXPECT_EQ(Lines("columns.tsv.gz"),
              (std::vector<std::string>{"gap\tposition\tsupport\tdepth", "1\t0\t3\t4", "1\t1\t1\t2", "1\t2\t2\t3",
                                        "3\t1\t5\t6", "3\t2\t7\t8"}));
    EXPECT_EQ(Get("gaps.tsv"),
              "gap\tscaffold\tstart\tend\tstated\toutcome\tfilled\topen\tround\tstrategy\treads\treason\tleast_"
              "support\tmean_support\n"
              "1\tx\t4\t6\t2\tclosed\t3\t0\t1\tsmall\t17\tjoined\t1\t2.00\n"
              "2\tx\t10\t11\t1\tmerged\t0\t0\t1\tnone\t0\t\t.\t.\n"
              "3\tx\t15\t25\t10\textended\t3\t6\t3\tmiddle\t0\t\t5\t6.00\n"
              "4\tx\t29\t31\t2\topen\t0\t2\t0\tnone\t0\tthe gap lies at the end of its scaffold\t.\t.\n");
    OutcomeCounts counts = CountOutcomes(state_);
    EXPECT_EQ(counts.closed + 10 * counts.merged + 100 * counts.extended + 1000 * counts.open, 1111);
    EXPECT_EQ(counts.filledBases, 6);
    EXPECT_EQ(OutcomeOf(state_, 2), "merged");
    EXPECT_EQ(Rebuild().at("x"), "acGTtttACGGGGGacNNNNNNgCCCCNN");
}

TEST_F(Outputs, IndexIsThatOfSamtools) {
    if (!Installed("samtools")) GTEST_SKIP() << "samtools is not installed";
    // Lengths around a line's, an empty scaffold, a name that occurs twice, long names and words.
    std::string longName(10000, 'n');
    for (size_t length : {1U, 79U, 80U, 81U, 160U, 0U, 161U, 1000U}) {
        records_.push_back({"s" + std::to_string(length), length % 2 == 1 ? "words here" : "",
                            RandomBases(length, static_cast<unsigned>(length)), 1});
    }
    records_.push_back({"s80", "again", RandomBases(300, 1), 1});
    records_.push_back({longName, longName, RandomBases(300, 2), 1});
    records_.push_back({"last", "", RandomBases(7, 3), 1});
    state_ = StartState(records_, 1);
    Write();
    ASSERT_EQ(Shell("samtools faidx " + Path("filled.fa") + " --fai-idx " + Path("index") + " 2>" + Path("log")), 0)
        << Get("log");
    EXPECT_EQ(Get("filled.fa.fai"), Get("index"));
}

TEST_F(Outputs, NamesWordsOrderAndCaseOfScaffoldsWithoutGapsAreKept) {
    std::string text = ">b  two blanks\nacgtRYKMacgt\n>a\nACGT\n>b\n" + std::string(80, 'a') + "\nC\n>c\n";
    Put("in.fa", text);
    records_ = ReadFasta(Path("in.fa"));
    state_ = StartState(records_, 1);
    Write();
    EXPECT_EQ(Get("filled.fa"), text);
    EXPECT_EQ(Get("fills.fa"), "");
    EXPECT_EQ(Get("filled.bed"), "");
    EXPECT_EQ(Lines("gaps.tsv").size(), 1U);
}

/// Rounds with any outcome whatever: the files still tell the same story.
TEST_F(Outputs, AgpAndBedAgreeWithTheSequencesAfterRandomRounds) {
    bool bedtools = Installed("bedtools");
    std::mt19937 random(77);
    auto below = [&](long limit) { return static_cast<long>(random() % static_cast<unsigned>(limit)); };
    for (int trial = 0; trial < 6; ++trial) {
        records_.clear();
        for (int s = 0; s < 8; ++s) {
            std::string text = RandomBases(static_cast<size_t>(below(400)), static_cast<unsigned>(trial * 100 + s));
            for (int g = 0; g < below(5); ++g) {
                text += std::string(static_cast<size_t>(1 + below(60)), 'N');
                text += RandomBases(static_cast<size_t>(below(500)), static_cast<unsigned>(trial * 1000 + s * 10 + g));
            }
            records_.push_back(
                {"s" + std::to_string(s), s % 2 == 0 ? "words" : "", below(2) == 0 ? Lower(text) : text, 1});
        }
        state_ = StartState(records_, 1);
        for (int round = 1; round <= 4; ++round) {
            if (round > 1) TrimForNextRound(state_);
            std::vector<PiecePlace> places;
            Layout layout = LayoutOf(state_, records_, places);
            std::vector<GapResult> results;
            for (const Sequence& sequence : layout.sequences) {
                for (const LayoutGap& gap : sequence.gaps) {
                    GapResult result;
                    result.gap = gap.id;
                    result.known = below(8) > 0;
                    result.strategy = "middle";
                    switch (below(5)) {
                        case 0:  // closed
                            result.text = RandomBases(static_cast<size_t>(1 + below(80)), random());
                            break;
                        case 1:  // contigs overlap
                            result.cutBefore = below(std::min(40L, gap.span.start - gap.leftStart));
                            result.cutAfter = below(std::min(40L, gap.rightEnd - gap.span.end));
                            break;
                        case 2:  // grown from the sides, perhaps with an island
                            result.text = RandomBases(static_cast<size_t>(below(40)), random()) + std::string(9, 'N') +
                                          RandomBases(static_cast<size_t>(below(80)), random()) + "N" +
                                          RandomBases(static_cast<size_t>(below(40)), random());
                            break;
                        case 3:  // what was hidden beside the gap comes again
                            result.text = sequence.text.substr(static_cast<size_t>(gap.span.start),
                                                               static_cast<size_t>(gap.span.Length()));
                            break;
                        default:
                            result.text = std::string(static_cast<size_t>(gap.span.Length()), 'N');
                            break;
                    }
                    results.push_back(std::move(result));
                }
            }
            ApplyResults(state_, records_, places, results, round);
        }
        Write();
        std::vector<FastaRecord> filled = ReadFasta(Path("filled.fa"));
        ASSERT_EQ(filled.size(), records_.size());
        auto rebuilt = Rebuild();
        std::map<std::string, std::string> texts;
        for (size_t s = 0; s < filled.size(); ++s) {
            EXPECT_EQ(filled[s].name, records_[s].name);
            EXPECT_EQ(filled[s].description, records_[s].description);
            EXPECT_EQ(filled[s].sequence, rebuilt[filled[s].name]) << filled[s].name;
            texts[filled[s].name] = filled[s].sequence;
        }
        std::vector<std::string> bed = Lines("filled.bed");
        std::vector<FastaRecord> fills = bed.empty() ? std::vector<FastaRecord>() : ReadFasta(Path("fills.fa"));
        ASSERT_EQ(bed.size(), fills.size());
        for (size_t i = 0; i < bed.size(); ++i) {
            std::vector<std::string> fields = SplitTabs(bed[i]);
            size_t start = std::stoul(fields[1]);
            EXPECT_EQ(texts[fields[0]].substr(start, std::stoul(fields[2]) - start), fills[i].sequence) << bed[i];
        }
        if (!bedtools || bed.empty()) continue;
        ASSERT_EQ(Shell("bedtools getfasta -fi " + Path("filled.fa") + " -bed " + Path("filled.bed") + " -fo " +
                        Path("fasta") + " 2>" + Path("log")),
                  0)
            << Get("log");
        std::vector<FastaRecord> taken = ReadFasta(Path("fasta"));
        ASSERT_EQ(taken.size(), fills.size());
        for (size_t i = 0; i < taken.size(); ++i) EXPECT_EQ(taken[i].sequence, fills[i].sequence);
    }
}

TEST_F(Outputs, FolderThatCannotBeWrittenIsTold) {
    MakeOne();
    try {
        WriteOutputs(state_, records_, Path("missing"));
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.what(), "cannot write " + Path("missing/filled.fa") + ": No such file or directory");
    }
}

TEST_F(Outputs, FilesOfAnEarlierRunStandUntilTheNewOnesAreComplete) {
    MakeOne();
    Write();
    std::string before = Get("filled.fa");
    // A folder in the place of the temporary file lets the writing fail.
    std::filesystem::create_directory(Path("filled.fa.tmp"));
    EXPECT_THROW(Write(), Error);
    EXPECT_EQ(Get("filled.fa"), before);
}

}  // namespace
}  // namespace lintara::kit
