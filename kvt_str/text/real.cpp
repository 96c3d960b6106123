#include "text/real.h"

#include <bit>
#include <cfloat>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <locale.h>

#include "text/boundary.h"
#include "text/number.h"

namespace kvt_str {

namespace {

/// While it lives, this thread's C library speaks the C locale. That locale is a constant of the
/// C library: nothing is allocated for it.
class CLocale {
public:
    CLocale() : c_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(c_)) {}

    ~CLocale() {
        uselocale(before_);
        freelocale(c_);
    }

    CLocale(const CLocale &) = delete;
    CLocale &operator=(const CLocale &) = delete;

private:
    locale_t c_;
    locale_t before_;
};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The position after `word`, in letters of either case, or null.
const char *after_word(const char *at, const char *word) {
    for (; *word != '\0'; ++at, ++word) {
        if (lower(*at) != *word) {
            return nullptr;
        }
    }
    return at;
}

} // namespace

bool scan_real(const char *at, float &value) {
    while (is_space(*at)) {
        ++at;
    }
    const char *number = at;
    const bool negative = *at == '-';
    if (*at == '-' || *at == '+') {
        ++at;
    }
    const float sign = negative ? -1.0F : 1.0F;
    // A scan, other than strtof, gives back no more than one character: what begins as a word or
    // as a hexadecimal number must go on as one.
    if (lower(*at) == 'n') {
        if (after_word(at, "nan") == nullptr) {
            return false;
        }
        value = __builtin_copysignf(std::numeric_limits<float>::quiet_NaN(), sign);
        return true;
    }
    if (lower(*at) == 'i') {
        const char *after = after_word(at, "inf");
        if (after == nullptr || (lower(*after) == 'i' && after_word(after, "inity") == nullptr)) {
            return false;
        }
        value = sign * std::numeric_limits<float>::infinity();
        return true;
    }
    if (at[0] == '0' && lower(at[1]) == 'x') {
        const char c = lower(at[2]);
        const bool is_letter = c >= 'a' && c <= 'f';
        if (!is_digit(c) && !is_letter && c != '.') {
            return false;
        }
    }
    const CLocale c_locale;
    char *after = nullptr;
    const float scanned = std::strtof(number, &after);
    if (after == number) {
        return false;
    }
    value = scanned;
    return true;
}

PlainReal read_plain_real(const char *at) {
    if constexpr (FLT_EVAL_METHOD != 0) {
        return {nullptr, 0}; // a quotient that is kept longer than a float would be rounded twice
    }
    // Both the digits without their point and the power of ten are floats without a loss, so that
    // their quotient is rounded once, as the C library rounds.
    constexpr uint32_t most = 1U << std::numeric_limits<float>::digits;
    static constexpr float powers[] = {1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F, 1e6F, 1e7F};
    uint32_t digits = 0;
    const char *point = nullptr;
    const char *start = at;
    for (; is_digit(*at) || (*at == '.' && point == nullptr); ++at) {
        if (*at == '.') {
            point = at;
            continue;
        }
        digits = 10 * digits + static_cast<uint32_t>(digit_value(*at));
        KVT_BOUNDARY(digits == most);
        if (digits > most) {
            return {nullptr, 0};
        }
    }
    const auto decimals = point != nullptr ? static_cast<size_t>(at - point - 1) : 0;
    KVT_BOUNDARY(decimals == std::size(powers) - 1);
    KVT_BOUNDARY(decimals == std::size(powers));
    const bool no_digit = at - start == (point != nullptr);
    if (*at != '\n' || no_digit || decimals >= std::size(powers)) {
        return {nullptr, 0};
    }
    return {at + 1, static_cast<float>(digits) / powers[decimals]};
}

namespace {

/// Decimal powers around the numbers that "%g" writes without an exponent. No float lies between
/// such a power and the nearest double, so that comparisons with these are exact.
constexpr double decimal_powers[] = {1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};

/// The rounding that programs start with: to the nearest, on either side of a number.
bool rounds_to_nearest() {
    const volatile float one = 1.0F;
    const volatile float little = 0x1p-30F;
    return one + little == one && one - little == one;
}

/// Writes as "%g" does a number that takes no exponent there; 0 characters where it may take one,
/// or where another rounding is set. Exact: a float is an integer times a power of two, and its six
/// digits are that times a power of ten.
size_t format_plain_real(float value, char (&out)[real_capacity]) {
    constexpr int digits = 6;
    const double exact = static_cast<double>(value);
    const bool is_plain = exact >= decimal_powers[0] && exact < decimal_powers[10]; // not for NaN
    if (!is_plain || !rounds_to_nearest()) {
        return 0;
    }
    int exponent = -4;
    while (exact >= decimal_powers[exponent + 5]) {
        ++exponent;
    }
    const auto bits = std::bit_cast<uint32_t>(value);
    const uint64_t integer = (bits & 0x7FFFFF) | 0x800000;
    const unsigned shift = 150 - (bits >> 23);                              // 4 to 37
    const uint64_t scaled = integer * powers_of_ten[digits - 1 - exponent]; // below 2^54
    uint64_t rounded = scaled >> shift;
    const uint64_t rest = scaled - (rounded << shift);
    const uint64_t half = uint64_t{1} << (shift - 1);
    rounded += rest > half || (rest == half && rounded % 2 != 0) ? 1 : 0;
    KVT_BOUNDARY(rounded == powers_of_ten[digits] - 1);
    if (rounded == powers_of_ten[digits]) {
        return 0; // six nines and more: rare, and the exponent changes
    }
    char eight[8]; // two zeros and the digits
    store_eight(eight, eight_digits(rounded) + in_each_byte('0'));
    const char *digit = eight + 2;
    const char *last = eight + 7;
    while (*last == '0') {
        --last;
    }
    char *at = out;
    for (int place = exponent < 0 ? 0 : exponent; place >= 0 || digit <= last; --place) {
        if (place == -1) {
            *at++ = '.';
        }
        *at++ = place > exponent ? '0' : *digit++;
    }
    *at = '\0';
    return static_cast<size_t>(at - out);
}

} // namespace

size_t format_real(float value, char (&out)[real_capacity]) {
    const size_t plain = format_plain_real(value, out);
    if (plain != 0) {
        return plain;
    }
    const CLocale c_locale;
    const int length = std::snprintf(out, sizeof out, "%g", static_cast<double>(value));
    return static_cast<size_t>(length);
}

} // namespace kvt_str
