#include "model/value_text.h"

#include <charconv>

#include "model/hexadecimal.h"
#include "text/real.h"

namespace kvt_tool {

namespace {

/// The length of the character of UTF-8 at the start of a text that is not empty; 0 for bytes that
/// are none, and for what controls a terminal.
size_t printable_length(std::string_view text) {
    const auto byte = [&](size_t i) {
        return static_cast<unsigned char>(text[i]);
    };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return first >= 0x20 && first != 0x7F ? 1 : 0;
    }
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }

    // What follows these is limited: overlong forms, surrogates, values beyond the last one, and
    // control characters.
    static constexpr struct {
        unsigned char first, least_second, most_second;
    } limits[] = {{0xC2, 0xA0, 0xBF},
                  {0xE0, 0xA0, 0xBF},
                  {0xED, 0x80, 0x9F},
                  {0xF0, 0x90, 0xBF},
                  {0xF4, 0x80, 0x8F}};

    for (const auto &limit : limits) {
        if (first == limit.first && (byte(1) < limit.least_second || byte(1) > limit.most_second)) {
            return 0;
        }
    }
    return length;
}

} // namespace

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
        const size_t length = printable_length(text);
        if (first == '"' || first == '\\') {
            out += '\\';
            out += first;
        } else if (length != 0) {
            out += text.substr(0, length);
        } else if (first == '\n') {
            out += "\\n";
        } else if (first == '\t') {
            out += "\\t";
        } else {
            out += "\\x" + hexadecimal(static_cast<unsigned char>(first), 2);
        }
        text.remove_prefix(length != 0 ? length : 1);
    }
    return out + '"';
}

} // namespace kvt_tool
