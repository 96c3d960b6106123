// Numbers of JSON as those of fields.
#pragma once

#include <optional>
#include <string>

#include "model/fields.h"
#include "json/json_value.h"

namespace kvt_tool {

/// A number that a field holds, or why it holds none: the cause and what to do.
template <typename Number> struct NumberFromJson {
    Number value = 0;
    std::string problem = {}; ///< empty when there is a number
};

/// The whole number of a row, or of an element of its list: a number of JSON in any spelling, or a
/// string of digits, or one of "0x" and hexadecimal digits. One with a sign is extended by it.
NumberFromJson<uint64_t> whole_from_json(const Row &row, const JsonValue &json);

/// A float: a number of JSON, or a string of one, or "NaN", "Infinity" and these with a minus. One
/// that the text form writes with fewer digits is none.
NumberFromJson<float> real_from_json(const JsonValue &json);

} // namespace kvt_tool
