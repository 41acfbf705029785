// The primitives of DATA_DEVICE on both devices, and the operations of MESSAGE and DATA_FILE.
#include "platform/data_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "kvcore/memory.h"
#include "kvcore/string.h"
#include "platform/data_file.h"
#include "platform/message.h"

namespace {

using BYTES = std::vector<unsigned char>;

BYTES bytes_of(const MESSAGE& message) {
    return BYTES(message.get_buffer(), message.get_buffer() + message.get_length());
}

void put(MESSAGE& message, const BYTES& bytes) {
    const auto size = static_cast<std::int32_t>(bytes.size());
    ASSERT_EQ(message.write_data_block(bytes.data(), size), size);
}

MESSAGE message_of(const BYTES& bytes, std::int32_t byte_order = 0) {
    MESSAGE message;
    message.set_byte_order(byte_order);
    put(message, bytes);
    message.set_pos(0, false);
    return message;
}

// A file of the test, removed at its end, opened anew for each step.
class TEMP_FILE {
public:
    TEMP_FILE() {
        path_ = (std::filesystem::temp_directory_path() / "data_device_XXXXXX").string();
        const int handle = ::mkstemp(path_.data());
        EXPECT_GE(handle, 0);
        ::close(handle);
    }
    ~TEMP_FILE() { std::filesystem::remove(path_); }

    std::unique_ptr<DATA_FILE> open(FILE_MODE mode, std::int32_t cache_size = -1,
                                    std::int32_t byte_order = 0) const {
        static constexpr const char* MODES[] = {"rb", "wb", "ab"};
        return std::make_unique<DATA_FILE>(std::fopen(path_.c_str(), MODES[mode]), mode, byte_order,
                                           false, cache_size);
    }
    const std::string& path() const { return path_; }
    BYTES contents() const {
        BYTES bytes(std::filesystem::file_size(path_));
        std::FILE* stream = std::fopen(path_.c_str(), "rb");
        EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), stream), bytes.size());
        std::fclose(stream);
        return bytes;
    }

private:
    std::string path_;
};

BYTES counted(std::size_t size) {
    BYTES bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 7 + (i >> 8));
    }
    return bytes;
}

bool put_all(DATA_DEVICE& device) {
    return (device << static_cast<signed char>(-2)) && (device << 'A') &&
           (device << static_cast<unsigned char>(0xFE)) && (device << true) &&
           (device << static_cast<std::int16_t>(-2)) &&
           (device << static_cast<std::uint16_t>(0x1234)) && (device << std::int32_t{-2}) &&
           (device << std::uint32_t{0x12345678}) && (device << 1.5f) && (device << -0.25) &&
           (device << std::int64_t{-2}) && (device << std::uint64_t{0x0123456789ABCDEF}) &&
           device.write_dynamic_text("hi") && device.write_dynamic_text(nullptr) &&
           (device << KVCORE::STRING("abc"));
}

void expect_all(const DATA_DEVICE& device) {
    signed char s8 = 0;
    char c = 0;
    unsigned char u8 = 0;
    bool flag = false;
    std::int16_t s16 = 0;
    std::uint16_t u16 = 0;
    std::int32_t s32 = 0;
    std::uint32_t u32 = 0;
    float f = 0;
    double d = 0;
    std::int64_t s64 = 0;
    std::uint64_t u64 = 0;
    char* text = nullptr;
    char* no_text = nullptr;
    KVCORE::STRING string;
    ASSERT_TRUE((device >> s8) && (device >> c) && (device >> u8) && (device >> flag) &&
                (device >> s16) && (device >> u16) && (device >> s32) && (device >> u32) &&
                (device >> f) && (device >> d) && (device >> s64) && (device >> u64));
    ASSERT_TRUE(device.read_dynamic_text(text) && device.read_dynamic_text(no_text) &&
                (device >> string));
    const std::unique_ptr<char[]> owned(text);
    EXPECT_EQ(s8, -2);
    EXPECT_EQ(c, 'A');
    EXPECT_EQ(u8, 0xFE);
    EXPECT_TRUE(flag);
    EXPECT_EQ(s16, -2);
    EXPECT_EQ(u16, 0x1234);
    EXPECT_EQ(s32, -2);
    EXPECT_EQ(u32, 0x12345678u);
    EXPECT_EQ(f, 1.5f);
    EXPECT_EQ(d, -0.25);
    EXPECT_EQ(s64, -2);
    EXPECT_EQ(u64, 0x0123456789ABCDEFu);
    EXPECT_STREQ(text, "hi");
    EXPECT_EQ(no_text, nullptr);
    EXPECT_TRUE(string.equals("abc"));
    EXPECT_FALSE(device.get_error());
    EXPECT_FALSE(device >> u8);
    EXPECT_EQ(u8, 0xFE) << "a failed read keeps the value";
    EXPECT_TRUE(device.get_error());
}

const BYTES ALL_LITTLE = {
    0xFE, 'A',  0xFE, 1,    0xFE, 0xFF, 0x34, 0x12, 0xFE, 0xFF, 0xFF, 0xFF, 0x78, 0x56, 0x34, 0x12,
    0,    0,    0xC0, 0x3F, 0,    0,    0,    0,    0,    0,    0xD0, 0xBF, 0xFE, 0xFF, 0xFF, 0xFF,
    0xFF, 0xFF, 0xFF, 0xFF, 0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01, 2,    0,    0,    0,
    'h',  'i',  0,    0,    0,    0,    3,    0,    0,    0,    'a',  0,    'b',  0,    'c',  0};
const BYTES ALL_BIG = {0xFE, 'A',  0xFE, 1,    0xFF, 0xFE, 0x12, 0x34, 0xFF, 0xFF, 0xFF, 0xFE, 0x12,
                       0x34, 0x56, 0x78, 0x3F, 0xC0, 0,    0,    0xBF, 0xD0, 0,    0,    0,    0,
                       0,    0,    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x01, 0x23, 0x45,
                       0x67, 0x89, 0xAB, 0xCD, 0xEF, 0,    0,    0,    2,    'h',  'i',  0,    0,
                       0,    0,    0,    0,    0,    3,    0,    'a',  0,    'b',  0,    'c'};

TEST(DataDevice, PrimitivesHaveTheirBytesInBothOrdersOnBothDevices) {
    for (const std::int32_t order : {0, 1, 77}) {
        SCOPED_TRACE(order);
        const BYTES& expected = order == 0 ? ALL_LITTLE : ALL_BIG;
        MESSAGE message(17);
        message.set_byte_order(order);
        ASSERT_TRUE(put_all(message));
        const BYTES all = bytes_of(message);
        EXPECT_EQ(BYTES(all.begin() + 17, all.end()), expected);
        message.set_pos(0, false);
        expect_all(message);

        const TEMP_FILE file;
        const auto writer = file.open(FILE_WRITE, -1, order);
        ASSERT_TRUE(put_all(*writer));
        EXPECT_TRUE(writer->close());
        EXPECT_EQ(file.contents(), expected);
        expect_all(*file.open(FILE_READ, -1, order));
    }
}

TEST(DataDevice, AnyByteButZeroIsATrueFlag) {
    const MESSAGE message = message_of({0, 2, 0xFF});
    bool flag = true;
    EXPECT_TRUE((message >> flag) && !flag);
    EXPECT_TRUE((message >> flag) && flag);
    EXPECT_TRUE((message >> flag) && flag);
}

TEST(DataDevice, TextIntoAFieldIsCutAndTheStreamStaysInStep) {
    MESSAGE message;
    message.write_dynamic_text("0123456789");
    ASSERT_TRUE(message << std::int32_t{-1});
    message.write_dynamic_text("1234");
    ASSERT_TRUE(message << static_cast<unsigned char>(0x55));
    message.set_pos(0, false);
    char field[5] = "????";
    EXPECT_EQ(message.read_dynamic_text(field, 5), 1);
    EXPECT_STREQ(field, "0123");
    EXPECT_EQ(message.get_pos(), 14);
    EXPECT_EQ(message.read_dynamic_text(field, 5, true), 1);
    EXPECT_STREQ(field, "") << "a negative count is an empty text";
    EXPECT_EQ(message.read_dynamic_text(field, 5), 1);
    EXPECT_STREQ(field, "1234");
    unsigned char marker = 0;
    EXPECT_TRUE((message >> marker) && marker == 0x55);

    message.set_pos(0, false);
    char none = '?';
    EXPECT_EQ(message.read_dynamic_text(&none, 0), 1);
    EXPECT_EQ(none, '?');
    EXPECT_EQ(message.get_pos(), 14);
}

TEST(DataDevice, CountsAreNotBelievedBeforeTheBytesAreThere) {
    // Counts of 2 GiB and of one byte more than there is, in front of three bytes.
    for (const BYTES& bytes :
         {BYTES{0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3}, BYTES{4, 0, 0, 0, 1, 2, 3}}) {
        const MESSAGE message = message_of(bytes);
        char unused = 0;
        char* text = &unused;
        EXPECT_EQ(message.read_dynamic_text(text), 0);
        EXPECT_EQ(text, nullptr);
        EXPECT_TRUE(message.get_error());

        message.set_pos(0, false);
        char field[3] = "zz";
        EXPECT_EQ(message.read_dynamic_text(field, 3), 0);
        EXPECT_LT(std::strlen(field), sizeof field);

        message.set_pos(0, false);
        KVCORE::STRING string("old");
        EXPECT_FALSE(message >> string);
        EXPECT_TRUE(string.is_empty());
        EXPECT_TRUE(message.get_error());

        const TEMP_FILE file;
        const auto writer = file.open(FILE_WRITE);
        writer->write_data_block(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        writer->close();
        text = &unused;
        EXPECT_EQ(file.open(FILE_READ)->read_dynamic_text(text), 0);
        EXPECT_EQ(text, nullptr);
        // The whole message form: byte order, then a length without its bytes.
        BYTES form = {0};
        form.insert(form.end(), bytes.begin(), bytes.end());
        MESSAGE target;
        EXPECT_EQ(target.get_from_data_device(message_of(form)), 0);
        EXPECT_TRUE(target.is_empty());
    }
}

TEST(Message, StartsEmptyAndReservesItsHeaderOnTheFirstWrite) {
    MESSAGE message(17);
    unsigned char byte = 9;
    EXPECT_EQ(message.read_data_block(&byte, 1), 0);
    EXPECT_TRUE(message.get_error());
    message.set_pos(100, false);
    EXPECT_EQ(message.get_pos(), 0);

    ASSERT_TRUE(message << static_cast<std::int16_t>(0x0201));
    EXPECT_EQ(message.get_length(), 19);
    EXPECT_EQ(message.get_pos(), 2);
    EXPECT_EQ(message.get_capacity(), 256);
    BYTES expected(17);
    expected.insert(expected.end(), {1, 2});
    EXPECT_EQ(bytes_of(message), expected);

    MESSAGE other(17);
    EXPECT_EQ(other.write_data_block(nullptr, 0), 0);
    EXPECT_EQ(bytes_of(other), BYTES(17));
    EXPECT_EQ(other.write_data_block(&byte, -1), 0);
    EXPECT_EQ(other.get_length(), 17);
}

TEST(Message, PositionsAreClampedBetweenHeaderAndEnd) {
    MESSAGE message(17);
    put(message, counted(13));
    struct CASE {
        std::int32_t offset;
        bool from_end;
        std::int32_t expected;  // from the payload
    };
    constexpr std::int32_t MAX = 2147483647;
    for (const CASE& c :
         {CASE{5, true, 8}, CASE{0, true, 13}, CASE{20, true, 0}, CASE{-3, true, 13},
          CASE{4, false, 4}, CASE{-4, false, 0}, CASE{99, false, 13}, CASE{MAX, false, 13},
          CASE{MAX, true, 0}, CASE{-MAX - 1, false, 0}, CASE{-MAX - 1, true, 13}}) {
        message.set_pos(c.offset, c.from_end);
        EXPECT_EQ(message.get_pos(), c.expected) << c.offset << " " << c.from_end;
    }
    message.set_pos(0, true);
    message.shrink_buffer(10);
    message.set_pos(5, true);
    EXPECT_EQ(message.get_pos(), 0);
}

TEST(Message, ReadsWhatIsLeftAndOverwritesInPlace) {
    MESSAGE message(3, 4);
    EXPECT_EQ(message.calculate_buffer_allocation_size(0), 0);
    EXPECT_EQ(message.calculate_buffer_allocation_size(5), 8);
    EXPECT_EQ(message.calculate_buffer_allocation_size(2147483647), -1);
    EXPECT_EQ(message.allocate_buffer(2147483647), 0);
    put(message, {1, 2, 3, 4, 5});
    EXPECT_EQ(message.get_capacity(), 8);
    message.set_pos(3, false);
    BYTES read(9);
    EXPECT_EQ(message.read_data_block(read.data(), 9), 2);
    EXPECT_TRUE(message.get_error());
    EXPECT_EQ(read[1], 5);

    message.set_pos(1, false);
    put(message, {9, 9});
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0, 0, 1, 9, 9, 4, 5}));
    message.set_pos(4, false);
    put(message, {6, 7, 8});
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0, 0, 1, 9, 9, 4, 6, 7, 8}));
    EXPECT_EQ(message.get_capacity(), 12);
}

TEST(Message, ClearResetAndShrink) {
    MESSAGE message(3);
    put(message, {1, 2, 3, 4});
    message.get_buffer()[1] = 0x77;
    message.reset_payload();
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0x77, 0}));
    EXPECT_EQ(message.get_pos(), 0);
    EXPECT_EQ(message.get_capacity(), 256);
    put(message, {5, 6});
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0x77, 0, 5, 6}));

    message.shrink_buffer(1);
    EXPECT_EQ(message.get_length(), 4);
    EXPECT_EQ(message.get_pos(), 2) << "the position stays";
    EXPECT_EQ(message.get_bytes_left(), 0);
    unsigned char byte;
    EXPECT_EQ(message.read_data_block(&byte, 1), 0);
    message.shrink_buffer(5);
    EXPECT_EQ(message.get_buffer(), nullptr);

    MESSAGE plain;
    put(plain, {1});
    plain.reset_payload();
    EXPECT_EQ(plain.get_buffer(), nullptr) << "without a header it is clear";

    // A buffer from outside may be shorter than the header.
    auto* small = static_cast<unsigned char*>(KVCORE::MEMORY_LIBC::allocate(2, 1));
    message.set_buffer(small, 2);
    message.set_pos(0, false);
    EXPECT_EQ(message.read_data_block(&byte, 1), 0);
    message.reset_payload();
    EXPECT_TRUE(message.is_empty());
}

TEST(Message, CopiesMovesAndCompares) {
    MESSAGE source(3, 16);
    source.set_byte_order(1);
    put(source, {1, 2, 3});
    source.set_pos(1, false);
    MESSAGE copy(9);
    put(copy, {7});
    copy = source;
    EXPECT_TRUE(copy == source);
    EXPECT_EQ(copy.get_header_size(), 3);
    EXPECT_EQ(copy.get_pos(), 1);
    EXPECT_EQ(copy.get_byte_order(), 1);
    copy.get_buffer()[5] = 8;
    EXPECT_FALSE(copy == source);
    EXPECT_EQ(source.get_buffer()[5], 3) << "the copy is deep";

    MESSAGE moved(3);
    moved.move_from(source);
    EXPECT_EQ(bytes_of(moved), (BYTES{0, 0, 0, 1, 2, 3}));
    EXPECT_EQ(moved.get_block_size(), 16);
    EXPECT_EQ(moved.get_pos(), 1);
    EXPECT_EQ(source.get_buffer(), nullptr);
    EXPECT_EQ(source.get_capacity(), 0);
    moved.move_from(moved);
    EXPECT_EQ(moved.get_length(), 6);

    moved = source;
    EXPECT_TRUE(moved.is_empty());
    EXPECT_TRUE(moved == source);
    const MESSAGE constructed(copy);
    EXPECT_TRUE(constructed == copy);
}

TEST(Message, CompressesTheWholeBufferAndBack) {
    MESSAGE message(17);
    EXPECT_EQ(message.compress(9), 1) << "empty";
    EXPECT_EQ(message.uncompress(), 1) << "empty";
    BYTES text(5000, 'x');
    put(message, text);
    const MESSAGE original(message);
    EXPECT_EQ(message.uncompress(), 0) << "not compressed";
    ASSERT_EQ(message.compress(9), 1);
    EXPECT_EQ(message.get_uncompressed_size(), 5017);
    EXPECT_LT(message.get_length(), 100);
    EXPECT_EQ(message.get_capacity(), message.get_length());
    EXPECT_EQ(message.compress(9), 0) << "compressed already";
    ASSERT_EQ(message.uncompress(), 1);
    EXPECT_TRUE(message == original);
    EXPECT_EQ(message.get_uncompressed_size(), 0);

    // Data without any redundancy still fits the block.
    MESSAGE noise;
    BYTES random(100000);
    std::uint32_t state = 1;
    for (unsigned char& byte : random) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<unsigned char>(state >> 24);
    }
    put(noise, random);
    ASSERT_EQ(noise.compress(1), 1);
    ASSERT_EQ(noise.uncompress(), 1);
    EXPECT_EQ(bytes_of(noise), random);

    ASSERT_EQ(noise.compress(6), 1);
    MESSAGE device;
    ASSERT_EQ(noise.put_to_data_device(device), 1);
    device.set_pos(0, false);
    MESSAGE stored;
    ASSERT_EQ(stored.get_from_data_device(device), 1);
    ASSERT_EQ(stored.uncompress(), 1);
    EXPECT_EQ(bytes_of(stored), random);
}

TEST(Message, UncompressRefusesWhatTheDataCantYield) {
    // 12 bytes that claim 2 GiB, a negative size, and a size just beyond what deflate reaches.
    for (const std::uint32_t claimed : {0x7FFFFFFFu, 0x80000001u, 12u * 1032u + 1u, 50u}) {
        MESSAGE form;
        ASSERT_TRUE((form << static_cast<unsigned char>(0)) && (form << (12u | 0x80000000u)) &&
                    (form << claimed));
        put(form, counted(12));
        form.set_pos(0, false);
        MESSAGE message;
        ASSERT_EQ(message.get_from_data_device(form), 1);
        EXPECT_EQ(message.uncompress(), 0);
        EXPECT_EQ(bytes_of(message), counted(12)) << "unchanged";
    }
    MESSAGE message;
    put(message, BYTES(1000, 'y'));
    ASSERT_EQ(message.compress(9), 1);
    message.get_buffer()[6] ^= 0x10;
    EXPECT_EQ(message.uncompress(), 0) << "damaged";
    EXPECT_EQ(message.get_uncompressed_size(), 1000);
}

TEST(Message, StoredFormIsExactAndTheOlderFormIsRead) {
    MESSAGE message(2);
    message.set_byte_order(1);
    put(message, {0xAA, 0xBB});
    MESSAGE device;
    ASSERT_EQ(message.put_to_data_device(device), 1);
    EXPECT_EQ(bytes_of(device), (BYTES{1, 4, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0xAA, 0xBB}));
    MESSAGE big_device;
    big_device.set_byte_order(1);
    ASSERT_EQ(message.put_to_data_device(big_device), 1);
    EXPECT_EQ(bytes_of(big_device), (BYTES{1, 0x80, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0xAA, 0xBB}));

    big_device.set_pos(0, false);
    MESSAGE read(2);
    ASSERT_EQ(read.get_from_data_device(big_device), 1);
    EXPECT_TRUE(read == message);
    EXPECT_EQ(read.get_byte_order(), 1);
    EXPECT_EQ(read.get_pos(), 0);

    ASSERT_EQ(read.get_from_data_device(message_of({0, 3, 0, 0, 0, 7, 8, 9})), 1);
    EXPECT_EQ(bytes_of(read), (BYTES{7, 8, 9}));
    EXPECT_EQ(read.get_uncompressed_size(), 0);

    // An empty message takes nine bytes, and all of them are read.
    MESSAGE empty;
    device.clear();
    ASSERT_EQ(empty.put_to_data_device(device), 1);
    EXPECT_EQ(bytes_of(device), (BYTES{0, 0, 0, 0, 0x80, 0, 0, 0, 0}));
    device.set_pos(0, false);
    ASSERT_EQ(read.get_from_data_device(device), 1);
    EXPECT_TRUE(read.is_empty());
    EXPECT_EQ(device.get_bytes_left(), 0);
    const TEMP_FILE file;
    const auto writer = file.open(FILE_WRITE);
    EXPECT_EQ(empty.put_to_data_device(*writer), 1) << "without a buffer";
    EXPECT_TRUE(writer->close());
    EXPECT_EQ(file.contents(), bytes_of(device));
}

TEST(Message, EveryCutOfTheStoredFormFails) {
    const BYTES whole = {0, 4, 0, 0, 0x80, 0, 0, 0, 0, 1, 2, 3, 4};
    for (std::size_t size = 0; size < whole.size(); ++size) {
        MESSAGE read;
        EXPECT_EQ(read.get_from_data_device(message_of(
                      BYTES(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))),
                  0)
            << size;
        EXPECT_TRUE(read.is_empty());
    }
}

TEST(Message, TextFormCoversTheBufferOrTheRest) {
    MESSAGE message(2);
    message.set_byte_order(1);
    put(message, {0x0A, 0xBC, 0xDE});
    char text[64];
    EXPECT_EQ(message.put_to_string(text, 27, true), 0) << "one character short";
    ASSERT_EQ(message.put_to_string(text, 28, true), 1);
    EXPECT_STREQ(text,
                 "18000000500000000"
                 "00000ABCDE");
    message.set_pos(2, false);
    ASSERT_EQ(message.put_to_string(text, 20, false), 1);
    EXPECT_STREQ(text, "180000001FFFFFFFCDE") << "both numbers are reduced by the position";
}

TEST(Message, TextFormIsReadInPlaceOrAsAWhole) {
    MESSAGE message(2);
    ASSERT_EQ(message.get_from_string("180000004000000000000aBcD", true), 1);
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0, 0xAB, 0xCD}));
    EXPECT_EQ(message.get_byte_order(), 1);
    EXPECT_EQ(message.get_pos(), 0);

    message.set_pos(1, false);
    ASSERT_EQ(message.get_from_string("08000000200000000"
                                      "1122",
                                      false),
              1);
    EXPECT_EQ(bytes_of(message), (BYTES{0, 0, 0xAB, 0x11, 0x22}));
    EXPECT_EQ(message.get_byte_order(), 1) << "only a replaced message takes the order";

    ASSERT_EQ(message.get_from_string("00000000401020304", true), 1) << "older form";
    EXPECT_EQ(bytes_of(message), (BYTES{1, 2, 3, 4}));
    ASSERT_EQ(message.get_from_string("08000000200000100"
                                      "1122",
                                      true),
              1);
    EXPECT_EQ(message.get_uncompressed_size(), 256);
    ASSERT_EQ(message.get_from_string("080000001FFFFFFFCDE", true), 1);
    EXPECT_EQ(message.get_uncompressed_size(), 0) << "a part isn't compressed";

    const BYTES before = bytes_of(message);
    for (const char* bad : {"", "0800000000000000", "0800000020000000011", "08000000200000000112",
                            "0800000020000000011g2", "0z00000200000000", "08000000z000000001122",
                            "0FFFFFFFF00000000", "07FFFFFFF00000000", "0800000020000000z1122"}) {
        EXPECT_EQ(message.get_from_string(bad, true), 0) << bad;
        EXPECT_EQ(message.get_from_string(bad, false), 0) << bad;
        EXPECT_EQ(bytes_of(message), before);
    }
    EXPECT_EQ(message.get_from_string(nullptr, true), 0);
    ASSERT_EQ(message.get_from_string("08000000000000000", true), 1);
    EXPECT_TRUE(message.is_empty());
}

TEST(DataFile, CacheSizesAreClamped) {
    const TEMP_FILE file;
    EXPECT_EQ(file.open(FILE_READ)->get_cache_size(), 524288);
    EXPECT_EQ(file.open(FILE_READ, 100)->get_cache_size(), 1024);
    EXPECT_EQ(file.open(FILE_READ, 20000000)->get_cache_size(), 10485760);
}

TEST(DataFile, WritesAndReadsAcrossTheCacheInEveryBlockSize) {
    const BYTES data = counted(10000);
    for (const std::int32_t block : {1, 7, 1000, 1023, 1024, 1025, 5000, 10000}) {
        SCOPED_TRACE(block);
        const TEMP_FILE file;
        const auto writer = file.open(FILE_WRITE, 1024);
        for (std::int32_t at = 0; at < 10000; at += block) {
            const std::int32_t size = std::min(block, 10000 - at);
            ASSERT_EQ(writer->write_data_block(data.data() + at, size), size);
        }
        EXPECT_EQ(writer->get_pos(), 10000);
        ASSERT_TRUE(writer->close());
        ASSERT_EQ(file.contents(), data);

        const auto reader = file.open(FILE_READ, 1024);
        BYTES read(10001);
        std::int32_t done = 0;
        while (done < 10000) {
            ASSERT_EQ(reader->get_pos(), done);
            ASSERT_EQ(reader->get_bytes_left(), 10000 - done);
            const std::int32_t size = reader->read_data_block(read.data() + done, block);
            ASSERT_EQ(size, std::min(block, 10000 - done)) << "short only at the end";
            done += size;
        }
        read.resize(10000);
        EXPECT_EQ(read, data);
        EXPECT_EQ(reader->read_data_block(read.data(), 1), 0);
    }
}

TEST(DataFile, ABlockOfTheCacheSizeGoesStraightToTheFileBehindTheCachedBytes) {
    const TEMP_FILE file;
    const auto writer = file.open(FILE_WRITE, 1024);
    const BYTES block = counted(1024);
    writer->write_data_block("abc", 3);
    EXPECT_EQ(file.contents().size(), 0u);
    ASSERT_EQ(writer->write_data_block(block.data(), 1024), 1024);
    writer->write_data_block("z", 1);
    EXPECT_EQ(writer->get_size(), 1028);
    BYTES expected = {'a', 'b', 'c'};
    expected.insert(expected.end(), block.begin(), block.end());
    expected.push_back('z');
    EXPECT_EQ(file.contents(), expected);
}

TEST(DataFile, PositionsAndTheByteOrderHeader) {
    const TEMP_FILE file;
    {
        std::FILE* stream = std::fopen(file.path().c_str(), "wb");
        std::fputc(0, stream);
        DATA_FILE writer(stream, FILE_WRITE, 0, true);
        EXPECT_EQ(writer.get_pos(), 0);
        writer.write_data_block("abcdef", 6);
        EXPECT_EQ(writer.get_pos(), 6);
        writer.set_pos(0, false);
        writer.write_data_block("A", 1);
        writer.set_pos(-1, true);
        writer.write_data_block("F", 1);
        EXPECT_TRUE(writer.close());
    }
    EXPECT_EQ(file.contents(), (BYTES{0, 'A', 'b', 'c', 'd', 'e', 'F'}));

    std::FILE* stream = std::fopen(file.path().c_str(), "rb");
    std::fgetc(stream);
    const DATA_FILE reader(stream, FILE_READ, 0, true);
    char c = 0;
    EXPECT_EQ(reader.get_pos(), 0);
    EXPECT_TRUE((reader >> c) && c == 'A');
    reader.set_pos(-2, true);
    EXPECT_EQ(reader.get_pos(), 4);
    EXPECT_TRUE((reader >> c) && c == 'e');
    reader.set_pos(-5, false);
    EXPECT_TRUE((reader >> c) && c == 'A') << "never the header byte";
    reader.set_pos(-100, true);
    EXPECT_EQ(reader.get_pos(), 0);
    EXPECT_TRUE(reader.flush_cache());
    EXPECT_TRUE((reader >> c) && c == 'A') << "what was read ahead is given back";
    EXPECT_EQ(reader.get_size(), 6);
    EXPECT_EQ(reader.get_bytes_left(), 5);
    reader.set_pos(100, true);
    EXPECT_EQ(reader.get_bytes_left(), 0);
    EXPECT_FALSE(reader >> c);
    reader.set_pos(5, false);
    EXPECT_TRUE((reader >> c) && c == 'F');
}

// The cache is filled once; until it is used up no record needs the system, here one whose file is
// gone.
TEST(DataFile, ReadingRecordsFromTheCacheAsksTheSystemForNothing) {
    constexpr std::int32_t TEXTS = 1000, RECORD = 8, CACHE = 1024;
    const TEMP_FILE file;
    const auto writer = file.open(FILE_WRITE);
    for (int i = 0; i < TEXTS; ++i) {
        writer->write_dynamic_text("text");
    }
    ASSERT_TRUE(writer->close());
    std::FILE* stream = std::fopen(file.path().c_str(), "rb");
    std::setvbuf(stream, nullptr, _IONBF, 0);
    const DATA_FILE reader(stream, FILE_READ, 0, false, CACHE);
    for (int i = 0; i < CACHE / RECORD; ++i) {
        char* text = nullptr;
        ASSERT_TRUE(reader.read_dynamic_text(text));
        const std::unique_ptr<char[]> owned(text);
        ASSERT_STREQ(text, "text");
        if (i == 0) {
            const int nothing = ::open("/dev/null", O_RDONLY);
            ASSERT_GE(::dup2(nothing, ::fileno(stream)), 0);
            ::close(nothing);
        }
        ASSERT_EQ(reader.get_pos(), (i + 1) * RECORD);
        ASSERT_EQ(reader.get_bytes_left(), (TEXTS - i - 1) * RECORD);
    }
}

TEST(DataFile, PositionsBeyondTwoGigabytes) {
    const TEMP_FILE file;
    constexpr std::int64_t FAR = std::int64_t{3} << 30;
    const auto writer = file.open(FILE_WRITE);
    writer->set_pos_64(FAR, false);
    ASSERT_TRUE(*writer << 'x');
    EXPECT_EQ(writer->get_pos_64(), FAR + 1);
    EXPECT_EQ(writer->get_pos(), 2147483647);
    EXPECT_EQ(writer->get_size(), FAR + 1);
    ASSERT_TRUE(writer->close());
    const auto reader = file.open(FILE_READ);
    EXPECT_EQ(reader->get_bytes_left(), FAR + 1);
    reader->set_pos(-1, true);
    char c = 0;
    EXPECT_TRUE((*reader >> c) && c == 'x');
}

TEST(DataFile, AFullDiskShowsInTheStatusUpToTheClose) {
    const auto open_full = [] {
        return std::make_unique<DATA_FILE>(std::fopen("/dev/full", "wb"), FILE_WRITE, 0, false,
                                           1024);
    };
    if (::access("/dev/full", W_OK) != 0) {
        GTEST_SKIP() << "no device that is always full";
    }
    // A few bytes in the cache: nothing has been tried before the close.
    auto file = open_full();
    EXPECT_TRUE(*file << std::int32_t{1});
    EXPECT_FALSE(file->has_failed());
    EXPECT_FALSE(file->close());
    EXPECT_FALSE(file->close());
    // A flush, and all writes behind it.
    file = open_full();
    EXPECT_TRUE(*file << std::int32_t{1});
    EXPECT_FALSE(file->flush_cache());
    EXPECT_TRUE(file->has_failed());
    EXPECT_FALSE(*file << std::int32_t{2});
    EXPECT_TRUE(file->get_error());
    // A block that goes straight to the file.
    file = open_full();
    const BYTES block(100000);
    EXPECT_LT(file->write_data_block(block.data(), 100000), 100000);
    EXPECT_FALSE(file->close());
}

TEST(DataFile, AClosedFileTransfersNothing) {
    DATA_FILE file(nullptr, FILE_READ, 0, false);
    char c = 'k';
    EXPECT_FALSE(file >> c);
    EXPECT_EQ(file.write_data_block(&c, 1), 0);
    EXPECT_EQ(file.get_pos(), 0);
    EXPECT_EQ(file.get_bytes_left(), 0);
    EXPECT_FALSE(file.is_open());
}

TEST(DataFileDeathTest, UsingAFileTheWrongWayEndsTheProcess) {
    const TEMP_FILE file;
    EXPECT_EXIT(
        {
            char c;
            file.open(FILE_WRITE)->read_data_block(&c, 1);
        },
        testing::ExitedWithCode(1),
        "DATA_FILE::read_data_block\\(\\) - disk manager reading a file that is opened for write");
    EXPECT_EXIT(
        file.open(FILE_READ)->write_data_block("x", 1), testing::ExitedWithCode(1),
        "DATA_FILE::write_data_block\\(\\) - disk manager writing a file that is opened for read");
}

}  // namespace
