#include "text_formatter.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "c_locale.h"

namespace KVCORE {
namespace {

constexpr std::int32_t MAX_FIELD = 65536;

enum class SIZE { NONE, CHAR, SHORT, LONG, LONG_LONG, MAX, DIFFERENCE, SIZE_T, LONG_DOUBLE };

// One conversion of a format: "%-08.3ld".
struct DIRECTIVE {
    bool left = false;
    char flags[8] = {};  // as C's printf wants them, terminated
    std::int32_t width = 0;
    std::int32_t precision = -1;  // -1 for none
    SIZE size = SIZE::NONE;
    char16_t conversion = 0;
};

// The arguments, wrapped so that they can be handed on by reference.
struct ARGUMENTS {
    va_list list;
};

// Reads a format from one directive to the next.
class FORMAT_READER {
public:
    FORMAT_READER(TEXT_VIEW format_text, ARGUMENTS& format_arguments)
        : format(format_text), arguments(format_arguments) {}

    bool is_at_end() const { return position >= format.get_length(); }

    // The text up to the next "%" or the end.
    TEXT_VIEW read_plain_text() {
        const std::int32_t first = position;
        position = format.visit([&](const auto* text, std::int32_t length) {
            return TEXT_UTILITIES_BASE::find_char(text, length, u'%', first);
        });
        return format.get_part(first, position - first);
    }

    // What stands behind a "%". False, with the position back on the "%", for what the language
    // doesn't know.
    bool read_directive(DIRECTIVE& directive) {
        const std::int32_t first = position++;
        read_flags(directive);
        std::int32_t number = 0;
        if (read_number(number)) {
            // A negative width is the flag "-" and a width.
            directive.left |= number < 0;
            const std::int64_t width = number < 0 ? -std::int64_t{number} : number;
            directive.width = static_cast<std::int32_t>(std::min<std::int64_t>(width, MAX_FIELD));
        }
        if (peek() == u'.') {
            ++position;
            number = 0;
            read_number(number);
            directive.precision = number < 0 ? -1 : number;
        }
        read_size(directive);
        directive.conversion = peek();
        ++position;
        static constexpr char known[] = "diouxXcCsSpfFeEgGaAn%";
        if (directive.conversion == 0 ||
            TEXT_UTILITIES_BASE::find_char(known, -1, directive.conversion) == sizeof known - 1) {
            position = first;
            return false;
        }
        return true;
    }

    // One unit that stands for itself.
    char16_t read_unit() { return format[position++]; }

private:
    char16_t peek() const { return is_at_end() ? u'\0' : format[position]; }

    void read_flags(DIRECTIVE& directive) {
        static constexpr char known[] = "+ #0'";
        bool seen[sizeof known] = {};
        for (;; ++position) {
            const char16_t unit = peek();
            const std::int32_t index = TEXT_UTILITIES_BASE::find_char(known, -1, unit);
            if (unit == u'-') {
                directive.left = true;
            } else if (unit != 0 && index < static_cast<std::int32_t>(sizeof known) - 1) {
                seen[index] = true;
            } else {
                break;
            }
        }
        char* flag = directive.flags;
        for (std::size_t i = 0; i < sizeof known - 1; ++i) {
            if (seen[i]) {
                *flag++ = known[i];
            }
        }
    }

    bool read_number(std::int32_t& number) {
        if (peek() == u'*') {
            ++position;
            number = va_arg(arguments.list, int);
            return true;
        }
        const std::int32_t first = position;
        std::int64_t value = 0;
        for (; peek() >= u'0' && peek() <= u'9'; ++position) {
            value = std::min<std::int64_t>(value * 10 + (peek() - u'0'), INT32_MAX);
        }
        number = static_cast<std::int32_t>(value);
        return position != first;
    }

    void read_size(DIRECTIVE& directive) {
        for (;; ++position) {
            switch (peek()) {
                case u'h':
                    directive.size = directive.size == SIZE::SHORT ? SIZE::CHAR : SIZE::SHORT;
                    break;
                case u'l':
                    directive.size = directive.size == SIZE::LONG ? SIZE::LONG_LONG : SIZE::LONG;
                    break;
                case u'q':
                    directive.size = SIZE::LONG_LONG;
                    break;
                case u'j':
                    directive.size = SIZE::MAX;
                    break;
                case u't':
                    directive.size = SIZE::DIFFERENCE;
                    break;
                case u'z':
                    directive.size = SIZE::SIZE_T;
                    break;
                case u'L':
                    directive.size = SIZE::LONG_DOUBLE;
                    break;
                default:
                    return;
            }
        }
    }

    TEXT_VIEW format;
    ARGUMENTS& arguments;
    std::int32_t position = 0;
};

// Text within the directive's width.
void append_field(FORMAT_BUFFER& out, const DIRECTIVE& directive, TEXT_VIEW text) {
    const std::int32_t padding = std::max(directive.width - text.get_length(), 0);
    if (!directive.left) {
        out.append(u' ', padding);
    }
    out.append(text);
    if (directive.left) {
        out.append(u' ', padding);
    }
}

// A zero-terminated text cut to the precision; no unit behind the cut is looked at.
template <TEXT_UNIT C>
void append_text(FORMAT_BUFFER& out, const DIRECTIVE& directive, const C* text) {
    if (!text) {
        append_field(out, directive, "(null)");
        return;
    }
    std::int32_t length = 0;
    const std::int32_t limit =
        directive.precision < 0 ? STRING_BUFFER::MAX_LENGTH : directive.precision;
    while (length < limit && text[length] != C()) {
        ++length;
    }
    append_field(out, directive, TEXT_VIEW(text, length));
}

// A number through the C library, which knows the directive's width and flags as well.
template <typename T>
void append_number(FORMAT_BUFFER& out, const DIRECTIVE& directive, const char* size, T value) {
    char precision[16] = "";
    if (directive.precision >= 0) {
        std::snprintf(precision, sizeof precision, ".%d", std::min(directive.precision, MAX_FIELD));
    }
    // A width of 0 reads as one flag "0" more, which has no effect without a width.
    char pattern[48];
    std::snprintf(pattern, sizeof pattern, "%%%s%s%d%s%s%c", directive.left ? "-" : "",
                  directive.flags, directive.width, precision, size,
                  static_cast<char>(directive.conversion));
    char digits[512];
    const int length = std::snprintf(digits, sizeof digits, pattern, value);
    if (length < static_cast<int>(sizeof digits)) {
        out.append(TEXT_VIEW(digits, std::max(length, 0)));
        return;
    }
    const std::size_t room = static_cast<std::size_t>(length) + 1;
    const auto many_digits = std::make_unique<char[]>(room);
    std::snprintf(many_digits.get(), room, pattern, value);
    out.append(TEXT_VIEW(many_digits.get(), length));
}

void append_signed(FORMAT_BUFFER& out, const DIRECTIVE& directive, ARGUMENTS& arguments) {
    long long value = 0;
    switch (directive.size) {
        case SIZE::LONG:
            value = va_arg(arguments.list, long);
            break;
        case SIZE::LONG_LONG:
        case SIZE::LONG_DOUBLE:
            value = va_arg(arguments.list, long long);
            break;
        case SIZE::MAX:
            value = va_arg(arguments.list, std::intmax_t);
            break;
        case SIZE::DIFFERENCE:
        case SIZE::SIZE_T:
            value = va_arg(arguments.list, std::ptrdiff_t);
            break;
        case SIZE::CHAR:
            value = static_cast<signed char>(va_arg(arguments.list, int));
            break;
        case SIZE::SHORT:
            value = static_cast<short>(va_arg(arguments.list, int));
            break;
        case SIZE::NONE:
            value = va_arg(arguments.list, int);
            break;
    }
    append_number(out, directive, "ll", value);
}

void append_unsigned(FORMAT_BUFFER& out, const DIRECTIVE& directive, ARGUMENTS& arguments) {
    unsigned long long value = 0;
    switch (directive.size) {
        case SIZE::LONG:
            value = va_arg(arguments.list, unsigned long);
            break;
        case SIZE::LONG_LONG:
        case SIZE::LONG_DOUBLE:
            value = va_arg(arguments.list, unsigned long long);
            break;
        case SIZE::MAX:
            value = va_arg(arguments.list, std::uintmax_t);
            break;
        case SIZE::DIFFERENCE:
        case SIZE::SIZE_T:
            value = va_arg(arguments.list, std::size_t);
            break;
        case SIZE::CHAR:
            value = static_cast<unsigned char>(va_arg(arguments.list, unsigned));
            break;
        case SIZE::SHORT:
            value = static_cast<unsigned short>(va_arg(arguments.list, unsigned));
            break;
        case SIZE::NONE:
            value = va_arg(arguments.list, unsigned);
            break;
    }
    append_number(out, directive, "ll", value);
}

void append_real(FORMAT_BUFFER& out, const DIRECTIVE& directive, ARGUMENTS& arguments) {
    const C_LOCALE_SCOPE scope;
    if (directive.size == SIZE::LONG_DOUBLE) {
        append_number(out, directive, "L", va_arg(arguments.list, long double));
    } else {
        append_number(out, directive, "", va_arg(arguments.list, double));
    }
}

void append_directive(FORMAT_BUFFER& out, const DIRECTIVE& directive, ARGUMENTS& arguments) {
    const bool wide = directive.size == SIZE::LONG || directive.size == SIZE::LONG_LONG;
    switch (directive.conversion) {
        case u'd':
        case u'i':
            append_signed(out, directive, arguments);
            break;
        case u's':
        case u'S':
            if (wide || directive.conversion == u'S') {
                append_text(out, directive, va_arg(arguments.list, const char16_t*));
            } else {
                append_text(out, directive, va_arg(arguments.list, const char*));
            }
            break;
        case u'c':
        case u'C': {
            const int value = va_arg(arguments.list, int);
            const char16_t unit = wide || directive.conversion == u'C'
                                      ? static_cast<char16_t>(value)
                                      : static_cast<unsigned char>(value);
            append_field(out, directive, TEXT_VIEW(&unit, 1));
            break;
        }
        case u'p':
            append_number(out, directive, "", va_arg(arguments.list, void*));
            break;
        case u'n':
            (void)va_arg(arguments.list, void*);
            break;
        case u'%':
            out.append(u'%', 1);
            break;
        case u'o':
        case u'u':
        case u'x':
        case u'X':
            append_unsigned(out, directive, arguments);
            break;
        default:
            append_real(out, directive, arguments);
            break;
    }
}

}  // namespace

std::int32_t FORMAT_BUFFER::reserve(std::int32_t count) {
    count = std::min(count, STRING_BUFFER::MAX_LENGTH - length);
    if (length + count > capacity) {
        capacity = std::max(capacity * 2, length + count);
        const std::size_t size = static_cast<std::size_t>(capacity) * sizeof(char16_t);
        if (units == inline_units) {
            units = static_cast<char16_t*>(MEMORY_LIBC::allocate(size));
            TEXT_UTILITIES_BASE::move_block(units, inline_units, length);
        } else {
            units = static_cast<char16_t*>(MEMORY_LIBC::reallocate(units, size));
        }
    }
    return count;
}

void FORMAT_BUFFER::append(TEXT_VIEW text) {
    const std::int32_t count = reserve(text.get_length());
    text.visit([&](const auto* from, std::int32_t) {
        TEXT_UTILITIES_BASE::move_block(units + length, from, count);
    });
    length += count;
}

void FORMAT_BUFFER::append(char16_t unit, std::int32_t count) {
    count = reserve(count);
    std::fill_n(units + length, count, unit);
    length += count;
}

void format_text(FORMAT_BUFFER& out, TEXT_VIEW format, va_list arguments) {
    ARGUMENTS wrapped;
    va_copy(wrapped.list, arguments);
    FORMAT_READER reader(format, wrapped);
    while (!reader.is_at_end() && !out.is_full()) {
        out.append(reader.read_plain_text());
        DIRECTIVE directive;
        if (reader.is_at_end()) {
            break;
        }
        if (reader.read_directive(directive)) {
            append_directive(out, directive, wrapped);
        } else {
            out.append(reader.read_unit(), 1);
        }
    }
    va_end(wrapped.list);
}

}  // namespace KVCORE
