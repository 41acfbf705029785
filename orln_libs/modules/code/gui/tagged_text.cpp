#include "modules/gui/tagged_text.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "text_piece.h"

namespace {

constexpr unsigned char FIRST_PRINTABLE = 33;  // the characters below end a word

bool ends_word(char c) {
    return static_cast<unsigned char>(c) < FIRST_PRINTABLE;
}

// With room for as many again, as the array itself grows by a fixed step.
bool add_entry(PTRARRAY& array, void* entry) {
    if (array.get_count() == array.get_capacity()) {
        array.allocate(array.get_count() + std::max(array.get_count(), array.get_grow_step()));
    }
    return array.add(entry);
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

std::string make_colour_tag(COLOUR colour) {
    return "<:colour#" + std::to_string(colour.value) + ">";
}

// The walk through the text. The name of a tag is walked like any other text; the gap behind it,
// from the ":" to the ">", is passed over when the walk comes to it. A name may hold the "<" of
// another tag, whose ":" is then found behind the first one's ">", so that several gaps may lie
// ahead.
class TAGGED_TEXT::SPLITTER {
public:
    explicit SPLITTER(TAGGED_TEXT& split) : owner(split), text(split.text) {}

    void run() {
        for (; at < text.size(); pass_gaps()) {
            if (text[at] == '<') {
                if (!take_tag()) {
                    break;
                }
            } else if (ends_word(text[at]) && !(text[at] == ' ' && is_in_name())) {
                take_separator();
            } else {
                append(text[at]);
                ++at;
            }
        }
        finish_word();
    }

private:
    struct GAP {
        std::size_t start, end;  // `end` isn't part of it
    };

    bool is_in_name() const { return next_gap < gaps.size(); }

    // No name holds a ":", so that the search for one goes on behind the last gap.
    bool take_tag() {
        const std::size_t name = at + 1;
        TAG_MARKS marks;
        if (!find_marks(text, is_in_name() ? gaps.back().end : name, marks)) {
            return false;
        }
        auto record = std::make_unique<TEXT_BOX_TAG>();
        copy_text_piece(record->name, get_name(name, marks.colon));
        copy_text_piece(record->type, text.substr(marks.colon + 1, marks.hash - marks.colon - 1));
        copy_text_piece(record->value, text.substr(marks.hash + 1, marks.end - marks.hash - 1));
        tag = record.get();
        if (add_entry(owner.tags, tag)) {
            static_cast<void>(record.release());  // the array owns it
        } else {
            tag = nullptr;
        }
        add_gap({marks.colon, marks.end + 1});
        at = name;
        in_punctuation = false;
        return true;
    }

    void add_gap(const GAP& gap) {
        if (is_in_name() && gaps.back().end == gap.start) {
            gaps.back().end = gap.end;
        } else {
            gaps.push_back(gap);
        }
    }

    // Of the text between two places what lies in no gap, as far as a record can hold it.
    std::string get_name(std::size_t from, std::size_t to) const {
        std::string name;
        for (std::size_t gap = next_gap; from < to && name.size() < TEXT_BOX_TAG::TEXT_SIZE;) {
            if (gap < gaps.size() && gaps[gap].start == from) {
                from = gaps[gap++].end;
            } else {
                name.push_back(text[from++]);
            }
        }
        return name;
    }

    // Behind the last gap the name is over, but punctuation there belongs to its last word.
    void pass_gaps() {
        while (is_in_name() && gaps[next_gap].start == at) {
            at = gaps[next_gap++].end;
            in_punctuation = !is_in_name() && at < text.size() &&
                             std::string_view(".,';").find(text[at]) != std::string_view::npos;
        }
    }

    // A space or a line feed is a word of its own; any other control character goes.
    void take_separator() {
        finish_word();
        in_punctuation = false;
        if (text[at] == ' ' || text[at] == '\n') {
            append(text[at]);
            finish_word();
        }
        ++at;
    }

    void append(char c) {
        if (word.empty()) {
            word_tag = is_in_name() || in_punctuation ? tag : nullptr;
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
        if (add_entry(owner.words, record.get())) {
            static_cast<void>(record.release());
        }
        word.clear();
    }

    TAGGED_TEXT& owner;
    const std::string_view text;
    std::size_t at = 0;
    std::vector<GAP> gaps;  // in the order of the text; those before `next_gap` have been passed
    std::size_t next_gap = 0;
    bool in_punctuation = false;
    TEXT_BOX_TAG* tag = nullptr;  // the last one
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

namespace {

// The first such character at or after `from` that isn't in a removed stretch; the text's length if
// there is none. `skips` has the index behind a stretch at the stretch's start, and else 0.
std::size_t find_kept(std::string_view text, const std::vector<std::size_t>& skips, char wanted,
                      std::size_t from) {
    while (from < text.size() && (skips[from] != 0 || text[from] != wanted)) {
        from = skips[from] != 0 ? skips[from] : from + 1;
    }
    return from;
}

}  // namespace

// What is walked over in search of a tag's end is removed with the tag, so that the work grows with
// the text only.
char* TAGGED_TEXT::remove_tags_from_text(char* source) {
    constexpr std::size_t SHORTEST_TAG = 4;
    const std::string_view text(source != nullptr ? source : "");
    if (text.find('<') == text.npos) {
        return source;
    }
    std::vector<std::size_t> skips(text.size());
    std::vector<std::size_t> colons;  // those behind the scan, the nearest one last
    for (std::size_t i = text.size(); i-- > 0;) {
        if (text[i] == ':') {
            colons.push_back(i);
        } else if (text[i] == '<' && i + SHORTEST_TAG <= text.size()) {
            const std::size_t colon = colons.empty() ? text.size() : colons.back();
            const std::size_t hash = find_kept(text, skips, '#', colon);
            const std::size_t end = find_kept(text, skips, '>', hash);
            if (end == text.size()) {
                break;
            }
            while (!colons.empty() && colons.back() <= end) {
                colons.pop_back();
            }
            skips[i] = i + 1;
            skips[colon] = end + 1;
        }
    }
    char* out = source;
    for (std::size_t i = 0; i < text.size();) {
        if (skips[i] != 0) {
            i = skips[i];
        } else {
            *out++ = source[i++];
        }
    }
    *out = '\0';
    return source;
}
