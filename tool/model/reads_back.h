// Records that are written, and then read as something else.
#pragma once

#include "engine/row.h"

namespace kvt_tool {

/// True when what is written of a record is read as it was written. The texts of others have a
/// newline or a brace, which may be taken for lines of the record; or they are longer than the
/// reader keeps of a line; or a length or a number of slots is not the true one, and the reader
/// counts again.
bool reads_back(const kvt_str::Record &table, const void *record);

/// Empties the texts of a record that have a newline or a brace.
void drop_texts_that_look_like_lines(const kvt_str::Record &table, void *record);

} // namespace kvt_tool
