// What platform_debug_stream is told while this object lives.
#ifndef PLATFORM_TESTS_TRACE_CAPTURE_H
#define PLATFORM_TESTS_TRACE_CAPTURE_H

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "platform/debug_stream.h"

class TRACE_CAPTURE {
public:
    TRACE_CAPTURE() : flags(platform_debug_stream.flags) {
        platform_debug_stream.flags = DEBUG_STREAM::WRITE_TO_CONSOLE;
        testing::internal::CaptureStdout();
    }
    ~TRACE_CAPTURE() { end(); }
    TRACE_CAPTURE(const TRACE_CAPTURE&) = delete;
    TRACE_CAPTURE& operator=(const TRACE_CAPTURE&) = delete;

    // Everything so far; nothing more is taken.
    std::string end() {
        if (!ended) {
            ended = true;
            std::fflush(stdout);
            text = testing::internal::GetCapturedStdout();
            platform_debug_stream.flags = flags;
        }
        return text;
    }

private:
    unsigned short flags;
    bool ended = false;
    std::string text;
};

#endif  // PLATFORM_TESTS_TRACE_CAPTURE_H
