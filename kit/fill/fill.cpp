#include "kit/fill/fill.h"

#include <fmt/format.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "kit/assign/mapping.h"
#include "kit/assign/prepare.h"
#include "kit/base/child.h"
#include "kit/base/error.h"
#include "kit/base/progress.h"
#include "kit/fill/core_run.h"
#include "kit/fill/outputs.h"
#include "kit/fill/state.h"
#include "kit/report/report.h"

namespace lintara::kit {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// Files of a complete OUT, the last one last.
constexpr const char* kOutputs[] = {"filled.fa", "filled.fa.fai",  "filled.agp",  "fills.fa",         "filled.bed",
                                    "gaps.tsv",  "columns.tsv.gz", "report.html", "lintara_mqc.json", "run.json"};

double Seconds(const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
}

double OwnCpu() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

/// FNV-1a over names and bases: tells whether a run goes on with the scaffolds that it began with.
std::string Fingerprint(const std::vector<FastaRecord>& records) {
    uint64_t hash = 1469598103934665603ULL;
    auto add = [&](const std::string& text) {
        for (unsigned char letter : text) hash = (hash ^ letter) * 1099511628211ULL;
        hash = (hash ^ 0xFFU) * 1099511628211ULL;
    };
    for (const FastaRecord& record : records) {
        add(record.name);
        add(record.sequence);
    }
    return fmt::format("{:016x}", hash);
}

class Filler {
  public:
    explicit Filler(const FillOptions& options)
        : options_(options), progress_(options.quiet), work_(options.out + "/work") {}

    int Run() {
        start_ = std::chrono::steady_clock::now();
        CheckOptions();
        records_ = ReadFasta(options_.scaffolds);
        if (!OpenFolder()) return 0;
        WarnOfLetters(records_, progress_);
        RunRounds();
        progress_.Begin("write " + options_.out);
        WriteOutputs(state_, records_, options_.out);
        WriteRunFile();
        WriteReport(options_.out);
        std::error_code fault;
        if (fault_.empty() && !options_.keep) fs::remove_all(work_, fault);
        OutcomeCounts counts = CountOutcomes(state_);
        progress_.End(fmt::format("{} gaps: {} closed, {} merged, {} extended, {} open; {} bases filled",
                                  state_.gaps.size(), counts.closed, counts.merged, counts.extended, counts.open,
                                  counts.filledBases));
        if (fault_.empty()) return 0;
        throw Error(fault_ + "\nwhat was gained before is in " + options_.out);
    }

  private:
    void CheckOptions() {
        if (options_.bams.empty() == options_.reads1.empty()) {
            throw Error("give either read pairs (-1 and -2) or --bam");
        }
        if (options_.reads1.size() != options_.reads2.size()) {
            throw Error(
                fmt::format("-1 was given {} times and -2 {} times", options_.reads1.size(), options_.reads2.size()));
        }
        for (const std::vector<std::string>* files : {&options_.reads1, &options_.reads2, &options_.bams}) {
            for (const std::string& file : *files) LineReader test(file);
        }
        core_ = FindProgram(options_.core);
        if (core_.empty()) throw Error("the program " + options_.core + " was not found");
        if (!options_.bams.empty()) return;
        mapper_ = FindProgram(options_.mapper);
        if (mapper_.empty()) throw Error("the program " + options_.mapper + " was not found");
    }

    /// Makes OUT, or takes up the state of an earlier run. False: the run is complete already.
    bool OpenFolder() {
        std::error_code fault;
        std::string saved = work_ + "/state.json";
        if (fs::exists(options_.out, fault)) {
            if (!options_.resume && !options_.force) {
                throw Error(fmt::format("{} exists: go on with --resume or begin anew with --force", options_.out));
            }
            if (options_.resume && fs::exists(saved, fault)) {
                LoadState(saved);
                return true;
            }
            if (options_.resume && fs::exists(options_.out + "/run.json", fault)) {
                progress_.Begin("resume");
                progress_.End(options_.out + " is complete");
                return false;
            }
            for (const char* name : kOutputs) fs::remove(options_.out + "/" + name, fault);
            fs::remove_all(work_, fault);
        }
        fs::create_directories(work_, fault);
        if (fault) throw Error(fmt::format("cannot make the folder {}: {}", work_, fault.message()));
        state_ = StartState(records_, options_.minGap);
        return true;
    }

    void LoadState(const std::string& path) {
        json saved;
        try {
            saved = json::parse(ReadWhole(path));
            if (saved.at("scaffolds_fingerprint") != Fingerprint(records_) || saved.at("min_gap") != options_.minGap) {
                throw Error(fmt::format("{} was begun with other scaffolds or another --min-gap", options_.out));
            }
            state_ = StateFromJson(saved.at("state"));
            rounds_ = saved.at("rounds");
            commands_ = saved.at("commands").get<std::vector<std::string>>();
            times_ = saved.at("times").get<std::map<std::string, double>>();
            cpu_ = saved.at("cpu").get<std::map<std::string, double>>();
        } catch (const json::exception& damaged) {
            throw Error(fmt::format("{} cannot be used: {}", path, damaged.what()));
        }
        progress_.Begin("resume");
        progress_.End(fmt::format("{} goes on after round {}", options_.out, state_.round));
    }

    void SaveState() {
        AtomicFile file(work_ + "/state.json");
        json saved = {{"scaffolds_fingerprint", Fingerprint(records_)},
                      {"min_gap", options_.minGap},
                      {"state", StateToJson(state_)},
                      {"rounds", rounds_},
                      {"commands", commands_},
                      {"times", times_},
                      {"cpu", cpu_}};
        file.Write(saved.dump());
        file.Commit();
    }

    void RunRounds() {
        int most = options_.bams.empty() ? options_.rounds : 1;
        while (state_.gaining && state_.round < most && fault_.empty()) {
            int round = state_.round + 1;
            try {
                if (!RunRound(round)) return;
            } catch (const Error& error) {
                // What the rounds before have gained is written; without any gain there is nothing to write.
                if (state_.round == 0) throw;
                fault_ = error.what();
            }
        }
    }

    /// False when there is nothing left to fill.
    bool RunRound(int round) {
        State next = state_;
        if (round > 1) TrimForNextRound(next);
        std::vector<PiecePlace> places;
        Layout layout = LayoutOf(next, records_, places);
        if (layout.gapCount == 0) return false;
        folder_ = fmt::format("{}/round{}", work_, round);
        std::error_code fault;
        fs::remove_all(folder_, fault);
        fs::create_directories(folder_, fault);
        if (fault) throw Error(fmt::format("cannot make the folder {}: {}", folder_, fault.message()));
        std::string stage = fmt::format("round {}", round);

        std::vector<std::vector<AssignedRead>> assigned(static_cast<size_t>(layout.gapCount) + 1);
        json libraries = json::array();
        long longest = 0;
        if (options_.bams.empty()) {
            MapAndAssign(stage, layout, assigned, libraries, longest);
        } else {
            AssignBams(stage, layout, assigned, libraries, longest);
        }
        for (std::vector<AssignedRead>& reads : assigned) OrderAndThin(reads);

        progress_.Begin(stage + ": fill");
        double before = OwnCpu();
        std::vector<CoreScaffold> scaffolds = CoreScaffolds(layout, false);
        WriteCoreInput(layout, scaffolds, assigned, folder_);
        CoreRun run = RunCore(core_, folder_, std::max(longest, 1L), options_.threads, layout, scaffolds, assigned);
        commands_.push_back(CommandLine(run.command));
        if (!run.fault.empty()) throw Error(run.fault);
        for (const std::string& warning : run.warnings) progress_.Warn(warning);
        RoundGain gain = ApplyResults(next, records_, places, run.results, round);
        next.round = round;
        next.gaining = gain.gaps > 0;
        Note("fill", run.end.cpu, before);
        progress_.End(fmt::format("{} gaps offered, {} gained, {} closed, {} bases", layout.gapCount, gain.gaps,
                                  gain.closed, gain.bases));
        rounds_.push_back({{"round", round},
                           {"gaps", layout.gapCount},
                           {"gained_gaps", gain.gaps},
                           {"closed_gaps", gain.closed},
                           {"filled_bases", gain.bases},
                           {"longest_read", longest},
                           {"libraries", libraries}});
        state_ = std::move(next);
        SaveState();
        if (!options_.keep) fs::remove_all(folder_, fault);
        return true;
    }

    /// Adds a stage's wall time and the processor time of its child and of this process.
    void Note(const std::string& stage, double childCpu, double ownBefore) {
        times_[stage] += progress_.Seconds();
        cpu_[stage == "map" ? "mapper" : stage == "fill" ? "core" : stage] += childCpu;
        cpu_["kit"] += OwnCpu() - ownBefore;
    }

    void AddLibraries(const MappingSummary& summary, const std::string& name, json& libraries) {
        for (size_t i = 0; i < summary.libraries.size(); ++i) {
            const InsertSize& size = summary.libraries[i];
            libraries.push_back({{"name", summary.libraries.size() > 1 ? summary.names[i] : name},
                                 {"insert_median", size.median},
                                 {"insert_deviation", size.deviation},
                                 {"pairs", size.pairs}});
        }
    }

    static std::string SummaryWords(const MappingSummary& summary) {
        std::string sizes;
        for (const InsertSize& size : summary.libraries) {
            sizes += size.pairs == 0 ? std::string(", no proper pairs")
                                     : fmt::format(", insert size {:.0f} +- {:.1f}", size.median, size.deviation);
        }
        return fmt::format("{} reads, {} mapped{}", summary.reads, summary.mapped, sizes);
    }

    void AssignBams(const std::string& stage, Layout& layout, std::vector<std::vector<AssignedRead>>& assigned,
                    json& libraries, long& longest) {
        for (size_t s = 0; s < records_.size(); ++s) layout.sequences[s].name = records_[s].name;
        std::string reference = ReferenceForCram(options_.bams, records_, folder_);
        for (const std::string& bam : options_.bams) {
            progress_.Begin(stage + ": assign " + bam);
            double before = OwnCpu();
            MappingInput input{bam, -1, reference};
            MappingSummary summary = SummarizeMapping(input, layout, "");
            AssignMapping(input, layout, summary, assigned);
            longest = std::max(longest, summary.longestRead);
            AddLibraries(summary, bam, libraries);
            Note("assign", 0, before);
            progress_.End(SummaryWords(summary));
        }
    }

    void MapAndAssign(const std::string& stage, const Layout& layout, std::vector<std::vector<AssignedRead>>& assigned,
                      json& libraries, long& longest) {
        std::string reference = folder_ + "/scaffolds.fa";
        {
            AtomicFile file(reference);
            for (const Sequence& sequence : layout.sequences) {
                // A mapper has no use for a sequence without bases.
                WriteFasta(file, sequence.name, "", sequence.text.empty() ? "N" : sequence.text);
            }
            file.Commit();
        }
        if (options_.mapper == "bwa") {
            progress_.Begin(stage + ": index");
            double before = OwnCpu();
            RunToEnd({mapper_, "index", reference}, "index");
            (void)before;
            progress_.End("done");
        }
        for (size_t l = 0; l < options_.reads1.size(); ++l) {
            std::string kept = fmt::format("{}/kept{}.bam", folder_, l + 1);
            progress_.Begin(fmt::format("{}: map {}", stage, options_.reads1[l]));
            MappingSummary summary = Map(reference, l, layout, kept);
            progress_.End(SummaryWords(summary));
            progress_.Begin(stage + ": assign");
            double before = OwnCpu();
            size_t had = CountReads(assigned);
            AssignMapping({kept, -1, ""}, layout, summary, assigned);
            longest = std::max(longest, summary.longestRead);
            AddLibraries(summary, options_.reads1[l], libraries);
            Note("assign", 0, before);
            progress_.End(fmt::format("{} reads to {} gaps", CountReads(assigned) - had, layout.gapCount));
        }
    }

    static size_t CountReads(const std::vector<std::vector<AssignedRead>>& assigned) {
        size_t count = 0;
        for (const std::vector<AssignedRead>& reads : assigned) count += reads.size();
        return count;
    }

    void RunToEnd(const std::vector<std::string>& command, const std::string& name) {
        std::string messages = folder_ + "/" + name + ".txt";
        double before = OwnCpu();
        commands_.push_back(CommandLine(command));
        Child child(command, folder_ + "/" + name + ".out", messages);
        ChildEnd end = child.Wait();
        Note("map", end.cpu, before);
        ThrowIfBad(command[0], end, messages);
    }

    static void ThrowIfBad(const std::string& program, const ChildEnd& end, const std::string& messages) {
        if (end.Good()) return;
        std::string words = LastLines(messages, 3);
        throw Error(EndWords(program, end) + (words.empty() ? "" : ": " + words));
    }

    MappingSummary Map(const std::string& reference, size_t library, const Layout& layout, const std::string& kept) {
        std::string threads = std::to_string(options_.threads);
        // A fixed batch size makes the mapping the same with any number of threads.
        std::vector<std::string> command = {mapper_, "mem", "-t", threads, "-K", "10000000", "-v", "1", reference};
        if (options_.mapper != "bwa") command = {mapper_, "-ax", "sr", "-t", threads, reference};
        command.push_back(options_.reads1[library]);
        command.push_back(options_.reads2[library]);
        commands_.push_back(CommandLine(command));
        std::string messages = fmt::format("{}/map{}.txt", folder_, library + 1);
        double before = OwnCpu();
        Child child(command, "", messages);
        MappingSummary summary;
        std::string broken;
        try {
            summary = SummarizeMapping({"", child.TakeOutFd(), ""}, layout, kept);
        } catch (const Error& error) {
            broken = error.what();
        }
        ChildEnd end = child.Wait();
        Note("map", end.cpu, before);
        // When our side broke off, the mapper's end is its consequence, unless it had a fault of its own.
        if (broken.empty() || (end.signal != SIGPIPE && !end.Good())) ThrowIfBad(mapper_, end, messages);
        if (!broken.empty()) throw Error(broken);
        return summary;
    }

    /// First words with a digit that the mapper says of its version.
    std::string MapperVersion() {
        std::string out = work_ + "/version.out";
        std::string err = work_ + "/version.txt";
        std::vector<std::string> command = {mapper_};
        if (options_.mapper != "bwa") command.push_back("--version");
        Child child(command, out, err);
        child.Wait();
        std::string words = ReadWhole(options_.mapper == "bwa" ? err : out);
        size_t at = words.find("Version: ");
        at = at == std::string::npos ? 0 : at + 9;
        return words.substr(at, words.find('\n', at) - at);
    }

    void WriteRunFile() {
        rusage own{};
        rusage children{};
        getrusage(RUSAGE_SELF, &own);
        getrusage(RUSAGE_CHILDREN, &children);
        long peak = std::max(own.ru_maxrss, children.ru_maxrss);
        times_["total"] += std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        json run = {{"version", LINTARA_KIT_VERSION},
                    {"commands", commands_},
                    {"rounds", rounds_},
                    {"times", times_},
                    {"cpu_seconds", cpu_},
                    {"peak_memory_mb", static_cast<double>(peak) / 1024.0},
                    {"kit_peak_memory_mb", static_cast<double>(own.ru_maxrss) / 1024.0},
                    {"scaffolds", options_.scaffolds},
                    {"threads", options_.threads}};
        if (!mapper_.empty()) run["mapper"] = options_.mapper + " " + MapperVersion();
        if (!fault_.empty()) run["fault"] = fault_;
        AtomicFile file(options_.out + "/run.json");
        file.Write(run.dump(2) + "\n");
        file.Commit();
    }

    const FillOptions& options_;
    Progress progress_;
    std::string work_;
    std::string folder_;  ///< of the present round
    std::string core_;
    std::string mapper_;
    std::vector<FastaRecord> records_;
    State state_;
    json rounds_ = json::array();
    std::vector<std::string> commands_;
    std::map<std::string, double> times_;
    std::map<std::string, double> cpu_;
    std::string fault_;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace

int RunFill(const FillOptions& options) {
    return Filler(options).Run();
}

}  // namespace lintara::kit
