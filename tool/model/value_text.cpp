#include "model/value_text.h"

#include <charconv>

#include "kvt_check/characters.h"
#include "model/hexadecimal.h"
#include "text/real.h"

namespace kvt_tool {

std::string plain_real(float value) {
    char characters[kvt_str::real_capacity];
    // The writer leaves out a zero, whatever its sign.
    const size_t length = kvt_str::format_real(value == 0.0F ? 0.0F : value, characters);
    return {characters, length};
}

std::string shown_number(const Row &row, uint64_t number, GuidForm guids) {
    if (is_signed(row)) {
        return std::to_string(static_cast<int64_t>(number));
    }
    const std::string decimal = std::to_string(number);
    if (!is_guid(row) || guids == GuidForm::decimal) {
        return decimal;
    }
    return guid_text(number) + (guids == GuidForm::both ? " = " + decimal : "");
}

std::string plain_value(const Row &row, const void *record, GuidForm guids) {
    switch (shape_of(row)) {
    case Shape::number:
        return shown_number(row, number_of(row, record), guids);
    case Shape::real:
        return plain_real(real_of(row, record));
    default:
        return std::string(text_of(row, record));
    }
}

std::string exact_real(float value) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string plain_element(const Row &row, const Elements &numbers, uint64_t index, GuidForm guids) {
    return shown_number(row, number_at(numbers, index), guids);
}

std::string shown_value(const Row &row, const void *record, GuidForm guids) {
    switch (shape_of(row)) {
    case Shape::number:
        return shown_number(row, number_of(row, record), guids);
    case Shape::text:
        return quoted_text(text_of(row, record));
    default:
        return plain_value(row, record);
    }
}

std::string quoted_text(std::string_view text) {
    std::string out = "\"";
    while (!text.empty()) {
        const char first = text.front();
        const kvt_checking::Character character = kvt_checking::first_character(text);
        size_t shown = 1;
        if (first == '"' || first == '\\') {
            out += '\\';
            out += first;
        } else if (is_printable(character)) {
            shown = character.bytes;
            out += text.substr(0, shown);
        } else if (first == '\n') {
            out += "\\n";
        } else if (first == '\t') {
            out += "\\t";
        } else {
            out += "\\x" + hexadecimal(static_cast<unsigned char>(first), 2);
        }
        text.remove_prefix(shown);
    }
    return out + '"';
}

} // namespace kvt_tool
