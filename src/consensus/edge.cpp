#include "consensus/edge.h"

#include <algorithm>

#include "align/overlap.h"
#include "consensus/path.h"
#include "consensus/placing.h"
#include "kmer/matrix_lines.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

namespace {

using namespace consensus;

// The votes are objects, so that each loop over columns takes its vote in.

const auto StrictVote = [](char seq_base, const Column& column) -> Verdict {
    const Winner winner = MostFrequent(column);
    char bases = winner.value >= 2 ? winner.bases : 'N';
    if (bases != seq_base) {
        const int code = alphabet[seq_base];
        const int path_reads = code < 4 ? column.num[code] : -1;
        if (winner.value >= 2 && path_reads == winner.value) {
            bases = seq_base;
        } else if (path_reads == 1 && winner.value == 2) {
            bases = 'N';
        }
    }
    return {bases, Marker(bases, seq_base), winner.value, ClearWinner(bases, seq_base, winner.ratio)};
};

const auto PlainVote = [](char seq_base, const Column& column) -> Verdict {
    const Winner winner = MostFrequent(column);
    const char bases = winner.value >= 2 ? winner.bases : 'N';
    return {bases, Marker(bases, seq_base), winner.value, ClearWinner(bases, seq_base, winner.ratio)};
};

// An N at position 0 is left alone.
void CutAtFirstN(std::string& seq) {
    const std::size_t first = seq.find('N');
    if (first != std::string::npos && first > 0) seq.resize(first);
}

void CutUpToLastN(std::string& seq) {
    const std::size_t last = seq.rfind('N');
    if (last != std::string::npos) seq.erase(0, last + 1);
}

// How far the next read of the order stands right of the one in front of it.
int Step(const std::vector<int>& order, std::size_t o, Overlaps matrix, const std::vector<Read>& reads, int threadId) {
    const int over = Cell(matrix, order[o - 1], order[o]);
    if (over == 0) IllegalOrder("Error in order vector!\t", static_cast<int>(o), threadId);
    return Length(reads[order[o - 1]].seq) - over;
}

// ---- A path from the before edge ----

struct BeforePlaces {
    std::vector<PlacedRead> reads;
    int last_of_order = 0;  // where the last read of the order begins
    int valued_read_num = 0;
    int last_id = -1;    // the read that runs furthest past the path among those with a good overlap
    int last_tail = 0;   // where it ends
    int last_start = 0;  // where it begins
};

// A placed read is placed anew only by a path read that its own estimated position puts in front of it, not too far.
bool KeepsPlace(const Read& path_read, const Read& placed) {
    const long long path_pos = path_read.pos;
    return path_pos > placed.pos || path_pos + 2LL * ReadLen < placed.pos;
}

BeforePlaces PlaceFromBefore(const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                             int threadId) {
    BeforePlaces places;
    Placing placing(reads);
    int iter_len = 0;
    for (std::size_t o = 0; o < order.size(); ++o) {
        if (o > 0) iter_len += Step(order, o, matrix, reads, threadId);
        const Read& path_read = reads[order[o]];
        placing.Set(static_cast<std::size_t>(order[o]), iter_len);
        ++places.valued_read_num;
        EachInRow(matrix, order[o], static_cast<int>(reads.size()), [&](int i, int over) {
            if (placing.Has(i) && KeepsPlace(path_read, reads[i])) return;
            const int offset = Length(path_read.seq) - over + iter_len;
            placing.Set(i, offset);
            ++places.valued_read_num;
            const int tail = offset + Length(reads[i].seq);
            if (tail > places.last_tail && 2 * over >= Length(reads[i].seq)) {
                places.last_tail = tail;
                places.last_id = static_cast<int>(i);
            }
        });
    }
    places.reads = placing.Reads();
    if (!order.empty()) places.last_of_order = placing.Offset(static_cast<std::size_t>(order.back()));
    if (places.last_id != -1) places.last_start = placing.Offset(static_cast<std::size_t>(places.last_id));
    return places;
}

// Returns the number of columns inside the edge whose vote differs; such a column is never changed.
int VoteBehindEdge(std::string& seq, int before_len, const std::vector<PlacedRead>& placed, bool noreadbreak,
                   int threadId) {
    int unsame_base_num = 0;
    const auto keep = [&](int posit, char voted) {
        if (posit < before_len) {
            ++unsame_base_num;
        } else if (!noreadbreak || voted != 'N') {
            seq[posit] = voted;
        }
    };
    if (noreadbreak) {
        VoteColumns(seq, 0, Length(seq), placed, threadId, PlainVote, keep);
    } else {
        VoteColumns(seq, 0, Length(seq), placed, threadId, StrictVote, keep);
        CutAtFirstN(seq);
    }
    return unsame_base_num;
}

// Lengthens seq by the part of the read last_id that passes beyond it, if both agree.
void ExtendTail(std::string& seq, const BeforePlaces& places, const std::vector<int>& order, Overlaps matrix,
                const std::vector<Read>& reads, int threadId) {
    int last_id = places.last_id;
    int offset = 0;
    int len = 0;
    LogText(threadId) << "lastid : " << last_id << '\t' << places.last_tail << '\n';
    if (last_id != -1) {
        LogText(threadId) << "last read: " << reads[last_id].seq << '\n';
        offset = places.last_start;
        if (offset > 0) len = Length(seq) - offset;
        if (len < 1) {
            LogText(threadId) << "Position error!\t" << seq.size() << '\t' << offset << '\n';
            last_id = -1;
        }
    }
    LogText(threadId) << "len: " << len << "\tstart last order check!\n";
    if (order.empty() || last_id == -1) return;
    if (!ReadAgrees(seq, reads[order.back()].seq, places.last_of_order)) return;
    LogText(threadId) << "last order check passed!\n";
    if (Cell(matrix, order.back(), last_id) == 0) return;
    const std::string& last_read = reads[last_id].seq;
    const int same_base_num = SameBases(seq, offset, last_read, 0, len);
    LogText(threadId) << "same base num: " << same_base_num << '\t' << len << '\n';
    if (static_cast<double>(same_base_num) / len >= 0.99 && Length(last_read) - len < Length(seq)) {
        seq += From(last_read, len);
    }
}

// ---- A path to the after edge ----

struct HeadRead {
    int first_id = -1;
    int longest_left = 0;  // its bases in front of the path
};

HeadRead FindHead(const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads) {
    HeadRead head;
    for (std::size_t i = 0; i < reads.size(); ++i) {
        const int size = Length(reads[i].seq);
        const int over = Cell(matrix, i, order[0]);
        if (over >= 0.3 * size && size - over >= head.longest_left) {
            head.first_id = static_cast<int>(i);
            head.longest_left = size - over;
        }
    }
    return head;
}

// Puts the head read in front of seq and places it with all other reads that precede the path.
void AddHead(std::string& seq, const HeadRead& head, int first_of_order, Overlaps matrix,
             const std::vector<Read>& reads, Placing& placing, int threadId) {
    const std::string& head_read = reads[head.first_id].seq;
    seq = Head(head_read, head.longest_left) + seq;
    LogText(threadId) << "lastid : " << head.first_id << '\t' << head.longest_left << '\n'
                      << "last read: " << head_read << '\n'
                      << "after add: " << seq << '\n';
    placing.Set(static_cast<std::size_t>(head.first_id), 0);
    EachInColumn(matrix, first_of_order, static_cast<int>(reads.size()),
                 [&](int i, int over) { placing.Set(i, over - Length(reads[i].seq) + head.longest_left); });
}

// Unlike the before form this places the reads that precede a path read, and counts only the reads of the order that
// have a successor.
int PlaceToAfter(const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads, const HeadRead& head,
                 Placing& placing, int threadId) {
    int valued_read_num = 0;
    int iter_len = head.longest_left;
    for (std::size_t o = 0; o + 1 < order.size(); ++o) {
        const std::string& path_read = reads[order[o]].seq;
        const Read& next = reads[order[o + 1]];
        placing.Set(static_cast<std::size_t>(order[o]), iter_len);
        const int next_over = Cell(matrix, order[o], order[o + 1]);
        if (next_over == 0) IllegalOrder("Error in order vector !\t", static_cast<int>(o), threadId);
        ++valued_read_num;
        const int dis0 = Length(path_read) - next_over;
        EachInColumn(matrix, order[o + 1], static_cast<int>(reads.size()), [&](int i, int over) {
            if (reads[i].pos > next.pos && placing.Has(i)) return;
            const int dis1 = Length(reads[i].seq) - over;
            placing.Set(i, dis0 - dis1 + iter_len);
            ++valued_read_num;
        });
        iter_len += dis0;
    }
    placing.Set(static_cast<std::size_t>(order.back()), iter_len);
    if (head.first_id != -1) placing.Set(static_cast<std::size_t>(head.first_id), 0);
    return valued_read_num;
}

int VoteBeforeEdge(std::string& seq, int after_len, const std::vector<PlacedRead>& placed, bool with_head,
                   int threadId) {
    int unsame_base_num = 0;
    const int edge_start = Length(seq) - after_len;
    const auto keep = [&](int posit, char voted) {
        if (posit >= edge_start) {
            ++unsame_base_num;
        } else if (!with_head || voted != 'N') {
            seq[posit] = voted;
        }
    };
    if (with_head) {
        VoteColumns(seq, 0, Length(seq), placed, threadId, PlainVote, keep);
    } else {
        VoteColumns(seq, 0, Length(seq), placed, threadId, StrictVote, keep);
    }
    // Unlike the before form, both votes cut.
    CutUpToLastN(seq);
    return unsame_base_num;
}

// Removes the added head again when its read doesn't agree with the path. A path whose own first read fails its check
// keeps the head.
void CheckHead(std::string& seq, const HeadRead& head, const Placing& placing, const std::vector<int>& order,
               const std::vector<Read>& reads, int threadId) {
    const int first = order.front();
    if (head.first_id == -1) return;
    if (!ReadAgrees(seq, reads[first].seq, placing.Offset(static_cast<std::size_t>(first)))) return;
    LogText(threadId) << "first order check passed!\n";
    const std::string& head_read = reads[head.first_id].seq;
    const int len = Length(head_read) - head.longest_left;
    const int same_base_num = SameBases(seq, head.longest_left, head_read, head.longest_left, len);
    LogText(threadId) << "same base num: " << same_base_num << '\t' << len << '\n';
    const double same = len > 0 ? static_cast<double>(same_base_num) / len : 0.0;
    if (same < 0.99 || Length(seq) - head.longest_left < head.longest_left) DropFront(seq, head.longest_left);
}

}  // namespace

void Get_snp_before(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                    const int* /*start*/, bool noreadbreak, int threadId) {
    logFile[threadId] << "get the before position for each read\n";
    snp[threadId] << "get the before position for each read\n";
    const BeforePlaces places = PlaceFromBefore(order, matrix, reads, threadId);

    seq = reads[0].seq + seq;
    const int before_len = Length(reads[0].seq);
    snp[threadId] << "value base for each position\t" + std::to_string(before_len) + '\n';
    int unsame_base_num = 0;
    if (places.reads.size() > 2) {
        unsame_base_num = VoteBehindEdge(seq, before_len, places.reads, noreadbreak, threadId);
    }
    if (noreadbreak) ExtendTail(seq, places, order, matrix, reads, threadId);

    CutAtFirstN(seq);
    DropFront(seq, before_len);
    logFile[threadId] << "Get snp finished!\n";
    WriteFinish(places.valued_read_num, unsame_base_num, threadId);
}

void Get_snp_after(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                   const int* /*end*/, bool noreadbreak, int threadId) {
    if (order.empty()) return;
    HeadRead head;
    if (noreadbreak) {
        head = FindHead(order, matrix, reads);
        LogText(threadId) << "no read: " << noreadbreak << '\t' << head.first_id << '\n';
    }
    LogText(threadId) << "get the after position for each read\n";
    snp[threadId] << "get the after position for each read\n";
    Placing placing(reads);
    if (head.first_id != -1) AddHead(seq, head, order[0], matrix, reads, placing, threadId);
    const int valued_read_num = PlaceToAfter(order, matrix, reads, head, placing, threadId);
    const std::vector<PlacedRead> placed = placing.Reads();

    const std::string& last_seq = reads[reads.size() - 1].seq;
    int after_len = Length(last_seq);
    seq += last_seq;
    snp[threadId] << "value base for each position\n";
    LogText(threadId) << "add tail: " << seq << '\t' << seq.size() << '\n';
    int unsame_base_num = 0;
    if (placed.size() > 2) unsame_base_num = VoteBeforeEdge(seq, after_len, placed, head.first_id != -1, threadId);
    LogText(threadId) << "after value: " << seq << '\t' << seq.size() << '\n';
    CheckHead(seq, head, placing, order, reads, threadId);

    LogText(threadId) << "before cut: " << seq << '\t' << seq.size() << '\n';
    if (head.first_id != -1) {
        DropEnd(seq, after_len);
    } else {
        // The vote may have shortened seq into the edge, which then no longer stands whole at its end.
        const int pos = overlap_after_len(seq, last_seq, 1, after_len, 1.0);
        DropEnd(seq, pos < 1 ? Length(last_seq) : pos);
    }
    LogText(threadId) << "after cut: " << seq << '\t' << seq.size() << '\n';
    WriteFinish(valued_read_num, unsame_base_num, threadId);
}

void Get_snp_middle(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
                    int threadId) {
    logFile[threadId] << "get the position for each read of middle block\n";
    Placing placing(reads);
    int valued_read_num = 0;
    int iter_len = 0;
    for (std::size_t o = 0; o < order.size(); ++o) {
        if (o > 0) iter_len += Step(order, o, matrix, reads, threadId);
        const Read& path_read = reads[order[o]];
        placing.Set(static_cast<std::size_t>(order[o]), iter_len);
        ++valued_read_num;
        EachInRow(matrix, order[o], static_cast<int>(reads.size()), [&](int i, int over) {
            const bool fresh = !placing.Has(i);
            if (!fresh && path_read.pos >= reads[i].pos) return;
            placing.Set(i, Length(path_read.seq) - over + iter_len);
            // Unlike in the edge forms, placing a read anew isn't counted.
            if (fresh) ++valued_read_num;
        });
    }
    snp[threadId] << "value base for each position\n";
    VoteColumns(seq, 0, Length(seq), placing.Reads(), threadId, StrictVote, [&](int posit, char voted) {
        if (voted != 'N') seq[posit] = voted;
    });
    logFile[threadId] << "Get snp finished!\n";
    WriteFinish(valued_read_num, 0, threadId);
}

char Enlong_value_base(char seq_base, int posit, const ReadMap& read, int threadId) {
    return VoteColumn(seq_base, posit, read, threadId, StrictVote);
}

char Enlong_value_base2(char seq_base, int posit, const ReadMap& read, int threadId) {
    return VoteColumn(seq_base, posit, read, threadId, PlainVote);
}

std::vector<int> reverse_vector(const std::vector<int>& tmp) {
    return {tmp.rbegin(), tmp.rend()};
}

std::string Drop_NTail(std::string& seq) {
    int min_start = 100000;
    int max_end = 0;
    for (const char letter : {'A', 'C', 'G', 'T'}) {
        const std::size_t first = seq.find(letter);
        if (first == std::string::npos) continue;
        if (first > 0 && static_cast<int>(first) < min_start) min_start = static_cast<int>(first);
        max_end = std::max(max_end, static_cast<int>(seq.rfind(letter)));
    }
    if (max_end < 1 || min_start == 100000) {
        seq.clear();
        return seq;
    }
    seq = Head(seq, max_end + 1);
    DropFront(seq, min_start);
    while (!seq.empty()) {
        const std::size_t n_start = seq.find('N');
        if (n_start == std::string::npos) break;
        const std::size_t n_end = seq.rfind('N');
        const std::size_t half = seq.size() / 2;
        if (n_end <= half) {
            seq.erase(0, n_end + 1);
        } else if (n_start >= half) {
            seq.resize(n_start);
        } else {
            seq = seq.substr(n_start + 1, n_end - n_start - 1);
        }
    }
    return seq;
}

}  // namespace lintara
