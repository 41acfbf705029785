#include "kvcore/memory.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "kvcore/debugger.h"
#include "kvcore/log_channel.h"
#include "kvcore/process.h"

namespace KVCORE {

LOG_CHANNEL MEMORY_CHANNEL("MEMORY_CHANNEL");

namespace {

std::atomic<MEMORY_HANDLER*> installed_handler{nullptr};

}  // namespace

MEMORY_HANDLER* MEMORY_BASE::set_memory_handler(MEMORY_HANDLER* handler) noexcept {
    return installed_handler.exchange(handler);
}

std::int32_t MEMORY_BASE::validate_ptr(const void*, std::size_t) noexcept {
    return 0;
}

void MEMORY_BASE::request_failed(std::size_t size, std::int32_t attempt) {
    MEMORY_HANDLER* const handler = installed_handler.load();
    if (handler && attempt < ATTEMPT_LIMIT) {
        handler->handle_out_of_memory(size, attempt);
        return;
    }
    DEBUGGER::print("a memory allocation has failed\n");
    PROCESS_LIBC::abort(PROCESS_LIBC::make_code('o', 'm', 'e', 'm'));
}

void* MEMORY_LIBC::allocate(std::size_t size, std::uint32_t flags) {
    for (std::int32_t attempt = 1;; ++attempt) {
        void* const block = (flags & CLEAR) ? std::calloc(1, size) : std::malloc(size);
        if (block || size == 0) {
            return block;
        }
        request_failed(size, attempt);
    }
}

void* MEMORY_LIBC::reallocate(void* pointer, std::size_t size, std::uint32_t flags) {
    if (size == 0) {
        free(pointer);
        return nullptr;
    }
    for (std::int32_t attempt = 1;; ++attempt) {
        if (void* const block = std::realloc(pointer, size)) {
            if (flags & CLEAR) {
                clear(block, size);
            }
            return block;
        }
        request_failed(size, attempt);
    }
}

void MEMORY_LIBC::free(void* pointer, std::uint32_t) noexcept {
    std::free(pointer);
}

void MEMORY_LIBC::copy(void* target, const void* source, std::size_t size) noexcept {
    if (size != 0) {
        std::memcpy(target, source, size);
    }
}

void MEMORY_LIBC::copy_overlapped(void* target, const void* source, std::size_t size) noexcept {
    if (size != 0) {
        std::memmove(target, source, size);
    }
}

void MEMORY_LIBC::clear(void* pointer, std::size_t size) noexcept {
    set(pointer, 0, size);
}

void MEMORY_LIBC::set(void* pointer, unsigned char value, std::size_t size) noexcept {
    if (size != 0) {
        std::memset(pointer, value, size);
    }
}

int MEMORY_LIBC::compare(const void* a, const void* b, std::size_t size) noexcept {
    return size == 0 ? 0 : std::memcmp(a, b, size);
}

}  // namespace KVCORE
