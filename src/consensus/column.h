// Consensus columns: the placed reads of a path, the base counts of a column, and its record in the snp file.
//
// Consensus starts by placing reads: a placed read says where its first base stands in the full consensus string. A
// column is then voted on by the reads that cover it, and whoever votes decides by its own rule which base wins;
// counting and writing are the same for all and stand here and in column_counts.h.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "align/piece.h"
#include "consensus/agreed_records.h"
#include "consensus/column_counts.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "store/gap.h"

namespace lintara {

/// Placed reads by the address of a read's seq: the offset of its first base in the consensus, 0-based. An offset can
/// be negative: the read then begins in front of the consensus. A read stands in it at most once.
using ReadMap = std::map<const std::string*, int>;

/// The overlap matrix as consensus sees it: it is only read. See kmer/overlap_matrix.h.
using Overlaps = const std::uint8_t* const*;

namespace consensus {

/// One placed read, as an entry of a ReadMap.
struct PlacedRead {
    const std::string* seq;
    int start;  ///< offset of its first base in the consensus
};

/// The base with most reads.
struct Winner {
    char bases = 'N';  ///< its letter; of equals the first in ACGT; N: no read has a base here
    int value = 0;     ///< its count
    double ratio = 0;  ///< its share of the covering reads, 0..1; 0 when there are none
};

/// What a vote makes of a column.
struct Verdict {
    char bases;               ///< the called base, as the record tells it
    std::string_view marker;  ///< stands behind it in the record, 3 characters at most
    int value;                ///< count of the winner
    char held;                ///< the voted base
};

/// Counts one column by looking at every placed read. The program does not call it: it is the plain form that the tests
/// hold ColumnCounts against.
Column CountColumn(int posit, const ReadMap& read);

/// Counts the columns of seq from first up to last (not included) at once; entry 0 is column first. The program does
/// not call it.
std::vector<Column> CountColumns(const std::string& seq, int first, int last, const ReadMap& read);

inline Winner MostFrequent(const Column& column) {
    // A count and, below it, how early its letter comes: the largest of the four without a branch.
    std::uint64_t most = 0;
    for (unsigned code = 0; code < 4; ++code) {
        most = std::max(most, std::uint64_t{static_cast<unsigned>(column.num[code])} << 2 | (3 - code));
    }
    Winner winner;
    winner.value = static_cast<int>(most >> 2);
    winner.bases = winner.value > 0 ? base[3 - (most & 3)] : 'N';
    if (column.read_num > 0) winner.ratio = static_cast<double>(winner.value) / column.read_num;
    return winner;
}

/// Room for what WriteRecord() writes at most.
const int kRecordRoom = 6 * (kNumberRoom + 1) + kRatioSize + 8;

/// Writes one record: the column's place and four counts, each followed by a tab; the called base, marker and the
/// path's base; a tab, the covering reads, a tab, the share of them that the winner has. The program does not call it:
/// VoteColumns() writes the two parts.
///
/// @param value  count of the winner
/// @return the end of the text
char* WriteRecord(char* to, int posit, const Column& column, char bases, std::string_view marker, char seq_base,
                  int value);

/// Its two parts: the place with its tab, behind which up to two bytes are overwritten, and all that follows.
char* WritePlace(char* to, int posit);
char* WriteVote(char* to, const Column& column, char bases, std::string_view marker, char seq_base, int value);

/// Adds one record to text. The program does not call it.
void AppendRecord(std::string& text, int posit, const Column& column, char bases, std::string_view marker,
                  char seq_base, int value);

/// The marker of a record: dashes when the called base is the path's, blanks when the column is a candidate variant.
inline std::string_view Marker(char bases, char seq_base) {
    return {bases == seq_base ? "---" : "   ", 3};
}

/// A base is only changed when the winner has 70 percent of all covering reads.
inline char ClearWinner(char bases, char seq_base, double ratio) {
    return bases != seq_base && ratio < 0.7 ? seq_base : bases;
}

/// Votes on one column and writes its record. The program does not call it: it is the plain form that the tests hold
/// VoteColumns() against.
///
/// @param vote  Verdict(char seq_base, const Column&)
/// @return the voted base
template <typename Vote>
char VoteColumn(char seq_base, int posit, const ReadMap& read, int threadId, Vote vote) {
    const Column column = CountColumn(posit, read);
    const Verdict verdict = vote(seq_base, column);
    char record[kRecordRoom];
    const char* const end = WriteRecord(record, posit, column, verdict.bases, verdict.marker, seq_base, verdict.value);
    snp[threadId].write(record, end - record);
    return verdict.held;
}

/// A record that has been written.
struct Written {
    char* end;   ///< of its text
    char voted;  ///< the voted base
};

/// Votes on one column and writes its record behind the place.
template <typename Vote>
Written WriteVoteOn(char* to, char seq_base, const Column& column, Vote vote) {
    const Verdict verdict = vote(seq_base, column);
    return {WriteVote(to, column, verdict.bases, verdict.marker, seq_base, verdict.value), verdict.held};
}

/// The same for a column whose covering reads all have the path's base, of that code. It takes a vote only when it is
/// the first one of its kind.
template <typename Vote>
Written WriteAgreedVote(char* to, int code, int covering, Vote vote) {
    const AgreedRecord& record = AgreedRecordOf<Vote>(code, covering, [&](const Column& column, AgreedRecord& made) {
        char text[kRecordRoom];
        const Written written = WriteVoteOn(text, base[code], column, vote);
        made.Set({text, static_cast<std::size_t>(written.end - text)}, written.voted);
    });
    return {record.Write(to), record.held};
}

/// Votes on the columns of seq from first up to last (not included) in order and writes their records.
///
/// @param reads  a ReadMap or a list of PlacedRead; the order of the reads is of no weight
/// @param vote   as in VoteColumn(); what it says depends on its arguments and its own members only
/// @param keep   void(int posit, char voted): what becomes of a voted base that is not the path's; it may change seq in
///               that column
template <typename Reads, typename Vote, typename Keep>
void VoteColumns(const std::string& seq, int first, int last, const Reads& reads, int threadId, Vote vote, Keep keep) {
    ColumnCounts& counts = SpareCounts();
    counts.Begin(seq, first, last);
    for (const auto& [placed, start] : reads) counts.Add(*placed, start);
    // Records gather up to a fixed size, whatever the number of columns.
    const int kGathered = 1 << 13;
    char text[kGathered + kRecordRoom];
    char* to = text;
    int covering = 0;
    for (int posit = first; posit < last; ++posit) {
        const int index = posit - first;
        covering = counts.Covering(index, covering);
        const char seq_base = seq[posit];
        // A vote with members of its own may say something else the next time.
        const bool agreed = std::is_empty_v<Vote> && counts.Agrees(index) && covering <= kMostAgreed;
        const int code = agreed ? UpperCode(seq_base) : 4;
        to = WritePlace(to, posit);
        const Written written = code < 4 ? WriteAgreedVote(to, code, covering, vote)
                                         : WriteVoteOn(to, seq_base, counts.At(index, covering), vote);
        to = written.end;
        if (written.voted != seq_base) keep(posit, written.voted);
        if (to - text >= kGathered) {
            snp[threadId].write(text, to - text);
            to = text;
        }
    }
    snp[threadId].write(text, to - text);
}

/// The line that closes the records of one path.
void WriteFinish(int valued_read_num, int unsame_base_num, int threadId);

/// Two reads that follow each other in an order don't overlap: logs the message and the place in the order, and ends
/// the process with status -1.
[[noreturn]] void IllegalOrder(std::string_view message, int place, int threadId);

/// Counts the equal bases of a[a_start ...] and b[b_start ...] over len columns. A column that lies outside one of
/// them is unequal.
int SameBases(const std::string& a, int a_start, const std::string& b, int b_start, int len);

/// Whether a read that begins at start agrees with the finished consensus in more than 90 percent of its bases.
bool ReadAgrees(const std::string& seq, const std::string& tmp_seq, int start);

}  // namespace consensus
}  // namespace lintara
