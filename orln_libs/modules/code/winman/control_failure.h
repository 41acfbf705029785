// How controls end the process when they can't be made.
#ifndef MODULES_CODE_WINMAN_CONTROL_FAILURE_H
#define MODULES_CODE_WINMAN_CONTROL_FAILURE_H

#include <new>

#include "modules/winman/owned_text.h"
#include "platform/process_tools.h"

[[noreturn]] inline void stop_on_control_failure(const char* message) {
    display_message("Error", message, 0);
    exit_app("Application was unable to continue");
}

// Takes a copy of the text, or ends the process with the message if there is no memory for it.
inline void set_text_or_stop(OWNED_TEXT& where, const char* text, const char* message) {
    try {
        where.set(text);
    } catch (const std::bad_alloc&) {
        stop_on_control_failure(message);
    }
}

#endif  // MODULES_CODE_WINMAN_CONTROL_FAILURE_H
