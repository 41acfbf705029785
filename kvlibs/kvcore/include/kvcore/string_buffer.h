// The shared text of a STRING: one heap block of a header and 16-bit units.
#ifndef KVCORE_STRING_BUFFER_H
#define KVCORE_STRING_BUFFER_H

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "kvcore/reference_counter.h"

namespace KVCORE {

// A counted, zero-terminated text of up to MAX_LENGTH units:
//
//     4 bytes   reference count, atomic
//     1 byte    marker, always 1
//     3 bytes   length in units
//     ...       the units and a zero
//
// Marker and length share one word whose low byte is the marker. A STRING points at the marker, and
// tells by it that it holds a buffer and no borrowed text. The block comes from the core allocator
// and may have more room than its length. A new buffer has the count 0 and belongs to the first
// REFERENCE_COUNTER that takes it.
class STRING_BUFFER {
public:
    static constexpr std::int32_t MAX_LENGTH = (1 << 24) - 1;
    static constexpr char MARKER = 1;

    // A buffer of `length` units, cut at MAX_LENGTH, all of them still to be written; the
    // terminator is in place.
    static REFERENCE_COUNTER<STRING_BUFFER> create(std::int32_t length) {
        const std::int32_t kept = clamp_length(length);
        return REFERENCE_COUNTER<STRING_BUFFER>(new (kept) STRING_BUFFER(kept));
    }
    // Gives a buffer that has exactly one holder room for `length` units. The text stays as far as
    // it fits, the length becomes the new one. The block may move: yields the new place, which
    // takes that of the old one.
    static STRING_BUFFER* resize(STRING_BUFFER* buffer, std::int32_t length);

    // A length as a buffer can have it: from 0 to MAX_LENGTH.
    static constexpr std::int32_t clamp_length(std::int64_t length) noexcept {
        return length < 0            ? 0
               : length > MAX_LENGTH ? MAX_LENGTH
                                     : static_cast<std::int32_t>(length);
    }

    // The buffer to whose marker a string points.
    static STRING_BUFFER* from_marker(const char* marker) noexcept {
        return reinterpret_cast<STRING_BUFFER*>(const_cast<char*>(marker) -
                                                offsetof(STRING_BUFFER, length_and_marker));
    }
    const char* get_marker() const noexcept {
        return reinterpret_cast<const char*>(&length_and_marker);
    }

    std::int32_t get_length() const noexcept {
        return static_cast<std::int32_t>(length_and_marker >> 8);
    }
    // Writes length and marker in one step; the text is left alone. `length` is within the room.
    void set_length(std::int32_t length) noexcept {
        length_and_marker = (static_cast<std::uint32_t>(length) << 8) | MARKER;
    }

    char16_t* get_text() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
    const char16_t* get_text() const noexcept {
        return reinterpret_cast<const char16_t*>(this + 1);
    }

    void add_reference() const noexcept {
        std::atomic_ref<std::uint32_t>(reference_count).fetch_add(1, std::memory_order_relaxed);
    }
    void release_reference() const noexcept {
        // Sole holders need no locked instruction: nobody else can come by a reference.
        std::atomic_ref<std::uint32_t> count(reference_count);
        if (count.load(std::memory_order_acquire) == 1 ||
            count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }
    std::int32_t get_reference_count() const noexcept {
        return static_cast<std::int32_t>(
            std::atomic_ref<std::uint32_t>(reference_count).load(std::memory_order_acquire));
    }

    // Room for the header, `length` units and the terminator.
    static void* operator new(std::size_t size, std::int32_t length);
    static void operator delete(void* block) noexcept;
    static void operator delete(void* block, std::int32_t length) noexcept;

    STRING_BUFFER(const STRING_BUFFER&) = delete;
    STRING_BUFFER& operator=(const STRING_BUFFER&) = delete;

private:
    explicit STRING_BUFFER(std::int32_t length) noexcept {
        set_length(length);
        get_text()[length] = 0;
    }

    mutable std::uint32_t reference_count = 0;
    std::uint32_t length_and_marker;
};

static_assert(sizeof(STRING_BUFFER) == 8, "the text follows the two words of the header");
static_assert(std::endian::native == std::endian::little,
              "the marker is the byte at the address of its word");

}  // namespace KVCORE

#endif  // KVCORE_STRING_BUFFER_H
