// Collects what the codec logs.
#pragma once

#include <string>
#include <vector>

#include "kvt/message_layer.h"

namespace kvt_test {

struct LogLine {
    std::string function;
    int level;
    std::string text;

    /// Traces show numbers as a long: where that has 32 bits, expected ones are cut to them.
    bool operator==(const LogLine &other) const;
};

/// For gtest's messages.
void PrintTo(const LogLine &line, std::ostream *out);

/// While it lives, log lines up to a level are collected in it. One at a time.
class LogCapture {
public:
    explicit LogCapture(int level = 6);
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    const std::vector<LogLine> &lines() const { return lines_; }

    /// The texts alone.
    std::vector<std::string> texts() const;
    /// The lines so far, which are forgotten.
    std::vector<LogLine> take();

    /// The source files that the lines named, in the same order.
    const std::vector<std::string> &files() const { return files_; }

private:
    static void collect(const char *file, int line, const char *function, int level,
                        const char *format, ...);

    std::vector<LogLine> lines_;
    std::vector<std::string> files_;
};

} // namespace kvt_test
