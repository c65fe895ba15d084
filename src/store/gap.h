// The in-memory store: scaffolds, their contigs and gaps, and the reads of each gap.
//
// The gap's axis, on which all read positions stand: 0 is the first base of the gap, that is the base just behind the
// before contig, and gap_length is the first base of the after contig. A read that begins inside the before contig has
// a negative position. A before edge of length L is a Read at -L, an after edge a Read at gap_length. In the reads of
// a block with both edges, reads[0] is the before edge and reads[num - 1] the after edge.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace lintara {

using Len_t = std::uint32_t;

/// One gap of a scaffold, with the reads assigned to it. The arrays are owned by the scaffold, see scaffold_delete().
struct Gap {
    int id = -1;                   ///< gap id of the gap file; -1: the gap has no reads
    Len_t greadSum = 0;            ///< number of reads
    std::string* reads = nullptr;  ///< greadSum sequences in the order of the gap file; null without reads
    int* position = nullptr;       ///< estimated start of each read on the gap's axis; null without reads
    int gap_length = 0;            ///< estimated length as the gap file states it, bases; 0 without reads
    int before_contig_id = 0;      ///< index of the contig in front of the gap; 0 without reads, whichever gap it is
};

/// One scaffold: gapSum gaps between gapSum + 1 contigs; gap i lies between contig i and contig i + 1.
struct Scaf {
    Len_t gapSum = 0;
    Gap* gaps = nullptr;             ///< gapSum entries
    std::string* contigs = nullptr;  ///< gapSum + 1 sequences in scaffold order, case as in the contig file
    int* front_gap_lens = nullptr;   ///< gapSum + 1 lengths of the gap in front of each contig, as the contig file says
};

/// A read as the strategies and solvers hand it around.
struct Read {
    std::string seq;  ///< bases
    int pos;          ///< start on the gap's axis

    Read(std::string read_seq, int position) : seq(std::move(read_seq)), pos(position) {}
    bool operator<(const Read& other) const { return pos < other.pos; }
    bool operator==(const Read& other) const { return pos == other.pos && seq == other.seq; }
};

}  // namespace lintara
