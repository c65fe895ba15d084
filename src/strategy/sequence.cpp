#include "strategy/sequence.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>
#include <numeric>
#include <utility>
#include <vector>

#include "run/settings.h"
#include "strategy/slice.h"

namespace lintara {

namespace {

// Bases of a sequence the places of which are ints.
constexpr std::int64_t kLongest = std::numeric_limits<int>::max();

// 16 bytes at once; a lane of a comparison is all ones where it holds.
using Lanes = std::uint8_t __attribute__((vector_size(16)));

/// Which bytes are bases of either case.
Lanes AreBases(const char* text) {
    Lanes bytes;
    std::memcpy(&bytes, text, sizeof bytes);
    const Lanes low = bytes | 0x20;
    const Lanes a_as_c = low | 0x02;  // the bit in which they differ
    return (a_as_c == 'c') | (low == 'g') | (low == 't');
}

/// The columns of one trial overlap that are equal: the last `pos` bases of one sequence on the first of the other.
int EqualColumns(const std::string& sequence1, const std::string& sequence2, int pos) {
    const int start = static_cast<int>(sequence1.size()) - pos;
    int score = 0;
    for (int i = 0; i < pos; ++i) {
        if (sequence1[static_cast<std::size_t>(start + i)] == sequence2[static_cast<std::size_t>(i)]) ++score;
    }
    return score;
}

struct TrialOverlap {
    int pos = 0;    // length in bases
    int score = 0;  // equal columns
};

float Percent(const TrialOverlap& trial) {
    return static_cast<float>(trial.score) / static_cast<float>(trial.pos == 0 ? 1 : trial.pos);
}

/// Counts how many of the ranks that were added so far lie below a rank, in logarithmic time.
class RankCounter {
  public:
    explicit RankCounter(std::size_t ranks) : sums_(ranks + 1, 0) {}
    void Add(std::size_t rank) {
        for (std::size_t i = rank + 1; i < sums_.size(); i += i & (~i + 1)) ++sums_[i];
    }
    int Below(std::size_t rank) const {
        int sum = 0;
        for (std::size_t i = rank; i > 0; i -= i & (~i + 1)) sum += sums_[i];
        return sum;
    }

  private:
    std::vector<int> sums_;  // a Fenwick tree, from 1 on
};

/// The order in which an exchange sort (swap each pair i < j that stands wrong, by ascending i, then j) leaves the
/// reads. Seen from the reads it is an insertion sort: read j goes behind those of its position that are there
/// already, and in each group of equal positions above its own the first read moves to the group's end.
///
/// @return indices of the reads
std::vector<int> ExchangeOrder(const int* position, int num) {
    std::vector<int> order(static_cast<std::size_t>(num));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [position](int a, int b) { return position[a] < position[b]; });

    // The place where a read's group of equal positions begins is its rank.
    std::vector<std::size_t> rank(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        const bool opens = k == 0 || position[order[k]] != position[order[k - 1]];
        rank[order[k]] = opens ? k : rank[order[k - 1]];
    }
    std::vector<int> lower(order.size());  // reads of lower positions in front of each read
    RankCounter counter(order.size());
    for (std::size_t read = 0; read < order.size(); ++read) {
        lower[read] = counter.Below(rank[read]);
        counter.Add(rank[read]);
    }

    for (std::size_t begin = 0, end = 0; begin < order.size(); begin = end) {
        const auto group = order.begin() + static_cast<std::ptrdiff_t>(begin);
        int seen = lower[order[begin]];
        int size = 1;
        // The group has turned once for each lower read before it takes in its next one, and once for each of the rest.
        for (end = begin + 1; end < order.size() && rank[order[end]] == begin; ++end) {
            const int now = lower[order[end]];
            std::rotate(group, group + (now - seen) % size, group + size);
            seen = now;
            ++size;
        }
        std::rotate(group, group + (static_cast<int>(begin) - seen) % size, group + size);
    }
    return order;
}

}  // namespace

int n_num(const std::string& seq) {
    return static_cast<int>(std::count(seq.begin(), seq.end(), 'N'));
}

int ScreenReads(const std::string& Gapread) {
    // Looks at the whole read without a branch, since hardly any is turned down.
    const char* const bases = Gapread.data();
    const std::size_t num = Gapread.size();
    if (num < sizeof(Lanes)) {
        return std::all_of(bases, bases + num, [](char c) { return alphabet[c] < 4; }) ? 1 : 0;
    }
    // The last lanes end with the read and may overlap those before.
    Lanes all = AreBases(bases + num - sizeof(Lanes));
    for (std::size_t i = 0; i + sizeof(Lanes) < num; i += sizeof(Lanes)) all &= AreBases(bases + i);
    std::uint64_t halves[2];
    std::memcpy(halves, &all, sizeof halves);
    return (halves[0] & halves[1]) == ~std::uint64_t{0} ? 1 : 0;
}

void SortReads(Gap& gap) {
    const int num = static_cast<int>(gap.greadSum);
    if (std::is_sorted(gap.position, gap.position + num)) return;
    const std::vector<int> order = ExchangeOrder(gap.position, num);
    const std::vector<int> position(gap.position, gap.position + num);
    std::vector<std::string> reads(std::make_move_iterator(gap.reads), std::make_move_iterator(gap.reads + num));
    for (int i = 0; i < num; ++i) {
        gap.position[i] = position[order[i]];
        gap.reads[i] = std::move(reads[order[i]]);
    }
}

void ToUp(std::string& read) {
    for (char& c : read) {
        const int code = alphabet[c];
        c = code < 4 ? base[code] : 'A';
    }
}

std::string ToLow(const std::string& seq) {
    std::string low(seq);
    for (char& c : low) c = sbase[alphabet[c]];
    return low;
}

int GetOverlapLen(const std::string& sequence1, const std::string& sequence2, int distance) {
    const int longest = static_cast<int>(std::min(sequence1.size(), sequence2.size()));
    TrialOverlap best;
    TrialOverlap second;
    for (int pos = OVERLAPLENCUTOFF; pos < DELTA - distance && pos <= longest; ++pos) {
        const TrialOverlap trial{pos, EqualColumns(sequence1, sequence2, pos)};
        if (trial.score >= best.score) {
            second = best;
            best = trial;
        } else if (trial.score >= second.score) {
            second = trial;
        }
    }
    // A repeat would place the sequences nearly as well a second time; such an overlap is not believed.
    const float maxPercent = Percent(best);
    const float secondPercent = Percent(second);
    if (!(maxPercent > OVERLAPPERCUTOFF)) return -1;
    if (!(SEC2FIR * maxPercent > secondPercent)) return -1;
    return best.pos;
}

void GetContigSeqInGap(std::string& contigSeqInGap, ContigInfo*& contigsInfo, int contigSum) {
    for (int i = 0; i < contigSum; ++i) {
        const std::string& contig = contigsInfo[i].contigSeq;
        const std::int64_t exact = contigsInfo[i].startPos - static_cast<std::int64_t>(contigSeqInGap.size());
        if (exact >= 0) {
            contigSeqInGap += Ns(exact) + contig;
            continue;
        }
        // No overlap is longer than a sequence, so that a cut at its limit changes nothing.
        const int distance = static_cast<int>(std::max(exact, -kLongest + DELTA));
        const int over = -distance < OVERLAPLENCUTOFF ? -1 : GetOverlapLen(contigSeqInGap, contig, distance);
        if (over <= 0) {
            contigSeqInGap += 'N' + contig;
        } else if (over <= static_cast<int>(contig.size())) {
            contigSeqInGap += contig.substr(static_cast<std::size_t>(over));
        }
        // An overlap longer than the contig: all of it is there already.
    }
    if (static_cast<std::int64_t>(contigSeqInGap.size()) > kLongest) throw std::bad_alloc();
}

void set_tmp_read(std::string& tmp1, std::string& tmp2, const std::string& contig1, const std::string& contig2,
                  int tmplen) {
    tmp1 = Tail(contig1, tmplen);
    tmp2 = FirstBases(contig2, tmplen);
    if (tmp1.size() > tmp2.size()) tmp1 = Tail(tmp1, static_cast<int>(tmp2.size()));
    if (tmp1.size() < tmp2.size()) tmp2 = FirstBases(tmp2, static_cast<int>(tmp1.size()));
    ToUp(tmp1);
    ToUp(tmp2);
}

std::string get_scaffold_seq(std::map<int, std::string>& gap_id_seq, const Scaf& scaffold) {
    std::size_t size = scaffold.contigs[0].size();
    for (Len_t i = 0; i < scaffold.gapSum; ++i) {
        size += gap_id_seq[static_cast<int>(i)].size() + scaffold.contigs[i + 1].size();
    }
    std::string text;
    text.reserve(size + 1);  // the record's line end follows
    text += scaffold.contigs[0];
    for (Len_t i = 0; i < scaffold.gapSum; ++i) {
        text += ToLow(gap_id_seq[static_cast<int>(i)]);
        text += scaffold.contigs[i + 1];
    }
    return text;
}

}  // namespace lintara
