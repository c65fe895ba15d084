// The pairs of reads in a block that share a k-mer, without a table of read lists.
//
// Replaces, for the block driver, the road over fill_hash(), hash2matrix() and free_hash(), which writes every pair
// once for each k-mer that it shares. Here each distinct k-mer gets a number when it is first met, so that the k-mers
// of a stretch that is new to the block are numbered in a row; a later read that runs along the stretch is one run of
// numbers, found by one look into the table and a comparison of keys. Two reads share a k-mer exactly when two of
// their runs meet, which one sweep over all runs finds. The keys are those of fill_hash_set31(), bit for bit.
#pragma once

#include <cstdint>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// A symmetric relation between the reads of a block: one bit for each ordered pair.
struct PairMarks {
    int num = 0;                      ///< reads of the block; 0: no relation was made
    int words = 0;                    ///< 64-bit words a row
    std::vector<std::uint64_t> bits;  ///< num rows; bit j % 64 of word j / 64 in row i: reads i and j are a pair

    std::uint64_t* Row(int i) { return bits.data() + static_cast<std::size_t>(i) * words; }
    const std::uint64_t* Row(int i) const { return bits.data() + static_cast<std::size_t>(i) * words; }
};

/// Marks each pair of different reads that share a k-mer of Kmer bases.
///
/// @param marks  out: the relation, both ways round, without pairs of a read with itself
/// @return false, with marks left undefined, when the block is beyond what this road reproduces: above 65535 reads,
///         a Kmer below 1, or a k-mer that occurs more often than a 16-bit count tells
bool MarkSharedKmers(const std::vector<Read>& reads, PairMarks& marks);

}  // namespace lintara
