// The short-step walks: each step goes to the candidate with the largest overlap. They serve where longer steps are
// unsafe or have failed: on blocks with one edge or none, and when the walks of both edges were too short.
//
// Reads, matrix, accept and paths are those of walk/candidates.h. Here every overlap makes a candidate, however short.
// The selectors thin accept in place, and when the far edge hides all other reads from the before edge, get_last_max()
// cuts cells of row 0 (see the forward DropEdgeRead()).
#pragma once

#include <cstdint>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// Walks to the right from read pos and appends the path, pos included, to starts. Logs its way.
///
/// The walk ends at a read that it has met, where no candidate can be chosen, and at the second of two single
/// candidates in a row.
///
/// @param starts  the path; reads that it already holds count as met
/// @param num     number of reads of the block
/// @param type    not used
void forwardmax(std::vector<int>& starts, const std::vector<Read>& reads, std::uint8_t**& matrix, std::uint16_t num,
                int pos, int type, int threadId);

/// The same to the left; the path runs right to left and is appended to ends.
void rewardmax(std::vector<int>& ends, const std::vector<Read>& reads, std::uint8_t**& matrix, std::uint16_t num,
               int pos, int type, int threadId);

/// The next read right of start: the shortest step with which nearly all other candidates agree. Disagreement is met by
/// dropping the pick or, at most twice, by cleaning the candidates.
///
/// @param accept  the candidates, thinned in place
/// @return the read number; -1 when there are fewer than two candidates or none is agreed on
int get_last_max(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                 int threadId);

/// The next read left of end; a single candidate is taken here.
int get_first_max(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                  int threadId);

/// The plain selector: the shortest step right of start that check_max_forward() supports, or -1. Candidates that fail
/// are dropped from accept. The program does not call it.
int get_last_max(int start, std::vector<int>& accept, std::uint8_t**& matrix);

/// The twin with check_max_reward(); the last candidate left after a drop is taken without a check. The program does
/// not call it.
int get_first_max(int end, std::vector<int>& accept, std::uint8_t**& matrix);

}  // namespace lintara
