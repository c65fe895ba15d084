#include "align/search.h"

#include <cstdlib>
#include <iostream>

#include "align/byte_scan.h"
#include "align/search_detail.h"
#include "run/settings.h"

namespace lintara {

namespace {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

}  // namespace

int string_match(const std::string& patt, const std::string& str, int method) {
    return detail::MatchRange(patt.data(), Size(patt), str.data(), Size(str), method);
}

// Methods 0, 1, 2 and 5 differ in the lengths that they take and never in the place that they give, so that one
// search does the work of all four.
int detail::MatchRange(const char* patt, int pattlen, const char* str, int strlen, int method) {
    switch (method) {
        case 1:
        case 5:
            CheckPatternLength(pattlen, strlen);
            return FindFirst(patt, pattlen, str, strlen);
        case 0:
            return FindFirst(patt, pattlen, str, strlen);
        case 2:
            if (pattlen == 0 || strlen < pattlen) std::exit(-1);
            return FindFirst(patt, pattlen, str, strlen);
        case 3:
            return KMP2(std::string(patt, pattlen), std::string(str, strlen));
        case 4:
            return Wash(std::string(patt, pattlen), std::string(str, strlen));
        default:
            break;
    }
    if (method > 5) {
        std::cerr << "Method showed not be set larger than 5!\n";
        std::exit(-1);
    }
    return -1;
}

void detail::CheckPatternLength(int pattlen, int strlen) {
    if (pattlen <= strlen && pattlen >= 3) return;
    std::cerr << "Error! pattern length should not be longer than string length!\t" << pattlen << "\t" << strlen
              << "\n";
    std::exit(-1);
}

std::vector<int> PattNum(const std::string& patt, const std::string& str) {
    std::vector<int> places;
    const int pattlen = Size(patt);
    int start = 0;
    int pos = string_match(patt, str, Method);
    while (pos >= 0) {
        places.push_back(start + pos);
        start += pos + 1;
        if (Size(str) - start < pattlen) break;
        pos = detail::MatchRange(patt.data(), pattlen, str.data() + start, Size(str) - start, Method);
    }
    return places;
}

double GetMatchRatio(const std::string& read1, const std::string& read2, int over) {
    const int size1 = Size(read1);
    const int size2 = Size(read2);
    if (over <= 0 || (size1 < over && size2 < over)) {
        std::cerr << "over check: " << over << "\t" << size1 << "\t" << size2 << "\n"
                  << "Please report the bug to the author!\n";
        std::exit(-1);
    }
    int start1 = size1 - over;
    int start2 = 0;
    int match_len = over;
    if (size1 < over) {
        start1 = 0;
        start2 = over - size1;
        match_len = size1;
    } else if (size2 < over) {
        match_len = size2;
    }
    const int same = detail::CountEqual(read1.data() + start1, read2.data() + start2, match_len);
    return static_cast<double>(same) / match_len;
}

int Simple(const std::string& patt, const std::string& str, int type) {
    int last = -1;
    for (int start = 0; start <= Size(str) - Size(patt); ++start) {
        if (str.compare(start, patt.size(), patt) != 0) continue;
        if (type != 1) return start;
        last = start;
    }
    return last;
}

int GetLast(const std::string& patt, const std::string& str) {
    int pos = Size(str) - Size(patt);
    while (pos >= 0 && str.compare(pos, patt.size(), patt) != 0) --pos;
    return pos;
}

}  // namespace lintara
