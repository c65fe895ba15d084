// Placed reads that cover one column, for the tests of the votes.
#pragma once

#include <list>
#include <string>

#include "consensus/column.h"

namespace lintara::testing {

/// A read map in which column 5 is covered by one read of one base for each letter, and further reads lie elsewhere.
class CoveredColumn {
  public:
    explicit CoveredColumn(const std::string& letters, int elsewhere = 0) {
        for (const char letter : letters) Place(std::string(1, letter), 5);
        for (int i = 0; i < elsewhere; ++i) Place("A", 1000);
    }
    void Place(const std::string& seq, int start) {
        reads_.push_back(seq);
        map_[&reads_.back()] = start;
    }
    const ReadMap& Map() const { return map_; }

  private:
    std::list<std::string> reads_;
    ReadMap map_;
};

}  // namespace lintara::testing
