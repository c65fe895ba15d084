// The tag scan against a plain one that compares all tags of a read with each other: the same records, with their
// distances in the same order.
#include "repeat/tag_scan.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "repeat/tag_table.h"

namespace lintara {
namespace {

using Reads = std::vector<std::string>;
using Records = std::vector<std::vector<std::pair<int, int>>>;

Records RecordsOf(const testing::TagTable& table) {
    Records records(TAG);
    for (int tag = 0; tag < TAG; ++tag) {
        for (int k = 0; k < table.tagInfo[tag].differentDistanceNum; ++k) {
            records[tag].emplace_back(table.tagInfo[tag].distancesArr[k], table.tagInfo[tag].timesArr[k]);
        }
    }
    return records;
}

void PlainScan(const Reads& reads, bool skip_n, testing::TagTable& table) {
    for (const std::string& read : reads) {
        for (int i = 0; i < TagNum(read); ++i) {
            if (skip_n && read.substr(i, TAGL).find('N') != std::string::npos) continue;
            for (int j = i + 1; j < TagNum(read); ++j) {
                if (skip_n && read.substr(j, TAGL).find('N') != std::string::npos) continue;
                if (TagAt(read, i) == TagAt(read, j)) AddDistance(table.tagInfo, TagAt(read, i), j - i);
            }
        }
    }
}

void Scan(const Reads& reads, bool skip_n, TagInfo* tagInfo, TagScan& scan) {
    TagReads laid;
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
    ScanTags(laid, skip_n, tagInfo, scan);
}

std::string RandomRead(std::mt19937& random, int size) {
    std::string read;
    // From a clean repeat of some unit, with errors, to no repeat at all.
    const unsigned int unit = 1 + random() % 40;
    const unsigned int errors = 1 + random() % 60;
    for (int i = 0; i < size; ++i) {
        const bool copy = read.size() >= unit && random() % errors != 0;
        read += copy ? read[read.size() - unit] : "ACGTACGTACGN"[random() % 12];
    }
    return read;
}

TEST(TagScan, EqualsThePlainScanScanAfterScan) {
    std::mt19937 random(47);
    TagScan scan;
    for (int round = 0; round < 150; ++round) {
        Reads reads(random() % 60);
        for (std::string& read : reads) read = RandomRead(random, static_cast<int>(random() % 130));
        testing::TagTable plain, table;
        const bool skip_n = round % 3 == 0;
        PlainScan(reads, skip_n, plain);
        Scan(reads, skip_n, table.tagInfo, scan);
        const Records records = RecordsOf(plain);
        ASSERT_TRUE(RecordsOf(table) == records) << round;
        std::set<int> found(scan.found.begin(), scan.found.end());
        ASSERT_EQ(found.size(), scan.found.size());
        for (int tag = 0; tag < TAG; ++tag) ASSERT_EQ(found.count(tag), records[tag].empty() ? 0U : 1U) << tag;
    }
}

TEST(TagScan, LongReadsAreNoOtherThanShortOnes) {
    std::mt19937 random(48);
    const int most = std::numeric_limits<std::uint16_t>::max();
    TagScan scan;
    for (const int size : {most - 2, most - 1, most, most + 1, 30, most + 70, most - 1}) {
        // Few recurrences, for the sake of the plain scan: a repeat of three tags at both ends.
        std::string read(static_cast<std::size_t>(size), 'A');
        for (int i = 0; i < size; ++i) read[i] = "ACGT"[random() % 4];
        const Reads reads{"TTTTTTTT", read, "ACACACACAC"};
        TagReads laid;
        for (const std::string& r : reads) laid.Append(r);
        laid.FillTags();
        testing::TagTable table;
        ScanTags(laid, false, table.tagInfo, scan);
        EXPECT_GE(GetAppearedTimes(table.Info("TTTTTT"), 1), 2);
        EXPECT_GE(GetAppearedTimes(table.Info("ACACAC"), 2), 2);
        // All pairs are there when each tag has as many as its places make.
        std::vector<std::int64_t> places(kTagValues, 0);
        std::vector<std::int64_t> pairs(kTagValues, 0);
        for (int r = 0; r < laid.num(); ++r) {
            std::fill(places.begin(), places.end(), 0);
            for (int p = laid.First(r); p < laid.TagsEnd(r); ++p) pairs[laid.Tag(p)] += places[laid.Tag(p)]++;
        }
        for (int tag = 0; tag < kTagValues; ++tag) {
            std::int64_t times = 0;
            const TagInfo& record = table.tagInfo[tag];
            for (int k = 0; k < record.differentDistanceNum; ++k) times += record.timesArr[k];
            ASSERT_EQ(times, pairs[tag]) << tag;
        }
    }
}

TEST(TagScan, PlacesBeginAnewBeforeTheyEnd) {
    std::mt19937 random(49);
    for (int round = 0; round < 40; ++round) {
        TagScan scan;
        testing::TagTable unused;
        Scan({"ACACACACACAC"}, false, unused.tagInfo, scan);  // the places before the end are taken by another scan
        scan.short_places.end = std::numeric_limits<std::uint16_t>::max() - static_cast<int>(random() % 400);
        Reads reads(6);
        for (std::string& read : reads) read = RandomRead(random, static_cast<int>(random() % 130));
        testing::TagTable plain, table;
        PlainScan(reads, false, plain);
        Scan(reads, false, table.tagInfo, scan);
        ASSERT_TRUE(RecordsOf(table) == RecordsOf(plain)) << round;
    }
}

TEST(TagScan, AddsToDistancesOfAnyKind) {
    const Reads reads{"AAAAAAAAAACAAAAAAAA"};  // not at equal steps
    testing::TagTable plain, table;
    for (testing::TagTable* t : {&plain, &table}) {
        for (const int distance : {-4, 0, 2, 1000000}) AddDistance(t->tagInfo, 0, distance);
    }
    PlainScan(reads, false, plain);
    TagScan scan;
    Scan(reads, false, table.tagInfo, scan);
    EXPECT_TRUE(RecordsOf(table) == RecordsOf(plain));
    EXPECT_TRUE(scan.found.empty());
}

}  // namespace
}  // namespace lintara
