// A random stream of its own for every decision of every scaffold, contig and gap, so that an option changes what it is
// about and leaves the rest of the files as it was.
#pragma once

#include <cstdint>

#include "simulate/random.h"
#include "simulate/simulate.h"

namespace lintara::simulate {

enum class Purpose : std::uint64_t {
    kFamilies,
    kGapCount,
    kContigLength,
    kGap,
    kStated,
    kBases,
    kRepeat,
    kCase,
    kHasReads,
    kReads,
    kWrongReads,
    kHole,
    kPositions,
    kErrors,
    kInterleave,
};

inline Random Stream(const Options& options, Purpose purpose, int scaffold = 0, std::int64_t index = 0) {
    return Random{options.seed, static_cast<std::uint64_t>(purpose), static_cast<std::uint64_t>(scaffold),
                  static_cast<std::uint64_t>(index)};
}

/// Nearest integer, halves upwards.
std::int64_t Rounded(double value);

/// So many random bases.
std::string RandomBases(Random& random, std::int64_t size);

}  // namespace lintara::simulate
