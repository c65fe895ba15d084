// How much of a tandem repeat stands at the ends of sequences: the tail_check family, Multi_tail_check and Unit_check.
#include "repeat/tandem_block.h"
#include "repeat/tandem_multi.h"
#include "repeat/tandem_piece.h"

namespace lintara {

using namespace tandem;

int tail_check(std::string& seq, std::set<std::string>& units, int unitlen, int& last_num, std::string& last_unit) {
    const int size = Length(seq);
    last_num = 0;
    if (size < unitlen) return -1;
    int len = unitlen;
    while (len < size && HasWord(units, seq, size - len, unitlen)) ++len;
    if (len == unitlen) return -1;
    last_unit = Tail(seq, unitlen);
    for (int i = len - 1; i >= unitlen; --i) {
        if (Word(seq, size - i, unitlen) == last_unit) ++last_num;
    }
    return len - 1;
}

int tail_check(std::set<std::string>& units, std::string& seq, int unitlen, int& last_num, std::string& last_unit) {
    const int size = Length(seq);
    if (size < unitlen) return -1;
    last_num = 0;
    int last_pos = -1;
    int len = 0;
    while (len + unitlen < size && HasWord(units, seq, len, unitlen)) {
        if (Word(seq, len, unitlen) == last_unit) {
            last_pos = len + unitlen;
            ++last_num;
        }
        ++len;
    }
    return last_pos != -1 && len != 0 ? last_pos : -1;
}

int tail_check(std::string& before, std::set<std::string>& units, int unit_len, int& expand_num1, std::string last_unit,
               int limit) {
    int last_len = 0;
    for (int i = limit - unit_len + 1; i < Length(before) - unit_len + 1; ++i) {
        if (!HasWord(units, before, i, unit_len)) continue;
        if (last_len == 0) last_len = Length(before) - i;
        if (Word(before, i, unit_len) == last_unit) ++expand_num1;
    }
    return last_len;
}

int tail_check(std::set<std::string>& /*units*/, std::string& after, int unit_len, int& expand_num2,
               std::string last_unit, int limit) {
    int last_len = 0;
    for (int i = Length(after) - limit - 1; i >= 0; --i) {
        if (Word(after, i, unit_len) != last_unit) continue;
        if (last_len == 0) last_len = i + unit_len;
        ++expand_num2;
    }
    return last_len;
}

int tail_checknolast(std::set<std::string>& units, std::string& after, int unit_len, int& expand_num2,
                     std::string& last_unit, int limit) {
    int last_len = 0;
    for (int i = Length(after) - limit - 1; i >= 0; --i) {
        if (!HasWord(units, after, i, unit_len)) continue;
        if (last_len == 0) last_len = i + unit_len;
        const std::string word = Word(after, i, unit_len);
        if (word == last_unit) ++expand_num2;
        if (last_unit.empty()) last_unit = word;
    }
    return last_len <= Length(after) - limit ? last_len : last_len - unit_len;
}

int Unit_check(std::string& seq, std::set<std::string>& units, int unitlen) {
    for (int pos = 0; pos + unitlen < Length(seq); ++pos) {
        if (!HasWord(units, seq, pos, unitlen)) return 1;
    }
    return 0;
}

int Multi_tail_check(std::string& seq, std::set<std::string>& units, int unitlen) {
    return Multi_tail_check(seq, units, unitlen, 0);
}

int Multi_tail_check(std::string& seq, std::set<std::string>& units, int unitlen, int limit) {
    const int size = Length(seq);
    if (size < unitlen) return -1;
    int len = unitlen;
    while (len < size && size - len > limit && HasWord(units, seq, size - len, unitlen)) ++len;
    return len == unitlen ? -1 : len - 1;
}

// Unlike at the left, a sequence that does not start in a repeat word has a run of unitlen - 1 bases.
int Multi_tail_check(std::set<std::string>& units, std::string& seq, int unitlen, int limit) {
    if (Length(seq) < unitlen) return -1;
    int len = 0;
    while (len < Length(seq) - unitlen && len < limit - unitlen && HasWord(units, seq, len, unitlen)) ++len;
    return len - 1 + unitlen;
}

int Multi_tail_check(std::set<std::string>& units, std::string& seq, int unitlen) {
    return Multi_tail_check(units, seq, unitlen, Length(seq));
}

}  // namespace lintara
