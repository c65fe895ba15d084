#include "consensus/column.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>

#include "run/settings.h"

namespace lintara::consensus {

namespace {

void CountBase(Column& column, char read_base) {
    ++column.read_num;
    const int code = alphabet[read_base];
    if (code < 4) ++column.num[code];
}

const int kLongestNumber = 11;  // characters of an int
const int kMostReadsOfAByte = 255;

/// For each column the reads that have a certain base there; bytes, so that many columns are counted at once.
struct ByteCounts {
    explicit ByteCounts(std::size_t columns) : size(columns), bytes(4 * columns) {}

    std::uint8_t* Of(int code) { return bytes.data() + static_cast<std::size_t>(code) * size; }

    std::size_t size;
    std::vector<std::uint8_t> bytes;
};

// The case bit is left out of the comparison, which is what the table of base codes does.
void CountBases(std::uint8_t* __restrict a, std::uint8_t* __restrict c, std::uint8_t* __restrict g,
                std::uint8_t* __restrict t, const char* __restrict bases, int size) {
    for (int i = 0; i < size; ++i) {
        const unsigned char upper = static_cast<unsigned char>(bases[i]) & 0xDFU;
        a[i] = static_cast<std::uint8_t>(a[i] + (upper == 'A'));
        c[i] = static_cast<std::uint8_t>(c[i] + (upper == 'C'));
        g[i] = static_cast<std::uint8_t>(g[i] + (upper == 'G'));
        t[i] = static_cast<std::uint8_t>(t[i] + (upper == 'T'));
    }
}

/// Moves the counts over into the columns.
void Empty(ByteCounts& counts, std::vector<Column>& columns) {
    for (int code = 0; code < 4; ++code) {
        const std::uint8_t* const count = counts.Of(code);
        for (std::size_t i = 0; i < columns.size(); ++i) columns[i].num[code] += count[i];
    }
    std::fill(counts.bytes.begin(), counts.bytes.end(), std::uint8_t{0});
}

char* WriteNumber(char* to, int number) {
    if (number >= 0 && number < 10) {
        *to = static_cast<char>('0' + number);
        return to + 1;
    }
    return std::to_chars(to, to + kLongestNumber, number).ptr;
}

}  // namespace

Column CountColumn(int posit, const ReadMap& read) {
    Column column;
    for (const auto& [seq, start] : read) {
        if (start <= posit && posit < start + Length(*seq)) CountBase(column, (*seq)[posit - start]);
    }
    return column;
}

std::vector<Column> CountColumns(int first, int last, const ReadMap& read) {
    std::vector<Column> columns(std::max(0, last - first));
    ByteCounts counts(columns.size());
    int counted = 0;
    for (const auto& [seq, start] : read) {
        const int begin = std::max(first, start);
        const int end = std::min(last, start + Length(*seq));
        if (begin >= end) continue;
        const int at = begin - first;
        CountBases(counts.Of(0) + at, counts.Of(1) + at, counts.Of(2) + at, counts.Of(3) + at,
                   seq->data() + (begin - start), end - begin);
        // So far the change against the column before it.
        ++columns[at].read_num;
        if (end < last) --columns[end - first].read_num;
        if (++counted == kMostReadsOfAByte) {
            Empty(counts, columns);
            counted = 0;
        }
    }
    Empty(counts, columns);
    int covering = 0;
    for (Column& column : columns) column.read_num = covering += column.read_num;
    return columns;
}

Winner MostFrequent(const Column& column) {
    Winner winner;
    for (int code = 0; code < 4; ++code) {
        if (column.num[code] > winner.value) {
            winner.value = column.num[code];
            winner.bases = base[code];
        }
    }
    if (column.read_num > 0) winner.ratio = static_cast<double>(winner.value) / column.read_num;
    return winner;
}

void AppendRecord(std::string& text, int posit, const Column& column, char bases, std::string_view marker,
                  char seq_base, int value) {
    char record[6 * (kLongestNumber + 1) + kRatioSize + 8];
    char* to = WriteNumber(record, posit);
    *to++ = '\t';
    for (const int count : column.num) {
        to = WriteNumber(to, count);
        *to++ = '\t';
    }
    *to++ = bases;
    to = std::copy_n(marker.data(), std::min<std::size_t>(marker.size(), 3), to);
    *to++ = seq_base;
    *to++ = '\t';
    to = WriteNumber(to, column.read_num);
    *to++ = '\t';
    to = WriteRatio(to, value, column.read_num);
    *to++ = '\n';
    text.append(record, to);
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

void WriteFinish(int valued_read_num, int unsame_base_num, int threadId) {
    snp[threadId] << "SNP get finished!\t"
                  << "used reads: " << valued_read_num << "\tunsame base: " << unsame_base_num << '\n';
}

void IllegalOrder(std::string_view message, int place, int threadId) {
    logFile[threadId] << message << place << '\n' << std::flush;
    std::exit(-1);
}

int SameBases(const std::string& a, int a_start, const std::string& b, int b_start, int len) {
    const int first = std::max({0, -a_start, -b_start});
    const int last = std::min({len, Length(a) - a_start, Length(b) - b_start});
    int same_base_num = 0;
    for (int i = first; i < last; ++i) {
        if (a[a_start + i] == b[b_start + i]) ++same_base_num;
    }
    return same_base_num;
}

}  // namespace lintara::consensus
