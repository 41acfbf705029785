// WM_MANAGER: a container of screen objects that draws nothing itself.
#ifndef MODULES_WINMAN_WM_MANAGER_H
#define MODULES_WINMAN_WM_MANAGER_H

#include "modules/winman/screen_object.h"

// A width or height below 1 means that of the window. Children are clipped to the rectangle.
class WM_MANAGER : public WM_SCREEN_OBJECT {
public:
    explicit WM_MANAGER(unsigned char visible, signed char window = 0);
    WM_MANAGER(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
               unsigned char visible, signed char window);

    // Doesn't touch the children.
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    bool can_have_focus() override { return false; }
    std::int16_t get_width() override;
    std::int16_t get_height() override;
    void check_for_redraw() override;

protected:
    // Takes the window's size, or its minimum, for a side that isn't given.
    void init_size();
};

#endif  // MODULES_WINMAN_WM_MANAGER_H
