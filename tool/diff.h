// kvt diff: what differs between the messages of two inputs.
#pragma once

#include <string>

#include "problems.h"

namespace kvt_tool {

/// Prints the differences. The status is found_problems when there are some, or when something of
/// an input cannot be read.
ExitStatus diff_inputs(const std::string &a, const std::string &b, bool coloured);

} // namespace kvt_tool
