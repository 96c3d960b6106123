// Objects of JSON as records.
#pragma once

#include "model/fields.h"
#include "json/json_path.h"
#include "json/json_value.h"

namespace kvt_tool {

/// Fills a record, which is zero, with the fields of an object. Throws JsonProblem for all that the
/// record or its text cannot hold; what has been filled can be released.
void fill_record(const Record &table, void *record, const JsonValue &json, const JsonPath &path);

} // namespace kvt_tool
