#include "kit/assign/insert_size.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>

namespace lintara::kit {

namespace {

constexpr double kDeviationOfMad = 1.4826;

/// Median of values given with their counts in ascending order of the values.
double Median(const std::map<double, long>& counts, long total) {
    long low = (total - 1) / 2;
    long high = total / 2;
    double first = 0;
    long seen = 0;
    bool haveFirst = false;
    for (const auto& [value, count] : counts) {
        seen += count;
        if (!haveFirst && seen > low) {
            first = value;
            haveFirst = true;
        }
        if (seen > high) return (first + value) / 2;
    }
    return first;
}

}  // namespace

void InsertHistogram::Add(long length) {
    if (length < 1 || length > kLongest) return;
    if (static_cast<size_t>(length) >= counts_.size()) counts_.resize(static_cast<size_t>(length) + 1);
    ++counts_[static_cast<size_t>(length)];
    ++total_;
}

InsertSize InsertHistogram::Size() const {
    if (total_ == 0) return {};
    std::map<double, long> lengths;
    for (size_t i = 0; i < counts_.size(); ++i) {
        if (counts_[i] > 0) lengths[static_cast<double>(i)] = counts_[i];
    }
    double median = Median(lengths, total_);
    std::map<double, long> distances;
    for (const auto& [length, count] : lengths) distances[std::abs(length - median)] += count;
    return {median, kDeviationOfMad * Median(distances, total_), total_};
}

}  // namespace lintara::kit
