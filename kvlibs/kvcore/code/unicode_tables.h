// Classes and case mappings of the 16-bit units, as ascending runs. Made by
// tools/make_unicode_tables.py.
#ifndef KVCORE_UNICODE_TABLES_H
#define KVCORE_UNICODE_TABLES_H

#include <cstdint>
#include <span>

namespace KVCORE::UNICODE {

// Every `stride`-th unit from `first` to `last`.
struct UNIT_RANGE {
    char16_t first;
    char16_t last;
    std::uint8_t stride;
};

// The same, with what is added to a unit to map it.
struct CASE_RANGE {
    char16_t first;
    char16_t last;
    std::uint8_t stride;
    std::int32_t difference;
};

extern const std::span<const UNIT_RANGE> ALPHABETIC;
extern const std::span<const UNIT_RANGE> DECIMAL_DIGIT;
extern const std::span<const UNIT_RANGE> UPPER_CASE;
extern const std::span<const UNIT_RANGE> LOWER_CASE;
extern const std::span<const UNIT_RANGE> WHITE_SPACE;
extern const std::span<const UNIT_RANGE> PUNCTUATION;
extern const std::span<const CASE_RANGE> TO_LOWER;
extern const std::span<const CASE_RANGE> TO_UPPER;
extern const std::span<const CASE_RANGE> FOLD_CASE;

}  // namespace KVCORE::UNICODE

#endif  // KVCORE_UNICODE_TABLES_H
