// What the three end selections share: the state of one call while it climbs its ladder, and the ways a stage of the
// ladder can end. The read the walk stands on (start or end) and the pick (last or first) travel beside it.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "run/record_text.h"
#include "store/gap.h"

namespace lintara::end_select {

/// How a stage ends.
enum class Next {
    Stage,   ///< nothing settled: the next stage of this turn
    Turn,    ///< the candidates or the pick have changed: a new turn of the ladder
    Accept,  ///< no measure is left or none is needed: the final acceptance decides on the pick
    Stop,    ///< the call ends and hands back the pick as it stands, which may be -1
};

/// When the recheck of a pick that is still a candidate ends the turn.
enum class Recheck {
    PassOrRatio,  ///< on a pick that passes or that nearly all candidates are against
    PassOnly,     ///< on a pick that passes
    Position,     ///< as PassOrRatio, but a pick that passes in a wrong position is marked to be dropped
};

/// Whether the max step of a re-pick reports itself in jum.
enum class Report { No, MaxStep };

/// The state of one call. The one-way flags tell which measures have run; each runs at most once a call.
struct Ladder {
    std::vector<int>& accept;  ///< the candidates that are left
    std::vector<Read>& reads;
    std::uint8_t**& matrix;
    int& jum;          ///< the walk's step mode
    bool& changenode;  ///< the walk's last step is to be replaced
    bool& clean;       ///< handed on to clean_accept
    int threadId;

    int init = 0;        ///< candidates on entry
    bool cycle = false;  ///< the pick failed its last test
    double ratio = 0;    ///< share of the other candidates against the pick in its last test

    bool fullcleandrop = false;
    bool lengthdrop = false;
    bool edgedrop = false;
    bool posdrop = false;
    bool ratiodrop = false;
    bool seqdrop = false;
    bool findmax = false;
    bool more = false;

    /// Candidates left. Signed, since the size less one is multiplied by a ratio when nothing is left, too.
    int Size() const { return static_cast<int>(accept.size()); }
    /// Is this read the block's after edge?
    bool AtAfterEdge(int read) const { return read == static_cast<int>(reads.size()) - 1; }
    /// How many of the other candidates are against the pick.
    int unacceptnum() const { return static_cast<int>((Size() - 1) * ratio); }
    LogText Log() const { return LogText(threadId); }
};

using Stage = Next (*)(int, int&, Ladder&);

/// Goes through the stages in order until one ends the turn.
inline Next RunStages(std::initializer_list<Stage> stages, int from, int& pick, Ladder& ladder) {
    for (Stage stage : stages) {
        const Next next = stage(from, pick, ladder);
        if (next != Next::Stage) return next;
    }
    return Next::Accept;
}

}  // namespace lintara::end_select
