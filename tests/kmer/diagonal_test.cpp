#include "kmer/diagonal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "kmer/random_block.h"

namespace lintara {
namespace {

using testing::BlockKind;
using testing::RandomBlock;
using testing::Uniform;

TEST(Diagonal, CountsAndStretchesAreThoseOfALookAtEachColumn) {
    std::mt19937 random(20261122);
    LaidReads laid;
    for (int round = 0; round < 400; ++round) {
        BlockKind kind;
        kind.num = 6;
        kind.genome = Uniform(random, 260, 300);
        kind.error = round % 4 * 0.02;
        kind.longest = round % 3 == 0 ? 255 : round % 3 == 1 ? 100 : 30;
        kind.others = round % 2 == 0 ? "NNNacgtR-" : "N";
        const std::vector<Read> reads = RandomBlock(random, kind, 255);
        LayOut(reads, 0, {4, 7}, laid);
        for (int pair = 0; pair < 60; ++pair) {
            const std::string& a = reads[random() % reads.size()].seq;
            const std::string& b = reads[random() % reads.size()].seq;
            const int length_a = static_cast<int>(a.size());
            const int length_b = static_cast<int>(b.size());
            if (length_a == 0 || length_b == 0) continue;
            const auto place = [&](const std::string& seq) {
                return std::find_if(laid.reads.begin(), laid.reads.end(),
                                    [&](const LaidRead& read) { return *read.seq == seq; });
            };
            const int shift = Uniform(random, 1 - length_b, length_a - 1);
            int columns = 0;
            int equal = 0;
            int longest = 0;
            int stretch = 0;
            std::vector<bool> differ;
            for (int i = 0; i < length_a; ++i) {
                if (i - shift < 0 || i - shift >= length_b) continue;
                ++columns;
                const bool same = a[i] == b[i - shift];
                differ.push_back(!same);
                equal += same ? 1 : 0;
                stretch = same ? stretch + 1 : 0;
                longest = std::max(longest, stretch);
            }
            Diagonal diagonal;
            LayUnder(*place(a), *place(b), shift, laid.longest, diagonal);
            ASSERT_EQ(diagonal.shift, shift);
            ASSERT_EQ(diagonal.columns, columns);
            ASSERT_EQ(diagonal.equal, equal);
            int met = 0;
            EXPECT_FALSE(AnyEqualStretch(diagonal, [&](int from, int count) {
                for (int i = from; i < from + count; ++i) EXPECT_FALSE(differ[i]);
                EXPECT_TRUE(from == 0 || differ[from - 1]);
                EXPECT_TRUE(from + count == columns || differ[from + count]);
                met = std::max(met, count);
                return false;
            }));
            ASSERT_EQ(met, longest);
            for (const int length : {1, 2, 31, 32, 33, 63, 64, 65, 100, 127, longest, longest + 1}) {
                if (length < 1 || length > 127) continue;
                ASSERT_EQ(HasEqualStretch(diagonal, length), longest >= length) << length << " of " << longest;
            }
            for (int i = 0; i < columns; ++i) {
                ASSERT_EQ((diagonal.same[i / 64] >> (i % 64) & 1) == 0, differ[i]) << i << " of " << columns;
            }
        }
    }
}

}  // namespace
}  // namespace lintara
