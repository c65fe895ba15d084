#include "kit/report/report.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "kit/base/child.h"
#include "kit/base/error.h"

namespace lintara::kit {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const char* const kHeader =
    "gap\tscaffold\tstart\tend\tstated\toutcome\tfilled\topen\tround\tstrategy\treads\treason\tleast_support\t"
    "mean_support\n";

class Report : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kit-report-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
        out_ = root_ + "/sample one";
        fs::create_directory(out_);
    }
    void TearDown() override { fs::remove_all(root_); }

    void Put(const std::string& name, const std::string& text) const { std::ofstream(out_ + "/" + name) << text; }
    std::string Get(const std::string& name) const {
        std::ifstream in(out_ + "/" + name);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    json Data() const {
        std::string page = Get("report.html");
        std::string open = "<script type=\"application/json\" id=\"data\">";
        size_t from = page.find(open);
        EXPECT_NE(from, std::string::npos);
        from += open.size();
        return json::parse(page.substr(from, page.find("</script>", from) - from));
    }
    /// Five gaps: two closed (one with a chart), a merged, an extended and an open one.
    void PutRun() const {
        Put("gaps.tsv", std::string(kHeader) +
                            "1\tchr1\t100\t150\t50\tclosed\t6\t0\t1\tsmall\t40\tboth walks met\t2\t3.50\n"
                            "2\tchr1\t900\t901\t1\tmerged\t0\t0\t1\tsmall\t12\tthe contigs overlap\t.\t.\n"
                            "3\tchr2\t70\t670\t600\textended\t200\t400\t2\tmiddle\t90\tthe reads ran out\t1\t8.00\n"
                            "4\tchr2\t2000\t4000\t2000\topen\t0\t2000\t0\tnone\t0\tno reads\t.\t.\n"
                            "5\tchr10\t10\t310\t300\tclosed\t310\t0\t2\tmiddle\t77\tboth walks met\t4\t9.25\n");
        Put("filled.bed",
            "chr1\t100\t106\tgap1\t1\tsmall\t3.50\nchr2\t70\t170\tgap3\t1\tmiddle\t9\n"
            "chr2\t570\t670\tgap3\t2\tmiddle\t7\n");
        Put("columns.tsv.gz",
            "gap\tposition\tsupport\tdepth\n1\t0\t3\t4\n1\t1\t2\t4\n1\t3\t5\t5\n1\t4\t4\t4\n1\t5\t4\t4\n");
        Put("run.json", R"({"version":"1.19","commands":["lintara-kit fill -s a.fa -o b"],
            "rounds":[{"round":1,"gaps":5,"filled_bases":116}],"times":{"map":2.5},"peak_memory_mb":80})");
    }

    std::string root_;
    std::string out_;
};

TEST_F(Report, DataHoldsEveryGapAsTheTableTellsIt) {
    PutRun();
    WriteReport(out_);
    json data = Data();
    ASSERT_EQ(data["gaps"].size(), 5u);
    EXPECT_EQ(data["title"], "sample one");
    EXPECT_EQ(data["gaps"][2]["scaffold"], "chr2");
    EXPECT_EQ(data["gaps"][2]["filled"], 200);
    EXPECT_EQ(data["gaps"][2]["open"], 400);
    EXPECT_EQ(data["gaps"][2]["mean"], 8.0);
    EXPECT_EQ(data["gaps"][2]["places"], json::parse("[[70,170],[570,670]]"));
    EXPECT_TRUE(data["gaps"][1]["least"].is_null());
    EXPECT_EQ(data["rounds"][0]["filled_bases"], 116);
}

TEST_F(Report, ThreadsAndTimesLeaveNoTrace) {
    PutRun();
    WriteReport(out_);
    std::string before = Get("report.html");
    Put("run.json", R"({"version":"1.19","commands":["bwa mem -t 2"],
        "rounds":[{"round":1,"gaps":5,"filled_bases":116,"seconds":3}],"times":{"map":9.5},"peak_memory_mb":99})");
    WriteReport(out_);
    EXPECT_EQ(Get("report.html"), before);
}

TEST_F(Report, ColumnsThatNoLineTellsOfAreHoles) {
    PutRun();
    WriteReport(out_);
    json columns = Data()["columns"]["1"];
    EXPECT_EQ(columns["step"], 1);
    EXPECT_EQ(columns["length"], 6);
    EXPECT_EQ(columns["s"], json::parse("[3,2,-1,5,4,4]"));
    EXPECT_EQ(columns["d"], json::parse("[4,4,-1,5,4,4]"));
}

TEST_F(Report, ChartIsAsLongAsTheFill) {
    PutRun();
    Put("columns.tsv.gz", "gap\tposition\tsupport\tdepth\n1\t0\t3\t4\n");
    WriteReport(out_);
    EXPECT_EQ(Data()["columns"]["1"]["s"], json::parse("[3,-1,-1,-1,-1,-1]"));
}

TEST_F(Report, WeakestBaseStandsForItsStep) {
    PutRun();
    std::string text = "gap\tposition\tsupport\tdepth\n";
    for (int i = 0; i < 900; ++i) {
        text += "5\t" + std::to_string(i) + (i == 451 ? "\t1\t8\n" : "\t9\t9\n");
    }
    Put("columns.tsv.gz", text);
    WriteReport(out_);
    json columns = Data()["columns"]["5"];
    EXPECT_EQ(columns["step"], 3);
    ASSERT_EQ(columns["s"].size(), 300u);
    EXPECT_EQ(columns["s"][149], 9);
    EXPECT_EQ(columns["s"][150], 1);
    EXPECT_EQ(columns["d"][150], 8);
    EXPECT_EQ(columns["s"][151], 9);
}

TEST_F(Report, NamesCannotEndTheScript) {
    Put("gaps.tsv", std::string(kHeader) + "1\t</script><b>\t1\t2\t1\topen\t0\t1\t0\tnone\t0\t<!-- \xff \"x\"\t.\t.\n");
    WriteReport(out_);
    EXPECT_EQ(Data()["gaps"][0]["scaffold"], "</script><b>");
    EXPECT_EQ(Get("report.html").find("</script><b>"), std::string::npos);
}

TEST_F(Report, PageNeedsNoNetwork) {
    PutRun();
    WriteReport(out_);
    std::string page = Get("report.html");
    for (const char* outside : {"src=", "@import", "url(", "fetch(", "XMLHttpRequest", "<link rel=\"stylesheet\"",
                                "href=\"http", "https://"}) {
        EXPECT_EQ(page.find(outside), std::string::npos) << outside;
    }
}

TEST_F(Report, OtherTablesMayBeMissing) {
    Put("gaps.tsv", kHeader);
    WriteReport(out_);
    EXPECT_TRUE(Data()["gaps"].empty());
    EXPECT_TRUE(Data()["columns"].empty());
}

TEST_F(Report, MultiqcContentIsABarOfOutcomes) {
    PutRun();
    WriteReport(out_);
    json content = json::parse(Get("lintara_mqc.json"));
    EXPECT_EQ(content["plot_type"], "bargraph");
    EXPECT_TRUE(content["id"].is_string());
    EXPECT_TRUE(content["section_name"].is_string());
    EXPECT_EQ(content["data"]["sample one"], json::parse(R"({"closed":2,"merged":1,"extended":1,"open":1})"));
    for (const auto& [name, count] : content["data"]["sample one"].items()) {
        EXPECT_TRUE(content["categories"].contains(name)) << count;
    }
}

void ExpectFault(const std::string& out, const std::string& message) {
    try {
        WriteReport(out);
        FAIL() << "no fault";
    } catch (const Error& error) {
        EXPECT_EQ(std::string(error.what()), message);
    }
    EXPECT_FALSE(fs::exists(out + "/report.html"));
    EXPECT_FALSE(fs::exists(out + "/report.html.tmp"));
}

TEST_F(Report, MissingTableIsAFault) {
    ExpectFault(out_, "cannot read " + out_ + "/gaps.tsv: No such file or directory");
}

TEST_F(Report, OtherTableIsAFault) {
    Put("gaps.tsv", "a\tb\n");
    ExpectFault(out_, out_ + "/gaps.tsv:1: not a table of gaps: 'a\tb'");
}

TEST_F(Report, FaultyLineIsNamed) {
    Put("gaps.tsv", std::string(kHeader) + "1\tchr1\t100\tx\t50\tclosed\t6\t0\t1\tsmall\t40\tmet\t2\t3\n");
    ExpectFault(out_, out_ + "/gaps.tsv:2: end is not a number: 'x'");
    Put("gaps.tsv", std::string(kHeader) + "1\tchr1\n");
    ExpectFault(out_, out_ + "/gaps.tsv:2: 2 fields instead of 14");
    Put("gaps.tsv", std::string(kHeader) + "1\tchr1\t100\t150\t50\tshut\t6\t0\t1\tsmall\t40\tmet\t2\t3\n");
    ExpectFault(out_, out_ + "/gaps.tsv:2: unknown outcome: 'shut'");
}

/// Opens the page in headless Chromium, runs `steps` in it and gives what they put into `told`.
class ReportPage : public Report {
  protected:
    void SetUp() override {
        Report::SetUp();
        chromium_ = FindProgram("chromium");
        if (chromium_.empty()) GTEST_SKIP() << "chromium is not installed (Debian: apt-get install chromium)";
        PutRun();
        WriteReport(out_);
    }

    std::vector<std::string> Click(const std::string& steps, const std::string& hash = "") const {
        std::string page = Get("report.html");
        std::string end = "</body>";
        size_t at = page.rfind(end);
        EXPECT_NE(at, std::string::npos);
        page.insert(at, R"(<script>
window.addEventListener("load", () => {
  const told = [], tell = v => told.push(String(v));
  const all = s => [...document.querySelectorAll(s)], one = s => document.querySelector(s);
  const order = () => all("#rows tr.row").map(r => r.id.slice(4)).join(" ");
  const press = (node, key) => node.dispatchEvent(new KeyboardEvent("keydown", {key, bubbles: true, cancelable: true}));
  try { )" + steps + R"( } catch (error) { tell("fault: " + error); }
  document.body.textContent = "";
  const box = document.createElement("pre");
  box.textContent = "\n[[[" + told.join("|") + "]]]\n";
  document.body.append(box);
});
</script>)");
        Put("clicked.html", page);
        Child browser({chromium_, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
                       "--user-data-dir=" + root_ + "/profile", "--virtual-time-budget=3000", "--window-size=1100,900",
                       "--dump-dom", "file://" + root_ + "/sample%20one/clicked.html" + hash},
                      root_ + "/dom.html", root_ + "/browser.log");
        EXPECT_TRUE(browser.Wait().Good()) << ReadWhole(root_ + "/browser.log");
        std::string dom = ReadWhole(root_ + "/dom.html");
        size_t from = dom.rfind("[[[");
        size_t stop = dom.rfind("]]]");
        std::vector<std::string> told;
        if (from == std::string::npos || stop == std::string::npos) {
            ADD_FAILURE() << "the page's script did not end: " << dom.substr(0, 2000);
            return told;
        }
        std::stringstream text(dom.substr(from + 3, stop - from - 3));
        for (std::string part; std::getline(text, part, '|');) told.push_back(part);
        return told;
    }

    std::string chromium_;
};

using Told = std::vector<std::string>;

TEST_F(ReportPage, ShowsFiguresClassesAndRounds) {
    EXPECT_EQ(Click(R"js(
        tell(one("#lead").textContent);
        tell(all("#key dd").map(d => d.textContent).join(" / "));
        tell(all("#sizes tbody th").map(t => t.textContent).join(" / "));
        tell(all("#sizes tbody td:nth-child(2)").map(t => t.textContent).join(" "));
        tell(all("#rounds tbody tr").map(r => [...r.children].slice(0, 4).map(c => c.textContent).join(" ")).join(" / "));
        tell(all("#real .pt").length);)js"),
              (Told{"3 of 5 gaps are closed or merged. 516 bases were filled in; 2,400 bases stay N.",
                    "2 40 % / 1 20 % / 1 20 % / 1 20 %",
                    "1 (may touch) / 2 to 50 / 151 to 500 / 501 to 1,499 / 1,500 and more", "1 1 1 1 1",
                    "1 2 0 116 / 2 1 1 510", "3"}));
}

TEST_F(ReportPage, HeadersSortBothWays) {
    EXPECT_EQ(Click(R"js(
        const head = key => one(`#head th[data-key=${key}] button`);
        tell(order());
        head("filled").click(); tell(order()); tell(head("filled").parentNode.getAttribute("aria-sort"));
        head("filled").click(); tell(order()); tell(head("filled").parentNode.getAttribute("aria-sort"));
        head("scaffold").click(); tell(order());
        head("outcome").click(); tell(order());
        head("least").click(); tell(order());
        head("least").click(); tell(order());
        tell(all("#head [aria-sort]").length);)js"),
              (Told{"1 2 3 4 5", "2 4 1 3 5", "ascending", "5 3 1 2 4", "descending", "1 2 3 4 5", "1 5 2 3 4",
                    "3 1 5 2 4", "5 1 3 2 4", "1"}));
}

TEST_F(ReportPage, SmallTablesSortToo) {
    EXPECT_EQ(Click(R"js(
        const first = table => all(`#${table} tbody tr`).map(r => r.children[0].textContent).join(" / ");
        const heads = table => all(`#${table} thead button`);
        tell(heads("sizes").length); tell(heads("rounds").length);
        heads("sizes")[3].click(); tell(first("sizes"));
        heads("sizes")[0].click(); tell(first("sizes"));
        heads("sizes")[0].click(); tell(first("sizes"));
        heads("rounds")[0].click(); heads("rounds")[0].click(); tell(first("rounds"));
        tell(all("#sizes [aria-sort]").length);)js"),
              (Told{"5", "4", "1 (may touch) / 1,500 and more / 2 to 50 / 501 to 1,499 / 151 to 500",
                    "1 (may touch) / 2 to 50 / 151 to 500 / 501 to 1,499 / 1,500 and more",
                    "1,500 and more / 501 to 1,499 / 151 to 500 / 2 to 50 / 1 (may touch)", "2 / 1", "1"}));
}

TEST_F(ReportPage, ChipsAndSearchNarrowTheTable) {
    EXPECT_EQ(Click(R"js(
        one("[data-outcome=closed]").click(); tell(order());
        tell(one("[data-outcome=closed]").getAttribute("aria-pressed")); tell(one("#count").textContent);
        one("[data-outcome=closed]").click();
        const type = text => { one("#find").value = text; one("#find").dispatchEvent(new Event("input")); };
        type("CHR2"); tell(order());
        type("overlap"); tell(order());
        type("5"); tell(order());)js"),
              (Told{"2 3 4", "false", "3 of 5 gaps", "3 4", "2", "5"}));
}

TEST_F(ReportPage, AGapOpensItsSupportAndClosesAgain) {
    EXPECT_EQ(Click(R"js(
        one("#row-1 .pick").click();
        tell(all(".detail").length); tell(one("#row-1 .pick").getAttribute("aria-expanded")); tell(location.hash);
        tell(one(".detail p").textContent); tell(all(".detail .hole").length); tell(all(".detail .least").length);
        const plot = one(".detail .plot");
        press(plot, "End"); tell(plot.getAttribute("aria-valuetext"));
        press(plot, "Home"); press(plot, "ArrowRight"); tell(one(".detail .hint").textContent);
        press(plot, "ArrowRight"); tell(one(".detail .hint").textContent);
        press(plot, "Escape"); tell(all(".detail").length); tell(document.activeElement.getAttribute("aria-label"));
        one("#row-4").click(); tell(one(".detail .hint").textContent);
        one("#row-4").click(); tell(all(".detail").length);)js"),
              (Told{"1", "true", "#gap-1", "Both walks met.", "1", "1", "Base 6: 4 of 4 reads show it",
                    "Base 2: 2 of 4 reads show it", "Base 3: no column was kept", "0", "Gap 1, show its support",
                    "Nothing was filled in, so there are no columns to show.", "0"}));
}

TEST_F(ReportPage, PointsOfTheChartLeadToTheirGap) {
    EXPECT_EQ(Click(R"js(
        one("[data-outcome=merged]").click();
        one("#real [data-gap='2']").dispatchEvent(new MouseEvent("click", {bubbles: true}));
        tell(order()); tell(one("tr.opened").id); tell(all("#real .pt.on").length);)js"),
              (Told{"1 2 3 4 5", "row-2", "1"}));
}

TEST_F(ReportPage, LinkOpensAGap) {
    EXPECT_EQ(
        Click(R"js(tell(one("tr.opened").id); tell(all(".facts dd").slice(0, 3).map(d => d.textContent).join(" "));)js",
              "#gap-3"),
        (Told{"row-3",
              "chr2 70\xe2\x80\x93"
              "670 70\xe2\x80\x93"
              "170, 570\xe2\x80\x93"
              "670"}));
}

TEST_F(ReportPage, PrintingShowsEveryRow) {
    std::string table = kHeader;
    for (int i = 1; i <= 450; ++i) {
        table += std::to_string(i) + "\tchr1\t1\t2\t1\topen\t0\t1\t0\tnone\t0\tno reads\t.\t.\n";
    }
    Put("gaps.tsv", table);
    WriteReport(out_);
    EXPECT_EQ(Click(R"js(
        tell(all("#rows tr").length); tell(one("#more").textContent);
        dispatchEvent(new Event("beforeprint")); tell(all("#rows tr").length);
        dispatchEvent(new Event("afterprint")); tell(all("#rows tr").length);
        one("#more").click(); tell(all("#rows tr").length); tell(one("#more").hidden);)js"),
              (Told{"200", "Show 250 more", "450", "200", "450", "true"}));
}

}  // namespace
}  // namespace lintara::kit
