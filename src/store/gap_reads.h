// The reads of a gap, fetched from the gap file when their gap is treated. The file is counted record by record before
// the work begins, and a gap whose records stand together and in plain shape needs no more than their place until
// then. So the store never holds more reads than the workers work on, whatever the size of the file, and fetching them
// is work that the threads share. A compressed file has no places to go to; of such a one the text is kept.
//
// LoadGapPlaces() in load.h decides whether a file allows this. For one that does not, all reads are loaded into the
// store at once, and nothing here has an effect.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/gap.h"
#include "store/kept_text.h"

namespace lintara {

/// The records of one gap in the gap file, one behind the other.
struct GapPlace {
    int gap = 0;              ///< gap id
    std::uint64_t begin = 0;  ///< bytes in front of the first record
    std::uint64_t end = 0;    ///< bytes in front of what stands behind the last record
};

/// Whether one can go to a place in a file, which a pipe does not allow. Does not open it.
bool HasPlaces(const std::string& file);

/// Opens the gap file for fetching.
///
/// @param file    one with places
/// @param places  of all gaps with reads, no id twice
/// @return false when it cannot be opened; nothing is fetched then
bool OpenGapPlaces(const std::string& file, std::vector<GapPlace> places);

/// Has the reads fetched from the text of a compressed gap file instead.
void OpenGapPlaces(KeptText text, std::vector<GapPlace> places);

/// Forgets all places, and the text.
void CloseGapPlaces();

/// The arrays that the reads and positions of a gap are fetched into. A thread lends them to one gap after the other,
/// so that it asks for memory only while a gap has more or longer reads than those before it.
struct FetchedReads {
    std::vector<std::string> reads{};
    std::vector<int> position{};
};

/// Has the reads and positions of a gap in the store for as long as it lives.
class GapReads {
  public:
    /// Fetches them, if they are still in the file. A file that has changed since it was counted ends the process,
    /// status -1, with "Fail to load file " and its name.
    explicit GapReads(Gap& gap);
    ~GapReads();
    GapReads(const GapReads&) = delete;
    GapReads& operator=(const GapReads&) = delete;

  private:
    Gap& gap_;
    FetchedReads fetched_;  // empty unless the reads were fetched
};

}  // namespace lintara
