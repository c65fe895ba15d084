// A tag table written by hand, for the join tests.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "kmer/overlap_matrix.h"
#include "repeat/tag_info.h"
#include "run/settings.h"

namespace lintara::testing {

class TagTable {
  public:
    TagTable() : records_(TAG), info_(records_.data()) {}
    TagTable(const TagTable&) = delete;
    TagTable& operator=(const TagTable&) = delete;

    /// Lets the 6-base tag recur at these distances.
    void Set(const std::string& tag, const std::vector<int>& distances) {
        arrays_.push_back(distances);
        TagInfo& record = records_.at(seq2bit(tag));
        record.distancesArr = arrays_.back().data();
        record.differentDistanceNum = static_cast<int>(distances.size());
    }

    /// Lets every tag of the sequence recur at this one distance.
    void SetAll(const std::string& seq, int distance) {
        for (std::size_t pos = 0; pos + TAGL <= seq.size(); ++pos) Set(seq.substr(pos, TAGL), {distance});
    }

    /// The table as the functions under test take it.
    TagInfo*& Info() { return info_; }

  private:
    std::vector<TagInfo> records_;
    std::deque<std::vector<int>> arrays_;
    TagInfo* info_;
};

}  // namespace lintara::testing
