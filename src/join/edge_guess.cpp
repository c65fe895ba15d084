// The alternative strategies that guess how two expansions meet; no gap strategy calls them.
#include <fstream>

#include "align/edge_align.h"
#include "align/piece.h"
#include "join/edge_connect.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

/// A small gap may be none at all: both expansions then overlap the opposite edges, and leave the same bases.
bool IsZeroGap(const std::string& before, const std::string& after, const std::string& before_edge,
               const std::string& after_edge, int gapsize, std::string& seq, int threadId) {
    if (gapsize >= 150 || Length(before) < min_align || Length(after) < min_align) return false;
    logFile[threadId] << "Zero gap size check!\n";
    const int match1 = align_connect(before, after_edge, min_align);
    const int match2 = align_connect(before_edge, after, min_align);
    if (match1 < 1 || match2 < 1 || Length(after) - match2 != Length(before) - match1) return false;
    logFile[threadId] << "The real gap size may be zero or less than " << min_align << '\n';
    seq = WithoutLast(before, match1 + min_align);
    return true;
}

/// Both expansions where they overlap; an overlap of the whole of one of them leaves a part of the other one.
bool JoinExpansions(const std::string& before, const std::string& after, std::string& seq, int threadId) {
    if (Length(before) < min_align || Length(after) < min_align) return false;
    logFile[threadId] << "Try to connect before and after expand sequence\n";
    const int over = align_connect(before, after, min_align);
    if (over <= 0) {
        logFile[threadId] << "the overlap of the two sequence cannot be decided, try to connect with edge\n";
        return false;
    }
    const int len = min_align + over;
    if (len >= Length(after)) {
        seq = Head(before, Length(before) - len + Length(after));
    } else if (len >= Length(before)) {
        seq = From(after, len - Length(before));
    } else {
        seq = WithoutLast(before, len) + after;
    }
    return true;
}

bool IsOpen(const std::string& seq) {
    return seq.find('N') != std::string::npos;
}

/// Whether the longer `seq` both begins and ends with `end`.
bool HasAtBothEnds(const std::string& seq, const std::string& end) {
    return Length(seq) > Length(end) && Head(seq, Length(end)) == end && Tail(seq, Length(end)) == end;
}

/// Both expansions without the suspected overlap, which itself stays open.
std::string CutOverlap(const std::string& before, const std::string& after, int overlen, int gapsize) {
    const std::string overN = Ns(overlen);
    const bool shortbefore = Length(before) < overlen;
    const bool shortafter = Length(after) < overlen;
    if (shortbefore && shortafter) return Ns(gapsize);
    if (shortbefore) return before + overN + From(after, overlen);
    if (shortafter) return WithoutLast(before, overlen) + overN + after;
    return WithoutLast(before, overlen) + overN + From(after, overlen);
}

}  // namespace

std::string cut_seq(const std::string& before, const std::string& after, int overlen, const std::string& before_edge,
                    const std::string& after_edge, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int gapsize = Length(before) + Length(after) - overlen;
    log << "The Two enlonged part maybe have overlap with each other, with overlap length: " << overlen << '\n';
    std::string seq;
    if (IsZeroGap(before, after, before_edge, after_edge, gapsize, seq, threadId)) return seq;
    if (JoinExpansions(before, after, seq, threadId)) return seq;
    if (Length(before) > Min_overlap + gapsize) {
        seq = connect_after(before, after_edge, gapsize, threadId);
        if (!IsOpen(seq)) {
            if (!HasAtBothEnds(after, seq)) return seq;
            log << "Same edge in the gap, using after sequence\n";
            return after;
        }
    }
    if (Length(after) > Min_overlap + gapsize) {
        seq = connect_before(before_edge, after, gapsize, threadId);
        if (!IsOpen(seq)) {
            if (!HasAtBothEnds(before, seq)) return seq;
            log << "Same edge in the gap, using before sequence\n";
            return before;
        }
    }
    log << "The overlap with edge is not sure. Then connect the before and after and cut the overlap region.\n";
    return CutOverlap(before, after, overlen, gapsize);
}

namespace {

/// The gap's text when `before` and `after` overlap in `len` bases. What stays below half of the gap is filled up with
/// N and the expansion that it was not taken from.
std::string TakeOverlap(const std::string& before, const std::string& after, int len, int gapsize) {
    if (len >= Length(after)) {
        std::string seq = Head(before, Length(before) - len + Length(after));
        if (gapsize * 0.5 > Length(seq) && Length(seq) + Length(after) < gapsize) {
            return seq + Ns(gapsize - Length(seq) - Length(after)) + after;
        }
        return seq;
    }
    if (len < Length(before)) return before + From(after, len);
    std::string seq = From(after, len - Length(before));
    if (gapsize * 0.5 > Length(seq) && Length(seq) + Length(before) < gapsize) {
        return before + Ns(gapsize - Length(seq) - Length(before)) + seq;
    }
    return seq;
}

}  // namespace

std::string Check_possible_over(const std::string& before, const std::string& after, const std::string& contig1,
                                const std::string& contig2, int gapsize, int threadId) {
    int n_len = gapsize - Length(before) - Length(after);
    if (n_len == 0) n_len = static_cast<int>(gapsize * 0.1);
    std::string apart = before + Ns(n_len) + after;
    if (gapsize * 0.5 > Length(before) + Length(after) || Length(after) <= 5 || Length(before) < 6) return apart;
    std::string seq;
    if (IsZeroGap(before, after, contig1, contig2, gapsize, seq, threadId)) return seq;
    int match = align_connect(before, after, min_align);
    if (match >= 0) return TakeOverlap(before, after, min_align + match, gapsize);
    if (gapsize > 150) return apart;
    logFile[threadId] << "Can not decide the real overlap, try to exchange the before and after.\n";
    match = align_connect(after, before, min_align);
    if (match < 0) return apart;
    logFile[threadId] << "The real gap size may be much less than the estimate gap size\n";
    return Head(before, min_align + match);
}

std::string Check_possible_after(const std::string& before, const std::string& after, int gapsize, int threadId) {
    const std::string n_part = Ns(gapsize - Length(before));
    if (Length(after) < min_align || Length(before) < min_align) return before + n_part;
    if (gapsize > 300 && gapsize * 0.5 > Length(before)) return before + n_part;
    const int match = align_connect(before, after, min_align);
    const int len = min_align + match;
    if (match < 0 || len >= Length(before) || len >= Length(after)) return before + n_part;
    std::string seq = WithoutLast(before, len);
    if (gapsize * 0.3 > Length(seq)) return seq + Ns(gapsize - Length(seq));
    logFile[threadId] << "The gap fullfilled with length: " << Length(seq) << '\n';
    return seq;
}

std::string Check_possible_before(const std::string& before, const std::string& after, int gapsize, int threadId) {
    const std::string n_part = Ns(gapsize - Length(after));
    if (Length(after) < min_align || Length(before) < min_align) return n_part + after;
    if (gapsize > 300 && gapsize * 0.5 > Length(after)) return n_part + after;
    const int match = align_connect(before, after, min_align);
    const int len = min_align + match;
    if (match < 0 || len >= Length(before) || len >= Length(after)) return n_part + after;
    std::string seq = From(after, len);
    if (gapsize * 0.3 > Length(seq)) return Ns(gapsize - Length(seq)) + seq;
    logFile[threadId] << "The gap fullfilled with length: " << Length(seq) << '\n';
    return seq;
}

}  // namespace lintara
