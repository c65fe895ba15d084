// Recognises a tandem repeat in the reads of a gap or block, without alignment. Every read is cut into 6-base tags; the
// distances at which a tag recurs inside one read go into a tag table, and a distance that behaves as a unit length
// names the repeat. The caller owns the table (TAG fresh records, handed back through FreetagInfo), since the join
// checks go on asking it, and lends the tag frequencies `freq`.
//
// The strategies call FindBlockType(); find_type() is its plain form, on strings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Unit length of the tandem repeat in a set of reads. The program does not call it: it is the plain form of
/// FindBlockType(), and the tests hold both against a detector that goes from string to string.
///
/// @param reads      the reads of one gap or block, without edges; single bases are corrected in place when a repeat
///                   with a unit above 1 is found. Reads below 6 bases count for nothing
/// @param tagInfo    TAG fresh records; filled with the tags of the uncorrected reads, all pairs inside a read
/// @param TRSeq      gets unit sequence to copy number; may stay empty although a unit length is returned, and may
///                   hold an empty unit
/// @param freq       TAG ints; set to how often each tag stands in all reads, kept up by the correction
/// @param isMultiTR  0 at each return of this release; 1 would mean several units of one length
/// @param threadId   whose log is written
/// @return the unit length in bases; 0: no tandem repeat
int find_type(std::vector<std::string>& reads, TagInfo*& tagInfo, std::map<std::string, int>& TRSeq, int*& freq,
              int& isMultiTR, int threadId);

/// The same for the reads of a block from index `first` up to `end`, that one excluded. They stay as they are: the
/// corrections count for the unit alone.
///
/// @param freq  kTagValues ints or more, to work with: what they hold in the end is of no use
int FindBlockType(const std::vector<Read>& reads, std::size_t first, std::size_t end, TagInfo*& tagInfo,
                  std::map<std::string, int>& TRSeq, int*& freq, int& isMultiTR, int threadId);

/// The unit length that a filled tag table speaks for, confirmed on the reads.
///
/// A distance d is consistent when exactly d tags recur at it: a repeat of unit d has d different tags, and a multiple
/// of the unit has too few. The consistent distance with the most pairs is the candidate, the smaller one on a tie. The
/// program does not call it: FindBlockType() goes the same way on laid-out reads.
///
/// @param total      number of records to visit, at most TAG
/// @param isMultiTR  left alone unless several units are found, which does not happen in this release
/// @return the unit length in bases; 0: none, also when the candidate is not confirmed
int IsTandemRepeat(TagInfo*& tagInfo, std::uint64_t total, int& isMultiTR, std::vector<std::string>& reads,
                   int threadId);

/// Confirms a unit length on the reads: two adjacent equal words for a unit no longer than a tag, otherwise one word of
/// the unit's length all of whose tags recur at that length. The program does not call it.
///
/// @param TRLen  candidate in bases; below 1 nothing is confirmed
/// @return TRLen, or 0 when no read confirms it
int CheckAnotherTRLen(std::vector<std::string>& reads, TagInfo*& tagInfo, int TRLen, int threadId);

/// Counts one pair of the tag `tagBit` (below TAG) at `distance` bases. The record's arrays grow by one for a distance
/// that is new to it. The program does not call it: it is the plain form that the tests hold ScanTags() against.
void AddDistance(TagInfo*& tagInfo, std::uint64_t tagBit, int distance);

/// 1 if `TRLen` is among the tag's distances, else 0.
int ExistTRLen(const TagInfo& tag, int TRLen);

/// How many pairs of the tag stand at the distance `TRLen`; 0 if it has none there. The program does not call it.
int GetAppearedTimes(const TagInfo& tag, int TRLen);

/// Frees the arrays of all TAG records and the table itself; the pointer becomes null. A null table is left alone.
void FreetagInfo(TagInfo*& tagInfo);

// The program does not call the three below.

/// The tag scan of FindBlockType() over all records. Unlike there, a tag with an `N` is passed over.
///
/// @param tagInfo  TAG records; fresh ones, unless distances are to add up
void GetTagInfo(std::vector<Read>& reads, TagInfo*& tagInfo, int threadId);

/// Whether the tag frequencies alone look like a repeat. Writes one line for each frequency from 2 to 255 that stands
/// among them to the error stream; higher ones are not counted.
///
/// @param total  number of entries of `freq` to look at
/// @return 1 if twice the commonest frequency is at most the largest one, else 0
int PossbleTR(int*& freq, int total);

/// Logs how often four patterns stand in the reads: `patt1` and `patt11` in reads at least as long as `patt1`, `patt2`
/// and `patt20` in reads at least as long as `patt2`. Patterns must suit PattNum(): three bases or more under the
/// default method, and none longer than the reads it is counted in.
///
/// @return always 1: it reports and decides nothing
int FreqCheckPass(std::vector<Read>& reads, const std::string& patt1, const std::string& patt11,
                  const std::string& patt2, const std::string& patt20, int threadId);

}  // namespace lintara
