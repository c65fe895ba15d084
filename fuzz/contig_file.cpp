// The contig file, once beside an empty gap file and once beside one with reads for a few scaffolds.
#include <cstring>

#include "harness.h"

namespace {

const char kReads[] =
    ">1\t57\t-31\t1\t0\nACGTACGTACGT\n>1\t57\t10\t1\t0\nACGTACGA\n>2\t1\t4\t2\t0\nACGT\n>3\t2000\t-"
    "5\t12\t2\nGATTACA\r\n";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lintara::fuzz;
    Prepare();
    static MemoryFile gap_file("gap");
    static MemoryFile contig_file("contig");
    contig_file.Write(data, size);
    for (const std::size_t reads : {std::size_t{0}, std::strlen(kReads)}) {
        ResetRun();
        gap_file.Write(kReads, reads);
        RunGuarded(Ends::kOnlyTold, [] { LoadAndWalk(gap_file.Path(), contig_file.Path()); });
    }
    return 0;
}
