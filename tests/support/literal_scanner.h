// What kvt_str.h says of the functions that step through a text, in the C library's words.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace kvt_test {

inline const char *literal_next_line(const char *text) {
    const char *newline = std::strchr(text, '\n');
    return newline != nullptr ? newline + std::strspn(newline, " \t\n") : std::strchr(text, '\0');
}

/// Whether the line holds a brace: 1 or 0, as check_start_msg and check_end_msg return.
inline int literal_brace(const char *text, char brace) {
    const char *newline = std::strchr(text, '\n');
    return newline != nullptr &&
           std::memchr(text, brace, static_cast<size_t>(newline - text)) != nullptr;
}

inline const char *literal_block_end(const char *text) {
    // Line by line: the block is over after the first line at whose end nothing is open. A closing
    // brace too many opens nothing.
    long open = 0;
    for (const char *line = text;;) {
        const char *newline = std::strchr(line, '\n');
        if (newline == nullptr) {
            return std::strchr(line, '\0');
        }
        for (; line != newline; ++line) {
            open += *line == '{' ? 1 : *line == '}' ? -1 : 0;
        }
        if (open == 0) {
            return newline + std::strspn(newline, " \t\n");
        }
        line = newline + 1;
    }
}

inline const char *literal_next_message(const char *text, uint32_t length) {
    const size_t newline = std::string_view(text).substr(0, length).find('\n');
    if (newline == std::string_view::npos) {
        return nullptr;
    }
    for (size_t at = newline + 1; at <= length; ++at) {
        const bool is_blank = at < length && (text[at] == ' ' || text[at] == '\t');
        if (!is_blank && text[at] != '\n') {
            return text + at;
        }
    }
    return nullptr;
}

} // namespace kvt_test
