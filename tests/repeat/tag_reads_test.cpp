#include "repeat/tag_reads.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "repeat/spare_tables.h"
#include "repeat/tag_scan.h"
#include "repeat/tag_table.h"

namespace lintara {
namespace {

TagReads LaidOut(const std::vector<std::string>& reads) {
    TagReads laid;
    for (const std::string& read : reads) laid.Append(read);
    laid.FillTags();
    return laid;
}

TEST(TagReads, TagsEqualThePlainOnesOfEveryByte) {
    std::mt19937 random(41);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> reads(random() % 5);
        for (std::string& read : reads) {
            read.resize(random() % 60);
            // All bytes in some rounds, mostly bases in the others.
            for (char& c : read) c = round % 3 == 0 ? static_cast<char>(random() % 256) : "ACGTacgtNn-"[random() % 11];
        }
        const TagReads laid = LaidOut(reads);
        ASSERT_EQ(laid.num(), static_cast<int>(reads.size()));
        for (int r = 0; r < laid.num(); ++r) {
            ASSERT_EQ(laid.ReadAt(r), reads[r]);
            ASSERT_EQ(laid.TagsEnd(r) - laid.First(r), TagNum(reads[r]));
            for (int p = laid.First(r); p < laid.TagsEnd(r); ++p) {
                ASSERT_EQ(laid.Tag(p), TagAt(reads[r], p - laid.First(r)));
            }
        }
    }
}

TEST(TagReads, MemoryServesTheNextReads) {
    TagReads laid = LaidOut({"ACGTCAG", "TTTTTTTTTTTTTTTTTTTTTTTTTTTTTT"});
    laid.Clear();
    EXPECT_EQ(laid.num(), 0);
    laid.Append("AC");
    laid.Append("NNNNNN");
    laid.FillTags();
    EXPECT_EQ(laid.num(), 2);
    EXPECT_LT(laid.TagsEnd(0), laid.First(0)) << "two bases have no tag";
    EXPECT_EQ(laid.Tag(laid.First(1)), kTagValues - 1);
}

TEST(TagReads, TagsEqualThePlainOnesAcrossStretches) {
    std::mt19937 random(44);
    TagReads laid;
    for (int round = 0; round < 40; ++round) {
        // Whole stretches, one base more or fewer, and all lengths between; another byte here and there.
        const int length =
            1 + round % 3 * TagReads::kStretch + static_cast<int>(random() % (round % 2 == 0 ? 3 : 1000));
        std::string bases;
        for (int i = 0; i < length; ++i) bases += "ACGT"[random() % 4];
        for (int other = round % 4; other > 0; --other) bases[random() % bases.size()] = "NnRacgt-"[random() % 8];
        laid.Clear();
        laid.Append("AC");
        laid.Append(bases);
        laid.FillTags();
        ASSERT_EQ(laid.TagsEnd(1) - laid.First(1), TagNum(bases));
        for (int p = 2; p < laid.TagsEnd(1); ++p) ASSERT_EQ(laid.Tag(p), TagAt(bases, p - 2)) << p;
    }
}

TEST(CountTags, CountsTheTagsInsideTheReads) {
    std::mt19937 random(45);
    for (int round = 0; round < 50; ++round) {
        std::vector<std::string> reads(random() % 40);
        std::vector<int> plain(kTagValues, 0);
        for (std::string& read : reads) {
            for (int size = static_cast<int>(random() % 120); size > 0; --size) read += "AACGTN"[random() % 6];
            for (int p = 0; p < TagNum(read); ++p) ++plain[TagAt(read, p)];
        }
        const TagReads laid = LaidOut(reads);
        std::vector<int> freq(kTagValues + 1, 7);
        CountTags(laid, freq.data());
        ASSERT_EQ(freq.back(), 7) << "no value of a tag";
        freq.pop_back();
        ASSERT_EQ(freq, plain);
        for (int tag = 0; tag < kTagValues; ++tag) ASSERT_EQ(CountTag(laid, tag), plain[tag]) << tag;
    }
}

TEST(SpareTables, NextGapGetsThemWithoutDistances) {
    TagInfo* tagInfo = nullptr;
    int* freq = nullptr;
    TakeTables(tagInfo, freq);
    for (int distance = 1; distance < 30; ++distance) AddDistance(tagInfo, 77, distance);
    GiveBackTables(tagInfo, freq);
    EXPECT_EQ(tagInfo, nullptr);
    EXPECT_EQ(freq, nullptr);
    TakeTables(tagInfo, freq);
    EXPECT_EQ(ExistTRLen(tagInfo[77], 3), 0);
    EXPECT_EQ(tagInfo[77].differentDistanceNum, 0);
    AddDistance(tagInfo, 77, 8);
    EXPECT_EQ(GetAppearedTimes(tagInfo[77], 8), 1);
    // A table that a solver has freed is not taken back.
    FreetagInfo(tagInfo);
    GiveBackTables(tagInfo, freq);
}

TEST(SpareTables, WhatTheDetectorAndOthersFilledIsCleared) {
    std::mt19937 random(43);
    for (int round = 0; round < 60; ++round) {
        TagInfo* tagInfo = nullptr;
        int* freq = nullptr;
        TakeTables(tagInfo, freq);
        for (int tag = 0; tag < kTagValues; ++tag) ASSERT_EQ(tagInfo[tag].differentDistanceNum, 0) << round;
        TagReads laid;
        TagScan scan;
        for (int scans = static_cast<int>(random() % 3); scans > 0; --scans) {
            std::string read;
            for (int i = 0; i < 200; ++i) read += "ACGT"[random() % 2];
            laid.Append(read);
            laid.FillTags();
            ScanTags(laid, false, tagInfo, scan);
        }
        if (round % 3 == 0) AddDistance(tagInfo, random() % 4096, 9);
        if (round % 4 == 0) {
            // Another pair is lent out meanwhile.
            TagInfo* other = nullptr;
            int* other_freq = nullptr;
            TakeTables(other, other_freq);
            AddDistance(other, 100, 7);
            if (round % 8 == 0) std::swap(other, tagInfo);
            GiveBackTables(other, other_freq);
        }
        GiveBackTables(tagInfo, freq);
    }
}

TEST(SpareTables, SeveralMayBeOut) {
    TagInfo* tagInfo[2] = {};
    int* freq[2] = {};
    for (int i = 0; i < 2; ++i) TakeTables(tagInfo[i], freq[i]);
    EXPECT_NE(tagInfo[0], tagInfo[1]);
    EXPECT_NE(freq[0], freq[1]);
    for (int i = 0; i < 2; ++i) GiveBackTables(tagInfo[i], freq[i]);
}

TEST(AddDistance, TakesOverArraysOfExactLength) {
    TagInfo* tagInfo = new TagInfo[TAG];
    tagInfo[5].differentDistanceNum = 1;
    tagInfo[5].distancesArr = new int[1]{7};
    tagInfo[5].timesArr = new int[1]{2};
    AddDistance(tagInfo, 5, 7);
    AddDistance(tagInfo, 5, 9);
    EXPECT_EQ(GetAppearedTimes(tagInfo[5], 7), 3);
    EXPECT_EQ(GetAppearedTimes(tagInfo[5], 9), 1);
    FreetagInfo(tagInfo);
}

}  // namespace
}  // namespace lintara
