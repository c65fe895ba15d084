// Numbers and messages as text, without the toll of a stream for each of them. What comes out is what a stream writes
// by default.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "run/streams.h"

namespace lintara {

/// Room for what WriteNumber() writes at most: a 64-bit number with its sign.
const int kNumberRoom = 20;

/// Writes a whole number. @return the end of the text
template <typename Number>
char* WriteNumber(char* to, Number number) {
    return std::to_chars(to, to + kNumberRoom, number).ptr;
}

/// Room for what WriteRatio() and WriteDouble() write at most.
const int kRatioSize = 16;

/// Writes value / read_num, or 0 over no reads, as a stream prints a double by default. @return the end of the text
char* WriteRatio(char* to, int value, int read_num);

/// Writes a double as a stream prints it by default. @return the end of the text
char* WriteDouble(char* to, double number);

/// A ratio of two whole numbers, to be written by LogText.
struct RatioOf {
    int value;
    int of;
};

/// A text for a stream. Its parts gather in a buffer and go to the stream at once when the statement ends, so that no
/// part may write to the stream itself.
class StreamText {
  public:
    explicit StreamText(std::ostream& stream) : stream_(stream) {}
    StreamText(const StreamText&) = delete;
    StreamText& operator=(const StreamText&) = delete;
    ~StreamText() { Send(); }

    StreamText& operator<<(std::string_view part) {
        if (part.size() > kSize - size_) {
            Send();
            if (part.size() > kSize) {
                WriteText(stream_, part.data(), part.size());
                return *this;
            }
        }
        std::memcpy(text_ + size_, part.data(), part.size());
        size_ += part.size();
        return *this;
    }
    StreamText& operator<<(const std::string& part) { return *this << std::string_view(part); }
    StreamText& operator<<(const char* part) { return *this << std::string_view(part); }
    StreamText& operator<<(char part) { return *this << std::string_view(&part, 1); }
    StreamText& operator<<(int number) { return Number(number); }
    StreamText& operator<<(unsigned number) { return Number(number); }
    StreamText& operator<<(long number) { return Number(number); }
    StreamText& operator<<(unsigned long number) { return Number(number); }
    StreamText& operator<<(long long number) { return Number(number); }
    StreamText& operator<<(unsigned long long number) { return Number(number); }
    StreamText& operator<<(double number) {
        Reserve(kRatioSize);
        return EndAt(WriteDouble(text_ + size_, number));
    }
    StreamText& operator<<(RatioOf ratio) {
        Reserve(kRatioSize);
        return EndAt(WriteRatio(text_ + size_, ratio.value, ratio.of));
    }

  private:
    static constexpr std::size_t kSize = 480;

    template <typename Whole>
    StreamText& Number(Whole number) {
        Reserve(kNumberRoom);
        return EndAt(WriteNumber(text_ + size_, number));
    }
    void Reserve(std::size_t room) {
        if (room > kSize - size_) Send();
    }
    StreamText& EndAt(char* end) {
        size_ = static_cast<std::size_t>(end - text_);
        return *this;
    }
    void Send() {
        WriteText(stream_, text_, size_);
        size_ = 0;
    }

    std::ostream& stream_;
    std::size_t size_ = 0;
    char text_[kSize];
};

/// A message of the log.
class LogText : public StreamText {
  public:
    explicit LogText(int threadId) : StreamText(logFile[threadId]) {}
};

}  // namespace lintara
