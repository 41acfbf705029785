// Small helpers of the floating menu's sources.
#ifndef MODULES_CODE_WINMAN_WM_FLOATING_MENU_TOOLS_H
#define MODULES_CODE_WINMAN_WM_FLOATING_MENU_TOOLS_H

#include <algorithm>
#include <cstdint>

#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_grid.h"

// The row that stands at this height of the rows; beyond them their number.
inline std::int16_t find_row_from(const WM_GRID& grid, std::int32_t y_pos) {
    const auto found = std::partition_point(grid.rows.begin(), grid.rows.end(),
                                            [&](const auto& row) { return row->bottom <= y_pos; });
    return static_cast<std::int16_t>(found - grid.rows.begin());
}

template <class ACTION>
void WM_FLOATING_MENU::for_sub_menus(ACTION action) const {
    for (std::int16_t row = 0; menu_count > 0 && row < grid->row_count; ++row) {
        if (WM_MENU* menu = get_menu(row)) {
            action(*menu);
        }
    }
}

#endif  // MODULES_CODE_WINMAN_WM_FLOATING_MENU_TOOLS_H
