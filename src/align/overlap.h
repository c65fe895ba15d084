// Overlaps of two sequences, with some mismatches and without gaps.
//
// All finders seed and verify: an exact seed cut at a fixed offset of one sequence is sought in the other one, the
// placement that follows is compared base by base over the whole shared stretch, and it is accepted when the share of
// equal bases reaches match_ratio. A seed is tried in its leftmost place only. The number and the length of the seeds
// follow from Min_overlap and false_ratio (4 seeds of 7 bases at their defaults), so that an overlap of Min_overlap
// bases with fewer errors than seeds leaves one seed whole; with method 4 there is one seed of 30 bases.
// Settings that give seeds below 4 bases are unusable and end the process with status -1 at the first call. A text
// that is shorter than a seed ends it through string_match(); callers pass at least a seed's length.
#pragma once

#include <string>

namespace lintara {

/// Overlap of two reads in either order.
///
/// @param str1, str2    bases; neither may be empty (ends the process with status -1, no message)
/// @param method        exact-search method of the seeds, see string_match()
/// @param match_ratio   lowest share of equal columns, 0..1; 1.0 asks for an exact overlap
/// @return 0: none. Otherwise the number of shared columns: positive when str2 ends after str1, negative when str1
///         ends after str2. When both end together: positive if str2 starts no later than str1, else negative. A read
///         inside the other gives plus (str1) or minus (str2) its own length; two equal reads give plus. -1 is an
///         overlap of one base and no flag.
int overlap(const std::string& str1, const std::string& str2, int method, double match_ratio);

/// Overlap with str2's left end inside str1. The seeds are always 4, of Min_overlap / 4 bases each.
///
/// @return 0: none, also when a sequence is empty or str2 is shorter than a seed. Otherwise the overlap length; but
///         when str1 goes on past the end of str2, the number of bases from str2's start to the end of str1, which
///         exceeds |str2| and so tells the caller that str1 passes beyond it.
int forward_overlap(const std::string& str1, const std::string& str2, int method, double match_ratio);

/// Overlap with `before` at the left of str: the end of `before` lies inside str. Empty sequences end the process.
///
/// @param before_len out: when `before` lies wholly inside str, the number of bases of str left of it; else -1
/// @return overlap length, or 0; 0 too when str lies wholly inside `before`
int overlap_before_len(const std::string& before, const std::string& str, int method, int& before_len,
                       double match_ratio);

/// Overlap with `after` at the right of str: the start of `after` lies inside str. Empty sequences end the process.
///
/// @param after_len out: when `after` ends inside str, the number of bases of str beyond its end; else -1
/// @return overlap length, or 0; 0 too when str lies wholly inside `after`
int overlap_after_len(const std::string& str, const std::string& after, int method, int& after_len, double match_ratio);

/// overlap() with the run-wide Match_ratio and without its second look at repeats; the last two arguments are ignored.
/// The program does not call it.
int overlap2(const std::string& str1, const std::string& str2, int method, int before_len, int after_len);

/// A search in the manner of BM3 whose shift table looks only at what lies wholly left of each suffix, so that it may
/// pass over an occurrence of a pattern that overlaps itself. Takes patterns below 3 bases, too; one that is longer
/// than str ends the process with status -1 and no message. The program does not call it.
/// @return offset of an occurrence in str, or -1
int over_posit(const std::string& patt, const std::string& str);

}  // namespace lintara
