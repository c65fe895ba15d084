#include "simulate/simulate.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "evaluate/evaluate.h"
#include "simulate/random.h"
#include "support/thread_streams.h"

namespace lintara::simulate {
namespace {

TEST(Random, SplitMixGivesItsPublishedNumbers) {
    std::uint64_t state = 0;
    EXPECT_EQ(SplitMix(state), 0xE220A8397B1DCDAFU);
    EXPECT_EQ(SplitMix(state), 0x6E789E6AA1B965F4U);
    EXPECT_EQ(SplitMix(state), 0x06C45D188009454FU);
}

TEST(Random, XoshiroFromOneTwoThreeFour) {
    // 2 * 5 = 10, rotated by 7: 1280, times 9: 11520. The second word is then 2 ^ 3 ^ 1 = 0, and so on.
    Random random(std::array<std::uint64_t, 4>{1, 2, 3, 4});
    EXPECT_EQ(random.Next(), 11520U);
    EXPECT_EQ(random.Next(), 0U);
    EXPECT_EQ(random.Next(), 1509978240U);
    EXPECT_EQ(random.Next(), 1215971899390074240U);
}

TEST(Random, KeysAndTheirOrderGiveStreamsOfTheirOwn) {
    std::set<std::uint64_t> firsts;
    for (std::uint64_t a = 0; a < 40; ++a) {
        for (std::uint64_t b = 0; b < 40; ++b) firsts.insert(Random{7, a, b}.Next());
    }
    EXPECT_EQ(firsts.size(), 1600U);
}

TEST(Random, BetweenReachesBothEndsAndNothingElse) {
    Random random{1};
    std::map<std::int64_t, int> seen;
    for (int i = 0; i < 6000; ++i) ++seen[random.Between(-2, 3)];
    ASSERT_EQ(seen.size(), 6U);
    EXPECT_EQ(seen.begin()->first, -2);
    for (const auto& [value, count] : seen) EXPECT_NEAR(count, 1000, 150) << value;
    EXPECT_EQ(random.Between(5, 5), 5);
    EXPECT_EQ(random.Between(5, 4), 5);
}

TEST(Random, NormalHasMeanZeroAndDeviationOne) {
    Random random{2};
    double sum = 0;
    double squares = 0;
    int within_one = 0;
    constexpr int kDraws = 40000;
    for (int i = 0; i < kDraws; ++i) {
        const double draw = random.Normal();
        sum += draw;
        squares += draw * draw;
        within_one += draw > -1 && draw < 1 ? 1 : 0;
    }
    EXPECT_NEAR(sum / kDraws, 0, 0.02);
    EXPECT_NEAR(squares / kDraws, 1, 0.03);
    EXPECT_NEAR(within_one / double{kDraws}, 0.683, 0.015);
}

TEST(ParseLengthClasses, FormAndFaults) {
    const std::vector<LengthClass> classes = ParseLengthClasses("1-100:3,7-7:0.5");
    ASSERT_EQ(classes.size(), 2U);
    EXPECT_EQ(classes[0].low, 1);
    EXPECT_EQ(classes[0].high, 100);
    EXPECT_EQ(classes[0].weight, 3);
    EXPECT_EQ(classes[1].low, 7);
    EXPECT_EQ(classes[1].weight, 0.5);
    for (const char* faulty : {"", "5", "5-6", "5:1", "a-6:1", "5-6:x", "5-6:1,", "5:1-6", "5-6:1 "}) {
        EXPECT_THROW(ParseLengthClasses(faulty), std::runtime_error) << faulty;
    }
    EXPECT_EQ(ParseUnits("3,12"), (std::vector<int>{3, 12}));
    for (const char* faulty : {"", "x", "3,", "0", "10001", "-1"}) {
        EXPECT_THROW(ParseUnits(faulty), std::runtime_error) << faulty;
    }
}

struct Record {
    int gap = 0;
    int stated = 0;
    int position = 0;
    int scaffold = 0;
    int contig = 0;
    std::string bases;

    bool operator<(const Record& other) const { return Key() < other.Key(); }
    bool operator==(const Record& other) const { return Key() == other.Key(); }
    std::tuple<int, int, int, int, int, std::string> Key() const {
        return {gap, stated, position, scaffold, contig, bases};
    }
};

struct Input {
    std::string contig_text;
    evaluate::Contigs contigs;
    std::vector<evaluate::TrueGap> truth;
    std::string gap_text;
    std::vector<Record> reads;
};

class Simulation : public testing::ThreadStreamsTest {
  protected:
    Simulation() {
        options_.scaffolds = 6;
        options_.gaps = 20;
        options_.contig = 400;
        options_.coverage = 5;
    }

    /// Options with no noise of any kind: each read is a piece of its scaffold, at its true place.
    void Silence() {
        options_.error = options_.n_rate = options_.wrong_reads = 0;
        options_.position_noise = options_.length_noise = 0;
        options_.one = options_.holes = options_.short_reads = options_.no_reads = options_.no_gaps = 0;
    }

    /// Options under which each gap is an ordinary one of a random sequence.
    void Plain() { options_.overlaps = options_.zero = options_.tandem = options_.dispersed = 0; }

    Input Make(Totals* totals = nullptr) {
        const std::string directory = Directory() + "/made" + std::to_string(++made_);
        const Totals got = Simulate(options_, directory);
        if (totals != nullptr) *totals = got;
        return Load(directory, options_.gzip);
    }

    static Input Load(const std::string& directory, bool gzip) {
        Input input;
        input.contig_text = testing::FileText(directory + "/contig.fa");
        input.contigs = evaluate::ReadContigs(directory + "/contig.fa");
        input.truth = evaluate::ReadTruth(directory + "/truth.tsv");
        input.gap_text = Unzipped(directory + (gzip ? "/gap.fa.gz" : "/gap.fa"));
        std::istringstream in(input.gap_text);
        char mark = 0;
        Record record;
        while (in >> mark >> record.gap >> record.stated >> record.position >> record.scaffold >> record.contig >>
               record.bases) {
            EXPECT_EQ(mark, '>');
            input.reads.push_back(record);
        }
        return input;
    }

    static std::string Unzipped(const std::string& path) {
        std::string text;
        char piece[4096];
        gzFile file = gzopen(path.c_str(), "rb");
        EXPECT_NE(file, nullptr) << path;
        if (file == nullptr) return text;
        for (int got = 0; (got = gzread(file, piece, sizeof piece)) > 0;) text.append(piece, static_cast<size_t>(got));
        gzclose(file);
        return text;
    }

    static double Share(const Input& input, const std::string& kind) {
        const auto count = std::count_if(input.truth.begin(), input.truth.end(),
                                         [&](const evaluate::TrueGap& gap) { return gap.kind.rfind(kind, 0) == 0; });
        return static_cast<double>(count) / static_cast<double>(input.truth.size());
    }

    Options options_;
    int made_ = 0;
};

/// The scaffold's bases, put together from contigs and truth, and where each contig lies on them.
struct Assembled {
    std::string bases;
    std::vector<int> start;
};

std::map<int, Assembled> Assemble(const Input& input) {
    std::map<std::pair<int, int>, const evaluate::TrueGap*> behind;
    for (const evaluate::TrueGap& gap : input.truth) behind[{gap.scaffold, gap.contig}] = &gap;
    std::map<int, Assembled> scaffolds;
    for (const auto& [id, contigs] : input.contigs) {
        Assembled& scaffold = scaffolds[id];
        int overlap = 0;
        for (int c = 0; c < static_cast<int>(contigs.size()); ++c) {
            const std::string& contig = contigs[static_cast<std::size_t>(c)];
            const std::size_t shared = static_cast<std::size_t>(overlap);
            scaffold.start.push_back(static_cast<int>(scaffold.bases.size()) - overlap);
            EXPECT_EQ(scaffold.bases.substr(scaffold.bases.size() - shared), contig.substr(0, shared));
            scaffold.bases += contig.substr(shared);
            if (c + 1 == static_cast<int>(contigs.size())) break;
            const evaluate::TrueGap& gap = *behind.at({id, c});
            overlap = std::max(0, -gap.length);
            scaffold.bases += gap.sequence;
        }
    }
    return scaffolds;
}

std::uint64_t Fnv(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const unsigned char c : text) hash = (hash ^ c) * 0x100000001B3U;
    return hash;
}

TEST_F(Simulation, SameSeedGivesTheseBytesOnEveryMachine) {
    options_ = Options{};
    options_.seed = 42;
    options_.scaffolds = 3;
    options_.lower = 0.5;
    options_.interleave = true;
    options_.long_reads = 0.1;
    Simulate(options_, Directory() + "/fixed");
    EXPECT_EQ(Fnv(testing::FileText(Directory() + "/fixed/contig.fa")), 0x9F0DB83D0EB99B69U);
    EXPECT_EQ(Fnv(testing::FileText(Directory() + "/fixed/truth.tsv")), 0xB16A2FC17F6A9B77U);
    EXPECT_EQ(Fnv(testing::FileText(Directory() + "/fixed/gap.fa")), 0x4EC30A4510CF51BFU);
}

TEST_F(Simulation, SeedAloneChangesAllFiles) {
    const Input first = Make();
    const Input again = Make();
    EXPECT_EQ(first.contig_text, again.contig_text);
    EXPECT_EQ(first.gap_text, again.gap_text);
    options_.seed = 2;
    const Input other = Make();
    EXPECT_NE(first.contig_text, other.contig_text);
    EXPECT_NE(first.gap_text, other.gap_text);
}

TEST_F(Simulation, TruthAgreesWithContigsAndReads) {
    Silence();
    options_.overlaps = 0.2;
    options_.zero = 0.1;
    options_.long_reads = 0.2;
    options_.short_contigs = 0.3;
    const Input input = Make();
    std::map<int, Assembled> scaffolds = Assemble(input);
    std::map<int, const evaluate::TrueGap*> gaps;
    for (const evaluate::TrueGap& gap : input.truth) {
        EXPECT_EQ(gap.stated, std::max(1, gap.length));
        EXPECT_GT(gap.id, 0);
        gaps[gap.id] = &gap;
    }
    EXPECT_EQ(gaps.size(), input.truth.size());
    EXPECT_GT(Share(input, "overlap"), 0.1);
    EXPECT_GT(Share(input, "zero"), 0.02);
    ASSERT_GT(input.reads.size(), 1000U);
    for (const Record& read : input.reads) {
        const evaluate::TrueGap& gap = *gaps.at(read.gap);
        ASSERT_EQ(read.stated, gap.stated);
        ASSERT_EQ(read.scaffold, gap.scaffold);
        ASSERT_EQ(read.contig, gap.contig);
        const Assembled& scaffold = scaffolds.at(read.scaffold);
        const std::size_t front = static_cast<std::size_t>(gap.contig);
        const int gap_start = scaffold.start[front] + static_cast<int>(input.contigs.at(read.scaffold)[front].size());
        // Where an overlap is stated as 1, reads behind its middle are placed from the contig behind.
        const int from_front = gap_start + read.position;
        const int from_behind = scaffold.start[front + 1] + read.position - read.stated;
        const int at = (from_front - gap_start) * 2 > gap.length ? from_behind : from_front;
        ASSERT_GE(at, 0);
        ASSERT_EQ(scaffold.bases.substr(static_cast<std::size_t>(at), read.bases.size()), read.bases) << gap.id;
    }
}

TEST_F(Simulation, ContigHeadersStateTheTableLengths) {
    const Input input = Make();
    std::map<std::pair<int, int>, int> stated;
    for (const evaluate::TrueGap& gap : input.truth) stated[{gap.scaffold, gap.contig + 1}] = gap.stated;
    std::istringstream in(input.contig_text);
    int headers = 0;
    for (std::string line; std::getline(in, line);) {
        ASSERT_LE(line.size(), 100U);
        if (line[0] != '>') continue;
        int scaffold = 0;
        int contig = 0;
        int front = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), ">scaffold%d_%d\t%d", &scaffold, &contig, &front), 3) << line;
        EXPECT_EQ(front, contig == 0 ? 0 : (stated.at({scaffold, contig})));
        ++headers;
    }
    EXPECT_EQ(headers, static_cast<int>(input.truth.size()) + options_.scaffolds);
}

TEST_F(Simulation, TotalsCountWhatIsWritten) {
    options_.no_reads = 0.3;
    Totals totals;
    const Input input = Make(&totals);
    std::set<int> with_reads;
    for (const Record& read : input.reads) with_reads.insert(read.gap);
    EXPECT_EQ(totals.scaffolds, options_.scaffolds);
    EXPECT_EQ(totals.scaffolds, static_cast<std::int64_t>(input.contigs.size()));
    EXPECT_EQ(totals.gaps, static_cast<std::int64_t>(input.truth.size()));
    EXPECT_EQ(totals.gaps_with_reads, static_cast<std::int64_t>(with_reads.size()));
    EXPECT_EQ(totals.reads, static_cast<std::int64_t>(input.reads.size()));
}

TEST_F(Simulation, ScaffoldAndGapCounts) {
    options_.no_gaps = 0;
    options_.scaffolds = 30;
    options_.gaps = 8;
    const Input eight = Make();
    EXPECT_EQ(eight.contigs.size(), 30U);
    EXPECT_NEAR(static_cast<double>(eight.truth.size()), 30 * 8, 35);
    options_.gaps = 16;
    EXPECT_NEAR(static_cast<double>(Make().truth.size()), 30 * 16, 70);
    options_.gaps = 0;
    const Input none = Make();
    EXPECT_TRUE(none.truth.empty());
    EXPECT_EQ(none.gap_text, "");
    EXPECT_EQ(none.contigs.size(), 30U);
    options_.gaps = 8;
    options_.no_gaps = 1;
    EXPECT_TRUE(Make().truth.empty());
}

TEST_F(Simulation, ContigLengths) {
    options_.short_contigs = 0;
    const auto mean = [](const Input& input) {
        double bases = 0;
        double contigs = 0;
        for (const auto& [id, list] : input.contigs) {
            for (const std::string& contig : list) {
                bases += static_cast<double>(contig.size());
                ++contigs;
            }
        }
        return bases / contigs;
    };
    EXPECT_NEAR(mean(Make()), 400, 40);
    options_.contig = 900;
    EXPECT_NEAR(mean(Make()), 900, 90);
    options_.short_contigs = 1;
    for (const auto& [id, list] : Make().contigs) {
        for (const std::string& contig : list) {
            EXPECT_GE(contig.size(), 5U);
            EXPECT_LE(contig.size(), 120U);
        }
    }
}

TEST_F(Simulation, LowerCaseChangesNothingButCase) {
    const Input upper = Make();
    const auto is_lower = [](char c) { return c == 'a' || c == 'c' || c == 'g' || c == 't'; };
    const auto lower_bases = [&](const Input& input) {
        std::istringstream in(input.contig_text);
        std::int64_t count = 0;
        for (std::string line; std::getline(in, line);) {
            if (line[0] != '>') count += std::count_if(line.begin(), line.end(), is_lower);
        }
        return count;
    };
    EXPECT_EQ(lower_bases(upper), 0);
    options_.lower = 1;
    const Input lower = Make();
    EXPECT_EQ(upper.contigs, lower.contigs) << "the reader turns all into upper case";
    EXPECT_EQ(upper.gap_text, lower.gap_text);
    const std::int64_t contigs = static_cast<std::int64_t>(lower.truth.size()) + options_.scaffolds;
    EXPECT_GT(lower_bases(lower), 20 * contigs * 9 / 10);
    EXPECT_LE(lower_bases(lower), 100 * contigs);
}

TEST_F(Simulation, GapLengthsFollowClassesAndWeights) {
    Plain();
    options_.scaffolds = 20;
    options_.coverage = 0;
    options_.gap_lengths = {{10, 19, 1}, {200, 200, 3}, {900, 950, 0}};
    int low = 0;
    int high = 0;
    for (const evaluate::TrueGap& gap : Make().truth) {
        if (gap.length == 200) {
            ++high;
        } else {
            EXPECT_GE(gap.length, 10);
            EXPECT_LE(gap.length, 19);
            ++low;
        }
    }
    EXPECT_NEAR(high / double(low + high), 0.75, 0.08);
}

TEST_F(Simulation, KindsFollowTheirShares) {
    options_.scaffolds = 20;
    options_.coverage = 0;
    options_.overlaps = 0.2;
    options_.zero = 0.1;
    options_.tandem = 0.3;
    options_.dispersed = 0.4;
    options_.tandem_units = {4};
    const Input input = Make();
    EXPECT_NEAR(Share(input, "overlap"), 0.2, 0.07);
    EXPECT_NEAR(Share(input, "zero"), 0.1, 0.06);
    EXPECT_NEAR(Share(input, "tandem4"), 0.3 * 0.7, 0.07);
    EXPECT_NEAR(Share(input, "dispersed"), 0.4 * 0.7, 0.07);
    EXPECT_NEAR(Share(input, "plain"), 0.3 * 0.7, 0.07);
    for (const evaluate::TrueGap& gap : input.truth) {
        EXPECT_EQ(gap.kind == "overlap", gap.length < 0);
        EXPECT_EQ(gap.kind == "zero", gap.length == 0);
        EXPECT_GE(gap.length, -90);
    }
    for (double* share : {&options_.overlaps, &options_.zero}) {
        options_.overlaps = options_.zero = 0;
        *share = 1;
        EXPECT_EQ(Share(Make(), share == &options_.zero ? "zero" : "overlap"), 1);
    }
}

TEST_F(Simulation, TandemGapsRepeatTheirUnit) {
    options_.overlaps = options_.zero = 0;
    options_.tandem = 1;
    options_.dispersed = 0;
    options_.tandem_units = {1, 6, 15};
    options_.gap_lengths = {{100, 100, 1}};
    std::set<std::string> kinds;
    for (const evaluate::TrueGap& gap : Make().truth) {
        kinds.insert(gap.kind);
        ASSERT_EQ(gap.kind.rfind("tandem", 0), 0U);
        const std::size_t unit = static_cast<std::size_t>(std::stoi(gap.kind.substr(6)));
        // The repeat covers 20 bases or more, so that this many bases equal the base one unit further on.
        std::size_t run = 0;
        std::size_t longest = 0;
        for (std::size_t i = unit; i < gap.sequence.size(); ++i) {
            run = gap.sequence[i] == gap.sequence[i - unit] ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        EXPECT_GE(longest + unit, 20U) << gap.sequence;
    }
    EXPECT_EQ(kinds, (std::set<std::string>{"tandem1", "tandem6", "tandem15"}));
}

TEST_F(Simulation, DispersedRepeatsAreCopiesOfFewSequences) {
    options_.overlaps = options_.zero = options_.tandem = 0;
    options_.dispersed = 1;
    options_.gap_lengths = {{600, 700, 1}};
    const std::vector<std::string> families = RepeatFamilies(options_);
    ASSERT_EQ(families.size(), 3U);
    const Input input = Make();
    std::vector<int> copies(3);
    int in_front = 0;
    for (const evaluate::TrueGap& gap : input.truth) {
        EXPECT_EQ(gap.kind, "dispersed");
        const std::string& contig = input.contigs.at(gap.scaffold)[static_cast<std::size_t>(gap.contig)];
        bool found = false;
        for (std::size_t f = 0; f < 3; ++f) {
            if (gap.sequence.find(families[f]) == std::string::npos) continue;
            found = true;
            ++copies[f];
            const std::string end = contig.substr(contig.size() - std::min<std::size_t>(30, contig.size() / 2));
            if (contig.size() > 60 && families[f].substr(families[f].size() - 30) == end) ++in_front;
        }
        EXPECT_TRUE(found) << "a gap of 600 bases or more has room for each family";
    }
    for (const int count : copies) EXPECT_GT(count, 5);
    EXPECT_NEAR(in_front / static_cast<double>(input.truth.size()), 0.3, 0.15);
}

TEST_F(Simulation, StatedLengths) {
    Plain();
    options_.coverage = 0;
    options_.gap_lengths = {{1, 59, 1}, {60, 800, 1}};
    options_.one = 1;
    for (const evaluate::TrueGap& gap : Make().truth) {
        if (gap.length < kOneBelow) {
            EXPECT_EQ(gap.stated, 1);
        }
        if (gap.length >= 200) {
            EXPECT_NE(gap.stated, 1);
        }
    }
    options_.one = 0;
    options_.length_noise = 0;
    for (const evaluate::TrueGap& gap : Make().truth) EXPECT_EQ(gap.stated, gap.length);
    options_.length_noise = 0.1;
    options_.gap_lengths = {{970, 970, 1}};
    double squares = 0;
    const Input input = Make();
    for (const evaluate::TrueGap& gap : input.truth) squares += (gap.stated - 970.0) * (gap.stated - 970.0);
    // A share of 0.1 of 970 and 30 more bases is a standard deviation of 100 bases.
    EXPECT_NEAR(std::sqrt(squares / static_cast<double>(input.truth.size())), 100, 25);
}

TEST_F(Simulation, GapsWithoutReadsHaveNoId) {
    options_.no_reads = 0.5;
    const Input half = Make();
    std::set<int> with_reads;
    for (const Record& read : half.reads) with_reads.insert(read.gap);
    int next = 1;
    int without = 0;
    for (const evaluate::TrueGap& gap : half.truth) {
        const int id = next++;
        EXPECT_EQ(gap.id, with_reads.count(id) > 0 ? id : -1);
        without += gap.id == -1 ? 1 : 0;
    }
    EXPECT_NEAR(without / static_cast<double>(half.truth.size()), 0.5, 0.2);
    options_.no_reads = 1;
    EXPECT_TRUE(Make().reads.empty());
    options_.no_reads = 0;
    options_.coverage = 0;
    for (const evaluate::TrueGap& gap : Make().truth) EXPECT_EQ(gap.id, -1);
}

TEST_F(Simulation, ReadLengths) {
    Silence();
    Plain();
    options_.short_contigs = 0;
    options_.read_length = 80;
    for (const Record& read : Make().reads) EXPECT_EQ(read.bases.size(), 80U);
    options_.long_reads = 1;
    for (const Record& read : Make().reads) {
        EXPECT_GE(read.bases.size(), 96U);
        EXPECT_LE(read.bases.size(), 152U);
    }
    options_.long_reads = 0;
    options_.short_reads = 1;
    for (const Record& read : Make().reads) {
        EXPECT_GE(read.bases.size(), 40U);
        EXPECT_LE(read.bases.size(), 80U);
    }
    options_.short_reads = 0.25;
    const Input some = Make();
    const auto is_short = [](const Record& read) { return read.bases.size() < 80; };
    const auto count = std::count_if(some.reads.begin(), some.reads.end(), is_short);
    EXPECT_NEAR(static_cast<double>(count) / static_cast<double>(some.reads.size()), 0.25, 0.04);
}

TEST_F(Simulation, ReadsLongerThanTheScaffoldAreTheWholeScaffold) {
    Silence();
    options_.scaffolds = 3;
    options_.gaps = 1;
    options_.contig = 20;
    options_.gap_lengths = {{5, 5, 1}};
    options_.read_length = 5000;
    options_.coverage = 20000;
    const Input input = Make();
    const std::map<int, Assembled> scaffolds = Assemble(input);
    ASSERT_FALSE(input.reads.empty());
    for (const Record& read : input.reads) EXPECT_EQ(read.bases, scaffolds.at(read.scaffold).bases);
}

/// Reads over each base of the gaps, on average.
double GapCoverage(const Input& input) {
    double gap_bases = 0;
    double covered = 0;
    std::map<int, int> lengths;
    for (const evaluate::TrueGap& gap : input.truth) {
        gap_bases += std::max(0, gap.length);
        lengths[gap.id] = gap.length;
    }
    for (const Record& read : input.reads) {
        const int from = std::max(0, read.position);
        const int to = std::min(lengths.at(read.gap), read.position + static_cast<int>(read.bases.size()));
        covered += std::max(0, to - from);
    }
    return covered / gap_bases;
}

TEST_F(Simulation, CoverageIsThatOfTheGap) {
    Silence();
    Plain();
    EXPECT_NEAR(GapCoverage(Make()), 5, 0.4);
    options_.coverage = 20;
    EXPECT_NEAR(GapCoverage(Make()), 20, 1);
}

TEST_F(Simulation, HolesTakeReadsAway) {
    Silence();
    Plain();
    options_.gap_lengths = {{300, 300, 1}};
    const Input whole = Make();
    options_.holes = 1;
    const Input holed = Make();
    EXPECT_EQ(whole.contig_text, holed.contig_text);
    EXPECT_LT(holed.reads.size(), whole.reads.size() * 9 / 10);
    EXPECT_GT(holed.reads.size(), whole.reads.size() / 2);
    // Each read that is left stands in the whole set too.
    std::vector<Record> all = whole.reads;
    std::vector<Record> left = holed.reads;
    std::sort(all.begin(), all.end());
    std::sort(left.begin(), left.end());
    EXPECT_TRUE(std::includes(all.begin(), all.end(), left.begin(), left.end()));
}

/// Share of bases of the first input's reads that differ in the second one, whose reads are the same otherwise.
double Differing(const Input& a, const Input& b, bool to_n) {
    EXPECT_EQ(a.reads.size(), b.reads.size());
    double differing = 0;
    double bases = 0;
    for (std::size_t i = 0; i < std::min(a.reads.size(), b.reads.size()); ++i) {
        EXPECT_EQ(a.reads[i].position, b.reads[i].position);
        const std::string& from = a.reads[i].bases;
        const std::string& to = b.reads[i].bases;
        EXPECT_EQ(from.size(), to.size());
        for (std::size_t j = 0; j < std::min(from.size(), to.size()); ++j) {
            if (from[j] == to[j]) continue;
            EXPECT_EQ(to[j] == 'N', to_n);
            ++differing;
        }
        bases += static_cast<double>(from.size());
    }
    return differing / bases;
}

TEST_F(Simulation, ErrorAndNRatesSpoilOnlyBases) {
    options_.error = options_.n_rate = 0;
    const Input clean = Make();
    options_.error = 0.05;
    EXPECT_NEAR(Differing(clean, Make(), false), 0.05, 0.003);
    options_.error = 1;
    EXPECT_EQ(Differing(clean, Make(), false), 1) << "an error is never the base itself";
    options_.error = 0;
    options_.n_rate = 0.03;
    EXPECT_NEAR(Differing(clean, Make(), true), 0.03, 0.003);
}

TEST_F(Simulation, PositionNoiseMovesOnlyPositions) {
    options_.wrong_reads = 0;
    options_.position_noise = 0;
    const Input still = Make();
    options_.position_noise = 10;
    const Input noisy = Make();
    ASSERT_EQ(still.reads.size(), noisy.reads.size());
    double squares = 0;
    for (std::size_t i = 0; i < still.reads.size(); ++i) {
        EXPECT_EQ(still.reads[i].bases, noisy.reads[i].bases);
        const double moved = noisy.reads[i].position - still.reads[i].position;
        squares += moved * moved;
    }
    EXPECT_NEAR(std::sqrt(squares / static_cast<double>(still.reads.size())), 10, 0.5);
}

TEST_F(Simulation, WrongReadsComeFromElsewhere) {
    Silence();
    options_.tandem = options_.dispersed = 0;
    const Input right = Make();
    options_.wrong_reads = 0.2;
    const Input wrong = Make();
    ASSERT_EQ(right.reads.size(), wrong.reads.size());
    const std::map<int, Assembled> scaffolds = Assemble(wrong);
    double differing = 0;
    for (std::size_t i = 0; i < right.reads.size(); ++i) {
        const Record& read = wrong.reads[i];
        if (right.reads[i] == read) continue;
        ++differing;
        EXPECT_NE(scaffolds.at(read.scaffold).bases.find(read.bases), std::string::npos);
        EXPECT_GE(read.position, -options_.read_length);
        EXPECT_LE(read.position, read.stated);
    }
    EXPECT_NEAR(differing / static_cast<double>(right.reads.size()), 0.2, 0.03);
}

TEST_F(Simulation, InterleavingKeepsAllRecords) {
    const Input ordered = Make();
    options_.interleave = true;
    const Input mixed = Make();
    const auto changes = [](const Input& input) {
        int count = 0;
        for (std::size_t i = 1; i < input.reads.size(); ++i) count += input.reads[i].gap != input.reads[i - 1].gap;
        return count;
    };
    EXPECT_LT(changes(ordered), static_cast<int>(ordered.truth.size()));
    EXPECT_GT(changes(mixed), static_cast<int>(mixed.reads.size()) * 8 / 10);
    std::vector<Record> a = ordered.reads;
    std::vector<Record> b = mixed.reads;
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    EXPECT_EQ(a, b);
}

TEST_F(Simulation, InterleavingMoreRecordsThanThePoolHolds) {
    options_.scaffolds = 2;
    options_.gaps = 40;
    options_.read_length = 10;
    options_.coverage = 40;
    const Input ordered = Make();
    ASSERT_GT(ordered.reads.size(), 80000U);
    options_.interleave = true;
    std::vector<Record> a = ordered.reads;
    std::vector<Record> b = Make().reads;
    EXPECT_NE(a, b);
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    EXPECT_EQ(a, b);
}

TEST_F(Simulation, GzipHoldsTheSameBytes) {
    const Input plain = Make();
    options_.gzip = true;
    EXPECT_EQ(plain.gap_text, Make().gap_text);
    const std::string packed = testing::FileText(Directory() + "/made2/gap.fa.gz");
    EXPECT_EQ(packed.substr(0, 2), "\x1F\x8B");
    EXPECT_LT(packed.size(), plain.gap_text.size() / 2);
    EXPECT_FALSE(std::filesystem::exists(Directory() + "/made2/gap.fa"));
}

TEST_F(Simulation, FirstScaffoldsDoNotDependOnTheirNumber) {
    options_.scaffolds = 2;
    const Input two = Make();
    options_.scaffolds = 5;
    const Input five = Make();
    EXPECT_EQ(five.contig_text.substr(0, two.contig_text.size()), two.contig_text);
    EXPECT_EQ(five.gap_text.substr(0, two.gap_text.size()), two.gap_text);
}

TEST_F(Simulation, OptionsThatMakeNoSense) {
    const auto fault = [](auto change) -> std::string {
        Options options;
        change(options);
        try {
            CheckOptions(options);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    EXPECT_EQ(fault([](Options&) {}), "");
    EXPECT_EQ(fault([](Options& o) { o.scaffolds = 0; }), "--scaffolds: 0 is not between 1 and 10000000");
    EXPECT_EQ(fault([](Options& o) { o.gaps = -1; }), "--gaps: -1 is not between 0 and 1000000");
    EXPECT_EQ(fault([](Options& o) { o.contig = 19; }), "--contig: 19 is not between 20 and 10000000");
    EXPECT_EQ(fault([](Options& o) { o.gap_lengths.clear(); }), "--gap-lengths: no class");
    EXPECT_EQ(fault([](Options& o) { o.gap_lengths = {{0, 5, 1}}; }), "--gap-lengths: 0 is not between 1 and 10000000");
    EXPECT_EQ(fault([](Options& o) { o.gap_lengths = {{5, 4, 1}}; }), "--gap-lengths: 4 is not between 5 and 10000000");
    EXPECT_EQ(fault([](Options& o) {
                  o.gap_lengths = {{5, 6, -1}};
              }),
              "--gap-lengths: -1 is not between 0 and 1000000");
    EXPECT_EQ(fault([](Options& o) { o.gap_lengths = {{5, 6, 0}}; }), "--gap-lengths: all weights are 0");
    EXPECT_EQ(fault([](Options& o) { o.length_noise = -0.5; }), "--length-noise: -0.5 is not between 0 and 100");
    EXPECT_EQ(fault([](Options& o) { o.tandem_units = {}; }), "--tandem-units: no unit");
    EXPECT_EQ(fault([](Options& o) { o.tandem_units = {0}; }), "--tandem-units: 0 is not between 1 and 10000");
    EXPECT_EQ(fault([](Options& o) { o.read_length = 3; }), "--read-length: 3 is not between 4 and 1000000");
    EXPECT_EQ(fault([](Options& o) { o.coverage = -1; }), "--coverage: -1 is not between 0 and 100000");
    EXPECT_EQ(fault([](Options& o) { o.position_noise = -1; }), "--position-noise: -1 is not between 0 and 1000000");
    EXPECT_EQ(fault([](Options& o) { o.overlaps = o.zero = 0.6; }), "--overlaps and --zero: more than 1 together");
    EXPECT_EQ(fault([](Options& o) { o.tandem = o.dispersed = 0.6; }),
              "--tandem and --dispersed: more than 1 together");
    EXPECT_EQ(fault([](Options& o) { o.error = o.n_rate = 0.6; }), "--error and --n-rate: more than 1 together");
    const std::vector<std::pair<const char*, double Options::*>> shares = {{"--no-gaps", &Options::no_gaps},
                                                                           {"--short-contigs", &Options::short_contigs},
                                                                           {"--lower", &Options::lower},
                                                                           {"--overlaps", &Options::overlaps},
                                                                           {"--zero", &Options::zero},
                                                                           {"--one", &Options::one},
                                                                           {"--tandem", &Options::tandem},
                                                                           {"--dispersed", &Options::dispersed},
                                                                           {"--no-reads", &Options::no_reads},
                                                                           {"--long-reads", &Options::long_reads},
                                                                           {"--short-reads", &Options::short_reads},
                                                                           {"--holes", &Options::holes},
                                                                           {"--error", &Options::error},
                                                                           {"--n-rate", &Options::n_rate},
                                                                           {"--wrong-reads", &Options::wrong_reads}};
    for (const auto& [name, share] : shares) {
        EXPECT_EQ(fault([s = share](Options& o) { o.*s = 1.5; }), std::string(name) + ": 1.5 is not between 0 and 1");
        EXPECT_EQ(fault([s = share](Options& o) { o.*s = -0.1; }), std::string(name) + ": -0.1 is not between 0 and 1");
        EXPECT_EQ(fault([s = share](Options& o) { o.*s = std::nan(""); }),
                  std::string(name) + ": nan is not between 0 and 1");
    }
}

class SimulateProgram : public Simulation {
  protected:
    int Run(const std::string& arguments) {
        const std::string command =
            std::string(SIMULATE_PROGRAM) + " " + arguments + " >" + Directory() + "/out 2>" + Directory() + "/err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string Out() { return testing::FileText(Directory() + "/out"); }
    std::string Err() { return testing::FileText(Directory() + "/err"); }
};

TEST_F(SimulateProgram, EveryOptionReachesItsSetting) {
    options_.seed = 9;
    options_.scaffolds = 3;
    options_.gaps = 7;
    options_.no_gaps = 0.2;
    options_.contig = 500;
    options_.short_contigs = 0.15;
    options_.lower = 0.4;
    options_.gap_lengths = {{3, 40, 2}, {50, 300, 1.5}};
    options_.overlaps = 0.12;
    options_.zero = 0.11;
    options_.one = 0.33;
    options_.length_noise = 0.2;
    options_.tandem = 0.25;
    options_.tandem_units = {2, 8};
    options_.dispersed = 0.24;
    options_.no_reads = 0.13;
    options_.read_length = 90;
    options_.long_reads = 0.14;
    options_.short_reads = 0.21;
    options_.coverage = 12.5;
    options_.holes = 0.45;
    options_.error = 0.02;
    options_.n_rate = 0.01;
    options_.wrong_reads = 0.07;
    options_.position_noise = 7.5;
    options_.interleave = true;
    options_.gzip = true;
    Totals totals;
    const Input want = Make(&totals);
    const std::vector<std::string> settings = {"--seed 9",
                                               "--scaffolds 3",
                                               "--gaps 7",
                                               "--no-gaps 0.2",
                                               "--contig 500",
                                               "--short-contigs 0.15",
                                               "--lower 0.4",
                                               "--gap-lengths 3-40:2,50-300:1.5",
                                               "--overlaps 0.12",
                                               "--zero 0.11",
                                               "--one 0.33",
                                               "--length-noise 0.2",
                                               "--tandem 0.25",
                                               "--tandem-units 2,8",
                                               "--dispersed 0.24",
                                               "--no-reads 0.13",
                                               "--read-length 90",
                                               "--long-reads 0.14",
                                               "--short-reads 0.21",
                                               "--coverage 12.5",
                                               "--holes 0.45",
                                               "--error 0.02",
                                               "--n-rate 0.01",
                                               "--wrong-reads 0.07",
                                               "--position-noise 7.5",
                                               "--interleave",
                                               "--gzip"};
    std::string line;
    for (const std::string& setting : settings) line += setting + " ";
    const std::string directory = Directory() + "/below/a/new/one";
    ASSERT_EQ(Run(line + directory), 0) << Err();
    EXPECT_EQ(Err(), "");
    EXPECT_EQ(Out(), "scaffolds\t3\ngaps\t" + std::to_string(totals.gaps) + "\ngaps with reads\t" +
                         std::to_string(totals.gaps_with_reads) + "\nreads\t" + std::to_string(totals.reads) + "\n");
    const Input got = Load(directory, true);
    EXPECT_EQ(want.contig_text, got.contig_text);
    EXPECT_EQ(want.gap_text, got.gap_text);
    EXPECT_EQ(testing::FileText(Directory() + "/made1/truth.tsv"), testing::FileText(directory + "/truth.tsv"));
}

TEST_F(SimulateProgram, DefaultsAreThoseOfTheLibrary) {
    options_ = Options{};
    const Input want = Make();
    ASSERT_EQ(Run(Directory() + "/defaults"), 0) << Err();
    const Input got = Load(Directory() + "/defaults", false);
    EXPECT_EQ(want.contig_text, got.contig_text);
    EXPECT_EQ(want.gap_text, got.gap_text);
}

TEST_F(SimulateProgram, FaultsAreOneLine) {
    const std::string into = " " + Directory() + "/faulty";
    EXPECT_EQ(Run("--overlaps 1.5" + into), 1);
    EXPECT_EQ(Err(), "lintara-simulate: --overlaps: 1.5 is not between 0 and 1\n");
    EXPECT_EQ(Run("--error nan" + into), 1);
    EXPECT_EQ(Err(), "lintara-simulate: --error: nan is not between 0 and 1\n");
    EXPECT_EQ(Run("--gap-lengths 5" + into), 1);
    EXPECT_EQ(Err(), "lintara-simulate: --gap-lengths: not of the form LO-HI:WEIGHT: 5\n");
    EXPECT_EQ(Run("--tandem-units 3,x" + into), 1);
    EXPECT_EQ(Err(), "lintara-simulate: --tandem-units: not a number: x\n");
    EXPECT_FALSE(std::filesystem::exists(Directory() + "/faulty")) << "faults are found before anything is made";
    EXPECT_EQ(Run("--gaps 100000 --contig 100000 --no-gaps 0 --coverage 0" + into), 1);
    EXPECT_EQ(Err(), "lintara-simulate: a scaffold grows beyond 2,000,000,000 bases\n");
    EXPECT_EQ(Run("/dev/null/x"), 1);
    EXPECT_EQ(Err(), "lintara-simulate: /dev/null/x: cannot be made: Not a directory\n");
    EXPECT_EQ(Run("/proc/self"), 1);
    EXPECT_EQ(Err(), "lintara-simulate: /proc/self/contig.fa: cannot be written\n");

    // What the command line parser finds has its own statuses.
    EXPECT_NE(Run(""), 0);
    EXPECT_EQ(Err().substr(0, 23), "DIRECTORY is required\nR");
    EXPECT_NE(Run("--gaps many" + into), 0);
    EXPECT_NE(Err().find("--gaps"), std::string::npos);
    EXPECT_NE(Run("--nonsense" + into), 0);
    EXPECT_NE(Err().find("--nonsense"), std::string::npos);
}

TEST_F(SimulateProgram, FullDiskIsAFault) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP();
    for (const char* name : {"contig.fa", "gap.fa", "truth.tsv"}) {
        const std::string directory = Directory() + "/full_" + name;
        std::filesystem::create_directories(directory);
        std::filesystem::create_symlink("/dev/full", directory + "/" + name);
        EXPECT_EQ(Run(directory), 1) << name;
        EXPECT_EQ(Err(), "lintara-simulate: " + directory + "/" + name + ": cannot be written\n");
    }
}

}  // namespace
}  // namespace lintara::simulate
