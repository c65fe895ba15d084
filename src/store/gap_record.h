// One record of the gap file in its plain shape, straight out of a buffer: a header line of five small numbers between
// single blanks or tabs, anything behind them, and a line of bases. What is in any way unusual is no such record; see
// gap_file.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "store/gap.h"

namespace lintara {

/// The header line of a record in the gap file.
struct GapHeader {
    bool marked = false;  ///< whether the first field begins with '>'
    int gap = 0;          ///< gap id
    Len_t length = 0;     ///< bases
    int position = 0;
    int scaffold = 0;  ///< scaffold id
    int contig = 0;    ///< index of the contig in front of the gap
};

/// What the store keeps of a sequence line: a last character that is neither a base nor `N` goes, unless it is the
/// only one.
std::string_view StoredSequence(std::string_view line);

/// Bytes of the buffers that records are taken off, and so the size of the largest record taken whole.
inline constexpr std::size_t kRecordRoom = 1 << 17;

/// Bytes of a buffer that must be readable behind the records.
inline constexpr std::size_t kRecordSlack = 16;

/// Takes plain records off a buffer, one after the other.
class PlainRecords {
  public:
    /// Takes the record at `at`.
    ///
    /// @param end       end of what is there, with kRecordSlack bytes behind; they are zeros if the last record may
    ///                  be cut
    /// @param header    out; of no meaning when there is no record
    /// @param sequence  out: the second line
    /// @return the place behind the record's second line end; null when the record is not plain or ends beyond `end`
    const char* Take(const char* at, const char* end, GapHeader& header, std::string_view& sequence);

    /// Passes over the records at `at` that differ from the one taken last in position and bases alone and have two
    /// bases or more.
    ///
    /// @param at  in/out: the place behind them; not moved when there is none
    /// @return number of records
    Len_t PassRepeated(const char*& at, const char* end) const;

    /// The same for `most` records at most, whose sequences and positions are stored in two arrays.
    Len_t StoreRepeated(const char*& at, const char* end, Len_t most, std::string* reads, int* position) const;

  private:
    /// A stretch of text that is compared as two words.
    struct Stretch {
        std::uint64_t text[2] = {1, 1};  ///< before a stretch is set: what no masked text is
        std::uint64_t mask[2] = {0, 0};
        std::size_t size = 0;

        void Set(const char* from, const char* to);
        bool StandsAt(const char* at) const;
    };

    const char* TakeRepeatedHeader(const char* at, const char* end, int& position) const;
    template <class Visit>
    Len_t EachRepeated(const char*& at, const char* end, Len_t most, const Visit& visit) const;
    const char* TakeHeader(const char* at, const char* end, GapHeader& header);

    // Records of one gap follow each other and differ in their position alone, so the text around the position is
    // compared with that of the header before instead of being read.
    GapHeader last_;
    Stretch front_;
    Stretch back_;
};

}  // namespace lintara
