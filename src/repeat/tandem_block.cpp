#include "repeat/tandem_block.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "align/edge_align.h"
#include "consensus/seed.h"
#include "join/checks.h"
#include "repeat/tandem_piece.h"
#include "run/settings.h"
#include "run/streams.h"
#include "solve/block.h"

namespace lintara {

using namespace tandem;

namespace {

const int kShortestJoin = 6;  // bases of an overlap that joins the two sides

/// A gap on its way from the edges to its text.
struct TandemGap {
    std::vector<Read>& reads;
    TagInfo*& tagInfo;
    int unit_len;
    int gap_len;
    int threadId;
    std::string edge1;  // before edge
    std::string edge2;  // after edge
    std::set<std::string> units{};
    std::string last_unit{};
    int last_num1 = 0;  // copies of last_unit in the before edge, later in its flank, too
    int last_num2 = 0;
    std::string before{};    // before edge and what was grown behind it
    std::string after{};     // what was grown in front of the after edge, and that edge
    int expand_before = -1;  // bases at the end of `before` that are repeat; negative: nothing to keep
    int expand_after = -1;

    std::ofstream& Log() const { return logFile[threadId]; }
    int Grown1() const { return Length(before) - Length(edge1); }
    int Grown2() const { return Length(after) - Length(edge2); }
};

void MeasureEdges(TandemGap& gap, const std::string& repeat_unit, int TRNum) {
    gap.Log() << "check contig edge \n";
    const int len1 = tail_check(gap.edge1, gap.units, gap.unit_len, gap.last_num1, gap.last_unit);
    if (gap.last_unit.empty()) gap.last_unit = repeat_unit;
    const int len2 = tail_check(gap.units, gap.edge2, gap.unit_len, gap.last_num2, gap.last_unit);
    gap.Log() << "last unit: " << gap.last_unit << "\ttotal number: " << TRNum << "\tbefore edge num: " << gap.last_num1
              << "\t after edge num: " << gap.last_num2 << "\n";
    gap.Log() << "before edge len: " << len1 << "\tafter edge len: " << len2 << "\n";
    gap.Log() << "caculate first and last read overlap\t" << gap.gap_len << "\t" << ReadLen << "\n";
}

bool EdgesShowLittle(const TandemGap& gap) {
    return gap.last_num1 * gap.unit_len < Min_overlap && gap.last_num2 * gap.unit_len < Min_overlap &&
           2 * ReadLen > gap.gap_len;
}

/// Lets each read anchor on the one edge that it shares more with, the after edge on a tie, and cuts it there.
void AnchorReads(TandemGap& gap, std::vector<int>& start, std::vector<int>& end) {
    const EdgeSeeds edge1(gap.edge1);
    const EdgeSeeds edge2(gap.edge2);
    for (int i = 1; i < static_cast<int>(gap.reads.size()) - 1; ++i) {
        std::string& read = gap.reads[i].seq;
        const Anchor before = BeforeAnchor(edge1, read);
        const Anchor after = AfterAnchor(read, edge2);
        if (before.overlap < Length(read)) {
            start[i] = SeedOverlap(before.overlap, gap.last_num1 * gap.unit_len, gap.unit_len);
        }
        if (after.overlap < Length(read)) {
            end[i] = SeedOverlap(after.overlap, gap.last_num2 * gap.unit_len, gap.unit_len);
        }
        // The read is cut for its overhang even where the overlap was refused.
        if (start[i] <= end[i]) {
            start[i] = 0;
            if (after.overhang >= 1) read = Head(read, Length(read) - after.overhang);
        } else {
            end[i] = 0;
            if (before.overhang > 0) read = From(read, before.overhang);
        }
    }
}

void GrowEdges(TandemGap& gap) {
    std::vector<int> start(gap.reads.size(), 0);
    std::vector<int> end(gap.reads.size(), 0);
    AnchorReads(gap, start, end);
    gap.Log() << "get the start and end\tlast_num1: " << gap.last_num1 << "\tlast num2 " << gap.last_num2 << "\n";
    gap.before = forward_expand(start.data(), gap.reads, gap.threadId);
    gap.Log() << "before seq(Containing first read): " << gap.before << "\tsize: " << gap.before.size() << "\n";
    gap.after = reward_expand(end.data(), gap.reads, gap.threadId);
    gap.Log() << "after seq: " << gap.after << "\tsize: " << gap.after.size() << "\n";
}

/// Bases by which the two sides exceed the gap and its edges.
int Surplus(const TandemGap& gap) {
    return gap.Grown1() + gap.Grown2() - gap.gap_len;
}

/// The shortest overlap to look for: half of the surplus, halved to one side where that side is shorter.
int ShortestOverlap(const TandemGap& gap) {
    int m = Surplus(gap) / 2;
    if (m > Length(gap.before)) m = Length(gap.before) / 2;
    if (m > Length(gap.after)) m = Length(gap.after) / 2;
    return std::max(m, kShortestJoin);
}

/// Whether an overlap is more than repeat and stands once only.
bool Trusted(TandemGap& gap, std::string overlap) {
    return Unit_check(overlap, gap.units, gap.unit_len) == 1 && CheckOver(overlap, gap.tagInfo, gap.reads);
}

/// Joins what was grown from both sides. Edges that overlap give an empty text and a word in the log; the caller is
/// not told by how much.
std::optional<std::string> JoinBothSides(TandemGap& gap, int min) {
    if (gap.Grown1() <= kShortestJoin || gap.Grown2() <= kShortestJoin) return std::nullopt;
    const int match = align_connect(gap.before, gap.after, min);
    const int over = match + min;
    if (match <= 0 || over > gap.Grown1() || over > gap.Grown2()) return std::nullopt;
    gap.Log() << "Have overlap between before and after expand sequence, with overlap length: " << over << "\n";
    if (!Trusted(gap, Head(gap.after, over))) return std::nullopt;
    const std::string whole = gap.before + From(gap.after, over);
    const int edges = Length(gap.edge1) + Length(gap.edge2);
    if (Length(whole) >= edges) return Piece(whole, Length(gap.edge1), Length(whole) - edges);
    gap.Log() << "real gapsize maybe minus!\t -" << edges - Length(whole) << "\n";
    return std::string();
}

std::optional<std::string> JoinToAfterEdge(TandemGap& gap, int min) {
    if (gap.Grown1() <= gap.gap_len + gap.unit_len) return std::nullopt;
    const int match = align_connect(gap.before, gap.edge2, min);
    const int over = match + min;
    if (match <= 0 || over > gap.Grown1()) return std::nullopt;
    if (!Trusted(gap, Tail(gap.before, over))) return std::nullopt;
    gap.Log() << "Before seq have overlap with the last read\t" << match << "\t" << min << "\n";
    return Piece(gap.before, Length(gap.edge1), gap.Grown1() - over);
}

// Unlike its twin it tells when it cannot be asked, and names the overlap before it is trusted.
std::optional<std::string> JoinToBeforeEdge(TandemGap& gap, int min) {
    if (gap.Grown2() <= gap.gap_len + gap.unit_len) {
        gap.Log() << "Failed to make sure the overlap\n";
        return std::nullopt;
    }
    const int match = align_connect(gap.edge1, gap.after, min);
    const int over = match + min;
    if (match <= 0 || over > gap.Grown2()) return std::nullopt;
    gap.Log() << "Have overlap with the before edge " << over << "\n";
    if (!Trusted(gap, Head(gap.after, over))) return std::nullopt;
    gap.Log() << "After seq have overlap with the first read\t" << match << "\t" << min << "\n";
    return Piece(gap.after, over, gap.Grown2() - over);
}

/// A trusted overlap, if the two sides are long enough to meet.
std::optional<std::string> Join(TandemGap& gap) {
    if (Surplus(gap) <= 2 * gap.unit_len) return std::nullopt;
    const int min = ShortestOverlap(gap);
    if (std::optional<std::string> seq = JoinBothSides(gap, min)) return seq;
    if (std::optional<std::string> seq = JoinToAfterEdge(gap, min)) return seq;
    return JoinToBeforeEdge(gap, min);
}

/// How far each side is repeat. An expansion that is repeat from the edge on keeps one unit.
void MeasureExpansions(TandemGap& gap) {
    int expand_num1 = 0;  // counted, and of no further use here
    int expand_num2 = 0;
    if (gap.Grown1() > 0) {
        if (gap.last_num1 != 0) {
            gap.expand_before = gap.Grown1();
        } else {
            gap.expand_before =
                tail_check(gap.before, gap.units, gap.unit_len, expand_num1, gap.last_unit, Length(gap.edge1));
            if (gap.expand_before >= gap.Grown1()) {
                gap.expand_before = gap.Grown1() - gap.unit_len;
                gap.last_unit = Word(gap.before, Length(gap.edge1), gap.unit_len);
                --expand_num1;
            }
        }
    }
    if (gap.Grown2() > 0) {
        // The phase is never unknown here, since the copies in the edge cannot be fewer than none.
        if (gap.expand_before < gap.unit_len && gap.last_num1 < 0) {
            gap.expand_after =
                tail_checknolast(gap.units, gap.after, gap.unit_len, expand_num2, gap.last_unit, Length(gap.edge2));
        } else {
            gap.expand_after =
                tail_check(gap.units, gap.after, gap.unit_len, expand_num2, gap.last_unit, Length(gap.edge2));
        }
        if (gap.expand_after >= gap.Grown2()) {
            gap.expand_after -= gap.unit_len;
            --expand_num2;
        }
    }
    gap.Log() << "Last unit is: " << gap.last_unit << "\t" << gap.unit_len << "\n";
    gap.Log() << "before expand length: " << gap.expand_before << "\tafter expand length: " << gap.expand_after << "\n";
}

/// The flank without its repeat and with one unit of N towards the gap.
void ShapeBefore(TandemGap& gap) {
    const std::string n_part = Ns(gap.unit_len);
    if (gap.expand_before < 0) {
        gap.before = n_part;
    } else {
        gap.before = Piece(gap.before, Length(gap.edge1), gap.Grown1() - gap.expand_before);
        if (!gap.before.empty()) {
            gap.before += n_part;
        } else {
            gap.before = gap.unit_len > 10 && gap.last_num1 > 0 ? gap.last_unit : n_part;
        }
    }
    ++gap.last_num1;
}

void ShapeAfter(TandemGap& gap) {
    const std::string n_part = Ns(gap.unit_len);
    if (gap.expand_after < 0) {
        gap.after = n_part;
    } else {
        gap.after = Piece(gap.after, gap.expand_after, gap.Grown2() - gap.expand_after);
        // An empty flank is a copy of the unit whatever its length, unlike at the other side.
        gap.after = gap.after.empty() ? gap.last_unit : n_part + gap.after;
    }
    ++gap.last_num2;
}

/// Cuts flanks that exceed the gap at their far side from the edge, as long as an N stays in them.
void TrimFlanks(TandemGap& gap) {
    if (gap.gap_len <= gap.unit_len) return;
    const int room = gap.gap_len - gap.unit_len;
    if (Length(gap.before) > gap.gap_len && HasN(gap.before)) {
        const std::string head = Head(gap.before, room);
        if (HasN(head)) {
            --gap.last_num1;
            gap.before = head;
        }
    }
    if (Length(gap.after) > gap.gap_len && HasN(gap.after)) {
        const std::string tail = Tail(gap.after, room);
        if (HasN(tail)) {
            --gap.last_num2;
            gap.after = tail;
        }
    }
}

std::string LeaveOpen(TandemGap& gap, int& TRNum) {
    MeasureExpansions(gap);
    ShapeBefore(gap);
    ShapeAfter(gap);
    TrimFlanks(gap);
    gap.Log() << "Get final sequence with before: " << gap.before << " after: " << gap.after << "\n";
    TRNum -= gap.last_num1 + gap.last_num2;
    if (TRNum == 0 && gap.expand_after < 0 && gap.expand_before < 0) TRNum = 1;
    gap.Log() << "total repeat time: " << TRNum << "\tbefore repeat time: " << gap.last_num1
              << "\tafter repeat time: " << gap.last_num2 << "\n";
    const int filled = Length(gap.before) + Length(gap.after);
    const int open = filled >= gap.gap_len - gap.unit_len ? gap.unit_len : gap.gap_len - filled;
    gap.Log() << "TR unfull filled!\t" << gap.gap_len << "\n";
    return gap.before + Ns(open) + gap.after;
}

}  // namespace

std::string solve_TR_block(std::vector<Read>& reads, TagInfo*& tagInfo, std::string& repeat_unit, int& TRNum,
                           int gap_len, int*& /*freq*/, int& type, int& realgaplen, int threadId) {
    TandemGap gap{reads, tagInfo, Length(repeat_unit), gap_len, threadId, reads.front().seq, reads.back().seq};
    gap.Log() << "caculate the units set\n";
    AddRotations(repeat_unit, gap.units);
    MeasureEdges(gap, repeat_unit, TRNum);
    if (EdgesShowLittle(gap)) {
        gap.Log() << "Using TE to assemble the TR gap!\tlast num1: " << gap.last_num1
                  << "\tlast num2: " << gap.last_num2 << "\n";
        return assemble_block(reads, Method, type, tagInfo, realgaplen, threadId);
    }
    GrowEdges(gap);
    if (std::optional<std::string> seq = Join(gap)) return *seq;
    return LeaveOpen(gap, TRNum);
}

}  // namespace lintara
