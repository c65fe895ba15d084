// The seeded matrix of a block by the table of read lists, for tests that hold faster ways against it.
#pragma once

#include <cstdint>
#include <vector>

#include "kmer/hashSet.h"
#include "kmer/overlap_matrix.h"
#include "store/gap.h"

namespace lintara::testing {

/// To be freed by free_matrix().
inline std::uint8_t** PlainSeeds(const std::vector<Read>& reads) {
    HashSet* hash = init_hashset(1000, 0.75F);
    fill_hash(hash, reads);
    std::uint8_t** matrix = hash2matrix(hash, static_cast<std::uint16_t>(reads.size()));
    free_hash(hash);
    return matrix;
}

}  // namespace lintara::testing
