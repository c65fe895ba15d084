#include "run/record_text.h"

#include <cmath>
#include <cstdint>

namespace lintara {

char* WriteDouble(char* to, double number) {
    if (number == 0 || number == 1) {
        // A negative zero keeps its sign and goes the long way.
        const char digit = number == 1 ? '1' : '0';
        if (digit == '1' || !std::signbit(number)) {
            *to = digit;
            return to + 1;
        }
    }
    return std::to_chars(to, to + kRatioSize, number, std::chars_format::general, 6).ptr;
}

// The six significant digits are those of the exact quotient. A double lies so near to it that both round alike, but
// for a quotient in the very middle between two roundings, which only the double decides.
char* WriteRatio(char* to, int value, int read_num) {
    const std::uint64_t reads = static_cast<std::uint64_t>(read_num);
    std::uint64_t scaled = static_cast<std::uint64_t>(value);
    if (value == 0 || value == read_num || read_num <= 0) {
        *to = value == 0 || read_num <= 0 ? '0' : '1';
        return to + 1;
    }
    // Below 0.0001 a stream goes over to exponents.
    if (value > 0 && value < read_num && read_num < 100000 && scaled * 10000 >= reads) {
        int zeros = 0;
        for (; scaled * 10 < reads; scaled *= 10) ++zeros;
        const std::uint64_t left = scaled * 1000000 % reads;
        std::uint32_t digits = static_cast<std::uint32_t>(scaled * 1000000 / reads) + (2 * left > reads ? 1 : 0);
        if (2 * left != reads && digits < 1000000) {
            *to++ = '0';
            *to++ = '.';
            for (; zeros > 0; --zeros) *to++ = '0';
            int count = 6;
            for (; digits % 10 == 0; digits /= 10) --count;
            for (int i = count - 1; i >= 0; --i, digits /= 10) to[i] = static_cast<char>('0' + digits % 10);
            return to + count;
        }
    }
    const double ratio = static_cast<double>(value) / read_num;
    return std::to_chars(to, to + kRatioSize, ratio, std::chars_format::general, 6).ptr;
}

}  // namespace lintara
