#include <algorithm>
#include <ctime>
#include <iostream>

#include "align/edge_align.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "run/worker.h"
#include "store/gap_reads.h"
#include "strategy/fillgap.h"
#include "strategy/sequence.h"

namespace lintara {

namespace {

const Len_t kBigGap = 1500;  // bases from which on a gap is big

/// Picks the strategy by the gap's size class; the big class goes first, whatever ReadLen is.
std::string AssembleGap(Gap& gap, std::string& contig1, std::string& contig2, int& Realgaplen, int threadId) {
    const Len_t gap_length = static_cast<Len_t>(gap.gap_length);
    if (gap_length >= kBigGap) {
        std::string gap_seq = BigGapAssemble(gap, contig1, contig2, threadId);
        // A big gap has no way to tell of overlapping edges, so an empty result means that it has nothing.
        if (gap_seq.empty()) gap_seq.assign(gap_length, 'N');
        return gap_seq;
    }
    if (gap_length <= static_cast<Len_t>(ReadLen)) return SmallGapAssemble(gap, contig1, contig2, Realgaplen, threadId);
    return MiddleGapAssemble(gap, contig1, contig2, Realgaplen, threadId);
}

/// Writes the two lines of a gap record to the standard output as one unit.
///
/// @param Realgaplen  negative: the edges overlapped by that many bases; otherwise the length of gap_seq is reported
void WriteGapRecord(const Gap& gap, const Scaf& scaffold, int scaf_id, int gap_index, int Realgaplen,
                    const std::string& gap_seq) {
    pthread_mutex_lock(&myMutex);
    if (Realgaplen >= 0) Realgaplen = static_cast<int>(gap_seq.size());
    std::string record = ">gap" + std::to_string(gap.id) + "\t" + std::to_string(Realgaplen) + "\t" +
                         std::to_string(static_cast<Len_t>(gap.gap_length)) + "\tscaffold" + std::to_string(scaf_id) +
                         "\t" + std::to_string(gap_index) + "\t" +
                         std::to_string(scaffold.contigs[gap.before_contig_id].size()) + "\t" +
                         std::to_string(scaffold.contigs[gap.before_contig_id + 1].size()) + "\n";
    record.append(gap_seq).append("\n");
    std::cout.write(record.data(), static_cast<std::streamsize>(record.size())).flush();
    if (!std::cout) FailedWrite("the standard output");
    pthread_mutex_unlock(&myMutex);
}

void CountGap(std::string& gap_seq, int threadId) {
    const int length = static_cast<int>(gap_seq.size());
    const int open = n_num(gap_seq);
    if (open != length) {
        ++fill_num[threadId];
        fill_len[threadId] += length - open;
        if (open == 0) ++full_fill_num[threadId];
    }
    if (gap_seq.empty()) {
        ++fill_num[threadId];
        ++full_fill_num[threadId];
    }
}

/// A merge of two contigs without reads counts as one filled base.
void CountMerge(int threadId) {
    ++fill_num[threadId];
    ++full_fill_num[threadId];
    ++fill_len[threadId];
}

/// Treats a gap with reads. @return its text
std::string FillGapWithReads(int scaf_id, Scaf& scaffold, int gap_index, int threadId) {
    Gap& gap = scaffold.gaps[gap_index];
    const Len_t gap_length = static_cast<Len_t>(gap.gap_length);
    ++total_gap_num[threadId];
    total_gap_length[threadId] = static_cast<int>(static_cast<Len_t>(total_gap_length[threadId]) + gap_length);
    LogText(threadId) << "fill gap" << gap.id << "\tlength is: " << gap_length << "\n";
    StreamText(snp[threadId]) << "gap" << gap.id << "\tlength is: " << gap_length << "\n";

    int Realgaplen = 1;
    const std::time_t start = std::time(nullptr);
    const GapReads reads(gap);
    std::string gap_seq = AssembleGap(gap, scaffold.contigs[gap.before_contig_id],
                                      scaffold.contigs[gap.before_contig_id + 1], Realgaplen, threadId);
    LogText(threadId) << "gap" << gap.id << " seq: " << gap_seq << "\t" << gap_seq.size()
                      << "\ttime: " << std::time(nullptr) - start << "\n";
    WriteGapRecord(gap, scaffold, scaf_id, gap_index, Realgaplen, gap_seq);
    CountGap(gap_seq, threadId);
    CheckStreams(threadId);
    return gap_seq;
}

/// Tries to merge the two contigs at a gap of one N that has no reads: the contig file claims a length of 1, which
/// stands for contigs that may touch or overlap.
///
/// @return whether they were merged, with contig i or i + 1 shortened or cleared
bool MergeContigs(Scaf& scaffold, int gap_index, int threadId) {
    std::string& before = scaffold.contigs[gap_index];
    std::string& after = scaffold.contigs[gap_index + 1];
    int over1 = 0;
    int over2 = 0;
    const int check_num = 0;  // reads that support the merge; there are none
    int containing = 0;
    const int tmplen = 200;
    std::string tmp_read1;
    std::string tmp_read2;
    set_tmp_read(tmp_read1, tmp_read2, before, after, tmplen);
    LogText(threadId) << "One N gap check, " << tmp_read1.size() << "\t" << tmp_read2.size() << "\n";
    bool have_over = overlap_ctg_edge(tmp_read1, tmp_read2, over1, over2, containing);
    if (containing == 1) {
        if (static_cast<int>(tmp_read1.size()) != tmplen) {
            // A whole contig was in the slice, so it lies inside the other one.
            if (before.size() < after.size()) {
                LogText(threadId) << "Before edge is included in after edge!\n";
                before.clear();
            } else {
                LogText(threadId) << "After edge is included in before edge!\n";
                after.clear();
            }
            return true;
        }
        set_tmp_read(tmp_read1, tmp_read2, before, after, over2);
        containing = 0;
        have_over = overlap_ctg_edge(tmp_read1, tmp_read2, over1, over2, containing);
    }
    if (!have_over) return false;
    LogText(threadId) << "MinusOneNGap1 with check read number: " << check_num << "\n";
    before.resize(before.size() - std::min(before.size(), static_cast<std::size_t>(std::max(over1, 0))));
    return true;
}

/// Treats a gap without reads. @return its text: the N run of the contig file, empty where the contigs were merged
std::string PassGapWithoutReads(Scaf& scaffold, int gap_index, int threadId) {
    const int bcontig_id = scaffold.gaps[gap_index].before_contig_id;
    ++no_read_gap[threadId];
    LogText(threadId) << "no read of the gap, before contig size: " << scaffold.contigs[bcontig_id].size()
                      << "\tafter contig size: " << scaffold.contigs[bcontig_id + 1].size() << "\n";
    const int length = scaffold.front_gap_lens[gap_index + 1];
    std::string n_seq2(static_cast<std::size_t>(std::max(length, 0)), 'N');
    if (n_seq2.size() == 1 && MergeContigs(scaffold, gap_index, threadId)) {
        n_seq2.clear();
        CountMerge(threadId);
    }
    return n_seq2;
}

}  // namespace

void FillGaps(int scaf_id, Scaf& scaffold, std::map<int, std::string>& gap_id_seq, int threadId) {
    for (int i = 0; i < static_cast<int>(scaffold.gapSum); ++i) {
        const int gap_id = scaffold.gaps[i].id;
        if (GapId != -1 && gap_id != GapId) continue;
        if (StartId != -1 && gap_id < StartId) continue;
        if (gap_id == -1) {
            gap_id_seq[i] = PassGapWithoutReads(scaffold, i, threadId);
            continue;
        }
        gap_id_seq[i] = FillGapWithReads(scaf_id, scaffold, i, threadId);
        if (GapId != -1) {
            GapId = -2;
            break;
        }
    }
}

}  // namespace lintara
