#include "align/placement.h"

#include <algorithm>
#include <climits>

#include "align/byte_scan.h"
#include "align/search_detail.h"
#include "run/settings.h"

namespace lintara::detail {

namespace {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

bool Reaches(int count, int n, double match_ratio) {
    return static_cast<double>(count) / n >= match_ratio;
}

}  // namespace

SeedPlan PlanSeeds(int method) {
    if (method == 4) return {1, 30};
    const double seeds = Min_overlap * false_ratio;
    if (!(seeds > INT_MIN && seeds < INT_MAX)) return {0, 0};
    const int pattnum = static_cast<int>(seeds);
    if (pattnum == 0) return {0, 0};
    return {pattnum, static_cast<int>(static_cast<double>(Min_overlap) / pattnum)};
}

int FindSeed(const std::string& from, int p, int pattlen, const std::string& str, int method) {
    return MatchRange(from.data() + p, pattlen, str.data(), Size(str), method);
}

bool Accepted(const std::string& a, int p, const std::string& b, int pos, int n, double match_ratio) {
    const int before = std::min(p, pos);
    return Reaches(CountEqual(a.data() + p - before, b.data() + pos - before, n), n, match_ratio);
}

bool StartAccepted(const std::string& outer, int pos, const std::string& inner, int n, double match_ratio) {
    return Reaches(CountEqual(outer.data() + pos, inner.data(), n), n, match_ratio);
}

int SignedLength(const std::string& str1, int pos1, const std::string& str2, int pos2, bool tie_is_plus) {
    const int tail1 = Size(str1) - pos1;
    const int tail2 = Size(str2) - pos2;
    const int before = std::min(pos1, pos2);
    if (tail2 > tail1) return tail1 + before;
    if (tail2 < tail1) return -(tail2 + before);
    return tie_is_plus ? tail2 + before : -(tail2 + before);
}

int StartInside(const std::string& inner, const std::string& outer, int method, double match_ratio) {
    const int pattlen = std::min(Min_overlap, Size(inner));
    if (pattlen > Size(outer)) return 0;
    const int pos = FindSeed(inner, 0, pattlen, outer, method);
    if (pos < 0) return 0;
    const int n = std::min(Size(outer) - pos, Size(inner));
    return StartAccepted(outer, pos, inner, n, match_ratio) ? n : 0;
}

}  // namespace lintara::detail
