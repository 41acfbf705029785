// A name of the skin with the place where it was found last; one in static storage per call site.
#ifndef MODULES_GUI_SKIN_LOOKUP_H
#define MODULES_GUI_SKIN_LOOKUP_H

#include <cstdint>

#include "modules/gui/gui_skin.h"

struct SKIN_STYLE {
    const char* name;
    std::int32_t index = -1;

    WM_STYLE_SET& get(const char* prefix = nullptr) {
        return GUI_SKIN::get_style_set(name, prefix, &index);
    }
};

struct SKIN_CONSTANT {
    const char* name;
    std::int16_t index = -1;

    std::int16_t get(const char* prefix = nullptr) {
        return GUI_SKIN::get_constant(name, prefix, &index);
    }
};

#endif  // MODULES_GUI_SKIN_LOOKUP_H
