#include <algorithm>
#include <cstdint>

#include "align/edge_align.h"
#include "align/score_diagonals.h"

namespace lintara {

namespace {

const std::int64_t kFewestCells = 10;
const std::int64_t kMostCells = 4000000;

enum Direction { kDiagonal = 0, kLeft = 1, kAbove = 2 };

// A loop, since the way back may be as long as both sequences together, too deep for a recursion on a worker's stack.
template <typename Score, typename DirectionOf>
void FollowBack(Score score, DirectionOf direction_of, const std::string& seq_i, const std::string& seq_j, int pos_i,
                int pos_j, std::string& align_i, std::string& align_j, int& align_i_start, int& align_j_start) {
    // Cells of score 0 also line the table, so that no position falls below its first column or row.
    while (score(pos_i, pos_j) != 0) {
        align_i_start = pos_i;
        align_j_start = pos_j;
        const int direction = direction_of(pos_i, pos_j);
        align_i.push_back(direction == kLeft ? '-' : seq_i[pos_i - 1]);
        align_j.push_back(direction == kAbove ? '-' : seq_j[pos_j - 1]);
        if (direction != kLeft) --pos_i;
        if (direction != kAbove) --pos_j;
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
    const detail::ScoreDiagonals table(seq_i, seq_j);
    table.Best(align_i_end, align_j_end, max_score);
    align_i.clear();
    align_j.clear();
    FollowBack([&table](int i, int j) { return table.Score(i, j); },
               [&table](int i, int j) { return table.Direction(i, j); }, seq_i, seq_j, align_i_end, align_j_end,
               align_i, align_j, align_i_start, align_j_start);
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

void trace_back(const int* DPscore, const int* DPdirect, const std::string& seq_i, const std::string& seq_j, int pos_i,
                int pos_j, int j_size, std::string& align_i, std::string& align_j, int& align_i_start,
                int& align_j_start) {
    FollowBack([=](int i, int j) { return DPscore[i * j_size + j]; },
               [=](int i, int j) { return DPdirect[i * j_size + j]; }, seq_i, seq_j, pos_i, pos_j, align_i, align_j,
               align_i_start, align_j_start);
}

}  // namespace lintara
