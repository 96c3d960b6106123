// Numbers to and from text.
//
// Reading is in two forms. scan_number takes all that the C library's "%lu" takes: blanks of six
// kinds first (newlines too, so a number may stand on a later line), a sign, values beyond 64 bits.
// read_plain_number takes only what the writer writes, digits and a newline, and is fast.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kvt_str {

/// What the C library's conversions skip before a value, in any locale.
inline bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

inline constexpr uint64_t powers_of_ten[20] = {1,
                                               10,
                                               100,
                                               1000,
                                               10000,
                                               100000,
                                               1000000,
                                               10000000,
                                               100000000,
                                               1000000000,
                                               10000000000,
                                               100000000000,
                                               1000000000000,
                                               10000000000000,
                                               100000000000000,
                                               1000000000000000,
                                               10000000000000000,
                                               100000000000000000,
                                               1000000000000000000,
                                               10000000000000000000u};

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

/// Reads as the C library's "%lu" does: skips blanks, takes a sign, wraps a negative number and
/// saturates beyond 64 bits. Returns false, and leaves `value`, where that finds no number.
bool scan_number(const char *at, uint64_t &value);

/// How many of the eight characters, from the first on, are digits.
inline unsigned count_leading_digits(uint64_t characters) {
    constexpr uint64_t each = 0x0101010101010101;
    // A digit is the only character whose high half is 3 both as it stands and with 6 added.
    const uint64_t other = ((characters & (each * 0xF0)) ^ (each * 0x30)) |
                           (((characters + each * 0x06) & (each * 0xF0)) ^ (each * 0x30));
    return other == 0 ? 8 : static_cast<unsigned>(std::countr_zero(other)) / 8;
}

/// The number that eight digits stand for, by joining neighbours: 8 x 1, 4 x 2, 2 x 4, 1 x 8.
inline uint64_t value_of_eight_digits(uint64_t characters) {
    characters -= 0x3030303030303030;
    characters = characters * 10 + (characters >> 8);
    constexpr uint64_t pairs = 0x000000FF000000FF;
    return (((characters & pairs) * (100 + (uint64_t{1000000} << 32))) +
            (((characters >> 16) & pairs) * (1 + (uint64_t{10000} << 32)))) >>
           32;
}

/// Reads digits that a newline follows at once. Returns the position behind the newline; null, with
/// `value` left, when the text is anything else or the number takes more than 64 bits. `end` is the
/// text's NUL.
inline const char *read_plain_number(const char *at, const char *end, uint64_t &value) {
    if (!is_digit(*at)) {
        return nullptr;
    }
    if (at[1] == '\n') {
        value = static_cast<uint64_t>(*at - '0');
        return at + 2;
    }
    uint64_t number = 0;
    while (end - at >= 8) {
        const uint64_t characters = load_eight(at);
        const unsigned digits = count_leading_digits(characters);
        if (digits != 0) {
            // Digits move to the end of the eight, behind zeros.
            const uint64_t zeros = 0x3030303030303030;
            const uint64_t aligned =
                digits == 8 ? characters
                            : (characters << (64 - 8 * digits)) | (zeros >> (8 * digits));
            if (__builtin_mul_overflow(number, powers_of_ten[digits], &number) ||
                __builtin_add_overflow(number, value_of_eight_digits(aligned), &number)) {
                return nullptr;
            }
            at += digits;
        }
        if (digits != 8) {
            break;
        }
    }
    for (; is_digit(*at); ++at) {
        if (__builtin_mul_overflow(number, uint64_t{10}, &number) ||
            __builtin_add_overflow(number, static_cast<uint64_t>(*at - '0'), &number)) {
            return nullptr;
        }
    }
    if (*at != '\n') {
        return nullptr;
    }
    value = number;
    return at + 1;
}

/// The digits of a number below 10^8, the first in the lowest byte, with its leading zeros.
inline uint64_t eight_digits(uint64_t number) {
    const uint64_t halves = (number / 10000) | ((number % 10000) << 32);
    const uint64_t high = ((halves * 10486) >> 20) & 0x0000007F0000007F; // each half / 100
    const uint64_t quarters = high | ((halves - 100 * high) << 16);
    const uint64_t tens = ((quarters * 103) >> 10) & 0x000F000F000F000F; // each quarter / 10
    return (tens | ((quarters - 10 * tens) << 8)) + 0x3030303030303030;
}

/// Writes a number in decimal and returns the position behind it. Of a number with two digits or
/// more it may touch up to eight characters from the first digit on: room that a line has anyway,
/// since its newline, a closing line and a NUL follow.
inline char *put_number(char *out, uint64_t number) {
    constexpr uint64_t eight = 100000000;
    if (number < 10) {
        *out = static_cast<char>('0' + number);
        return out + 1;
    }
    const uint64_t first = number < eight           ? number
                           : number < eight * eight ? number / eight
                                                    : number / (eight * eight);
    const uint64_t characters = eight_digits(first);
    const unsigned zeros =
        static_cast<unsigned>(std::countr_zero(characters - 0x3030303030303030)) / 8;
    store_eight(out, characters >> (8 * zeros));
    out += 8 - zeros;
    if (number >= eight * eight) {
        store_eight(out, eight_digits(number / eight % eight));
        out += 8;
    }
    if (number >= eight) {
        store_eight(out, eight_digits(number % eight));
        out += 8;
    }
    return out;
}

/// The number of characters that put_number writes.
inline unsigned count_digits(uint64_t number) {
    // 1233/4096 is a little above log10(2): the estimate is right or one too small.
    const unsigned estimate = static_cast<unsigned>(std::bit_width(number | 1)) * 1233 >> 12;
    return estimate + (estimate < 20 && number >= powers_of_ten[estimate] ? 1 : 0) +
           (number == 0 ? 1 : 0);
}

} // namespace kvt_str
