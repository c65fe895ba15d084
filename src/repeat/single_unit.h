// Unit and copy number of a repeat with a single unit, from laid-out reads whose runs of repeat tags are known.
#pragma once

#include <map>
#include <string>

#include "repeat/repeat_runs.h"
#include "repeat/tag_reads.h"

namespace lintara {

/// GetTRInfo() on laid-out reads.
///
/// @param repeat  with its runs
/// @param TRLen   unit length in bases, 1 or more
/// @param freq    tag frequencies; null: those that matter are counted
/// @param TRSeq   gets one entry at most
void GetSingleUnit(const TagReads& laid, const RepeatTags& repeat, int TRLen, const int* freq,
                   std::map<std::string, int>& TRSeq);

/// Frequency of the repeat's tag over that of its flanks, truncated. Without any flank frequency the repeat's own
/// stands in, and nothing over nothing is 0.
///
/// @param frontFlag, behideFlag  1 for a flank that was found, else 0; the frequency of one that was not is ignored
int CopyRatio(int tagFreq, int frontFlag, int frontFreq, int behideFlag, int behideFreq);

}  // namespace lintara
