// Messages that are JSON.
#pragma once

#include <string>
#include <string_view>

#include "model/owned_message.h"
#include "json/json_value.h"

namespace kvt_tool {

/// The message of an object as to_json makes it, with any of its forms of numbers. Null is taken
/// for a field that is missing, and a missing one for 0 or empty. Counts and lengths may be there,
/// when they are right. Throws JsonProblem for all that the record or its text cannot hold.
OwnedMessage from_json(const JsonValue &message);

/// The text of a message that is JSON, with an empty line after it. `kvt check` finds nothing in
/// it, and reading it gives the message. Throws JsonProblem for what is no such message.
std::string text_of_json(std::string_view json);

/// Throws JsonProblem, for the value at `at`, when the check of a message's text finds something.
void refuse_findings(std::string_view text, const char *at);

} // namespace kvt_tool
