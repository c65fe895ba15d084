#include "walk/candidates.h"

#include <algorithm>

#include "align/search.h"
#include "kmer/open_matrix.h"
#include "run/record_text.h"
#include "run/settings.h"

namespace lintara {

namespace {

/// From this many candidates on a clean may remove one.
constexpr int kSmallestCleaned = 3;
/// The longest read of the first try of creat_last() and creat_first(), bases; on purpose not ReadLen.
constexpr int kShortReadLimit = 100;

int Size(const std::vector<int>& accept) {
    return static_cast<int>(accept.size());
}
int Length(const Read& read) {
    return static_cast<int>(read.seq.size());
}

/// Positions are compared in 64 bits, since a gap file may give a read any int as its position.
std::int64_t Position(const Read& read) {
    return read.pos;
}

// ---- picks ---------------------------------------------------------------------------------------------------------

/// The first candidate of the smallest overlap above Min_overlap. Both arguments are functions of a candidate: its
/// overlap with the read the walk stands on, and whether it may be picked.
template <typename Overlap, typename Allowed>
int SmallestOverlap(const std::vector<int>& accept, Overlap overlap, Allowed allowed) {
    constexpr int no_overlap = 100000;
    int min_overlap = no_overlap;
    int min_id = 0;
    for (int a : accept) {
        if (overlap(a) > Min_overlap && overlap(a) < min_overlap && allowed(a)) {
            min_overlap = overlap(a);
            min_id = a;
        }
    }
    return min_overlap == no_overlap ? -1 : min_id;
}

template <typename Overlap>
int LargestOverlap(const std::vector<int>& accept, Overlap overlap) {
    int max_overlap = 0;
    int max_id = 0;
    for (int a : accept) {
        if (overlap(a) > max_overlap) {
            max_overlap = overlap(a);
            max_id = a;
        }
    }
    return max_overlap == 0 ? -1 : max_id;
}

/// Settles the sets that leave no choice: true when last is the only candidate or -1.
bool NoChoice(const std::vector<int>& accept, int& last) {
    if (accept.size() > 1) return false;
    last = accept.empty() ? -1 : accept.front();
    return true;
}

/// Whether accept_num of total_num is enough agreement.
bool EnoughAgree(int accept_num, int total_num) {
    if (accept_num >= 7 && static_cast<double>(accept_num) / total_num >= ECUTOFF) return true;
    if (total_num > 2 && total_num - accept_num < 2) return true;
    return total_num == 2 && accept_num == 2;
}

template <typename Agrees>
int CountOthers(const std::vector<int>& accept, int pick, Agrees agrees) {
    return static_cast<int>(std::count_if(accept.begin(), accept.end(), [&](int a) { return a != pick && agrees(a); }));
}

// ---- cleaning ------------------------------------------------------------------------------------------------------

/// Removes, in order, each candidate that is linked to none of those still there.
/// @param likely  the candidate to ask for first, or -1
template <typename Linked>
void RemoveUnlinked(std::vector<int>& accept, int likely, Linked linked) {
    // A candidate that is asked for and has gone meanwhile is linked to none: that is why it has gone.
    int second = -1;  // the link of the last one without a link to the first
    int i = 0;
    while (i < Size(accept) && Size(accept) >= kSmallestCleaned) {
        const int a = accept[i];
        if ((likely >= 0 && linked(a, likely)) || (second >= 0 && linked(a, second))) {
            ++i;
            continue;
        }
        const auto link = std::find_if(accept.begin(), accept.end(), [&](int b) { return linked(a, b); });
        if (link == accept.end()) {
            accept.erase(accept.begin() + i);
        } else {
            second = *link;
            ++i;
        }
    }
}

void LogLeftByPosition(const std::vector<int>& accept, int threadId) {
    LogText(threadId) << "After pos clean, left accept: " << accept.size() << '\n';
}

}  // namespace

// ---- picks ---------------------------------------------------------------------------------------------------------

int min_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix) {
    return SmallestOverlap(
        accept, [&](int a) { return Cell(matrix, start, a); }, [](int) { return true; });
}

int min_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix, const std::vector<Read>& reads,
                int limit) {
    return SmallestOverlap(
        accept, [&](int a) { return Cell(matrix, start, a); }, [&](int a) { return Length(reads[a]) <= limit; });
}

int min_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix) {
    return SmallestOverlap(
        accept, [&](int a) { return Cell(matrix, a, end); }, [](int) { return true; });
}

int min_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix, const std::vector<Read>& reads,
               int limit) {
    return SmallestOverlap(
        accept, [&](int a) { return Cell(matrix, a, end); }, [&](int a) { return Length(reads[a]) <= limit; });
}

int max_forward(int start, const std::vector<int>& accept, std::uint8_t**& matrix) {
    return LargestOverlap(accept, [&](int a) { return Cell(matrix, start, a); });
}

int max_reward(int end, const std::vector<int>& accept, std::uint8_t**& matrix) {
    return LargestOverlap(accept, [&](int a) { return Cell(matrix, a, end); });
}

// ---- agreement around a pick ---------------------------------------------------------------------------------------

bool check_min_forward(int start, int last, const std::vector<int>& accept, std::uint8_t**& matrix) {
    const int total_num = Size(accept) - 1;
    if (start < 0 || last < 0 || total_num <= 0) return false;
    const int min_overlap = Cell(matrix, start, last);
    return EnoughAgree(CountOthers(accept, last, [&](int a) { return Cell(matrix, a, last) >= min_overlap; }),
                       total_num);
}

bool check_min_reward(int end, int first, const std::vector<int>& accept, std::uint8_t**& matrix) {
    const int total_num = Size(accept) - 1;
    if (end < 0 || first < 0 || total_num <= 0) return false;
    const int min_overlap = Cell(matrix, first, end);
    return EnoughAgree(CountOthers(accept, first, [&](int a) { return Cell(matrix, first, a) >= min_overlap; }),
                       total_num);
}

// The max forms measure against all candidates, the pick included, where the min forms leave it out.

bool check_max_forward(int start, int last, const std::vector<int>& accept, std::uint8_t**& matrix) {
    if (start < 0 || last < 0) return false;
    const int accept_num =
        CountOthers(accept, last, [&](int a) { return Cell(matrix, last, a) >= Cell(matrix, start, a); });
    return EnoughAgree(accept_num, Size(accept));
}

bool check_max_reward(int end, int first, const std::vector<int>& accept, std::uint8_t**& matrix) {
    if (end < 0 || first < 0) return false;
    const int accept_num =
        CountOthers(accept, first, [&](int a) { return Cell(matrix, a, first) >= Cell(matrix, a, end); });
    return EnoughAgree(accept_num, Size(accept));
}

// ---- picks by the place of the walk --------------------------------------------------------------------------------

bool creat_last(int start, const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                int& last) {
    if (NoChoice(accept, last)) return false;
    // Next to the edge long reads are as good as short ones; anywhere else they come second.
    const bool at_edge = start == 0;
    last = at_edge ? -1 : min_forward(start, accept, matrix, reads, kShortReadLimit);
    if (last < 0) last = min_forward(start, accept, matrix);
    return last >= 0;
}

bool creat_first(int end, const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                 int& first) {
    if (NoChoice(accept, first)) return false;
    const bool at_edge = end == static_cast<int>(reads.size()) - 1;
    first = at_edge ? -1 : min_reward(end, accept, matrix, reads, kShortReadLimit);
    if (first < 0) first = min_reward(end, accept, matrix);
    return first >= 0;
}

bool creat_max_last(int start, const std::vector<int>& accept, std::uint8_t**& matrix, int& last) {
    if (NoChoice(accept, last)) return false;
    last = max_forward(start, accept, matrix);
    return last >= 0;
}

bool creat_max_first(int end, const std::vector<int>& accept, const std::vector<Read>& /*reads*/,
                     std::uint8_t**& matrix, int& first) {
    if (NoChoice(accept, first)) return false;
    first = max_reward(end, accept, matrix);
    return first >= 0;
}

// ---- the vectors ---------------------------------------------------------------------------------------------------

void drop(int last, std::vector<int>& accept) {
    const auto found = std::find(accept.begin(), accept.end(), last);
    if (found != accept.end()) accept.erase(found);
}

bool Find(int value, const std::vector<int>& accept) {
    return std::find(accept.begin(), accept.end(), value) != accept.end();
}

bool Vecfind(const std::vector<int>& starts, int start) {
    return Find(start, starts);
}

// ---- cleaning ------------------------------------------------------------------------------------------------------

void clean_accept(std::vector<int>& accept, std::uint8_t**& matrix, int threadId, int likely) {
    LogText(threadId) << "Before clean: " << accept.size() << '\n';
    RemoveUnlinked(accept, likely, [&](int a, int b) { return Cell(matrix, a, b) != 0 || Cell(matrix, b, a) != 0; });
    LogText(threadId) << "after clean: " << accept.size() << '\n';
}

bool clean_accept(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, bool& clean,
                  int threadId) {
    if (accept.empty()) return false;
    const int num = Size(accept);
    LogText(threadId) << "Before full match clean: " << num << '\n';
    RemoveUnlinked(accept, -1, [&](int a, int b) {
        double ratio = 0;
        if (Cell(matrix, a, b) != 0) ratio = GetMatchRatio(reads[a].seq, reads[b].seq, Cell(matrix, a, b));
        if (Cell(matrix, b, a) != 0) ratio = GetMatchRatio(reads[b].seq, reads[a].seq, Cell(matrix, b, a));
        return ratio == 1.0;
    });
    LogText(threadId) << "Accept left ratio: " << RatioOf{Size(accept), num}
                      << "\taccept left num: " << accept.size() << "\ttotal num: " << num << '\n';
    clean = false;
    return Size(accept) != num;
}

void PosCleanAccept(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                    int threadId) {
    const std::int64_t pos = Position(reads[start]);
    const int len = Length(reads[start]);
    std::erase_if(accept, [&](int a) {
        return Position(reads[a]) < pos - ReadLen / 3 ||
               Position(reads[a]) > pos + len - Cell(matrix, start, a) + ReadLen / 2;
    });
    LogLeftByPosition(accept, threadId);
}

void PosCleanAccept(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix,
                    int threadId) {
    const std::int64_t pos = Position(reads[end]);
    std::erase_if(accept, [&](int a) {
        return Position(reads[a]) > pos + ReadLen / 3 ||
               Position(reads[a]) < pos - Length(reads[a]) + Cell(matrix, a, end) - ReadLen / 2;
    });
    LogLeftByPosition(accept, threadId);
}

}  // namespace lintara
