// A fixture for all that writes to the per-thread streams or reads the settings: it opens the three streams of thread
// 0 on files in a fresh directory, hands back what was written, and puts every setting back to its default.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace lintara::testing {

class ThreadStreamsTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// All that was written so far to the log, the snp file and the sequence file of thread 0.
    std::string Log();
    std::string Snp();
    std::string Seq();
    /// What was written since the last call of the same function.
    std::string NewLog();
    std::string NewSnp();
    /// The fixture's own directory, without a slash at its end.
    const std::string& Directory() const { return directory_; }

  private:
    std::string directory_;
    std::size_t log_seen_ = 0;
    std::size_t snp_seen_ = 0;
};

/// Puts every run-wide setting back to its default.
void ResetSettings();

/// The whole content of a file; fails the test when it cannot be read.
std::string FileText(const std::string& path);

}  // namespace lintara::testing
