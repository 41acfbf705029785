#include "platform/window_events.h"

#include "platform/window_platform.h"

bool WINDOW_EVENTS::use_external_rendering = false;
bool events_something_done = false;

namespace {

WINDOW_EVENTS* installed_events = nullptr;

}  // namespace

void set_window_events(WINDOW_EVENTS* events) {
    installed_events = events;
}

WINDOW_EVENTS* get_window_events() {
    return installed_events;
}
