#include "platform/orln_string.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "kvcore/memory.h"
#include "platform/data_device.h"

std::int32_t ORLN_STRING::default_min_str_sz = 50;

namespace {

using MEMORY = KVCORE::MEMORY_LIBC;

// Longer text is cut: lengths, and the doubled comparison of two of them, stay in 32 bits.
constexpr std::size_t MAX_TEXT = static_cast<std::size_t>(1) << 30;

std::int32_t text_length(const char* text) {
    return text ? static_cast<std::int32_t>(::strnlen(text, MAX_TEXT)) : 0;
}

// A number as decimal text, without a heap allocation.
struct DECIMAL_TEXT {
    // The longest double has 309 digits before its point.
    char text[330];

    explicit DECIMAL_TEXT(std::int32_t n) { std::snprintf(text, sizeof text, "%" PRId32, n); }
    explicit DECIMAL_TEXT(std::uint32_t n) { std::snprintf(text, sizeof text, "%" PRIu32, n); }
    explicit DECIMAL_TEXT(std::int64_t n) { std::snprintf(text, sizeof text, "%" PRId64, n); }
    explicit DECIMAL_TEXT(std::uint64_t n) { std::snprintf(text, sizeof text, "%" PRIu64, n); }
    explicit DECIMAL_TEXT(double n) { std::snprintf(text, sizeof text, "%f", n); }
};

bool is_whitespace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

char to_lower_7bit(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// The letters of Latin-1 from 0xC0 on; "?" for what isn't a letter.
constexpr const char* LATIN_LETTERS[64] = {
    "A", "A", "A", "A", "A", "A", "AE", "C", "E", "E", "E", "E", "I", "I", "I",  "I",   // C0
    "D", "N", "O", "O", "O", "O", "O",  "?", "O", "U", "U", "U", "U", "Y", "TH", "ss",  // D0
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i",  "i",   // E0
    "d", "n", "o", "o", "o", "o", "o",  "?", "o", "u", "u", "u", "u", "y", "th", "y"};  // F0

// One or two plain characters for each byte; a terminator gives none.
class PLAIN_TEXT {
public:
    explicit PLAIN_TEXT(const char* text) : next_(text ? text : "") {}

    // The next plain character, or 0 at the end.
    char take() {
        if (*pending_) {
            return *pending_++;
        }
        const auto byte = static_cast<unsigned char>(*next_);
        if (byte == 0) {
            return 0;
        }
        ++next_;
        if (byte < 0x80) {
            return static_cast<char>(byte);
        }
        pending_ = byte < 0xC0 ? "?" : LATIN_LETTERS[byte - 0xC0];
        return *pending_++;
    }

private:
    const char* next_;
    const char* pending_ = "";
};

}  // namespace

ORLN_STRING::ORLN_STRING() = default;

ORLN_STRING::ORLN_STRING(const char* source) {
    set(source, text_length(source));
}

ORLN_STRING::ORLN_STRING(const ORLN_STRING& other) : DATA_DEVICE_CLIENT(other) {
    set(other.text, other.get_length());
}

ORLN_STRING::ORLN_STRING(ORLN_STRING&& other) noexcept
    : text(std::exchange(other.text, nullptr)),
      capacity(std::exchange(other.capacity, 0)),
      min_allocation(other.min_allocation) {
}

ORLN_STRING::~ORLN_STRING() {
    clear();
}

void ORLN_STRING::clear() {
    MEMORY::free(text);
    text = nullptr;
    capacity = 0;
}

std::int32_t ORLN_STRING::get_length() const {
    return text_length(text);
}

void ORLN_STRING::reserve(std::int32_t length) {
    if (length < capacity) {
        return;
    }
    const std::int32_t size = std::max(length + 1, min_allocation);
    text = static_cast<char*>(MEMORY::reallocate(text, static_cast<std::size_t>(size)));
    if (capacity == 0) {
        text[0] = '\0';
    }
    capacity = size;
}

void ORLN_STRING::set(const char* source, std::int32_t source_length) {
    if (source_length <= 0) {
        if (text) {
            text[0] = '\0';
        }
        return;
    }
    if (source_length < capacity) {
        // `source` may be part of this text.
        std::memmove(text, source, static_cast<std::size_t>(source_length));
        text[source_length] = '\0';
    } else {
        splice(0, get_length(), source, source_length);
    }
}

void ORLN_STRING::splice(std::int32_t first, std::int32_t removed, const char* source,
                         std::int32_t source_length) {
    const std::int32_t length = get_length();
    const std::int32_t tail = length - first - removed;
    source_length =
        std::min(source_length, static_cast<std::int32_t>(MAX_TEXT) - (length - removed));
    // The source may lie in this text, which moves: it is kept in that case only.
    std::string copy;
    if (text && source_length > 0 && source >= text && source < text + capacity) {
        copy.assign(source, static_cast<std::size_t>(source_length));
        source = copy.data();
    }
    reserve(length - removed + source_length);
    char* gap = text + first;
    std::memmove(gap + source_length, gap + removed, static_cast<std::size_t>(tail));
    if (source_length > 0) {
        std::memcpy(gap, source, static_cast<std::size_t>(source_length));
    }
    text[length - removed + source_length] = '\0';
}

ORLN_STRING& ORLN_STRING::operator=(const ORLN_STRING& other) {
    if (this != &other) {
        set(other.text, other.get_length());
    }
    return *this;
}

ORLN_STRING& ORLN_STRING::operator=(ORLN_STRING&& other) noexcept {
    std::swap(text, other.text);
    std::swap(capacity, other.capacity);
    std::swap(min_allocation, other.min_allocation);
    return *this;
}

ORLN_STRING& ORLN_STRING::operator=(const char* source) {
    set(source, text_length(source));
    return *this;
}

ORLN_STRING& ORLN_STRING::operator=(char character) {
    set(&character, character ? 1 : 0);
    return *this;
}

ORLN_STRING& ORLN_STRING::operator=(std::int32_t number) {
    return *this = DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator=(std::uint32_t number) {
    return *this = DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator=(std::int64_t number) {
    return *this = DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator=(std::uint64_t number) {
    return *this = DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator=(double number) {
    return *this = DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator+=(const ORLN_STRING& other) {
    splice(get_length(), 0, other.get_text(), other.get_length());
    return *this;
}

ORLN_STRING& ORLN_STRING::operator+=(const char* source) {
    splice(get_length(), 0, source, text_length(source));
    return *this;
}

ORLN_STRING& ORLN_STRING::operator+=(char character) {
    splice(get_length(), 0, &character, character ? 1 : 0);
    return *this;
}

ORLN_STRING& ORLN_STRING::operator+=(std::int32_t number) {
    return *this += DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator+=(std::uint32_t number) {
    return *this += DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator+=(std::int64_t number) {
    return *this += DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator+=(std::uint64_t number) {
    return *this += DECIMAL_TEXT(number).text;
}

ORLN_STRING& ORLN_STRING::operator+=(double number) {
    return *this += DECIMAL_TEXT(number).text;
}

bool ORLN_STRING::operator==(const ORLN_STRING& other) const {
    return std::strcmp(get_text(), other.get_text()) == 0;
}

bool ORLN_STRING::operator==(const char* other) const {
    return std::strcmp(get_text(), other ? other : "") == 0;
}

void ORLN_STRING::insert(const char* inserted, std::int32_t index) {
    splice(std::clamp(index, 0, get_length()), 0, inserted, text_length(inserted));
}

void ORLN_STRING::remove(std::int32_t first, std::int32_t last) {
    const std::int32_t length = get_length();
    first = std::max(first, 0);
    last = last == -1 ? length - 1 : std::min(last, length - 1);
    if (first <= last) {
        splice(first, last - first + 1, nullptr, 0);
    }
}

unsigned char ORLN_STRING::replace(const char* from, const char* to, std::int32_t start) {
    const std::int32_t place = find(from, start, true);
    if (place < 0) {
        return 0;
    }
    splice(place, text_length(from), to, text_length(to));
    return 1;
}

std::int32_t ORLN_STRING::find(const char* pattern, std::int32_t start, bool case_sensitive) const {
    const std::int32_t length = get_length();
    if (!pattern || !*pattern || start < 0 || start >= length) {
        return -1;
    }
    const char* from = text + start;
    if (case_sensitive) {
        const char* match = std::strstr(from, pattern);
        return match ? static_cast<std::int32_t>(match - text) : -1;
    }
    const char* match = ::strcasestr(from, pattern);
    return match ? static_cast<std::int32_t>(match - from) : -1;
}

ORLN_STRING ORLN_STRING::get(std::int32_t first, std::int32_t last) const {
    const std::int32_t length = get_length();
    first = std::max(first, 0);
    last = last == -1 ? length - 1 : std::min(last, length - 1);
    ORLN_STRING result;
    if (first <= last) {
        result.set(text + first, last - first + 1);
    }
    return result;
}

void ORLN_STRING::trim_start_whitespace() {
    std::int32_t count = 0;
    while (is_whitespace(get_text()[count])) {
        ++count;
    }
    if (count != 0) {
        remove(0, count - 1);
    }
}

void ORLN_STRING::trim_end_whitespace() {
    std::int32_t length = get_length();
    while (length > 0 && is_whitespace(text[length - 1])) {
        text[--length] = '\0';
    }
}

std::int32_t ORLN_STRING::compare_7bit(const ORLN_STRING& other, bool case_sensitive) const {
    return ::compare_7bit(get_text(), other.get_text(), case_sensitive);
}

unsigned char ORLN_STRING::get_from_data_device(const DATA_DEVICE& device) {
    clear();
    char* stored = nullptr;
    if (!device.read_dynamic_text(stored)) {
        return 0;
    }
    const std::unique_ptr<char[]> owned(stored);
    set(stored, text_length(stored));
    return 1;
}

unsigned char ORLN_STRING::put_to_data_device(DATA_DEVICE& device) const {
    return device.write_dynamic_text(text);
}

void convert_string_to_7bit(const char* text, char* out, std::int32_t size) {
    if (size <= 0) {
        return;
    }
    PLAIN_TEXT plain(text);
    std::int32_t length = 0;
    while (length < size - 1) {
        const char c = plain.take();
        if (c == 0) {
            break;
        }
        out[length++] = c;
    }
    out[length] = '\0';
}

std::int32_t compare_7bit(const char* a, const char* b, bool case_sensitive) {
    PLAIN_TEXT plain_a(a);
    PLAIN_TEXT plain_b(b);
    for (;;) {
        char x = plain_a.take();
        char y = plain_b.take();
        if (!case_sensitive) {
            x = to_lower_7bit(x);
            y = to_lower_7bit(y);
        }
        if (x != y || x == 0) {
            return x - y;
        }
    }
}
