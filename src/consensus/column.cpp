#include "consensus/column.h"

#include <algorithm>
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
            Field& field = fields[number];
            if (number >= 100) field.text[field.size++] = static_cast<char>('0' + number / 100);
            if (number >= 10) field.text[field.size++] = static_cast<char>('0' + number / 10 % 10);
            field.text[field.size++] = static_cast<char>('0' + number % 10);
            field.text[field.size++] = '\t';
        }
    }

    Field fields[kEnd] = {};
};

constexpr ShortNumbers kShortNumbers;

/// Writes a number and a tab; up to two bytes behind them are overwritten, too.
char* WriteField(char* to, int number) {
    if (static_cast<unsigned>(number) < ShortNumbers::kEnd) {
        const ShortNumbers::Field& field = kShortNumbers.fields[number];
        std::memcpy(to, field.text, sizeof field.text);
        return to + field.size;
    }
    to = WriteNumber(to, number);
    *to = '\t';
    return to + 1;
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
    ColumnCounts& counts = SpareCounts();
    counts.Begin(first, last);
    for (const auto& [seq, start] : read) counts.Add(*seq, start);
    std::vector<Column> columns;
    int covering = 0;
    for (int posit = first; posit < last; ++posit) columns.push_back(counts.Next(posit - first, covering));
    return columns;
}

char* WriteRecord(char* to, int posit, const Column& column, char bases, std::string_view marker, char seq_base,
                  int value) {
    to = WriteField(to, posit);
    for (const int count : column.num) to = WriteField(to, count);
    *to++ = bases;
    to = std::copy_n(marker.data(), std::min<std::size_t>(marker.size(), 3), to);
    *to++ = seq_base;
    *to++ = '\t';
    to = WriteField(to, column.read_num);
    if (value == column.read_num && value > 0) {
        *to++ = '1';
    } else {
        to = WriteRatio(to, value, column.read_num);
    }
    *to++ = '\n';
    return to;
}

void AppendRecord(std::string& text, int posit, const Column& column, char bases, std::string_view marker,
                  char seq_base, int value) {
    char record[kRecordRoom];
    text.append(record, WriteRecord(record, posit, column, bases, marker, seq_base, value));
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
