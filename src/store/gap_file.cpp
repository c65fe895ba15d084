#include "store/gap_file.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

namespace lintara {

namespace {

const std::size_t kBufferSize = 1 << 17;

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Reads one to nine digits with a white space behind them. Somewhere behind `at` a line end must follow.
///
/// @return the place behind the digits; null for what is longer or followed by anything else
inline const char* PlainNumber(const char* at, Len_t& number) {
    const char* const first = at;
    Len_t value = 0;
    unsigned digit = 0;
    while ((digit = static_cast<unsigned char>(*at) - unsigned{'0'}) <= 9) {
        value = value * 10 + digit;  // wraps for a number that is turned down below
        ++at;
    }
    number = value;
    return at != first && at - first <= 9 && IsSpace(*at) ? at : nullptr;
}

inline const char* PlainNumber(const char* at, int& number) {
    const bool negative = *at == '-';
    Len_t value = 0;
    at = PlainNumber(negative ? at + 1 : at, value);
    if (at != nullptr) number = negative ? -static_cast<int>(value) : static_cast<int>(value);
    return at;
}

/// A plain number behind blanks or tabs; null when `at` is.
template <class Number>
inline const char* NextPlainNumber(const char* at, Number& number) {
    if (at == nullptr) return nullptr;
    while (*at == ' ' || *at == '\t') ++at;
    return PlainNumber(at, number);
}

/// Reads a header line whose five fields are plain numbers; false for any other. The line ends with '\n'.
bool PlainHeader(const char* at, GapHeader& header) {
    if (*at != '>') return false;
    header.marked = true;
    at = PlainNumber(at + 1, header.gap);
    at = NextPlainNumber(at, header.length);
    at = NextPlainNumber(at, header.position);
    at = NextPlainNumber(at, header.scaffold);
    return NextPlainNumber(at, header.contig) != nullptr;
}

const char* LineEnd(const char* from, const char* end) {
    return static_cast<const char*>(std::memchr(from, '\n', static_cast<std::size_t>(end - from)));
}

}  // namespace

LookaheadBuffer::LookaheadBuffer(std::streambuf& source)
    : source_(source), bytes_(std::make_unique_for_overwrite<char[]>(kBufferSize)) {
    setg(bytes_.get(), bytes_.get(), bytes_.get());
}

bool LookaheadBuffer::Refill() {
    if (ended_) return false;
    const std::size_t left = static_cast<std::size_t>(egptr() - gptr());
    std::memmove(bytes_.get(), gptr(), left);
    const std::streamsize room = static_cast<std::streamsize>(kBufferSize - left);
    const std::streamsize count = source_.sgetn(bytes_.get() + left, room);
    ended_ = count < room;
    setg(bytes_.get(), bytes_.get(), bytes_.get() + left + count);
    return count > 0;
}

LookaheadBuffer::int_type LookaheadBuffer::underflow() {
    if (gptr() == egptr() && !Refill()) return traits_type::eof();
    return traits_type::to_int_type(*gptr());
}

GapFile::GapFile(const std::string& file)
    : file_(file.c_str(), 0, std::ios::in), buffer_(*file_.rdbuf()), in_(&buffer_) {
    // Else running out of memory in the middle of a line looks like the end of the file. Nothing else sets this bit.
    in_.exceptions(std::ios::badbit);
    if (file_) return;
    std::cerr << "Fail to load file " << file << std::endl;
    std::exit(-1);
}

bool GapFile::ReadHeader(GapHeader& header) {
    return ReadWholeRecord(header) || ExtractHeader(header);
}

/// Takes a record of the plain shape that lies in the buffer with both its lines; changes nothing for any other.
bool GapFile::ReadWholeRecord(GapHeader& header) {
    whole_ = {};
    if (!in_.good()) return false;
    for (;;) {
        const char* const end = buffer_.End();
        const char* at = buffer_.Begin();
        long lines = 0;
        for (; at != end && IsSpace(*at); ++at) {
            if (*at == '\n') ++lines;
        }
        const char* const header_end = LineEnd(at, end);
        const char* const sequence_end = header_end == nullptr ? nullptr : LineEnd(header_end + 1, end);
        if (sequence_end != nullptr) {
            if (!PlainHeader(at, header)) return false;
            line_ += lines;
            header_line_ = line_;
            whole_ = {header_end + 1, static_cast<std::size_t>(sequence_end - (header_end + 1))};
            return true;
        }
        if (!buffer_.Refill()) return false;
    }
}

bool GapFile::ExtractHeader(GapHeader& header) {
    SkipSpace();
    header_line_ = line_;
    if (!(in_ >> name_)) return false;
    header.marked = name_[0] == '>';
    header.gap = std::atoi(name_.c_str() + 1);
    SkipSpace();
    if (!(in_ >> header.length)) return false;
    SkipSpace();
    if (!(in_ >> header.position)) return false;
    SkipSpace();
    if (!(in_ >> header.scaffold)) return false;
    SkipSpace();
    return static_cast<bool>(in_ >> header.contig);
}

// Extraction passes over white space itself; this only counts the lines that go by.
void GapFile::SkipSpace() {
    for (int c = buffer_.sgetc(); c != std::char_traits<char>::eof() && IsSpace(static_cast<char>(c));
         c = buffer_.snextc()) {
        if (c == '\n') ++line_;
    }
}

std::string_view GapFile::ReadSequence() {
    line_ += 2;
    if (whole_.data() != nullptr) {
        buffer_.ConsumeTo(whole_.data() + whole_.size() + 1);
        return whole_;
    }
    std::getline(in_, rest_);
    sequence_.clear();
    std::getline(in_, sequence_);
    return sequence_;
}

}  // namespace lintara
