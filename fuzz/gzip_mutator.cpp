// Mutates compressed inputs below the compression: most of the time the text is taken out, mutated and packed again,
// since a change of a compressed byte mostly ends the reading at its check sum.
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace {

constexpr int kGzip = 15 + 16;  // window bits that ask zlib for a gzip head
constexpr std::size_t kMostText = 1 << 16;

/// What can be taken out of the first member, in a buffer with room for more; false when there is nothing.
bool Unpack(const std::uint8_t* data, std::size_t size, std::vector<std::uint8_t>& text, std::size_t& text_size) {
    z_stream stream{};
    if (inflateInit2(&stream, kGzip) != Z_OK) return false;
    text.resize(kMostText);
    stream.next_in = const_cast<std::uint8_t*>(data);
    stream.avail_in = static_cast<unsigned>(size);
    stream.next_out = text.data();
    stream.avail_out = static_cast<unsigned>(text.size());
    inflate(&stream, Z_SYNC_FLUSH);
    text_size = stream.total_out;
    inflateEnd(&stream);
    return text_size > 0;
}

/// 0 when the room does not suffice.
std::size_t Pack(const std::vector<std::uint8_t>& text, std::size_t text_size, int level, std::uint8_t* to,
                 std::size_t room) {
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY) != Z_OK) return 0;
    stream.next_in = const_cast<std::uint8_t*>(text.data());
    stream.avail_in = static_cast<unsigned>(text_size);
    stream.next_out = to;
    stream.avail_out = static_cast<unsigned>(room);
    const int result = deflate(&stream, Z_FINISH);
    const std::size_t size = stream.total_out;
    deflateEnd(&stream);
    return result == Z_STREAM_END ? size : 0;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                               unsigned int seed) {
    std::vector<std::uint8_t> text;
    std::size_t text_size = 0;
    if (seed % 4 != 0 && Unpack(data, size, text, text_size)) {
        text_size = LLVMFuzzerMutate(text.data(), text_size, text.size());
        std::vector<std::uint8_t> packed(max_size);
        const std::size_t packed_size = Pack(text, text_size, static_cast<int>(seed / 4 % 10), packed.data(), max_size);
        if (packed_size != 0) {
            std::memcpy(data, packed.data(), packed_size);
            return packed_size;
        }
    }
    return LLVMFuzzerMutate(data, size, max_size);
}
