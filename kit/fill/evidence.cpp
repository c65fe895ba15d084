#include "kit/fill/evidence.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "kit/base/fasta.h"
#include "kit/base/file.h"

namespace lintara::kit {

namespace {

constexpr size_t kWord = 21;       ///< bases
constexpr size_t kMostPlaces = 8;  ///< of one word

bool Starts(const std::string& line, std::string_view with) {
    return std::string_view(line).starts_with(with);
}
bool Holds(const std::string& line, std::string_view what) {
    return line.find(what) != std::string::npos;
}

long NumberBehind(const std::string& line, std::string_view words) {
    size_t at = line.find(words);
    if (at == std::string::npos) return 0;
    return std::strtol(line.c_str() + at + words.size(), nullptr, 10);
}

void NoteNoReadLine(const std::string& line, GapLog& log) {
    if (Starts(line, "Before edge is included in after edge!")) log.beforeIncluded = true;
    if (Starts(line, "After edge is included in before edge!")) log.afterIncluded = true;
    if (Starts(line, "MinusOneNGap1 ")) log.mergedByEnds = true;
}

void NoteLine(const std::string& line, GapLog& log) {
    if (Starts(line, "Treat the gap as middle size gap")) log.middle = true;
    if (Starts(line, "Meet last read!") || Starts(line, "Meet first read!")) log.metLast = true;
    if (Starts(line, "MinusOneNGap ") || Starts(line, "Cut contig edge for the minus gap")) log.minus = true;
    if (Starts(line, "Starting to fill gap of TR type") || Starts(line, "Solve the Multi tandem")) log.repeat = true;
    if (Starts(line, "Too few long read cross")) log.noSize = true;
    if (Starts(line, "No reads forward") || Starts(line, "No reads reward")) log.noStart = true;
    if (Starts(line, "No read can connect") || Holds(line, "\tERGAP") || Holds(line, "may be not cover the gap")) {
        log.noJoin = true;
    }
    if (Holds(line, "exists more than one copy") || Holds(line, "More than one copy")) log.unclear = true;
    if (Starts(line, "Get the gap size ") && NumberBehind(line, "Get the gap size ") != -1000) {
        log.spanningReads = NumberBehind(line, "support read number: ");
    }
}

/// One column record: position, four counts, the called base with that of the path, reads, ratio. The two bases stand
/// as "B---S" or "B   S" within a path, as two fields beside a lengthened edge; a small gap has the called base alone.
bool ParseColumn(const std::string& line, long& position, int (&counts)[4], char& base, int& depth) {
    const char* at = line.data();
    const char* end = at + line.size();
    long numbers[5];
    for (long& number : numbers) {
        auto [next, fault] = std::from_chars(at, end, number);
        if (fault != std::errc() || next == end || *next != '\t') return false;
        at = next + 1;
    }
    if (end - at < 4) return false;
    char winner = at[0];
    char path = winner;
    bool same = false;
    if (at[1] != '\t') {
        if (end - at < 7) return false;
        same = at[1] == '-';
        path = at[4];
        at += 6;
    } else if (at[3] == '\t' && std::isalpha(static_cast<unsigned char>(at[2]))) {
        path = at[2];
        at += 4;
    } else {
        at += 2;
    }
    double ratio = 0;
    long reads = 0;
    auto [next, fault] = std::from_chars(at, end, reads);
    if (fault != std::errc() || next == end) return false;
    std::from_chars(next + 1, end, ratio);
    position = numbers[0];
    for (int i = 0; i < 4; ++i) counts[i] = static_cast<int>(numbers[i + 1]);
    base = winner != 'N' && (same || ratio >= 0.7) ? winner : path;
    depth = static_cast<int>(reads);
    return true;
}

/// Words as numbers of two bits a base; a word with another letter is left out.
template <typename Visit>
void EachWord(const std::string& text, Visit visit) {
    constexpr uint64_t kMask = (uint64_t{1} << (2 * kWord)) - 1;
    uint64_t word = 0;
    size_t clean = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        int base = BaseCode(text[i]);
        clean = base < 0 ? 0 : clean + 1;
        word = ((word << 2) | static_cast<uint64_t>(std::max(base, 0))) & kMask;
        if (clean >= kWord) visit(word, i + 1 - kWord);
    }
}

}  // namespace

void ReadLog(const std::string& path, std::map<int, std::vector<GapLog>>& logs) {
    LineReader reader(path);
    std::vector<GapLog>* scaffold = nullptr;
    for (std::string line; reader.Next(line);) {
        if (line.size() < 8) continue;
        if (Starts(line, "Treat with scaffold ")) {
            scaffold = &logs[static_cast<int>(NumberBehind(line, "Treat with scaffold "))];
        } else if (scaffold != nullptr && Starts(line, "fill gap") && Holds(line, "\tlength is: ")) {
            scaffold->emplace_back().gap = static_cast<int>(NumberBehind(line, "fill gap"));
        } else if (scaffold != nullptr && Starts(line, "no read of the gap, ")) {
            scaffold->emplace_back().noReads = true;
        } else if (scaffold != nullptr && !scaffold->empty()) {
            GapLog& log = scaffold->back();
            if (log.noReads) {
                NoteNoReadLine(line, log);
            } else if (std::isalpha(static_cast<unsigned char>(line[0]))) {
                NoteLine(line, log);
            }
        }
    }
}

void ReadColumns(const std::string& path, std::map<int, std::vector<ColumnBlock>>& columns) {
    LineReader reader(path);
    std::vector<ColumnBlock>* blocks = nullptr;
    long last = -2;
    for (std::string line; reader.Next(line);) {
        if (Starts(line, "gap") && Holds(line, "\tlength is: ")) {
            blocks = &columns[static_cast<int>(NumberBehind(line, "gap"))];
            last = -2;
            continue;
        }
        long position = 0;
        int counts[4] = {0, 0, 0, 0};
        char base = 'N';
        int depth = 0;
        if (blocks == nullptr || !ParseColumn(line, position, counts, base, depth)) {
            last = -2;
            continue;
        }
        if (position != last + 1) blocks->emplace_back();
        last = position;
        int index = BaseCode(base);
        ColumnBlock& block = blocks->back();
        block.bases += base;
        block.support.push_back(index < 0 ? 0 : counts[index]);
        block.depth.push_back(depth);
    }
}

void PlaceColumns(const std::vector<ColumnBlock>& blocks, const std::string& before, const std::string& text,
                  const std::string& after, std::vector<int>& support, std::vector<int>& depth) {
    support.assign(text.size(), -1);
    depth.assign(text.size(), -1);
    if (blocks.empty() || text.empty()) return;
    size_t flank = std::min(before.size(), kWord - 1);
    std::string context = before.substr(before.size() - flank) + text + after.substr(0, kWord - 1);
    struct Place {
        size_t block;
        size_t position;
    };
    std::unordered_map<uint64_t, std::vector<Place>> words;
    EachWord(context, [&](uint64_t word, size_t) { words[word]; });
    for (size_t b = 0; b < blocks.size(); ++b) {
        EachWord(blocks[b].bases, [&](uint64_t word, size_t position) {
            auto found = words.find(word);
            if (found != words.end() && found->second.size() < kMostPlaces) found->second.push_back({b, position});
        });
    }
    EachWord(context, [&](uint64_t word, size_t start) {
        for (const Place& place : words[word]) {
            const ColumnBlock& block = blocks[place.block];
            for (size_t k = 0; k < kWord; ++k) {
                if (start + k < flank || start + k - flank >= text.size()) continue;
                size_t i = start + k - flank;
                if (block.depth[place.position + k] <= depth[i]) continue;
                depth[i] = block.depth[place.position + k];
                support[i] = block.support[place.position + k];
            }
        }
    });
}

void CountReadsOver(const std::vector<AssignedRead>& reads, const std::string& before, const std::string& text,
                    const std::string& after, std::vector<int>& support, std::vector<int>& depth) {
    std::vector<size_t> unknown;
    for (size_t i = 0; i < text.size(); ++i) {
        if (support[i] < 0 && text[i] != 'N') unknown.push_back(i);
    }
    if (unknown.empty()) return;
    constexpr size_t kFlank = 200;  // no read that lies over the text needs more of the contigs
    size_t flank = std::min(before.size(), kFlank);
    std::string context = before.substr(before.size() - flank) + text + after.substr(0, kFlank);
    constexpr long kTwice = -1;
    std::unordered_map<uint64_t, long> places;
    EachWord(context, [&](uint64_t word, size_t start) {
        auto [place, fresh] = places.try_emplace(word, static_cast<long>(start));
        if (!fresh) place->second = kTwice;
    });
    for (size_t i : unknown) support[i] = depth[i] = 0;
    for (const AssignedRead& read : reads) {
        std::map<long, int> begins;  // of the read on the context, with the words that say so
        EachWord(read.bases, [&](uint64_t word, size_t start) {
            auto place = places.find(word);
            if (place != places.end() && place->second != kTwice) ++begins[place->second - static_cast<long>(start)];
        });
        auto best = std::max_element(begins.begin(), begins.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
        if (best == begins.end()) continue;
        for (size_t i : unknown) {
            long at = static_cast<long>(i + flank) - best->first;
            if (at < 0 || at >= static_cast<long>(read.bases.size())) continue;
            ++depth[i];
            support[i] += read.bases[static_cast<size_t>(at)] == text[i];
        }
    }
    // Without a single read nothing is known.
    for (size_t i : unknown) {
        if (depth[i] == 0) support[i] = depth[i] = -1;
    }
}

std::string ReasonWords(const GapLog& log, const std::string& text, long reads) {
    bool hasN = text.find('N') != std::string::npos;
    bool hasBases = text.find_first_not_of('N') != std::string::npos;
    if (log.noReads) {
        if (log.beforeIncluded || log.afterIncluded) return "no reads, but one contig lies within the other";
        if (log.mergedByEnds) return "no reads, but the contig ends overlap";
        return "no reads were assigned";
    }
    if (!hasN) {
        if (log.spanningReads > 0)
            return fmt::format("{} reads that cross the gap agree on its size", log.spanningReads);
        if (text.empty()) return "the contig ends overlap or touch";
        std::string repeat = log.repeat ? ", which holds a tandem repeat" : "";
        if (log.metLast) return "a path of overlapping reads crosses the gap" + repeat;
        return "what grew from the two sides was joined" + repeat;
    }
    std::string why = "the reads do not connect the two sides";
    if (log.noStart) why = "no read goes on from a contig end without doubt";
    if (log.unclear) why = "the reads allow more than one sequence";
    if (log.repeat) why += "; a tandem repeat was found";
    if (hasBases) return "grew from the sides, but " + why;
    if (reads < 10) return fmt::format("only {} reads were assigned", reads);
    if (log.noSize && !log.middle) why = "too few reads cross the gap to tell its size";
    return why;
}

}  // namespace lintara::kit
