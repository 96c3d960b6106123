// Parses JSON.
#pragma once

#include <string_view>

#include "json/json_value.h"

namespace kvt_tool {

/// The value of a text that holds one, with blanks around it or not. The text is to outlive it.
/// Throws JsonProblem, also where an object has a key twice, and where lists and objects are nested
/// deeper than any message.
JsonValue parse_json(std::string_view text);

/// More than any record has by far. What is deeper would only fill the stack.
inline constexpr size_t deepest_json = 64;

/// What JSON takes for a blank.
inline bool is_json_blank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

} // namespace kvt_tool
