// Paths through many random blocks: the records of all placed reads must be those of the plain road, which keeps the
// places in a map by the address of the read and counts each column for itself.
#include "consensus/placing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "consensus/edge.h"
#include "consensus/path.h"
#include "overlap_table.h"
#include "run/settings.h"
#include "support/thread_streams.h"

namespace lintara::consensus {
namespace {

using lintara::testing::OverlapTable;

/// A block of short reads, any of which may overlap any later one, and a path through it.
struct Block {
    std::vector<Read> reads;
    OverlapTable table;
    std::vector<int> order;
    std::string seq;

    explicit Block(std::mt19937& random) : table(2 + random() % 24) {
        const int num = static_cast<int>(table.Size());
        for (int i = 0; i < num; ++i) {
            std::string read;
            const int size = 12 + static_cast<int>(random() % 30);
            // One text for all, with some errors, so that votes have clear winners as well as ties.
            for (int j = 0; j < size; ++j) read += random() % 5 ? "ACGTTGCAAC"[(i + j) % 10] : "ACGTN"[random() % 5];
            // An N in the after edge would cut the sequence into it, and what is left may be too short for its seeds.
            if (i == num - 1) std::replace(read.begin(), read.end(), 'N', 'A');
            reads.emplace_back(read, static_cast<int>(random() % 400) - 200);
        }
        for (int a = 0; a < num; ++a) {
            for (int b = a + 1; b < num; ++b) {
                if (random() % 3 != 0) Link(a, b, random);
            }
        }
        for (int at = 0; at < num; at += 1 + static_cast<int>(random() % 4)) order.push_back(at);
        if (order.back() != num - 1) order.push_back(num - 1);
        for (std::size_t o = 1; o < order.size(); ++o) Link(order[o - 1], order[o], random);
        for (unsigned left = random() % 60; left > 0; --left) seq += "ACGT"[random() % 4];
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    void Link(int a, int b, std::mt19937& random) { table.Set(a, b, 1 + static_cast<int>(random() % 12)); }
    int Size(int read) const { return static_cast<int>(reads[read].seq.size()); }
    int Over(int a, int b) { return table.Rows()[a][b]; }
    int Num() const { return static_cast<int>(reads.size()); }
};

/// The places as a map, and how often one was set.
struct PlainPlaces {
    ReadMap read;
    int used = 0;
};

/// Walks along the path from the left and places what follows each of its reads.
///
/// @param again   bool(const Read& path_read, const Read& placed): whether a placed read is placed anew
/// @param counts  whether placing anew counts
template <typename Again>
PlainPlaces PlaceFollowers(Block& block, Again again, bool counts) {
    PlainPlaces places;
    int offset = 0;
    for (std::size_t o = 0; o < block.order.size(); ++o) {
        const int at = block.order[o];
        if (o > 0) offset += block.Size(block.order[o - 1]) - block.Over(block.order[o - 1], at);
        places.read[&block.reads[at].seq] = offset;
        ++places.used;
        for (int i = 0; i < block.Num(); ++i) {
            if (block.Over(at, i) == 0) continue;
            const bool placed = places.read.count(&block.reads[i].seq) != 0;
            if (placed && !again(block.reads[at], block.reads[i])) continue;
            places.read[&block.reads[i].seq] = offset + block.Size(at) - block.Over(at, i);
            if (!placed || counts) ++places.used;
        }
    }
    return places;
}

/// The twin for a path that ends at the after edge and has no read in front of it.
PlainPlaces PlaceLeaders(Block& block) {
    PlainPlaces places;
    int offset = 0;
    for (std::size_t o = 0; o + 1 < block.order.size(); ++o) {
        const int at = block.order[o];
        const int next = block.order[o + 1];
        places.read[&block.reads[at].seq] = offset;
        ++places.used;
        offset += block.Size(at) - block.Over(at, next);
        for (int i = 0; i < block.Num(); ++i) {
            if (block.Over(i, next) == 0) continue;
            if (block.reads[i].pos > block.reads[next].pos && places.read.count(&block.reads[i].seq) != 0) continue;
            places.read[&block.reads[i].seq] = offset - block.Size(i) + block.Over(i, next);
            ++places.used;
        }
    }
    places.read[&block.reads[block.order.back()].seq] = offset;
    return places;
}

using VoteOfColumn = char (*)(char, int, const ReadMap&, int);

class Places : public lintara::testing::ThreadStreamsTest {
  protected:
    /// The records of the vote over a whole sequence.
    std::string Records(const std::string& seq, const ReadMap& read, VoteOfColumn vote) {
        NewSnp();
        for (std::size_t i = 0; i < seq.size(); ++i) vote(seq[i], static_cast<int>(i), read, 0);
        return NewSnp();
    }
    static std::string Used(int used) { return "SNP get finished!\tused reads: " + std::to_string(used) + "\t"; }

    std::mt19937 random_{4711};
    static constexpr int kRounds = 300;
    int none_[32] = {};
};

TEST_F(Places, PathBetweenBothEdges) {
    for (int round = 0; round < kRounds; ++round) {
        Block block(random_);
        const PlainPlaces plain = PlaceFollowers(
            block, [](const Read&, const Read&) { return true; }, true);
        const std::string whole = block.reads.front().seq + block.seq + block.reads.back().seq;
        const std::string wanted = Records(whole, plain.read, value_base);
        Get_snp(block.seq, block.order, block.table.Rows(), block.reads, none_, none_, 0);
        const std::string got = NewSnp();
        const std::string head = "value base for each position\n";
        ASSERT_EQ(got.substr(0, head.size() + wanted.size()), head + wanted) << round;
        ASSERT_EQ(got.compare(head.size() + wanted.size(), Used(plain.used).size(), Used(plain.used)), 0) << round;
    }
}

TEST_F(Places, PathFromTheBeforeEdge) {
    const auto again = [](const Read& path_read, const Read& placed) {
        return path_read.pos <= placed.pos && path_read.pos + 2 * ReadLen >= placed.pos;
    };
    for (int round = 0; round < kRounds; ++round) {
        Block block(random_);
        const bool noreadbreak = round % 2 == 0;
        const PlainPlaces plain = PlaceFollowers(block, again, true);
        const std::string whole = block.reads.front().seq + block.seq;
        const std::string wanted =
            plain.read.size() > 2 ? Records(whole, plain.read, noreadbreak ? Enlong_value_base2 : Enlong_value_base)
                                  : "";
        Get_snp_before(block.seq, block.order, block.table.Rows(), block.reads, none_, noreadbreak, 0);
        ASSERT_EQ(NewSnp().find("\n" + wanted + Used(plain.used)) != std::string::npos, true) << round;
    }
}

TEST_F(Places, PathToTheAfterEdge) {
    for (int round = 0; round < kRounds; ++round) {
        Block block(random_);
        const PlainPlaces plain = PlaceLeaders(block);
        const std::string whole = block.seq + block.reads.back().seq;
        const std::string wanted =
            plain.read.size() > 2 ? Records(whole, plain.read, Enlong_value_base) : std::string();
        Get_snp_after(block.seq, block.order, block.table.Rows(), block.reads, none_, false, 0);
        ASSERT_EQ(NewSnp().find("\n" + wanted + Used(plain.used)) != std::string::npos, true) << round;
    }
}

TEST_F(Places, PathWithoutAnEdge) {
    const auto again = [](const Read& path_read, const Read& placed) { return path_read.pos < placed.pos; };
    for (int round = 0; round < kRounds; ++round) {
        Block block(random_);
        const PlainPlaces plain = PlaceFollowers(block, again, false);
        const std::string wanted = Records(block.seq, plain.read, Enlong_value_base);
        Get_snp_middle(block.seq, block.order, block.table.Rows(), block.reads, 0);
        ASSERT_EQ(NewSnp().find("\n" + wanted + Used(plain.used)) != std::string::npos, true) << round;
    }
}

TEST(EachRightOf, VisitsTheCellsAboveZeroInOrder) {
    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::uint8_t> row(random() % 70);
        for (std::uint8_t& cell : row) cell = random() % 6 == 0 ? static_cast<std::uint8_t>(random()) : 0;
        std::vector<std::pair<std::size_t, int>> wanted;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (row[i] != 0) wanted.emplace_back(i, row[i]);
        }
        std::vector<std::pair<std::size_t, int>> got;
        EachRightOf(row.data(), row.size(), [&](std::size_t i, int over) { got.emplace_back(i, over); });
        ASSERT_EQ(got, wanted);
    }
}

TEST(EachLeftOf, VisitsTheCellsAboveZeroInOrder) {
    std::mt19937 random(98);
    for (int round = 0; round < 300; ++round) {
        const std::size_t num = 1 + random() % 40;
        OverlapTable table(num);
        const int read = static_cast<int>(random() % num);
        std::vector<std::pair<std::size_t, int>> wanted;
        for (std::size_t i = 0; i < num; ++i) {
            for (std::size_t k = 0; k < num; ++k) {
                if (random() % 6 == 0) table.Set(static_cast<int>(i), static_cast<int>(k), random() % 256);
            }
            const int over = table.Rows()[i][read];
            if (over != 0) wanted.emplace_back(i, over);
        }
        std::vector<std::pair<std::size_t, int>> got;
        EachLeftOf(table.Rows(), static_cast<std::size_t>(read), num,
                   [&](std::size_t i, int over) { got.emplace_back(i, over); });
        ASSERT_EQ(got, wanted);
    }
}

TEST(Placing, NoPlaceIsZeroAndNotListed) {
    const std::vector<Read> reads{{"A", 0}, {"C", 0}, {"G", 0}};
    Placing placing(reads);
    placing.Set(2, -5);
    EXPECT_FALSE(placing.Has(0));
    EXPECT_EQ(placing.Offset(0), 0);
    EXPECT_TRUE(placing.Has(2));
    placing.Set(2, 7);
    placing.Set(0, 1);
    const std::vector<PlacedRead> placed = placing.Reads();
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_EQ(placed[0].seq, &reads[0].seq);
    EXPECT_EQ(placed[0].start, 1);
    EXPECT_EQ(placed[1].seq, &reads[2].seq);
    EXPECT_EQ(placed[1].start, 7);
}

}  // namespace
}  // namespace lintara::consensus
