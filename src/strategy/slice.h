// Cuts of sequences with int lengths, as the strategies reckon them. All are clamped to what the sequence holds: a
// negative length is 0, a place outside the sequence gives an empty text, and nothing is ever thrown.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace lintara {

/// `length` bases from `start` on.
inline std::string Slice(const std::string& seq, int start, int length) {
    if (start < 0 || length <= 0 || start >= static_cast<int>(seq.size())) return std::string();
    return seq.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

/// The first `length` bases, or all.
inline std::string Head(const std::string& seq, int length) {
    return Slice(seq, 0, length);
}

/// The last `length` bases, or all.
inline std::string Tail(const std::string& seq, int length) {
    return Slice(seq, std::max(static_cast<int>(seq.size()) - length, 0), length);
}

/// Takes `length` bases off the end, or all.
inline void CutTail(std::string& seq, int length) {
    seq.resize(
        static_cast<std::size_t>(std::clamp(static_cast<int>(seq.size()) - length, 0, static_cast<int>(seq.size()))));
}

/// A run of N.
inline std::string OpenGap(int length) {
    return std::string(static_cast<std::size_t>(std::max(length, 0)), 'N');
}

}  // namespace lintara
