// Sequences for the tests of this folder.
#pragma once

#include <random>
#include <set>
#include <string>
#include <vector>

namespace lintara::testing {

/// `size` random characters of `letters`.
inline std::string RandomBases(std::mt19937& random, int size, const std::string& letters = "ACGT") {
    std::string seq;
    for (int i = 0; i < size; ++i) seq += letters[random() % letters.size()];
    return seq;
}

/// A sequence in which no 6 bases occur twice, so that each seed has one place only. Its stretches stand for reads.
inline std::string UniqueBases(int size, unsigned int seed) {
    std::mt19937 random(seed);
    for (;;) {
        std::string seq;
        std::set<std::string> seen;
        while (static_cast<int>(seq.size()) < size) {
            seq += "ACGT"[random() % 4];
            if (seq.size() >= 6 && !seen.insert(seq.substr(seq.size() - 6)).second) break;
        }
        if (static_cast<int>(seq.size()) == size) return seq;
    }
}

/// seq with each listed place changed to another base.
inline std::string WithErrors(std::string seq, const std::vector<int>& places) {
    for (const int place : places) seq[place] = seq[place] == 'A' ? 'C' : 'A';
    return seq;
}

/// The bases from `start` to before `end`.
inline std::string Cut(const std::string& seq, int start, int end) {
    return seq.substr(start, end - start);
}

}  // namespace lintara::testing
