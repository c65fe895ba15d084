#include <fmt/format.h>
#include <htslib/hfile.h>
#include <htslib/sam.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unordered_map>

#include "kit/base/error.h"
#include "kit/verify/verify.h"

namespace lintara::kit {
namespace {

constexpr long kTellEvery = 256;  // records
constexpr int64_t kAnchor = 10;   // bases of a read on either side of a step that it bridges
constexpr int64_t kNearSeam = 5;  // a clip this close to a seam is counted
constexpr int64_t kLongestPair = 20'000;
constexpr int kConfident = 20;       // mapping quality of a clipped read that speaks against a seam
constexpr double kFarOff = 5;        // standard errors by which the spanning pairs may be off
constexpr double kEnoughPairs = 20;  // expected pairs from which on having none is telling
constexpr int kFewClips = 3;         // clipped reads up to which a seam is not doubted

/// A base here and there that the reads tell otherwise does not take the support from the stretch around it.
int64_t FewBases(int64_t length) {
    return std::max<int64_t>(1, length / 200);
}

bool IsN(char c) {
    return c == 'N' || c == 'n';
}

int Code(char c) {
    switch (c) {
        case 'A':
        case 'a':
            return 1;
        case 'C':
        case 'c':
            return 2;
        case 'G':
        case 'g':
            return 4;
        case 'T':
        case 't':
            return 8;
        default:
            return 0;
    }
}

/// Counts along one stretch. Base j is scaffold position start + j; step j lies between the positions start + j - 1 and
/// start + j, so that step 0 and the last one are the seams.
struct Track {
    std::vector<int> depth;
    std::vector<int> support;
    std::vector<int> bridge;
    std::vector<int> breaks;   // confident reads that are clipped at a step, or that hold more bases there
    int64_t segmentStart = 0;  // the run of bases other than N that the stretch lies in
    int64_t segmentEnd = 0;
    int confidentClipStart = 0;
    int confidentClipEnd = 0;
    std::vector<int64_t> spans;  // lengths of the pairs of the present library that span the stretch
    double shiftSum = 0;         // over all libraries, each span less the one to expect
    double shiftVariance = 0;
    long shiftCount = 0;
};

bool Contradicted(const Track& track, size_t j) {
    return 2 * track.support[j] < track.depth[j];
}

/// First inner step around which more reads break off than run over it. A clip may lie some bases beside the fault,
/// since bases behind it can agree by chance. The number of steps: there is none.
size_t WeakStep(const Track& track) {
    const auto steps = static_cast<int64_t>(track.bridge.size());
    int near = 0;
    for (int64_t j = -kNearSeam; j < steps; ++j) {
        if (j + kNearSeam < steps) near += track.breaks[static_cast<size_t>(j + kNearSeam)];
        if (j - kNearSeam - 1 >= 0) near -= track.breaks[static_cast<size_t>(j - kNearSeam - 1)];
        if (j <= 0 || j + 1 >= steps) continue;
        if (near > std::max(kFewClips, track.bridge[static_cast<size_t>(j)])) return static_cast<size_t>(j);
    }
    return track.bridge.size();
}

/// In the scaffold, from 1.
int64_t FirstContradicted(const Stretch& stretch, const Track& track) {
    size_t j = 0;
    while (j < track.depth.size() && !Contradicted(track, j)) ++j;
    return stretch.start + static_cast<int64_t>(j) + 1;
}

/// Closes the file on every road out.
struct Alignments {
    htsFile* file = nullptr;
    sam_hdr_t* header = nullptr;
    bam1_t* record = bam_init1();
    ~Alignments() {
        if (record != nullptr) bam_destroy1(record);
        if (header != nullptr) sam_hdr_destroy(header);
        if (file != nullptr) hts_close(file);
    }
};

void Open(Alignments& in, const std::string& path, int descriptor, const std::string& reference) {
    const std::string name = path.empty() ? "the mapper's output" : path;
    // What is wrong is told once, in this program's own words.
    hts_set_log_level(HTS_LOG_OFF);
    errno = 0;
    if (path.empty()) {
        hFILE* stream = hdopen(descriptor, "r");
        if (stream != nullptr) in.file = hts_hopen(stream, "mapper", "r");
    } else {
        in.file = hts_open(path.c_str(), "r");
    }
    if (in.file == nullptr) {
        throw Error(fmt::format("cannot read {}: {}", name, errno != 0 ? std::strerror(errno) : "unknown format"));
    }
    htsExactFormat format = hts_get_format(in.file)->format;
    if (!reference.empty() && format == cram) hts_set_fai_filename(in.file, reference.c_str());
    // The library takes reads in FASTA and FASTQ too, as unmapped ones.
    if (format != fasta_format && format != fastq_format) in.header = sam_hdr_read(in.file);
    if (in.header == nullptr) throw Error(fmt::format("{}: this is no SAM, BAM or CRAM file", name));
    bool marked = format == bam || format == cram;
    if (marked && !path.empty() && hts_check_EOF(in.file) == 0) {
        throw Error(fmt::format("{}: the file is cut short", name));
    }
}

/// For each target of the header the scaffold's index.
std::vector<int> Targets(const Alignments& in, const std::string& path, const std::vector<FastaRecord>& scaffolds,
                         bool numbered) {
    std::unordered_map<std::string, int> index;
    for (size_t i = 0; i < scaffolds.size(); ++i) {
        bool fresh = index.emplace(scaffolds[i].name, static_cast<int>(i)).second;
        if (!fresh && !numbered) {
            throw Error(
                fmt::format("{}: name occurs twice, so that a BAM cannot be matched: '{}'", path, scaffolds[i].name));
        }
    }
    std::vector<int> targets;
    for (int t = 0; t < sam_hdr_nref(in.header); ++t) {
        std::string name = sam_hdr_tid2name(in.header, t);
        int scaffold = -1;
        if (numbered) {
            auto [stop, fault] = std::from_chars(name.data(), name.data() + name.size(), scaffold);
            bool whole = fault == std::errc() && stop == name.data() + name.size();
            if (!whole || scaffold >= static_cast<int>(scaffolds.size())) scaffold = -1;
        } else if (auto found = index.find(name); found != index.end()) {
            scaffold = found->second;
        }
        int64_t length = sam_hdr_tid2len(in.header, t);
        if (scaffold < 0 || static_cast<int64_t>(scaffolds[static_cast<size_t>(scaffold)].sequence.size()) != length) {
            throw Error(
                fmt::format("{}: mapped to other scaffolds: '{}' of {} bases is not among them", path, name, length));
        }
        targets.push_back(scaffold);
    }
    return targets;
}

}  // namespace

struct Evidence::State {
    const std::vector<FastaRecord>& scaffolds;
    std::vector<Stretch> stretches;
    std::vector<Track> tracks;
    std::vector<std::vector<int>> onScaffold;  // stretches by scaffold, by start
    int64_t longestStretch = 0;
    int64_t bases = 0;

    void Place(const bam1_t* record, int scaffold);
    void CountBases(const bam1_t* record, size_t which);
    void CountClips(const bam1_t* record, size_t which);
    void CountPair(const bam1_t* record, int scaffold, std::vector<int>& lengths);
    void CloseLibrary(const std::vector<int>& lengths);
    void Judge(Stretch& stretch, const Track& track) const;

    template <typename Visit>
    void Near(int scaffold, int64_t from, int64_t to, Visit visit) {
        const std::vector<int>& list = onScaffold[static_cast<size_t>(scaffold)];
        auto at = std::lower_bound(list.begin(), list.end(), from - longestStretch, [&](int s, int64_t value) {
            return stretches[static_cast<size_t>(s)].start < value;
        });
        for (; at != list.end() && stretches[static_cast<size_t>(*at)].start <= to; ++at) {
            if (stretches[static_cast<size_t>(*at)].end >= from) visit(static_cast<size_t>(*at));
        }
    }
};

Evidence::Evidence(const std::vector<FastaRecord>& scaffolds, std::vector<Stretch> stretches)
    : state_(new State{scaffolds, std::move(stretches), {}, {}, 0, 0}) {
    State& state = *state_;
    state.tracks.resize(state.stretches.size());
    state.onScaffold.resize(scaffolds.size());
    for (const FastaRecord& record : scaffolds) state.bases += static_cast<int64_t>(record.sequence.size());
    for (size_t i = 0; i < state.stretches.size(); ++i) {
        const Stretch& stretch = state.stretches[i];
        Track& track = state.tracks[i];
        size_t length = static_cast<size_t>(stretch.end - stretch.start);
        track.depth.resize(length);
        track.support.resize(length);
        track.bridge.resize(length + 1);
        track.breaks.resize(length + 1);
        const std::string& text = scaffolds[static_cast<size_t>(stretch.scaffold)].sequence;
        track.segmentStart = stretch.start;
        while (track.segmentStart > 0 && stretch.start - track.segmentStart < kAnchor &&
               !IsN(text[static_cast<size_t>(track.segmentStart - 1)])) {
            --track.segmentStart;
        }
        track.segmentEnd = stretch.end;
        while (track.segmentEnd < static_cast<int64_t>(text.size()) && track.segmentEnd - stretch.end < kAnchor &&
               !IsN(text[static_cast<size_t>(track.segmentEnd)])) {
            ++track.segmentEnd;
        }
        state.longestStretch = std::max(state.longestStretch, stretch.end - stretch.start);
        state.onScaffold[static_cast<size_t>(stretch.scaffold)].push_back(static_cast<int>(i));
    }
    for (std::vector<int>& list : state.onScaffold) {
        std::stable_sort(list.begin(), list.end(), [&](int a, int b) {
            return state.stretches[static_cast<size_t>(a)].start < state.stretches[static_cast<size_t>(b)].start;
        });
    }
}

Evidence::~Evidence() = default;

void Evidence::Take(const std::string& path, int descriptor, const std::string& reference, bool numbered,
                    const std::function<void(long)>& tell) {
    Alignments in;
    Open(in, path, descriptor, reference);
    const std::string name = path.empty() ? "the mapper's output" : path;
    std::vector<int> targets = Targets(in, name, state_->scaffolds, numbered);
    std::vector<int> lengths(static_cast<size_t>(kLongestPair) + 1);
    constexpr int kSkipped = BAM_FUNMAP | BAM_FSECONDARY | BAM_FSUPPLEMENTARY | BAM_FQCFAIL | BAM_FDUP;
    int got = 0;
    long count = 0;
    while ((got = sam_read1(in.file, in.header, in.record)) >= 0) {
        if (tell && ++count % kTellEvery == 0) tell(count);
        if ((in.record->core.flag & kSkipped) != 0 || in.record->core.tid < 0) continue;
        int scaffold = targets[static_cast<size_t>(in.record->core.tid)];
        state_->Place(in.record, scaffold);
        state_->CountPair(in.record, scaffold, lengths);
    }
    if (got < -1) throw Error(fmt::format("{}: damaged or cut short", name));
    state_->CloseLibrary(lengths);
}

void Evidence::State::Place(const bam1_t* record, int scaffold) {
    int64_t from = record->core.pos - kNearSeam;
    int64_t to = bam_endpos(record) + kNearSeam;
    Near(scaffold, from, to, [&](size_t which) {
        CountBases(record, which);
        CountClips(record, which);
    });
}

void Evidence::State::CountBases(const bam1_t* record, size_t which) {
    const Stretch& stretch = stretches[which];
    Track& track = tracks[which];
    const std::string& text = scaffolds[static_cast<size_t>(stretch.scaffold)].sequence;
    const uint32_t* cigar = bam_get_cigar(record);
    const uint8_t* letters = bam_get_seq(record);
    const int64_t readStart = record->core.pos;
    const int64_t readEnd = bam_endpos(record);
    int64_t at = readStart;
    int inRead = 0;
    for (uint32_t c = 0; c < record->core.n_cigar; ++c) {
        int64_t length = bam_cigar_oplen(cigar[c]);
        int type = bam_cigar_type(bam_cigar_op(cigar[c]));
        if (type == 3) {
            int64_t first = std::max(at, stretch.start);
            int64_t last = std::min(at + length, stretch.end);
            for (int64_t p = first; p < last; ++p) {
                size_t j = static_cast<size_t>(p - stretch.start);
                ++track.depth[j];
                int shown = bam_seqi(letters, inRead + static_cast<int>(p - at));
                if (shown == Code(text[static_cast<size_t>(p)])) ++track.support[j];
            }
            // Step p joins the bases p - 1 and p. Next to an N the anchor on that side cannot be asked for.
            first = std::max(at + 1, stretch.start);
            last = std::min(at + length - 1, stretch.end);
            for (int64_t p = first; p <= last; ++p) {
                bool left = p - readStart >= kAnchor || p - track.segmentStart < kAnchor;
                bool right = readEnd - p >= kAnchor || track.segmentEnd - p < kAnchor;
                if (left && right) ++track.bridge[static_cast<size_t>(p - stretch.start)];
            }
        } else if (type == 2 && bam_cigar_op(cigar[c]) == BAM_CDEL) {
            int64_t last = std::min(at + length, stretch.end);
            for (int64_t p = std::max(at, stretch.start); p < last; ++p) {
                ++track.depth[static_cast<size_t>(p - stretch.start)];
            }
        }
        if (type == 1 && bam_cigar_op(cigar[c]) == BAM_CINS && at >= stretch.start && at <= stretch.end &&
            record->core.qual >= kConfident) {
            ++track.breaks[static_cast<size_t>(at - stretch.start)];
        }
        if ((type & 1) != 0) inRead += static_cast<int>(length);
        if ((type & 2) != 0) at += length;
    }
}

void Evidence::State::CountClips(const bam1_t* record, size_t which) {
    const uint32_t* cigar = bam_get_cigar(record);
    uint32_t count = record->core.n_cigar;
    if (count == 0) return;
    auto clipped = [&](uint32_t c) {
        int op = bam_cigar_op(cigar[c]);
        return op == BAM_CSOFT_CLIP || op == BAM_CHARD_CLIP;
    };
    Stretch& stretch = stretches[which];
    Track& track = tracks[which];
    auto count_at = [&](int64_t place) {
        int confident = record->core.qual >= kConfident ? 1 : 0;
        if (place >= stretch.start && place <= stretch.end) {
            track.breaks[static_cast<size_t>(place - stretch.start)] += confident;
        }
        if (std::abs(place - stretch.start) <= kNearSeam) {
            ++stretch.clippedStart;
            track.confidentClipStart += confident;
        }
        if (std::abs(place - stretch.end) <= kNearSeam) {
            ++stretch.clippedEnd;
            track.confidentClipEnd += confident;
        }
    };
    if (clipped(0)) count_at(record->core.pos);
    if (clipped(count - 1)) count_at(bam_endpos(record));
}

/// A proper pair is counted once, by its left read.
void Evidence::State::CountPair(const bam1_t* record, int scaffold, std::vector<int>& lengths) {
    int64_t length = record->core.isize;
    if ((record->core.flag & BAM_FPROPER_PAIR) == 0 || length <= 0 || length > kLongestPair) return;
    ++lengths[static_cast<size_t>(length)];
    int64_t from = record->core.pos;
    int64_t to = from + length;
    Near(scaffold, from, to, [&](size_t which) {
        Stretch& stretch = stretches[which];
        if (from < stretch.start && to > stretch.end) {
            ++stretch.spanningPairs;
            tracks[which].spans.push_back(length);
        }
    });
}

/// Long pairs span a stretch more often than short ones: one of length L has L - length - 1 places to do it. Expected
/// count, mean and variance are those of the library's lengths under this weight.
void Evidence::State::CloseLibrary(const std::vector<int>& lengths) {
    for (size_t i = 0; i < stretches.size(); ++i) {
        Track& track = tracks[i];
        int64_t own = stretches[i].end - stretches[i].start;
        double weight = 0;
        double sum = 0;
        double squares = 0;
        for (int64_t l = own + 2; l <= kLongestPair; ++l) {
            double w = static_cast<double>(lengths[static_cast<size_t>(l)]) * static_cast<double>(l - own - 1);
            weight += w;
            sum += w * static_cast<double>(l);
            squares += w * static_cast<double>(l) * static_cast<double>(l);
        }
        if (weight > 0 && bases > 0) {
            double mean = sum / weight;
            stretches[i].expectedPairs += weight / static_cast<double>(bases);
            for (int64_t span : track.spans) track.shiftSum += static_cast<double>(span) - mean;
            track.shiftCount += static_cast<long>(track.spans.size());
            track.shiftVariance +=
                static_cast<double>(track.spans.size()) * std::max(0.0, squares / weight - mean * mean);
        }
        track.spans.clear();
    }
}

void Evidence::State::Judge(Stretch& stretch, const Track& track) const {
    auto base = [&](size_t j) { return stretch.start + static_cast<int64_t>(j) + 1; };
    for (size_t j = 0; j < track.depth.size(); ++j) {
        if (track.depth[j] == 0) {
            stretch.doubt = fmt::format("no read over base {}", base(j));
            return;
        }
    }
    if (stretch.contradicted > FewBases(stretch.end - stretch.start)) {
        stretch.doubt = fmt::format("most reads contradict {} bases, first base {}", stretch.contradicted,
                                    FirstContradicted(stretch, track));
        return;
    }
    bool seamBefore = track.segmentStart < stretch.start;
    bool seamBehind = track.segmentEnd > stretch.end;
    for (size_t j = 0; j < track.bridge.size(); ++j) {
        bool seam = (j == 0 && !seamBefore) || (j + 1 == track.bridge.size() && !seamBehind);
        if (!seam && track.bridge[j] == 0) {
            stretch.doubt = fmt::format("no read runs unbroken from base {} to {}", base(j) - 1, base(j));
            return;
        }
    }
    if (size_t j = WeakStep(track); j < track.bridge.size()) {
        stretch.doubt =
            fmt::format("more reads break off around base {} than the {} that run over it", base(j), track.bridge[j]);
        return;
    }
    if (seamBefore && track.confidentClipStart > std::max(kFewClips, track.bridge.front())) {
        stretch.doubt = fmt::format("{} reads break off at its begin and {} run over it", track.confidentClipStart,
                                    track.bridge.front());
        return;
    }
    if (seamBehind && track.confidentClipEnd > std::max(kFewClips, track.bridge.back())) {
        stretch.doubt = fmt::format("{} reads break off at its end and {} run over it", track.confidentClipEnd,
                                    track.bridge.back());
        return;
    }
    if (!seamBefore || !seamBehind) return;
    if (stretch.spanningPairs == 0 && stretch.expectedPairs >= kEnoughPairs) {
        stretch.doubt = fmt::format("no pair spans it where {:.0f} are expected", stretch.expectedPairs);
    } else if (std::abs(stretch.shiftScore) > kFarOff) {
        stretch.doubt = fmt::format("the pairs that span it are {:.0f} bases {} than expected",
                                    std::abs(stretch.insertShift), stretch.insertShift < 0 ? "shorter" : "longer");
    }
}

std::vector<Stretch> Evidence::Finish() {
    for (size_t i = 0; i < state_->stretches.size(); ++i) {
        Stretch& stretch = state_->stretches[i];
        const Track& track = state_->tracks[i];
        int64_t sum = 0;
        for (int depth : track.depth) sum += depth;
        if (!track.depth.empty()) {
            stretch.leastDepth = *std::min_element(track.depth.begin(), track.depth.end());
            stretch.leastSupport = *std::min_element(track.support.begin(), track.support.end());
            stretch.meanDepth = static_cast<double>(sum) / static_cast<double>(track.depth.size());
        }
        for (size_t j = 0; j < track.depth.size(); ++j) stretch.contradicted += Contradicted(track, j) ? 1 : 0;
        // A seam that borders an N is no step.
        size_t from = track.segmentStart < stretch.start ? 0 : 1;
        size_t to = track.bridge.size() - (track.segmentEnd > stretch.end ? 0 : 1);
        if (from < to) {
            stretch.leastBridge = *std::min_element(track.bridge.begin() + static_cast<std::ptrdiff_t>(from),
                                                    track.bridge.begin() + static_cast<std::ptrdiff_t>(to));
        }
        if (track.shiftCount > 0) {
            stretch.insertShift = track.shiftSum / static_cast<double>(track.shiftCount);
            if (track.shiftVariance > 0) stretch.shiftScore = track.shiftSum / std::sqrt(track.shiftVariance);
        }
        state_->Judge(stretch, track);
    }
    return state_->stretches;
}

}  // namespace lintara::kit
