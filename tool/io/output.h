// Standard output, and what is wrong with any output.
#pragma once

#include <string>
#include <string_view>

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

/// Whether what was printed ends with a whole line.
bool is_at_line_start();

/// Writes all of some data to an open file. Throws an OutputError with the file's name.
void write_all(int file, std::string_view data, const std::string &name);

/// Throws an OutputError where an open file is a terminal and the data no text.
void refuse_binary_on_terminal(int file, std::string_view data, const std::string &name);

/// Writes to what is no regular file, such as a pipe or a device. Data that is no text is refused
/// for a terminal.
void write_to_device(const std::string &name, std::string_view data);

} // namespace kvt_tool
