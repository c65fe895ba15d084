#include "store/gap_record.h"

#include <limits>

#include "run/settings.h"

namespace lintara {

namespace {

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Reads one to nine digits with a white space behind them.
///
/// @return the place behind the digits; null for what is longer or followed by anything else
inline const char* PlainNumber(const char* at, Len_t& number) {
    const char* const first = at;
    Len_t value = 0;
    unsigned digit = 0;
    while ((digit = static_cast<unsigned char>(*at) - unsigned{'0'}) <= 9) {
        value = value * 10 + digit;  // wraps for a number that is turned down below
        ++at;
    }
    number = value;
    return at != first && at - first <= 9 && IsSpace(*at) ? at : nullptr;
}

inline const char* PlainNumber(const char* at, int& number) {
    const bool negative = *at == '-';
    Len_t value = 0;
    at = PlainNumber(negative ? at + 1 : at, value);
    if (at != nullptr) number = negative ? -static_cast<int>(value) : static_cast<int>(value);
    return at;
}

inline const char* NextField(const char* at) {
    while (*at == ' ' || *at == '\t') ++at;
    return at;
}

const char* LineEnd(const char* from, const char* end) {
    return static_cast<const char*>(std::memchr(from, '\n', static_cast<std::size_t>(end - from)));
}

}  // namespace

std::string_view StoredSequence(std::string_view line) {
    if (line.size() > 1 && alphabet1[line.back()] == 4) line.remove_suffix(1);
    return line;
}

void PlainRecords::Stretch::Set(const char* from, const char* to) {
    size = static_cast<std::size_t>(to - from);
    if (size > sizeof text) {
        *this = Stretch();
        return;
    }
    std::memset(text, 0, sizeof text);
    std::memset(mask, 0, sizeof mask);
    std::memcpy(text, from, size);
    std::memset(mask, 0xff, size);
}

inline bool PlainRecords::Stretch::StandsAt(const char* at) const {
    std::uint64_t there[2];
    std::memcpy(there, at, sizeof there);
    return (((there[0] & mask[0]) ^ text[0]) | ((there[1] & mask[1]) ^ text[1])) == 0;
}

const char* PlainRecords::Take(const char* at, const char* end, GapHeader& header, std::string_view& sequence) {
    if (at >= end) return nullptr;
    int position = 0;
    const char* bases = TakeRepeatedHeader(at, end, position);
    if (bases != nullptr) {
        header = last_;
        header.position = position;
    } else {
        bases = TakeHeader(at, end, header);
        if (bases == nullptr) return nullptr;
    }
    const char* const line_end = LineEnd(bases, end);
    if (line_end == nullptr) return nullptr;
    sequence = {bases, static_cast<std::size_t>(line_end - bases)};
    return line_end + 1;
}

/// Hands position and sequence of each repeated record to `visit`.
template <class Visit>
inline Len_t PlainRecords::EachRepeated(const char*& at, const char* end, Len_t most, const Visit& visit) const {
    const char* next = at;
    Len_t count = 0;
    for (; count < most && next < end; ++count) {
        int position = 0;
        const char* const bases = TakeRepeatedHeader(next, end, position);
        if (bases == nullptr) break;
        const char* const line_end = LineEnd(bases, end);
        if (line_end == nullptr || line_end - bases < 2) break;
        visit(count, position, std::string_view(bases, static_cast<std::size_t>(line_end - bases)));
        next = line_end + 1;
    }
    at = next;
    return count;
}

Len_t PlainRecords::PassRepeated(const char*& at, const char* end) const {
    return EachRepeated(at, end, std::numeric_limits<Len_t>::max(), [](Len_t, int, std::string_view) {});
}

Len_t PlainRecords::StoreRepeated(const char*& at, const char* end, Len_t most, std::string* reads,
                                  int* position) const {
    return EachRepeated(at, end, most, [&](Len_t num, int pos, std::string_view sequence) {
        reads[num].assign(StoredSequence(sequence));
        position[num] = pos;
    });
}

/// Takes a header line whose text is that of the last one but for the position; null for any other.
inline const char* PlainRecords::TakeRepeatedHeader(const char* at, const char* end, int& position) const {
    if (!front_.StandsAt(at)) return nullptr;
    at = PlainNumber(at + front_.size, position);
    return at == nullptr || at >= end || !back_.StandsAt(at) ? nullptr : at + back_.size;
}

/// Takes any plain header line; null when there is none. The zeros behind the end stop the search for each field.
const char* PlainRecords::TakeHeader(const char* at, const char* end, GapHeader& header) {
    const char* const begin = at;
    if (*at != '>') return nullptr;
    GapHeader read;
    read.marked = true;
    if ((at = PlainNumber(at + 1, read.gap)) == nullptr) return nullptr;
    if ((at = PlainNumber(NextField(at), read.length)) == nullptr) return nullptr;
    const char* const position = NextField(at);
    const char* const behind = PlainNumber(position, read.position);
    if (behind == nullptr) return nullptr;
    if ((at = PlainNumber(NextField(behind), read.scaffold)) == nullptr) return nullptr;
    if ((at = PlainNumber(NextField(at), read.contig)) == nullptr) return nullptr;
    const char* const line_end = LineEnd(at, end);
    if (line_end == nullptr) return nullptr;
    front_.Set(begin, position);
    back_.Set(behind, line_end + 1);
    header = last_ = read;
    return line_end + 1;
}

}  // namespace lintara
