#include "kmer/overlap_matrix.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>

#include "align/overlap.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

const int TWO_WORD_SPLIT = static_cast<int>(DATA_LEN);

// The codes are combined with "or" because code 4 then spills into the base before it, and keys depend on that.
void ShiftOn(std::uint64_t& kmer, const char* bases, int length) {
    for (int i = 0; i < length; ++i) kmer = (kmer << LEN_TO_BITLEN) | alphabet[bases[i]];
}

// A block is never given up for lack of memory: the thread waits until other blocks have freed theirs.
template <typename T>
T* NewArray(std::size_t count, const char* message) {
    T* array = nullptr;
    while ((array = new (std::nothrow) T[count]) == nullptr) {
        std::cerr << message;
        sleep(3);
    }
    return array;
}

// The matrix of num rows, all cells 0.
std::uint8_t** NewMatrix(std::uint16_t read_number) {
    std::uint8_t** matrix = detail::NewRows(read_number);
    for (int i = 0; i < read_number; ++i) {
        // Twice what the cells take; the spare half is never touched.
        matrix[i] = detail::NewCells(2U * read_number);
        std::memset(matrix[i], 0, read_number);
    }
    return matrix;
}

// Marks each pair of different reads in one record. The entries never fall, so seeds lie above the diagonal only.
void SeedPairs(const Entity& record, std::uint8_t** matrix, std::uint16_t read_number) {
    const std::uint64_t frequency =
        std::min<std::uint64_t>(static_cast<std::uint16_t>(record.kmer_fre), ReadRoom(record));
    for (std::uint64_t i = 0; i + 1 < frequency; ++i) {
        const std::uint16_t front = record.p[i];
        if (front >= read_number) continue;
        // A read that holds the k-mer again, as in a repeat, adds nothing: those behind it have been marked.
        if (i > 0 && record.p[i - 1] == front) continue;
        std::uint8_t* row = matrix[front];
        for (std::uint64_t j = i + 1; j < frequency; ++j) {
            const std::uint16_t after = record.p[j];
            if (after < read_number && after != front && row[after] == 0) row[after] = 1;
        }
    }
}

void LogCell(std::ofstream& log, int read, std::uint8_t cell) {
    if (cell != 0) log << read << ";" << static_cast<int>(cell) << " ";
}

}  // namespace

std::uint8_t** detail::NewRows(std::size_t count) {
    return NewArray<std::uint8_t*>(count, "Out of memory! Main: 142. Function: hash2matrix\n");
}

std::uint8_t* detail::NewCells(std::size_t count) {
    return NewArray<std::uint8_t>(count, "Out of memory! Line: 152. Function: hash2matrix\n");
}

std::uint64_t seq2bit(const std::string& seq) {
    if (seq.size() > 31) {
        std::cerr << "Error in the sequence is too long !\n";
        std::exit(-1);
    }
    std::uint64_t mer = 0;
    seq2Kmer(mer, seq);
    return mer;
}

std::string bit2seq(std::uint64_t mer) {
    std::string seq;
    for (int shift = 10; shift >= 0; shift -= 2) seq += base[(mer >> shift) & 3];
    return seq;
}

std::string Kmer2Seq(std::uint64_t mer) {
    std::string seq;
    for (int i = 0; i < Kmer; ++i) {
        const unsigned int shift = LEN_TO_BITLEN * static_cast<unsigned int>(Kmer - 1 - i);
        seq += base[(mer >> (shift % 64)) & 3];
    }
    return seq;
}

void seq2Kmer(std::uint64_t& kmer, const std::string& seq) {
    ShiftOn(kmer, seq.data(), static_cast<int>(seq.size()));
}

void Seq2Kmer(std::uint64_t* kmer, const std::string& seq) {
    const int length = static_cast<int>(seq.size());
    const int first = std::min(length, TWO_WORD_SPLIT);
    ShiftOn(kmer[0], seq.data(), first);
    if (length > first) ShiftOn(kmer[1], seq.data() + first, length - first);
}

void fill_hash_set31(HashSet*& hash, const std::string& read, std::uint16_t read_num) {
    const int length = static_cast<int>(read.size());
    std::uint64_t kmer = 0;
    for (int pos = 0; pos <= length - Kmer; ++pos) {
        if (pos < length) ShiftOn(kmer, read.data() + pos, Kmer);
        Entity entity{};
        entity.kmer = kmer;
        entity.kmer_fre = 1;
        add_hashset(hash, &entity, read_num);
    }
}

void fill_hash(HashSet*& hash, const std::vector<Read>& reads) {
    for (std::size_t i = 0; i < reads.size(); ++i) {
        fill_hash_set31(hash, reads[i].seq, static_cast<std::uint16_t>(i));
    }
}

std::uint8_t** hash2matrix(HashSet*& hash, std::uint16_t read_number) {
    std::uint8_t** matrix = NewMatrix(read_number);
    for (std::uint64_t slot = 0; slot < hash->size; ++slot) {
        if (!is_entity_null(hash->nul_flag, slot)) SeedPairs(hash->array[slot], matrix, read_number);
    }
    return matrix;
}

void overlap_matrix(std::uint8_t**& matrix, const std::vector<Read>& reads, int method, int type, int threadId) {
    logFile[threadId] << "caculate the overlap values\n";
    const int num = static_cast<int>(reads.size());
    const int start = type == 1 || type == 3 ? 1 : 0;
    const int end = type == 2 || type == 3 ? num - 1 : num;
    for (int i = start; i < end; ++i) {
        for (int j = start; j < end; ++j) {
            if (matrix[i][j] != 1) continue;
            const int pos = overlap(reads[i].seq, reads[j].seq, method, Match_ratio);
            const int len1 = static_cast<int>(reads[i].seq.size());
            const int len2 = static_cast<int>(reads[j].seq.size());
            detail::SettleCells(matrix, i, j, len1, len2, pos);
        }
    }
    logFile[threadId] << "caculate finish!\n";
}

void correct_matrix(std::uint8_t**& matrix, std::uint16_t num) {
    for (int i = 0; i < num; ++i) {
        matrix[i][0] = 0;
        matrix[num - 1][i] = 0;
    }
}

void show_over(int start, std::uint8_t**& matrix, std::uint16_t num, int threadId) {
    std::ofstream& log = logFile[threadId];
    log << "show after overlap with start: " << start << "\n";
    if (start >= 0 && start < num) {
        for (int i = 0; i < num; ++i) LogCell(log, i, matrix[start][i]);
    }
    log << "\n";
}

void show_over(std::uint8_t**& matrix, int end, std::uint16_t num, int threadId) {
    std::ofstream& log = logFile[threadId];
    log << "show before overlap with end: " << end << "\n";
    if (end >= 0 && end < num) {
        for (int i = 0; i < num; ++i) LogCell(log, i, matrix[i][end]);
    }
    log << "\n";
}

void show_matrix(std::uint8_t**& matrix, std::uint16_t num, int threadId) {
    std::ofstream& log = logFile[threadId];
    log << " ";
    for (int j = 1; j < num; ++j) log << "\t" << j << "\t";
    log << "\n";
    for (int i = 0; i < num; ++i) {
        log << i;
        for (int j = 1; j < num; ++j) log << "\t" << static_cast<int>(matrix[i][j]) << "\t";
        log << "\n";
    }
}

void free_matrix(std::uint8_t**& matrix, std::uint16_t num) {
    for (int i = 0; i < num; ++i) delete[] matrix[i];
    delete[] matrix;
}

}  // namespace lintara
