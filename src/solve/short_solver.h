// The fallback of solve_matrix() for a block with both edges: walks by short steps, assembly from the best-linked read
// in the middle, and a fill of its own for short gaps. It never goes back to solve_matrix().
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// The sequence between the two edges of a block. A path across the gap is taken as it is, whatever its length.
///
/// @param matrix, reads, start, end, tagInfo, realgaplen  as in solve_matrix()
/// @return the gap's text; gap_length times N when all fails
std::string solve_matrix3(std::uint8_t**& matrix, std::vector<Read>& reads, int*& start, int*& end, TagInfo*& tagInfo,
                          int& realgaplen, int threadId);

}  // namespace lintara
