// Pieces of a longer text.
#ifndef MODULES_CODE_GUI_TEXT_PIECE_H
#define MODULES_CODE_GUI_TEXT_PIECE_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "kvcore/text_field.h"

// Into a fixed-size field, cut at the field's size.
template <std::size_t N>
void copy_text_piece(char (&field)[N], std::string_view piece) {
    KVCORE::copy_text_field(field, std::min(N, piece.size() + 1), piece.data());
}

// Without regard to the case of the 26 letters.
inline bool is_same_word(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char left, char right) { return lower(left) == lower(right); });
}

#endif  // MODULES_CODE_GUI_TEXT_PIECE_H
