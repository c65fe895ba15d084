// Blocks of reads for the tests of the end selections: reads cut from one made-up genome, with the matrix that follows
// from where they were cut. A test then spoils single cells or bases.
#pragma once

#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "run/settings.h"
#include "store/gap.h"
#include "support/thread_streams.h"
#include "walk/end_select.h"

namespace lintara::testing {

inline std::string MadeUpBases(unsigned seed, int length) {
    std::mt19937 random(seed);
    std::string bases;
    for (int i = 0; i < length; i++) bases += "ACGT"[random() % 4];
    return bases;
}

class Block {
  public:
    std::vector<Read> reads;
    std::uint8_t** matrix = nullptr;

    /// A read cut from the genome at from, with its true position. Returns its number.
    int Cut(int from, int length) {
        static const std::string genome = MadeUpBases(7, 1000);
        reads.emplace_back(genome.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(length)), from);
        return static_cast<int>(reads.size()) - 1;
    }
    /// A read from nowhere.
    int Stranger(int pos) {
        reads.emplace_back(MadeUpBases(1000 + static_cast<unsigned>(reads.size()), 100), pos);
        reads.back().seq[0] = 'N';  // marks it, so that Link() leaves it alone
        return static_cast<int>(reads.size()) - 1;
    }
    /// Sets every cell from the positions; a read inside another one gets its whole length.
    void Link() {
        const std::size_t num = reads.size();
        cells_.assign(num, std::vector<std::uint8_t>(num, 0));
        for (std::size_t a = 0; a < num; a++) {
            for (std::size_t b = 0; b < num; b++) {
                if (a == b || reads[a].pos >= reads[b].pos) continue;
                if (reads[a].seq[0] == 'N' || reads[b].seq[0] == 'N') continue;
                const int length_b = static_cast<int>(reads[b].seq.size());
                const int shared = reads[a].pos + static_cast<int>(reads[a].seq.size()) - reads[b].pos;
                if (shared > 0) cells_[a][b] = static_cast<std::uint8_t>(std::min(shared, length_b));
            }
        }
        rows_.clear();
        for (auto& row : cells_) rows_.push_back(row.data());
        matrix = rows_.data();
    }
    /// One base more than the reads share: the pair disagrees, base by base and by offset.
    void Spoil(int a, int b) { matrix[a][b]++; }
    /// Puts another base at an index of a read.
    void Mutate(int read, int index) {
        char& base_at = reads[static_cast<std::size_t>(read)].seq[static_cast<std::size_t>(index)];
        base_at = base_at == 'A' ? 'C' : 'A';
    }
    int Num() const { return static_cast<int>(reads.size()); }

    std::vector<int> Right(int start) const {
        std::vector<int> accept;
        for (int i = 0; i < Num(); i++) {
            if (matrix[start][i] >= Min_overlap) accept.push_back(i);
        }
        return accept;
    }
    std::vector<int> Left(int end) const {
        std::vector<int> accept;
        for (int i = 0; i < Num(); i++) {
            if (matrix[i][end] >= Min_overlap) accept.push_back(i);
        }
        return accept;
    }

  private:
    std::vector<std::vector<std::uint8_t>> cells_;
    std::vector<std::uint8_t*> rows_;
};

/// A candidate of the blocks below: bases shared with the read the walk stands on, and length.
struct Candidate {
    int shared;
    int length = 100;
};

inline const std::vector<Candidate> kSix = {{90}, {80}, {70}, {60}, {50}, {40}};

/// A walk to the right. The read it stands on is 100 bases from position 0: read 1, or read 0 at the before edge. The
/// candidates follow in the order given; the last read is the after edge, far away.
inline Block RightBlock(bool at_edge, const std::vector<Candidate>& candidates) {
    Block block;
    if (!at_edge) block.Stranger(-500);
    block.Cut(0, 100);
    for (const Candidate& candidate : candidates) block.Cut(100 - candidate.shared, candidate.length);
    block.Stranger(900);
    block.Link();
    return block;
}

/// A walk to the left. The candidates are reads 1, 2, ... in the order given; then comes the read it stands on, 100
/// bases from position 300, and, unless that is the after edge itself, the after edge. Read 0 is the before edge.
inline Block LeftBlock(bool at_edge, const std::vector<Candidate>& candidates) {
    Block block;
    block.Stranger(-500);
    for (const Candidate& candidate : candidates) {
        block.Cut(300 + candidate.shared - candidate.length, candidate.length);
    }
    block.Cut(300, 100);
    if (!at_edge) block.Stranger(900);
    block.Link();
    return block;
}

class EndSelectTest : public ThreadStreamsTest {
  protected:
    int jum = 1;
    bool changenode = false;
    bool clean = true;
    std::vector<int> accept;

    int Last(Block& block, int start) {
        accept = block.Right(start);
        return get_last(start, accept, block.reads, block.matrix, jum, changenode, clean, 0);
    }
    int First(Block& block, int end) {
        accept = block.Left(end);
        return get_first(end, accept, block.reads, block.matrix, jum, changenode, clean, 0);
    }
    int ResumedFirst(Block& block, int end, const std::string& drop_seq) {
        accept = block.Left(end);
        return get_first(end, accept, block.reads, block.matrix, jum, changenode, drop_seq, false, clean, 0);
    }

  public:
    /// The line of a test in which some of the other candidates were against the pick.
    static std::string Against(int against, int others) {
        std::ostringstream line;
        line << "un accept num: " << against << "\tratio: " << static_cast<double>(against) / others << '\n';
        return line.str();
    }
    static std::string TurnLine(int size) {
        return "try to drop reads, with accept number:  " + std::to_string(size) + "\n";
    }
    static std::string Matched(int size, bool changed = false) {
        return "After full match drop: " + std::to_string(size) + "\tchangenode: " + (changed ? "1" : "0") + "\n";
    }
    /// The three lines of a clean that finds an exact partner for left of size candidates.
    static std::string Cleaned(int size, int left) {
        std::ostringstream lines;
        lines << "Before full match clean: " << size << "\nAccept left ratio: " << static_cast<double>(left) / size
              << "\taccept left num: " << left << "\ttotal num: " << size << "\nAfter full match clean: " << left
              << "\n";
        return lines.str();
    }
    static std::string Cleaned(int size) { return Cleaned(size, size); }
};

}  // namespace lintara::testing
