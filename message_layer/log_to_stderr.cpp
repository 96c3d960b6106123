// A ready-made log function, for programs with a log_cb of their own too.
#include "kvt/message_layer.h"

#include <cstdarg>
#include <cstdio>

extern "C" void kvt_log_to_stderr(const char *file, int line, const char *func, int level,
                                  const char *format, ...) {
    // The texts of the traces begin with the function's name and end with a newline; errors do not.
    const bool is_error = level == 0;
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    // One call for the line, so that those of several threads do not mix.
    if (is_error) {
        std::fprintf(stderr, "%s:%d: %s: %s\n", file, line, func, text);
    } else {
        std::fprintf(stderr, "%s:%d: %s", file, line, text);
    }
}
