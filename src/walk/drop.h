// The filters that thin out a candidate set by one rule each when a pick has failed.
//
// Reads, matrix, accept and the words start and end are those of walk/candidates.h. Each Drop function returns true
// when it removed anything from accept. changenode is taken for the sake of one call form and left alone by all of
// them; the matrix is written by the forward DropEdgeRead() only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// Removes the reads that reach the after edge, that is overlap read num - 1 by more than Min_overlap, and with them
/// their perfect partners: the linked reads that agree with one of them in every base of the overlap. When start is
/// the before edge, read 0, the removed reads also lose their cell in row 0, so that they do not come back.
///
/// @param num  number of reads of the block, at least 1
bool DropEdgeRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, int num,
                  bool& changenode);

/// The reward form: the reads that overlap the before edge, read 0. The matrix stays as it is.
bool DropEdgeRead(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                  bool& changenode);

/// The reward form against a sequence: the reads with an exact overlap() with drop_seq, and their perfect partners.
///
/// @param drop_seq  bases; an empty one ends the process with status -1 unless accept is empty, see overlap()
bool DropEdgeRead(const std::string& drop_seq, int end, std::vector<int>& accept, const std::vector<Read>& reads,
                  std::uint8_t**& matrix, bool& changenode);

/// The opposite rule: the reads without an overlap with drop_seq, and their perfect partners. The program does not call
/// it.
bool DropUnseqRead(const std::string& drop_seq, int end, std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, bool& changenode);

/// Removes the reads whose estimated position lies left of start, or more than ReadLen right of the place that their
/// overlap with start gives them.
bool DropPosRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// The reward form: right of end, or more than ReadLen left of the place that the overlap gives.
bool DropPosRead(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// Removes the reads that are longer than twice their overlap with start, whatever dropcut is.
///
/// @param dropcut  number of reads that the search for a cover ratio aims at; it bears on the reward form only
bool DropRatioRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                   int dropcut);

/// The reward form: looks for the ratio of length to overlap that at least dropcut reads but not all exceed, and
/// removes the reads above it.
bool DropRatioRead(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix,
                   int dropcut);

/// Removes the reads longer than ReadLen when more than two others are there.
bool DropLongRead(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// Removes the reads of at most ReadLen bases when more than two longer ones are there.
bool DropShortRead(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// Whether all candidates, three at least, overlap start by less than ReadLen/2. accept stays as it is.
bool AcceptShortOverCheck(int start, const std::vector<int>& accept, std::uint8_t**& matrix);

/// The same for the overlaps with end.
bool AcceptShortOverCheck(const std::vector<int>& accept, int end, std::uint8_t**& matrix);

/// The first candidate that is longer than the read now and holds all of it, or -1.
///
/// Ends the process with status -1 when the read now is empty ("get long error!" on the error stream), and when it has
/// one or two bases and is sought in another candidate, see string_match().
int GetLonger(int now, const std::vector<int>& accept, const std::vector<Read>& reads);

/// Debugging view on the error stream: the candidates one below the other, set in so that their overlaps with end
/// stand in the same columns, each with its read number. The program does not call it.
void ShowRewardBreak(const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, int end,
                     int threadId);

}  // namespace lintara
