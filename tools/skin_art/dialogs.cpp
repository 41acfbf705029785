// Floating frames: dialogs, menus and tool tips, each with a soft shadow.
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

namespace {

// A strip of the colour along the upper edge tells the kind of dialog.
void put_dialog(const PALETTE& palette, PICTURE_OUTPUT& output, const std::string& name,
                COLOUR strip) {
    constexpr int MARGIN = 14;  // for the shadow
    constexpr double RADIUS = 7;
    constexpr double STRIP = 3;
    CANVAS canvas(MARGIN * 2 + 64, MARGIN * 2 + 64);
    const BOX body = canvas.all().inset(MARGIN);
    canvas.shadow(body.moved(0, 3), RADIUS, palette.faded("shadow", 0.30), 11);
    canvas.erase(body, RADIUS);
    canvas.fill(body, RADIUS, palette["surface"]);
    canvas.frame(body, RADIUS, palette["edge"]);
    cairo_t* context = canvas.get_context();
    cairo_new_path(context);
    cairo_rectangle(context, body.x, body.y, body.width, STRIP);
    cairo_clip(context);
    canvas.fill(body, RADIUS, strip);
    output.put_nine(canvas, name, MARGIN + 10);
}

}  // namespace

void draw_dialogs(const PALETTE& palette, const PALETTE& tinted, PICTURE_OUTPUT& output) {
    put_dialog(palette, output, "dialog", COLOUR_INVISIBLE);
    put_dialog(tinted, output, "dialog_confirm", tinted["accent"]);
    put_dialog(tinted, output, "dialog_warning", tinted["warning"]);
    put_dialog(tinted, output, "dialog_error", tinted["danger"]);
}

void draw_menus(const PALETTE& palette, const PALETTE& tinted, PICTURE_OUTPUT& output) {
    {
        constexpr int MARGIN = 8;
        constexpr double RADIUS = 6;
        CANVAS canvas(MARGIN * 2 + 48, MARGIN * 2 + 48);
        const BOX body = canvas.all().inset(MARGIN);
        canvas.shadow(body.moved(0, 2), RADIUS, palette.faded("shadow", 0.26), 6);
        canvas.erase(body, RADIUS);
        canvas.fill(body, RADIUS, palette["surface"]);
        canvas.frame(body, RADIUS, palette["edge"]);
        output.put_nine(canvas, "menu_popup", MARGIN + 8);
    }
    constexpr double RADIUS = 4;
    CANVAS plain(40, 24);
    output.put_nine(plain, "menu_item_up", 6);
    CANVAS over(40, 24);
    over.fill(over.all(), RADIUS, tinted["accent_wash"]);
    output.put_nine(over, "menu_item_over", 6);
    CANVAS down(40, 24);
    down.fill(down.all(), RADIUS, blend(tinted["accent_wash"], tinted["accent"], 0.25));
    output.put_nine(down, "menu_item_down", 6);
    CANVAS separator(24, 9);
    separator.fill({0, 4, 24, 1}, 0, palette["line"]);
    output.put_across(separator, "menu_separator", 4, 4);
}

void draw_hint(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr int MARGIN = 4;
    constexpr double RADIUS = 4;
    CANVAS canvas(MARGIN * 2 + 40, MARGIN * 2 + 24);
    const BOX body = canvas.all().inset(MARGIN);
    canvas.shadow(body.moved(0, 1), RADIUS, palette.faded("shadow", 0.28), 3);
    canvas.erase(body, RADIUS);
    canvas.fill(body, RADIUS, palette["hint_face"]);
    output.put_nine(canvas, "hint", MARGIN + 5);
}
