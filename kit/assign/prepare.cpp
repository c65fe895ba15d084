#include "kit/assign/prepare.h"

#include <fmt/format.h>
#include <htslib/hts.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "kit/base/error.h"

namespace lintara::kit {

namespace {

void WriteContigs(const Layout& layout, const std::vector<CoreScaffold>& scaffolds, const std::string& path) {
    AtomicFile out(path);
    for (const CoreScaffold& scaffold : scaffolds) {
        const std::string& text = layout.sequences[static_cast<size_t>(scaffold.sequence)].text;
        for (size_t c = 0; c < scaffold.contigs.size(); ++c) {
            const Span& contig = scaffold.contigs[c];
            long gap = c == 0 ? 0 : contig.start - scaffold.contigs[c - 1].end;
            out.Write(fmt::format(">scaffold{}_{}\t{}\n", scaffold.number, c, gap));
            out.Write(
                std::string_view(text).substr(static_cast<size_t>(contig.start), static_cast<size_t>(contig.Length())));
            out.Write("\n");
        }
    }
    out.Commit();
}

void WriteReads(const std::vector<CoreScaffold>& scaffolds, const std::vector<std::vector<AssignedRead>>& assigned,
                const std::string& path) {
    AtomicFile out(path, AtomicFile::Format::kBgzip);
    for (const CoreScaffold& scaffold : scaffolds) {
        for (size_t g = 0; g < scaffold.gaps.size(); ++g) {
            long length = scaffold.contigs[g + 1].start - scaffold.contigs[g].end;
            int id = scaffold.gaps[g];
            for (const AssignedRead& read : assigned[static_cast<size_t>(id)]) {
                out.Write(fmt::format(">{}\t{}\t{}\t{}\t{}\n{}\n", id, length, read.position, scaffold.number, g,
                                      read.bases));
            }
        }
    }
    out.Commit();
}

/// A description may hold tabs, a field of a table may not.
std::string Field(std::string text) {
    std::replace(text.begin(), text.end(), '\t', ' ');
    return text;
}

void WriteNames(const std::vector<FastaRecord>& records, const std::vector<CoreScaffold>& scaffolds,
                const std::string& path) {
    AtomicFile out(path);
    out.Write("scaffold\tname\tdescription\tgap\tstart\tend\n");
    for (const CoreScaffold& scaffold : scaffolds) {
        const FastaRecord& record = records[static_cast<size_t>(scaffold.sequence)];
        std::string head = fmt::format("{}\t{}\t{}", scaffold.number, record.name, Field(record.description));
        if (scaffold.gaps.empty()) out.Write(head + "\t.\t.\t.\n");
        for (size_t g = 0; g < scaffold.gaps.size(); ++g) {
            out.Write(fmt::format("{}\t{}\t{}\t{}\n", head, scaffold.gaps[g], scaffold.contigs[g].end,
                                  scaffold.contigs[g + 1].start));
        }
    }
    out.Commit();
}

}  // namespace

void WriteCoreInput(const Layout& layout, const std::vector<CoreScaffold>& scaffolds,
                    const std::vector<std::vector<AssignedRead>>& assigned, const std::string& folder) {
    WriteContigs(layout, scaffolds, folder + "/contig.fa");
    WriteReads(scaffolds, assigned, folder + "/gap.fa.gz");
}

void WarnOfLetters(const std::vector<FastaRecord>& records, Progress& progress) {
    for (const FastaRecord& record : records) {
        std::map<char, long> odd;
        for (char letter : record.sequence) {
            if (std::string_view("ACGTNacgtn").find(letter) == std::string_view::npos) ++odd[letter];
        }
        if (odd.empty()) continue;
        std::string list;
        for (const auto& [letter, count] : odd) list += fmt::format("{}{} {}", list.empty() ? "" : ", ", count, letter);
        progress.Warn(fmt::format("scaffold \"{}\" holds letters other than A, C, G, T and N, which are kept: {}",
                                  record.name.substr(0, 80), list));
    }
}

void WarnOfLongReads(const std::string& library, const MappingSummary& summary, Progress& progress) {
    constexpr long kLongestOverlap = 255;
    if (summary.longestRead <= kLongestOverlap) return;
    progress.Warn(
        fmt::format("{}: reads of up to {} bases: overlaps of more than {} are lost or taken for shorter ones; "
                    "reads cut to that length fill better",
                    library, summary.longestRead, kLongestOverlap));
}

std::string ReferenceForCram(const std::vector<std::string>& bams, const std::vector<FastaRecord>& records,
                             const std::string& folder) {
    bool any = false;
    hts_set_log_level(HTS_LOG_OFF);
    for (const std::string& bam : bams) {
        htsFile* file = hts_open(bam.c_str(), "r");
        if (file == nullptr) continue;
        any = any || hts_get_format(file)->format == cram;
        hts_close(file);
    }
    if (!any) return "";
    std::string path = folder + "/cram-reference.fa";
    AtomicFile out(path);
    for (const FastaRecord& record : records) WriteFasta(out, record.name, "", record.sequence);
    out.Commit();
    return path;
}

namespace {

/// Removes a FASTA file and its index when the command ends, in whatever way.
class ScratchFasta {
  public:
    explicit ScratchFasta(std::string path) : path_(std::move(path)) {}
    ~ScratchFasta() {
        std::error_code ignored;
        if (path_.empty()) return;
        std::filesystem::remove(path_, ignored);
        std::filesystem::remove(path_ + ".fai", ignored);
    }
    ScratchFasta(const ScratchFasta&) = delete;
    ScratchFasta& operator=(const ScratchFasta&) = delete;

  private:
    std::string path_;
};

}  // namespace

int RunPrepare(const PrepareOptions& options) {
    Progress progress(options.quiet);
    std::vector<FastaRecord> records = ReadFasta(options.scaffolds);
    WarnOfLetters(records, progress);
    Layout layout;
    for (const FastaRecord& record : records) AddSequence(layout, record.name, record.sequence, options.minGap);
    std::error_code fault;
    std::filesystem::create_directories(options.out, fault);
    if (fault) throw Error(fmt::format("cannot make the folder {}: {}", options.out, fault.message()));
    std::string reference = ReferenceForCram(options.bams, records, options.out);
    ScratchFasta scratch(reference);
    std::vector<std::vector<AssignedRead>> assigned(static_cast<size_t>(layout.gapCount) + 1);
    for (const std::string& bam : options.bams) {
        progress.Begin("assign " + bam);
        MappingInput input{bam, -1, reference};
        auto tell = [&](long reads) { progress.At(reads); };
        MappingSummary summary = SummarizeMapping(input, layout, "", "", tell);
        AssignMapping(input, layout, summary, assigned, tell);
        std::string sizes;
        for (const InsertSize& size : summary.libraries) {
            sizes += size.pairs == 0 ? std::string(", no proper pairs")
                                     : fmt::format(", insert size {:.0f} +- {:.1f}", size.median, size.deviation);
        }
        progress.End(fmt::format("{} reads, {} mapped, longest {}{}", summary.reads, summary.mapped,
                                 summary.longestRead, sizes));
        WarnOfLongReads(bam, summary, progress);
    }
    for (std::vector<AssignedRead>& reads : assigned) OrderAndThin(reads);
    std::vector<CoreScaffold> scaffolds = CoreScaffolds(layout, true);
    WriteCoreInput(layout, scaffolds, assigned, options.out);
    WriteNames(records, scaffolds, options.out + "/names.tsv");
    return 0;
}

}  // namespace lintara::kit
