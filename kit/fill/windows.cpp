#include "kit/fill/windows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

namespace lintara::kit {

namespace {

long RoomFor(long stated) {
    return stated + stated / 3 + 50;
}

int BaseIndex(char base) {
    size_t at = std::string_view("ACGT").find(base);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// The reads that go on with each of the four bases behind (or in front of) a word.
using Ways = std::array<int, 4>;

/// Words of the text with the bases that the reads show beside them. The words are those of one text, so that the table
/// stays small whatever the reads hold.
class WayTable {
  public:
    WayTable(const std::string& text, const std::vector<AssignedRead>& reads) : text_(text) {
        std::string_view view = text_;
        for (size_t i = 0; i + kWord <= view.size(); ++i) words_.try_emplace(view.substr(i, kWord));
        for (const AssignedRead& read : reads) Count(read.bases);
    }
    /// Does the base behind the word that begins at `start` follow without doubt?
    bool Onward(size_t start) const {
        return Clear(words_.at(std::string_view(text_).substr(start, kWord)).behind, text_[start + kWord]);
    }
    /// Does the base in front of it?
    bool Backward(size_t start) const {
        return Clear(words_.at(std::string_view(text_).substr(start, kWord)).front, text_[start - 1]);
    }

  private:
    static constexpr size_t kWord = kBranchWord;
    static constexpr int kLeastOther = 2;          ///< reads that make another way believable,
    static constexpr int kLeastOtherPercent = 10;  ///< and their share
    struct Beside {
        Ways front{};
        Ways behind{};
    };

    void Count(const std::string& bases) {
        std::string_view view = bases;
        for (size_t i = 0; i + kWord <= view.size(); ++i) {
            auto found = words_.find(view.substr(i, kWord));
            if (found == words_.end()) continue;
            if (i > 0) Add(found->second.front, view[i - 1]);
            if (i + kWord < view.size()) Add(found->second.behind, view[i + kWord]);
        }
    }
    static void Add(Ways& ways, char base) {
        int index = BaseIndex(base);
        if (index >= 0) ++ways[static_cast<size_t>(index)];
    }
    static bool Clear(const Ways& ways, char base) {
        int own = BaseIndex(base);
        if (own < 0 || ways[static_cast<size_t>(own)] == 0) return false;
        int total = ways[0] + ways[1] + ways[2] + ways[3];
        for (int other = 0; other < 4; ++other) {
            int reads = ways[static_cast<size_t>(other)];
            if (other != own && reads >= kLeastOther && reads * 100 >= total * kLeastOtherPercent) return false;
        }
        return true;
    }

    const std::string& text_;
    std::unordered_map<std::string_view, Beside> words_;
};

std::string Tail(const std::string& text, long count) {
    size_t size = std::min(text.size(), static_cast<size_t>(count));
    return text.substr(text.size() - size);
}

}  // namespace

Windows CutWindows(const Layout& layout, const std::set<int>& gaps, const std::set<int>& longer, long reach) {
    Windows windows;
    for (const Sequence& sequence : layout.sequences) {
        const LayoutGap* last = nullptr;
        for (const LayoutGap& gap : sequence.gaps) {
            if (!gaps.contains(gap.id)) continue;
            bool joined = last != nullptr && last->rightEnd == gap.span.start && gap.leftStart == last->span.end &&
                          gap.span.start - last->span.end < 2 * reach;
            if (!joined) {
                Sequence window;
                window.name = fmt::format("w{}", windows.layout.sequences.size() + 1);
                windows.layout.sequences.push_back(std::move(window));
            }
            Sequence& window = windows.layout.sequences.back();
            LayoutGap cut;
            if (joined) {
                // The contig between the two is whole: take off what the gap in front has taken of it.
                cut.leftStart = window.gaps.back().span.end;
                window.text.resize(static_cast<size_t>(cut.leftStart));
                window.text.append(sequence.text, static_cast<size_t>(gap.leftStart),
                                   static_cast<size_t>(gap.span.start - gap.leftStart));
                window.gaps.back().rightEnd = static_cast<long>(window.text.size());
            } else {
                long from = std::max(gap.leftStart, gap.span.start - reach);
                window.text.append(sequence.text, static_cast<size_t>(from),
                                   static_cast<size_t>(gap.span.start - from));
            }
            long length = longer.contains(gap.id) ? RoomFor(gap.span.Length()) : gap.span.Length();
            cut.id = ++windows.layout.gapCount;
            cut.span.start = static_cast<long>(window.text.size());
            cut.span.end = cut.span.start + length;
            window.text.append(static_cast<size_t>(length), 'N');
            long to = std::min(gap.rightEnd, gap.span.end + reach);
            window.text.append(sequence.text, static_cast<size_t>(gap.span.end),
                               static_cast<size_t>(to - gap.span.end));
            cut.rightEnd = static_cast<long>(window.text.size());
            window.gaps.push_back(cut);
            windows.gaps.push_back(gap.id);
            last = &gap;
        }
    }
    return windows;
}

void CutAtBranches(GapResult& result, const std::string& before, const std::string& after,
                   const std::vector<AssignedRead>& reads, long stated) {
    if (!result.known) return;
    std::string front = Tail(before, kBranchWord);
    std::string text = front + result.text + after.substr(0, static_cast<size_t>(kBranchWord));
    long first = static_cast<long>(front.size());
    long size = static_cast<long>(result.text.size());
    long end = static_cast<long>(text.size());
    WayTable ways(text, reads);
    // In coordinates of the result's text: [.., reached) is clear from the left, [begun, ..) from the right.
    // A contig shorter than a word leads nowhere.
    bool leftLeads = first == kBranchWord;
    bool rightLeads = end - first - size == kBranchWord;
    long reached = 0;
    while (leftLeads && reached + first < end && ways.Onward(static_cast<size_t>(reached + first - kBranchWord)))
        ++reached;
    long begun = size;
    while (rightLeads && begun + first > 0 && ways.Backward(static_cast<size_t>(begun + first))) --begun;
    size_t firstN = result.text.find('N');
    bool closed = firstN == std::string::npos;
    if (closed && reached - begun >= kBranchWord) return;
    if (result.cutBefore > 0 || result.cutAfter > 0) {
        result.known = false;
        return;
    }
    long prefix = std::clamp(reached, 0L, closed ? size : static_cast<long>(firstN));
    long suffix = std::clamp(begun, closed ? prefix : static_cast<long>(result.text.rfind('N')) + 1, size);
    long open = std::max(1L, stated - prefix - (size - suffix));
    if (closed) {
        bool grew = prefix > 0 || suffix < size;
        result.reason = std::string(grew ? "grew from the sides, but " : "") + "the reads allow more than one sequence";
    }
    auto splice = [&](auto& values, auto filler) {
        values.resize(static_cast<size_t>(size), filler);
        values.erase(values.begin() + prefix, values.begin() + suffix);
        values.insert(values.begin() + prefix, static_cast<size_t>(open), filler);
    };
    splice(result.text, 'N');
    splice(result.support, -1);
    splice(result.depth, -1);
}

void FitLength(GapResult& result, long stated) {
    if (!result.known) return;
    size_t at = 0;
    long longest = 0;
    for (const Span& run : FindRuns(result.text, 1)) {
        if (run.Length() <= longest) continue;
        longest = run.Length();
        at = static_cast<size_t>(run.start);
    }
    if (longest == 0) return;
    long size = static_cast<long>(result.text.size());
    long wanted = std::max(1L, longest + stated - size);
    auto splice = [&](auto& values, auto filler) {
        values.resize(static_cast<size_t>(size), filler);
        auto place = values.begin() + static_cast<long>(at);
        values.erase(place, place + longest);
        values.insert(values.begin() + static_cast<long>(at), static_cast<size_t>(wanted), filler);
    };
    splice(result.text, 'N');
    splice(result.support, -1);
    splice(result.depth, -1);
}

}  // namespace lintara::kit
