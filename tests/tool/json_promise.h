// What kvt promises of JSON and messages.
#pragma once

#include <string>
#include <string_view>

#include "json/to_json.h"

namespace kvt_test {

/// What does not hold of a text that is taken for a message in JSON; empty when all does:
///
/// - it is JSON for the library just when it is for kvt, and has the same strings and keys;
/// - a refusal names a place in the text, and can be printed on a line;
/// - a message that is not refused gives a text without findings;
/// - the text is read as this one message, and the message is the same as JSON.
std::string broken_by_from_json(const std::string &json);

/// What does not hold of a message on its way to JSON and back; empty when all does: it comes back
/// as the same text, or it is refused since that text would be read as something else.
std::string broken_there_and_back(const kvt_tool::MessageKind &kind, const void *record,
                                  const kvt_tool::JsonForm &form);

} // namespace kvt_test
