// Blocks of reads for the solvers' tests: reads cut from one made-up genome, with the overlap matrix that follows from
// where they were cut. A test may add strangers and set single cells by hand. Also the fixture that runs the solvers on
// such a block.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <string>
#include <vector>

#include "run/settings.h"
#include "solve/block.h"
#include "solve/matrix_solver.h"
#include "solve/short_solver.h"
#include "store/gap.h"
#include "support/thread_streams.h"
#include "walk/small_block.h"

namespace lintara::testing {

/// The genome from `from` up to `to`, that one excluded.
inline std::string Genome(int from, int to) {
    static const std::string bases = RandomBases(3000, 77);
    return bases.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

class BlockOfReads {
  public:
    /// @param gap_start  place in the genome at which position 0 of the gap's axis stands
    explicit BlockOfReads(int gap_start = 0) : gap_start_(gap_start) {}

    std::vector<Read> reads;

    /// Adds the genome from `from` up to `to`, at its true position. @return its number
    int Cut(int from, int to) {
        reads.emplace_back(Genome(from, to), from - gap_start_);
        places_.push_back({from, to});
        return Num() - 1;
    }
    /// The same at a position of the test's choice.
    int CutAt(int from, int to, int pos) {
        const int read = Cut(from, to);
        reads.back().pos = pos;
        return read;
    }
    /// Adds reads of 100 bases that begin at `from` and every 10 bases behind it, up to `last`.
    void Tile(int from, int last) {
        for (int i = from; i <= last; i += 10) Cut(i, i + 100);
    }
    /// Adds bases that are not the genome's, which Link() leaves alone.
    int Stranger(const std::string& bases, int pos) {
        reads.emplace_back(bases, pos);
        places_.push_back({-1, -1});
        return Num() - 1;
    }
    int Stranger(int length, int pos) { return Stranger(RandomBases(length, 500U + reads.size()), pos); }

    /// Sets the cells of all pairs of cut reads that share `least` bases or more and don't hold one another.
    void Link(int least = 30) {
        MakeRows();
        for (int a = 0; a < Num(); ++a) {
            for (int b = 0; b < Num(); ++b) {
                const Place& left = places_[static_cast<std::size_t>(a)];
                const Place& right = places_[static_cast<std::size_t>(b)];
                if (left.from < 0 || right.from < 0 || left.from >= right.from || left.to >= right.to) continue;
                if (left.to - right.from >= least) Set(a, b, left.to - right.from);
            }
        }
    }
    void Set(int a, int b, int overlap) {
        if (rows_.empty()) MakeRows();
        cells_[static_cast<std::size_t>(a)][static_cast<std::size_t>(b)] = static_cast<std::uint8_t>(overlap);
    }
    /// Takes all cells of a read's row, or of its column, but for those of the reads named.
    void KeepOnlyRight(int a, std::initializer_list<int> kept) {
        for (int b = 0; b < Num(); ++b) {
            if (std::find(kept.begin(), kept.end(), b) == kept.end()) Set(a, b, 0);
        }
    }
    void KeepOnlyLeft(int b, std::initializer_list<int> kept) {
        for (int a = 0; a < Num(); ++a) {
            if (std::find(kept.begin(), kept.end(), a) == kept.end()) Set(a, b, 0);
        }
    }
    std::uint8_t** Matrix() {
        if (rows_.empty()) MakeRows();
        return rows_.data();
    }
    int Num() const { return static_cast<int>(reads.size()); }

  private:
    struct Place {
        int from;
        int to;
    };
    void MakeRows() {
        cells_.assign(reads.size(), std::vector<std::uint8_t>(reads.size(), 0));
        rows_.clear();
        for (auto& row : cells_) rows_.push_back(row.data());
    }

    int gap_start_;
    std::vector<Place> places_;
    std::deque<std::vector<std::uint8_t>> cells_;
    std::vector<std::uint8_t*> rows_;
};

class SolverTest : public ThreadStreamsTest {
  protected:
    std::string SolveBlock(BlockOfReads& block, int block_type) {
        return Run(block, block_type, [&](std::uint8_t**& matrix, int*& start, int*& end) {
            return solve_block_matrix(matrix, block.reads, type, start, end, tagInfo, realgaplen, 0);
        });
    }
    std::string SolveMatrix(BlockOfReads& block) {
        return Run(block, 3, [&](std::uint8_t**& matrix, int*& start, int*& end) {
            return solve_matrix(matrix, block.reads, start, end, type, tagInfo, realgaplen, 0);
        });
    }
    std::string SolveMatrix3(BlockOfReads& block) {
        return Run(block, 3, [&](std::uint8_t**& matrix, int*& start, int*& end) {
            return solve_matrix3(matrix, block.reads, start, end, tagInfo, realgaplen, 0);
        });
    }
    std::string Assemble(std::vector<Read>& reads, int block_type) {
        type = block_type;
        realgaplen = 1;
        log.clear();
        const std::string seq = assemble_block(reads, Method, type, tagInfo, realgaplen, 0);
        log = NewLog();
        return seq;
    }

    bool Logged(const std::string& text) const { return log.find(text) != std::string::npos; }
    int Times(const std::string& text) const {
        int times = 0;
        for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) ++times;
        return times;
    }
    /// Whether the log holds these texts, one behind the other.
    ::testing::AssertionResult LoggedInOrder(std::initializer_list<std::string> texts) const {
        std::size_t at = 0;
        for (const std::string& text : texts) {
            const std::size_t found = log.find(text, at);
            if (found == std::string::npos)
                return ::testing::AssertionFailure() << "missing: " << text << "\nin:\n" << log;
            at = found + text.size();
        }
        return ::testing::AssertionSuccess();
    }
    bool LogEndsWith(const std::string& text) const {
        return log.size() >= text.size() && log.compare(log.size() - text.size(), text.size(), text) == 0;
    }
    /// The lines of a path or half as the solvers write them.
    static std::string BlockLine(const std::string& head, int count, const std::string& seq) {
        return head + std::to_string(count) + "\t" + std::to_string(seq.size()) + "\n" + seq + "\n";
    }

    int type = 3;        ///< as the last run left it
    int realgaplen = 1;  ///< as the last run left it
    std::string log;     ///< what the last run wrote
    TagInfo* tagInfo = nullptr;

  private:
    template <typename Solver>
    std::string Run(BlockOfReads& block, int block_type, Solver solver) {
        std::vector<int> starts_past(block.reads.size());
        std::vector<int> ends_past(block.reads.size());
        int* start = starts_past.data();
        int* end = ends_past.data();
        std::uint8_t** matrix = block.Matrix();
        type = block_type;
        realgaplen = 1;
        NewLog();
        const std::string seq = solver(matrix, start, end);
        log = NewLog();
        return seq;
    }
};

}  // namespace lintara::testing
