#include "kit/fill/fill.h"

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>

#include "kit/assign/mapping.h"
#include "kit/assign/prepare.h"
#include "kit/base/child.h"
#include "kit/base/error.h"
#include "kit/base/progress.h"
#include "kit/fill/core_run.h"
#include "kit/fill/mapper.h"
#include "kit/fill/outputs.h"
#include "kit/fill/state.h"
#include "kit/fill/windows.h"
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

/// FNV-1a over texts, each with its end.
class Hash {
  public:
    void Add(std::string_view text) {
        for (unsigned char letter : text) Take(letter);
        Take(0xFF);
    }
    std::string Text() const { return fmt::format("{:016x}", value_); }

  private:
    void Take(unsigned char byte) { value_ = (value_ ^ byte) * 1099511628211ULL; }

    uint64_t value_ = 1469598103934665603ULL;
};

/// Of names and bases: tells whether a run goes on with the scaffolds that it began with.
std::string Fingerprint(const std::vector<FastaRecord>& records) {
    Hash hash;
    for (const FastaRecord& record : records) {
        hash.Add(record.name);
        hash.Add(record.sequence);
    }
    return hash.Text();
}

/// Of the sizes and first bytes of the files with the reads, by library: tells whether a run goes on with the reads
/// that it began with. Their names don't count, so that they may have been moved meanwhile.
std::string ReadsFingerprint(const FillOptions& options) {
    constexpr size_t kFirstBytes = 1 << 16;
    Hash hash;
    for (const std::vector<std::string>* files : {&options.reads1, &options.reads2, &options.bams}) {
        hash.Add(fmt::format("{} files", files->size()));
        for (const std::string& file : *files) {
            std::error_code fault;
            hash.Add(std::to_string(fs::file_size(file, fault)));
            hash.Add(FirstBytes(file, kFirstBytes));
        }
    }
    return hash.Text();
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
        CheckReadFiles(options_.reads1, options_.reads2);
        // A mapping is read twice too.
        CheckReadFiles(options_.bams, {});
        reads_fingerprint_ = ReadsFingerprint(options_);
        core_ = FindProgram(options_.core);
        if (core_.empty()) throw Error(NotFound(options_.core, "; --core takes its path"));
        if (!options_.bams.empty()) return;
        std::string program = FindProgram(options_.mapper);
        if (program.empty()) throw Error(NotFound(options_.mapper, "; the mapper must be installed"));
        mapper_ = Mapper(options_.mapper, program, options_.threads);
    }

    static std::string NotFound(const std::string& program, const std::string& hint) {
        bool path = program.find('/') != std::string::npos;
        return "the program " + program + " was not found" + (path ? "" : " beside lintara-kit or in PATH" + hint);
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
                // A run that was ended while it cleaned up leaves a rest.
                if (!options_.keep) fs::remove_all(work_, fault);
                progress_.End(options_.out + " is complete");
                return false;
            }
            CheckWorkIsOwn();
            for (const char* name : kOutputs) fs::remove(options_.out + "/" + name, fault);
            fs::remove_all(work_, fault);
        }
        fs::create_directories(work_, fault);
        if (fault) throw Error(fmt::format("cannot make the folder {}: {}", work_, fault.message()));
        state_ = StartState(records_, options_.minGap);
        return true;
    }

    /// The working folder goes with all that is in it, so that nothing of the user's may be there.
    void CheckWorkIsOwn() const {
        std::error_code none;
        for (const fs::directory_entry& entry : fs::directory_iterator(work_, none)) {
            std::string name = entry.path().filename().string();
            if (name.starts_with("round") || name.starts_with("state.json") || name.starts_with("version.")) continue;
            throw Error(fmt::format("{} is not of lintara-kit and would be removed: move {} away or give another OUT",
                                    entry.path().string(), work_));
        }
    }

    void LoadState(const std::string& path) {
        json saved;
        try {
            saved = json::parse(ReadWhole(path));
            if (saved.at("scaffolds_fingerprint") != Fingerprint(records_) || saved.at("min_gap") != options_.minGap) {
                throw Error(fmt::format("{} was begun with other scaffolds or another --min-gap", options_.out));
            }
            if (saved.at("reads_fingerprint") != reads_fingerprint_) {
                throw Error(fmt::format("{} was begun with other reads", options_.out));
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
                      {"reads_fingerprint", reads_fingerprint_},
                      {"min_gap", options_.minGap},
                      {"state", StateToJson(state_)},
                      {"rounds", rounds_},
                      {"commands", commands_},
                      {"times", times_},
                      {"cpu", cpu_}};
        // Paths need not be UTF-8.
        file.Write(saved.dump(-1, ' ', false, json::error_handler_t::replace));
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
        MakeFolder(folder_);
        std::error_code fault;
        std::string stage = fmt::format("round {}", round);

        std::vector<std::vector<AssignedRead>> assigned(static_cast<size_t>(layout.gapCount) + 1);
        json libraries = json::array();
        long longest = 0;
        if (options_.bams.empty()) {
            MapAndAssign(stage, layout, assigned, libraries, longest);
        } else {
            AssignBams(stage, layout, assigned, libraries, longest);
        }

        progress_.Begin(stage + ": fill", BasesOf(layout));
        double before = OwnCpu();
        CoreRun run = Fill(folder_, layout, assigned, longest, [&] { ShowFilling(layout); });
        for (const std::string& warning : run.warnings) progress_.Warn(warning);
        RoundGain gain = ApplyResults(next, records_, places, run.results, round);
        next.round = round;
        times_["fill"] += progress_.Seconds();
        AddCpu("core", run.end.cpu, before);
        progress_.End(fmt::format("{} gaps offered, {} gained, {} closed, {} bases", layout.gapCount, gain.gaps,
                                  gain.closed, gain.bases));
        next.gaining = gain.gaps > 0;
        std::string broken;
        try {
            if (options_.bams.empty()) LookCloser(stage, round, next, gain, longest);
        } catch (const Error& error) {
            broken = error.what();
        }
        next.gaining = gain.gaps > 0;
        rounds_.push_back({{"round", round},
                           {"gaps", layout.gapCount},
                           {"gained_gaps", gain.gaps},
                           {"closed_gaps", gain.closed},
                           {"filled_bases", gain.bases},
                           {"longest_read", longest},
                           {"libraries", libraries}});
        state_ = std::move(next);
        SaveState();
        if (!broken.empty()) throw Error(broken);
        if (!options_.keep) fs::remove_all(folder_, fault);
        return true;
    }

    /// Thins the reads, writes the core program's input below `folder` and runs it.
    CoreRun Fill(const std::string& folder, const Layout& layout, std::vector<std::vector<AssignedRead>>& assigned,
                 long longest, const std::function<void()>& tick = {}) {
        for (std::vector<AssignedRead>& reads : assigned) OrderAndThin(reads);
        std::vector<CoreScaffold> scaffolds = CoreScaffolds(layout, false);
        WriteCoreInput(layout, scaffolds, assigned, folder);
        CoreRun run = RunCore(core_, folder, std::max(longest, 1L), options_.threads, layout, scaffolds, assigned,
                              progress_.Shown() ? tick : std::function<void()>());
        commands_.push_back(CommandLine(run.command));
        if (!run.fault.empty()) throw Error(run.fault);
        return run;
    }

    static long BasesOf(const Layout& layout) {
        long bases = 0;
        for (const Sequence& sequence : layout.sequences) {
            if (!sequence.gaps.empty()) bases += static_cast<long>(sequence.text.size());
        }
        return bases;
    }

    /// How far the core program is: what it has written of the scaffolds.
    void ShowFilling(const Layout& layout) {
        long written = 0;
        std::error_code fault;
        for (int t = 1; t <= options_.threads; ++t) {
            auto size = fs::file_size(fmt::format("{}/core/FilledScaf/seq.thread{}", folder_, t), fault);
            if (!fault) written += static_cast<long>(size);
        }
        progress_.At(std::min(written, BasesOf(layout)));
    }

    /// Goes on with the reads that this round has kept, at the gaps that are still open, as long as they gain. A gap
    /// that does not is given more room, and then left to the next round.
    void LookCloser(const std::string& stage, int round, State& state, RoundGain& gain, long longest) {
        std::vector<PiecePlace> places;
        if (LayoutOf(state, records_, places).gapCount == 0) return;
        progress_.Begin(stage + ": look closer", kMostLooks);
        for (size_t l = 0; l < libraries_.size(); ++l) {
            double before = OwnCpu();
            WriteKeptPairs(KeptPath(l), folder_ + fmt::format("/pool{}_1.fq", l + 1),
                           folder_ + fmt::format("/pool{}_2.fq", l + 1));
            AddCpu("", 0, before);
        }
        RoundGain all;
        std::map<int, int> vain;  // original gap to looks without a gain since its last one
        int looks = 0;
        for (; looks < kMostLooks; ++looks) {
            progress_.At(looks);
            TrimFreshEnds(state);
            Layout layout = LayoutOf(state, records_, places);
            std::set<int> gaps;
            std::set<int> longer;
            for (int id = 1; id <= layout.gapCount; ++id) {
                int tries = vain[OriginalGap(state, places, id)];
                if (tries < kMostVainLooks) gaps.insert(id);
                if (tries > 0) longer.insert(id);
            }
            if (gaps.empty()) break;
            std::set<int> tried;
            for (int id : gaps) tried.insert(OriginalGap(state, places, id));
            std::vector<GapResult> results = LookOnce(looks + 1, layout, gaps, longer, longest);
            double before = OwnCpu();
            RoundGain step = ApplyResults(state, records_, places, results, round);
            AddCpu("", 0, before);
            for (int gap : tried) ++vain[gap];
            for (int gap : step.gained) vain[gap] = 0;
            all.gaps += step.gaps;
            all.closed += step.closed;
            all.bases += step.bases;
            gain.gaps += step.gaps;
            gain.closed += step.closed;
            gain.bases += step.bases;
        }
        times_["look"] += progress_.Seconds();
        progress_.End(
            fmt::format("{} looks, {} gaps gained, {} closed, {} bases", looks, all.gaps, all.closed, all.bases));
    }
    static constexpr int kMostLooks = 12;     ///< of a round
    static constexpr int kMostVainLooks = 2;  ///< at a gap, one after the other

    static int OriginalGap(const State& state, const std::vector<PiecePlace>& places, int id) {
        const PiecePlace& place = places[static_cast<size_t>(id) - 1];
        return state.scaffolds[static_cast<size_t>(place.scaffold)].pieces[place.piece].gap;
    }

    std::vector<GapResult> LookOnce(int look, const Layout& layout, const std::set<int>& gaps,
                                    const std::set<int>& longer, long longest) {
        std::string folder = fmt::format("{}/look{}", folder_, look);
        MakeFolder(folder);
        double reach = kLeastReach;
        for (const MappingSummary& library : libraries_) {
            const InsertSize& insert = library.libraries[0];
            reach = std::max(reach, insert.median + kDeviations * insert.deviation + static_cast<double>(longest));
        }
        double before = OwnCpu();
        double mapper = 0;
        Windows windows = CutWindows(layout, gaps, longer, static_cast<long>(reach));
        std::string reference = folder + "/windows.fa";
        WriteReference(windows.layout, reference);
        mapper += mapper_.Index(reference);
        std::vector<std::vector<AssignedRead>> assigned(static_cast<size_t>(windows.layout.gapCount) + 1);
        for (size_t l = 0; l < libraries_.size(); ++l) {
            auto assign = [&](int fd) { AssignMapping({"", fd, ""}, windows.layout, libraries_[l], assigned); };
            std::string pool = folder_ + fmt::format("/pool{}_", l + 1);
            const InsertSize& insert = libraries_[l].libraries[0];
            mapper += mapper_.Map(reference, {pool + "1.fq", pool + "2.fq"}, insert, folder + "/map.txt", assign);
            mapper += mapper_.Map(reference, {StrayPath(l)}, {}, folder + "/map.txt", assign);
        }
        TakeCommands();
        CoreRun run = Fill(folder, windows.layout, assigned, longest);
        for (GapResult& result : run.results) {
            size_t window = static_cast<size_t>(result.gap) - 1;
            const std::vector<AssignedRead>& reads = assigned[static_cast<size_t>(result.gap)];
            auto [contigs, stated] = Flanks(windows.layout, layout, result.gap, windows.gaps[window]);
            contigs.first.resize(contigs.first.size() - static_cast<size_t>(result.cutBefore));
            contigs.second.erase(0, static_cast<size_t>(result.cutAfter));
            CutAtBranches(result, contigs.first, contigs.second, reads, stated);
            FitLength(result, stated);
            result.gap = windows.gaps[window];
        }
        AddCpu("mapper", mapper, before);
        cpu_["core"] += run.end.cpu;
        return run.results;
    }
    static constexpr double kLeastReach = 500;  ///< of a window into a contig, bases

    /// The two contigs of a window's gap, and the gap's stated length.
    static std::pair<std::pair<std::string, std::string>, long> Flanks(const Layout& windows, const Layout& layout,
                                                                       int window, int id) {
        std::pair<std::string, std::string> contigs;
        for (const Sequence& sequence : windows.sequences) {
            for (const LayoutGap& gap : sequence.gaps) {
                if (gap.id != window) continue;
                auto part = [&](long from, long to) {
                    return sequence.text.substr(static_cast<size_t>(from), static_cast<size_t>(to - from));
                };
                contigs = {part(gap.leftStart, gap.span.start), part(gap.span.end, gap.rightEnd)};
            }
        }
        for (const Sequence& sequence : layout.sequences) {
            for (const LayoutGap& gap : sequence.gaps) {
                if (gap.id == id) return {contigs, gap.span.Length()};
            }
        }
        return {contigs, 1};
    }

    /// Adds a stage's wall time and the processor time of its child and of this process.
    void Note(const std::string& stage, double childCpu, double ownBefore) {
        times_[stage] += progress_.Seconds();
        AddCpu(stage == "map" ? "mapper" : stage, childCpu, ownBefore);
    }

    void AddCpu(const std::string& child, double childCpu, double ownBefore) {
        if (childCpu > 0) cpu_[child] += childCpu;
        cpu_["kit"] += OwnCpu() - ownBefore;
    }

    void TakeCommands() {
        for (std::string& command : mapper_.TakeCommands()) commands_.push_back(std::move(command));
    }

    static void MakeFolder(const std::string& folder) {
        std::error_code fault;
        fs::remove_all(folder, fault);
        fs::create_directories(folder, fault);
        if (fault) throw Error(fmt::format("cannot make the folder {}: {}", folder, fault.message()));
    }

    std::string KeptPath(size_t library) const { return fmt::format("{}/kept{}.bam", folder_, library + 1); }
    std::string StrayPath(size_t library) const { return fmt::format("{}/stray{}.fq", folder_, library + 1); }

    static void WriteReference(const Layout& layout, const std::string& path) {
        AtomicFile file(path);
        for (const Sequence& sequence : layout.sequences) {
            // A mapper has no use for a sequence without bases.
            if (!sequence.text.empty()) WriteFasta(file, sequence.name, "", sequence.text);
        }
        file.Commit();
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
            auto tell = [&](long reads) { progress_.At(reads); };
            MappingSummary summary = SummarizeMapping(input, layout, "", "", tell);
            AssignMapping(input, layout, summary, assigned, tell);
            longest = std::max(longest, summary.longestRead);
            AddLibraries(summary, bam, libraries);
            Note("assign", 0, before);
            progress_.End(SummaryWords(summary));
            WarnOfLibrary(bam, summary);
        }
    }

    /// What is no fault and yet hardly meant so.
    void WarnOfLibrary(const std::string& name, const MappingSummary& summary) {
        for (const std::string& warning : mapper_.TakeWarnings()) progress_.Warn(name + ": " + warning);
        if (summary.mapped == 0) progress_.Warn(name + ": no read maps to the scaffolds");
        if (state_.round == 0) WarnOfLongReads(name, summary, progress_);
    }

    void MapAndAssign(const std::string& stage, const Layout& layout, std::vector<std::vector<AssignedRead>>& assigned,
                      json& libraries, long& longest) {
        std::string reference = folder_ + "/scaffolds.fa";
        WriteReference(layout, reference);
        if (options_.mapper == "bwa") {
            progress_.Begin(stage + ": index");
            double before = OwnCpu();
            double cpu = mapper_.Index(reference);
            Note("map", cpu, before);
            progress_.End("done");
        }
        std::vector<long> known;
        for (const MappingSummary& library : libraries_) known.push_back(library.reads);
        libraries_.clear();
        auto tell = [&](long reads) { progress_.At(reads); };
        for (size_t l = 0; l < options_.reads1.size(); ++l) {
            // Later rounds know how many reads there are.
            long reads = !progress_.Shown() ? 0 : l < known.size() ? known[l] : 2 * EstimateReads(options_.reads1[l]);
            progress_.Begin(fmt::format("{}: map {}", stage, options_.reads1[l]), reads);
            double before = OwnCpu();
            MappingSummary summary;
            mapper_.TakeWarnings();
            double cpu =
                mapper_.Map(reference, {options_.reads1[l], options_.reads2[l]}, {},
                            fmt::format("{}/map{}.txt", folder_, l + 1), [&](int fd) {
                                summary = SummarizeMapping({"", fd, ""}, layout, KeptPath(l), StrayPath(l), tell);
                            });
            Note("map", cpu, before);
            TakeCommands();
            progress_.End(SummaryWords(summary));
            WarnOfLibrary(options_.reads1[l], summary);
            progress_.Begin(stage + ": assign");
            before = OwnCpu();
            size_t had = CountReads(assigned);
            AssignMapping({KeptPath(l), -1, ""}, layout, summary, assigned);
            longest = std::max(longest, summary.longestRead);
            AddLibraries(summary, options_.reads1[l], libraries);
            Note("assign", 0, before);
            progress_.End(fmt::format("{} reads to {} gaps", CountReads(assigned) - had, layout.gapCount));
            libraries_.push_back(std::move(summary));
        }
    }

    static size_t CountReads(const std::vector<std::vector<AssignedRead>>& assigned) {
        size_t count = 0;
        for (const std::vector<AssignedRead>& reads : assigned) count += reads.size();
        return count;
    }

    void WriteRunFile() {
        rusage own{};
        rusage children{};
        getrusage(RUSAGE_SELF, &own);
        getrusage(RUSAGE_CHILDREN, &children);
        long peak = std::max(own.ru_maxrss, children.ru_maxrss);
        times_["total"] += std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        json run = {{"version", LINTARA_KIT_VERSION},
                    {"command", options_.command},
                    {"commands", commands_},
                    {"rounds", rounds_},
                    {"times", times_},
                    {"cpu_seconds", cpu_},
                    {"peak_memory_mb", static_cast<double>(peak) / 1024.0},
                    {"kit_peak_memory_mb", static_cast<double>(own.ru_maxrss) / 1024.0},
                    {"scaffolds", options_.scaffolds},
                    {"threads", options_.threads}};
        if (options_.bams.empty()) run["mapper"] = options_.mapper + " " + mapper_.Version(work_);
        if (!fault_.empty()) run["fault"] = fault_;
        AtomicFile file(options_.out + "/run.json");
        file.Write(run.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
        file.Commit();
    }

    const FillOptions& options_;
    Progress progress_;
    std::string work_;
    std::string folder_;  ///< of the present round
    std::string core_;
    Mapper mapper_;
    std::vector<MappingSummary> libraries_;  ///< of the present round's mapping
    std::vector<FastaRecord> records_;
    std::string reads_fingerprint_;
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
