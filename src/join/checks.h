// Small decisions that the join routines ask before they accept an overlap of two sequences: is it unique enough, does
// one read span both sequences, does a claimed negative gap hold up, and can a sequence be spliced onto an after edge.
// `reads` are always the reads of a block with both edges: the first one is the before edge, the last one the after
// edge. The tag table `tagInfo` has TAG entries (see repeat/tag_info.h); without a table (null) no tag recurs.
#pragma once

#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Whether the overlap `patt` is unique enough to be accepted. More than 100 bases always are; fewer than min_align
/// never; up to 12 bases may not occur twice in any read; all between may not look like a tandem repeat.
///
/// Ends the process through PattNum() when `patt` has 12 bases or fewer and a read is shorter still, or when a
/// min_align below 3 lets a `patt` of 1 or 2 bases through.
bool CheckOver(const std::string& patt, TagInfo*& tagInfo, const std::vector<Read>& reads);

/// Whether `patt` occurs at most once in every read, edges included. Ends the process like CheckOver().
bool ShortOverCheck(const std::string& patt, const std::vector<Read>& reads);

/// Whether `seq` looks like a piece of a tandem repeat: nearly all its 6-base tags recur in the gap's reads at one
/// common distance that is longer than `seq`. What counts as nearly all allows for one changed base.
bool IsRepeatSeq(const std::string& seq, TagInfo*& tagInfo);

/// Looks for the first inner read that overlaps the end of `seq` and the start of `edge`, and lets `seq` meet `edge`
/// by it: `seq` grows at its end by the bases of the read between the two, or loses there what the two share.
///
/// Logs the read and the bases gained or lost. Ends the process when `seq` is shorter than a seed, see
/// forward_overlap().
/// @return false: no read spans both, and `seq` is as it was
bool BeforeCrossCheck(std::string& seq, const std::vector<Read>& reads, const std::string& edge, int threadId);

/// The same for a `seq` that grows back towards `edge`: it gains or loses bases at its front, and becomes empty when
/// the read shows that it lies wholly inside the overlap. Ends the process when `edge` is shorter than a seed.
///
/// @param limit  longest read that is looked at, bases
bool AfterCrossCheck(const std::string& edge, const std::vector<Read>& reads, std::string& seq, int limit,
                     int threadId);

/// Whether the end of `seq1` and the start of `seq2` support an overlap of about `over` bases (above 90 % of it; a
/// run that both ends show counts twice). Never for an `over` below min_align. Ends the process through string_match()
/// when one of the two has min_align bases or fewer and the other is shorter still.
bool pass_minus_check(const std::string& seq1, const std::string& seq2, int over);

/// Adds to `match` the length of the run of equal bases at one end of an overlap, and writes the sum as a line of
/// trace to the error stream.
///
/// @param pos   flag false: place in seq2 of the last base of seq1, from which the run goes left;
///              flag true: place in seq1 of the first base of seq2, from which the run goes right
void get_match_len(const std::string& seq1, const std::string& seq2, int pos, int& match, bool flag);

/// The N that stand for what stays open of a gap of `gapsize` bases of which `seqsize` are filled; always one at least.
std::string getN(int gapsize, int seqsize);

/// `len` plus the number of equal columns of `seq` and `after` behind `len` bases that are known to be equal from
/// `pos1` and `pos2` on, up to the nearer end of the two. Unequal columns are passed over.
int GetForwardMatchLen(const std::string& seq, int pos1, const std::string& after, int pos2, int len);

/// Splices `seq` onto `after` at the one place in `seq` where the head of `after` stands: the anchor begins at
/// ReadLen / 5 bases and grows up to ReadLen while it occurs more than once, and more than ReadLen columns must be
/// equal from it on. On success `seq` ends in all of `after`. Ends the process through PattNum() when the anchor is
/// longer than `seq`.
/// @return false: `seq` is as it was
bool CutBefore(std::string& seq, const std::string& after);

/// The largest of the three numbers and their sum, whatever the name says. The program does not call it.
int min(int num1, int num2, int num3);

}  // namespace lintara
