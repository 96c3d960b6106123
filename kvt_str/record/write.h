// Writes records, and measures what writing them would take.
#pragma once

#include <cstdint>

#include "record/row.h"

namespace kvt_str {

/// Writes a record's block as PackRoutine says.
char *write_block(const Record &table, const void *record, const Label &opening, unsigned level,
                  char *out);

/// The number of characters that write_block writes, without the NUL.
uint64_t measure_block(const Record &table, const void *record, const Label &opening,
                       unsigned level);

} // namespace kvt_str
