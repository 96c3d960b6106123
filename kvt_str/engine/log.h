// Log lines through the callback of the embedding layer. Nothing is computed while nobody listens.
#pragma once

#include "kvt/message_layer.h"

namespace kvt_str {

inline constexpr int error_level = 0;
inline constexpr int trace_level = 6;

inline bool listens(int level) {
    return log_cb != nullptr && log_level >= level;
}

/// A format and the place in the source that gives it.
struct Format {
    const char *text;
    const char *file;
    int line;

    constexpr Format(const char *format, const char *from = __builtin_FILE(),
                     int at = __builtin_LINE())
        : text(format), file(from), line(at) {}

    /// The file's name without its folders.
    const char *file_name() const {
        const char *name = file;
        for (const char *c = file; *c != '\0'; ++c) {
            name = *c == '/' ? c + 1 : name;
        }
        return name;
    }
};

template <typename... Arguments>
void log(int level, const char *function, const Format &format, Arguments... arguments) {
    if (listens(level)) {
        log_cb(format.file_name(), format.line, function, level, format.text, arguments...);
    }
}

template <typename... Arguments>
void trace(const char *function, const Format &format, Arguments... arguments) {
    log(trace_level, function, format, arguments...);
}

} // namespace kvt_str
