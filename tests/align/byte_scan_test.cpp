#include "align/byte_scan.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "align/bases.h"

namespace lintara::detail {
namespace {

using lintara::testing::RandomBases;

// A copy without a byte behind it, so that the sanitizer sees every read past the end.
struct Bare {
    explicit Bare(const std::string& seq) : bytes(new char[seq.size()]), size(static_cast<int>(seq.size())) {
        seq.copy(bytes.get(), seq.size());
    }
    std::unique_ptr<char[]> bytes;
    int size;
};

int Find(const std::string& patt, const std::string& str) {
    const Bare p(patt);
    const Bare s(str);
    return FindFirst(p.bytes.get(), p.size, s.bytes.get(), s.size);
}

TEST(FindFirst, GivesTheLeftmostPlace) {
    EXPECT_EQ(Find("ACG", "TTACGACG"), 2);
    EXPECT_EQ(Find("A", "TTAA"), 2);
    EXPECT_EQ(Find("ACGTACG", "ACGTACG"), 0);
    EXPECT_EQ(Find("ACGTACG", "ACGTAC"), -1);
}

TEST(FindFirst, TakesAnEmptyPatternAtTheStart) {
    EXPECT_EQ(Find("", "ACG"), 0);
    EXPECT_EQ(Find("", ""), 0);
}

TEST(FindFirst, EqualsThePlainSearchForAllSizes) {
    std::mt19937 random(11);
    const std::string letters[] = {"A", "AC", "ACGT", "ACGTNacgtn", std::string("\0\xff\x80NA", 5)};
    for (int round = 0; round < 40000; ++round) {
        const std::string& used = letters[random() % 5];
        const std::string str = RandomBases(random, random() % 70, used);
        std::string patt = RandomBases(random, random() % 12, used);
        if (random() % 2 == 0 && !str.empty()) patt = str.substr(random() % str.size(), random() % 25);
        const std::size_t place = str.find(patt);
        ASSERT_EQ(Find(patt, str), place == std::string::npos ? -1 : static_cast<int>(place)) << patt << " in " << str;
    }
}

TEST(CountEqual, CountsAcrossItsBlocks) {
    const std::string all(1000, 'A');
    for (const int size : {0, 1, 15, 16, 254, 255, 256, 510, 511, 1000}) {
        EXPECT_EQ(CountEqual(all.data(), all.data(), size), size);
        EXPECT_EQ(CountEqualBases(all.data(), all.data(), all.data(), size), size);
    }
    EXPECT_EQ(CountEqual(all.data(), all.data(), -3), 0);
}

TEST(CountEqual, EqualsThePlainCount) {
    std::mt19937 random(12);
    for (int round = 0; round < 5000; ++round) {
        const int size = random() % 600;
        const Bare a(RandomBases(random, size, "ACGTN"));
        const Bare b(RandomBases(random, size, "ACGTN"));
        const Bare mask(RandomBases(random, size, "ACGTN"));
        int equal = 0;
        int equal_bases = 0;
        for (int i = 0; i < size; ++i) {
            if (a.bytes[i] != b.bytes[i]) continue;
            ++equal;
            if (b.bytes[i] != 'N' && mask.bytes[i] != 'N') ++equal_bases;
        }
        ASSERT_EQ(CountEqual(a.bytes.get(), b.bytes.get(), size), equal);
        ASSERT_EQ(CountEqualBases(a.bytes.get(), b.bytes.get(), mask.bytes.get(), size), equal_bases);
        // A count that is reached is told, and only a lower one gives up.
        const int least = random() % 200;
        const int told = CountEqual(a.bytes.get(), b.bytes.get(), size, least);
        if (equal >= least) {
            ASSERT_EQ(told, equal);
        } else {
            ASSERT_LT(told, least);
        }
        const int told_bases = CountEqualBases(a.bytes.get(), b.bytes.get(), mask.bytes.get(), size, least);
        if (equal_bases >= least) {
            ASSERT_EQ(told_bases, equal_bases);
        } else {
            ASSERT_LT(told_bases, least);
        }
    }
}

}  // namespace
}  // namespace lintara::detail
