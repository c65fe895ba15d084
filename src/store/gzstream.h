// An input stream over zlib's gzip file interface. The library settles on opening whether a file is compressed and
// hands plain files through as they are, so that one stream reads both. Only the read side exists.
#pragma once

#include <zlib.h>

#include <istream>
#include <streambuf>

namespace lintara {

/// Stream buffer over a gzFile. Errors in the data look like the end of the file.
class gzstreambuf : public std::streambuf {
  public:
    static const int bufferSize = 47 + 256;  ///< bytes; the first 4 are the put-back area

    gzstreambuf();
    ~gzstreambuf() override;
    gzstreambuf(const gzstreambuf&) = delete;
    gzstreambuf& operator=(const gzstreambuf&) = delete;

    bool is_open() const { return opened; }
    /// Whether the file is handed through as it is.
    bool uncompressed() const { return Readable() && gzdirect(file) != 0; }

    /// Opens a file.
    ///
    /// @param compression_level  brought into 1..9
    /// @param open_mode          reading; neither append nor at-end, nor reading and writing together
    /// @return this, or null if already open, for a mode that cannot be had, or if the file cannot be opened
    gzstreambuf* open(const char* name, int compression_level, int open_mode);

    /// Closes the file if it is open. @return this, or null if it was not open or zlib reported an error
    gzstreambuf* close();

  protected:
    int_type underflow() override;
    /// Reads many bytes at once without a detour over the buffer.
    std::streamsize xsgetn(char* to, std::streamsize count) override;
    int sync() override;

  private:
    bool Readable() const { return opened && (mode & std::ios::in) != 0; }

    gzFile file;
    char buffer[bufferSize];
    bool opened;
    int mode;
};

/// Owner of the buffer, a virtual base so that it is built before the stream that reads through it.
class gzstreambase : virtual public std::ios {
  public:
    gzstreambase();
    gzstreambase(const char* name, int compression_level, int open_mode);
    ~gzstreambase() override;

    /// Opens the buffer; a failure sets the fail state.
    void open(const char* name, int compression_level, int open_mode);
    /// Closes the buffer; a failure sets the fail state. The program does not call it: the destructor closes, too.
    void close();
    gzstreambuf* rdbuf() { return &buf; }

  protected:
    gzstreambuf buf;
};

/// Input stream on a plain or gzip-compressed file; operator! is true when it could not be opened.
class igzstream : public gzstreambase, public std::istream {
  public:
    igzstream() : std::istream(&buf) {}
    igzstream(const char* name, int compression_level, int open_mode)
        : gzstreambase(name, compression_level, open_mode), std::istream(&buf) {
        // Attaching the buffer clears the state that a failed open has set.
        if (!buf.is_open()) setstate(std::ios::failbit);
    }
    gzstreambuf* rdbuf() { return gzstreambase::rdbuf(); }
};

}  // namespace lintara
