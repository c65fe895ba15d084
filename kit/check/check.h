// The `check` command: says in one line per fault what is wrong with an input file. The kind of a file is told from its
// content: a contig file (headers ">scaffold12_3<TAB>57"), a gap file (headers of five fields), a truth table (a header
// line that begins with "gap<TAB>scaffold"), or a scaffold file (any other FASTA).
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lintara::kit {

enum class FileKind { kScaffold, kContig, kGap, kTruth, kUnknown };

/// Checks each file and prints "FILE:LINE: what is wrong: value" on the standard output, and "FILE: good (...)" for a
/// file without faults. Gap files and truth tables are also held against a contig file among the arguments.
/// Returns 0 when all files are good and 1 otherwise.
int RunCheck(const std::vector<std::string>& files);

/// Kind of a file by its first lines. Throws Error when it cannot be read.
FileKind KindOf(const std::string& path);

/// Takes one fault: line from 1 (0: the file as a whole) and what is wrong.
using FaultSink = std::function<void(long line, const std::string& message)>;

/// The contigs of a contig file, for checks across files: for each scaffold number the lengths in front of its contigs.
struct ContigTable {
    bool known = false;
    std::map<int, std::vector<long>> scaffolds;  ///< by number: length of the gap in front of contig i
};

/// Each checks one file of its kind and returns a summary for the line of a good file ("3 scaffolds, 67 gaps").
std::string CheckScaffolds(const std::string& path, const FaultSink& fault);
std::string CheckContigs(const std::string& path, const FaultSink& fault, ContigTable& table);
std::string CheckGaps(const std::string& path, const FaultSink& fault, const ContigTable& table);
std::string CheckTruth(const std::string& path, const FaultSink& fault, const ContigTable& table);

}  // namespace lintara::kit
