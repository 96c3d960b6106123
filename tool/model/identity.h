// What tells a record from others of its type: a job by its number, a link by node and port.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "model/fields.h"
#include "model/value_text.h"

namespace kvt_tool {

/// The rows that identify a record of this type, in the order of its table; none for a record that
/// nothing identifies.
std::span<const Row *const> identity_of(const Record &table);

/// A hash of the values of these rows.
uint64_t identity_hash(const Record &table, const void *record);

/// These rows for people, and the name that they gave the thing: `id 2, name "leaf02"`. Empty when
/// nothing identifies the record.
std::string identity_text(const Record &table, const void *record, GuidForm guids = GuidForm::both);

/// In its place, for a record that nothing identifies: the first numbers and texts that it has.
std::string hint_text(const Record &table, const void *record, GuidForm guids = GuidForm::both);

} // namespace kvt_tool
