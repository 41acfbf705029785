// The network layer's random numbers: a Mersenne Twister whose whole state is one 32-bit index.
//
// A random index is a seed in the upper 22 bits and a position in the lower 10. A session reseeds
// itself from its own state after every 624 draws, so it follows a chain of seeds and one index
// reproduces any point of it. The generator is MT19937: M. Matsumoto and T. Nishimura, "Mersenne
// Twister: a 623-dimensionally equidistributed uniform pseudorandom number generator", ACM TOMACS 8
// (1998), with the initialisation that its authors published in 2002.
//
// Not for secrets, and without a lock: a session belongs to one thread, the global one to the
// thread that pumps the network.
#ifndef PLATFORM_RANDOM_SESSION_H
#define PLATFORM_RANDOM_SESSION_H

#include <cstdint>

#include "kvcore/mt19937.h"

class RANDOM_SESSION {
public:
    // Seeded from the time of day.
    RANDOM_SESSION();
    explicit RANDOM_SESSION(std::int32_t index) { set_random_index(index); }

    // A value from the lower to the higher, the higher excluded. Equal arguments yield that value
    // and draw nothing.
    std::int32_t get_random_number(std::int32_t a, std::int32_t b);

    // One of a million values from 0 to `max`, or from `a` to `b`, the upper bound excluded.
    double get_random_double(double max);
    double get_random_double(double a, double b);

    // The point of the sequence. set_random_index(get_random_index()) continues from it, except
    // right behind the last word of a block, where the index names no point.
    std::int32_t get_random_index() const;
    // A position above 623 counts as 623.
    void set_random_index(std::int32_t index);

private:
    // 31 random bits.
    std::uint32_t draw();
    void fill(std::uint32_t seed);

    std::int32_t position_ = 0;  // the next word; they are used downwards, below 0: used up
    std::uint32_t seed_ = 0;
    KVCORE::MT19937_STATE state_{};
};

extern RANDOM_SESSION global_session;

// On the global session. For n above 0 a value from 0 to n - 1, for n below 0 from n to -1; for 0
// it yields 0 and draws nothing.
std::int32_t get_random_number(std::int32_t n);
std::int32_t get_random_number(std::int32_t a, std::int32_t b);
double get_random_double(double max);
double get_random_double(double a, double b);
std::int32_t get_random_index();
void set_random_index(std::int32_t index);

#endif  // PLATFORM_RANDOM_SESSION_H
