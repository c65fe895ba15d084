// Consensus columns: the placed reads of a path, the base counts of a column, and its record in the snp file.
//
// Consensus starts by placing reads: the read map says for each placed read where its first base stands in the full
// consensus string. A column is then voted on by the reads that cover it, and whoever votes decides by its own rule
// which base wins; counting and writing are the same for all and stand here.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "align/piece.h"
#include "run/streams.h"
#include "store/gap.h"

namespace lintara {

/// The placed reads: from a read's seq, by its address, to the offset of its first base in the consensus, 0-based. An
/// offset can be negative: the read then begins in front of the consensus. A read stands in it at most once.
using ReadMap = std::map<const std::string*, int>;

/// The overlap matrix as consensus sees it: it is only read. See kmer/overlap_matrix.h.
using Overlaps = const std::uint8_t* const*;

namespace consensus {

/// What the reads say about one column.
struct Column {
    int num[4] = {0, 0, 0, 0};  ///< reads for A, C, G and T
    int read_num = 0;           ///< covering reads; those with N count here only
};

/// The base with most reads.
struct Winner {
    char bases = 'N';  ///< its letter; of equals the first in ACGT; N: no read has a base here
    int value = 0;     ///< its count
    double ratio = 0;  ///< its share of the covering reads, 0..1; 0 when there are none
};

/// Counts one column by looking at every placed read.
Column CountColumn(int posit, const ReadMap& read);

/// Counts the columns from first up to last (not included) at once; entry 0 is column first.
std::vector<Column> CountColumns(int first, int last, const ReadMap& read);

Winner MostFrequent(const Column& column);

/// Adds one record to text: the column's place and four counts, each followed by a tab; the called base, marker and
/// the path's base; a tab, the covering reads, a tab, the share of them that the winner has.
///
/// @param value  count of the winner
void AppendRecord(std::string& text, int posit, const Column& column, char bases, std::string_view marker,
                  char seq_base, int value);

/// Bytes of a usual record, rather more than less.
const std::size_t kRecordSize = 36;

/// Room for what WriteRatio() writes at most.
const int kRatioSize = 16;

/// Writes value / read_num, or 0 over no reads, as a stream prints a double by default. @return the end of the text
char* WriteRatio(char* to, int value, int read_num);

/// The marker of a record: dashes when the called base is the path's, blanks when the column is a candidate variant.
inline std::string_view Marker(char bases, char seq_base) {
    return bases == seq_base ? "---" : "   ";
}

/// A base is only changed when the winner has 70 percent of all covering reads.
inline char ClearWinner(char bases, char seq_base, double ratio) {
    return ratio < 0.7 && bases != seq_base ? seq_base : bases;
}

/// Votes on one column and writes its record.
///
/// @param vote  char(char seq_base, int posit, const Column&, std::string& text): adds the record to text
/// @return the voted base
template <typename Vote>
char VoteColumn(char seq_base, int posit, const ReadMap& read, int threadId, Vote vote) {
    std::string text;
    const char voted = vote(seq_base, posit, CountColumn(posit, read), text);
    snp[threadId] << text;
    return voted;
}

/// Votes on the columns of seq from first up to last (not included) in order and writes their records.
///
/// @param vote  as in VoteColumn()
/// @param keep  void(int posit, char voted): what becomes of the voted base; it may change seq in that column
template <typename Vote, typename Keep>
void VoteColumns(const std::string& seq, int first, int last, const ReadMap& read, int threadId, Vote vote, Keep keep) {
    const std::vector<Column> columns = CountColumns(first, last, read);
    std::string text;
    text.reserve(columns.size() * kRecordSize);
    for (int posit = first; posit < last; ++posit) {
        keep(posit, vote(seq[posit], posit, columns[posit - first], text));
    }
    snp[threadId] << text;
}

/// The line that closes the records of one path.
void WriteFinish(int valued_read_num, int unsame_base_num, int threadId);

/// Two reads that follow each other in an order don't overlap: logs the message and the place in the order, and ends
/// the process with status -1.
[[noreturn]] void IllegalOrder(std::string_view message, int place, int threadId);

/// Counts the equal bases of a[a_start ...] and b[b_start ...] over len columns. A column that lies outside one of
/// them is unequal.
int SameBases(const std::string& a, int a_start, const std::string& b, int b_start, int len);

}  // namespace consensus
}  // namespace lintara
