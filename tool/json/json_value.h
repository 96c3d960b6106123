// Values of JSON, and where they stand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvt_tool {

enum class JsonKind : uint8_t { null, boolean, number, string, list, object };

/// A value as it stands in a text, which is to outlive it: so that what is said of a value names
/// its line and column, and no digit of a number is lost before its field is known.
struct JsonValue {
    JsonKind kind = JsonKind::null;
    std::string_view source;      ///< from its first to its last character
    std::vector<JsonValue> parts; ///< of a list; the keys and values of an object, in turn
};

/// Thrown when a text is no JSON, or when JSON is no message: nothing of it is taken then.
struct JsonProblem {
    const char *at;   ///< in the text that was parsed
    std::string what; ///< the path of the field, if there is one, the cause and what to do
};

/// The characters of a string.
std::string string_of(const JsonValue &string);

/// A value as it is shown in what is said of it: a long one by what it is.
std::string shown(const JsonValue &value);

} // namespace kvt_tool
