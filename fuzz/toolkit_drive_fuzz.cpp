// The toolkit under a user and a program that do anything at any time: pages of all controls are
// built, used, changed, left and rebuilt, dialogs and menus come and go, and after every tick the
// invariants of toolkit_drive/checks.h hold.
//
// An input is a byte program: the settings, three pages of controls (a count, and six bytes for
// each control), then steps of three bytes: what is done, and two numbers.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include "modules/winman/wm_dialog.h"
#include "modules/winman/wm_window.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"
#include "toolkit_drive/checks.h"
#include "toolkit_drive/controls.h"
#include "toolkit_drive/program.h"

namespace {

constexpr int MAX_STEPS = 80, TICK_MS = 20;

class DRIVE {
public:
    explicit DRIVE(PROGRAM& byte_program) : program(byte_program) {
        current = this;
        start_from_nothing();
        make_window();
        checks = std::make_unique<CHECKS>();
        read_pages();
        show_page(0, 0);
        pages().get_area(0)->change_next_monitor = true;
        tick();
    }
    ~DRIVE() {
        checks.reset();
        WM_WINDOW_MANAGER::destroy();
        start_from_nothing();
        current = nullptr;
    }
    DRIVE(const DRIVE&) = delete;
    DRIVE& operator=(const DRIVE&) = delete;

    void run() {
        for (int step = 0; step < MAX_STEPS && !program.is_done(); ++step) {
            const int what = program.next(), first = program.next(), second = program.next();
            do_step(what, first, second);
            tick();
        }
        check_picture(true);
    }

private:
    struct PAGE {
        std::vector<CONTROL> controls;
    };

    // --- Setting up ---

    static void start_from_nothing() {
        MOUSE::release_all();
        MOUSE::set_position(-1, -1, -1);
        MOUSE::wheel_pos = 0;
        KEYBOARD::set_modifiers(0);
        KEYBOARD().clear_buffer();
        set_clipboard_text("");
        WM_SCREEN_OBJECT::millisecond_clock = [] { return now; };
        WM_SCREEN_OBJECT::now_ms = now = 1000;
        WM_DIALOG::active_dialog = nullptr;
        DIALOG_BASE::active_dialog = nullptr;
    }
    void make_window() {
        WM_WINDOW_MANAGER::create();
        WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
        const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(100, 80);
        require(manager.add_window(0, 2, size, size, size));
        info().back_buffer->reset(100, 80);
        pages().set_background_colour(COLOUR(0xFF304050u));
        pages().fade_time = 0;
        manager.set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
        const int settings = program.next();
        WM_DIALOG::darken_background = settings & 1;
        WM_DIALOG::grey_background = settings & 2;
        WM_DIALOG::drag_contents = (settings & 4) == 0;
        WM_SCREEN_OBJECT::hint_delay_time = settings & 8 ? 0 : 60;
        // Drawing everything also mends what objects think of themselves, so not each time.
        check_interval = 1 << (settings >> 6);
    }
    void read_pages() {
        for (PAGE& page : described) {
            for (int count = program.next() % 8; count > 0; --count) {
                page.controls.push_back(read_control());
            }
        }
    }
    CONTROL read_control() {
        CONTROL control;
        control.kind = program.next();
        control.x = program.next() % 110 - 10;
        control.y = program.next() % 90 - 10;
        control.width = 1 + program.next() % 100;
        control.height = 1 + program.next() % 80;
        control.detail = program.next();
        return control;
    }

    static WM_WINDOW_INFO& info() {
        return *WM_WINDOW_MANAGER::get_instance()->get_window_info(WM_WINDOW_MANAGER::MAIN_WINDOW);
    }
    static WM_PAGE_MANAGER& pages() { return *info().page_manager; }

    // --- Pages ---

    void show_page(std::int32_t area, int number) {
        pages().set_next_page(area, create_page, nullptr, &described[number % 3], nullptr,
                              number >> 2 & 1, 0, nullptr);
    }
    static void create_page(WM_PAGE_MANAGER& manager) {
        WM_AREA& area = *manager.get_current_area();
        for (const CONTROL& control : static_cast<PAGE*>(area.get_current().data)->controls) {
            area.add_object(controls().make(control), 0);
        }
    }

    // --- What callbacks do ---

    static CONTROLS& controls() {
        static CONTROLS all(callback);
        return all;
    }
    static WM_MESG callback(WM_SCREEN_OBJECT* object, void* /*data1*/, void* /*data2*/) {
        return current->answer_callback(*object);
    }
    WM_MESG answer_callback(const WM_SCREEN_OBJECT& object) {
        constexpr int OPEN_MODAL = 14;
        const int answer = std::exchange(next_answer, 0);
        const bool is_whole = (object.type_flags & WMF_BUTTON) != 0 && object.parent != nullptr &&
                              object.parent->parent == nullptr;
        if (answer == WM_MESG_REMOVE_OBJECT && !is_whole) {
            return WM_MESG_HANDLED;  // the parts of a control are not ours to remove
        }
        if (answer >= OPEN_MODAL) {
            open_modal(answer, answer * 11);
            return WM_MESG_HANDLED;
        }
        if (answer >= WM_MESG_CHANGE_PAGE) {
            show_page(-1, answer);
        }
        return static_cast<WM_MESG>(answer);
    }
    void open_modal(int kind, int detail) {
        const std::int16_t x = to_coordinate(detail % 40), y = to_coordinate(detail / 8);
        WM_AREA* area = pages().get_current_area();
        area = area->visible ? area : pages().get_area(0);
        area->add_modal_object(controls().make_modal(kind, detail, x, y), 0);
    }

    // --- Steps ---

    void do_step(int what, int first, int second) {
        constexpr int PROGRAM_STEPS = 12;
        if (what % 32 < PROGRAM_STEPS) {
            do_program_step(what % 32, first, second);
        } else {
            do_user_step(what % 32 - PROGRAM_STEPS, first, second);
        }
    }

    void do_user_step(int what, int first, int second) {
        switch (what) {
            default:
                MOUSE::set_position(0, to_coordinate(first % info().window->width),
                                    to_coordinate(second % info().window->height));
                break;
            case 6:
            case 7:
            case 8:
                MOUSE::process_mouse_button(first & 2 ? MOUSE_BUTTON_RIGHT : MOUSE_BUTTON_LEFT,
                                            first & 1);
                break;
            case 9:
            case 10:
            case 11:
                point_at(find_target(first), second);
                MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 1);
                tick();
                MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 0);
                break;
            case 12:
                MOUSE::wheel_pos += first % 7 - 3;
                break;
            case 13:
            case 14:
            case 15:
                press_key(first, second);
                break;
            case 16:
                KEYBOARD::set_modifiers(0);
                KEYBOARD::process_char_event(static_cast<unsigned char>("ab  <>:#\nz"[first % 10]),
                                             0);
                break;
            case 17:
                now += static_cast<std::uint32_t>(first * 4);
                break;
            case 18:
                MOUSE::set_position(-1, -1, -1);
                break;
            case 19:
                WM_WINDOW_MANAGER::get_instance()->set_window_as_focal_window(
                    static_cast<signed char>(first % 4 == 0));
                break;
        }
    }
    static void point_at(const WM_SCREEN_OBJECT* object, int detail) {
        if (object != nullptr) {
            const int x = object->x + object->width * (detail % 16) / 16;
            const int y = object->y + object->height * (detail / 16) / 16;
            MOUSE::set_position(0, to_coordinate(std::clamp(x, 0, info().window->width - 1)),
                                to_coordinate(std::clamp(y, 0, info().window->height - 1)));
        }
    }
    static void press_key(int first, int second) {
        constexpr KEY_TYPE KEYS[] = {
            KEY_TAB,  KEY_RETURN, KEY_ESCAPE,  KEY_LEFT,      KEY_RIGHT,  KEY_UP,    KEY_DOWN,
            KEY_HOME, KEY_END,    KEY_PAGE_UP, KEY_PAGE_DOWN, KEY_DELETE, KEY_ENTER, KEY_BACKSPACE};
        KEYBOARD::set_modifiers(static_cast<std::uint32_t>(second & 7));
        const KEY_TYPE key = KEYS[static_cast<std::size_t>(first) % std::size(KEYS)];
        KEYBOARD::process_key_event(key);
        if (key == KEY_RETURN) {
            KEYBOARD::process_char_event('\n', 0);
        }
    }

    void do_program_step(int what, int first, int second) {
        WM_SCREEN_OBJECT* target = find_target(first);
        switch (what) {
            case 0:
                next_answer = first % 20;
                return;
            case 1:
                open_modal(first, second);
                return;
            case 2:
                do_page_step(first, second);
                return;
            case 3:
                resize_window(first);
                return;
            case 4:
                add_control();
                return;
            default:
                break;
        }
        if (target == nullptr) {
            return;
        }
        const bool on = second & 1;
        switch (what) {
            case 5:
                on ? target->request_draw(0, second >> 1 & 1) : target->hide(0, second >> 1 & 1);
                break;
            case 6:
                controls().set_enabled(target, on);
                break;
            case 7:
                target->move(to_coordinate(second % 16 * 6 - 5), to_coordinate(second / 16 * 5));
                break;
            case 8:
                CONTROLS::resize(*target, 16 + second % 16 * 5, 13 + second / 16 * 4);
                break;
            case 9:
                remove(*target);
                break;
            case 10:
                if (info().modal_screen_objects.get_count() == 0) {
                    target->take_focus(on);
                }
                break;
            default:
                controls().change(target, second);
        }
    }
    // Of the areas' objects, and of the modal ones that no other object owns.
    WM_SCREEN_OBJECT* find_target(int number) const {
        std::vector<WM_SCREEN_OBJECT*> targets;
        const auto collect = [&](const PTRLLIST& list) {
            OBJECT_WALK walk(list, OBJECT_WALK::FORWARD);
            while (WM_SCREEN_OBJECT* object = walk.next()) {
                if (!object->not_owned) {
                    targets.push_back(object);
                }
            }
        };
        for (const auto& area : pages().areas) {
            collect(area->objects);
        }
        collect(info().modal_screen_objects);
        return targets.empty() ? nullptr
                               : targets[static_cast<std::size_t>(number) % targets.size()];
    }
    static void remove(WM_SCREEN_OBJECT& object) {
        if (object.is_modal_object()) {
            pages().get_area(0)->remove_modal_object(&object, 1, 0);
        } else {
            object.parent->remove_object(&object, 1, 0);
        }
    }
    void add_control() {
        CONTROL control = read_control();
        pages().get_area(control.detail >> 7)->add_object(controls().make(control), 0);
    }
    void do_page_step(int first, int second) {
        const std::int32_t area = second & 1;
        switch (first % 6) {
            case 0:
                pages().refresh_page_next_monitor(area);
                break;
            case 1:
                show_page(area, second >> 1);
                pages().get_area(area)->change_next_monitor = true;
                break;
            case 2:
                pages().set_next_page_back_unique(area);
                pages().go_to_page(area);
                break;
            case 3:
                pages().set_next_page_next_unique(area);
                pages().go_to_page(area);
                break;
            case 4:
                pages().close_modal_dialogs();
                break;
            default:
                second & 2 ? pages().get_area(1)->request_draw(0, 0)
                           : pages().get_area(1)->hide(0, 0);
                pages().get_area(1)->mark_entire_redraw_area();
        }
    }
    void resize_window(int number) {
        constexpr int SIZES[][2] = {{100, 80}, {60, 90}, {120, 60}, {80, 70}};
        const std::int16_t width = to_coordinate(SIZES[number % 4][0]),
                           height = to_coordinate(SIZES[number % 4][1]);
        info().window->width = width;
        info().window->height = height;
        const IMAGE& background = pages().get_background(0);
        info().back_buffer->reset(width, height);
        background.put(0, 0, info().back_buffer.get(), IMAGE_COPY_SOLID);
        pages().handle_resize(width, height);
        for (std::int32_t area = 0; area < pages().get_area_count(); ++area) {
            pages().refresh_page_next_monitor(area);
        }
    }

    // --- A tick, and what holds after it ---

    void tick() {
        now += TICK_MS;
        WM_MESG result = one_tick();
        // A page that changes takes the tick, and the focus follows in the next one.
        for (int more = 0; more < 3 && !checks->is_focus_reachable(); ++more) {
            result = one_tick();
        }
        if (is_window_focal() && result == WM_MESG_NONE) {
            checks->check_focus();
        }
        check_picture(++ticks % check_interval == 0);
    }
    WM_MESG one_tick() {
        // Keys that nobody reads are forgotten by the system's clock.
        KEYBOARD::last_event_time = get_ms_count() - 10000;
        before.copy_pixels_from(*info().back_buffer);
        const WM_MESG result = pages().monitor(0);
        checks->check_drawing_state();
        checks->check_dirty_rectangle(before);
        info().back_buffer->set_not_dirty();
        return result;
    }
    static bool is_window_focal() {
        return WM_WINDOW_MANAGER::get_instance()->get_focal_window() ==
               WM_WINDOW_MANAGER::MAIN_WINDOW;
    }
    void check_picture(bool wanted) {
        if (wanted) {
            one_tick();  // what follows a value that another control has changed
            checks->check_nothing_is_stale();
            checks->check_frames();
            info().back_buffer->set_not_dirty();
        }
    }

    static inline DRIVE* current = nullptr;
    static inline std::uint32_t now = 0;

    PROGRAM& program;
    PAGE described[3];
    std::unique_ptr<CHECKS> checks;
    IMAGE before;  // the last tick
    int check_interval = 1, ticks = 0;
    int next_answer = 0;  // of the next callback; a WM_MESG, or what it does
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 1024) {
        return 0;
    }
    static const bool is_ready = ::setenv("SDL_VIDEODRIVER", "dummy", 1) == 0;
    require(is_ready);
    PROGRAM program(data, size);
    DRIVE(program).run();
    return 0;
}
