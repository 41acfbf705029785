#include "platform/process_tools.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "kvcore/text_field.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "platform/launch_service.h"
#include "user_folders.h"

namespace {

constexpr std::size_t MESSAGE_SIZE = 256;

std::atomic<MESSAGE_DISPLAY> message_box{nullptr};

// Only these two: closing or flushing any other stream could wait for a thread that holds it.
void flush_output() {
    std::fflush(stdout);
    std::fflush(stderr);
}

// A text as a part of one line: cut, without a newline at its end, other control characters blank.
void copy_as_line(char (&line)[MESSAGE_SIZE], const char* text) {
    KVCORE::copy_text_field(line, text);
    std::size_t length = std::strlen(line);
    while (length > 0 && line[length - 1] == '\n') {
        line[--length] = '\0';
    }
    for (char* p = line; *p; ++p) {
        const auto byte = static_cast<unsigned char>(*p);
        if (byte < ' ' || byte == 0x7F) {
            *p = ' ';
        }
    }
}

void sleep_for(timespec time) {
    while (nanosleep(&time, &time) != 0 && errno == EINTR) {
    }
}

}  // namespace

void exit_app(const char* text) {
    if (text) {
        std::fprintf(stderr, "%s\n", text);
    }
    flush_output();
    _exit(1);
}

void write_to_console(const char* text) {
    if (text) {
        std::printf("%s", text);
    }
}

void display_message(const char* title, const char* text, unsigned char) {
    if (!title || !text) {
        return;
    }
    char title_line[MESSAGE_SIZE];
    char text_line[MESSAGE_SIZE];
    copy_as_line(title_line, title);
    copy_as_line(text_line, text);
    std::fprintf(stderr, "%s: %s\n", title_line, text_line);
    if (const MESSAGE_DISPLAY box = message_box) {
        KVCORE::copy_text_field(text_line, text);
        box(title_line, text_line);
    }
}

void set_message_box(MESSAGE_DISPLAY box) {
    message_box = box;
}

void handle_assert(const char* message, const char* condition) {
    if (!message) {
        return;
    }
    char text[MESSAGE_SIZE];
    if (condition) {
        std::snprintf(text, sizeof text, "Assertion (%s) failed: %s\n", condition, message);
    } else {
        std::snprintf(text, sizeof text, "Assertion failed: %s\n", message);
    }
    display_message("Assert failed", text, 1);
}

std::uint32_t get_ms_count() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                                      static_cast<std::uint64_t>(now.tv_nsec) / 1000000);
}

void orln_sleep(std::uint32_t ms) {
    sleep_for({static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000});
}

void orln_sleep_microseconds(std::uint32_t us) {
    sleep_for({static_cast<time_t>(us / 1000000), static_cast<long>(us % 1000000) * 1000});
}

bool run_program(DISK_MANAGER& folder, const char* name, std::string* reason) {
    std::string cause;
    const std::string path = folder.get_path_string(name);
    if (!name || path.empty()) {
        cause = "the folder of the program is missing";
    } else if (launch_program(path.c_str(), cause)) {
        flush_output();
        _exit(0);
    }
    if (reason) {
        *reason = cause;
    }
    return false;
}

bool open_url_in_default_browser(const char* url) {
    if (!url) {
        return false;
    }
    std::string address = url;
    if (address.compare(0, 4, "http") != 0) {
        address.insert(0, "http://");
    }
    const std::string opener = find_program("xdg-open");
    std::string reason;
    return !opener.empty() && launch_program(opener.c_str(), {address}, reason);
}
