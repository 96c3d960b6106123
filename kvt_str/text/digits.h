// Eight and sixteen digits at once: the arithmetic of the number conversions, joining and parting
// neighbours. Sixteen fit a register of SSE2; the portable way takes them eight at a time in a
// register of 64 bits.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/sse2.h"
#include "text/wrapping.h"

namespace kvt_str {

inline constexpr uint64_t ten_to_4 = 10000;
inline constexpr uint64_t ten_to_8 = ten_to_4 * ten_to_4;
inline constexpr uint64_t ten_to_16 = ten_to_8 * ten_to_8;

/// The same value in each of the eight bytes.
constexpr uint64_t in_each_byte(uint8_t value) {
    return uint64_t{0x0101010101010101} * value;
}

/// Eight characters of text as a number whose lowest byte is the first character.
inline uint64_t load_eight(const char *at) {
    uint64_t characters;
    std::memcpy(&characters, at, sizeof characters);
    if constexpr (std::endian::native == std::endian::big) {
        characters = __builtin_bswap64(characters);
    }
    return characters;
}

inline void store_eight(char *out, uint64_t characters) {
    if constexpr (std::endian::native == std::endian::big) {
        characters = __builtin_bswap64(characters);
    }
    std::memcpy(out, &characters, sizeof characters);
}

// --- From text -----------------------------------------------------------------------------------

/// How many of the eight characters, from the first on, are digits.
KVT_WRAPPING inline unsigned count_leading_digits(uint64_t characters) {
    // What is 0 to 9 for a digit has its high bit set neither as it stands nor with 118 added. A
    // carry out of a character that is no digit spoils only those after it.
    const uint64_t values = characters ^ in_each_byte('0');
    const uint64_t others = (values | (values + in_each_byte(118))) & in_each_byte(0x80);
    return others == 0 ? 8 : static_cast<unsigned>(std::countr_zero(others)) / 8;
}

/// The number that the first `count` of eight characters stand for, 1 to 8 digits. What follows
/// them is shifted out, and the products beside the one that is wanted are cut.
KVT_WRAPPING inline uint64_t value_of_digits(uint64_t characters, unsigned count) {
    // Digits move to the end of the eight, after zeros; then neighbours are joined: 8 x 1, 4 x 2,
    // 2 x 4, 1 x 8.
    uint64_t digits = (characters ^ in_each_byte('0')) << (64 - 8 * count);
    digits = digits * 10 + (digits >> 8);
    constexpr uint64_t pairs = 0x000000FF000000FF;
    return ((digits & pairs) * (100 + (uint64_t{1000000} << 32)) +
            ((digits >> 16) & pairs) * (1 + (uint64_t{10000} << 32))) >>
           32;
}

/// Reads sixteen digits. False, with `value` left, when one of the characters is none.
inline bool read_sixteen_digits(const char *at, uint64_t &value) {
#ifdef KVT_SSE2
    __m128i digits;
    std::memcpy(&digits, at, sizeof digits);
    digits = _mm_xor_si128(digits, _mm_set1_epi8('0'));
    // Bytes are compared with their sign: 0 to 9 are moved to its lower end.
    const __m128i moved = _mm_xor_si128(digits, _mm_set1_epi8(-128));
    if (_mm_movemask_epi8(_mm_cmpgt_epi8(moved, _mm_set1_epi8(9 - 128))) != 0) {
        return false;
    }
    const __m128i firsts = _mm_and_si128(digits, _mm_set1_epi16(0xFF));
    const __m128i pairs =
        _mm_add_epi16(_mm_mullo_epi16(firsts, _mm_set1_epi16(10)), _mm_srli_epi16(digits, 8));
    const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 | 1 << 16));
    const __m128i packed = _mm_packs_epi32(fours, fours);
    const __m128i eights = _mm_madd_epi16(packed, _mm_set1_epi32(10000 | 1 << 16));
    const auto both = static_cast<uint64_t>(_mm_cvtsi128_si64(eights));
    value = static_cast<uint32_t>(both) * ten_to_8 + (both >> 32);
#else
    const uint64_t first = load_eight(at);
    const uint64_t second = load_eight(at + 8);
    if (count_leading_digits(first) != 8 || count_leading_digits(second) != 8) {
        return false;
    }
    value = value_of_digits(first, 8) * ten_to_8 + value_of_digits(second, 8);
#endif
    return true;
}

// --- To text -------------------------------------------------------------------------------------

// A number is parted in steps. Each one puts the quotient by a power of ten and, `bits` higher, the
// remainder side by side in twice the room: q + (n - power * q) * 2^bits. That takes two
// operations, as n * 2^bits - (power * 2^bits - 1) * q.
//
// Quotients by reciprocals: n * 5243 >> 19 is n / 100 below 10^4, n * 103 >> 10 and n * 6554 >> 16
// are n / 10 below 100, and n * 0xD1B71759 >> 45 is n / 10^4 below 10^8.
constexpr uint64_t parting(uint64_t power, unsigned bits) {
    return (power << bits) - 1;
}

/// The digits of a number below 10^4, 0 to 9 each, with its leading zeros: the first in the lowest
/// byte.
inline uint32_t four_digits(uint32_t number) {
    const uint32_t hundreds = number * 5243 >> 19;
    const uint32_t pairs = (number << 16) - static_cast<uint32_t>(parting(100, 16)) * hundreds;
    const uint32_t tens = (pairs * 103 >> 10) & 0x000F000F;
    return (pairs << 8) - static_cast<uint32_t>(parting(10, 8)) * tens;
}

#ifdef KVT_SSE2
/// The digits of two numbers below 10^8, one in each half.
inline __m128i sixteen_digits(__m128i numbers) {
    const __m128i high =
        _mm_srli_epi64(_mm_mul_epu32(numbers, _mm_set1_epi32(static_cast<int>(0xD1B71759))), 45);
    const __m128i low = _mm_sub_epi32(numbers, _mm_mul_epu32(high, _mm_set1_epi32(10000)));
    const __m128i fours = _mm_or_si128(high, _mm_slli_epi64(low, 32));
    // There is no product of 32 bits: that of 16 bits is made for both halves, by -1 and by 100.
    const __m128i upper = _mm_slli_epi32(fours, 16);
    const __m128i hundreds =
        _mm_srli_epi16(_mm_mulhi_epu16(_mm_or_si128(fours, upper), _mm_set1_epi16(5243)), 3);
    const __m128i pairs =
        _mm_sub_epi16(upper, _mm_mullo_epi16(hundreds, _mm_set1_epi32(100 << 16 | 0xFFFF)));
    const __m128i tens = _mm_mulhi_epu16(pairs, _mm_set1_epi16(6554));
    return _mm_sub_epi16(_mm_slli_epi16(pairs, 8),
                         _mm_mullo_epi16(tens, _mm_set1_epi16(parting(10, 8))));
}
#endif

/// The digits of a number below 10^8, in the same form.
inline uint64_t eight_digits(uint64_t number) {
#ifdef KVT_SSE2
    return static_cast<uint64_t>(
        _mm_cvtsi128_si64(sixteen_digits(_mm_cvtsi64_si128(static_cast<int64_t>(number)))));
#else
    const uint64_t ten_thousands = number * 0xD1B71759 >> 45;
    const uint64_t fours = (number << 32) - parting(10000, 32) * ten_thousands;
    const uint64_t hundreds = (fours * 5243 >> 19) & 0x0000007F0000007F;
    const uint64_t pairs = (fours << 16) - parting(100, 16) * hundreds;
    const uint64_t tens = (pairs * 103 >> 10) & 0x000F000F000F000F;
    return (pairs << 8) - parting(10, 8) * tens;
#endif
}

/// A number below 10^16 as the digits of its two halves.
struct SixteenDigits {
#ifdef KVT_SSE2
    __m128i digits;

    explicit SixteenDigits(uint64_t number)
        : digits(sixteen_digits(_mm_set_epi64x(static_cast<int64_t>(number % ten_to_8),
                                               static_cast<int64_t>(number / ten_to_8)))) {}

    uint64_t first() const {
        return static_cast<uint64_t>(_mm_cvtsi128_si64(digits));
    }

    uint64_t second() const {
        return static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(digits, digits)));
    }
#else
    uint64_t digits[2];

    explicit SixteenDigits(uint64_t number)
        : digits{eight_digits(number / ten_to_8), eight_digits(number % ten_to_8)} {}

    uint64_t first() const {
        return digits[0];
    }

    uint64_t second() const {
        return digits[1];
    }
#endif
};

} // namespace kvt_str
