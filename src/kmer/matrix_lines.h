// Rows and columns of a block's overlap matrix, of which only the cells above 0 are visited. Of a read whose pairs the
// open matrix knows, its partners alone are looked at; of an edge's row, or in a matrix that was filled otherwise, all
// cells are, in a row eight together, since most are 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kmer/open_matrix.h"

namespace lintara {

/// Calls visit(other, cell) for the cells above 0 in the row of a read, by ascending number, all of them settled.
/// @param num  reads of the matrix
template <typename Visit>
void EachInRow(const std::uint8_t* const* matrix, int read, int num, Visit visit) {
    const std::uint8_t* row = matrix[read];
    if (const Partners partners = SettledPartners(matrix, read); partners.known()) {
        partners.ForEach([&](int other) {
            if (row[other] != 0) visit(other, int{row[other]});
        });
        return;
    }
    const int kTogether = sizeof(std::uint64_t);
    int i = 0;
    for (; i + kTogether <= num; i += kTogether) {
        std::uint64_t cells = 0;
        std::memcpy(&cells, row + i, sizeof cells);
        if (cells == 0) continue;
        for (int k = i; k < i + kTogether; ++k) {
            if (row[k] != 0) visit(k, int{row[k]});
        }
    }
    for (; i < num; ++i) {
        if (row[i] != 0) visit(i, int{row[i]});
    }
}

/// The same in the column of a read.
template <typename Visit>
void EachInColumn(const std::uint8_t* const* matrix, int read, int num, Visit visit) {
    const auto look = [&](int other) {
        if (matrix[other][read] != 0) visit(other, int{matrix[other][read]});
    };
    if (const Partners partners = SettledPartners(matrix, read); partners.known()) {
        partners.ForEach(look);
        return;
    }
    for (int i = 0; i < num; ++i) look(i);
}

}  // namespace lintara
