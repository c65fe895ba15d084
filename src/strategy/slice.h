// Cuts of sequences for which a negative length is 0, as the strategies reckon them. All are clamped to what the
// sequence holds. The cuts of align/piece.h take a negative length for the whole sequence.
#pragma once

#include <cstddef>
#include <string>

#include "align/piece.h"

namespace lintara {

/// `length` bases from `start` on; empty for a place outside the sequence.
inline std::string Slice(const std::string& seq, int start, int length) {
    if (start < 0 || length <= 0 || start >= Length(seq)) return std::string();
    return seq.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

/// The first `length` bases, or all.
inline std::string FirstBases(const std::string& seq, int length) {
    return Slice(seq, 0, length);
}

}  // namespace lintara
