// Consensus of a path that has a loose end: one that starts at the before edge, one that ends at the after edge, or one
// in the middle of a block that touches neither. Bases near a loose end are thinly covered, so the votes here ask for
// at least two reads a base; and where a walk stopped for want of reads only, a read that passes beyond the path may
// lengthen it.
#pragma once

#include <string>
#include <vector>

#include "consensus/column.h"
#include "store/gap.h"

namespace lintara {

/// Votes on a path that starts at the before edge. Without noreadbreak the sequence ends at the first base in doubt.
/// Neighbours in the order without an overlap end the process with status -1, "Error in order vector!" in the log.
///
/// @param seq          in: the result of get_gap_seq() with posit 0; out: the voted sequence without the edge, which
///                     can be shorter or longer
/// @param start        not used
/// @param noreadbreak  the walk ended because no reads were left: milder vote, and the tail may be extended
void Get_snp_before(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                    const int* start, bool noreadbreak, int threadId);

/// The twin for a path that ends at the after edge; the order runs from the loose end to the edge. Without a read to
/// extend the head the sequence begins behind the last base in doubt. The fatal message is "Error in order vector !".
///
/// @param end  not used
void Get_snp_after(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                   const int* end, bool noreadbreak, int threadId);

/// Votes on a path that touches no edge: seq is the result of get_gap_seq() with posit -1 and keeps its length.
void Get_snp_middle(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                    int threadId);

/// The strict vote near a loose end. A base needs two reads; the path's base wins a tie; one read for the path against
/// two for another base is N in the record. Arguments and record as in value_base(). The program does not call it: it
/// is the plain form, column by column, that the tests hold the functions above against.
///
/// @return the base to hold there, or N for a column in doubt
char Enlong_value_base(char seq_base, int posit, const ReadMap& read, int threadId);

/// The plain vote near a loose end: value_base() with the demand for two reads a base. The program does not call it, as
/// above.
char Enlong_value_base2(char seq_base, int posit, const ReadMap& read, int threadId);

/// The elements in reverse order, which turns the path of a walk from the right into an order.
std::vector<int> reverse_vector(const std::vector<int>& tmp);

/// Trims N at both ends of seq, in place, then removes inner N by keeping the larger part. A base at position 0 counts
/// as trimmed when another kind of base follows. The program does not call it.
///
/// @return seq as it now stands; empty without a base behind position 0
std::string Drop_NTail(std::string& seq);

}  // namespace lintara
