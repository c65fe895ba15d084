#include <charconv>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "simulate/simulate.h"

namespace lintara::simulate {

namespace {

// Bounds that keep every product and sum of lengths far inside 64 bits.
constexpr int kMostScaffolds = 10'000'000;
constexpr int kMostGaps = 1'000'000;
constexpr int kMostLength = 10'000'000;
constexpr int kMostUnit = 10'000;
constexpr int kMostReadLength = 1'000'000;
constexpr double kMostCoverage = 100'000;
constexpr double kMostNoise = 1'000'000;

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == ',') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// Reads a number that fills the whole text.
bool Parse(std::string_view text, std::int64_t& value) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && stop == text.data() + text.size();
}

bool Parse(std::string_view text, double& value) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && stop == text.data() + text.size();
}

template <typename Number>
void CheckRange(const char* option, Number value, Number low, Number high) {
    // Put so that a value that is not a number fails as well.
    if (value >= low && value <= high) return;
    std::ostringstream message;
    message.imbue(std::locale::classic());
    message << option << ": " << value << " is not between " << std::fixed;
    message.precision(0);
    message << low << " and " << high;
    throw std::runtime_error(message.str());
}

void CheckShare(const char* option, double value) {
    CheckRange(option, value, 0.0, 1.0);
}

}  // namespace

std::vector<LengthClass> ParseLengthClasses(const std::string& text) {
    std::vector<LengthClass> classes;
    for (const std::string& part : Split(text)) {
        const std::size_t dash = part.find('-');
        const std::size_t colon = part.find(':');
        LengthClass length;
        if (dash == std::string::npos || colon == std::string::npos || colon < dash ||
            !Parse(std::string_view(part).substr(0, dash), length.low) ||
            !Parse(std::string_view(part).substr(dash + 1, colon - dash - 1), length.high) ||
            !Parse(std::string_view(part).substr(colon + 1), length.weight)) {
            throw std::runtime_error("--gap-lengths: not of the form LO-HI:WEIGHT: " + part);
        }
        classes.push_back(length);
    }
    return classes;
}

std::vector<int> ParseUnits(const std::string& text) {
    std::vector<int> units;
    for (const std::string& part : Split(text)) {
        std::int64_t unit = 0;
        if (!Parse(part, unit)) throw std::runtime_error("--tandem-units: not a number: " + part);
        CheckRange<std::int64_t>("--tandem-units", unit, 1, kMostUnit);
        units.push_back(static_cast<int>(unit));
    }
    return units;
}

void CheckOptions(const Options& o) {
    CheckRange("--scaffolds", o.scaffolds, 1, kMostScaffolds);
    CheckRange("--gaps", o.gaps, 0, kMostGaps);
    CheckShare("--no-gaps", o.no_gaps);
    CheckRange("--contig", o.contig, 20, kMostLength);
    CheckShare("--short-contigs", o.short_contigs);
    CheckShare("--lower", o.lower);

    if (o.gap_lengths.empty()) throw std::runtime_error("--gap-lengths: no class");
    double weights = 0;
    for (const LengthClass& length : o.gap_lengths) {
        CheckRange<std::int64_t>("--gap-lengths", length.low, 1, kMostLength);
        CheckRange<std::int64_t>("--gap-lengths", length.high, length.low, kMostLength);
        CheckRange("--gap-lengths", length.weight, 0.0, 1e6);
        weights += length.weight;
    }
    if (weights <= 0) throw std::runtime_error("--gap-lengths: all weights are 0");
    CheckShare("--overlaps", o.overlaps);
    CheckShare("--zero", o.zero);
    CheckShare("--one", o.one);
    if (o.overlaps + o.zero > 1) throw std::runtime_error("--overlaps and --zero: more than 1 together");
    CheckRange("--length-noise", o.length_noise, 0.0, 100.0);
    CheckShare("--tandem", o.tandem);
    if (o.tandem_units.empty()) throw std::runtime_error("--tandem-units: no unit");
    for (const int unit : o.tandem_units) CheckRange("--tandem-units", unit, 1, kMostUnit);
    CheckShare("--dispersed", o.dispersed);
    if (o.tandem + o.dispersed > 1) throw std::runtime_error("--tandem and --dispersed: more than 1 together");

    CheckShare("--no-reads", o.no_reads);
    CheckRange("--read-length", o.read_length, kShortestRead, kMostReadLength);
    CheckShare("--long-reads", o.long_reads);
    CheckShare("--short-reads", o.short_reads);
    CheckRange("--coverage", o.coverage, 0.0, kMostCoverage);
    CheckShare("--holes", o.holes);
    CheckShare("--error", o.error);
    CheckShare("--n-rate", o.n_rate);
    if (o.error + o.n_rate > 1) throw std::runtime_error("--error and --n-rate: more than 1 together");
    CheckShare("--wrong-reads", o.wrong_reads);
    CheckRange("--position-noise", o.position_noise, 0.0, kMostNoise);
}

}  // namespace lintara::simulate
