// Binary reading for the 3D libraries.
#ifndef KVMIGRATION_INPUT_STREAM_H
#define KVMIGRATION_INPUT_STREAM_H

#include <cstdint>
#include <cstdio>
#include <memory>

#include "kvmigration/string.h"

namespace KVMIGRATION {

// A source of little-endian values. Every read yields whether all its bytes were there; a read that
// comes short leaves the rest of its target as it was, and the reader at the end. So a loader may
// read on and test the last result, but it believes no count before it has compared it with
// get_remaining(). One thread at a time.
class BASIC_INPUT_STREAM {
public:
    // Stored strings are shorter than this.
    static constexpr std::int32_t STRING_LIMIT = 1024;

    explicit BASIC_INPUT_STREAM(STRING path) : path_(std::move(path)) {}
    virtual ~BASIC_INPUT_STREAM() = default;
    BASIC_INPUT_STREAM(const BASIC_INPUT_STREAM&) = delete;
    BASIC_INPUT_STREAM& operator=(const BASIC_INPUT_STREAM&) = delete;

    // One byte; any value but 0 is true.
    virtual bool read(bool& value) = 0;
    virtual bool read(char& value) = 0;
    virtual bool read(char16_t& value) = 0;
    virtual bool read(unsigned char& value) = 0;
    virtual bool read(std::int16_t& value) = 0;
    virtual bool read(std::uint16_t& value) = 0;
    virtual bool read(std::int32_t& value) = 0;
    virtual bool read(std::uint32_t& value) = 0;
    virtual bool read(float& value) = 0;
    virtual bool read(double& value) = 0;
    virtual bool read(std::int64_t& value) = 0;
    virtual bool read(std::uint64_t& value) = 0;
    // A block of bytes. A negative size reads nothing and is a failure.
    virtual bool read(void* buffer, std::int32_t size) = 0;
    // The next value, without moving on.
    virtual bool peek(std::uint32_t& value) = 0;
    // How many bytes are left; 0 for a stream that isn't open.
    virtual std::int64_t get_remaining() const = 0;

    // A 32-bit length and that many bytes; the string ends at the first zero among them. A length
    // that is negative, STRING_LIMIT or more, or beyond what is left means a damaged source: the
    // string is empty, the result false, and the stream is taken to its end.
    bool read_string(STRING& text);

    const STRING& get_path() const { return path_; }

protected:
    // Takes the stream to its end, so that nothing more is read.
    virtual void go_to_end() = 0;

private:
    STRING path_;
};

// Reads a file. A stream whose file couldn't be opened reads nothing: callers test with
// file_exists or is_open.
class INPUT_STREAM final : public BASIC_INPUT_STREAM {
public:
    // Opens the file for reading, and notes its length.
    explicit INPUT_STREAM(const STRING& path);

    bool is_open() const { return file_ != nullptr; }
    std::int64_t get_length() const { return length_; }
    // -1 for a stream that isn't open.
    std::int64_t get_position() const;

    bool read(bool& value) override;
    bool read(char& value) override { return read_value(value); }
    bool read(char16_t& value) override { return read_value(value); }
    bool read(unsigned char& value) override { return read_value(value); }
    bool read(std::int16_t& value) override { return read_value(value); }
    bool read(std::uint16_t& value) override { return read_value(value); }
    bool read(std::int32_t& value) override { return read_value(value); }
    bool read(std::uint32_t& value) override { return read_value(value); }
    bool read(float& value) override { return read_value(value); }
    bool read(double& value) override { return read_value(value); }
    bool read(std::int64_t& value) override { return read_value(value); }
    bool read(std::uint64_t& value) override { return read_value(value); }
    bool read(void* buffer, std::int32_t size) override;
    bool peek(std::uint32_t& value) override;
    std::int64_t get_remaining() const override;

protected:
    void go_to_end() override;

private:
    struct FILE_CLOSER {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    template <typename T>
    bool read_value(T& value) {
        return read(static_cast<void*>(&value), static_cast<std::int32_t>(sizeof value));
    }

    std::unique_ptr<std::FILE, FILE_CLOSER> file_;
    std::int64_t length_ = 0;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_INPUT_STREAM_H
