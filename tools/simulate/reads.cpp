#include <algorithm>
#include <string_view>

#include "simulate/streams.h"

namespace lintara::simulate {

namespace {

constexpr double kLostInHole = 0.9;  ///< share of the reads that touch a hole and are missing

/// Replaces bases by errors and N, in place.
class Sequencer {
  public:
    Sequencer(const Options& options, Random random)
        : random_(random), error_(Limit(options.error)), error_or_n_(Limit(options.error + options.n_rate)) {}

    void Spoil(std::string& read) {
        if (error_or_n_ == 0) return;
        for (char& base : read) {
            const std::uint64_t draw = random_.Next() >> 11;
            if (draw >= error_or_n_) continue;
            base = draw < error_ ? OtherBase(base) : 'N';
        }
    }

  private:
    static std::uint64_t Limit(double share) { return static_cast<std::uint64_t>(share * 0x1p53); }

    char OtherBase(char base) {
        const std::size_t place = std::string_view("ACGT").find(base);
        return "ACGT"[(place + static_cast<std::size_t>(random_.Between(1, 3))) % 4];
    }

    Random random_;
    std::uint64_t error_;
    std::uint64_t error_or_n_;
};

std::int64_t ReadLength(const Options& options, Random& random) {
    const std::int64_t length = options.read_length;
    if (random.Chance(options.long_reads)) return random.Between(length * 12 / 10, length * 19 / 10);
    if (random.Chance(options.short_reads))
        return std::max<std::int64_t>(kShortestRead, length - random.Between(0, length / 2));
    return length;
}

/// The stretch of low coverage; empty where the gap has none.
Span Hole(const Options& options, Random& random, const Span& gap) {
    const bool hole = random.Chance(options.holes);
    const std::int64_t at = random.Between(gap.start, gap.end);
    const std::int64_t behind = random.Between(0, options.read_length);
    if (!hole || gap.end - gap.start <= 40) return {};
    return {at - options.read_length / 2, at + behind};
}

/// A read is placed from the contig that it is closer to, so that the error of the stated length comes in behind the
/// middle of the gap.
std::int64_t Position(const GapPlan& gap, std::int64_t offset) {
    return offset * 2 > gap.length ? offset + gap.stated - gap.length : offset;
}

}  // namespace

std::int64_t DrawReads(const Options& options, const Scaffold& scaffold, int index,
                       const std::function<void(std::int64_t position, const std::string& bases)>& write) {
    const GapPlan& gap = scaffold.gaps[static_cast<std::size_t>(index)];
    const std::int64_t front = scaffold.contigs[static_cast<std::size_t>(index)].end;
    const std::int64_t behind = scaffold.contigs[static_cast<std::size_t>(index) + 1].start;
    const std::int64_t size = static_cast<std::int64_t>(scaffold.bases.size());
    const std::int64_t length = options.read_length;
    if (Stream(options, Purpose::kHasReads, scaffold.id, index).Chance(options.no_reads)) return 0;

    Random random = Stream(options, Purpose::kReads, scaffold.id, index);
    Random wrong = Stream(options, Purpose::kWrongReads, scaffold.id, index);
    Random hole_random = Stream(options, Purpose::kHole, scaffold.id, index);
    Random positions = Stream(options, Purpose::kPositions, scaffold.id, index);
    Sequencer sequencer(options, Stream(options, Purpose::kErrors, scaffold.id, index));

    // Reads begin from one and a half read lengths in front of the gap to one read length behind it.
    const std::int64_t first = std::max<std::int64_t>(0, std::min(front, behind) - length * 3 / 2);
    const std::int64_t last = std::max(front, behind) + length;
    const std::int64_t starts = std::max<std::int64_t>(1, std::min(last, size - length) - first + 1);
    const double expected = static_cast<double>(starts) * options.coverage / static_cast<double>(length);
    const std::int64_t draws = static_cast<std::int64_t>(expected + random.Unit());
    const Span hole = Hole(options, hole_random, {front, behind});

    std::int64_t written = 0;
    std::string read;
    for (std::int64_t i = 0; i < draws; ++i) {
        const std::int64_t bases = std::min(ReadLength(options, random), size);
        std::int64_t start = std::min(random.Between(first, std::min(last, size - bases)), size - bases);
        std::int64_t position = Position(gap, start - front) + Rounded(positions.Normal() * options.position_noise);
        if (wrong.Chance(options.wrong_reads)) {
            start = wrong.Between(0, size - bases);
            position = wrong.Between(-length, gap.stated);
        } else if (start < hole.end && start + bases > hole.start && hole_random.Chance(kLostInHole)) {
            continue;
        }
        read.assign(scaffold.bases, static_cast<std::size_t>(start), static_cast<std::size_t>(bases));
        sequencer.Spoil(read);
        write(position, read);
        ++written;
    }
    return written;
}

}  // namespace lintara::simulate
