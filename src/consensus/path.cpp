#include "consensus/path.h"

#include <algorithm>

#include "consensus/placing.h"
#include "kmer/matrix_lines.h"
#include "run/record_text.h"
#include "run/streams.h"

namespace lintara {

namespace {

using namespace consensus;

// The votes are objects, so that each loop over columns takes its vote in.

const auto PathVote = [](char seq_base, const Column& column) -> Verdict {
    const Winner winner = MostFrequent(column);
    return {winner.bases, Marker(winner.bases, seq_base), winner.value,
            ClearWinner(winner.bases, seq_base, winner.ratio)};
};

// A later placement overwrites an earlier one, and each placement counts: the result is their number.
int PlaceReads(Placing& placing, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
               int threadId) {
    int valued_read_num = 0;
    int offset = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const std::string& path_read = reads[order[k]].seq;
        if (k > 0) {
            const int over = Cell(matrix, order[k - 1], order[k]);
            if (over == 0) IllegalOrder("Error in order vector!\t", static_cast<int>(k), threadId);
            offset += Length(reads[order[k - 1]].seq) - over;
        }
        placing.Set(static_cast<std::size_t>(order[k]), offset);
        ++valued_read_num;
        // The successors off the path are witnesses too.
        EachInRow(matrix, order[k], static_cast<int>(reads.size()), [&](int r, int over) {
            placing.Set(r, Length(path_read) - over + offset);
            ++valued_read_num;
        });
    }
    return valued_read_num;
}

int PlaceIn(const ReadMap& read, const std::string& tmp_seq) {
    const auto placed = read.find(&tmp_seq);
    return placed == read.end() ? 0 : placed->second;
}

}  // namespace

bool consensus::ReadAgrees(const std::string& seq, const std::string& tmp_seq, int start) {
    const int compared = std::min(Length(tmp_seq), Length(seq));
    const int same_base_num = SameBases(tmp_seq, 0, seq, start, compared);
    return compared != 0 && static_cast<double>(same_base_num) / compared > 0.9;
}

std::string get_gap_seq(Overlaps matrix, const std::vector<Read>& reads, const std::vector<int>& order, int posit,
                        const int* end, int threadId) {
    if (order.empty()) return "";
    LogText log(threadId);
    const int num = static_cast<int>(reads.size());
    const int order_size = static_cast<int>(order.size());
    std::string seq = reads[order[0]].seq;
    log << "Get the sequence of order, order size " << order_size << '\n';
    if (posit == 2 && order_size == 2) return "";

    int i = 1;
    if (end[order[0]] > 0 && Cell(matrix, order[0], num - 1) != 0) i = order_size;
    log << "show order list: \n" << order[0];
    for (; i < order_size; ++i) {
        const std::string& next = reads[order[i]].seq;
        const int over = Cell(matrix, order[i - 1], order[i]);
        seq.append(next, std::min(next.size(), static_cast<std::size_t>(std::max(over, 0))));
        log << '\n' << order[i] << "\tlength: " << next.size() << "\tafter: " << order[i - 1] << "\toverlap: " << over;
    }
    log << '\n' << i << " order element used to creat get the gap sequence\n";

    const int before_edge_len = posit == 0 || posit == 2 ? Length(reads[0].seq) : 0;
    const int after_edge_len = posit == 1 || posit == 2 ? Length(reads[num - 1].seq) : 0;
    const int shared = before_edge_len + after_edge_len - Length(seq);
    if (posit == 2 && shared > 0) {
        log << "Two edge connected with each other: -" << shared << '\n';
        return std::string(static_cast<std::size_t>(shared), 'N');
    }
    DropEnd(seq, after_edge_len);
    DropFront(seq, before_edge_len);
    log << "Raw seq: " << seq << '\t' << seq.size() << '\n';
    return seq;
}

void Get_snp(std::string& seq, const std::vector<int>& order, Overlaps matrix, const std::vector<Read>& reads,
             const int* /*start*/, const int* /*end*/, int threadId) {
    logFile[threadId] << "get the position for each read\n";
    Placing placing(reads);
    const int valued_read_num = PlaceReads(placing, order, matrix, reads, threadId);

    const std::string& before = reads[0].seq;
    const std::string& after = reads[reads.size() - 1].seq;
    seq = before + seq + after;
    snp[threadId] << "value base for each position\n";
    int unsame_base_num = 0;
    VoteColumns(seq, 0, Length(seq), placing.Reads(), threadId, PathVote, [&](int posit, char voted) {
        if (voted == 'N') return;
        ++unsame_base_num;
        seq[posit] = voted;
    });
    DropEnd(seq, Length(after));
    DropFront(seq, Length(before));
    logFile[threadId] << "Get snp finished!\n";
    WriteFinish(valued_read_num, unsame_base_num, threadId);
}

char value_base(char seq_base, int posit, const ReadMap& read, int threadId) {
    return VoteColumn(seq_base, posit, read, threadId, PathVote);
}

bool LastOrderCheck(const std::string& seq, const ReadMap& read, const std::vector<Read>& reads,
                    const std::vector<int>& order) {
    return !order.empty() && ReadAgrees(seq, reads[order.back()].seq, PlaceIn(read, reads[order.back()].seq));
}

bool FirstOrderCheck(const std::string& seq, const ReadMap& read, const std::vector<Read>& reads,
                     const std::vector<int>& order) {
    return !order.empty() && ReadAgrees(seq, reads[order.front()].seq, PlaceIn(read, reads[order.front()].seq));
}

}  // namespace lintara
