// The two inner loops under all of this folder, over plain byte ranges so that seeds need no strings of their own:
// finding a short pattern and counting equal bytes.
#pragma once

namespace lintara::detail {

/// Leftmost place of patt in str, or -1; an empty pattern is found at 0. Any bytes, any lengths.
int FindFirst(const char* patt, int pattlen, const char* str, int strlen);

/// Number of i < n with a[i] == b[i]; n may be 0 or negative (0 then).
int CountEqual(const char* a, const char* b, int n);

/// The same where only a count of at least `least` is of interest: any lower number stands for a lower count.
int CountEqual(const char* a, const char* b, int n, int least);

/// Number of i < n with a[i] == b[i], where neither b[i] nor mask[i] is N. The program does not call it.
int CountEqualBases(const char* a, const char* b, const char* mask, int n);

/// The same where only a count of at least `least` is of interest, as in CountEqual().
int CountEqualBases(const char* a, const char* b, const char* mask, int n, int least);

}  // namespace lintara::detail
