// TRACE_OUTPUT: the output family for code that doesn't know the application.
//
// Libraries trace through these operations. The application sets itself as the sink and writes the
// lines where it writes its own; without a sink they go nowhere. Any thread may trace. A null
// format does nothing.
#ifndef MODULES_FRAMEWORKS_TRACE_OUTPUT_H
#define MODULES_FRAMEWORKS_TRACE_OUTPUT_H

#include <cstdarg>

enum class TRACE_LEVEL { TRACE, DEBUG, WARNING, FATAL };

class TRACE_SINK {
public:
    virtual ~TRACE_SINK() = default;
    // `format` isn't null. Called on the thread that traces. A sink ends the process after a line
    // of level FATAL.
    virtual void output(TRACE_LEVEL level, const char* format, std::va_list arguments) = 0;
};

struct TRACE_OUTPUT {
    static void output_trace(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void output_debug(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void output_warning(const char* format, ...) __attribute__((format(printf, 1, 2)));
    // Comes back only if there is no sink that ends the process.
    static void output_fatal(const char* format, ...) __attribute__((format(printf, 1, 2)));

    // Sets the sink, null for none, and yields the former one. The sink isn't owned; it must stay
    // until it is replaced and no thread traces through it any more.
    static TRACE_SINK* set_sink(TRACE_SINK* sink);
};

#endif  // MODULES_FRAMEWORKS_TRACE_OUTPUT_H
