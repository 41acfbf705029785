// TAGGED_TEXT: a text with the inline tags of text boxes, split into words and tags for plain
// drawing, without any layout.
//
// A tag is "<name:type#value>", where the name ends at the first ":". What is no whole tag ends the
// scan: the text behind it gives no words.
#ifndef MODULES_GUI_TAGGED_TEXT_H
#define MODULES_GUI_TAGGED_TEXT_H

#include <cstdint>
#include <string>

#include "modules/gui/text_box_tag.h"
#include "platform/colour.h"
#include "platform/ptrarray.h"

// One word: text without spaces and control characters, a name of a tag with its spaces, or a
// single space or line feed.
struct TAGGED_TEXT_WORD {
    char text[256] = "";
    const TEXT_BOX_TAG* tag = nullptr;  // the tag in whose name the word begins; null for none
};

// The tag behind which a text has that colour.
std::string make_colour_tag(COLOUR colour);

class TAGGED_TEXT {
public:
    TAGGED_TEXT();
    // set_text.
    explicit TAGGED_TEXT(const char* source);
    TAGGED_TEXT(const TAGGED_TEXT&) = delete;
    TAGGED_TEXT& operator=(const TAGGED_TEXT&) = delete;
    virtual ~TAGGED_TEXT() = default;

    // Splits a text anew; the former words and tags go. Null is empty.
    void set_text(const char* source);

    // Removes the tags of a text in place, so that only their names stay, and answers it. Null is
    // allowed. The scan goes from the end of the text to its start, and ends at a "<" behind which
    // there is no tag.
    static char* remove_tags_from_text(char* source);

    std::string text;  // the full text, with tags
    PTRARRAY words;    // of TAGGED_TEXT_WORD*, owned
    PTRARRAY tags;     // of TEXT_BOX_TAG*, owned

private:
    class SPLITTER;

    static void delete_tagged_text_word_callback(void* word);
    static void delete_tagged_text_tag_callback(void* tag);
};

#endif  // MODULES_GUI_TAGGED_TEXT_H
