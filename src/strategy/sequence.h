// The small tools that all gap strategies share: screening of reads, case conversion, edge slices, and the stringing
// together of contigs. They hold the program's case convention: an edge slice is upper case (ToUp), a read is taken as
// the gap file has it or dropped (ScreenReads), and filled text in a scaffold is lower case with upper-case N (ToLow).
#pragma once

#include <map>
#include <string>

#include "store/gap.h"
#include "strategy/fillgap.h"

namespace lintara {

/// Number of upper-case N.
int n_num(const std::string& seq);

/// 1 if each character of the read is a base of either case, else 0; an empty read passes.
int ScreenReads(const std::string& Gapread);

/// Sorts the gap's reads by ascending position, with `reads` in step. The sort is not stable, and the order that it
/// leaves among reads of one position decides what the blocks of a big gap look like.
void SortReads(Gap& gap);

/// Puts a sequence in upper case, in place. Whatever is no base, N included, becomes A.
void ToUp(std::string& read);

/// The sequence in lower case; whatever is no base becomes N.
std::string ToLow(const std::string& seq);

/// Length of the overlap of the end of `sequence1` with the start of `sequence2`, if one trial length stands out by its
/// share of equal columns.
///
/// @param distance  start of `sequence2` minus end of `sequence1` as their positions say, in bases; negative
/// @return bases that are shared; -1 when no overlap is clear
int GetOverlapLen(const std::string& sequence1, const std::string& sequence2, int distance);

/// Appends the contigs of a big gap in order, each at its place: N fill a distance, and one N marks a collision that is
/// no overlap.
///
/// @param contigSeqInGap  in/out: the text so far; its first base stands at 0 on the gap's axis
/// @param contigsInfo     `contigSum` entries
void GetContigSeqInGap(std::string& contigSeqInGap, ContigInfo*& contigsInfo, int contigSum);

/// Cuts the two edge slices on either side of a gap, of equal length and in upper case.
///
/// @param tmp1, tmp2       out: end of `contig1`, start of `contig2`
/// @param contig1, contig2 before and after contig
/// @param tmplen           longest slice in bases; the slices are as long as the shorter contig if that is less
void set_tmp_read(std::string& tmp1, std::string& tmp2, const std::string& contig1, const std::string& contig2,
                  int tmplen);

/// The text of a scaffold: its contigs as they are, with the lower-case text of each gap between them.
///
/// @param gap_id_seq  gap index to text; a missing entry is created, empty
std::string get_scaffold_seq(std::map<int, std::string>& gap_id_seq, const Scaf& scaffold);

}  // namespace lintara
