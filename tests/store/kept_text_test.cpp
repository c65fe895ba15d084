#include "store/kept_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

namespace lintara {
namespace {

TEST(KeptText, GivesBackAnyPartOfWhatWasAppended) {
    std::mt19937 random(3);
    KeptText text;
    std::string plain;
    while (plain.size() < 1500000) {
        const std::string part(random() % (random() % 10 == 0 ? 700000 : 5000), static_cast<char>('A' + random() % 26));
        plain += part;
        text.Append(part.data(), part.size());
        ASSERT_EQ(text.size(), plain.size());
    }
    std::string copy;
    int stretches = 0;
    for (int round = 0; round < 500; ++round) {
        const std::size_t place = random() % (plain.size() + 10);
        copy.assign(random() % 600000, '?');
        const std::size_t count = text.Copy(place, copy.data(), copy.size());
        const std::string wanted = place < plain.size() ? plain.substr(place, copy.size()) : "";
        ASSERT_EQ(count, wanted.size());
        ASSERT_EQ(copy.substr(0, count), wanted);
        const std::size_t size = random() % (round % 2 == 0 ? 600000 : 3000);
        const char* const stretch = text.Stretch(place, size);
        if (stretch == nullptr) continue;
        ASSERT_LE(place + size, plain.size());
        ASSERT_EQ(std::string(stretch, size), plain.substr(place, size));
        ++stretches;
    }
    EXPECT_GT(stretches, 200);
    const KeptText moved = std::move(text);
    EXPECT_EQ(moved.size(), plain.size());
}

TEST(KeptText, IsEmptyBehindClear) {
    KeptText text;
    text.Append("ACGT", 4);
    text.Clear();
    EXPECT_EQ(text.size(), 0U);
    char base = '?';
    EXPECT_EQ(text.Copy(0, &base, 1), 0U);
    EXPECT_EQ(text.Stretch(0, 1), nullptr);
    text.Append("G", 1);
    EXPECT_EQ(text.Copy(0, &base, 1), 1U);
    EXPECT_EQ(base, 'G');
}

}  // namespace
}  // namespace lintara
