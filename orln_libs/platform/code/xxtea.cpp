#include "platform/xxtea.h"

#include <cstddef>
#include <memory>

#include "kvcore/byte_order.h"

namespace {

constexpr std::uint32_t DELTA = 0x9E3779B9u;

std::uint32_t round_count(std::uint32_t n) {
    return 6 + 52 / n;
}

std::uint32_t mix(std::uint32_t y, std::uint32_t z, std::uint32_t sum, std::uint32_t key_word) {
    return (((z >> 5) ^ (y << 2)) + ((y >> 3) ^ (z << 4))) ^ ((sum ^ y) + (key_word ^ z));
}

using CIPHER = unsigned char (*)(std::uint32_t*, std::int32_t, const std::uint32_t*);

unsigned char run_on_bytes(CIPHER cipher, unsigned char* bytes, std::int32_t n,
                           const std::uint32_t* key) {
    if (n < 2) {
        return 0;
    }
    const std::size_t count = static_cast<std::size_t>(n);
    const auto words = std::make_unique_for_overwrite<std::uint32_t[]>(count);
    for (std::size_t i = 0; i < count; ++i) {
        words[i] = KVCORE::load_le32(bytes + 4 * i);
    }
    cipher(words.get(), n, key);
    for (std::size_t i = 0; i < count; ++i) {
        KVCORE::store_le32(bytes + 4 * i, words[i]);
    }
    return 1;
}

}  // namespace

unsigned char XXTEA::xxtea_encode(std::uint32_t* data, std::int32_t n, const std::uint32_t* key) {
    if (n < 2) {
        return 0;
    }
    const std::uint32_t last = static_cast<std::uint32_t>(n) - 1;
    std::uint32_t sum = 0;
    std::uint32_t z = data[last];
    for (std::uint32_t rounds = round_count(last + 1); rounds != 0; --rounds) {
        sum += DELTA;
        const std::uint32_t e = (sum >> 2) & 3;
        for (std::uint32_t p = 0; p < last; ++p) {
            z = data[p] += mix(data[p + 1], z, sum, key[(p & 3) ^ e]);
        }
        z = data[last] += mix(data[0], z, sum, key[(last & 3) ^ e]);
    }
    return 1;
}

unsigned char XXTEA::xxtea_decode(std::uint32_t* data, std::int32_t n, const std::uint32_t* key) {
    if (n < 2) {
        return 0;
    }
    const std::uint32_t last = static_cast<std::uint32_t>(n) - 1;
    std::uint32_t y = data[0];
    for (std::uint32_t sum = round_count(last + 1) * DELTA; sum != 0; sum -= DELTA) {
        const std::uint32_t e = (sum >> 2) & 3;
        for (std::uint32_t p = last; p > 0; --p) {
            y = data[p] -= mix(y, data[p - 1], sum, key[(p & 3) ^ e]);
        }
        y = data[0] -= mix(y, data[last], sum, key[e]);
    }
    return 1;
}

unsigned char XXTEA::encode_bytes(unsigned char* bytes, std::int32_t n, const std::uint32_t* key) {
    return run_on_bytes(xxtea_encode, bytes, n, key);
}

unsigned char XXTEA::decode_bytes(unsigned char* bytes, std::int32_t n, const std::uint32_t* key) {
    return run_on_bytes(xxtea_decode, bytes, n, key);
}
