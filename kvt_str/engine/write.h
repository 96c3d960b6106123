// Writes records, and measures what writing them would take, by a walk over their tables.
#pragma once

#include <cstdint>

#include "engine/codec.h"

namespace kvt_str {

/// Writes a record as PackRoutine says.
char *write_record(const Codec &codec, const void *record, unsigned level, char *out);

/// Measures it as MeasureRoutine says.
uint64_t measure_record(const Codec &codec, const void *record, unsigned level);

} // namespace kvt_str
