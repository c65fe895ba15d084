// The two tables that the repeat detector fills for one gap or block, with the life of the scope they stand in.
#pragma once

#include "repeat/spare_tables.h"

namespace lintara {

struct RepeatTables {
    TagInfo* tagInfo = nullptr;  ///< tag table; a solver may free it earlier, which leaves null
    int* freq = nullptr;         ///< tag frequencies

    RepeatTables() { TakeTables(tagInfo, freq); }
    RepeatTables(const RepeatTables&) = delete;
    RepeatTables& operator=(const RepeatTables&) = delete;
    ~RepeatTables() { GiveBackTables(tagInfo, freq); }
};

}  // namespace lintara
