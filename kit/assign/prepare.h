// The core program's input: contig.fa, gap.fa.gz and, to find one's way back, names.tsv. Also the command `prepare`,
// which makes them from a mapping and stops there.
#pragma once

#include <string>
#include <vector>

#include "kit/assign/assign.h"
#include "kit/assign/layout.h"
#include "kit/assign/mapping.h"
#include "kit/base/fasta.h"
#include "kit/base/progress.h"

namespace lintara::kit {

struct PrepareOptions {
    std::string scaffolds;
    std::vector<std::string> bams;
    std::string out;  ///< folder; is made
    long minGap = 1;
    bool quiet = false;
};

/// Writes `folder`/contig.fa and `folder`/gap.fa.gz. Contigs are in upper case, since reads are.
void WriteCoreInput(const Layout& layout, const std::vector<CoreScaffold>& scaffolds,
                    const std::vector<std::vector<AssignedRead>>& assigned, const std::string& folder);

/// Tells of letters that are neither a base nor N, sequence by sequence.
void WarnOfLetters(const std::vector<FastaRecord>& records, Progress& progress);

/// Tells of reads that are longer than the overlaps which the core program can keep.
void WarnOfLongReads(const std::string& library, const MappingSummary& summary, Progress& progress);

/// Path of a plain FASTA file for reading CRAM, written to `folder` when one of the files is CRAM; else empty.
std::string ReferenceForCram(const std::vector<std::string>& bams, const std::vector<FastaRecord>& records,
                             const std::string& folder);

/// The command; returns the exit status.
int RunPrepare(const PrepareOptions& options);

}  // namespace lintara::kit
