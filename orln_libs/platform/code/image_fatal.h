// The end of the process over an image or a font that can't go on.
#ifndef PLATFORM_CODE_IMAGE_FATAL_H
#define PLATFORM_CODE_IMAGE_FATAL_H

#include "platform/process_tools.h"

[[noreturn]] inline void stop_with_error(const char* text) {
    display_message("Error", text, 0);
    exit_app("Application was unable to continue");
}

#endif  // PLATFORM_CODE_IMAGE_FATAL_H
