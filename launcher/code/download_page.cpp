#include "launcher/download_page.h"

#include "autopatch/add_on.h"
#include "autopatch/add_on_panel.h"
#include "autopatch/autopatch_system.h"
#include "launcher/launcher.h"
#include "launcher/page_texts.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/message_box.h"
#include "modules/gui/panel_frame.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_progress_bar.h"
#include "modules/winman/wm_script.h"
#include "modules/winman/wm_window.h"
#include "platform/keyboard.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

// Of both grids. The outer columns are margins.
constexpr std::int16_t COLUMNS = 3, MIDDLE = 1;
constexpr std::int16_t MAIN_LAYOUT[COLUMNS] = {1, 15, 1};
constexpr std::int16_t BUTTON_LAYOUT[COLUMNS] = {4, 4, 4};
enum ROW : std::int16_t { ROW_PROGRESS, ROW_BUTTON, ROW_FRAME };
constexpr std::int32_t FULL_PERCENT = 100;

std::int16_t get_row_height() {
    static std::int16_t LAUNCHER_PANEL_ROW_HEIGHT_INDEX = -1;
    return GUI_SKIN::get_constant("LAUNCHER_PANEL_ROW_HEIGHT", nullptr,
                                  &LAUNCHER_PANEL_ROW_HEIGHT_INDEX);
}

const WM_STYLE_SET& get_grid_style() {
    static std::int32_t DIALOG_LAYOUT_GRID_INDEX = -1;
    return GUI_SKIN::get_style_set("DIALOG_LAYOUT_GRID", nullptr, &DIALOG_LAYOUT_GRID_INDEX);
}

const WM_STYLE_SET& get_blank_style() {
    static std::int32_t BLANK_INDEX = -1;
    return GUI_SKIN::get_style_set("BLANK", nullptr, &BLANK_INDEX);
}

void* to_data(DOWNLOAD_PAGE::VALUE value) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(value));
}

void set_window_title(const char* title) {
    if (WM_WINDOW* window = WM_WINDOW_MANAGER::get_instance()->get_main_window()) {
        window->set_title(title);
    }
}

}  // namespace

DOWNLOAD_PAGE::DOWNLOAD_PAGE(WM_PAGE_MANAGER& manager) {
    forget_objects();
    setup(-1, manager, 0, 1, 0);
}

void DOWNLOAD_PAGE::forget_objects() {
    main_grid = nullptr;
    button_grid = nullptr;
    action_button = nullptr;
    launch_check_box = nullptr;
    progress_bar = nullptr;
    add_on_panel = nullptr;
    panel_frame = nullptr;
    all_downloaded = false;
    shown_percent = -1;
    shown_rate = -1.0;
}

void DOWNLOAD_PAGE::objects_deleting() {
    forget_objects();
}

void DOWNLOAD_PAGE::create(WM_PAGE_MANAGER& /*manager*/) {
    forget_objects();
    create_grids();
    create_frame();
    create_check_box();
}

void DOWNLOAD_PAGE::create_grids() {
    const std::int16_t row_height = get_row_height();
    main_grid = new WM_GRID(0, 0, static_cast<std::int16_t>(get_width() - 1),
                            static_cast<std::int16_t>(get_height() - 1), COLUMNS, MAIN_LAYOUT,
                            get_grid_style(), get_blank_style(), WINDOW);
    main_grid->set_row_height(row_height);
    add_object(main_grid, 0);

    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    static std::int32_t DIALOG_PROGRESS_BAR_INDEX = -1;
    main_grid->get_cell_coords(MIDDLE, ROW_PROGRESS, x1, y1, x2, y2);
    progress_bar = new WM_PROGRESS_BAR(
        x1, y1, static_cast<std::int16_t>(x2 - x1 + 1), static_cast<std::int16_t>(y2 - y1 + 1),
        nullptr, FULL_PERCENT,
        GUI_SKIN::get_style_set("DIALOG_PROGRESS_BAR", nullptr, &DIALOG_PROGRESS_BAR_INDEX), WINDOW,
        0);
    main_grid->add_object(MIDDLE, ROW_PROGRESS, progress_bar);

    main_grid->get_cell_coords(MIDDLE, ROW_BUTTON, x1, y1, x2, y2);
    button_grid = new WM_GRID(x1, y1, x2, y2, COLUMNS, BUTTON_LAYOUT, get_grid_style(),
                              get_blank_style(), WINDOW);
    main_grid->add_object(MIDDLE, ROW_BUTTON, button_grid);
    button_grid->set_fill_rows(1);
    static std::int32_t DIALOG_BUTTON_CANCEL_INDEX = -1;
    action_button = button_grid->add_button(
        MIDDLE, 0,
        GUI_SKIN::get_style_set("DIALOG_BUTTON_CANCEL", nullptr, &DIALOG_BUTTON_CANCEL_INDEX),
        "Cancel", nullptr, handle_callback, to_data(VALUE_CANCEL), nullptr, BUTTON_EVENT_RELEASE);
}

void DOWNLOAD_PAGE::create_frame() {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    main_grid->get_cell_coords(MIDDLE, ROW_FRAME, x1, y1, x2, y2);
    panel_frame =
        new PANEL_FRAME(x1, y1, x2, static_cast<std::int16_t>(get_height() - 1 - get_row_height()),
                        "Currently Downloading", nullptr, 0, -1, -1, 0, "DIALOG", nullptr, nullptr,
                        nullptr, nullptr, WINDOW);
    add_object(panel_frame, 0);
}

void DOWNLOAD_PAGE::create_check_box() {
    static std::int32_t DIALOG_CHECK_BOX_INDEX = -1;
    launch_check_box = new WM_CHECK_BOX(
        panel_frame->x, 0,
        GUI_SKIN::get_style_set("DIALOG_CHECK_BOX", nullptr, &DIALOG_CHECK_BOX_INDEX),
        "Launch the game when the download is complete", handle_callback, nullptr, nullptr, WINDOW);
    const std::int32_t gap_top = panel_frame->y + panel_frame->height;
    launch_check_box->move(panel_frame->x,
                           static_cast<std::int16_t>(
                               gap_top + (get_height() - gap_top - launch_check_box->height) / 2));
    launch_check_box->set_checked(LAUNCHER::instance->get_auto_launch());
    add_object(launch_check_box, 0);
}

// --- Updates ---

WM_MESG DOWNLOAD_PAGE::monitor() {
    const AUTOPATCH_PROGRESS progress = AUTOPATCH_SYSTEM::get_instance()->get_progress();
    if (progress.validated && progress.available_count <= progress.current_index &&
        !all_downloaded) {
        set_all_downloaded();
        all_downloaded = true;
    }
    if (progress_bar != nullptr) {
        show_progress(progress);
    }
    if (progress.current_add_on != nullptr) {
        show_add_on(progress.current_add_on->get_top_level_parent());
    }
    return take_escape() && !all_downloaded ? ask_to_cancel() : WM_MESG_NONE;
}

void DOWNLOAD_PAGE::show_progress(const AUTOPATCH_PROGRESS& progress) {
    if (progress.progress_percent == shown_percent && progress.download_rate_kbps == shown_rate) {
        return;
    }
    const std::string text =
        make_progress_text(progress.current_index + 1, progress.available_count,
                           progress.progress_percent, progress.download_rate_kbps);
    progress_bar->set_pos(progress.progress_percent, 0);
    progress_bar->set_custom_bar_string(text.c_str(), 0);
    set_window_title(text.c_str());
    shown_percent = progress.progress_percent;
    shown_rate = progress.download_rate_kbps;
}

void DOWNLOAD_PAGE::show_add_on(const ADD_ON* add_on) {
    if (add_on_panel != nullptr) {
        if (add_on_panel->add_on == add_on) {
            return;
        }
        panel_frame->remove_object(add_on_panel, 1, 0);
    }
    add_on_panel = new ADD_ON_PANEL(0, 0, panel_frame->get_internal_width(),
                                    panel_frame->get_internal_height(), add_on, "DIALOG", WINDOW,
                                    nullptr, nullptr, nullptr, 0);
    panel_frame->add_object(add_on_panel, 1);
}

void DOWNLOAD_PAGE::set_all_downloaded() {
    button_grid->remove_object(action_button, 1, 0);
    action_button = nullptr;
    main_grid->remove_object(progress_bar, 1, 0);
    progress_bar = nullptr;
    if (LAUNCHER::instance->get_auto_launch()) {
        LAUNCHER::instance->request_launch();
    } else {
        static std::int32_t DIALOG_LABEL_INDEX = -1;
        static std::int32_t DIALOG_BUTTON_ACKNOWLEDGE_INDEX = -1;
        main_grid->add_script(MIDDLE, ROW_PROGRESS,
                              GUI_SKIN::get_style_set("DIALOG_LABEL", nullptr, &DIALOG_LABEL_INDEX),
                              "");
        action_button =
            button_grid->add_button(MIDDLE, 0,
                                    GUI_SKIN::get_style_set("DIALOG_BUTTON_ACKNOWLEDGE", nullptr,
                                                            &DIALOG_BUTTON_ACKNOWLEDGE_INDEX),
                                    "Launch Game", nullptr, handle_callback, to_data(VALUE_LAUNCH),
                                    nullptr, BUTTON_EVENT_RELEASE);
        launch_check_box->set_enabled(0);
        if (!is_question_open()) {
            action_button->take_focus(0);
        }
    }
    set_window_title(ORLN_APPLICATION::get_instance_title());
    panel_frame->set_title("", 0);
}

// --- The user ---

bool DOWNLOAD_PAGE::is_question_open() const {
    return main_grid->get_active_modal_object_count(-1) > 0;
}

// Escape was pressed, and no dialog is there to answer it.
bool DOWNLOAD_PAGE::take_escape() {
    const WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    KEYBOARD keyboard;
    if (keyboard.peek_code() != KEY_ESCAPE || manager.get_focal_window() != WINDOW ||
        is_question_open()) {
        return false;
    }
    keyboard.get_code();
    return true;
}

// The safe answer has the focus, and is what Escape means.
WM_MESG DOWNLOAD_PAGE::ask_to_cancel() {
    // A button that was pressed with a key is let go in the next update, which the question takes.
    action_button->pressed = false;
    auto* question = new MESSAGE_BOX(
        "Cancel Download?",
        "Are you sure that you wish to cancel the download? The download will resume next time you "
        "start the application",
        0, DIALOG_KIND_CONFIRM, "Yes", to_data(VALUE_YES), nullptr, DIALOG_BUTTON_NEGATIVE_ACTION,
        "No", to_data(VALUE_NO), nullptr, DIALOG_BUTTON_CANCEL, handle_callback, handle_callback,
        WINDOW);
    page_manager->get_current_area()->add_modal_object(question, 0);
    return WM_MESG_NONE;
}

WM_MESG DOWNLOAD_PAGE::handle(WM_SCREEN_OBJECT* object, void* value, void* /*unused*/) {
    if (object == launch_check_box && launch_check_box != nullptr) {
        LAUNCHER::instance->set_auto_launch(launch_check_box->checked);
    }
    switch (reinterpret_cast<std::intptr_t>(value)) {
        case VALUE_CANCEL:
            return ask_to_cancel();
        case VALUE_YES:
            return WM_MESG_QUIT;
        case VALUE_NO:
            return WM_MESG_REMOVE_MODAL;
        case VALUE_LAUNCH:
            LAUNCHER::instance->request_launch();
            return WM_MESG_NONE;
        default:
            return WM_MESG_NONE;
    }
}
