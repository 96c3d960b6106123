// The inputs of a command: files, or standard input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "io/byte_source.h"

namespace kvt_tool {

/// What stands for standard input among the names of files.
inline constexpr char standard_input[] = "-";

/// The name of an input as it is shown in messages, without what a terminal takes for commands.
std::string shown_name(const std::string &name);

/// Which file a name stands for, and in what state. It differs when another program has written the
/// file or put another one in its place.
struct FileState {
    uint64_t device = 0;
    uint64_t number = 0;
    int64_t size = 0;
    int64_t seconds = 0; ///< of the last change of its content
    int64_t nanoseconds = 0;
    int64_t status_seconds = 0; ///< of the last change of its owner, permissions and the like, too
    int64_t status_nanoseconds = 0;

    bool operator==(const FileState &) const = default;
};

/// The state of a file that is open; an empty one where that cannot be told.
FileState state_of(int file);

/// A file, pipe or standard input that is read from beginning to end.
class InputFile : public ByteSource {
public:
    /// Opens it. Says what is wrong, and is not usable, when it cannot be read.
    explicit InputFile(const std::string &name);
    ~InputFile() override;

    bool usable() const override { return usable_; }

    const std::string &name() const override { return name_; }

    /// The name by which the file is opened.
    const std::string &path() const { return path_; }

    /// What the file was when it was opened.
    const FileState &state() const { return state_; }

    size_t read(char *to, size_t room) override;

    /// Reads up to `room` bytes of a regular file that stand at `offset`, and leaves alone where
    /// `read` goes on. Returns how many; none when something is wrong, which is not said.
    size_t read_at(uint64_t offset, char *to, size_t room) const;

private:
    void fail();

    std::string path_;
    std::string name_;
    int file_ = -1;
    FileState state_;
    bool usable_ = true;
};

/// The bytes of an input that is a file; nothing for a pipe or terminal, whose end nobody knows.
std::optional<uint64_t> size_of_input(const std::string &name);

} // namespace kvt_tool
