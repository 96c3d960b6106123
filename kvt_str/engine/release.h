// Releases what hangs from records: arrays, strings, elements and what hangs from those.
#pragma once

#include <cstdint>

#include "engine/row.h"
#include "engine/true_counts.h"

namespace kvt_str {

/// True when a pointer hangs from the record, or from a record in it.
bool owns_memory(const Record &table);

/// Frees all that the pointers of a record own, by its counts, or by what `lying` knows better. The
/// record itself is not freed, and its members are left as they are.
void release_members(const Record &table, void *record, LyingCounts::Cursor *lying = nullptr);

/// Frees what the elements `first` to `end` - 1 of a run own.
void release_elements(const Record &element, void *elements, uint64_t first, uint64_t end,
                      LyingCounts::Cursor *lying = nullptr);

/// Frees an array or a run that another one replaces while a record is read, with all that its
/// elements own.
void release_array(const Row &row, void *array, TrueCount count, const LyingCounts &lying_counts);

} // namespace kvt_str
