#include "platform/debug_stream.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

#include "kvcore/text_field.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/inet_date.h"
#include "platform/process_tools.h"
#include "platform/text_file.h"

namespace {

struct FLAG_KEY {
    unsigned short flag;
    const char* key;
};

constexpr FLAG_KEY FLAG_KEYS[] = {
    {DEBUG_STREAM::WRITE_TO_CONSOLE, "write_to_console"},
    {DEBUG_STREAM::WRITE_TO_POPUP_DIALOG, "write_to_popup_dialog"},
    {DEBUG_STREAM::WRITE_TO_FILE, "write_to_file"},
    {DEBUG_STREAM::TRUNCATE_FILE_ON_FIRST_WRITE, "truncate_file_on_first_write"},
    {DEBUG_STREAM::KEEP_FILE_OPEN, "keep_file_open"},
    {DEBUG_STREAM::WRITE_FILE_HEADER, "write_file_header"},
    {DEBUG_STREAM::WRITE_STREAM_NAME, "write_stream_name"},
    {DEBUG_STREAM::WRITE_CODE_LOCATION, "write_code_location"},
    {DEBUG_STREAM::TRIGGER_BREAKPOINT, "trigger_breakpoint"},
};

constexpr const char* DEBUG_FOLDER = "debug";

// All streams, in order of construction. Never destroyed, because streams of static lifetime may
// end after anything else.
struct STREAM_LIST {
    std::mutex mutex;
    std::vector<DEBUG_STREAM*> streams;
};

STREAM_LIST& stream_list() {
    static STREAM_LIST& list = *new STREAM_LIST;
    return list;
}

// Appends formatted text to a line and yields the new length, cut at the line's size.
__attribute__((format(printf, 3, 4))) std::size_t append_to_line(char* line, std::size_t length,
                                                                 const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::size_t room = DEBUG_STREAM::line_buffer_size - length;
    const int added = std::vsnprintf(line + length, room, format, arguments);
    va_end(arguments);
    return length + std::min(static_cast<std::size_t>(std::max(added, 0)), room - 1);
}

}  // namespace

DEBUG_STREAM platform_debug_stream("platform_debug_stream",
                                   DEBUG_STREAM::WRITE_TO_CONSOLE | DEBUG_STREAM::LOAD_CONFIG);

DEBUG_STREAM::DEBUG_STREAM(const char* stream_name, unsigned short stream_flags)
    : flags(static_cast<unsigned short>(stream_flags & ~LOAD_CONFIG)) {
    if (stream_name && *stream_name) {
        KVCORE::copy_text_field(name, stream_name);
    } else {
        std::snprintf(name, sizeof name, "Debug Stream %p", static_cast<void*>(this));
    }
    set_default_filename();
    {
        STREAM_LIST& list = stream_list();
        const std::lock_guard lock(list.mutex);
        list.streams.push_back(this);
    }
    if (stream_flags & LOAD_CONFIG) {
        load_config();
    }
}

DEBUG_STREAM::~DEBUG_STREAM() {
    save_config();
    STREAM_LIST& list = stream_list();
    const std::lock_guard lock(list.mutex);
    std::erase(list.streams, this);
    close_file();
}

DEBUG_STREAM* DEBUG_STREAM::find_stream(const char* stream_name) {
    if (!stream_name) {
        return nullptr;
    }
    STREAM_LIST& list = stream_list();
    const std::lock_guard lock(list.mutex);
    for (DEBUG_STREAM* stream : list.streams) {
        if (std::strcmp(stream->name, stream_name) == 0) {
            return stream;
        }
    }
    return nullptr;
}

void DEBUG_STREAM::set_default_filename() {
    std::snprintf(filename, sizeof filename, "%.*s.txt", static_cast<int>(sizeof filename) - 5,
                  name);
}

bool DEBUG_STREAM::goto_debug_folder(DISK_MANAGER& disk, bool create) {
    return disk.goto_path(FOLDER_APPDATA) && disk.move_down(DEBUG_FOLDER, create);
}

void DEBUG_STREAM::write_to_stream(const char* code_file, int code_line, const char* text,
                                   bool newline) {
    if (flags == 0 || !text) {
        return;
    }
    char line[line_buffer_size];
    line[0] = '\0';
    std::size_t length = 0;
    if (flags & WRITE_STREAM_NAME) {
        length = append_to_line(line, length, "<%s>: ", name);
    }
    const std::size_t name_length = length;
    if ((flags & WRITE_CODE_LOCATION) && code_file) {
        length = append_to_line(line, length, "(%s,%d) ", code_file, code_line);
    }
    KVCORE::copy_text_field(line + length, sizeof line - length, text);
    length += std::strlen(line + length);

    {
        const std::lock_guard lock(write_mutex);
        if (flags & WRITE_TO_CONSOLE) {
            if (newline && length + 1 < sizeof line) {
                line[length] = '\n';
                line[length + 1] = '\0';
                write_to_console(line);
                line[length] = '\0';
            } else {
                write_to_console(line);
                if (newline) {
                    write_to_console("\n");
                }
            }
        }
        if (flags & WRITE_TO_FILE) {
            write_line_to_file(line, newline);
        }
    }
    // Outside the lock: the box stays until the user closes it.
    if (flags & WRITE_TO_POPUP_DIALOG) {
        display_message(name, line + name_length, 1);
    }
}

void DEBUG_STREAM::write_line_to_file(const char* line, bool newline) {
    if (!file) {
        DISK_MANAGER disk;
        if (!goto_debug_folder(disk, true)) {
            return;
        }
        const bool truncate = first_write && (flags & TRUNCATE_FILE_ON_FIRST_WRITE);
        file = disk.open_text_file(filename, truncate ? FILE_WRITE : FILE_APPEND);
        if (!file) {
            return;
        }
    }
    if (first_write && (flags & WRITE_FILE_HEADER)) {
        file->printf(
            "======================================\n> Debug stream: %s\n> Written: %s\n\n", name,
            get_inet_date_string(std::time(nullptr)));
    }
    *file << line;
    if (newline) {
        *file << "\n";
    }
    if (flags & KEEP_FILE_OPEN) {
        // A log matters most when the process doesn't end in good order.
        file->flush();
    } else {
        close_file();
    }
    first_write = false;
}

void DEBUG_STREAM::close_file() {
    DISK_MANAGER::close(file);
}

void DEBUG_STREAM::printf(const char* format, ...) {
    if (flags == 0) {
        return;
    }
    char text[line_buffer_size];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        write_to_stream(nullptr, 0, text, false);
    }
}

void DEBUG_STREAM::load_config() {
    set_default_filename();
    flags = 0;
    DISK_MANAGER disk;
    if (!goto_debug_folder(disk, false)) {
        return;
    }
    CONFIG_FILE config(get_config_name().c_str(), true, FOLDER_APPDATA, false);
    if (!config.exists(disk)) {
        return;
    }
    char text[CONFIG_FILE::value_size];
    if (config.read(disk, "filename", text)) {
        KVCORE::copy_text_field(filename, text);
    }
    std::uint32_t value = 0;
    if (config.read(disk, "disabled", value) && value != 0) {
        return;
    }
    unsigned loaded = 0;
    for (const FLAG_KEY& entry : FLAG_KEYS) {
        value = 0;
        if (config.read(disk, entry.key, value) && value != 0) {
            loaded |= entry.flag;
        }
    }
    flags = static_cast<unsigned short>(loaded);
}

void DEBUG_STREAM::save_config() {
    DISK_MANAGER disk;
    if (!goto_debug_folder(disk, false)) {
        return;
    }
    CONFIG_FILE config(get_config_name().c_str(), true, FOLDER_APPDATA, false);
    config.bulk_write = true;
    config.write(disk, "filename", filename);
    config.write(disk, "disabled", flags == 0 ? 1u : 0u);
    for (const FLAG_KEY& entry : FLAG_KEYS) {
        config.write(disk, entry.key, (flags & entry.flag) ? 1u : 0u);
    }
    config.write_all_keys(disk);
}

std::string DEBUG_STREAM::get_config_name() const {
    return std::string(name) + "_release.cfg";
}
