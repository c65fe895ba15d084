#include "solve/halves.h"

#include "run/settings.h"

namespace lintara {

bool HalvesTooSmall(const std::string& before, const std::string& after, int gap_length) {
    if (Length(before) < min_align && Length(after) < min_align) return true;
    if (before.empty() && Length(after) <= gap_length * 0.1) return true;
    return after.empty() && Length(before) <= gap_length * 0.1;
}

bool IsMinusGap(const std::string& seq, int& realgaplen) {
    if (seq.find('N') == std::string::npos) return false;
    realgaplen = -Length(seq);
    return true;
}

}  // namespace lintara
