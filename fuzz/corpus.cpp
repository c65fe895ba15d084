// Writes the first corpus of every target, from the recorded runs: each gap and contig file as it is, and each gap as
// the bytes of an input of its strategy. Files are named after their case.
//
//   fuzz_corpus CASES OUTPUT-DIRECTORY
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "gap_input.h"
#include "harness.h"
#include "run/options.h"
#include "run/settings.h"
#include "store/gzstream.h"
#include "store/load.h"

namespace {

namespace fs = std::filesystem;
using namespace lintara;
using namespace lintara::fuzz;

constexpr std::size_t kMostBytes = 1 << 16;  // of a gap or contig file, which is cut there

void Write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

void WriteCompressed(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    const gzFile out = gzopen(file.c_str(), "wb6");
    gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
    gzclose(out);
}

std::string Start(std::istream& in) {
    std::string text(kMostBytes, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}

/// The nearest bytes for the present settings.
OptionBytes PresentOptions() {
    OptionBytes options;
    options.used = true;
    const auto byte = [](double share) { return static_cast<std::uint8_t>(std::clamp(share, 0.0, 1.0) * 255 + 0.5); };
    options.bytes[0] = static_cast<std::uint8_t>(std::clamp(ReadLen - 50, 0, 200));
    options.bytes[1] = static_cast<std::uint8_t>(std::clamp(Kmer - 11, 0, 21));
    options.bytes[2] = static_cast<std::uint8_t>(std::clamp(Min_overlap - 16, 0, 44));
    options.bytes[3] = byte((Match_ratio - 0.8) / 0.2);
    options.bytes[4] = byte((false_ratio - 0.02) / 0.18);
    options.bytes[5] = byte((ECUTOFF - 0.2) / 0.8);
    options.bytes[6] = byte((load_factor - 0.2) / 0.7);
    options.bytes[7] = static_cast<std::uint8_t>(std::clamp(Method, 0, 5));
    return options;
}

void ReadArguments(const fs::path& file) {
    std::ifstream in(file);
    std::vector<std::string> words{"lintara"};
    for (std::string word; in >> word;) words.push_back(word);
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    mGetOptions(static_cast<int>(pointers.size()), pointers.data());
}

void WriteGap(const Scaf& scaffold, const Gap& gap, const std::string& name, const fs::path& out) {
    GapInput input;
    input.gap_length = gap.gap_length;
    input.before = scaffold.contigs[gap.before_contig_id];
    input.after = scaffold.contigs[gap.before_contig_id + 1];
    for (Len_t i = 0; i < gap.greadSum; ++i) input.reads.emplace_back(gap.reads[i], gap.position[i]);
    if (ReadLen != 100 || Min_overlap != 30) input.options = PresentOptions();
    const bool big = gap.gap_length >= 1500;
    const bool small = gap.gap_length <= ReadLen;
    const LengthRange lengths = big     ? LengthRange{1500, 6000}
                                : small ? LengthRange{0, ReadLen}
                                        : LengthRange{ReadLen + 1, 1499};
    const std::vector<std::uint8_t> bytes = Encode(input, lengths);
    Write(out /
              (big     ? "big_gap_fuzz"
               : small ? "small_gap_fuzz"
                       : "middle_gap_fuzz") /
              name,
          std::string(bytes.begin(), bytes.end()));
}

void WriteGaps(const std::string& gap_path, const std::string& contig_path, const std::string& name,
               const fs::path& out) {
    Scaf* scaffolds = nullptr;
    std::map<int, int> scafid;
    std::string gaps = gap_path;
    std::string contigs = contig_path;
    const bool whole = RunGuarded(Ends::kAll, [&] {
        Loadgapfile(gaps, contigs, scaffolds, scafid);
        Loadcontigfile(contigs, scaffolds, scafid);
    });
    for (const auto& [id, num] : scafid) {
        for (Len_t i = 0; whole && i < scaffolds[num].gapSum; ++i) {
            const Gap& gap = scaffolds[num].gaps[i];
            if (gap.greadSum != 0) WriteGap(scaffolds[num], gap, name + "-" + std::to_string(gap.id), out);
        }
        scaffold_delete(scaffolds[num]);
    }
    delete[] scaffolds;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: fuzz_corpus CASES OUTPUT-DIRECTORY\n";
        return 1;
    }
    const fs::path out = argv[2];
    Prepare();
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[1])) {
        const std::string name = entry.path().filename().string();
        fs::path gap_path = entry.path() / "gap.fa";
        if (!fs::exists(gap_path)) gap_path = entry.path() / "gap.fa.gz";
        const fs::path contig_path = entry.path() / "contig.fa";
        if (!fs::exists(gap_path) || !fs::exists(contig_path)) continue;
        ResetRun();
        ReadArguments(entry.path() / "args");
        igzstream gap_text(gap_path.c_str(), 0, std::ios::in);
        const std::string records = Start(gap_text);
        Write(out / "gap_file_fuzz" / name, records);
        WriteCompressed(out / "gap_file_gzip_fuzz" / name, records);
        std::ifstream contig_text(contig_path, std::ios::binary);
        Write(out / "contig_file_fuzz" / name, Start(contig_text));
        WriteGaps(gap_path.string(), contig_path.string(), name, out);
    }
    return 0;
}
