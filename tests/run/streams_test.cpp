#include "run/streams.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using ::testing::ExitedWithCode;

class Streams : public testing::ThreadStreamsTest {
  protected:
    static void FillUp(std::ofstream& stream) {
        stream.close();
        stream.open("/dev/full");
        stream << std::string(100000, 'x') << std::flush;
    }
};

TEST_F(Streams, GoodStreamsPass) {
    logFile[0] << "text";
    CheckStreams(0);
}

TEST_F(Streams, EachFailedStreamIsNamed) {
    out_file = "out";
    EXPECT_EXIT((FillUp(logFile[0]), CheckStreams(0)), ExitedWithCode(1), "^Failed to write out/Log/log.thread1\n$");
    EXPECT_EXIT((FillUp(fout[0]), CheckStreams(0)), ExitedWithCode(1),
                "^Failed to write out/FilledScaf/seq.thread1\n$");
    EXPECT_EXIT((FillUp(snp[0]), CheckStreams(0)), ExitedWithCode(1), "^Failed to write out/Snp/snp.thread1\n$");
}

TEST_F(Streams, ExitFlushesWhatTheOwnerHasWritten) {
    EXPECT_EXIT((OwnStreams(0), logFile[0] << "last words", std::exit(255)), ExitedWithCode(255), "");
    EXPECT_EQ(testing::FileText(Directory() + "/log"), "last words");
}

}  // namespace
}  // namespace lintara
