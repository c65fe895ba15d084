// Exact search of a short pattern in a read or contig, and the ungapped similarity of two sequences at a given overlap.
//
// All comparisons are by exact byte, so case counts and N equals only N. Positions are 0-based offsets of an
// occurrence's first character in the text; -1 is "not found". A call with lengths that an algorithm cannot take is a
// programming fault and ends the process.
//
// The functions keep no state and may be called from all threads at once, BM_match() aside, which prints without a
// lock. PattNum() reads the run-wide Method, which is set before any thread starts.
#pragma once

#include <string>
#include <vector>

namespace lintara {

/// One occurrence of a pattern, by a chosen algorithm.
///
/// @param method 0 Simple, 1 BM3, 2 KMP, 5 BM4: the leftmost exact occurrence.
///               3 KMP2: an exact occurrence, but some are missed.
///               4 Wash: a voted start, which need not be an occurrence.
///               6 and above: ends the process with a message and status -1. Negative: always -1.
/// Methods 1, 3 and 5 need 3 <= |patt| <= |str|, method 2 needs 1 <= |patt| <= |str|; else the process ends with
/// status -1 (with a message for 1 and 5).
/// @return offset in str, or -1
int string_match(const std::string& patt, const std::string& str, int method);

/// All occurrences of patt in str, overlapping ones included, ascending. Searches with the run-wide Method, whose
/// length limits hold for the first search.
std::vector<int> PattNum(const std::string& patt, const std::string& str);

/// Share of equal bases in the overlap of `over` bases in which read2 follows read1.
///
/// The last `over` bases of read1 are compared with the first `over` of read2. When one of the reads is shorter than
/// `over`, it lies wholly inside the other one and all of it is compared. N equals N and differs from every base.
/// Ends the process with a message and status -1 when `over` is 0, negative, or longer than both reads.
/// @return 0..1
double GetMatchRatio(const std::string& read1, const std::string& read2, int over);

/// Plain forward search.
/// @param type 1: last occurrence; any other value: first
/// @return offset in str, or -1; -1 too when patt is longer than str
int Simple(const std::string& patt, const std::string& str, int type);

/// Last occurrence of patt in str. Any negative value means none: |str| - |patt| when str is the shorter one, else -1.
/// The program does not call it: BM3 and BM4 build their tables by it.
int GetLast(const std::string& patt, const std::string& str);

/// Largest distance by which a prefix of patt repeats to its left: the table builder of BM4. The program does not call
/// it.
/// @param patt    suffix of str that begins at pattpos
/// @param str     the whole search pattern
/// @return largest distance to the nearest earlier occurrence over the prefixes that have one; -1 when none has
int GetMaxdis(const std::string& patt, const std::string& str, int pattpos);

/// Boyer-Moore searches; both give the leftmost occurrence or -1 for any bytes. They end the process with a message
/// and status -1 unless 3 <= |patt| <= |str|. The program does not call them: string_match() has one search for all
/// methods that give the leftmost occurrence.
int BM3(const std::string& patt, const std::string& str);
int BM4(const std::string& patt, const std::string& str);

/// A third Boyer-Moore form, which prints its scan offset to the standard output after each shift. The program
/// does not call it. Ends the process with status -1 and no message unless 3 <= |patt| <= |str|.
int BM_match(const std::string& patt, const std::string& str);

/// Knuth-Morris-Pratt search: leftmost occurrence or -1. Ends the process with status -1 and no message when patt is
/// empty or longer than str. The program does not call it, see BM3.
int KMP(const std::string& patt, const std::string& str);

/// The same over C strings: first occurrence that starts at or after pos, or -1; -1 too for null or empty strings and
/// for a pos outside the text. The program does not call it.
int KMP(const char* Text, int pos, const char* Pattern);

/// A jump search over repeated characters and triples. What it reports is an occurrence, but it misses some on its
/// way (AAT in AAAT, for one), and its users rely on exactly these. Ends the process with status -1 and no message
/// unless 3 <= |patt| <= |str|.
int KMP2(const std::string& patt, const std::string& str);

/// Fills prefix, one entry a pattern character, with the length of the longest proper border that ends there. The
/// program does not call them.
void SetPrefix(const char* Pattern, int* prefix);
void SetPrefix(const std::string patt, int* prefix);

/// Length of a C string; -1 for a null pointer. The program does not call it.
int CharLen(const char* Text);

/// The start offset for which most bases of str vote by the first and last place of their base in patt; ties go to
/// the lowest offset. -1 with fewer than 3 votes. No occurrence at that offset is implied.
int Wash(const std::string& patt, const std::string& str);

/// Leftmost occurrence of subSeq in targetSeq, or -1; -1 when either is empty. Note the order: text first.
int KMPSearch(const std::string& targetSeq, const std::string& subSeq);

/// Fills next (|subString| + 1 entries) with the optimised Knuth-Morris-Pratt jump table; next[0] is -1.
void GetNextValue(const std::string& subString, int* next);

/// ch in upper case when it lies in a..z, else ch itself.
char Tod(char ch);

/// Sets entry i of the array of base str[i] (of either case) to 1; all other entries are left as they are.
void seq2array(const std::string& str, int* A, int* T, int* G, int* C);

}  // namespace lintara
