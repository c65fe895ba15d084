#include "repeat/spare_tables.h"

#include <utility>

#include "repeat/tag.h"
#include "repeat/type.h"
#include "run/settings.h"

namespace lintara {
namespace {

struct Tables {
    TagInfo* tagInfo = nullptr;
    int* freq = nullptr;

    Tables() = default;
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;
    ~Tables() {
        FreetagInfo(tagInfo);
        delete[] freq;
    }
};

thread_local Tables spare;

/// What is known of the table that the thread lent out last.
struct Lent {
    const TagInfo* tagInfo = nullptr;  // null: nothing
    std::vector<int> filled{};         // the records with distances, all of them
};

thread_local Lent lent;

// The arrays keep their room for the next gap.
void Clear(TagInfo& tag) {
    if (tag.differentDistanceNum > 0) tag.differentDistanceNum = 0;
}

}  // namespace

void TakeTables(TagInfo*& tagInfo, int*& freq) {
    tagInfo = std::exchange(spare.tagInfo, nullptr);
    freq = std::exchange(spare.freq, nullptr);
    if (tagInfo == nullptr) tagInfo = new TagInfo[TAG];
    if (freq == nullptr) freq = new int[TAG]();
    lent.tagInfo = tagInfo;
    lent.filled.clear();
}

void NoteFilled(const TagInfo* tagInfo, const std::vector<int>& tags) {
    if (tagInfo == lent.tagInfo) lent.filled.insert(lent.filled.end(), tags.begin(), tags.end());
}

void NoteUnknown(const TagInfo* tagInfo) {
    if (tagInfo == lent.tagInfo) lent.tagInfo = nullptr;
}

void GiveBackTables(TagInfo*& tagInfo, int*& freq) {
    if (tagInfo != nullptr && tagInfo == lent.tagInfo) {
        for (const int tag : lent.filled) Clear(tagInfo[tag]);
    } else if (tagInfo != nullptr) {
        for (int tag = 0; tag < kTagValues; ++tag) Clear(tagInfo[tag]);
    }
    lent.tagInfo = nullptr;
    // Whatever the thread already keeps is a pair like these.
    std::swap(spare.tagInfo, tagInfo);
    std::swap(spare.freq, freq);
    FreetagInfo(tagInfo);
    delete[] std::exchange(freq, nullptr);
}

}  // namespace lintara
