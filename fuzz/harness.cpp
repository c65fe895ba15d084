#include "harness.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

#include "run/settings.h"
#include "run/streams.h"
#include "store/gap.h"
#include "store/gap_reads.h"
#include "store/load.h"

namespace lintara::fuzz {

namespace {

/// The settings that an input may change.
struct Settings {
    int kmer = Kmer;
    double match_ratio = Match_ratio;
    float load = load_factor;
    int read_len = ReadLen;
    int min_overlap = Min_overlap;
    double false_share = false_ratio;
    double cutoff = ECUTOFF;
    int method = Method;
    int align = min_align;
    int contig_len = ContigLen;

    void Apply() const {
        Kmer = kmer;
        Match_ratio = match_ratio;
        load_factor = load;
        ReadLen = read_len;
        Min_overlap = min_overlap;
        false_ratio = false_share;
        ECUTOFF = cutoff;
        Method = method;
        min_align = align;
        ContigLen = contig_len;
    }
};

const Settings* defaults = nullptr;
std::ostringstream messages;  // what the current input wrote to the error stream
Ends ends_now = Ends::kAll;

class NoOutput : public std::streambuf {
  protected:
    int overflow(int c) override { return c; }
    std::streamsize xsputn(const char*, std::streamsize size) override { return size; }
};

// The messages with which bad input may end a run.
const char* const kTold[] = {
    "Error in load gap file\n",
    "position error \n",
    ": contig index ",
    ": more reads for gap ",
    ": contig header is shorter than nine characters: ",
    " is not in the store\n",
};

bool IsTold(const std::string& text) {
    for (const char* told : kTold) {
        if (text.find(told) != std::string::npos) return true;
    }
    return false;
}

// Ends the process here, so that the report shows who called exit().
void Judge(int status) {
    if (ends_now == Ends::kAll || IsTold(messages.str())) return;
    std::fprintf(stderr, "Ended with status %d and these messages: %s\n", status, messages.str().c_str());
    std::abort();
}

std::uint64_t Touch(const Scaf& scaffold) {
    std::uint64_t sum = 0;
    for (Len_t i = 0; i <= scaffold.gapSum; ++i) {
        for (const char c : scaffold.contigs[i]) sum += static_cast<unsigned char>(c);
        sum += static_cast<std::uint64_t>(scaffold.front_gap_lens[i]);
    }
    for (Len_t i = 0; i < scaffold.gapSum; ++i) {
        const Gap& gap = scaffold.gaps[i];
        if (gap.greadSum != 0 && static_cast<Len_t>(gap.before_contig_id) != i) std::abort();
        for (Len_t r = 0; r < gap.greadSum; ++r) {
            for (const char c : gap.reads[r]) sum += static_cast<unsigned char>(c);
            sum += static_cast<std::uint64_t>(gap.position[r]);
        }
    }
    return sum;
}

/// A store that is freed also when loading ends early.
struct Store {
    Scaf* scaffolds = nullptr;
    std::map<int, int> scafid;

    ~Store() {
        for (const auto& [id, num] : scafid) scaffold_delete(scaffolds[num]);
        delete[] scaffolds;
    }
};

/// Holds a store against one whose reads are fetched gap by gap.
void ExpectSame(const Store& loaded, const Store& fetched) {
    if (loaded.scafid != fetched.scafid) std::abort();
    for (const auto& [id, num] : loaded.scafid) {
        for (Len_t i = 0; i < loaded.scaffolds[num].gapSum; ++i) {
            const Gap& wanted = loaded.scaffolds[num].gaps[i];
            Gap& gap = fetched.scaffolds[num].gaps[i];
            const GapReads reads(gap);
            if (gap.id != wanted.id || gap.greadSum != wanted.greadSum || gap.gap_length != wanted.gap_length ||
                gap.before_contig_id != wanted.before_contig_id) {
                std::abort();
            }
            for (Len_t r = 0; r < gap.greadSum; ++r) {
                if (gap.reads[r] != wanted.reads[r] || gap.position[r] != wanted.position[r]) std::abort();
            }
        }
    }
}

}  // namespace

void Prepare() {
    if (defaults != nullptr) return;
    static const Settings at_start;
    defaults = &at_start;
    static NoOutput no_output;
    std::cout.rdbuf(&no_output);
    std::cerr.rdbuf(messages.rdbuf());
    logFile = new std::ofstream[1];
    fout = new std::ofstream[1];
    snp = new std::ofstream[1];
    for (std::ofstream* stream : {logFile, fout, snp}) stream->open("/dev/null");
    SHORTOVERLAP = new bool[1]{false};
    initSizes = new std::uint64_t[1]{0};
    on_end = Judge;
}

void ResetRun() {
    defaults->Apply();
    GapId = -1;
    StartId = -1;
    SHORTOVERLAP[0] = false;
    initSizes[0] = 0;
    messages.str("");
}

bool RunGuarded(Ends ends, const std::function<void()>& input) {
    ends_now = ends;
    try {
        input();
    } catch (const Ended&) {
        return false;
    }
    return true;
}

MemoryFile::MemoryFile(const char* name)
    : file_(memfd_create(name, 0)), path_("/proc/self/fd/" + std::to_string(file_)) {
    if (file_ < 0) std::abort();
}

MemoryFile::~MemoryFile() {
    close(file_);
}

void MemoryFile::Write(const void* data, std::size_t size) {
    if (ftruncate(file_, 0) != 0 || pwrite(file_, data, size, 0) != static_cast<ssize_t>(size)) std::abort();
}

void LoadAndWalk(const std::string& gap_path, const std::string& contig_path) {
    Store store;
    std::string gaps = gap_path;
    std::string contigs = contig_path;
    Loadgapfile(gaps, contigs, store.scaffolds, store.scafid);
    Loadcontigfile(contigs, store.scaffolds, store.scafid);
    static volatile std::uint64_t sink;
    for (const auto& [id, num] : store.scafid) sink = sink + Touch(store.scaffolds[num]);

    Store fetched;
    LoadGapPlaces(gaps, contigs, fetched.scaffolds, fetched.scafid);
    Loadcontigfile(contigs, fetched.scaffolds, fetched.scafid);
    ExpectSame(store, fetched);
    CloseGapPlaces();
}

}  // namespace lintara::fuzz
