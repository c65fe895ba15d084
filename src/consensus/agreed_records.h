// The records of columns in which all covering reads hold the path's base, each made once.
//
// Most columns are of that kind, and what a vote makes of one depends on the base and on the number of reads alone. So
// the record's text behind the column's place is kept by these two and copied from then on, in place of a vote and of
// the writing of seven fields. It is kept as long as the thread lives, for each kind of vote.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "consensus/column_counts.h"
#include "run/settings.h"

namespace lintara::consensus {

/// Reads that may cover a column whose record is kept.
const int kMostAgreed = 255;

/// One record behind the place of its column and the tab there.
struct AgreedRecord {
    char text[31];      ///< holds the numbers of at most kMostAgreed reads and their longest ratio, 0.00392157
    std::uint8_t size;  ///< 0: not made yet
    char held;          ///< the voted base

    void Set(std::string_view record, char voted) {
        std::memcpy(text, record.data(), record.size());
        size = static_cast<std::uint8_t>(record.size());
        held = voted;
    }

    /// Copies the text and the bytes behind it. @return the end of the text
    char* Write(char* to) const {
        std::memcpy(to, text, sizeof text);
        return to + size;
    }
};

/// The number of a base in ACGT; 4 for all other letters, those in lower case among them.
inline int UpperCode(char letter) {
    const int code = alphabet[letter];
    return base[code] == letter ? code : 4;
}

/// The record of a column with that path's base, 0..3, in which that many reads, 0..kMostAgreed, all have it.
///
/// @tparam Vote  the kind of vote, which must say the same of equal columns at any time
/// @param make   void(const Column&, AgreedRecord&): makes the record
template <typename Vote, typename Make>
const AgreedRecord& AgreedRecordOf(int code, int covering, Make make) {
    thread_local std::array<AgreedRecord, 4 * (kMostAgreed + 1)> records;
    AgreedRecord& record = records[static_cast<std::size_t>(4 * covering + code)];
    if (record.size == 0) {
        Column column;
        column.num[code] = column.read_num = covering;
        make(column, record);
    }
    return record;
}

}  // namespace lintara::consensus
