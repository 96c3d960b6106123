#include "io/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>

namespace kvt_tool {

namespace {

[[noreturn]] void fail_printing() {
    throw OutputError{"standard output", errno == EPIPE ? "" : std::strerror(errno)};
}

/// The file that is removed when a signal ends the program. Files are made one at a time.
char unfinished[PATH_MAX] = "";

extern "C" void remove_unfinished(int signal) {
    if (unfinished[0] != '\0') {
        unlink(unfinished);
    }
    // The handler was for one signal: the next one of its kind ends the program.
    raise(signal);
}

void remember_unfinished(const std::string &name) {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action = {};
        action.sa_handler = remove_unfinished;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGXFSZ}) {
            struct sigaction before = {};
            sigaction(signal, nullptr, &before);
            if (before.sa_handler != SIG_IGN) {
                sigaction(signal, &action, nullptr);
            }
        }
    });
    const size_t length = name.size() < sizeof unfinished ? name.size() : 0;
    unfinished[0] = '\0';
    std::copy_n(name.begin() + (length > 0 ? 1 : 0), length > 0 ? length - 1 : 0, unfinished + 1);
    unfinished[length] = '\0';
    unfinished[0] = length > 0 ? name[0] : '\0'; // last, so that the handler sees a whole name
}

} // namespace

void print(std::string_view data) {
    if (std::fwrite(data.data(), 1, data.size(), stdout) != data.size()) {
        fail_printing();
    }
}

void finish_printing() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        fail_printing();
    }
}

namespace {

/// The permissions of a new file: those of the file that it replaces, and its owner. Without the
/// owner, no more than the permissions of the file's own user.
void copy_status(int file, const struct stat &status) {
    const bool owned = fchown(file, status.st_uid, status.st_gid) == 0;
    fchmod(file, status.st_mode & (owned ? 07777 : 0700));
}

void set_usual_permissions(int file) {
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(file, 0666 & ~mask);
}

} // namespace

NewFile::NewFile(const std::string &name, Existing existing, const FileState &state)
    : name_(name), state_(state), existing_(existing) {
    struct stat status;
    const bool replaces = existing != Existing::keep && stat(name.c_str(), &status) == 0;
    if (replaces && !S_ISREG(status.st_mode)) {
        throw OutputError{name_, "not a regular file"};
    }
    if (existing == Existing::replace && !replaces) {
        fail();
    }
    if (replaces) {
        char *resolved = realpath(name.c_str(), nullptr);
        if (resolved == nullptr) {
            fail();
        }
        name_ = resolved;
        std::free(resolved);
    }
    temporary_ = name_ + ".XXXXXX";
    file_ = mkostemp(temporary_.data(), O_CLOEXEC);
    if (file_ < 0) {
        temporary_.clear();
        fail();
    }
    remember_unfinished(temporary_);
    if (replaces) {
        copy_status(file_, status);
    } else {
        set_usual_permissions(file_);
    }
}

NewFile::~NewFile() {
    if (file_ >= 0) {
        close(file_);
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
        remember_unfinished("");
    }
}

void NewFile::fail() const {
    throw OutputError{name_, std::strerror(errno)};
}

void NewFile::check_state() const {
    const int file = open(name_.c_str(), O_RDONLY | O_CLOEXEC);
    const FileState now = file >= 0 ? state_of(file) : FileState{};
    if (file >= 0) {
        close(file);
    }
    if (now != state_) {
        throw OutputError{name_, "left as it is: it has changed meanwhile"};
    }
}

void NewFile::write(std::string_view data) {
    while (!data.empty()) {
        const ssize_t written = ::write(file_, data.data(), data.size());
        if (written < 0 && errno != EINTR) {
            fail();
        }
        data.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
    }
}

void NewFile::commit() {
    // What takes the place of a file must outlive a crash as that one would have.
    if (existing_ != Existing::keep && fsync(file_) != 0) {
        fail();
    }
    if (close(std::exchange(file_, -1)) != 0) {
        fail();
    }
    if (state_ != FileState{}) {
        check_state();
    }
    // A link to the new name is refused where there is one already; a rename is not.
    const int placed = existing_ != Existing::keep ? std::rename(temporary_.c_str(), name_.c_str())
                                                   : link(temporary_.c_str(), name_.c_str());
    if (placed != 0) {
        fail();
    }
    if (existing_ == Existing::keep) {
        unlink(temporary_.c_str());
    }
    temporary_.clear();
    remember_unfinished("");
}

} // namespace kvt_tool
