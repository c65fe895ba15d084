// What all overlap finders share: the geometry of their seeds, and the comparison of a placement.
#pragma once

#include <string>

namespace lintara::detail {

/// Seed i (from 0) is the stretch of pattlen bases at i * pattlen.
struct SeedPlan {
    int pattnum;  ///< number of seeds
    int pattlen;  ///< bases a seed; below 4 the settings are unusable
};

/// Seeds of all finders but forward_overlap(): one of 30 bases with method 4, else from Min_overlap and false_ratio.
SeedPlan PlanSeeds(int method);

/// Offset in str of the seed of `from` at p, by string_match().
int FindSeed(const std::string& from, int p, int pattlen, const std::string& str, int method);

/// Whether two sequences are equal in at least match_ratio of the n columns that they share.
///
/// @param p, pos   places of the same column in a and in b; n is the smaller one of p and pos plus the shorter tail
bool Accepted(const std::string& a, int p, const std::string& b, int pos, int n, double match_ratio);

/// The same for a placement that has `inner` from its start on at offset pos of `outer`.
bool StartAccepted(const std::string& outer, int pos, const std::string& inner, int n, double match_ratio);

/// The second look of overlap() when all seeds were found and none accepted, which is what a repeat does: the whole
/// start of `inner`, Min_overlap bases of it, is sought in `outer`.
/// @return 0 or the overlap length
int StartInside(const std::string& inner, const std::string& outer, int method, double match_ratio);

/// One seed placement of str1 and str2, the seed's column being at pos1 and pos2: plus or minus the overlap length,
/// as overlap() returns it.
/// @param tie_is_plus  the sign when both sequences end together
int SignedLength(const std::string& str1, int pos1, const std::string& str2, int pos2, bool tie_is_plus);

}  // namespace lintara::detail
