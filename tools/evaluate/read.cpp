#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <stdexcept>

#include "evaluate/evaluate.h"

namespace lintara::evaluate {

namespace {

[[noreturn]] void Fault(const std::string& file, long line, const std::string& what) {
    throw std::runtime_error(file + ": line " + std::to_string(line) + ": " + what);
}

std::ifstream Open(const std::string& file) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error(file + ": cannot be read");
    return in;
}

bool NextLine(std::ifstream& in, std::string& line) {
    if (!std::getline(in, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

int Number(const std::string& text, const std::string& file, long line) {
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) Fault(file, line, "not a number: " + text);
    return value;
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

/// What stands behind ">scaffold" or ">Scaffold", up to the first white space.
std::string BehindScaffold(const std::string& header, const std::string& file, long line) {
    if (header.size() < 9 || Upper(header.substr(1, 8)) != "SCAFFOLD") {
        Fault(file, line, "not a scaffold header: " + header);
    }
    return header.substr(9, header.find_first_of(" \t", 9) - 9);
}

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields(1);
    for (const char c : line) {
        if (c == '\t') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

}  // namespace

Contigs ReadContigs(const std::string& file) {
    std::ifstream in = Open(file);
    Contigs contigs;
    std::string* contig = nullptr;
    std::string line;
    for (long number = 1; NextLine(in, line); ++number) {
        if (line.empty() || line[0] != '>') {
            if (contig != nullptr) *contig += Upper(line);
            continue;
        }
        const std::string name = BehindScaffold(line, file, number);
        const std::size_t underscore = name.find('_');
        if (underscore == std::string::npos) Fault(file, number, "not a contig header: " + line);
        const int scaffold = Number(name.substr(0, underscore), file, number);
        const int index = Number(name.substr(underscore + 1), file, number);
        std::vector<std::string>& list = contigs[scaffold];
        if (index != static_cast<int>(list.size())) Fault(file, number, "contig out of order: " + line);
        contig = &list.emplace_back();
    }
    return contigs;
}

std::vector<TrueGap> ReadTruth(const std::string& file) {
    std::ifstream in = Open(file);
    std::vector<TrueGap> truth;
    std::string line;
    for (long number = 1; NextLine(in, line); ++number) {
        if (line.empty() || (number == 1 && line.rfind("gap\t", 0) == 0)) continue;
        const std::vector<std::string> fields = Fields(line);
        if (fields.size() != 7) Fault(file, number, "not seven fields but " + std::to_string(fields.size()));
        TrueGap gap;
        gap.id = Number(fields[0], file, number);
        gap.scaffold = Number(fields[1], file, number);
        gap.contig = Number(fields[2], file, number);
        gap.stated = Number(fields[3], file, number);
        gap.length = Number(fields[4], file, number);
        gap.kind = fields[5];
        gap.sequence = Upper(fields[6]);
        if (static_cast<int>(gap.sequence.size()) != std::max(0, gap.length)) {
            Fault(file, number, "the bases are not as many as the true length tells: " + fields[4]);
        }
        truth.push_back(std::move(gap));
    }
    return truth;
}

void ReadFilled(const std::string& file, Filled& filled) {
    std::ifstream in = Open(file);
    std::string* text = nullptr;
    std::string line;
    for (long number = 1; NextLine(in, line); ++number) {
        if (line.empty() || line[0] != '>') {
            if (text == nullptr && !line.empty()) Fault(file, number, "sequence before the first header");
            if (text != nullptr) *text += Upper(line);
            continue;
        }
        const int scaffold = Number(BehindScaffold(line, file, number), file, number);
        const auto [entry, fresh] = filled.try_emplace(scaffold);
        if (!fresh) Fault(file, number, "scaffold seen twice: " + line);
        text = &entry->second;
    }
}

}  // namespace lintara::evaluate
