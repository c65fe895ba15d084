#include "store/load.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "run/record_text.h"
#include "run/settings.h"
#include "store/gap_file.h"
#include "store/gap_reads.h"

namespace lintara {

namespace {

[[noreturn]] void FailToLoad(const std::string& file) {
    std::cerr << "Fail to load file " << file << std::endl;
    std::exit(-1);
}

/// Ends the run for a record that points outside the store.
[[noreturn]] void BadRecord(const std::string& file, long line, const std::string& what) {
    std::cerr << file << ": line " << line << ": " << what << std::endl;
    std::exit(-1);
}

template <class... Words>
std::string Text(const Words&... words) {
    std::ostringstream text;
    (text << ... << words);
    return text.str();
}

// A read never holds a line end, so this marks the entries that no record has filled yet.
const char kUnfilled = '\n';

/// Marks all entries of a gap's arrays. Filling them with Initial() instead would allocate every read twice.
void MarkUnfilled(Gap& gap) {
    for (Len_t i = 0; i < gap.greadSum; ++i) gap.reads[i] = kUnfilled;
}

/// Initial() for the entries that are still marked: those of a gap id that stands at several places.
void InitialUnfilled(const Scaf& scaffold) {
    for (Len_t i = 0; i < scaffold.gapSum; ++i) {
        const Gap& gap = scaffold.gaps[i];
        for (Len_t r = 0; r < gap.greadSum; ++r) {
            std::string* read = &gap.reads[r];
            if (read->size() == 1 && read->front() == kUnfilled) Initial(read, 1);
        }
    }
}

/// One gap's records in the gap file.
struct GapRun {
    GapHeader first;          ///< header of the first record
    Len_t reads = 0;          ///< number of records
    std::uint64_t begin = 0;  ///< bytes in front of the first record
    std::uint64_t end = 0;    ///< bytes in front of what stands behind the last record
};

/// Notes where the gaps of a gap file stand, for as long as its records allow it.
class GapRuns {
  public:
    /// Notes the record at hand, before its sequence is taken.
    ///
    /// @param new_gap  whether no record before was one of its gap
    void NoteHeader(const GapFile& file, const GapHeader& header, bool new_gap) {
        if (!usable_) return;
        if (new_gap) {
            runs_.push_back({header, 0, end_, end_});
        } else {
            const GapHeader& first = runs_.back().first;
            usable_ = header.gap == first.gap && header.scaffold == first.scaffold && header.contig == first.contig;
        }
        usable_ = usable_ && file.InPlace();
        ++runs_.back().reads;
    }
    /// Notes that the record ends here.
    ///
    /// @param length  of its sequence line; a short one is told of when it is loaded, so it is not left in the file
    void NoteEnd(const GapFile& file, std::size_t length) {
        usable_ = usable_ && length > 1;
        if (!usable_) {
            runs_ = {};
            return;
        }
        end_ = file.Offset();
        runs_.back().end = end_;
    }
    /// Notes so many more records of the gap noted last, which end here.
    void NoteMore(const GapFile& file, Len_t records) {
        if (!usable_) return;
        end_ = file.Offset();
        runs_.back().end = end_;
        runs_.back().reads += records;
    }
    bool usable() const { return usable_; }
    const std::vector<GapRun>& runs() const { return runs_; }

  private:
    std::vector<GapRun> runs_;
    std::uint64_t end_ = 0;
    bool usable_ = true;
};

/// Loadgapnum() that also notes the places of the gaps.
///
/// @param text  out: the text of a compressed file, if the places in it are of use; may be null
void CountReads(const std::string& file, std::map<int, int>& gapreadsum, GapRuns& runs, KeptText* text) {
    GapFile in(file);
    if (in.Compressed() && HasPlaces(file)) in.Keep(text);
    GapHeader header;
    int last_gap = 0;
    int* count = nullptr;
    while (in.ReadHeader(header)) {
        if (!header.marked) {
            std::cerr << "Error in load gap file\n";
            std::exit(-1);
        }
        bool new_gap = false;
        if (count == nullptr || header.gap != last_gap) {
            const auto [entry, inserted] = gapreadsum.try_emplace(header.gap, 0);
            count = &entry->second;
            new_gap = inserted;
            last_gap = header.gap;
        }
        ++*count;
        runs.NoteHeader(in, header, new_gap);
        runs.NoteEnd(in, in.ReadSequence().size());
        const Len_t more = in.PassRepeated();
        *count += static_cast<int>(more);
        runs.NoteMore(in, more);
        if (text != nullptr && !runs.usable()) {
            in.Keep(nullptr);
            text->Clear();
        }
    }
    StreamText(std::cerr) << "Number count finished!\n"
                          << "Gap number: " << gapreadsum.size() << "\n";
}

/// Takes all gaps out of the store.
void ResetGaps(Scaf* scaffolds, std::size_t scaffold_count) {
    for (std::size_t i = 0; i < scaffold_count; ++i) {
        for (Len_t gap = 0; gap < scaffolds[i].gapSum; ++gap) scaffolds[i].gaps[gap] = Gap();
    }
}

/// Enters the gaps into the store without their reads.
///
/// @return false, with no gap entered, when one of them has no place of its own
bool EnterGaps(const std::vector<GapRun>& runs, Scaf* scaffolds, const std::map<int, int>& scafid) {
    for (const GapRun& run : runs) {
        const auto found = scafid.find(run.first.scaffold);
        // The first records of scaffold 0 go to the first scaffold, which need not be its own.
        if (found == scafid.end() || run.first.scaffold == 0) return ResetGaps(scaffolds, scafid.size()), false;
        const Scaf& scaffold = scaffolds[found->second];
        const int contig = run.first.contig;
        const bool inside = contig >= 0 && static_cast<Len_t>(contig) < scaffold.gapSum;
        if (!inside || scaffold.gaps[contig].greadSum != 0) return ResetGaps(scaffolds, scafid.size()), false;
        Gap& gap = scaffold.gaps[contig];
        gap.id = run.first.gap;
        gap.greadSum = run.reads;
        gap.gap_length = static_cast<int>(run.first.length);
        gap.before_contig_id = contig;
    }
    return true;
}

/// Leaves all reads in the gap file, or in its text.
///
/// @param text  of a compressed file, else empty
/// @return false, with the store unchanged, when the reads must be loaded
bool LeaveReads(const std::string& file, KeptText& text, const GapRuns& gaps, Scaf* scaffolds,
                const std::map<int, int>& scafid) {
    if (!HasPlaces(file) || !gaps.usable() || !EnterGaps(gaps.runs(), scaffolds, scafid)) return false;
    std::vector<GapPlace> places;
    places.reserve(gaps.runs().size());
    for (const GapRun& run : gaps.runs()) places.push_back({run.first.gap, run.begin, run.end});
    if (text.size() > 0) return OpenGapPlaces(std::move(text), std::move(places)), true;
    if (OpenGapPlaces(file, std::move(places))) return true;
    ResetGaps(scaffolds, scafid.size());
    return false;
}

bool EndsWithNonBase(std::string_view text) {
    return alphabet1[text.back()] == 4;
}

/// Position of the first such character as an int, -1 where there is none.
int Find(const std::string& line, char c) {
    const std::size_t pos = line.find(c);
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

/// Scaffold id of a contig header: the number from character 9 to the first '_', or to the end without one there.
int ScaffoldNumber(const std::string& header) {
    return std::atoi(header.c_str() + 9);
}

void RefuseShortHeader(const std::string& file, long line_number, const std::string& header) {
    if (header.size() < 9) {
        BadRecord(file, line_number, Text("contig header is shorter than nine characters: ", header));
    }
}

void OpenContigFile(std::ifstream& in, const std::string& file) {
    in.open(file.c_str());
    if (!in) FailToLoad(file);
    // Else a stream that runs out of memory in the middle of a line looks like one at its end.
    in.exceptions(std::ios::badbit);
}

/// False at the end of the file. A directory is an empty file; any other one that cannot be read ends the process.
bool ReadLine(std::ifstream& in, std::string& line, const std::string& file) {
    try {
        return static_cast<bool>(std::getline(in, line));
    } catch (const std::ios_base::failure& failure) {
        if (failure.code() == std::errc::is_a_directory) return false;
        FailToLoad(file);
    }
}

/// Fills the scaffolds from the contig file behind the count of the reads. @return whether there is anything to load
bool CountContigs(std::string& file, const std::map<int, int>& gapreadsum, Scaf*& scaffolds,
                  std::map<int, int>& scafid) {
    Loadcontignum(file, scaffolds, scafid);
    StreamText(std::cerr) << "scaffold number in total: " << scafid.size() << "\n";
    if (!gapreadsum.empty() && !scafid.empty()) return true;
    std::cerr << "Is gapread.fa or contig.fa empty? Can't find read or contig seq\n";
    return false;
}

/// Loads all reads into the store.
void LoadReads(const std::string& file1, std::map<int, int>& gapreadsum, Scaf* scaffolds, std::map<int, int>& scafid) {
    const std::size_t scaffold_count = scafid.size();
    std::map<int, int> gapreadnum;
    for (const auto& [id, sum] : gapreadsum) gapreadnum.emplace_hint(gapreadnum.end(), id, 0);

    GapFile in(file1);
    std::cerr << "start to load gap file\n";
    GapHeader header;
    int last_scaffold = 0;
    int num = 0;
    // Neighbouring records mostly belong to one gap, so its counters are looked up once a run of records.
    int last_gap = 0;
    int* stored = nullptr;
    int counted = 0;
    while (in.ReadHeader(header)) {
        const int gap_number = header.gap;
        if (header.scaffold != last_scaffold) {
            num = scafid[header.scaffold];
            last_scaffold = header.scaffold;
        }
        const Scaf& scaffold = scaffolds[num];
        if (header.contig < 0 || static_cast<Len_t>(header.contig) >= scaffold.gapSum) {
            BadRecord(file1, in.HeaderLine(),
                      Text("contig index ", header.contig, " is outside the gaps of scaffold ", header.scaffold,
                           ", which has ", scaffold.gapSum));
        }
        if (stored == nullptr || gap_number != last_gap) {
            stored = &gapreadnum[gap_number];
            counted = gapreadsum[gap_number];
            last_gap = gap_number;
        }
        Gap& gap = scaffold.gaps[header.contig];
        if (gap.greadSum == 0 && counted > 0) {
            gap.id = gap_number;
            gap.greadSum = static_cast<Len_t>(counted);
            gap.reads = new std::string[gap.greadSum];
            gap.position = new int[gap.greadSum];
            MarkUnfilled(gap);
            Initial(gap.position, counted);
            gap.gap_length = static_cast<int>(header.length);
            gap.before_contig_id = header.contig;
        }
        // Two gap ids at one place of a scaffold, or a file that grew since it was counted.
        if (static_cast<Len_t>(*stored) >= gap.greadSum) {
            BadRecord(file1, in.HeaderLine(), Text("more reads for gap ", gap_number, " than counted: ", gap.greadSum));
        }
        gap.position[*stored] = header.position;
        const std::string_view sequence = in.ReadSequence();
        if (sequence.size() <= 1) std::cerr << "short read: " << sequence << std::endl;
        gap.reads[*stored] = std::string(StoredSequence(sequence));
        ++*stored;
    }
    for (std::size_t i = 0; i < scaffold_count; ++i) InitialUnfilled(scaffolds[i]);
    std::cerr << "gap file load finished!\n";
}

}  // namespace

void Loadgapfile(std::string& file1, std::string& file2, Scaf*& scaffolds, std::map<int, int>& scafid) {
    std::map<int, int> gapreadsum;
    Loadgapnum(file1, gapreadsum);
    if (CountContigs(file2, gapreadsum, scaffolds, scafid)) LoadReads(file1, gapreadsum, scaffolds, scafid);
}

void LoadGapPlaces(std::string& file1, std::string& file2, Scaf*& scaffolds, std::map<int, int>& scafid) {
    std::map<int, int> gapreadsum;
    GapRuns runs;
    KeptText text;
    CountReads(file1, gapreadsum, runs, &text);
    if (!CountContigs(file2, gapreadsum, scaffolds, scafid)) return;
    if (LeaveReads(file1, text, runs, scaffolds, scafid)) {
        std::cerr << "start to load gap file\ngap file load finished!\n";
        return;
    }
    runs = {};
    text.Clear();
    LoadReads(file1, gapreadsum, scaffolds, scafid);
}

void Loadcontigfile(std::string& file, Scaf*& scaffolds, std::map<int, int>& scafid) {
    std::cerr << "Start to load contig file\n";
    std::ifstream in;
    OpenContigFile(in, file);
    std::string sequence;
    int scaffid = 0;
    int contigid = 0;
    int gap_length = 0;
    long line_number = 0;
    long header_line = 1;

    const auto store = [&] {
        // A single base is kept on purpose: it begins the sequence of the next contig.
        if (sequence.size() <= 1) return;
        // Index 0 serves ids that were not counted, so there must be at least one scaffold.
        if (scafid.empty()) BadRecord(file, header_line, Text("scaffold ", scaffid, " is not in the store"));
        Scaf& scaffold = scaffolds[scafid[scaffid]];
        if (contigid < 0 || static_cast<Len_t>(contigid) > scaffold.gapSum) {
            BadRecord(file, header_line,
                      Text("contig index ", contigid, " is outside the contigs of scaffold ", scaffid, ", which has ",
                           scaffold.gapSum + 1));
        }
        scaffold.contigs[contigid] = std::string(sequence.data(), sequence.size());
        scaffold.front_gap_lens[contigid] = gap_length;
        sequence.clear();
    };

    std::string line;
    while (ReadLine(in, line, file)) {
        ++line_number;
        if (line.empty() || line[0] != '>') {
            sequence += line;
            continue;
        }
        store();
        const int underscore = Find(line, '_');
        const int tab = Find(line, '\t');
        if (tab == -1 || tab < underscore) {
            std::cerr << "position error \n" << underscore << "\t" << tab << std::endl;
            std::exit(-1);
        }
        RefuseShortHeader(file, line_number, line);
        scaffid = ScaffoldNumber(line);
        // Without '_' the number is looked for from the first character on.
        contigid = std::atoi(line.substr(underscore + 1, tab - underscore - 1).c_str());
        gap_length = std::atoi(line.c_str() + tab + 1);
        header_line = line_number;
    }
    store();
    in.close();
    std::cerr << "contig file load finished!\n";
}

void Loadgapnum(std::string& file, std::map<int, int>& gapreadsum) {
    GapRuns runs;
    CountReads(file, gapreadsum, runs, nullptr);
}

void Loadcontignum(std::string& file, Scaf*& scaffolds, std::map<int, int>& scafid) {
    std::cerr << "Start to count contig number\n";
    std::ifstream in;
    OpenContigFile(in, file);
    std::map<int, int> contignum;
    std::string line;
    long line_number = 0;
    while (ReadLine(in, line, file)) {
        ++line_number;
        if (line.empty() || line[0] != '>') continue;
        RefuseShortHeader(file, line_number, line);
        const int id = ScaffoldNumber(line);
        if (id == 0) std::cerr << "scaffold id " << line << "\t" << 0 << std::endl;
        ++contignum[id];
    }
    scaffolds = new Scaf[contignum.size()];
    if (!contignum.empty() && contignum.begin()->first == 0) contignum.erase(contignum.begin());
    int num = 0;
    for (const auto& [id, count] : contignum) {
        scafid[id] = num;
        Scaf& scaffold = scaffolds[num];
        scaffold.gapSum = static_cast<Len_t>(count - 1);
        scaffold.gaps = new Gap[scaffold.gapSum];
        scaffold.contigs = new std::string[static_cast<std::size_t>(count)];
        // Zero for a contig that the file counts but never supplies.
        scaffold.front_gap_lens = new int[static_cast<std::size_t>(count)]();
        ++num;
    }
    StreamText(std::cerr) << "contig number count finished!\t" << scafid.size() << "\n";
}

void scaffold_delete(Scaf& scaffold) {
    if (scaffold.gaps != nullptr) {
        for (Len_t i = 0; i < scaffold.gapSum; ++i) {
            delete[] scaffold.gaps[i].reads;
            delete[] scaffold.gaps[i].position;
        }
    }
    delete[] scaffold.gaps;
    delete[] scaffold.contigs;
    delete[] scaffold.front_gap_lens;
    scaffold = Scaf();
}

void chomp_read(std::string& str) {
    if (!str.empty() && EndsWithNonBase(str)) str.pop_back();
}

void chomp_read(char* str) {
    if (str == nullptr || *str == '\0') return;
    const std::size_t size = std::strlen(str);
    if (EndsWithNonBase({str, size})) str[size - 1] = '\0';
}

void Initial(int*& array, int size) {
    std::fill_n(array, std::max(size, 0), 0);
}

void Initial(std::string*& array, int size) {
    for (int i = 0; i < size; ++i) array[i].assign(100, 'N');
}

int findsetmax(const std::set<int>& pos) {
    return pos.empty() ? 0 : std::max(*pos.rbegin(), 0);
}

}  // namespace lintara
