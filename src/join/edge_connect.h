// What to put between the two edges of a gap when its walks did not meet through reads: decisions by comparison of
// sequences alone. `before` and `after` are the sequence grown from the before edge and the one grown back from the
// after edge, without the edges themselves; `gapsize` is the estimated length of the gap in bases. Where no decision
// can be made the answer is a run of N of the gap's size: the gap stays open. clearn_order() works on paths, that is
// vectors of read numbers with -1 as "no read".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "repeat/tag_info.h"
#include "store/gap.h"

namespace lintara {

/// Fits an expansion from the after side that reaches over the before edge against that edge.
///
/// @param seq1  before edge
/// @param seq2  expansion, at least gapsize bases; a shorter one is logged and ends the process with status -1
/// @return what of seq2 lies behind the edge, with N in front where the overlap is ambiguous; `gapsize` N when nothing
///         can be decided or when a gap of 100 bases or more would be filled with three times its size
std::string connect_before(const std::string& seq1, const std::string& seq2, int gapsize, int threadId);

/// The mirror: fits the expansion seq1, at least gapsize bases, against the after edge seq2.
std::string connect_after(const std::string& seq1, const std::string& seq2, int gapsize, int threadId);

/// Decides whether the walk from the after edge, which reached the before edge, fills the gap.
///
/// @param before   expansion from the before edge, not empty; may be cut to gapsize bases
/// @param after    gap sequence by the walk from the after edge, not empty; may lose bases at its front
/// @param reads    block with both edges
/// @param tagInfo  tag table, see CheckOver(), which may end the process
/// @param support  set where `before` speaks for or against the result, otherwise left alone
/// @return the gap's text: `after`, `before` without its overlap with the after edge, or parts of both
std::string RewardCheck(std::string& before, std::string& after, int gapsize, const std::vector<Read>& reads,
                        TagInfo*& tagInfo, bool& support, int threadId);

/// Takes off a gap sequence what belongs to the after edge at its end and to the before edge at its front. An edge that
/// is not shorter than `seq` is left out. `gapsize` isn't looked at. Ends the process through PattNum() for an edge of
/// fewer than 3 bases.
void LongCut(std::string& seq, const std::string& before, const std::string& after, int gapsize, int threadId);

/// Removes the loops of a path: of a read that comes again only the last place stays, and all between goes with the
/// earlier ones. Entries of -1 go too.
void clearn_order(std::vector<int>& starts);

/// Joins two paths at a read that they share. `matrix` isn't looked at. The program does not call it.
///
/// @return both paths without the loop, with `ends` cleared; without a shared read `starts`
std::vector<int> connect(std::vector<int>& starts, std::vector<int>& ends, std::uint8_t**& matrix);

// The program does not call what stands below: four other ways to join expansions, and a check of the edges' reads.

/// The gap's text from two expansions that are thought to overlap in `overlen` bases.
std::string cut_seq(const std::string& before, const std::string& after, int overlen, const std::string& before_edge,
                    const std::string& after_edge, int threadId);

/// The gap's text from two expansions that may overlap, or may stand in the wrong order.
///
/// @param contig1, contig2  before and after edge
std::string Check_possible_over(const std::string& before, const std::string& after, const std::string& contig1,
                                const std::string& contig2, int gapsize, int threadId);

/// The gap's text from `before` alone, cut where it meets `after`, and filled up with N behind it.
std::string Check_possible_after(const std::string& before, const std::string& after, int gapsize, int threadId);

/// The mirror: the gap's text from `after` alone, with the N in front of it.
std::string Check_possible_before(const std::string& before, const std::string& after, int gapsize, int threadId);

/// Whether the reads overlap only one of the two edges: exactly one edge has two neighbours or more. Blocks of fewer
/// than 4 reads always count so.
///
/// @param matrix  overlap matrix of `num` reads, read 0 the before edge and read num - 1 the after edge
bool UndistriCheck(std::uint8_t**& matrix, int num, int threadId);

}  // namespace lintara
