#include <fmt/format.h>

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>

#include "kit/base/error.h"
#include "kit/base/file.h"
#include "kit/check/check.h"

namespace lintara::kit {
namespace {

/// A plus sign or a leading space is no number here, since the core program would read past it in its own way.
std::optional<int> Number(std::string_view text) {
    int value = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string Plural(long count, const std::string& one) {
    return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

/// First letter that no sequence can hold: neither a base nor an IUPAC code. npos: none.
size_t OddLetter(const std::string& line) {
    return line.find_first_not_of("ACGTUNRYSWKMBDHVacgtunryswkmbdhv");
}

std::string Shown(char c) {
    return std::isprint(static_cast<unsigned char>(c)) != 0 ? fmt::format("'{}'", c)
                                                            : fmt::format("byte {}", static_cast<unsigned char>(c));
}

/// Bytes that no terminal can show stand as '?'.
std::string Cut(const std::string& text) {
    std::string cut = text.size() <= 60 ? text : text.substr(0, 57) + "...";
    for (char& c : cut) {
        if (c != '\t' && std::iscntrl(static_cast<unsigned char>(c)) != 0) c = '?';
    }
    return cut;
}

struct ContigHeader {
    int scaffold = 0;
    int index = 0;
    int gap = 0;
};

std::optional<ContigHeader> ParseContigHeader(const std::string& line, std::string& wrong) {
    if (line.rfind(">scaffold", 0) != 0) {
        wrong = fmt::format("header does not begin with '>scaffold': '{}'", Cut(line));
        return std::nullopt;
    }
    size_t bar = line.find('_');
    size_t tab = line.find('\t');
    if (bar == std::string::npos || tab == std::string::npos || tab < bar) {
        wrong = fmt::format("header is not '>scaffold<number>_<contig><tab><gap length>': '{}'", Cut(line));
        return std::nullopt;
    }
    std::string_view text = line;
    std::string_view parts[] = {text.substr(9, bar - 9), text.substr(bar + 1, tab - bar - 1), text.substr(tab + 1)};
    const char* names[] = {"scaffold number", "contig index", "gap length"};
    int values[3];
    for (int i = 0; i < 3; ++i) {
        std::optional<int> value = Number(parts[i]);
        if (!value || *value < (i == 0 ? 1 : 0)) {
            wrong = fmt::format("{} is not a number{}: '{}'", names[i], i == 0 ? " from 1" : " from 0",
                                Cut(std::string(parts[i])));
            return std::nullopt;
        }
        values[i] = *value;
    }
    return ContigHeader{values[0], values[1], values[2]};
}

/// Whether gap `contig` of `scaffold` exists in the contig file; the fault is told otherwise.
bool Known(const ContigTable& table, int scaffold, int contig, long line, const FaultSink& fault) {
    if (!table.known) return true;
    auto found = table.scaffolds.find(scaffold);
    if (found == table.scaffolds.end()) {
        fault(line, fmt::format("the contig file has no such scaffold: {}", scaffold));
        return false;
    }
    int gaps = static_cast<int>(found->second.size()) - 1;
    if (contig < gaps) return true;
    fault(line, fmt::format("no gap lies behind contig {} of scaffold {}, which has {}", contig, scaffold,
                            Plural(gaps + 1, "contig")));
    return false;
}

}  // namespace

std::string CheckScaffolds(const std::string& path, const FaultSink& fault) {
    LineReader in(path);
    std::unordered_map<std::string, long> names;
    std::string name;
    long header = 0;
    long bases = 0;
    long gaps = 0;
    long all = 0;
    bool inGap = false;
    auto close = [&] {
        if (header > 0 && bases == 0) fault(header, fmt::format("scaffold without bases: '{}'", Cut(name)));
        all += bases;
        bases = 0;
        inGap = false;
    };
    for (std::string line; in.Next(line);) {
        if (!line.empty() && line[0] == '>') {
            close();
            header = in.Number();
            name = line.substr(
                1, line.find_first_of(" \t") == std::string::npos ? std::string::npos : line.find_first_of(" \t") - 1);
            if (name.empty()) fault(header, "scaffold without a name: '>'");
            auto [first, fresh] = names.emplace(name, header);
            if (!fresh) fault(header, fmt::format("name already used in line {}: '{}'", first->second, Cut(name)));
            continue;
        }
        if (line.empty()) continue;
        if (header == 0) {
            fault(in.Number(), fmt::format("bases in front of the first header: '{}'", Cut(line)));
            header = -1;
        }
        size_t odd = OddLetter(line);
        if (odd != std::string::npos) {
            fault(in.Number(), fmt::format("no base in column {}: {}", odd + 1, Shown(line[odd])));
        }
        for (char c : line) {
            bool n = c == 'N' || c == 'n';
            if (n && !inGap) ++gaps;
            inGap = n;
        }
        bases += static_cast<long>(line.size());
    }
    close();
    return fmt::format("{}, {}, {} bases", Plural(static_cast<long>(names.size()), "scaffold"),
                       Plural(gaps, "run") + " of N", all);
}

std::string CheckContigs(const std::string& path, const FaultSink& fault, ContigTable& table) {
    // The core program reads this file as it stands: neither compressed nor with carriage returns.
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Error(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
    if (in.peek() == 0x1f) {
        fault(0, "contig files must not be compressed");
        return "";
    }
    table.known = true;
    std::string wrong;
    std::optional<ContigHeader> at;
    std::set<int> done;
    long number = 0;
    long header = 0;
    long bases = 0;
    long contigs = 0;
    bool told = false;
    auto close = [&] {
        if (header > 0 && bases == 0) fault(header, "contig without bases");
        bases = 0;
    };
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            if (!told) fault(number, "line ends in a carriage return, which would become part of the contig: byte 13");
            told = true;
            line.pop_back();
        }
        if (line.empty() || line[0] != '>') {
            if (header == 0 && !line.empty()) {
                fault(number, fmt::format("bases in front of the first header: '{}'", Cut(line)));
                header = -1;
            }
            size_t odd = OddLetter(line);
            if (odd != std::string::npos)
                fault(number, fmt::format("no base in column {}: {}", odd + 1, Shown(line[odd])));
            bases += static_cast<long>(line.size());
            continue;
        }
        close();
        header = number;
        ++contigs;
        std::optional<ContigHeader> next = ParseContigHeader(line, wrong);
        if (!next) {
            fault(number, wrong);
            continue;
        }
        int expected = 0;
        if (at && at->scaffold == next->scaffold) {
            expected = at->index + 1;
        } else if (!done.insert(next->scaffold).second) {
            fault(number, fmt::format("scaffold goes on behind another one: {}", next->scaffold));
            expected = next->index;
        }
        if (next->index != expected) {
            fault(number, fmt::format("contig {} expected in scaffold {}: {}", expected, next->scaffold, next->index));
        }
        std::vector<long>& lengths = table.scaffolds[next->scaffold];
        if (next->index < 10'000'000 && static_cast<int>(lengths.size()) <= next->index) {
            lengths.resize(static_cast<size_t>(next->index) + 1, -1);
        }
        if (next->index < static_cast<int>(lengths.size())) lengths[static_cast<size_t>(next->index)] = next->gap;
        at = next;
    }
    close();
    if (contigs == 0) fault(0, "no contig");
    long gaps = 0;
    for (const auto& [scaffold, lengths] : table.scaffolds) gaps += static_cast<long>(lengths.size()) - 1;
    return fmt::format("{}, {}, {}", Plural(static_cast<long>(table.scaffolds.size()), "scaffold"),
                       Plural(contigs, "contig"), Plural(gaps, "gap"));
}

std::string CheckGaps(const std::string& path, const FaultSink& fault, const ContigTable& table) {
    struct Seen {
        int length;
        int scaffold;
        int contig;
        long line;
    };
    LineReader in(path);
    std::map<int, Seen> gaps;
    std::map<std::pair<int, int>, int> owner;
    long reads = 0;
    long unused = 0;
    size_t longest = 0;
    std::string line;
    std::string read;
    bool ahead = false;  // `read` is the header of the next read
    while (ahead || in.Next(line)) {
        if (ahead) line.swap(read);
        ahead = false;
        long header = in.Number();
        if (line.empty() || line[0] != '>') {
            fault(header, fmt::format("a read's header begins with '>': '{}'", Cut(line)));
            continue;
        }
        std::vector<std::string> field;
        for (size_t from = 1; from < line.size();) {
            size_t stop = std::min(line.find_first_of(" \t", from), line.size());
            if (stop > from) field.push_back(line.substr(from, stop - from));
            from = stop + 1;
        }
        bool any = in.Next(read);
        if (!any || read.empty() || read[0] == '>') {
            fault(header, fmt::format("header without a read behind it: '{}'", Cut(line)));
            if (!any) break;
            ahead = !read.empty();
        }
        ++reads;
        size_t odd = OddLetter(read);
        if (odd != std::string::npos && !ahead) {
            fault(header + 1, fmt::format("no base in column {}: {}", odd + 1, Shown(read[odd])));
        }
        if (!ahead && read.find_first_not_of("ACGT") != std::string::npos) ++unused;
        if (!ahead) longest = std::max(longest, read.size());
        static const char* const kNames[] = {"gap id", "gap length", "position", "scaffold number", "contig index"};
        int value[5] = {};
        bool good = field.size() >= 5;
        if (!good) fault(header, fmt::format("{} instead of 5 fields: '{}'", field.size(), Cut(line)));
        for (size_t i = 0; good && i < 5; ++i) {
            std::optional<int> number = Number(field[i]);
            int least = i == 0 || i == 3 ? 1 : 0;
            if (!number || (i != 2 && *number < least)) {
                fault(header, fmt::format("{} is not a number{}: '{}'", kNames[i],
                                          i == 2 ? "" : fmt::format(" from {}", least), Cut(field[i])));
                good = false;
            } else {
                value[i] = *number;
            }
        }
        if (!good) continue;
        auto [seen, fresh] = gaps.try_emplace(value[0], Seen{value[1], value[3], value[4], header});
        if (!fresh) {
            if (seen->second.scaffold != value[3] || seen->second.contig != value[4]) {
                fault(header, fmt::format("gap {} lies elsewhere in line {}: scaffold {}, contig {}", value[0],
                                          seen->second.line, value[3], value[4]));
            } else if (seen->second.length != value[1]) {
                fault(header, fmt::format("gap {} has length {} in line {}: {}", value[0], seen->second.length,
                                          seen->second.line, value[1]));
            }
            continue;
        }
        auto [place, own] = owner.try_emplace({value[3], value[4]}, value[0]);
        if (!own) {
            fault(header, fmt::format("the place of gap {} is also that of gap {}", value[0], place->second));
        }
        if (!Known(table, value[3], value[4], header, fault) || !table.known) continue;
        long told = table.scaffolds.at(value[3])[static_cast<size_t>(value[4]) + 1];
        if (told >= 0 && told != value[1]) {
            fault(header, fmt::format("gap {} has length {} in the contig file: {}", value[0], told, value[1]));
        }
    }
    if (reads == 0) fault(0, "no read");
    std::string summary = fmt::format("{}, {}, longest {}", Plural(static_cast<long>(gaps.size()), "gap"),
                                      Plural(reads, "read"), longest);
    if (unused > 0) summary += fmt::format(", {} with other letters than A, C, G, T take no part", unused);
    return summary;
}

std::string CheckTruth(const std::string& path, const FaultSink& fault, const ContigTable& table) {
    LineReader in(path);
    std::map<int, long> ids;
    std::map<std::pair<int, int>, long> places;
    long gaps = 0;
    for (std::string line; in.Next(line);) {
        if (line.empty() || in.Number() == 1) continue;
        ++gaps;
        std::vector<std::string> field = SplitTabs(line);
        if (field.size() != 7) {
            fault(in.Number(), fmt::format("{} instead of 7 fields: '{}'", field.size(), Cut(line)));
            continue;
        }
        static const char* const kNames[] = {"gap id", "scaffold number", "contig index", "stated length",
                                             "true length"};
        static const int kLeast[] = {-1, 1, 0, 0, -1'000'000'000};
        int value[5] = {};
        bool good = true;
        for (size_t i = 0; i < 5; ++i) {
            std::optional<int> number = Number(field[i]);
            if (!number || *number < kLeast[i]) {
                fault(in.Number(), fmt::format("{} is not a number{}: '{}'", kNames[i],
                                               i == 4 ? "" : fmt::format(" from {}", kLeast[i]), Cut(field[i])));
                good = false;
            } else {
                value[i] = *number;
            }
        }
        size_t odd = OddLetter(field[6]);
        if (odd != std::string::npos) {
            fault(in.Number(), fmt::format("no base in place {} of the true bases: {}", odd + 1, Shown(field[6][odd])));
        }
        if (!good) continue;
        if (static_cast<int>(field[6].size()) != std::max(0, value[4])) {
            fault(in.Number(), fmt::format("{} true bases where the true length is {}", field[6].size(), value[4]));
        }
        if (value[0] != -1) {
            auto [first, fresh] = ids.emplace(value[0], in.Number());
            if (!fresh) fault(in.Number(), fmt::format("gap id already used in line {}: {}", first->second, value[0]));
        }
        auto [first, fresh] = places.emplace(std::pair{value[1], value[2]}, in.Number());
        if (!fresh) {
            fault(in.Number(),
                  fmt::format("the gap of line {} again: scaffold {}, contig {}", first->second, value[1], value[2]));
        }
        Known(table, value[1], value[2], in.Number(), fault);
    }
    if (gaps == 0) fault(0, "no gap");
    return Plural(gaps, "gap");
}

}  // namespace lintara::kit
