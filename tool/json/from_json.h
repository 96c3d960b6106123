// JSON as messages.
#pragma once

#include <string>
#include <string_view>

#include "model/owned_message.h"
#include "json/to_json.h"

namespace kvt_tool {

/// Thrown when a text is no JSON, or when JSON is no message: nothing of it is taken then.
struct JsonProblem {
    size_t line; ///< of the text, counted from 1; 0 when the whole value is meant
    std::string what;
};

/// Parses a text that holds one value. Throws JsonProblem, also where an object has a key twice.
Json parse_json(std::string_view text);

/// The message of an object as to_json makes it, with any of its forms of numbers. Null is taken
/// for a field that is missing, and a missing one for 0 or empty. Counts and lengths may be there.
/// Throws JsonProblem for all that the record cannot hold, with the path of the field.
OwnedMessage from_json(const Json &message);

} // namespace kvt_tool
