// DIALOG_PROFILE_GRID: a PROFILE_GRID with the looks of dialogs.
#ifndef MODULES_GUI_DIALOG_PROFILE_GRID_H
#define MODULES_GUI_DIALOG_PROFILE_GRID_H

#include "modules/gui/profile_grid.h"

class DIALOG_PROFILE_GRID : public PROFILE_GRID {
public:
    DIALOG_PROFILE_GRID(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                        signed char mode_, std::int16_t columns, const std::int16_t* layout,
                        std::int16_t fill_rows, WM_CALLBACK callback_, void* data1, void* data2,
                        signed char window_)
        : PROFILE_GRID(x1, y1, x2, y2, mode_, columns, layout, fill_rows, "DIALOG", callback_,
                       data1, data2, window_) {}
};

#endif  // MODULES_GUI_DIALOG_PROFILE_GRID_H
