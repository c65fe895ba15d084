// An open-addressing table from a packed k-mer to the reads that hold it. One table is made for each block of reads,
// filled read by read, read once from end to end to seed the overlap matrix, and freed at once; a table is private to
// the thread that made it. It knows nothing of sequences: a key is a 64-bit word, a read is its place in the block.
#pragma once

#include <cstdint>
#include <fstream>

namespace lintara {

/// One record of the table. Plain data: records are moved by copy while the table grows.
struct Entity {
    std::uint64_t kmer;              ///< the key: a packed k-mer, see seq2Kmer()
    std::uint16_t* p;                ///< read numbers in order of insertion, one an occurrence; owned by the table
    std::uint64_t read_number : 32;  ///< capacity of p in entries (not a count); 20 and its multiples
    std::uint64_t kmer_fre : 32;     ///< entries used in p, which is the frequency of the k-mer
};
static_assert(sizeof(Entity) == 24);

/// The table. A slot is free exactly when its nul_flag bit is clear; nothing else may be read in a free slot.
struct HashSet {
    std::uint32_t e_size;          ///< size of one record, bytes
    Entity* array;                 ///< the slots
    std::uint64_t size;            ///< number of slots, odd; accepted by is_prime()
    std::uint64_t count;           ///< filled slots, deleted ones included; never lowered
    std::uint64_t count_conflict;  ///< probe steps past a different key in add_hashset(); statistic only
    std::uint64_t max;             ///< filled slots that may be reached before the table grows
    std::uint64_t iter_ptr;        ///< 0, unused
    float load_factor;             ///< share of the slots that may be filled, 0..1 without the ends
    std::uint8_t* nul_flag;        ///< one bit a slot, high bit first: the slot holds a record
    std::uint8_t* del_flag;        ///< one bit a slot, high bit first: the record in the slot is deleted
};

/// Entries that p of a record in the table has room for: 16 bytes stand behind each counted entry of 2 bytes.
inline std::uint64_t ReadRoom(const Entity& entity) {
    return static_cast<std::uint64_t>(entity.read_number) * (16 / sizeof(std::uint16_t));
}

/// Robert Jenkins' mix of one 64-bit word.
std::uint64_t Jenkin_hash(std::uint64_t key);

/// Hash of the record's key, not yet reduced to a slot.
std::uint64_t hash_code(const Entity* e);

/// Non-zero when the keys are equal; nothing else is compared.
int hash_equal(const Entity* a, const Entity* b);

/// 1 for a number that serves as a table size, else 0. A cheap test and not an exact one: 0 to 3 pass, and since the
/// trial divisors stop short of the root, so do 9, 15, 25, 35, 49 and their like.
int is_prime(std::uint64_t num);

/// The first odd value at or above num that is_prime() accepts.
std::uint64_t find_next_prime(std::uint64_t num);

/// Sets p to null and kmer_fre to 0 in all size slots; the other fields stay unset.
void init_array(Entity*& array, std::uint64_t size);

/// Makes an empty table; free_hash() ends it.
///
/// @param init_size  wanted number of slots; 0 to 2 give 3 slots, all else find_next_prime(init_size). More slots than
///                   memory has ends the process with status 1 and "Out of memory!\n" on the error stream.
/// @param fill       share of the slots that may be filled; 0 or below (and not a number) means 0.25, 1 or above 0.75
HashSet* init_hashset(std::uint64_t init_size, float fill);

/// True when the slot is free.
bool is_entity_null(const std::uint8_t* nul_flag, std::uint64_t idx);

/// Marks the slot as filled. Always 1.
int set_entity_fill(std::uint8_t* nul_flag, std::uint64_t idx);

/// True when the record in the slot is deleted.
bool is_entity_delete(const std::uint8_t* del_flag, std::uint64_t idx);

/// Marks the record in the slot as deleted. Always 1.
int set_entity_delete(std::uint8_t* del_flag, std::uint64_t idx);

/// Makes room for num more records; does nothing while they fit below max. Otherwise the table at least doubles, in
/// place. Deleted records are not carried over: their slots become free, but their p is not freed and count keeps
/// counting them. Memory that runs out ends the process with status 1 and "Out of memory!\n" on the error stream.
void enlarge_hashset(HashSet* set, std::uint64_t num);

/// Adds one occurrence of a key. The record is copied; the caller keeps its own.
///
/// @param entity   kmer is the key and kmer_fre the amount by which its frequency rises, which is 1 in daily use;
///                 read_number is set to 20 when the key is new
/// @param ReadNum  place of the read in the block. A read that holds a k-mer twice is stored twice.
/// @return always 1. A deleted key grows in its record and stays deleted.
int add_hashset(HashSet* set, Entity* entity, std::uint16_t ReadNum);

// The program does not call the five below: it asks for no single key, since hash2matrix() goes through all slots.

/// Slot of the key of entity, or size when the key is absent or deleted.
std::uint64_t get_hashset(const HashSet* set, const Entity* entity);

/// Non-zero when get_hashset() finds the key.
int exists_hashset(const HashSet* set, const Entity* entity);

/// Marks the record of the key as deleted; it keeps its slot until the table grows.
///
/// @return size when the key is absent or already deleted, else 1, which is never a size
std::uint64_t delete_hashset(HashSet* set, const Entity* entity);

/// Writes the frequency histogram, deleted records included: one line "frequency\tnumber of k-mers\n" for each
/// frequency from 1 to 255 that occurs. Higher frequencies are left out.
void print_hashset(const HashSet* set, std::ofstream& kmer_outfile);

/// Frequency of the key 0, or 0 when the table lacks it. The argument goes into the frequency field of the record that
/// is looked up and not into its key, so it has no part in the result. A mismatch between that record and what was
/// found writes "not equal\n" to the error stream and ends the process with status 1.
std::uint32_t get_freq(const HashSet* set, std::uint64_t kmer);

/// Frees the table with all read lists that its filled slots hold.
void free_hash(HashSet* set);

}  // namespace lintara
