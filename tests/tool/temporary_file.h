// A file for the time of a test.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace kvt_tool {

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string &content) {
        const int file = mkstemp(name_.data());
        close(file);
        std::ofstream(name_, std::ios::binary) << content;
    }

    ~TemporaryFile() { unlink(name_.c_str()); }

    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &name() const { return name_; }

private:
    std::string name_ = "kvt_test_XXXXXX";
};

} // namespace kvt_tool
