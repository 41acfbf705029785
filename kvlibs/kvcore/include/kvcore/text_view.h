// A look at text of either width: what the string classes take as an argument.
#ifndef KVCORE_TEXT_VIEW_H
#define KVCORE_TEXT_VIEW_H

#include <cstdint>

#include "kvcore/text_utilities_base.h"

namespace KVCORE {

// One character of either width; a byte is zero-extended. Made on the fly like TEXT_VIEW.
class TEXT_CHARACTER {
public:
    constexpr TEXT_CHARACTER(char byte) noexcept : unit(TEXT_UTILITIES_BASE::widen(byte)) {}
    constexpr TEXT_CHARACTER(char16_t wide) noexcept : unit(wide) {}
    constexpr operator char16_t() const noexcept { return unit; }
    const char16_t* address() const noexcept { return &unit; }

private:
    char16_t unit;
};

// A pointer and a length over 8-bit or 16-bit text that somebody else holds. It is made on the fly
// from a literal, a pointer, a STRING or a STRING_BUILDER, used within the same expression, and
// never kept. A null pointer is an empty text.
class TEXT_VIEW {
public:
    TEXT_VIEW() noexcept = default;
    // `length` counts units; -1 means up to the terminator.
    TEXT_VIEW(const char* text, std::int32_t length = -1)
    noexcept : units(text), unit_count(TEXT_UTILITIES_BASE::resolve_length(text, length)) {}
    TEXT_VIEW(const char16_t* text, std::int32_t length = -1)
    noexcept
        : units(text),
          unit_count(TEXT_UTILITIES_BASE::resolve_length(text, length)),
          wide(text != nullptr) {}

    std::int32_t get_length() const noexcept { return unit_count; }
    bool is_empty() const noexcept { return unit_count == 0; }

    // The unit at `index`, which is not checked; bytes are zero-extended.
    char16_t operator[](std::int32_t index) const noexcept {
        return wide ? get_16bit()[index] : TEXT_UTILITIES_BASE::widen(get_8bit()[index]);
    }

    // The text from `first` on, `count` units or as far as it goes. 0 <= first <= length.
    TEXT_VIEW get_part(std::int32_t first, std::int32_t count) const noexcept {
        const std::int32_t left = unit_count - first;
        const std::int32_t part = count < left ? count : left;
        return !units ? TEXT_VIEW()
               : wide ? TEXT_VIEW(get_16bit() + first, part)
                      : TEXT_VIEW(get_8bit() + first, part);
    }

    // Calls `function(pointer, length)` with the pointer of the width at hand; an empty view comes
    // as an empty 8-bit text.
    template <typename FUNCTION>
    decltype(auto) visit(FUNCTION&& function) const {
        return wide ? function(get_16bit(), unit_count)
                    : function(units ? get_8bit() : "", unit_count);
    }

    // Whether both look at the very same memory.
    bool is_same(const TEXT_VIEW& other) const noexcept {
        return units == other.units && wide == other.wide && unit_count == other.unit_count;
    }

private:
    const char* get_8bit() const noexcept { return static_cast<const char*>(units); }
    const char16_t* get_16bit() const noexcept { return static_cast<const char16_t*>(units); }

    const void* units = nullptr;
    std::int32_t unit_count = 0;
    bool wide = false;
};

static_assert(sizeof(TEXT_VIEW) == 16, "a view is passed in two registers");

}  // namespace KVCORE

#endif  // KVCORE_TEXT_VIEW_H
