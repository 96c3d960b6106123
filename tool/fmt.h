// kvt fmt: prints messages in normal form.
#pragma once

#include <string>
#include <vector>

#include "problems.h"

namespace kvt_tool {

/// Prints the normal form of every message of the inputs, with an empty line between messages. What
/// is wrong is said on standard error, and reading goes on with the next message.
ExitStatus format_messages(const std::vector<std::string> &inputs);

} // namespace kvt_tool
