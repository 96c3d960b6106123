// The content of records, as far as the writer writes it: equality and hashes.
#pragma once

#include <cstdint>

#include "model/fields.h"

namespace kvt_tool {

/// A hash of what the writer writes of a record. Records that differ may share it: what is taken
/// as equal for it is to be compared.
uint64_t content_hash(const Record &table, const void *record);

/// True when the writer writes the same for both, and would if it wrote all digits of a float.
bool same_content(const Record &table, const void *a, const void *b);

/// The same for one field of both.
bool same_value(const Row &row, const void *a, const void *b);

/// A hash of what it writes for one field.
uint64_t value_hash(const Row &row, const void *record);

} // namespace kvt_tool
