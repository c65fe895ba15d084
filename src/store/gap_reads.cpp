#include "store/gap_reads.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <utility>

#include "store/gap_record.h"

namespace lintara {

namespace {

/// The gap file while its reads are fetched. It is kept open, so that it may be renamed or removed meanwhile.
struct OpenFile {
    int descriptor = -1;  // -1: there is no file, but perhaps a text
    std::string name;
    KeptText text;
    std::vector<GapPlace> places;  // by ascending id
};

// Never freed, since other workers may still fetch when one of them ends the process.
OpenFile& source = *new OpenFile;

bool Before(const GapPlace& place, int gap) {
    return place.gap < gap;
}

void Sort(std::vector<GapPlace>& places) {
    std::sort(places.begin(), places.end(), [](const GapPlace& a, const GapPlace& b) { return a.gap < b.gap; });
}

[[noreturn]] void FileHasChanged() {
    std::cerr << "Fail to load file " + source.name + "\n" << std::flush;
    std::exit(-1);
}

const std::size_t kMostSpare = 4096;     // reads that a thread keeps room for
const std::size_t kLargestSpare = 1024;  // bytes of one

thread_local FetchedReads spare;

/// Takes over the spare arrays, with room for so many reads.
FetchedReads TakeSpare(std::size_t size) {
    FetchedReads arrays = std::move(spare);
    spare = {};
    if (arrays.reads.size() < size) arrays.reads.resize(size);
    if (arrays.position.size() < size) arrays.position.resize(size);
    return arrays;
}

/// Hands arrays back of which so many entries were used.
void KeepSpare(FetchedReads arrays, std::size_t used) {
    if (arrays.reads.size() > kMostSpare) return;
    for (std::size_t i = 0; i < used; ++i) {
        if (arrays.reads[i].capacity() > kLargestSpare) arrays.reads[i] = std::string();
    }
    spare = std::move(arrays);
}

/// Reads on at `offset`. @return number of bytes, never 0
std::size_t ReadAt(std::uint64_t offset, char* to, std::size_t size) {
    if (source.descriptor < 0) return source.text.Copy(offset, to, size);
    ssize_t count = 0;
    do {
        count = pread(source.descriptor, to, size, static_cast<off_t>(offset));
    } while (count < 0 && errno == EINTR);
    if (count <= 0) FileHasChanged();
    return static_cast<std::size_t>(count);
}

/// Stores the reads of [at, end) in the arrays of their gap.
///
/// @param num  in/out: reads stored so far
/// @return the place of what is no whole record, or is no longer wanted
const char* StoreRecords(PlainRecords& records, const char* at, const char* end, Gap& gap, Len_t& num) {
    GapHeader header;
    std::string_view sequence;
    while (num < gap.greadSum) {
        const char* const next = records.Take(at, end, header, sequence);
        if (next == nullptr) break;
        if (header.gap != gap.id) FileHasChanged();
        gap.reads[num].assign(StoredSequence(sequence));
        gap.position[num] = header.position;
        ++num;
        at = next;
        num += records.StoreRepeated(at, end, gap.greadSum - num, gap.reads + num, gap.position + num);
    }
    return at;
}

/// Fills the arrays of a gap from its place.
void Fetch(const GapPlace& place, Gap& gap) {
    PlainRecords records;
    Len_t num = 0;
    if (const char* const text = source.text.Stretch(place.begin, place.end - place.begin)) {
        StoreRecords(records, text, text + (place.end - place.begin), gap, num);
        if (num < gap.greadSum) FileHasChanged();
        return;
    }
    thread_local const std::unique_ptr<char[]> buffer =
        std::make_unique_for_overwrite<char[]>(kRecordRoom + kRecordSlack);
    char* const bytes = buffer.get();
    std::uint64_t offset = place.begin;
    std::size_t left = 0;
    while (num < gap.greadSum) {
        const std::size_t room = std::min<std::uint64_t>(kRecordRoom - left, place.end - offset);
        if (room == 0) FileHasChanged();
        const std::size_t count = ReadAt(offset, bytes + left, room);
        offset += count;
        const char* const end = bytes + left + count;
        std::memset(bytes + left + count, 0, kRecordSlack);
        const char* const rest = StoreRecords(records, bytes, end, gap, num);
        left = static_cast<std::size_t>(end - rest);
        std::memmove(bytes, rest, left);
    }
}

}  // namespace

bool HasPlaces(const std::string& file) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool OpenGapPlaces(const std::string& file, std::vector<GapPlace> places) {
    CloseGapPlaces();
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    Sort(places);
    source = {descriptor, file, {}, std::move(places)};
    return true;
}

void OpenGapPlaces(KeptText text, std::vector<GapPlace> places) {
    CloseGapPlaces();
    Sort(places);
    source = {-1, "", std::move(text), std::move(places)};
}

void CloseGapPlaces() {
    if (source.descriptor >= 0) close(source.descriptor);
    source = {};
}

GapReads::GapReads(Gap& gap) : gap_(gap) {
    if (gap.reads != nullptr || gap.greadSum == 0) return;
    const auto place = std::lower_bound(source.places.begin(), source.places.end(), gap.id, Before);
    if (place == source.places.end() || place->gap != gap.id) return;
    fetched_ = TakeSpare(gap.greadSum);
    gap.reads = fetched_.reads.data();
    gap.position = fetched_.position.data();
    Fetch(*place, gap);
}

GapReads::~GapReads() {
    if (fetched_.reads.empty()) return;
    gap_.reads = nullptr;
    gap_.position = nullptr;
    KeepSpare(std::move(fetched_), gap_.greadSum);
}

}  // namespace lintara
