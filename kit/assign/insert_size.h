// Insert size of a library: median of the fragment lengths of confident proper pairs, and 1.4826 times the median
// absolute deviation, which for a normal distribution is its standard deviation. A histogram is kept, so that the
// memory does not grow with the number of pairs.
#pragma once

#include <vector>

namespace lintara::kit {

struct InsertSize {
    double median = 0;     ///< bases
    double deviation = 0;  ///< bases
    long pairs = 0;        ///< 0: nothing is known, and no mate can be placed
};

class InsertHistogram {
  public:
    /// Fragments longer than this are not counted.
    static constexpr long kLongest = 100000;

    void Add(long length);
    InsertSize Size() const;

  private:
    std::vector<long> counts_;
    long total_ = 0;
};

}  // namespace lintara::kit
