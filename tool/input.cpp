#include "input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "problems.h"

namespace kvt_tool {

namespace {

struct Close {
    void operator()(std::FILE *file) const {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};

} // namespace

std::string shown_name(const std::string &name) {
    return name == standard_input ? "(standard input)" : name;
}

std::optional<std::string> read_input(const std::string &name) {
    const std::unique_ptr<std::FILE, Close> file(
        name == standard_input ? stdin : std::fopen(name.c_str(), "rb"));
    if (file == nullptr) {
        cannot_use(name, std::strerror(errno));
        return std::nullopt;
    }
    std::string content;
    char block[1 << 16];
    while (const size_t length = std::fread(block, 1, sizeof block, file.get())) {
        content.append(block, length);
    }
    if (std::ferror(file.get()) != 0) {
        cannot_use(shown_name(name), std::strerror(errno));
        return std::nullopt;
    }
    return content;
}

} // namespace kvt_tool
