// The table that a text's record is read by.
#pragma once

#include "engine/codec.h"

namespace kvt_fuzz {

/// That of the text's kind, or of a record of the tests' own when its type line names that; null
/// when there is none.
const kvt_str::Record *find_table(const char *text);

} // namespace kvt_fuzz
