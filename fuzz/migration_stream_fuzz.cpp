// A damaged binary file through the stream readers, beside a model that holds the bytes in memory.
// The first byte is the number of reads, the next ones say which; the rest is the file.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kvmigration/input_stream.h"

namespace {

using KVMIGRATION::INPUT_STREAM;
using KVMIGRATION::STRING;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

struct MODEL {
    const std::uint8_t* bytes;
    std::size_t size;
    std::size_t at = 0;

    // The bytes of a read; a short one takes what there is.
    bool take(void* to, std::size_t count) {
        const std::size_t there = std::min(count, size - at);
        if (there != 0) {
            std::memcpy(to, bytes + at, there);
        }
        at += there;
        return there == count;
    }
};

template <typename T>
void check_value(INPUT_STREAM& stream, MODEL& model) {
    T read{};
    T expected{};
    require(stream.read(read) == model.take(&expected, sizeof expected));
    require(std::memcmp(&read, &expected, sizeof read) == 0);
}

void check_bool(INPUT_STREAM& stream, MODEL& model) {
    bool read = false;
    unsigned char expected = 0;
    require(stream.read(read) == model.take(&expected, 1) && read == (expected != 0));
}

void check_peek(INPUT_STREAM& stream, MODEL& model) {
    std::uint32_t peeked = 0;
    std::uint32_t expected = 0;
    const std::size_t at = model.at;
    require(stream.peek(peeked) == model.take(&expected, 4) && peeked == expected);
    model.at = at;
}

void check_block(INPUT_STREAM& stream, MODEL& model, std::size_t size) {
    std::vector<char> read(size, 'x');
    std::vector<char> expected(size, 'x');
    require(stream.read(read.data(), static_cast<std::int32_t>(size)) ==
            model.take(expected.data(), size));
    require(read == expected);
}

void check_string(INPUT_STREAM& stream, MODEL& model) {
    STRING text;
    std::int32_t length = 0;
    const bool whole = model.take(&length, 4);
    const bool fits = whole && length >= 0 && length < INPUT_STREAM::STRING_LIMIT &&
                      static_cast<std::size_t>(length) <= model.size - model.at;
    require(stream.read_string(text) == fits);
    if (fits) {
        std::string expected(reinterpret_cast<const char*>(model.bytes) + model.at,
                             static_cast<std::size_t>(length));
        model.at += expected.size();
        require(text == expected.c_str());
    } else {
        require(text.empty());
        model.at = model.size;
    }
}

void check_read(INPUT_STREAM& stream, MODEL& model, std::uint8_t which) {
    switch (which % 14) {
        case 0:
            return check_bool(stream, model);
        case 1:
            return check_value<char>(stream, model);
        case 2:
            return check_value<char16_t>(stream, model);
        case 3:
            return check_value<unsigned char>(stream, model);
        case 4:
            return check_value<std::int16_t>(stream, model);
        case 5:
            return check_value<std::uint16_t>(stream, model);
        case 6:
            return check_value<std::int32_t>(stream, model);
        case 7:
            return check_value<std::uint32_t>(stream, model);
        case 8:
            return check_value<float>(stream, model);
        case 9:
            return check_value<double>(stream, model);
        case 10:
            return check_value<std::int64_t>(stream, model);
        case 11:
            return check_peek(stream, model);
        case 12:
            return check_block(stream, model, which);
        default:
            return check_string(stream, model);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 65536) {
        return 0;
    }
    const std::size_t reads = std::min<std::size_t>(data[0], size - 1);
    MODEL model{data + 1 + reads, size - 1 - reads};
    static const int file = ::memfd_create("stream", MFD_CLOEXEC);
    require(::ftruncate(file, 0) == 0);
    require(model.size == 0 ||
            ::pwrite(file, model.bytes, model.size, 0) == static_cast<ssize_t>(model.size));

    INPUT_STREAM stream(STRING(std::string("/proc/self/fd/").append(std::to_string(file))));
    require(stream.is_open() && stream.get_length() == static_cast<std::int64_t>(model.size));
    for (std::size_t i = 0; i < reads; ++i) {
        check_read(stream, model, data[1 + i]);
        require(stream.get_position() == static_cast<std::int64_t>(model.at));
        require(stream.get_remaining() == static_cast<std::int64_t>(model.size - model.at));
    }
    return 0;
}
