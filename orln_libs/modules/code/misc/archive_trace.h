// Failures of the archive tools, told to the platform's debug stream.
#ifndef MODULES_CODE_MISC_ARCHIVE_TRACE_H
#define MODULES_CODE_MISC_ARCHIVE_TRACE_H

#include <string>

#include "platform/debug_stream.h"

inline void trace_archive_failure(const char* text, const char* name = "") {
    if (platform_debug_stream.flags != 0) {
        const std::string line = std::string(text) + (name ? name : "");
        platform_debug_stream.write_to_stream(nullptr, 0, line.c_str(), true);
    }
}

#endif  // MODULES_CODE_MISC_ARCHIVE_TRACE_H
