#include "gap_input.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "run/settings.h"

namespace lintara::fuzz {

namespace {

// Bounds that keep an input to parts of a second under the sanitizers.
constexpr std::size_t kMostReads = 140;
constexpr std::size_t kMostGenome = 9000;
constexpr int kMostContig = 1000;
constexpr int kMostReadLength = 250;  // an overlap is kept in 8 bits

enum Segment { kRandom, kLiteral, kTandem, kCopy, kSegments };
enum Step { kRun, kSingle, kLiteralRead, kOddRead, kSteps };
enum Flag { kWithOptions = 1, kShuffled = 2, kBeforeForeign = 4, kAfterForeign = 8, kBeforeOdd = 16, kAfterOdd = 32 };

int Size(const std::string& text) {
    return static_cast<int>(text.size());
}

/// Takes numbers off the front; behind the end all are 0.
class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool Done() const { return at_ >= size_; }
    int One() { return at_ < size_ ? data_[at_++] : 0; }
    int Two() {
        const int low = One();
        return low | One() << 8;
    }
    /// -32768..32767
    int Signed() { return static_cast<std::int16_t>(Two()); }
    int Four() {
        const unsigned low = static_cast<unsigned>(Two());
        return static_cast<int>(low | static_cast<unsigned>(Two()) << 16);
    }
    /// Bases, four a byte.
    std::string Bases(int count) {
        std::string bases;
        int byte = 0;
        for (int i = 0; i < count; ++i) {
            if (i % 4 == 0) byte = One();
            bases += base[byte >> 2 * (i % 4) & 3];
        }
        return bases;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

class Writer {
  public:
    void One(int value) { bytes.push_back(static_cast<std::uint8_t>(value)); }
    void Two(int value) {
        One(value & 0xFF);
        One(value >> 8 & 0xFF);
    }
    void Bases(const std::string& text) {
        for (std::size_t i = 0; i < text.size(); i += 4) {
            int byte = 0;
            for (std::size_t j = i; j < std::min(i + 4, text.size()); ++j) {
                byte |= (alphabet[text[j]] & 3) << 2 * (j - i);
            }
            One(byte);
        }
    }

    std::vector<std::uint8_t> bytes;
};

std::string RandomBases(int count, int seed) {
    std::minstd_rand random(static_cast<unsigned>(seed) + 1);
    std::string bases(static_cast<std::size_t>(count), 'A');
    for (char& c : bases) c = base[random() >> 8 & 3];
    return bases;
}

/// Replaces about rate of 1000 bases.
void AddErrors(std::string& bases, int rate, int seed) {
    if (rate == 0) return;
    std::minstd_rand random(static_cast<unsigned>(seed) + 1);
    for (char& c : bases) {
        if (static_cast<int>(random() >> 8 & 1023) < rate) c = base[random() >> 8 & 3];
    }
}

std::string Piece(const std::string& text, int start, int length) {
    const int from = std::clamp(start, 0, Size(text));
    const int to = std::clamp(start + length, from, Size(text));
    return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

std::string Genome(Bytes& bytes) {
    std::string genome;
    const int segments = bytes.One() % 32;
    for (int i = 0; i < segments && genome.size() < kMostGenome; ++i) {
        const int kind = bytes.One() % kSegments;
        if (kind == kRandom) {
            const int length = bytes.Two() % 4000;
            genome += RandomBases(length, bytes.One());
        } else if (kind == kLiteral) {
            genome += bytes.Bases(bytes.One());
        } else if (kind == kTandem) {
            const std::string unit = RandomBases(bytes.One() % 64 + 1, bytes.One());
            std::string repeat;
            for (int copies = bytes.One(); copies > 0 && repeat.size() < 1200; --copies) repeat += unit;
            AddErrors(repeat, bytes.One() % 32, i);
            genome += repeat;
        } else {
            const int start = bytes.Two() % (Size(genome) + 1);
            std::string copy = Piece(genome, start, bytes.Two() % 800);
            AddErrors(copy, bytes.One() % 64, i);
            genome += copy;
        }
    }
    genome.resize(std::min(genome.size(), kMostGenome));
    return genome;
}

/// Lower case, N and letters that are none, at places that the seed picks.
void MakeOdd(std::string& text, int seed) {
    std::minstd_rand random(static_cast<unsigned>(seed) + 1);
    for (int i = 0; i < 4 && !text.empty(); ++i) {
        char& c = text[random() % text.size()];
        switch (random() >> 8 & 3) {
            case 0:
                c = 'N';
                break;
            case 1:
                c = "RYn-"[random() >> 8 & 3];
                break;
            default:
                c = static_cast<char>(c | 0x20);
        }
    }
}

class ReadMaker {
  public:
    ReadMaker(const std::string& genome, int origin, int position_shift, GapInput& gap)
        : genome_(genome), origin_(origin), position_shift_(position_shift), gap_(gap) {}

    void Make(Bytes& bytes) {
        while (!bytes.Done() && gap_.reads.size() < kMostReads) {
            switch (bytes.One() % kSteps) {
                case kRun:
                    Run(bytes);
                    break;
                case kSingle:
                    Single(bytes);
                    break;
                case kLiteralRead:
                    Literal(bytes);
                    break;
                default:
                    Odd(bytes);
            }
        }
    }

  private:
    void Add(std::string bases, int position) {
        if (!bases.empty()) AddAny(std::move(bases), position);
    }
    void AddAny(std::string bases, int position) {
        if (gap_.reads.size() < kMostReads) gap_.reads.emplace_back(std::move(bases), position);
    }

    void Run(Bytes& bytes) {
        int start = bytes.Signed() % 4096;
        const int step = bytes.One() % 64 + 1;
        const int count = bytes.One() % 128;
        const int length = std::min(bytes.One(), kMostReadLength);
        const int rate = bytes.One() % 32;
        const int noise = bytes.One() % 64;
        const int seed = bytes.One();
        std::minstd_rand random(static_cast<unsigned>(seed) + 1);
        for (int i = 0; i < count; ++i, start += step) {
            std::string bases = Piece(genome_, origin_ + start, length);
            AddErrors(bases, rate, seed + i);
            const int shift = noise == 0 ? 0 : static_cast<int>(random() >> 8) % (2 * noise + 1) - noise;
            Add(std::move(bases), start + shift);
        }
    }

    void Single(Bytes& bytes) {
        const int start = bytes.Signed() % 8192;
        std::string bases = Piece(genome_, origin_ + start, std::min(bytes.One(), kMostReadLength));
        const int shift = static_cast<std::int8_t>(bytes.One());
        for (int changes = bytes.One() % 8; changes > 0; --changes) {
            const int place = bytes.One();
            if (place < Size(bases)) bases[static_cast<std::size_t>(place)] = base[bytes.One() & 3];
        }
        Add(std::move(bases), start + shift);
    }

    void Literal(Bytes& bytes) {
        const int length = std::min(bytes.One(), kMostReadLength);
        const int position = bytes.Signed();
        Add(bytes.Bases(length), position);
    }

    /// Any position, letters that are no base, and no letter at all.
    void Odd(Bytes& bytes) {
        const int position = bytes.Four() >> position_shift_;
        const int start = bytes.Signed() % 8192;
        std::string bases = Piece(genome_, origin_ + start, std::min(bytes.One(), kMostReadLength));
        MakeOdd(bases, bytes.One());
        AddAny(std::move(bases), position);
    }

    const std::string& genome_;
    int origin_;
    int position_shift_;
    GapInput& gap_;
};

/// Spreads a byte over a range in even steps.
double Between(int byte, double low, double high) {
    return low + (high - low) * byte / 255.0;
}

}  // namespace

OptionBytes DecodeOptions(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    OptionBytes options;
    options.used = (bytes.One() & kWithOptions) != 0;
    for (std::uint8_t& byte : options.bytes) byte = static_cast<std::uint8_t>(bytes.One());
    return options;
}

void ApplyOptions(const OptionBytes& options) {
    if (!options.used) return;
    ReadLen = 50 + options.bytes[0] % 201;
    Kmer = 11 + options.bytes[1] % 22;
    // An overlap below 16 bases cannot be searched for.
    Min_overlap = 16 + options.bytes[2] % 45;
    Match_ratio = Between(options.bytes[3], 0.8, 1.0);
    false_ratio = Between(options.bytes[4], 0.02, 0.2);
    ECUTOFF = Between(options.bytes[5], 0.2, 1.0);
    load_factor = static_cast<float>(Between(options.bytes[6], 0.2, 0.9));
    Method = options.bytes[7] % 6;
}

std::string OptionText() {
    std::ostringstream text;
    text.precision(17);
    text << "-r " << ReadLen << " -k " << Kmer << " -a " << Min_overlap << " -M " << Match_ratio << " -e "
         << false_ratio << " -E " << ECUTOFF << " -f " << load_factor << " -m " << Method;
    return text.str();
}

GapInput Decode(const std::uint8_t* data, std::size_t size, LengthRange lengths) {
    Bytes bytes(data, size);
    GapInput gap;
    gap.options = DecodeOptions(data, size);
    const int flags = bytes.One();
    for (std::size_t i = 0; i < sizeof gap.options.bytes; ++i) bytes.One();
    gap.gap_length = lengths.low + bytes.Two() % (lengths.high - lengths.low + 1);

    const int before_end = bytes.Two();
    const int distance = bytes.Signed();  // from the end of the before contig to the start of the after contig
    const int before_length = bytes.Two() % (kMostContig + 1);
    const int after_length = bytes.Two() % (kMostContig + 1);
    const std::string genome = Genome(bytes);
    const int origin = before_end % (Size(genome) + 1);
    const int after_start = origin + distance % (Size(genome) + 1);
    gap.before = Piece(genome, std::max(origin - before_length, 0), std::min(before_length, origin));
    gap.after = Piece(genome, std::max(after_start, 0), after_length);
    if (flags & kBeforeForeign) gap.before = RandomBases(before_length, 7);
    if (flags & kAfterForeign) gap.after = RandomBases(after_length, 8);
    if (flags & kBeforeOdd) MakeOdd(gap.before, flags);
    if (flags & kAfterOdd) MakeOdd(gap.after, flags + 1);

    // A big gap is filled with N from one read to the next, so that a position far out costs gigabytes.
    const int position_shift = lengths.high >= 1500 ? 12 : 0;
    ReadMaker(genome, origin, position_shift, gap).Make(bytes);
    if (flags & kShuffled) {
        std::minstd_rand random(static_cast<unsigned>(flags));
        for (std::size_t i = gap.reads.size(); i > 1; --i) std::swap(gap.reads[i - 1], gap.reads[random() % i]);
    }
    return gap;
}

std::vector<std::uint8_t> Encode(const GapInput& gap, LengthRange lengths) {
    Writer to;
    to.One(gap.options.used ? kWithOptions : 0);
    for (const std::uint8_t byte : gap.options.bytes) to.One(byte);
    to.Two(std::clamp(gap.gap_length, lengths.low, lengths.high) - lengths.low);
    const std::string before = Piece(gap.before, Size(gap.before) - kMostContig, 2 * kMostContig);
    const std::string after = Piece(gap.after, 0, kMostContig);
    to.Two(Size(before));
    to.Two(0);
    to.Two(Size(before));
    to.Two(Size(after));
    std::vector<std::string> pieces;
    const std::string genome = before + after;
    for (int at = 0; at < Size(genome); at += 252) pieces.push_back(Piece(genome, at, 252));
    to.One(static_cast<int>(pieces.size()));
    for (const std::string& piece : pieces) {
        to.One(kLiteral);
        to.One(Size(piece));
        to.Bases(piece);
    }
    // More reads than an input takes are thinned out evenly.
    const std::size_t taken = std::min(gap.reads.size(), kMostReads);
    for (std::size_t i = 0; i < taken; ++i) {
        const Read& read = gap.reads[i * gap.reads.size() / taken];
        const std::string bases = Piece(read.seq, 0, kMostReadLength);
        to.One(kLiteralRead);
        to.One(Size(bases));
        to.Two(read.pos);
        to.Bases(bases);
    }
    return to.bytes;
}

void WriteFiles(const GapInput& gap, const std::string& directory) {
    std::ofstream contigs(directory + "/contig.fa");
    contigs << ">scaffold1_0\t0\n" << gap.before << "\n>scaffold1_1\t" << gap.gap_length << "\n" << gap.after << "\n";
    std::ofstream reads(directory + "/gap.fa");
    for (const Read& read : gap.reads) {
        reads << ">1\t" << gap.gap_length << "\t" << read.pos << "\t1\t0\n" << read.seq << "\n";
    }
    std::ofstream(directory + "/args") << OptionText() << "\n";
}

}  // namespace lintara::fuzz
