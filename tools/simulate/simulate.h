// Simulates gap-filling inputs whose truth is known: a contig file, a gap file and the table of what each gap holds.
//
// Each scaffold is a random sequence that is cut into contigs and gaps; some gaps hold a repeat, some contigs overlap.
// Reads with errors are drawn from the neighbourhood of every gap and given a noisy position, as a stage that maps
// reads to contigs would do. Scaffolds are made one at a time and reads are written as they are drawn, so that memory
// holds one scaffold however long the files become.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace lintara::simulate {

/// True gap lengths low to high, each with equal chance, drawn with a weight against the other classes.
struct LengthClass {
    std::int64_t low = 1;
    std::int64_t high = 1;
    double weight = 1;
};

struct Options {
    std::uint64_t seed = 1;

    int scaffolds = 4;
    int gaps = 10;                ///< mean number of a scaffold
    double no_gaps = 0.05;        ///< share of scaffolds that are one contig
    int contig = 1200;            ///< mean length of a contig, bases
    double short_contigs = 0.05;  ///< share of contigs of 5 to 120 bases
    double lower = 0;             ///< share of contigs with a stretch in lower case

    std::vector<LengthClass> gap_lengths = {{1, 100, 3}, {101, 600, 4}, {601, 1499, 2}, {1500, 4000, 1}};
    double overlaps = 0.06;     ///< share of gaps whose contigs overlap
    double zero = 0.04;         ///< share of gaps of true length 0
    double one = 0.05;          ///< share of the gaps below kOneBelow bases that are stated as 1
    double length_noise = 0.1;  ///< standard deviation of the stated length, as a share of the true one plus 30 bases
    double tandem = 0.15;       ///< share of the other gaps that hold a tandem repeat
    std::vector<int> tandem_units = {1, 2, 3, 4, 5, 6, 7, 9, 12, 15, 21, 33, 45};
    double dispersed = 0.15;  ///< share of the other gaps that hold a dispersed repeat

    double no_reads = 0.06;  ///< share of gaps without reads
    int read_length = 100;
    double long_reads = 0;       ///< share of reads of 1.2 to 1.9 read lengths
    double short_reads = 0.1;    ///< share of reads of half to one read length
    double coverage = 30;        ///< reads over each base
    double holes = 0.15;         ///< share of gaps with a stretch of low coverage
    double error = 0.005;        ///< share of read bases that are replaced by another base
    double n_rate = 0.0002;      ///< share of read bases that are replaced by N
    double wrong_reads = 0.02;   ///< share of reads that come from elsewhere in the scaffold
    double position_noise = 15;  ///< standard deviation of a read's position, bases

    bool interleave = false;  ///< records of different gaps mixed
    bool gzip = false;        ///< gap file compressed
};

/// Gaps of fewer bases may be stated as 1.
inline constexpr int kOneBelow = 60;
/// Shortest read, bases.
inline constexpr int kShortestRead = 4;

/// "LO-HI:WEIGHT,..." and "U,V,..."; each throws std::runtime_error with the faulty part.
std::vector<LengthClass> ParseLengthClasses(const std::string& text);
std::vector<int> ParseUnits(const std::string& text);

/// Throws std::runtime_error that names the option whose value makes no sense.
void CheckOptions(const Options& options);

enum class Kind { kOverlap, kZero, kTandem, kDispersed, kPlain };

/// One gap; it lies between contig i and contig i+1, where i is its index.
struct GapPlan {
    Kind kind = Kind::kPlain;
    std::int64_t length = 0;  ///< true length; negative: the contigs overlap by so many bases
    std::int64_t stated = 1;  ///< length that the files state, 1 or more
    int unit = 0;             ///< unit length of a tandem repeat
};

/// Where a contig lies on the scaffold's bases.
struct Span {
    std::int64_t start = 0;
    std::int64_t end = 0;
};

struct Scaffold {
    int id = 0;  ///< from 1
    std::string bases;
    std::vector<Span> contigs;
    std::vector<GapPlan> gaps;
};

/// The sequences that dispersed repeats are copies of.
std::vector<std::string> RepeatFamilies(const Options& options);

/// One scaffold, which depends on nothing but the options and its id.
Scaffold MakeScaffold(const Options& options, const std::vector<std::string>& families, int id);

/// Draws the reads of one gap, with errors, and hands each with its position on the gap's axis to write, where 0 is the
/// gap's first base and the stated length the first base of the contig behind. Returns how many there were.
std::int64_t DrawReads(const Options& options, const Scaffold& scaffold, int gap,
                       const std::function<void(std::int64_t position, const std::string& bases)>& write);

struct Totals {
    std::int64_t scaffolds = 0;
    std::int64_t gaps = 0;
    std::int64_t gaps_with_reads = 0;
    std::int64_t reads = 0;
};

/// Writes contig.fa, gap.fa (or gap.fa.gz) and truth.tsv into a directory, which is made if there is none. Throws
/// std::runtime_error when an option makes no sense or a file cannot be written.
Totals Simulate(const Options& options, const std::string& directory);

}  // namespace lintara::simulate
