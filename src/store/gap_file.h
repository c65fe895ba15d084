// Reader of the gap file: its records one after the other, at the speed of the disk.
//
// What a record means is settled by stream extraction: five fields between any white space, which may lie on several
// lines, numbers with signs and limits, a last line without an end. Nearly all records are far plainer: a header line
// of five small numbers and a line of bases. These are taken straight out of a large buffer, and only what is in any
// way unusual goes through a stream on the same buffer.
#pragma once

#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

#include "store/gap.h"
#include "store/gzstream.h"

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

/// A large buffer in front of another, whose content can also be looked at in place.
class LookaheadBuffer : public std::streambuf {
  public:
    explicit LookaheadBuffer(std::streambuf& source);

    /// What is in the buffer and not yet consumed: [Begin(), End()).
    const char* Begin() const { return gptr(); }
    const char* End() const { return egptr(); }
    /// Consumes all in front of `to`, which lies in [Begin(), End()].
    void ConsumeTo(const char* to) { setg(eback(), eback() + (to - eback()), egptr()); }

    /// Reads on behind what is there. @return false when that brought nothing: the buffer is full, or the source ended
    bool Refill();

  protected:
    int_type underflow() override;

  private:
    std::streambuf& source_;
    std::unique_ptr<char[]> bytes_;
    bool ended_ = false;
};

/// The records of a gap file in order.
class GapFile {
  public:
    /// Opens the file; a failure ends the process, status -1, with "Fail to load file " and its name.
    explicit GapFile(const std::string& file);

    /// Extracts the five fields; false at the end of the file, and at a number that is malformed or does not fit.
    bool ReadHeader(GapHeader& header);

    /// Takes the rest of the header line and the sequence line. A file that ends here gives an empty sequence.
    ///
    /// @return the sequence line, which stands until the next call of ReadHeader()
    std::string_view ReadSequence();

    /// Number of the line on which the header stands that was read last, from 1.
    long HeaderLine() const { return header_line_; }

  private:
    bool ReadWholeRecord(GapHeader& header);
    bool ExtractHeader(GapHeader& header);
    void SkipSpace();

    igzstream file_;
    LookaheadBuffer buffer_;
    std::istream in_;
    std::string_view whole_;  // sequence of the record at hand if it was taken whole, else with a null pointer
    std::string name_;
    std::string rest_;
    std::string sequence_;
    long line_ = 1;
    long header_line_ = 1;
};

}  // namespace lintara
