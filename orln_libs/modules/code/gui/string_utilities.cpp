#include "modules/gui/string_utilities.h"

#include <strings.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/colour.h"
#include "temp_text.h"

namespace {

constexpr std::int32_t FORMATTED_SIZE = 4096;
constexpr std::size_t MAX_ENCRYPTED = 85;   // characters, three digits each in 255
constexpr std::size_t MAX_DECRYPTED = 255;  // characters
constexpr std::size_t MAX_LIST_ITEMS = 51;
constexpr std::size_t MAX_LIST_TEXT = 255;  // characters of an item, and of the whole

// The sum of the key's bytes, modulo 256.
unsigned char sum_of_key(const char* key) {
    unsigned sum = 0;
    for (; *key; ++key) {
        sum += static_cast<unsigned char>(*key);
    }
    return static_cast<unsigned char>(sum);
}

}  // namespace

char* STRING_UTILITIES::get_formatted_text(const char* format, ...) {
    static TEMP_STRINGS pool;
    char* text = pool.get(FORMATTED_SIZE);
    if (format) {
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, FORMATTED_SIZE, format, arguments);
        va_end(arguments);
    }
    return text;
}

void STRING_UTILITIES::sprintf_cat(char* to, const char* format, ...) {
    if (!to || !format) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::vsprintf(to + std::strlen(to), format, arguments);
    va_end(arguments);
}

std::int32_t STRING_UTILITIES::find_char(const char* text, char c, std::int32_t from) {
    if (!text) {
        return 0;
    }
    const auto length = static_cast<std::int32_t>(std::strlen(text));
    from = std::clamp(from, 0, length);
    const void* found = std::memchr(text + from, c, static_cast<std::size_t>(length - from));
    return found ? static_cast<std::int32_t>(static_cast<const char*>(found) - text) : length;
}

std::int32_t STRING_UTILITIES::get_char_count(const char* text, char c) {
    return text ? static_cast<std::int32_t>(std::count(text, text + std::strlen(text), c)) : 0;
}

char* STRING_UTILITIES::get_substring(const char* text, std::int32_t from, std::int32_t to,
                                      TEMP_STRINGS& temp) {
    const auto length = text ? static_cast<std::int32_t>(std::strlen(text)) : 0;
    to = std::min(to, length - 1);
    if (from < 0 || from > to) {
        return empty_temp_text(temp);
    }
    const std::int32_t count = to - from + 1;
    char* result = temp.get(count + 1);
    if (result) {
        std::memcpy(result, text + from, static_cast<std::size_t>(count));
        result[count] = '\0';
    }
    return result;
}

std::int32_t STRING_UTILITIES::remove_char_occurence(char* text, char c) {
    if (!text) {
        return 0;
    }
    char* end = std::remove(text, text + std::strlen(text), c);
    *end = '\0';
    return static_cast<std::int32_t>(end - text);
}

void STRING_UTILITIES::replace_string(char* text, const char* old_text, const char* replacement) {
    if (!text || !old_text || !*old_text || !replacement) {
        return;
    }
    const std::size_t old_size = std::strlen(old_text);
    const std::size_t new_size = std::strlen(replacement);
    for (char* at = std::strstr(text, old_text); at; at = std::strstr(at + new_size, old_text)) {
        std::memmove(at + new_size, at + old_size, std::strlen(at + old_size) + 1);
        std::memcpy(at, replacement, new_size);
    }
}

char* STRING_UTILITIES::get_encrypted_text(const char* text, const char* key, TEMP_STRINGS& temp) {
    char* result = empty_temp_text(temp);
    if (!text || !key) {
        return result;
    }
    const unsigned char mask = sum_of_key(key);
    char* at = result;
    for (std::size_t i = 0; text[i] && i < MAX_ENCRYPTED; ++i) {
        const unsigned scrambled = static_cast<unsigned char>(text[i]) ^ unsigned { mask };
        at += std::snprintf(at, 4, "%02X ", scrambled);
    }
    return result;
}

char* STRING_UTILITIES::get_decrypted_text(const char* text, const char* key, TEMP_STRINGS& temp) {
    char* result = empty_temp_text(temp);
    if (!text || !key) {
        return result;
    }
    const unsigned char mask = sum_of_key(key);
    const std::size_t length = std::strlen(text);
    std::size_t count = 0;
    for (std::size_t at = 0; at < length && count < MAX_DECRYPTED; at += 3) {
        unsigned long value = 0;
        if (std::sscanf(text + at, "%lX", &value) != 1) {
            break;
        }
        result[count++] = static_cast<char>(static_cast<unsigned char>(value) ^ mask);
    }
    result[count] = '\0';
    return result;
}

char* STRING_UTILITIES::get_sorted_item_list(const char* list, TEMP_STRINGS& temp) {
    char* result = empty_temp_text(temp);
    if (!list) {
        return result;
    }
    const auto is_blank = [](char c) { return c >= 1 && c <= 32; };
    std::vector<std::string> items;
    for (const char* at = list; items.size() < MAX_LIST_ITEMS;) {
        const char* end = at + std::strcspn(at, ",;");
        const char* first = std::find_if_not(at, end, is_blank);
        const char* last = end;
        while (last != first && is_blank(last[-1])) {
            --last;
        }
        if (first != last) {
            items.emplace_back(first, std::min(last, first + MAX_LIST_TEXT));
        }
        if (!*end) {
            break;
        }
        at = end + 1;
    }
    // A selection sort; the one that stood first stays first among its equals.
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::size_t least = i;
        for (std::size_t j = i + 1; j < items.size(); ++j) {
            if (::strcasecmp(items[j].c_str(), items[least].c_str()) < 0) {
                least = j;
            }
        }
        const auto begin = items.begin() + static_cast<std::ptrdiff_t>(i);
        const auto found = items.begin() + static_cast<std::ptrdiff_t>(least);
        std::rotate(begin, found, found + 1);
    }
    std::size_t size = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i != 0 && ::strcasecmp(items[i].c_str(), items[i - 1].c_str()) == 0) {
            continue;
        }
        const std::size_t needed = items[i].size() + (size != 0 ? 1 : 0);
        if (size + needed > MAX_LIST_TEXT) {
            break;
        }
        if (size != 0) {
            result[size++] = ',';
        }
        std::memcpy(result + size, items[i].c_str(), items[i].size() + 1);
        size += items[i].size();
    }
    return result;
}

char* STRING_UTILITIES::get_colour_text(const COLOUR& colour, TEMP_STRINGS& temp) {
    if (colour.alpha() == 0) {
        return format_temp_text(temp, "Invisible");
    }
    return format_temp_text(temp, "%d,%d,%d", colour.red(), colour.green(), colour.blue());
}
