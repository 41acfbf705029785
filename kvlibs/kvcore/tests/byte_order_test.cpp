// Stored numbers are fixed byte by byte, whatever the host's order and alignment.
#include "kvcore/byte_order.h"

#include <gtest/gtest.h>

#include <cstring>

#include "kvcore/text_field.h"

namespace {

TEST(ByteOrder, StoresAndLoadsLittleEndianOnUnalignedMemory) {
    unsigned char bytes[16] = {};
    KVCORE::store_le16(bytes + 1, 0x1234);
    KVCORE::store_le32(bytes + 3, 0x89ABCDEFu);
    KVCORE::store_le64(bytes + 7, 0x0123456789ABCDEFull);
    const unsigned char expected[16] = {0,    0x34, 0x12, 0xEF, 0xCD, 0xAB, 0x89, 0xEF,
                                        0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01, 0};
    EXPECT_EQ(0, std::memcmp(bytes, expected, sizeof bytes));
    EXPECT_EQ(0x1234, KVCORE::load_le16(bytes + 1));
    EXPECT_EQ(0x89ABCDEFu, KVCORE::load_le32(bytes + 3));
    EXPECT_EQ(0x0123456789ABCDEFull, KVCORE::load_le64(bytes + 7));
    EXPECT_EQ(0x3412, KVCORE::load_be16(bytes + 1));
    EXPECT_EQ(0xEFCDAB89u, KVCORE::load_be32(bytes + 3));
}

TEST(ByteOrder, SwapIsItsOwnInverseForAllWidths) {
    EXPECT_EQ(0xCDAB, KVCORE::swap_bytes(std::uint16_t{0xABCD}));
    EXPECT_EQ(0x78563412u, KVCORE::swap_bytes(0x12345678u));
    EXPECT_EQ(0xEFCDAB8967452301ull, KVCORE::swap_bytes(std::uint64_t{0x0123456789ABCDEFull}));
    EXPECT_EQ(0x12345678u, KVCORE::swap_bytes(KVCORE::swap_bytes(0x12345678u)));
}

TEST(TextField, CutsAndAlwaysTerminates) {
    char field[5];
    std::memset(field, 'x', sizeof field);
    KVCORE::copy_text_field(field, "abcdefgh");
    EXPECT_STREQ("abcd", field);
    KVCORE::copy_text_field(field, "ab");
    EXPECT_STREQ("ab", field);
    KVCORE::copy_text_field(field, nullptr);
    EXPECT_STREQ("", field);
    char guard = 'g';
    KVCORE::copy_text_field(&guard, 0, "abc");
    EXPECT_EQ('g', guard);
}

}  // namespace
