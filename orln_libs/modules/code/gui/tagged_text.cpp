#include "modules/gui/tagged_text.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "text_piece.h"

namespace {

constexpr unsigned char FIRST_PRINTABLE = 33;  // the characters below end a word

bool ends_word(char c) {
    return static_cast<unsigned char>(c) < FIRST_PRINTABLE;
}

// Where the ":", "#" and ">" of a tag stand that begins at `start`. Each is looked for behind the
// one before it. False if one is missing.
struct TAG_MARKS {
    std::size_t colon, hash, end;
};

bool find_marks(std::string_view text, std::size_t start, TAG_MARKS& marks) {
    marks.colon = text.find(':', start);
    marks.hash = marks.colon == text.npos ? text.npos : text.find('#', marks.colon);
    marks.end = marks.hash == text.npos ? text.npos : text.find('>', marks.hash);
    return marks.end != text.npos;
}

}  // namespace

// The walk through a working copy of the text. What a tag's name leaves of the tag is moved right,
// over the rest of it, and walked as running text.
class TAGGED_TEXT::SPLITTER {
public:
    explicit SPLITTER(TAGGED_TEXT& split) : owner(split), work(split.text) {}

    void run() {
        while (at < work.size()) {
            if (work[at] == '<') {
                if (!take_tag()) {
                    break;
                }
            } else if (ends_word(work[at]) && !(work[at] == ' ' && at < span_end)) {
                take_separator();
            } else {
                append(work[at]);
                ++at;
            }
        }
        finish_word();
    }

private:
    std::string_view get_piece(std::size_t from, std::size_t to) const {
        return std::string_view(work).substr(from, to - from);
    }

    bool take_tag() {
        TAG_MARKS marks;
        const std::size_t name = at + 1;
        if (!find_marks(work, name, marks)) {
            return false;
        }
        auto record = std::make_unique<TEXT_BOX_TAG>();
        copy_text_piece(record->name, get_piece(name, marks.colon));
        copy_text_piece(record->type, get_piece(marks.colon + 1, marks.hash));
        copy_text_piece(record->value, get_piece(marks.hash + 1, marks.end));
        tag = record.get();
        if (owner.tags.add(tag)) {
            static_cast<void>(record.release());  // the array owns it
        } else {
            tag = nullptr;
        }
        const std::size_t length = marks.colon - name;
        at = marks.end + 1 - length;
        std::memmove(work.data() + at, work.data() + name, length);
        set_span(at, at + length);
        return true;
    }

    // Punctuation behind a tag belongs to its last word.
    void set_span(std::size_t start, std::size_t end) {
        span_start = start;
        span_end = end;
        if (end < work.size() && std::strchr(".,';", work[end]) != nullptr) {
            while (span_end < work.size() && !ends_word(work[span_end])) {
                ++span_end;
            }
        }
    }

    // A space or a line feed is a word of its own; any other control character goes.
    void take_separator() {
        finish_word();
        if (work[at] == ' ' || work[at] == '\n') {
            append(work[at]);
            finish_word();
        }
        ++at;
    }

    void append(char c) {
        if (word.empty()) {
            const bool inside = tag != nullptr && at >= span_start && at < span_end;
            word_tag = inside ? tag : nullptr;
        }
        word.push_back(c);
        if (word.size() == sizeof(TAGGED_TEXT_WORD::text) - 1) {
            finish_word();
        }
    }

    void finish_word() {
        if (word.empty()) {
            return;
        }
        auto record = std::make_unique<TAGGED_TEXT_WORD>();
        copy_text_piece(record->text, word);
        record->tag = word_tag;
        if (owner.words.add(record.get())) {
            static_cast<void>(record.release());
        }
        word.clear();
    }

    TAGGED_TEXT& owner;
    std::string work;
    std::size_t at = 0;
    std::size_t span_start = 0, span_end = 0;  // the last tag's name in `work`
    TEXT_BOX_TAG* tag = nullptr;               // the last one
    std::string word;
    const TEXT_BOX_TAG* word_tag = nullptr;
};

TAGGED_TEXT::TAGGED_TEXT()
    : words(64, 0, delete_tagged_text_word_callback), tags(16, 0, delete_tagged_text_tag_callback) {
}

TAGGED_TEXT::TAGGED_TEXT(const char* source) : TAGGED_TEXT() {
    set_text(source);
}

void TAGGED_TEXT::delete_tagged_text_word_callback(void* word) {
    delete static_cast<TAGGED_TEXT_WORD*>(word);
}

void TAGGED_TEXT::delete_tagged_text_tag_callback(void* tag) {
    delete static_cast<TEXT_BOX_TAG*>(tag);
}

void TAGGED_TEXT::set_text(const char* source) {
    std::string copy(source != nullptr ? source : "");  // it may be a part of the present text
    words.clear();
    tags.clear();
    text = std::move(copy);
    SPLITTER(*this).run();
}

// The text behind the scan, which has no tags any more, is kept at the end of the buffer. So a tag
// costs only the moving of its name, not that of all that stands behind it.
char* TAGGED_TEXT::remove_tags_from_text(char* source) {
    constexpr std::size_t SHORTEST_TAG = 4;
    const std::size_t size = source != nullptr ? std::strlen(source) : 0;
    if (size < SHORTEST_TAG) {
        return source;
    }
    std::size_t unread = size - SHORTEST_TAG + 1;  // characters before the scan
    std::size_t done = unread;                     // where the text behind it begins
    while (unread > 0) {
        const char c = source[unread - 1];
        if (c != '<') {
            source[--done] = source[--unread];
            continue;
        }
        TAG_MARKS marks;
        if (!find_marks(std::string_view(source, size), done, marks)) {
            break;
        }
        const std::size_t length = marks.colon - done;
        const std::size_t name = marks.end + 1 - length;
        std::memmove(source + name, source + done, length);
        done = name;
        --unread;
    }
    std::memmove(source + unread, source + done, size - done + 1);
    return source;
}
