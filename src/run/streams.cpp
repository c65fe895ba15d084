#include "run/streams.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <streambuf>

#include "run/settings.h"

namespace lintara {

std::ofstream* logFile = nullptr;
std::ofstream* fout = nullptr;
std::ofstream* snp = nullptr;

namespace {

/// Collects text and hands it on to a file in whole lines.
class LineBuffer : public std::streambuf {
  public:
    explicit LineBuffer(std::filebuf& file) : file_(file) {}

  protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        const char one = traits_type::to_char_type(c);
        return xsputn(&one, 1) == 1 ? c : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize size) override {
        text_.append(text, static_cast<std::size_t>(size));
        if (text_.size() < kEnough ||
            std::char_traits<char>::find(text, static_cast<std::size_t>(size), '\n') == nullptr) {
            return size;
        }
        return Write(text_.rfind('\n') + 1) ? size : 0;
    }

    int sync() override { return Write(text_.size()) ? 0 : -1; }

  private:
    static constexpr std::size_t kEnough = 1 << 16;

    bool Write(std::size_t size) {
        const std::streamsize count = static_cast<std::streamsize>(size);
        const bool good = file_.sputn(text_.data(), count) == count && file_.pubsync() == 0;
        text_.erase(0, size);
        return good;
    }

    std::filebuf& file_;
    std::string text_;
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
