// kvt kinds: lists the kinds of messages.
#pragma once

#include "problems.h"

namespace kvt_tool {

/// Prints the value, the name and the record of every kind, "-" for one without a record.
ExitStatus list_kinds();

} // namespace kvt_tool
