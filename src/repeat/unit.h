// Names the unit of a tandem repeat whose length FindBlockType() knows, and estimates how many copies the gap holds.
// The estimate needs no alignment: it is the frequency of a tag inside the repeat over the frequency of the tags that
// flank it, since a flank stands once for each copy of the flank in the genome. Results go into a map from unit to
// copies.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "repeat/tag_info.h"

namespace lintara {

/// Unit and copy number of a repeat with a single unit. The program does not call it: it is the plain form of
/// GetSingleUnit(), on strings.
///
/// Reads that hold an `N` are not scanned. The unit's phase is arbitrary: it begins wherever the picked tag or the
/// first fitting word begins.
///
/// @param TRSeq    gets one entry; none when the reads show no flank on either side. The unit may be empty, for a
///                 length above 6 of which no read holds a whole word
/// @param TRLen    unit length in bases; below 1 nothing is done
/// @param tagInfo  the table that the detector filled
/// @param total    number of records in the table
/// @param freq     tag frequencies of the reads
void GetTRInfo(std::map<std::string, int>& TRSeq, int TRLen, TagInfo*& tagInfo, std::uint64_t total, int*& freq,
               std::vector<std::string>& reads, int threadId);

/// All units of length `TRLen`, at most 6, each once whatever its phase, with their copy numbers. A unit without a
/// flank keeps the copy number 1. Arguments as for GetTRInfo(). No gap comes here as long as FindBlockType() never
/// finds several units.
void GetMultiShortTRInfo(std::map<std::string, int>& isMultiTRSeq, int TRLen, TagInfo*& tagInfo, std::uint64_t& total,
                         int*& freq, std::vector<std::string>& reads, int threadId);

/// The same for `TRLen` above 6. Logs the frequencies behind each copy number.
void GetMultiLongTRInfo(std::map<std::string, int>& isMultiTRSeq, int TRLen, TagInfo*& tagInfo, std::uint64_t& total,
                        int*& freq, std::vector<std::string>& reads, int threadId);

/// Whether one word is a rotation of another, tested at the first place where the target holds the query's head, or
/// its tail if it does not hold the head. A rotation is missed when that place is not the one that the rotation needs:
/// AACA is no rotation of AAAC to this test.
///
/// @return 1 if `querySeq` is a rotation of `targetSeq`, else 0
int IsSameTR(std::string& targetSeq, std::string querySeq);

/// Whether the map already holds a rotation of `TRSeq`. The test is that of IsSameTR() with each key as the target,
/// except that the tail is also tried when the head was found and did not fit.
///
/// @return 1 if some key is a rotation of `TRSeq`, else 0, also for an empty map
int GotSameTR(std::map<std::string, int>& isMultiTRSeq, std::string& TRSeq);

}  // namespace lintara
