#include "support/log_capture.h"

#include <cstdarg>
#include <cstdio>
#include <ostream>
#include <utility>

namespace kvt_test {

namespace {
LogCapture *current = nullptr;
}

void PrintTo(const LogLine &line, std::ostream *out) {
    *out << line.function << " (" << line.level << "): " << line.text;
}

LogCapture::LogCapture(int level) {
    current = this;
    log_cb = &LogCapture::collect;
    log_level = level;
}

LogCapture::~LogCapture() {
    current = nullptr;
    log_cb = nullptr;
    log_level = 0;
}

std::vector<std::string> LogCapture::texts() const {
    std::vector<std::string> texts;
    for (const LogLine &line : lines_) {
        texts.push_back(line.text);
    }
    return texts;
}

std::vector<LogLine> LogCapture::take() {
    files_.clear();
    return std::exchange(lines_, {});
}

void LogCapture::collect(const char *file, int /*line*/, const char *function, int level,
                         const char *format, ...) {
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    current->lines_.push_back({function, level, text});
    current->files_.emplace_back(file);
}

} // namespace kvt_test
