#include "repeat/tandem_edge.h"

#include <fstream>
#include <set>

#include "consensus/seed.h"
#include "repeat/tandem_block.h"
#include "repeat/tandem_piece.h"
#include "run/streams.h"

namespace lintara {

using namespace tandem;

namespace {

std::string Copies(const std::string& unit, int count) {
    std::string seq;
    for (int i = 0; i < count; ++i) seq += unit;
    return seq;
}

/// Overlap of each read with the edge. A read as long as its overlap is a seed here, unlike in a gap with two edges.
/// The first and the last entry stay 0, although only one of the two reads is an edge.
std::vector<int> SeedBefore(std::vector<Read>& reads, int run, int unit_len) {
    std::vector<int> start(reads.size(), 0);
    const EdgeSeeds edge(reads.front().seq);
    for (int i = 1; i < static_cast<int>(reads.size()) - 1; ++i) {
        std::string& read = reads[i].seq;
        const Anchor anchor = BeforeAnchor(edge, read);
        if (anchor.overlap <= Length(read)) start[i] = SeedOverlap(anchor.overlap, run, unit_len);
        if (anchor.overhang > 0) read = From(read, anchor.overhang);
    }
    return start;
}

std::vector<int> SeedAfter(std::vector<Read>& reads, int run, int unit_len) {
    std::vector<int> end(reads.size(), 0);
    const EdgeSeeds edge(reads.back().seq);
    for (int i = 1; i < static_cast<int>(reads.size()) - 1; ++i) {
        std::string& read = reads[i].seq;
        const Anchor anchor = AfterAnchor(read, edge);
        if (anchor.overlap <= Length(read)) end[i] = SeedOverlap(anchor.overlap, run, unit_len);
        if (anchor.overhang > 0) read = Head(read, Length(read) - anchor.overhang);
    }
    return end;
}

/// What was grown without its repeat, with one unit of N behind it.
std::string BeforeFlank(const std::string& before, int expand_before, int edge_len, const std::string& n_part) {
    if (expand_before < 0) return n_part;
    const std::string flank = Piece(before, edge_len, Length(before) - edge_len - expand_before);
    return flank.empty() ? n_part : flank + n_part;
}

/// The same with the N in front. An empty flank is a copy of the unit here.
std::string AfterFlank(const std::string& after, int expand_after, int edge_len, const std::string& n_part,
                       const std::string& last_unit) {
    if (expand_after < 0) return n_part;
    const std::string flank = Piece(after, expand_after, Length(after) - expand_after - edge_len);
    return flank.empty() ? last_unit : n_part + flank;
}

}  // namespace

std::string before_TR_assemble(std::vector<Read>& reads, TagInfo*& /*tagInfo*/, std::string& unit, int& TRNum,
                               int*& /*freq*/, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int unit_len = Length(unit);
    log << "Start tandem repeat assembly for before block\n";
    log << "caculate the units set\n";
    std::set<std::string> units;
    AddRotations(unit, units);

    std::string& edge = reads.front().seq;
    std::string last_unit;
    int last_num1 = 0;
    tail_check(edge, units, unit_len, last_num1, last_unit);
    if (last_unit.empty()) last_unit = unit;
    log << unit << "\t" << TRNum << "\n";
    log << "caculate first read overlap\n";
    const std::vector<int> start = SeedBefore(reads, last_num1 * unit_len, unit_len);

    std::string before = forward_expand(start.data(), reads, threadId);
    int expand_num1 = 0;
    const int expand_before = tail_check(before, units, unit_len, expand_num1, last_unit, Length(edge));
    before = BeforeFlank(before, expand_before, Length(edge), Ns(unit_len));

    log << "connect the sequence\n";
    last_num1 += 1 + expand_num1;
    TRNum -= last_num1;
    log << "Added number: " << TRNum << " last number: " << last_num1 << "\n";
    return before + Copies(last_unit, TRNum);
}

// Takes the unit's phase as it comes, since the repeat has not been followed up to this edge, and logs its result.
std::string after_TR_assemble(std::vector<Read>& reads, TagInfo*& /*tagInfo*/, std::string& unit, int& TRNum,
                              int*& /*freq*/, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int unit_len = Length(unit);
    log << "Start tandem repeat assembly for after block\n";
    log << "caculate the units set\n";
    std::set<std::string> units;
    AddRotations(unit, units);

    log << "check tail \n";
    std::string& edge = reads.back().seq;
    std::string last_unit = unit;
    int last_num2 = 0;
    tail_check(units, edge, unit_len, last_num2, last_unit);
    log << unit << "\t" << TRNum << "\n";
    log << "caculate  last read overlap\n";
    const std::vector<int> end = SeedAfter(reads, last_num2 * unit_len, unit_len);

    std::string after = reward_expand(end.data(), reads, threadId);
    int expand_num2 = 0;
    const int expand_after = tail_check(units, after, unit_len, expand_num2, last_unit, Length(edge));
    after = AfterFlank(after, expand_after, Length(edge), Ns(unit_len), last_unit);

    last_num2 += 1 + expand_num2;
    TRNum -= last_num2;
    log << "Added number: " << TRNum << " last number: " << last_num2 << "\n";
    const std::string seq = Copies(last_unit, TRNum) + after;
    log << "Final seq is: " << seq << " size: " << seq.size() << "\n";
    return seq;
}

}  // namespace lintara
