// The files that a run of `fill` leaves: the filled scaffolds with their index, AGP, BED, the table of gaps, the fills
// by themselves and the support of each base.
#pragma once

#include <string>
#include <vector>

#include "kit/base/fasta.h"
#include "kit/fill/state.h"

namespace lintara::kit {

/// closed, merged, extended or open.
std::string OutcomeOf(const State& state, int gap);

/// Writes filled.fa, filled.fa.fai, filled.agp, fills.fa, filled.bed, gaps.tsv and columns.tsv.gz into `out`, each
/// under its final name only when it is complete.
void WriteOutputs(const State& state, const std::vector<FastaRecord>& records, const std::string& out);

/// Counts for the closing line: closed, merged, extended, open.
struct OutcomeCounts {
    int closed = 0;
    int merged = 0;
    int extended = 0;
    int open = 0;
    long filledBases = 0;
};
OutcomeCounts CountOutcomes(const State& state);

}  // namespace lintara::kit
