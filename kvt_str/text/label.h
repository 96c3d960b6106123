// The constant part of a line - "job_id: ", "quota {" and its newline, "}" and its newline - which
// stands at one of a few indentations. A label is kept after blanks, so that label and indentation
// lie in one piece at any of them: they are copied and compared in whole words (words.h).
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvt_str {

/// The blanks in front of every label: the deepest lines of the format have 10.
#define KVT_BLANKS "                "
inline constexpr unsigned deepest_indent = sizeof KVT_BLANKS - 1;

struct Label {
    const char *text; ///< deepest_indent blanks stand before it
    uint8_t length;

    const char *indented(unsigned indent) const { return text - indent; }
};

/// A label from a string literal that begins with KVT_BLANKS.
template <size_t size> constexpr Label make_label(const char (&blanks_and_text)[size]) {
    return {blanks_and_text + deepest_indent, static_cast<uint8_t>(size - 1 - deepest_indent)};
}

inline constexpr Label closing_label = make_label(KVT_BLANKS "}\n");

/// Indentation of the lines at a nesting level.
constexpr unsigned indent_of(unsigned level) {
    return 2 * level;
}

} // namespace kvt_str
