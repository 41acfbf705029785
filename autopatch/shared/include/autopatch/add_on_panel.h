// ADD_ON_PANEL: the card that shows one add-on: name, type, build, size, picture, description.
#ifndef AUTOPATCH_ADD_ON_PANEL_H
#define AUTOPATCH_ADD_ON_PANEL_H

#include <cstdint>
#include <string>

#include "modules/gui/panel_base.h"

class ADD_ON;

// Shows the add-on as it was at construction; nothing changes afterwards.
class ADD_ON_PANEL : public PANEL_BASE {
public:
    // The product's site, as links in texts name it: without "http://".
    static constexpr const char* WEB_SITE = "www.tessarine.example";

    // `style_name` is the prefix of the panel's looks in the skin, such as "DIALOG". `add_on` must
    // outlive the panel. The callback runs when the card is clicked; null for one that isn't.
    // `flags` are those of PANEL_BASE.
    ADD_ON_PANEL(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                 const ADD_ON* add_on, const char* style_name, signed char window,
                 WM_CALLBACK callback, void* user1, void* user2, unsigned char flags);

    // The texts of the card. `colour` is that of ordinary text in the description.
    static const char* get_type_text(const ADD_ON& add_on);
    static std::string get_build_text(const ADD_ON& add_on);
    static std::string get_size_text(const ADD_ON& add_on);
    static std::string get_description_text(const ADD_ON& add_on, COLOUR colour);

    const ADD_ON* add_on;  // not owned

    // This machine can show the 3D match view; without it the description of such an add-on warns.
    static unsigned char is_3d_capable;

private:
    void build_facts(const char* style_name, std::int32_t row_height);
    void build_description(const char* style_name, std::int32_t row_height, std::int32_t top);
};

#endif  // AUTOPATCH_ADD_ON_PANEL_H
