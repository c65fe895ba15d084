// The repeat detector against a plain one that goes from string to string: pairs through AddDistance(), a map of
// distances, word by word confirmation, and flanks counted read by read.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "kmer/overlap_matrix.h"
#include "repeat/correct.h"
#include "repeat/tag_table.h"
#include "repeat/type.h"
#include "support/thread_streams.h"

namespace lintara {
namespace {

using Units = std::map<std::string, int>;

int PlainTag(const std::string& read, int pos) {
    return static_cast<int>(seq2bit(read.substr(static_cast<std::size_t>(pos), 6)));
}

int Tags(const std::string& read) {
    return static_cast<int>(read.size()) - 5;
}

bool PlainConfirmed(const std::vector<std::string>& reads, const TagInfo* table, int unit) {
    for (const std::string& read : reads) {
        const int size = static_cast<int>(read.size());
        for (int pos = 0; unit <= 6 && pos + 2 * unit <= size; ++pos) {
            if (read.substr(pos, unit) == read.substr(pos + unit, unit)) return true;
        }
        for (int pos = 0; unit > 6 && pos + unit <= size; ++pos) {
            bool all = true;
            for (int sub = 0; sub < unit - 5; ++sub) all = all && ExistTRLen(table[PlainTag(read, pos + sub)], unit);
            if (all) return true;
        }
    }
    return false;
}

void PlainUnit(const std::vector<std::string>& reads, const TagInfo* table, const int* freq, int unit, Units& units) {
    std::map<int, int> inside, front, behind;
    int tag = 0, front_tag = 0;
    bool in_run = false, got_front = false;
    for (const std::string& read : reads) {
        if (read.find('N') != std::string::npos) continue;
        for (int j = 0; j < Tags(read); ++j) {
            tag = PlainTag(read, j);
            if (ExistTRLen(table[tag], unit)) {
                in_run = true;
                if (got_front) {
                    ++inside[tag];
                    ++front[front_tag];
                }
                got_front = false;
            } else if (in_run) {
                ++behind[tag];
                in_run = false;
            } else {
                got_front = true;
                front_tag = tag;
            }
        }
    }
    auto pick = [](const std::map<int, int>& counts, int otherwise) {
        int most = 0;
        for (const auto& [key, count] : counts) {
            if (count > most) {
                most = count;
                otherwise = key;
            }
        }
        return otherwise;
    };
    const int flags = (front.empty() ? 0 : 1) + (behind.empty() ? 0 : 1);
    if (flags == 0) return;
    tag = pick(inside, tag);
    double base_freq = 0;
    if (!front.empty()) base_freq += freq[pick(front, 0)];
    if (!behind.empty()) base_freq += freq[pick(behind, 0)];
    if (base_freq == 0) base_freq = static_cast<double>(freq[tag]) * flags;
    std::string word;
    if (unit <= 6) word = bit2seq(static_cast<std::uint64_t>(tag)).substr(0, unit);
    for (const std::string& read : reads) {
        if (unit <= 6 || !word.empty() || read.find('N') != std::string::npos) continue;
        for (int pos = 0; word.empty() && pos + unit <= static_cast<int>(read.size()); ++pos) {
            if (PlainConfirmed({read.substr(pos, unit)}, table, unit)) word = read.substr(pos, unit);
        }
    }
    const int ratio = base_freq == 0 ? 0 : static_cast<int>(static_cast<double>(freq[tag]) * flags / base_freq);
    units[word] = ratio + 6 / unit + (unit > 6 ? 1 : 0);
}

int PlainFindType(std::vector<std::string>& reads, TagInfo*& table, int*& freq, Units& units) {
    for (const std::string& read : reads) {
        for (int i = 0; i < Tags(read); ++i) {
            ++freq[PlainTag(read, i)];
            for (int j = i + 1; j < Tags(read); ++j) {
                if (PlainTag(read, i) == PlainTag(read, j)) AddDistance(table, PlainTag(read, i), j - i);
            }
        }
    }
    std::map<int, int> times, tags;
    for (int tag = 0; tag < TAG; ++tag) {
        for (int k = 0; k < table[tag].differentDistanceNum; ++k) {
            times[table[tag].distancesArr[k]] += table[tag].timesArr[k];
            ++tags[table[tag].distancesArr[k]];
        }
    }
    int unit = 0, most = 0;
    for (const auto& [distance, count] : times) {
        if (tags[distance] == distance && count > most) {
            most = count;
            unit = distance;
        }
    }
    if (unit == 0 || !PlainConfirmed(reads, table, unit)) return 0;
    // The correction pass has a plain twin of its own.
    for (int pass = 0; unit > 1 && CorrectReads(reads, table, unit, freq, 0) > 0;) {
        if (++pass > 2 * static_cast<int>(reads.size())) break;
    }
    PlainUnit(reads, table, freq, unit, units);
    return unit;
}

using Records = std::vector<std::map<int, int>>;

Records RecordsOf(const TagInfo* table) {
    Records records(TAG);
    for (int tag = 0; tag < TAG; ++tag) {
        for (int k = 0; k < table[tag].differentDistanceNum; ++k) {
            records[tag][table[tag].distancesArr[k]] = table[tag].timesArr[k];
        }
    }
    return records;
}

class BlockTypeTest : public testing::ThreadStreamsTest {};

TEST_F(BlockTypeTest, EqualsThePlainDetectorOnRandomLoci) {
    std::mt19937 random(207);
    std::set<int> unit_lengths;
    for (int round = 0; round < 400; ++round) {
        std::string unit(1 + random() % 14, ' ');
        for (char& c : unit) c = "ACGT"[random() % 4];
        std::string locus;
        for (int i = 0; i < 60; ++i) locus += "ACGT"[random() % 4];
        for (int copies = round % 4 == 0 ? 0 : 100 / static_cast<int>(unit.size()); copies > 0; --copies) locus += unit;
        for (int i = 0; i < 60; ++i) locus += "ACGT"[random() % 4];
        std::vector<Read> reads;
        for (int i = 0; i < 40; ++i) {
            std::string read = locus.substr(random() % (locus.size() - 30), random() % 70);
            for (char& c : read) {
                if (random() % 60 == 0) c = "ACGTNacn"[random() % 8];
            }
            reads.emplace_back(read, i);
        }
        std::vector<std::string> plain_reads;
        for (std::size_t i = 1; i + 1 < reads.size(); ++i) plain_reads.push_back(reads[i].seq);
        std::vector<std::string> string_reads = plain_reads;
        const std::vector<Read> before = reads;

        testing::TagTable plain, strings, block;
        Units plain_units, string_units, block_units;
        int isMultiTR = 7;
        const int length = PlainFindType(plain_reads, plain.tagInfo, plain.freq, plain_units);
        ASSERT_EQ(find_type(string_reads, strings.tagInfo, string_units, strings.freq, isMultiTR, 0), length);
        ASSERT_EQ(isMultiTR, 0);
        ASSERT_EQ(FindBlockType(reads, 1, reads.size() - 1, block.tagInfo, block_units, block.freq, isMultiTR, 0),
                  length);
        ASSERT_EQ(string_reads, plain_reads) << "corrected in place";
        ASSERT_TRUE(reads == before) << "a block's reads stay";
        ASSERT_EQ(string_units, plain_units);
        ASSERT_EQ(block_units, plain_units);
        const Records records = RecordsOf(plain.tagInfo);
        ASSERT_TRUE(RecordsOf(strings.tagInfo) == records);
        ASSERT_TRUE(RecordsOf(block.tagInfo) == records);
        for (int tag = 0; tag < TAG; ++tag) ASSERT_EQ(strings.freq[tag], plain.freq[tag]);
        unit_lengths.insert(length);
    }
    EXPECT_GE(unit_lengths.size(), 8U) << "short, long and no units must all come up";
}

}  // namespace
}  // namespace lintara
