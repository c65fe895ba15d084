// What the tandem repeat solvers share: the words of a repeat, pieces of sequences whose count may go negative, and the
// seeds by which an edge is prolonged.
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "align/edge_seeds.h"
#include "align/piece.h"
#include "run/settings.h"

namespace lintara::tandem {

/// Adds all rotations of a unit; of a unit that is itself a repeat, each rotation once.
inline void AddRotations(std::string unit, std::set<std::string>& units) {
    for (int turns = Length(unit); turns > 0; --turns) {
        unit = unit.substr(1) + unit[0];
        if (!units.insert(unit).second) return;
    }
}

/// The word of `length` bases at `pos`, shorter at the end of the sequence; empty for a place outside of it.
inline std::string Word(const std::string& seq, int pos, int length) {
    if (pos < 0 || pos > Length(seq)) return std::string();
    return seq.substr(static_cast<std::size_t>(pos), static_cast<std::size_t>(length));
}

/// Whether the word of `length` bases at `pos` is one of `units`.
inline bool HasWord(const std::set<std::string>& units, const std::string& seq, int pos, int length) {
    return pos >= 0 && pos <= Length(seq) && units.count(Word(seq, pos, length)) != 0;
}

/// `count` bases from `pos` on; a negative count means all that follows.
inline std::string Piece(const std::string& seq, int pos, int count) {
    return Head(From(seq, pos), count);
}

inline bool HasN(const std::string& seq) {
    return seq.find('N') != std::string::npos;
}

/// The overlap if it is long enough for a seed: it must reach past the `run` bases of repeat that stand in the edge
/// anyway. Otherwise 0.
inline int SeedOverlap(int overlap, int run, int unit_len) {
    return overlap > run && overlap >= Min_overlap && overlap >= unit_len ? overlap : 0;
}

/// How an edge that ends a repeat meets one read.
struct Anchor {
    int overlap = 0;   ///< bases shared with the edge, 0 for none
    int overhang = 0;  ///< bases of the read on the far side of the whole edge; at most 0 if it does not hold all of it
};

// Repeats are compared base by base: one mismatch would let a read slide by a whole unit.
inline Anchor BeforeAnchor(const EdgeSeeds& edge, const std::string& read) {
    int before_len = -1;
    const int overlap = overlap_before_len(edge, read, 1, before_len, 1.0);
    return {overlap, before_len};
}

inline Anchor AfterAnchor(const std::string& read, const EdgeSeeds& edge) {
    int after_len = -1;
    const int overlap = overlap_after_len(read, edge, 1, after_len, 1.0);
    return {overlap, after_len};
}

}  // namespace lintara::tandem
