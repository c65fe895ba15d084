#include "solve/short_solver.h"

#include <algorithm>

#include "consensus/edge.h"
#include "consensus/path.h"
#include "join/edge_connect.h"
#include "join/expand_connect.h"
#include "join/short_expand.h"
#include "join/three_way.h"
#include "run/settings.h"
#include "run/streams.h"
#include "solve/block.h"
#include "solve/halves.h"
#include "walk/max_walks.h"

namespace lintara {

namespace {

struct ShortSolver {
    std::uint8_t**& matrix;
    std::vector<Read>& reads;
    int*& start;
    int*& end;
    TagInfo*& tagInfo;
    int& realgaplen;
    int threadId;

    std::string before{};       ///< grown from the before edge
    std::string after{};        ///< grown back from the after edge
    std::string seq{};          ///< the gap's text, once it is known
    std::vector<int> starts{};  ///< path from the before edge
    std::vector<int> ends{};    ///< path to the after edge, left to right

    std::uint16_t num() const { return static_cast<std::uint16_t>(reads.size()); }
    int last() const { return num() - 1; }
    int gap_length() const { return reads.back().pos; }
    std::ofstream& log() const { return logFile[threadId]; }
};

std::string PathSequence(const ShortSolver& s, const std::vector<int>& order, int posit) {
    return get_gap_seq(s.matrix, s.reads, order, posit, s.end, s.threadId);
}

/// Sequence of a path between both edges: voted, or the run of N of overlapping edges with realgaplen set.
std::string CompletePath(ShortSolver& s, const std::vector<int>& order) {
    std::string path = PathSequence(s, order, 2);
    if (!IsMinusGap(path, s.realgaplen)) {
        Get_snp(path, order, s.matrix, s.reads, s.start, s.end, s.threadId);
    }
    return path;
}

/// @return whether the walk from the before edge crossed the gap; `seq` then holds its text
bool WalkFromBefore(ShortSolver& s) {
    forwardmax(s.starts, s.reads, s.matrix, s.num(), 0, 0, s.threadId);
    clearn_order(s.starts);
    if (s.starts.size() <= 1) {
        s.log() << "No reads forward\n";
        return false;
    }
    if (s.starts.back() == s.last()) {
        s.seq = CompletePath(s, s.starts);
        return true;
    }
    s.before = PathSequence(s, s.starts, 0);
    Get_snp_before(s.before, s.starts, s.matrix, s.reads, s.start, false, s.threadId);
    s.log() << ">starts number: " << s.starts.size() << "\t" << s.before.size() << "\t" << s.gap_length() << "\n"
            << s.before << "\n";
    return false;
}

/// The twin from the after edge; differs on purpose in that it logs a crossing, and in the line without the gap's
/// length.
bool WalkFromAfter(ShortSolver& s) {
    rewardmax(s.ends, s.reads, s.matrix, s.num(), s.last(), 0, s.threadId);
    clearn_order(s.ends);
    if (s.ends.size() <= 1) {
        s.log() << "No reads reward\n";
        return false;
    }
    const bool reached_before_edge = s.ends.back() == 0;
    s.ends = reverse_vector(s.ends);
    if (reached_before_edge) {
        s.log() << "reward have the first one!\n";
        s.seq = CompletePath(s, s.ends);
        return true;
    }
    s.after = PathSequence(s, s.ends, 1);
    Get_snp_after(s.after, s.ends, s.matrix, s.reads, s.end, false, s.threadId);
    s.log() << ">end number: " << s.ends.size() << "\t" << s.after.size() << "\n" << s.after << "\n";
    return false;
}

std::string FillShortGap(ShortSolver& s) {
    return SmallExpandFill(s.matrix, s.reads, s.start, s.end, s.tagInfo, s.realgaplen, s.threadId);
}

/// A path in the middle of the block that touches neither edge. @return the gap's text
std::string ConnectMiddlePath(ShortSolver& s) {
    s.seq = PathSequence(s, s.ends, -1);
    if (s.ends.back() == 0 || s.ends.front() == s.last()) {
        s.log() << "The gap size may be zero!\n";
        return "";
    }
    Get_snp_middle(s.seq, s.ends, s.matrix, s.reads, s.threadId);
    s.seq = ConnectThree(s.reads[0].seq, s.seq, s.reads.back().seq, s.reads, s.gap_length(), s.realgaplen, s.threadId);
    s.log() << ">middle " << s.ends.size() << "\t" << s.seq.size() << "\n" << s.seq << "\n";
    return s.seq;
}

/// Walks both ways from the best-linked read, since the edges gave too little.
///
/// @return whether that settles the gap; `seq` then holds its text. Otherwise a half may have been set
bool AssembleFromTheMiddle(ShortSolver& s) {
    s.starts.clear();
    s.ends.clear();
    const int minus_len = GetMax(s.matrix, s.num());
    s.log() << "Middle assembly starting from id: " << minus_len << "\n";
    forwardmax(s.starts, s.reads, s.matrix, s.num(), minus_len, 0, s.threadId);
    rewardmax(s.ends, s.reads, s.matrix, s.num(), minus_len, 0, s.threadId);
    s.ends = reverse_vector(s.ends);
    clearn_order(s.ends);
    s.log() << "ends size " << s.ends.size() << "\n";
    // The seed stands in both paths.
    if (!s.starts.empty()) s.ends.insert(s.ends.end(), s.starts.begin() + 1, s.starts.end());
    clearn_order(s.ends);
    s.starts.clear();
    s.log() << "ends size " << s.ends.size() << "\n";
    if (s.ends.size() > 1) {
        const bool from_before = s.ends.front() == 0;
        const bool to_after = s.ends.back() == s.last();
        if (from_before && to_after) {
            s.seq = CompletePath(s, s.ends);
            return true;
        }
        if (from_before) {
            s.before = PathSequence(s, s.ends, 0);
        } else if (to_after) {
            s.after = PathSequence(s, s.ends, 1);
        } else {
            s.seq = ConnectMiddlePath(s);
            return true;
        }
    }
    if (Length(s.before) < min_align && Length(s.after) < min_align && s.gap_length() < ReadLen) {
        s.seq = FillShortGap(s);
        return true;
    }
    return false;
}

}  // namespace

std::string solve_matrix3(std::uint8_t**& matrix, std::vector<Read>& reads, int*& start, int*& end, TagInfo*& tagInfo,
                          int& realgaplen, int threadId) {
    ShortSolver s{matrix, reads, start, end, tagInfo, realgaplen, threadId};
    s.seq.assign(static_cast<std::size_t>(std::max(s.gap_length(), 0)), 'N');
    s.log() << "Starting to treat the matrix use max overlap mathod\n";
    if (WalkFromBefore(s) || WalkFromAfter(s)) return s.seq;
    if (Length(s.before) <= min_align && Length(s.after) <= min_align && s.gap_length() < ReadLen &&
        s.starts.size() > 1 && s.ends.size() > 1) {
        return FillShortGap(s);
    }
    if (HalvesTooSmall(s.before, s.after, s.gap_length()) && AssembleFromTheMiddle(s)) return s.seq;
    if (s.starts.size() > 1 || s.ends.size() >= 2) {
        s.log() << "try to connect the forward and reward!\n";
        s.seq = ExpandConnect(s.before, s.after, reads[0].seq, reads.back().seq, s.gap_length(), reads, tagInfo, false,
                              false, realgaplen, threadId);
    }
    return s.seq;
}

}  // namespace lintara
