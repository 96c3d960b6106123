#include "json/json_value.h"

#include <charconv>

#include "model/value_text.h"

namespace kvt_tool {

namespace {

/// The number of four hexadecimal digits.
uint32_t code_unit(std::string_view digits) {
    uint32_t value = 0;
    std::from_chars(digits.data(), digits.data() + 4, value, 16);
    return value;
}

/// Adds a character of at most 21 bits in UTF-8.
void add_character(std::string &text, uint32_t character) {
    const auto add = [&](uint32_t byte) {
        text += static_cast<char>(byte);
    };
    if (character < 0x80) {
        add(character);
        return;
    }
    if (character < 0x800) {
        add(0xC0 | character >> 6);
    } else if (character < 0x10000) {
        add(0xE0 | character >> 12);
        add(0x80 | (character >> 6 & 0x3F));
    } else {
        add(0xF0 | character >> 18);
        add(0x80 | (character >> 12 & 0x3F));
        add(0x80 | (character >> 6 & 0x3F));
    }
    add(0x80 | (character & 0x3F));
}

char escaped(char letter) {
    switch (letter) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return letter;
    }
}

} // namespace

std::string string_of(const JsonValue &string) {
    const std::string_view source = string.source.substr(1, string.source.size() - 2);
    std::string characters;
    for (size_t i = 0; i < source.size(); ++i) {
        if (source[i] != '\\') {
            characters += source[i];
        } else if (source[++i] != 'u') {
            characters += escaped(source[i]);
        } else {
            uint32_t character = code_unit(source.substr(i + 1));
            i += 4;
            if (character >= 0xD800 && character < 0xDC00) {
                // The parser has seen the other half of the pair.
                const uint32_t low = code_unit(source.substr(i + 3));
                character = 0x10000 + ((character & 0x3FF) << 10 | (low & 0x3FF));
                i += 6;
            }
            add_character(characters, character);
        }
    }
    return characters;
}

std::string shown(const JsonValue &value) {
    constexpr size_t longest = 40;
    const bool is_long = value.source.size() > longest;
    switch (value.kind) {
    case JsonKind::list:
        return "a list";
    case JsonKind::object:
        return "an object";
    case JsonKind::string:
        return is_long ? "a string of " + std::to_string(string_of(value).size()) + " bytes"
                       : quoted_text(string_of(value));
    case JsonKind::number:
        return is_long ? "a number of " + std::to_string(value.source.size()) + " characters"
                       : std::string(value.source);
    default:
        return std::string(value.source);
    }
}

} // namespace kvt_tool
