// Runs every recorded run below this folder and compares all outputs, see README.md.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

/// A file's text, plain or gzip-compressed; empty when there is none.
std::string Text(const fs::path& path) {
    const fs::path packed = path.string() + ".gz";
    gzFile file = gzopen(fs::exists(packed) ? packed.c_str() : path.c_str(), "rb");
    if (file == nullptr) return "";
    std::string text;
    char buffer[65536];
    for (int count = 0; (count = gzread(file, buffer, sizeof buffer)) > 0;) text.append(buffer, count);
    gzclose(file);
    return text;
}

Lines SplitLines(const std::string& text) {
    Lines lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

bool StartsWith(const std::string& line, const std::string& head) {
    return line.compare(0, head.size(), head) == 0;
}

Lines NormalMessages(const std::string& text) {
    static const std::regex clock("(using time: |used time: )[0-9.e+-]+min");
    return SplitLines(std::regex_replace(text, clock, "$1#min"));
}

/// Whether a line may belong to the drawing of an alignment.
bool IsDrawing(const std::string& line) {
    return line.find_first_not_of("~ \tACGTNacgtn|-") == std::string::npos;
}

/// The log without clock readings and without the two traces of free form.
Lines NormalLog(const std::string& text) {
    static const std::regex clock("\ttime: [0-9]+$");
    static const std::regex order_end("^[0-9]+ order element used");
    Lines lines;
    bool in_order_list = false;
    for (const std::string& line : SplitLines(text)) {
        if (in_order_list && !std::regex_search(line, order_end)) continue;
        in_order_list = false;
        if (StartsWith(line, "show order list: ")) {
            lines.emplace_back("show order list: ");
            in_order_list = true;
            continue;
        }
        if (StartsWith(line, "gap possible len: ")) {
            while (!lines.empty() && IsDrawing(lines.back())) lines.pop_back();
        }
        // Only the end of a line is searched, since the lines hold whole sequences.
        const std::size_t tail = line.size() - std::min<std::size_t>(line.size(), 40);
        lines.push_back(line.substr(0, tail) + std::regex_replace(line.substr(tail), clock, "\ttime: #"));
    }
    return lines;
}

/// Reports the first line in which two outputs differ.
void ExpectSame(const std::string& kind, const Lines& expected, const Lines& got) {
    for (std::size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
        const std::string want = i < expected.size() ? expected[i] : "<end>";
        const std::string have = i < got.size() ? got[i] : "<end>";
        if (want == have) continue;
        ADD_FAILURE() << kind << " line " << i + 1 << "\nexpected: " << want.substr(0, 300)
                      << "\ngot:      " << have.substr(0, 300);
        return;
    }
}

class RecordedRun : public ::testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "lintara-case-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        directory_ = pattern;
        fs::create_directory(directory_ / "out");
    }
    void TearDown() override { fs::remove_all(directory_); }

    fs::path directory_;
};

TEST_P(RecordedRun, AgreesInEveryOutput) {
    const fs::path root = fs::path(LINTARA_CASES) / GetParam();
    fs::path input = root;
    if (fs::exists(root / "input")) {
        std::string place = Text(root / "input");
        place.erase(place.find_last_not_of('\n') + 1);
        input = fs::canonical(root / place);
    }
    const fs::path gaps = input / (fs::exists(input / "gap.fa.gz") ? "gap.fa.gz" : "gap.fa");
    const fs::path out = directory_ / "out";
    std::string args = Text(root / "args");
    args.erase(args.find_last_not_of('\n') + 1);
    const testing::ProgramResult run =
        testing::RunCommand("exec " + std::string(LINTARA_PROGRAM) + " -g " + gaps.string() + " -c " +
                                (input / "contig.fa").string() + " -o " + out.string() + " " + args,
                            directory_.string());

    EXPECT_EQ(std::to_string(run.status), Text(root / "expected" / "status"));
    ExpectSame("stdout", SplitLines(Text(root / "expected" / "stdout")), SplitLines(run.out));
    std::string messages = run.err;
    Replace(messages, input.string(), "CASE");
    Replace(messages, out.string(), "OUT");
    ExpectSame("stderr", NormalMessages(Text(root / "expected" / "stderr")), NormalMessages(messages));
    ExpectSame("seq", SplitLines(Text(root / "expected" / "seq")),
               SplitLines(Text(out / "FilledScaf" / "seq.thread1")));
    ExpectSame("log", NormalLog(Text(root / "expected" / "log")), NormalLog(Text(out / "Log" / "log.thread1")));
    ExpectSame("snp", SplitLines(Text(root / "expected" / "snp")), SplitLines(Text(out / "Snp" / "snp.thread1")));
}

std::vector<std::string> CaseNames() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(LINTARA_CASES)) {
        if (fs::exists(entry.path() / "expected")) names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Cases, RecordedRun, ::testing::ValuesIn(CaseNames()), [](const auto& param_info) {
    std::string name = param_info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace lintara
