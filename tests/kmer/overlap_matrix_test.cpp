#include "kmer/overlap_matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <new>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "align/overlap.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace {

// Allocations of arrays that are to be refused: the numbers of the calls, counted from 1, while the trap is set.
struct AllocationTrap {
    bool set = false;
    int calls = 0;
    std::set<int> refused;
    std::vector<std::size_t> sizes;
    std::vector<unsigned int> sleeps;
} trap;

}  // namespace

// The matrix is allocated in the form that gives null when memory is short, so that this form can be made to fail.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (trap.set) {
        trap.sizes.push_back(size);
        if (trap.refused.count(++trap.calls) != 0) return nullptr;
    }
    try {
        return ::operator new[](size);
    } catch (...) {
        return nullptr;
    }
}

// Notes the pause in place of making it.
extern "C" unsigned int sleep(unsigned int seconds) {
    trap.sleeps.push_back(seconds);
    return 0;
}

namespace lintara {
namespace {

using Cells = std::vector<std::vector<int>>;

std::string RandomBases(std::mt19937& random, int length) {
    std::string seq;
    for (int i = 0; i < length; ++i) seq += base[random() % 4];
    return seq;
}

// A sequence without repeats of k-mer length, the same in each run.
std::string Genome(int length) {
    std::mt19937 random(7);
    return RandomBases(random, length);
}

Cells CellsOf(std::uint8_t** matrix, int num) {
    Cells cells;
    for (int i = 0; i < num; ++i) cells.emplace_back(matrix[i], matrix[i] + num);
    return cells;
}

std::uint8_t** MatrixOf(const Cells& cells) {
    std::uint8_t** matrix = new std::uint8_t*[cells.size()];
    for (std::size_t i = 0; i < cells.size(); ++i) {
        matrix[i] = new std::uint8_t[cells.size()];
        for (std::size_t j = 0; j < cells.size(); ++j) matrix[i][j] = static_cast<std::uint8_t>(cells[i][j]);
    }
    return matrix;
}

class OverlapMatrixTest : public testing::ThreadStreamsTest {
  protected:
    void SetUp() override {
        ThreadStreamsTest::SetUp();
        trap = AllocationTrap{};
    }
    void TearDown() override {
        trap.set = false;
        ThreadStreamsTest::TearDown();
    }

    // The keys of one read with their frequencies, by asking a table that holds this read alone.
    static std::vector<std::pair<std::uint64_t, int>> KeysOf(const std::string& read) {
        HashSet* hash = init_hashset(1000, 0.75F);
        fill_hash_set31(hash, read, 0);
        std::set<std::pair<std::uint64_t, int>> keys;
        for (std::uint64_t slot = 0; slot < hash->size; ++slot) {
            if (is_entity_null(hash->nul_flag, slot)) continue;
            keys.emplace(hash->array[slot].kmer, static_cast<int>(hash->array[slot].kmer_fre));
        }
        free_hash(hash);
        return {keys.begin(), keys.end()};
    }

    static Cells Seeds(const std::vector<Read>& reads) {
        HashSet* hash = init_hashset(3, 0.75F);
        fill_hash(hash, reads);
        const std::uint16_t num = static_cast<std::uint16_t>(reads.size());
        std::uint8_t** matrix = hash2matrix(hash, num);
        free_hash(hash);
        Cells cells = CellsOf(matrix, num);
        free_matrix(matrix, num);
        return cells;
    }

    // The cells after the comparison of the given seeds.
    static Cells Compared(const std::vector<Read>& reads, const Cells& seeds, int type, int method = 5) {
        std::uint8_t** matrix = MatrixOf(seeds);
        overlap_matrix(matrix, reads, method, type, 0);
        Cells cells = CellsOf(matrix, static_cast<int>(reads.size()));
        free_matrix(matrix, static_cast<std::uint16_t>(reads.size()));
        return cells;
    }

    static Cells Overlaps(const std::vector<Read>& reads, int type = 0) { return Compared(reads, Seeds(reads), type); }
};

// ---- packing ----

TEST(Seq2bit, FirstBaseEndsHighest) {
    EXPECT_EQ(0U, seq2bit(""));
    EXPECT_EQ(27U, seq2bit("ACGT"));  // 00 01 10 11
    EXPECT_EQ(27U, seq2bit("acgt"));
    EXPECT_EQ(3U * 1024, seq2bit("TAAAAA"));
}

TEST(Seq2bit, OtherBytesSpillIntoTheBaseBefore) {
    EXPECT_EQ(4U, seq2bit("AN"));   // as CA
    EXPECT_EQ(4U, seq2bit("CN"));   // C has the bit already
    EXPECT_EQ(12U, seq2bit("GN"));  // as TA
    EXPECT_EQ(4U, seq2bit("N"));
    EXPECT_EQ(5460U, seq2bit("NNNNNN"));  // 4 + 16 + 64 + 256 + 1024 + 4096
}

TEST(Seq2bit, ThirtyOneBasesAreTheLongest) {
    EXPECT_EQ((std::uint64_t{1} << 62) - 1, seq2bit(std::string(31, 'T')));
    EXPECT_EXIT(seq2bit(std::string(32, 'T')), ::testing::ExitedWithCode(255),
                "^Error in the sequence is too long !\n$");
}

TEST(Bit2seq, GivesTheSixBasesOfTheLowTwelveBits) {
    EXPECT_EQ("AAAAAA", bit2seq(0));
    EXPECT_EQ("AAACGT", bit2seq(27));
    EXPECT_EQ("TTTTTT", bit2seq(4095));
    EXPECT_EQ("AAACGT", bit2seq(27 + 4096 * 5));
    EXPECT_EQ("GATTCC", bit2seq(seq2bit("GATTCC")));
}

TEST_F(OverlapMatrixTest, Kmer2SeqGivesKmerBases) {
    Kmer = 4;
    EXPECT_EQ("ACGT", Kmer2Seq(27));
    EXPECT_EQ("ACGT", Kmer2Seq(27 + 256));
    Kmer = 31;
    EXPECT_EQ(std::string(27, 'A') + "ACGT", Kmer2Seq(27));
    Kmer = 0;
    EXPECT_EQ("", Kmer2Seq(27));
}

TEST_F(OverlapMatrixTest, Kmer2SeqTakesItsShiftsModuloTheWord) {
    Kmer = 34;  // bases 0 and 1 ask for shifts of 66 and 64, which are 2 and 0
    EXPECT_EQ("GT" + std::string(28, 'A') + "ACGT", Kmer2Seq(27));
}

TEST(Seq2Kmer, RunningWordIsShiftedAndNotCleared) {
    std::uint64_t kmer = 1;
    seq2Kmer(kmer, "GT");
    EXPECT_EQ(27U, kmer);  // C, then G and T
    seq2Kmer(kmer, "AN");  // N spills into A
    EXPECT_EQ(27U * 16 + 4, kmer);
    seq2Kmer(kmer, std::string(32, 'A') + "C");
    EXPECT_EQ(1U, kmer);
}

TEST(Seq2Kmer, ThirtyTwoBasesFillTheWordAndMoreAreLost) {
    std::uint64_t kmer = 0;
    seq2Kmer(kmer, "G" + std::string(31, 'A'));
    EXPECT_EQ(std::uint64_t{1} << 63, kmer);
    seq2Kmer(kmer, "T");
    EXPECT_EQ(3U, kmer);
}

TEST(Seq2KmerTwoWords, SecondWordTakesTheBasesBehindThirtyTwo) {
    std::uint64_t kmer[2] = {0, 0};
    Seq2Kmer(kmer, "ACGT");
    EXPECT_EQ(27U, kmer[0]);
    EXPECT_EQ(0U, kmer[1]);
    Seq2Kmer(kmer, "T" + std::string(31, 'A'));
    EXPECT_EQ(std::uint64_t{3} << 62, kmer[0]);
    EXPECT_EQ(0U, kmer[1]);
    Seq2Kmer(kmer, std::string(31, 'A') + "C" + "TT");
    EXPECT_EQ(1U, kmer[0]);
    EXPECT_EQ(15U, kmer[1]);
    Seq2Kmer(kmer, std::string(32, 'A') + "C");
    EXPECT_EQ(0U, kmer[0]);
    EXPECT_EQ(61U, kmer[1]);  // neither word is cleared first
}

// ---- the keys of a read ----

TEST_F(OverlapMatrixTest, ReadOfKmerBasesAddsOneKey) {
    Kmer = 4;
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{27, 1}}), KeysOf("ACGT"));
}

TEST_F(OverlapMatrixTest, ShorterReadAddsNoKey) {
    Kmer = 4;
    EXPECT_TRUE(KeysOf("ACG").empty());
    EXPECT_TRUE(KeysOf("").empty());
}

TEST_F(OverlapMatrixTest, KeysKeepTheKmersBefore) {
    Kmer = 4;
    // ACGT = 27, CGTA = 108, GTAC = 177, each behind the ones before it
    EXPECT_EQ(
        (std::vector<std::pair<std::uint64_t, int>>{{27, 1}, {27 * 256 + 108, 1}, {(27 * 256 + 108) * 256 + 177, 1}}),
        KeysOf("ACGTAC"));
}

TEST_F(OverlapMatrixTest, TopBitsOfALaterKeyAreTheLastButOneBase) {
    const std::string bases = "G" + std::string(29, 'A') + "TC";
    const std::uint64_t first = (std::uint64_t{2} << 60) + 3;
    const std::uint64_t second = (std::uint64_t{3} << 62) + 13;
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{first, 1}, {second, 1}}), KeysOf(bases));
}

TEST_F(OverlapMatrixTest, KeyOfALongKmerIsItsLastThirtyTwoBases) {
    Kmer = 40;
    const std::string tail = std::string(30, 'A') + "TC";
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{13, 1}}), KeysOf("GGGGGGGG" + tail));
    EXPECT_EQ(KeysOf("GGGGGGGG" + tail), KeysOf("CCCCCCCT" + tail));
}

TEST_F(OverlapMatrixTest, RunningKeyStartsAnewForEachRead) {
    Kmer = 4;
    const Cells seeds = Seeds({Read("TTTTT", 0), Read("ACGT", 0), Read("ACGT", 0)});
    EXPECT_EQ(Cells({{0, 0, 0}, {0, 0, 1}, {0, 0, 0}}), seeds);
}

TEST_F(OverlapMatrixTest, KmerOfNoBasesIsOneKeyAtEachPlace) {
    Kmer = 0;
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{0, 4}}), KeysOf("ACG"));
    Kmer = -1;
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{0, 5}}), KeysOf("ACG"));
}

TEST_F(OverlapMatrixTest, KmerThatOccursTwiceCountsTwice) {
    Kmer = 31;
    EXPECT_EQ((std::vector<std::pair<std::uint64_t, int>>{{0, 3}}), KeysOf(std::string(33, 'A')));
}

// ---- seeds ----

TEST_F(OverlapMatrixTest, SharedKmerSeedsThePairAboveTheDiagonal) {
    const std::string genome = Genome(200);
    const std::vector<Read> reads = {Read(genome.substr(60, 80), 0), Read(genome.substr(0, 80), 0),
                                     Read(genome.substr(20, 80), 0)};
    // Reads 0 and 1 share 20 bases only; read 2 shares 40 and 60.
    EXPECT_EQ(Cells({{0, 0, 1}, {0, 0, 1}, {0, 0, 0}}), Seeds(reads));
}

TEST_F(OverlapMatrixTest, RepeatInsideOneReadSeedsNothing) {
    const std::string unit = Genome(35);
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Seeds({Read(unit + unit, 0), Read(Genome(200).substr(100), 0)}));
}

TEST_F(OverlapMatrixTest, ReadShorterThanKmerGetsNoSeed) {
    const std::string genome = Genome(60);
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Seeds({Read(genome, 0), Read(genome.substr(10, 30), 0)}));
}

TEST_F(OverlapMatrixTest, FirstKmerOfAReadMatchesLaterOnesOnlyBehindAnA) {
    // The short read is its own first k-mer, whose spare bits are 0; in the long one the same bases come later and
    // carry their last-but-one base in those bits.
    std::string bases = Genome(31);
    bases[29] = 'C';
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Seeds({Read("G" + bases, 0), Read(bases, 0)}));
    bases[29] = 'A';
    EXPECT_EQ(Cells({{0, 1}, {0, 0}}), Seeds({Read("G" + bases, 0), Read(bases, 0)}));
}

TEST_F(OverlapMatrixTest, FrequencyIsCutToSixteenBits) {
    for (const auto& [amount, seed] : {std::pair{65536U, 0}, std::pair{65537U, 1}}) {
        HashSet* hash = init_hashset(3, 0.75F);
        Entity first{};
        first.kmer_fre = 1;
        add_hashset(hash, &first, 0);
        Entity second{};
        second.kmer_fre = amount;
        add_hashset(hash, &second, 1);  // 65537 is cut to 1, 65538 to 2
        std::uint8_t** matrix = hash2matrix(hash, 2);
        EXPECT_EQ(Cells({{0, seed}, {0, 0}}), CellsOf(matrix, 2));
        free_matrix(matrix, 2);
        free_hash(hash);
    }
}

TEST_F(OverlapMatrixTest, EntriesOutsideTheBlockOrTheListSeedNothing) {
    HashSet* hash = init_hashset(3, 0.75F);
    Entity entity{};
    entity.kmer_fre = 1;
    for (std::uint16_t read : {0, 5, 1}) add_hashset(hash, &entity, read);
    entity.kmer_fre = 50000;
    add_hashset(hash, &entity, 1);
    std::uint8_t** matrix = hash2matrix(hash, 2);
    EXPECT_EQ(Cells({{0, 1}, {1, 0}}), CellsOf(matrix, 2));
    free_matrix(matrix, 2);
    free_hash(hash);
}

TEST_F(OverlapMatrixTest, ReadThatHoldsTheKmerAgainSeedsTheSamePairs) {
    HashSet* hash = init_hashset(3, 0.75F);
    Entity entity{};
    entity.kmer_fre = 1;
    for (std::uint16_t read : {0, 0, 0, 2, 2, 3}) add_hashset(hash, &entity, read);
    std::uint8_t** matrix = hash2matrix(hash, 4);
    EXPECT_EQ(Cells({{0, 0, 1, 1}, {0, 0, 0, 0}, {0, 0, 0, 1}, {0, 0, 0, 0}}), CellsOf(matrix, 4));
    free_matrix(matrix, 4);
    // Behind a smaller number, too.
    for (std::uint16_t read : {1, 1, 0}) add_hashset(hash, &entity, read);
    matrix = hash2matrix(hash, 4);
    EXPECT_EQ(Cells({{0, 1, 1, 1}, {1, 0, 0, 0}, {1, 1, 0, 1}, {1, 1, 0, 0}}), CellsOf(matrix, 4));
    free_matrix(matrix, 4);
    free_hash(hash);
}

TEST_F(OverlapMatrixTest, DeletedRecordsSeedAllTheSame) {
    HashSet* hash = init_hashset(3, 0.75F);
    Entity entity{};
    entity.kmer_fre = 1;
    for (std::uint16_t read : {0, 1}) add_hashset(hash, &entity, read);
    delete_hashset(hash, &entity);
    std::uint8_t** matrix = hash2matrix(hash, 2);
    EXPECT_EQ(Cells({{0, 1}, {0, 0}}), CellsOf(matrix, 2));
    free_matrix(matrix, 2);
    free_hash(hash);
}

TEST_F(OverlapMatrixTest, MatrixOfNoReadsCanBeMadeAndFreed) {
    HashSet* hash = init_hashset(0, 0.75F);
    fill_hash(hash, {});
    std::uint8_t** matrix = hash2matrix(hash, 0);
    free_hash(hash);
    overlap_matrix(matrix, {}, 5, 3, 0);
    correct_matrix(matrix, 0);
    show_matrix(matrix, 0, 0);
    free_matrix(matrix, 0);
}

TEST_F(OverlapMatrixTest, ReadNumbersAreCutToSixteenBits) {
    Kmer = 4;
    std::vector<Read> reads(65538, Read("A", 0));
    reads[65536].seq = "ACGT";
    reads[65537].seq = "ACGT";
    HashSet* hash = init_hashset(3, 0.75F);
    fill_hash(hash, reads);
    Entity entity{};
    entity.kmer = 27;
    const Entity& record = hash->array[get_hashset(hash, &entity)];
    ASSERT_EQ(2U, record.kmer_fre);
    EXPECT_EQ(0, record.p[0]);
    EXPECT_EQ(1, record.p[1]);
    free_hash(hash);
}

TEST_F(OverlapMatrixTest, AllocationThatFailsIsRetriedAfterThreeSeconds) {
    HashSet* hash = init_hashset(3, 0.75F);
    trap.refused = {1, 2, 4, 6};  // the row array twice, the first row once, the second once
    trap.set = true;
    ::testing::internal::CaptureStderr();
    std::uint8_t** matrix = hash2matrix(hash, 3);
    trap.set = false;
    EXPECT_EQ(
        "Out of memory! Main: 142. Function: hash2matrix\n"
        "Out of memory! Main: 142. Function: hash2matrix\n"
        "Out of memory! Line: 152. Function: hash2matrix\n"
        "Out of memory! Line: 152. Function: hash2matrix\n",
        ::testing::internal::GetCapturedStderr());
    EXPECT_EQ(std::vector<unsigned int>({3, 3, 3, 3}), trap.sleeps);
    // Three row pointers, and rows of twice their cells.
    EXPECT_EQ(std::vector<std::size_t>({24, 24, 24, 6, 6, 6, 6, 6}), trap.sizes);
    EXPECT_EQ(Cells(3, std::vector<int>(3, 0)), CellsOf(matrix, 3));
    free_matrix(matrix, 3);
    free_hash(hash);
}

// ---- comparison ----

TEST_F(OverlapMatrixTest, FiveReadsOfALine) {
    const std::string genome = Genome(200);
    // Starts 0, 20, 30, 50 and 90, out of order in the block.
    const std::vector<Read> reads = {Read(genome.substr(30, 80), 30), Read(genome.substr(0, 80), 0),
                                     Read(genome.substr(90, 80), 90), Read(genome.substr(20, 80), 20),
                                     Read(genome.substr(50, 80), 50)};
    EXPECT_EQ(Cells({{0, 0, 0, 0, 60},   //
                     {50, 0, 0, 60, 0},  // the overlap of 30 bases with the read at 50 has no whole k-mer
                     {0, 0, 0, 0, 0},    //
                     {70, 0, 0, 0, 50},  //
                     {0, 0, 40, 0, 0}}),
              Overlaps(reads));
    EXPECT_EQ("caculate the overlap values\ncaculate finish!\n", Log());
}

TEST_F(OverlapMatrixTest, MismatchesAboveTheRatioGiveNoOverlapEitherWay) {
    const std::string genome = Genome(140);
    std::string other = genome.substr(40, 100);
    // 60 shared columns: the first 40 stay equal and share k-mers; 2 of 60 columns differ, which is 0.9667.
    for (int column : {50, 55}) other[column] = other[column] == 'A' ? 'C' : 'A';
    const std::vector<Read> reads = {Read(genome.substr(0, 100), 0), Read(other, 40)};
    EXPECT_EQ(Cells({{0, 1}, {0, 0}}), Seeds(reads));
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Overlaps(reads));
    Match_ratio = 0.966;
    EXPECT_EQ(Cells({{0, 60}, {0, 0}}), Overlaps(reads));
}

TEST_F(OverlapMatrixTest, ContainedReadGivesNoOverlapEitherWay) {
    const std::string genome = Genome(100);
    const std::vector<Read> reads = {Read(genome, 0), Read(genome.substr(20, 60), 20), Read(genome, 0)};
    EXPECT_EQ(Cells({{0, 1, 1}, {0, 0, 1}, {0, 0, 0}}), Seeds(reads));
    EXPECT_EQ(Cells(3, std::vector<int>(3, 0)), Overlaps(reads));
}

TEST_F(OverlapMatrixTest, SharedStartOrEndIsContainment) {
    const std::string genome = Genome(100);
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Overlaps({Read(genome, 0), Read(genome.substr(0, 70), 0)}));
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Overlaps({Read(genome.substr(30), 0), Read(genome, 0)}));
}

TEST_F(OverlapMatrixTest, OnlyCellsOfOneAreCompared) {
    const std::string genome = Genome(100);
    const std::vector<Read> reads = {Read(genome.substr(0, 80), 0), Read(genome.substr(20, 80), 20)};
    EXPECT_EQ(Cells({{0, 2}, {0, 0}}), Compared(reads, {{0, 2}, {0, 0}}, 0));
    EXPECT_EQ(Cells({{0, 60}, {0, 0}}), Compared(reads, {{0, 1}, {0, 0}}, 0));
    EXPECT_EQ(Cells({{7, 60}, {0, 0}}), Compared(reads, {{7, 9}, {1, 0}}, 0));
}

TEST_F(OverlapMatrixTest, TypeSaysWhichReadsAreCompared) {
    const std::string genome = Genome(100);
    std::vector<Read> reads;
    for (int start : {0, 10, 20, 30}) reads.emplace_back(genome.substr(start, 70), start);
    const Cells seeds = {{0, 1, 1, 1}, {0, 0, 1, 1}, {0, 0, 0, 1}, {0, 0, 0, 0}};
    const Cells all = {{0, 60, 50, 40}, {0, 0, 60, 50}, {0, 0, 0, 60}, {0, 0, 0, 0}};
    EXPECT_EQ(all, Compared(reads, seeds, 0));
    EXPECT_EQ(all, Compared(reads, seeds, 4));
    EXPECT_EQ(all, Compared(reads, seeds, -1));
    EXPECT_EQ(Cells({{0, 1, 1, 1}, {0, 0, 60, 50}, {0, 0, 0, 60}, {0, 0, 0, 0}}), Compared(reads, seeds, 1));
    EXPECT_EQ(Cells({{0, 60, 50, 1}, {0, 0, 60, 1}, {0, 0, 0, 1}, {0, 0, 0, 0}}), Compared(reads, seeds, 2));
    EXPECT_EQ(Cells({{0, 1, 1, 1}, {0, 0, 60, 1}, {0, 0, 0, 1}, {0, 0, 0, 0}}), Compared(reads, seeds, 3));
}

TEST_F(OverlapMatrixTest, EdgeRowsKeepWhatTheyHad) {
    const std::string genome = Genome(100);
    std::vector<Read> reads;
    for (int start : {0, 10, 20, 30}) reads.emplace_back(genome.substr(start, 70), start);
    EXPECT_EQ(Cells({{0, 60, 50, 40}, {0, 0, 60, 51}, {0, 0, 0, 61}, {0, 0, 0, 0}}),
              Compared(reads, {{0, 60, 50, 40}, {0, 0, 1, 51}, {0, 0, 0, 61}, {0, 0, 0, 0}}, 3));
}

TEST_F(OverlapMatrixTest, OverlapIsKeptInEightBits) {
    const std::string genome = Genome(500);
    const Read left(genome.substr(0, 400), 0);
    const Read right(genome.substr(100, 400), 100);
    EXPECT_EQ(Cells({{0, 44}, {0, 0}}), Compared({left, right}, {{0, 1}, {0, 0}}, 0));  // 300 - 256
    EXPECT_EQ(Cells({{0, 0}, {44, 0}}), Compared({right, left}, {{0, 1}, {0, 0}}, 0));
    const Read at_256(genome.substr(144, 300), 144);
    EXPECT_EQ(Cells({{0, 0}, {0, 0}}), Compared({left, at_256}, {{0, 1}, {0, 0}}, 0));
    // 257 leaves a 1 below the diagonal, which is met again as a seed and settles on the same value.
    const Read at_257(genome.substr(143, 300), 143);
    EXPECT_EQ(Cells({{0, 0}, {1, 0}}), Compared({at_257, left}, {{0, 1}, {0, 0}}, 0));
}

// Which pairs share a key, by the bases alone: a key is the last 32 bases of all k-mers of the read up to its place,
// one behind the other. A byte that is no base counts as A and turns A into C and G into T in front of it.
std::set<std::string> PlainKeys(const std::string& read) {
    std::set<std::string> keys;
    std::string shifted(40, 'A');
    for (int pos = 0; pos + Kmer <= static_cast<int>(read.size()); ++pos) {
        for (const char letter : read.substr(pos, Kmer)) {
            if (letter == 'N') {
                char& before = shifted.back();
                if (before == 'A') before = 'C';
                if (before == 'G') before = 'T';
            }
            shifted += letter == 'N' ? 'A' : letter;
        }
        shifted.erase(0, shifted.size() - 40);
        keys.insert(shifted.substr(8));
    }
    return keys;
}

Cells PlainSeeds(const std::vector<Read>& reads) {
    std::vector<std::set<std::string>> keys;
    for (const Read& read : reads) keys.push_back(PlainKeys(read.seq));
    Cells cells(reads.size(), std::vector<int>(reads.size(), 0));
    for (std::size_t i = 0; i < reads.size(); ++i) {
        for (std::size_t j = i + 1; j < reads.size(); ++j) {
            std::vector<std::string> shared;
            std::set_intersection(keys[i].begin(), keys[i].end(), keys[j].begin(), keys[j].end(),
                                  std::back_inserter(shared));
            cells[i][j] = !shared.empty();
        }
    }
    return cells;
}

Cells PlainOverlaps(const std::vector<Read>& reads, Cells cells, int type, int method) {
    const int num = static_cast<int>(reads.size());
    for (int i = 0; i < num; ++i) {
        for (int j = i + 1; j < num; ++j) {
            if (cells[i][j] != 1) continue;
            if ((type == 1 || type == 3) && i == 0) continue;
            if ((type == 2 || type == 3) && j == num - 1) continue;
            cells[i][j] = 0;
            const int shared = overlap(reads[i].seq, reads[j].seq, method, Match_ratio);
            const int shorter = static_cast<int>(std::min(reads[i].seq.size(), reads[j].seq.size()));
            if (shared > 0 && shared < shorter) cells[i][j] = shared;
            if (shared < 0 && -shared < shorter) cells[j][i] = -shared;
        }
    }
    return cells;
}

// A block of reads as a gap has them: errors, some N, a repeat now and then, and reads of many lengths.
std::vector<Read> RandomBlock(std::mt19937& random) {
    std::string genome = RandomBases(random, 300);
    if (random() % 2 == 0) genome.replace(150, 60, genome.substr(40, 60));
    if (random() % 4 == 0) {
        const std::string unit = RandomBases(random, 1 + static_cast<int>(random() % 12));
        for (int i = 0; i < 70; ++i) genome[80 + i] = unit[i % unit.size()];
    }
    std::vector<Read> reads;
    const int num = 2 + static_cast<int>(random() % 25);
    for (int i = 0; i < num; ++i) {
        const int start = static_cast<int>(random() % 200);
        std::string seq = genome.substr(start, 10 + random() % 90);
        for (char& letter : seq) {
            const unsigned int dice = random() % 200;
            if (dice < 2) letter = base[random() % 4];
            if (dice == 3) letter = 'N';
        }
        reads.emplace_back(seq, start);
    }
    return reads;
}

TEST_F(OverlapMatrixTest, AgreesWithAPlainComparisonOfAllPairs) {
    std::mt19937 random(9106);
    int seeded = 0;
    int forward = 0;
    int backward = 0;
    for (int round = 0; round < 120; ++round) {
        const int kmers[] = {3, 8, 15, 16, 17, 21, 31, 32, 33, 40};
        Kmer = kmers[random() % 10];
        const std::vector<Read> reads = RandomBlock(random);
        const int type = static_cast<int>(random() % 5) - 1;
        const int method = static_cast<int>(random() % 6);
        const Cells seeds = Seeds(reads);
        ASSERT_EQ(PlainSeeds(reads), seeds) << "round " << round << ", Kmer " << Kmer;
        const Cells cells = Compared(reads, seeds, type, method);
        ASSERT_EQ(PlainOverlaps(reads, seeds, type, method), cells) << "round " << round << ", Kmer " << Kmer;
        for (std::size_t i = 0; i < reads.size(); ++i) {
            for (std::size_t j = 0; j < reads.size(); ++j) {
                seeded += seeds[i][j];
                if (cells[i][j] > 1) ++(i < j ? forward : backward);
            }
        }
    }
    // The blocks put all outcomes to the test.
    EXPECT_GT(seeded, 2000);
    EXPECT_GT(forward, 500);
    EXPECT_GT(backward, 500);
}

// ---- debugging ----

TEST_F(OverlapMatrixTest, CorrectMatrixClearsFirstColumnAndLastRow) {
    std::uint8_t** matrix = MatrixOf(Cells(3, std::vector<int>(3, 5)));
    correct_matrix(matrix, 3);
    EXPECT_EQ(Cells({{0, 5, 5}, {0, 5, 5}, {0, 0, 0}}), CellsOf(matrix, 3));
    free_matrix(matrix, 3);
}

TEST_F(OverlapMatrixTest, ShowOverLogsOneRowOrOneColumn) {
    std::uint8_t** matrix = MatrixOf({{0, 31, 200}, {0, 0, 65}, {7, 0, 0}});
    show_over(0, matrix, 3, 0);
    EXPECT_EQ("show after overlap with start: 0\n1;31 2;200 \n", NewLog());
    show_over(matrix, 2, 3, 0);
    EXPECT_EQ("show before overlap with end: 2\n0;200 1;65 \n", NewLog());
    show_over(matrix, 0, 3, 0);
    EXPECT_EQ("show before overlap with end: 0\n2;7 \n", NewLog());
    free_matrix(matrix, 3);
}

TEST_F(OverlapMatrixTest, ShowOverOfAReadOutsideTheBlockListsNothing) {
    std::uint8_t** matrix = MatrixOf({{1}});
    show_over(-1, matrix, 1, 0);
    show_over(matrix, 1, 1, 0);
    EXPECT_EQ("show after overlap with start: -1\n\nshow before overlap with end: 1\n\n", NewLog());
    free_matrix(matrix, 1);
}

TEST_F(OverlapMatrixTest, ShowMatrixLeavesOutColumnZero) {
    std::uint8_t** matrix = MatrixOf({{9, 31, 200}, {9, 0, 65}, {9, 0, 0}});
    show_matrix(matrix, 3, 0);
    EXPECT_EQ(
        " \t1\t\t2\t\n"
        "0\t31\t\t200\t\n"
        "1\t0\t\t65\t\n"
        "2\t0\t\t0\t\n",
        NewLog());
    free_matrix(matrix, 3);
}

TEST_F(OverlapMatrixTest, FreeMatrixLeavesThePointer) {
    std::uint8_t** matrix = MatrixOf({{0}});
    std::uint8_t** const before = matrix;
    free_matrix(matrix, 1);
    EXPECT_EQ(before, matrix);
}

}  // namespace
}  // namespace lintara
