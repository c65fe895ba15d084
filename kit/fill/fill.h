// The command `fill`: map the reads, assign them to the gaps, run the core program, take over what it gained, and do it
// again with the partly filled scaffolds until a round gains nothing. After each round the state is saved below
// OUT/work, so that a run that was ended can go on from there.
#pragma once

#include <string>
#include <vector>

namespace lintara::kit {

struct FillOptions {
    std::string scaffolds;
    std::vector<std::string> reads1;  ///< first mates, one file a library
    std::vector<std::string> reads2;  ///< second mates, as many files
    std::vector<std::string> bams;    ///< instead of reads: mapped to the scaffolds; one round
    std::string out;
    std::string mapper = "bwa";    ///< bwa or minimap2
    std::string core = "lintara";  ///< the core program
    int threads = 1;
    int rounds = 5;   ///< at most
    long minGap = 1;  ///< shorter runs of N belong to their contig
    bool resume = false;
    bool force = false;
    bool keep = false;  ///< leave OUT/work
    bool quiet = false;
    std::string command;  ///< as the user gave it, for run.json
};

/// Returns the exit status, 0. Throws Error when a child ended abnormally, a file cannot be read or nothing can be
/// written; what was gained before is written then.
int RunFill(const FillOptions& options);

}  // namespace lintara::kit
