// Binary writing for the 3D libraries.
#ifndef KVMIGRATION_OUTPUT_STREAM_H
#define KVMIGRATION_OUTPUT_STREAM_H

#include <cstdint>
#include <cstdio>
#include <memory>

#include "kvmigration/string.h"

namespace KVMIGRATION {

// Writes little-endian values to a file, in the widths of INPUT_STREAM. Every write yields whether
// it was taken; on a stream whose file couldn't be opened writes do nothing. Writing is buffered:
// close() tells whether everything reached the file. One thread at a time.
class OUTPUT_STREAM final {
public:
    // Makes the file, or empties it.
    explicit OUTPUT_STREAM(const STRING& path);
    OUTPUT_STREAM(const OUTPUT_STREAM&) = delete;
    OUTPUT_STREAM& operator=(const OUTPUT_STREAM&) = delete;

    bool is_open() const { return file_ != nullptr; }
    // Ends the stream. False if the file didn't open or anything couldn't be written.
    bool close();

    bool write(bool value) { return write(static_cast<unsigned char>(value)); }
    bool write(char value) { return write_value(value); }
    bool write(char16_t value) { return write_value(value); }
    bool write(unsigned char value) { return write_value(value); }
    bool write(std::int16_t value) { return write_value(value); }
    bool write(std::uint16_t value) { return write_value(value); }
    bool write(std::int32_t value) { return write_value(value); }
    bool write(std::uint32_t value) { return write_value(value); }
    bool write(float value) { return write_value(value); }
    bool write(double value) { return write_value(value); }
    bool write(std::int64_t value) { return write_value(value); }
    bool write(std::uint64_t value) { return write_value(value); }
    // A text goes through write_string; without this a pointer would be written as a bool.
    template <typename T>
    bool write(T*) = delete;
    // A block of bytes. A negative size writes nothing and is a failure.
    bool write(const void* buffer, std::int32_t size);

    // The 32-bit length, then the bytes, without a terminator. Text is cut so that the reader takes
    // it, see BASIC_INPUT_STREAM::STRING_LIMIT.
    bool write_string(const STRING& text);

private:
    struct FILE_CLOSER {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    template <typename T>
    bool write_value(T value) {
        return write(static_cast<const void*>(&value), static_cast<std::int32_t>(sizeof value));
    }

    std::unique_ptr<std::FILE, FILE_CLOSER> file_;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_OUTPUT_STREAM_H
