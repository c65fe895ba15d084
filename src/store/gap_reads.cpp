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

/// Goes over the records of a place and hands each to `store`, which tells whether it wants more.
template <class Store>
void ReadRecords(const GapPlace& place, const Store& store) {
    thread_local const std::unique_ptr<char[]> buffer =
        std::make_unique_for_overwrite<char[]>(kRecordRoom + kRecordSlack);
    char* const bytes = buffer.get();
    PlainRecords records;
    GapHeader header;
    std::string_view sequence;
    std::uint64_t offset = place.begin;
    std::size_t left = 0;
    for (;;) {
        const std::size_t room = std::min<std::uint64_t>(kRecordRoom - left, place.end - offset);
        if (room == 0) FileHasChanged();
        const std::size_t count = ReadAt(offset, bytes + left, room);
        offset += count;
        const char* const end = bytes + left + count;
        std::memset(bytes + left + count, 0, kRecordSlack);
        const char* at = bytes;
        while (const char* const next = records.Take(at, end, header, sequence)) {
            if (!store(header, StoredSequence(sequence))) return;
            at = next;
        }
        left = static_cast<std::size_t>(end - at);
        std::memmove(bytes, at, left);
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

GapReads::GapReads(Gap& gap) : gap_(gap), fetched_(false) {
    if (gap.reads != nullptr || gap.greadSum == 0) return;
    const auto place = std::lower_bound(source.places.begin(), source.places.end(), gap.id, Before);
    if (place == source.places.end() || place->gap != gap.id) return;
    gap.reads = new std::string[gap.greadSum];
    gap.position = new int[gap.greadSum];
    fetched_ = true;
    Len_t num = 0;
    ReadRecords(*place, [&](const GapHeader& header, std::string_view sequence) {
        if (header.gap != gap.id) FileHasChanged();
        gap.reads[num] = std::string(sequence);
        gap.position[num] = header.position;
        return ++num < gap.greadSum;
    });
}

GapReads::~GapReads() {
    if (!fetched_) return;
    delete[] gap_.reads;
    delete[] gap_.position;
    gap_.reads = nullptr;
    gap_.position = nullptr;
}

}  // namespace lintara
