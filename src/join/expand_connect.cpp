#include "join/expand_connect.h"

#include <algorithm>

#include "align/edge_align.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "join/expand_steps.h"
#include "join/long_expand.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

using join::Answer;
using join::Expansions;

/// The steps for expansions that together cover the gap, in their order. Gates look at the strings as they are by then.
std::string ConnectCovered(Expansions& e) {
    if (Answer answer = join::CoveredGap(e)) return *answer;
    if (Answer answer = join::ReadAcrossUncut(e)) return *answer;
    if (Length(e.before) > e.gapsize) {
        if (Answer answer = join::BeforeOverGap(e)) return *answer;
    }
    if (Length(e.after) > e.gapsize) {
        if (Answer answer = join::AfterOverGap(e)) return *answer;
    }
    if (Length(e.before) >= min_align && Length(e.after) >= min_align) {
        if (Answer answer = join::RouteE(e)) return *answer;
        if (Answer answer = join::RouteF(e)) return *answer;
        if (Answer answer = join::RouteG(e)) return *answer;
    }
    if (Answer answer = join::RouteH(e)) return *answer;
    if (Answer answer = join::RouteI(e)) return *answer;
    return join::RouteJ(e);
}

}  // namespace

std::string ExpandConnect(std::string& before, std::string& after, const std::string& before_edge,
                          const std::string& after_edge, int gapsize, const std::vector<Read>& reads, TagInfo*& tagInfo,
                          bool noreadbreak1, bool noreadbreak2, int& realgaplen, int threadId) {
    Expansions e{before,       after,        before_edge, after_edge, gapsize,     reads, tagInfo,
                 noreadbreak1, noreadbreak2, realgaplen,  threadId,   Ns(gapsize), {},    {}};
    if (Length(before) < min_align && Length(after) < min_align) {
        e.Log() << "Expand too short!\n";
        return e.seq;
    }
    if (Length(before) > gapsize + Length(after_edge) || Length(after) > gapsize + Length(before_edge)) {
        e.Log() << "Short contig edge!\n";
        if (LongExpandFill(before, after, before_edge, after_edge, gapsize, e.seq, threadId)) {
            e.Log() << "Long expand fill the gap region!\n";
            return e.seq;
        }
    }
    return Length(before) + Length(after) >= gapsize ? ConnectCovered(e) : join::UncoveredGap(e);
}

namespace join {

std::ofstream& Expansions::Log() const {
    return logFile[threadId];
}

Meeting MeetingOf(const Expansions& e, int over) {
    const int before = Length(e.before);
    const int after = Length(e.after);
    if (over >= before && over < after) return Meeting::kAfterIntoBeforeEdge;
    if (over >= after && over < before) return Meeting::kBeforeIntoAfterEdge;
    // What is left passes beyond one whole side, or lies inside both when it passes beyond neither.
    return over > before || over > after ? Meeting::kBeyondOneSide : Meeting::kInsideBoth;
}

void BuildSides(Expansions& e) {
    e.before_seq = e.before_edge + e.before;
    e.after_seq = e.after + e.after_edge;
}

std::optional<int> JoinAlign(const Expansions& e) {
    const int Max = Length(e.before) + Length(e.after);
    const bool bounded = Max < Length(e.before_seq) && Max < Length(e.after_seq);
    const int r = bounded ? align_connect(e.before_seq, e.after_seq, min_align, Max)
                          : align_connect(e.before_seq, e.after_seq, min_align);
    if (r < 0) return std::nullopt;
    return min_align + r;
}

int FullLimit(const Expansions& e) {
    const bool is_short = std::min(Length(e.before), Length(e.after)) < ReadLen;
    const bool leaves_little = std::max(Length(e.before), Length(e.after)) + ReadLen > e.gapsize;
    return is_short || leaves_little ? 2 * ReadLen : ReadLen;
}

void OverLog(const Expansions& e, int over) {
    e.Log() << "Get the overlap " << over << "\twith min overlap length: " << min_align << '\n';
}

std::string AfterJoin(Expansions& e, const std::string& joined, const char* message) {
    const int d = Length(e.after_edge) - Length(joined);
    if (d > Length(e.before)) return MinusGap(e, Length(e.before) - d, message);
    if (d > 0) return Head(e.before, Length(e.before) - d);
    return e.before + Head(joined, -d);
}

std::string MinusGap(Expansions& e, int minus, const char* message) {
    e.realgaplen = minus;
    e.Log() << message << minus << '\n';
    return e.seq;
}

bool ExactMatch(const std::string& read1, const std::string& read2) {
    return GetMatchRatio(read1, read2, Length(read1)) == 1.0;
}

bool Agree(const std::string& read1, const std::string& read2, int over) {
    return GetMatchRatio(read1, read2, over) > 0.9;
}

bool BeforeCrossed(const Expansions& e, std::string& seq, const std::string& edge) {
    return BeforeCrossCheck(seq, e.reads, edge, e.threadId);
}

bool AfterCrossed(const Expansions& e, const std::string& edge, std::string& seq, int limit) {
    return AfterCrossCheck(edge, e.reads, seq, limit, e.threadId);
}

bool Trusted(const Expansions& e, const std::string& patt) {
    return CheckOver(patt, e.tagInfo, e.reads);
}

}  // namespace join

}  // namespace lintara
