#include "platform/temp_strings.h"

#include "kvcore/memory.h"

TEMP_STRINGS::~TEMP_STRINGS() {
    for (char* buffer : heap) {
        KVCORE::MEMORY_LIBC::free(buffer);
    }
}

char* TEMP_STRINGS::get(std::int32_t size) {
    if (size < 1) {
        return nullptr;
    }
    char* buffer;
    if (size <= BUFFER_SIZE) {
        buffer = buffers[next_buffer];
        next_buffer = static_cast<unsigned char>((next_buffer + 1) % RING_SIZE);
    } else {
        buffer = static_cast<char*>(
            KVCORE::MEMORY_LIBC::reallocate(heap[next_heap], static_cast<std::size_t>(size)));
        if (!buffer) {
            return nullptr;
        }
        heap[next_heap] = buffer;
        next_heap = static_cast<unsigned char>((next_heap + 1) % RING_SIZE);
    }
    buffer[0] = '\0';
    return buffer;
}
