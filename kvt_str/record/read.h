// Reads records.
#pragma once

#include "record/row.h"

namespace kvt_str {

/// Reads a record's block as UnpackRoutine says. Never fails: unknown lines and blocks are skipped,
/// a value that does not scan leaves its field as it was, an element that cannot be stored for want
/// of memory is dropped, and the text's NUL ends every block.
const char *read_block(const Record &table, Input &input, const char *at, void *record,
                       unsigned level);

} // namespace kvt_str
