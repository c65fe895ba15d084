#include "strategy/spare_reads.h"

#include <cstddef>
#include <utility>

namespace lintara {

namespace {

const std::size_t kMostSpare = 4096;     // strings a thread keeps
const std::size_t kLargestSpare = 1024;  // bytes of one

thread_local std::vector<std::string> spare;

}  // namespace

ReadBlock::~ReadBlock() {
    // From the back, so that the next block gets them in the order in which they lie in memory.
    for (auto read = reads.rbegin(); read != reads.rend() && spare.size() < kMostSpare; ++read) {
        if (read->seq.capacity() <= kLargestSpare) spare.push_back(std::move(read->seq));
    }
}

void ReadBlock::Add(const std::string& seq, int pos) {
    if (spare.empty()) {
        reads.emplace_back(seq, pos);
        return;
    }
    reads.emplace_back(std::move(spare.back()), pos);
    spare.pop_back();
    reads.back().seq = seq;
}

}  // namespace lintara
