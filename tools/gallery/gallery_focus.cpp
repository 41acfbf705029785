#include "gallery_focus.h"

#include <cstdio>

#include "gallery_camera.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/window_manager.h"
#include "platform/image.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
// A walk that takes longer doesn't come round.
constexpr int MOST_STEPS = 300;

WM_SCREEN_OBJECT* get_focal_object() {
    return WM_WINDOW_MANAGER::get_instance()->get_focal_object(WINDOW);
}

// The object's rectangle as it looks now.
void copy_look(const WM_SCREEN_OBJECT& object, IMAGE& look) {
    look.reset(object.width, object.height);
    look.get(object.x, object.y, WM_WINDOW_MANAGER::get_instance()->get_back_buffer(WINDOW));
}

}  // namespace

int check_gallery_focus(GALLERY_CAMERA& camera) {
    const WM_SCREEN_OBJECT* const first = get_focal_object();
    IMAGE with_focus, without;
    int invisible = 0, steps = 0;
    for (; steps < MOST_STEPS; ++steps) {
        const WM_SCREEN_OBJECT* object = get_focal_object();
        copy_look(*object, with_focus);
        camera.key(KEY_TAB);
        copy_look(*object, without);
        if (with_focus == without) {
            ++invisible;
            std::printf("%s: the focus can't be seen at %d, %d, %d x %d\n",
                        camera.get_page().c_str(), object->x, object->y, object->width,
                        object->height);
        }
        if (get_focal_object() == first) {
            break;
        }
    }
    if (steps == MOST_STEPS || steps < 2) {
        ++invisible;
        std::printf("%s: the focus doesn't go round\n", camera.get_page().c_str());
    }
    return invisible;
}
