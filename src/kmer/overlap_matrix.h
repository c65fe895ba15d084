// Packs bases into integers and turns the reads of one block into the overlap matrix on which all walks stand. The
// k-mer table is only a filter: two reads are compared base by base when they share a k-mer.
//
// The matrix is an array of num row pointers, num being the number of reads with the edge reads counted.
// matrix[a][b] = n above 0 says that read a stands to the left of read b and that the last n bases of a overlap the
// first n of b; 0 says that there is no such overlap, or that one read holds the other. n is shorter than both reads
// and kept in 8 bits. So a row lists the reads that can follow, a column those that can precede. Before
// overlap_matrix() a cell of 1 above the diagonal says that the two reads share a k-mer and are still to be compared.
//
// type of a block: 1 has the before edge as read 0, 2 the after edge as read num - 1, 3 both; any other has no edge.
// The cells of the edge reads (row 0, column num - 1) are the block driver's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kmer/hashSet.h"
#include "store/gap.h"

namespace lintara {

/// Packs a sequence, two bits a base, the first base in the highest bits. A byte other than A, C, G, T in either case
/// has code 4, which spills into the base before it: that base's low bit is set, and its own code is 0.
///
/// @param seq  at most 31 bases; a longer one ends the process with status -1 and
///             "Error in the sequence is too long !\n" on the error stream
std::uint64_t seq2bit(const std::string& seq);

/// The six bases of a packed tag; all bits above the low 12 are ignored.
std::string bit2seq(std::uint64_t mer);

/// The Kmer bases of a packed k-mer. Above 32 bases the shifts wrap, and so the bases repeat. The program does not call
/// it.
std::string Kmer2Seq(std::uint64_t mer);

/// Shifts a sequence of any length onto a running word, which is not cleared first; what passes the top is lost.
/// Bytes that are no base spill as in seq2bit().
void seq2Kmer(std::uint64_t& kmer, const std::string& seq);

/// The two-word form: the first 32 bases are shifted onto kmer[0], the others onto kmer[1]. The program does not call
/// it.
void Seq2Kmer(std::uint64_t* kmer, const std::string& seq);

/// Adds all k-mers of one read to the table. Each key is the running word after the k-mer was shifted onto it, and the
/// word starts at 0: with a Kmer below 32 the spare high bits of a key are bases of the k-mers before it.
///
/// @param read      a read shorter than Kmer adds nothing
/// @param read_num  place of the read in its block
void fill_hash_set31(HashSet*& hash, const std::string& read, std::uint16_t read_num);

/// Adds the k-mers of all reads, in order. Read numbers are cut to 16 bits, so a block holds at most 65535 reads.
void fill_hash(HashSet*& hash, const std::vector<Read>& reads);

/// Makes a matrix with 1 in the cell of each pair of reads that share a k-mer, the lower number first, and 0 in all
/// others; free_matrix() ends it. Memory that is short is waited for without end: a line on the error stream, 3
/// seconds of sleep, and the next try.
///
/// @param hash         the filled table; it may be freed afterwards
/// @param read_number  number of reads in the block, num
std::uint8_t** hash2matrix(HashSet*& hash, std::uint16_t read_number);

/// Compares the reads of every cell of 1 and writes the overlap, in bases, into the cell of its direction. The edge
/// reads that type names are left out, and their cells stay as they are.
///
/// @param reads     the block; no read may be empty (see overlap())
/// @param method    exact-search method, see string_match()
/// @param type      kind of the block, see above
/// @param threadId  whose log gets the two lines
void overlap_matrix(std::uint8_t**& matrix, const std::vector<Read>& reads, int method, int type, int threadId);

namespace detail {

/// Arrays of a matrix, not filled in. Memory that is short is waited for, as in hash2matrix().
std::uint8_t** NewRows(std::size_t count);
std::uint8_t* NewCells(std::size_t count);

/// Writes what overlap() said of reads i and j into the cell of its direction and clears the mirror. An overlap that is
/// not shorter than both reads clears both.
inline void SettleCells(std::uint8_t** matrix, int i, int j, int len1, int len2, int pos) {
    const int length = pos < 0 ? -pos : pos;
    const std::uint8_t cell = length < len1 && length < len2 ? static_cast<std::uint8_t>(length) : 0;
    matrix[i][j] = pos > 0 ? cell : 0;
    matrix[j][i] = pos > 0 ? 0 : cell;
}

}  // namespace detail

/// Clears column 0 and row num - 1. The program does not call it.
void correct_matrix(std::uint8_t**& matrix, std::uint16_t num);

/// Logs row start: each read that can follow it with its overlap, "number;overlap ". The program does not call it.
void show_over(int start, std::uint8_t**& matrix, std::uint16_t num, int threadId);

/// Logs column end: each read that can precede it with its overlap, "number;overlap ". The program does not call it.
void show_over(std::uint8_t**& matrix, int end, std::uint16_t num, int threadId);

/// Logs the matrix as a table without its column 0. The program does not call it.
void show_matrix(std::uint8_t**& matrix, std::uint16_t num, int threadId);

/// Frees the rows and the row array of hash2matrix(); the pointer keeps its value.
void free_matrix(std::uint8_t**& matrix, std::uint16_t num);

}  // namespace lintara
