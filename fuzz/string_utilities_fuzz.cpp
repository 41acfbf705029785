// The text operations of the toolkit on texts and numbers from outside: names, lists and messages
// that the server or a file brought along.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "modules/gui/parameter.h"
#include "modules/gui/string_utilities.h"
#include "platform/temp_strings.h"

namespace {

using TEXTS = STRING_UTILITIES;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// Every result ends within its buffer.
void require_text(const char* text, std::size_t limit = 255) {
    require(text && ::strnlen(text, limit + 1) <= limit);
}

void check_numbers(std::int32_t number, TEMP_STRINGS& temp) {
    const auto style = static_cast<signed char>(number & 3);
    require_text(TEXTS::get_cash_text(number, style, temp));
    require_text(TEXTS::get_order_text(number, temp));
    require_text(TEXTS::get_seconds_time_text(number, temp, 1));
    require_text(TEXTS::get_seconds_ago_text(number, temp, 1));
    require_text(TEXTS::get_number_text(static_cast<long long>(number), temp, 1, 1));
    std::int32_t step = 0;
    const std::int32_t rounded = TEXTS::get_rounded_number(number, step);
    require(std::llabs(std::int64_t{rounded} - number) <= (step + 1) / 2);
    signed char unit = static_cast<signed char>(number % 7);
    require_text(TEXTS::get_days_as_rounded_text(number / 16.0, unit, 0, temp, 1, 1));
    TEXTS::get_times_are_too_similar(static_cast<std::int16_t>(number),
                                     static_cast<std::int16_t>(number >> 16));
}

void check_text(const std::string& text, std::int32_t number, TEMP_STRINGS& temp) {
    const char* begin = text.c_str();
    const char character = text.empty() ? 'x' : text.front();
    const std::int32_t found = TEXTS::find_char(begin, character, number);
    require(found >= 0 && static_cast<std::size_t>(found) <= text.size());
    require_text(TEXTS::get_substring(begin, number % 64, number / 64, temp), text.size());
    require_text(TEXTS::get_sorted_item_list(begin, temp));
    require_text(TEXTS::get_decrypted_text(begin, begin, temp));
    const std::string scrambled = TEXTS::get_encrypted_text(begin, "key", temp);
    require(text.substr(0, 85) == TEXTS::get_decrypted_text(scrambled.c_str(), "key", temp));

    std::vector<char> buffer(text.size() * 3 + 1);
    std::copy(text.begin(), text.end(), buffer.begin());
    const std::string one(1, character);
    TEXTS::replace_string(buffer.data(), one.c_str(), "abc");
    require(std::strlen(buffer.data()) ==
            text.size() + 2 * static_cast<std::size_t>(TEXTS::get_char_count(begin, character)));
    TEXTS::remove_char_occurence(buffer.data(), 'a');
    require(TEXTS::get_char_count(buffer.data(), 'a') == 0);
}

void check_parameter(const std::string& text, std::int32_t number) {
    for (std::int32_t type = 0; type < 7; ++type) {
        PARAMETER value(type);
        value.set(value.max, 100);
        value.set(value.value, text.c_str());
        if (type < PARAMETER::TYPE_STRING) {
            require(value.get_double(value.value) <= 100);
        }
        value.set(value.value, static_cast<double>(number) * 1e6);
        const PARAMETER copy = value;
        char form[16];
        copy.get_str(copy.value, form, sizeof form);
        require_text(form, sizeof form - 1);
        copy.get_long(copy.value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4 || size > 4096) {
        return 0;
    }
    std::int32_t number = 0;
    std::memcpy(&number, data, sizeof number);
    // Texts end at their first 0, as everywhere in the system.
    const char* begin = reinterpret_cast<const char*>(data) + 4;
    const std::string text(begin, ::strnlen(begin, size - 4));
    static TEMP_STRINGS temp;
    check_numbers(number, temp);
    check_text(text, number, temp);
    check_parameter(text, number);
    return 0;
}
