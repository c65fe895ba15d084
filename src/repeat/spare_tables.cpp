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

}  // namespace

void TakeTables(TagInfo*& tagInfo, int*& freq) {
    tagInfo = std::exchange(spare.tagInfo, nullptr);
    freq = std::exchange(spare.freq, nullptr);
    if (tagInfo == nullptr) tagInfo = new TagInfo[TAG];
    if (freq == nullptr) freq = new int[TAG]();
}

void GiveBackTables(TagInfo*& tagInfo, int*& freq) {
    for (int tag = 0; tagInfo != nullptr && tag < kTagValues; ++tag) {
        // The arrays keep their room for the next gap.
        if (tagInfo[tag].differentDistanceNum > 0) tagInfo[tag].differentDistanceNum = 0;
    }
    // Whatever the thread already keeps is a pair like these.
    std::swap(spare.tagInfo, tagInfo);
    std::swap(spare.freq, freq);
    FreetagInfo(tagInfo);
    delete[] std::exchange(freq, nullptr);
}

}  // namespace lintara
