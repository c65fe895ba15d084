#include "run/streams.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <streambuf>
#include <utility>

#include "run/settings.h"

namespace lintara {

std::ofstream* logFile = nullptr;
std::ofstream* fout = nullptr;
std::ofstream* snp = nullptr;

namespace {

/// The place behind the last line end of a text; its start when there is none.
const char* BehindLines(const char* text, const char* end) {
    while (end != text && end[-1] != '\n') --end;
    return end;
}

/// Collects text and hands it on to a file in whole lines. Its put area is what is free of the first kRoom bytes; a
/// line that is longer is collected in a larger room until it ends.
class LineBuffer : public std::streambuf {
  public:
    explicit LineBuffer(std::filebuf& file) : file_(file) { MoveTo(kRoom); }

  protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        const char one = traits_type::to_char_type(c);
        return xsputn(&one, 1) == 1 ? c : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override {
        if (size <= epptr() - pptr()) {
            Append(text, text + size);
            return size;
        }
        return MakeRoomFor(text, text + size) ? size : 0;
    }

    int sync() override { return WriteUpTo(pptr()) ? 0 : -1; }

  private:
    // The larger the pieces, the less the file system asks for a byte.
    static constexpr std::ptrdiff_t kRoom = 1 << 17;  // bytes

    std::ptrdiff_t Used() const { return pptr() - room_.get(); }
    void SetUsed(std::ptrdiff_t used) { setp(room_.get() + used, room_.get() + std::max(used, kRoom)); }

    /// Collects a text for which the put area is too small, behind what stands in front of it.
    bool MakeRoomFor(const char* text, const char* end) {
        // Beyond kRoom stands the begin of a long line and nothing else.
        if (Used() <= kRoom && !WriteUpTo(BehindLines(room_.get(), pptr()))) return false;
        if (end - text > epptr() - pptr()) {
            const char* const lines_end = BehindLines(text, end);
            if (Used() > 0 && lines_end != text) {
                Append(text, lines_end);
                if (!WriteUpTo(pptr())) return false;
            } else if (!Write(text, lines_end)) {
                return false;
            }
            text = lines_end;
        }
        Append(text, end);
        return true;
    }

    void Append(const char* from, const char* to) {
        const std::ptrdiff_t used = Used() + (to - from);
        if (used > size_) MoveTo(std::max(used, 2 * size_));
        std::memcpy(pptr(), from, static_cast<std::size_t>(to - from));
        SetUsed(used);
    }

    void MoveTo(std::ptrdiff_t size) {
        std::unique_ptr<char[]> room = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(size));
        const std::ptrdiff_t used = room_ == nullptr ? 0 : Used();
        std::copy_n(room_.get(), used, room.get());
        room_ = std::move(room);
        size_ = size;
        SetUsed(used);
    }

    bool Write(const char* from, const char* to) {
        return from == to || (file_.sputn(from, to - from) == to - from && file_.pubsync() == 0);
    }

    /// Writes what was collected up to a place, and moves the rest to the front.
    bool WriteUpTo(const char* place) {
        const bool good = Write(room_.get(), place);
        const std::ptrdiff_t left = pptr() - place;
        std::memmove(room_.get(), place, static_cast<std::size_t>(left));
        SetUsed(left);
        if (left <= kRoom && size_ > kRoom) MoveTo(kRoom);
        return good;
    }

    std::filebuf& file_;
    std::unique_ptr<char[]> room_;
    std::ptrdiff_t size_ = 0;  // of the room
};

// The buffers of the streams that were opened. The main thread alone opens, and nothing is ever freed, since other
// workers may still write when one of them ends the process.
auto& buffers = *new std::map<const std::ofstream*, std::unique_ptr<LineBuffer>>;

thread_local int owned = -1;

// exit() runs this on the thread that called it, so no other worker's stream is touched.
void FlushOwnedStreams() {
    if (owned < 0 || logFile == nullptr) return;
    logFile[owned].flush();
    fout[owned].flush();
    snp[owned].flush();
}

}  // namespace

void OpenStream(std::ofstream& stream, const std::string& path) {
    std::unique_ptr<LineBuffer>& buffer = buffers[&stream];
    buffer = std::make_unique<LineBuffer>(*stream.rdbuf());
    static_cast<std::ios&>(stream).rdbuf(buffer.get());
    stream.open(path);
}

void WriteText(std::ostream& stream, const char* text, std::size_t size) {
    const std::streamsize count = static_cast<std::streamsize>(size);
    if (stream.good() && stream.rdbuf()->sputn(text, count) != count) stream.setstate(std::ios::badbit);
    if (stream.flags() & std::ios::unitbuf) stream.flush();
}

void CloseStream(std::ofstream& stream) {
    stream.flush();
    stream.close();
}

void OwnStreams(int threadId) {
    static std::once_flag registered;
    std::call_once(registered, [] { std::atexit(FlushOwnedStreams); });
    owned = threadId;
}

void FailedWrite(const std::string& name) {
    std::cerr << "Failed to write " + name + "\n" << std::flush;
    // Other workers may still be at work and more data may wait for the stream that failed: tear nothing down.
    _exit(1);
}

void CheckStreams(int threadId) {
    const std::string number = std::to_string(threadId + 1);
    if (!logFile[threadId]) FailedWrite(out_file + "/Log/log.thread" + number);
    if (!fout[threadId]) FailedWrite(out_file + "/FilledScaf/seq.thread" + number);
    if (!snp[threadId]) FailedWrite(out_file + "/Snp/snp.thread" + number);
}

void CheckStandardOutput() {
    if (!std::cout.flush()) FailedWrite("the standard output");
}

}  // namespace lintara
