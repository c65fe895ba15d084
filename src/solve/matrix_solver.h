// Solves a block that has both edges by long steps: a walk from each edge, and what it takes to bring the two together.
//
// Read 0 is the before edge, read num - 1 the after edge, and the result is the sequence between them. A walk that
// reaches the far edge gives it at once; otherwise the two halves go to ExpandConnect(). Where the long steps give too
// little, solve_matrix3() takes over. Cells that a walk bars stay barred for the walks behind it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// The sequence between the two edges of a block.
///
/// @param matrix      overlap matrix of the block, num rows; cells are set to 0 on the way
/// @param reads       the block; positions may be rewritten by the walks
/// @param start, end  see solve_block_matrix()
/// @param type        out: -1 when an edge had no reads, otherwise left alone
/// @param realgaplen  out: minus the number of bases by which the edges overlap, otherwise left alone
/// @return the gap's text; gap_length times N when nothing could be assembled; for overlapping edges N or empty
std::string solve_matrix(std::uint8_t**& matrix, std::vector<Read>& reads, int*& start, int*& end, int& type,
                         TagInfo*& tagInfo, int& realgaplen, int threadId);

}  // namespace lintara
