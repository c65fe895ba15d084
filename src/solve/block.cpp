#include "solve/block.h"

#include <algorithm>

#include "align/edge_align.h"
#include "align/edge_seeds.h"
#include "align/overlap.h"
#include "align/placement.h"
#include "consensus/edge.h"
#include "consensus/path.h"
#include "join/edge_connect.h"
#include "kmer/hashSet.h"
#include "kmer/open_matrix.h"
#include "kmer/overlap_matrix.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "solve/halves.h"
#include "solve/matrix_solver.h"
#include "walk/max_walks.h"

namespace lintara {

namespace {

// Rounding up to an odd size and doubling must fit, or the table says so and ends the process.
const std::uint64_t MOST_SLOTS = std::uint64_t{1} << 32;

/// The seeded matrix of a block by the k-mer table.
std::uint8_t** SeedMatrix(const std::vector<Read>& reads, int threadId) {
    HashSet* hash = init_hashset(initSizes[threadId], load_factor);
    fill_hash(hash, reads);
    std::uint8_t** matrix = hash2matrix(hash, static_cast<std::uint16_t>(reads.size()));
    free_hash(hash);
    return matrix;
}

/// What the edge finders make of overlap() when the read is no longer than the edge.
int InsideEdge(int length, const std::string& read) {
    return length < 1 || length >= Length(read) ? 0 : length;
}

/// Whether the overlap of an inner read with an edge has been measured with the whole block.
bool IsKnown(const std::vector<int>& with_edge, int i) {
    return !with_edge.empty() && i > 0 && i + 1 < static_cast<int>(with_edge.size());
}

/// Whether an edge and a read are too short for a seed of overlap(). Then they do not overlap, and no finder is asked:
/// it would end the process over a text that is shorter than its pattern. The search of method 4 takes all lengths
/// but 0.
bool TooShortToOverlap(const std::string& edge, const std::string& read, int method) {
    const int length = std::min(Length(edge), Length(read));
    const int seed = detail::PlanSeeds(method).pattlen;
    return length == 0 || (method != 4 && seed >= 4 && length < seed);
}

int OverlapBefore(const EdgeSeeds& edge, const std::string& read, int method, int& before_len) {
    before_len = -1;
    if (TooShortToOverlap(edge.Edge(), read, method)) return 0;
    return overlap_before_len(edge, read, method, before_len, Match_ratio);
}

int OverlapAfter(const std::string& read, const EdgeSeeds& edge, int method, int& after_len) {
    after_len = -1;
    if (TooShortToOverlap(edge.Edge(), read, method)) return 0;
    return overlap_after_len(read, edge, method, after_len, Match_ratio);
}

/// Writes the row of the before edge. A read that reaches past the edge's left end is cut to begin where the edge does,
/// and overlaps the whole edge.
///
/// @param with_edge  overlap() of the edge with each inner read, by read; empty when nothing has been measured yet
void WriteBeforeEdge(std::uint8_t** matrix, std::vector<Read>& reads, const std::vector<int>& with_edge, int method,
                     int* start) {
    const int edge = Length(reads[0].seq);
    const int num = static_cast<int>(reads.size());
    const EdgeSeeds edge_seeds(reads[0].seq);
    for (int i = 0; i < num; ++i) {
        int before_len = -1;
        const int pos = IsKnown(with_edge, i) ? InsideEdge(with_edge[i], reads[i].seq)
                                              : OverlapBefore(edge_seeds, reads[i].seq, method, before_len);
        if (before_len < 0) {
            start[i] = 0;
            matrix[0][i] = static_cast<std::uint8_t>(std::min(pos, edge));
        } else {
            start[i] = before_len + pos;
            matrix[0][i] = static_cast<std::uint8_t>(edge);
            reads[i].seq.erase(0, static_cast<std::size_t>(before_len));
            if (Length(reads[i].seq) == edge) matrix[0][i] = 0;
        }
        if (matrix[0][i] < Min_overlap) matrix[0][i] = 0;
        matrix[i][0] = 0;
    }
}

/// Writes the column of the after edge; differs on purpose in its start at read 1 and in its look at the read's cell
/// with the before edge, since the read may have become shorter than that overlap.
void WriteAfterEdge(std::uint8_t** matrix, std::vector<Read>& reads, const std::vector<int>& with_edge, int method,
                    int* end) {
    const int num = static_cast<int>(reads.size());
    const int edge = Length(reads[num - 1].seq);
    const EdgeSeeds edge_seeds(reads[num - 1].seq);
    for (int i = 1; i < num; ++i) {
        int after_len = -1;
        const int pos = IsKnown(with_edge, i) ? InsideEdge(with_edge[i], reads[i].seq)
                                              : OverlapAfter(reads[i].seq, edge_seeds, method, after_len);
        if (after_len < 0) {
            end[i] = 0;
            matrix[i][num - 1] = static_cast<std::uint8_t>(std::min(pos, edge));
        } else {
            end[i] = after_len + pos;
            matrix[i][num - 1] = static_cast<std::uint8_t>(edge);
            reads[i].seq.resize(reads[i].seq.size() - static_cast<std::size_t>(after_len));
            if (matrix[0][i] > Length(reads[i].seq)) matrix[0][i] = 0;
            if (Length(reads[i].seq) == edge) matrix[i][num - 1] = 0;
        }
        if (matrix[i][num - 1] < Min_overlap) matrix[i][num - 1] = 0;
        matrix[num - 1][i] = 0;
    }
}

/// The lines of overlap_matrix().
void LogMatrixSteps(int threadId) {
    logFile[threadId] << "caculate the overlap values\n"
                         "caculate finish!\n";
}

/// What the walks of one block work on.
struct Block {
    std::uint8_t**& matrix;
    std::vector<Read>& reads;
    int* start;
    int* end;
    int threadId;

    std::uint16_t num() const { return static_cast<std::uint16_t>(reads.size()); }
    std::ofstream& log() const { return logFile[threadId]; }
};

void WriteBlockLine(const Block& block, const char* head, std::size_t count, const std::string& seq) {
    block.log() << head << count << "\t" << seq.size() << "\n" << seq << "\n";
}

/// Walks both ways from the best-linked read and joins the two paths at it, left to right.
std::vector<int> JoinedPath(const Block& block) {
    const std::uint16_t middle = GetMax(block.matrix, block.num());
    block.log() << "Start from id: " << middle << "\n";
    std::vector<int> starts;
    std::vector<int> ends;
    forwardmax(starts, block.reads, block.matrix, block.num(), middle, 0, block.threadId);
    rewardmax(ends, block.reads, block.matrix, block.num(), middle, 0, block.threadId);
    ends = reverse_vector(ends);
    // The seed stands in both paths.
    if (!starts.empty()) ends.insert(ends.end(), starts.begin() + 1, starts.end());
    clearn_order(ends);
    return ends;
}

/// Whether the path of a block puts the reads the wrong way round the edges.
bool GapMayBeZero(const Block& block, const std::vector<int>& ends) {
    if (ends.back() != 0 && ends.front() != block.num() - 1) return false;
    block.log() << "The gap size may be zero!\n";
    return true;
}

std::string SolveMiddleBlock(const Block& block) {
    block.log() << "Treat the middle block of the large gap\n";
    const std::vector<int> ends = JoinedPath(block);
    if (ends.size() <= 1) return "";
    std::string after = get_gap_seq(block.matrix, block.reads, ends, -1, block.end, block.threadId);
    if (GapMayBeZero(block, ends)) return "";
    Get_snp_middle(after, ends, block.matrix, block.reads, block.threadId);
    WriteBlockLine(block, ">middle ", ends.size(), after);
    return after;
}

/// Cuts from the front of a piece what overlaps the before edge, or marks it with an N.
void JoinToBeforeEdge(const std::string& edge, std::string& after) {
    if (Length(after) > min_align) {
        const int match = align_connect(edge, after, min_align);
        const int overlap_len = min_align + match;
        if (match >= 0 && overlap_len < Length(after) && overlap_len < Length(edge)) {
            after.erase(0, static_cast<std::size_t>(overlap_len));
            return;
        }
    }
    after.insert(after.begin(), 'N');
}

/// The twin for the after edge; differs on purpose in that it logs the match.
void JoinToAfterEdge(const Block& block, const std::string& edge, std::string& after) {
    if (Length(after) > min_align) {
        const int match = align_connect(after, edge, min_align);
        block.log() << "Middle overlapped with after edge: " << match << "\n";
        const int overlap_len = min_align + match;
        if (match >= 0 && overlap_len < Length(after) && overlap_len < Length(edge)) {
            after.resize(after.size() - static_cast<std::size_t>(overlap_len));
            return;
        }
    }
    after += "N";
}

std::string SolveBeforeBlock(const Block& block) {
    block.log() << "Treat the before block of the large gap\n";
    std::vector<int> starts;
    forwardmax(starts, block.reads, block.matrix, block.num(), 0, 0, block.threadId);
    clearn_order(starts);
    if (starts.size() > 1) {
        std::string before = get_gap_seq(block.matrix, block.reads, starts, 0, block.end, block.threadId);
        Get_snp_before(before, starts, block.matrix, block.reads, block.start, true, block.threadId);
        WriteBlockLine(block, ">starts number: ", starts.size(), before);
        return before;
    }
    const std::vector<int> ends = JoinedPath(block);
    if (ends.size() <= 1) return "";
    if (ends.front() == 0) {
        std::string after = get_gap_seq(block.matrix, block.reads, ends, 0, block.end, block.threadId);
        Get_snp_before(after, ends, block.matrix, block.reads, block.start, true, block.threadId);
        // This line tells of the walk from the edge, which is empty by now; the twin tells of the joined path.
        WriteBlockLine(block, ">middle with starts: ", 0, "");
        return after;
    }
    std::string after = get_gap_seq(block.matrix, block.reads, ends, -1, block.end, block.threadId);
    if (GapMayBeZero(block, ends)) return "";
    Get_snp_middle(after, ends, block.matrix, block.reads, block.threadId);
    WriteBlockLine(block, ">middle ", ends.size(), after);
    JoinToBeforeEdge(block.reads[0].seq, after);
    return after;
}

std::string SolveAfterBlock(const Block& block) {
    block.log() << "Treat the after block of the large gap\n";
    const int last = block.num() - 1;
    std::vector<int> ends;
    rewardmax(ends, block.reads, block.matrix, block.num(), last, 0, block.threadId);
    clearn_order(ends);
    if (ends.size() > 1) {
        ends = reverse_vector(ends);
        std::string after = get_gap_seq(block.matrix, block.reads, ends, 1, block.end, block.threadId);
        Get_snp_after(after, ends, block.matrix, block.reads, block.end, true, block.threadId);
        WriteBlockLine(block, ">end number: ", ends.size(), after);
        return after;
    }
    ends = JoinedPath(block);
    if (ends.size() <= 1) return "";
    if (ends.back() == last) {
        std::string after = get_gap_seq(block.matrix, block.reads, ends, 1, block.end, block.threadId);
        Get_snp_after(after, ends, block.matrix, block.reads, block.end, true, block.threadId);
        WriteBlockLine(block, ">middle with end: ", ends.size(), after);
        return after;
    }
    std::string after = get_gap_seq(block.matrix, block.reads, ends, -1, block.end, block.threadId);
    if (GapMayBeZero(block, ends)) return "";
    Get_snp_middle(after, ends, block.matrix, block.reads, block.threadId);
    WriteBlockLine(block, ">middle ", ends.size(), after);
    JoinToAfterEdge(block, block.reads[last].seq, after);
    return after;
}

}  // namespace

std::string assemble_block(std::vector<Read>& reads, int method, int& type, TagInfo*& tagInfo, int& realgaplen,
                           int threadId) {
    const std::uint16_t num = static_cast<std::uint16_t>(reads.size());
    // How many k-mers the block can hold.
    initSizes[threadId] = static_cast<std::uint64_t>(static_cast<std::int64_t>(ReadLen - Kmer + 1) * num);
    OpenMatrix open;
    const bool opens = initSizes[threadId] <= MOST_SLOTS && open.Begin(reads, method, type);
    std::uint8_t** matrix = opens ? open.cells() : SeedMatrix(reads, threadId);
    std::vector<int> starts_past(num);
    std::vector<int> ends_past(num);
    int* start = starts_past.data();
    int* end = ends_past.data();
    LogText(threadId) << "the read number is: " << int{num} << '\n';
    std::vector<int> with_edge;
    if (type == 1 || type == 3) {
        if (opens) open.MeasureBeforeEdge(with_edge);
        WriteBeforeEdge(matrix, reads, with_edge, method, start);
    }
    with_edge.clear();
    if (type == 2 || type == 3) {
        if (opens) open.MeasureAfterEdge(with_edge);
        WriteAfterEdge(matrix, reads, with_edge, method, end);
    }
    if (opens) {
        LogMatrixSteps(threadId);
        open.Release();
    } else {
        overlap_matrix(matrix, reads, method, type, threadId);
    }
    std::string seq = solve_block_matrix(matrix, reads, type, start, end, tagInfo, realgaplen, threadId);
    if (!opens) free_matrix(matrix, num);
    return seq;
}

std::uint16_t GetMax(std::uint8_t**& matrix, std::uint16_t num) {
    SettleAll(matrix, num);
    int best = 0;
    int most = 0;
    for (int i = 0; i < num; ++i) {
        int time = 0;
        for (int j = 0; j < num; ++j) {
            if (j != i && (matrix[i][j] != 0 || matrix[j][i] != 0)) ++time;
        }
        if (time > most) {
            most = time;
            best = i;
        }
    }
    return static_cast<std::uint16_t>(best);
}

std::string solve_block_matrix(std::uint8_t**& matrix, std::vector<Read>& reads, int& type, int*& start, int*& end,
                               TagInfo*& tagInfo, int& realgaplen, int threadId) {
    const Block block{matrix, reads, start, end, threadId};
    switch (type) {
        case 0:
            return SolveMiddleBlock(block);
        case 1:
            return SolveBeforeBlock(block);
        case 2:
            return SolveAfterBlock(block);
        case 3:
            return solve_matrix(matrix, reads, start, end, type, tagInfo, realgaplen, threadId);
        default:
            return "";
    }
}

}  // namespace lintara
