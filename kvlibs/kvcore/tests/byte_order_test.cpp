// Stored numbers are fixed byte by byte, whatever the host's order and alignment.
#include "kvcore/byte_order.h"

#include <gtest/gtest.h>

#include <cstring>

#include "kvcore/text_field.h"

namespace {

TEST(ByteOrder, StoresAndLoadsLittleEndianOnUnalignedMemory) {
    unsigned char bytes[6] = {};
    KVCORE::store_le32(bytes + 1, 0x89ABCDEFu);
    const unsigned char expected[6] = {0, 0xEF, 0xCD, 0xAB, 0x89, 0};
    EXPECT_EQ(0, std::memcmp(bytes, expected, sizeof bytes));
    EXPECT_EQ(0x89ABCDEFu, KVCORE::load_le32(bytes + 1));
    EXPECT_EQ(0xCDEF, KVCORE::load_le16(bytes + 1));
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
