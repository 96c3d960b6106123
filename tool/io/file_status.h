// What a file is besides its content.
#pragma once

#include <sys/stat.h>

#include <string>

namespace kvt_tool {

/// Gives a new file the owner, group, permissions, access list and extended attributes of another
/// one, whose status is given. Throws an OutputError when something cannot be kept.
void keep_status(int new_file, const std::string &old_file, const struct stat &status);

/// Gives a file its permissions. Writing takes some of them away.
bool set_permissions(int file, mode_t permissions);

} // namespace kvt_tool
