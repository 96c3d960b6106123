// Strings of JSON as texts.
#pragma once

#include <string>

#include "model/fields.h"
#include "json/json_path.h"
#include "json/json_value.h"

namespace kvt_tool {

/// The text of a row: a string, or the bytes of {"hex": "..."}. Throws JsonProblem for one that the
/// text form cannot hold: it has quotes around its texts, and no way to write some characters
/// between them.
std::string text_from_json(const Row &row, const JsonValue &json, const JsonPath &path);

} // namespace kvt_tool
