#include "store/gzstream.h"

#include <algorithm>
#include <cstring>

namespace lintara {

namespace {
const int kPutBack = 4;
}

gzstreambuf::gzstreambuf() : file(nullptr), buffer(), opened(false), mode(0) {
    setg(buffer + kPutBack, buffer + kPutBack, buffer + kPutBack);
}

gzstreambuf::~gzstreambuf() {
    close();
}

gzstreambuf* gzstreambuf::open(const char* name, int compression_level, int open_mode) {
    if (is_open()) return nullptr;
    const bool reads = (open_mode & std::ios::in) != 0;
    const bool writes = (open_mode & std::ios::out) != 0;
    if ((open_mode & std::ios::ate) || (open_mode & std::ios::app) || (reads && writes)) return nullptr;
    const int level = std::clamp(compression_level, 1, 9);
    const char text[] = {writes ? 'w' : 'r', 'b', static_cast<char>('0' + level), '\0'};
    file = gzopen(name, text);
    if (file == nullptr) return nullptr;
    mode = open_mode;
    opened = true;
    return this;
}

gzstreambuf* gzstreambuf::close() {
    if (!is_open()) return nullptr;
    sync();
    opened = false;
    return gzclose(file) == Z_OK ? this : nullptr;
}

gzstreambuf::int_type gzstreambuf::underflow() {
    if (gptr() && gptr() < egptr()) return traits_type::to_int_type(*gptr());
    if (!Readable()) return traits_type::eof();

    const int n_putback = static_cast<int>(std::min<std::ptrdiff_t>(gptr() - eback(), kPutBack));
    std::memmove(buffer + (kPutBack - n_putback), gptr() - n_putback, static_cast<std::size_t>(n_putback));

    const int count = gzread(file, buffer + kPutBack, bufferSize - kPutBack);
    if (count <= 0) return traits_type::eof();
    setg(buffer + (kPutBack - n_putback), buffer + kPutBack, buffer + kPutBack + count);
    return traits_type::to_int_type(*gptr());
}

std::streamsize gzstreambuf::xsgetn(char* to, std::streamsize count) {
    std::streamsize done = std::min<std::streamsize>(count, egptr() - gptr());
    std::memcpy(to, gptr(), static_cast<std::size_t>(done));
    gbump(static_cast<int>(done));
    // Where zlib meets damage it drops what that one call has unpacked already. Compressed data is therefore read in
    // the pieces of underflow(), so that the end of a damaged file doesn't depend on how it is read.
    const bool plain = Readable() && gzdirect(file);
    const std::streamsize piece = bufferSize - kPutBack;
    const std::streamsize largest = 1 << 30;
    while (Readable() && (plain ? done < count : count - done >= piece)) {
        const std::streamsize wanted = plain ? std::min(count - done, largest) : piece;
        const int got = gzread(file, to + done, static_cast<unsigned>(wanted));
        if (got <= 0) return done;
        done += got;
        // The get area is empty now; what can be put back are the last characters that went by.
        const std::ptrdiff_t fresh = std::min<std::ptrdiff_t>(got, kPutBack);
        const std::ptrdiff_t older = std::min<std::ptrdiff_t>(gptr() - eback(), kPutBack - fresh);
        char* const next = buffer + kPutBack;
        std::memmove(next - fresh - older, gptr() - older, static_cast<std::size_t>(older));
        std::memcpy(next - fresh, to + done - fresh, static_cast<std::size_t>(fresh));
        setg(next - fresh - older, next, next);
    }
    return done + (done < count ? std::streambuf::xsgetn(to + done, count - done) : 0);
}

// Nothing is ever written, so there is nothing to flush.
int gzstreambuf::sync() {
    return 0;
}

gzstreambase::gzstreambase() {
    init(&buf);
}

gzstreambase::gzstreambase(const char* name, int compression_level, int open_mode) {
    init(&buf);
    open(name, compression_level, open_mode);
}

gzstreambase::~gzstreambase() {
    buf.close();
}

void gzstreambase::open(const char* name, int compression_level, int open_mode) {
    if (!buf.open(name, compression_level, open_mode)) setstate(std::ios::failbit);
}

void gzstreambase::close() {
    if (buf.is_open() && !buf.close()) setstate(std::ios::failbit);
}

}  // namespace lintara
