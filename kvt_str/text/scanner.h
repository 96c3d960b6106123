// Steps through a NUL-terminated text line by line. The end of the text ends every line and every
// block; a brace counts only in a line that a newline ends.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvt_str {

/// What the scanner skips between lines. A carriage return is not among it.
inline bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

inline const char *skip_blanks(const char *at) {
    while (is_blank(*at)) {
        ++at;
    }
    return at;
}

/// The character after the line's newline; the text's NUL when no newline is left. For a text
/// whose end is not known; else Text::after_line is faster for all but short lines.
inline const char *after_newline(const char *at) {
    while (*at != '\0') {
        if (*at++ == '\n') {
            break;
        }
    }
    return at;
}

inline const char *next_line(const char *at) {
    return skip_blanks(after_newline(at));
}

/// True when the text at `at` begins with the `length` characters of `prefix`.
inline bool begins_with(const char *at, const char *prefix, size_t length) {
    for (size_t i = 0; i < length; ++i) {
        if (at[i] != prefix[i]) {
            return false; // here too when the text ends, since no prefix holds a NUL
        }
    }
    return true;
}

/// What one look at a line tells.
struct Line {
    const char *next; ///< the character after the newline, or the text's NUL
    bool opens;       ///< the line holds "{"
    bool closes;      ///< the line holds "}"
};

Line look_at_line(const char *at);

/// The position of the first character, not blank, after the block that the line at `at` opens.
const char *find_block_end(const char *at);

/// The same from within a block: `depth` blocks are open at `at`.
const char *find_block_end(const char *at, ptrdiff_t depth);

/// The step from one message to the next within `length` characters; null when there is none.
const char *next_message(const char *at, uint32_t length);

} // namespace kvt_str
