// Lends out the tag table and the tag frequencies of one gap or block. Both are large and each gap touches little of
// them, so a thread keeps one pair from gap to gap and clears only the records that were filled.
#pragma once

#include "repeat/tag_info.h"

namespace lintara {

/// Sets both to arrays of TAG entries, the calling thread's spare ones if it has some.
///
/// @param tagInfo  out: records without distances
/// @param freq     out: frequencies of any value; find_type() sets them
void TakeTables(TagInfo*& tagInfo, int*& freq);

/// Takes the tables of a gap back for the thread's next one; both become null.
///
/// @param tagInfo  filled with tags of reads alone, that is below kTagValues; null when FreetagInfo() has had it
void GiveBackTables(TagInfo*& tagInfo, int*& freq);

}  // namespace lintara
