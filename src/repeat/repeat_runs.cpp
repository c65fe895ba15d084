#include "repeat/repeat_runs.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "repeat/type.h"

namespace lintara {
namespace {

/// Places that are passed over at once when no repeat tag stands there.
constexpr int kGroup = 16;
static_assert(TagReads::kStretch % kGroup == 0);

using TagLanes = std::uint16_t __attribute__((vector_size(16)));

/// Where in a group one of `kNum` repeat tags stands: bit i for the place i.
template <int kNum>
struct Compared {
    TagLanes repeat_tags[kNum];

    explicit Compared(const std::vector<int>& tags) {
        for (int i = 0; i < kNum; ++i) repeat_tags[i] = TagLanes{} + static_cast<std::uint16_t>(tags[i]);
    }
    unsigned int operator()(const std::uint16_t* group) const {
        TagLanes lanes[2];
        std::memcpy(lanes, group, sizeof lanes);
        TagLanes equal[2] = {};
        for (const TagLanes& tag : repeat_tags) {
            equal[0] |= static_cast<TagLanes>(lanes[0] == tag);
            equal[1] |= static_cast<TagLanes>(lanes[1] == tag);
        }
        const TagLanes bits{1, 2, 4, 8, 16, 32, 64, 128};
        const TagLanes both = (equal[0] & bits) | (equal[1] & (bits << 8));
        std::uint64_t halves[2];
        std::memcpy(halves, &both, sizeof halves);
        // The four lanes of each half have no bit in common, and their sum comes to stand in the last one.
        return static_cast<unsigned int>(((halves[0] | halves[1]) * 0x0001000100010001U) >> 48);
    }
};

/// The same for any number of them.
struct LookedUp {
    const unsigned char* marks;

    unsigned int operator()(const std::uint16_t* group) const {
        unsigned char any = 0;
        for (int i = 0; i < kGroup; ++i) any |= marks[group[i]];
        if (any == 0) return 0;
        unsigned int places = 0;
        for (int i = 0; i < kGroup; ++i) places |= static_cast<unsigned int>(marks[group[i]]) << i;
        return places;
    }
};

/// Adds a run behind the others, or to the last one when there is nothing between them.
void Add(std::vector<RepeatRun>& runs, const RepeatRun& run) {
    if (!runs.empty() && runs.back().end == run.first && runs.back().read == run.read) {
        runs.back().end = run.end;
    } else {
        runs.push_back(run);
    }
}

/// Builds the runs from left to right.
struct RunBuilder {
    const TagReads& laid;
    std::vector<RepeatRun>& runs;
    int read = 0;

    /// Takes repeat tags in a row, some of which may run past the end of their read.
    void Take(int first, int end) {
        while (first < end) {
            while (laid.End(read) <= first) ++read;
            const int stop = std::min(end, laid.TagsEnd(read));
            if (first < stop) {
                Add(runs, {read, first, stop});
            }
            first = laid.End(read);
        }
    }
};

template <typename PlacesIn>
void FindRunsInGroups(const TagReads& laid, const PlacesIn& places_in, RepeatTags& repeat) {
    RunBuilder builder{laid, repeat.runs};
    const int num = static_cast<int>(laid.bases.size());
    for (int group = 0; group < num; group += kGroup) {
        unsigned int places = places_in(laid.tags.data() + group);
        for (int p = group; places != 0;) {
            const int before = std::countr_zero(places);
            const int len = std::countr_one(places >> before);
            builder.Take(p + before, std::min(num, p + before + len));
            p += before + len;
            places >>= before + len;
        }
    }
}

}  // namespace

void RepeatTags::Add(int tag) {
    marks[static_cast<std::size_t>(tag)] = 1;
    tags.push_back(tag);
}

void RepeatTags::Clear() {
    for (const int tag : tags) marks[static_cast<std::size_t>(tag)] = 0;
    tags.clear();
    runs.clear();
}

void AddRepeatTags(const TagInfo* tagInfo, int TRLen, RepeatTags& repeat) {
    for (int tag = 0; tag < kTagValues; ++tag) {
        if (ExistTRLen(tagInfo[tag], TRLen)) repeat.Add(tag);
    }
}

void FindRuns(const TagReads& laid, RepeatTags& repeat) {
    repeat.runs.clear();
    // A few repeat tags are compared with those of the reads; when there are more, these are looked up.
    switch (repeat.tags.size()) {
        case 0:
            return;
        case 1:
            return FindRunsInGroups(laid, Compared<1>(repeat.tags), repeat);
        case 2:
            return FindRunsInGroups(laid, Compared<2>(repeat.tags), repeat);
        case 3:
            return FindRunsInGroups(laid, Compared<3>(repeat.tags), repeat);
        case 4:
            return FindRunsInGroups(laid, Compared<4>(repeat.tags), repeat);
        default:
            return FindRunsInGroups(laid, LookedUp{repeat.marks.data()}, repeat);
    }
}

void FindRunsAgain(const TagReads& laid, const std::vector<int>& reads, RepeatTags& repeat) {
    if (reads.empty()) return;
    std::vector<RepeatRun> runs;
    auto next = reads.begin();
    for (const RepeatRun& run : repeat.runs) {
        while (next != reads.end() && *next < run.read) ++next;
        if (next == reads.end() || run.read != *next) {
            runs.push_back(run);
        } else if (runs.empty() || runs.back().read != run.read) {
            for (int p = laid.First(run.read); p < laid.TagsEnd(run.read); ++p) {
                if (repeat.Has(laid.Tag(p))) Add(runs, {run.read, p, p + 1});
            }
        }
    }
    repeat.runs.swap(runs);
}

}  // namespace lintara
