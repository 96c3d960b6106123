// Messages as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "model/field_path.h"
#include "model/fields.h"
#include "model/value_text.h"

namespace kvt_tool {

using Json = nlohmann::ordered_json;

struct JsonForm {
    bool plain_numbers = false;         ///< numbers of 64 bits as numbers, not as strings
    GuidForm guids = GuidForm::decimal; ///< in hexadecimal as strings: "0x0002c903000a1b2c"
};

/// What takes the place of a string that is no UTF-8: an object with this key and the bytes, in
/// hexadecimal.
inline constexpr char bytes_key[] = "hex";

/// A message as an object of its type and its record:
///
///     {"type": "END_JOB", "end_job": {"job_id": "5"}}
///
/// It has what the message's text has, and lists in place of repeated keys. Counts and lengths
/// follow from the lists and texts, and are left out unless they say something else.
Json to_json(const MessageKind &kind, const void *record, const JsonForm &form);

/// A field of a record, or an element of its list, as it is in the message's object.
Json field_to_json(const Row &row, const void *record, std::optional<uint64_t> index,
                   const JsonForm &form);

/// What a path leads to, in the same form.
Json to_json(const FoundField &found, const JsonForm &form);

/// True for a text that can be a string of JSON.
bool is_utf8(std::string_view text);

} // namespace kvt_tool
