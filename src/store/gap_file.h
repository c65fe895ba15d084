// Reader of the gap file: its records one after the other, at the speed of the disk.
//
// What a record means is settled by stream extraction: five fields between any white space, which may lie on several
// lines, numbers with signs and limits, a last line without an end. Nearly all records are far plainer: a header line
// of five small numbers and a line of bases. These are taken straight out of a large buffer, and only what is in any
// way unusual goes through a stream on the same buffer.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>

#include "store/gap_record.h"
#include "store/gzstream.h"
#include "store/kept_text.h"

namespace lintara {

/// A large buffer in front of another, whose content can also be looked at in place.
class LookaheadBuffer : public std::streambuf {
  public:
    explicit LookaheadBuffer(std::streambuf& source);

    /// What is in the buffer and not yet consumed: [Begin(), End()). From the first Refill() on, kRecordSlack zeros
    /// stand behind.
    const char* Begin() const { return gptr(); }
    const char* End() const { return egptr(); }
    /// Consumes all in front of `to`, which lies in [Begin(), End()].
    void ConsumeTo(const char* to) { setg(eback(), eback() + (to - eback()), egptr()); }

    /// Has what the source gives from now on appended to a text; null to end that.
    void Keep(KeptText* text) { kept_ = text; }

    /// Bytes of the source in front of Begin().
    std::uint64_t Offset() const { return read_ - static_cast<std::uint64_t>(egptr() - gptr()); }

    /// Reads on behind what is there, in a larger room if that is needed. @return false when that brought nothing: the
    /// buffer is full, or the source ended
    bool Refill();

  protected:
    int_type underflow() override;

  private:
    std::streambuf& source_;
    std::size_t room_;
    std::unique_ptr<char[]> bytes_;
    KeptText* kept_ = nullptr;
    std::uint64_t read_ = 0;  // bytes that the source has given so far
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

    /// Takes the records behind the one that was read last which are as plain as that one and differ from it in
    /// position and bases alone, with two bases or more, as far as they are at hand.
    ///
    /// @return number of records
    Len_t PassRepeated();

    /// Whether the file is compressed.
    bool Compressed() const { return compressed_; }

    /// Has what is read from now on appended to a text, uncompressed; null to end that.
    void Keep(KeptText* text) { buffer_.Keep(text); }

    /// Whether the record that ReadHeader() found last is plain and stands right behind the one before it.
    bool InPlace() const { return in_place_; }

    /// Bytes of the file, uncompressed, in front of what was not taken yet.
    std::uint64_t Offset() const { return buffer_.Offset(); }

    /// Number of the line on which the header stands that was read last, from 1.
    long HeaderLine() const { return header_line_; }

  private:
    bool ReadWholeRecord(GapHeader& header);
    bool ExtractHeader(GapHeader& header);
    void SkipSpace();

    igzstream file_;
    LookaheadBuffer buffer_;
    std::istream in_;
    PlainRecords plain_;
    std::string_view whole_;  // sequence of the record at hand if it was taken whole, else with a null pointer
    bool compressed_ = false;
    bool in_place_ = false;
    std::string name_;
    std::string rest_;
    std::string sequence_;
    long line_ = 1;
    long header_line_ = 1;
};

}  // namespace lintara
