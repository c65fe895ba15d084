// The candidates for the next step of a walk: how one is picked, how far the others agree with it, and how a candidate
// set is cleaned before any pick.
//
// A walk goes forward (left to right, from the read start; the read picked next is called last) or reward (right to
// left, from the read end; the read picked next is called first). Reads are named by their index into reads and
// matrix, and -1 is the one "no read" value: test for it before indexing. matrix[a][b] is the overlap in bases of read
// a with read b on its right, 0 for none; read 0 is the before edge and the last read the after edge.
//
// Two vectors are shared by all walks. accept holds the candidates in rising read number; every step only removes
// entries, and the order matters, since the picks keep the first of equals. starts (left to right) and ends (right to
// left) are paths: read numbers in the order of walking, the seed first. A path holds no positions; the offsets between
// neighbours come from the matrix.
#pragma once

#include <cstdint>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// The candidate that reaches furthest to the right of start: the smallest overlap above Min_overlap, the first of
/// equals. An overlap of exactly Min_overlap is never picked. -1: none.
int min_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The same among the candidates of at most limit bases.
int min_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix, const std::vector<Read>& reads,
                int limit);

/// The candidate that reaches furthest to the left of end, otherwise as min_forward().
int min_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The same among the candidates of at most limit bases.
int min_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix, const std::vector<Read>& reads,
               int limit);

/// The candidate of the shortest step to the right of start: the largest overlap, with no floor, the first of equals.
/// -1: no candidate overlaps.
int max_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The candidate of the shortest step to the left of end, otherwise as max_forward().
int max_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix);

// The program does not call the four checks below; check_max_forward() and check_max_reward() serve the plain selectors
// of walk/max_walks.h. The walks judge a pick by walk/position_check.h.

/// Whether enough of the other candidates stand between start and last.
///
/// Enough are: a share of at least ECUTOFF and at least 7; all but one at most, of more than 2; or 2 of 2.
///
/// @return false also when start or last is negative or no other candidate is left
bool check_min_forward(int start, int last, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The same for the candidates between first and end.
bool check_min_reward(int end, int first, const std::vector<int>& accept, std::uint8_t**& matrix);

/// Whether enough of the other candidates stand right of last and overlap it no less than start. Enough is meant as in
/// check_min_forward(), but measured against all candidates, last included.
///
/// @return false also when start or last is -1
bool check_max_forward(int start, int last, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The same for candidates left of first, held against their overlap with end.
bool check_max_reward(int end, int first, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The furthest pick right of start, from reads of at most 100 bases first, whatever ReadLen says; from all reads when
/// there is none, or when start is the before edge.
///
/// @param last  out: the pick; the only candidate, whatever its overlap, when there is one; -1 when there is none
/// @return true when there was a choice to make and last is a read; false: last is all that can be said
bool creat_last(int start, const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                int& last);

/// The same left of end; the after edge takes reads of any length at once.
bool creat_first(int end, const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                 int& first);

/// As creat_last() with the shortest step, max_forward(), for the pick.
bool creat_max_last(int start, const std::vector<int>& accept, std::uint8_t**& matrix, int& last);

/// As creat_first() with the shortest step, max_reward(), for the pick; reads are not looked at.
bool creat_max_first(int end, const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                     int& first);

/// Removes the first entry equal to last, if there is one.
void drop(int last, std::vector<int>& accept);

/// Whether value is in accept.
bool Find(int value, const std::vector<int>& accept);

/// Whether start is in the path starts.
bool Vecfind(const std::vector<int>& starts, int start);

/// Removes the candidates that overlap no other candidate in either direction, however short the overlap. Stops as soon
/// as two are left. Logs the size before and after.
///
/// @param likely  the candidate that will be picked if it stays, or -1; changes nothing but the work: its overlaps are
///                asked for in any case, and with them the links of most others are known
void clean_accept(std::vector<int>& accept, std::uint8_t**& matrix, int threadId, int likely = -1);

/// "Full match" clean: the same with only those overlaps counted in which the two reads agree in every base. An empty
/// accept is left without a word in the log.
///
/// @param clean  out: set to false, unless accept was empty
/// @return true when anything was removed
bool clean_accept(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, bool& clean,
                  int threadId);

/// Removes the candidates whose estimated position lies more than ReadLen/3 left of start, or more than ReadLen/2 right
/// of the place that their overlap with start gives them. Logs the size left.
void PosCleanAccept(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                    int threadId);

/// The reward form: more than ReadLen/3 right of end, or more than ReadLen/2 left of the place that the overlap gives.
void PosCleanAccept(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix,
                    int threadId);

}  // namespace lintara
