// What the tables say, as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "message_kinds.h"
#include "model/field_path.h"

namespace kvt_tool {

/// A kind: its number, name, block, record, purpose and, if they are wanted, its fields.
nlohmann::ordered_json describe_as_json(const MessageKind &kind, bool with_fields);

/// A field: its kind and path, and all that a field of a kind has.
nlohmann::ordered_json describe_as_json(const FieldPlace &place);

} // namespace kvt_tool
