// The run-wide settings, the compile-time constants and the base tables that every subsystem reads.
//
// All settings are plain variables. The main thread writes them from the command line before any worker starts and
// nothing changes them afterwards, with one exception: GapId, which a worker sets to -2 when the selected gap is done.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace lintara {

extern std::string gap_file;     ///< -g: gap file, plain or gzip-compressed
extern std::string contig_file;  ///< -c: contig file, plain FASTA
extern std::string out_file;     ///< -o: output directory, which must exist; empty means the root of the file system
extern int Kmer;                 ///< -k: k-mer length of the read index, bases
extern std::uint64_t initSize;   ///< -i: inert; the hash set takes its first size from initSizes
extern double Match_ratio;       ///< -M: lowest share of equal bases in an accepted overlap, 0..1
extern float load_factor;        ///< -f: load factor of the k-mer hash set
extern int ReadLen;              ///< -r: longest read length, bases
extern int threadNum;            ///< -t: number of worker threads and of each per-thread file
extern int Min_overlap;          ///< -a: shortest accepted overlap, bases
extern double false_ratio;       ///< -e: mismatch budget of the overlap finders, as a share of Min_overlap
extern double ECUTOFF;           ///< -E: lowest share of candidates that must agree in the step checks, 0..1
extern int Method;               ///< -m: exact-search algorithm, 0..5; see string_match()
extern std::atomic<int> GapId;   ///< -n: the one gap to treat; -1: all gaps; -2: the selected gap is done
extern int StartId;              ///< -s: gaps with a lower id are not treated; -1: all gaps
extern int min_align;            ///< shortest stretch accepted by edge alignments and spanning-read checks, bases
extern int ContigLen;            ///< shortest flanking contig that a gap strategy works from, bases
extern int TELEN;                ///< declared run-wide; no logic reads it
extern int readLen;              ///< declared run-wide; no logic reads it (the live value is ReadLen)
extern int IsGz;                 ///< declared run-wide; no logic reads it
extern std::string gz_gap_file;  ///< declared run-wide; no logic reads it

extern const char* PROGRAM;
extern const char* AUTHOR;
extern const char* VERSION;
extern const char* CONTACT;
extern const char* UPDATE;  ///< never printed

/// Per-thread state, one entry a thread, indexed by threadId; a thread touches only its own entry.
extern bool* SHORTOVERLAP;        ///< read and written by get_last, get_first, forward and reward
extern std::uint64_t* initSizes;  ///< initial size of the k-mer hash set, written by assemble_block

const int MAX_READ_LEN = 200;          ///< declared run-wide; no logic reads it (the live bound is ReadLen)
const unsigned int DATA_LEN = 32;      ///< bases in one packed word
const unsigned int LEN_TO_BITLEN = 2;  ///< bits a base takes in the packed code
const int TAG = 16384;                 ///< entries in the tag table of the repeat detector
const int TAGL = 6;                    ///< tag length of the repeat detector, bases
const int EDGE = 5;                    ///< declared run-wide; no logic reads it
const double Match_ratio2 = 0.9;       ///< declared run-wide; no logic reads it
const double DIF = 0.9;                ///< declared run-wide; no logic reads it
const int BLOCK = 3;                   ///< declared run-wide; no logic reads it
const int DELTA = 30;                  ///< widening of the trial overlaps in GetOverlapLen, bases
const float OVERLAPPERCUTOFF = 0.9F;   ///< lowest identity of the best trial overlap in GetOverlapLen
const float SEC2FIR = 0.8F;            ///< largest ratio of second-best to best identity in GetOverlapLen

/// Half of the built-in Min_overlap, in bases. It is settled before the options are read, so -a does not move it.
const int OVERLAPLENCUTOFF = 15;

namespace detail {
struct BaseTable {
    unsigned char code[256];
    constexpr unsigned char operator[](unsigned char c) const { return code[c]; }
    constexpr unsigned char operator[](char c) const { return code[static_cast<unsigned char>(c)]; }
    constexpr unsigned char operator[](int c) const { return code[static_cast<unsigned char>(c)]; }
};

constexpr BaseTable MakeBaseTable(unsigned char code_of_n) {
    BaseTable table{};
    for (unsigned char& code : table.code) code = 4;
    for (unsigned char c : {'A', 'a'}) table.code[c] = 0;
    for (unsigned char c : {'C', 'c'}) table.code[c] = 1;
    for (unsigned char c : {'G', 'g'}) table.code[c] = 2;
    for (unsigned char c : {'T', 't'}) table.code[c] = 3;
    for (unsigned char c : {'N', 'n'}) table.code[c] = code_of_n;
    return table;
}
}  // namespace detail

/// Base code of a byte: A/a 0, C/c 1, G/g 2, T/t 3, all else 4. Safe to index with a plain char.
inline constexpr detail::BaseTable alphabet = detail::MakeBaseTable(4);
/// The same, but N/n is 5.
inline constexpr detail::BaseTable alphabet1 = detail::MakeBaseTable(5);
/// The bases by code.
inline constexpr char base[] = "ACGT";
/// The bases in lower case by code, and N for code 4.
inline constexpr char sbase[] = "acgtN";

}  // namespace lintara
