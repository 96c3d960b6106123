#include "io/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "io/problems.h"
#include "model/printable.h"

namespace kvt_tool {

std::string shown_name(const std::string &name) {
    return name == standard_input ? "(standard input)" : printable(name);
}

FileState state_of(int file) {
    struct stat status;
    if (fstat(file, &status) != 0) {
        return {};
    }
    return {status.st_dev,         status.st_ino,          status.st_size,
            status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec};
}

InputFile::InputFile(const std::string &name) : path_(name), name_(shown_name(name)) {
    file_ = name == standard_input ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file_ < 0) {
        fail();
    } else {
        state_ = state_of(file_);
    }
}

InputFile::~InputFile() {
    if (file_ > STDIN_FILENO) {
        close(file_);
    }
}

void InputFile::fail() {
    usable_ = false;
    cannot_use(name_, std::strerror(errno));
}

size_t InputFile::read(char *to, size_t room) {
    ssize_t length;
    do {
        length = ::read(file_, to, room);
    } while (length < 0 && errno == EINTR);
    if (length < 0) {
        fail();
        return 0;
    }
    return static_cast<size_t>(length);
}

size_t InputFile::read_at(uint64_t offset, char *to, size_t room) const {
    ssize_t length;
    do {
        length = pread(file_, to, room, static_cast<off_t>(offset));
    } while (length < 0 && errno == EINTR);
    return length < 0 ? 0 : static_cast<size_t>(length);
}

std::optional<uint64_t> size_of_input(const std::string &name) {
    struct stat status;
    const int result =
        name == standard_input ? fstat(STDIN_FILENO, &status) : stat(name.c_str(), &status);
    if (result != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return static_cast<uint64_t>(status.st_size);
}

} // namespace kvt_tool
