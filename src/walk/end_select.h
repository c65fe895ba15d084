// The choice of the next read of a walk when more than one candidate is left: get_last for a walk to the right,
// get_first for a walk to the left.
//
// Both climb a ladder of ever harder measures. It starts from the read that reaches furthest and asks whether the other
// candidates agree with it; on disagreement it thins the candidates, drops the pick, or changes from the longest step
// to the shortest, until a read is accepted or the walk has to stop. Reads are named by their index into reads and
// matrix; -1 is the one "no read" value, and matrix[a][b] is the overlap in bases of read a with read b on its right.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// The read that stands right of start. Writes SHORTOVERLAP[threadId] and the log of the thread.
///
/// @param start       the read the walk stands on; 0 is the before edge and has measures of its own
/// @param accept      the candidates in rising read number, thinned in place; each overlaps start on its right
/// @param reads       the block's reads, none shorter than a seed of the overlap finders; the last is the after edge
/// @param matrix      the block's overlaps; with start 0 the cells of candidates at the far edge are cut to 0
/// @param jum         the walk's step mode. 1: fewer steps are gone than the gap should take; 0: as many or more, so
///                    that the far edge should be near; 2 is written here to tell that a largest-overlap step was tried
/// @param changenode  true: the walk's last step is to be replaced, start must be reached by another route
/// @param clean       set to false when the candidates were compared base by base; left alone otherwise
/// @param threadId    whose log and SHORTOVERLAP are written
/// @return the read number, or -1 when the walk has to stop
///
/// Ends the process with status -1 when it would have to look for a longer read than an empty one.
int get_last(int start, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
             bool& changenode, bool& clean, int threadId);

/// The read that stands left of end: the twin of get_last() for a walk from the after edge, which is the last read.
/// Arguments and result as there, mirrored; the matrix is not written.
int get_first(int end, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
              bool& changenode, bool& clean, int threadId);

/// The same for a walk to the left that is resumed after a failed join. SHORTOVERLAP is not touched and jum only read.
///
/// @param drop_seq  bases that the candidates must not repeat: those that overlap it leave accept; not empty unless
///                  accept stays below two entries
/// @param cycled    not used
int get_first(int end, std::vector<int>& accept, std::vector<Read>& reads, std::uint8_t**& matrix, int& jum,
              bool& changenode, const std::string& drop_seq, bool cycled, bool& clean, int threadId);

}  // namespace lintara
