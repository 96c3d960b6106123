#include "support/log_capture.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <regex>
#include <utility>

namespace kvt_test {

namespace {
LogCapture *current = nullptr;

/// An expected text as this machine shows it: "[0x100000002]" is "[0x2]" where a long has 32 bits.
std::string shown_here(const std::string &text) {
    if constexpr (sizeof(long) == sizeof(uint64_t)) {
        return text;
    }
    static const std::regex wide("\\[(0x)?[0-9a-f]{1,8}([0-9a-f]{8})\\]");
    std::string shown;
    const char *rest = text.c_str();
    for (std::cmatch match; std::regex_search(rest, match, wide); rest = match[0].second) {
        char low[sizeof "[0xffffffff]"];
        std::snprintf(low, sizeof low, "[%s%lx]", match[1].str().c_str(),
                      std::stoul(match[2].str(), nullptr, 16));
        shown += match.prefix().str() + low;
    }
    return shown + rest;
}

} // namespace

bool LogLine::operator==(const LogLine &other) const {
    return function == other.function && level == other.level &&
           shown_here(text) == shown_here(other.text);
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
