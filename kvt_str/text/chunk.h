// A few characters at once, to be searched for some of them.
#pragma once

#include "text/digits.h"
#include "text/sse2.h"

namespace kvt_str {

/// As many characters as a register takes.
class Chunk {
public:
#ifdef KVT_SSE2
    static constexpr size_t width = 16;
    using Places = unsigned; ///< a set of characters by their places in the chunk: a bit each

    explicit Chunk(const char *at) {
        std::memcpy(&characters_, at, sizeof characters_);
    }

    /// Where a character stands.
    Places find(char wanted) const {
        const __m128i equal = _mm_cmpeq_epi8(characters_, _mm_set1_epi8(wanted));
        return static_cast<Places>(_mm_movemask_epi8(equal));
    }

    /// The first place of a set that is not empty.
    static unsigned first(Places places) {
        return static_cast<unsigned>(std::countr_zero(places));
    }

private:
    __m128i characters_;
#else
    static constexpr size_t width = 8;
    using Places = uint64_t; ///< here the high bit of a byte each

    explicit Chunk(const char *at) : characters_(load_eight(at)) {}

    Places find(char wanted) const {
        const uint64_t others = characters_ ^ in_each_byte(static_cast<uint8_t>(wanted));
        return ~(((others & in_each_byte(0x7F)) + in_each_byte(0x7F)) | others) &
               in_each_byte(0x80);
    }

    static unsigned first(Places places) {
        return static_cast<unsigned>(std::countr_zero(places)) / 8;
    }

private:
    uint64_t characters_;
#endif
};

} // namespace kvt_str
