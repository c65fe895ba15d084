// A gap with its contigs and reads for the tests of the strategies that assemble blocks. All are cut from one made-up
// genome, in which the gap begins at place 400.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "run/settings.h"
#include "store/gap.h"
#include "strategy/fillgap.h"
#include "strategy/sample_bases.h"
#include "support/thread_streams.h"

namespace lintara::testing {

const int kGapStart = 400;

/// The genome from `from` up to `to`, that one excluded.
inline std::string Genome(int from, int to) {
    static const std::string bases = RandomBases(4000, 78);
    return bases.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

/// The same by positions on the gap's axis.
inline std::string GapBases(int from, int to) {
    return Genome(kGapStart + from, kGapStart + to);
}

class BlockGapTest : public ThreadStreamsTest {
  protected:
    void Add(const std::string& read, int pos) {
        reads.push_back(read);
        position.push_back(pos);
    }
    /// Adds reads of 100 bases at each of these true positions.
    void AddTrue(std::initializer_list<int> starts) {
        for (const int start : starts) Add(GapBases(start, start + 100), start);
    }
    /// Adds reads of 100 bases at `from` and each `step` bases behind it, up to `last`.
    void AddTile(int from, int last, int step = 10) {
        for (int start = from; start <= last; start += step) AddTrue({start});
    }
    /// Adds reads of one base, which no block takes in.
    void AddSingleBases(int count) {
        for (int i = 0; i < count; ++i) Add("A", 0);
    }
    /// Makes the contigs those of a gap that is so long in the genome.
    void SetGapLength(int length) {
        contig1 = Genome(0, kGapStart);
        contig2 = GapBases(length, length + 400);
    }
    Gap MakeGap(int gap_length) {
        Gap gap;
        gap.id = 4;
        gap.greadSum = static_cast<Len_t>(reads.size());
        gap.reads = reads.data();
        gap.position = position.data();
        gap.gap_length = gap_length;
        return gap;
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
            if (found == std::string::npos) {
                return ::testing::AssertionFailure() << "missing: " << text << "\nin:\n" << log;
            }
            at = found + text.size();
        }
        return ::testing::AssertionSuccess();
    }
    bool LogEndsWith(const std::string& text) const {
        return log.size() >= text.size() && log.compare(log.size() - text.size(), text.size(), text) == 0;
    }
    static std::string Ns(int count) { return std::string(static_cast<std::size_t>(count), 'N'); }

    std::vector<std::string> reads;
    std::vector<int> position;
    std::string contig1;
    std::string contig2;
    std::string log;  ///< what the last run wrote
};

/// Gaps that BigGapAssemble() treats, whatever their length.
class BigGapTest : public BlockGapTest {
  protected:
    std::string Fill(int gap_length) {
        Gap gap = MakeGap(gap_length);
        NewLog();
        const std::string seq = BigGapAssemble(gap, contig1, contig2, 0);
        log = NewLog();
        return seq;
    }
    void Clear() {
        reads.clear();
        position.clear();
    }
    /// Four reads from `from` on, 20 bases apart; the last one ends at from + 160.
    void AddBlock(int from) { AddTile(from, from + 60, 20); }
};

}  // namespace lintara::testing
