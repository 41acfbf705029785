// The controls that a program builds pages of, and what it does with them afterwards.
#ifndef FUZZ_TOOLKIT_DRIVE_CONTROLS_H
#define FUZZ_TOOLKIT_DRIVE_CONTROLS_H

#include <algorithm>
#include <cstdint>
#include <memory>

#include "looks.h"
#include "modules/gui/message_box.h"
#include "modules/gui/panel_base.h"
#include "modules/gui/panel_frame.h"
#include "modules/gui/parameter.h"
#include "modules/gui/profile_grid.h"
#include "modules/gui/text_box.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_floating_menu.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_list_box.h"
#include "modules/winman/wm_progress_bar.h"
#include "modules/winman/wm_script.h"
#include "modules/winman/wm_scrollbar.h"
#include "program.h"

struct CONTROL {
    int kind = 0, x = 0, y = 0, width = 1, height = 1, detail = 0;
};

class CONTROLS {
public:
    // The least side of the window.
    static constexpr int MIN_WINDOW = 60;

    // What every control calls.
    explicit CONTROLS(WM_CALLBACK callback_of_all) : callback(callback_of_all) {
        slid.set(slid.max, 40);
    }

    WM_SCREEN_OBJECT* make(CONTROL control) {
        // As large as its frame and a scroll bar need it.
        const int kind = control.kind % KINDS;
        const bool is_compound = kind >= 13;
        control.width = std::max(control.width, is_compound || kind == 6 || kind == 7 ? 60 : 16);
        control.height = std::max(control.height, is_compound ? 50 : 13);
        const std::int16_t x = to_coordinate(control.x), y = to_coordinate(control.y),
                           x2 = to_coordinate(control.x + control.width - 1),
                           y2 = to_coordinate(control.y + control.height - 1);
        switch (kind) {
            case 0:
                return make_button(x, y, x2, y2, control.detail);
            case 1: {
                auto* box = new WM_CHECK_BOX(x, y, look("CHECK_BOX"), "check", callback, nullptr,
                                             nullptr, 0);
                box->set_checked(control.detail & 1);
                return box;
            }
            case 2:
                return make_progress_bar(control);
            case 3:
                return make_image(control);
            case 4: {
                auto* animation = new WM_ANIMATION(
                    x, y, &looks.strip, 3, to_coordinate(20 + control.detail % 64), 1, callback,
                    nullptr, nullptr, static_cast<ANIMATION_CALLBACK_TYPE>(control.detail % 3), 0);
                animation->stop_at_last = control.detail & 4;
                animation->fade_on_start = control.detail & 8;
                return animation;
            }
            case 5: {
                auto* script = new WM_SCRIPT(x, y, x2, y2, look("SCRIPT"), "a script", 0);
                script->flashing = control.detail & 1;
                script->flash_text.set(script->flash_text.value, "flash");
                script->flash_mask = 0x0010;
                script->set_hint_text(control.detail & 2 ? "hint" : nullptr);
                return script;
            }
            case 6:
            case 7:
                return make_text_box(x, y, x2, y2, control.detail);
            case 8:
            case 9:
                return make_grid(control);
            case 10: {
                auto* bar = new WM_SCROLLBAR(
                    x, y, x2, y2, &slid,
                    look(control.detail & 1 ? "SCROLLBAR" : "SCROLLBAR_HORIZONTAL"), callback,
                    nullptr, nullptr, 0, nullptr, control.detail & 2 ? "hint" : nullptr);
                bar->page_step = 7;
                return bar;
            }
            case 11:
                return make_menu(x, y, x2, y2, control.detail);
            case 12:
                return make_list_box(x, y, x2, y2, control.detail);
            case 13:
                return make_frame(x, y, x2, y2, control.detail);
            case 14:
                return make_profile_grid(x, y, x2, y2, control.detail);
            default: {
                auto* panel = new PANEL_BASE(
                    x, y, x2, y2, 0, control.detail & 1 ? callback : nullptr, nullptr, nullptr, 0);
                panel->add_internal_object(make_button(2, 2, 20, 12, control.detail >> 1), 1);
                return panel;
            }
        }
    }

    // A modal object, which isn't in the window yet.
    WM_SCREEN_OBJECT* make_modal(int kind, int detail, std::int16_t x, std::int16_t y) {
        EFFECT_INFO effect;
        effect.time = effect.reshade_time = 100;
        effect.flags = static_cast<std::uint16_t>(detail * 37);
        effect.drag_alpha = detail & 8 ? 128 : 255;
        WM_DIALOG::default_dialog_effect_info = effect;
        // The dialogs have room for every control.
        switch (kind % 4) {
            case 0: {
                auto* dialog = new WM_DIALOG(x, y, to_coordinate(76 + detail % 32), 62,
                                             detail & 1 ? "title" : nullptr, detail & 2,
                                             look("DIALOG_BACKGROUND"), look("DIALOG_TITLE"),
                                             look("BLANK"), &effect, 0);
                dialog->draggable = detail & 4;
                dialog->no_drag_in_contents = detail & 8;
                dialog->add_object(make({detail / 16, 4, 2, 24, 14, detail}), 1);
                dialog->add_object(make_button(4, 20, 30, 32, detail), 1);
                return dialog;
            }
            case 1:
                return new MESSAGE_BOX("message", "A text of <bold>some</bold> words in lines",
                                       static_cast<signed char>(detail & 1), DIALOG_KIND_PLAIN,
                                       "Yes", nullptr, nullptr, DIALOG_BUTTON_POSITIVE_ACTION, "No",
                                       nullptr, nullptr, DIALOG_BUTTON_CANCEL, callback,
                                       close_dialogs, 0);
            case 2: {
                auto* dialog =
                    new DIALOG_BASE(x, y, 90, 96, "base", detail & 2, DIALOG_KIND_WARNING, "Close",
                                    nullptr, nullptr, DIALOG_BUTTON_CANCEL, close_dialogs, 0);
                dialog->draggable = detail & 4;
                dialog->add_object(make({detail / 16, 2, 2, 40, 16, detail}), 1);
                return dialog;
            }
            default: {
                auto* menu = new WM_FLOATING_MENU(
                    x, y, detail & 1 ? "menu" : nullptr, look("FLOATING_MENU_POPUP"),
                    look("FLOATING_MENU_TITLE"), look("FLOATING_MENU_ITEM"),
                    look("FLOATING_MENU_ITEM_ALTERNATE"), look("FLOATING_MENU_SEPARATOR"),
                    detail & 2, 0, nullptr, nullptr, &effect, nullptr, 0, 0);
                fill(*menu, 1 + detail % 16);
                return menu;
            }
        }
    }

    // What the program does with a control of its own.
    void change(WM_SCREEN_OBJECT* object, int detail) {
        if (auto* list = dynamic_cast<WM_LIST_BOX*>(object)) {
            change_list_box(*list, detail);
        } else if (auto* menu = dynamic_cast<WM_MENU*>(object)) {
            detail & 1 ? menu->open() : menu->start_closing_popup();
        } else if (auto* button = dynamic_cast<WM_BUTTON*>(object)) {
            change_button(*button, detail);
        } else if (auto* check = dynamic_cast<WM_CHECK_BOX*>(object)) {
            detail & 1 ? check->set_checked(detail >> 1 & 1) : check->set_enabled(detail >> 1 & 1);
        } else if (auto* bar = dynamic_cast<WM_PROGRESS_BAR*>(object)) {
            detail & 0x80 ? bar->set_max_steps(1 + detail % 64, 0)
                          : bar->set_pos(detail % 64, detail & 64);
        } else if (auto* image = dynamic_cast<WM_IMAGE*>(object)) {
            image->overlay_colour = COLOUR(0x80, 0, 0, static_cast<unsigned char>(detail));
            image->request_draw(0, 0);
        } else if (auto* script = dynamic_cast<WM_SCRIPT*>(object)) {
            script->set_text(detail & 1 ? "another text" : "");
            script->flashing = detail & 2;
            script->request_draw(0, 0);
        } else if (auto* box = dynamic_cast<TEXT_BOX*>(object)) {
            change_text_box(*box, detail);
        } else if (auto* grid = dynamic_cast<WM_GRID*>(object)) {
            change_grid(*grid, detail);
        } else if (dynamic_cast<WM_SCROLLBAR*>(object) != nullptr) {
            slid.set(slid.value, detail % 41);
        } else if (auto* profile = dynamic_cast<PROFILE_GRID*>(object)) {
            change_profile_grid(*profile, detail);
        } else if (auto* frame = dynamic_cast<PANEL_FRAME*>(object)) {
            change_frame(*frame, detail);
        } else if (auto* dialog = dynamic_cast<DIALOG_BASE*>(object)) {
            detail & 1 ? dialog->reset_actioned()
                       : dialog->set_button_enabled(DIALOG_BASE::ANY_TYPE, detail >> 1 & 1);
        } else if (auto* animation = dynamic_cast<WM_ANIMATION*>(object)) {
            animation->playing = detail & 1;
        }
    }
    static void set_enabled(WM_SCREEN_OBJECT* object, bool on) {
        if (auto* button = dynamic_cast<WM_BUTTON*>(object)) {
            button->enabled = on;
            button->request_draw(0, 0);
        } else if (auto* check = dynamic_cast<WM_CHECK_BOX*>(object)) {
            check->set_enabled(on);
        } else if (auto* box = dynamic_cast<TEXT_BOX*>(object)) {
            box->set_enabled(on);
        } else if (auto* bar = dynamic_cast<WM_SCROLLBAR*>(object)) {
            bar->enabled = on;
            bar->request_draw(0, 0);
        }
    }

    // Of those that place their parts anew.
    static void resize(WM_SCREEN_OBJECT& object, int width, int height) {
        constexpr std::uint32_t FIXED = WMF_PROGRESS_BAR | WMF_DIALOG | WMF_ANIMATION;
        const bool is_text_box = dynamic_cast<TEXT_BOX*>(&object) != nullptr;
        if (is_text_box || ((object.type_flags & (FIXED | WMF_COMPOSITE)) == 0 &&
                            dynamic_cast<WM_CHECK_BOX*>(&object) == nullptr &&
                            dynamic_cast<PANEL_BASE*>(&object) == nullptr)) {
            object.resize(to_coordinate(std::max(width, is_text_box ? 60 : 0)),
                          to_coordinate(height), 0);
        }
    }

private:
    static constexpr int KINDS = 16;

    static WM_STYLE_SET& look(const char* name) { return LOOKS::get(name); }
    static WM_MESG close_dialogs(WM_SCREEN_OBJECT* /*object*/, void* /*data1*/, void* /*data2*/) {
        return WM_MESG_CLOSE_MODAL_DIALOGS;
    }
    static WM_MESG end_drag(WM_SCREEN_OBJECT* self, WM_SCREEN_OBJECT* target, std::int16_t x,
                            std::int16_t y, std::uint32_t event, void* /*data1*/, void* /*data2*/) {
        require(self != target || event != BUTTON_DROPPED_ON_OTHER);
        if (event == BUTTON_DROPPED_ON_OTHER && self->parent != nullptr) {
            self->move(x, y);
        }
        return WM_MESG_HANDLED;
    }

    WM_BUTTON* make_button(std::int16_t x, std::int16_t y, std::int16_t x2, std::int16_t y2,
                           int detail) {
        auto* button = new WM_BUTTON(x, y, x2, y2, look("BUTTON"), "button",
                                     detail & 1 ? "hint" : nullptr, callback, nullptr, nullptr,
                                     static_cast<unsigned char>(1 + (detail >> 1) % 15), 0,
                                     (detail & 0x20) == 0, 0);
        if (detail & 0x40) {
            button->drag_callback = end_drag;
            button->drag_flags = 15;
        }
        if (detail & 0x80) {
            button->icon.copy_pixels_from(looks.picture);
            button->button_flags |= BUTTON_ICON_LEFT;
            button->right_callback = callback;
        }
        return button;
    }
    static void change_button(WM_BUTTON& button, int detail) {
        switch (detail % 4) {
            case 0:
                button.set_string("a longer title", detail & 4);
                break;
            case 1:
                button.flashing = detail & 4;
                button.flash_text.set(button.flash_text.value, "flash");
                button.flash_mask = 0x0010;
                button.request_draw(0, 0);
                break;
            case 2:
                button.set_hint_text(detail & 4 ? "another hint" : "");
                break;
            default:
                button.set_activated(detail & 4);
                button.request_draw(0, 0);
        }
    }
    // Ends the process if it isn't in the window.
    static WM_SCREEN_OBJECT* make_progress_bar(const CONTROL& control) {
        if (control.x < 0 || control.y < 0 || control.x + control.width > MIN_WINDOW ||
            control.y + control.height > MIN_WINDOW) {
            return new WM_SCRIPT(0, 0, 9, 9, look("SCRIPT"), "", 0);
        }
        auto* bar = new WM_PROGRESS_BAR(to_coordinate(control.x), to_coordinate(control.y),
                                        to_coordinate(control.width), to_coordinate(control.height),
                                        "bar", 50, look("PROGRESS_BAR"), 0, 0);
        bar->bar_flags = static_cast<std::uint16_t>(control.detail & 127);
        bar->bar_colour = COLOUR_BLUE;
        bar->set_pos(control.detail % 50, 0);
        return bar;
    }
    WM_SCREEN_OBJECT* make_image(const CONTROL& control) {
        auto* image = new WM_IMAGE(
            to_coordinate(control.x), to_coordinate(control.y), to_coordinate(control.width),
            to_coordinate(control.height), 1, callback, nullptr, nullptr,
            control.detail & 1 ? IMAGE_CLICK_ON_PRESS : IMAGE_CLICK_ON_RELEASE, 0);
        image->image.copy_pixels_from(looks.picture);
        image->auto_resize = control.detail & 2;
        image->overlay_colour = COLOUR(0x60, 0x80, 0, 0);
        image->set_hint_text(control.detail & 4 ? "hint" : nullptr);
        return image;
    }
    WM_SCREEN_OBJECT* make_text_box(std::int16_t x, std::int16_t y, std::int16_t x2,
                                    std::int16_t y2, int detail) {
        constexpr std::uint32_t FLAGS[] = {
            0,
            TBF_SELECTABLE,
            TBF_SELECTABLE | TBF_EDITABLE | TBF_POPUP_MENU,
            TBF_SELECTABLE | TBF_EDITABLE | TBF_CLICK_SELECTS_ALL | TBF_NO_TAGS,
            TBF_EDITABLE | TBF_SHOW_REMAINING | TBF_NOTIFY_CHANGE,
            TBF_SELECTABLE | TBF_JUSTIFY,
            TBF_PASSWORD | TBF_EDITABLE | TBF_RETURN_FIRES,
            TBF_CLICK_FIRES,
        };
        auto* box = new TEXT_BOX(
            x, y, x2, y2,
            "Some <bg_colour:4282400832#>words of a text<bg_colour:0#>, in <style:1#>bold<style:0#>"
            " and <separator#> below\nand more lines and more",
            200, nullptr, FLAGS[detail % 8] | (detail & 8 ? std::uint32_t{TBF_MULTI_LINE} : 0u), "",
            callback, nullptr, nullptr, 0);
        box->set_default_text(detail & 16 ? "default" : nullptr);
        box->set_prefix_text(detail & 32 ? "prefix" : nullptr);
        return box;
    }
    static void change_text_box(TEXT_BOX& box, int detail) {
        switch (detail % 7) {
            case 0:
                box.set_text(detail & 8 ? "" : "short");
                break;
            case 1:
                box.append_text(" more and more words");
                break;
            case 2:
                box.set_flags(box.flags ^ (detail & 8 ? TBF_MULTI_LINE : TBF_JUSTIFY));
                break;
            case 3:
                box.set_scroll_position(detail);
                break;
            case 4:
                box.select_all();
                break;
            case 5:
                box.set_default_text(detail & 8 ? "default" : nullptr);
                break;
            default:
                box.handle_undo_request();
        }
    }

    WM_GRID* make_grid(const CONTROL& control) {
        WM_STYLE_SET style = look("GRID");
        style.flags ^= control.detail & 1 ? std::uint32_t{STYLE_GRID_FIX_TOP_ROW} : 0u;
        style.flags ^= control.detail & 2 ? std::uint32_t{STYLE_GRID_TYPE_LINES} : 0u;
        auto* grid = new WM_GRID(to_coordinate(control.x), to_coordinate(control.y),
                                 to_coordinate(control.x + control.width - 1),
                                 to_coordinate(control.y + control.height - 1), 2, nullptr, style,
                                 look("SCROLLBAR"), 0);
        grid->keyboard_navigation = control.detail & 4;
        grid->set_row_height(11);
        add_rows(*grid, control.detail >> 3);
        return grid;
    }
    void add_rows(WM_GRID& grid, int count) {
        for (int i = 0; i < count; ++i) {
            const std::int16_t row = grid.row_count;
            const bool is_nested = row % 8 == 3;
            if (is_nested) {
                grid.set_row_height(30);
            }
            grid.add_script(0, row, look("SCRIPT"), "cell");
            if (is_nested) {
                WM_GRID* inner =
                    new WM_GRID(0, 0, 20, 20, 1, nullptr, look("GRID"), look("SCROLLBAR"), 0);
                for (std::int16_t each = 0; each < 4; ++each) {
                    inner->add_button(0, each, look("BUTTON"), "in", "hint", callback, nullptr,
                                      nullptr, 2);
                }
                require(grid.add_object(1, row, inner) != nullptr);
                grid.set_row_height(11);
            } else if (row % 3 == 0) {
                grid.add_button(1, row, look("BUTTON"), "b", "hint", callback, nullptr, nullptr, 2);
            } else if (row % 3 == 1) {
                grid.add_image(1, row, looks.picture, callback, nullptr, nullptr, 1);
            } else {
                const char* const lines[] = {"one", "two", "three"};
                grid.add_list_box(1, row, look("BUTTON"), look("FLOATING_MENU_POPUP"),
                                  look("FLOATING_MENU_TITLE"), look("FLOATING_MENU_ITEM"),
                                  look("FLOATING_MENU_ITEM_ALTERNATE"),
                                  look("FLOATING_MENU_SEPARATOR"), lines, 3, "none", callback,
                                  nullptr, nullptr);
            }
        }
    }
    void change_grid(WM_GRID& grid, int detail) {
        const std::int16_t row = to_coordinate(detail / 8);
        switch (detail % 8) {
            case 0:
                add_rows(grid, 1 + row % 4);
                break;
            case 1:
                grid.delete_rows(row, to_coordinate(row + detail / 64));
                break;
            case 2:
                grid.set_scroll_to_row(row, detail >= 128);
                break;
            case 3:
                grid.set_scroll_to_position(detail);
                break;
            case 4:
                grid.clear(1);
                break;
            case 5:
                grid.set_row_height(row % 4, to_coordinate(5 + row));
                break;
            case 6:
                grid.give_child_object_focus(1, row);
                break;
            default:
                grid.set_fill_rows(row % 5);
        }
    }

    void fill(WM_FLOATING_MENU& menu, int items) {
        for (int i = 0; i < items; ++i) {
            const char text[] = {static_cast<char>('a' + i), 'b', 'c', '\0'};
            if (i % 5 == 2) {
                fill(*menu.add_menu(text, 0, 0, nullptr, nullptr)->popup, items / 3);
            } else {
                menu.add_button(text, callback, nullptr, nullptr, i % 4 == 3, nullptr, nullptr);
            }
        }
    }
    WM_SCREEN_OBJECT* make_menu(std::int16_t x, std::int16_t y, std::int16_t x2, std::int16_t y2,
                                int detail) {
        EFFECT_INFO effect;
        effect.time = 60;
        effect.flags = static_cast<std::uint16_t>(detail * 41);
        auto* menu = new WM_MENU(
            x, y, x2, y2, "menu", static_cast<MENU_TYPE>(detail % 4), look("BUTTON"),
            look("FLOATING_MENU_POPUP"), look("FLOATING_MENU_TITLE"), look("FLOATING_MENU_ITEM"),
            look("FLOATING_MENU_ITEM_ALTERNATE"), look("FLOATING_MENU_SEPARATOR"), detail & 4,
            &effect, 0, detail & 8 ? "title" : nullptr);
        fill(*menu->popup, 1 + (detail >> 4));
        return menu;
    }
    WM_SCREEN_OBJECT* make_list_box(std::int16_t x, std::int16_t y, std::int16_t x2,
                                    std::int16_t y2, int detail) {
        const char* const lines[] = {"first", "second", "third", "fourth", "fifth", "sixth"};
        return new WM_LIST_BOX(
            x, y, x2, y2, to_coordinate(detail % 8 - 1), -1, lines, to_coordinate(1 + detail % 6),
            "none", look("BUTTON"), look("FLOATING_MENU_POPUP"), look("FLOATING_MENU_TITLE"),
            look("FLOATING_MENU_ITEM"), look("FLOATING_MENU_ITEM_ALTERNATE"),
            look("FLOATING_MENU_SEPARATOR"), callback, nullptr, nullptr, nullptr, 0);
    }
    static void change_list_box(WM_LIST_BOX& list, int detail) {
        switch (detail % 5) {
            case 0:
                list.set_current_selection(to_coordinate(detail / 16), detail & 8);
                break;
            case 1:
                list.add_line("a new line");
                break;
            case 2:
                list.clear_lines();
                break;
            case 3:
                list.add_line_to_menu(list.add_menu("sub", 1, 0), "within", nullptr);
                break;
            default:
                detail & 8 ? list.open() : list.close_at_once();
        }
    }

    WM_SCREEN_OBJECT* make_frame(std::int16_t x, std::int16_t y, std::int16_t x2, std::int16_t y2,
                                 int detail) {
        const PANEL_FRAME_TAB tabs[] = {
            {"Squad", 0, 1, 0}, {"First", 1, 11, 0}, {"Youth", 1, 12, 0}, {"Club", 0, 2, 0}};
        auto* frame =
            new PANEL_FRAME(x, y, x2, y2, detail & 1 ? "frame" : nullptr, tabs, detail & 2 ? 4 : 1,
                            frame_tab, 0, static_cast<unsigned char>(detail >> 2 & 15), nullptr,
                            nullptr, choose_tab, this, nullptr, 0);
        frame->add_object(make_button(1, 1, 30, 12, detail), 1);
        return frame;
    }
    void change_frame(PANEL_FRAME& frame, int detail) {
        WM_BUTTON* button = make_button(0, 0, 12, 8, detail);
        const bool taken = detail & 1 ? frame.add_upper_frame_object(button)
                                      : frame.add_upper_icon_bar_object(button);
        if (!taken) {
            delete button;
        }
        if (detail & 2) {
            detail & 4 ? frame.hide_upper_frame_objects() : frame.clear_upper_icon_bar_objects();
        }
        frame.set_title(detail & 8 ? "another title" : nullptr, 0);
    }
    static WM_MESG choose_tab(WM_SCREEN_OBJECT* object, void* controls, void* /*data2*/) {
        static_cast<CONTROLS*>(controls)->frame_tab = static_cast<PANEL_FRAME*>(object)->active_id;
        return WM_MESG_REBUILD_AREA;
    }

    WM_SCREEN_OBJECT* make_profile_grid(std::int16_t x, std::int16_t y, std::int16_t x2,
                                        std::int16_t y2, int detail) {
        auto* grid = new PROFILE_GRID(x, y, x2, y2, static_cast<signed char>(detail % 4), 1,
                                      nullptr, 4, nullptr, callback, nullptr, nullptr, 0);
        grid->add_title_script(0, 0, "Facts", 0);
        for (std::int16_t row = 1; row < 3 + detail / 32; ++row) {
            row % 2 ? static_cast<void>(grid->add_script(0, row, "label", "value", 0))
                    : static_cast<void>(grid->add_button(0, row, "label", "button", 0, callback,
                                                         nullptr, nullptr));
        }
        return grid;
    }
    void change_profile_grid(PROFILE_GRID& grid, int detail) {
        switch (detail % 5) {
            case 0:
                grid.set_selected_row(to_coordinate(detail / 16 - 1));
                break;
            case 1:
                set_special_object(grid, make_button(0, 0, 5, 5, detail));
                break;
            case 2:
                grid.delete_rows(to_coordinate(detail / 16), to_coordinate(detail / 16 + 1));
                break;
            case 3:
                grid.set_scroll_position(detail / 2);
                break;
            default:
                grid.clear_special_object();
        }
    }

    static void set_special_object(PROFILE_GRID& grid, WM_BUTTON* button) {
        // It stands where the cells are now; the page sets it anew when they have been scrolled.
        grid.set_scroll_to_top();
        if (!grid.set_special_object(button)) {
            delete button;
        }
    }

    const WM_CALLBACK callback;
    LOOKS looks;
    PARAMETER slid;
    std::int32_t frame_tab = 1;
};

#endif  // FUZZ_TOOLKIT_DRIVE_CONTROLS_H
