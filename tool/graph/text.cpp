#include "graph/text.h"

#include "model/hexadecimal.h"

namespace kvt_tool {

namespace {

uint8_t byte_at(std::string_view text, size_t at) {
    return static_cast<uint8_t>(text[at]);
}

bool is_continuation(std::string_view text, size_t at) {
    return at < text.size() && (byte_at(text, at) & 0xc0) == 0x80;
}

/// The length of the character at `at` if it can be shown, otherwise 0. XML, and so SVG, takes
/// neither control characters nor surrogates nor the last two characters of the first plane.
size_t visible_length(std::string_view text, size_t at) {
    const uint8_t first = byte_at(text, at);
    if (first < 0x80) {
        return first >= 0x20 && first != 0x7f ? 1 : 0;
    }
    const size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4) {
        return 0;
    }
    uint32_t character = first & (0x7fU >> length);
    for (size_t i = 1; i < length; ++i) {
        if (!is_continuation(text, at + i)) {
            return 0;
        }
        character = character << 6 | (byte_at(text, at + i) & 0x3fU);
    }
    constexpr uint32_t smallest[] = {0, 0, 0xa0, 0x800, 0x10000};
    const bool surrogate = character >= 0xd800 && character <= 0xdfff;
    const bool none = (character & 0xfffe) == 0xfffe || character > 0x10ffff;
    return character < smallest[length] || surrogate || none ? 0 : length;
}

std::string quoted_with(std::string_view text, std::string_view backslash) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\': // begins an escape, both for the parser and in labels
            out += backslash;
            break;
        case '\n':
            out += "\\n";
            break;
        case '&': // begins an entity in labels
            out += "&amp;";
            break;
        default:
            out += c;
        }
    }
    return out + '"';
}

} // namespace

std::string visible(std::string_view name) {
    std::string shown;
    for (size_t at = 0; at < name.size();) {
        if (const size_t length = visible_length(name, at); length != 0) {
            shown += name.substr(at, length);
            at += length;
        } else {
            shown += "\\x" + hexadecimal(byte_at(name, at++), 2);
        }
    }
    return shown;
}

std::string shortened(const std::string &text) {
    constexpr size_t longest = 32;
    size_t characters = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (!is_continuation(text, at) && ++characters > longest) {
            return text.substr(0, at) + "…";
        }
    }
    return text;
}

std::string quoted(std::string_view text) {
    return quoted_with(text, "\\\\");
}

std::string quoted_tooltip(std::string_view text) {
    return quoted_with(text, "\\\\\\\\");
}

std::string in_html(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string counted(size_t count, std::string_view singular, std::string_view plural) {
    return (std::to_string(count) + " ").append(count == 1 ? singular : plural);
}

} // namespace kvt_tool
