// BASE_APPLICATION_FRAMEWORK: settings, the main debug stream and the output family that every
// program of the family shares.
#ifndef MODULES_FRAMEWORKS_BASE_APPLICATION_FRAMEWORK_H
#define MODULES_FRAMEWORKS_BASE_APPLICATION_FRAMEWORK_H

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#include "modules/frameworks/orln_application.h"
#include "modules/frameworks/trace_output.h"
#include "modules/threading/mutex.h"
#include "platform/config_file.h"
#include "platform/debug_stream.h"

// It is the sink of TRACE_OUTPUT, so that the lines of the libraries go the same way.
class BASE_APPLICATION_FRAMEWORK : public ORLN_APPLICATION, private TRACE_SINK {
public:
    // Opens the configuration "app.cfg" (cached, in the "config" folder of the application data)
    // and the debug stream "main", and traces what the machine has to offer.
    BASE_APPLICATION_FRAMEWORK();
    ~BASE_APPLICATION_FRAMEWORK() override;

    // "THREAD_STACK_SIZE" is valid from 1024 to 16384. Anything else becomes 4096, and so does the
    // value at the start when the key is missing.
    void read_from_config_file(DISK_MANAGER* disk) override;
    void write_to_config_file(DISK_MANAGER* disk) override;
    // No database stands behind this system: does nothing.
    void output_error_to_database(const char* text, const char* file, std::int32_t line) override;

    CONFIG_FILE& get_config() { return config; }
    std::int32_t get_thread_stack_size() const { return thread_stack_size; }

    // The output family. Any thread may call it; a null format does nothing, and so does a program
    // without a framework. Each line is headed by level, thread and time and goes to the debug
    // stream "main" if that is active. Text beyond the buffer of 131072 bytes is cut. Warnings and
    // fatal lines are shown on standard error as well, without their heading.
    static void output_trace(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void output_debug(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void output_warning(const char* format, ...) __attribute__((format(printf, 1, 2)));
    // As the others, then ends the process.
    static void output_fatal(const char* format, ...) __attribute__((format(printf, 1, 2)));
    // No heading; the text also goes to output_error_to_database.
    static void output_error(const char* file, std::int32_t line, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    static void write_to_debug_stream(const char* text);

    // Writes the heading "%s: GW%02d %s%d/%s%d %s%d:%s%d %lu " into `buffer`: level word, number
    // of the thread's data object (-1 without one), day, month, hour, minute, pool thread id.
    static void get_ouput_string(char* buffer, std::size_t size, const char* level);

    static constexpr std::int32_t MIN_THREAD_STACK_SIZE = 1024;
    static constexpr std::int32_t MAX_THREAD_STACK_SIZE = 16384;
    static constexpr std::int32_t DEFAULT_THREAD_STACK_SIZE = 4096;

protected:
    CONFIG_FILE config;
    std::int32_t thread_stack_size;
    DEBUG_STREAM debug_stream;
    MUTEX debug_mutex;

private:
    void output(TRACE_LEVEL level, const char* format, std::va_list arguments) override;
    static void output_line(TRACE_LEVEL level, const char* format, std::va_list arguments);
    void write_locked(const char* text);
    void trace_machine();
};

#endif  // MODULES_FRAMEWORKS_BASE_APPLICATION_FRAMEWORK_H
