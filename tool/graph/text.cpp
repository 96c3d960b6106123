#include "graph/text.h"

#include "kvt_check/characters.h"
#include "model/hexadecimal.h"

namespace kvt_tool {

namespace {

uint8_t byte_at(std::string_view text, size_t at) {
    return static_cast<uint8_t>(text[at]);
}

bool is_continuation(std::string_view text, size_t at) {
    return at < text.size() && (byte_at(text, at) & 0xc0) == 0x80;
}

/// Whether a character can be shown. XML, and so SVG, does not take the last two of a plane either.
bool is_visible(const kvt_checking::Character &character) {
    return is_printable(character) && (character.value & 0xfffe) != 0xfffe;
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
        const kvt_checking::Character character = kvt_checking::first_character(name.substr(at));
        if (is_visible(character)) {
            shown += name.substr(at, character.bytes);
            at += character.bytes;
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
