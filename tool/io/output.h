// Where a command's data goes: standard output, or a file that takes the place of another one.
#pragma once

#include <string>
#include <string_view>

#include "io/input.h"

namespace kvt_tool {

/// Thrown when data cannot be written. `reason` is empty when nobody reads it any more.
struct OutputError {
    std::string name;
    std::string reason;
};

/// Writes to standard output, through its buffer.
void print(std::string_view data);

/// Sees to it that all that was printed has been written.
void finish_printing();

/// A new file that takes the place of another one, of no other, or of nothing at all: until it is
/// put in place, and if that never happens, everything is as it was.
class NewFile {
public:
    enum class Existing {
        replace,     ///< with its permissions, and its owner as far as this user may set it; a
                     ///< symbolic link stays one, a hard link does not
        may_replace, ///< that, or there is none
        keep,        ///< and refuse
    };

    /// Begins a file beside `name`. A file that is to be replaced is to be in that state still when
    /// this one is put in place, where a state is given.
    NewFile(const std::string &name, Existing existing, const FileState &state = {});
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    void write(std::string_view data);

    /// Puts it in place, with everything on disk.
    void commit();

private:
    [[noreturn]] void fail() const;
    void check_state() const;

    std::string name_;
    FileState state_;
    std::string temporary_;
    Existing existing_;
    int file_ = -1;
};

} // namespace kvt_tool
