// The state that the three long-step walks share, and the two ways in which they collect candidates.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "run/record_text.h"
#include "run/settings.h"
#include "store/gap.h"
#include "walk/candidates.h"
#include "walk/collect.h"

namespace lintara {

/// What a walk does behind one of its steps.
enum class WalkStep {
    kGoOn,       ///< go to the top of the loop
    kFinish,     ///< end the walk as it stands
    kNormalEnd,  ///< end the walk for want of reads
};

struct WalkState {
    std::vector<Read>& reads;
    std::vector<int>& path;
    std::uint8_t**& matrix;
    std::uint16_t num;
    int threadId;

    int gapsize = reads[num - 1].pos;  ///< length of the gap, as the position of the last read
    int stopjum = ExpectedSteps();     ///< steps that it should take to cross the gap
    int jum = 1;                       ///< step mode, see get_last()
    int count = 0;                     ///< accepted steps
    int LateAcceptSize = 0;            ///< number of candidates at the last step
    bool changenode = false;           ///< the selector asks for the last step to be replaced
    bool OneAccept = false;            ///< the last step had exactly one candidate
    bool FullCleanZero = false;        ///< handed to the selectors, which only ever set it false
    bool noreadbreak = false;          ///< the walk stopped because reads ran out
    std::vector<int> accept{};         ///< candidates of the step

    int size() const { return static_cast<int>(path.size()); }
    int candidates() const { return static_cast<int>(accept.size()); }
    LogText log() const { return LogText(threadId); }

    /// Collects the reads that can follow read at on its right, without one of them.
    void CollectRight(int at, int without = -1) {
        CollectRow(matrix, at, num, Min_overlap, accept);
        drop(without, accept);
    }

    /// Collects the reads that can stand left of read at, without one of them.
    void CollectLeft(int at, int without = -1) {
        CollectColumn(matrix, at, num, Min_overlap, accept);
        drop(without, accept);
    }

    /// clean_accept() for the candidates right of read at.
    void CleanRightOf(int at) {
        int likely = -1;
        creat_last(at, accept, reads, matrix, likely);
        clean_accept(accept, matrix, threadId, likely);
    }

    /// clean_accept() for the candidates left of read at.
    void CleanLeftOf(int at) {
        int likely = -1;
        creat_first(at, accept, reads, matrix, likely);
        clean_accept(accept, matrix, threadId, likely);
    }

    /// The selector may have noted a largest-overlap step, which counts as a step of the first mode.
    void TurnBackJum() {
        if (jum == 2) jum = 1;
    }

    /// From the expected number of steps on, the far edge should be near.
    void ExpectFarEdge(bool reached) {
        if (reached && jum == 1) jum = 0;
    }

  private:
    int ExpectedSteps() const {
        const double steps = gapsize / static_cast<double>(ReadLen - Min_overlap);
        // Steps of no length give what the conversion yields on this platform.
        if (!(steps > std::numeric_limits<int>::min() && steps < std::numeric_limits<int>::max())) {
            return std::numeric_limits<int>::min();
        }
        return static_cast<int>(steps);
    }
};

}  // namespace lintara
