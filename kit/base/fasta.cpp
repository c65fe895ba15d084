#include "kit/base/fasta.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include "kit/base/error.h"

namespace lintara::kit {

namespace {

constexpr size_t kColumns = 80;

bool IsSpace(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r';
}

void AppendBases(const std::string& line, const LineReader& reader, std::string& sequence) {
    for (char letter : line) {
        if (IsSpace(letter)) continue;
        if (!std::isalpha(static_cast<unsigned char>(letter)) && letter != '-' && letter != '*') {
            throw Error(fmt::format("{}:{}: '{}' is no base", reader.Path(), reader.Number(), letter));
        }
        sequence += letter;
    }
}

FastaRecord Header(const std::string& line, long number) {
    FastaRecord record;
    record.line = number;
    size_t stop = line.find_first_of(" \t", 1);
    record.name = line.substr(1, stop == std::string::npos ? stop : stop - 1);
    if (stop != std::string::npos) record.description = line.substr(stop + 1);
    return record;
}

}  // namespace

std::vector<FastaRecord> ReadFasta(const std::string& path) {
    LineReader reader(path);
    std::vector<FastaRecord> records;
    for (std::string line; reader.Next(line);) {
        if (!line.empty() && line[0] == '>') {
            records.push_back(Header(line, reader.Number()));
            continue;
        }
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        if (records.empty()) {
            throw Error(fmt::format("{}:{}: a FASTA record begins with '>', not with \"{}\"", path, reader.Number(),
                                    line.substr(0, 40)));
        }
        AppendBases(line, reader, records.back().sequence);
    }
    if (records.empty()) throw Error(fmt::format("{}: the file holds no FASTA record", path));
    return records;
}

void WriteFasta(AtomicFile& out, const std::string& name, const std::string& description, const std::string& sequence) {
    out.Write(">" + name + (description.empty() ? "" : " " + description) + "\n");
    std::string lines;
    for (size_t from = 0; from < sequence.size(); from += kColumns) {
        lines.append(sequence, from, kColumns);
        lines += '\n';
    }
    out.Write(lines);
}

int BaseCode(char base) {
    switch (base) {
        case 'A':
            return 0;
        case 'C':
            return 1;
        case 'G':
            return 2;
        case 'T':
            return 3;
        default:
            return -1;
    }
}

std::string ReverseComplement(const std::string& bases) {
    std::string turned(bases.size(), 'N');
    for (size_t i = 0; i < bases.size(); ++i) {
        char& to = turned[bases.size() - 1 - i];
        switch (bases[i]) {
            case 'A':
                to = 'T';
                break;
            case 'C':
                to = 'G';
                break;
            case 'G':
                to = 'C';
                break;
            case 'T':
                to = 'A';
                break;
            default:
                break;
        }
    }
    return turned;
}

std::string Upper(const std::string& bases) {
    std::string text = bases;
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

std::string Lower(const std::string& bases) {
    std::string text = bases;
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

}  // namespace lintara::kit
