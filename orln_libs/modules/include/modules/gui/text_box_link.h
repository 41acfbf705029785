// TEXT_BOX_LINK: a word of a link in a text box.
//
// The words of one link are buttons that look and have the focus as one: under the pointer, pressed
// and with the focus all of them are shown so, wherever the lines break, and the focus stops at the
// link once. An application's TEXT_BOX::CREATE_TAG_OBJECT makes one for each word that it is asked
// for; the text box joins those of a tag.
#ifndef MODULES_GUI_TEXT_BOX_LINK_H
#define MODULES_GUI_TEXT_BOX_LINK_H

#include <memory>
#include <vector>

#include "modules/winman/wm_button.h"

class TEXT_BOX_LINK : public WM_BUTTON {
public:
    // The words of one link, in their order. They take themselves out when they are deleted.
    using WORDS = std::vector<TEXT_BOX_LINK*>;

    // As large as the word. The callback runs when the link is clicked; null for a word that only
    // looks like one. `hint` may be null.
    TEXT_BOX_LINK(const WM_STYLE_SET& style, const char* word, const char* hint,
                  WM_CALLBACK callback, void* data1, void* data2, signed char window);
    ~TEXT_BOX_LINK() override;

    // Makes this the next word of a link. The first one has the focus for all.
    void join(const std::shared_ptr<WORDS>& new_link);

    WM_MESG update(unsigned char modal_pass) override;
    void draw_object() override;

protected:
    // Round all words of the link that stand side by side.
    void draw_focus() override;

private:
    struct LOOK {
        bool hot = false, pressed = false;

        friend bool operator==(const LOOK&, const LOOK&) = default;
    };

    // That of the whole link.
    LOOK get_look() const;
    bool is_beside(const TEXT_BOX_LINK& other) const;
    void leave();

    std::shared_ptr<WORDS> link;
    LOOK shown;  // by the last drawing
};

#endif  // MODULES_GUI_TEXT_BOX_LINK_H
