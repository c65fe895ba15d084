#include "evaluate/evaluate.h"

#include <edlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <numeric>
#include <optional>
#include <ostream>
#include <string_view>
#include <tuple>
#include <unordered_map>

namespace lintara::evaluate {

namespace {

/// Where each k-mer of a text stands, for k-mers without N.
class KmerPlaces {
  public:
    static constexpr int kMany = -2;
    static constexpr int kNone = -1;

    KmerPlaces(std::string_view text, int k) : k_(k) {
        places_.reserve(text.size());
        std::uint64_t code = 0;
        int clean = 0;
        const std::uint64_t mask = (std::uint64_t{1} << (2 * k)) - 1;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const int base = Code(text[i]);
            code = ((code << 2) | static_cast<std::uint64_t>(std::max(base, 0))) & mask;
            clean = base < 0 ? 0 : clean + 1;
            if (clean < k) continue;
            const int start = static_cast<int>(i) + 1 - k;
            const auto [entry, fresh] = places_.try_emplace(code, start);
            if (!fresh) entry->second = kMany;
        }
    }

    /// Start of the k-mer if it stands there once; kMany or kNone otherwise, kNone for one with N.
    int Find(std::string_view kmer) const {
        std::uint64_t code = 0;
        for (const char c : kmer) {
            const int base = Code(c);
            if (base < 0) return kNone;
            code = (code << 2) | static_cast<std::uint64_t>(base);
        }
        const auto entry = places_.find(code);
        return entry == places_.end() ? kNone : entry->second;
    }

    int K() const { return k_; }

  private:
    static int Code(char c) {
        switch (c) {
            case 'A':
                return 0;
            case 'C':
                return 1;
            case 'G':
                return 2;
            case 'T':
                return 3;
            default:
                return -1;
        }
    }

    int k_;
    std::unordered_map<std::uint64_t, int> places_;
};

/// The scaffold as it should be, with the place of each contig in it.
struct TrueScaffold {
    std::string text;
    std::vector<int> start;  ///< of each contig; contigs that overlap share bases
};

TrueScaffold BuildTruth(const std::vector<std::string>& contigs, const std::map<int, const TrueGap*>& gaps) {
    TrueScaffold scaffold;
    for (std::size_t c = 0; c < contigs.size(); ++c) {
        int back = 0;
        const auto gap = gaps.find(static_cast<int>(c) - 1);
        if (gap != gaps.end()) {
            scaffold.text += gap->second->sequence;
            back = std::max(0, -gap->second->length);
        }
        const int at = std::max(0, static_cast<int>(scaffold.text.size()) - back);
        scaffold.start.push_back(at);
        const int inside = static_cast<int>(scaffold.text.size()) - at;
        if (inside < static_cast<int>(contigs[c].size())) {
            scaffold.text += contigs[c].substr(static_cast<std::size_t>(inside));
        }
    }
    return scaffold;
}

/// A stretch that stands at one place of the truth and at one place of the filled scaffold.
struct Anchor {
    int truth = 0;   ///< start in the true scaffold
    int filled = 0;  ///< start in the filled scaffold
    int length = 0;
};

/// Everything known of one scaffold while its gaps are judged.
class ScaffoldJudge {
  public:
    ScaffoldJudge(const std::vector<std::string>& contigs, const std::map<int, const TrueGap*>& gaps,
                  const std::string& filled, int anchor)
        : contigs_(contigs),
          truth_(BuildTruth(contigs, gaps)),
          filled_(filled),
          in_truth_(truth_.text, anchor),
          in_filled_(filled, anchor) {
        PlaceContigs();
    }

    void Judge(GapResult& result) const {
        const int left = result.truth.contig;
        if (left < 0 || left + 1 >= static_cast<int>(contigs_.size())) return;
        const std::vector<Anchor>& before = anchors_[static_cast<std::size_t>(left)];
        const std::vector<Anchor>& after = anchors_[static_cast<std::size_t>(left) + 1];
        // Where contigs overlap, the bases that they share stand in both of them, so that an anchor there could be the
        // other contig's copy: the shared stretch is compared, not trusted.
        const int left_end = std::min(ContigEnd(left), truth_.start[static_cast<std::size_t>(left) + 1]);
        const int right_start = std::max(ContigEnd(left), truth_.start[static_cast<std::size_t>(left) + 1]);
        const auto first = std::find_if(before.rbegin(), before.rend(),
                                        [&](const Anchor& anchor) { return anchor.truth + anchor.length <= left_end; });
        const auto second =
            std::find_if(after.begin(), after.end(), [&](const Anchor& anchor) { return anchor.truth >= right_start; });
        if (first == before.rend() || second == after.end()) return;
        if (first->filled + first->length > second->filled) return;
        Compare(*first, *second, result);
    }

  private:
    /// End of a contig in the true scaffold.
    int ContigEnd(int contig) const {
        const std::size_t c = static_cast<std::size_t>(contig);
        return truth_.start[c] + static_cast<int>(contigs_[c].size());
    }

    /// Finds the anchors of all contigs, at most one every half anchor length.
    void PlaceContigs() {
        anchors_.resize(contigs_.size());
        for (std::size_t c = 0; c < contigs_.size(); ++c) PlaceByUniqueKmers(c);
        for (std::size_t c = 0; c < contigs_.size(); ++c) {
            if (anchors_[c].empty()) PlaceBetweenNeighbours(c);
        }
    }

    void PlaceByUniqueKmers(std::size_t c) {
        const int k = in_truth_.K();
        const std::string_view contig = contigs_[c];
        const int last = static_cast<int>(contig.size()) - k;
        const int step = std::max(1, k / 2);
        int next = 0;
        for (int i = 0; i <= last; ++i) {
            // Close to the ends every place is tried, since the next anchor inwards lengthens what is compared.
            if (i < next && i < last - step) continue;
            const std::string_view kmer = contig.substr(static_cast<std::size_t>(i), static_cast<std::size_t>(k));
            const int truth = in_truth_.Find(kmer);
            if (truth != truth_.start[c] + i) continue;
            const int filled = in_filled_.Find(kmer);
            if (filled < 0) continue;
            anchors_[c].push_back({truth, filled, k});
            next = i + step;
        }
    }

    /// A contig without an anchor of its own, short or repeated: the place of the whole contig, or of its first or last
    /// k bases, if it is the only one between the anchors of its neighbours.
    void PlaceBetweenNeighbours(std::size_t c) {
        const std::string& contig = contigs_[c];
        const int k = std::min(in_truth_.K(), static_cast<int>(contig.size()));
        if (k < kShortestAnchor) return;
        Anchor low{0, 0, 0};
        Anchor high{static_cast<int>(truth_.text.size()), static_cast<int>(filled_.size()), 0};
        for (std::size_t left = c; left-- > 0;) {
            if (anchors_[left].empty()) continue;
            low = anchors_[left].back();
            break;
        }
        for (std::size_t right = c + 1; right < contigs_.size(); ++right) {
            if (anchors_[right].empty()) continue;
            high = anchors_[right].front();
            break;
        }
        const std::size_t last = contig.size() - static_cast<std::size_t>(k);
        for (const std::size_t at : {std::size_t{0}, last}) {
            const std::string patt = contig.substr(at, static_cast<std::size_t>(k));
            const std::optional<int> truth = OnlyPlace(truth_.text, patt, low.truth, high.truth + high.length);
            const std::optional<int> filled = OnlyPlace(filled_, patt, low.filled, high.filled + high.length);
            if (truth == truth_.start[c] + static_cast<int>(at) && filled) anchors_[c].push_back({*truth, *filled, k});
            if (last == 0) break;
        }
    }

    static std::optional<int> OnlyPlace(const std::string& text, const std::string& patt, int from, int to) {
        if (from < 0 || to <= from) return std::nullopt;
        const std::string window = text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
        const std::size_t first = window.find(patt);
        if (first == std::string::npos || window.find(patt, first + 1) != std::string::npos) return std::nullopt;
        return from + static_cast<int>(first);
    }

    /// Holds what stands between two anchors against the truth.
    void Compare(const Anchor& before, const Anchor& after, GapResult& result) const {
        const auto between = [](const std::string& text, int from, int to) {
            return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
        };
        const std::string want = between(truth_.text, before.truth + before.length, after.truth);
        const std::string got = between(filled_, before.filled + before.length, after.filled);

        // What the contigs contribute beside the gap; the rest of the text is the fill.
        const int left_flank = ContigEnd(result.truth.contig) - (before.truth + before.length);
        const int right_flank = after.truth - truth_.start[static_cast<std::size_t>(result.truth.contig) + 1];
        const std::string fill = WithoutFlanks(got, left_flank, right_flank, result.truth.contig);
        result.open = static_cast<int>(std::count(fill.begin(), fill.end(), 'N'));
        result.filled = static_cast<int>(fill.size()) - result.open;
        if (result.open > 0) {
            result.outcome = result.filled == 0 ? Outcome::kOpen : Outcome::kPartly;
            return;
        }
        result.edits = EditDistance(want, got);
        if (result.edits == 0) {
            result.outcome = Outcome::kExact;
        } else if (result.edits <= 2 || result.edits * 100 <= std::max(0, result.truth.length)) {
            result.outcome = Outcome::kNear;
        } else {
            result.outcome = Outcome::kWrong;
        }
    }

    /// Cuts off the ends that still read as the flanking contigs do; a contig that was cut contributes less.
    std::string WithoutFlanks(const std::string& got, int left_flank, int right_flank, int contig) const {
        const std::string& before = contigs_[static_cast<std::size_t>(contig)];
        const std::string& after = contigs_[static_cast<std::size_t>(contig) + 1];
        const auto clamp = [](int value, std::size_t most) {
            return static_cast<std::size_t>(std::clamp(value, 0, static_cast<int>(most)));
        };
        const std::string left = before.substr(before.size() - clamp(left_flank, before.size()));
        const std::string right = after.substr(0, clamp(right_flank, after.size()));
        const auto from = std::mismatch(got.begin(), got.end(), left.begin(), left.end()).first;
        const auto to =
            std::mismatch(got.rbegin(), std::make_reverse_iterator(from), right.rbegin(), right.rend()).first.base();
        return {from, to};
    }

    static int EditDistance(const std::string& a, const std::string& b) {
        if (a.empty() || b.empty()) return static_cast<int>(a.size() + b.size());
        const EdlibAlignResult alignment = edlibAlign(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), edlibDefaultAlignConfig());
        const int edits = alignment.editDistance;
        edlibFreeAlignResult(alignment);
        return edits;
    }

    static constexpr int kShortestAnchor = 8;

    const std::vector<std::string>& contigs_;
    const TrueScaffold truth_;
    const std::string& filled_;
    const KmerPlaces in_truth_;
    const KmerPlaces in_filled_;
    std::vector<std::vector<Anchor>> anchors_;  ///< of each contig, from its start to its end
};

using OutcomeCounts = std::array<int, kOutcomes>;

void PrintHead(const char* first, std::ostream& out) {
    out << first;
    for (int i = 0; i < kOutcomes; ++i) out << "\t" << OutcomeName(static_cast<Outcome>(i));
    out << "\ttotal\n";
}

void PrintRow(const std::string& name, const OutcomeCounts& counts, std::ostream& out) {
    out << name;
    for (const int count : counts) out << "\t" << count;
    out << "\t" << std::accumulate(counts.begin(), counts.end(), 0) << "\n";
}

/// By the text in front of the number at a kind's end, then by the number: tandem3 stands in front of tandem12.
struct KindOrder {
    bool operator()(const std::string& a, const std::string& b) const { return Key(a) < Key(b); }

    static std::tuple<std::string_view, std::size_t, std::string_view, std::size_t> Key(std::string_view kind) {
        std::size_t digits = kind.size();
        while (digits > 0 && kind[digits - 1] >= '0' && kind[digits - 1] <= '9') --digits;
        // Without zeros in front, the longer of two numbers is the larger one; how many there are keeps 3 and 03 apart.
        const std::size_t number = std::min(kind.find_first_not_of('0', digits), kind.size());
        return {kind.substr(0, digits), kind.size() - number, kind.substr(number), number - digits};
    }
};

}  // namespace

const char* OutcomeName(Outcome outcome) {
    static const char* const names[kOutcomes] = {"exact", "near", "wrong", "partly", "open", "not found"};
    return names[static_cast<int>(outcome)];
}

std::vector<GapResult> Evaluate(const Contigs& contigs, const std::vector<TrueGap>& truth, const Filled& filled,
                                int anchor) {
    std::vector<GapResult> results(truth.size());
    std::map<int, std::vector<std::size_t>> rows;  // by scaffold
    for (std::size_t i = 0; i < truth.size(); ++i) {
        results[i].truth = truth[i];
        rows[truth[i].scaffold].push_back(i);
    }
    for (const auto& [scaffold, indices] : rows) {
        const auto its_contigs = contigs.find(scaffold);
        const auto its_text = filled.find(scaffold);
        if (its_contigs == contigs.end() || its_text == filled.end()) continue;
        std::map<int, const TrueGap*> gaps;
        for (const std::size_t i : indices) gaps[truth[i].contig] = &truth[i];
        const ScaffoldJudge judge(its_contigs->second, gaps, its_text->second, anchor);
        for (const std::size_t i : indices) judge.Judge(results[i]);
    }
    return results;
}

void PrintCounts(const std::vector<GapResult>& results, std::ostream& out) {
    int counts[kOutcomes] = {};
    for (const GapResult& result : results) ++counts[static_cast<int>(result.outcome)];
    for (int i = 0; i < kOutcomes; ++i) out << OutcomeName(static_cast<Outcome>(i)) << "\t" << counts[i] << "\n";
    out << "total\t" << results.size() << "\n";
}

void PrintByLength(const std::vector<GapResult>& results, std::ostream& out) {
    struct Class {
        int most;  // longest true length
        const char* name;
    };
    constexpr std::array<Class, 6> kClasses = {{{-1, "overlap"},
                                                {0, "0"},
                                                {100, "1-100"},
                                                {600, "101-600"},
                                                {1499, "601-1499"},
                                                {std::numeric_limits<int>::max(), "1500+"}}};
    std::array<OutcomeCounts, kClasses.size()> counts = {};
    for (const GapResult& result : results) {
        const auto found = std::find_if(kClasses.begin(), kClasses.end(),
                                        [&](const Class& row) { return result.truth.length <= row.most; });
        ++counts[static_cast<std::size_t>(found - kClasses.begin())][static_cast<std::size_t>(result.outcome)];
    }
    PrintHead("true length", out);
    for (std::size_t i = 0; i < kClasses.size(); ++i) PrintRow(kClasses[i].name, counts[i], out);
}

void PrintByKind(const std::vector<GapResult>& results, std::ostream& out) {
    std::map<std::string, OutcomeCounts, KindOrder> counts;
    for (const GapResult& result : results) {
        ++counts[result.truth.kind.empty() ? "-" : result.truth.kind][static_cast<std::size_t>(result.outcome)];
    }
    PrintHead("kind", out);
    for (const auto& [kind, row] : counts) PrintRow(kind, row, out);
}

void PrintPerGap(const std::vector<GapResult>& results, std::ostream& out) {
    out << "gap\tscaffold\tcontig\tkind\tstated\ttrue\tfilled\tn\tedits\toutcome\n";
    for (const GapResult& r : results) {
        out << r.truth.id << "\t" << r.truth.scaffold << "\t" << r.truth.contig << "\t" << r.truth.kind << "\t"
            << r.truth.stated << "\t" << r.truth.length << "\t" << r.filled << "\t" << r.open << "\t";
        if (r.edits >= 0) out << r.edits;
        out << "\t" << OutcomeName(r.outcome) << "\n";
    }
}

}  // namespace lintara::evaluate
