// The lines of a record's block, for people.
#pragma once

#include <string>

#include "model/value_text.h"

namespace kvt_tool {

/// A block as the writer writes it, but for the form of GUIDs: from "{" to "}", without the
/// indentation of the block and without a newline at the end.
std::string block_text(const Record &table, const void *record, GuidForm guids);

} // namespace kvt_tool
