// One gap with all that a strategy needs, built from the bytes of a fuzz input. Bytes are steps of a recipe and not
// bases, so that most inputs are gaps whose reads overlap: a genome is put together from random stretches, literal
// bases, tandem repeats and copies of itself; two contigs are cut from it; and reads are drawn over the gap, in runs or
// one by one, with errors and noise in their positions. Whatever the bytes, the gap is one that the loaders accept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara::fuzz {

/// Lengths of a gap, bases, both included.
struct LengthRange {
    int low;
    int high;
};

/// Settings of a run with options.
struct OptionBytes {
    bool used = false;
    std::uint8_t bytes[8] = {};  ///< -r -k -a -M -e -E -f -m; see gap_input.cpp
};

struct GapInput {
    OptionBytes options;
    int gap_length = 0;
    std::string before;
    std::string after;
    std::vector<Read> reads;
};

/// Sets the run-wide settings to legal values that the bytes choose; nothing without options.
void ApplyOptions(const OptionBytes& options);

/// The command line words for the present settings.
std::string OptionText();

/// Builds a gap. ReadLen must be set, since the small and the middle range hang on it.
GapInput Decode(const std::uint8_t* data, std::size_t size, LengthRange lengths);

/// The options of an input, which stand at its start.
OptionBytes DecodeOptions(const std::uint8_t* data, std::size_t size);

/// Bytes that Decode() turns into this gap again, but for letters that are no base, for contigs beyond 1,000 bases and
/// for what goes beyond the bounds of an input.
std::vector<std::uint8_t> Encode(const GapInput& gap, LengthRange lengths);

/// Writes gap.fa, contig.fa and args, with which the program itself treats this gap.
void WriteFiles(const GapInput& gap, const std::string& directory);

}  // namespace lintara::fuzz
