// What the repeat detector's caller owns, for the tests: a fresh tag table and tag frequencies, freed with the object.
#pragma once

#include <string>

#include "kmer/overlap_matrix.h"
#include "repeat/type.h"
#include "run/settings.h"

namespace lintara::testing {

struct TagTable {
    TagInfo* tagInfo = new TagInfo[TAG];
    int* freq = new int[TAG]();

    TagTable() = default;
    TagTable(const TagTable&) = delete;
    TagTable& operator=(const TagTable&) = delete;
    ~TagTable() {
        FreetagInfo(tagInfo);
        delete[] freq;
    }

    /// Makes `tag` recur once at `distance`.
    void Mark(const std::string& tag, int distance) { AddDistance(tagInfo, seq2bit(tag), distance); }
    TagInfo& Info(const std::string& tag) { return tagInfo[seq2bit(tag)]; }
    int& Freq(const std::string& tag) { return freq[seq2bit(tag)]; }
};

}  // namespace lintara::testing
