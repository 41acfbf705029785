// The core allocator. It has one decision of its own: an allocation doesn't fail back to the
// caller.
#ifndef KVCORE_MEMORY_H
#define KVCORE_MEMORY_H

#include <cstddef>
#include <cstdint>

namespace KVCORE {

class LOG_CHANNEL;

// For what is to be told of the core allocator. Disabled, and silent in this build: an allocation
// that fails for good speaks through the debugger, which needs no memory.
extern LOG_CHANNEL MEMORY_CHANNEL;

// Whoever can give memory back when the process runs out of it.
class MEMORY_HANDLER {
public:
    virtual ~MEMORY_HANDLER() = default;

    // A request for `size` bytes failed; it is tried again when this returns. `attempt` counts from
    // 1 for each request. Runs on the thread whose request failed. An implementation must not
    // allocate through MEMORY_LIBC.
    virtual void handle_out_of_memory(std::size_t size, std::int32_t attempt) = 0;
};

// The services that don't depend on where memory comes from.
class MEMORY_BASE {
public:
    // The failure of one request with this number is the last: the handler was asked for help with
    // all those before.
    static constexpr std::int32_t ATTEMPT_LIMIT = 32;

    // Installs the one handler, or none with null, and yields the one that it replaces. The caller
    // keeps ownership of both. Any thread.
    static MEMORY_HANDLER* set_memory_handler(MEMORY_HANDLER* handler) noexcept;

    // 0 always: this build makes no check.
    static std::int32_t validate_ptr(const void* pointer, std::size_t size) noexcept;

protected:
    // Asks the handler for help with a request that failed, `attempt` being the number of this
    // failure. Returns if there is sense in trying again, stops the process otherwise.
    static void request_failed(std::size_t size, std::int32_t attempt);
};

// Memory from the C library. Every operation may be called on any thread.
class MEMORY_LIBC : public MEMORY_BASE {
public:
    // Flag of allocate and reallocate: the block is filled with zero.
    static constexpr std::uint32_t CLEAR = 1;

    // A block of `size` bytes, aligned for any type. Never null for a size above 0: a request that
    // fails goes to the memory handler up to 31 times, then the process stops with 'omem'.
    static void* allocate(std::size_t size, std::uint32_t flags = 0);

    // Moves a block of allocate, or null, to one of `size` bytes, and keeps the contents as far as
    // they fit. Size 0 frees the block and yields null. With CLEAR the whole block is zero
    // afterwards, old contents included. Failures as in allocate.
    static void* reallocate(void* pointer, std::size_t size, std::uint32_t flags = 0);

    // Gives a block back; null does nothing. The flags have no effect.
    static void free(void* pointer, std::uint32_t flags = 0) noexcept;

    // The ranges of copy may not overlap, those of copy_overlapped may. Null is legal with size 0.
    static void copy(void* target, const void* source, std::size_t size) noexcept;
    static void copy_overlapped(void* target, const void* source, std::size_t size) noexcept;
    static void clear(void* pointer, std::size_t size) noexcept;
    static void set(void* pointer, unsigned char value, std::size_t size) noexcept;
    // Negative, 0 or positive by the first byte that differs, bytes being unsigned.
    static int compare(const void* a, const void* b, std::size_t size) noexcept;
};

}  // namespace KVCORE

#endif  // KVCORE_MEMORY_H
