// OBJECT_HINT: the tool tip of a control.
#ifndef MODULES_WINMAN_OBJECT_HINT_H
#define MODULES_WINMAN_OBJECT_HINT_H

#include <cstdint>
#include <memory>

class WM_SCREEN_OBJECT;
class WM_SCRIPT;

// A text that shows in the looks WM_SCREEN_OBJECT::hint_style_set once the pointer has stayed on
// the control for hint_delay_time; HINTS_OFF there turns it off. It is shown as a modal object of
// the window, which passes the input on to its owner, and goes by a press, a key, the wheel, or
// when the pointer leaves. A control has one as a member and calls `monitor` from its own.
//
// The clock starts when the pointer arrives, and goes on when the pointer comes straight from a
// control whose hint is showing.
class OBJECT_HINT {
public:
    // No pointer on the control.
    static constexpr std::uint16_t NO_POSITION = 65535;

    // The owner holds this object.
    explicit OBJECT_HINT(WM_SCREEN_OBJECT& hint_owner);
    OBJECT_HINT(const OBJECT_HINT&) = delete;
    OBJECT_HINT& operator=(const OBJECT_HINT&) = delete;
    // Takes a shown hint out of the window.
    ~OBJECT_HINT();

    // Null or empty: no hint. Yields whether there is one now.
    bool set_text(const char* text);
    // Null without a hint.
    const char* get_text() const;
    bool is_set() const { return script != nullptr; }
    bool is_showing() const;

    // Takes a shown hint away; the clock stays.
    void hide();
    // The same, and forgets the pointer: for a control that is being hidden.
    void reset();
    // Goes on with a clock that was started elsewhere.
    void update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py);

    // One tick. `over`: the pointer is on the control; `button_down`: any mouse button.
    void monitor(bool over, bool button_down, std::int16_t px, std::int16_t py);
    // The same for a control that has a second hint for its icon. With both set, `over_icon` says
    // which of the two is due. The clock carries over between them.
    static void monitor_both(OBJECT_HINT& hint, OBJECT_HINT& icon_hint, bool over_icon, bool over,
                             bool button_down, std::int16_t px, std::int16_t py);

    // The `over_icon` of monitor_both: the pointer is left of the end of the icon and the spacing.
    // An icon at the right end of the control leaves what is left of it to the plain hint. The
    // icon's columns are as LABEL_DRAWING gives them, empty without one.
    static bool is_over_icon(std::int32_t px, std::int32_t icon_left, std::int32_t icon_right,
                             std::int32_t spacing, bool at_right_end);

    // Sets off the clocks of the control's hints, if it is of a kind that has them: a WMF_BUTTON or
    // WMF_SCRIPT object. Null is allowed.
    static void pass_time_on(WM_SCREEN_OBJECT* object, std::uint32_t time, std::int16_t px,
                             std::int16_t py);

    std::unique_ptr<WM_SCRIPT> script;  // `not_owned`, as it stands in the modal list at times
    std::uint32_t hint_time = 0;        // now_ms at the arrival of the pointer
    std::uint16_t hint_x = NO_POSITION, hint_y = NO_POSITION;

private:
    void show(std::int16_t px, std::int16_t py);
    void place(std::int16_t px, std::int16_t py);
    void leave(std::int16_t px, std::int16_t py);

    WM_SCREEN_OBJECT& owner;
    bool shown = false;  // put into the modal list, which input may have ended
    std::int32_t wheel_at_show = 0;
};

#endif  // MODULES_WINMAN_OBJECT_HINT_H
