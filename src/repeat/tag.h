// The 6-base tags that the repeat detector, the unit extraction and the read correction count in. A tag's value is what
// seq2bit() gives for its bases; it indexes both the tag table (TagInfo) and the tag frequencies (freq).
#pragma once

#include <string>

#include "run/settings.h"

namespace lintara {

/// One above the largest value of a tag, which six bytes outside ACGT make.
inline constexpr int kTagValues = 5461;

/// Value of the tag that starts at `pos`, without a copy of its bases. A base outside ACGT has code 4, which spills
/// into the base before it, so the value may exceed 4095, but stays below kTagValues.
///
/// @param seq  bases
/// @param pos  0-based start, not negative; a tag that runs past the end of `seq` is made of the bases that are there
inline int TagAt(const std::string& seq, int pos) {
    const int size = static_cast<int>(seq.size());
    const int end = pos < size - TAGL ? pos + TAGL : size;
    int tag = 0;
    for (int i = pos; i < end; ++i) tag = (tag * 4) | alphabet[seq[i]];
    return tag;
}

/// Number of tags in `seq`, negative for a sequence shorter than 5 bases; compares as a signed int.
inline int TagNum(const std::string& seq) {
    return static_cast<int>(seq.size()) - (TAGL - 1);
}

}  // namespace lintara
