// Random numbers in ranges, from a MERSENNE.
#ifndef KVCORE_RANDOM_H
#define KVCORE_RANDOM_H

#include <cstdint>

#include "kvcore/mersenne.h"

namespace KVCORE {

class RANDOM : public MERSENNE {
public:
    // Seeded from the C library's rand(), which the first such object, or static_seed(), seeds once
    // from the time of day.
    RANDOM();
    explicit RANDOM(std::uint32_t seed);

    static void static_seed();

    void set_seed(std::uint32_t seed);
    std::uint32_t get_seed() const { return seed_; }

    // From 0 to n - 1.
    std::int32_t get_random_number(std::int32_t n) { return random(n); }
    // From the lower to the higher, the higher excluded.
    std::int32_t get_random_number(std::int32_t a, std::int32_t b);

    // One of a million values from 0 to `max`, or from the lower to the higher, the upper bound
    // excluded.
    double get_random_real(double max);
    double get_random_real(double a, double b);

private:
    std::uint32_t seed_ = 0;
};

}  // namespace KVCORE

#endif  // KVCORE_RANDOM_H
