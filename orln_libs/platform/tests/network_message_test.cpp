// The frame of NETWORK_MESSAGE byte by byte, its cipher and the key agreement.
#include "platform/network_message.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "kvcore/byte_order.h"
#include "kvcore/memory.h"
#include "platform/diffie_hellman.h"
#include "platform/xxtea.h"

namespace {

using BYTES = std::vector<unsigned char>;
using WORDS = std::vector<std::uint32_t>;

constexpr std::uint32_t KEY[4] = {0x01020304, 0x89ABCDEF, 0, 46000};

BYTES bytes_of(const MESSAGE& message) {
    return BYTES(message.get_buffer(), message.get_buffer() + message.get_length());
}

BYTES counted(std::size_t size) {
    BYTES bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i + 1);
    }
    return bytes;
}

NETWORK_MESSAGE with_payload(const BYTES& payload, std::int32_t byte_order = 0) {
    NETWORK_MESSAGE message;
    message.set_byte_order(byte_order);
    const auto size = static_cast<std::int32_t>(payload.size());
    EXPECT_EQ(message.write_data_block(payload.data(), size), size);
    return message;
}

// A message as the receiver gets it: from the bytes of the wire.
void receive(NETWORK_MESSAGE& message, const BYTES& bytes) {
    void* block = KVCORE::MEMORY_LIBC::allocate(bytes.size());
    std::memcpy(block, bytes.data(), bytes.size());
    message.set_buffer(static_cast<unsigned char*>(block), static_cast<std::int32_t>(bytes.size()));
    std::uint32_t a, b, c, d;
    message.unpack_header(a, b, c, d);
}

// CRC-32 (polynomial 0xEDB88320) bit by bit.
std::uint32_t reference_crc(const BYTES& bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0);
        }
    }
    return ~crc;
}

// The published routine in its own form: one function, with a negative n for deciphering.
void reference_btea(std::uint32_t* v, int n, const std::uint32_t* k) {
    std::uint32_t z, y, sum;
    unsigned p, rounds, e;
    const auto mx = [&] {
        return ((z >> 5 ^ y << 2) + (y >> 3 ^ z << 4)) ^ ((sum ^ y) + (k[(p & 3) ^ e] ^ z));
    };
    if (n > 1) {
        rounds = 6 + 52 / static_cast<unsigned>(n);
        sum = 0;
        z = v[n - 1];
        do {
            sum += 0x9E3779B9u;
            e = (sum >> 2) & 3;
            for (p = 0; p < static_cast<unsigned>(n) - 1; p++) {
                y = v[p + 1];
                z = v[p] += mx();
            }
            y = v[0];
            z = v[n - 1] += mx();
        } while (--rounds);
    } else if (n < -1) {
        n = -n;
        rounds = 6 + 52 / static_cast<unsigned>(n);
        sum = rounds * 0x9E3779B9u;
        y = v[0];
        do {
            e = (sum >> 2) & 3;
            for (p = static_cast<unsigned>(n) - 1; p > 0; p--) {
                z = v[p - 1];
                y = v[p] -= mx();
            }
            z = v[n - 1];
            y = v[0] -= mx();
        } while ((sum -= 0x9E3779B9u) != 0);
    }
}

BYTES from_hex(const std::string& hex) {
    BYTES bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<unsigned char>(std::stoul(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

TEST(Xxtea, PublishedVectors) {
    struct VECTOR {
        const char* key;
        const char* plain;
        const char* cipher;
    };
    for (const VECTOR& v :
         {VECTOR{"00000000000000000000000000000000", "0000000000000000", "ab043705808c5d57"},
          VECTOR{"0102040810204080fffefcf8f0e0c080", "0000000000000000", "d1e78be2c746728a"},
          VECTOR{"9e3779b99b9773e9b979379e6b695156", "ffffffffffffffff", "67ed0ea8e8973fc5"}}) {
        std::uint32_t key[4];
        for (std::size_t i = 0; i < 4; ++i) {
            key[i] = KVCORE::load_le32(from_hex(v.key).data() + 4 * i);
        }
        BYTES bytes = from_hex(v.plain);
        const std::int32_t words = static_cast<std::int32_t>(bytes.size() / 4);
        EXPECT_EQ(XXTEA::encode_bytes(bytes.data(), words, key), 1);
        EXPECT_EQ(bytes, from_hex(v.cipher));
        EXPECT_EQ(XXTEA::decode_bytes(bytes.data(), words, key), 1);
        EXPECT_EQ(bytes, from_hex(v.plain));
    }
}

TEST(Xxtea, AgreesWithTheReferenceForEveryLength) {
    std::mt19937 rng(1);
    for (int n = 2; n <= 300; ++n) {
        WORDS plain(static_cast<std::size_t>(n));
        std::generate(plain.begin(), plain.end(), std::ref(rng));
        const std::uint32_t key[4] = {static_cast<std::uint32_t>(rng()),
                                      static_cast<std::uint32_t>(rng()), 0xFFFFFFFFu, 0};
        WORDS ours = plain;
        WORDS reference = plain;
        EXPECT_EQ(XXTEA::xxtea_encode(ours.data(), n, key), 1);
        reference_btea(reference.data(), n, key);
        ASSERT_EQ(ours, reference) << n;
        reference_btea(reference.data(), -n, key);
        EXPECT_EQ(XXTEA::xxtea_decode(ours.data(), n, key), 1);
        ASSERT_EQ(reference, plain);
        ASSERT_EQ(ours, plain) << n;
    }
}

TEST(Xxtea, DoesNothingBelowTwoWords) {
    for (const std::int32_t n : {1, 0, -1, -5}) {
        std::uint32_t word = 7;
        unsigned char bytes[4] = {1, 2, 3, 4};
        EXPECT_EQ(XXTEA::xxtea_encode(&word, n, KEY), 0);
        EXPECT_EQ(XXTEA::xxtea_decode(&word, n, KEY), 0);
        EXPECT_EQ(XXTEA::encode_bytes(bytes, n, KEY), 0);
        EXPECT_EQ(XXTEA::decode_bytes(bytes, n, KEY), 0);
        EXPECT_EQ(word, 7u);
        EXPECT_EQ(bytes[0], 1);
    }
}

TEST(NetworkMessage, FrameWithFormOneIsExact) {
    NETWORK_MESSAGE message;
    ASSERT_TRUE((message << static_cast<std::int16_t>(1200)) &&
                (message << static_cast<unsigned char>(9)) &&
                (message << static_cast<std::int16_t>(-1)));
    message.pack_header(0x01020304, 0x05060708, 0, 0x11121314);
    ASSERT_EQ(message.append_trailer(0), 1);
    BYTES expected = {0, 4,    3,    2,    1,    8,    7,    6, 5,    0,    0, 0,
                      0, 0x14, 0x13, 0x12, 0x11, 0xB0, 0x04, 9, 0xFF, 0xFF, 1};
    // Payload bytes 0 and 5, 10 and so on are sampled: here the first only.
    BYTES sample(10);
    sample[0] = 0xB0;
    expected.resize(27);
    KVCORE::store_le32(expected.data() + 23, reference_crc(sample));
    EXPECT_EQ(bytes_of(message), expected);

    NETWORK_MESSAGE received;
    received.encrypted = 1;
    receive(received, expected);
    EXPECT_EQ(received.remove_trailer(), NETWORK_MESSAGE::TRAILER_GOOD);
    EXPECT_EQ(received.get_payload_length(), 5);
    EXPECT_EQ(received.get_pos(), 0);
    EXPECT_EQ(received.encrypted, 0) << "form 1 carries plain messages only";
}

TEST(NetworkMessage, FrameWithFormTwoIsExactInBothOrders) {
    for (const std::int32_t order : {0, 1}) {
        NETWORK_MESSAGE message = with_payload(counted(12), order);
        message.encrypted = 1;
        message.pack_header(0, 0, 0, 0);
        ASSERT_EQ(message.append_trailer(1), 1);
        BYTES sample(10);
        sample[0] = 1;
        sample[1] = 6;
        sample[2] = 11;
        BYTES checksum(4);
        KVCORE::store_le32(checksum.data(), reference_crc(sample));
        if (order != 0) {
            std::reverse(checksum.begin(), checksum.end());
        }
        BYTES expected(17);
        expected[0] = static_cast<unsigned char>(order);
        const BYTES payload = counted(12);
        expected.insert(expected.end(), payload.begin(), payload.end());
        expected.insert(expected.end(), {1, 2});
        expected.insert(expected.end(), checksum.begin(), checksum.end());
        EXPECT_EQ(bytes_of(message), expected);

        NETWORK_MESSAGE received;
        receive(received, expected);
        EXPECT_EQ(received.remove_trailer(), NETWORK_MESSAGE::TRAILER_GOOD);
        EXPECT_EQ(received.encrypted, 1);
        EXPECT_EQ(received.get_byte_order(), order);
        EXPECT_EQ(received.get_payload_length(), 12);
    }
}

TEST(NetworkMessage, HeaderKeepsReturnedTokens) {
    NETWORK_MESSAGE message = with_payload({1, 2});
    message.pack_header(11, 12, 13, 14);
    std::uint32_t token[4];
    message.unpack_header(token[0], token[1], token[2], token[3]);
    EXPECT_EQ(token[2], 13u);
    message.pack_header(0, 0, token[0], token[1]);
    message.pack_header(21, 22, 0, 0);
    message.unpack_header(token[0], token[1], token[2], token[3]);
    EXPECT_EQ(std::vector(token, token + 4), (WORDS{21, 22, 11, 12}));

    // Tokens aren't swapped in a message of the other order.
    message.set_byte_order(1);
    message.pack_header(21, 22, 0, 0);
    EXPECT_EQ(message.get_buffer()[1], 21);

    // The reply keeps them across reset_payload.
    message.reset_payload();
    message.write_data_block("xy", 2);
    message.unpack_header(token[0], token[1], token[2], token[3]);
    EXPECT_EQ(token[2], 11u);

    NETWORK_MESSAGE empty;
    empty.pack_header(1, 2, 3, 4);
    EXPECT_TRUE(empty.is_empty());
    ASSERT_EQ(empty.append_trailer(0), 1);
    EXPECT_EQ(bytes_of(empty),
              (BYTES{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
    empty.clear();
    empty.unpack_header(token[0], token[1], token[2], token[3]);
    EXPECT_EQ(std::vector(token, token + 4), WORDS(4));
}

TEST(NetworkMessage, ChecksumSamplesEveryFifthByteUpToOffset62) {
    NETWORK_MESSAGE message = with_payload(counted(80));
    EXPECT_EQ(message.get_crc(17), 0u);
    BYTES sample(10);
    sample[0] = 1;
    EXPECT_EQ(message.get_crc(18), reference_crc(sample));
    for (std::size_t i = 0; i < 10; ++i) {
        sample[i] = static_cast<unsigned char>(1 + 5 * i);
    }
    const std::uint32_t whole = reference_crc(sample);
    EXPECT_EQ(message.get_crc(63), whole);
    EXPECT_EQ(message.get_crc(97), whole);
    EXPECT_EQ(message.get_crc(1000), whole) << "a size beyond the message reads nothing behind it";
    EXPECT_NE(message.get_crc(62), whole);
    std::set<int> covered;
    for (int offset = 0; offset < 97; ++offset) {
        message.get_buffer()[offset] ^= 0x40;
        if (message.get_crc(97) != whole) {
            covered.insert(offset);
        }
        message.get_buffer()[offset] ^= 0x40;
    }
    EXPECT_EQ(covered, (std::set<int>{17, 22, 27, 32, 37, 42, 47, 52, 57, 62}));
}

// A header and the given bytes behind it.
BYTES raw(std::initializer_list<int> tail) {
    BYTES bytes(17);
    for (const int byte : tail) {
        bytes.push_back(static_cast<unsigned char>(byte));
    }
    return bytes;
}

TEST(NetworkMessage, RemoveTrailerTellsWhatIsWrong) {
    struct CASE {
        BYTES bytes;
        std::int32_t result;
        std::int32_t length;
        int encrypted;  // from 7 before
    };
    BYTES form_2 = raw({5, 1, 2, 0, 0, 0, 0});
    KVCORE::store_le32(form_2.data() + 20, reference_crc({5, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    BYTES form_7 = form_2;
    form_7[19] = 7;
    BYTES bad_form_2 = form_2;
    bad_form_2[20] ^= 1;
    BYTES bad_flag = form_2;
    bad_flag[18] = 2;
    BYTES no_version = form_2;
    no_version[19] = 0;
    BYTES header_with_flag = raw({2, 0, 0, 0, 0});
    header_with_flag[16] = 1;
    const CASE cases[] = {
        {BYTES(21), 2, 21, 7},
        {raw({1, 0, 0, 0, 0}), 0, 17, 0},
        {raw({1, 0, 0, 1, 0}), 4, 17, 0},
        {raw({0, 0, 0, 0, 0}), 3, 17, 7},
        {raw({9, 9, 1, 0, 0, 0, 0}), 4, 19, 0},
        {form_2, 0, 18, 1},
        {form_7, 0, 18, 1},
        {bad_form_2, 4, 18, 1},
        {bad_flag, 1, 24, 7},
        {no_version, 3, 19, 7},
        {header_with_flag, 0, 16, 1},  // form 2 reaches into the header of an empty message
    };
    int index = 0;
    for (const CASE& c : cases) {
        SCOPED_TRACE(index++);
        NETWORK_MESSAGE message;
        receive(message, c.bytes);
        message.encrypted = 7;
        EXPECT_EQ(message.remove_trailer(), c.result);
        EXPECT_EQ(message.get_length(), c.length);
        EXPECT_EQ(message.encrypted, c.encrypted);
        if (c.result != 2 && c.result != 1 && c.length >= 17) {
            EXPECT_EQ(message.get_pos(), 0);
        }
    }
    NETWORK_MESSAGE empty;
    EXPECT_EQ(empty.remove_trailer(), NETWORK_MESSAGE::TRAILER_TOO_SHORT);
}

TEST(NetworkMessage, EncipheredPayloadIsExact) {
    NETWORK_MESSAGE message = with_payload({0x42});
    message.encrypted = 1;
    message.pack_header(1, 2, 3, 4);
    const BYTES header(message.get_buffer(), message.get_buffer() + 17);
    ASSERT_EQ(message.encrypt_message(KEY), 1);
    EXPECT_EQ(message.get_length(), 17 + 134);
    ASSERT_EQ(message.append_trailer(1), 1);
    const BYTES bytes = bytes_of(message);
    ASSERT_EQ(bytes.size(), 157u);
    EXPECT_EQ(BYTES(bytes.begin(), bytes.begin() + 17), header);
    std::uint32_t words[16];
    for (std::size_t i = 0; i < 16; ++i) {
        words[i] = KVCORE::load_le32(bytes.data() + 17 + 4 * i);
    }
    reference_btea(words, -16, KEY);
    EXPECT_EQ(words[0], 0x42u);
    EXPECT_EQ(std::count(words + 1, words + 16, 0u), 15) << "nothing leaks through the pad";
    EXPECT_EQ(bytes[17 + 64], 63);
    EXPECT_EQ(std::count(bytes.begin() + 82, bytes.begin() + 151, 0), 69) << "nor the filler";
    BYTES sample(10);
    for (std::size_t i = 0; i < 10; ++i) {
        sample[i] = bytes[17 + 5 * i];
    }
    EXPECT_EQ(KVCORE::load_le32(bytes.data() + 153), reference_crc(sample)) << "of the ciphertext";
}

TEST(NetworkMessage, EveryPayloadLengthComesBack) {
    for (std::int32_t size = 1; size <= 260; ++size) {
        const BYTES payload = counted(static_cast<std::size_t>(size));
        NETWORK_MESSAGE message = with_payload(payload);
        message.encrypted = 1;
        ASSERT_EQ(message.encrypt_message(KEY), 1);
        const std::int32_t padded = (size + 63) / 64 * 64;
        ASSERT_EQ(message.get_length(), 17 + 2 * padded + 6);
        ASSERT_EQ(message.append_trailer(1), 1);

        NETWORK_MESSAGE received;
        receive(received, bytes_of(message));
        ASSERT_EQ(received.remove_trailer(), NETWORK_MESSAGE::TRAILER_GOOD);
        ASSERT_EQ(received.decrypt_message(KEY), 1);
        ASSERT_EQ(received.get_pos(), 0);
        const BYTES bytes = bytes_of(received);
        ASSERT_EQ(BYTES(bytes.begin() + 17, bytes.end()), payload);
    }
}

TEST(NetworkMessage, CipherNeedsTheFlagAndAPayload) {
    NETWORK_MESSAGE plain = with_payload({1, 2, 3});
    const BYTES before = bytes_of(plain);
    EXPECT_EQ(plain.encrypt_message(KEY), 0);
    EXPECT_EQ(plain.decrypt_message(KEY), 0);
    EXPECT_EQ(bytes_of(plain), before);
    NETWORK_MESSAGE empty;
    empty.encrypted = 1;
    EXPECT_EQ(empty.encrypt_message(KEY), 0);
    EXPECT_EQ(empty.decrypt_message(KEY), 0);
    empty.write_data_block(nullptr, 0);
    EXPECT_EQ(empty.encrypt_message(KEY), 0);
    EXPECT_EQ(empty.decrypt_message(KEY), 0);
}

TEST(NetworkMessage, DecryptWarnsOfAPadThatDoesNotFit) {
    for (const int pad : {64, 255}) {
        NETWORK_MESSAGE message = with_payload({1});
        message.encrypted = 1;
        ASSERT_EQ(message.encrypt_message(KEY), 1);
        message.get_buffer()[17 + 64] = static_cast<unsigned char>(pad);
        const BYTES before = bytes_of(message);
        message.set_pos(0, true);
        testing::internal::CaptureStdout();
        const unsigned char result = message.decrypt_message(KEY);
        const std::string output = testing::internal::GetCapturedStdout();
        EXPECT_EQ(result, 0);
        EXPECT_EQ(output,
                  "ENCRYPTION WARNING: Invalid buffer size.\n"
                  "ENCRYPTION WARNING: new_buffer_sz = " +
                      std::to_string(64 - pad + 17) +
                      "\nENCRYPTION WARNING: buffer_padding_pos = 64\n"
                      "ENCRYPTION WARNING: buffer_padding = " +
                      std::to_string(pad) + "\n");
        EXPECT_EQ(bytes_of(message), before);
        EXPECT_EQ(message.get_pos(), 0);
    }
    // A payload of less than two words can't be deciphered at all.
    testing::internal::CaptureStdout();
    for (std::size_t size = 1; size < 16; ++size) {
        NETWORK_MESSAGE message = with_payload(BYTES(size));
        message.encrypted = 1;
        EXPECT_EQ(message.decrypt_message(KEY), 0) << size;
        EXPECT_EQ(message.get_payload_length(), static_cast<std::int32_t>(size));
    }
    testing::internal::GetCapturedStdout();
}

TEST(NetworkMessage, CopyAndMoveCarryTheStampsAndNotTheFlag) {
    NETWORK_MESSAGE source = with_payload({1, 2, 3});
    source.encrypted = 1;
    source.time_1 = 5;
    source.time_3 = 7;
    NETWORK_MESSAGE copy;
    copy = source;
    EXPECT_TRUE(copy == source);
    EXPECT_EQ(copy.time_3, 7u);
    EXPECT_EQ(copy.encrypted, 0);
    EXPECT_EQ(NETWORK_MESSAGE(source).encrypted, 0);
    NETWORK_MESSAGE moved;
    moved.move_from(source);
    EXPECT_EQ(moved.time_1, 5u);
    EXPECT_EQ(moved.encrypted, 0);
    EXPECT_TRUE(moved == copy);
    EXPECT_TRUE(source.is_empty());
    EXPECT_EQ(source.encrypted, 1);
    source.clear();
    EXPECT_EQ(source.encrypted, 1);
}

TEST(DiffieHellman, EveryTableEntryIsAPrimeOrOneOfItsPrimitiveRoots) {
    using EXCHANGER = DIFFIE_HELLMAN_KEY_EXCHANGER;
    std::set<std::int32_t> primes;
    for (int column = 0; column < EXCHANGER::prime_count; ++column) {
        const std::int64_t prime = EXCHANGER::DH_PRIMES[column];
        primes.insert(EXCHANGER::DH_PRIMES[column]);
        ASSERT_GT(prime, 40000);
        EXPECT_LE((prime - 1) * (prime - 1), 0x7FFFFFFF);
        for (std::int64_t divisor = 2; divisor * divisor <= prime; ++divisor) {
            ASSERT_NE(prime % divisor, 0) << prime;
        }
        std::set<std::int32_t> bases;
        for (int row = 0; row < EXCHANGER::base_rows; ++row) {
            const std::int64_t base = EXCHANGER::DH_BASES[row][column];
            bases.insert(EXCHANGER::DH_BASES[row][column]);
            ASSERT_TRUE(base > 1 && base < prime - 1);
            // A primitive root reaches 1 by its (prime - 1)th power and not before.
            std::int64_t order = 1;
            for (std::int64_t power = base; power != 1; power = power * base % prime) {
                ++order;
            }
            EXPECT_EQ(order, prime - 1) << base << " of " << prime;
        }
        EXPECT_EQ(bases.size(), 4u);
    }
    EXPECT_EQ(primes.size(), 10u);
}

TEST(DiffieHellman, BothSidesAgree) {
    using EXCHANGER = DIFFIE_HELLMAN_KEY_EXCHANGER;
    std::set<std::int32_t> drawn;
    std::mt19937 rng(5);
    for (int round = 0; round < 200; ++round) {
        std::int32_t prime = 0;
        std::int32_t base = 0;
        EXCHANGER::get_prime_base(prime, base);
        drawn.insert(base);
        std::int32_t secret_a[4], secret_b[4], public_a[4], public_b[4], key_a[4], key_b[4];
        for (int i = 0; i < 4; ++i) {
            secret_a[i] = static_cast<std::int32_t>(rng() % 1000);
            secret_b[i] = static_cast<std::int32_t>(rng() % 1000);
        }
        secret_a[0] = 0;
        ASSERT_EQ(EXCHANGER::get_public_key(public_a, secret_a, prime, base, 4), 1);
        ASSERT_EQ(EXCHANGER::get_public_key(public_b, secret_b, prime, base, 4), 1);
        ASSERT_EQ(EXCHANGER::get_shared_key(key_a, secret_a, public_b, prime, 4), 1);
        ASSERT_EQ(EXCHANGER::get_shared_key(key_b, secret_b, public_a, prime, 4), 1);
        for (int i = 0; i < 4; ++i) {
            ASSERT_EQ(key_a[i], key_b[i]);
        }
        EXPECT_EQ(public_a[0], 1) << "a secret of 0 gives 1";
    }
    EXPECT_GT(drawn.size(), 30u) << "of 40 table entries";
    // 3^4 and 3^5 modulo 7, and no more values than asked for.
    const std::int32_t secret[2] = {4, 5};
    std::int32_t out[3] = {-1, -1, -1};
    EXCHANGER::get_public_key(out, secret, 7, 3, 2);
    EXPECT_EQ(std::vector(out, out + 3), (std::vector<std::int32_t>{4, 5, -1}));
}

TEST(DiffieHellman, APrimeFromAHostilePeerDoesNoHarm) {
    using EXCHANGER = DIFFIE_HELLMAN_KEY_EXCHANGER;
    const std::int32_t secret[1] = {999};
    for (const std::int32_t prime : {0, 1, -1, -2147483647 - 1}) {
        std::int32_t out[1] = {5};
        EXPECT_EQ(EXCHANGER::get_shared_key(out, secret, secret, prime, 1), 0);
        EXPECT_EQ(out[0], 0);
        out[0] = 5;
        EXPECT_EQ(EXCHANGER::get_public_key(out, secret, prime, 3, 1), 0);
        EXPECT_EQ(out[0], 0);
    }
    for (const std::int32_t peer : {2147483647, -2147483647 - 1, -1, 0}) {
        std::int32_t out[1] = {};
        EXPECT_EQ(EXCHANGER::get_shared_key(out, secret, &peer, 2147483647, 1), 1);
    }
}

}  // namespace
