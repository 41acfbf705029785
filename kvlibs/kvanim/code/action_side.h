// The sides in the names of movements.
#ifndef KVANIM_ACTION_SIDE_H
#define KVANIM_ACTION_SIDE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace KVANIM::ACTION {

// The name of the movement on the other side: the first "_LEFT" becomes "_RIGHT" or, where there is
// none, the first "_RIGHT" becomes "_LEFT". A name without a side is left as it is, and so is one
// that with 7 bytes more doesn't fit in 1024.
inline std::string swap_side(std::string_view name) {
    constexpr std::size_t NAME_SIZE = 1024;
    constexpr std::size_t ROOM = 7;
    std::string_view side = "_LEFT";
    std::string_view other_side = "_RIGHT";
    std::size_t position = name.find(side);
    if (position == std::string_view::npos) {
        std::swap(side, other_side);
        position = name.find(side);
    }
    std::string swapped(name);
    if (position != std::string_view::npos && name.size() + ROOM <= NAME_SIZE) {
        swapped.replace(position, side.size(), other_side);
    }
    return swapped;
}

}  // namespace KVANIM::ACTION

#endif  // KVANIM_ACTION_SIDE_H
