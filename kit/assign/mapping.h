// Mapped reads as a stream: BAM, CRAM or SAM, sorted either way. What cannot touch a gap is let go at once; a read that
// may waits for its mate, so that memory grows with the gaps and not with the file.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "kit/assign/assign.h"

namespace lintara::kit {

/// What a first pass over a mapping tells.
struct MappingSummary {
    std::vector<InsertSize> libraries;  ///< by library number; there is at least one
    std::vector<std::string> names;     ///< of the libraries
    long longestRead = 0;               ///< bases
    long reads = 0;                     ///< primary records
    long mapped = 0;
};

struct MappingInput {
    std::string path;       ///< file, or empty
    int fd = -1;            ///< pipe that carries SAM; used when `path` is empty, and closed
    std::string reference;  ///< FASTA for CRAM; may be empty
};

/// Reads the mapping once; `tell` hears now and then how many records were read: insert sizes and read lengths. With
/// `keptPath` the records of pairs that may belong to a gap, and of pairs without any place, are written there as BAM;
/// this needs a stream in which the reads of a pair follow each other, as mappers write it. With `strayPath` those
/// reads of all other pairs that share a word with the end of a contig beside a gap are written there as FASTQ: they
/// are placed elsewhere, but may show how a repeat goes on.
MappingSummary SummarizeMapping(const MappingInput& input, const Layout& layout, const std::string& keptPath,
                                const std::string& strayPath = "", const std::function<void(long)>& tell = {});

/// Reads the mapping and assigns; adds to `assigned`, indexed by gap id (0 is unused). Of one mapping no more reads are
/// held for a gap than twice the number that it may have in the end; which ones, depends on the reads alone.
void AssignMapping(const MappingInput& input, const Layout& layout, const MappingSummary& summary,
                   std::vector<std::vector<AssignedRead>>& assigned, const std::function<void(long)>& tell = {});

/// Writes the pairs of such a kept BAM file as two FASTQ files, in their order and as they were read.
void WriteKeptPairs(const std::string& keptPath, const std::string& path1, const std::string& path2);

}  // namespace lintara::kit
