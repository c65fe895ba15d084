// Sample sequences for the strategies' tests.
#pragma once

#include <random>
#include <string>

namespace lintara::testing {

/// Random bases, the same for the same seed on every machine. From some 20 bases on, two seeds share nothing that an
/// overlap finder would take for an overlap.
inline std::string RandomBases(int length, unsigned seed) {
    std::mt19937 random(seed);
    std::string bases;
    for (int i = 0; i < length; ++i) bases += "ACGT"[random() % 4];
    return bases;
}

inline std::string First(const std::string& seq, int length) {
    return seq.substr(0, static_cast<std::size_t>(length));
}

inline std::string Last(const std::string& seq, int length) {
    return seq.substr(seq.size() - static_cast<std::size_t>(length));
}

inline std::string Repeat(const std::string& unit, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += unit;
    return text;
}

}  // namespace lintara::testing
