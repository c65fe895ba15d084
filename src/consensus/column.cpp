#include "consensus/column.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "run/settings.h"

namespace lintara::consensus {

namespace {

void CountBase(Column& column, char read_base) {
    ++column.read_num;
    const int code = alphabet[read_base];
    if (code < 4) ++column.num[code];
}

/// The numbers of up to three digits, each with the tab behind it.
struct ShortNumbers {
    static constexpr unsigned kEnd = 1000;
    struct Field {
        char text[4];
        unsigned size;
    };

    constexpr ShortNumbers() {
        for (unsigned number = 0; number < kEnd; ++number) {
            const char digits[] = {static_cast<char>('0' + number / 100), static_cast<char>('0' + number / 10 % 10),
                                   static_cast<char>('0' + number % 10), '\t'};
            Field& field = fields[number];
            const unsigned zeros = number >= 100 ? 0 : number >= 10 ? 1 : 2;
            field.size = 4 - zeros;
            for (unsigned i = 0; i < 4; ++i) {
                all_digits[number][i] = digits[i];
                field.text[i] = i < field.size ? digits[zeros + i] : '\0';
            }
        }
    }

    Field fields[kEnd] = {};
    char all_digits[kEnd][4] = {};  // with zeros in front
};

constexpr ShortNumbers kShortNumbers;

/// Writes a number and a tab; up to two bytes behind them are overwritten, too.
char* WriteField(char* to, int number) {
    const unsigned whole = static_cast<unsigned>(number);
    const unsigned kEnd = ShortNumbers::kEnd;
    if (whole < kEnd) {
        const ShortNumbers::Field& field = kShortNumbers.fields[whole];
        std::memcpy(to, field.text, sizeof field.text);
        return to + field.size;
    }
    if (whole < kEnd * kEnd) {
        to = WriteField(to, static_cast<int>(whole / kEnd)) - 1;
        std::memcpy(to, kShortNumbers.all_digits[whole % kEnd], 4);
        return to + 4;
    }
    to = WriteNumber(to, number);
    *to = '\t';
    return to + 1;
}

/// The share of a winner that up to 8 of up to 255 reads do not have, which nearly all disputed columns are. Each is
/// worked out once a thread; none is longer than 0.111111.
struct Share {
    char text[8];
    std::uint8_t size;  // 0: not worked out yet
};

/// Writes a winner's share as WriteRatio() does; up to 7 bytes behind it are overwritten, too.
char* WriteShare(char* to, int value, int read_num) {
    const int kMostOthers = 8;
    const int kMostReads = 255;
    thread_local Share shares[kMostReads + 1][kMostOthers];
    const int others = read_num - value;
    if (value < 0 || others < 1 || others > kMostOthers || read_num > kMostReads) {
        return WriteRatio(to, value, read_num);
    }
    Share& share = shares[read_num][others - 1];
    if (share.size == 0) {
        char text[kRatioSize] = {};
        share.size = static_cast<std::uint8_t>(WriteRatio(text, value, read_num) - text);
        std::memcpy(share.text, text, sizeof share.text);
    }
    std::memcpy(to, share.text, sizeof share.text);
    return to + share.size;
}

}  // namespace

Column CountColumn(int posit, const ReadMap& read) {
    Column column;
    for (const auto& [seq, start] : read) {
        if (start <= posit && posit < start + Length(*seq)) CountBase(column, (*seq)[posit - start]);
    }
    return column;
}

std::vector<Column> CountColumns(const std::string& seq, int first, int last, const ReadMap& read) {
    ColumnCounts& counts = SpareCounts();
    counts.Begin(seq, first, last);
    for (const auto& [placed, start] : read) counts.Add(*placed, start);
    std::vector<Column> columns;
    int covering = 0;
    for (int index = 0; index < last - first; ++index) {
        covering = counts.Covering(index, covering);
        columns.push_back(counts.At(index, covering));
    }
    return columns;
}

char* WritePlace(char* to, int posit) {
    return WriteField(to, posit);
}

char* WriteVote(char* to, const Column& column, char bases, std::string_view marker, char seq_base, int value) {
    for (const int count : column.num) to = WriteField(to, count);
    *to++ = bases;
    to = std::copy_n(marker.data(), std::min<std::size_t>(marker.size(), 3), to);
    *to++ = seq_base;
    *to++ = '\t';
    to = WriteField(to, column.read_num);
    if (value == column.read_num && value > 0) {
        *to++ = '1';
    } else {
        to = WriteShare(to, value, column.read_num);
    }
    *to++ = '\n';
    return to;
}

char* WriteRecord(char* to, int posit, const Column& column, char bases, std::string_view marker, char seq_base,
                  int value) {
    return WriteVote(WritePlace(to, posit), column, bases, marker, seq_base, value);
}

void AppendRecord(std::string& text, int posit, const Column& column, char bases, std::string_view marker,
                  char seq_base, int value) {
    char record[kRecordRoom];
    text.append(record, WriteRecord(record, posit, column, bases, marker, seq_base, value));
}

void WriteFinish(int valued_read_num, int unsame_base_num, int threadId) {
    snp[threadId] << "SNP get finished!\tused reads: " + std::to_string(valued_read_num) +
                         "\tunsame base: " + std::to_string(unsame_base_num) + '\n';
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
