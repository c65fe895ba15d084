#include "support/thread_streams.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "run/settings.h"
#include "run/streams.h"

namespace lintara::testing {

void ResetSettings() {
    gap_file.clear();
    contig_file.clear();
    out_file.clear();
    Kmer = 31;
    initSize = 1048576;
    Match_ratio = 0.97;
    load_factor = 0.75F;
    ReadLen = 100;
    threadNum = 1;
    Min_overlap = 30;
    false_ratio = 0.14;
    ECUTOFF = 0.6;
    Method = 5;
    GapId = -1;
    StartId = -1;
    min_align = 8;
    ContigLen = 32;
}

std::string FileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << path;
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void ThreadStreamsTest::SetUp() {
    ResetSettings();
    std::string pattern = (std::filesystem::temp_directory_path() / "lintara-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
    logFile = new std::ofstream[1];
    fout = new std::ofstream[1];
    snp = new std::ofstream[1];
    logFile[0].open(directory_ + "/log");
    fout[0].open(directory_ + "/seq");
    snp[0].open(directory_ + "/snp");
    SHORTOVERLAP = new bool[1]{false};
    initSizes = new std::uint64_t[1]{0};
}

void ThreadStreamsTest::TearDown() {
    delete[] logFile;
    delete[] fout;
    delete[] snp;
    delete[] SHORTOVERLAP;
    delete[] initSizes;
    logFile = fout = snp = nullptr;
    SHORTOVERLAP = nullptr;
    initSizes = nullptr;
    std::filesystem::remove_all(directory_);
    ResetSettings();
}

std::string ThreadStreamsTest::Log() {
    logFile[0].flush();
    return FileText(directory_ + "/log");
}

std::string ThreadStreamsTest::Snp() {
    snp[0].flush();
    return FileText(directory_ + "/snp");
}

std::string ThreadStreamsTest::Seq() {
    fout[0].flush();
    return FileText(directory_ + "/seq");
}

std::string ThreadStreamsTest::NewLog() {
    const std::string all = Log();
    const std::string fresh = all.substr(log_seen_);
    log_seen_ = all.size();
    return fresh;
}

std::string ThreadStreamsTest::NewSnp() {
    const std::string all = Snp();
    const std::string fresh = all.substr(snp_seen_);
    snp_seen_ = all.size();
    return fresh;
}

}  // namespace lintara::testing
