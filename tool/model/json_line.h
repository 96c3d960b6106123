// JSON for programs that read line by line.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace kvt_tool {

/// A value on one line, with a newline at its end. It does nothing to a terminal (printable.h), and
/// what is no UTF-8 in it is replaced.
std::string json_line(const nlohmann::ordered_json &value);

} // namespace kvt_tool
