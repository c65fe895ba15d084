#include "run/record_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "support/thread_streams.h"

namespace lintara {
namespace {

std::string DoubleText(double number) {
    char text[kRatioSize];
    return {text, WriteDouble(text, number)};
}

template <typename Part>
std::string Streamed(const Part& part) {
    std::ostringstream stream;
    stream << part;
    return stream.str();
}

TEST(WriteDouble, LooksAsAStreamPrintsIt) {
    std::mt19937 random(3);
    for (int round = 0; round < 100000; ++round) {
        const int of = 1 + static_cast<int>(random() % 300);
        const double number = static_cast<double>(random() % 400) / of;
        ASSERT_EQ(DoubleText(number), Streamed(number));
        ASSERT_EQ(DoubleText(-number), Streamed(-number));
    }
    for (const double number :
         {0.0, -0.0, 1.0, 1e-300, -1.23456789e-300, 1e300, 123456.5, 1234567.0, 0.0001, 0.00001}) {
        EXPECT_EQ(DoubleText(number), Streamed(number));
    }
}

class LogTexts : public testing::ThreadStreamsTest {
  protected:
    /// Writes the same part to the message and to a stream.
    template <typename Part>
    void Both(LogText& text, const Part& part) {
        text << part;
        wanted_ << part;
    }

    std::ostringstream wanted_;
};

TEST_F(LogTexts, PartsLookAsAStreamPrintsThem) {
    {
        LogText text(0);
        Both(text, "literal\t");
        Both(text, std::string("string "));
        Both(text, std::string_view("view"));
        Both(text, '\t');
        Both(text, true);
        Both(text, std::numeric_limits<int>::min());
        Both(text, std::numeric_limits<unsigned>::max());
        Both(text, std::numeric_limits<std::int64_t>::min());
        Both(text, std::numeric_limits<std::uint64_t>::max());
        Both(text, std::uint16_t{65535});
        Both(text, 2.0 / 3);
        text << RatioOf{2, 3} << RatioOf{4, 3} << RatioOf{0, 0};
        wanted_ << 2.0 / 3 << 4.0 / 3 << 0.0;
    }
    EXPECT_EQ(Log(), wanted_.str());
}

TEST_F(LogTexts, MessagesOfAnyLengthComeWhole) {
    std::mt19937 random(17);
    for (int round = 0; round < 300; ++round) {
        LogText text(0);
        for (unsigned parts = random() % 40; parts > 0; --parts) {
            switch (random() % 4) {
                case 0:
                    Both(text, static_cast<int>(random()));
                    break;
                case 1:
                    Both(text, static_cast<char>('a' + random() % 26));
                    break;
                case 2:
                    Both(text, static_cast<double>(random() % 100) / 7);
                    break;
                default:
                    Both(text, std::string(random() % 3 == 0 ? random() % 2000 : random() % 50, 'x'));
            }
        }
    }
    EXPECT_EQ(Log(), wanted_.str());
}

}  // namespace
}  // namespace lintara
