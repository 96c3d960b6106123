// Releases what hangs from records: arrays, strings, elements and what hangs from those.
#pragma once

#include <cstdint>

#include "record/row.h"

namespace kvt_str {

/// Frees all that the pointers of a record own, by its counts. The record itself is not freed, and
/// its members are left as they are.
void release_members(const Record &table, void *record);

/// Frees what the elements `first` to `end` - 1 of a run own.
void release_elements(const Record &element, void *elements, uint64_t first, uint64_t end);

} // namespace kvt_str
