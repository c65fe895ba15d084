#include "walk/max_walks.h"

#include "run/record_text.h"
#include "run/settings.h"
#include "walk/candidates.h"
#include "walk/collect.h"
#include "walk/drop.h"
#include "walk/position_check.h"

namespace lintara {

namespace {

/// More candidates than this are held against their estimated positions.
constexpr int kPositionCleaned = 9;
/// A selector cleans its candidates so many times.
constexpr int kCycles = 2;
/// A share of unaccepted candidates above this loses the pick.
constexpr double kDropPick = 0.9;

int Size(const std::vector<int>& accept) {
    return static_cast<int>(accept.size());
}

/// The gap's length as the position of the last read tells it.
int GapSize(const std::vector<Read>& reads, int num) {
    return num > 0 ? reads[num - 1].pos : 0;
}

/// Whether the candidates are to be held against their positions: there are many, in a gap that single reads don't
/// span.
bool WantsPositionClean(const std::vector<int>& accept, int gapsize) {
    return Size(accept) > kPositionCleaned && gapsize > ReadLen;
}

/// Where a selector goes when it has treated the disagreement with its pick.
enum class Treated {
    Repick,   ///< the candidates have changed
    Verdict,  ///< nothing is left to try
    Stop,     ///< all candidates touch the far edge
};

Treated CleanForward(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                     bool& cleaned, int threadId) {
    const int size = Size(accept);
    bool changenode = ForwardCleanAccept(start, accept, reads, matrix);
    LogText(threadId) << "After full match drop: " << accept.size() << '\n';
    if (Size(accept) != size) return Treated::Repick;

    if (!cleaned) {
        cleaned = true;
        bool clean = false;
        if (clean_accept(accept, reads, matrix, clean, threadId)) return Treated::Repick;
        LogText(threadId) << "All fully matched!\n";
    }
    if (!DropEdgeRead(start, accept, reads, matrix, static_cast<int>(reads.size()), changenode)) {
        LogText(threadId) << "No edge droped.\n";
        return Treated::Verdict;
    }
    if (!accept.empty()) return Treated::Repick;
    LogText(threadId) << "Meet the edge.\n";
    return Treated::Stop;
}

// Without the full match clean of the forward form, and with other words in the log.
Treated CleanReward(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                    int threadId) {
    const int size = Size(accept);
    bool changenode = RewardCleanAccept(end, accept, reads, matrix);
    LogText(threadId) << "After full match drop: " << accept.size() << '\n';
    if (Size(accept) != size) return Treated::Repick;

    if (!DropEdgeRead(end, accept, reads, matrix, changenode)) {
        LogText(threadId) << "No edge dropped!\n";
        return Treated::Verdict;
    }
    if (!accept.empty()) return Treated::Repick;
    LogText(threadId) << "Meet the edge!\n";
    return Treated::Stop;
}

/// Whether the pick stands in the end: few of the candidates are against it, by share or, unless there are just two, by
/// number.
bool Stands(double ratio, int size, double most_unaccepted) {
    return ratio <= 0.2 || ((size - 1) * ratio <= most_unaccepted && size != 2);
}

}  // namespace

// ---- walks ---------------------------------------------------------------------------------------------------------

void forwardmax(std::vector<int>& starts, const std::vector<Read>& reads, std::uint8_t**& matrix, std::uint16_t num,
                int pos, int /*type*/, int threadId) {
    int count = 0;
    int start = pos;
    const int gapsize = GapSize(reads, num);
    bool AcceptOne = false;
    std::vector<int> accept;
    LogText(threadId) << "start forward assembly...\n";
    while (count < num) {
        if (Vecfind(starts, start)) {
            LogText(threadId) << "node repeat!" << start << '\n';
            break;
        }
        starts.push_back(start);
        CollectRow(matrix, start, num, 1, accept);
        clean_accept(accept, matrix, threadId, max_forward(start, accept, matrix));
        if (accept.size() == 1 && !AcceptOne) {
            start = accept.front();
            AcceptOne = true;
            continue;
        }
        if (accept.size() < 2) break;
        if (WantsPositionClean(accept, gapsize)) PosCleanAccept(start, accept, reads, matrix, threadId);
        start = get_last_max(start, accept, reads, matrix, threadId);
        if (accept.size() != 1) AcceptOne = false;
        if (start == -1) break;
        ++count;
    }
    LogText(threadId) << "Forward from " << pos << " vector get finished! " << starts.size() << '\n';
}

void rewardmax(std::vector<int>& ends, const std::vector<Read>& reads, std::uint8_t**& matrix, std::uint16_t num,
               int pos, int /*type*/, int threadId) {
    int count = 0;
    int end = pos;
    const int gapsize = GapSize(reads, num);
    bool AcceptOne = false;
    std::vector<int> accept;
    LogText(threadId) << "start max reward assembly...\n";
    while (count < num) {
        // A read met twice goes without a word here.
        if (Vecfind(ends, end)) break;
        ends.push_back(end);
        CollectColumn(matrix, end, num, 1, accept);
        clean_accept(accept, matrix, threadId, max_reward(end, accept, matrix));
        // Ahead of the single candidate on purpose: what the positions leave may be single.
        if (WantsPositionClean(accept, gapsize)) PosCleanAccept(accept, end, reads, matrix, threadId);
        if (accept.size() == 1 && !AcceptOne) {
            end = accept.front();
            AcceptOne = true;
            continue;
        }
        if (accept.size() < 2) break;
        end = get_first_max(end, accept, reads, matrix, threadId);
        if (accept.size() != 1) AcceptOne = false;
        if (end == -1) break;
        ++count;
    }
    LogText(threadId) << "Reward from " << pos << " vector get finished!" << ends.size() << '\n';
}

// ---- selectors -----------------------------------------------------------------------------------------------------

int get_last_max(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                 int threadId) {
    if (accept.size() < 2) return -1;
    int last = max_forward(start, accept, matrix);
    if (last == -1) return -1;
    int cycle_time = 0;
    bool cleaned = false;
    double ratio = 1.0;
    while (PassMaxForward(start, last, accept, reads, matrix, threadId, ratio)) {
        if (ratio > kDropPick) {
            drop(last, accept);
        } else {
            if (++cycle_time > kCycles) break;
            const Treated treated = CleanForward(start, accept, reads, matrix, cleaned, threadId);
            if (treated == Treated::Stop) return -1;
            if (treated == Treated::Verdict) break;
        }
        if (accept.empty()) return -1;
        if (accept.size() == 1) return accept.front();
        last = max_forward(start, accept, matrix);
        if (last == -1) return -1;
    }
    LogText(threadId) << "get last: " << last << " with accept size: " << accept.size() << "\tratio: " << ratio << '\n';
    return Stands(ratio, Size(accept), 1.0) ? last : -1;
}

int get_first_max(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                  int threadId) {
    int first = max_reward(end, accept, matrix);
    if (first == -1) return -1;
    int cycle_time = 0;
    double ratio = 1.0;
    while (PassMaxReward(end, first, accept, reads, matrix, threadId, ratio)) {
        if (ratio > kDropPick) {
            drop(first, accept);
        } else {
            if (++cycle_time > kCycles) break;
            const Treated treated = CleanReward(end, accept, reads, matrix, threadId);
            if (treated == Treated::Stop) return -1;
            if (treated == Treated::Verdict) break;
        }
        // A single candidate left is not taken at once, unlike in the forward form: it goes through the check.
        first = max_reward(end, accept, matrix);
        if (first == -1) return -1;
    }
    LogText(threadId) << "get first: " << first << " with accept size: " << accept.size() << "\tratio: " << ratio
                      << '\n';
    return Stands(ratio, Size(accept), 1.1) ? first : -1;
}

int get_last_max(int start, std::vector<int>& accept, std::uint8_t**& matrix) {
    if (accept.size() < 2) return -1;
    int last = max_forward(start, accept, matrix);
    while (!check_max_forward(start, last, accept, matrix)) {
        drop(last, accept);
        if (accept.size() < 2) return -1;
        last = max_forward(start, accept, matrix);
        if (last == -1) return -1;
    }
    return last;
}

int get_first_max(int end, std::vector<int>& accept, std::uint8_t**& matrix) {
    int first = max_reward(end, accept, matrix);
    while (!check_max_reward(end, first, accept, matrix)) {
        drop(first, accept);
        if (accept.size() == 1) return accept.front();
        if (accept.size() < 2) return -1;
        first = max_reward(end, accept, matrix);
        if (first == -1) return -1;
    }
    return first;
}

}  // namespace lintara
