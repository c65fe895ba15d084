#include "join/long_expand.h"

#include <fstream>

#include "align/overlap.h"
#include "align/piece.h"
#include "align/search.h"
#include "join/checks.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

/// What one look at an expansion has settled.
enum class Outcome { kFilled, kNotFilled, kGoOn };

bool Agree(const std::string& read1, const std::string& read2, int over) {
    return GetMatchRatio(read1, read2, over) > 0.9;
}

bool Exact(const std::string& read1, const std::string& read2, int over) {
    return GetMatchRatio(read1, read2, over) == 1.0;
}

/// Checks `seq`, what `before` holds in front of the after edge, against `after`.
Outcome CheckAgainstAfter(std::string& before, const std::string& after, const std::string& before_edge,
                          std::string& seq, std::ofstream& log) {
    if (seq.empty() && Length(after) > min_align) {
        log << "zero after check!\n";
        if (Exact(Tail(before_edge, min_align), Tail(after, min_align), min_align)) return Outcome::kFilled;
        before = seq;
        return Outcome::kGoOn;
    }
    if (!seq.empty() && Length(after) > Length(seq)) {
        log << "gap region after check!\n";
        if (Agree(Tail(after, Length(seq)), seq, Length(seq))) return Outcome::kFilled;
        before = seq;
        return Outcome::kGoOn;
    }
    if (seq.empty() || after.empty()) return Outcome::kFilled;
    log << "after check!\n";
    if (Agree(Tail(seq, Length(after)), after, Length(after))) return Outcome::kFilled;
    before = seq;
    if (Length(after) > ReadLen && Length(seq) > 2 * ReadLen) {
        log << "try cut before!\n";
        return CutBefore(seq, after) ? Outcome::kFilled : Outcome::kNotFilled;
    }
    return Outcome::kGoOn;
}

/// Checks `seq`, what `after` holds behind the before edge, against `before`. A failed check never cuts `after`, unlike
/// the twin.
bool CheckAgainstBefore(const std::string& before, const std::string& after_edge, const std::string& seq,
                        std::ofstream& log) {
    if (!seq.empty() && Length(seq) < Length(before)) {
        log << "gap region before check!\n";
        return Agree(Head(before, Length(seq)), seq, Length(seq));
    }
    if (!seq.empty()) {
        if (before.empty()) return true;
        log << "before check!\n";
        return Agree(Head(seq, Length(before)), before, Length(before));
    }
    log << "zero before check!\n";
    if (before.empty()) return true;
    if (min_align <= Length(before)) return Exact(Head(after_edge, min_align), Head(before, min_align), min_align);
    return Exact(Head(after_edge, Length(before)), before, Length(before));
}

/// Looks for the front half of the after edge in or at the end of `before`.
bool AfterEdgeByOverlap(const std::string& before, const std::string& after_edge, std::string& seq,
                        std::ofstream& log) {
    log << "zero after check!\n";
    int after_len = -1;
    const std::string half = Head(after_edge, Length(after_edge) / 2);
    const int pos = overlap_after_len(before, half, 1, after_len, 0.95);
    log << "after len: " << after_len << "\toverlap: " << pos << '\n';
    if (after_len >= 0) {
        log << "before cover the after edge!\n";
        seq = Head(before, Length(before) - Length(half) - after_len);
        return true;
    }
    if (pos >= 1) {
        log << "before overlapped with the after edge!\n";
        seq = Head(before, Length(before) - pos);
        return true;
    }
    return false;
}

/// Looks for the back half of the before edge in or at the start of `after`. Unlike the twin it takes a short edge
/// whole and logs no lengths.
bool BeforeEdgeByOverlap(const std::string& after, const std::string& before_edge, std::string& seq,
                         std::ofstream& log) {
    int before_len = -1;
    const std::string half =
        Length(before_edge) / 2 > min_align ? From(before_edge, Length(before_edge) / 2) : before_edge;
    const int pos = overlap_before_len(half, after, 1, before_len, 0.95);
    if (before_len >= 0) {
        log << "after cover the before edge!\n";
        seq = From(after, before_len + Length(half));
        return true;
    }
    if (pos >= 1) {
        log << "after overlapped with the before edge!\n";
        seq = From(after, pos);
        return true;
    }
    return false;
}

/// An expansion from the before edge that is long enough to hold the after edge.
Outcome LongBefore(std::string& before, const std::string& after, const std::string& before_edge,
                   const std::string& after_edge, std::string& seq, std::ofstream& log) {
    log << "long before check!\n";
    const int pos = string_match(after_edge, before, 5);
    if (pos >= 0) {
        log << "before cover the after edge!\n";
        seq = Head(before, pos);
        const Outcome outcome = CheckAgainstAfter(before, after, before_edge, seq, log);
        if (outcome != Outcome::kGoOn) return outcome;
    }
    const bool filled = after.empty() && AfterEdgeByOverlap(before, after_edge, seq, log);
    return filled ? Outcome::kFilled : Outcome::kGoOn;
}

/// An expansion from the after edge that is long enough to hold the before edge.
Outcome LongAfter(const std::string& before, const std::string& after, const std::string& before_edge,
                  const std::string& after_edge, std::string& seq, std::ofstream& log) {
    log << "long after check!\n";
    // Search method 1, not the 5 of the twin.
    const int pos = string_match(before_edge, after, 1);
    if (pos >= 0) {
        log << "after cover the before edge!\n";
        seq = From(after, pos + Length(before_edge));
        if (CheckAgainstBefore(before, after_edge, seq, log)) return Outcome::kFilled;
    }
    const bool filled = before.empty() && BeforeEdgeByOverlap(after, before_edge, seq, log);
    return filled ? Outcome::kFilled : Outcome::kGoOn;
}

}  // namespace

bool LongExpandFill(std::string& before, const std::string& after, const std::string& before_edge,
                    const std::string& after_edge, int gapsize, std::string& seq, int threadId) {
    std::ofstream& log = logFile[threadId];
    if (Length(before) > gapsize + Length(after_edge)) {
        const Outcome outcome = LongBefore(before, after, before_edge, after_edge, seq, log);
        if (outcome != Outcome::kGoOn) return outcome == Outcome::kFilled;
    }
    if (Length(after) > gapsize + Length(before_edge)) {
        return LongAfter(before, after, before_edge, after_edge, seq, log) == Outcome::kFilled;
    }
    return false;
}

}  // namespace lintara
