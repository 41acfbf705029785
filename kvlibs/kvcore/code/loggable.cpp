#include "kvcore/loggable.h"

#include <cinttypes>
#include <cstdio>

#include "kvcore/string_loggable.h"
#include "kvcore/symbol.h"

namespace KVCORE {

namespace {

// The library's rule between the widths: zero-extended one way, the low byte the other.
void widen(std::u16string& wide, const char* text) {
    wide.clear();
    for (; *text; ++text) {
        wide.push_back(static_cast<unsigned char>(*text));
    }
}

void narrow(std::string& text, const char16_t* wide) {
    text.clear();
    for (; *wide; ++wide) {
        text.push_back(static_cast<char>(*wide & 0xFF));
    }
}

LOGGABLE& append_signed(LOGGABLE& node, std::int64_t value) {
    return node.append(new INTEGER_LOGGABLE(static_cast<std::uint64_t>(value), true));
}

LOGGABLE& append_unsigned(LOGGABLE& node, std::uint64_t value) {
    return node.append(new INTEGER_LOGGABLE(value, false));
}

}  // namespace

LOGGABLE::~LOGGABLE() {
    // One by one, so that a long chain needs no deep stack.
    LOGGABLE* node = next_;
    while (node) {
        LOGGABLE* const behind = node->release_next();
        delete node;
        node = behind;
    }
}

const char* LOGGABLE::get_as_c8() const {
    return "";
}

const char16_t* LOGGABLE::get_as_c16() const {
    return u"";
}

const char* LOGGABLE::get_as_xml(std::int32_t, std::uint32_t) const {
    return "";
}

LOGGABLE& LOGGABLE::append(LOGGABLE* node) {
    LOGGABLE* last = node;
    while (last->next_) {
        last = last->next_;
    }
    last->next_ = next_;
    next_ = node;
    return *node;
}

LOGGABLE* LOGGABLE::release_next() {
    LOGGABLE* const chain = next_;
    next_ = nullptr;
    return chain;
}

const char16_t* CONSTANT_LOGGABLE_C8::get_as_c16() const {
    widen(wide_, text_);
    return wide_.c_str();
}

const char* CONSTANT_LOGGABLE_C16::get_as_c8() const {
    narrow(narrow_, text_);
    return narrow_.c_str();
}

const char16_t* STL_STRING_LOGGABLE::get_as_c16() const {
    widen(wide_, text_.c_str());
    return wide_.c_str();
}

const char16_t* NUMBER_LOGGABLE::get_as_c16() const {
    const char* text = get_as_c8();
    char16_t* wide = wide_;
    while (*text) {
        *wide++ = static_cast<unsigned char>(*text++);
    }
    *wide = u'\0';
    return wide_;
}

const char* INTEGER_LOGGABLE::get_as_c8() const {
    if (is_signed_) {
        std::snprintf(text_, sizeof text_, "%" PRId64, static_cast<std::int64_t>(value_));
    } else {
        std::snprintf(text_, sizeof text_, "%" PRIu64, value_);
    }
    return text_;
}

const char* INTEGER_LOGGABLE::get_as_xml(std::int32_t id, std::uint32_t) const {
    if (is_signed_) {
        std::snprintf(text_, sizeof text_, "<integer id=\"%" PRId32 "|\" value=\"%" PRId64 "\" />",
                      id, static_cast<std::int64_t>(value_));
    } else {
        std::snprintf(text_, sizeof text_, "<integer id=\"%" PRId32 "|\" value=\"%" PRIu64 "\" />",
                      id, value_);
    }
    return text_;
}

const char* REAL_LOGGABLE::get_as_c8() const {
    if (std::snprintf(text_, sizeof text_, "%f", value_) >= static_cast<int>(sizeof text_)) {
        std::snprintf(text_, sizeof text_, "%.17e", value_);
    }
    return text_;
}

const char* REAL_LOGGABLE::get_as_xml(std::int32_t id, std::uint32_t) const {
    const int length =
        std::snprintf(text_, sizeof text_, "<real id=\"%" PRId32 "|\" value=\"%f\" />", id, value_);
    if (length >= static_cast<int>(sizeof text_)) {
        std::snprintf(text_, sizeof text_, "<real id=\"%" PRId32 "|\" value=\"%e\" />", id, value_);
    }
    return text_;
}

LOGGABLE& operator<<(LOGGABLE& node, bool value) {
    return node.append(new BOOLEAN_LOGGABLE(value));
}

LOGGABLE& operator<<(LOGGABLE& node, char value) {
    return append_signed(node, static_cast<signed char>(value));
}

LOGGABLE& operator<<(LOGGABLE& node, signed char value) {
    return append_signed(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, unsigned char value) {
    return append_unsigned(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, short value) {
    return append_signed(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, unsigned short value) {
    return append_unsigned(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, int value) {
    return append_signed(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, unsigned int value) {
    return append_unsigned(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, long value) {
    return append_signed(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, unsigned long value) {
    return append_unsigned(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, long long value) {
    return append_signed(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, unsigned long long value) {
    return append_unsigned(node, value);
}

LOGGABLE& operator<<(LOGGABLE& node, float value) {
    return node.append(new REAL_LOGGABLE(value));
}

LOGGABLE& operator<<(LOGGABLE& node, double value) {
    return node.append(new REAL_LOGGABLE(value));
}

LOGGABLE& operator<<(LOGGABLE& node, const char* text) {
    return node.append(new CONSTANT_LOGGABLE_C8(text));
}

LOGGABLE& operator<<(LOGGABLE& node, const char16_t* text) {
    return node.append(new CONSTANT_LOGGABLE_C16(text));
}

LOGGABLE& operator<<(LOGGABLE& node, const std::string& text) {
    return node.append(new STL_STRING_LOGGABLE(text));
}

LOGGABLE& operator<<(LOGGABLE& node, const void* pointer) {
    char text[40];
    std::snprintf(text, sizeof text, "<pointer: 0x%08" PRIxPTR ">",
                  reinterpret_cast<std::uintptr_t>(pointer));
    return node.append(new STL_STRING_LOGGABLE(text));
}

LOGGABLE& operator<<(LOGGABLE& node, const STRING& text) {
    return node.append(new STRING_LOGGABLE(text));
}

LOGGABLE& operator<<(LOGGABLE& node, const SYMBOL& symbol) {
    return node << static_cast<const STRING&>(symbol);
}

}  // namespace KVCORE
