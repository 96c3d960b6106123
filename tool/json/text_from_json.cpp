#include "json/text_from_json.h"

#include <algorithm>
#include <charconv>

#include "engine/text_limits.h"
#include "json/to_json.h"

namespace kvt_tool {

namespace {

/// The bytes of pairs of hexadecimal digits.
std::string bytes_of(const JsonValue &json, const JsonPath &path) {
    const std::string digits = string_of(json);
    std::string bytes;
    for (size_t i = 0; i < digits.size(); i += 2) {
        unsigned value = 0;
        const char *begin = digits.data() + i;
        const char *end = begin + std::min<size_t>(2, digits.size() - i);
        if (std::from_chars(begin, end, value, 16).ptr != begin + 2) {
            path.fail(json, shown(json) + " is not pairs of hexadecimal digits, two for each byte");
        }
        bytes += static_cast<char>(value);
    }
    return bytes;
}

/// What the text form has no way to write; null for all else. A quote ends a text, a newline its
/// line, a NUL the message, and a brace opens or closes a block for the reader wherever it stands.
const char *name_of_unwritable(char character) {
    switch (character) {
    case '"':
        return "a double quote";
    case '{':
    case '}':
        return "a brace";
    case '\n':
        return "a newline";
    case '\0':
        return "a NUL";
    default:
        return nullptr;
    }
}

} // namespace

std::string text_from_json(const Row &row, const JsonValue &json, const JsonPath &path) {
    std::string text;
    if (json.kind == JsonKind::string) {
        text = string_of(json);
    } else if (json.kind == JsonKind::object && json.parts.size() == 2 &&
               string_of(json.parts[0]) == bytes_key && json.parts[1].kind == JsonKind::string) {
        text = bytes_of(json.parts[1], path);
    } else {
        path.fail(json, shown(json) + " is not a text: a string in double quotes, or its bytes as "
                                      "{\"hex\": \"...\"}");
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (const char *name = name_of_unwritable(text[i])) {
            path.fail(json, "a text cannot hold " + std::string(name) + ", which is its byte " +
                                std::to_string(i + 1) + "; replace it");
        }
    }
    const size_t longest =
        row.kind == RowKind::text ? row.capacity - size_t{1} : kvt_str::longest_joined_value;
    if (text.size() > longest) {
        path.fail(json, "a text of " + std::to_string(text.size()) + " bytes where " +
                            std::to_string(longest) + " fit; shorten it");
    }
    return text;
}

} // namespace kvt_tool
