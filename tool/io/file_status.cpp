#include "io/file_status.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "io/output.h"

namespace kvt_tool {

namespace {

constexpr mode_t all_permissions = 07777;

[[noreturn]] void refuse(const std::string &file, const std::string &what) {
    throw OutputError{file, "left as it is: " + what + " cannot be kept: " + std::strerror(errno)};
}

/// Calls a function of the system that fills a room, with one that is large enough. Nothing where
/// there is nothing to be had.
template <typename Fill> std::optional<std::string> filled(Fill fill, const std::string &file) {
    for (;;) {
        const ssize_t size = fill(nullptr, 0);
        std::string room(size > 0 ? static_cast<size_t>(size) : 0, '\0');
        const ssize_t length = size > 0 ? fill(room.data(), room.size()) : size;
        if (length >= 0) {
            room.resize(static_cast<size_t>(length));
            return room;
        }
        if (errno == ENOTSUP || errno == ENODATA) {
            return std::nullopt;
        }
        if (errno != ERANGE) { // it has grown meanwhile
            refuse(file, "its extended attributes");
        }
    }
}

/// These tell of the content, which is another one: the system itself drops them when it is
/// written.
bool is_of_content(std::string_view name) {
    return name == "security.capability" || name == "security.ima" || name == "security.evm";
}

std::vector<std::string> names_of(const std::optional<std::string> &list) {
    std::vector<std::string> names;
    for (size_t at = 0; list.has_value() && at < list->size();) {
        const std::string name = list->c_str() + at;
        at += name.size() + 1;
        if (!is_of_content(name)) {
            names.push_back(name);
        }
    }
    return names;
}

std::string shown_attribute(const std::string &name) {
    return name == "system.posix_acl_access" ? "its access list" : "its extended attribute " + name;
}

/// Gives a new file the attributes of another one, and takes away what the folder has given it.
void keep_attributes(int new_file, const std::string &old_file) {
    const auto wanted = names_of(
        filled([&](char *room, size_t size) { return listxattr(old_file.c_str(), room, size); },
               old_file));
    const auto given = names_of(filled(
        [&](char *room, size_t size) { return flistxattr(new_file, room, size); }, old_file));
    for (const std::string &name : given) {
        if (std::ranges::find(wanted, name) == wanted.end() &&
            fremovexattr(new_file, name.c_str()) != 0) {
            refuse(old_file, "that it has no " + name);
        }
    }
    for (const std::string &name : wanted) {
        const auto value = filled(
            [&](char *room, size_t size) {
                return getxattr(old_file.c_str(), name.c_str(), room, size);
            },
            old_file);
        const auto present = filled(
            [&](char *room, size_t size) { return fgetxattr(new_file, name.c_str(), room, size); },
            old_file);
        if (value.has_value() && value != present &&
            fsetxattr(new_file, name.c_str(), value->data(), value->size(), 0) != 0) {
            refuse(old_file, shown_attribute(name));
        }
    }
}

} // namespace

bool set_permissions(int file, mode_t permissions) {
    struct stat status;
    return fstat(file, &status) == 0 &&
           ((status.st_mode & all_permissions) == (permissions & all_permissions) ||
            fchmod(file, permissions & all_permissions) == 0);
}

void keep_status(int new_file, const std::string &old_file, const struct stat &status) {
    struct stat now;
    const bool is_owned =
        fstat(new_file, &now) == 0 && now.st_uid == status.st_uid && now.st_gid == status.st_gid;
    if (!is_owned && fchown(new_file, status.st_uid, status.st_gid) != 0) {
        refuse(old_file, now.st_uid != status.st_uid ? "its owner" : "its group");
    }
    keep_attributes(new_file, old_file);
    // After the access list, which changes the permissions of the group.
    if (!set_permissions(new_file, status.st_mode)) {
        refuse(old_file, "its permissions");
    }
}

} // namespace kvt_tool
