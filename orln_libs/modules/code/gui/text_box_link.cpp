#include "modules/gui/text_box_link.h"

#include <algorithm>
#include <utility>

#include "platform/image.h"

TEXT_BOX_LINK::TEXT_BOX_LINK(const WM_STYLE_SET& style, const char* word, const char* hint_text,
                             WM_CALLBACK callback_, void* data1, void* data2, signed char window_)
    : WM_BUTTON(0, 0, -1, -1, style, word, hint_text, callback_, data1, data2, BUTTON_EVENT_RELEASE,
                window_, 1, 0),
      link(std::make_shared<WORDS>(1, this)) {
}

TEXT_BOX_LINK::~TEXT_BOX_LINK() {
    leave();
}

void TEXT_BOX_LINK::join(const std::shared_ptr<WORDS>& new_link) {
    leave();
    link = new_link;
    link->push_back(this);
    if (link->front() != this) {
        focus_owner = link->front();
        allowed_focus = false;
    }
}

// The next word takes the place of the first one.
void TEXT_BOX_LINK::leave() {
    const bool was_first = link->front() == this;
    std::erase(*link, this);
    if (!was_first || link->empty()) {
        return;
    }
    link->front()->allowed_focus = allowed_focus;
    for (TEXT_BOX_LINK* word : *link) {
        word->focus_owner = word == link->front() ? nullptr : link->front();
    }
}

TEXT_BOX_LINK::LOOK TEXT_BOX_LINK::get_look() const {
    LOOK look;
    for (const TEXT_BOX_LINK* word : *link) {
        look.hot = look.hot || word->mouse_over_now || word->is_focused();
        look.pressed = look.pressed || word->pressed;
    }
    return look;
}

// A word is told of its own changes only.
WM_MESG TEXT_BOX_LINK::update(unsigned char modal_pass) {
    if (visible && callback != nullptr && get_look() != shown) {
        request_draw(0, 0);
    }
    return WM_BUTTON::update(modal_pass);
}

void TEXT_BOX_LINK::draw_object() {
    shown = get_look();
    const bool own_over = std::exchange(mouse_over_now, shown.hot);
    const bool own_pressed = std::exchange(pressed, shown.pressed);
    WM_BUTTON::draw_object();
    mouse_over_now = own_over;
    pressed = own_pressed;
}

bool TEXT_BOX_LINK::is_beside(const TEXT_BOX_LINK& other) const {
    return y == other.y && (x + width == other.x || other.x + other.width == x);
}

void TEXT_BOX_LINK::draw_focus() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr || !link->front()->is_focused() || has_focus_look()) {
        return;
    }
    auto first = std::find(link->begin(), link->end(), this), last = first;
    while (first != link->begin() && (*first)->is_beside(**std::prev(first))) {
        --first;
    }
    while (std::next(last) != link->end() && (*last)->is_beside(**std::next(last))) {
        ++last;
    }
    // What lies outside of this word is clipped.
    buffer->draw_rect((*first)->x, y, (*last)->x + (*last)->width - 1, y + height - 1,
                      get_focus_colour(), 1, 1);
}
