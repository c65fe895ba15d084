#include "kit/fill/core_run.h"

#include <fmt/format.h>
#include <signal.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string_view>

#include "kit/base/error.h"
#include "kit/fill/evidence.h"

namespace lintara::kit {

namespace {

constexpr long kBigGap = 1500;  ///< from this stated length on the core program takes a gap as big

struct GapText {
    long before = 0;  ///< length of the contig in front, after any cut
    long after = 0;
    std::string text;
};

std::string CleanText(const std::string& text) {
    std::string clean = Upper(text);
    for (char& letter : clean) {
        if (letter != 'A' && letter != 'C' && letter != 'G' && letter != 'T') letter = 'N';
    }
    return clean;
}

std::map<int, GapText> ReadGapTexts(const std::string& path) {
    std::map<int, GapText> texts;
    LineReader reader(path);
    for (std::string head, text; reader.Next(head) && reader.Next(text);) {
        std::vector<std::string> fields = SplitTabs(head);
        if (fields.size() < 7 || !head.starts_with(">gap")) {
            throw Error(fmt::format("{}:{}: no gap record: \"{}\"", path, reader.Number() - 1, head.substr(0, 80)));
        }
        int id = static_cast<int>(std::strtol(fields[0].c_str() + 4, nullptr, 10));
        texts[id] = {std::strtol(fields[5].c_str(), nullptr, 10), std::strtol(fields[6].c_str(), nullptr, 10),
                     CleanText(text)};
    }
    return texts;
}

std::map<int, std::string> ReadScaffolds(const std::string& output, int threads) {
    std::map<int, std::string> scaffolds;
    for (int t = 1; t <= threads; ++t) {
        LineReader reader(fmt::format("{}/FilledScaf/seq.thread{}", output, t));
        std::string* text = nullptr;
        for (std::string line; reader.Next(line);) {
            if (line.starts_with('>')) {
                size_t number = std::min(line.size(), std::string_view(">scaffold").size());
                text = &scaffolds[static_cast<int>(std::strtol(line.c_str() + number, nullptr, 10))];
            } else if (text != nullptr) {
                *text += Upper(line);
            }
        }
    }
    return scaffolds;
}

/// Follows the gaps of one scaffold and keeps the contigs as the core program has cut them.
class ScaffoldReader {
  public:
    ScaffoldReader(const Layout& layout, const CoreScaffold& scaffold, const std::string& filled)
        : scaffold_(scaffold), filled_(filled) {
        const std::string& text = layout.sequences[static_cast<size_t>(scaffold.sequence)].text;
        for (const Span& contig : scaffold.contigs) {
            contigs_.push_back(text.substr(static_cast<size_t>(contig.start), static_cast<size_t>(contig.Length())));
        }
    }

    /// Takes the outcome of gap `g`; `text` is null for a gap without reads.
    void Take(size_t g, const GapText* text, const GapLog* log, GapResult& result) {
        std::string& before = contigs_[g];
        std::string& after = contigs_[g + 1];
        if (text != nullptr) {
            result.text = text->text;
            result.cutBefore = std::max(0L, static_cast<long>(before.size()) - text->before);
            result.cutAfter = std::max(0L, static_cast<long>(after.size()) - text->after);
        } else {
            long length = scaffold_.contigs[g + 1].start - scaffold_.contigs[g].end;
            bool gone = log != nullptr && (log->beforeIncluded || log->afterIncluded || log->mergedByEnds);
            result.text = gone ? "" : std::string(static_cast<size_t>(length), 'N');
            if (log != nullptr && log->beforeIncluded) result.cutBefore = static_cast<long>(before.size());
            if (log != nullptr && log->afterIncluded) result.cutAfter = static_cast<long>(after.size());
            if (log != nullptr && log->mergedByEnds) result.cutBefore = FindOverlap(before, after);
        }
        before.resize(before.size() - static_cast<size_t>(result.cutBefore));
        after.erase(0, static_cast<size_t>(result.cutAfter));
        flankBefore_ = before;
        composed_ += before + result.text;
    }
    const std::string& Before() const { return flankBefore_; }
    const std::string& After(size_t g) const { return contigs_[g + 1]; }
    /// True when the outcomes make up just what the core program wrote.
    bool Agrees() { return composed_ + contigs_.back() == filled_; }

  private:
    /// The log does not tell how far two merged contigs overlap: the filled scaffold does.
    long FindOverlap(const std::string& before, const std::string& after) const {
        std::string begin = after.substr(0, 60);
        long most = std::min<long>(static_cast<long>(before.size()), 400);
        for (long cut = 1; cut <= most; ++cut) {
            size_t at = composed_.size() + before.size() - static_cast<size_t>(cut);
            if (at + begin.size() <= filled_.size() && filled_.compare(at, begin.size(), begin) == 0) return cut;
        }
        return 0;
    }

    const CoreScaffold& scaffold_;
    const std::string& filled_;
    std::vector<std::string> contigs_;
    std::string composed_;
    std::string flankBefore_;
};

std::string StrategyOf(long length, long readLength, const GapLog* log) {
    if (length >= kBigGap) return "big";
    if (length > readLength || (log != nullptr && log->middle)) return "middle";
    return "small";
}

}  // namespace

void ReadCoreResults(const std::string& output, int threads, long readLength, const Layout& layout,
                     const std::vector<CoreScaffold>& scaffolds, const std::vector<std::vector<AssignedRead>>& assigned,
                     CoreRun& run) {
    std::map<int, GapText> texts = ReadGapTexts(output + "/gaps.fa");
    std::map<int, std::string> filled = ReadScaffolds(output, threads);
    std::map<int, std::vector<GapLog>> logs;
    std::map<int, std::vector<ColumnBlock>> columns;
    for (int t = 1; t <= threads; ++t) {
        ReadLog(fmt::format("{}/Log/log.thread{}", output, t), logs);
        ReadColumns(fmt::format("{}/Snp/snp.thread{}", output, t), columns);
    }
    for (const CoreScaffold& scaffold : scaffolds) {
        ScaffoldReader reader(layout, scaffold, filled[scaffold.number]);
        const std::vector<GapLog>& scaffoldLogs = logs[scaffold.number];
        std::vector<GapResult> results;
        for (size_t g = 0; g < scaffold.gaps.size(); ++g) {
            GapResult result;
            result.gap = scaffold.gaps[g];
            result.known = true;
            result.reads = static_cast<long>(assigned[static_cast<size_t>(result.gap)].size());
            auto text = texts.find(result.gap);
            const GapLog* log = g < scaffoldLogs.size() ? &scaffoldLogs[g] : nullptr;
            reader.Take(g, text == texts.end() ? nullptr : &text->second, log, result);
            long length = scaffold.contigs[g + 1].start - scaffold.contigs[g].end;
            if (log != nullptr && !log->noReads) result.strategy = StrategyOf(length, readLength, log);
            result.reason = ReasonWords(log != nullptr ? *log : GapLog{}, result.text, result.reads);
            PlaceColumns(columns[result.gap], reader.Before(), result.text, reader.After(g), result.support,
                         result.depth);
            if (log != nullptr && log->spanningReads > 0) {
                // Spanning reads decide a small gap without columns: each of them shows every base.
                for (size_t i = 0; i < result.text.size(); ++i) {
                    if (result.support[i] >= 0) continue;
                    result.support[i] = result.depth[i] = static_cast<int>(log->spanningReads);
                }
            }
            CountReadsOver(assigned[static_cast<size_t>(result.gap)], reader.Before(), result.text, reader.After(g),
                           result.support, result.depth);
            results.push_back(std::move(result));
        }
        if (!reader.Agrees()) {
            run.warnings.push_back(
                fmt::format("what the core program says of {} does not make up its scaffold {}; it "
                            "is left as it was",
                            output, scaffold.number));
            continue;
        }
        for (GapResult& result : results) run.results.push_back(std::move(result));
    }
}

CoreRun RunCore(const std::string& core, const std::string& folder, long readLength, int threads, const Layout& layout,
                const std::vector<CoreScaffold>& scaffolds, const std::vector<std::vector<AssignedRead>>& assigned,
                const std::function<void()>& tick) {
    CoreRun run;
    std::string output = folder + "/core";
    std::error_code fault;
    std::filesystem::remove_all(output, fault);
    std::filesystem::create_directories(output, fault);
    if (fault) throw Error(fmt::format("cannot make the folder {}: {}", output, fault.message()));
    run.command = {core,
                   "-c",
                   folder + "/contig.fa",
                   "-g",
                   folder + "/gap.fa.gz",
                   "-r",
                   std::to_string(readLength),
                   "-t",
                   std::to_string(threads),
                   "-o",
                   output};
    Child child(run.command, output + "/gaps.fa", output + "/messages.txt");
    run.end = child.Wait(tick);
    run.nothingFilled = run.end.signal == SIGFPE;
    if (!run.end.Good() && !run.nothingFilled) {
        run.fault = EndWords(core, run.end);
        std::string words = LastLines(output + "/messages.txt", 3);
        if (!words.empty()) run.fault += ": " + words;
        return run;
    }
    if (run.nothingFilled && !std::filesystem::exists(output + "/FilledScaf/seq.thread1")) {
        for (const CoreScaffold& scaffold : scaffolds) {
            for (int gap : scaffold.gaps) {
                GapResult result;
                result.gap = gap;
                result.reads = static_cast<long>(assigned[static_cast<size_t>(gap)].size());
                result.reason = "the core program filled nothing and told nothing";
                run.results.push_back(std::move(result));
            }
        }
        return run;
    }
    ReadCoreResults(output, threads, readLength, layout, scaffolds, assigned, run);
    return run;
}

}  // namespace lintara::kit
