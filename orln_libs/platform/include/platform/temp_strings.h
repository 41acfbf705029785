// TEMP_STRINGS: a ring of scratch buffers for functions that return text.
#ifndef PLATFORM_TEMP_STRINGS_H
#define PLATFORM_TEMP_STRINGS_H

#include <cstdint>

// Two rings of 16 buffers: small ones inside the object, large ones on the heap. A buffer stays
// good for the next 15 requests of its kind, so nobody frees it. Not for two threads at one time.
class TEMP_STRINGS {
public:
    static constexpr int RING_SIZE = 16;
    static constexpr std::int32_t BUFFER_SIZE = 4096;

    TEMP_STRINGS() = default;
    ~TEMP_STRINGS();
    TEMP_STRINGS(const TEMP_STRINGS&) = delete;
    TEMP_STRINGS& operator=(const TEMP_STRINGS&) = delete;

    // A writable buffer of at least `size` bytes whose first byte is 0. Null for a size below 1.
    char* get(std::int32_t size);

private:
    char* heap[RING_SIZE] = {};
    unsigned char next_heap = 0;
    char buffers[RING_SIZE][BUFFER_SIZE];
    unsigned char next_buffer = 0;
};

#endif  // PLATFORM_TEMP_STRINGS_H
