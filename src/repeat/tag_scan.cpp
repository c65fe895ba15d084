#include "repeat/tag_scan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "repeat/spare_tables.h"

namespace lintara {
namespace {

/// Recurrences that are counted at a time: one read of 100 bases has one by chance, and a loop over so few ends where
/// no processor can foresee it.
constexpr std::size_t kEnough = 256;

/// The places of one tag in one read.
struct Chain {
    const int* places;  ///< ascending
    int num;
    int step;  ///< from place to place, as in a clean tandem repeat; 0 when there is not one step only
};

Chain TakeChain(const Recurrence* recurrences, int first, int* places) {
    const Recurrence* r = recurrences + first;
    const int step = r->place - r->before;
    int other_steps = 0;
    places[0] = r->before;
    places[1] = r->place;
    int num = 2;
    while (r->next >= 0) {
        r = recurrences + r->next;
        places[num++] = r->place;
        other_steps |= (r->place - r->before) ^ step;
    }
    return {places, num, other_steps == 0 ? step : 0};
}

/// Counts the pairs of places at equal steps.
void CountSteps(const Chain& chain, TagInfo& tag) {
    int hint = 0;
    for (int k = 1; k < chain.num; ++k) AddTimes(tag, k * chain.step, chain.num - k, hint);
}

/// Counts all pairs of some places of one tag. The record's entries are looked up by distance, since each of them may
/// be asked for many times, and in any order.
void CountPairs(const Chain& chain, std::vector<int>& entries, TagInfo& tag) {
    const int span = chain.places[chain.num - 1] - chain.places[0];
    if (static_cast<int>(entries.size()) <= span) entries.resize(static_cast<std::size_t>(span) + 1, -1);
    for (int k = 0; k < tag.differentDistanceNum; ++k) {
        if (tag.distancesArr[k] > 0 && tag.distancesArr[k] <= span) entries[tag.distancesArr[k]] = k;
    }
    for (int i = 0; i < chain.num; ++i) {
        for (int j = i + 1; j < chain.num; ++j) {
            const int distance = chain.places[j] - chain.places[i];
            if (entries[distance] >= 0) {
                ++tag.timesArr[entries[distance]];
            } else {
                entries[distance] = tag.differentDistanceNum;
                AppendDistance(tag, distance, 1);
            }
        }
    }
    std::fill(entries.begin(), entries.begin() + span + 1, -1);
}

/// The recurrences of some reads.
struct Recurrences {
    Recurrence* begin;
    int num;
    int shift;  ///< what their places are ahead of those of the laid-out reads
};

/// Names the tags, links the recurrences of one tag in one read, and writes to `firsts` where such chains begin.
///
/// @return number of chains
int LinkRecurrences(const TagReads& laid, const Recurrences& some, const TagInfo* tagInfo, TagScan& scan) {
    int firsts = 0;
    for (int i = 0; i < some.num; ++i) {
        Recurrence& now = some.begin[i];
        now.tag = laid.Tag(now.place - some.shift);
        now.next = -1;
        const int latest = scan.latest[now.tag];
        scan.latest[now.tag] = i;
        const bool goes_on = latest < i && some.begin[latest].place == now.before;
        some.begin[goes_on ? latest : i].next = goes_on ? i : -1;
        scan.firsts[firsts] = i;
        firsts += goes_on ? 0 : 1;
        __builtin_prefetch(tagInfo + now.tag);  // the records lie far apart
    }
    return firsts;
}

/// Hands the pairs of all tags that recur to their records.
void CountRecurring(const TagReads& laid, const Recurrences& some, TagInfo* tagInfo, TagScan& scan) {
    const Recurrence* recurrences = some.begin;
    const int chains = LinkRecurrences(laid, some, tagInfo, scan);
    for (int i = 0; i < chains; ++i) {
        const Recurrence* r = recurrences + scan.firsts[i];
        TagInfo& record = tagInfo[r->tag];
        if (record.differentDistanceNum == 0) scan.found.push_back(r->tag);
        if (r->next < 0) {
            int hint = 0;
            AddTimes(record, r->place - r->before, 1, hint);
            continue;
        }
        const Chain chain = TakeChain(recurrences, scan.firsts[i], scan.places.data());
        if (chain.step > 0) {
            CountSteps(chain, record);
        } else {
            CountPairs(chain, scan.entries, record);
        }
    }
}

/// Takes one tag at a place that counts on; `start` is that of the read.
template <typename Place>
inline Recurrence* TakeTag(int tag, int place, int start, Place* last, Recurrence* recurrences) {
    const int before = last[tag];
    last[tag] = static_cast<Place>(place);
    if (before >= start) [[unlikely]] {
        recurrences->before = before;
        recurrences->place = place;
        ++recurrences;
    }
    return recurrences;
}

/// Writes the recurrences of a read, whose places are `shift` ahead, and returns the place behind them.
///
/// @param recurrences  not the first one, and the one before it of another read
template <typename Place>
Recurrence* TakeRead(const TagReads& laid, int read, int shift, Place* last, Recurrence* recurrences) {
    const std::uint16_t* tags = laid.tags.data() + laid.First(read);
    const int num = laid.TagsEnd(read) - laid.First(read);
    if (num < 1) return recurrences;
    const int start = laid.First(read) + shift;
    // Up to three tags that run past the end of the read are taken, too, since that costs less than a second loop.
    static_assert(TAGL - 1 >= 3);
    for (int i = 0; i < num; i += 4) {
        for (int k = i; k < i + 4; ++k) recurrences = TakeTag(tags[k], start + k, start, last, recurrences);
    }
    while (recurrences[-1].place >= start + num) --recurrences;
    return recurrences;
}

/// The same for the tags without an `N`.
template <typename Place>
Recurrence* TakeReadWithoutN(const TagReads& laid, int read, int shift, Place* last, Recurrence* recurrences) {
    const int start = laid.First(read) + shift;
    for (int p = laid.First(read); p < laid.TagsEnd(read); ++p) {
        if (std::memchr(laid.bases.data() + p, 'N', TAGL) != nullptr) continue;
        recurrences = TakeTag(laid.Tag(p), p + shift, start, last, recurrences);
    }
    return recurrences;
}

/// @param longest  bases of the longest read, fewer than Place has values
template <typename Place>
void ScanReads(const TagReads& laid, bool skip_n, int longest, LastPlaces<Place>& places, TagInfo* tagInfo,
               TagScan& scan) {
    constexpr std::int64_t kMost = std::numeric_limits<Place>::max();
    // In front of all stands one that is of no read.
    const std::size_t room = 1 + kEnough + static_cast<std::size_t>(longest);
    if (scan.recurrences.size() < room) {
        scan.recurrences.resize(room);
        scan.firsts.resize(room);
        scan.places.resize(room);
    }
    scan.recurrences.front().place = -1;
    Recurrence* const begin = scan.recurrences.data() + 1;
    Recurrence* end = begin;
    int shift = places.end;
    for (int read = 0; read < laid.num(); ++read) {
        const bool full = places.last.empty() || std::int64_t{laid.End(read)} + shift > kMost;
        if (full || end - begin >= static_cast<std::ptrdiff_t>(kEnough)) {
            CountRecurring(laid, {begin, static_cast<int>(end - begin), shift}, tagInfo, scan);
            end = begin;
        }
        if (full) {
            places.last.assign(kTagValues, 0);
            shift = 1 - laid.First(read);
        }
        if (skip_n) {
            end = TakeReadWithoutN(laid, read, shift, places.last.data(), end);
        } else {
            end = TakeRead(laid, read, shift, places.last.data(), end);
        }
    }
    CountRecurring(laid, {begin, static_cast<int>(end - begin), shift}, tagInfo, scan);
    places.end = shift + static_cast<int>(laid.bases.size());
}

}  // namespace

void ScanTags(const TagReads& laid, bool skip_n, TagInfo* tagInfo, TagScan& scan) {
    scan.found.clear();
    scan.latest.resize(kTagValues, 0);
    int longest = 0;
    for (int read = 0; read < laid.num(); ++read) longest = std::max(longest, laid.End(read) - laid.First(read));
    if (longest < std::numeric_limits<std::uint16_t>::max()) {
        ScanReads(laid, skip_n, longest, scan.short_places, tagInfo, scan);
    } else {
        ScanReads(laid, skip_n, longest, scan.long_places, tagInfo, scan);
    }
    NoteFilled(tagInfo, scan.found);
}

}  // namespace lintara
