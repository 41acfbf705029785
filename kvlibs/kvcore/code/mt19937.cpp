#include "kvcore/mt19937.h"

namespace KVCORE {

void mt19937_seed(MT19937_STATE& state, std::uint32_t seed) {
    state[0] = seed;
    for (std::uint32_t i = 1; i < state.size(); ++i) {
        const std::uint32_t previous = state[i - 1];
        state[i] = 1812433253u * (previous ^ (previous >> 30)) + i;
    }
}

void mt19937_twist(MT19937_STATE& state) {
    constexpr std::size_t n = MT19937_WORDS;
    constexpr std::size_t m = 397;
    const auto twist = [&state](std::size_t i, std::size_t next, std::size_t far) {
        const std::uint32_t y = (state[i] & 0x80000000u) | (state[next] & 0x7FFFFFFFu);
        state[i] = state[far] ^ (y >> 1) ^ ((y & 1u) ? 0x9908B0DFu : 0u);
    };
    for (std::size_t i = 0; i < n - m; ++i) {
        twist(i, i + 1, i + m);
    }
    for (std::size_t i = n - m; i < n - 1; ++i) {
        twist(i, i + 1, i + m - n);
    }
    twist(n - 1, 0, m - 1);
}

}  // namespace KVCORE
