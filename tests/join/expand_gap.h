// A gap with two expansions, for the tests of the expansion join.
#pragma once

#include <string>
#include <vector>

#include "join/bases.h"
#include "join/expand_connect.h"
#include "join/tag_table.h"
#include "support/thread_streams.h"

namespace lintara::testing {

class ExpandGapTest : public ThreadStreamsTest {
  protected:
    std::string before_edge = Bases(1, 60);
    std::string after_edge = Bases(2, 60);
    std::string before;
    std::string after;
    int gapsize = 100;
    std::vector<std::string> inner;  ///< reads between the edges
    bool noreadbreak1 = false;
    bool noreadbreak2 = false;
    int realgaplen = 77;  ///< a value that the join never gives
    TagTable tags;

    /// The join's answer. What it writes to the log is in `log`.
    std::string Connect() {
        std::vector<Read> reads{Read(before_edge, -60)};
        for (const std::string& seq : inner) reads.emplace_back(seq, 0);
        reads.emplace_back(after_edge, gapsize);
        const std::string text = ExpandConnect(before, after, before_edge, after_edge, gapsize, reads, tags.Info(),
                                               noreadbreak1, noreadbreak2, realgaplen, 0);
        log = NewLog();
        return text;
    }

    /// The same for new expansions.
    std::string Connect(const std::string& new_before, const std::string& new_after, int new_gapsize) {
        before = new_before;
        after = new_after;
        gapsize = new_gapsize;
        return Connect();
    }

    bool Logged(const std::string& text) const { return log.find(text) != std::string::npos; }

    /// Makes CheckOver() refuse a piece of 13 to 100 bases.
    void Distrust(const std::string& piece) { tags.SetAll(piece, 150); }

    std::string log;
};

}  // namespace lintara::testing
