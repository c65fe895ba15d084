#include "align/overlap.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "align/edge_seeds.h"
#include "align/placement.h"
#include "align/search.h"
#include "run/settings.h"

namespace lintara {

using detail::Accepted;
using detail::FindSeed;
using detail::PlanSeeds;
using detail::SeedPlan;
using detail::SignedLength;
using detail::StartAccepted;
using detail::StartInside;

namespace {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

// How a seed is found by its number: in the text of the other sequence, as here, or in the tables of EdgeSeeds.
auto SeedSearch(const std::string& from, const std::string& str, int pattlen, int method) {
    return [&from, &str, pattlen, method](int i) { return FindSeed(from, i * pattlen, pattlen, str, method); };
}

// The seeds of str1 in str2, ascending; 0 when no placement is accepted. matchnum: seeds that were found.
template <typename Find>
int SeedsOfFirst(const std::string& str1, const std::string& str2, SeedPlan seeds, Find&& find, double match_ratio,
                 int& matchnum) {
    matchnum = 0;
    for (int i = 0; i < seeds.pattnum && (i + 1) * seeds.pattlen <= Size(str1); ++i) {
        const int p = i * seeds.pattlen;
        const int pos = find(i);
        if (pos < 0) continue;
        ++matchnum;
        const int length = SignedLength(str1, p, str2, pos, p <= pos);
        if (Accepted(str1, p, str2, pos, std::abs(length), match_ratio)) return length;
    }
    return 0;
}

// The seeds of str2 in str1. A common start and end is plus here as in the twin, which makes this test a strict one.
template <typename Find>
int SeedsOfSecond(const std::string& str1, const std::string& str2, SeedPlan seeds, Find&& find, double match_ratio,
                  int& matchnum) {
    matchnum = 0;
    for (int i = 0; i < seeds.pattnum && (i + 1) * seeds.pattlen <= Size(str2); ++i) {
        const int p = i * seeds.pattlen;
        const int pos = find(i);
        if (pos < 0) continue;
        ++matchnum;
        const int length = SignedLength(str1, pos, str2, p, p >= pos);
        if (Accepted(str1, pos, str2, p, std::abs(length), match_ratio)) return length;
    }
    return 0;
}

void CheckSeedLength(int pattlen) {
    if (pattlen >= 4) return;
    std::cerr << "overlap too short or the false rate is too high!\n";
    std::exit(-1);
}

void CheckSeedLength(int pattlen, const std::string& seq) {
    if (pattlen >= 4) return;
    std::cerr << "overlap too short or the false rate is too high!\n" << seq << "\n";
    std::exit(-1);
}

template <typename FindFirst, typename FindSecond>
int OverlapBy(const std::string& str1, const std::string& str2, SeedPlan seeds, FindFirst&& first_in_second,
              FindSecond&& second_in_first, int method, double match_ratio) {
    int matchnum = 0;
    int length = SeedsOfFirst(str1, str2, seeds, first_in_second, match_ratio, matchnum);
    if (length != 0) return length;
    if (matchnum == seeds.pattnum) {
        length = StartInside(str1, str2, method, match_ratio);
        if (length != 0) return -length;
    }
    length = SeedsOfSecond(str1, str2, seeds, second_in_first, match_ratio, matchnum);
    if (length != 0) return length;
    return matchnum == seeds.pattnum ? StartInside(str2, str1, method, match_ratio) : 0;
}

}  // namespace

int overlap(const std::string& str1, const std::string& str2, int method, double match_ratio) {
    if (str1.empty() || str2.empty()) std::exit(-1);
    const SeedPlan seeds = PlanSeeds(method);
    CheckSeedLength(seeds.pattlen);
    return OverlapBy(str1, str2, seeds, SeedSearch(str1, str2, seeds.pattlen, method),
                     SeedSearch(str2, str1, seeds.pattlen, method), method, match_ratio);
}

namespace {

// Where forward_overlap() stands after its seeds.
struct ForwardSeeds {
    int result = 0;           // accepted overlap, or 0
    int matchnum = 0;         // seeds found
    bool firstmatch = false;  // seed 0 was found
    int pos = -1;             // place of the last search, found or not
};

template <typename Find>
ForwardSeeds SeedsForward(const std::string& str1, const std::string& str2, SeedPlan seeds, Find&& find,
                          double match_ratio) {
    ForwardSeeds state;
    for (int i = 0; i < seeds.pattnum && (i + 1) * seeds.pattlen <= Size(str2); ++i) {
        const int p = i * seeds.pattlen;
        state.pos = find(i);
        if (state.pos >= 0) ++state.matchnum;
        if (p > state.pos) continue;
        if (i == 0) state.firstmatch = true;
        const int len = p + Size(str1) - state.pos;
        const int n = Size(str1) - state.pos < Size(str2) - p ? len : Size(str2);
        if (!Accepted(str2, p, str1, state.pos, n, match_ratio)) continue;
        state.result = n == Size(str2) && n < len ? len : n;
        break;
    }
    return state;
}

// str2 placed at offset `place` of str1: 0 when it is turned down. When str1 goes on past str2 the result is its tail
// from `tail_from` on.
int ForwardPlaced(const std::string& str1, int place, int tail_from, const std::string& str2, double match_ratio) {
    const int n = std::min(Size(str1) - place, Size(str2));
    if (!StartAccepted(str1, place, str2, n, match_ratio)) return 0;
    const int tail = Size(str1) - tail_from;
    return n == Size(str2) && n < tail ? tail : n;
}

// find: a seed of str2 in str1.
template <typename Find>
int ForwardBy(const std::string& str1, const std::string& str2, SeedPlan seeds, Find&& find, int method,
              double match_ratio) {
    const ForwardSeeds state = SeedsForward(str1, str2, seeds, find, match_ratio);
    if (state.result != 0) return state.result;
    int pos = state.pos;
    if (state.matchnum == seeds.pattnum) {
        const int pattlen = std::min(Min_overlap, Size(str2));
        if (Size(str1) < pattlen) return 0;
        pos = FindSeed(str2, 0, pattlen, str1, method);
        const int length = pos >= 0 ? ForwardPlaced(str1, pos, pos, str2, match_ratio) : 0;
        if (length != 0) return length;
    }
    if (!state.firstmatch) return 0;
    const std::vector<int> places = PattNum(str2.substr(0, seeds.pattlen), str1);
    for (std::size_t i = 1; i < places.size(); ++i) {
        // How far str1 goes on past str2 is measured from the last search's place, not from this one.
        const int length = ForwardPlaced(str1, places[i], pos, str2, match_ratio);
        if (length != 0) return length;
    }
    return 0;
}

SeedPlan ForwardPlan() {
    return {4, Min_overlap / 4};
}

}  // namespace

int forward_overlap(const std::string& str1, const std::string& str2, int method, double match_ratio) {
    const SeedPlan seeds = ForwardPlan();
    if (str1.empty() || str2.empty() || Size(str2) < seeds.pattlen) return 0;
    if (seeds.pattlen < 4) std::exit(-1);
    return ForwardBy(str1, str2, seeds, SeedSearch(str2, str1, seeds.pattlen, method), method, match_ratio);
}

namespace {

// The seeds of a `before` that is shorter than str, in str.
template <typename Find>
int SeedsOfBefore(const std::string& before, const std::string& str, SeedPlan seeds, Find&& find, int& before_len,
                  double match_ratio) {
    for (int i = 0; i < seeds.pattnum && (i + 1) * seeds.pattlen <= Size(before); ++i) {
        const int p = i * seeds.pattlen;
        const int pos = find(i);
        if (pos <= 0) continue;
        // `before` would end behind str.
        if (Size(str) - pos < Size(before) - p) continue;
        const int n = std::min(p, pos) + Size(before) - p;
        if (!Accepted(before, p, str, pos, n, match_ratio)) continue;
        before_len = p <= pos ? pos - p : -1;
        return n;
    }
    before_len = -1;
    return 0;
}

// The same for an `after`.
template <typename Find>
int SeedsOfAfter(const std::string& str, const std::string& after, SeedPlan seeds, Find&& find, int& after_len,
                 double match_ratio) {
    for (int i = 0; i < seeds.pattnum && (i + 1) * seeds.pattlen <= Size(after); ++i) {
        const int p = i * seeds.pattlen;
        const int pos = find(i);
        if (pos <= 0) continue;
        // `after` would start before str.
        if (p > pos) continue;
        const int str_tail = Size(str) - pos;
        const int after_tail = Size(after) - p;
        const int n = p + std::min(str_tail, after_tail);
        if (!Accepted(after, p, str, pos, n, match_ratio)) continue;
        after_len = str_tail < after_tail ? -1 : str_tail - after_tail;
        return n;
    }
    after_len = -1;
    return 0;
}

// What overlap() says of a str that is no longer than the edge: only the positive order counts, and no whole str.
int OnlyPositive(int length, const std::string& str) {
    return length < 1 || length >= Size(str) ? 0 : length;
}

}  // namespace

int overlap_before_len(const std::string& before, const std::string& str, int method, int& before_len,
                       double match_ratio) {
    if (before.empty() || str.empty()) std::exit(-1);
    if (Size(before) >= Size(str)) {
        const int length = overlap(before, str, method, match_ratio);
        before_len = -1;
        return OnlyPositive(length, str);
    }
    const SeedPlan seeds = PlanSeeds(method);
    CheckSeedLength(seeds.pattlen, before);
    const int length =
        SeedsOfBefore(before, str, seeds, SeedSearch(before, str, seeds.pattlen, method), before_len, match_ratio);
    return length != 0 ? length : forward_overlap(before, str, method, match_ratio);
}

int overlap_after_len(const std::string& str, const std::string& after, int method, int& after_len,
                      double match_ratio) {
    if (str.empty() || after.empty()) std::exit(-1);
    if (Size(after) >= Size(str)) {
        after_len = -1;
        return OnlyPositive(overlap(str, after, method, match_ratio), str);
    }
    const SeedPlan seeds = PlanSeeds(method);
    CheckSeedLength(seeds.pattlen, after);
    const int length =
        SeedsOfAfter(str, after, seeds, SeedSearch(after, str, seeds.pattlen, method), after_len, match_ratio);
    return length != 0 ? length : forward_overlap(str, after, method, match_ratio);
}

namespace {

// A read's seeds in the edge.
auto SeedsInEdge(const EdgeSeeds& edge, const std::string& read) {
    return [&edge, &read](int i) { return edge.PlaceOf(read.data() + i * edge.Length()); };
}

// The edge's seeds in a read, all sought when the first one is asked for.
class SeedsInRead {
  public:
    SeedsInRead(const EdgeSeeds& edge, const std::string& read) : edge_(edge), read_(read) {}

    int operator()(int i) {
        if (!known_) edge_.PlacesIn(read_, places_);
        known_ = true;
        return places_[i];
    }

  private:
    const EdgeSeeds& edge_;
    const std::string& read_;
    EdgeSeeds::Places places_;
    bool known_ = false;
};

}  // namespace

int forward_overlap(const EdgeSeeds& str1, const std::string& str2, int method, double match_ratio) {
    if (!str1.Covers(str2, method)) return forward_overlap(str1.Edge(), str2, method, match_ratio);
    return ForwardBy(str1.Edge(), str2, ForwardPlan(), SeedsInEdge(str1, str2), method, match_ratio);
}

int overlap_before_len(const EdgeSeeds& before, const std::string& str, int method, int& before_len,
                       double match_ratio) {
    const std::string& edge = before.Edge();
    if (!before.Covers(str, method)) return overlap_before_len(edge, str, method, before_len, match_ratio);
    const SeedPlan seeds = PlanSeeds(method);
    SeedsInRead edge_in_read(before, str);
    if (Size(edge) >= Size(str)) {
        const int length = OverlapBy(edge, str, seeds, edge_in_read, SeedsInEdge(before, str), method, match_ratio);
        before_len = -1;
        return OnlyPositive(length, str);
    }
    const int length = SeedsOfBefore(edge, str, seeds, edge_in_read, before_len, match_ratio);
    return length != 0 ? length : forward_overlap(before, str, method, match_ratio);
}

int overlap_after_len(const std::string& str, const EdgeSeeds& after, int method, int& after_len, double match_ratio) {
    const std::string& edge = after.Edge();
    if (!after.Covers(str, method)) return overlap_after_len(str, edge, method, after_len, match_ratio);
    const SeedPlan seeds = PlanSeeds(method);
    SeedsInRead edge_in_read(after, str);
    if (Size(edge) >= Size(str)) {
        after_len = -1;
        return OnlyPositive(OverlapBy(str, edge, seeds, SeedsInEdge(after, str), edge_in_read, method, match_ratio),
                            str);
    }
    // The seeds of forward_overlap() are the same ones in the same text; only the last of them may be one more.
    const int length = SeedsOfAfter(str, edge, seeds, edge_in_read, after_len, match_ratio);
    return length != 0 ? length : ForwardBy(str, edge, ForwardPlan(), edge_in_read, method, match_ratio);
}

int overlap2(const std::string& str1, const std::string& str2, int method, int /*before_len*/, int /*after_len*/) {
    const SeedPlan seeds = PlanSeeds(method);
    if (seeds.pattlen < 4) std::exit(-1);
    int matchnum = 0;
    const int length =
        SeedsOfFirst(str1, str2, seeds, SeedSearch(str1, str2, seeds.pattlen, method), Match_ratio, matchnum);
    if (length != 0) return length;
    return SeedsOfSecond(str1, str2, seeds, SeedSearch(str2, str1, seeds.pattlen, method), Match_ratio, matchnum);
}

}  // namespace lintara
