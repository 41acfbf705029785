#include "kvcore/string_buffer.h"

#include "kvcore/memory.h"

namespace KVCORE {
namespace {

std::size_t get_block_size(std::int32_t length) noexcept {
    return sizeof(STRING_BUFFER) + (static_cast<std::size_t>(length) + 1) * sizeof(char16_t);
}

}  // namespace

void* STRING_BUFFER::operator new(std::size_t, std::int32_t length) {
    return MEMORY_LIBC::allocate(get_block_size(length));
}

void STRING_BUFFER::operator delete(void* block) noexcept {
    MEMORY_LIBC::free(block);
}

void STRING_BUFFER::operator delete(void* block, std::int32_t) noexcept {
    MEMORY_LIBC::free(block);
}

STRING_BUFFER* STRING_BUFFER::resize(STRING_BUFFER* buffer, std::int32_t length) {
    length = clamp_length(length);
    void* const block = MEMORY_LIBC::reallocate(static_cast<void*>(buffer), get_block_size(length));
    STRING_BUFFER* const moved = static_cast<STRING_BUFFER*>(block);
    moved->set_length(length);
    moved->get_text()[length] = 0;
    return moved;
}

}  // namespace KVCORE
