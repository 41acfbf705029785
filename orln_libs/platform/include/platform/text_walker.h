// TEXT_WALKER: reads a string of the GUI character by character; see font_manager.h for the
// encoding.
//
//     for (TEXT_WALKER walker(text); walker.next();) {
//         draw(walker.code);
//     }
#ifndef PLATFORM_TEXT_WALKER_H
#define PLATFORM_TEXT_WALKER_H

#include <cstdint>

class TEXT_WALKER {
public:
    // The byte that begins and ends a run of codes.
    static constexpr char CODE_MARK = 1;

    // `text` stays the caller's; null is empty. `inside_codes` tells that it begins inside a run.
    explicit TEXT_WALKER(const char* text, bool inside_codes = false)
        : position(text ? text : ""), in_code(inside_codes), at(position) {
        at_in_code = in_code;
    }

    // Goes on to the next character. False at the end.
    bool next() {
        if (!in_code && *position != CODE_MARK) {
            if (*position == '\0') {
                return false;
            }
            at = position;
            at_in_code = false;
            code = static_cast<unsigned char>(*position++);
            return true;
        }
        return next_in_code();
    }

    const char* position;    // where the next character is looked for
    bool in_code;            // and whether that is inside a run of codes
    std::uint16_t code = 0;  // the character

    // Where it begins, for going back: a TEXT_WALKER(at, at_in_code) reads it again.
    const char* at;
    bool at_in_code;

private:
    bool next_in_code();
};

#endif  // PLATFORM_TEXT_WALKER_H
