// The short way out of a join: an expansion that is longer than the gap and the whole opposite edge together should
// contain that edge, and then what lies before the edge is the gap.
#pragma once

#include <string>

namespace lintara {

/// Looks for the opposite edge in an expansion that passes beyond it, and checks what is read off against the other
/// expansion. Arguments as in ExpandConnect().
///
/// @param before  cut to the part before the edge when the edge was found in it but the check failed
/// @param seq     out: the gap's text when the result is true, empty for a gap of size zero; may be changed, too, when
///                the result is false
/// @return whether `seq` fills the gap
bool LongExpandFill(std::string& before, const std::string& after, const std::string& before_edge,
                    const std::string& after_edge, int gapsize, std::string& seq, int threadId);

}  // namespace lintara
