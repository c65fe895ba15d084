// The two tables that the repeat detector fills for one gap or block, with the life of the scope they stand in.
#pragma once

#include "repeat/type.h"
#include "run/settings.h"

namespace lintara {

struct RepeatTables {
    TagInfo* tagInfo = new TagInfo[TAG];  ///< tag table; a solver may free it earlier, which leaves null
    int* freq = new int[TAG]();           ///< tag frequencies

    RepeatTables() = default;
    RepeatTables(const RepeatTables&) = delete;
    RepeatTables& operator=(const RepeatTables&) = delete;
    ~RepeatTables() {
        FreetagInfo(tagInfo);
        delete[] freq;
    }
};

}  // namespace lintara
