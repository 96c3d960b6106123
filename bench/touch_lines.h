// The least that any reader of lines must do: find each newline.
#pragma once

#include <bit>
#include <cstddef>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kvt_bench {

/// The sum of the positions of all newlines: each must be known, as to a reader.
inline size_t touch_lines(std::string_view text) {
    size_t sum = 0;
    size_t i = 0;
#ifdef __SSE2__
    const __m128i newlines = _mm_set1_epi8('\n');
    for (; i + 16 <= text.size(); i += 16) {
        const __m128i some = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text.data() + i));
        auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(some, newlines)));
        for (; found != 0; found &= found - 1) {
            sum += i + static_cast<unsigned>(std::countr_zero(found));
        }
    }
#endif
    for (; i < text.size(); ++i) {
        sum += text[i] == '\n' ? i : 0;
    }
    return sum;
}

} // namespace kvt_bench
