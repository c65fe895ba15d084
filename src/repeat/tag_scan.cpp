#include "repeat/tag_scan.h"

#include <algorithm>
#include <cstring>

#include "repeat/spare_tables.h"

namespace lintara {
namespace {

/// Whether places stand at equal steps, as those of a clean tandem repeat do.
bool EquallySpaced(const std::vector<int>& places) {
    const int step = places[1] - places[0];
    for (std::size_t i = 2; i < places.size(); ++i) {
        if (places[i] - places[i - 1] != step) return false;
    }
    return true;
}

/// Counts the pairs of one tag in one read. They are counted up before they go to the record, so that a dense repeat
/// searches the record once a distance and not once a pair.
void CountPairs(TagScan& scan, TagInfo& tag) {
    const std::vector<int>& places = scan.places;
    const int num = static_cast<int>(places.size());
    int hint = 0;
    if (EquallySpaced(places)) {
        const int step = places[1] - places[0];
        for (int k = 1; k < num; ++k) AddTimes(tag, k * step, num - k, hint);
        return;
    }
    const std::size_t span = static_cast<std::size_t>(places.back() - places.front());
    if (scan.times.size() <= span) scan.times.resize(span + 1, 0);
    for (int i = 0; i < num; ++i) {
        for (int j = i + 1; j < num; ++j) {
            const int distance = places[j] - places[i];
            if (scan.times[distance]++ == 0) scan.distances.push_back(distance);
        }
    }
    for (const int distance : scan.distances) {
        AddTimes(tag, distance, scan.times[distance], hint);
        scan.times[distance] = 0;
    }
    scan.distances.clear();
}

inline void NoteRecurrence(TagScan& scan, int tag, int before, int place) {
    if (before % 2 == 0) scan.firsts.push_back(before / 2);
    scan.next[before / 2] = place;
    scan.next[place] = -1;
    scan.last[tag] = 2 * place + 1;
}

/// Hands the pairs of all tags that recur to their records.
void CountRecurring(const TagReads& laid, TagInfo* tagInfo, TagScan& scan) {
    for (const int first : scan.firsts) {
        const int tag = laid.Tag(first);
        if (tagInfo[tag].differentDistanceNum == 0) scan.found.push_back(tag);
        const int second = scan.next[first];
        if (scan.next[second] < 0) {
            int hint = 0;
            AddTimes(tagInfo[tag], second - first, 1, hint);
            continue;
        }
        scan.places.clear();
        for (int p = first; p >= 0; p = scan.next[p]) scan.places.push_back(p);
        CountPairs(scan, tagInfo[tag]);
    }
    scan.firsts.clear();
}

void CountAll(const TagReads& laid, int from, int end, int* freq, TagScan& scan) {
    const std::uint16_t* tags = laid.tags.data();
    int* last = scan.last.data();
    const int start = 2 * from;
    for (int p = from; p < end; ++p) {
        const std::size_t tag = tags[p];
        const int before = last[tag];
        ++freq[tag];
        last[tag] = 2 * p;
        if (before >= start) NoteRecurrence(scan, static_cast<int>(tag), before, p);
    }
}

/// The same for the tags without an `N`.
void CountWithoutN(const TagReads& laid, int from, int end, int* freq, TagScan& scan) {
    for (int p = from; p < end; ++p) {
        if (std::memchr(laid.bases.data() + p, 'N', TAGL) != nullptr) continue;
        const int tag = laid.Tag(p);
        ++freq[tag];
        const int before = scan.last[tag];
        scan.last[tag] = 2 * p;
        if (before >= 2 * from) NoteRecurrence(scan, tag, before, p);
    }
}

}  // namespace

void ScanTags(const TagReads& laid, bool skip_n, int* freq, TagInfo* tagInfo, TagScan& scan) {
    // The pairs are handed on a few reads at a time: one read of 100 bases has one recurrence by chance, and a loop
    // over so few ends where no processor can foresee it.
    const std::size_t enough = 256;
    scan.last.assign(kTagValues, -1);
    scan.found.clear();
    if (scan.next.size() < laid.bases.size()) scan.next.resize(laid.bases.size());
    for (int read = 0; read < laid.num(); ++read) {
        if (skip_n) {
            CountWithoutN(laid, laid.First(read), laid.TagsEnd(read), freq, scan);
        } else {
            CountAll(laid, laid.First(read), laid.TagsEnd(read), freq, scan);
        }
        if (scan.firsts.size() >= enough) CountRecurring(laid, tagInfo, scan);
    }
    CountRecurring(laid, tagInfo, scan);
    NoteFilled(tagInfo, scan.found);
}

}  // namespace lintara
