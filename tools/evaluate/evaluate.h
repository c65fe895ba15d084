// Tells how good filled gaps are, where the true sequence of each gap is known.
//
// A gap is found in a filled scaffold by two anchors: stretches of its flanking contigs that occur once in the filled
// scaffold and once in the true one. What stands between the anchors is held against what should stand there. Nothing
// is assumed of the program that filled the scaffold but that it keeps the contigs' bases, and the order of the
// contigs; upper and lower case count as equal.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace lintara::evaluate {

/// One row of the truth table.
struct TrueGap {
    int id = -1;           ///< gap id; -1: no reads
    int scaffold = 0;      ///< scaffold id
    int contig = 0;        ///< index of the contig in front of the gap
    int stated = 0;        ///< length that the contig file states, bases
    int length = 0;        ///< true length, bases; negative: the contigs overlap by so many bases
    std::string kind;      ///< free text, such as "plain" or "tandem3"
    std::string sequence;  ///< true bases, empty for a length of 0 or below
};

enum class Outcome {
    kExact,     ///< equals the truth
    kNear,      ///< full, with at most 2 edits or edits of at most 1 % of the true length
    kWrong,     ///< full, with more edits
    kPartly,    ///< some bases, some N
    kOpen,      ///< nothing but N
    kNotFound,  ///< the scaffold is missing, or no anchor beside the gap can be placed
};
inline constexpr int kOutcomes = 6;

/// Name of an outcome as it is printed: "exact", "near", "wrong", "partly", "open", "not found".
const char* OutcomeName(Outcome outcome);

struct GapResult {
    TrueGap truth;
    Outcome outcome = Outcome::kNotFound;
    int edits = -1;  ///< edit distance to the truth of a full fill; -1: not measured
    int filled = 0;  ///< bases between the contigs in the filled scaffold; 0 also where they overlap
    int open = 0;    ///< N between the contigs
};

/// Scaffold id to its contigs in order, in upper case.
using Contigs = std::map<int, std::vector<std::string>>;
/// Scaffold id to its filled text, in upper case.
using Filled = std::map<int, std::string>;

/// Readers; each throws std::runtime_error with file, line and value when a file cannot be read.
Contigs ReadContigs(const std::string& file);
std::vector<TrueGap> ReadTruth(const std::string& file);
/// Adds the scaffolds of one file, whose records begin with ">scaffold" or ">Scaffold" and the id.
void ReadFilled(const std::string& file, Filled& filled);

/// Judges every gap of the truth table, in its order.
///
/// @param anchor  length of an anchor in bases, 8 to 31; a contig that is shorter is an anchor as a whole
std::vector<GapResult> Evaluate(const Contigs& contigs, const std::vector<TrueGap>& truth, const Filled& filled,
                                int anchor);

/// Writes one line an outcome with its count, and the total.
void PrintCounts(const std::vector<GapResult>& results, std::ostream& out);
/// Writes a table with one row a class of true lengths, also where no gap is of it, and one column an outcome. The
/// classes: overlap (below 0), 0, 1-100, 101-600, 601-1499, 1500+.
void PrintByLength(const std::vector<GapResult>& results, std::ostream& out);
/// Writes such a table with one row a kind, numbers at the end of a kind in their own order; "-" for one without a
/// name.
void PrintByKind(const std::vector<GapResult>& results, std::ostream& out);
/// Writes one row a gap: gap, scaffold, contig, kind, stated, true, filled, n, edits, outcome.
void PrintPerGap(const std::vector<GapResult>& results, std::ostream& out);

}  // namespace lintara::evaluate
