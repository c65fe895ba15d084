#include "kmer/lanes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace lintara {
namespace {

TEST(Lanes, EqualBytesHaveABitEach) {
    const std::string a = "ACGTACGTACGTACGT";
    EXPECT_EQ(EqualBytes(a.data(), a.data()), 0xFFFFU);
    EXPECT_EQ(EqualBytes(a.data(), "CCGTACGTACGTACGA"), 0x7FFEU);
    EXPECT_EQ(EqualBytes(a.data(), "NNNNNNNNCNNNNNNN"), 0U);
    EXPECT_EQ(EqualBytes(a.data(), "NNNNNNNNANNNNNNN"), 0x100U);
}

TEST(Lanes, BitsAreThoseOfThePlainLoops) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 5000; ++round) {
        char a[LANES];
        char b[LANES];
        std::uint16_t words[LANES];
        std::uint16_t sought[SOUGHT_WORDS];
        const unsigned int kinds = 1 + random() % 6;
        for (char& byte : a) byte = static_cast<char>(random() % kinds * 51);
        for (char& byte : b) byte = static_cast<char>(random() % kinds * 51);
        for (std::uint16_t& word : words) word = static_cast<std::uint16_t>(random() % kinds * 13107);
        for (std::uint16_t& word : sought) word = static_cast<std::uint16_t>(random() % kinds * 13107);
        EXPECT_EQ(EqualBytes(a, b), detail::EqualBytesPlain(a, b));
        EXPECT_EQ(Sought(sought).In(words), detail::SoughtWordsPlain(words, sought));
        const std::uint16_t one[SOUGHT_WORDS] = {sought[0], sought[0], sought[0], sought[0]};
        EXPECT_EQ(EqualWords(words, sought[0]), detail::SoughtWordsPlain(words, one));
    }
}

}  // namespace
}  // namespace lintara
