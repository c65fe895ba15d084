// The long-step walks: each step goes as far as the other candidates agree with. They run on a block with both edges;
// read 0 is the before edge, read num - 1 the after edge. A walk deals with three troubles of its own: a read that it
// meets twice (a repeat), a dead end, and a step that the selector wants replaced.
//
// Cells that a walk cuts to 0 stay barred for all walks behind it, and positions that forward() rewrites stay as well.
// A path that ends in the far edge is complete; one that holds only its first read is no walk.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// Walks from read pos to the right and appends the path, pos included, to starts.
///
/// @param reads   the block; the first step sets the position of its read from the overlap with the before edge
/// @param matrix  cells of steps that were taken back are cut to 0
/// @param num     number of reads of the block
/// @param type    not used
/// @param cycled  out: the walk met a read of its own path, that is, it ran into a repeat
/// @param ER      out: set when the very first step found no candidate; otherwise left alone
/// @return noreadbreak: the walk stopped because reads ran out, not because the selector refused to go on
bool forward(std::vector<Read>& reads, std::vector<int>& starts, std::uint8_t**& matrix, std::uint16_t num, int pos,
             int type, bool& cycled, bool& ER, int threadId);

/// The twin to the left; the path runs right to left and is appended to ends.
bool reward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, std::uint16_t num, int pos,
            int type, bool& ER, int threadId);

/// Goes on with a walk to the left that ran into what the forward walk had built.
///
/// @param ends      the path so far, right to left, without pos
/// @param pos       the read to go on from
/// @param drop_seq  bases that the walk must not run through
/// @param cycled    only handed on
void reward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, std::uint16_t num, int pos,
            int type, const std::string& drop_seq, bool cycled, int threadId);

}  // namespace lintara
