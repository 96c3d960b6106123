#include "text/real.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <locale.h>

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

/// The position behind `word`, in letters of either case, or null.
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
        const char *behind = after_word(at, "inf");
        if (behind == nullptr ||
            (lower(*behind) == 'i' && after_word(behind, "inity") == nullptr)) {
            return false;
        }
        value = sign * std::numeric_limits<float>::infinity();
        return true;
    }
    if (at[0] == '0' && lower(at[1]) == 'x') {
        const char c = lower(at[2]);
        if (!is_digit(c) && !(c >= 'a' && c <= 'f') && c != '.') {
            return false;
        }
    }
    const CLocale c_locale;
    char *behind = nullptr;
    const float scanned = std::strtof(number, &behind);
    if (behind == number) {
        return false;
    }
    value = scanned;
    return true;
}

PlainReal read_plain_real(const char *at) {
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
        if (digits > most) {
            return {nullptr, 0};
        }
    }
    const auto decimals = point != nullptr ? static_cast<size_t>(at - point - 1) : 0;
    if (*at != '\n' || at - start == (point != nullptr) || decimals >= std::size(powers)) {
        return {nullptr, 0};
    }
    return {at + 1, static_cast<float>(digits) / powers[decimals]};
}

size_t format_real(float value, char (&out)[real_capacity]) {
    const CLocale c_locale;
    const int length = std::snprintf(out, sizeof out, "%g", static_cast<double>(value));
    return static_cast<size_t>(length);
}

} // namespace kvt_str
