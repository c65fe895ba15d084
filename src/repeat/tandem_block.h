// Fills a gap whose reads are one tandem repeat with a single unit. In a repeat every read overlaps every other one at
// many shifts, so nothing is walked here: both contig edges are prolonged by the reads that reach past the repeat into
// them, and only an overlap that is more than repeat joins the two sides. Otherwise the flanks stand in the result with
// N between them, and the copies that were not placed are handed back.
//
// `units` is everywhere the set of all rotations of the unit: a word of the unit's length that is in it is a repeat
// word, whatever its phase. `last_unit` is the phase with which the repeat stops at the end of the before edge. All
// lengths and places are in bases, places 0-based.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Sequence of a tandem repeat gap between two edges.
///
/// A gap whose edges show less than Min_overlap bases of the repeat and which is shorter than two reads goes to
/// assemble_block().
///
/// @param reads        the block: before edge first, after edge last; reads are cut where they run past an edge
/// @param tagInfo      tag table of the block, asked whether an overlap is unique
/// @param repeat_unit  one copy of the unit in any phase; an empty unit makes no word a repeat word
/// @param TRNum        in: estimated copies; out: copies that were not placed, may be negative. Left alone when the two
///                     sides meet or the ordinary road is taken
/// @param gap_len      estimated size of the gap
/// @param freq         tag frequencies; not read
/// @param type         as in assemble_block(), which alone changes it
/// @param realgaplen   as in assemble_block(), which alone sets it: edges that overlap are logged here and give an
///                     empty result
/// @return the gap's sequence without the edges; holds an N whenever the two sides did not meet here
std::string solve_TR_block(std::vector<Read>& reads, TagInfo*& tagInfo, std::string& repeat_unit, int& TRNum,
                           int gap_len, int*& freq, int& type, int& realgaplen, int threadId);

/// Measures the repeat run at the end of a sequence.
///
/// @param last_num   out: copies of last_unit in the run, in all places and not only unit by unit
/// @param last_unit  out: the last unitlen bases; left alone when there is no run
/// @return length of the run; -1 when the sequence does not end in a repeat word. The word at place 0 is not looked at
int tail_check(std::string& seq, std::set<std::string>& units, int unitlen, int& last_num, std::string& last_unit);

/// Counts the copies of last_unit in the repeat run at the start of a sequence.
///
/// @param last_num   out: the copies; left alone when the sequence is shorter than a unit
/// @return end of the last copy of last_unit in the run; -1 without one. The last word of the sequence is not looked at
int tail_check(std::set<std::string>& units, std::string& seq, int unitlen, int& last_num, std::string& last_unit);

/// How far the repeat reaches into what was grown behind the before edge.
///
/// @param before       the edge and its expansion
/// @param expand_num1  in/out: grows by the copies of last_unit, from the first word that reaches past the edge on
/// @param limit        length of the edge
/// @return bases from the first repeat word that reaches past the edge to the end of `before`; 0 without one
int tail_check(std::string& before, std::set<std::string>& units, int unit_len, int& expand_num1, std::string last_unit,
               int limit);

/// How far the repeat reaches into what was grown in front of the after edge. Unlike the left form it looks for
/// last_unit itself and not for any repeat word; `units` is not read.
///
/// @param after        the expansion and the edge
/// @param expand_num2  in/out: grows by the copies of last_unit that start in the expansion
/// @param limit        length of the edge
/// @return bases from the start of `after` to the end of the last such copy; 0 without one
int tail_check(std::set<std::string>& units, std::string& after, int unit_len, int& expand_num2, std::string last_unit,
               int limit);

/// The right form for an unknown last_unit: any repeat word counts for the reach.
///
/// @param last_unit  in/out: when empty, becomes the last repeat word that starts in the expansion, which itself is
///                   not counted
/// @return as the right form; a reach into the edge is made shorter by one unit
int tail_checknolast(std::set<std::string>& units, std::string& after, int unit_len, int& expand_num2,
                     std::string& last_unit, int limit);

/// 1 if the sequence holds a word that is no repeat word, and so is more than repeat, else 0. Its last word is not
/// looked at.
int Unit_check(std::string& seq, std::set<std::string>& units, int unitlen);

}  // namespace lintara
