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

/// Reads the mapping once: insert sizes and read lengths. With `keptPath` the records of pairs that may belong to a gap
/// are written there as BAM; this needs a stream in which the reads of a pair follow each other, as mappers write it.
MappingSummary SummarizeMapping(const MappingInput& input, const Layout& layout, const std::string& keptPath);

/// Reads the mapping and assigns; adds to `assigned`, indexed by gap id (0 is unused).
void AssignMapping(const MappingInput& input, const Layout& layout, const MappingSummary& summary,
                   std::vector<std::vector<AssignedRead>>& assigned);

}  // namespace lintara::kit
