#include "io/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "io/problems.h"
#include "model/printable.h"

namespace kvt_tool {

namespace {

char last_printed = '\n';

[[noreturn]] void fail_writing(const std::string &name) {
    throw OutputError{name, errno == EPIPE ? "" : std::strerror(errno)};
}

/// Closes a file at the end of a block.
class OpenFile {
public:
    explicit OpenFile(int file) : file_(file) {}

    ~OpenFile() { close(file_); }

    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

private:
    int file_;
};

} // namespace

void print(std::string_view data) {
    static const bool is_terminal = isatty(STDOUT_FILENO) == 1;
    if (data.empty()) {
        return;
    }
    if (is_terminal && before_output) {
        before_output();
    }
    last_printed = data.back();
    if (std::fwrite(data.data(), 1, data.size(), stdout) != data.size()) {
        fail_writing("standard output");
    }
}

void finish_printing() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        fail_writing("standard output");
    }
}

bool is_at_line_start() {
    return last_printed == '\n';
}

void refuse_binary_on_terminal(int file, std::string_view data, const std::string &name) {
    if (isatty(file) == 1 && printable(data, "\n\t\r\f") != data) {
        throw OutputError{name, "is a terminal, and this is no text: write it to a file"};
    }
}

void write_all(int file, std::string_view data, const std::string &name) {
    while (!data.empty()) {
        const ssize_t written = write(file, data.data(), data.size());
        if (written < 0 && errno != EINTR) {
            fail_writing(name);
        }
        data.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
    }
}

void write_to_device(const std::string &name, std::string_view data) {
    const int file = open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        fail_writing(name);
    }
    const OpenFile closing(file);
    refuse_binary_on_terminal(file, data, name);
    write_all(file, data, name);
}

} // namespace kvt_tool
