// What the process may do with files.
#pragma once

#include <string>
#include <vector>

namespace kvt_tool {

/// The files that a command needs besides those that are open.
struct Rights {
    std::vector<std::string> inputs;  ///< are read, as they are when the rights are lowered
    std::vector<std::string> outputs; ///< are written: files, there already or not, and devices
    std::string folder;               ///< gets new files
    bool reads_everything = false;    ///< for libraries that look for files of their own
};

/// Gives up all other rights for good, where the kernel lets a process do that (Landlock); anywhere
/// else nothing changes. An output may be replaced by a new file beside it, so that its folder may
/// be written, with what is in it. The folder for new files is made when it is missing; an
/// OutputError is thrown when it cannot be. To be called before there are threads.
void keep_only(const Rights &rights);

/// Whether the kernel can do that.
bool can_lower_rights();

} // namespace kvt_tool
