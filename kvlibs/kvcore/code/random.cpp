#include "kvcore/random.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <mutex>

namespace KVCORE {

RANDOM::RANDOM() {
    static_seed();
    set_seed(static_cast<std::uint32_t>(std::rand()));
}

RANDOM::RANDOM(std::uint32_t seed) {
    set_seed(seed);
}

void RANDOM::static_seed() {
    static std::once_flag seeded;
    std::call_once(seeded, [] { std::srand(static_cast<unsigned>(std::time(nullptr))); });
}

void RANDOM::set_seed(std::uint32_t seed) {
    seed_ = seed;
    MERSENNE::set_seed(seed);
}

std::int32_t RANDOM::get_random_number(std::int32_t a, std::int32_t b) {
    const auto [lower, higher] = std::minmax(a, b);
    // The range can be wider than 31 bits.
    const std::int64_t range = std::int64_t{higher} - lower;
    return static_cast<std::int32_t>(lower + scale_random_bits(random() & 0x7FFFFFFFu, range));
}

double RANDOM::get_random_real(double max) {
    return random(1000000) * max / 1000000;
}

double RANDOM::get_random_real(double a, double b) {
    const auto [lower, higher] = std::minmax(a, b);
    return lower + (higher - lower) * random(1000000) / 1000000;
}

}  // namespace KVCORE
