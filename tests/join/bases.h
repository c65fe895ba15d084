// Made-up sequences for the join tests: each number names one sequence without any likeness to the others, and the same
// one in every run.
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace lintara::testing {

/// `length` bases of the sequence with this number.
inline std::string Bases(unsigned number, int length) {
    std::mt19937 random(number);
    std::string seq;
    for (int i = 0; i < length; ++i) seq += "ACGT"[random() >> 30];
    return seq;
}

/// The sequence with another base in one place.
inline std::string Changed(const std::string& seq, std::size_t place) {
    return seq.substr(0, place) + (seq.at(place) == 'A' ? 'C' : 'A') + seq.substr(place + 1);
}

inline std::string First(const std::string& seq, std::size_t count) {
    return seq.substr(0, count);
}
inline std::string Last(const std::string& seq, std::size_t count) {
    return seq.substr(seq.size() - count);
}
inline std::string Open(std::size_t count) {
    return std::string(count, 'N');
}

}  // namespace lintara::testing
