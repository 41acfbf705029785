#include "platform/diffie_hellman.h"

#include "platform/random_session.h"

namespace {

using EXCHANGER = DIFFIE_HELLMAN_KEY_EXCHANGER;

// A product as a 32-bit host gives it. With an honest prime it never wraps; a dishonest one gives
// both sides the same useless key and does no harm.
std::int32_t wrapped_product(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

std::int32_t power_modulo(std::int32_t base, std::int32_t exponent, std::int32_t prime) {
    std::int32_t result = 1;
    for (std::int32_t i = 0; i < exponent; ++i) {
        result = wrapped_product(result, base) % prime;
    }
    return result;
}

}  // namespace

// The ten largest primes p below 46341 (the square root of 2^31) for which (p - 1) / 2 is prime
// too. A square of p - 1 then stays below 2^31.
const std::int32_t EXCHANGER::DH_PRIMES[prime_count] = {46199, 45887, 45707, 45503, 45083,
                                                        44963, 44939, 44867, 44819, 44699};

const std::int32_t EXCHANGER::DH_BASES[base_rows][prime_count] = {
    {9888, 14072, 3875, 38376, 8729, 7721, 41873, 35898, 34848, 38377},
    {4749, 33257, 28421, 38209, 14490, 20218, 6755, 6387, 40569, 23698},
    {25877, 6170, 37059, 41330, 35436, 11846, 37436, 4116, 13499, 30515},
    {3166, 5634, 27823, 25998, 18981, 37417, 38117, 3908, 32535, 19647}};

void EXCHANGER::get_prime_base(std::int32_t& prime, std::int32_t& base) {
    const std::int32_t column = get_random_number(prime_count);
    const std::int32_t row = get_random_number(base_rows);
    prime = DH_PRIMES[column];
    base = DH_BASES[row][column];
}

unsigned char EXCHANGER::get_public_key(std::int32_t* out, const std::int32_t* secret,
                                        std::int32_t prime, std::int32_t base, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        out[i] = prime < 2 ? 0 : power_modulo(base, secret[i], prime);
    }
    return prime >= 2;
}

unsigned char EXCHANGER::get_shared_key(std::int32_t* out, const std::int32_t* secret,
                                        const std::int32_t* peer_public, std::int32_t prime,
                                        std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        out[i] = prime < 2 ? 0 : power_modulo(peer_public[i], secret[i], prime);
    }
    return prime >= 2;
}
