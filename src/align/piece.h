// Pieces of sequences with int lengths, as the walks' consensus, the joins and the solvers reckon them. Lengths are
// compared and subtracted as ints and may go negative on the way; every cut is then clamped to what the sequence holds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>

namespace lintara {

/// Size in bases, as the int that all comparisons work on.
inline int Length(const std::string& seq) {
    return static_cast<int>(seq.size());
}

/// The first `count` bases. A count beyond the size, or a negative one, means the whole sequence.
inline std::string Head(const std::string& seq, int count) {
    return count < 0 ? seq : seq.substr(0, static_cast<std::size_t>(count));
}

/// The last `count` bases: all of them for a count beyond the size, none for a negative one.
inline std::string Tail(const std::string& seq, int count) {
    return seq.substr(seq.size() - static_cast<std::size_t>(std::clamp(count, 0, Length(seq))));
}

/// All from the 0-based `start` on: nothing from behind the end, everything from a negative start.
inline std::string From(const std::string& seq, int start) {
    return seq.substr(static_cast<std::size_t>(std::clamp(start, 0, Length(seq))));
}

/// The sequence without its last `count` bases. A count beyond the size, or a negative one, leaves it whole.
inline std::string WithoutLast(const std::string& seq, int count) {
    return Head(seq, Length(seq) - count);
}

/// Removes `count` bases at the front or at the end, at most all of them and none for a negative count.
inline void DropFront(std::string& seq, int count) {
    seq.erase(0, static_cast<std::size_t>(std::clamp(count, 0, Length(seq))));
}
inline void DropEnd(std::string& seq, int count) {
    seq.resize(static_cast<std::size_t>(Length(seq) - std::clamp(count, 0, Length(seq))));
}

/// A run of N; empty for a negative count. Sequences have places of type int, so that more than that is too much for
/// the memory.
inline std::string Ns(std::int64_t count) {
    if (count > std::numeric_limits<int>::max()) throw std::bad_alloc();
    return std::string(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)), 'N');
}

}  // namespace lintara
