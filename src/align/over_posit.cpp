#include <cstdlib>

#include "align/overlap.h"
#include "align/search.h"
#include "align/search_detail.h"

namespace lintara {

int over_posit(const std::string& patt, const std::string& str) {
    if (patt.size() > str.size()) std::exit(-1);
    if (patt.size() < 3) return Simple(patt, str, 0);
    // Unlike in BM3 the earlier place must end left of position i.
    const std::vector<int> delta0 = detail::SuffixShifts(static_cast<int>(patt.size()), [&patt](int i, int j) {
        return Simple(patt.substr(i, j), patt.substr(0, i), 1);
    });
    return detail::ScanBySuffix(patt, str, delta0);
}

}  // namespace lintara
