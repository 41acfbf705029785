#include "platform/text_tools.h"

#include <algorithm>
#include <cstring>

#include "platform/debug_stream.h"

namespace {

constexpr std::size_t P_STRING_LIMIT = 255;

// The 26 letters only, whatever the locale.
int lower_case(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

}  // namespace

std::int32_t get_unique_id() {
    static std::uint32_t last_id = 0;
    return static_cast<std::int32_t>(++last_id);
}

int strcmpi(const char* a, const char* b) {
    if (!a || !b) {
        return (a != nullptr) - (b != nullptr);
    }
    for (;; ++a, ++b) {
        const int left = lower_case(*a);
        const int right = lower_case(*b);
        if (left != right) {
            return left < right ? -1 : 1;
        }
        if (left == 0) {
            return 0;
        }
    }
}

unsigned char* C_TO_P_STR(const char* text) {
    static unsigned char buffer[P_STRING_LIMIT + 1];
    return C_TO_P_STR_BUF(text, buffer, sizeof buffer);
}

unsigned char* C_TO_P_STR_BUF(const char* text, unsigned char* buffer, std::int32_t size) {
    if (!buffer || size < 1) {
        return buffer;
    }
    std::size_t length = text ? std::strlen(text) : 0;
    if (length > P_STRING_LIMIT) {
        if (platform_debug_stream.flags != 0) {
            platform_debug_stream.printf("*** ERROR *** - string too big for pascal string (%s)\n",
                                         text);
        }
        length = P_STRING_LIMIT;
    }
    length = std::min(length, static_cast<std::size_t>(size) - 1);
    buffer[0] = static_cast<unsigned char>(length);
    if (length != 0) {
        std::memcpy(buffer + 1, text, length);
    }
    return buffer;
}

char* P_TO_C_STR(const unsigned char* text) {
    static char buffer[P_STRING_LIMIT + 1];
    return P_TO_C_STR(text, buffer, sizeof buffer);
}

char* P_TO_C_STR(const unsigned char* text, char* buffer, std::int32_t size) {
    if (!buffer || size < 1) {
        return buffer;
    }
    const std::size_t length =
        std::min(text ? std::size_t{text[0]} : 0, static_cast<std::size_t>(size) - 1);
    if (length != 0) {
        std::memcpy(buffer, text + 1, length);
    }
    buffer[length] = '\0';
    return buffer;
}
