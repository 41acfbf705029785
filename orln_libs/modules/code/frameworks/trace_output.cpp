#include "modules/frameworks/trace_output.h"

#include <atomic>

namespace {

std::atomic<TRACE_SINK*> current_sink{nullptr};

void forward(TRACE_LEVEL level, const char* format, std::va_list arguments) {
    TRACE_SINK* sink = current_sink.load(std::memory_order_acquire);
    if (sink && format) {
        sink->output(level, format, arguments);
    }
}

}  // namespace

TRACE_SINK* TRACE_OUTPUT::set_sink(TRACE_SINK* sink) {
    return current_sink.exchange(sink, std::memory_order_acq_rel);
}

void TRACE_OUTPUT::output_trace(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    forward(TRACE_LEVEL::TRACE, format, arguments);
    va_end(arguments);
}

void TRACE_OUTPUT::output_debug(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    forward(TRACE_LEVEL::DEBUG, format, arguments);
    va_end(arguments);
}

void TRACE_OUTPUT::output_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    forward(TRACE_LEVEL::WARNING, format, arguments);
    va_end(arguments);
}

void TRACE_OUTPUT::output_fatal(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    forward(TRACE_LEVEL::FATAL, format, arguments);
    va_end(arguments);
}
