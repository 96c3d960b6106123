// The characters of UTF-8, and which of them a terminal shows. The checker and the command share
// this: what one of them masks, so does the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvt_checking {

/// The first character of a text, or its first byte where that begins no character.
struct Character {
    uint32_t value = 0; ///< the byte itself where it is no character
    size_t bytes = 1;
    bool is_valid = false; ///< UTF-8 in its shortest form, no surrogate, none beyond the last plane
};

/// `text` is not empty.
constexpr Character first_character(std::string_view text) {
    const char *byte = text.data();
    const auto first = static_cast<unsigned char>(*byte);
    if (first < 0x80) {
        return {first, 1, true};
    }
    const size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < bytes) {
        return {first, 1, false};
    }
    uint32_t value = first & (0x7FU >> bytes);
    for (size_t i = 1; i < bytes; ++i) {
        const auto next = static_cast<unsigned char>(byte[i]);
        if ((next & 0xC0) != 0x80) {
            return {first, 1, false};
        }
        value = value << 6 | (next & 0x3FU);
    }
    const uint32_t least = bytes == 4 ? 0x10000 : bytes == 3 ? 0x800 : 0x80;
    const bool is_surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < least || value > 0x10FFFF || is_surrogate) {
        return {first, 1, false};
    }
    return {value, bytes, true};
}

/// Whether a terminal shows a character and does nothing else: no control characters, neither those
/// of ASCII nor those from U+0080 on, and no bytes that may be such to a terminal of 8 bits.
constexpr bool is_printable(const Character &character) {
    const uint32_t value = character.value;
    return character.is_valid && value >= 0x20 && (value < 0x7F || value >= 0xA0);
}

} // namespace kvt_checking
