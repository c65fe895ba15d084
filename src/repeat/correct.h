// Repairs single bases in the reads of a tandem repeat before its unit is extracted, in the tag space of the repeat
// detector. A repeat tag is one that recurs at the unit length; a rare tag (frequency below 4) right beside a run of
// repeat tags is suspect, and its far base is changed if that makes it a repeat tag and leaves no rare tag around it.
#pragma once

#include <string>
#include <vector>

#include "repeat/repeat_runs.h"
#include "repeat/tag_info.h"
#include "repeat/tag_reads.h"

namespace lintara {

/// One pass of correction over all reads. The program does not call it: it is the plain form of CorrectLaidReads(), on
/// strings.
///
/// @param reads    changed in place; reads below 6 bases are skipped
/// @param tagInfo  the table that the detector filled; only read
/// @param TRLen    unit length in bases
/// @param freq     tag frequencies of the reads, kept up to date for the tags that a change was checked on
/// @return number of bases changed
int CorrectReads(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int*& freq, int threadId);

/// The same on laid-out reads, whose tags follow the corrections.
///
/// @param repeat  with its runs, which follow the corrections, too
int CorrectLaidReads(TagReads& laid, RepeatTags& repeat, int* freq);

/// Tries to write `newBase` at the 0-based position `subEndPos` - 1 of a read. The change is refused, with nothing
/// touched, if one of the tags that start from `startPos` to `endPos` - 1 would be rare after it; otherwise the
/// frequencies of exactly those tags follow the change. The program does not call it.
///
/// @param startPos, endPos  tag starts, `endPos` excluded; an empty range accepts the change
/// @param subEndPos         1 to the read's length; outside of it the change is refused
/// @return whether the base was written
bool Replace(std::string& readSeq, char newBase, int startPos, std::string::size_type endPos,
             std::string::size_type subEndPos, int*& freq, int threadId);

}  // namespace lintara
