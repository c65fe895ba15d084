#include "walk/drop.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "align/overlap.h"
#include "align/search.h"
#include "kmer/open_matrix.h"
#include "run/settings.h"

namespace lintara {

namespace {

/// Exact-search method and match ratio of all comparisons with a sequence.
constexpr int kSearchMethod = 1;
constexpr double kExact = 1.0;
/// So many reads of a kind, plus one, allow the other kind to be dropped.
constexpr int kEnoughOfAKind = 2;

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

template <typename Test>
bool Remove(std::vector<int>& accept, Test leaves) {
    return std::erase_if(accept, leaves) > 0;
}

// ---- reads to leave, with their perfect partners -------------------------------------------------------------------

/// Moves the candidates that are to leave to a vector of their own, from the back, and calls `gone` with each.
template <typename Test, typename Gone>
std::vector<int> MoveOut(std::vector<int>& accept, Test leaves, Gone gone) {
    std::vector<int> dropvec;
    for (int i = Size(accept) - 1; i >= 0; --i) {
        const int a = accept[i];
        if (!leaves(a)) continue;
        dropvec.push_back(a);
        accept.erase(accept.begin() + i);
        gone(a);
    }
    return dropvec;
}

/// Whether a and d are linked and agree in every base of their overlap.
bool PerfectPartners(int a, int d, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    if (Cell(matrix, a, d) != 0) return GetMatchRatio(reads[a].seq, reads[d].seq, Cell(matrix, a, d)) == 1.0;
    if (Cell(matrix, d, a) != 0) return GetMatchRatio(reads[d].seq, reads[a].seq, Cell(matrix, d, a)) == 1.0;
    return false;
}

/// Takes the candidates out that are to leave, then those with a perfect partner among them. Partners that go don't
/// take partners of their own along. `gone` is called with each read that went.
template <typename Test, typename Gone>
bool DropWithPartners(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, Test leaves,
                      Gone gone) {
    const std::vector<int> dropvec = MoveOut(accept, leaves, gone);
    const auto has_partner = [&](int a) {
        return std::any_of(dropvec.rbegin(), dropvec.rend(),
                           [&](int d) { return PerfectPartners(a, d, reads, matrix); });
    };
    MoveOut(accept, has_partner, gone);
    return !dropvec.empty();
}

template <typename Test>
bool DropWithPartners(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, Test leaves) {
    return DropWithPartners(accept, reads, matrix, leaves, [](int) {});
}

bool Overlaps(const std::string& drop_seq, const Read& read) {
    return overlap(drop_seq, read.seq, kSearchMethod, kExact) != 0;
}

// ---- cover ratio ---------------------------------------------------------------------------------------------------

/// Looks for a ratio of length to overlap with end that at least dropcut reads exceed, but not all of them.
double CoverRatio(const std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix,
                  int dropcut) {
    double ratio = 2.5;
    bool minus = false;
    while (true) {
        const auto dropnum = std::count_if(accept.begin(), accept.end(),
                                           [&](int a) { return Length(reads[a]) > Cell(matrix, a, end) * ratio; });
        // Below 0 every read is above the ratio, so that a dropcut beyond their number would never be met.
        if (dropnum < dropcut && ratio >= 0) {
            ratio -= 0.5;
            continue;
        }
        if (dropnum < Size(accept)) return ratio;
        ratio += 0.2;
        if (minus) return ratio + 0.2;
        minus = true;
    }
}

}  // namespace

// ---- reads at the far edge -----------------------------------------------------------------------------------------

bool DropEdgeRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, int num,
                  bool& /*changenode*/) {
    return DropWithPartners(
        accept, reads, matrix, [&](int a) { return Cell(matrix, a, num - 1) > Min_overlap; },
        [&](int a) {
            // The before edge is left only once, so the reads would come back at the next try.
            if (start == 0) ClearCell(matrix, start, a);
        });
}

// The reward forms never write the matrix.

bool DropEdgeRead(int /*end*/, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                  bool& /*changenode*/) {
    return DropWithPartners(accept, reads, matrix, [&](int a) { return Cell(matrix, 0, a) > Min_overlap; });
}

bool DropEdgeRead(const std::string& drop_seq, int /*end*/, std::vector<int>& accept, const std::vector<Read>& reads,
                  std::uint8_t**& matrix, bool& /*changenode*/) {
    return DropWithPartners(accept, reads, matrix, [&](int a) { return Overlaps(drop_seq, reads[a]); });
}

bool DropUnseqRead(const std::string& drop_seq, int /*end*/, std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, bool& /*changenode*/) {
    return DropWithPartners(accept, reads, matrix, [&](int a) { return !Overlaps(drop_seq, reads[a]); });
}

// ---- estimated positions -------------------------------------------------------------------------------------------

bool DropPosRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::int64_t pos = Position(reads[start]);
    const int length = Length(reads[start]);
    return Remove(accept, [&](int a) {
        return pos > Position(reads[a]) || pos + ReadLen + length - Cell(matrix, start, a) < Position(reads[a]);
    });
}

bool DropPosRead(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix) {
    const std::int64_t pos = Position(reads[end]);
    return Remove(accept, [&](int a) {
        return pos < Position(reads[a]) || pos - ReadLen - Length(reads[a]) + Cell(matrix, a, end) > Position(reads[a]);
    });
}

// ---- length and overlap --------------------------------------------------------------------------------------------

bool DropRatioRead(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix,
                   int /*dropcut*/) {
    // Here the ratio is fixed on purpose, so there is none to look for.
    return Remove(accept, [&](int a) { return Length(reads[a]) > Cell(matrix, start, a) * 2; });
}

bool DropRatioRead(std::vector<int>& accept, int end, const std::vector<Read>& reads, std::uint8_t**& matrix,
                   int dropcut) {
    const double ratio = CoverRatio(accept, end, reads, matrix, dropcut);
    return Remove(accept, [&](int a) { return Length(reads[a]) > Cell(matrix, a, end) * ratio; });
}

bool DropLongRead(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& /*matrix*/) {
    const auto is_long = [&](int a) { return Length(reads[a]) > ReadLen; };
    const auto shortnum = Size(accept) - std::count_if(accept.begin(), accept.end(), is_long);
    return shortnum > kEnoughOfAKind && Remove(accept, is_long);
}

bool DropShortRead(std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& /*matrix*/) {
    const auto is_short = [&](int a) { return Length(reads[a]) <= ReadLen; };
    const auto longnum = Size(accept) - std::count_if(accept.begin(), accept.end(), is_short);
    return longnum > kEnoughOfAKind && Remove(accept, is_short);
}

// All entries must be short, not just most: the verdict turns on a whole quotient of short entries to all.

bool AcceptShortOverCheck(int start, const std::vector<int>& accept, std::uint8_t**& matrix) {
    return Size(accept) >= 3 &&
           std::all_of(accept.begin(), accept.end(), [&](int a) { return Cell(matrix, start, a) < ReadLen / 2; });
}

bool AcceptShortOverCheck(const std::vector<int>& accept, int end, std::uint8_t**& matrix) {
    return Size(accept) >= 3 &&
           std::all_of(accept.begin(), accept.end(), [&](int a) { return Cell(matrix, a, end) < ReadLen / 2; });
}

// ---- one read ------------------------------------------------------------------------------------------------------

int GetLonger(int now, const std::vector<int>& accept, const std::vector<Read>& reads) {
    const std::string& now_seq = reads[now].seq;
    if (now_seq.empty()) {
        std::cerr << "get long error!\n";
        std::exit(-1);
    }
    for (int a : accept) {
        const std::string& seq = reads[a].seq;
        if (a == now || seq.size() < now_seq.size()) continue;
        if (string_match(now_seq, seq, kSearchMethod) >= 0 && seq.size() > now_seq.size()) return a;
    }
    return -1;
}

void ShowRewardBreak(const std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix, int end,
                     int /*threadId*/) {
    const auto overhang = [&](int a) { return Length(reads[a]) - Cell(matrix, a, end); };
    int longest = 0;
    for (int a : accept) longest = std::max(longest, overhang(a));
    std::cerr << "show break: \n";
    for (int a : accept) {
        std::cerr << std::string(longest - overhang(a), ' ') << reads[a].seq << "\tid: " << a << '\n';
    }
}

}  // namespace lintara
