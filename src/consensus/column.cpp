#include "consensus/column.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "run/settings.h"

namespace lintara::consensus {

namespace {

void CountBase(Column& column, char read_base) {
    ++column.read_num;
    const int code = alphabet[read_base];
    if (code < 4) ++column.num[code];
}

template <typename Number, typename... Format>
void AppendNumber(std::string& text, Number number, Format... format) {
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, number, format...);
    text.append(digits, written.ptr);
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
    for (const auto& [seq, start] : read) {
        const int end = std::min(last, start + Length(*seq));
        for (int posit = std::max(first, start); posit < end; ++posit) {
            CountBase(columns[posit - first], (*seq)[posit - start]);
        }
    }
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
                  char seq_base, double ratio) {
    AppendNumber(text, posit);
    text += '\t';
    for (const int count : column.num) {
        AppendNumber(text, count);
        text += '\t';
    }
    text += bases;
    text += marker;
    text += seq_base;
    text += '\t';
    AppendNumber(text, column.read_num);
    text += '\t';
    // Six significant digits, as a stream prints a double by default.
    AppendNumber(text, ratio, std::chars_format::general, 6);
    text += '\n';
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
