#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "align/search.h"
#include "align/search_detail.h"
#include "run/settings.h"

namespace lintara {

namespace {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

// The last place of each base in a pattern, looked up by the mismatching byte of the text.
class LastPlace {
  public:
    LastPlace(const std::string& patt, int absent) : patt_(patt), absent_(absent) {
        for (int code = 0; code < 4; ++code) delta1_[code] = Find(base[code]);
    }

    int operator[](char byte) const {
        const int code = alphabet[byte];
        // alphabet folds lower case and all letters but the bases; the shift of another letter would make a search
        // stand still, so these few are sought afresh.
        return code < 4 && base[code] == byte ? delta1_[code] : Find(byte);
    }

  private:
    int Find(char byte) const {
        const std::size_t place = patt_.find_last_of(byte);
        return place == std::string::npos ? absent_ : static_cast<int>(place);
    }

    const std::string& patt_;
    int absent_;
    int delta1_[4];
};

}  // namespace

int BM3(const std::string& patt, const std::string& str) {
    detail::CheckPatternLength(Size(patt), Size(str));
    const std::vector<int> delta0 = detail::SuffixShifts(
        Size(patt), [&patt](int i, int j) { return GetLast(patt.substr(i, j), patt.substr(0, i + j - 1)); });
    return detail::ScanBySuffix(patt, str, delta0);
}

int detail::ScanBySuffix(const std::string& patt, const std::string& str, const std::vector<int>& delta0) {
    const int pattlen = Size(patt);
    const LastPlace delta1(patt, -1);
    int i = pattlen - 1;
    while (i < Size(str)) {
        int j = pattlen - 1;
        while (j >= 0 && str[i] == patt[j]) {
            --i;
            --j;
        }
        if (j == -1) return i + 1;
        const int dis = delta1[str[i]];
        const int byte_shift = pattlen - 1 - dis;
        if (j == pattlen - 1) {
            i += byte_shift;
            continue;
        }
        const int suffix_shift = pattlen - j - 1 + delta0[j + 1];
        i += suffix_shift < byte_shift && dis < j ? byte_shift : suffix_shift;
    }
    return -1;
}

int GetMaxdis(const std::string& patt, const std::string& str, int pattpos) {
    int maxdis = -1;
    for (int subpattpos = 1; subpattpos <= Size(patt); ++subpattpos) {
        const int subpos = GetLast(patt.substr(0, subpattpos), str.substr(0, pattpos + subpattpos - 1));
        if (subpos < 0) break;
        maxdis = std::max(maxdis, pattpos - subpos);
    }
    return maxdis;
}

int BM4(const std::string& patt, const std::string& str) {
    const int pattlen = Size(patt);
    detail::CheckPatternLength(pattlen, Size(str));
    const LastPlace delta1(patt, -1);
    std::vector<int> delta0(pattlen);
    for (int i = 0; i < pattlen; ++i) delta0[i] = i;
    for (int pattpos = pattlen - 1; pattpos >= 2; --pattpos) {
        const int maxdis = GetMaxdis(patt.substr(pattpos), patt, pattpos);
        if (maxdis >= 0) delta0[pattpos] = maxdis;
    }
    for (int i = pattlen - 1; i >= 1; --i) delta0[i - 1] = std::max(delta0[i - 1], delta0[i]);

    int strpos = 0;
    while (strpos <= Size(str) - pattlen) {
        int nowpattpos = pattlen - 1;
        while (nowpattpos >= 0 && patt[nowpattpos] == str[strpos + nowpattpos]) --nowpattpos;
        if (nowpattpos == -1) return strpos;
        const char mismatch = str[strpos + nowpattpos];
        const int c = delta1[mismatch];
        int step = 0;
        if (nowpattpos == pattlen - 1) {
            step = pattlen - c - 1;
            detail::CheckLastStep(step, patt, str, mismatch, c);
        } else {
            step = nowpattpos - c;
            const int suffix_shift = delta0[nowpattpos + 1];
            if (suffix_shift > step || step < 1) step = suffix_shift;
            detail::CheckInnerStep(step, patt, str, nowpattpos + 1, suffix_shift);
        }
        strpos += step;
    }
    return -1;
}

void detail::CheckLastStep(int step, const std::string& patt, const std::string& str, char mismatch, int last_place) {
    if (step >= 1) return;
    std::cerr << "patt: " << patt << "\n"
              << "str: " << str << "\n"
              << "base: " << static_cast<int>(alphabet[mismatch]) << " delta1 " << last_place << "\n";
    std::exit(-1);
}

void detail::CheckInnerStep(int step, const std::string& patt, const std::string& str, int suffix_pos,
                            int suffix_shift) {
    if (step >= 1) return;
    std::cerr << "step :" << step << "delta0 value: " << suffix_pos << "\t" << suffix_shift << "\n"
              << "patt: " << patt << "\n"
              << "str: " << str << "\n";
    std::exit(-1);
}

int BM_match(const std::string& patt, const std::string& str) {
    const int pattlen = Size(patt);
    if (pattlen > Size(str) || pattlen < 3) std::exit(-1);
    const LastPlace delta1(patt, pattlen);
    std::vector<int> delta2(pattlen, -1);
    int suffix = pattlen - 1;
    do {
        const int place = Simple(patt.substr(suffix), patt.substr(0, suffix), 1);
        if (place == -1) break;
        delta2[suffix] = place;
        --suffix;
    } while (pattlen - suffix < suffix);

    int i = pattlen - 1;
    while (i < Size(str)) {
        int j = pattlen - 1;
        while (j >= 0 && str[i] == patt[j]) {
            --i;
            --j;
        }
        if (j == -1) return i + 1;
        const int dis = delta1[str[i]];
        if (dis < j) {
            i += pattlen - dis - 1;
        } else {
            int min = pattlen;
            int k = pattlen - 1;
            for (; k >= 0 && delta2[k] >= 0; --k) min = std::min(min, k - delta2[k]);
            if (k == pattlen - 1) min = pattlen - j;
            i += pattlen - 1 - j + min;
        }
        std::cout << i << '\n';
    }
    return -1;
}

}  // namespace lintara
