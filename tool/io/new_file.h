// Files that a command writes: whole, or not at all.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "io/input.h"

namespace kvt_tool {

/// A new file that takes the place of another one, of no other, or of nothing at all: until it is
/// put in place, and if that never happens, everything is as it was. Also when a signal ends the
/// program, but for SIGKILL.
class NewFile {
public:
    enum class Existing {
        replace,     ///< and keep what it is: owner, group, permissions, access list, extended
                     ///< attributes; a symbolic link stays one, a hard link does not
        may_replace, ///< that, or there is none
        keep,        ///< and refuse
    };

    /// Begins a file beside `name`. A file that is to be replaced is to be in that state still when
    /// this one is put in place, where a state is given. Throws an OutputError, also when something
    /// of what the file is cannot be kept.
    NewFile(const std::string &name, Existing existing, const FileState &state = {});
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write(std::string_view data);

    /// Puts it in place. What takes the place of a file is on disk then, with its place in the
    /// folder; of new files sync_files_of sees to that.
    void commit();

private:
    [[noreturn]] void fail() const;
    void create(mode_t permissions);
    void discard();
    void check_state() const;
    void put_in_place();

    std::string name_;
    FileState state_;
    std::string temporary_;
    Existing existing_;
    mode_t permissions_ = 0; ///< of the file that is replaced; 0 for none
    int file_ = -1;
};

/// Sees to it that all files of a folder, and the folder itself, are on disk. Throws an
/// OutputError.
void sync_files_of(const std::string &folder);

} // namespace kvt_tool
