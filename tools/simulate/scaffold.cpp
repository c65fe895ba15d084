#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "simulate/streams.h"

namespace lintara::simulate {

namespace {

constexpr std::int64_t kLongestScaffold = 2'000'000'000;
constexpr double kRepeatAlsoInFront = 0.3;  ///< share of dispersed repeats that also end the contig in front

std::int64_t GapCount(const Options& options, int id) {
    Random random = Stream(options, Purpose::kGapCount, id);
    if (random.Chance(options.no_gaps) || options.gaps == 0) return 0;
    return std::max<std::int64_t>(1, Rounded(options.gaps + random.Normal() * (options.gaps / 4.0)));
}

std::int64_t ContigLength(const Options& options, int id, std::int64_t contig) {
    Random random = Stream(options, Purpose::kContigLength, id, contig);
    if (random.Chance(options.short_contigs)) return random.Between(5, 120);
    const std::int64_t mean = options.contig;
    return std::max(mean / 4, Rounded(static_cast<double>(mean) * (1 + random.Normal() / 4)));
}

/// Everything is drawn whether it is needed or not, so that a share decides only how many gaps are of its kind.
GapPlan PlanGap(const Options& options, int id, std::int64_t index) {
    Random random = Stream(options, Purpose::kGap, id, index);
    const double closed = random.Unit();
    const double repeat = random.Unit();
    double weight = 0;
    for (const LengthClass& length : options.gap_lengths) weight += length.weight;
    double left = random.Unit() * weight;
    // Rounding may leave a rest behind the last class; it goes to the last one that has a weight.
    const LengthClass* chosen = nullptr;
    for (const LengthClass& length : options.gap_lengths) {
        if (length.weight <= 0) continue;
        chosen = &length;
        if (left < length.weight) break;
        left -= length.weight;
    }
    const std::int64_t overlap = random.Between(5, 90);
    const std::int64_t unit = random.Between(0, static_cast<std::int64_t>(options.tandem_units.size()) - 1);

    GapPlan gap;
    if (closed < options.overlaps) {
        gap.kind = Kind::kOverlap;
        gap.length = -overlap;
        return gap;
    }
    if (closed < options.overlaps + options.zero) {
        gap.kind = Kind::kZero;
        return gap;
    }
    gap.length = random.Between(chosen->low, chosen->high);
    if (repeat < options.tandem) {
        gap.kind = Kind::kTandem;
        gap.unit = options.tandem_units[static_cast<std::size_t>(unit)];
    } else if (repeat < options.tandem + options.dispersed) {
        gap.kind = Kind::kDispersed;
    }
    return gap;
}

std::int64_t StatedLength(const Options& options, int id, std::int64_t index, std::int64_t length) {
    Random random = Stream(options, Purpose::kStated, id, index);
    const bool one = random.Chance(options.one);
    if (one && length < kOneBelow) return 1;
    const double deviation = options.length_noise * static_cast<double>(std::abs(length) + 30);
    return std::clamp<std::int64_t>(length + Rounded(random.Normal() * deviation), 1,
                                    std::numeric_limits<std::int32_t>::max());
}

/// Puts contigs and gaps one behind the other. A contig that overlaps begins inside the one in front of it, by no more
/// than half of either.
void PlaceContigs(const std::vector<std::int64_t>& lengths, Scaffold& scaffold) {
    std::int64_t at = 0;
    for (std::size_t c = 0; c < lengths.size(); ++c) {
        Span span{at, at + lengths[c]};
        if (c > 0 && scaffold.gaps[c - 1].kind == Kind::kOverlap) {
            GapPlan& gap = scaffold.gaps[c - 1];
            gap.length = -std::min({-gap.length, lengths[c - 1] / 2, lengths[c] / 2});
            span.start += gap.length;
            span.end += gap.length;
        }
        scaffold.contigs.push_back(span);
        at = span.end;
        if (c < scaffold.gaps.size()) at += std::max<std::int64_t>(0, scaffold.gaps[c].length);
        if (at > kLongestScaffold) throw std::runtime_error("a scaffold grows beyond 2,000,000,000 bases");
    }
}

/// True if a unit is no multiple of a shorter one.
bool IsPrimitive(const std::string& unit) {
    return (unit + unit).find(unit, 1) == unit.size();
}

void PutTandem(const Scaffold& scaffold, std::size_t index, Random& random, std::string& bases) {
    const GapPlan& gap = scaffold.gaps[index];
    const Span& front = scaffold.contigs[index];
    const Span& behind = scaffold.contigs[index + 1];
    std::string unit = RandomBases(random, gap.unit);
    while (!IsPrimitive(unit)) unit = RandomBases(random, gap.unit);

    const std::int64_t least = std::min<std::int64_t>(gap.length, 20);
    const std::int64_t run = random.Between(least, std::max(least, gap.length * 13 / 10));
    std::int64_t from = front.end;
    std::int64_t to = behind.start;
    if (run < gap.length) {
        from += random.Between(0, gap.length - run);
        to = from + run;
    } else {  // the repeat reaches into the contigs
        const std::int64_t extra = run - gap.length;
        from -= std::min(extra / 2, (front.end - front.start) / 2);
        to += std::min(extra - extra / 2, (behind.end - behind.start) / 2);
    }
    for (std::int64_t i = from; i < to; ++i) {
        bases[static_cast<std::size_t>(i)] = unit[static_cast<std::size_t>((i - from) % gap.unit)];
    }
}

void PutDispersed(const Scaffold& scaffold, std::size_t index, const std::vector<std::string>& families, Random& random,
                  std::string& bases) {
    const GapPlan& gap = scaffold.gaps[index];
    const Span& front = scaffold.contigs[index];
    const std::string& family =
        families[static_cast<std::size_t>(random.Between(0, static_cast<std::int64_t>(families.size()) - 1))];
    const std::int64_t size = std::min<std::int64_t>(gap.length, static_cast<std::int64_t>(family.size()));
    const std::int64_t at = front.end + random.Between(0, gap.length - size);
    bases.replace(static_cast<std::size_t>(at), static_cast<std::size_t>(size), family, 0,
                  static_cast<std::size_t>(size));
    if (!random.Chance(kRepeatAlsoInFront)) return;
    const std::size_t copy = std::min(family.size(), static_cast<std::size_t>((front.end - front.start) / 2));
    bases.replace(static_cast<std::size_t>(front.end) - copy, copy, family, family.size() - copy, copy);
}

}  // namespace

std::int64_t Rounded(double value) {
    return static_cast<std::int64_t>(std::floor(value + 0.5));
}

std::string RandomBases(Random& random, std::int64_t size) {
    std::string bases(static_cast<std::size_t>(size), 'A');
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < bases.size(); ++i) {
        if (i % 32 == 0) bits = random.Next();
        bases[i] = "ACGT"[bits & 3];
        bits >>= 2;
    }
    return bases;
}

std::vector<std::string> RepeatFamilies(const Options& options) {
    Random random = Stream(options, Purpose::kFamilies);
    std::vector<std::string> families;
    for (int i = 0; i < 3; ++i) {
        const std::int64_t size = random.Between(60, 500);
        families.push_back(RandomBases(random, size));
    }
    return families;
}

Scaffold MakeScaffold(const Options& options, const std::vector<std::string>& families, int id) {
    Scaffold scaffold;
    scaffold.id = id;
    const std::int64_t gaps = GapCount(options, id);
    std::vector<std::int64_t> lengths;
    for (std::int64_t c = 0; c <= gaps; ++c) {
        lengths.push_back(ContigLength(options, id, c));
        if (c < gaps) scaffold.gaps.push_back(PlanGap(options, id, c));
    }
    PlaceContigs(lengths, scaffold);
    for (std::size_t g = 0; g < scaffold.gaps.size(); ++g) {
        scaffold.gaps[g].stated = StatedLength(options, id, static_cast<std::int64_t>(g), scaffold.gaps[g].length);
    }

    Random random = Stream(options, Purpose::kBases, id);
    scaffold.bases = RandomBases(random, scaffold.contigs.back().end);
    for (std::size_t g = 0; g < scaffold.gaps.size(); ++g) {
        Random repeat = Stream(options, Purpose::kRepeat, id, static_cast<std::int64_t>(g));
        if (scaffold.gaps[g].kind == Kind::kTandem) PutTandem(scaffold, g, repeat, scaffold.bases);
        if (scaffold.gaps[g].kind == Kind::kDispersed) PutDispersed(scaffold, g, families, repeat, scaffold.bases);
    }
    return scaffold;
}

}  // namespace lintara::simulate
