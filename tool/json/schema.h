// The JSON Schema of messages.
#pragma once

#include <string>

namespace kvt_tool {

/// A JSON Schema of what "kvt json" prints for a message, with a newline at its end.
std::string json_schema();

} // namespace kvt_tool
