// What happens to one gap: the three strategies, one for each size class, and the block functions of the big one. Each
// strategy takes the gap with its reads and the two flanking contigs and hands back the gap's text; none of them fails
// but in check_middle_overlap().
// A gap that cannot be worked on comes back as gap_length times N, an empty text means that the contigs join directly.
//
// Positions stand on the gap's axis (see store/gap.h). contig1 is the before contig, contig2 the after contig.
#pragma once

#include <string>

#include "store/gap.h"

namespace lintara {

/// A contig inside a big gap: the text that one block of reads was assembled to.
struct ContigInfo {
    int startPos;           ///< where it begins, on the gap's axis; unset at construction
    std::string contigSeq;  ///< its bases, N where the block stays open

    // An explicit constructor, so that startPos stays unset by value initialisation too.
    ContigInfo() {}
};

/// Treats a gap that is no longer than a read: looks for overlapping edges, takes the size from the reads that span the
/// gap, and hands the gap to MiddleGapAssemble() when they cannot be trusted.
///
/// @param gap         1000 reads a base of gap_length at most
/// @param contig1     loses the bases by which the edges overlap; cleared when it lies inside contig2
/// @param contig2     cleared when it lies inside contig1
/// @param realgaplen  in/out: set to minus the overlap of the edges when there is one, otherwise left alone or the
///                    middle strategy's
/// @return the gap's text; empty when the edges touch or overlap
std::string SmallGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int& realgaplen, int threadId);

/// Treats a gap of up to some 1500 bases as one block, with both contig edges placed in it as reads.
///
/// @param gap         120 reads a base of gap_length and 2000 in all at most
/// @param contig1     loses the bases by which the edges overlap
/// @param contig2     is not changed
/// @param realgaplen  in/out: negative on return when the edges overlap by that many bases
/// @return the gap's text; empty for overlapping edges
std::string MiddleGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int& realgaplen, int threadId);

/// Treats a gap of 1500 bases or more: breaks its reads into blocks wherever two neighbours do not touch, assembles
/// each block by itself and strings the blocks together with N between them.
///
/// @param gap  50 reads a base of gap_length and 1000 in all at most; its reads are put in order of position
/// @param contig1, contig2  are not changed
/// @return the gap's text; empty when there is nothing
std::string BigGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int threadId);

/// Assembles all reads of the gap as one block that leans on the before contig.
///
/// @param contig1  the before contig
/// @return the block's text; empty with a contig below ContigLen or fewer than three reads in the block, edge included
std::string solve_block_before(Gap& gap, std::string& contig1, int threadId);

/// The same for a block that leans on the after contig.
///
/// @param contig1  the after contig
std::string solve_block_after(Gap& gap, std::string& contig1, int threadId);

/// The same for a block that reaches neither edge.
std::string solve_block_middle(Gap& gap, int threadId);

/// Fits a block that came out longer than its gap between the two edges.
///
/// @param seq1  tail of the before contig
/// @param seq   the block
/// @param seq2  head of the after contig; shorter than `len` ends the process with status -1, without a message
/// @param len   gap length in bases
std::string check_middle_overlap(std::string& seq1, std::string& seq, std::string& seq2, int len);

/// Corrects the length of a big gap's text: a text more than a tenth too long loses bases out of a run of N, one more
/// than a tenth too short gets N put in front of its last N. A text without a suitable N stays as it is.
///
/// @param gaplen  the expected length in bases
std::string GapLenCheck(std::string& seq, int gaplen, int threadId);

}  // namespace lintara
