// Builds the first or the last block of a big gap when it is a tandem repeat. Only one edge is known and there is
// nothing to meet, so the flank is grown from the edge as far as its reads prove it, and the copies that the estimate
// still asks for are written out behind it: a repeat of the estimated length, not proved base by base.
#pragma once

#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// The block behind a before edge.
///
/// @param reads    at least the edge, which is reads[0]; the last read seeds nothing. Reads are cut where they begin in
///                 front of the edge
/// @param tagInfo  not read
/// @param unit     one copy of the unit in any phase
/// @param TRNum    in: estimated copies; out: copies written as bare units, none for a number below 1
/// @param freq     not read
/// @return sequence from right behind the edge on
std::string before_TR_assemble(std::vector<Read>& reads, TagInfo*& tagInfo, std::string& unit, int& TRNum, int*& freq,
                               int threadId);

/// The block in front of an after edge, which is reads[num - 1]; the first read seeds nothing. All else is as in
/// before_TR_assemble().
///
/// @return sequence that ends right in front of the edge
std::string after_TR_assemble(std::vector<Read>& reads, TagInfo*& tagInfo, std::string& unit, int& TRNum, int*& freq,
                              int threadId);

}  // namespace lintara
