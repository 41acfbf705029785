// DIALOG_BASE: a dialog with up to four typed buttons in the looks of the skin.
#ifndef MODULES_GUI_DIALOG_BASE_H
#define MODULES_GUI_DIALOG_BASE_H

#include <array>
#include <cstdint>

#include "modules/winman/owned_text.h"
#include "modules/winman/wm_dialog.h"

class TEXT_BOX;
class WM_BUTTON;

// What a button of a dialog is for; any other value is an ordinary button.
enum DIALOG_BUTTON_TYPE : signed char {
    DIALOG_BUTTON_ACKNOWLEDGE = 1,
    DIALOG_BUTTON_CANCEL = 2,
    DIALOG_BUTTON_POSITIVE_ACTION = 3,
    DIALOG_BUTTON_NEGATIVE_ACTION = 4,
    DIALOG_BUTTON_OTHER_ACTION = 5,
    DIALOG_BUTTON_HELP = 6,
    DIALOG_BUTTON_NEXT = 7,
    DIALOG_BUTTON_BACK = 8,
};

// The frame of a dialog; any other value is an error.
enum DIALOG_KIND : signed char {
    DIALOG_KIND_PLAIN = 1,
    DIALOG_KIND_CONFIRM = 2,
    DIALOG_KIND_WARNING = 3,
    DIALOG_KIND_ERROR = 4,
};

// A button as the caller describes it. The data stays the caller's.
struct DIALOG_BUTTON_INFO {
    const char* text = nullptr;
    void* data1 = nullptr;
    void* data2 = nullptr;
    signed char type = 0;
    WM_CALLBACK callback = nullptr;
};

// The dialog reacts to one action, until reset_actioned or until another dialog was monitored.
class DIALOG_BASE : public WM_DIALOG {
public:
    static constexpr int MAX_BUTTONS = 4;
    // A button of any type, or each of them.
    static constexpr signed char ANY_TYPE = -1;

    struct BUTTON_RECORD {
        OWNED_TEXT text;  // the button's title; null: unused record
        void* data1 = nullptr;
        void* data2 = nullptr;
        signed char type = 0;
        WM_CALLBACK callback = nullptr;
        WM_BUTTON* button = nullptr;  // child; null: unused record
        bool was_enabled = false;     // when the dialog was last actioned
    };

    // A negative width is 400, a negative height 200; x, y, title and `defer` as for WM_DIALOG. A
    // null callback of a later button is the first's.
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind, signed char window);
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind,  //
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                WM_CALLBACK callback1, signed char window);
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind,  //
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                WM_CALLBACK callback1, WM_CALLBACK callback2, signed char window);
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind,  //
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                const char* text3, void* data1_3, void* data2_3, signed char type3,
                WM_CALLBACK callback1, WM_CALLBACK callback2, WM_CALLBACK callback3,
                signed char window);
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind,  //
                const char* text1, void* data1_1, void* data2_1, signed char type1,
                const char* text2, void* data1_2, void* data2_2, signed char type2,
                const char* text3, void* data1_3, void* data2_3, signed char type3,
                const char* text4, void* data1_4, void* data2_4, signed char type4,
                WM_CALLBACK callback1, WM_CALLBACK callback2, WM_CALLBACK callback3,
                WM_CALLBACK callback4, signed char window);
    // The same with the buttons as an array of at most MAX_BUTTONS.
    DIALOG_BASE(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height,
                const char* title, unsigned char defer, signed char kind,
                const DIALOG_BUTTON_INFO* buttons, int button_count, signed char window);
    ~DIALOG_BASE() override;

    // The first button of the type, or null; and how many there are. Also with ANY_TYPE.
    WM_BUTTON* get_button(signed char type) const;
    int get_number_of_buttons(signed char type) const;
    // All buttons of the type. Null is the empty text.
    void set_button_text(signed char type, const char* text);
    // Of the first button of the type; false if there is none.
    bool get_button_enabled(signed char type) const;
    void set_button_enabled(signed char type, unsigned char on);
    // As if the first enabled button of the type had been pressed.
    WM_MESG call_button_callback(signed char type);
    // The dialog reacts again: its buttons are enabled as they were before the action.
    void reset_actioned();
    // Grows the dialog, and `box`, which needn't be in it yet, until the text fits or the growth
    // reaches its limit, and centres it. Yields by how much.
    void expand_text_box(TEXT_BOX& box, std::int16_t& added_x, std::int16_t& added_y);

    WM_MESG monitor() override;
    WM_MESG update(unsigned char modal_pass) override;
    // The buttons keep their places at the edge. The argument `children` is for other objects.
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) override;
    // These go to this class's `contents`.
    void add_object(WM_SCREEN_OBJECT* object, unsigned char relative) override;
    void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                       unsigned char make_relative) override;
    bool is_obscuring(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2) override;

    std::array<BUTTON_RECORD, MAX_BUTTONS> buttons;
    WM_MANAGER* contents = nullptr;  // child of WM_DIALOG::contents, above the buttons
    bool actioned = false;

    static DIALOG_BASE* active_dialog;  // the last that was monitored; may be gone already

private:
    void setup_buttons(const DIALOG_BUTTON_INFO* infos, int count);
    void place_buttons(int count, std::int32_t inner_width, std::int32_t inner_height);
    bool is_frame_opaque() const;
    // Null if the button isn't one of the four.
    const BUTTON_RECORD* find_record(const WM_SCREEN_OBJECT* button) const;
    const BUTTON_RECORD* find_record(signed char type) const;
    static WM_MESG press(const BUTTON_RECORD& record);
    static WM_MESG handle_callback(WM_SCREEN_OBJECT* button, void* dialog, void* unused);

    bool opaque = false;  // nothing behind the contents shows through
};

#endif  // MODULES_GUI_DIALOG_BASE_H
