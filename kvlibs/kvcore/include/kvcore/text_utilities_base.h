// The portable algorithms on text: searching, copying, hashing, for 8-bit and 16-bit units in all
// combinations. The lowest of the four layers of TEXT_UTILITIES.
//
// Every operation that takes a text and a length accepts the length -1, which means up to the
// terminator. Narrowing keeps the low byte of a unit and widening zero-extends a byte. There is no
// surrogate handling: a character is one 16-bit unit. Searches yield the index of the match, and
// the length of the text when there is none, so that `while (i < length)` ends by itself. Forward
// searches begin at `start` (below 0 counts as 0), reverse searches begin at `start` and go down
// (below 0 counts as the last unit); a start at or beyond the end finds nothing.
#ifndef KVCORE_TEXT_UTILITIES_BASE_H
#define KVCORE_TEXT_UTILITIES_BASE_H

#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

namespace KVCORE {

// Whether an operation on text copies it into memory of its own, or keeps the pointer, whose text
// the caller then keeps alive and unchanged.
enum class COPY_MODE : std::uint8_t { COPY = 0, KEEP = 1 };

// Whether upper and lower case differ.
enum class CASE_MODE : std::uint8_t { SENSITIVE = 0, INSENSITIVE = 1 };

template <typename T>
concept TEXT_UNIT = std::same_as<T, char> || std::same_as<T, char16_t>;

class TEXT_UTILITIES_BASE {
public:
    static constexpr char16_t widen(char unit) noexcept { return static_cast<unsigned char>(unit); }
    static constexpr char16_t widen(char16_t unit) noexcept { return unit; }

    // The length of a zero-terminated text, at most 2^31 - 1. A null text has none.
    template <TEXT_UNIT C>
    static constexpr std::int32_t get_text_length(const C* text) noexcept {
        if (!text) {
            return 0;
        }
        const std::size_t length = std::char_traits<C>::length(text);
        constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
        return static_cast<std::int32_t>(length < limit ? length : limit);
    }

    // The length itself, or for -1 (and any other negative value) that of the terminated text.
    template <TEXT_UNIT C>
    static constexpr std::int32_t resolve_length(const C* text, std::int32_t length) noexcept {
        return !text ? 0 : length < 0 ? get_text_length(text) : length;
    }

    // Makes the text empty: the terminator goes to its first place.
    template <TEXT_UNIT C>
    static void clear_text(C* text) noexcept {
        *text = C();
    }

    // Copies `length` units; no terminator is written. It goes forwards or backwards by the order
    // of the addresses, so that the ranges may overlap; texts of two widths may overlap where
    // widening moves to the same or a higher address, or narrowing to the same or a lower one.
    template <TEXT_UNIT TO, TEXT_UNIT FROM>
    static void move_block(TO* to, const FROM* from, std::int32_t length) noexcept {
        length = resolve_length(from, length);
        if constexpr (std::is_same_v<TO, FROM>) {
            if (length > 0) {
                std::memmove(to, from, static_cast<std::size_t>(length) * sizeof(TO));
            }
        } else if (reinterpret_cast<std::uintptr_t>(to) < reinterpret_cast<std::uintptr_t>(from) ||
                   sizeof(TO) < sizeof(FROM)) {
            std::int32_t i = 0;
            for (; i <= length - CHUNK; i += CHUNK) {
                convert_chunk(to + i, from + i);
            }
            for (; i < length; ++i) {
                to[i] = static_cast<TO>(widen(from[i]));
            }
        } else {
            std::int32_t i = length;
            for (; i >= CHUNK; i -= CHUNK) {
                convert_chunk(to + i - CHUNK, from + i - CHUNK);
            }
            while (i-- > 0) {
                to[i] = static_cast<TO>(widen(from[i]));
            }
        }
    }

    // The same with a terminator behind it, so `to` has room for one unit more. Yields the count of
    // units without the terminator.
    template <TEXT_UNIT TO, TEXT_UNIT FROM>
    static std::int32_t copy(TO* to, const FROM* from, std::int32_t length = -1) noexcept {
        length = resolve_length(from, length);
        move_block(to, from, length);
        to[length] = TO();
        return length;
    }

    // Puts `to` in the place of every `from`, and yields how many there were.
    template <TEXT_UNIT C>
    static std::int32_t swap_char(C* text, std::int32_t length, char16_t from,
                                  char16_t to) noexcept {
        length = resolve_length(text, length);
        std::int32_t count = 0;
        for (std::int32_t i = 0; i < length; ++i) {
            if (widen(text[i]) == from) {
                text[i] = static_cast<C>(to);
                ++count;
            }
        }
        return count;
    }

    // Whether two zero-terminated texts are the same, unit for unit.
    template <TEXT_UNIT A, TEXT_UNIT B>
    static bool is_equal_zero_terminated_sensitive(const A* a, const B* b) noexcept {
        if constexpr (std::is_same_v<A, char> && std::is_same_v<B, char>) {
            return std::strcmp(a, b) == 0;
        } else {
            while (widen(*a) == widen(*b)) {
                if (*a == A()) {
                    return true;
                }
                ++a;
                ++b;
            }
            return false;
        }
    }

    // Whether two texts of the same length are the same, unit for unit.
    template <TEXT_UNIT A, TEXT_UNIT B>
    static bool is_equal_sensitive(const A* a, const B* b, std::int32_t length) noexcept {
        if constexpr (std::is_same_v<A, B>) {
            return length <= 0 ||
                   std::memcmp(a, b, static_cast<std::size_t>(length) * sizeof(A)) == 0;
        } else {
            std::int32_t i = 0;
            for (; i <= length - CHUNK; i += CHUNK) {
                if (!is_equal_chunk(a + i, b + i)) {
                    return false;
                }
            }
            for (; i < length; ++i) {
                if (widen(a[i]) != widen(b[i])) {
                    return false;
                }
            }
            return true;
        }
    }

    // The value of a hexadecimal digit of either case, -1 for any other unit.
    static constexpr int get_hexadecimal_digit(char16_t unit) noexcept {
        return unit >= u'0' && unit <= u'9'   ? unit - u'0'
               : unit >= u'a' && unit <= u'f' ? unit - u'a' + 10
               : unit >= u'A' && unit <= u'F' ? unit - u'A' + 10
                                              : -1;
    }

    // Whether the text begins with "0x", in lower case.
    template <TEXT_UNIT C>
    static constexpr bool has_hexadecimal_prefix(const C* text, std::int32_t length) noexcept {
        return length >= 2 && widen(text[0]) == u'0' && widen(text[1]) == u'x';
    }

    // The number behind the two units "0x", up to the first unit that is no hexadecimal digit. Of a
    // longer number the low 64 bits stay. Fewer than three units yield 0.
    template <TEXT_UNIT C>
    static constexpr std::uint64_t convert_hexadecimal_to_number(
        const C* text, std::int32_t length = -1) noexcept {
        length = resolve_length(text, length);
        std::uint64_t number = 0;
        for (std::int32_t i = 2; i < length; ++i) {
            const int digit = get_hexadecimal_digit(widen(text[i]));
            if (digit < 0) {
                break;
            }
            number = (number << 4) | static_cast<unsigned>(digit);
        }
        return number;
    }

    // The 32-bit FNV-1 hash: multiplication first, then exclusive or, once for each unit
    // (Fowler, Noll, Vo: http://www.isthe.com/chongo/tech/comp/fnv). Bytes enter sign-extended, so
    // 7-bit text hashes alike in both widths and accented text doesn't.
    template <TEXT_UNIT C>
    static constexpr std::uint32_t get_hash(const C* text, std::int32_t length = -1) noexcept {
        length = resolve_length(text, length);
        std::uint32_t hash = 0x811C9DC5u;
        for (std::int32_t i = 0; i < length; ++i) {
            hash *= 16777619u;
            if constexpr (std::is_same_v<C, char>) {
                hash ^= static_cast<std::uint32_t>(
                    static_cast<std::int32_t>(static_cast<signed char>(text[i])));
            } else {
                hash ^= text[i];
            }
        }
        return hash;
    }

    // The first place of `pattern` at or behind `start`, compared unit for unit. An empty pattern
    // is found nowhere.
    template <TEXT_UNIT A, TEXT_UNIT B>
    static std::int32_t find_text(const A* text, std::int32_t length, const B* pattern,
                                  std::int32_t pattern_length, std::int32_t start = 0) noexcept {
        length = resolve_length(text, length);
        pattern_length = resolve_length(pattern, pattern_length);
        if (pattern_length == 0 || pattern_length > length) {
            return length;
        }
        const std::int32_t end = length - pattern_length + 1;
        const char16_t first = widen(pattern[0]);
        for (std::int32_t i = start < 0 ? 0 : start; i < end; ++i) {
            i = find_char(text, end, first, i);
            if (i < end && is_equal_sensitive(text + i + 1, pattern + 1, pattern_length - 1)) {
                return i;
            }
        }
        return length;
    }

    template <TEXT_UNIT C>
    static std::int32_t find_char(const C* text, std::int32_t length, char16_t unit,
                                  std::int32_t start = 0) noexcept {
        length = resolve_length(text, length);
        start = start < 0 ? 0 : start;
        if (start >= length || (sizeof(C) == 1 && unit > 0xFF)) {
            return length;
        }
        const C* match = std::char_traits<C>::find(
            text + start, static_cast<std::size_t>(length - start), static_cast<C>(unit));
        return match ? static_cast<std::int32_t>(match - text) : length;
    }

    template <TEXT_UNIT C>
    static std::int32_t find_char_reverse(const C* text, std::int32_t length, char16_t unit,
                                          std::int32_t start = -1) noexcept {
        return find_reverse_if(text, length, start, [&](char16_t u) { return u == unit; });
    }

    // The first unit that is one of `chars`.
    template <TEXT_UNIT C, TEXT_UNIT S>
    static std::int32_t find_chars(const C* text, std::int32_t length, const S* chars,
                                   std::int32_t chars_length, std::int32_t start = 0) noexcept {
        return find_if(text, length, start,
                       [&](char16_t u) { return is_one_of(u, chars, chars_length); });
    }
    template <TEXT_UNIT C, TEXT_UNIT S>
    static std::int32_t find_chars_reverse(const C* text, std::int32_t length, const S* chars,
                                           std::int32_t chars_length,
                                           std::int32_t start = -1) noexcept {
        return find_reverse_if(text, length, start,
                               [&](char16_t u) { return is_one_of(u, chars, chars_length); });
    }

    // The `nth` place of `unit`, counted from 1, from `start` on. An nth below 1 finds nothing.
    template <TEXT_UNIT C>
    static std::int32_t find_nth_char(const C* text, std::int32_t length, char16_t unit,
                                      std::int32_t nth, std::int32_t start = 0) noexcept {
        return find_if(text, length, start,
                       [&](char16_t u) { return u == unit && nth > 0 && --nth == 0; });
    }
    template <TEXT_UNIT C>
    static std::int32_t find_nth_char_reverse(const C* text, std::int32_t length, char16_t unit,
                                              std::int32_t nth, std::int32_t start = -1) noexcept {
        return find_reverse_if(text, length, start,
                               [&](char16_t u) { return u == unit && nth > 0 && --nth == 0; });
    }

    // The first unit that is none of `chars`.
    template <TEXT_UNIT C, TEXT_UNIT S>
    static std::int32_t skip_chars(const C* text, std::int32_t length, const S* chars,
                                   std::int32_t chars_length, std::int32_t start = 0) noexcept {
        return find_if(text, length, start,
                       [&](char16_t u) { return !is_one_of(u, chars, chars_length); });
    }
    template <TEXT_UNIT C, TEXT_UNIT S>
    static std::int32_t skip_chars_reverse(const C* text, std::int32_t length, const S* chars,
                                           std::int32_t chars_length,
                                           std::int32_t start = -1) noexcept {
        return find_reverse_if(text, length, start,
                               [&](char16_t u) { return !is_one_of(u, chars, chars_length); });
    }

    // The first unit at or behind `start` for which `test(unit)` holds.
    template <TEXT_UNIT C, typename TEST>
    static std::int32_t find_if(const C* text, std::int32_t length, std::int32_t start,
                                TEST&& test) {
        length = resolve_length(text, length);
        for (std::int32_t i = start < 0 ? 0 : start; i < length; ++i) {
            if (test(widen(text[i]))) {
                return i;
            }
        }
        return length;
    }
    // The first unit at or before `start`, going down, for which `test(unit)` holds.
    template <TEXT_UNIT C, typename TEST>
    static std::int32_t find_reverse_if(const C* text, std::int32_t length, std::int32_t start,
                                        TEST&& test) {
        length = resolve_length(text, length);
        if (start >= length) {
            return length;
        }
        for (std::int32_t i = start < 0 ? length - 1 : start; i >= 0; --i) {
            if (test(widen(text[i]))) {
                return i;
            }
        }
        return length;
    }

private:
    // Units that are converted in one go: read all, then write all, in a form that compilers turn
    // into vector instructions.
    static constexpr std::int32_t CHUNK = 16;

    template <TEXT_UNIT TO, TEXT_UNIT FROM>
    static void convert_chunk(TO* to, const FROM* from) noexcept {
        FROM in[CHUNK];
        TO out[CHUNK];
        std::memcpy(in, from, sizeof in);
        for (std::int32_t i = 0; i < CHUNK; ++i) {
            out[i] = static_cast<TO>(widen(in[i]));
        }
        std::memcpy(to, out, sizeof out);
    }

    template <TEXT_UNIT A, TEXT_UNIT B>
    static bool is_equal_chunk(const A* a, const B* b) noexcept {
        char16_t wide_a[CHUNK];
        char16_t wide_b[CHUNK];
        for (std::int32_t i = 0; i < CHUNK; ++i) {
            wide_a[i] = widen(a[i]);
            wide_b[i] = widen(b[i]);
        }
        return std::memcmp(wide_a, wide_b, sizeof wide_a) == 0;
    }

    template <TEXT_UNIT S>
    static bool is_one_of(char16_t unit, const S* chars, std::int32_t chars_length) noexcept {
        return find_char(chars, chars_length, unit) < resolve_length(chars, chars_length);
    }
};

}  // namespace KVCORE

#endif  // KVCORE_TEXT_UTILITIES_BASE_H
