#include "store/gap_file.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

namespace lintara {

namespace {

// Bytes that are enough unless a record is long: few enough to stay in the nearest cache.
const std::size_t kFirstRoom = 1 << 15;

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool HoldsTwoLines(const char* at, const char* end) {
    for (int lines = 0; lines < 2; ++lines) {
        at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        if (at == nullptr) return false;
        ++at;
    }
    return true;
}

}  // namespace

LookaheadBuffer::LookaheadBuffer(std::streambuf& source)
    : source_(source), room_(kFirstRoom), bytes_(std::make_unique_for_overwrite<char[]>(room_ + kRecordSlack)) {
    setg(bytes_.get(), bytes_.get(), bytes_.get());
}

bool LookaheadBuffer::Refill() {
    if (ended_) return false;
    const std::size_t left = static_cast<std::size_t>(egptr() - gptr());
    if (left > room_ / 2 && room_ < kRecordRoom) {
        room_ = kRecordRoom;
        std::unique_ptr<char[]> larger = std::make_unique_for_overwrite<char[]>(room_ + kRecordSlack);
        std::memcpy(larger.get(), gptr(), left);
        bytes_ = std::move(larger);
    } else {
        std::memmove(bytes_.get(), gptr(), left);
    }
    const std::streamsize room = static_cast<std::streamsize>(room_ - left);
    const std::streamsize count = source_.sgetn(bytes_.get() + left, room);
    ended_ = count < room;
    read_ += static_cast<std::uint64_t>(count);
    if (kept_ != nullptr) kept_->Append(bytes_.get() + left, static_cast<std::size_t>(count));
    std::memset(bytes_.get() + left + count, 0, kRecordSlack);
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
    compressed_ = !file_.rdbuf()->uncompressed();
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
    in_place_ = false;
    if (!in_.good()) return false;
    for (;;) {
        const char* const end = buffer_.End();
        const char* at = buffer_.Begin();
        long lines = 0;
        for (; at != end && IsSpace(*at); ++at) {
            if (*at == '\n') ++lines;
        }
        if (plain_.Take(at, end, header, whole_) != nullptr) {
            line_ += lines;
            header_line_ = line_;
            in_place_ = at == buffer_.Begin();
            return true;
        }
        if (HoldsTwoLines(at, end) || !buffer_.Refill()) return false;
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

Len_t GapFile::PassRepeated() {
    // The record that was taken last has set the text to compare with, unless that was one of the odd ones.
    if (whole_.data() == nullptr || !in_place_) return 0;
    const char* at = buffer_.Begin();
    const Len_t count = plain_.PassRepeated(at, buffer_.End());
    buffer_.ConsumeTo(at);
    line_ += 2L * count;
    return count;
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
