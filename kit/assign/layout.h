// What reads are assigned to: sequences cut at their runs of N into contigs and gaps. A gap's interval lies on its
// sequence, 0-based and half open; the same coordinates are those of the mapping. Gaps without a contig on both sides
// cannot be filled and are left out.
#pragma once

#include <string>
#include <vector>

#include "kit/base/fasta.h"

namespace lintara::kit {

struct Span {
    long start = 0;  ///< first base
    long end = 0;    ///< base behind the last one
    long Length() const { return end - start; }
    bool operator==(const Span&) const = default;
};

struct LayoutGap {
    int id = 0;          ///< from 1, over all sequences
    Span span;           ///< the run of N
    long leftStart = 0;  ///< begin of the contig in front of the gap
    long rightEnd = 0;   ///< end of the contig behind it
};

struct Sequence {
    std::string name;
    std::string text;             ///< upper case
    std::vector<LayoutGap> gaps;  ///< ascending; between two neighbours lies one contig
};

struct Layout {
    std::vector<Sequence> sequences;
    int gapCount = 0;
};

/// Runs of N or n of at least `minGap` letters.
std::vector<Span> FindRuns(const std::string& text, long minGap);

/// Adds one sequence with its gaps. Contigs shorter than kLeastContig cannot flank a gap.
void AddSequence(Layout& layout, const std::string& name, const std::string& text, long minGap);

/// Shortest contig that the core program keeps as a contig of its own.
inline constexpr long kLeastContig = 2;

/// One scaffold of the core program's contig file.
struct CoreScaffold {
    int number = 0;             ///< from 1
    int sequence = 0;           ///< index in the layout
    std::vector<Span> contigs;  ///< on the sequence
    std::vector<int> gaps;      ///< gap ids, one less than contigs
};

/// Chains of contigs that usable gaps join. With `all`, sequences without gaps are chains of one contig.
std::vector<CoreScaffold> CoreScaffolds(const Layout& layout, bool all);

}  // namespace lintara::kit
