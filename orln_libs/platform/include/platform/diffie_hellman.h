// Diffie-Hellman key agreement ("New Directions in Cryptography", 1976) with small numbers.
//
// The key keeps casual readers of the stream out and no more: primes of 16 bits are no guard
// against an attacker.
#ifndef PLATFORM_DIFFIE_HELLMAN_H
#define PLATFORM_DIFFIE_HELLMAN_H

#include <cstdint>

class DIFFIE_HELLMAN_KEY_EXCHANGER {
public:
    static constexpr std::int32_t prime_count = 10;
    static constexpr std::int32_t base_rows = 4;

    // Draws a prime and one of its bases from the tables, by get_random_number (first the column,
    // then the row), so on the thread that owns the global random session.
    static void get_prime_base(std::int32_t& prime, std::int32_t& base);

    // For each i below `count`: out[i] = base raised to secret[i], modulo prime.
    static unsigned char get_public_key(std::int32_t* out, const std::int32_t* secret,
                                        std::int32_t prime, std::int32_t base, std::int32_t count);
    // For each i below `count`: out[i] = peer_public[i] raised to secret[i], modulo prime.
    //
    // Both powers are repeated multiplications in 32 bits that wrap; a secret of 0 (or below) gives
    // 1. The prime comes from the peer: one below 2 gives zeros and yields 0, else the result is 1.
    static unsigned char get_shared_key(std::int32_t* out, const std::int32_t* secret,
                                        const std::int32_t* peer_public, std::int32_t prime,
                                        std::int32_t count);

    // Safe primes, so small that a product of two numbers below one stays in 31 bits. Each base is
    // a primitive root of the prime in its column.
    static const std::int32_t DH_PRIMES[prime_count];
    static const std::int32_t DH_BASES[base_rows][prime_count];
};

#endif  // PLATFORM_DIFFIE_HELLMAN_H
