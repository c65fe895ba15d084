// The `report` command: writes report.html and lintara_mqc.json from the tables that `fill` leaves in its output
// directory (gaps.tsv, filled.bed, columns.tsv.gz, run.json). report.html is one file that needs no network: its data
// is inline, as JSON.
#pragma once

#include <string>
#include <vector>

#include "kit/base/file.h"

namespace lintara::kit {

/// One line of gaps.tsv.
struct ReportGap {
    int gap = 0;
    std::string scaffold;
    long start = 0;  ///< in the original scaffold, 0-based
    long end = 0;    ///< half-open
    long stated = 0;
    std::string outcome;  ///< closed, merged, extended or open
    long filled = 0;
    long open = 0;
    int round = 0;
    std::string strategy;
    long reads = 0;
    std::string reason;
    std::string leastSupport;  ///< as it stands in the table; "." or empty: unknown
    std::string meanSupport;
};

/// Support along one gap's fill: index = base of the fill.
struct ReportColumns {
    std::vector<int> support;
    std::vector<int> depth;
};

/// Writes OUT/report.html and OUT/lintara_mqc.json. Throws Error when gaps.tsv is missing or faulty, or when a file
/// cannot be written. Tables other than gaps.tsv may be missing: what they hold is then left out.
void WriteReport(const std::string& out);

/// Reads gaps.tsv. Throws Error with file, line and value.
std::vector<ReportGap> ReadGapTable(const std::string& path);

}  // namespace lintara::kit
