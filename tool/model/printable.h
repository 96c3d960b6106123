// Texts that are safe on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kvt_tool {

/// A text with a dot for each control character and for each byte that is no UTF-8: a terminal
/// could take them for commands. Those in `kept` stay.
std::string printable(std::string_view text, std::string_view kept = "");

/// The same JSON, in which no character of a string is a control character: JSON itself lets those
/// from U+007F on stand.
std::string printable_json(std::string json);

} // namespace kvt_tool
