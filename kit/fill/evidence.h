// What the core program's log and column files tell of each gap: the reason of its outcome in plain words, and the
// reads that support each filled base.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kit/assign/assign.h"

namespace lintara::kit {

/// What the log says of one gap, in the order of the gaps of its scaffold.
struct GapLog {
    int gap = 0;  ///< id; 0: a gap without reads
    bool noReads = false;
    bool middle = false;          ///< a small gap was handed on to the middle strategy
    bool metLast = false;         ///< one walk reached the other contig
    bool minus = false;           ///< contig ends overlap
    bool beforeIncluded = false;  ///< without reads: the contig in front lies within the one behind
    bool afterIncluded = false;
    bool mergedByEnds = false;  ///< without reads: the contig ends overlap
    bool repeat = false;        ///< a tandem repeat
    bool noSize = false;        ///< too few reads cross the gap to tell its size
    bool noStart = false;       ///< no read goes on from a contig end
    bool noJoin = false;        ///< the two sides grew but do not meet
    bool unclear = false;       ///< more than one way on
    long spanningReads = 0;     ///< reads that cross the gap and agree on its size
};

/// Reads a log file: scaffold number to its gaps in order.
void ReadLog(const std::string& path, std::map<int, std::vector<GapLog>>& logs);

/// One row of consensus columns.
struct ColumnBlock {
    std::string bases;
    std::vector<int> support;  ///< reads that show the base
    std::vector<int> depth;    ///< reads over the column
};

/// Reads a file of consensus columns: gap id to its rows.
void ReadColumns(const std::string& path, std::map<int, std::vector<ColumnBlock>>& columns);

/// Finds the columns of `text`, which stands between `before` and `after`, by shared words of 21 bases. Bases without
/// a column get -1.
void PlaceColumns(const std::vector<ColumnBlock>& blocks, const std::string& before, const std::string& text,
                  const std::string& after, std::vector<int>& support, std::vector<int>& depth);

/// Fills in what no column tells (-1): the reads that lie over a base of `text` by the words that they share with it,
/// and those of them that show it.
void CountReadsOver(const std::vector<AssignedRead>& reads, const std::string& before, const std::string& text,
                    const std::string& after, std::vector<int>& support, std::vector<int>& depth);

/// Reason in plain words. `text` is the gap's text: empty, bases, N or both.
std::string ReasonWords(const GapLog& log, const std::string& text, long reads);

}  // namespace lintara::kit
