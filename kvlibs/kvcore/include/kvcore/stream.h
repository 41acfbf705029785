// Streams of bytes.
#ifndef KVCORE_STREAM_H
#define KVCORE_STREAM_H

#include <cstdint>

#include "kvcore/reference_counter.h"
#include "kvcore/result.h"

namespace KVCORE {

// What every stream has. Positions and lengths are bytes. A stream is used by one thread at a time.
class STREAM : public REFERENCE_COUNTED<STREAM, BASE_REFERENCE_COUNTED_TRAITS> {
public:
    // Flags, of which the classes here know these two; the others are the maker's.
    static constexpr std::uint32_t CLOSE_ON_DESTRUCTION = 16;
    // Clears flag value 1.
    static constexpr std::uint32_t EXCLUSIVE = 256;

    explicit STREAM(std::uint32_t flags)
        : flags_((flags & EXCLUSIVE) != 0 ? flags & ~std::uint32_t{1} : flags) {}
    ~STREAM() override = default;

    // -1 if there is no length to tell.
    virtual std::int64_t get_length() const { return -1; }
    // -2 if there is no position to tell.
    virtual std::int64_t get_position() const { return -2; }
    // Counts from the start. 0 for success.
    virtual RESULT set_position(std::int64_t) const { return RESULT(1); }

    std::uint32_t get_flags() const { return flags_; }
    // What the last operation came to.
    RESULT get_last_result() const { return last_result_; }

protected:
    RESULT set_last_result(RESULT result) const {
        last_result_ = result;
        return result;
    }

private:
    const std::uint32_t flags_;
    mutable RESULT last_result_;
};

class INPUT_STREAM : public STREAM {
public:
    // The last result of a read that came to the end.
    static constexpr std::int32_t END_OF_STREAM = 0x736E6564;  // 'sned'

    using STREAM::STREAM;
    // Reads at most `count` bytes at the current position, and yields how many arrived. Fewer than
    // asked without a failure of the platform is END_OF_STREAM.
    virtual std::int64_t read_bytes(unsigned char* buffer, std::int64_t count) const = 0;
};

class OUTPUT_STREAM : public STREAM {
public:
    // The last result of a write that wasn't taken whole, though the platform named no failure.
    static constexpr std::int32_t SHORT_WRITE = 0x736E6572;  // 'sner'

    using STREAM::STREAM;
    // Writes at the current position, and yields how many bytes were taken.
    virtual std::int64_t write_bytes(const unsigned char* buffer, std::int64_t count) = 0;
};

}  // namespace KVCORE

#endif  // KVCORE_STREAM_H
