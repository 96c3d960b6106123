// kvt stat: counts messages by kind.
#pragma once

#include <string>
#include <vector>

#include "problems.h"

namespace kvt_tool {

/// Prints how many messages there are in all inputs and how large they are, as a table or as JSON.
ExitStatus print_statistics(const std::vector<std::string> &inputs, bool as_json, unsigned threads);

} // namespace kvt_tool
