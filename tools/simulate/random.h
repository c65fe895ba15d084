// The simulator's own random numbers, so that a seed gives the same bytes on every machine: the standard library's
// distributions differ from one library to the next, and logarithms from one mathematics library to the next. All draws
// are made of 64-bit integers and of single, exactly rounded operations on doubles.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

namespace lintara::simulate {

/// One step of splitmix64 (Steele, Lea and Flood 2014): moves the state on and returns 64 well mixed bits.
inline std::uint64_t SplitMix(std::uint64_t& state) {
    std::uint64_t z = (state += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
}

/// xoshiro256** (Blackman and Vigna 2018).
class Random {
  public:
    /// Starts from a state that is not all zeros.
    explicit Random(const std::array<std::uint64_t, 4>& state) : state_(state) {}

    /// Starts a stream of its own for each list of keys, such as seed, scaffold, gap and purpose.
    explicit Random(std::initializer_list<std::uint64_t> keys) : state_{} {
        std::uint64_t mixed = 0;
        for (const std::uint64_t key : keys) {
            mixed ^= key;
            mixed = SplitMix(mixed);
        }
        for (std::uint64_t& word : state_) word = SplitMix(mixed);
    }

    std::uint64_t Next() {
        const std::uint64_t result = Rotate(state_[1] * 5, 7) * 9;
        const std::uint64_t shifted = state_[1] << 17;
        state_[2] ^= state_[0];
        state_[3] ^= state_[1];
        state_[1] ^= state_[2];
        state_[0] ^= state_[3];
        state_[2] ^= shifted;
        state_[3] = Rotate(state_[3], 45);
        return result;
    }

    /// Each integer from low to high with equal chance; low if high is not above it. The range stays below 2^63.
    std::int64_t Between(std::int64_t low, std::int64_t high) {
        if (high <= low) return low;
        const std::uint64_t range = static_cast<std::uint64_t>(high - low) + 1;
        const std::uint64_t limit = UINT64_MAX - UINT64_MAX % range;  // a multiple of the range: no value is favoured
        std::uint64_t draw = Next();
        while (draw >= limit) draw = Next();
        return low + static_cast<std::int64_t>(draw % range);
    }

    /// At least 0, below 1, in steps of 2^-53.
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }

    bool Chance(double share) { return Unit() < share; }

    /// Close to a normal draw with mean 0 and standard deviation 1: twelve uniform draws less 6, within -6 and 6.
    double Normal() {
        std::uint64_t sum = 0;
        for (int i = 0; i < 6; ++i) {
            const std::uint64_t draw = Next();
            sum += (draw >> 32) + (draw & 0xFFFFFFFFU);
        }
        return static_cast<double>(sum) * 0x1p-32 - 6;
    }

  private:
    static std::uint64_t Rotate(std::uint64_t word, int by) { return (word << by) | (word >> (64 - by)); }

    std::array<std::uint64_t, 4> state_;
};

}  // namespace lintara::simulate
