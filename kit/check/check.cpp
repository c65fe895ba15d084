#include "kit/check/check.h"

#include <fmt/format.h>
#include <zlib.h>

#include <cctype>
#include <cstdio>

#include "kit/base/error.h"
#include "kit/base/file.h"

namespace lintara::kit {
namespace {

bool IsContigHeader(const std::string& line) {
    return line.rfind(">scaffold", 0) == 0 && line.find('_') != std::string::npos &&
           line.find('\t') != std::string::npos && line.find('_') < line.find('\t');
}

/// ">7" and four numbers: the first word of a FASTA header is rarely a bare number with numbers behind it.
bool IsGapHeader(const std::string& line) {
    if (line.size() < 2 || std::isdigit(static_cast<unsigned char>(line[1])) == 0) return false;
    int fields = 0;
    bool inside = false;
    for (char c : line) {
        bool space = c == ' ' || c == '\t';
        if (!space && !inside) ++fields;
        inside = !space;
    }
    return fields >= 4;
}

std::string KindWord(FileKind kind) {
    switch (kind) {
        case FileKind::kScaffold:
            return "scaffold file";
        case FileKind::kContig:
            return "contig file";
        case FileKind::kGap:
            return "gap file";
        case FileKind::kTruth:
            return "truth table";
        default:
            return "unknown";
    }
}

struct Result {
    FileKind kind = FileKind::kUnknown;
    std::string text;
    std::string summary;
    long faults = 0;
};

template <typename Check>
void Run(const std::string& path, Result& result, Check check) {
    auto fault = [&](long line, const std::string& message) {
        ++result.faults;
        result.text +=
            line > 0 ? fmt::format("{}:{}: {}\n", path, line, message) : fmt::format("{}: {}\n", path, message);
    };
    try {
        result.summary = check(fault);
    } catch (const Error& error) {
        ++result.faults;
        result.text += std::string(error.what()) + "\n";
    }
}

}  // namespace

FileKind KindOf(const std::string& path) {
    LineReader in(path);
    for (std::string line; in.Next(line);) {
        if (line.empty()) continue;
        if (line.rfind("gap\tscaffold\t", 0) == 0) return FileKind::kTruth;
        if (line[0] != '>') return FileKind::kUnknown;
        if (IsContigHeader(line)) return FileKind::kContig;
        return IsGapHeader(line) ? FileKind::kGap : FileKind::kScaffold;
    }
    return FileKind::kUnknown;
}

int RunCheck(const std::vector<std::string>& files) {
    std::vector<Result> results(files.size());
    ContigTable table;
    // The contig file first, wherever it stands, since the others are held against it.
    for (size_t i = 0; i < files.size(); ++i) {
        Run(files[i], results[i], [&](const FaultSink& fault) -> std::string {
            results[i].kind = KindOf(files[i]);
            if (results[i].kind != FileKind::kContig) return "";
            if (!table.known) return CheckContigs(files[i], fault, table);
            ContigTable other;
            return CheckContigs(files[i], fault, other);
        });
    }
    for (size_t i = 0; i < files.size(); ++i) {
        Result& result = results[i];
        if (result.kind == FileKind::kContig || result.faults > 0) continue;
        Run(files[i], result, [&](const FaultSink& fault) -> std::string {
            switch (result.kind) {
                case FileKind::kScaffold:
                    return CheckScaffolds(files[i], fault);
                case FileKind::kGap:
                    return CheckGaps(files[i], fault, table);
                case FileKind::kTruth:
                    return CheckTruth(files[i], fault, table);
                default:
                    break;
            }
            LineReader in(files[i]);
            std::string line;
            bool any = in.Next(line);
            fault(any ? 1 : 0, any ? "neither FASTA nor a truth table: '" + line.substr(0, 40) + "'" : "empty file");
            return "";
        });
    }
    bool good = true;
    for (size_t i = 0; i < files.size(); ++i) {
        const Result& result = results[i];
        good = good && result.faults == 0;
        std::string text = result.text;
        if (result.faults == 0)
            text = fmt::format("{}: good {} ({})\n", files[i], KindWord(result.kind), result.summary);
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    if (std::fflush(stdout) != 0) throw Error("cannot write to the standard output");
    return good ? 0 : 1;
}

}  // namespace lintara::kit
