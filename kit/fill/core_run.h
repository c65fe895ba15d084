// One run of the core program on a prepared folder, and the reading of its files: what became of each gap. What it says
// is held against the filled scaffolds that it wrote; a scaffold that does not agree is left as it was.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kit/assign/assign.h"
#include "kit/base/child.h"
#include "kit/fill/state.h"

namespace lintara::kit {

struct CoreRun {
    ChildEnd end;
    bool nothingFilled = false;  ///< the run ended with the arithmetic fault that stands for it
    std::string fault;           ///< words for an abnormal end; empty: none
    std::vector<std::string> warnings;
    std::vector<GapResult> results;
    std::vector<std::string> command;
};

/// Runs `core` on folder/contig.fa and folder/gap.fa.gz; its outputs go to folder/core. `tick` is called while it runs.
CoreRun RunCore(const std::string& core, const std::string& folder, long readLength, int threads, const Layout& layout,
                const std::vector<CoreScaffold>& scaffolds, const std::vector<std::vector<AssignedRead>>& assigned,
                const std::function<void()>& tick = {});

/// Reads the outputs below `output` (gap records in output/gaps.fa).
void ReadCoreResults(const std::string& output, int threads, long readLength, const Layout& layout,
                     const std::vector<CoreScaffold>& scaffolds, const std::vector<std::vector<AssignedRead>>& assigned,
                     CoreRun& run);

}  // namespace lintara::kit
