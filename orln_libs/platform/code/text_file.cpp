#include "platform/text_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <memory>
#include <new>

namespace {

constexpr unsigned CR = '\r';
constexpr unsigned LF = '\n';
constexpr unsigned OLD_END = 3;
constexpr char RUN_MARK = 1;
// A comma and four digits.
constexpr int RUN_UNIT_LENGTH = 5;

int hex_digit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

// The text of one unit of a wide run.
void format_run_unit(char (&out)[RUN_UNIT_LENGTH + 1], unsigned unit) {
    std::snprintf(out, sizeof out, ",%4X", unit & 0xFFFFu);
}

}  // namespace

TEXT_FILE::TEXT_FILE(FILE* file_stream, FILE_MODE file_mode, bool is_wide, bool is_swapped)
    : mode(file_mode), stream(file_stream), utf16(is_wide), swap(is_swapped) {
}

TEXT_FILE::~TEXT_FILE() {
    if (stream) {
        std::fclose(stream);
    }
}

bool TEXT_FILE::read_unit(unsigned& unit) {
    do {
        if (!read_raw_unit(unit)) {
            return false;
        }
        // Neither is text: one would end a string, the other open a run that isn't there.
    } while (unit == 0 || unit == RUN_MARK);
    last_unit = unit;
    return true;
}

bool TEXT_FILE::read_raw_unit(unsigned& unit) {
    if (has_waiting_unit) {
        has_waiting_unit = false;
        unit = waiting_unit;
        return true;
    }
    if (!stream || mode == FILE_WRITE) {
        return false;
    }
    const int first = getc_unlocked(stream);
    if (first == EOF) {
        return false;
    }
    if (!utf16) {
        unit = static_cast<unsigned>(first);
        return true;
    }
    const int second = getc_unlocked(stream);
    if (second == EOF) {
        return false;
    }
    unit = static_cast<unsigned>(swap ? first << 8 | second : second << 8 | first);
    return true;
}

void TEXT_FILE::unread_unit(unsigned unit) {
    has_waiting_unit = true;
    waiting_unit = unit;
}

bool TEXT_FILE::is_line_end(unsigned unit) {
    if (unit != CR && unit != LF && unit != OLD_END) {
        return false;
    }
    if (file_terminator == 0) {
        file_terminator = unit;
    }
    return true;
}

bool TEXT_FILE::operator>>(char* line) {
    if (!line) {
        return false;
    }
    const int limit = line_limit - 1;
    int length = 0;
    const unsigned unit_before = last_unit;
    bool any = false;
    bool ended = false;
    line_feed_tail = false;
    // What reading by characters left over comes first; it may close a run with a newline.
    while (pending_count != 0 && length < limit && !ended) {
        const char c = pending[--pending_count];
        any = true;
        if (c == '\n') {
            ended = true;
        } else {
            line[length++] = c;
        }
    }
    unsigned unit = 0;
    bool first_unit = true;
    while (!ended && length < limit && read_unit(unit)) {
        if (is_line_end(unit)) {
            if (unit == file_terminator || unit == LF) {
                line_feed_tail = first_unit && !any && unit == LF && unit_before == CR;
                any = true;
                ended = true;
            }
            first_unit = false;
            continue;
        }
        first_unit = false;
        const bool wide = unit > 255;
        const int mark = wide != run_open ? 1 : 0;
        const int needed = mark + (wide ? RUN_UNIT_LENGTH : 1);
        if (needed > limit - length) {
            unread_unit(unit);
            break;
        }
        any = true;
        if (mark != 0) {
            line[length++] = RUN_MARK;
            run_open = wide;
        }
        if (wide) {
            char text[RUN_UNIT_LENGTH + 1];
            format_run_unit(text, unit);
            for (int i = 0; i < RUN_UNIT_LENGTH; i++) {
                line[length++] = text[i];
            }
        } else {
            line[length++] = static_cast<char>(unit);
        }
    }
    if (run_open && pending_count == 0) {
        // A line carries its runs whole; the writer closes one that found no room for its mark.
        if (length < limit) {
            line[length++] = RUN_MARK;
        }
        run_open = false;
    }
    line[length] = '\0';
    return any;
}

bool TEXT_FILE::operator>>(char& c) {
    if (pending_count != 0) {
        c = pending[--pending_count];
        return true;
    }
    unsigned unit = 0;
    do {
        if (!read_unit(unit)) {
            if (!run_open) {
                return false;
            }
            run_open = false;
            c = RUN_MARK;
            return true;
        }
    } while (is_line_end(unit) && unit != file_terminator);

    if (unit > 255) {
        // The expanded unit comes out a character at a time; the rest waits in reverse.
        char text[RUN_UNIT_LENGTH + 1];
        format_run_unit(text, unit);
        const int first = run_open ? 1 : 0;
        for (int i = RUN_UNIT_LENGTH - 1; i >= first; i--) {
            pending[pending_count++] = text[i];
        }
        c = run_open ? text[0] : RUN_MARK;
        run_open = true;
        return true;
    }
    const char narrow = unit == file_terminator ? '\n' : static_cast<char>(unit);
    if (run_open) {
        run_open = false;
        pending[pending_count++] = narrow;
        c = RUN_MARK;
        return true;
    }
    c = narrow;
    return true;
}

bool TEXT_FILE::write_unit(unsigned unit) {
    if (!utf16) {
        return putc_unlocked(static_cast<int>(unit & 0xFFu), stream) != EOF;
    }
    if (unit == LF) {
        unit = CR;
    }
    const int low = static_cast<int>(unit & 0xFFu);
    const int high = static_cast<int>(unit >> 8 & 0xFFu);
    return putc_unlocked(swap ? high : low, stream) != EOF &&
           putc_unlocked(swap ? low : high, stream) != EOF;
}

bool TEXT_FILE::operator<<(char c) {
    if (!stream || mode == FILE_READ) {
        return false;
    }
    return write_unit(static_cast<unsigned char>(c));
}

bool TEXT_FILE::operator<<(const char* text) {
    if (!text || !stream || mode == FILE_READ) {
        return false;
    }
    bool in_run = false;
    unsigned value = 0;
    int digits = 0;
    int padding = 0;
    for (const char* at = text; *at; at++) {
        if (*at != RUN_MARK && !in_run) {
            if (!write_unit(static_cast<unsigned char>(*at))) {
                return false;
            }
            continue;
        }
        const int digit = *at == RUN_MARK ? -1 : hex_digit(*at);
        if (digit >= 0) {
            value = value << 4 | static_cast<unsigned>(digit);
            digits++;
        } else if (*at == ' ' && digits == 0) {
            padding++;
        }
        // "%4X" pads values below 0x1000 with blanks, so the comma or the mark behind such a unit
        // completes it as well.
        const bool separator = *at == ',' || *at == RUN_MARK;
        if (digits == 4 || (digits != 0 && separator)) {
            if (!write_unit(value)) {
                return false;
            }
            value = 0;
            digits = 0;
        }
        if (separator) {
            padding = 0;
        }
        if (*at == RUN_MARK) {
            in_run = !in_run;
        }
    }
    // A line that is full may end without the mark; a unit that was cut is dropped.
    return digits == 0 || digits + padding != 4 || write_unit(value);
}

bool TEXT_FILE::printf(const char* format, ...) {
    const std::unique_ptr<char[]> buffer(new (std::nothrow) char[printf_buffer_size]);
    if (!buffer) {
        return false;
    }
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer.get(), printf_buffer_size, format, arguments);
    va_end(arguments);
    return length >= 0 && *this << static_cast<const char*>(buffer.get());
}

bool TEXT_FILE::flush() {
    return stream && std::fflush(stream) == 0 && !std::ferror(stream);
}

bool TEXT_FILE::sync() {
    if (!flush()) {
        return false;
    }
    // A pipe or terminal can't be synchronised, and needn't be.
    return fdatasync(fileno(stream)) == 0 || errno == EINVAL || errno == EROFS;
}
