// What the exact searches share behind their public header: string_match() for byte ranges, the checks that end the
// process, and the scan that BM3 and over_posit() run on their own shift tables. The program calls MatchRange() and
// CheckPatternLength(); it does not call the rest, which serves BM3, BM4 and over_posit() alone.
#pragma once

#include <string>
#include <vector>

namespace lintara::detail {

/// string_match() on byte ranges, with the same messages and exits, so that seeds need no strings of their own.
int MatchRange(const char* patt, int pattlen, const char* str, int strlen, int method);

/// Ends the process with a message and status -1 unless 3 <= pattlen <= strlen.
void CheckPatternLength(int pattlen, int strlen);

/// BM4's guards against standing still: each ends the process with a message and status -1 when step is below 1.
/// Sound tables never give such a step.
///
/// @param mismatch      the byte of str at the mismatch
/// @param last_place    its last place in patt, or -1
void CheckLastStep(int step, const std::string& patt, const std::string& str, char mismatch, int last_place);
/// @param suffix_pos    pattern position right of the mismatch
/// @param suffix_shift  shift that the table holds for it
void CheckInnerStep(int step, const std::string& patt, const std::string& str, int suffix_pos, int suffix_shift);

/// Scans str for patt from each alignment's right end, shifting by the larger promise of the mismatching byte and of
/// the matched suffix.
///
/// @param delta0 |patt| entries: shift for the suffix that begins at each pattern position; at least 1 from entry 1 on
int ScanBySuffix(const std::string& patt, const std::string& str, const std::vector<int>& delta0);

/// The table for ScanBySuffix(): each entry is the least shift that puts an earlier place of every stretch from there
/// on under it, and at least the entry to its right.
///
/// @param last_before  last_before(i, j): last place, left of position i, of the j characters from i on, or -1
template <typename LastBefore>
std::vector<int> SuffixShifts(int pattlen, LastBefore last_before) {
    std::vector<int> delta0(pattlen, -1);
    for (int i = pattlen - 1; i >= 1; --i) {
        int max = -1;
        // The longer the stretch the fewer its places, so that the first miss ends the loop.
        for (int j = 1; i + j <= pattlen && j <= i; ++j) {
            const int pos = last_before(i, j);
            if (pos < 0) break;
            if (i - pos > max) max = i - pos;
        }
        if (max == -1) max = i;
        if (i + 1 < pattlen && delta0[i + 1] > max) max = delta0[i + 1];
        delta0[i] = max;
    }
    return delta0;
}

}  // namespace lintara::detail
