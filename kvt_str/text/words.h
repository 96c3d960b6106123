// Short stretches of characters, copied and compared in whole words that overlap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/folded.h"
#include "text/sse2.h"

namespace kvt_str {

/// Copies exactly `length` characters. Returns the position behind them in `out`.
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

/// True when `length` characters are the same: 4 at least, since words are loaded.
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
