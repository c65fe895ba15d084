#include "run/streams.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
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

TEST_F(Streams, FilesHoldWholeLinesAtAnyTime) {
    std::mt19937 random(11);
    std::ofstream& stream = *new std::ofstream;  // its buffer is never freed either
    const std::string path = Directory() + "/lines";
    OpenStream(stream, path);
    std::string wanted;
    std::size_t seen = 0;
    for (int round = 0; round < 2000; ++round) {
        // Mostly lines in pieces, at times a line or many lines that are larger than any buffer.
        std::string text(random() % 300, static_cast<char>('a' + random() % 26));
        if (random() % 100 == 0) text.resize(random() % 400000, 'x');
        for (unsigned ends = random() % 4; ends > 0 && !text.empty(); --ends) text[random() % text.size()] = '\n';
        switch (random() % 3) {
            case 0:
                stream << text;
                break;
            case 1:
                WriteText(stream, text.data(), text.size());
                break;
            default:
                stream << text << text.size() << '\n';
                text += std::to_string(text.size()) + '\n';
        }
        wanted += text;
        ASSERT_TRUE(stream);
        if (round % 10 != 0) continue;
        const std::string written = testing::FileText(path);
        ASSERT_TRUE(written.empty() || written.back() == '\n') << round;
        ASSERT_EQ(written, wanted.substr(0, written.size())) << round;
        seen = written.size();
    }
    EXPECT_GT(seen, 1000000U);
    CloseStream(stream);
    ASSERT_TRUE(stream);
    EXPECT_EQ(testing::FileText(path), wanted);
}

TEST_F(Streams, TextForAFailedStreamIsNotedAsAFault) {
    FillUp(logFile[0]);
    ASSERT_FALSE(logFile[0]);
    WriteText(logFile[0], "more", 4);
    EXPECT_FALSE(logFile[0]);
    snp[0].close();
    WriteText(snp[0], "more", 4);
    EXPECT_FALSE(snp[0]);
}

TEST_F(Streams, ExitFlushesWhatTheOwnerHasWritten) {
    EXPECT_EXIT((OwnStreams(0), logFile[0] << "last words", std::exit(255)), ExitedWithCode(255), "");
    EXPECT_EQ(testing::FileText(Directory() + "/log"), "last words");
}

}  // namespace
}  // namespace lintara
