#include "repeat/tandem_multi.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "align/edge_align.h"
#include "consensus/seed.h"
#include "join/checks.h"
#include "repeat/tandem_block.h"
#include "repeat/tandem_piece.h"
#include "repeat/type.h"
#include "run/settings.h"
#include "run/streams.h"
#include "solve/block.h"

namespace lintara {

using namespace tandem;

namespace {

const int kShortestJoin = 6;  // bases of an overlap that joins the two sides

/// A gap on its way from the edges to its text.
struct MultiGap {
    std::vector<Read>& reads;
    TagInfo*& tagInfo;
    std::map<std::string, int>& repeat_unit;
    int gap_len;
    int threadId;
    std::string edge1;  // before edge
    std::string edge2;  // after edge
    int unit_len = 0;
    std::set<std::string> units{};
    std::string last_unit{};  // stays empty: there is no single phase
    int last_num1 = 0;        // stay 0, too
    int last_num2 = 0;
    std::string before{};  // before edge and what was grown behind it
    std::string after{};   // what was grown in front of the after edge, and that edge

    std::ofstream& Log() const { return logFile[threadId]; }
    int Grown1() const { return Length(before) - Length(edge1); }
    int Grown2() const { return Length(after) - Length(edge2); }
};

void CollectUnits(MultiGap& gap) {
    gap.Log() << "Solve the Multi tandem repeat unit block\n";
    gap.Log() << "caculate the units set\n";
    gap.Log() << "repeat units: \n";
    if (!gap.repeat_unit.empty()) gap.unit_len = Length(gap.repeat_unit.begin()->first);
    for (const auto& [unit, copies] : gap.repeat_unit) {
        gap.Log() << unit << "\n";
        AddRotations(unit, gap.units);
    }
}

/// Whether the gap goes the ordinary road: too little of the repeat in the edges, or units that prove nothing.
bool GoesTheOrdinaryRoad(MultiGap& gap) {
    gap.Log() << "check contig edge \n";
    const int len1 = Multi_tail_check(gap.edge1, gap.units, gap.unit_len);
    const int len2 = Multi_tail_check(gap.units, gap.edge2, gap.unit_len);
    gap.Log() << "before edge len: " << len1 << "\tafter edge len: " << len2 << "\n";
    const bool edges_show_little =
        len1 + gap.unit_len < Min_overlap && len2 + gap.unit_len < Min_overlap && 2 * ReadLen > gap.gap_len;
    return edges_show_little || gap.unit_len == 1 || 1.5 * gap.unit_len >= gap.gap_len;
}

/// Anchors each read on the before edge if it can, uncut, and otherwise on the after edge.
void AnchorReads(MultiGap& gap, std::vector<int>& start, std::vector<int>& end) {
    const EdgeSeeds edge1(gap.edge1);
    const EdgeSeeds edge2(gap.edge2);
    for (int i = 1; i < static_cast<int>(gap.reads.size()) - 1; ++i) {
        std::string& read = gap.reads[i].seq;
        const Anchor before = BeforeAnchor(edge1, read);
        if (before.overlap <= Length(read)) {
            start[i] = SeedOverlap(before.overlap, gap.last_num1 * gap.unit_len, gap.unit_len);
        }
        if (start[i] > 0) continue;
        const Anchor after = AfterAnchor(read, edge2);
        if (after.overlap <= Length(read)) {
            end[i] = SeedOverlap(after.overlap, gap.last_num2 * gap.unit_len, gap.unit_len);
        }
        if (after.overhang >= 1) read = Head(read, Length(read) - after.overhang);
    }
}

void GrowEdges(MultiGap& gap) {
    gap.Log() << "caculate first and last read overlap\n";
    std::vector<int> start(gap.reads.size(), 0);
    std::vector<int> end(gap.reads.size(), 0);
    AnchorReads(gap, start, end);
    gap.Log() << "get the start and end\tlast_num1: " << gap.last_num1 << "\tlast num2 " << gap.last_num2 << "\n";
    gap.before = forward_expand(start.data(), gap.reads, gap.threadId);
    gap.Log() << "before seq(Containing first read): " << gap.before << "\tsize: " << gap.before.size() << "\n";
    gap.Log() << "Last unit is: " << gap.last_unit << "\n";
    gap.after = reward_expand(end.data(), gap.reads, gap.threadId);
    gap.Log() << "after seq: " << gap.after << "\tsize: " << gap.after.size() << "\n";
}

/// Bases by which the two sides exceed the gap and its edges.
int Surplus(const MultiGap& gap) {
    return gap.Grown1() + gap.Grown2() - gap.gap_len;
}

/// The shortest overlap to look for: a third of the surplus, at most the gap, halved to one side where that side is
/// shorter.
int ShortestOverlap(const MultiGap& gap) {
    int m = std::min(Surplus(gap) / 3, gap.gap_len);
    if (m > Length(gap.before)) m = Length(gap.before) / 2;
    if (m > Length(gap.after)) m = Length(gap.after) / 2;
    return std::max(m, kShortestJoin);
}

/// Whether an overlap is more than repeat and stands once only.
bool Trusted(MultiGap& gap, std::string overlap) {
    return Unit_check(overlap, gap.units, gap.unit_len) == 1 && CheckOver(overlap, gap.tagInfo, gap.reads);
}

/// Joins what was grown from both sides. Frees what the gap no longer needs before the text is made.
std::optional<std::string> JoinBothSides(MultiGap& gap, int min) {
    if (gap.Grown1() <= kShortestJoin || gap.Grown2() <= kShortestJoin) return std::nullopt;
    const int match = align_connect(gap.before, gap.after, min);
    const int over = match + min;
    gap.Log() << "match " << match << " min " << min << "\n";
    if (match <= 0 || over > gap.Grown1() || over > gap.Grown2()) return std::nullopt;
    gap.Log() << "Have overlap between before and after expand sequence, with overlap length: " << over << "\n";
    if (!Trusted(gap, Head(gap.after, over))) return std::nullopt;
    FreetagInfo(gap.tagInfo);
    gap.reads.clear();
    gap.repeat_unit.clear();
    const std::string whole = gap.before + From(gap.after, over);
    const int edges = Length(gap.edge1) + Length(gap.edge2);
    if (Length(whole) >= edges) return Piece(whole, Length(gap.edge1), Length(whole) - edges);
    gap.Log() << "real gapsize maybe minus!\t -" << edges - Length(whole) << "\n";
    return std::string();
}

// An overlap that takes all that was grown is refused here and in the twin, unlike one of both sides.
std::optional<std::string> JoinToAfterEdge(MultiGap& gap, int min) {
    if (gap.Grown1() <= gap.gap_len + gap.unit_len) return std::nullopt;
    const int match = align_connect(gap.before, gap.edge2, min);
    const int over = match + min;
    gap.Log() << "match with after edge: " << match << "\n";
    if (match <= 0 || over >= gap.Grown1()) return std::nullopt;
    if (!Trusted(gap, Tail(gap.before, over))) return std::nullopt;
    gap.Log() << "Before seq have overlap with the last read\t" << match << "\t" << min << "\n";
    return Piece(gap.before, Length(gap.edge1), gap.Grown1() - over);
}

// Unlike its twin it tells when it cannot be asked, and names the overlap before it is trusted.
std::optional<std::string> JoinToBeforeEdge(MultiGap& gap, int min) {
    if (gap.Grown2() <= gap.gap_len + gap.unit_len) {
        gap.Log() << "Failed to make sure the overlap\n";
        return std::nullopt;
    }
    const int match = align_connect(gap.edge1, gap.after, min);
    const int over = match + min;
    gap.Log() << "match with before edge: " << match << "\n";
    if (match <= 0 || over >= gap.Grown2()) return std::nullopt;
    gap.Log() << "Have overlap with the before edge " << over << "\n";
    if (!Trusted(gap, Head(gap.after, over))) return std::nullopt;
    gap.Log() << "After seq have overlap with the first read\t" << match << "\t" << min << "\n";
    return Piece(gap.after, over, gap.Grown2() - over);
}

/// A trusted overlap, if the two sides are long enough to meet.
std::optional<std::string> Join(MultiGap& gap) {
    if (Surplus(gap) <= 2 * gap.unit_len) return std::nullopt;
    const int min = ShortestOverlap(gap);
    if (std::optional<std::string> seq = JoinBothSides(gap, min)) return seq;
    if (std::optional<std::string> seq = JoinToAfterEdge(gap, min)) return seq;
    return JoinToBeforeEdge(gap, min);
}

/// Cuts both sides down to their flanks: what was grown without the edge and without the repeat.
void KeepFlanks(MultiGap& gap) {
    int expand_before = -1;
    int expand_after = -1;
    int expand_num1 = 0;  // counted, and of no further use here
    int expand_num2 = 0;
    if (gap.Grown1() > 0) {
        expand_before = tail_check(gap.before, gap.units, gap.unit_len, expand_num1, gap.last_unit, Length(gap.edge1));
    }
    if (gap.Grown2() > 0) {
        // The copies in the edge are never counted, so they cannot be fewer than none.
        if (expand_before < gap.unit_len && gap.last_num1 < 0) {
            expand_after =
                tail_checknolast(gap.units, gap.after, gap.unit_len, expand_num2, gap.last_unit, Length(gap.edge2));
        } else {
            expand_after =
                tail_check(gap.units, gap.after, gap.unit_len, expand_num2, gap.last_unit, Length(gap.edge2));
        }
    }
    gap.Log() << "Last unit is: " << gap.last_unit << "\t" << gap.unit_len << "\n";
    gap.Log() << "before expand length: " << expand_before << "\tafter expand length: " << expand_after << "\n";
    gap.before = expand_before < 0 ? "" : Piece(gap.before, Length(gap.edge1), gap.Grown1() - expand_before);
    gap.after = expand_after < 0 ? "" : Piece(gap.after, expand_after, gap.Grown2() - expand_after);
}

/// Cuts flanks that exceed the gap at their far side from the edge.
void TrimFlanks(MultiGap& gap) {
    if (gap.gap_len <= gap.unit_len) return;
    const int room = gap.gap_len - gap.unit_len;
    if (Length(gap.before) > gap.gap_len) gap.before = Head(gap.before, room);
    if (Length(gap.after) > gap.gap_len) gap.after = Tail(gap.after, room);
}

/// The flanks with the N that make up the gap's length, one at least where the flanks exceed it.
std::string FitToGap(const std::string& before, const std::string& after, int gap_len) {
    const int before_len = Length(before);
    const int after_len = Length(after);
    if (before_len + after_len <= gap_len) return before + Ns(gap_len - before_len - after_len) + after;
    if (after_len >= gap_len - 1 || before_len >= gap_len - 1) return Ns(gap_len);
    // The flanks exceed the gap, so the before one is always what gives way.
    if (before_len > gap_len - after_len - 1) return Head(before, gap_len - after_len - 1) + "N" + after;
    if (after_len <= gap_len - before_len - 1) return Ns(gap_len);
    return before + "N" + Tail(after, gap_len - before_len - 1);
}

}  // namespace

std::string solve_MTR_block(std::vector<Read>& reads, TagInfo*& tagInfo, std::map<std::string, int>& repeat_unit,
                            int gap_len, int& type, int& realgaplen, int threadId) {
    MultiGap gap{reads, tagInfo, repeat_unit, gap_len, threadId, reads.front().seq, reads.back().seq};
    CollectUnits(gap);
    if (GoesTheOrdinaryRoad(gap)) {
        gap.Log() << "Using TE to assemble the TR gap!\n";
        return assemble_block(reads, Method, type, tagInfo, realgaplen, threadId);
    }
    GrowEdges(gap);
    if (std::optional<std::string> seq = Join(gap)) return *seq;
    KeepFlanks(gap);
    TrimFlanks(gap);
    gap.Log() << "Get final sequence with before: " << gap.before << " after: " << gap.after << "\n";
    gap.Log() << "TR unfull filled!\t" << gap_len << "\n";
    return FitToGap(gap.before, gap.after, gap_len);
}

}  // namespace lintara
