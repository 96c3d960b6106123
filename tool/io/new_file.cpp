#include "io/new_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "io/file_status.h"
#include "io/output.h"
#include "io/unfinished.h"

namespace kvt_tool {

namespace {

constexpr mode_t usual_permissions = 0666;
constexpr mode_t own_permissions = 0600;

/// A name beside `name` that is not in use.
std::string temporary_name(const std::string &name) {
    constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz012345";
    uint8_t random[6] = {};
    // Without it the names repeat, and another try finds the next one.
    static uint8_t attempt = 0;
    if (getrandom(random, sizeof random, GRND_NONBLOCK) != sizeof random) {
        random[0] = ++attempt;
    }
    std::string suffix = ".";
    for (const uint8_t number : random) {
        suffix += letters[number % 32];
    }
    const size_t folder = name.rfind('/') + 1; // 0 for none
    return name.substr(0, folder) + name.substr(folder, NAME_MAX - suffix.size()) + suffix;
}

/// Opens the folder of a file.
int open_folder_of(const std::string &name) {
    const std::filesystem::path folder = std::filesystem::path(name).parent_path();
    return open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

/// Whether the names in a file's folder are on disk. Some file systems have no call for that.
bool sync_name(const std::string &name, int file) {
    const int folder = open_folder_of(name);
    if (folder < 0) {
        return syncfs(file) == 0; // a folder that may be used, but not be read
    }
    const bool synced = fsync(folder) == 0 || errno == EINVAL || errno == ENOTSUP;
    const int reason = errno;
    close(folder);
    errno = reason;
    return synced;
}

} // namespace

NewFile::NewFile(const std::string &name, Existing existing, const FileState &state)
    : name_(name), state_(state), existing_(existing) {
    struct stat status;
    const bool replaces = existing != Existing::keep && stat(name.c_str(), &status) == 0;
    if (replaces && !S_ISREG(status.st_mode)) {
        throw OutputError{shown_name(name_), "not a regular file"};
    }
    if (existing == Existing::replace && !replaces) {
        fail();
    }
    if (!replaces) {
        create(usual_permissions);
        return;
    }
    char *resolved = realpath(name.c_str(), nullptr);
    if (resolved == nullptr) {
        fail();
    }
    name_ = resolved;
    std::free(resolved);
    create(own_permissions);
    permissions_ = status.st_mode;
    try {
        keep_status(file_, name_, status);
    } catch (...) {
        discard();
        throw;
    }
}

NewFile::~NewFile() {
    discard();
}

void NewFile::discard() {
    if (file_ >= 0) {
        close(std::exchange(file_, -1));
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
        temporary_.clear();
        remember_unfinished("");
    }
}

void NewFile::fail() const {
    throw OutputError{shown_name(name_), std::strerror(errno)};
}

void NewFile::create(mode_t permissions) {
    for (int attempts = 0; file_ < 0; ++attempts) {
        const std::string name = temporary_name(name_);
        // No signal comes between the file and the note that it is to be removed.
        const SignalsHeld held;
        file_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
        if (file_ >= 0) {
            temporary_ = name;
            remember_unfinished(name);
        } else if (errno != EEXIST || attempts == UINT8_MAX) {
            fail();
        }
    }
}

void NewFile::check_state() const {
    const int file = open(name_.c_str(), O_RDONLY | O_CLOEXEC);
    const FileState now = file >= 0 ? state_of(file) : FileState{};
    if (file >= 0) {
        close(file);
    }
    if (now != state_) {
        throw OutputError{shown_name(name_), "left as it is: it has changed meanwhile"};
    }
}

void NewFile::write(std::string_view data) {
    write_all(file_, data, shown_name(name_));
}

void NewFile::put_in_place() {
    const SignalsHeld held;
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

void NewFile::commit() {
    if (permissions_ != 0 && !set_permissions(file_, permissions_)) {
        fail();
    }
    // What takes the place of a file must outlive a crash as that one would have.
    if (existing_ != Existing::keep && fsync(file_) != 0) {
        fail();
    }
    if (state_ != FileState{}) {
        check_state();
    }
    put_in_place();
    if (existing_ != Existing::keep && !sync_name(name_, file_)) {
        fail();
    }
    if (close(std::exchange(file_, -1)) != 0) {
        fail();
    }
}

void sync_files_of(const std::string &folder) {
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool synced = file >= 0 && syncfs(file) == 0;
    const std::string reason = synced ? "" : std::strerror(errno);
    if (file >= 0) {
        close(file);
    }
    if (!synced) {
        throw OutputError{shown_name(folder), reason};
    }
}

} // namespace kvt_tool
