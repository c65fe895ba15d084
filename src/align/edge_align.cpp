#include "align/edge_align.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "align/byte_scan.h"
#include "align/slide_counts.h"
#include "run/settings.h"

namespace lintara {

namespace {

// Share of the best score that the second best must stay below.
const double kDif = 0.9;
const double kMatchRatio = 0.9;

// Bases of an end that are sought in the other sequence for a likely overlap.
const int kEnd = 16;

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

// The best and the second-best score of a list that is read once, in ascending order of index.
struct BestTwo {
    double max_value = 0;
    double max2_value = 0;
    int max_len = 0;
    int max2_len = 0;

    void Add(int i, double value) {
        if (value == 0) return;
        // Of equal scores the later index, which is the longer overlap, is the best.
        if (value > max_value || value == max_value) {
            max2_value = max_value;
            max2_len = max_len;
            max_value = value;
            max_len = i;
        } else if (value > max2_value && value < max_value) {
            max2_value = value;
            max2_len = i;
        }
    }

    int Winner(double match_ratio, double dif) const {
        if (max_value >= match_ratio * 100 && max_value * dif > max2_value) return max_len;
        if (max_value == 100 && max2_value < 100) return max_len;
        const int len = std::max(max_len, max2_len);
        // An index, not a length, is held against Min_overlap.
        if (max_value == 100 && max2_value == 100 && len >= Min_overlap) return len;
        return -len;
    }
};

bool EitherEmpty(const std::string& read_a, const std::string& read_b) {
    if (!read_a.empty() && !read_b.empty()) return false;
    std::cerr << "cannot connect: " << read_a.size() << "\t" << read_b.size() << "\n";
    return true;
}

double Percent(int sum, int len) {
    return static_cast<double>(sum) / len * 100.0;
}

bool HasN(const std::string& seq) {
    return seq.find('N') != std::string::npos;
}

// The last i bases of one sequence against the first i of another one, for each i.
class Overlaps {
  public:
    /// @param from_left  which end stays compared when i exceeds a sequence: the left one, or the right one for a
    ///                   read_a that is no longer than read_b and then stays at the right end of its first i bases
    Overlaps(const std::string& read_a, const std::string& read_b, bool from_left)
        : read_a_(read_a), read_b_(read_b), from_left_(from_left), has_n_(HasN(read_a) || HasN(read_b)) {}

    /// Whether SlideCounts can count the lengths up to that one.
    bool CanSlide(int longest) const {
        return !has_n_ && longest <= Size(from_left_ ? read_a_ : read_b_) &&
               detail::SlideCounts::Covers(Size(read_a_), Size(read_b_));
    }
    detail::SlideCounts Counts() const { return {read_a_, read_b_, from_left_}; }

    /// Columns of which the score is a share; no score below 1.
    int Length(int i) const { return std::min(i, Size(from_left_ ? read_b_ : read_a_)); }

    /// Equal columns, or any number below `least` when they are fewer.
    int Equal(int i, int least) const {
        const int len = Length(i);
        if (from_left_) {
            const int start = std::max(Size(read_a_) - i, 0);
            const char* stay = read_a_.data() + start;
            return Count(stay, read_b_.data(), stay, std::min(len, Size(read_a_) - start), least);
        }
        const char* stay = read_b_.data();
        // The N test counts read_b's columns from the left end while the bases are compared at the right one.
        return Count(stay + i - len, read_a_.data() + Size(read_a_) - len, stay, len, least);
    }

    double Score(int i, int equal) const { return Percent(equal, Length(i)); }

    /// The i at which one end stands whole in the other sequence; 0 for none.
    int Likely() const {
        if (std::min(Size(read_a_), Size(read_b_)) < kEnd) return 0;
        const char* end_a = read_a_.data() + Size(read_a_) - kEnd;
        const int place = from_left_ ? detail::FindFirst(read_b_.data(), kEnd, read_a_.data(), Size(read_a_))
                                     : detail::FindFirst(end_a, kEnd, read_b_.data(), Size(read_b_));
        if (place < 0) return 0;
        return from_left_ ? Size(read_a_) - place : place + kEnd;
    }

  private:
    int Count(const char* a, const char* b, const char* mask, int columns, int least) const {
        return has_n_ ? detail::CountEqualBases(a, b, mask, columns, least) : detail::CountEqual(a, b, columns, least);
    }

    const std::string& read_a_;
    const std::string& read_b_;
    bool from_left_;
    bool has_n_;
};

// Equal columns out of len below which a score stays below that many percent.
int LeastOf(double percent, int len) {
    return static_cast<int>(percent * 0.01 * len);
}

// Calls visit(int i, int len, int equal) with the lengths from Min to Max, ascending, until it returns false. A length
// whose score stays below percent() may be left out, and what that gives may only rise meanwhile.
template <typename PercentAtLeast, typename Visit>
void EachLength(const Overlaps& overlaps, int Min, int Max, PercentAtLeast percent, Visit visit) {
    for (int i = std::max(Min, 1); i <= Max; ++i) {
        const int len = overlaps.Length(i);
        const int least = LeastOf(percent(), len);
        const int equal = overlaps.Equal(i, least);
        if (equal >= least && !visit(i, len, equal)) return;
    }
}

// The same for lengths that SlideCounts can count.
template <typename PercentAtLeast, typename Visit>
void EachLengthAtOnce(const Overlaps& overlaps, detail::SlideCounts& counts, int Min, int Max, PercentAtLeast percent,
                      Visit visit) {
    for (int first = std::max(Min, 1); first <= Max; first += detail::SlideCounts::LENGTHS) {
        const int last = std::min(Max, first + detail::SlideCounts::LENGTHS - 1);
        const int longest = overlaps.Length(last);
        // One more, so that no rounding matters.
        if (!counts.Count(first, longest - LeastOf(percent(), longest) + 1)) continue;
        const int least_of_all = LeastOf(percent(), overlaps.Length(first));
        for (int i = first; i <= last; ++i) {
            const int equal = counts.Equal(i);
            if (equal < least_of_all) continue;
            const int len = overlaps.Length(i);
            if (equal >= LeastOf(percent(), len) && !visit(i, len, equal)) return;
        }
    }
}

// The two best of all lengths from Min to Max.
template <typename Each>
BestTwo Slide(int Min, Each each_length) {
    BestTwo best;
    each_length([&] { return best.max2_value; },
                [&](int i, int len, int equal) {
                    best.Add(i - Min, Percent(equal, len));
                    return true;
                });
    return best;
}

// Whether a length wins, all others staying below its kDif. These need not be counted out for that, so that it is
// asked first of a length that is likely to win.
template <typename Each>
bool Wins(const Overlaps& overlaps, int winner, double match_ratio, Each each_length) {
    const double score = overlaps.Score(winner, overlaps.Equal(winner, 0));
    if (score == 0 || !(score >= match_ratio * 100)) return false;
    bool wins = true;
    each_length([&] { return score * kDif; },
                [&](int i, int len, int equal) {
                    wins = i == winner || Percent(equal, len) < score * kDif;
                    return wins;
                });
    return wins;
}

template <typename Each>
int Connect(const Overlaps& overlaps, int Min, int Max, double match_ratio, Each each_length) {
    const int likely = overlaps.Likely();
    if (likely > 0 && likely >= Min && likely <= Max && Wins(overlaps, likely, match_ratio, each_length)) {
        return likely - Min;
    }
    return Slide(Min, each_length).Winner(match_ratio, kDif);
}

int Connect(const Overlaps& overlaps, int Min, int Max, double match_ratio) {
    if (Min <= Max && overlaps.CanSlide(Max)) {
        detail::SlideCounts counts = overlaps.Counts();
        return Connect(overlaps, Min, Max, match_ratio,
                       [&](auto percent, auto visit) { EachLengthAtOnce(overlaps, counts, Min, Max, percent, visit); });
    }
    return Connect(overlaps, Min, Max, match_ratio,
                   [&](auto percent, auto visit) { EachLength(overlaps, Min, Max, percent, visit); });
}

}  // namespace

int align_connect(const std::string& read_a, const std::string& read_b, int Min, double match_ratio) {
    if (EitherEmpty(read_a, read_b)) return -1;
    const int longer = std::max(Size(read_a), Size(read_b));
    if (longer - Min + 1 < 0) std::exit(-1);
    return Connect(Overlaps(read_a, read_b, Size(read_a) > Size(read_b)), Min, longer, match_ratio);
}

int align_connect(const std::string& read_a, const std::string& read_b, int Min) {
    return align_connect(read_a, read_b, Min, kMatchRatio);
}

int align_connect(const std::string& read_a, const std::string& read_b, int Min, int Max) {
    if (EitherEmpty(read_a, read_b)) return -1;
    return Connect(Overlaps(read_a, read_b, true), Min, Max, kMatchRatio);
}

int get_max(double*& value, int size, double match_ratio, double dif) {
    BestTwo best;
    for (int i = 0; i < size; ++i) best.Add(i, value[i]);
    return best.Winner(match_ratio, dif);
}

}  // namespace lintara
