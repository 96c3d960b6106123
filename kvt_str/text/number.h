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

#include "text/digits.h"
#include "text/folded.h"

namespace kvt_str {

/// What the C library's conversions skip before a value, in any locale.
inline bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

inline uint64_t digit_value(char digit) {
    return static_cast<unsigned char>(digit) - uint64_t{'0'};
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

/// Reads as the C library's "%lu" does: skips blanks, takes a sign, wraps a negative number and
/// saturates beyond 64 bits. Returns false, and leaves `value`, where that finds no number.
bool scan_number(const char *at, uint64_t &value);

/// A number's digits and the newline after them.
struct PlainNumber {
    const char *next; ///< after the newline; null where something else stands
    uint64_t value;
};

/// Reads digits that a newline follows at once: null when the text is anything else or the number
/// takes more than 64 bits. `end` is the text's NUL.
PlainNumber read_plain_digits(const char *at, const char *end);

/// The same for numbers that mostly have more than sixteen digits.
PlainNumber read_plain_long_digits(const char *at, const char *end);

/// How many digits of a number are tried one by one, before many are read at once, by the width
/// in bytes of the number that it is stored in.
constexpr unsigned digits_tried_singly(unsigned width) {
    return width == 1 ? 3 : width == 8 ? 1 : 2;
}

/// The same for a number that is stored in so many bytes. It tries the first digits singly: the
/// values of one field mostly have the same number of digits, so that the processor foretells the
/// branches.
template <unsigned width>
KVT_FOLDED PlainNumber read_plain_number(const char *at, const char *end) {
    uint64_t value = 0;
    for (unsigned i = 0; i < digits_tried_singly(width) && is_digit(at[i]); ++i) {
        value = 10 * value + digit_value(at[i]);
        if (at[i + 1] == '\n') {
            return {at + i + 2, value};
        }
    }
    return width == 8 ? read_plain_long_digits(at, end) : read_plain_digits(at, end);
}

/// As put_number_line, for a number from 256 on.
char *put_large_number_line(char *out, uint64_t number);

inline constexpr uint64_t small_numbers = 256;

/// The digits of the numbers below 256 and a newline, the first character in the lowest byte.
struct SmallNumberLines {
    uint32_t of[small_numbers];
};

inline constexpr SmallNumberLines small_number_lines = [] {
    SmallNumberLines lines{};
    for (uint32_t number = 0; number != small_numbers; ++number) {
        uint32_t line = '\n';
        for (uint32_t rest = number; rest != 0 || line == '\n'; rest /= 10) {
            line = line << 8 | ('0' + rest % 10);
        }
        lines.of[number] = line;
    }
    return lines;
}();

/// Writes a number in decimal, and a newline. Returns the position after it. It may store up to
/// four characters more: the closing lines of a block and of its message and a NUL, seven
/// characters at least, follow and overwrite them.
KVT_FOLDED char *put_number_line(char *out, uint64_t number) {
    if (number >= small_numbers) {
        return put_large_number_line(out, number);
    }
    uint32_t line = small_number_lines.of[number];
    if constexpr (std::endian::native == std::endian::big) {
        line = __builtin_bswap32(line);
    }
    std::memcpy(out, &line, sizeof line);
    return out + 2 + (number >= 10) + (number >= 100);
}

/// For each number of bits, what is added to a number below 2^32 to make its upper 32 bits the
/// number of its digits.
struct DigitsByBits {
    uint64_t sum[33];
};

inline constexpr DigitsByBits digits_by_bits = [] {
    DigitsByBits result{};
    for (unsigned bits = 0, digits = 1; bits <= 32; ++bits) {
        // The greatest number of so many bits may have a digit more than the least.
        const uint64_t least = bits == 0 ? 0 : uint64_t{1} << (bits - 1);
        const uint64_t greatest = (uint64_t{1} << bits) - 1;
        while (least >= powers_of_ten[digits]) {
            ++digits;
        }
        result.sum[bits] = greatest >= powers_of_ten[digits]
                               ? (uint64_t{digits + 1} << 32) - powers_of_ten[digits]
                               : uint64_t{digits} << 32;
    }
    return result;
}();

/// The number of digits of a number in decimal.
template <typename Number> KVT_FOLDED uint64_t count_digits(Number number) {
    if constexpr (sizeof number == 1) {
        return 1U + (number >= 10) + (number >= 100);
    }
    if (number < 100) {
        return 1U + (number >= 10);
    }
    if (uint64_t{number} >> 32 == 0) {
        return (number + digits_by_bits.sum[std::bit_width(number)]) >> 32;
    }
    // 1233/4096 is a little below log10(2): the estimate is right or one too small, 19 at most.
    const unsigned estimate = static_cast<unsigned>(std::bit_width(number)) * 1233 >> 12;
    return estimate + (number >= powers_of_ten[estimate] ? 1 : 0);
}

} // namespace kvt_str
