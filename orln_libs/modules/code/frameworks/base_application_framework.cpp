#include "modules/frameworks/base_application_framework.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "modules/frameworks/thread_data.h"
#include "modules/threading/thread_pool.h"
#include "platform/process_tools.h"
#include "platform/system_information.h"

namespace {

constexpr std::size_t OUTPUT_BUFFER_SIZE = 131072;

struct LEVEL {
    const char* word;
    std::size_t limit;  // characters of a line, heading included
    bool shown;         // on standard error
};

LEVEL describe(TRACE_LEVEL level) {
    switch (level) {
        case TRACE_LEVEL::TRACE:
            return {"TRACE", 0x1FFFF, false};
        case TRACE_LEVEL::DEBUG:
            return {"DEBUG", 0x1FFFF, false};
        case TRACE_LEVEL::WARNING:
            return {"WARNING", 0x1FBFF, true};
        default:
            return {"FATAL", 0x1FBFF, true};
    }
}

BASE_APPLICATION_FRAMEWORK* framework() {
    return dynamic_cast<BASE_APPLICATION_FRAMEWORK*>(ORLN_APPLICATION::get_instance());
}

void trace_limit(const char* what, std::int32_t limit) {
    if (limit == -1) {
        BASE_APPLICATION_FRAMEWORK::output_trace("%s = unlimited", what);
    } else {
        BASE_APPLICATION_FRAMEWORK::output_trace("%s = %" PRId32, what, limit);
    }
}

}  // namespace

BASE_APPLICATION_FRAMEWORK::BASE_APPLICATION_FRAMEWORK()
    : config(true, FOLDER_APPDATA, true), thread_stack_size(0), debug_stream("main", 513) {
    THREADING_ATTACH();
    config.set_filename("app.cfg", true);
    TRACE_OUTPUT::set_sink(this);
    trace_machine();
}

BASE_APPLICATION_FRAMEWORK::~BASE_APPLICATION_FRAMEWORK() {
    output_trace("...application shut down");
    TRACE_OUTPUT::set_sink(nullptr);
    THREADING_DETACH();
}

void BASE_APPLICATION_FRAMEWORK::trace_machine() {
    SYSTEM_INFORMATION& system = get_system_information();
    system.refresh_system_memory();
    const MEMORY& memory = system.memory;
    output_trace("total physical memory = %" PRId32 " kb", memory.total_physical);
    output_trace("available physical memory = %" PRId32 " kb", memory.free_physical);
    output_trace("total virtual memory = %" PRId32 " kb", memory.total_virtual);
    output_trace("available virtual memory = %" PRId32 " kb", memory.free_virtual);
    trace_limit("core dump size", system.get_resource_limit(0));
    trace_limit("max file handles", system.get_resource_limit(1));
    trace_limit("max stack size", system.get_resource_limit(2));
}

void BASE_APPLICATION_FRAMEWORK::read_from_config_file(DISK_MANAGER* disk) {
    auto value = static_cast<std::uint32_t>(thread_stack_size);
    config.read(disk ? *disk : config.get_base_path(), "THREAD_STACK_SIZE", value);
    thread_stack_size = static_cast<std::int32_t>(value);
    if (thread_stack_size < MIN_THREAD_STACK_SIZE || thread_stack_size > MAX_THREAD_STACK_SIZE) {
        thread_stack_size = DEFAULT_THREAD_STACK_SIZE;
    }
}

void BASE_APPLICATION_FRAMEWORK::write_to_config_file(DISK_MANAGER* disk) {
    config.write(disk ? *disk : config.get_base_path(), "THREAD_STACK_SIZE",
                 static_cast<std::uint32_t>(thread_stack_size));
}

void BASE_APPLICATION_FRAMEWORK::output_error_to_database(const char*, const char*, std::int32_t) {
}

void BASE_APPLICATION_FRAMEWORK::get_ouput_string(char* buffer, std::size_t size,
                                                  const char* level) {
    const auto* data = static_cast<const THREAD_DATA*>(THREAD_POOL::get_thread_data());
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    const auto zero = [](int number) { return number < 10 ? "0" : ""; };
    const int month = local.tm_mon + 1;
    std::snprintf(buffer, size, "%s: GW%02d %s%d/%s%d %s%d:%s%d %" PRIu32 " ", level,
                  data ? data->get_number() : -1, zero(local.tm_mday), local.tm_mday, zero(month),
                  month, zero(local.tm_hour), local.tm_hour, zero(local.tm_min), local.tm_min,
                  static_cast<std::uint32_t>(THREAD_POOL::get_thread_id()));
}

void BASE_APPLICATION_FRAMEWORK::write_locked(const char* text) {
    MUTEX_LOCKER lock(debug_mutex);
    debug_stream.write_to_stream(nullptr, 0, text, true);
}

void BASE_APPLICATION_FRAMEWORK::output_line(TRACE_LEVEL level, const char* format,
                                             std::va_list arguments) {
    const LEVEL how = describe(level);
    BASE_APPLICATION_FRAMEWORK* const application = framework();
    const bool traced = application && application->debug_stream.flags != 0;
    if (format == nullptr || (!traced && !how.shown)) {
        return;
    }
    std::string line(OUTPUT_BUFFER_SIZE, '\0');
    get_ouput_string(line.data(), line.size(), how.word);
    const std::size_t heading = std::strlen(line.c_str());
    std::vsnprintf(line.data() + heading, how.limit - heading + 1, format, arguments);
    if (how.shown) {
        std::fprintf(stderr, "%s\n", line.c_str() + heading);
    }
    if (traced) {
        application->write_locked(line.c_str());
    }
}

void BASE_APPLICATION_FRAMEWORK::output(TRACE_LEVEL level, const char* format,
                                        std::va_list arguments) {
    output_line(level, format, arguments);
    if (level == TRACE_LEVEL::FATAL) {
        exit_app(nullptr);
    }
}

void BASE_APPLICATION_FRAMEWORK::output_trace(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    output_line(TRACE_LEVEL::TRACE, format, arguments);
    va_end(arguments);
}

void BASE_APPLICATION_FRAMEWORK::output_debug(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    output_line(TRACE_LEVEL::DEBUG, format, arguments);
    va_end(arguments);
}

void BASE_APPLICATION_FRAMEWORK::output_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    output_line(TRACE_LEVEL::WARNING, format, arguments);
    va_end(arguments);
}

void BASE_APPLICATION_FRAMEWORK::output_fatal(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    output_line(TRACE_LEVEL::FATAL, format, arguments);
    va_end(arguments);
    exit_app(nullptr);
}

void BASE_APPLICATION_FRAMEWORK::output_error(const char* file, std::int32_t line,
                                              const char* format, ...) {
    BASE_APPLICATION_FRAMEWORK* const application = framework();
    if (format == nullptr || application == nullptr) {
        return;
    }
    std::string text(0x1FEFF + 1, '\0');
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    application->write_locked(text.c_str());
    application->output_error_to_database(text.c_str(), file, line);
}

void BASE_APPLICATION_FRAMEWORK::write_to_debug_stream(const char* text) {
    BASE_APPLICATION_FRAMEWORK* const application = framework();
    if (text != nullptr && application != nullptr) {
        application->write_locked(text);
    }
}
