#include "align/edge_align.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "align/byte_scan.h"
#include "run/settings.h"

namespace lintara {

namespace {

// Share of the best score that the second best must stay below.
const double kDif = 0.9;
const double kMatchRatio = 0.9;

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

    /// A number of equal columns out of len below which a score is neither of the two and not equal to one.
    int LeastOf(int len) const { return static_cast<int>(max2_value * len / 100.0); }

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

// Scores the last i bases of read_a against the first i of read_b, column by column from the left, for each i.
BestTwo SlideFromLeft(const std::string& read_a, const std::string& read_b, int Min, int Max) {
    const bool has_n = HasN(read_a) || HasN(read_b);
    BestTwo best;
    for (int i = Min; i <= Max; ++i) {
        const int start = std::max(Size(read_a) - i, 0);
        const int len = std::min(i, Size(read_b));
        if (len <= 0) continue;
        const char* stay = read_a.data() + start;
        const int columns = std::min(len, Size(read_a) - start);
        const int least = best.LeastOf(len);
        const int sum = has_n ? detail::CountEqualBases(stay, read_b.data(), stay, columns, least)
                              : detail::CountEqual(stay, read_b.data(), columns, least);
        best.Add(i - Min, Percent(sum, len));
    }
    return best;
}

// The same for a read_a that is no longer than read_b: read_a, once it is used up, stays at the right end of the first
// i bases of read_b.
BestTwo SlideFromRight(const std::string& read_a, const std::string& read_b, int Min) {
    const bool has_n = HasN(read_a) || HasN(read_b);
    BestTwo best;
    for (int i = Min; i <= Size(read_b); ++i) {
        const int len = std::min(i, Size(read_a));
        if (len <= 0) continue;
        const char* stay = read_b.data();
        const char* move = read_a.data() + Size(read_a) - len;
        const int least = best.LeastOf(len);
        // The N test counts read_b's columns from the left end while the bases are compared at the right one.
        const int sum = has_n ? detail::CountEqualBases(stay + i - len, move, stay, len, least)
                              : detail::CountEqual(stay + i - len, move, len, least);
        best.Add(i - Min, Percent(sum, len));
    }
    return best;
}

}  // namespace

int align_connect(const std::string& read_a, const std::string& read_b, int Min, double match_ratio) {
    if (EitherEmpty(read_a, read_b)) return -1;
    const int longer = std::max(Size(read_a), Size(read_b));
    if (longer - Min + 1 < 0) std::exit(-1);
    const BestTwo best =
        Size(read_a) > Size(read_b) ? SlideFromLeft(read_a, read_b, Min, longer) : SlideFromRight(read_a, read_b, Min);
    return best.Winner(match_ratio, kDif);
}

int align_connect(const std::string& read_a, const std::string& read_b, int Min) {
    return align_connect(read_a, read_b, Min, kMatchRatio);
}

int align_connect(const std::string& read_a, const std::string& read_b, int Min, int Max) {
    if (EitherEmpty(read_a, read_b)) return -1;
    return SlideFromLeft(read_a, read_b, Min, Max).Winner(kMatchRatio, kDif);
}

int get_max(double*& value, int size, double match_ratio, double dif) {
    BestTwo best;
    for (int i = 0; i < size; ++i) best.Add(i, value[i]);
    return best.Winner(match_ratio, dif);
}

}  // namespace lintara
