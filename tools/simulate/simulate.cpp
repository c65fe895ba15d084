#include "simulate/simulate.h"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string_view>

#include "simulate/streams.h"

namespace lintara::simulate {

namespace {

constexpr std::size_t kLineLength = 100;     ///< of a contig's lines
constexpr std::size_t kMixed = 65536;        ///< records that wait while the gap file is interleaved
constexpr unsigned kGzipBuffer = 1U << 17U;  ///< bytes

void Append(std::string& text, std::int64_t number) {
    char digits[24];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

/// One output file, plain or compressed.
class OutFile {
  public:
    OutFile(const std::string& path, bool gzip) : path_(path), file_(gzopen(path.c_str(), gzip ? "wb3" : "wbT")) {
        if (file_ == nullptr) Fail();
        gzbuffer(file_, kGzipBuffer);
    }
    OutFile(const OutFile&) = delete;
    OutFile& operator=(const OutFile&) = delete;
    ~OutFile() {
        if (file_ != nullptr) gzclose(file_);
    }

    void Write(std::string_view text) {
        if (!text.empty() && gzwrite(file_, text.data(), static_cast<unsigned>(text.size())) <= 0) Fail();
    }

    /// Must be called at the end: only the last write tells whether all bytes have arrived.
    void Close() {
        gzFile file = file_;
        file_ = nullptr;
        if (gzclose(file) != Z_OK) Fail();
    }

  private:
    [[noreturn]] void Fail() const { throw std::runtime_error(path_ + ": cannot be written"); }

    std::string path_;
    gzFile file_;
};

/// The gap file. If records are to be mixed, each waits in a pool until it is drawn, so that any record may come out
/// late, but none sooner than the pool is full.
class GapFile {
  public:
    GapFile(const Options& options, const std::string& path)
        : file_(path, options.gzip), interleave_(options.interleave), random_(Stream(options, Purpose::kInterleave)) {}

    void Add(std::string& record) {
        if (!interleave_) {
            file_.Write(record);
        } else if (pool_.size() < kMixed) {
            pool_.push_back(record);
        } else {
            std::string& drawn = pool_[static_cast<std::size_t>(random_.Between(0, kMixed - 1))];
            file_.Write(drawn);
            drawn.swap(record);
        }
    }

    void Close() {
        for (std::size_t left = pool_.size(); left > 0; --left) {
            std::swap(pool_[static_cast<std::size_t>(random_.Between(0, static_cast<std::int64_t>(left) - 1))],
                      pool_[left - 1]);
            file_.Write(pool_[left - 1]);
        }
        pool_.clear();
        file_.Close();
    }

  private:
    OutFile file_;
    bool interleave_;
    Random random_;
    std::vector<std::string> pool_;
};

std::string KindName(const GapPlan& gap) {
    switch (gap.kind) {
        case Kind::kOverlap:
            return "overlap";
        case Kind::kZero:
            return "zero";
        case Kind::kTandem:
            return "tandem" + std::to_string(gap.unit);
        case Kind::kDispersed:
            return "dispersed";
        case Kind::kPlain:
            break;
    }
    return "plain";
}

/// A stretch of 20 to 100 bases in lower case, or the whole of a shorter contig.
void LowerSome(const Options& options, int scaffold, std::int64_t contig, std::string& bases) {
    Random random = Stream(options, Purpose::kCase, scaffold, contig);
    if (!random.Chance(options.lower)) return;
    const std::int64_t size = static_cast<std::int64_t>(bases.size());
    const std::int64_t stretch = std::min(size, random.Between(20, 100));
    const auto from = bases.begin() + random.Between(0, size - stretch);
    std::transform(from, from + stretch, from, [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
}

void WriteContigs(const Options& options, const Scaffold& scaffold, OutFile& file) {
    std::string text;
    for (std::size_t c = 0; c < scaffold.contigs.size(); ++c) {
        const Span& span = scaffold.contigs[c];
        std::string bases = scaffold.bases.substr(static_cast<std::size_t>(span.start),
                                                  static_cast<std::size_t>(span.end - span.start));
        LowerSome(options, scaffold.id, static_cast<std::int64_t>(c), bases);
        text = ">scaffold";
        Append(text, scaffold.id);
        text += '_';
        Append(text, static_cast<std::int64_t>(c));
        text += '\t';
        Append(text, c == 0 ? 0 : scaffold.gaps[c - 1].stated);
        text += '\n';
        for (std::size_t at = 0; at < bases.size(); at += kLineLength) {
            text.append(bases, at, kLineLength);
            text += '\n';
        }
        file.Write(text);
    }
}

/// Writes the gap's reads and returns their number.
std::int64_t WriteReads(const Options& options, const Scaffold& scaffold, int index, std::int64_t id, GapFile& file) {
    std::string record;
    std::string before = ">";  // what stands in front of the position, and behind it
    std::string behind = "\t";
    Append(before, id);
    before += '\t';
    Append(before, scaffold.gaps[static_cast<std::size_t>(index)].stated);
    before += '\t';
    Append(behind, scaffold.id);
    behind += '\t';
    Append(behind, index);
    behind += '\n';
    return DrawReads(options, scaffold, index, [&](std::int64_t position, const std::string& bases) {
        record = before;
        Append(record, position);
        record += behind;
        record += bases;
        record += '\n';
        file.Add(record);
    });
}

void WriteTruth(const Scaffold& scaffold, int index, std::int64_t id, OutFile& file) {
    const GapPlan& gap = scaffold.gaps[static_cast<std::size_t>(index)];
    std::string row;
    for (const std::int64_t value : {id, std::int64_t{scaffold.id}, std::int64_t{index}, gap.stated, gap.length}) {
        Append(row, value);
        row += '\t';
    }
    row += KindName(gap) + '\t';
    if (gap.length > 0) {
        row.append(scaffold.bases, static_cast<std::size_t>(scaffold.contigs[static_cast<std::size_t>(index)].end),
                   static_cast<std::size_t>(gap.length));
    }
    row += '\n';
    file.Write(row);
}

}  // namespace

Totals Simulate(const Options& options, const std::string& directory) {
    CheckOptions(options);
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error) throw std::runtime_error(directory + ": cannot be made: " + error.message());

    OutFile contigs(directory + "/contig.fa", false);
    OutFile truth(directory + "/truth.tsv", false);
    GapFile reads(options, directory + (options.gzip ? "/gap.fa.gz" : "/gap.fa"));
    truth.Write("gap\tscaffold\tcontig\tstated\ttrue\tkind\tbases\n");

    const std::vector<std::string> families = RepeatFamilies(options);
    Totals totals;
    for (int id = 1; id <= options.scaffolds; ++id) {
        const Scaffold scaffold = MakeScaffold(options, families, id);
        WriteContigs(options, scaffold, contigs);
        for (int g = 0; g < static_cast<int>(scaffold.gaps.size()); ++g) {
            if (totals.gaps == std::numeric_limits<std::int32_t>::max()) throw std::runtime_error("too many gaps");
            const std::int64_t gap_id = ++totals.gaps;
            const std::int64_t written = WriteReads(options, scaffold, g, gap_id, reads);
            WriteTruth(scaffold, g, written > 0 ? gap_id : -1, truth);
            totals.reads += written;
            totals.gaps_with_reads += written > 0 ? 1 : 0;
        }
        ++totals.scaffolds;
    }
    contigs.Close();
    truth.Close();
    reads.Close();
    return totals;
}

}  // namespace lintara::simulate
