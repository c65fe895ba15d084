#include "consensus/seed.h"

#include <algorithm>
#include <fstream>

#include "run/streams.h"

namespace lintara {

namespace {

using namespace consensus;

const int kShortestSeed = 30;  // a seed read overlaps the edge in more bases than these
const int kNoOverlap = 10000;

/// The read that an edge is grown by.
struct Seed {
    int min_id = -1;
    int min_overlap = kNoOverlap;
};

// Of equal overlaps the lower read wins.
Seed ShortestOverlap(const int* overlaps, int first, int last) {
    Seed seed;
    for (int i = first; i < last; ++i) {
        if (overlaps[i] > kShortestSeed && overlaps[i] < seed.min_overlap) seed = {i, overlaps[i]};
    }
    return seed;
}

// Whether the covering reads confirm the winner. With two placed reads an agreement is what does not count: a single
// read never lengthens an edge.
bool Confirmed(int value, int read_num, int placed) {
    if (placed > 4) return static_cast<int>(read_num * 0.9) <= value && value >= 3;
    if (placed == 4) return true;
    if (placed == 3) return value == read_num;
    return placed == 2 && value != read_num;
}

struct RestrictVote {
    int placed;  // size of the read map

    Verdict operator()(char /*seq_base*/, const Column& column) const {
        const Winner winner = MostFrequent(column);
        const char bases = Confirmed(winner.value, column.read_num, placed) ? winner.bases : 'N';
        return {bases, "\t", winner.value, bases};
    }
};

void VoteExpansion(std::string& seq, int first, int last, const ReadMap& read, int threadId) {
    const RestrictVote vote{static_cast<int>(read.size())};
    VoteColumns(seq, first, last, read, threadId, vote, [&](int posit, char voted) { seq[posit] = voted; });
}

bool BelievedWhole(int same_base_num, int len, const std::string& seed_read) {
    return static_cast<double>(same_base_num) / len > 0.99 && len > 0.3 * Length(seed_read);
}

}  // namespace

std::string forward_expand(const int* start, const std::vector<Read>& reads, int threadId) {
    const std::string& edge = reads[0].seq;
    const int num = static_cast<int>(reads.size());
    const int edge_len = Length(edge);
    const Seed seed = ShortestOverlap(start, 1, num);
    if (seed.min_id == -1) return edge;
    std::ofstream& log = logFile[threadId];
    const std::string& seed_read = reads[seed.min_id].seq;
    log << "Forward min_overlap id: " << seed.min_id << "\tmin_overlap length: " << seed.min_overlap << '\n';

    ReadMap read{{&edge, 0}};
    for (int i = 1; i < num; ++i) {
        if (start[i] > 0) read[&reads[i].seq] = edge_len - start[i];
    }
    log << "Value base read number " << read.size() << '\n';
    std::string seq = edge + From(seed_read, seed.min_overlap);
    snp[threadId] << "Forward snp: \n";
    VoteExpansion(seq, edge_len, Length(seq), read, threadId);
    const std::size_t first_n = seq.find('N');
    if (first_n != std::string::npos) seq.resize(std::max(first_n, edge.size()));
    if (read.size() == 2) return seq;

    // The part of the seed read that still stands in seq may vouch for the rest of the read.
    const int len = Length(seq) - edge_len + seed.min_overlap;
    const int same_base_num = SameBases(seq, edge_len - seed.min_overlap, seed_read, 0, len);
    log << "same base number: " << same_base_num << "\tcheck length: " << len << '\n';
    if (len == 0) return seq;
    // Unlike the twin, a bare edge isn't lengthened.
    if (BelievedWhole(same_base_num, len, seed_read) && Length(seq) > edge_len) seq += From(seed_read, len);
    return seq;
}

std::string reward_expand(const int* end, const std::vector<Read>& reads, int threadId) {
    const std::string& edge = reads[reads.size() - 1].seq;
    const int num = static_cast<int>(reads.size());
    const int edge_len = Length(edge);
    const Seed seed = ShortestOverlap(end, 0, num - 1);
    if (seed.min_id == -1) return edge;
    std::ofstream& log = logFile[threadId];
    const std::string& seed_read = reads[seed.min_id].seq;
    log << "Reward find the min_overlap id: " << seed.min_id << "\t min_overlap length: " << seed.min_overlap << '\n';

    const int pos = std::max(0, Length(seed_read) - seed.min_overlap);
    ReadMap read{{&edge, pos}};
    for (int i = 0; i < num - 1; ++i) {
        if (end[i] > 0) read[&reads[i].seq] = end[i] - Length(reads[i].seq) + pos;
    }
    log << "Value base read number is: " << read.size() << '\n';
    std::string seq = Head(seed_read, pos) + edge;
    snp[threadId] << "Reward snp: \n";
    VoteExpansion(seq, 0, pos, read, threadId);
    const std::size_t last_n = seq.rfind('N');
    if (last_n != std::string::npos) DropFront(seq, std::min(static_cast<int>(last_n) + 1, pos));
    if (read.size() == 2) return seq;

    const int len = Length(seq) - edge_len + seed.min_overlap;
    const int startlen = Length(seed_read) - len;
    const int same_base_num = SameBases(seq, 0, seed_read, startlen, len);
    log << same_base_num << '\t' << len << '\n';
    if (len == 0) return seq;
    if (BelievedWhole(same_base_num, len, seed_read)) seq = Head(seed_read, std::max(0, startlen)) + seq;
    return seq;
}

char Enlong_value_base_restrict(char seq_base, int posit, const ReadMap& read, int threadId) {
    return VoteColumn(seq_base, posit, read, threadId, RestrictVote{static_cast<int>(read.size())});
}

}  // namespace lintara
