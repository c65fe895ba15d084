#include "strategy/spare_reads.h"

#include <cstddef>
#include <utility>

namespace lintara {

namespace {

const std::size_t kMostSpare = 4096;     // reads a thread keeps
const std::size_t kLargestSpare = 1024;  // bytes of one

thread_local std::vector<Read> spare;

}  // namespace

ReadBlock::~ReadBlock() {
    std::vector<Read>& kept = spare;
    // From the back, so that the next block gets them in the order in which they lie in memory.
    for (auto read = reads.rbegin(); read != reads.rend() && kept.size() < kMostSpare; ++read) {
        if (read->seq.capacity() <= kLargestSpare) kept.push_back(std::move(*read));
    }
}

void ReadBlock::Add(const std::string& seq, int pos) {
    std::vector<Read>& kept = spare;
    if (kept.empty()) {
        reads.emplace_back(seq, pos);
        return;
    }
    reads.push_back(std::move(kept.back()));
    kept.pop_back();
    reads.back().seq = seq;
    reads.back().pos = pos;
}

}  // namespace lintara
