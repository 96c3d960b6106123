// Short stretches of characters, copied and compared in whole words that overlap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/folded.h"
#include "text/sse2.h"

namespace kvt_str {

/// Copies exactly `length` characters. Returns the position after them in `out`.
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

/// The bits in which a word at `a` and one at `b` differ.
template <typename Word> KVT_FOLDED Word difference(const char *a, const char *b) {
    Word x;
    Word y;
    std::memcpy(&x, a, sizeof x);
    std::memcpy(&y, b, sizeof y);
    return x ^ y;
}

/// True when `length` characters are the same: 4 at least, since words are loaded.
KVT_FOLDED bool equal_words(const char *a, const char *b, size_t length) {
    if (length < 8) {
        const size_t last = length - 4;
        return (difference<uint32_t>(a, b) | difference<uint32_t>(a + last, b + last)) == 0;
    }
#ifdef KVT_SSE2
    if (length >= 16) {
        const size_t last = length - 16;
        __m128i differing = difference<__m128i>(a + last, b + last);
        for (size_t i = 0; i < last; i += 16) {
            differing = _mm_or_si128(differing, difference<__m128i>(a + i, b + i));
        }
        const __m128i zeros = _mm_cmpeq_epi8(differing, _mm_setzero_si128());
        return _mm_movemask_epi8(zeros) == 0xFFFF;
    }
#endif
    const size_t last = length - 8;
    auto differing = difference<uint64_t>(a + last, b + last);
    for (size_t i = 0; i < last; i += 8) {
        differing |= difference<uint64_t>(a + i, b + i);
    }
    return differing == 0;
}

} // namespace kvt_str
