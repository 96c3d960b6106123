// The constant part of a line - "job_id: ", "quota {" and its newline, "}" and its newline - which
// stands at one of a few indentations. A label is kept behind blanks, so that label and indentation
// lie in one piece at any of them: they are copied and compared in whole words.
#pragma once

#include <cstdint>
#include <cstring>

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

/// Copies exactly `length` characters, in words that overlap.
inline char *copy_words(char *out, const char *from, unsigned length) {
    if (length >= 16) {
        std::memcpy(out, from, 16);
        if (length > 32) {
            std::memcpy(out + 16, from + 16, length - 32);
        }
        std::memcpy(out + length - 16, from + length - 16, 16);
    } else if (length >= 8) {
        std::memcpy(out, from, 8);
        std::memcpy(out + length - 8, from + length - 8, 8);
    } else {
        std::memcpy(out, from, length);
    }
    return out + length;
}

/// Compares `length` characters, at least 8. The last ones first: two lines of a block differ
/// there, not in their indentation.
inline bool equal_words(const char *a, const char *b, unsigned length) {
    const auto differ = [=](unsigned i) {
        uint64_t x;
        uint64_t y;
        std::memcpy(&x, a + i, sizeof x);
        std::memcpy(&y, b + i, sizeof y);
        return x != y;
    };
    if (differ(length - 8)) {
        return false;
    }
    for (unsigned i = 0; i + 8 < length; i += 8) {
        if (differ(i)) {
            return false;
        }
    }
    return true;
}

} // namespace kvt_str
