#include "text/number.h"

#include "text/boundary.h"
#include "text/wrapping.h"

namespace kvt_str {

// A negative number is one that wraps.
KVT_WRAPPING bool scan_number(const char *at, uint64_t &value) {
    while (is_space(*at)) {
        ++at;
    }
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+') {
        ++at;
    }
    if (!is_digit(*at)) {
        return false;
    }
    uint64_t number = 0;
    bool overflow = false;
    for (; is_digit(*at); ++at) {
        overflow |= __builtin_mul_overflow(number, uint64_t{10}, &number);
        overflow |= __builtin_add_overflow(number, static_cast<uint64_t>(*at - '0'), &number);
    }
    // Too large a number is the greatest one, whatever its sign.
    value = overflow ? UINT64_MAX : negative ? 0 - number : number;
    return true;
}

namespace {

constexpr PlainNumber no_number = {nullptr, 0};

/// Appends the first `count` of eight characters, all digits, to a number. False beyond 64 bits.
bool append_digits(uint64_t &number, uint64_t characters, unsigned count) {
    return !__builtin_mul_overflow(number, powers_of_ten[count], &number) &&
           !__builtin_add_overflow(number, value_of_digits(characters, count), &number);
}

/// Reads any number of digits, to the last character of the text. Rarely needed: kept apart, so
/// that the readers that call it save no registers for it.
[[gnu::noinline]] PlainNumber read_any_digits(const char *at, const char *end) {
    const char *start = at;
    uint64_t number = 0;
    for (; end - at >= 8; at += 8) {
        KVT_BOUNDARY(end - at == 8);
        const uint64_t characters = load_eight(at);
        if (count_leading_digits(characters) != 8) {
            break;
        }
        if (!append_digits(number, characters, 8)) {
            return no_number;
        }
    }
    for (; is_digit(*at); ++at) {
        if (__builtin_mul_overflow(number, uint64_t{10}, &number) ||
            __builtin_add_overflow(number, digit_value(*at), &number)) {
            return no_number;
        }
    }
    const bool is_line = at != start && *at == '\n';
    return is_line ? PlainNumber{at + 1, number} : no_number;
}

/// The number of leading zeros among digits that are not all zero.
unsigned count_zeros(uint64_t digits) {
    return static_cast<unsigned>(__builtin_ctzll(digits)) / 8;
}

/// Writes digits without their leading zeros. It stores eight characters, whatever their number.
char *put_first_digits(char *out, uint64_t digits) {
    const unsigned zeros = count_zeros(digits);
    store_eight(out, (digits + in_each_byte('0')) >> (8 * zeros));
    return out + 8 - zeros;
}

char *put_eight_digits(char *out, uint64_t digits) {
    store_eight(out, digits + in_each_byte('0'));
    return out + 8;
}

} // namespace

PlainNumber read_plain_digits(const char *at, const char *end) {
    KVT_BOUNDARY(end - at == 7);
    KVT_BOUNDARY(end - at == 8);
    KVT_BOUNDARY(end - at == 15);
    KVT_BOUNDARY(end - at == 16);
    if (end - at >= 8) {
        const uint64_t characters = load_eight(at);
        const unsigned digits = count_leading_digits(characters);
        if (digits == 0) {
            return no_number;
        }
        if (digits < 8) {
            return at[digits] == '\n'
                       ? PlainNumber{at + digits + 1, value_of_digits(characters, digits)}
                       : no_number;
        }
    }
    if (end - at >= 16) {
        const uint64_t characters = load_eight(at + 8);
        const unsigned digits = count_leading_digits(characters);
        if (digits >= 1 && digits < 8 && at[8 + digits] == '\n') {
            const uint64_t first = value_of_digits(load_eight(at), 8);
            return {at + 8 + digits + 1,
                    first * powers_of_ten[digits] + value_of_digits(characters, digits)};
        }
    }
    return read_any_digits(at, end);
}

PlainNumber read_plain_long_digits(const char *at, const char *end) {
    KVT_BOUNDARY(end - at == 23);
    KVT_BOUNDARY(end - at == 24);
    uint64_t number;
    if (end - at >= 24 && read_sixteen_digits(at, number)) {
        const uint64_t characters = load_eight(at + 16);
        const unsigned digits = count_leading_digits(characters);
        if (digits >= 1 && digits <= 4 && at[16 + digits] == '\n') {
            return append_digits(number, characters, digits)
                       ? PlainNumber{at + 16 + digits + 1, number}
                       : no_number;
        }
    }
    return read_plain_digits(at, end);
}

char *put_large_number_line(char *out, uint64_t number) {
    KVT_BOUNDARY(number == ten_to_4 - 1);
    KVT_BOUNDARY(number == ten_to_4);
    KVT_BOUNDARY(number == ten_to_8 - 1);
    KVT_BOUNDARY(number == ten_to_8);
    KVT_BOUNDARY(number == ten_to_16 - 1);
    KVT_BOUNDARY(number == ten_to_16);
    if (number < ten_to_4) {
        const uint64_t digits = four_digits(static_cast<uint32_t>(number));
        const unsigned zeros = count_zeros(digits);
        const uint64_t line = digits + (uint64_t{'\n'} << 32 | 0x30303030);
        store_eight(out, line >> (8 * zeros));
        return out + 5 - zeros;
    }
    if (number < ten_to_8) {
        out = put_first_digits(out, eight_digits(number));
    } else if (number < ten_to_16) {
        const SixteenDigits digits(number);
        out = put_first_digits(out, digits.first());
        out = put_eight_digits(out, digits.second());
    } else {
        const uint64_t first = number / ten_to_16;
        const SixteenDigits digits(number - first * ten_to_16);
        // The number's first digits are four at most.
        out = put_first_digits(out, uint64_t{four_digits(static_cast<uint32_t>(first))} << 32);
        out = put_eight_digits(out, digits.first());
        out = put_eight_digits(out, digits.second());
    }
    *out = '\n';
    return out + 1;
}

} // namespace kvt_str
