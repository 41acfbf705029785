// WM_WINDOW_MANAGER: the root of the toolkit, the owner of the program's windows.
//
// Windows are known by a small index, -1 for none:
//
//     0      the main window; the program goes on or ends by its result
//     1, 2   child windows
//     3      alerts: borderless, slides in at the top right, focal independently of the others
//     4      borderless
//
// The application calls `monitor` once per tick, which runs input, animation and drawing of all
// windows. Failures are silent: with a bad index or an empty slot an operation does nothing and
// yields 0, null or -1. Main thread only.
#ifndef MODULES_WINMAN_WINDOW_MANAGER_H
#define MODULES_WINMAN_WINDOW_MANAGER_H

#include <cstdint>

#include "modules/winman/wm_mesg.h"
#include "modules/winman/wm_region.h"
#include "platform/open_graphics.h"
#include "platform/ptrarray.h"

class CONFIG_FILE;
class IMAGE;
class PTRLLIST;
class WM_PAGE_MANAGER;
class WM_SCREEN_OBJECT;
class WM_WINDOW;
class WM_WINDOW_INFO;
struct OPEN_GRAPHICS_SETTINGS;

class WM_WINDOW_MANAGER {
public:
    static constexpr signed char WINDOW_COUNT = 5;
    static constexpr signed char MAIN_WINDOW = 0;
    static constexpr signed char ALERTS_WINDOW = 3;
    static constexpr signed char SPLASH_WINDOW = 4;

    enum DISPLAY_MODE : signed char { SINGLE_WINDOW = 0, SEVERAL_WINDOWS = 1, FULL_SCREEN = 2 };

    // --- Life ---

    static void create();
    // Null before create, and while the manager is being destroyed.
    static WM_WINDOW_MANAGER* get_instance();
    // Saves the settings and deletes all windows; the manager stays.
    void shutdown();
    static void destroy();

    // --- Windows ---

    // Fills a slot; the platform window is opened by draw_window. Sizes have their unset halves as
    // 0xFFFF. With a configuration the stored settings apply: of the program for window 0, of the
    // window's size and place. A hidden window comes back with the size that it has. True if the
    // slot holds the window now.
    bool add_window(signed char index, std::int16_t areas, OPEN_GRAPHICS_SIZES min,
                    OPEN_GRAPHICS_SIZES extended_min, OPEN_GRAPHICS_SIZES max);
    // Opens or reopens the platform window. A main window that can be had neither in full screen
    // nor in a window ends the process. `failed`: there is no such window, or it can't be opened;
    // `changed`: it was opened in another way than asked for.
    void draw_window(signed char index, unsigned char hidden, unsigned char& failed,
                     unsigned char& changed);
    // Saves the settings, closes the window and empties the slot. Focal windows go back to 0. Not
    // for the window whose tick is running: its pages close it by yielding WM_MESG_QUIT.
    void close_window(signed char index);
    void remove_window(signed char index);
    void close_child_windows();
    // Hides the window and deletes its page manager; not within its tick either. The alerts window
    // slides out first.
    void hide_window(signed char index);
    // Moves the window to its position, shows it and makes it focal.
    void show_window(signed char index);
    void bring_window_to_front(signed char index);

    // Unknown handles: null is window 0.
    void set_window_as_focal_window(signed char index);
    void set_window_as_focal_window(void* handle);
    signed char get_focal_window() const { return focal_window; }
    signed char get_last_focal_window() const { return last_focal_window; }
    bool is_object_on_focal_window(const WM_SCREEN_OBJECT* object) const;
    // Makes the window focal, if the display mode allows it.
    bool set_to_window(signed char index);
    bool can_create_child_window(signed char index) const;
    bool is_display_mode_supported(signed char mode) const;
    static bool is_borderless_window(signed char index);
    static bool is_window_data_saveable(signed char index);

    // The slot of a handle or a back buffer; for an unknown one the last slot without, else 0.
    signed char get_window_index(const void* handle) const;
    signed char get_window_index(const IMAGE* back_buffer) const;
    // The first window with a visible modal object, or -1.
    signed char get_modal_window_index() const;

    // --- What a slot holds ---

    WM_WINDOW_INFO* get_window_info(signed char index) const;
    // Takes ownership; what the slot held is deleted.
    void set_window_info(signed char index, WM_WINDOW_INFO* info);
    WM_PAGE_MANAGER* get_page_manager(signed char index) const;
    WM_WINDOW* get_window(signed char index) const;
    WM_WINDOW* get_main_window() const { return get_window(MAIN_WINDOW); }
    void* get_window_handle(signed char index) const;
    void* get_monitor_handle(signed char index) const;
    IMAGE* get_back_buffer(signed char index) const;
    void* get_back_buffer_data(signed char index) const;
    void set_back_buffer_data(signed char index, void* data);
    WM_SCREEN_OBJECT* get_focal_object(signed char index) const;
    void set_focal_object(signed char index, WM_SCREEN_OBJECT* object);
    // 1 for a bad index, so that nobody begins to move the focus.
    unsigned char get_focal_object_monitored(signed char index) const;
    void set_focal_object_monitored(signed char index, unsigned char monitored);
    WM_SCREEN_OBJECT* get_right_mouse_object(signed char index) const;
    void set_right_mouse_object(signed char index, WM_SCREEN_OBJECT* object);
    WM_SCREEN_OBJECT* get_mouse_wheel_focus(signed char index) const;
    void set_mouse_wheel_focus(signed char index, WM_SCREEN_OBJECT* object);
    bool has_mouse_wheel_focus(const WM_SCREEN_OBJECT* object) const;
    PTRLLIST* get_modal_screen_objects(signed char index) const;
    // 1 for a bad index.
    unsigned char get_monitor_modals(signed char index) const;
    void set_monitor_modals(signed char index, unsigned char on);
    // The open WM_FLOATING_MENU and the WM_DIALOG in front.
    WM_SCREEN_OBJECT* get_active_menu(signed char index) const;
    void set_active_menu(signed char index, WM_SCREEN_OBJECT* menu);
    WM_SCREEN_OBJECT* get_active_dialog(signed char index) const;
    void set_active_dialog(signed char index, WM_SCREEN_OBJECT* dialog);
    // The slot's own, to be changed in place.
    WM_REGION* get_is_in_me_region(signed char index) const;
    WM_REGION* get_update_region(signed char index) const;
    std::int32_t get_number_of_pending_update_regions(signed char index) const;
    WM_REGION* get_pending_update_region(signed char index, std::int32_t number) const;
    void clear_pending_update_regions(signed char index);
    // See WM_WINDOW_INFO.
    void add_pending_update_region(signed char index, std::int16_t x1, std::int16_t y1,
                                   std::int16_t x2, std::int16_t y2, std::int16_t gap);

    void set_min_dimensions(signed char index, OPEN_GRAPHICS_SIZES min,
                            OPEN_GRAPHICS_SIZES extended_min);
    void set_max_dimensions(signed char index, OPEN_GRAPHICS_SIZES max);
    // The window's minimum, each half at most the application's minimum window size.
    OPEN_GRAPHICS_SIZES get_min_dimensions(signed char index) const;
    OPEN_GRAPHICS_SIZES get_max_dimensions(signed char index) const;
    OPEN_GRAPHICS_SIZES get_display_dimensions(signed char index) const;
    void set_display_dimensions(signed char index, OPEN_GRAPHICS_SIZES size);

    // --- Work ---

    // The tick. The result is that of window 0; WM_MESG_QUIT ends the program.
    WM_MESG monitor(unsigned char blit);
    // Shows what was drawn.
    void blit_window(signed char index, unsigned char wait);
    void blit_window(const WM_SCREEN_OBJECT* object, unsigned char wait);
    // The user's attention, unless the window is focal.
    void send_notification(signed char index);
    // An alert is to be shown on the desktop: the main window is out of sight.
    bool show_alert_as_desktop_alert() const;

    // Changes the mode; a setting that is in range becomes the full-screen setting. True unless
    // full screen is entered or left; then draw_window's `failed`.
    bool set_display_mode(signed char mode, signed char setting);
    // Another full-screen setting. False if the window can't be opened with it.
    bool set_to_use_alternate_display_setting(std::int32_t setting);
    // Null for an index out of range.
    const DISPLAY_SETTINGS* get_display_setting(std::int32_t setting) const;
    void save_all_data_to_config_file();

    // Where settings are read from and saved to, in its base path; null: nowhere. Not owned; to be
    // set to null before the file goes.
    CONFIG_FILE* config_file = nullptr;
    signed char focal_window = -1;         // has the keyboard
    signed char focal_alerts_window = -1;  // the alerts window, independently
    signed char last_focal_window = -1;    // of either sort
    signed char display_mode = SEVERAL_WINDOWS;
    bool was_full_screen = false;
    bool minimize_to_tray = false;
    bool desktop_alerts = true;
    signed char notification_count = 1;
    signed char mouse_icon = 0;           // the pointer that this tick asks for
    PTRARRAY supported_display_settings;  // DISPLAY_SETTINGS*, owned; the default one first
    std::int32_t current_display_setting = -1;

private:
    struct PLACE;

    WM_WINDOW_MANAGER();
    ~WM_WINDOW_MANAGER();

    void delete_slot(signed char index);
    void leave_focal_window(signed char index);
    bool monitor_window(signed char index, unsigned char blit, WM_MESG& result);
    void act_on_child(signed char index, unsigned char blit, WM_MESG result);

    // The application's minimum window size.
    static OPEN_GRAPHICS_SIZES get_application_minimum();
    static void set_application_minimum(OPEN_GRAPHICS_SIZES size);
    void place_alerts_window(OPEN_GRAPHICS_SIZES min);
    void setup_opening(signed char index, unsigned char hidden,
                       OPEN_GRAPHICS_SETTINGS& settings) const;
    void open_main_window(OPEN_GRAPHICS_SETTINGS& settings, unsigned char& changed);
    void tell_opening_failed(const OPEN_GRAPHICS_SETTINGS& settings, bool first_failure) const;

    void load_supported_display_settings();
    std::int32_t find_display_setting(const DISPLAY_SETTINGS& setting) const;
    void apply_display_setting(std::int32_t setting);
    void read_program_settings();
    void read_place(signed char index, PLACE& place) const;
    void fit_place(signed char index, PLACE& place, const OPEN_GRAPHICS_SIZES& max) const;
    bool read_number(const char* key, std::int32_t& value) const;
    // `value` stays as it is unless the stored number lies between the two, both included.
    bool read_number_within(const char* key, std::int32_t least, std::int32_t most,
                            std::int32_t& value) const;
    bool read_window_number(const char* name, signed char index, std::int32_t least,
                            std::int32_t most, std::int32_t& value) const;
    void write_number(const char* key, std::int32_t value);
    void write_window_number(const char* name, signed char index, std::int32_t value);

    static void windows_remove_node_callback(void* entry);

    PTRARRAY windows;  // WM_WINDOW_INFO*, one entry per index, null when empty
    bool shutting_down = false;
    bool window_drawn = false;  // draw_window has run
    bool display_settings_loaded = false;

    static WM_WINDOW_MANAGER* instance;
};

#endif  // MODULES_WINMAN_WINDOW_MANAGER_H
