#include "walk/position_check.h"

#include <algorithm>
#include <string>

#include "align/overlap.h"
#include "align/search.h"
#include "kmer/open_matrix.h"
#include "run/record_text.h"
#include "run/settings.h"

namespace lintara {

namespace {

/// Exact-search method and match ratio of the search for links that the matrix missed.
constexpr int kSearchMethod = 1;
constexpr double kExact = 1.0;

int Size(const std::vector<int>& accept) {
    return static_cast<int>(accept.size());
}
int Length(const Read& read) {
    return static_cast<int>(read.seq.size());
}

/// Positions are compared in 64 bits, since a gap file may give a read any int as its position.
bool FitsPosition(std::int64_t pos, const Read& pick) {
    return std::int64_t{pick.pos} + ReadLen / 2 > pos && std::int64_t{pick.pos} - ReadLen / 2 < pos;
}

/// Whether the link of a candidate with the pick, two reads of the same length, contradicts their overlaps with the
/// read the walk stands on. Without a link, or with a candidate that reaches further than the pick, there is nothing to
/// contradict.
bool OffsetsDisagree(int length, int pick_overlap, int overlap, int link) {
    return overlap >= pick_overlap && link != 0 && link != length + pick_overlap - overlap;
}

/// The candidates that don't agree with the pick.
struct Unaccepted {
    int un_accept_num = 0;
    bool longread = false;  ///< one of them is longer than ReadLen

    void Add(const Read& read) {
        ++un_accept_num;
        if (Length(read) > ReadLen) longread = true;
    }
};

double LogUnaccepted(int un_accept_num, int total_num, int threadId) {
    const double ratio = static_cast<double>(un_accept_num) / total_num;
    LogText(threadId) << "un accept num: " << un_accept_num << "\tratio: " << RatioOf{un_accept_num, total_num} << '\n';
    return ratio;
}

/// Gathers the candidates other than the pick of which `unaccepted` is true.
template <typename Test>
Unaccepted Gather(const std::vector<int>& accept, int pick, const std::vector<Read>& reads, Test unaccepted) {
    Unaccepted found;
    for (int a : accept) {
        if (a != pick && unaccepted(a)) found.Add(reads[a]);
    }
    return found;
}

/// What the witnesses say of a stretch that the candidate a has in common with the pick: the candidate is against the
/// pick when one of them holds the stretch, or when there is none. `witness` tells whether a read is one.
template <typename Test>
bool WitnessesAgainstPick(const std::string& over_seq, const std::vector<int>& accept, const std::vector<Read>& reads,
                          Test witness) {
    // Only a cell longer than its read leaves no stretch; nobody then speaks for the pick.
    if (over_seq.empty()) return true;
    bool check = false;
    for (int b : accept) {
        if (!witness(b)) continue;
        check = true;
        if (string_match(over_seq, reads[b].seq, kSearchMethod) >= 0) return true;
    }
    return !check;
}

// ---- one candidate against a longest step --------------------------------------------------------------------------

bool UnacceptedByMinForward(int start, int last, int a, const std::vector<int>& accept, const std::vector<Read>& reads,
                            std::uint8_t**& matrix) {
    const std::string& now_seq = reads[last].seq;
    const std::string& seq = reads[a].seq;
    const int length = Length(reads[a]);
    const int over1 = Cell(matrix, start, last);
    const int over2 = Cell(matrix, start, a);
    const bool same_length = seq.size() == now_seq.size();
    if (same_length && OffsetsDisagree(length, over1, over2, Cell(matrix, a, last))) return true;
    if (Cell(matrix, a, last) != 0 || Cell(matrix, last, a) != 0) return false;

    int before_len = -1;
    if (now_seq.size() > seq.size()) {
        return overlap_before_len(seq, now_seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (now_seq.size() < seq.size()) {
        return overlap_after_len(seq, now_seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (GetMatchRatio(now_seq, seq, length) == 1.0) return false;
    if (over2 < over1) return true;
    const std::string over_seq = seq.substr(std::min(over2 - over1, length));
    const int over_length = static_cast<int>(over_seq.size());
    return WitnessesAgainstPick(over_seq, accept, reads, [&](int b) {
        return Cell(matrix, a, b) >= over_length || Cell(matrix, b, a) >= over2 + over_length;
    });
}

bool UnacceptedByMinReward(int end, int first, int a, const std::vector<int>& accept, const std::vector<Read>& reads,
                           std::uint8_t**& matrix) {
    const std::string& now_seq = reads[first].seq;
    const std::string& seq = reads[a].seq;
    const int length = Length(reads[a]);
    const int over1 = Cell(matrix, first, end);
    const int over2 = Cell(matrix, a, end);
    const bool same_length = seq.size() == now_seq.size();
    if (same_length && OffsetsDisagree(length, over1, over2, Cell(matrix, first, a))) return true;
    if (Cell(matrix, a, first) != 0 || Cell(matrix, first, a) != 0) return false;

    int before_len = -1;
    if (now_seq.size() > seq.size()) {
        return overlap_after_len(now_seq, seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (now_seq.size() < seq.size()) {
        return overlap_before_len(now_seq, seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (now_seq == seq) return false;
    if (over2 < over1) return true;
    const std::string over_seq = seq.substr(0, std::max(length - over2 + over1, 0));
    const int over_length = static_cast<int>(over_seq.size());
    return WitnessesAgainstPick(over_seq, accept, reads, [&](int b) {
        return Cell(matrix, b, a) >= over_length || Cell(matrix, a, b) >= over2 + over_length;
    });
}

// ---- one candidate against a shortest step -------------------------------------------------------------------------

bool UnacceptedByMaxForward(int last, int a, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::string& now_seq = reads[last].seq;
    const std::string& seq = reads[a].seq;
    if (Cell(matrix, a, last) != 0) return GetMatchRatio(seq, now_seq, Cell(matrix, a, last)) < 1.0;
    if (Cell(matrix, last, a) != 0) return GetMatchRatio(now_seq, seq, Cell(matrix, last, a)) < 1.0;

    int before_len = -1;
    if (now_seq.size() > seq.size()) {
        return overlap_after_len(now_seq, seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (now_seq.size() < seq.size()) {
        return overlap_before_len(now_seq, seq, kSearchMethod, before_len, kExact) <= 0;
    }
    // Unlike the reward form, not even an equal read is accepted.
    return true;
}

bool UnacceptedByMaxReward(int first, int a, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::string& now_seq = reads[first].seq;
    const std::string& seq = reads[a].seq;
    if (Cell(matrix, first, a) != 0) return GetMatchRatio(now_seq, seq, Cell(matrix, first, a)) < 1.0;
    if (Cell(matrix, a, first) != 0) return GetMatchRatio(seq, now_seq, Cell(matrix, a, first)) < 1.0;

    int before_len = -1;
    if (now_seq.size() > seq.size()) {
        return overlap_before_len(seq, now_seq, kSearchMethod, before_len, kExact) <= 0;
    }
    if (now_seq.size() < seq.size()) {
        return overlap_after_len(seq, now_seq, kSearchMethod, before_len, kExact) <= 0;
    }
    return now_seq != seq;
}

/// The verdict on a shortest step, for both directions.
bool MaxPickFails(const Unaccepted& unaccepted, int total_num, double& ratio) {
    const int size = total_num + 1;
    if (unaccepted.un_accept_num == 0 && total_num >= 3) {
        ratio = 0;
        return false;
    }
    if (unaccepted.un_accept_num == 1 && unaccepted.longread && size > 2) {
        ratio = 0;
        return false;
    }
    if (ratio == 1.0 && size == 2) return false;
    return unaccepted.un_accept_num > 0;
}

// ---- exact overlaps ------------------------------------------------------------------------------------------------

/// Whether the last len bases of left are the first len of right; a read shorter than len takes part as a whole.
bool SameOverlap(const std::string& left, const std::string& right, int len) {
    const std::size_t tail = std::min(left.size(), static_cast<std::size_t>(len));
    const std::size_t head = std::min(right.size(), static_cast<std::size_t>(len));
    return left.compare(left.size() - tail, tail, right, 0, head) == 0;
}

template <typename Same>
bool KeepSame(std::vector<int>& accept, Same same) {
    const int size = Size(accept);
    std::erase_if(accept, [&](int a) { return !same(a); });
    return accept.empty() && size > 1;
}

}  // namespace

// ---- estimated positions -------------------------------------------------------------------------------------------

bool ForwardPosCheck(int start, int last, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::int64_t pos = std::int64_t{reads[start].pos} + Length(reads[start]) - Cell(matrix, start, last);
    return FitsPosition(pos, reads[last]);
}

bool RewardPosCheck(int end, int first, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::int64_t pos = std::int64_t{reads[end].pos} + Cell(matrix, first, end) - Length(reads[first]);
    return FitsPosition(pos, reads[first]);
}

// ---- breaks --------------------------------------------------------------------------------------------------------

bool IsForwardBreak(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId) {
    const int total_num = Size(accept) - 1;
    if (start < 0 || last < 0 || total_num < 1) return true;
    const int min_overlap = Cell(matrix, start, last);
    const int length = Length(reads[last]);
    int un_accept_num = 0;
    for (int a : accept) {
        if (a == last) continue;
        if (Cell(matrix, a, last) < min_overlap && Cell(matrix, last, a) < min_overlap) ++un_accept_num;
        if (Length(reads[a]) == length &&
            OffsetsDisagree(length, min_overlap, Cell(matrix, start, a), Cell(matrix, a, last))) {
            ++un_accept_num;
        }
    }
    LogUnaccepted(un_accept_num, total_num, threadId);
    return un_accept_num > 0;
}

bool IsRewardBreak(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId) {
    const int total_num = Size(accept) - 1;
    if (end < 0 || first < 0 || total_num < 1) return true;
    const int min_overlap = Cell(matrix, first, end);
    const int length = Length(reads[first]);
    int un_accept_num = 0;
    for (int a : accept) {
        if (a == first) continue;
        if (Cell(matrix, first, a) < min_overlap && Cell(matrix, a, first) < min_overlap) ++un_accept_num;
        if (Length(reads[a]) == length &&
            OffsetsDisagree(length, min_overlap, Cell(matrix, a, end), Cell(matrix, first, a))) {
            ++un_accept_num;
        }
    }
    LogUnaccepted(un_accept_num, total_num, threadId);
    return un_accept_num > 0;
}

// ---- verdicts on a longest step ------------------------------------------------------------------------------------

bool PassMinForward(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId, double& ratio) {
    ratio = 1.0;
    const int total_num = Size(accept) - 1;
    if (start < 0 || last < 0 || total_num < 1) return false;
    const Unaccepted unaccepted = Gather(
        accept, last, reads, [&](int a) { return UnacceptedByMinForward(start, last, a, accept, reads, matrix); });
    ratio = LogUnaccepted(unaccepted.un_accept_num, total_num, threadId);

    if (ratio == 1.0 && accept.size() == 2) return false;
    if (unaccepted.un_accept_num == 0 || (unaccepted.un_accept_num == 1 && unaccepted.longread)) {
        ratio = 0;
        return false;
    }
    if (ratio > 0.9) {
        LogText(threadId) << "try another node!\n";
        return true;
    }
    if (ratio > 0.1) {
        LogText(threadId) << "try drop read!\n";
        return true;
    }
    if (ratio < 0.1 && accept.size() > 15) {
        LogText(threadId) << "Accept the unsupport!\n";
        return false;
    }
    return true;
}

// Stricter than the forward form on purpose: no share is small enough to be let through, and the single long read needs
// a third candidate beside it.
bool PassMinReward(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId, double& ratio) {
    ratio = 1.0;
    const int total_num = Size(accept) - 1;
    if (end < 0 || first < 0 || total_num < 1) return false;
    const Unaccepted unaccepted = Gather(
        accept, first, reads, [&](int a) { return UnacceptedByMinReward(end, first, a, accept, reads, matrix); });
    ratio = LogUnaccepted(unaccepted.un_accept_num, total_num, threadId);

    if (unaccepted.un_accept_num == 0 && total_num >= 3) return false;
    if (unaccepted.un_accept_num == 1 && unaccepted.longread && accept.size() > 2) {
        ratio = 0;
        return false;
    }
    if (ratio == 1.0 && accept.size() == 2) return false;
    if (ratio > 0.9) {
        LogText(threadId) << "try another node!\n";
        return true;
    }
    if (ratio > 0) {
        LogText(threadId) << "drop read!\n";
        return true;
    }
    return false;
}

// ---- verdicts on a shortest step -----------------------------------------------------------------------------------

bool PassMaxForward(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId, double& ratio) {
    ratio = 1.0;
    const int total_num = Size(accept) - 1;
    if (start < 0 || last < 0 || total_num < 1) return false;
    const Unaccepted unaccepted =
        Gather(accept, last, reads, [&](int a) { return UnacceptedByMaxForward(last, a, reads, matrix); });
    ratio = LogUnaccepted(unaccepted.un_accept_num, total_num, threadId);
    return MaxPickFails(unaccepted, total_num, ratio);
}

bool PassMaxReward(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId, double& ratio) {
    ratio = 1.0;
    const int total_num = Size(accept) - 1;
    if (end < 0 || first < 0 || total_num < 1) {
        LogText(threadId) << "Error\n";
        return false;
    }
    const Unaccepted unaccepted =
        Gather(accept, first, reads, [&](int a) { return UnacceptedByMaxReward(first, a, reads, matrix); });
    ratio = LogUnaccepted(unaccepted.un_accept_num, total_num, threadId);
    return MaxPickFails(unaccepted, total_num, ratio);
}

// ---- exact overlaps ------------------------------------------------------------------------------------------------

bool ForwardCleanAccept(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    return KeepSame(accept, [&](int a) { return SameOverlap(reads[start].seq, reads[a].seq, Cell(matrix, start, a)); });
}

bool RewardCleanAccept(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    return KeepSame(accept, [&](int a) { return SameOverlap(reads[a].seq, reads[end].seq, Cell(matrix, a, end)); });
}

bool RatioCheck(int end, int first, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    return Cell(matrix, first, end) < Length(reads[first]) / 2.0;
}

}  // namespace lintara
