#include "kmer/hashSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/thread_streams.h"

// A refused allocation is to come back as null, as it does without a sanitizer.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}

namespace lintara {
namespace {

Entity Key(std::uint64_t kmer, std::uint32_t amount = 1) {
    Entity entity{};
    entity.kmer = kmer;
    entity.kmer_fre = amount;
    return entity;
}

void Add(HashSet* set, std::uint64_t kmer, std::uint16_t read, std::uint32_t amount = 1) {
    Entity entity = Key(kmer, amount);
    EXPECT_EQ(1, add_hashset(set, &entity, read));
}

std::uint64_t Find(const HashSet* set, std::uint64_t kmer) {
    const Entity entity = Key(kmer);
    return get_hashset(set, &entity);
}

std::vector<int> Reads(const HashSet* set, std::uint64_t kmer) {
    const Entity& record = set->array[Find(set, kmer)];
    return std::vector<int>(record.p, record.p + record.kmer_fre);
}

// The first keys, counted up from 0, whose hash falls on one slot of a table of that size.
std::vector<std::uint64_t> KeysOfSlot(std::uint64_t slot, std::uint64_t size, std::size_t number) {
    std::vector<std::uint64_t> keys;
    for (std::uint64_t kmer = 0; keys.size() < number; ++kmer) {
        if (Jenkin_hash(kmer) % size == slot) keys.push_back(kmer);
    }
    return keys;
}

class HashSetTest : public ::testing::Test {
  protected:
    void TearDown() override {
        if (set_ != nullptr) free_hash(set_);
    }
    HashSet* Make(std::uint64_t init_size, float fill) {
        set_ = init_hashset(init_size, fill);
        return set_;
    }

    HashSet* set_ = nullptr;
};

TEST(JenkinHash, ZeroFollowedThroughTheEightSteps) {
    // 0 -> ~0 -> FFFFFC0000000000 -> 007FFBFFFFFFFFFF -> 007F840400000000 -> 047BA42400000000 -> 047BACD348480000
    //   -> 6A396CD34847FFFF -> the result
    EXPECT_EQ(0x6A396CD39C352659U, Jenkin_hash(0));
}

TEST(JenkinHash, AgreesWithTheSameStepsByMultiplicationAndDivision) {
    std::mt19937_64 random(41);
    for (int round = 0; round < 1000; ++round) {
        const std::uint64_t key = random();
        std::uint64_t hash = key - key * 4294967296U - 1;
        hash ^= hash / 4194304U;
        hash = hash - hash * 8192U - 1;
        hash ^= hash / 256U;
        hash += hash * 8U;
        hash ^= hash / 32768U;
        hash = hash - hash * 134217728U - 1;
        hash ^= hash / 2147483648U;
        EXPECT_EQ(hash, Jenkin_hash(key));
    }
}

TEST(HashCode, IsTheHashOfTheKeyAlone) {
    const Entity entity = Key(77, 5);
    EXPECT_EQ(Jenkin_hash(77), hash_code(&entity));
}

TEST(HashEqual, IgnoresTheFrequency) {
    const Entity once = Key(9, 1);
    const Entity often = Key(9, 200);
    const Entity other = Key(10, 1);
    EXPECT_NE(0, hash_equal(&once, &often));
    EXPECT_EQ(0, hash_equal(&once, &other));
}

TEST(IsPrime, TheSmallestFourPass) {
    for (std::uint64_t num : {0, 1, 2, 3}) EXPECT_EQ(1, is_prime(num)) << num;
}

TEST(IsPrime, DivisorsStopShortOfTheRoot) {
    for (std::uint64_t num : {9, 15, 25, 35, 49, 121}) EXPECT_EQ(1, is_prime(num)) << num;
    for (std::uint64_t num : {4, 21, 27, 33, 45, 63, 1048581}) EXPECT_EQ(0, is_prime(num)) << num;
    for (std::uint64_t num : {5, 7, 11, 13, 97, 1048583}) EXPECT_EQ(1, is_prime(num)) << num;
}

TEST(IsPrime, TheRootIsTakenInSinglePrecision) {
    // 1019 * 1021 = 1020 * 1020 - 1: the root is just below 1020 and cut to 1019, so the divisor is not met.
    EXPECT_EQ(1, is_prime(1019 * 1021));
    // 4127 * 4129 = 4128 * 4128 - 1 is odd and above 2^24: as a float it is 4128 * 4128, and the divisor is met.
    EXPECT_EQ(0, is_prime(4127 * 4129));
}

TEST(FindNextPrime, GoesUpOverOddNumbers) {
    EXPECT_EQ(3U, find_next_prime(3));
    EXPECT_EQ(5U, find_next_prime(4));
    EXPECT_EQ(7U, find_next_prime(6));
    EXPECT_EQ(9U, find_next_prime(8));
    EXPECT_EQ(23U, find_next_prime(21));
    EXPECT_EQ(25U, find_next_prime(24));
    EXPECT_EQ(1048583U, find_next_prime(1048576));
}

TEST(InitArray, ClearsTheListAndTheFrequencyOnly) {
    Entity slots[3];
    Entity* array = slots;
    for (Entity& slot : slots) {
        slot = Key(5, 6);
        slot.read_number = 7;
        slot.p = reinterpret_cast<std::uint16_t*>(&slots);
    }
    init_array(array, 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(nullptr, slots[i].p);
        EXPECT_EQ(0U, slots[i].kmer_fre);
        EXPECT_EQ(5U, slots[i].kmer);
        EXPECT_EQ(7U, slots[i].read_number);
    }
    EXPECT_NE(nullptr, slots[2].p);
    EXPECT_EQ(6U, slots[2].kmer_fre);
}

TEST(Entity, FrequencyStandsInTheHighHalfOfItsWord) {
    Entity entity = Key(1, 0x01020304);
    entity.read_number = 0x0A0B0C0D;
    std::uint64_t words[3];
    static_assert(sizeof words == sizeof entity);
    std::memcpy(words, static_cast<const void*>(&entity), sizeof entity);
    EXPECT_EQ(1U, words[0]);
    EXPECT_EQ(0x010203040A0B0C0DU, words[2]);
}

TEST_F(HashSetTest, InitUpToTwoGivesThreeSlots) {
    for (std::uint64_t init_size : {0, 1, 2}) {
        HashSet* set = init_hashset(init_size, 0.75F);
        EXPECT_EQ(3U, set->size);
        EXPECT_EQ(2U, set->max);  // 2.25 cut
        free_hash(set);
    }
}

TEST_F(HashSetTest, InitSetsAllFields) {
    Make(100, 0.5F);
    EXPECT_EQ(24U, set_->e_size);
    EXPECT_EQ(101U, set_->size);
    EXPECT_EQ(0U, set_->count);
    EXPECT_EQ(0U, set_->count_conflict);
    EXPECT_EQ(50U, set_->max);  // 50.5 cut, not rounded
    EXPECT_EQ(0U, set_->iter_ptr);
    EXPECT_EQ(0.5F, set_->load_factor);
    for (std::uint64_t slot = 0; slot < set_->size; ++slot) {
        EXPECT_TRUE(is_entity_null(set_->nul_flag, slot));
        EXPECT_FALSE(is_entity_delete(set_->del_flag, slot));
        EXPECT_EQ(nullptr, set_->array[slot].p);
    }
}

TEST_F(HashSetTest, LoadFactorOutsideItsRangeIsReplaced) {
    const std::vector<std::pair<float, float>> cases = {{0.0F, 0.25F}, {-1.0F, 0.25F}, {1.0F, 0.75F}, {2.0F, 0.75F},
                                                        {0.9F, 0.9F},  {0.01F, 0.01F}, {NAN, 0.25F}};
    for (const auto& [given, used] : cases) {
        HashSet* set = init_hashset(10, given);
        EXPECT_EQ(used, set->load_factor) << given;
        free_hash(set);
    }
}

TEST_F(HashSetTest, InitBeyondAllMemoryEndsTheProcess) {
    EXPECT_EXIT(init_hashset(~std::uint64_t{0} - 48, 0.75F), ::testing::ExitedWithCode(1), "Out of memory!\n");
    EXPECT_EXIT(init_hashset(std::uint64_t{1} << 45, 0.75F), ::testing::ExitedWithCode(1), "Out of memory!\n");
}

TEST(EntityFlags, SlotsGoFromTheHighBitDown) {
    std::uint8_t flags[2] = {0, 0};
    EXPECT_EQ(1, set_entity_fill(flags, 0));
    EXPECT_EQ(128, flags[0]);
    set_entity_fill(flags, 7);
    EXPECT_EQ(129, flags[0]);
    set_entity_fill(flags, 10);
    EXPECT_EQ(32, flags[1]);
    EXPECT_FALSE(is_entity_null(flags, 0));
    EXPECT_TRUE(is_entity_null(flags, 1));
    EXPECT_FALSE(is_entity_null(flags, 7));
    EXPECT_TRUE(is_entity_null(flags, 8));
    EXPECT_FALSE(is_entity_null(flags, 10));
}

TEST(EntityFlags, DeletedIsASetBit) {
    std::uint8_t flags[2] = {0, 0};
    EXPECT_FALSE(is_entity_delete(flags, 15));
    EXPECT_EQ(1, set_entity_delete(flags, 15));
    EXPECT_EQ(1, flags[1]);
    EXPECT_TRUE(is_entity_delete(flags, 15));
    EXPECT_FALSE(is_entity_delete(flags, 14));
}

TEST_F(HashSetTest, FirstOccurrenceMakesARecord) {
    Make(0, 0.75F);
    Entity entity = Key(1234);
    EXPECT_EQ(1, add_hashset(set_, &entity, 7));
    EXPECT_EQ(20U, entity.read_number);
    EXPECT_EQ(nullptr, entity.p);  // the list is the table's own
    const std::uint64_t slot = Jenkin_hash(1234) % 3;
    EXPECT_EQ(slot, Find(set_, 1234));
    EXPECT_EQ(1U, set_->count);
    EXPECT_EQ(1234U, set_->array[slot].kmer);
    EXPECT_EQ(20U, set_->array[slot].read_number);
    EXPECT_EQ(160U, ReadRoom(set_->array[slot]));
    EXPECT_EQ(std::vector<int>({7}), Reads(set_, 1234));
}

TEST_F(HashSetTest, ReadsStandInOrderOfInsertionOnceAnOccurrence) {
    Make(100, 0.75F);
    for (std::uint16_t read : {3, 3, 65535, 1}) Add(set_, 5, read);
    EXPECT_EQ(std::vector<int>({3, 3, 65535, 1}), Reads(set_, 5));
    EXPECT_EQ(1U, set_->count);
}

TEST_F(HashSetTest, TwentiethOccurrenceGrowsTheList) {
    Make(100, 0.75F);
    std::vector<int> all;
    for (std::uint16_t read = 0; read < 19; ++read) {
        Add(set_, 8, read);
        all.push_back(read);
    }
    const std::uint64_t slot = Find(set_, 8);
    EXPECT_EQ(20U, set_->array[slot].read_number);
    Add(set_, 8, 19);
    all.push_back(19);
    EXPECT_EQ(40U, set_->array[slot].read_number);
    EXPECT_EQ(320U, ReadRoom(set_->array[slot]));
    for (std::uint16_t read = 20; read < 40; ++read) {
        EXPECT_EQ(40U, set_->array[slot].read_number);
        Add(set_, 8, read);
        all.push_back(read);
    }
    EXPECT_EQ(60U, set_->array[slot].read_number);
    EXPECT_EQ(all, Reads(set_, 8));
}

TEST_F(HashSetTest, FrequencyRisesByTheAmountGiven) {
    Make(100, 0.75F);
    Add(set_, 8, 4, 3);
    const Entity& record = set_->array[Find(set_, 8)];
    EXPECT_EQ(3U, record.kmer_fre);
    EXPECT_EQ(4, record.p[0]);
    Add(set_, 8, 5, 17);
    EXPECT_EQ(20U, record.kmer_fre);
    EXPECT_EQ(5, record.p[3]);
    EXPECT_EQ(40U, record.read_number);
    Add(set_, 8, 6, 1000000);
    EXPECT_EQ(6, record.p[20]);
    Add(set_, 8, 7);  // its place lies beyond the list
    EXPECT_EQ(1000021U, record.kmer_fre);
    EXPECT_EQ(40U, record.read_number);
}

TEST_F(HashSetTest, CollidingKeysProbeForwardAndWrap) {
    Make(7, 0.9F);
    const std::vector<std::uint64_t> keys = KeysOfSlot(6, 7, 3);
    for (std::size_t i = 0; i < keys.size(); ++i) Add(set_, keys[i], static_cast<std::uint16_t>(i));
    EXPECT_EQ(6U, Find(set_, keys[0]));
    EXPECT_EQ(0U, Find(set_, keys[1]));
    EXPECT_EQ(1U, Find(set_, keys[2]));
    EXPECT_EQ(3U, set_->count_conflict);  // one step for the second key, two for the third; lookups do not count
}

TEST_F(HashSetTest, AbsentKeyGivesTheSize) {
    Make(7, 0.9F);
    EXPECT_EQ(7U, Find(set_, 1));
    const std::vector<std::uint64_t> keys = KeysOfSlot(2, 7, 2);
    Add(set_, keys[0], 0);
    EXPECT_EQ(7U, Find(set_, keys[1]));
    const Entity there = Key(keys[0]);
    const Entity absent = Key(keys[1]);
    EXPECT_NE(0, exists_hashset(set_, &there));
    EXPECT_EQ(0, exists_hashset(set_, &absent));
}

TEST_F(HashSetTest, AbsentKeyEndsInAFullTable) {
    Make(3, 0.95F);
    for (std::uint64_t kmer = 0; kmer < 7; ++kmer) Add(set_, kmer, 0);
    ASSERT_EQ(7U, set_->size);
    ASSERT_EQ(7U, set_->count);  // max is 6.65 + 0.5 cut, so the table fills up
    EXPECT_EQ(7U, Find(set_, 100));
    EXPECT_LT(Find(set_, 3), 7U);
}

TEST_F(HashSetTest, ThirdKeyGrowsATableOfThree) {
    Make(0, 0.75F);
    Add(set_, 1, 0);
    Add(set_, 2, 0);
    EXPECT_EQ(3U, set_->size);
    Add(set_, 3, 0);
    EXPECT_EQ(7U, set_->size);
    EXPECT_EQ(5U, set_->max);  // 5.25 + 0.5 cut
    EXPECT_EQ(3U, set_->count);
    for (std::uint64_t kmer : {1, 2, 3}) EXPECT_EQ(std::vector<int>({0}), Reads(set_, kmer));
}

TEST_F(HashSetTest, KnownKeyToAFullTableGrowsItToo) {
    Make(0, 0.75F);
    Add(set_, 1, 0);
    Add(set_, 2, 0);
    Add(set_, 1, 1);
    EXPECT_EQ(7U, set_->size);
    EXPECT_EQ(2U, set_->count);
    EXPECT_EQ(std::vector<int>({0, 1}), Reads(set_, 1));
}

TEST_F(HashSetTest, GrowthRoundsItsLimit) {
    Make(0, 0.5F);
    EXPECT_EQ(1U, set_->max);  // 1.5 cut
    Add(set_, 1, 0);
    Add(set_, 2, 0);
    EXPECT_EQ(7U, set_->size);
    EXPECT_EQ(4U, set_->max);  // 3.5 + 0.5
}

TEST_F(HashSetTest, EnlargeDoublesUntilTheRecordsFit) {
    Make(0, 0.75F);
    enlarge_hashset(set_, 2);
    EXPECT_EQ(3U, set_->size);
    enlarge_hashset(set_, 10);
    EXPECT_EQ(15U, set_->size);  // 7 is too small for 10; 14 is raised to 15, which passes as prime
    EXPECT_EQ(11U, set_->max);   // 11.25 + 0.5 cut
    EXPECT_EQ(0U, set_->count);
}

TEST_F(HashSetTest, GrowthEndsAtAnEqualLimit) {
    Make(7, 0.6F);
    enlarge_hashset(set_, 9);  // 15 times 0.6 is 9 in single precision
    EXPECT_EQ(15U, set_->size);
    EXPECT_EQ(9U, set_->max);
}

TEST_F(HashSetTest, GrowthPutsEachRecordWhereItsChainOfDisplacementsLeads) {
    // Three slots become seven. The key of old slot 0 takes new slot 1, drives its holder on to new slot 1 + 1, and so
    // on: the order of the old slots and of the displacements settles who stands nearest.
    Make(0, 0.75F);
    std::uint64_t first = 0;
    while (Jenkin_hash(first) % 3 != 0 || Jenkin_hash(first) % 7 != 1) ++first;
    std::uint64_t second = 0;
    while (Jenkin_hash(second) % 3 != 1 || Jenkin_hash(second) % 7 != 1) ++second;
    Add(set_, second, 2);
    Add(set_, first, 1);
    ASSERT_EQ(0U, Find(set_, first));
    ASSERT_EQ(1U, Find(set_, second));
    enlarge_hashset(set_, 1);
    ASSERT_EQ(7U, set_->size);
    EXPECT_EQ(1U, Find(set_, first));
    EXPECT_EQ(2U, Find(set_, second));
    EXPECT_EQ(std::vector<int>({1}), Reads(set_, first));
    EXPECT_EQ(std::vector<int>({2}), Reads(set_, second));
    EXPECT_EQ(0x60, set_->nul_flag[0]);  // slots 1 and 2 alone
}

TEST_F(HashSetTest, DeletedKeyIsNotFoundButKeepsItsSlot) {
    Make(7, 0.9F);
    const std::vector<std::uint64_t> keys = KeysOfSlot(3, 7, 2);
    Add(set_, keys[0], 0);
    Add(set_, keys[1], 1);
    const Entity gone = Key(keys[0]);
    EXPECT_EQ(1U, delete_hashset(set_, &gone));
    EXPECT_EQ(7U, Find(set_, keys[0]));
    EXPECT_EQ(0, exists_hashset(set_, &gone));
    EXPECT_FALSE(is_entity_null(set_->nul_flag, 3));
    EXPECT_EQ(2U, set_->count);
    EXPECT_EQ(4U, Find(set_, keys[1]));  // the probe passes the deleted record
    EXPECT_EQ(7U, delete_hashset(set_, &gone));
    const Entity absent = Key(999999);
    EXPECT_EQ(7U, delete_hashset(set_, &absent));
}

TEST_F(HashSetTest, AddingADeletedKeyGrowsTheDeletedRecord) {
    Make(7, 0.9F);
    Add(set_, 5, 0);
    const std::uint64_t slot = Find(set_, 5);
    const Entity gone = Key(5);
    delete_hashset(set_, &gone);
    Add(set_, 5, 1);
    EXPECT_EQ(7U, Find(set_, 5));
    EXPECT_EQ(2U, set_->array[slot].kmer_fre);
    EXPECT_EQ(1U, set_->count);
}

TEST_F(HashSetTest, GrowthLeavesDeletedRecordsBehind) {
    Make(7, 0.75F);
    for (std::uint64_t kmer = 0; kmer < 4; ++kmer) Add(set_, kmer, static_cast<std::uint16_t>(kmer));
    std::uint16_t* orphan = set_->array[Find(set_, 2)].p;
    const Entity gone = Key(2);
    delete_hashset(set_, &gone);
    enlarge_hashset(set_, 2);
    EXPECT_EQ(15U, set_->size);
    EXPECT_EQ(4U, set_->count);
    EXPECT_EQ(15U, Find(set_, 2));
    int filled = 0;
    for (std::uint64_t slot = 0; slot < set_->size; ++slot) {
        filled += !is_entity_null(set_->nul_flag, slot);
        EXPECT_FALSE(is_entity_delete(set_->del_flag, slot));
    }
    EXPECT_EQ(3, filled);
    for (std::uint64_t kmer : {0, 1, 3}) EXPECT_EQ(std::vector<int>({static_cast<int>(kmer)}), Reads(set_, kmer));
    EXPECT_EQ(2, orphan[0]);  // the list of the deleted record outlives the growth
    std::free(orphan);
    Add(set_, 2, 9);
    EXPECT_EQ(std::vector<int>({9}), Reads(set_, 2));
    EXPECT_EQ(5U, set_->count);
}

TEST_F(HashSetTest, GrowthBeyondAllMemoryEndsTheProcess) {
    Make(0, 0.75F);
    EXPECT_EXIT(enlarge_hashset(set_, std::uint64_t{1} << 45), ::testing::ExitedWithCode(1), "Out of memory!\n");
}

TEST_F(HashSetTest, GrowthBeyondTheAddressSpaceEndsTheProcess) {
    Make(std::uint64_t{1} << 20, 1e-30F);
    ASSERT_EQ(0U, set_->max);
    // No number of slots serves a load factor this small.
    set_->size = std::uint64_t{1} << 60;
    EXPECT_EXIT(enlarge_hashset(set_, 1), ::testing::ExitedWithCode(1), "Out of memory!\n");
    set_->size = 1048583;
}

TEST_F(HashSetTest, HistogramCountsFrequenciesBelow256) {
    Make(1000, 0.75F);
    for (std::uint64_t kmer : {1, 2, 3}) Add(set_, kmer, 0);
    for (int i = 0; i < 2; ++i) Add(set_, 2, 1);
    for (int i = 0; i < 255; ++i) Add(set_, 4, 1);
    for (int i = 0; i < 256; ++i) Add(set_, 5, 1);
    Add(set_, 6, 0, 0);
    const Entity gone = Key(3);
    delete_hashset(set_, &gone);
    const std::string path = ::testing::TempDir() + "lintara_histogram";
    std::ofstream out(path);
    print_hashset(set_, out);
    out.close();
    EXPECT_EQ("1\t2\n3\t1\n255\t1\n", testing::FileText(path));
}

TEST_F(HashSetTest, GetFreqLooksUpTheKeyZero) {
    Make(100, 0.75F);
    Add(set_, 7, 0);
    EXPECT_EQ(0U, get_freq(set_, 7));
    for (int i = 0; i < 3; ++i) Add(set_, 0, 0);
    EXPECT_EQ(3U, get_freq(set_, 7));
    EXPECT_EQ(3U, get_freq(set_, 0));
}

// Any order of adds, deletes and growths against the standard ordered map.
TEST_F(HashSetTest, AgreesWithAMap) {
    std::mt19937 random(20240501);
    for (int round = 0; round < 60; ++round) {
        const float fill = std::uniform_real_distribution<float>(0.05F, 0.999F)(random);
        HashSet* set = init_hashset(random() % 50, fill);
        const std::uint64_t key_range = 1 + random() % 400;
        const std::uint64_t key_step = round % 2 == 0 ? 1 : 0x9E3779B97F4A7C15U;
        std::map<std::uint64_t, std::vector<int>> twin;
        const int adds = static_cast<int>(random() % 2000);
        for (int i = 0; i < adds; ++i) {
            const std::uint64_t kmer = random() % key_range * key_step;
            const std::uint16_t read = static_cast<std::uint16_t>(random());
            Add(set, kmer, read);
            twin[kmer].push_back(read);
        }
        EXPECT_EQ(twin.size(), set->count);
        EXPECT_LE(set->count, set->max);
        std::uint64_t filled = 0;
        for (std::uint64_t slot = 0; slot < set->size; ++slot) filled += !is_entity_null(set->nul_flag, slot);
        EXPECT_EQ(twin.size(), filled);
        for (std::uint64_t key = 0; key < key_range; ++key) {
            const auto known = twin.find(key * key_step);
            const std::uint64_t slot = Find(set, key * key_step);
            if (known == twin.end()) {
                EXPECT_EQ(set->size, slot);
            } else {
                ASSERT_LT(slot, set->size);
                EXPECT_EQ(known->second, Reads(set, key * key_step));
                EXPECT_EQ(known->second.size() / 20 * 20 + 20, set->array[slot].read_number);
            }
        }
        free_hash(set);
    }
}

}  // namespace
}  // namespace lintara
