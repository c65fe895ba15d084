#include <map>
#include <vector>

#include "align/edge_align.h"
#include "align/search.h"
#include "repeat/tag_info.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "strategy/fillgap.h"
#include "strategy/gap_size.h"
#include "strategy/sequence.h"
#include "strategy/slice.h"
#include "strategy/spanning.h"
#include "strategy/spare_reads.h"

namespace lintara {

namespace {

const int setlen = 200;  // bases of an edge

/// Whether a step has settled the gap.
enum class Outcome { kOpen, kSettled };

bool Admitted(const Gap& gap, const std::string& contig1, const std::string& contig2, int threadId) {
    const Len_t most_reads = 1000U * static_cast<Len_t>(gap.gap_length);
    if (gap.greadSum <= most_reads && Length(contig1) >= ContigLen && Length(contig2) >= ContigLen) return true;
    LogText(threadId) << "Too many reads for the gap.\t" << gap.greadSum << "\t" << gap.gap_length << "\n"
                      << "Or the edge is too short: " << contig1.size() << "\t" << contig2.size() << "\n";
    return false;
}

/// The block: before edge, the reads that pass the screening, after edge.
void GatherReads(const Gap& gap, const std::string& tmp_read1, const std::string& tmp_read2, ReadBlock& block) {
    block.reads.reserve(gap.greadSum + 2U);
    block.Add(tmp_read1, -Length(tmp_read1));
    for (Len_t i = 0; i < gap.greadSum; ++i) {
        if (Length(gap.reads[i]) >= Min_overlap && ScreenReads(gap.reads[i]) == 1) {
            block.Add(gap.reads[i], gap.position[i]);
        }
    }
    block.Add(tmp_read2, gap.gap_length);
}

/// Whether the edge of a short contig stands inside the edge of a long one.
bool ShortContigInLong(const std::string& tmp_read1, const std::string& tmp_read2) {
    if (Length(tmp_read1) < 50 && Length(tmp_read2) > 100) return !PattNum(tmp_read1, tmp_read2).empty();
    if (Length(tmp_read2) < 50 && Length(tmp_read1) > 100) return !PattNum(tmp_read2, tmp_read1).empty();
    return false;
}

/// A gap of one N stands for two contigs that may touch or overlap: looks for the overlap without the reads.
///
/// @param tmp_read1, tmp_read2  the edges, of equal length; cut anew when they are too short to decide
Outcome CheckOneN(std::string& tmp_read1, std::string& tmp_read2, std::string& contig1, std::string& contig2,
                  int& realgaplen, int threadId) {
    LogText(threadId) << "One N gap check, " << tmp_read1.size() << "\t" << tmp_read2.size() << "\n";
    int over1 = 0;
    int over2 = 0;
    const int check_num = 0;  // reads that were asked; none is
    int containing = 0;
    bool have_over = overlap_ctg_edge(tmp_read1, tmp_read2, over1, over2, containing);
    if (containing == 1) {
        if (Length(tmp_read1) != setlen) {
            // A whole contig is in its slice, so it lies inside the other one.
            if (contig1.size() >= contig2.size()) {
                LogText(threadId) << "After edge is included in before edge!\n";
                contig2.clear();
            } else {
                LogText(threadId) << "Before edge is included in after edge!\n";
                contig1.clear();
            }
            realgaplen = 0;
            return Outcome::kSettled;
        }
        set_tmp_read(tmp_read1, tmp_read2, contig1, contig2, over2);
        containing = 0;
        have_over = overlap_ctg_edge(tmp_read1, tmp_read2, over1, over2, containing);
    }
    if (!have_over) return Outcome::kOpen;
    LogText(threadId) << "MinusOneNGap with check read number: " << check_num << "\n";
    DropEnd(contig1, over1);
    realgaplen = -over1;
    return Outcome::kSettled;
}

/// Treats a negative size: either the before contig loses the overlap, or the gap stays as it is, or the size is not
/// believed and becomes unknown.
///
/// @param seq  in: gap_length times N; out: the gap's text
Outcome TreatMinusGap(const std::vector<Read>& reads, const std::map<int, int>& read, std::string& contig1,
                      const std::string& contig2, int& gapsize, int& realgaplen, std::string& seq, int threadId) {
    LogText(threadId) << "The gap size is minus " << gapsize << "\n";
    if (-gapsize >= Length(contig1) || -gapsize >= Length(contig2)) {
        LogText(threadId) << "contig repeat!\n";
        return Outcome::kSettled;
    }
    const bool long_contigs = Length(contig1) >= 100 && Length(contig2) >= 100;
    if (read.size() > 2 && long_contigs && (MinusCheck(gapsize, reads) || read.size() > 9)) {
        LogText(threadId) << "Cut the before contig edge!\n";
        seq.clear();
        DropEnd(contig1, -gapsize);
        realgaplen = gapsize;
        return Outcome::kSettled;
    }
    if (long_contigs) {
        gapsize = kUnknownSize;
        return Outcome::kOpen;
    }
    LogText(threadId) << "One edge contig is too short and the same as part of the other!\n";
    return Outcome::kSettled;
}

/// Lowers a size that the spanning reads do not bear out to unknown.
///
/// @param gapsize  in/out: at least 0, or unknown
void DistrustSize(const std::vector<Read>& reads, const std::map<int, int>& read, bool AcceptLong, int& gapsize,
                  int threadId) {
    if (AcceptLong) return;
    // One read is not enough for a gap of size 0.
    if (gapsize == 0 && read.size() == 1) gapsize = kUnknownSize;
    if (gapsize < 0) return;
    TagInfo* tagInfo = nullptr;
    if (!MultiCrossCheck(reads, gapsize, read, tagInfo, threadId)) {
        LogText(threadId) << "Fail to Pass Cross check, use middle gap assemble\n";
        gapsize = kUnknownSize;
    }
}

}  // namespace

std::string SmallGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int& realgaplen, int threadId) {
    std::string seq = Ns(gap.gap_length);
    if (!Admitted(gap, contig1, contig2, threadId)) return seq;

    std::string tmp_read1 = Tail(contig1, setlen);
    std::string tmp_read2 = FirstBases(contig2, setlen);
    ToUp(tmp_read1);
    ToUp(tmp_read2);
    ReadBlock block;
    GatherReads(gap, tmp_read1, tmp_read2, block);
    std::vector<Read>& reads = block.reads;
    LogText(threadId) << "Filling small gap using Small gap assemble\t" << gap.greadSum << "\t" << reads.size() << "\t"
                      << gap.gap_length << "\n";
    if (ShortContigInLong(tmp_read1, tmp_read2)) {
        LogText(threadId) << "short contig is part of long contig, do not treat the gap!\n";
        return seq;
    }
    if (gap.gap_length == 1) {
        // Only here are the edges of equal length; the block keeps the whole ones.
        if (tmp_read1.size() > tmp_read2.size()) tmp_read1 = Tail(tmp_read1, Length(tmp_read2));
        if (tmp_read2.size() > tmp_read1.size()) tmp_read2 = FirstBases(tmp_read2, Length(tmp_read1));
        if (CheckOneN(tmp_read1, tmp_read2, contig1, contig2, realgaplen, threadId) == Outcome::kSettled) {
            return std::string();
        }
    }

    std::map<int, int> read;
    bool AcceptLong = false;
    int gapsize = GetGapLen(reads, read, AcceptLong, threadId);
    LogText(threadId) << "Get the gap size " << gapsize << "\tsupport read number: " << read.size() << "\n";
    if (gapsize < 0 && gapsize != kUnknownSize) {
        const Outcome outcome = TreatMinusGap(reads, read, contig1, contig2, gapsize, realgaplen, seq, threadId);
        if (outcome == Outcome::kSettled) return seq;
    }
    DistrustSize(reads, read, AcceptLong, gapsize, threadId);
    if (gapsize == 0) return std::string();  // the edges touch
    if (read.size() == 1 && gapsize != kUnknownSize) {
        seq = OneReadCross(reads, gapsize, read, threadId);
        if (gapsize != kUnknownSize) return seq;
    }
    if (gapsize == kUnknownSize) {
        seq = MiddleGapAssemble(gap, contig1, contig2, realgaplen, threadId);
    } else {
        seq = AssembleSmallBlock(reads, gapsize, read, threadId);
    }
    // A gap of one N can't grow into a half-filled pair.
    if (seq.size() == 2 && gap.gap_length == 1 && n_num(seq) > 0) seq = Ns(1);
    return seq;
}

}  // namespace lintara
