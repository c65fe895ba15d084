#include "kit/assign/layout.h"

namespace lintara::kit {

std::vector<Span> FindRuns(const std::string& text, long minGap) {
    std::vector<Span> runs;
    long size = static_cast<long>(text.size());
    for (long i = 0; i < size;) {
        if (text[i] != 'N' && text[i] != 'n') {
            ++i;
            continue;
        }
        long end = i;
        while (end < size && (text[end] == 'N' || text[end] == 'n')) ++end;
        if (end - i >= minGap) runs.push_back({i, end});
        i = end;
    }
    return runs;
}

void AddSequence(Layout& layout, const std::string& name, const std::string& text, long minGap) {
    Sequence sequence;
    sequence.name = name;
    sequence.text = Upper(text);
    std::vector<Span> runs = FindRuns(sequence.text, minGap);
    long size = static_cast<long>(text.size());
    for (size_t i = 0; i < runs.size(); ++i) {
        long leftStart = i == 0 ? 0 : runs[i - 1].end;
        long rightEnd = i + 1 == runs.size() ? size : runs[i + 1].start;
        if (runs[i].start - leftStart < kLeastContig || rightEnd - runs[i].end < kLeastContig) continue;
        sequence.gaps.push_back({++layout.gapCount, runs[i], leftStart, rightEnd});
    }
    layout.sequences.push_back(std::move(sequence));
}

namespace {

/// Starts of a new chain: the gap in front of this one is missing.
bool Follows(const CoreScaffold& chain, const LayoutGap& gap) {
    return !chain.contigs.empty() && chain.contigs.back().start == gap.leftStart;
}

}  // namespace

std::vector<CoreScaffold> CoreScaffolds(const Layout& layout, bool all) {
    std::vector<CoreScaffold> chains;
    for (size_t s = 0; s < layout.sequences.size(); ++s) {
        const Sequence& sequence = layout.sequences[s];
        size_t first = chains.size();
        for (const LayoutGap& gap : sequence.gaps) {
            if (chains.size() == first || !Follows(chains.back(), gap)) {
                CoreScaffold chain;
                chain.number = static_cast<int>(chains.size()) + 1;
                chain.sequence = static_cast<int>(s);
                chain.contigs.push_back({gap.leftStart, gap.span.start});
                chains.push_back(std::move(chain));
            }
            chains.back().contigs.push_back({gap.span.end, gap.rightEnd});
            chains.back().gaps.push_back(gap.id);
        }
        if (all && chains.size() == first && static_cast<long>(sequence.text.size()) >= kLeastContig) {
            chains.push_back(
                {static_cast<int>(first) + 1, static_cast<int>(s), {{0, static_cast<long>(sequence.text.size())}}, {}});
        }
    }
    return chains;
}

}  // namespace lintara::kit
