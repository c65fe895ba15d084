// How the end of one sequence meets the start of another one when no read settles it.
//
// align_connect() slides the two over each other without gaps and asks for a clear winner among the overlap lengths;
// it is what the joins work with. local_aligning() is a Smith-Waterman alignment with traceback, used through
// overlap_ctg_edge() for two contig edges that may overlap with indels.
#pragma once

#include <string>

namespace lintara {

/// The end of read_a against the start of read_b, for all overlap lengths from Min to the size of the longer one.
///
/// Each length is scored as its percentage of equal columns; a column with an N counts against it. When read_a is not
/// the longer one, the N test on read_b looks at the column counted from the left end instead of the compared one;
/// this is relied on.
///
/// @param Min           shortest overlap, bases; may exceed the longer sequence by at most one (else the process ends
///                      with status -1 and no message)
/// @param match_ratio   lowest share of equal columns of a winner, 0..1
/// @return an index: the overlap length is Min plus the result. Above 0: a clear winner. 0: either the overlap of
///         Min bases won or nothing overlaps at all, and the caller's own test decides which of the two it takes it
///         for. Negative: ambiguous, minus the index of the longer one of the two best. -1 with a line on the error
///         stream when a sequence is empty.
int align_connect(const std::string& read_a, const std::string& read_b, int Min, double match_ratio);

/// The same with match_ratio 0.9.
int align_connect(const std::string& read_a, const std::string& read_b, int Min);

/// The same with match_ratio 0.9 for the overlap lengths from Min to Max only; 0 when Max is below Min.
int align_connect(const std::string& read_a, const std::string& read_b, int Min, int Max);

/// The clear winner among scores. The program does not call it: align_connect() picks by the same rule, and asks first
/// for the length that is likely to win.
///
/// @param value         size scores, percent; entries of 0 are skipped
/// @param match_ratio   lowest winning score, as a share of 100
/// @param dif           the second best must stay below this share of the best; a score of 100 wins against any
///                      lower one, and of several 100s the longer one of the last two wins from index Min_overlap on
/// @return index of the winner; minus the larger index of the two best when none is clear; 0 when all are 0
int get_max(double*& value, int size, double match_ratio, double dif);

/// Local alignment of two sequences: match 3, mismatch -5, gap -5. Letters other than ACGT match each other.
///
/// Only tables of 10 to 4000000 cells, (|seq_i| + 1) * (|seq_j| + 1), are worked out; for others both starts are set
/// to 0 and the rest is left alone.
/// @param align_i, align_j          out: the aligned stretches, with - for a gap; of equal length
/// @param max_score                 out: score of the alignment; 0 when no base pairs up (starts are left alone then)
/// @param align_i_start, ..._end    out: 1-based places of the first and last aligned base in seq_i and seq_j
void local_aligning(const std::string& seq_i, const std::string& seq_j, std::string& align_i, std::string& align_j,
                    int& max_score, int& align_i_start, int& align_j_start, int& align_i_end, int& align_j_end);

/// Score and direction of one cell. A tie prefers the diagonal, then the gap in seq_i; a negative score becomes 0.
/// @param direction out: 0 diagonal, 1 from the left (gap in seq_i), 2 from above (gap in seq_j)
void get_max_score(int sub_score, int gapi_score, int gapj_score, int& max_score, int& direction);

/// The best cell of a score table; of equal ones that with the largest pos_i, then the largest pos_j. The program does
/// not call it: it is the plain form that the tests hold ScoreDiagonals::Best() against.
/// @param DPscore       row-major scores, j_size entries a row
/// @param pos_i, pos_j  in: sizes of the two sequences; out: the cell
void locate_max_score(const int* DPscore, int& pos_i, int& pos_j, int j_size, int& final_score);

/// Follows the directions back from a cell to the start of its alignment, appending both gapped strings in reverse.
/// Does nothing on a cell of score 0. The program does not call it: local_aligning() follows a table of diagonals back
/// by the same steps.
/// @param align_i_start, align_j_start out: 1-based cell at which the alignment starts
void trace_back(const int* DPscore, const int* DPdirect, const std::string& seq_i, const std::string& seq_j, int pos_i,
                int pos_j, int j_size, std::string& align_i, std::string& align_j, int& align_i_start,
                int& align_j_start);

/// Whether the end of ctg1 overlaps the start of ctg2, indels allowed.
///
/// @param over1, over2  out: bases of ctg1 in the overlap, and where ctg2's part of it ends; without an overlap only
///                      over2 is set
/// @param containing    out, set only when ctg2 doesn't start inside ctg1: 1 if the alignment covers 0.7 of over2,
///                      else 0
/// @return true with at least 0.7 of equal columns over at least 0.7 of over1
bool overlap_ctg_edge(const std::string& ctg1, const std::string& ctg2, int& over1, int& over2, int& containing);

/// The same question answered by seeds of 7 bases. The program does not call it. False when either one is below 10
/// bases.
bool overlap_ctg_edge2(const std::string& ctg1, const std::string& ctg2, int method, int& over1, int& over2);

}  // namespace lintara
