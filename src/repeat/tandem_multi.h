// Fills a gap in which several tandem repeat units of one length alternate. It goes about it like solve_TR_block(), but
// there is no single phase here: no copies are counted, and none are written. No gap takes this road as long as
// FindBlockType() never reports several units.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Sequence of a gap between two edges that alternates between several units.
///
/// A gap with units of one base, or of at most one and a half units, or with little of the repeat in its edges goes to
/// assemble_block().
///
/// @param reads        the block: before edge first, after edge last; cut and at some returns cleared
/// @param tagInfo      tag table of the block; freed, and then null, when the two expansions met
/// @param repeat_unit  units, all of one length, to their copy numbers (not read); cleared together with the reads
/// @param gap_len      estimated size of the gap
/// @param type         as in assemble_block(), which alone changes it
/// @param realgaplen   as in assemble_block(), which alone sets it
/// @return the gap's sequence without the edges
std::string solve_MTR_block(std::vector<Read>& reads, TagInfo*& tagInfo, std::map<std::string, int>& repeat_unit,
                            int gap_len, int& type, int& realgaplen, int threadId);

/// Length of the repeat run at the end of a sequence; -1 when it does not end in a repeat word. The word at place 0 is
/// not looked at.
int Multi_tail_check(std::string& seq, std::set<std::string>& units, int unitlen);

/// The same, with no word looked at that starts at place `limit` or in front of it.
int Multi_tail_check(std::string& seq, std::set<std::string>& units, int unitlen, int limit);

/// Length of the repeat run at the start of a sequence, with no word looked at that ends at place `limit` or behind it.
/// -1 for a sequence shorter than a unit; unitlen - 1 when it does not start in a repeat word. The last word of the
/// sequence is not looked at.
int Multi_tail_check(std::set<std::string>& units, std::string& seq, int unitlen, int limit);

/// The same without a limit.
int Multi_tail_check(std::set<std::string>& units, std::string& seq, int unitlen);

}  // namespace lintara
