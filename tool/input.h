// The inputs of a command: files, or standard input.
#pragma once

#include <optional>
#include <string>

namespace kvt_tool {

/// What stands for standard input among the names of files.
inline constexpr char standard_input[] = "-";

/// The name of an input as it is shown in messages.
std::string shown_name(const std::string &name);

/// The whole content of an input. Says what is wrong, and returns nothing, when it cannot be read.
std::optional<std::string> read_input(const std::string &name);

} // namespace kvt_tool
