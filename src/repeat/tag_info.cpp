// The records of the tag table: how they grow, are asked and are freed.
#include <algorithm>

#include "repeat/spare_tables.h"
#include "repeat/tag_scan.h"
#include "repeat/type.h"
#include "run/settings.h"

namespace lintara {
namespace {

void FreeArrays(TagInfo& tag) {
    delete[] tag.distancesArr;
    if (tag.room == 0) delete[] tag.timesArr;
}

/// Moves the arrays to twice the room.
void Grow(TagInfo& tag) {
    const int num = tag.differentDistanceNum;
    const int room = std::max(4, 2 * num);
    int* arrays = new int[2 * static_cast<std::size_t>(room)];
    std::copy_n(tag.distancesArr, num, arrays);
    std::copy_n(tag.timesArr, num, arrays + room);
    FreeArrays(tag);
    tag.distancesArr = arrays;
    tag.timesArr = arrays + room;
    tag.room = room;
}

/// Index of a distance in a record, or the number of its distances. The search begins at `from`, goes on to the end and
/// then takes the places before it.
int IndexOf(const TagInfo& tag, int distance, int from) {
    const int num = tag.differentDistanceNum;
    const int start = std::min(from, num);
    for (int k = start; k < num; ++k) {
        if (tag.distancesArr[k] == distance) return k;
    }
    for (int k = 0; k < start; ++k) {
        if (tag.distancesArr[k] == distance) return k;
    }
    return num;
}

}  // namespace

void AppendDistance(TagInfo& tag, int distance, int times) {
    const int k = tag.differentDistanceNum;
    if (k >= tag.room) Grow(tag);
    tag.distancesArr[k] = distance;
    tag.timesArr[k] = times;
    tag.differentDistanceNum = k + 1;
}

void AddTimesElsewhere(TagInfo& tag, int distance, int times, int& hint) {
    const int k = IndexOf(tag, distance, hint);
    hint = k + 1;
    if (k < tag.differentDistanceNum) {
        tag.timesArr[k] += times;
    } else {
        AppendDistance(tag, distance, times);
    }
}

void AddDistance(TagInfo*& tagInfo, std::uint64_t tagBit, int distance) {
    NoteUnknown(tagInfo);
    int hint = 0;
    AddTimes(tagInfo[tagBit], distance, 1, hint);
}

int ExistTRLen(const TagInfo& tag, int TRLen) {
    for (int k = 0; k < tag.differentDistanceNum; ++k) {
        if (tag.distancesArr[k] == TRLen) return 1;
    }
    return 0;
}

int GetAppearedTimes(const TagInfo& tag, int TRLen) {
    for (int k = 0; k < tag.differentDistanceNum; ++k) {
        if (tag.distancesArr[k] == TRLen) return tag.timesArr[k];
    }
    return 0;
}

void FreetagInfo(TagInfo*& tagInfo) {
    if (tagInfo == nullptr) return;
    for (int i = 0; i < TAG; ++i) {
        // A record of a table that was used before may keep its room without a distance.
        if (tagInfo[i].differentDistanceNum > 0 || tagInfo[i].room > 0) FreeArrays(tagInfo[i]);
    }
    delete[] tagInfo;
    tagInfo = nullptr;
}

}  // namespace lintara
