// PANEL_FRAME_TAB: one tab or sub-tab of a PANEL_FRAME.
#ifndef MODULES_GUI_PANEL_FRAME_TAB_H
#define MODULES_GUI_PANEL_FRAME_TAB_H

#include <cstddef>
#include <cstdint>

#include "kvcore/text_field.h"

// A frame's tabs are an array of these; sub-tabs follow their main tab. The two identifiers name
// the page that the tab opens. A main tab with sub-tabs takes over the first identifier of the
// sub-tab that was shown last, so that it opens that one again; such sub-tabs have the second
// identifier of their main tab.
struct PANEL_FRAME_TAB {
    static constexpr std::size_t TEXT_SIZE = 256;

    PANEL_FRAME_TAB() = default;
    // A null text is the empty one.
    PANEL_FRAME_TAB(const char* label, unsigned char sub_tab, std::int32_t first_id,
                    std::int32_t second_id, unsigned char starts_activated = 0)
        : is_sub_tab(sub_tab), id(first_id), sub_id(second_id), activated(starts_activated) {
        KVCORE::copy_text_field(text, label);
    }

    char text[TEXT_SIZE] = "";
    unsigned char is_sub_tab = 0;  // of the nearest main tab before it
    std::int32_t id = 0;           // a negative one shows the tab disabled
    std::int32_t sub_id = 0;
    unsigned char activated = 0;  // the button starts activated
};

#endif  // MODULES_GUI_PANEL_FRAME_TAB_H
