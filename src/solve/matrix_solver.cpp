#include "solve/matrix_solver.h"

#include <algorithm>

#include "align/edge_align.h"
#include "align/search.h"
#include "consensus/edge.h"
#include "consensus/path.h"
#include "join/edge_connect.h"
#include "join/expand_connect.h"
#include "kmer/open_matrix.h"
#include "run/settings.h"
#include "run/streams.h"
#include "solve/halves.h"
#include "solve/short_solver.h"
#include "walk/candidates.h"
#include "walk/walks.h"

namespace lintara {

namespace {

/// Everything known of one block while its halves grow.
struct Solver {
    std::uint8_t**& matrix;
    std::vector<Read>& reads;
    int*& start;
    int*& end;
    int& type;
    TagInfo*& tagInfo;
    int& realgaplen;
    int threadId;

    std::string before{};       ///< grown from the before edge
    std::string after{};        ///< grown back from the after edge
    std::vector<int> starts{};  ///< path from the before edge
    std::vector<int> ends{};    ///< path from the after edge: from right to left as walked, turned round by the solver
    bool noreadbreak1 = false;  ///< the forward walk ended because reads ran out
    bool noreadbreak2 = false;  ///< the same of the reward walk
    bool cycled = false;        ///< the forward walk ran into a repeat
    bool ER = false;            ///< an edge had no reads

    std::uint16_t num() const { return static_cast<std::uint16_t>(reads.size()); }
    int last() const { return num() - 1; }
    int gap_length() const { return reads.back().pos; }
    std::ofstream& log() const { return logFile[threadId]; }
};

/// Raw sequence of an order, with the mode of get_gap_seq().
std::string PathSequence(const Solver& s, const std::vector<int>& order, int posit) {
    return get_gap_seq(s.matrix, s.reads, order, posit, s.end, s.threadId);
}

std::string SolveByShortSteps(Solver& s) {
    return solve_matrix3(s.matrix, s.reads, s.start, s.end, s.tagInfo, s.realgaplen, s.threadId);
}

/// Takes off what belongs to the edges when a sequence is longer than an edge and the gap longer than a read.
void CutLongSequence(Solver& s, std::string& seq) {
    const bool longer = Length(seq) > Length(s.reads.back().seq) || Length(seq) > Length(s.reads[0].seq);
    if (longer && s.gap_length() > ReadLen) {
        LongCut(seq, s.reads[0].seq, s.reads.back().seq, s.gap_length(), s.threadId);
    }
}

void WriteEndLine(const Solver& s) {
    s.log() << ">end number: " << s.ends.size() << "\t" << s.after.size() << "\n" << s.after << "\n";
}

/// Weighs a reward path across the gap against the forward half. @return whether the forward half speaks for it
bool WeighAgainstBefore(Solver& s) {
    bool before_support = false;
    if (Length(s.before) > min_align && Length(s.after) > min_align) {
        s.after = RewardCheck(s.before, s.after, s.gap_length(), s.reads, s.tagInfo, before_support, s.threadId);
    }
    return before_support;
}

/// The forward walk has reached the after edge. @return the gap's text
std::string FinishForward(Solver& s) {
    if (s.starts.size() == 2 && s.starts[0] == 0) {
        const int cell = Cell(s.matrix, 0, s.last());
        s.log() << "before edge and afer edge have overlap, the gap size is minus -" << cell << "\n";
        s.realgaplen = -cell;
        return s.before;
    }
    s.before = PathSequence(s, s.starts, 2);
    if (IsMinusGap(s.before, s.realgaplen)) return s.before;
    Get_snp(s.before, s.starts, s.matrix, s.reads, s.start, s.end, s.threadId);
    if (s.gap_length() / 3 > Length(s.before)) return SolveByShortSteps(s);
    CutLongSequence(s, s.before);
    return s.before;
}

/// The reward walk has reached the before edge. @return the gap's text
std::string FinishReward(Solver& s) {
    s.after = PathSequence(s, s.ends, 2);
    if (IsMinusGap(s.after, s.realgaplen)) return s.after;
    Get_snp(s.after, s.ends, s.matrix, s.reads, s.start, s.end, s.threadId);
    const bool before_support = WeighAgainstBefore(s);
    if (Length(s.after) < s.gap_length() / 3 && !before_support) return SolveByShortSteps(s);
    CutLongSequence(s, s.after);
    return s.after;
}

/// The reward walk ran into what the forward walk had already built: goes on from its last read with that stretch
/// barred.
///
/// @param over  bases by which the end of the forward half overlaps the start of the reward half
/// @return whether the gap's text is complete, in `after`
bool ResumeReward(Solver& s, int over) {
    std::string drop_seq = s.before.substr(0, s.before.size() - static_cast<std::size_t>(over));
    if (Length(drop_seq) <= Min_overlap) drop_seq = s.reads[0].seq + drop_seq;
    s.ends = reverse_vector(s.ends);
    const std::size_t initial_size = s.ends.size();
    const int startid = s.ends.back();
    drop(startid, s.ends);
    reward(s.reads, s.ends, s.matrix, s.num(), startid, 0, drop_seq, s.cycled, s.threadId);
    s.ends = reverse_vector(s.ends);
    clearn_order(s.ends);
    // A walk that gained nothing leaves the reward half as it was.
    if (s.ends.size() <= initial_size) s.ends.clear();
    if (s.ends.size() <= 1) return false;
    if (s.ends.front() != 0) {
        s.after = PathSequence(s, s.ends, 1);
        Get_snp_after(s.after, s.ends, s.matrix, s.reads, s.end, false, s.threadId);
        return false;
    }
    s.after = PathSequence(s, s.ends, 2);
    if (IsMinusGap(s.after, s.realgaplen)) return true;
    Get_snp(s.after, s.ends, s.matrix, s.reads, s.start, s.end, s.threadId);
    const bool before_support = WeighAgainstBefore(s);
    s.log() << (before_support ? "before support!\n" : "before not support!\n");
    return true;
}

/// Holds the two halves against each other and resumes the reward walk where they overlap.
///
/// @return whether the gap's text is complete, in `after`
bool CompareHalves(Solver& s) {
    const int match = align_connect(s.before, s.after, min_align);
    s.log() << "after expand end, overlapped with before: " << min_align + match << "\n";
    double ratio = 0;
    if (Length(s.after) > Length(s.before)) ratio = GetMatchRatio(s.before, s.after, Length(s.before));
    if (match < 0 && ratio > 0.95) {
        // The reward half holds the forward half at its start.
        s.after.erase(0, s.before.size());
        s.noreadbreak1 = false;
        s.noreadbreak2 = false;
    }
    const int over = min_align + match;
    return match >= 0 && over < Length(s.before) && ResumeReward(s, over);
}

/// The reward walk took no step: a second try, with the forward half barred.
///
/// @return whether the gap's text is complete, in `after`
bool RetryReward(Solver& s) {
    const int match = align_connect(s.before, s.reads.back().seq, min_align);
    std::string drop_seq = s.before;
    if (match >= 0 && Length(s.before) > 2 * min_align + match) {
        drop_seq.resize(drop_seq.size() - static_cast<std::size_t>(match + min_align));
    }
    s.ends.clear();
    reward(s.reads, s.ends, s.matrix, s.num(), s.last(), 0, drop_seq, s.cycled, s.threadId);
    if (s.ends.size() > 1) {
        s.ends = reverse_vector(s.ends);
        if (s.ends.front() == 0) {
            s.after = PathSequence(s, s.ends, 2);
            if (!IsMinusGap(s.after, s.realgaplen)) {
                Get_snp(s.after, s.ends, s.matrix, s.reads, s.start, s.end, s.threadId);
            }
            return true;
        }
        s.after = PathSequence(s, s.ends, 1);
        Get_snp_after(s.after, s.ends, s.matrix, s.reads, s.end, false, s.threadId);
    }
    WriteEndLine(s);
    return false;
}

/// Walks from the before edge. @return whether the walk reached the after edge
bool GrowBefore(Solver& s) {
    s.noreadbreak1 = forward(s.reads, s.starts, s.matrix, s.num(), 0, 0, s.cycled, s.ER, s.threadId);
    if (s.ER) s.type = -1;
    clearn_order(s.starts);
    if (s.starts.size() <= 1) {
        s.log() << "No reads forward\n";
        return false;
    }
    if (s.starts.back() == s.last()) return true;
    s.before = PathSequence(s, s.starts, 0);
    Get_snp_before(s.before, s.starts, s.matrix, s.reads, s.start, s.noreadbreak1, s.threadId);
    s.log() << ">starts number: " << s.starts.size() << "\t" << s.before.size() << "\t" << s.gap_length() << "\n"
            << s.before << "\n";
    return false;
}

/// Turns a reward path that ends inside the gap into the reward half, and resumes the walk where the halves overlap.
///
/// @return whether the gap's text is complete, in `after`
bool GrowAfter(Solver& s) {
    s.after = PathSequence(s, s.ends, 1);
    Get_snp_after(s.after, s.ends, s.matrix, s.reads, s.end, s.noreadbreak2, s.threadId);
    return Length(s.before) > min_align && Length(s.after) > min_align && CompareHalves(s);
}

}  // namespace

std::string solve_matrix(std::uint8_t**& matrix, std::vector<Read>& reads, int*& start, int*& end, int& type,
                         TagInfo*& tagInfo, int& realgaplen, int threadId) {
    Solver s{matrix, reads, start, end, type, tagInfo, realgaplen, threadId};
    s.log() << "starting to solve the gap and its matrix\n";
    if (GrowBefore(s)) return FinishForward(s);

    s.noreadbreak2 = reward(reads, s.ends, matrix, s.num(), s.last(), 0, s.ER, threadId);
    if (s.ER) type = -1;
    clearn_order(s.ends);
    const bool took_a_step = s.ends.size() > 1;
    if (took_a_step) {
        const bool reached_before_edge = s.ends.back() == 0;
        s.ends = reverse_vector(s.ends);
        if (reached_before_edge) return FinishReward(s);
        if (GrowAfter(s)) return s.after;
    }
    WriteEndLine(s);
    if (!took_a_step) {
        s.log() << "reword reassemble: " << s.cycled << "\n";
        if (Length(s.before) > min_align) {
            if (RetryReward(s)) return s.after;
        } else {
            s.log() << "No reads reward\n";
        }
    }

    if (HalvesTooSmall(s.before, s.after, s.gap_length())) return SolveByShortSteps(s);
    std::string seq(static_cast<std::size_t>(std::max(s.gap_length(), 0)), 'N');
    if (s.starts.size() > 1 || s.ends.size() > 1) {
        s.log() << "Try to connect forward path and reward path in the matrix\n";
        seq = ExpandConnect(s.before, s.after, reads[0].seq, reads.back().seq, s.gap_length(), reads, tagInfo,
                            s.noreadbreak1, s.noreadbreak2, realgaplen, threadId);
    }
    return seq;
}

}  // namespace lintara
