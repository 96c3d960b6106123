// Floats: what of a line the reader takes for one, and whether all of it is kept.
#include <cstring>

#include "check_value.h"
#include "text/boundary.h"
#include "text/real.h"

namespace kvt_checking {

using namespace kvt_str;

namespace {

/// The room for a float's characters. Nobody writes a longer one.
constexpr size_t longest_real = 60;

/// A float keeps at least so many decimal digits, and so many are written.
constexpr unsigned kept_digits = 6;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The characters of a float, taken apart.
struct Extent {
    const char *end;                 ///< at the begin where there is no float
    unsigned significant_digits = 0; ///< in decimal; of a hexadecimal number 1 unless it is 0
};

const char *skip_sign(const char *at, const char *end) {
    return at != end && (*at == '-' || *at == '+') ? at + 1 : at;
}

/// The position after the exponent, when one stands at `at`.
const char *skip_exponent(const char *at, const char *end, char mark) {
    if (at == end || lower(*at) != mark) {
        return at;
    }
    const char *digit = skip_sign(at + 1, end);
    if (digit == end || !is_digit(*digit)) {
        return at;
    }
    while (digit != end && is_digit(*digit)) {
        ++digit;
    }
    return digit;
}

Extent take_decimal(const char *begin, const char *end) {
    const char *at = skip_sign(begin, end);
    unsigned significant = 0;
    unsigned zeros = 0; // since the last significant digit
    bool any = false;
    bool point = false;
    for (; at != end && (is_digit(*at) || (*at == '.' && !point)); ++at) {
        if (*at == '.') {
            point = true;
            continue;
        }
        any = true;
        if (*at != '0') {
            significant += zeros + 1;
            zeros = 0;
        } else if (significant != 0) {
            ++zeros;
        }
    }
    return any ? Extent{skip_exponent(at, end, 'e'), significant} : Extent{begin};
}

Extent take_hexadecimal(const char *begin, const char *end) {
    const char *at = skip_sign(begin, end);
    if (end - at < 3 || at[0] != '0' || lower(at[1]) != 'x') {
        return {begin};
    }
    bool any = false;
    bool point = false;
    unsigned significant = 0; // at least
    for (at += 2; at != end; ++at) {
        const char c = lower(*at);
        if (is_digit(c) || (c >= 'a' && c <= 'f')) {
            any = true;
            significant |= c != '0';
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    return any ? Extent{skip_exponent(at, end, 'p'), significant} : Extent{begin};
}

Extent take_word(const char *begin, const char *end) {
    static constexpr std::string_view words[] = {"infinity", "inf", "nan"};
    const char *at = skip_sign(begin, end);
    for (const std::string_view word : words) {
        const char *known = word.data();
        size_t same = 0;
        while (same != word.size() && at + same != end && lower(at[same]) == known[same]) {
            ++same;
        }
        if (same == word.size()) {
            return {at + same};
        }
    }
    return {begin};
}

Extent take_real(const char *begin, const char *end) {
    for (const auto take : {take_hexadecimal, take_word}) {
        const Extent extent = take(begin, end);
        if (extent.end != begin) {
            return extent;
        }
    }
    return take_decimal(begin, end);
}

/// A float in a room of its own, with a NUL: as the engine's scan wants it.
struct RealText {
    char text[longest_real + 1] = {};

    explicit RealText(std::string_view characters) {
        std::memcpy(text, characters.data(), characters.size());
    }
};

/// True when what is written of a float is read as that float again. "nan" alone reads as NaN, and
/// is written of nothing else.
bool survives(float value) {
    char written[real_capacity];
    format_real(value, written);
    float again = 0;
    scan_real(written, again);
    return again == value || __builtin_isnan(again);
}

} // namespace

std::string_view real_at(const char *at, const char *end) {
    const Extent extent = at != end ? take_real(at, end) : Extent{at};
    return {at, static_cast<size_t>(extent.end - at)};
}

bool check_real(Check &check, const Row &row, const Line &line, const Unread &unread) {
    const std::string_view value = trimmed(value_of(row, line), line.end);
    if (value.empty()) {
        report_no_number(check, row, line, unread);
        return false;
    }
    const Extent extent = take_real(value.data(), value.data() + value.size());
    const std::string_view number = first_of(value, static_cast<size_t>(extent.end - value.data()));
    float scanned = 0;
    if (number.empty() || !scan_real(RealText(first_of(value, longest_real)).text, scanned)) {
        report_not_a_number(check, row, value, unread);
        return false;
    }
    KVT_BOUNDARY(number.size() == longest_real);
    KVT_BOUNDARY(extent.significant_digits == kept_digits);
    if (number.size() > longest_real || extent.significant_digits > kept_digits) {
        check.findings.report(KVT_FINDING_ROUNDED, check.mark(number), Quoted{number},
                              " has more digits than the ", uint64_t{kept_digits},
                              " that are written");
    } else if (!survives(scanned) ||
               (extent.significant_digits != 0 && (scanned == 0 || __builtin_isinf(scanned)))) {
        char written[real_capacity];
        format_real(scanned, written);
        check.findings.report(KVT_FINDING_ROUNDED, check.mark(number), Quoted{number},
                              " is not kept as it is: the writer makes ", std::string_view(written),
                              " of it");
    }
    report_rest(check, row, line, number);
    return true;
}

const char *end_of_plain_real(const char *at, const char *end) {
    // At most as many digits as are kept, with a point after any of them, and no exponent.
    const char *most = end - at > ptrdiff_t{kept_digits} + 1 ? at + kept_digits + 1 : end;
    const char *first = at;
    const char *point = nullptr;
    for (; at != most && (is_digit(*at) || (*at == '.' && point == nullptr && at != first)); ++at) {
        if (*at == '.') {
            point = at;
        }
    }
    const ptrdiff_t digits = at - first - (point != nullptr ? 1 : 0);
    return digits != 0 && digits <= ptrdiff_t{kept_digits} && at != end && *at == '\n' ? at
                                                                                       : nullptr;
}

} // namespace kvt_checking
