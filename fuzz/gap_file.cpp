// The gap file as it is, beside a contig file with a few scaffolds. zlib settles whether the bytes are compressed. The
// records are also read by the plain twin of the reader, which must see the same, and once more with the reader's
// buffer ending in the middle of the input.
#include <cstring>
#include <string>

#include "harness.h"
#include "store/gap_file.h"
#include "store/stream_gap_file.h"

namespace {

const char kContigs[] =
    ">scaffold1_0\t0\nACGTACGTACGT\n>scaffold1_1\t57\nACGTTTGCA\n>scaffold1_2\t1\nGGGCAT\n"
    ">scaffold2_0\t0\nACGTAACC\n>scaffold3_0\t0\nACGTA\n>scaffold3_1\t300\nCCGTA\n>scaffold12_0\t0\nAC\n>scaffold12_"
    "1\t9\nAG\n"
    ">scaffold12_2\t1\nCATG\n>scaffold12_3\t5\nCC\n";

constexpr std::size_t kReaderBuffer = 1 << 17;

void CompareWithTwin(const std::string& path) {
    lintara::GapFile file(path);
    lintara::testing::StreamGapFile twin(path);
    lintara::GapHeader header;
    lintara::GapHeader twin_header;
    for (;;) {
        const bool more = file.ReadHeader(header);
        if (twin.ReadHeader(twin_header) != more) std::abort();
        if (file.HeaderLine() != twin.HeaderLine()) std::abort();
        if (!more) return;
        if (header.marked != twin_header.marked || header.gap != twin_header.gap ||
            header.length != twin_header.length || header.position != twin_header.position ||
            header.scaffold != twin_header.scaffold || header.contig != twin_header.contig) {
            std::abort();
        }
        if (file.ReadSequence() != twin.ReadSequence()) std::abort();
    }
}

/// A record in front of the input that fills the reader's buffer up to the input's middle.
std::string Padded(const std::uint8_t* data, std::size_t size) {
    std::string text = ">1\t57\t-31\t1\t0\n";
    text.append(kReaderBuffer - text.size() - size / 2 - 1, 'A');
    text += '\n';
    return text.append(reinterpret_cast<const char*>(data), size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lintara::fuzz;
    Prepare();
    static MemoryFile gap_file("gap");
    static MemoryFile contig_file("contig");
    ResetRun();
    gap_file.Write(data, size);
    contig_file.Write(kContigs, std::strlen(kContigs));
    RunGuarded(Ends::kOnlyTold, [] {
        CompareWithTwin(gap_file.Path());
        LoadAndWalk(gap_file.Path(), contig_file.Path());
    });
    if (size >= 2 && size < kReaderBuffer) {
        const std::string padded = Padded(data, size);
        gap_file.Write(padded.data(), padded.size());
        RunGuarded(Ends::kOnlyTold, [] { CompareWithTwin(gap_file.Path()); });
    }
    return 0;
}
