// Where the values of a message stand in its text.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/fields.h"

namespace kvt_tool {

/// Whether the line of a value is wanted. The line begins with the row's key, and the text goes on
/// after its end up to a NUL.
using WantedLine = std::function<bool(const Row &row, std::string_view line)>;

/// Takes the path of the field that gets its value from a line, as FieldPath gives it, and where
/// the line begins after its blanks.
using FoundLine = std::function<void(const std::string &path, const char *line)>;

/// Goes through the lines of a message as the reader does, and tells the wanted ones in the order
/// of the text. Of fields that stand there several times, the reader keeps the last.
void each_value_line(const MessageKind &kind, const char *message, const WantedLine &wanted,
                     const FoundLine &found);

} // namespace kvt_tool
