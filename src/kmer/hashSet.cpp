#include "kmer/hashSet.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <utility>

namespace lintara {

namespace {

const std::uint64_t READ_STEP = 20;          // counted entries by which the read list of a record grows
const std::uint64_t BYTES_PER_COUNTED = 16;  // bytes behind each counted entry, see ReadRoom()
const std::uint64_t MAX_SLOTS = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Entity);

[[noreturn]] void OutOfMemory() {
    std::cerr << "Out of memory!\n";
    std::exit(1);
}

std::uint8_t* NewFlags(std::uint64_t size) {
    void* flags = std::calloc(size / 8 + 1, 1);
    if (flags == nullptr) OutOfMemory();
    return static_cast<std::uint8_t*>(flags);
}

// Zeroed, so that a frequency that rises by more than one leaves no stale entries behind.
std::uint16_t* NewReads(std::uint64_t counted) {
    void* reads = std::calloc(counted, BYTES_PER_COUNTED);
    if (reads == nullptr) OutOfMemory();
    return static_cast<std::uint16_t*>(reads);
}

void GrowReads(Entity& record) {
    const std::uint64_t counted = record.read_number;
    std::uint16_t* grown = NewReads(counted + READ_STEP);
    std::memcpy(grown, record.p, counted * BYTES_PER_COUNTED);
    record.read_number = counted + READ_STEP;
    std::free(record.p);
    record.p = grown;
}

std::uint64_t NextSlot(std::uint64_t slot, std::uint64_t size) {
    return slot + 1 == size ? 0 : slot + 1;
}

bool IsLive(const std::uint8_t* nul_flag, const std::uint8_t* del_flag, std::uint64_t slot) {
    return !is_entity_null(nul_flag, slot) && !is_entity_delete(del_flag, slot);
}

std::uint64_t EnlargedSize(const HashSet* set, std::uint64_t num) {
    const float wanted = static_cast<float>(set->count + num);
    std::uint64_t new_size = set->size;
    do {
        if (new_size > MAX_SLOTS / 2) OutOfMemory();
        new_size = find_next_prime(new_size * 2);
    } while (wanted > static_cast<float>(new_size) * set->load_factor);
    return new_size;
}

// Carries the live records of the first old_size slots to their places in the table's present size. moved is the old
// del_flag: it marks the old slots whose record is gone, be it deleted before or carried over by now.
void Rehash(HashSet* set, std::uint64_t old_size, const std::uint8_t* filled, std::uint8_t* moved) {
    for (std::uint64_t i = 0; i < old_size; ++i) {
        if (!IsLive(filled, moved, i)) continue;
        Entity record = set->array[i];
        set_entity_delete(moved, i);
        while (true) {
            std::uint64_t slot = hash_code(&record) % set->size;
            while (!is_entity_null(set->nul_flag, slot)) slot = NextSlot(slot, set->size);
            set_entity_fill(set->nul_flag, slot);
            if (slot >= old_size || !IsLive(filled, moved, slot)) {
                set->array[slot] = record;
                break;
            }
            std::swap(set->array[slot], record);
            set_entity_delete(moved, slot);
        }
    }
}

}  // namespace

std::uint64_t Jenkin_hash(std::uint64_t key) {
    key += ~(key << 32);
    key ^= key >> 22;
    key += ~(key << 13);
    key ^= key >> 8;
    key *= 9;
    key ^= key >> 15;
    key += ~(key << 27);
    key ^= key >> 31;
    return key;
}

std::uint64_t hash_code(const Entity* e) {
    return Jenkin_hash(e->kmer);
}

int hash_equal(const Entity* a, const Entity* b) {
    return a->kmer == b->kmer;
}

int is_prime(std::uint64_t num) {
    if (num <= 3) return 1;
    if (num % 2 == 0) return 0;
    // Single precision and the strict bound below settle which sizes a table can have.
    const std::uint64_t root = static_cast<std::uint64_t>(std::sqrt(static_cast<float>(num)));
    for (std::uint64_t i = 3; i < root; i += 2) {
        if (num % i == 0) return 0;
    }
    return 1;
}

std::uint64_t find_next_prime(std::uint64_t num) {
    if (num % 2 == 0) ++num;
    while (!is_prime(num)) num += 2;
    return num;
}

void init_array(Entity*& array, std::uint64_t size) {
    for (std::uint64_t i = 0; i < size; ++i) {
        array[i].p = nullptr;
        array[i].kmer_fre = 0;
    }
}

HashSet* init_hashset(std::uint64_t init_size, float fill) {
    if (init_size > MAX_SLOTS / 2) OutOfMemory();
    HashSet* set = new HashSet;
    set->size = init_size > 2 ? find_next_prime(init_size) : 3;
    set->e_size = sizeof(Entity);
    set->count = 0;
    set->count_conflict = 0;
    if (!(fill > 0)) {
        set->load_factor = 0.25F;
    } else {
        set->load_factor = fill >= 1 ? 0.75F : fill;
    }
    set->max = static_cast<std::uint64_t>(static_cast<float>(set->size) * set->load_factor);
    set->iter_ptr = 0;
    set->array = static_cast<Entity*>(std::malloc(set->size * sizeof(Entity)));
    if (set->array == nullptr) OutOfMemory();
    init_array(set->array, set->size);
    set->nul_flag = NewFlags(set->size);
    set->del_flag = NewFlags(set->size);
    return set;
}

bool is_entity_null(const std::uint8_t* nul_flag, std::uint64_t idx) {
    return (nul_flag[idx >> 3] & (128U >> (idx & 7))) == 0;
}

int set_entity_fill(std::uint8_t* nul_flag, std::uint64_t idx) {
    nul_flag[idx >> 3] |= static_cast<std::uint8_t>(128U >> (idx & 7));
    return 1;
}

bool is_entity_delete(const std::uint8_t* del_flag, std::uint64_t idx) {
    return (del_flag[idx >> 3] & (128U >> (idx & 7))) != 0;
}

int set_entity_delete(std::uint8_t* del_flag, std::uint64_t idx) {
    del_flag[idx >> 3] |= static_cast<std::uint8_t>(128U >> (idx & 7));
    return 1;
}

void enlarge_hashset(HashSet* set, std::uint64_t num) {
    if (set->count + num <= set->max) return;
    const std::uint64_t old_size = set->size;
    const std::uint64_t new_size = EnlargedSize(set, num);
    set->size = new_size;
    // Rounded, unlike the plain cut of a new table.
    const float limit = static_cast<float>(new_size) * set->load_factor;
    set->max = static_cast<std::uint64_t>(static_cast<double>(limit) + 0.5);  // NOLINT(bugprone-incorrect-roundings)

    void* resized = std::realloc(static_cast<void*>(set->array), new_size * sizeof(Entity));
    if (resized == nullptr) OutOfMemory();
    set->array = static_cast<Entity*>(resized);

    std::uint8_t* old_nul_flag = std::exchange(set->nul_flag, NewFlags(new_size));
    std::uint8_t* old_del_flag = std::exchange(set->del_flag, NewFlags(new_size));
    Rehash(set, old_size, old_nul_flag, old_del_flag);
    std::free(old_nul_flag);
    std::free(old_del_flag);
}

int add_hashset(HashSet* set, Entity* entity, std::uint16_t ReadNum) {
    enlarge_hashset(set, 1);
    std::uint64_t slot = hash_code(entity) % set->size;
    while (!is_entity_null(set->nul_flag, slot)) {
        Entity& record = set->array[slot];
        if (hash_equal(entity, &record)) {
            if (record.kmer_fre < ReadRoom(record)) record.p[record.kmer_fre] = ReadNum;
            record.kmer_fre += entity->kmer_fre;
            if (record.kmer_fre == record.read_number) GrowReads(record);
            return 1;
        }
        ++set->count_conflict;
        slot = NextSlot(slot, set->size);
    }
    Entity& record = set->array[slot];
    entity->read_number = READ_STEP;
    record = *entity;
    record.p = NewReads(READ_STEP);
    record.p[0] = ReadNum;
    set_entity_fill(set->nul_flag, slot);
    ++set->count;
    return 1;
}

std::uint64_t get_hashset(const HashSet* set, const Entity* entity) {
    std::uint64_t slot = hash_code(entity) % set->size;
    // A load factor just below 1 can round up to a full table, in which only the count of steps ends the search.
    for (std::uint64_t step = 0; step < set->size; ++step) {
        if (is_entity_null(set->nul_flag, slot)) return set->size;
        if (hash_equal(entity, &set->array[slot])) return is_entity_delete(set->del_flag, slot) ? set->size : slot;
        slot = NextSlot(slot, set->size);
    }
    return set->size;
}

int exists_hashset(const HashSet* set, const Entity* entity) {
    return get_hashset(set, entity) != set->size;
}

std::uint64_t delete_hashset(HashSet* set, const Entity* entity) {
    const std::uint64_t slot = get_hashset(set, entity);
    if (slot == set->size) return slot;
    return static_cast<std::uint64_t>(set_entity_delete(set->del_flag, slot));
}

void print_hashset(const HashSet* set, std::ofstream& kmer_outfile) {
    const std::uint64_t BINS = 256;
    std::uint64_t freq[BINS] = {};
    for (std::uint64_t i = 0; i < set->size; ++i) {
        if (is_entity_null(set->nul_flag, i)) continue;
        const std::uint64_t times = set->array[i].kmer_fre;
        if (times > 0 && times < BINS) ++freq[times];
    }
    for (std::uint64_t i = 1; i < BINS; ++i) {
        if (freq[i] != 0) kmer_outfile << i << "\t" << freq[i] << "\n";
    }
}

std::uint32_t get_freq(const HashSet* set, std::uint64_t kmer) {
    Entity wanted{};
    wanted.kmer_fre = kmer & 0xFFFFFFFFU;
    const std::uint64_t slot = get_hashset(set, &wanted);
    if (slot == set->size) return 0;
    if (!hash_equal(&wanted, &set->array[slot])) {
        std::cerr << "not equal\n";
        std::exit(1);
    }
    return set->array[slot].kmer_fre;
}

void free_hash(HashSet* set) {
    for (std::uint64_t i = 0; i < set->size; ++i) {
        if (!is_entity_null(set->nul_flag, i)) std::free(set->array[i].p);
    }
    std::free(set->array);
    std::free(set->nul_flag);
    std::free(set->del_flag);
    delete set;
}

}  // namespace lintara
