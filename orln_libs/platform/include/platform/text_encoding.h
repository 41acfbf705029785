// The border between the system's 8-bit text and the UTF-8 of the desktop.
//
// The system's text has one byte a character, whose value is its Unicode code (Latin-1). May be
// called from any thread.
#ifndef PLATFORM_TEXT_ENCODING_H
#define PLATFORM_TEXT_ENCODING_H

#include <string>
#include <string_view>

// Decodes UTF-8 (RFC 3629). A character above 255 becomes one "?", and so does each byte sequence
// that isn't UTF-8: overlong forms, surrogates, truncated characters.
std::string utf8_to_system(std::string_view text);
// The text of a file that people write: UTF-8, or if it isn't that, 8-bit text as it stands.
std::string file_text_to_system(std::string_view text);
// Every text has a UTF-8 form.
std::string system_to_utf8(std::string_view text);

#endif  // PLATFORM_TEXT_ENCODING_H
