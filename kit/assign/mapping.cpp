#include "kit/assign/mapping.h"

#include <fmt/format.h>
#include <htslib/hfile.h>
#include <htslib/sam.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <unordered_map>

#include "kit/assign/edge_words.h"
#include "kit/base/error.h"
#include "kit/base/file.h"

namespace lintara::kit {

namespace {

constexpr long kTellEvery = 256;       ///< records
constexpr int kConfidentQuality = 30;  ///< of pairs that the insert size is measured on

std::string BasesOf(const bam1_t& record) {
    const uint8_t* packed = bam_get_seq(&record);
    std::string bases(static_cast<size_t>(record.core.l_qseq), 'N');
    for (int i = 0; i < record.core.l_qseq; ++i) bases[static_cast<size_t>(i)] = seq_nt16_str[bam_seqi(packed, i)];
    return bases;
}

/// The read as it came from the sequencer.
std::string AsRead(const bam1_t& record) {
    std::string bases = BasesOf(record);
    return (record.core.flag & BAM_FREVERSE) != 0 ? ReverseComplement(bases) : bases;
}

void WriteFastq(AtomicFile& out, const bam1_t& record) {
    std::string bases = AsRead(record);
    out.Write(fmt::format("@{}\n{}\n+\n{}\n", bam_get_qname(&record), bases, std::string(bases.size(), 'I')));
}

/// An open mapping with its header, and which sequence of the layout each of its targets is.
class MappingReader {
  public:
    MappingReader(const MappingInput& input, const Layout& layout) : name_(input.path.empty() ? "mapper" : input.path) {
        try {
            Open(input, layout);
        } catch (...) {
            // A mapper that writes into the pipe would wait for ever.
            Close();
            throw;
        }
    }
    ~MappingReader() { Close(); }
    MappingReader(const MappingReader&) = delete;
    MappingReader& operator=(const MappingReader&) = delete;

    /// Next record of any kind.
    bool Next() {
        int got = sam_read1(file_, header_, record_);
        if (got < -1) throw Error(fmt::format("{}: damaged or cut short behind record {}", name_, count_));
        count_ += got >= 0;
        return got >= 0;
    }
    /// Secondary and supplementary alignments stay out.
    bool Primary() const { return (record_->core.flag & (BAM_FSECONDARY | BAM_FSUPPLEMENTARY)) == 0; }
    const bam1_t& Record() const { return *record_; }
    sam_hdr_t* Header() const { return header_; }
    const std::vector<std::string>& Libraries() const { return libraries_; }
    long Count() const { return count_; }  ///< records read

    int Library() const {
        if (groups_.empty()) return 0;
        const uint8_t* tag = bam_aux_get(record_, "RG");
        const char* group = tag == nullptr ? nullptr : bam_aux2Z(tag);
        if (group == nullptr) return 0;
        auto found = groups_.find(group);
        return found == groups_.end() ? 0 : found->second;
    }

    int Target(int tid) const { return tid < 0 ? -1 : targets_[static_cast<size_t>(tid)]; }

    MappedRead Read() const {
        const bam1_core_t& core = record_->core;
        MappedRead read;
        read.name = bam_get_qname(record_);
        read.mate = (core.flag & BAM_FPAIRED) == 0 ? 0 : (core.flag & BAM_FREAD2) != 0 ? 2 : 1;
        read.sequence = Target(core.tid);
        read.mapped = (core.flag & BAM_FUNMAP) == 0 && read.sequence >= 0 && core.n_cigar > 0;
        read.reverse = (core.flag & BAM_FREVERSE) != 0;
        read.proper = (core.flag & BAM_FPROPER_PAIR) != 0;
        read.quality = core.qual;
        read.bases = BasesOf(*record_);
        if (read.mapped) {
            Place(read);
        } else if (read.reverse) {
            read.bases = ReverseComplement(read.bases);
            read.reverse = false;
        }
        return read;
    }

  private:
    void Open(const MappingInput& input, const Layout& layout) {
        // What is wrong is told once, in this program's own words.
        hts_set_log_level(HTS_LOG_OFF);
        errno = 0;
        if (input.path.empty()) {
            hFILE* stream = hdopen(input.fd, "r");
            if (stream != nullptr) file_ = hts_hopen(stream, "mapper", "r");
        } else {
            file_ = hts_open(input.path.c_str(), "r");
        }
        if (file_ == nullptr) {
            throw Error(fmt::format("cannot read {}: {}", name_, errno != 0 ? std::strerror(errno) : "unknown format"));
        }
        htsExactFormat format = hts_get_format(file_)->format;
        if (!input.reference.empty() && format == cram) hts_set_fai_filename(file_, input.reference.c_str());
        // The library takes reads in FASTA and FASTQ too, as unmapped ones.
        if (format != fasta_format && format != fastq_format) header_ = sam_hdr_read(file_);
        if (header_ == nullptr) throw Error(fmt::format("{}: this is no SAM, BAM or CRAM file", name_));
        if ((format == bam || format == cram) && hts_check_EOF(file_) == 0) {
            throw Error(fmt::format("{}: the file is cut short", name_));
        }
        record_ = bam_init1();
        MatchTargets(layout);
        FindLibraries();
    }
    void Close() {
        if (record_ != nullptr) bam_destroy1(record_);
        if (header_ != nullptr) sam_hdr_destroy(header_);
        if (file_ != nullptr) hts_close(file_);
    }

    void Place(MappedRead& read) const {
        const bam1_core_t& core = record_->core;
        const uint32_t* cigar = bam_get_cigar(record_);
        read.start = core.pos;
        read.end = bam_endpos(record_);
        for (uint32_t i = 0; i < core.n_cigar && IsClip(cigar[i]); ++i) read.leadClip += SoftClip(cigar[i]);
        for (uint32_t i = core.n_cigar; i > 0 && IsClip(cigar[i - 1]); --i) read.tailClip += SoftClip(cigar[i - 1]);
    }
    static bool IsClip(uint32_t op) { return bam_cigar_op(op) == BAM_CSOFT_CLIP || bam_cigar_op(op) == BAM_CHARD_CLIP; }
    static long SoftClip(uint32_t op) { return bam_cigar_op(op) == BAM_CSOFT_CLIP ? bam_cigar_oplen(op) : 0; }

    /// Targets are found by their names.
    void MatchTargets(const Layout& layout) {
        std::unordered_map<std::string, int> byName;
        for (size_t s = 0; s < layout.sequences.size(); ++s) {
            auto [place, fresh] = byName.emplace(layout.sequences[s].name, static_cast<int>(s));
            if (!fresh) place->second = -2;
        }
        for (int t = 0; t < sam_hdr_nref(header_); ++t) {
            std::string target = sam_hdr_tid2name(header_, t);
            auto found = byName.find(target);
            int sequence = found == byName.end() ? -1 : found->second;
            if (sequence == -1) {
                throw Error(fmt::format("{}: the reads are mapped to \"{}\", which is no scaffold", name_, target));
            }
            if (sequence == -2) throw Error(fmt::format("{}: more than one scaffold is named \"{}\"", name_, target));
            long size = static_cast<long>(layout.sequences[static_cast<size_t>(sequence)].text.size());
            if (sam_hdr_tid2len(header_, t) != size) {
                throw Error(fmt::format("{}: \"{}\" has {} bases in the mapping and {} in the scaffolds", name_, target,
                                        sam_hdr_tid2len(header_, t), size));
            }
            targets_.push_back(sequence);
        }
    }

    /// Read groups are joined by their library; without any there is one library.
    void FindLibraries() {
        std::unordered_map<std::string, int> numbers;
        kstring_t text = KS_INITIALIZE;
        int groups = sam_hdr_count_lines(header_, "RG");
        for (int i = 0; i < groups; ++i) {
            const char* id = sam_hdr_line_name(header_, "RG", i);
            if (id == nullptr) continue;
            std::string group = id;
            std::string library = group;
            if (sam_hdr_find_tag_pos(header_, "RG", i, "LB", &text) == 0) library = ks_str(&text);
            auto [place, fresh] = numbers.emplace(library, static_cast<int>(numbers.size()));
            if (fresh) libraries_.push_back(library);
            groups_[group] = place->second;
        }
        ks_free(&text);
        if (libraries_.empty()) libraries_.push_back("reads");
    }

    std::string name_;
    htsFile* file_ = nullptr;
    sam_hdr_t* header_ = nullptr;
    bam1_t* record_ = nullptr;
    long count_ = 0;
    std::vector<int> targets_;
    std::unordered_map<std::string, int> groups_;
    std::vector<std::string> libraries_;
};

/// Pairs of a mapper's stream that may belong to a gap, as a BAM file.
class KeptPairs {
  public:
    KeptPairs(const std::string& path, const std::string& strayPath, sam_hdr_t* header, const Layout& layout)
        : path_(path), header_(header), layout_(layout) {
        if (!strayPath.empty()) {
            strays_.emplace(strayPath);
            words_.emplace(layout);
        }
        file_ = hts_open(path.c_str(), "wb1");
        if (file_ == nullptr || sam_hdr_write(file_, header) != 0) Fail();
    }
    ~KeptPairs() {
        for (bam1_t* record : group_) bam_destroy1(record);
        if (file_ != nullptr) hts_close(file_);
    }
    KeptPairs(const KeptPairs&) = delete;
    KeptPairs& operator=(const KeptPairs&) = delete;

    void Add(const MappingReader& reader) {
        const bam1_t& record = reader.Record();
        if (used_ > 0 && std::strcmp(bam_get_qname(group_[0]), bam_get_qname(&record)) != 0) Flush();
        if (used_ == group_.size()) group_.push_back(bam_init1());
        if (bam_copy1(group_[used_++], &record) == nullptr) throw std::bad_alloc();
        wanted_ = wanted_ || Wanted(reader);
    }
    void Finish() {
        Flush();
        htsFile* file = file_;
        file_ = nullptr;
        if (hts_close(file) != 0) Fail();
        if (strays_) strays_->Commit();
    }

  private:
    /// A read that is well placed in a proper pair can only belong to the gap that it hangs over. A pair without any
    /// place may lie deep within a gap.
    bool Wanted(const MappingReader& reader) const {
        const bam1_core_t& core = reader.Record().core;
        bool mapped = (core.flag & BAM_FUNMAP) == 0;
        if (!mapped) return (core.flag & BAM_FPAIRED) != 0;
        if ((core.flag & BAM_FPROPER_PAIR) == 0 || core.qual < kLeastQuality) return true;
        MappedRead place;
        place.mapped = true;
        place.sequence = reader.Target(core.tid);
        place.start = core.pos;
        place.end = bam_endpos(&reader.Record());
        return HangsAnywhere(place, layout_);
    }
    void Flush() {
        for (size_t i = 0; i < used_ && wanted_; ++i) {
            if (sam_write1(file_, header_, group_[i]) < 0) Fail();
        }
        for (size_t i = 0; strays_ && i < used_ && !wanted_; ++i) {
            if (words_->Touches(BasesOf(*group_[i]))) WriteFastq(*strays_, *group_[i]);
        }
        used_ = 0;
        wanted_ = false;
    }
    [[noreturn]] void Fail() const {
        throw Error(fmt::format("cannot write {}: {}", path_, std::strerror(errno != 0 ? errno : EIO)));
    }

    std::string path_;
    sam_hdr_t* header_;
    const Layout& layout_;
    htsFile* file_ = nullptr;
    std::vector<bam1_t*> group_;
    size_t used_ = 0;
    bool wanted_ = false;
    std::optional<AtomicFile> strays_;
    std::optional<EdgeWords> words_;
};

/// Tells from what both records of a pair know whether the pair can touch a gap: the starts and directions of the two.
class PairFilter {
  public:
    PairFilter(const MappingReader& reader, const Layout& layout, const MappingSummary& summary)
        : reader_(reader), layout_(layout), summary_(summary), slack_(2 * summary.longestRead + kNearEnd) {}

    bool Wanted(const bam1_core_t& core, int library) const {
        bool own = (core.flag & BAM_FUNMAP) == 0;
        bool mate = (core.flag & BAM_FPAIRED) != 0 && (core.flag & BAM_FMUNMAP) == 0;
        return (own && Reaches(core.tid, core.pos, (core.flag & BAM_FREVERSE) != 0, library)) ||
               (mate && Reaches(core.mtid, core.mpos, (core.flag & BAM_FMREVERSE) != 0, library));
    }

  private:
    bool Reaches(int tid, long start, bool reverse, int library) const {
        int sequence = reader_.Target(tid);
        if (sequence < 0) return false;
        if (Near(sequence, start - slack_, start + slack_)) return true;
        const InsertSize& insert = summary_.libraries[static_cast<size_t>(library)];
        if (insert.pairs == 0) return false;
        long median = static_cast<long>(insert.median) + 1;
        long reach = slack_ + static_cast<long>(kDeviations * insert.deviation) + 1;
        long place = reverse ? start - median : start + median;
        return Near(sequence, place - reach, place + reach);
    }
    bool Near(int sequence, long from, long to) const {
        const std::vector<LayoutGap>& gaps = layout_.sequences[static_cast<size_t>(sequence)].gaps;
        auto gap = std::partition_point(gaps.begin(), gaps.end(),
                                        [&](const LayoutGap& candidate) { return candidate.span.end < from; });
        return gap != gaps.end() && gap->span.start <= to;
    }

    const MappingReader& reader_;
    const Layout& layout_;
    const MappingSummary& summary_;
    long slack_;
};

/// Name and the two places, the same for both reads of a pair and different for reads that only share a name.
std::string PairKey(const MappingReader& reader) {
    return std::string(bam_get_qname(&reader.Record())) + '\t' + std::to_string(reader.Library());
}

/// The reads of each gap while a mapping is read. Where more come than can be used, those with a low hash stay, and the
/// limit falls by halves, so that what stays depends neither on the order of the reads nor on that of the gaps.
class ReadStore {
  public:
    explicit ReadStore(size_t gaps) : gaps_(gaps) {}

    void Add(AssignedRead&& read) {
        Held& held = gaps_[static_cast<size_t>(read.gap)];
        if (Hash(read) > held.limit) return;
        held.reads.push_back(std::move(read));
        while (held.reads.size() > kMostHeld && held.limit > 0) {
            held.limit /= 2;
            std::erase_if(held.reads, [&](const AssignedRead& kept) { return Hash(kept) > held.limit; });
        }
    }
    void MoveTo(std::vector<std::vector<AssignedRead>>& assigned) {
        for (size_t gap = 0; gap < gaps_.size(); ++gap) {
            for (AssignedRead& read : gaps_[gap].reads) assigned[gap].push_back(std::move(read));
            gaps_[gap] = {};
        }
    }

  private:
    /// Leaves enough to be thinned evenly along the gap.
    static constexpr size_t kMostHeld = 2 * kMostReads;
    struct Held {
        std::vector<AssignedRead> reads;
        uint64_t limit = std::numeric_limits<uint64_t>::max();
    };

    static uint64_t Hash(const AssignedRead& read) {
        uint64_t hash = 1469598103934665603ULL + static_cast<uint64_t>(read.mate);
        for (const std::string* text : {&read.name, &read.bases}) {
            for (unsigned char letter : *text) hash = (hash ^ letter) * 1099511628211ULL;
        }
        // The last letters have hardly reached the high bits, by which the limit cuts.
        hash = (hash ^ (hash >> 32)) * 0x9E3779B97F4A7C15ULL;
        return hash ^ (hash >> 29);
    }

    std::vector<Held> gaps_;
};

}  // namespace

MappingSummary SummarizeMapping(const MappingInput& input, const Layout& layout, const std::string& keptPath,
                                const std::string& strayPath, const std::function<void(long)>& tell) {
    MappingReader reader(input, layout);
    MappingSummary summary;
    summary.names = reader.Libraries();
    std::vector<InsertHistogram> histograms(summary.names.size());
    std::unique_ptr<KeptPairs> kept;
    if (!keptPath.empty()) kept = std::make_unique<KeptPairs>(keptPath, strayPath, reader.Header(), layout);
    while (reader.Next()) {
        if (tell && reader.Count() % kTellEvery == 0) tell(reader.Count());
        if (!reader.Primary()) continue;
        const bam1_core_t& core = reader.Record().core;
        ++summary.reads;
        summary.mapped += (core.flag & BAM_FUNMAP) == 0;
        summary.longestRead = std::max(summary.longestRead, static_cast<long>(core.l_qseq));
        bool proper = (core.flag & BAM_FPROPER_PAIR) != 0 && (core.flag & (BAM_FUNMAP | BAM_FMUNMAP)) == 0;
        if (proper && core.qual > kConfidentQuality && core.isize > 0) {
            histograms[static_cast<size_t>(reader.Library())].Add(core.isize);
        }
        if (kept) kept->Add(reader);
    }
    if (kept) kept->Finish();
    for (const InsertHistogram& histogram : histograms) summary.libraries.push_back(histogram.Size());
    return summary;
}

void AssignMapping(const MappingInput& input, const Layout& layout, const MappingSummary& summary,
                   std::vector<std::vector<AssignedRead>>& assigned, const std::function<void(long)>& tell) {
    assigned.resize(static_cast<size_t>(layout.gapCount) + 1);
    ReadStore store(assigned.size());
    MappingReader reader(input, layout);
    PairFilter filter(reader, layout, summary);
    struct Waiting {
        MappedRead read;
        int library = 0;
    };
    std::unordered_map<std::string, Waiting> waiting;
    std::vector<AssignedRead> found;
    auto assign = [&](const MappedRead& first, const MappedRead* second, int library) {
        found.clear();
        AssignPair(first, second, layout, summary.libraries[static_cast<size_t>(library)], found);
        for (AssignedRead& read : found) store.Add(std::move(read));
    };
    while (reader.Next()) {
        if (tell && reader.Count() % kTellEvery == 0) tell(reader.Count());
        if (!reader.Primary()) continue;
        int library = reader.Library();
        if (!filter.Wanted(reader.Record().core, library)) continue;
        MappedRead read = reader.Read();
        if (read.mate == 0) {
            assign(read, nullptr, library);
            continue;
        }
        std::string key = PairKey(reader);
        auto mate = waiting.find(key);
        if (mate == waiting.end() || mate->second.read.mate == read.mate) {
            // A second read 1 of the same name is another pair's: the first one is told by itself.
            if (mate != waiting.end()) {
                assign(mate->second.read, nullptr, library);
                waiting.erase(mate);
            }
            waiting.emplace(std::move(key), Waiting{std::move(read), library});
            continue;
        }
        assign(mate->second.read, &read, library);
        waiting.erase(mate);
    }
    for (const auto& [key, single] : waiting) assign(single.read, nullptr, single.library);
    store.MoveTo(assigned);
}

void WriteKeptPairs(const std::string& keptPath, const std::string& path1, const std::string& path2) {
    std::unique_ptr<htsFile, int (*)(htsFile*)> file(hts_open(keptPath.c_str(), "r"), hts_close);
    if (!file) throw Error(fmt::format("cannot read {}: {}", keptPath, std::strerror(errno)));
    std::unique_ptr<sam_hdr_t, void (*)(sam_hdr_t*)> header(sam_hdr_read(file.get()), sam_hdr_destroy);
    std::unique_ptr<bam1_t, void (*)(bam1_t*)> first(bam_init1(), bam_destroy1);
    std::unique_ptr<bam1_t, void (*)(bam1_t*)> second(bam_init1(), bam_destroy1);
    AtomicFile out1(path1);
    AtomicFile out2(path2);
    bool have = false;
    int got = -1;
    while (header && (got = sam_read1(file.get(), header.get(), second.get())) >= 0) {
        if ((second->core.flag & (BAM_FSECONDARY | BAM_FSUPPLEMENTARY)) != 0) continue;
        if (have && std::strcmp(bam_get_qname(first.get()), bam_get_qname(second.get())) == 0) {
            bool turned = (first->core.flag & BAM_FREAD2) != 0;
            WriteFastq(out1, turned ? *second : *first);
            WriteFastq(out2, turned ? *first : *second);
            have = false;
            continue;
        }
        std::swap(first, second);
        have = true;
    }
    if (got < -1) throw Error(fmt::format("{}: damaged or cut short", keptPath));
    out1.Commit();
    out2.Commit();
}

}  // namespace lintara::kit
