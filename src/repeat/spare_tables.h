// Lends out the tag table and the tag frequencies of one gap or block. Both are large and each gap touches little of
// them, so a thread keeps one pair from gap to gap and clears only the records that were filled.
#pragma once

#include <vector>

#include "repeat/tag_info.h"

namespace lintara {

/// Sets both to arrays of TAG entries, the calling thread's spare ones if it has some.
///
/// @param tagInfo  out: records without distances
/// @param freq     out: frequencies of any value; FindBlockType() sets those that it needs
void TakeTables(TagInfo*& tagInfo, int*& freq);

/// Tells that these records of a table have got distances. When all that have are told of, GiveBackTables() need not
/// look at the other ones.
void NoteFilled(const TagInfo* tagInfo, const std::vector<int>& tags);

/// Tells that records of a table may have distances of which NoteFilled() does not know. The program does not call it:
/// AddDistance() does.
void NoteUnknown(const TagInfo* tagInfo);

/// Takes the tables of a gap back for the thread's next one; both become null.
///
/// @param tagInfo  filled with tags of reads alone, that is below kTagValues; null when FreetagInfo() has had it
void GiveBackTables(TagInfo*& tagInfo, int*& freq);

}  // namespace lintara
