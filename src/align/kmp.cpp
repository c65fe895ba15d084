#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "align/search.h"

namespace lintara {

namespace {

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

void FillPrefix(const char* patt, int pattlen, int* prefix) {
    if (pattlen == 0) return;
    prefix[0] = 0;
    for (int i = 1; i < pattlen; ++i) {
        int k = prefix[i - 1];
        while (patt[i] != patt[k] && k != 0) k = prefix[k - 1];
        prefix[i] = patt[i] == patt[k] ? k + 1 : 0;
    }
}

// First occurrence that starts at or after pos, or -1.
int ScanByPrefix(const char* patt, int pattlen, const char* str, int strlen, int pos, const int* prefix) {
    int matched = 0;
    for (int i = pos; i < strlen; ++i) {
        while (matched > 0 && patt[matched] != str[i]) matched = prefix[matched - 1];
        if (patt[matched] == str[i]) ++matched;
        if (matched == pattlen) return i - pattlen + 1;
    }
    return -1;
}

// Where each character and each triple of characters last stood before, for the jumps of KMP2.
struct Repeats {
    std::vector<int> prebase;   // nearest k < i with the same character, or -1
    std::vector<int> preblock;  // last place of the three characters before i among those before them, or -1
};

Repeats FindRepeats(const std::string& patt) {
    const int pattlen = Size(patt);
    Repeats repeats{std::vector<int>(pattlen, -1), std::vector<int>(pattlen, -1)};
    for (int i = 0; i < pattlen; ++i) {
        int k = i - 1;
        while (k >= 0 && patt[k] != patt[i]) --k;
        repeats.prebase[i] = k;
        if (i > 5) repeats.preblock[i] = Simple(patt.substr(i - 3, 3), patt.substr(0, i - 3), 1);
    }
    for (int i = pattlen - 1; i >= 0; --i) {
        const int block = repeats.preblock[i];
        if (block >= 0 && i - repeats.prebase[i] == i - 2 - block) {
            repeats.prebase[i] = repeats.prebase[i - 1] = repeats.prebase[i - 2] = -1;
        }
    }
    return repeats;
}

// The longest jump that a repeat among the first `matched` characters promises.
int LongestJump(const Repeats& repeats, int matched) {
    int max = 0;
    for (int k = matched - 1; k >= 1; --k) {
        if (repeats.prebase[k] >= 0) max = std::max(max, k - repeats.prebase[k]);
        if (repeats.preblock[k] >= 0) max = std::max(max, k - 2 - repeats.preblock[k]);
    }
    return max;
}

}  // namespace

void SetPrefix(const char* Pattern, int* prefix) {
    FillPrefix(Pattern, std::max(CharLen(Pattern), 0), prefix);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
void SetPrefix(const std::string patt, int* prefix) {
    FillPrefix(patt.data(), Size(patt), prefix);
}

int CharLen(const char* Text) {
    if (Text == nullptr) return -1;
    int len = 0;
    while (Text[len] != '\0') ++len;
    return len;
}

int KMP(const std::string& patt, const std::string& str) {
    const int pattlen = Size(patt);
    if (pattlen == 0 || Size(str) < pattlen) std::exit(-1);
    std::vector<int> prefix(pattlen);
    SetPrefix(patt, prefix.data());
    return ScanByPrefix(patt.data(), pattlen, str.data(), Size(str), 0, prefix.data());
}

int KMP(const char* Text, int pos, const char* Pattern) {
    const int textlen = CharLen(Text);
    const int pattlen = CharLen(Pattern);
    if (textlen <= 0 || pattlen <= 0 || pos < 0) return -1;
    std::vector<int> prefix(pattlen + 1);
    SetPrefix(Pattern, prefix.data());
    return ScanByPrefix(Pattern, pattlen, Text, textlen, pos, prefix.data());
}

int KMP2(const std::string& patt, const std::string& str) {
    const int pattlen = Size(patt);
    const int strlen = Size(str);
    if (pattlen < 3 || pattlen > strlen) std::exit(-1);
    const Repeats repeats = FindRepeats(patt);
    int i = 0;
    while (i < strlen) {
        int j = 0;
        while (j < pattlen && i < strlen && patt[j] == str[i]) {
            ++i;
            ++j;
        }
        if (j == pattlen) return i - j;
        // After one equal character the step counts on top of it, so that a start is passed over.
        i += j <= 1 ? 1 : LongestJump(repeats, j) - j + 1;
    }
    return -1;
}

void GetNextValue(const std::string& subString, int* next) {
    next[0] = -1;
    int k = -1;
    int j = 0;
    while (j < Size(subString)) {
        if (k != -1 && subString[j] != subString[k]) {
            k = next[k];
            continue;
        }
        ++j;
        ++k;
        // At the end of the string its terminating zero takes part.
        next[j] = subString[j] == subString[k] ? next[k] : k;
    }
}

int KMPSearch(const std::string& targetSeq, const std::string& subSeq) {
    if (targetSeq.empty() || subSeq.empty()) return -1;
    const int sublen = Size(subSeq);
    const std::unique_ptr<int[]> next(new (std::nothrow) int[subSeq.size() + 1]);
    if (next == nullptr) std::exit(1);
    GetNextValue(subSeq, next.get());
    int index = 0;
    int i = 0;
    int j = 0;
    while (i < Size(targetSeq) && j < sublen) {
        if (targetSeq[i] == subSeq[j]) {
            ++i;
            ++j;
            continue;
        }
        index += j - next[j];
        if (next[j] == -1) {
            ++i;
            j = 0;
        } else {
            j = next[j];
        }
    }
    return j == sublen ? index : -1;
}

}  // namespace lintara
