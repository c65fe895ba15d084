// All overlaps of a block's reads with each other and with its edges, with the seeds looked up in tables.
//
// Replaces, for the block driver, overlap_matrix() and the edge finders, which search the text of one read for each
// seed of the other. Here each read in turn is laid into a table of its words, and the seeds of all its partners are
// looked up in it. Order of seeds and stages, and so every result, is that of overlap(); what the tables do not cover
// (all seeds found and none accepted, as in a repeat) goes to overlap() itself.
#pragma once

#include <cstdint>
#include <vector>

#include "kmer/seed_runs.h"
#include "store/gap.h"

namespace lintara {

/// overlap() of each inner read of a block with the block's edges. Empty for an edge that the block lacks.
struct EdgeOverlaps {
    std::vector<int> with_before;  ///< overlap(before edge, read), by read
    std::vector<int> with_after;   ///< overlap(read, after edge), by read
};

/// Settles the cells of all pairs of inner reads, as overlap_matrix() does, and measures the overlaps with the edges.
/// The cells of the edge reads are left alone, and nothing is logged.
///
/// @param matrix  out: the cells of the pairs in marks
/// @param marks   the pairs that are seeded, edges included
/// @param type    kind of the block: 1 has the before edge as read 0, 2 the after edge as the last read, 3 both
/// @param edges   out; null when the edges are settled already
/// @return false, with nothing done, when settings or lengths are beyond the tables, or edges are asked for and a read
///         or the after edge may have to be cut at an edge before it is compared, being longer
bool OverlapBlock(std::uint8_t** matrix, const std::vector<Read>& reads, const PairMarks& marks, int method, int type,
                  EdgeOverlaps* edges);

}  // namespace lintara
