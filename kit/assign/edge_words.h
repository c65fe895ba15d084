// Words of bases at the contig ends beside gaps. They tell quickly of any read whether it may hang over one of the
// ends, whatever place a mapper has given it.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "kit/assign/layout.h"

namespace lintara::kit {

class EdgeWords {
  public:
    static constexpr int kWord = 31;   ///< bases
    static constexpr long kZone = 64;  ///< bases at the end of a contig

    explicit EdgeWords(const Layout& layout);

    /// True when the read, or its reverse complement, holds a word of an end. Upper-case bases.
    bool Touches(const std::string& bases) const;

  private:
    void AddZone(const std::string& text, long start, long end);

    std::unordered_set<uint64_t> words_;  ///< of a word and its reverse complement the smaller one
    std::vector<uint64_t> sieve_;         ///< one bit for a hash of each word, so that most reads need no look-up
};

}  // namespace lintara::kit
