// STRING_UTILITIES: the words and numbers that a user sees, in English.
//
// Results that are texts are buffers of the TEMP_STRINGS that the caller gives: they stay good for
// its next 15 requests. Texts are 8-bit. Wrong input gives an empty text or the digits; nothing is
// reported. A trailing `capitalise` asks for the first character in upper case. Main thread only.
#ifndef MODULES_GUI_STRING_UTILITIES_H
#define MODULES_GUI_STRING_UTILITIES_H

#include <cstdint>

class COLOUR;
class TEMP_STRINGS;

class STRING_UTILITIES {
public:
    // --- Plain text ---

    // As sprintf, cut to 4095 characters, in a buffer of a pool of its own.
    static char* get_formatted_text(const char* format, ...) __attribute__((format(printf, 1, 2)));
    // As sprintf behind the end of `to`, whose buffer must have the room. Null: nothing.
    static void sprintf_cat(char* to, const char* format, ...)
        __attribute__((format(printf, 2, 3)));
    // The first index at or after `from` (clamped to the text) that holds `c`, or the length.
    static std::int32_t find_char(const char* text, char c, std::int32_t from);
    static std::int32_t get_char_count(const char* text, char c);
    // Characters `from` to `to`, both included, `to` limited to the end. Empty when `from` is
    // negative, past the end or past `to`.
    static char* get_substring(const char* text, std::int32_t from, std::int32_t to,
                               TEMP_STRINGS& temp);
    // In place; the new length.
    static std::int32_t remove_char_occurence(char* text, char c);
    // Replaces each occurrence of `old_text` in place; the buffer must have the room.
    static void replace_string(char* text, const char* old_text, const char* replacement);
    // A light scrambling by a key: each character XOR the sum of the key's bytes, as "%02X ", for
    // at most 85 characters; and back, for at most 255.
    static char* get_encrypted_text(const char* text, const char* key, TEMP_STRINGS& temp);
    static char* get_decrypted_text(const char* text, const char* key, TEMP_STRINGS& temp);
    // A list of items split at "," or ";": stripped, without empty ones and repetitions, sorted
    // without regard to case, joined with ",". At most 51 items of at most 255 characters, and 255
    // characters in all; what is beyond that is left out.
    static char* get_sorted_item_list(const char* list, TEMP_STRINGS& temp);

    // --- Numbers ---

    // Rounds the magnitude to the step of its size, halves away from zero; reports the step.
    static std::int32_t get_rounded_number(std::int32_t value, std::int32_t& step);
    static std::int32_t get_rounded_cash(std::int32_t value);
    // Style 1: "1.5M", "250k", "1.5k". Other styles: thousands with commas.
    static char* get_formatted_numeric_text(std::int32_t value, signed char style,
                                            TEMP_STRINGS& temp);
    // The same behind the text box's tag for the image of a token, and behind a pound sign (0xA3).
    static char* get_tokens_text(std::int32_t value, signed char style, TEMP_STRINGS& temp);
    static char* get_cash_text(std::int32_t value, signed char style, TEMP_STRINGS& temp);
    // "1st", "22nd", "1,003rd"; 0 gives an empty text.
    static char* get_order_text(std::int32_t value, TEMP_STRINGS& temp);
    // Up to 99,999 in words if `words` is set, otherwise the digits, which aren't capitalised.
    static char* get_number_text(unsigned long long value, TEMP_STRINGS& temp,
                                 unsigned char capitalise, unsigned char words);
    static char* get_number_text(long long value, TEMP_STRINGS& temp, unsigned char capitalise,
                                 unsigned char words);
    // "Invisible" when the alpha is 0, else "%d,%d,%d" of red, green and blue.
    static char* get_colour_text(const COLOUR& colour, TEMP_STRINGS& temp);

    // --- Times ---

    // A duration in its largest unit: 1 days, 2 weeks, 3 months, 4 years. `unit` 0 picks one and
    // reports it; otherwise it says which to use. `numeric_one`: "1 week" for "a week".
    // `with_unit` 0: the count alone. `hours_below_a_day`: less than a day is told in hours.
    // Negative `days` give an empty text.
    static char* get_days_as_rounded_text(double days, signed char& unit, unsigned char numeric_one,
                                          TEMP_STRINGS& temp, unsigned char with_unit,
                                          unsigned char hours_below_a_day);
    // Whether two durations in days, `a` below `b`, would read alike in that form.
    static bool get_times_are_too_similar(std::int16_t a, std::int16_t b);
    // "3 days, 2 hours and 5 minutes"; below three days the hours run on.
    static char* get_seconds_time_text(std::int32_t seconds, TEMP_STRINGS& temp,
                                       unsigned char capitalise);
    // "a few moments ago", "about 15 minutes ago", "nearly 2 hours ago", "just over a week ago".
    static char* get_seconds_ago_text(std::int32_t seconds, TEMP_STRINGS& temp,
                                      unsigned char capitalise);
};

#endif  // MODULES_GUI_STRING_UTILITIES_H
