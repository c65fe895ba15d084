#include <map>
#include <vector>

#include "repeat/tandem_block.h"
#include "repeat/tandem_multi.h"
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

bool Admitted(const Gap& gap, const std::string& contig1, const std::string& contig2) {
    return gap.greadSum <= 120 * static_cast<Len_t>(gap.gap_length) && gap.greadSum <= 2000 &&
           static_cast<int>(contig1.size()) >= ContigLen && static_cast<int>(contig2.size()) >= ContigLen;
}

/// Lays the block out: before edge, accepted reads in file order, after edge. A read of exactly Min_overlap bases is
/// not used here, unlike in a small gap.
void LayOutBlock(const Gap& gap, const std::string& before_edge, const std::string& after_edge, ReadBlock& block) {
    block.reads.reserve(gap.greadSum + 2U);
    block.Add(before_edge, -static_cast<int>(before_edge.size()));
    for (Len_t i = 0; i < gap.greadSum; ++i) {
        if (ScreenReads(gap.reads[i]) == 0 || static_cast<int>(gap.reads[i].size()) <= Min_overlap) continue;
        block.Add(gap.reads[i], gap.position[i]);
    }
    block.Add(after_edge, gap.gap_length);
}

/// Whether a repeat is too small, or too long for a read to show it, to be rebuilt from its unit.
bool GoesTheOrdinaryRoad(int unit_len, int repeat_time, int gap_length) {
    return repeat_time * unit_len <= 30 || (unit_len == 1 && repeat_time < ReadLen) ||
           (2 * unit_len > ReadLen && repeat_time * unit_len > gap_length && repeat_time <= 3);
}

/// Turns a negative realgaplen into a cut of the before contig. An overlap longer than the contig leaves the gap open.
void CutForMinusGap(const Gap& gap, std::string& contig1, int realgaplen, std::string& seq, int threadId) {
    seq.clear();
    if (-realgaplen <= static_cast<int>(contig1.size())) {
        DropEnd(contig1, -realgaplen);
        LogText(threadId) << "Cut contig edge for the minus gap!\n";
    } else {
        seq = Ns(gap.gap_length);
    }
}

}  // namespace

std::string MiddleGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int& realgaplen, int threadId) {
    LogText(threadId) << "Treat the gap as middle size gap!\n";
    const Len_t gap_length = static_cast<Len_t>(gap.gap_length);
    if (!Admitted(gap, contig1, contig2)) {
        LogText(threadId) << "Too Many reads for gap" << gap.id << "\t" << gap.greadSum << "\t" << gap_length << "\n";
        return Ns(gap.gap_length);
    }
    std::string tmp_read1 = Tail(contig1, 2 * ReadLen);
    std::string tmp_read2 = FirstBases(contig2, 2 * ReadLen);
    ToUp(tmp_read1);
    ToUp(tmp_read2);
    ReadBlock block;
    LayOutBlock(gap, tmp_read1, tmp_read2, block);
    std::vector<Read>& reads = block.reads;
    LogText(threadId) << "gap read num: " << gap.greadSum << "\tusing read num: " << reads.size() << "\n";
    LogText(threadId) << "Before contig edge: " << tmp_read1 << "\t" << tmp_read1.size() << "\t" << contig1.size()
                      << "\n";
    LogText(threadId) << "After  contig edge: " << tmp_read2 << "\t" << tmp_read2.size() << "\t" << contig2.size()
                      << "\n";

    RepeatTables tables;
    std::map<std::string, int> TRSeq;
    int isMultiTR = 0;
    int type = 3;
    const int unit_len =
        FindBlockType(reads, 1, reads.size() - 1, tables.tagInfo, TRSeq, tables.freq, isMultiTR, threadId);
    std::string seq;
    if (unit_len == 0 || TRSeq.empty()) {
        LogText(threadId) << "Starting to fill gaps of TE type\n";
        seq = assemble_block(reads, Method, type, tables.tagInfo, realgaplen, threadId);
    } else {
        LogText(threadId) << "Starting to fill gap of TR type\t" << TRSeq.size() << "\n";
        if (isMultiTR == 1) {
            LogText(threadId) << "gap" << gap.id << "\t" << gap_length << "\tTRGAP!\n";
            seq = solve_MTR_block(reads, tables.tagInfo, TRSeq, gap.gap_length, type, realgaplen, threadId);
            if (type == -1) LogText(threadId) << "gap" << gap.id << "\t" << gap_length << "\tERGAP\n";
            // A negative realgaplen of this solver is not turned into a cut.
            return seq;
        }
        std::string repeat_unit = TRSeq.begin()->first;
        int repeat_time = TRSeq.begin()->second;
        LogText(threadId) << "find the type " << unit_len << "\trepeat time: " << repeat_time
                          << "\trepeat unit: " << repeat_unit << "\n";
        if (GoesTheOrdinaryRoad(unit_len, repeat_time, gap.gap_length)) {
            seq = assemble_block(reads, Method, type, tables.tagInfo, realgaplen, threadId);
        } else {
            seq = solve_TR_block(reads, tables.tagInfo, repeat_unit, repeat_time, gap.gap_length, tables.freq, type,
                                 realgaplen, threadId);
            LogText(threadId) << "gap" << gap.id << "\t" << gap_length << "\tTRGAP\n";
        }
    }
    if (type == -1) LogText(threadId) << "gap" << gap.id << "\t" << gap_length << "\tERGAP\n";
    if (realgaplen < 0) CutForMinusGap(gap, contig1, realgaplen, seq, threadId);
    return seq;
}

}  // namespace lintara
