// Copies a piece of a longer text into a fixed-size field, cut at the field's size.
#ifndef MODULES_CODE_GUI_TEXT_PIECE_H
#define MODULES_CODE_GUI_TEXT_PIECE_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "kvcore/text_field.h"

template <std::size_t N>
void copy_text_piece(char (&field)[N], std::string_view piece) {
    KVCORE::copy_text_field(field, std::min(N, piece.size() + 1), piece.data());
}

#endif  // MODULES_CODE_GUI_TEXT_PIECE_H
