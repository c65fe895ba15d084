// The `verify` command: maps the read pairs back to the filled scaffolds and says what they tell of each filled
// stretch. A stretch is one line of filled.bed. It has support when reads lie over each of its bases and over both its
// seams; with a mask, stretches without it turn back to N.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kit/base/fasta.h"

namespace lintara::kit {

struct VerifyOptions {
    std::string scaffolds;            ///< filled.fa, plain or gzip-compressed
    std::string bed;                  ///< filled.bed, in the coordinates of `scaffolds`
    std::vector<std::string> reads1;  ///< first mates, one file a library
    std::vector<std::string> reads2;  ///< second mates, as many files
    std::string bam;                  ///< instead of reads: BAM, CRAM or SAM mapped to `scaffolds`
    std::string mapper = "bwa";       ///< bwa or minimap2
    int threads = 1;                  ///< threads of the mapper
    std::string output;               ///< table; empty: the standard output
    bool mask = false;                ///< also write the scaffolds with stretches without support as N
    std::string maskFile;             ///< where to; empty: `scaffolds` with ".masked.fa" in place of its suffix
    bool quiet = false;
};

/// Runs the command. Returns 0, whatever the reads say; throws Error for files that cannot be read or written, lines of
/// the BED that do not fit the scaffolds, and a mapper that ends abnormally.
int RunVerify(const VerifyOptions& options);

/// One filled stretch and what the reads tell of it.
struct Stretch {
    int scaffold = 0;  ///< index in the FASTA file
    int64_t start = 0;
    int64_t end = 0;   ///< half-open
    std::string name;  ///< fourth column of the BED
    long line = 0;     ///< its line in the BED

    int leastDepth = 0;        ///< fewest reads over a base of the stretch
    double meanDepth = 0;      ///< mean number of reads over a base
    int leastSupport = 0;      ///< fewest reads that lie over a base and show just this base
    int contradicted = 0;      ///< bases that fewer than half of the reads over them show
    int leastBridge = 0;       ///< fewest reads that run unbroken over two neighbouring bases, both seams included
    int spanningPairs = 0;     ///< proper pairs that begin in front of the stretch and end behind it
    double expectedPairs = 0;  ///< how many of these the libraries let expect for a stretch of this length
    double insertShift = 0;    ///< mean length of the spanning pairs less the expected one, bases
    double shiftScore = 0;     ///< the same in standard errors
    int clippedStart = 0;      ///< reads clipped within 5 bases of the first seam
    int clippedEnd = 0;        ///< reads clipped within 5 bases of the last seam
    std::string doubt;         ///< why the stretch lacks support; empty: it has it
};

/// Reads filled.bed (at least three columns; "gap<N>" names are not required). Throws Error with file, line and value.
std::vector<Stretch> ReadStretches(const std::string& path, const std::vector<FastaRecord>& scaffolds);

/// Fills in the figures of all stretches from the alignments of one or several libraries.
class Evidence {
  public:
    /// `scaffolds` must outlive the object; sequences of any case.
    Evidence(const std::vector<FastaRecord>& scaffolds, std::vector<Stretch> stretches);
    ~Evidence();
    Evidence(const Evidence&) = delete;
    Evidence& operator=(const Evidence&) = delete;

    /// Takes in a whole SAM, BAM or CRAM file, in any order, as one library. With an empty `path` SAM is read from the
    /// descriptor, which is closed. `reference` is needed for CRAM only. With `numbered` the targets are the indices of
    /// the scaffolds, otherwise their names.
    /// `tell` hears now and then how many records were read.
    void Take(const std::string& path, int descriptor, const std::string& reference, bool numbered,
              const std::function<void(long)>& tell = {});
    /// Least and mean figures, and the doubts.
    std::vector<Stretch> Finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace lintara::kit
