// Sequences for the tandem solvers' tests, in which the unit ACGTT cannot arise by chance, and the two reads that
// prolong an edge: with two, a column stands as soon as all reads that cover it agree.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara::testing {

/// `count` bases that begin and end in C and hold neither CG nor GT, so that no rotation of ACGTT stands in them or
/// across the seam of two of them or of one and a run of ACGTT.
inline std::string Bases(unsigned seed, int count) {
    std::mt19937 random(seed);
    std::string seq = "C";
    while (static_cast<int>(seq.size()) < count - 1) {
        const char next = "ACGT"[random() >> 30];
        if ((seq.back() == 'C' && next == 'G') || (seq.back() == 'G' && next == 'T')) continue;
        seq += next;
    }
    return seq + "C";
}

inline std::string Copies(const std::string& unit, int count) {
    std::string seq;
    for (int i = 0; i < count; ++i) seq += unit;
    return seq;
}

/// `count` bases that begin `place` bases behind the start of `seq`.
inline Read ReadAt(const std::string& seq, int place, int count) {
    return {seq.substr(static_cast<std::size_t>(place), static_cast<std::size_t>(count)), place};
}

inline std::string Last(const std::string& seq, int count) {
    return seq.substr(seq.size() - static_cast<std::size_t>(count));
}

}  // namespace lintara::testing
