// Turns an order of reads into sequence: get_gap_seq() lays the reads end to end, and Get_snp() votes on each column of
// a path that runs from edge to edge. An order is a path through the overlap matrix that reads left to right:
// neighbours in it have a non-zero cell. reads[0] is the before edge and reads[num - 1] the after edge of a block that
// has them. Each voted column becomes one record in the snp file, whether the base changes or not.
#pragma once

#include <string>
#include <vector>

#include "consensus/column.h"
#include "store/gap.h"

namespace lintara {

/// The raw sequence of an order: the bases of the first read wherever reads overlap, without the anchoring edges.
///
/// @param matrix  num rows of num overlaps in bases; the cells along the order are trusted
/// @param order   read numbers, left to right
/// @param posit   the edges that the order is anchored on: 0 before (starts with read 0), 1 after (ends with read
///                num - 1), 2 both, -1 neither
/// @param end     num entries; a positive one marks a read that passes beyond the after edge. When the first read of
///                the order does so and touches the after edge, the rest of the order is left out
/// @return with posit 2: empty when the edges meet with nothing between; a run of i 'N' when the edges overlap by i
///         bases, which the caller takes for a gap of -i
std::string get_gap_seq(Overlaps matrix, const std::vector<Read>& reads, const std::vector<int>& order, int posit,
                        const int* end, int threadId);

/// Places all reads that touch a path between both edges and votes on its columns.
///
/// @param seq    in: the result of get_gap_seq() with posit 2; out: the same stretch after the vote, as long as before
/// @param order  neighbours without an overlap end the process with status -1, "Error in order vector!" in the log
/// @param start, end  not used
void Get_snp(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
             const int* start, const int* end, int threadId);

/// The vote on a path between both edges. An other base than the path's needs 70 percent of all covering reads, those
/// with N included. Writes the column's record. The program does not call it: it is the plain form, column by column,
/// that the tests hold Get_snp() against.
///
/// @param seq_base  base of the path
/// @param posit     column of the full consensus, 0-based, before edge included
/// @return the base to hold there
char value_base(char seq_base, int posit, const ReadMap& read, int threadId);

/// Whether the last read of the order agrees with the finished consensus in more than 90 percent of its bases.
/// The program does not call it: a path with a loose end asks consensus::ReadAgrees() itself.
///
/// @param seq  full consensus, on the axis of the offsets in the read map
bool LastOrderCheck(const std::string& seq, const ReadMap& read, const std::vector<Read>& reads,
                    const std::vector<int>& order);

/// The same for the first read of the order. The program does not call it.
bool FirstOrderCheck(const std::string& seq, const ReadMap& read, const std::vector<Read>& reads,
                     const std::vector<int>& order);

}  // namespace lintara
