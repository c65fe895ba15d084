#include <algorithm>
#include <cstdint>
#include <memory>

#include "align/edge_align.h"
#include "run/settings.h"

namespace lintara {

namespace {

const int kMatch = 3;
const int kMismatch = -5;
const int gapPenalty = -5;
const std::int64_t kFewestCells = 10;
const std::int64_t kMostCells = 4000000;

enum Direction { kDiagonal = 0, kLeft = 1, kAbove = 2 };

// By base code; letters other than ACGT share code 4 and so match each other.
struct ScoreMatrix {
    int score[5][5];
};

constexpr ScoreMatrix MakeScoreMatrix() {
    ScoreMatrix matrix{};
    for (int i = 0; i < 5; ++i) {
        for (int j = 0; j < 5; ++j) matrix.score[i][j] = i == j ? kMatch : kMismatch;
    }
    return matrix;
}

constexpr ScoreMatrix scoreMatrix = MakeScoreMatrix();

void FillTables(const std::string& seq_i, const std::string& seq_j, int* DPscore, int* DPdirect) {
    const int i_size = static_cast<int>(seq_i.size()) + 1;
    const int j_size = static_cast<int>(seq_j.size()) + 1;
    for (int j = 0; j < j_size; ++j) {
        DPscore[j] = 0;
        DPdirect[j] = kLeft;
    }
    DPdirect[0] = kDiagonal;
    for (int i = 1; i < i_size; ++i) {
        int* row = DPscore + i * j_size;
        const int* above = row - j_size;
        int* direct = DPdirect + i * j_size;
        row[0] = 0;
        direct[0] = kAbove;
        const int* score_of = scoreMatrix.score[alphabet[seq_i[i - 1]]];
        for (int j = 1; j < j_size; ++j) {
            const int subsScore = above[j - 1] + score_of[alphabet[seq_j[j - 1]]];
            get_max_score(subsScore, row[j - 1] + gapPenalty, above[j] + gapPenalty, row[j], direct[j]);
        }
    }
}

}  // namespace

void local_aligning(const std::string& seq_i, const std::string& seq_j, std::string& align_i, std::string& align_j,
                    int& max_score, int& align_i_start, int& align_j_start, int& align_i_end, int& align_j_end) {
    const std::int64_t array_size =
        static_cast<std::int64_t>(seq_i.size() + 1) * static_cast<std::int64_t>(seq_j.size() + 1);
    if (array_size < kFewestCells || array_size > kMostCells) {
        align_i_start = 0;
        align_j_start = 0;
        return;
    }
    const auto DPscore = std::make_unique_for_overwrite<int[]>(array_size);
    const auto DPdirect = std::make_unique_for_overwrite<int[]>(array_size);
    FillTables(seq_i, seq_j, DPscore.get(), DPdirect.get());

    const int j_size = static_cast<int>(seq_j.size()) + 1;
    align_i_end = static_cast<int>(seq_i.size());
    align_j_end = static_cast<int>(seq_j.size());
    locate_max_score(DPscore.get(), align_i_end, align_j_end, j_size, max_score);
    align_i.clear();
    align_j.clear();
    trace_back(DPscore.get(), DPdirect.get(), seq_i, seq_j, align_i_end, align_j_end, j_size, align_i, align_j,
               align_i_start, align_j_start);
    std::reverse(align_i.begin(), align_i.end());
    std::reverse(align_j.begin(), align_j.end());
}

void get_max_score(int sub_score, int gapi_score, int gapj_score, int& max_score, int& direction) {
    if (sub_score >= gapi_score && sub_score >= gapj_score) {
        max_score = sub_score;
        direction = kDiagonal;
    } else if (gapi_score > sub_score && gapi_score >= gapj_score) {
        max_score = gapi_score;
        direction = kLeft;
    } else {
        max_score = gapj_score;
        direction = kAbove;
    }
    if (max_score < 0) max_score = 0;
}

void locate_max_score(const int* DPscore, int& pos_i, int& pos_j, int j_size, int& final_score) {
    const int last_i = pos_i;
    const int last_j = pos_j;
    final_score = DPscore[last_i * j_size + last_j];
    for (int i = last_i; i >= 1; --i) {
        for (int j = last_j; j >= 1; --j) {
            if (DPscore[i * j_size + j] <= final_score) continue;
            final_score = DPscore[i * j_size + j];
            pos_i = i;
            pos_j = j;
        }
    }
}

// A loop, since the way back may be as long as both sequences together, too deep for a recursion on a worker's stack.
void trace_back(const int* DPscore, const int* DPdirect, const std::string& seq_i, const std::string& seq_j, int pos_i,
                int pos_j, int j_size, std::string& align_i, std::string& align_j, int& align_i_start,
                int& align_j_start) {
    // Cells of score 0 also line the table, so that no position falls below its first column or row.
    while (DPscore[pos_i * j_size + pos_j] != 0) {
        align_i_start = pos_i;
        align_j_start = pos_j;
        const int direction = DPdirect[pos_i * j_size + pos_j];
        align_i.push_back(direction == kLeft ? '-' : seq_i[pos_i - 1]);
        align_j.push_back(direction == kAbove ? '-' : seq_j[pos_j - 1]);
        if (direction != kLeft) --pos_i;
        if (direction != kAbove) --pos_j;
    }
}

}  // namespace lintara
