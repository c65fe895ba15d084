// From one block of reads to its sequence. assemble_block() is the entry that every gap strategy uses: it builds the
// overlap matrix, writes the rows of the edges into it, and solve_block_matrix() then chooses by the block's type what
// to walk and how to finish.
//
// A block is a vector of reads with its edges in their places: for type 1 and 3 reads[0] is the before edge, for type 2
// and 3 reads[num - 1] is the after edge; type 0 has none. matrix[a][b] non-zero means that read a stands left of read
// b and that they overlap in that many bases, kept in 8 bits. An "N" at the front or the end of a piece tells the
// caller that the piece does not connect to its edge.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Assembles one block.
///
/// @param reads       the block; a read that covers an edge is cut to the part that lies in the gap
/// @param method      exact-search method of the overlaps, see string_match()
/// @param type        in/out, 0 to 3; -1 on return when a walk between both edges went wrong
/// @param tagInfo     tag table of the block, handed on to the solver for both edges
/// @param realgaplen  in/out: negative on return when the edges overlap by that many bases
/// @return the block's sequence without the edges; empty when there is none
std::string assemble_block(std::vector<Read>& reads, int method, int& type, TagInfo*& tagInfo, int& realgaplen,
                           int threadId);

/// The read with the most links in either direction; the first of equals, read 0 when there is no link at all.
std::uint16_t GetMax(std::uint8_t**& matrix, std::uint16_t num);

/// Walks a block's matrix and turns the walk into sequence.
///
/// @param start, end  one entry a read: for a read that reached past an edge, the bases of the uncut read up to the end
///                    of its overlap with that edge (before and after); otherwise 0
/// @param type        as above; any value outside 0 to 3 gives an empty sequence
/// @return as assemble_block()
std::string solve_block_matrix(std::uint8_t**& matrix, std::vector<Read>& reads, int& type, int*& start, int*& end,
                               TagInfo*& tagInfo, int& realgaplen, int threadId);

}  // namespace lintara
