// The constant part of a line - "job_id: ", "quota {" and its newline, "}" and its newline - which
// stands at one of a few indentations. A label is kept behind blanks, so that label and indentation
// lie in one piece at any of them: they are copied and compared in whole words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/digits.h"
#include "text/folded.h"

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
KVT_FOLDED char *copy_words(char *out, const char *from, size_t length) {
    if (length >= 16) {
        for (size_t i = 0; i + 16 < length; i += 16) {
            std::memcpy(out + i, from + i, 16);
        }
        std::memcpy(out + length - 16, from + length - 16, 16);
    } else if (length >= 8) {
        std::memcpy(out, from, 8);
        std::memcpy(out + length - 8, from + length - 8, 8);
    } else if (length >= 4) {
        std::memcpy(out, from, 4);
        std::memcpy(out + length - 4, from + length - 4, 4);
    } else {
        for (size_t i = 0; i < length; ++i) {
            out[i] = from[i];
        }
    }
    return out + length;
}

/// Compares `length` characters, at least 4, in words that overlap.
KVT_FOLDED bool equal_words(const char *a, const char *b, size_t length) {
    const auto differing = [=]<typename Word>(size_t i, Word /*width*/) KVT_FOLDED_LAMBDA {
        Word x;
        Word y;
        std::memcpy(&x, a + i, sizeof x);
        std::memcpy(&y, b + i, sizeof y);
        return x ^ y;
    };
    if (length < 8) {
        return (differing(0, uint32_t{}) | differing(length - 4, uint32_t{})) == 0;
    }
#ifdef KVT_SSE2
    if (length >= 16) {
        __m128i difference = differing(length - 16, __m128i{});
        for (size_t i = 0; i + 16 < length; i += 16) {
            difference = _mm_or_si128(difference, differing(i, __m128i{}));
        }
        const __m128i zeros = _mm_cmpeq_epi8(difference, _mm_setzero_si128());
        return _mm_movemask_epi8(zeros) == 0xFFFF;
    }
#endif
    uint64_t difference = differing(length - 8, uint64_t{});
    for (size_t i = 0; i + 8 < length; i += 8) {
        difference |= differing(i, uint64_t{});
    }
    return difference == 0;
}

} // namespace kvt_str
