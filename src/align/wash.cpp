#include <vector>

#include "align/search.h"
#include "run/settings.h"

namespace lintara {

char Tod(char ch) {
    return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
}

void seq2array(const std::string& str, int* A, int* T, int* G, int* C) {
    for (std::size_t i = 0; i < str.size(); ++i) {
        switch (Tod(str[i])) {
            case 'A':
                A[i] = 1;
                break;
            case 'T':
                T[i] = 1;
                break;
            case 'G':
                G[i] = 1;
                break;
            case 'C':
                C[i] = 1;
                break;
            default:
                break;
        }
    }
}

int Wash(const std::string& patt, const std::string& str) {
    const int strlen = static_cast<int>(str.size());
    int first[4];
    int dis[4];
    for (int code = 0; code < 4; ++code) {
        first[code] = static_cast<int>(patt.find(base[code]));
        dis[code] = static_cast<int>(patt.rfind(base[code])) - first[code];
    }
    std::vector<int> indicator[4];
    for (std::vector<int>& of_base : indicator) of_base.assign(strlen, 0);
    seq2array(str, indicator[alphabet['A']].data(), indicator[alphabet['T']].data(), indicator[alphabet['G']].data(),
              indicator[alphabet['C']].data());

    std::vector<int> freq(strlen, 0);
    for (int i = 0; i < strlen; ++i) {
        const int code = alphabet[str[i]];
        // No vote from what is no base, from a base that patt lacks, nor for a pair that would end behind str.
        if (code == 4 || first[code] < 0 || i + dis[code] >= strlen) continue;
        if (indicator[code][i + dis[code]] == indicator[code][i] && first[code] <= i) ++freq[i - first[code]];
    }
    int max = -1;
    int maxfreq = 0;
    for (int i = 0; i < strlen; ++i) {
        if (freq[i] > maxfreq) {
            max = i;
            maxfreq = freq[i];
        }
    }
    return maxfreq < 3 ? -1 : max;
}

}  // namespace lintara
