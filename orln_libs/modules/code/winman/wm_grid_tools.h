// Small helpers of the grid's sources.
#ifndef MODULES_CODE_WINMAN_WM_GRID_TOOLS_H
#define MODULES_CODE_WINMAN_WM_GRID_TOOLS_H

#include <algorithm>
#include <cstdint>

#include "../gui/to_short.h"
#include "modules/winman/wm_grid.h"

namespace wm_grid {

// A row of the grid's table.
inline std::size_t index_of(std::int16_t row) {
    return static_cast<std::size_t>(row);
}

}  // namespace wm_grid

// While it exists the grid's cells move without marking anything; the grid is marked as a whole.
class WM_GRID::QUIET {
public:
    explicit QUIET(WM_GRID& quiet_grid) : grid(quiet_grid), drawn(quiet_grid.drawn) {
        grid.mark_own_rectangle();
        grid.drawn = false;
    }
    ~QUIET() { grid.drawn = drawn; }
    QUIET(const QUIET&) = delete;
    QUIET& operator=(const QUIET&) = delete;

private:
    WM_GRID& grid;
    const bool drawn;
};

template <class ACTION>
void WM_GRID::for_visible_rows(ACTION action) const {
    if (has_fixed_row() && row_count > 0 && !action(std::int16_t{0})) {
        return;
    }
    // The action may change the rows.
    for (std::int16_t row = first_visible; row >= 0 && row <= last_visible && row < row_count;
         ++row) {
        if (!action(row)) {
            return;
        }
    }
}

#endif  // MODULES_CODE_WINMAN_WM_GRID_TOOLS_H
