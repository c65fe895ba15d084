// The reads of a block. Each block takes a copy of its reads, since the solvers cut them, and the copies of a gap are
// gone before the next one begins. So a thread keeps their strings, and a block asks for memory only while it is larger
// than all before it.
#pragma once

#include <string>
#include <vector>

#include "store/gap.h"

namespace lintara {

struct ReadBlock {
    std::vector<Read> reads{};

    ReadBlock() = default;
    ReadBlock(const ReadBlock&) = delete;
    ReadBlock& operator=(const ReadBlock&) = delete;
    /// Keeps the strings for the thread's next block.
    ~ReadBlock();

    /// Adds a read behind those that are there.
    void Add(const std::string& seq, int pos);
};

}  // namespace lintara
