// Inside of ExpandConnect(): what its branches share. The tree is one walk through steps that stand in four places,
// each of which either settles the gap's text or lets the tree go on:
//   expand_connect.cpp    the entry
//   expand_uncovered.cpp  expansions that are together shorter than the gap
//   expand_covered.cpp    expansions that together cover the gap, by their alignment
//   expand_edge.cpp       then each expansion against the opposite edge
//   expand_overlap.cpp    then the two expansions against each other (routes E to G)
//   expand_fallback.cpp   then nearly gap-long expansions, and giving up (routes H to J)
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara::join {

/// The gap's text, or nothing when the tree goes on.
using Answer = std::optional<std::string>;

/// One walk through the tree: the arguments of ExpandConnect() and what its steps hand on.
struct Expansions {
    std::string& before;
    std::string& after;
    const std::string& before_edge;
    const std::string& after_edge;
    int gapsize;  ///< bases
    const std::vector<Read>& reads;
    TagInfo*& tagInfo;
    bool noreadbreak1;
    bool noreadbreak2;
    int& realgaplen;
    int threadId;
    std::string seq;         ///< default answer: gapsize N at first, overwritten on the way
    std::string before_seq;  ///< before_edge + before as its branch found them; doesn't follow later cuts
    std::string after_seq;   ///< after + after_edge, likewise

    std::ofstream& Log() const;
    bool BothBreak() const { return noreadbreak1 && noreadbreak2; }
};

/// Which of four ways an overlap lies over the two expansions.
enum class Meeting { kAfterIntoBeforeEdge, kBeforeIntoAfterEdge, kBeyondOneSide, kInsideBoth };
Meeting MeetingOf(const Expansions& e, int over);

/// Sets before_seq and after_seq from what the expansions are now.
void BuildSides(Expansions& e);

/// Overlap of before_seq and after_seq in bases, at least min_align; nothing when it isn't clear.
std::optional<int> JoinAlign(const Expansions& e);

/// Longest read that may bridge the two sides, bases: 2 * ReadLen when either one is short or leaves less than a read's
/// length of the gap open.
int FullLimit(const Expansions& e);

/// The line that tells the overlap that JoinAlign() found.
void OverLog(const Expansions& e, int over);

/// The text after AfterCrossCheck() succeeded on `joined`, which ends in the after edge.
///
/// @param message  written before realgaplen when the edges overlap by more than `before` can give
std::string AfterJoin(Expansions& e, const std::string& joined, const char* message);

/// Takes the edges to overlap: sets realgaplen to `minus`, a negative number, logs it behind `message`, and gives the
/// answer for form.
std::string MinusGap(Expansions& e, int minus, const char* message);

/// Whether the last |read1| bases of read1 (all of it) are the first of read2.
bool ExactMatch(const std::string& read1, const std::string& read2);

/// GetMatchRatio() above 0.9.
bool Agree(const std::string& read1, const std::string& read2, int over);

/// The checks of join/checks.h on this gap's reads and tags.
bool BeforeCrossed(const Expansions& e, std::string& seq, const std::string& edge);
bool AfterCrossed(const Expansions& e, const std::string& edge, std::string& seq, int limit);
bool Trusted(const Expansions& e, const std::string& patt);

/// The branches, in the order of the tree.
std::string UncoveredGap(Expansions& e);
Answer CoveredGap(Expansions& e);
Answer ReadAcrossUncut(Expansions& e);
Answer BeforeOverGap(Expansions& e);
Answer AfterOverGap(Expansions& e);
Answer RouteE(Expansions& e);
Answer RouteF(Expansions& e);
Answer RouteG(Expansions& e);
Answer RouteH(Expansions& e);
Answer RouteI(Expansions& e);
std::string RouteJ(Expansions& e);

}  // namespace lintara::join
