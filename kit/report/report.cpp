#include "kit/report/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>

#include "kit/base/error.h"
#include "kit/report/page.h"

namespace lintara::kit {
namespace {

using nlohmann::json;

constexpr int kGapFields = 14;
// Steps along a gap in the chart: few enough that a report of 100,000 gaps still opens.
constexpr int kMostSteps = 300;
constexpr int kFewestSteps = 24;
constexpr long kAllSteps = 1'000'000;
constexpr long kLongestFill = 100'000'000;

long Whole(const LineReader& in, const std::string& value, const char* what) {
    size_t used = 0;
    long number = 0;
    try {
        number = std::stol(value, &used);
    } catch (const std::exception&) {
        used = std::string::npos;
    }
    if (used != value.size()) {
        throw Error(fmt::format("{}:{}: {} is not a number: '{}'", in.Path(), in.Number(), what, value));
    }
    return number;
}

json NumberOrNull(const std::string& text) {
    try {
        size_t used = 0;
        double value = std::stod(text, &used);
        if (used == text.size()) return value;
    } catch (const std::exception&) {
    }
    return nullptr;
}

/// Support and depth of each gap, told base by base; bases that no line tells of stay -1.
std::map<int, ReportColumns> ReadColumns(const std::string& path) {
    std::map<int, ReportColumns> all;
    if (!std::filesystem::exists(path)) return all;
    LineReader in(path);
    for (std::string line; in.Next(line);) {
        if (in.Number() == 1 && line.rfind("gap\t", 0) == 0) continue;
        std::vector<std::string> field = SplitTabs(line);
        if (field.size() < 4) throw Error(fmt::format("{}:{}: 4 fields expected: '{}'", path, in.Number(), line));
        long position = Whole(in, field[1], "position");
        if (position < 0 || position >= kLongestFill) {
            throw Error(fmt::format("{}:{}: position out of range: '{}'", path, in.Number(), field[1]));
        }
        ReportColumns& columns = all[static_cast<int>(Whole(in, field[0], "gap"))];
        if (static_cast<long>(columns.support.size()) <= position) {
            columns.support.resize(static_cast<size_t>(position) + 1, -1);
            columns.depth.resize(static_cast<size_t>(position) + 1, -1);
        }
        columns.support[static_cast<size_t>(position)] = static_cast<int>(Whole(in, field[2], "support"));
        columns.depth[static_cast<size_t>(position)] = static_cast<int>(Whole(in, field[3], "depth"));
    }
    return all;
}

/// Bins for the chart: the weakest base stands for its bin, so that no weak base gets lost.
json Bins(const ReportColumns& columns, int steps) {
    int length = static_cast<int>(columns.support.size());
    int step = std::max(1, (length + steps - 1) / steps);
    json support = json::array();
    json depth = json::array();
    for (int from = 0; from < length; from += step) {
        int weakest = -1;
        for (int i = from; i < std::min(length, from + step); ++i) {
            if (columns.support[static_cast<size_t>(i)] < 0) continue;
            if (weakest < 0 || columns.support[static_cast<size_t>(i)] < columns.support[static_cast<size_t>(weakest)])
                weakest = i;
        }
        support.push_back(weakest < 0 ? -1 : columns.support[static_cast<size_t>(weakest)]);
        depth.push_back(weakest < 0 ? -1 : columns.depth[static_cast<size_t>(weakest)]);
    }
    return {{"length", length}, {"step", step}, {"s", support}, {"d", depth}};
}

/// Places of each gap's fill in filled.fa; the gap's number is behind "gap" in the fourth column.
std::map<int, json> ReadPlaces(const std::string& path) {
    std::map<int, json> places;
    if (!std::filesystem::exists(path)) return places;
    LineReader in(path);
    for (std::string line; in.Next(line);) {
        std::vector<std::string> field = SplitTabs(line);
        if (field.size() < 4 || field[3].rfind("gap", 0) != 0) continue;
        int gap = static_cast<int>(Whole(in, field[3].substr(3), "gap"));
        places[gap].push_back({Whole(in, field[1], "start"), Whole(in, field[2], "end")});
    }
    return places;
}

json ReadRun(const std::string& path) {
    if (!std::filesystem::exists(path)) return json::object();
    json run = json::parse(ReadWhole(path), nullptr, false);
    if (!run.is_object()) throw Error(fmt::format("{}: not a JSON object", path));
    return run;
}

json Member(const json& from, const char* name, const json& otherwise) {
    auto found = from.find(name);
    return found != from.end() && found->type() == otherwise.type() ? *found : otherwise;
}

json PageData(const std::string& title, const std::vector<ReportGap>& gaps, const std::string& out) {
    std::map<int, ReportColumns> columns = ReadColumns(out + "/columns.tsv.gz");
    std::map<int, json> places = ReadPlaces(out + "/filled.bed");
    json run = ReadRun(out + "/run.json");
    int steps = static_cast<int>(
        std::clamp<long>(kAllSteps / std::max<long>(1, static_cast<long>(columns.size())), kFewestSteps, kMostSteps));

    json list = json::array();
    for (const ReportGap& gap : gaps) {
        auto place = places.find(gap.gap);
        list.push_back({{"gap", gap.gap},
                        {"scaffold", gap.scaffold},
                        {"start", gap.start},
                        {"end", gap.end},
                        {"stated", gap.stated},
                        {"outcome", gap.outcome},
                        {"filled", gap.filled},
                        {"open", gap.open},
                        {"round", gap.round},
                        {"strategy", gap.strategy},
                        {"reads", gap.reads},
                        {"reason", gap.reason},
                        {"least", NumberOrNull(gap.leastSupport)},
                        {"mean", NumberOrNull(gap.meanSupport)},
                        {"places", place == places.end() ? json::array() : place->second}});
    }
    json bins = json::object();
    for (const ReportGap& gap : gaps) {
        auto column = columns.find(gap.gap);
        if (column == columns.end()) continue;
        // Bases behind the last column are part of the fill too.
        size_t length =
            std::max(column->second.support.size(), static_cast<size_t>(std::clamp(gap.filled, 0L, kLongestFill)));
        column->second.support.resize(length, -1);
        column->second.depth.resize(length, -1);
        bins[std::to_string(gap.gap)] = Bins(column->second, steps);
    }

    // Commands, times and memory stay in run.json: the report is the same however many threads made it.
    json rounds = json::array();
    for (const json& round : Member(run, "rounds", json::array())) {
        if (round.is_object() && round.contains("round") && round.contains("filled_bases")) {
            rounds.push_back({{"round", round["round"]}, {"filled_bases", round["filled_bases"]}});
        }
    }
    return {{"title", title},
            {"version", Member(run, "version", "")},
            {"rounds", rounds},
            {"gaps", list},
            {"columns", bins}};
}

/// JSON that may stand inside a script element: no '<' can end the element. Names in other encodings than UTF-8 stay
/// readable but for the odd bytes.
std::string InlineJson(const json& data) {
    std::string text = data.dump(-1, ' ', false, json::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size());
    for (char c : text) {
        if (c == '<') {
            safe += "\\u003c";
        } else {
            safe += c;
        }
    }
    return safe;
}

std::string RunTitle(const std::string& out) {
    std::filesystem::path path = std::filesystem::absolute(out).lexically_normal();
    if (!path.has_filename()) path = path.parent_path();
    return path.filename().string();
}

void WritePage(const std::string& path, const json& data) {
    AtomicFile page(path);
    page.Write(
        "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>Lintara gap report</title>\n<link rel=\"icon\" href=\"data:,\">\n<style>");
    page.Write(ReportStyle());
    page.Write("</style>\n</head>\n<body>");
    page.Write(ReportBody());
    page.Write("<script type=\"application/json\" id=\"data\">");
    page.Write(InlineJson(data));
    page.Write("</script>\n<script>");
    page.Write(ReportScript());
    page.Write("</script>\n</body>\n</html>\n");
    page.Commit();
}

/// A bar of outcomes for MultiQC's custom content; the sample is the output directory's name.
void WriteMultiqc(const std::string& path, const std::string& sample, const std::vector<ReportGap>& gaps) {
    std::map<std::string, int> count;
    for (const ReportGap& gap : gaps) ++count[gap.outcome];
    nlohmann::ordered_json bars;
    nlohmann::ordered_json look;
    const std::vector<std::pair<std::string, std::string>> outcomes = {
        {"closed", "#0c6b66"}, {"merged", "#3d5ba6"}, {"extended", "#d08a2e"}, {"open", "#a9adb3"}};
    for (const auto& [name, color] : outcomes) {
        bars[name] = count[name];
        std::string title = name;
        title[0] = static_cast<char>(title[0] - 'a' + 'A');
        look[name] = {{"name", title}, {"color", color}};
    }
    nlohmann::ordered_json content;
    content["id"] = "lintara_gaps";
    content["section_name"] = "Lintara";
    content["description"] = "Gaps of the scaffolds by their outcome.";
    content["plot_type"] = "bargraph";
    content["pconfig"] = {{"id", "lintara_gaps_plot"}, {"title", "Lintara: gaps by outcome"}, {"ylab", "Gaps"}};
    content["categories"] = look;
    content["data"][sample] = bars;
    AtomicFile file(path);
    file.Write(content.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    file.Commit();
}

}  // namespace

std::vector<ReportGap> ReadGapTable(const std::string& path) {
    LineReader in(path);
    std::string line;
    if (!in.Next(line) || line.rfind("gap\tscaffold\t", 0) != 0) {
        throw Error(fmt::format("{}:1: not a table of gaps: '{}'", path, line.substr(0, 60)));
    }
    static const std::set<std::string> kOutcomes = {"closed", "merged", "extended", "open"};
    std::vector<ReportGap> gaps;
    while (in.Next(line)) {
        std::vector<std::string> field = SplitTabs(line);
        if (static_cast<int>(field.size()) < kGapFields) {
            throw Error(fmt::format("{}:{}: {} fields instead of {}", path, in.Number(), field.size(), kGapFields));
        }
        ReportGap gap;
        gap.gap = static_cast<int>(Whole(in, field[0], "gap"));
        gap.scaffold = field[1];
        gap.start = Whole(in, field[2], "start");
        gap.end = Whole(in, field[3], "end");
        gap.stated = Whole(in, field[4], "stated");
        gap.outcome = field[5];
        if (kOutcomes.count(gap.outcome) == 0) {
            throw Error(fmt::format("{}:{}: unknown outcome: '{}'", path, in.Number(), gap.outcome));
        }
        gap.filled = Whole(in, field[6], "filled");
        gap.open = Whole(in, field[7], "open");
        gap.round = static_cast<int>(Whole(in, field[8], "round"));
        gap.strategy = field[9];
        gap.reads = Whole(in, field[10], "reads");
        gap.reason = field[11];
        gap.leastSupport = field[12];
        gap.meanSupport = field[13];
        gaps.push_back(gap);
    }
    return gaps;
}

void WriteReport(const std::string& out) {
    std::vector<ReportGap> gaps = ReadGapTable(out + "/gaps.tsv");
    std::string title = RunTitle(out);
    WritePage(out + "/report.html", PageData(title, gaps, out));
    WriteMultiqc(out + "/lintara_mqc.json", title, gaps);
}

}  // namespace lintara::kit
