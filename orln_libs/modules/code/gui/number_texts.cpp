// The numbers and times of STRING_UTILITIES.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "modules/gui/string_utilities.h"
#include "temp_text.h"

namespace {

char* text_of(TEMP_STRINGS& temp, const std::string& text) {
    return format_temp_text(temp, "%s", text.c_str());
}

char* capitalised(char* text, unsigned char capitalise) {
    if (capitalise && *text >= 'a' && *text <= 'z') {
        *text = static_cast<char>(*text - 'a' + 'A');
    }
    return text;
}

std::int64_t magnitude(std::int32_t value) {
    return std::abs(std::int64_t{value});
}

// --- Rounding ---

struct ROUNDING {
    std::int64_t largest;  // magnitude
    std::int32_t step;
};

constexpr ROUNDING ROUNDINGS[] = {
    {9, 1},
    {99, 10},
    {999, 100},
    {2499, 250},
    {4999, 500},
    {9999, 1000},
    {29999, 2000},
    {99999, 5000},
    {249999, 10000},
    {999999, 25000},
    {2499999, 100000},
    {9999999, 250000},
    {24999999, 1000000},
    {99999999, 2500000},
    {INT64_MAX, 10000000},
};

// --- Numbers ---

// "%.2f" without trailing zeros and a trailing point.
std::string trimmed_fraction(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", value);
    std::string trimmed = text;
    trimmed.erase(trimmed.find_last_not_of('0') + 1);
    if (trimmed.back() == '.') {
        trimmed.pop_back();
    }
    return trimmed;
}

std::string short_form(std::int64_t value) {
    const auto number = static_cast<double>(value);
    if (value > 999999) {
        return trimmed_fraction(number / 1000000) + "M";
    }
    if (value > 99999) {
        return std::to_string((value + 500) / 1000) + "k";
    }
    return trimmed_fraction(number / 1000) + "k";
}

std::string with_commas(std::int64_t value) {
    std::string text = std::to_string(value);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, 1, ',');
    }
    return text;
}

std::string numeric_text(std::int32_t value, signed char style) {
    const std::int64_t size = magnitude(value);
    std::string text = style == 1 ? short_form(size) : with_commas(size);
    if (value < 0) {
        text.insert(0, 1, '-');
    }
    return text;
}

constexpr const char* UNITS[] = {"zero",    "one",     "two",       "three",    "four",
                                 "five",    "six",     "seven",     "eight",    "nine",
                                 "ten",     "eleven",  "twelve",    "thirteen", "fourteen",
                                 "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
constexpr const char* TENS[] = {"",      "",      "twenty",  "thirty", "forty",
                                "fifty", "sixty", "seventy", "eighty", "ninety"};

// The words of 0 to 99.
std::string small_number_words(unsigned value) {
    if (value < std::size(UNITS)) {
        return UNITS[value];
    }
    std::string words = TENS[value / 10];
    if (value % 10 != 0) {
        words.append("-").append(UNITS[value % 10]);
    }
    return words;
}

constexpr unsigned long long LARGEST_IN_WORDS = 99999;

std::string number_words(unsigned value) {
    const unsigned thousands = value / 1000;
    const unsigned hundreds = value % 1000 / 100;
    const unsigned rest = value % 100;
    if (value < 100) {
        return small_number_words(value);
    }
    std::string words;
    if (thousands != 0) {
        words.append(small_number_words(thousands)).append(" thousand");
    }
    if (hundreds != 0) {
        words.append(words.empty() ? "" : " ")
            .append(small_number_words(hundreds))
            .append(" hundred");
    }
    if (rest != 0) {
        words.append(" and ").append(small_number_words(rest));
    }
    return words;
}

// --- Durations in days ---

enum DAY_UNIT : signed char {
    UNIT_PICK = 0,
    UNIT_DAYS = 1,
    UNIT_WEEKS = 2,
    UNIT_MONTHS = 3,
    UNIT_YEARS = 4
};

struct UNIT_WORDS {
    const char* singular;
    const char* plural;
    const char* one;
};

constexpr UNIT_WORDS DAY_UNIT_WORDS[] = {
    {"", "", ""},  // no unit
    {"day", "days", "a day"},
    {"week", "weeks", "a week"},
    {"month", "months", "a month"},
    {"year", "years", "a year"},
};
constexpr UNIT_WORDS HOUR_WORDS = {"hour", "hours", "an hour"};

constexpr double UNIT_DAY_COUNTS[] = {1, 1, 7, 30, 365};

// A text never tells more units than this.
constexpr float MAX_COUNT = 2147483520.0f;

// Days are truncated, the larger units rounded.
std::int32_t count_units(double days, signed char unit) {
    const float count = std::min(static_cast<float>(days / UNIT_DAY_COUNTS[unit]), MAX_COUNT);
    const auto whole = static_cast<std::int32_t>(count);
    return unit != UNIT_DAYS && count - static_cast<float>(whole) >= 0.5f ? whole + 1 : whole;
}

signed char pick_unit(double days) {
    if (days >= 720) {
        return UNIT_YEARS;
    }
    return days >= 30 ? UNIT_MONTHS : days >= 7 ? UNIT_WEEKS : UNIT_DAYS;
}

// --- Durations in seconds ---

constexpr std::int32_t MINUTE = 60;
constexpr std::int32_t HOUR = 60 * MINUTE;
constexpr std::int32_t DAY = 24 * HOUR;
constexpr std::int32_t WEEK = 7 * DAY;
constexpr std::int32_t MONTH = 30 * DAY;

struct AGO_UNIT {
    std::int32_t below;  // seconds, 0 for no end
    std::int32_t unit;
    std::int32_t lead;
    const char* one;  // with its article
    const char* plural;
};

constexpr AGO_UNIT AGO_UNITS[] = {
    {DAY, HOUR, 2700, "an hour", "hours"},
    {WEEK, DAY, 64800, "a day", "days"},
    {MONTH, WEEK, 453600, "a week", "weeks"},
    {0, MONTH, 1944000, "a month", "months"},
};

// "%d hours" from two on, "one hour" for one.
std::string counted(std::int32_t count, const char* one, const char* plural) {
    return count == 1 ? one : std::to_string(count).append(" ").append(plural);
}

}  // namespace

std::int32_t STRING_UTILITIES::get_rounded_number(std::int32_t value, std::int32_t& step) {
    const std::int64_t size = magnitude(value);
    step =
        std::find_if(std::begin(ROUNDINGS), std::end(ROUNDINGS), [size](const ROUNDING& rounding) {
            return size <= rounding.largest;
        })->step;
    const std::int64_t rounded = step * ((size + step / 2) / step);
    // The largest magnitudes have no room for the step above them.
    const std::int64_t result =
        std::clamp<std::int64_t>(value < 0 ? -rounded : rounded, INT32_MIN, INT32_MAX);
    return static_cast<std::int32_t>(result);
}

std::int32_t STRING_UTILITIES::get_rounded_cash(std::int32_t value) {
    std::int32_t step = 0;
    return get_rounded_number(value, step);
}

char* STRING_UTILITIES::get_formatted_numeric_text(std::int32_t value, signed char style,
                                                   TEMP_STRINGS& temp) {
    return text_of(temp, numeric_text(value, style));
}

char* STRING_UTILITIES::get_tokens_text(std::int32_t value, signed char style, TEMP_STRINGS& temp) {
    return format_temp_text(temp, "<:qvl_token#> %s", numeric_text(value, style).c_str());
}

char* STRING_UTILITIES::get_cash_text(std::int32_t value, signed char style, TEMP_STRINGS& temp) {
    return format_temp_text(temp, "\xA3%s", numeric_text(value, style).c_str());
}

char* STRING_UTILITIES::get_order_text(std::int32_t value, TEMP_STRINGS& temp) {
    if (value == 0) {
        return empty_temp_text(temp);
    }
    constexpr const char* ENDINGS[] = {"th", "st", "nd", "rd"};
    const std::int32_t last = value % 10;
    const std::int32_t last_two = value % 100;
    const bool is_regular = (last_two >= 11 && last_two <= 13) || last < 0 || last > 3;
    const char* ending = ENDINGS[is_regular ? 0 : last];
    return format_temp_text(temp, "%s%s", numeric_text(value, 0).c_str(), ending);
}

char* STRING_UTILITIES::get_number_text(unsigned long long value, TEMP_STRINGS& temp,
                                        unsigned char capitalise, unsigned char words) {
    if (!words || value > LARGEST_IN_WORDS) {
        return format_temp_text(temp, "%llu", value);
    }
    return capitalised(text_of(temp, number_words(static_cast<unsigned>(value))), capitalise);
}

char* STRING_UTILITIES::get_number_text(long long value, TEMP_STRINGS& temp,
                                        unsigned char capitalise, unsigned char words) {
    if (value < 0) {
        return format_temp_text(temp, "%lld", value);
    }
    return get_number_text(static_cast<unsigned long long>(value), temp, capitalise, words);
}

char* STRING_UTILITIES::get_days_as_rounded_text(double days, signed char& unit,
                                                 unsigned char numeric_one, TEMP_STRINGS& temp,
                                                 unsigned char with_unit,
                                                 unsigned char hours_below_a_day) {
    // Written so that it is true for what isn't a number, too.
    if (!(days >= 0) || unit < UNIT_PICK || unit > UNIT_YEARS) {
        return empty_temp_text(temp);
    }
    const bool may_be_hours = unit == UNIT_PICK || unit == UNIT_DAYS;
    if (unit == UNIT_PICK) {
        unit = pick_unit(days);
    }
    UNIT_WORDS words = DAY_UNIT_WORDS[unit];
    std::int32_t count = count_units(days, unit);
    if (may_be_hours && days < 1 && hours_below_a_day) {
        words = HOUR_WORDS;
        count = static_cast<std::int32_t>(static_cast<float>(days * 24));
    }
    if (!with_unit) {
        return format_temp_text(temp, "%" PRId32, count);
    }
    if (count > 1) {
        return format_temp_text(temp, "%" PRId32 " %s", count, words.plural);
    }
    if (numeric_one) {
        return format_temp_text(temp, "%" PRId32 " %s", count, words.singular);
    }
    return format_temp_text(temp, "%s", words.one);
}

bool STRING_UTILITIES::get_times_are_too_similar(std::int16_t a, std::int16_t b) {
    if (a < 0 || b < 0) {
        return false;
    }
    if (b > 719 && a > 29) {
        return count_units(a, UNIT_MONTHS) == 12 && count_units(b, UNIT_YEARS) == 1;
    }
    if (b > 29 && a > 6) {
        return count_units(a, UNIT_WEEKS) == 4 && count_units(b, UNIT_MONTHS) == 1;
    }
    if (b > 6 && a < 7) {
        return a >= 6 && count_units(b, UNIT_WEEKS) == 1;
    }
    return b < 8 && a < 7 && b - a < 1;
}

char* STRING_UTILITIES::get_seconds_time_text(std::int32_t seconds, TEMP_STRINGS& temp,
                                              unsigned char capitalise) {
    std::int32_t rest = std::max(seconds, 0);
    const std::int32_t days = rest / DAY >= 3 ? rest / DAY : 0;
    rest -= days * DAY;
    const std::int32_t hours = rest / HOUR;
    const std::int32_t minutes = rest % HOUR / MINUTE;

    std::string parts[3];
    std::size_t count = 0;
    if (days != 0) {
        parts[count++] = counted(days, "", "days");
    }
    if (hours != 0) {
        parts[count++] = counted(hours, "one hour", "hours");
    }
    if (minutes != 0) {
        parts[count++] = counted(minutes, "one minute", "minutes");
    }
    std::string text = count == 0 ? "less than one minute" : parts[0];
    for (std::size_t i = 1; i < count; ++i) {
        text.append(i + 1 == count ? " and " : ", ").append(parts[i]);
    }
    return capitalised(text_of(temp, text), capitalise);
}

char* STRING_UTILITIES::get_seconds_ago_text(std::int32_t seconds, TEMP_STRINGS& temp,
                                             unsigned char capitalise) {
    if (seconds < MINUTE) {
        return capitalised(format_temp_text(temp, "a few moments ago"), capitalise);
    }
    if (seconds < HOUR) {
        const std::int32_t minutes = seconds / MINUTE;
        char* text = minutes < 2    ? format_temp_text(temp, "a minute ago")
                     : minutes < 10 ? format_temp_text(temp, "%" PRId32 " minutes ago", minutes)
                                    : format_temp_text(temp, "about %" PRId32 " minutes ago",
                                                       minutes - minutes % 5);
        return capitalised(text, capitalise);
    }
    const AGO_UNIT& unit =
        *std::find_if(std::begin(AGO_UNITS), std::end(AGO_UNITS),
                      [seconds](const AGO_UNIT& u) { return u.below == 0 || seconds < u.below; });
    const std::int32_t count = seconds / unit.unit;
    if (unit.unit == MONTH && count >= 6) {
        return capitalised(
            format_temp_text(temp, count >= 360 ? "never" : "just over 6 months ago"), capitalise);
    }
    // In 64 bits, because the look-ahead may pass the end of 32.
    const auto ahead = static_cast<std::int32_t>((std::int64_t{seconds} + unit.lead) / unit.unit);
    char* text = ahead > count
                     ? format_temp_text(temp, "nearly %" PRId32 " %s ago", ahead, unit.plural)
                     : format_temp_text(temp, "just over %s ago",
                                        counted(count, unit.one, unit.plural).c_str());
    return capitalised(text, capitalise);
}
