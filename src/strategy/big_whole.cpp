// The blocks of a big gap whose reads touch each other all the way, and the repair of lengths.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

#include "align/edge_align.h"
#include "align/piece.h"
#include "repeat/tandem_edge.h"
#include "repeat/type.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "solve/block.h"
#include "strategy/fillgap.h"
#include "strategy/repeat_tables.h"
#include "strategy/sequence.h"
#include "strategy/slice.h"
#include "strategy/spare_reads.h"

namespace lintara {

namespace {

/// A block of all the gap's reads, while it is looked through for a repeat and assembled.
struct WholeBlock {
    int threadId;
    RepeatTables tables{};
    ReadBlock block{};
    std::vector<Read>& reads = block.reads;
    int unit_len = 0;
    // The detector tells no copy number here, so a repeat never passes the bounds and assemble_block() does it all.
    std::string repeat_unit{};
    int repeat_time = 0;

    /// Adds the reads without N and with Min_overlap bases or more, with positions from `origin` on.
    void AddReads(const Gap& gap, int origin) {
        reads.reserve(gap.greadSum + 1U);
        for (Len_t i = 0; i < gap.greadSum; ++i) {
            const std::string& seq = gap.reads[i];
            if (seq.find('N') != std::string::npos || Length(seq) < Min_overlap) continue;
            block.Add(seq, gap.position[i] - origin);
        }
    }

    /// Looks for a repeat in the reads, without the edge.
    void FindRepeat(std::size_t first, std::size_t end) {
        std::map<std::string, int> TRSeq;
        int isMultiTR = 0;
        unit_len = FindBlockType(reads, first, end, tables.tagInfo, TRSeq, tables.freq, isMultiTR, threadId);
    }

    /// Whether a repeat is large enough at an edge to be rebuilt from its unit.
    bool RepeatAtEdge() const {
        return repeat_time * unit_len > 99 && unit_len != 0 && !(unit_len == 1 && repeat_time < 30);
    }

    std::string Assemble(int type) {
        int realgaplen = 0;
        return assemble_block(reads, Method, type, tables.tagInfo, realgaplen, threadId);
    }
};

const std::size_t kFewestReads = 3;  // in a block, its edge included

}  // namespace

std::string solve_block_before(Gap& gap, std::string& contig1, int threadId) {
    LogText(threadId) << "Treat as before block in the gap\n";
    if (Length(contig1) < ContigLen) return "";
    std::string edge = Tail(contig1, 2 * ReadLen);
    ToUp(edge);
    WholeBlock block{threadId};
    block.block.Add(edge, -Length(edge));
    block.AddReads(gap, 0);
    if (block.reads.size() < kFewestReads) return "";
    LogText(threadId) << "Before Edge: " << edge << "\t" << edge.size() << "\n";
    block.FindRepeat(1, block.reads.size());
    LogText(threadId) << "the before block repeat tyep is " << block.unit_len << "\n";
    if (!block.RepeatAtEdge()) return block.Assemble(1);
    return before_TR_assemble(block.reads, block.tables.tagInfo, block.repeat_unit, block.repeat_time,
                              block.tables.freq, threadId);
}

std::string solve_block_after(Gap& gap, std::string& contig1, int threadId) {
    LogText(threadId) << "Treat as after block in the gap\n";
    if (Length(contig1) < ContigLen) return "";
    std::string edge = FirstBases(contig1, 2 * ReadLen);
    ToUp(edge);
    WholeBlock block{threadId};
    block.AddReads(gap, 0);
    // Placed like a before edge on purpose, although it stands behind the gap.
    block.block.Add(edge, -Length(edge));
    if (block.reads.size() < kFewestReads) return "";
    LogText(threadId) << "After  Edge: " << edge << "\t" << edge.size() << "\n";
    // No word on the kind of repeat here, unlike in the other two forms.
    block.FindRepeat(0, block.reads.size() - 1);
    if (!block.RepeatAtEdge()) return block.Assemble(2);
    return after_TR_assemble(block.reads, block.tables.tagInfo, block.repeat_unit, block.repeat_time, block.tables.freq,
                             threadId);
}

std::string solve_block_middle(Gap& gap, int threadId) {
    LogText(threadId) << "Treat the gap as middle block. \n";
    WholeBlock block{threadId};
    // Positions count from the first read, kept or not.
    block.AddReads(gap, gap.greadSum == 0 ? 0 : gap.position[0]);
    if (block.reads.size() < kFewestReads) return "";
    block.FindRepeat(0, block.reads.size());
    LogText(threadId) << "the before block repeat tyep is " << block.unit_len << "\n";
    const bool rebuilds = block.unit_len * block.repeat_time >= 30 && block.unit_len != 0 &&
                          !(block.unit_len == 1 && block.repeat_time <= 29);
    if (!rebuilds) return block.Assemble(0);
    std::string seq;
    for (int i = 0; i < block.repeat_time; ++i) seq += block.repeat_unit;
    return seq;
}

std::string check_middle_overlap(std::string& seq1, std::string& seq, std::string& seq2, int len) {
    const int dis = Length(seq2) - len;
    if (dis < 0) std::exit(-1);
    const int min = static_cast<int>(dis - len * 0.1);
    const int Min = std::max(min, 6);
    const int match1 = align_connect(seq1, seq, Min);
    const int match2 = align_connect(seq, seq2, Min);
    if (match1 >= 1 && match2 >= 1) {
        const int inner = Length(seq) - 2 * Min - match1 - match2;
        return inner <= 0 ? Ns(len) : Slice(seq, match1 + Min, inner);
    }
    if (match1 >= 1) {
        const std::string rest = From(seq, match1 + Min);
        if (Length(rest) < len) return rest + Ns(len - Length(rest));
        return Head(rest, Length(rest) + match2 - Min) + Ns(Min - match2);
    }
    if (match2 >= 1) {
        const std::string rest = Head(seq, Length(seq) - match2 - Min);
        if (Length(rest) < len) return Ns(len - Length(rest)) + rest;
        return Ns(Min - match1) + From(rest, Min - match1);
    }
    const int inner = Length(seq) + match1 + match2 - 2 * Min;
    if (inner <= 0) return Ns(len);
    return Ns(Min - match1) + Slice(seq, Min - match1, inner) + Ns(Min - match2);
}

std::string GapLenCheck(std::string& seq, int gaplen, int /*threadId*/) {
    const int length = Length(seq);
    if (length >= gaplen * 0.9 && length <= gaplen * 1.1) return seq;
    if (length < gaplen) {
        const std::size_t last = seq.rfind('N');
        if (last != std::string::npos) seq.insert(last, Ns(gaplen - length));
        return seq;
    }
    const int del_len = length - gaplen;
    int pos = 0;
    int cand_pos = 0;
    int count = 0;
    for (int i = 0; i < length; ++i) {
        if (seq[static_cast<std::size_t>(i)] == 'N') {
            ++count;
            if (count > OVERLAPLENCUTOFF + del_len) {
                pos = i - del_len;
                break;
            }
        } else {
            // A run that reaches the end of the text never comes here.
            if (count > del_len) cand_pos = i - del_len;
            count = 0;
        }
    }
    const int cut = pos >= 1 ? pos : cand_pos;
    if (cut >= 1) seq.erase(static_cast<std::size_t>(cut), static_cast<std::size_t>(del_len));
    return seq;
}

}  // namespace lintara
