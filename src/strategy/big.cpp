#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "align/edge_align.h"
#include "align/piece.h"
#include "join/edge_connect.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "solve/block.h"
#include "strategy/fillgap.h"
#include "strategy/sequence.h"
#include "strategy/slice.h"
#include "strategy/spare_reads.h"

namespace lintara {

namespace {

const int kLeastMatch = 6;  // bases in which a block without an edge must overlap its contig

/// A big gap while its blocks are assembled; its reads are in order of position.
struct BigGap {
    Gap& gap;
    const std::string& contig1;
    const std::string& contig2;
    int threadId;

    int reads() const { return static_cast<int>(gap.greadSum); }
    int gap_length() const { return gap.gap_length; }
    LogText log() const { return LogText(threadId); }

    int Position(int read) const { return gap.position[read]; }
    int ReadLength(int read) const { return Length(gap.reads[read]); }
    std::int64_t EndOfRead(int read) const { return std::int64_t{Position(read)} + ReadLength(read); }
    bool ReachesBeforeEdge() const { return Position(0) < 0; }
    bool ReachesAfterEdge() const { return EndOfRead(reads() - 1) > gap_length(); }

    /// The last bases of the before contig and the first of the after contig.
    std::string BeforeTail(int length) const { return Tail(contig1, length); }
    std::string AfterHead(int length) const { return FirstBases(contig2, length); }
};

/// The reads of one block, from one index of the gap's reads up to another, that one excluded.
struct BlockRange {
    int first;
    int end;
};

/// Which reads join a block. The three ways differ on purpose.
enum class Screening {
    kNoNAndLength,    ///< no upper-case N, and Min_overlap bases or more
    kBasesAndLength,  ///< nothing but bases of either case, and Min_overlap bases or more
    kNoN,             ///< no upper-case N
};

bool Joins(std::string& read, Screening screening) {
    if (screening == Screening::kBasesAndLength) return ScreenReads(read) == 1 && Length(read) >= Min_overlap;
    if (read.find('N') != std::string::npos) return false;
    return screening == Screening::kNoN || Length(read) >= Min_overlap;
}

void Gather(const BigGap& big, BlockRange range, Screening screening, ReadBlock& block) {
    block.reads.reserve(block.reads.size() + static_cast<std::size_t>(range.end - range.first) + 1);
    for (int i = range.first; i < range.end; ++i) {
        if (Joins(big.gap.reads[i], screening)) block.Add(big.gap.reads[i], big.Position(i));
    }
}

/// Place behind a read. Positions are compared in 64 bits, since a gap file may give a read any int as its position.
std::int64_t End(const Read& read) {
    return std::int64_t{read.pos} + Length(read.seq);
}

/// First and last read of a block without an edge: those that were kept or, where none was, those of the block in the
/// gap.
Read FirstRead(const BigGap& big, BlockRange range, const std::vector<Read>& kept) {
    return kept.empty() ? Read(big.gap.reads[range.first], big.Position(range.first)) : kept.front();
}
Read LastRead(const BigGap& big, BlockRange range, const std::vector<Read>& kept) {
    return kept.empty() ? Read(big.gap.reads[range.end - 1], big.Position(range.end - 1)) : kept.back();
}

/// Where the reads part: a block ends at a read that the next one does not touch.
std::vector<BlockRange> FindBlocks(const BigGap& big) {
    std::vector<BlockRange> blocks = {{0, big.reads()}};
    for (int j = 1; j < big.reads(); ++j) {
        if (big.Position(j) <= big.EndOfRead(j - 1)) continue;
        blocks.back().end = j;
        blocks.push_back({j, big.reads()});
    }
    return blocks;
}

std::string Assemble(std::vector<Read>& reads, int type, int threadId) {
    TagInfo* no_tags = nullptr;  // only blocks with both edges look into the table
    int realgaplen = 0;
    return assemble_block(reads, Method, type, no_tags, realgaplen, threadId);
}

/// Assembles a block without an edge. One without a read leaves the traces of an empty block in the log.
std::string AssembleMiddle(const BigGap& big, std::vector<Read>& reads) {
    if (!reads.empty()) return Assemble(reads, 0, big.threadId);
    big.log() << "the read number is: 0\ncaculate the overlap values\ncaculate finish!\n"
                 "Treat the middle block of the large gap\nStart from id: 0\nstart forward assembly...\n"
                 "Forward from 0 vector get finished! 0\nstart max reward assembly...\n"
                 "Reward from 0 vector get finished!0\n";
    return "";
}

ContigInfo MakeContig(int startPos, std::string contigSeq) {
    ContigInfo contig;
    contig.startPos = startPos;
    contig.contigSeq = std::move(contigSeq);
    return contig;
}

ContigInfo FirstAsMiddleBlock(const BigGap& big, BlockRange range) {
    big.log() << "Treat first block as middle block\n";
    ReadBlock block;
    Gather(big, range, Screening::kNoNAndLength, block);
    std::vector<Read>& reads = block.reads;
    int startPos = FirstRead(big, range, reads).pos;
    std::string seq = AssembleMiddle(big, reads);
    const std::string tail = big.BeforeTail(Length(seq));
    if (Length(tail) > 5 && Length(seq) > 5) {
        const int pos = align_connect(tail, seq, kLeastMatch);
        if (pos >= 0) {
            // The block goes on from the before contig.
            seq.erase(0, static_cast<std::size_t>(pos + kLeastMatch));
            startPos = 0;
        }
    } else if (seq.empty()) {
        const Read last = LastRead(big, range, reads);
        seq = Ns(End(last));
    }
    return MakeContig(startPos, seq);
}

ContigInfo FirstAsBeforeBlock(const BigGap& big, BlockRange range) {
    big.log() << "Treat first block as before block\n";
    std::string edge = big.BeforeTail(big.ReadLength(0));
    ToUp(edge);
    ReadBlock block;
    block.Add(edge, -Length(edge));
    Gather(big, range, Screening::kBasesAndLength, block);
    std::vector<Read>& reads = block.reads;
    std::string seq = Assemble(reads, 1, big.threadId);
    // The edge is a read of the block too, and the only one where none is kept; it ends in front of the gap.
    if (seq.empty()) seq = Ns(End(reads.back()) > 0 ? End(reads.back()) : 1);
    return MakeContig(0, seq);
}

ContigInfo InnerBlock(const BigGap& big, BlockRange range, int index) {
    big.log() << "Treat block " << index << "\n";
    ReadBlock block;
    Gather(big, range, Screening::kNoNAndLength, block);
    std::vector<Read>& reads = block.reads;
    const int startPos = FirstRead(big, range, reads).pos;
    std::string seq = AssembleMiddle(big, reads);
    if (seq.empty()) {
        const Read last = LastRead(big, range, reads);
        seq = Ns(End(last) - startPos);
    }
    return MakeContig(startPos, seq);
}

ContigInfo LastAsMiddleBlock(const BigGap& big, BlockRange range, std::vector<Read>& reads) {
    big.log() << "Treat last as middle block\n";
    int startPos = FirstRead(big, range, reads).pos;
    std::string seq = AssembleMiddle(big, reads);
    const std::string head = big.AfterHead(Length(seq));
    if (Length(seq) > 5 && Length(head) > 5) {
        const int pos = align_connect(seq, head, kLeastMatch);
        const std::int64_t room = std::int64_t{big.gap_length()} - startPos - Length(seq);
        if (pos >= 0) {
            DropEnd(seq, pos + kLeastMatch);
            startPos = big.gap_length() - Length(seq);
        } else if (room > 0) {
            seq += Ns(room);
        } else {
            // A block that overruns the gap's end and does not match the after contig shrinks to a marked stub.
            seq = FirstBases(seq, kLeastMatch - pos) + Ns(kLeastMatch - pos);
        }
    } else {
        seq = Ns(std::int64_t{big.gap_length()} - startPos);
    }
    big.log() << "last position: " << startPos << " last seqsize: " << seq.size() << "\n";
    return MakeContig(startPos, seq);
}

ContigInfo LastAsAfterBlock(const BigGap& big, ReadBlock& block) {
    std::vector<Read>& reads = block.reads;
    big.log() << "Treat last as after block\n";
    std::string edge = big.AfterHead(big.ReadLength(0));
    ToUp(edge);
    block.Add(edge, big.gap_length());
    std::string seq = Assemble(reads, 2, big.threadId);
    if (seq.empty()) {
        // The edge is a read of the block too, and the first one where none is kept.
        const int startPos = std::min(reads.front().pos, big.gap_length());
        return MakeContig(startPos, Ns(std::int64_t{big.gap_length()} - startPos));
    }
    return MakeContig(big.gap_length() - Length(seq), seq);
}

/// The last block. Here a short read stays in, unlike in all other blocks.
ContigInfo LastBlock(const BigGap& big, BlockRange range, int index) {
    big.log() << "Treat last block\t" << index << "\n";
    ReadBlock block;
    Gather(big, range, Screening::kNoN, block);
    return big.ReachesAfterEdge() ? LastAsAfterBlock(big, block) : LastAsMiddleBlock(big, range, block.reads);
}

/// Treats a gap whose reads touch each other all the way, as one block.
std::string AssembleWhole(const BigGap& big, std::string& contig1, std::string& contig2) {
    const int gap_length = big.gap_length();
    if (big.ReachesBeforeEdge()) {
        std::string seq = solve_block_before(big.gap, contig1, big.threadId);
        if (Length(seq) > gap_length) return connect_after(seq, big.AfterHead(Length(seq)), gap_length, big.threadId);
        return seq + Ns(gap_length - Length(seq));
    }
    if (big.ReachesAfterEdge()) {
        std::string seq = solve_block_after(big.gap, contig2, big.threadId);
        if (Length(seq) > gap_length) return connect_before(big.BeforeTail(Length(seq)), seq, gap_length, big.threadId);
        return Ns(gap_length - Length(seq)) + seq;
    }
    std::string seq = solve_block_middle(big.gap, big.threadId);
    if (Length(seq) > gap_length) {
        std::string tail = big.BeforeTail(Length(seq));
        std::string head = big.AfterHead(Length(seq));
        return check_middle_overlap(tail, seq, head, gap_length);
    }
    // An odd difference leaves the text one base short.
    const std::string side = Ns((gap_length - Length(seq)) / 2);
    return side + seq + side;
}

std::string AssembleBlocks(const BigGap& big, const std::vector<BlockRange>& blocks) {
    const int last = static_cast<int>(blocks.size()) - 1;
    std::vector<ContigInfo> contigs;
    contigs.push_back(big.ReachesBeforeEdge() ? FirstAsBeforeBlock(big, blocks[0])
                                              : FirstAsMiddleBlock(big, blocks[0]));
    for (int i = 1; i < last; ++i) contigs.push_back(InnerBlock(big, blocks[static_cast<std::size_t>(i)], i));
    contigs.push_back(LastBlock(big, blocks.back(), last));
    big.log() << "assemble for each block finished!\n";

    std::string seq;
    ContigInfo* contigsInfo = contigs.data();
    GetContigSeqInGap(seq, contigsInfo, static_cast<int>(contigs.size()));
    return GapLenCheck(seq, big.gap_length(), big.threadId);
}

bool Admitted(const Gap& gap, const std::string& contig1, const std::string& contig2) {
    return gap.greadSum <= 50 * static_cast<Len_t>(gap.gap_length) && gap.greadSum <= 1000 &&
           Length(contig1) >= ContigLen && Length(contig2) >= ContigLen;
}

}  // namespace

std::string BigGapAssemble(Gap& gap, std::string& contig1, std::string& contig2, int threadId) {
    const BigGap big{gap, contig1, contig2, threadId};
    big.log() << "Treat as big size gap \n";
    const Len_t gap_length = static_cast<Len_t>(gap.gap_length);
    if (!Admitted(gap, contig1, contig2)) {
        big.log() << "Too Many reads for the gap" << gap.id << "\t" << gap.greadSum << "\t" << gap_length << "\n";
        return std::string(gap_length, 'N');
    }
    SortReads(gap);
    big.log() << "start filling the big gap\t" << gap.greadSum << "\t" << gap_length << "\t" << contig1.size() << "\t"
              << contig2.size() << "\n";
    const std::vector<BlockRange> blocks = FindBlocks(big);
    big.log() << "block number of the gap " << gap.id << "\t" << blocks.size() << "\n";
    return blocks.size() == 1 ? AssembleWhole(big, contig1, contig2) : AssembleBlocks(big, blocks);
}

}  // namespace lintara
