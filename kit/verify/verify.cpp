#include "kit/verify/verify.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <unordered_map>

#include "kit/base/child.h"
#include "kit/base/error.h"
#include "kit/base/file.h"
#include "kit/base/progress.h"

namespace lintara::kit {
namespace {

namespace fs = std::filesystem;

/// A directory for the mapper's index, gone when the command ends.
class Workspace {
  public:
    explicit Workspace(const std::string& beside) {
        std::string pattern = (fs::path(beside).parent_path() / ".lintara-verify-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            pattern = (fs::temp_directory_path() / "lintara-verify-XXXXXX").string();
            if (mkdtemp(pattern.data()) == nullptr) throw Error("cannot make a directory for the mapper's index");
        }
        path_ = pattern;
    }
    ~Workspace() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

void CheckOptions(const VerifyOptions& options) {
    if (options.mapper != "bwa" && options.mapper != "minimap2") {
        throw Error(fmt::format("unknown mapper: '{}' (bwa or minimap2)", options.mapper));
    }
    if (options.reads1.size() != options.reads2.size()) {
        throw Error(fmt::format("-1 is given {} times and -2 {} times", options.reads1.size(), options.reads2.size()));
    }
    if (options.reads1.empty() == options.bam.empty()) throw Error("either -1 and -2 or --bam is needed");
}

void Demand(const std::string& program, const ChildEnd& end, const std::string& log) {
    if (end.Good()) return;
    std::string words = LastLines(log, 3);
    throw Error(EndWords(program, end) + (words.empty() ? "" : ": " + words));
}

/// Scaffolds are mapped to under their index, since names may occur twice or be longer than a mapper takes.
void WriteReference(const std::string& path, const std::vector<FastaRecord>& scaffolds) {
    AtomicFile out(path);
    for (size_t i = 0; i < scaffolds.size(); ++i) WriteFasta(out, std::to_string(i), "", scaffolds[i].sequence);
    out.Commit();
}

/// A fixed batch makes bwa's answer independent of the number of threads.
std::vector<std::string> MapperCommand(const VerifyOptions& options, const std::string& reference, size_t library) {
    std::string threads = std::to_string(std::max(1, options.threads));
    std::vector<std::string> command = {"bwa", "mem", "-v", "1", "-K", "10000000", "-t", threads};
    if (options.mapper == "minimap2") command = {"minimap2", "-ax", "sr", "-t", threads};
    command.insert(command.end(), {reference, options.reads1[library], options.reads2[library]});
    return command;
}

void MapBack(const VerifyOptions& options, const std::vector<FastaRecord>& scaffolds, Evidence& evidence,
             Progress& progress) {
    CheckReadFiles(options.reads1, options.reads2);
    Workspace work(options.output.empty() ? options.scaffolds : options.output);
    std::string reference = work.File("scaffolds.fa");
    WriteReference(reference, scaffolds);
    std::string log = work.File("mapper.log");
    if (options.mapper == "bwa") {
        Child index({"bwa", "index", reference}, work.File("index.out"), log);
        Demand("bwa index", index.Wait(), log);
    }
    for (size_t library = 0; library < options.reads1.size(); ++library) {
        long reads = progress.Shown() ? 2 * EstimateReads(options.reads1[library]) : 0;
        progress.Begin(fmt::format("map back {}", options.reads1[library]), reads);
        Child mapper(MapperCommand(options, reference, library), "", log);
        std::optional<Error> fault;
        try {
            evidence.Take("", mapper.TakeOutFd(), "", true, [&](long done) { progress.At(done); });
        } catch (const Error& error) {
            fault = error;
        }
        // A mapper that failed explains a stream that broke off, unless it failed since nobody read it any more.
        ChildEnd end = mapper.Wait();
        if (!fault || end.signal != SIGPIPE) Demand(options.mapper, end, log);
        if (fault) throw *fault;
        progress.End("done");
    }
}

std::string Table(const std::vector<FastaRecord>& scaffolds, const std::vector<Stretch>& stretches) {
    std::string text =
        "scaffold\tstart\tend\tname\tleast_depth\tmean_depth\tleast_support\tcontradicted\tleast_bridge\tspanning_"
        "pairs\t"
        "expected_pairs\tinsert_shift\tclipped_start\tclipped_end\tverdict\n";
    for (const Stretch& s : stretches) {
        text +=
            fmt::format("{}\t{}\t{}\t{}\t{}\t{:.2f}\t{}\t{}\t{}\t{}\t{:.1f}\t{:.1f}\t{}\t{}\t{}\n",
                        scaffolds[static_cast<size_t>(s.scaffold)].name, s.start, s.end, s.name, s.leastDepth,
                        s.meanDepth, s.leastSupport, s.contradicted, s.leastBridge, s.spanningPairs, s.expectedPairs,
                        s.insertShift, s.clippedStart, s.clippedEnd, s.doubt.empty() ? "supported" : s.doubt);
    }
    return text;
}

std::string MaskPath(const VerifyOptions& options) {
    if (!options.maskFile.empty()) return options.maskFile;
    std::string stem = options.scaffolds;
    for (const char* suffix : {".gz", ".fasta", ".fna", ".fa"}) {
        std::string end = suffix;
        if (stem.size() > end.size() && stem.compare(stem.size() - end.size(), end.size(), end) == 0) {
            stem.resize(stem.size() - end.size());
        }
    }
    return stem + ".masked.fa";
}

void WriteMasked(const std::string& path, std::vector<FastaRecord> scaffolds, const std::vector<Stretch>& stretches) {
    for (const Stretch& s : stretches) {
        if (s.doubt.empty()) continue;
        std::string& text = scaffolds[static_cast<size_t>(s.scaffold)].sequence;
        std::fill(text.begin() + s.start, text.begin() + s.end, 'N');
    }
    AtomicFile out(path);
    for (const FastaRecord& record : scaffolds) WriteFasta(out, record.name, record.description, record.sequence);
    out.Commit();
}

int64_t Coordinate(const LineReader& in, const std::string& text) {
    if (text.empty() || text.size() > 15 || text.find_first_not_of("0123456789") != std::string::npos) {
        throw Error(fmt::format("{}:{}: not a coordinate: '{}'", in.Path(), in.Number(), text));
    }
    return std::stoll(text);
}

}  // namespace

std::vector<Stretch> ReadStretches(const std::string& path, const std::vector<FastaRecord>& scaffolds) {
    std::unordered_map<std::string, std::vector<int>> index;
    for (size_t i = 0; i < scaffolds.size(); ++i) index[scaffolds[i].name].push_back(static_cast<int>(i));
    std::vector<Stretch> stretches;
    LineReader in(path);
    // Scaffolds of one name are told apart by the order of the lines: a start in front of the last one begins the next.
    std::unordered_map<std::string, std::pair<size_t, int64_t>> last;
    for (std::string line; in.Next(line);) {
        if (line.empty() || line[0] == '#' || line.rfind("track", 0) == 0 || line.rfind("browser", 0) == 0) continue;
        std::vector<std::string> field = SplitTabs(line);
        if (field.size() < 3) throw Error(fmt::format("{}:{}: 3 fields expected: '{}'", path, in.Number(), line));
        Stretch stretch;
        stretch.line = in.Number();
        auto found = index.find(field[0]);
        if (found == index.end()) {
            throw Error(fmt::format("{}:{}: no such scaffold: '{}'", path, in.Number(), field[0]));
        }
        stretch.start = Coordinate(in, field[1]);
        stretch.end = Coordinate(in, field[2]);
        auto& [nth, before] = last.try_emplace(field[0], 0, 0).first->second;
        if (stretch.start < before && nth + 1 < found->second.size()) ++nth;
        before = stretch.start;
        stretch.scaffold = found->second[nth];
        auto length = static_cast<int64_t>(scaffolds[static_cast<size_t>(stretch.scaffold)].sequence.size());
        if (stretch.start > stretch.end || stretch.end > length) {
            throw Error(fmt::format("{}:{}: {}-{} does not lie in '{}' of {} bases", path, in.Number(), stretch.start,
                                    stretch.end, field[0], length));
        }
        stretch.name = field.size() > 3 ? field[3] : ".";
        stretches.push_back(stretch);
    }
    return stretches;
}

int RunVerify(const VerifyOptions& options) {
    CheckOptions(options);
    Progress progress(options.quiet);
    std::vector<FastaRecord> scaffolds = ReadFasta(options.scaffolds);
    std::vector<Stretch> stretches = ReadStretches(options.bed, scaffolds);
    Evidence evidence(scaffolds, std::move(stretches));
    if (options.bam.empty()) {
        MapBack(options, scaffolds, evidence, progress);
    } else {
        progress.Begin("read " + options.bam);
        evidence.Take(options.bam, -1, options.scaffolds, false, [&](long done) { progress.At(done); });
        progress.End("done");
    }
    stretches = evidence.Finish();

    std::string table = Table(scaffolds, stretches);
    if (options.output.empty()) {
        if (std::fwrite(table.data(), 1, table.size(), stdout) != table.size() || std::fflush(stdout) != 0) {
            throw Error("cannot write the table to the standard output");
        }
    } else {
        AtomicFile out(options.output);
        out.Write(table);
        out.Commit();
    }
    auto doubtful =
        std::count_if(stretches.begin(), stretches.end(), [](const Stretch& s) { return !s.doubt.empty(); });
    progress.Begin("weigh");
    if (options.mask || !options.maskFile.empty()) {
        WriteMasked(MaskPath(options), scaffolds, stretches);
        progress.End(fmt::format("{} of {} stretches have support; {} masked in {}",
                                 static_cast<long>(stretches.size()) - doubtful, stretches.size(), doubtful,
                                 MaskPath(options)));
    } else {
        progress.End(fmt::format("{} of {} stretches have support", static_cast<long>(stretches.size()) - doubtful,
                                 stretches.size()));
    }
    return 0;
}

}  // namespace lintara::kit
