// The content of records, as far as the writer writes it: equality and hashes.
#pragma once

#include <cstdint>

#include "model/field_set.h"
#include "model/fields.h"

namespace kvt_tool {

/// A hash of what the writer writes of a record, but for the fields of `except`. Records that
/// differ may share it: what is taken as equal for it is to be compared.
uint64_t content_hash(const Record &table, const void *record, const FieldSet &except = {});

/// True when the writer writes the same for both, and would if it wrote all digits of a float.
/// Fields of `except` count as the same. Where it has some, so does the count of a list that is as
/// long as it says.
bool same_content(const Record &table, const void *a, const void *b, const FieldSet &except = {});

/// The same for one field of both.
bool same_value(const Row &row, const void *a, const void *b, const FieldSet &except = {});

/// A hash of what it writes for one field.
uint64_t value_hash(const Row &row, const void *record, const FieldSet &except = {});

/// True for the count of a list, or the length of a text, that says what is there.
bool is_true_count(const Record &table, const Row &row, const void *record);

} // namespace kvt_tool
