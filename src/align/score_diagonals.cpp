#include "align/score_diagonals.h"

#include <algorithm>
#include <cstring>

#include "align/edge_align.h"
#include "run/settings.h"

namespace lintara::detail {

namespace {

using Cells = std::int16_t __attribute__((vector_size(16)));
const int kCells = 8;

// Codes behind the ends of the two sequences, which match nothing.
const std::int16_t kBehindI = 5;
const std::int16_t kBehindJ = 6;

Cells Load(const std::int16_t* from) {
    Cells cells;
    std::memcpy(&cells, from, sizeof cells);
    return cells;
}

void Store(std::int16_t* to, Cells cells) {
    std::memcpy(to, &cells, sizeof cells);
}

Cells Fill(int value) {
    return Cells{} + static_cast<std::int16_t>(value);
}

Cells Max(Cells a, Cells b) {
    return a > b ? a : b;
}

/// Base codes, with a vector of others behind them.
template <typename Bases>
std::unique_ptr<std::int16_t[]> Codes(Bases from, int size, std::int16_t behind) {
    auto codes = std::make_unique_for_overwrite<std::int16_t[]>(static_cast<std::size_t>(size) + kCells);
    for (int k = 0; k < size; ++k) codes[k] = alphabet[*from++];
    std::fill_n(codes.get() + size, kCells, behind);
    return codes;
}

}  // namespace

ScoreDiagonals::ScoreDiagonals(const std::string& seq_i, const std::string& seq_j)
    : seq_i_(seq_i),
      seq_j_(seq_j),
      size_i_(static_cast<int>(seq_i.size())),
      size_j_(static_cast<int>(seq_j.size())),
      // In front of a diagonal stands the border, behind it up to one vector less a cell of its own and two of zeros.
      stride_(std::min(size_i_, size_j_) + 3 * kCells),
      table_(std::make_unique_for_overwrite<std::int16_t[]>(
          static_cast<std::size_t>((std::int64_t{size_i_} + size_j_ + 2) * stride_))),
      best_(std::make_unique<std::int16_t[]>(static_cast<std::size_t>(size_i_) + 1 + kCells)) {
    Fill(Codes(seq_i.begin(), size_i_, kBehindI).get(), Codes(seq_j.rbegin(), size_j_, kBehindJ).get());
}

// Vectors pass the ends of a diagonal. Where j falls below 1 nothing matches and all neighbours are 0, so that the
// cells stay 0, as the border must be; the zeros behind serve the next two diagonals, which may reach further. Where i
// exceeds its sequence nothing matches either, so that the scores fall from those of the last i and are the best
// nowhere; no cell of the table looks there.
void ScoreDiagonals::Fill(const std::int16_t* codes_i, const std::int16_t* reverse_j) {
    const Cells gap = lintara::detail::Fill(GAP_SCORE);
    const Cells mismatch = lintara::detail::Fill(MISMATCH_SCORE);
    const Cells gain = lintara::detail::Fill(MATCH_SCORE - MISMATCH_SCORE);
    std::fill_n(table_.get(), 2 * stride_, std::int16_t{0});
    for (int d = 2; d <= size_i_ + size_j_; ++d) {
        const int lowest = Lowest(d);
        const int cells = std::min(size_i_, d - 1) - lowest + 1;
        std::int16_t* row = table_.get() + Index(d, lowest);
        const std::int16_t* left = table_.get() + Index(d - 1, lowest);
        const std::int16_t* above = left - 1;
        const std::int16_t* diagonal = table_.get() + Index(d - 2, lowest - 1);
        const std::int16_t* code_i = codes_i + lowest - 1;
        const std::int16_t* code_j = reverse_j + size_j_ - d + lowest;
        std::int16_t* best = best_.get() + lowest;
        row[-1] = 0;
        int k = 0;
        for (; k < cells; k += kCells) {
            const Cells equal = Load(code_i + k) == Load(code_j + k);
            const Cells paired = Load(diagonal + k) + ((equal & gain) + mismatch);
            const Cells gapped = Max(Load(left + k), Load(above + k)) + gap;
            const Cells score = Max(Max(paired, gapped), Cells{});
            Store(row + k, score);
            Store(best + k, Max(Load(best + k), score));
        }
        Store(row + k, Cells{});
        Store(row + k + kCells, Cells{});
    }
}

int ScoreDiagonals::Score(int i, int j) const {
    return i == 0 || j == 0 ? 0 : table_[Index(i + j, i)];
}

int ScoreDiagonals::Direction(int i, int j) const {
    const bool equal = alphabet[seq_i_[i - 1]] == alphabet[seq_j_[j - 1]];
    int score = 0;
    int direction = 0;
    get_max_score(Score(i - 1, j - 1) + (equal ? MATCH_SCORE : MISMATCH_SCORE), Score(i, j - 1) + GAP_SCORE,
                  Score(i - 1, j) + GAP_SCORE, score, direction);
    return direction;
}

void ScoreDiagonals::Best(int& i, int& j, int& score) const {
    i = size_i_;
    j = size_j_;
    score = *std::max_element(best_.get(), best_.get() + size_i_ + 1);
    if (score == 0) return;
    while (best_[i] != score) --i;
    while (Score(i, j) != score) --j;
}

}  // namespace lintara::detail
