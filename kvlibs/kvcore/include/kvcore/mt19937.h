// The published steps of MT19937, on which the generators of the system are built.
//
// M. Matsumoto and T. Nishimura, "Mersenne Twister: a 623-dimensionally equidistributed uniform
// pseudorandom number generator", ACM TOMACS 8 (1998); initialisation from the authors' version of
// 2002.
#ifndef KVCORE_MT19937_H
#define KVCORE_MT19937_H

#include <array>
#include <cstdint>

namespace KVCORE {

inline constexpr std::int32_t MT19937_WORDS = 624;
using MT19937_STATE = std::array<std::uint32_t, 624>;

// Fills the state from a seed. The first block of output needs a twist after it.
void mt19937_seed(MT19937_STATE& state, std::uint32_t seed);

// Turns the whole state into the next block.
void mt19937_twist(MT19937_STATE& state);

// The output for one word of a twisted state.
constexpr std::uint32_t mt19937_temper(std::uint32_t y) {
    y ^= y >> 11;
    y ^= (y << 7) & 0x9D2C5680u;
    y ^= (y << 15) & 0xEFC60000u;
    y ^= y >> 18;
    return y;
}

// floor(y * range / 2^31) for 31 random bits y: a value in a range, without rejection of the bias.
constexpr std::int64_t scale_random_bits(std::uint32_t y, std::int64_t range) {
    return (static_cast<std::int64_t>(y) * range) >> 31;
}

}  // namespace KVCORE

#endif  // KVCORE_MT19937_H
