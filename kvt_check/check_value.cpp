#include "check_value.h"

#include <cstring>

#include "text/real.h"

namespace kvt_checking {

using namespace kvt_str;

unsigned bits_of(const Row &row) {
    switch (row.kind) {
    case RowKind::number8:
    case RowKind::bytes:
        return 8;
    case RowKind::number16:
    case RowKind::array16:
        return 16;
    case RowKind::number64:
    case RowKind::array64:
        return 64;
    default:
        return 32;
    }
}

std::string_view consequence(const Row &row) {
    if (row.has(shared_value)) {
        return "the field takes the value of a line before";
    }
    if (row.kind == RowKind::bytes) {
        return "it counts as 0";
    }
    if (row.kind == RowKind::text) {
        return "the text becomes empty";
    }
    return row.is_array() || row.kind == RowKind::joined_text ? "there is no element for it"
                                                              : "the field stays as it was";
}

namespace {

const char *value_of(const Row &row, const Line &line) {
    return line.at + row.key_length + 1;
}

/// Tells of a line that ends where its value should be. A conversion goes on to the next lines.
void report_no_value(Check &check, const Row &row, const Line &line) {
    const char *below = skip_spaces(line.end, check.cursor.end());
    const char *digit =
        below != check.cursor.end() && (*below == '-' || *below == '+') ? below + 1 : below;
    if (digit != check.cursor.end() && is_digit(*digit) && row.kind != RowKind::text &&
        row.kind != RowKind::joined_text) {
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands behind ",
                              Quoted{key_of(row)}, ": the reader takes the number on a line below");
    } else {
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands behind ",
                              Quoted{key_of(row)}, ": ", consequence(row));
    }
}

/// Tells of what stands behind a value that ends at `at`.
void report_rest(Check &check, const Line &line, std::string_view value, const char *at) {
    const std::string_view rest = trimmed(at, line.end);
    if (!rest.empty()) {
        check.findings.report(KVT_FINDING_BEHIND_NUMBER, check.mark(rest), "the reader takes ",
                              Quoted{value}, " and skips what stands behind it, ", Quoted{rest});
    }
}

/// A number's characters, taken apart as scan_number does.
struct Digits {
    const char *begin; ///< at the sign
    const char *end;
    bool negative;
    bool overflows; ///< 64 bits
    uint64_t magnitude;
};

/// Where there is no digit, `end` is `begin`.
Digits take_digits(const char *at, const char *line_end) {
    Digits digits{at, at, at != line_end && *at == '-', false, 0};
    if (at != line_end && (*at == '-' || *at == '+')) {
        ++at;
    }
    const char *first = at;
    for (; at != line_end && is_digit(*at); ++at) {
        digits.overflows |=
            __builtin_mul_overflow(digits.magnitude, uint64_t{10}, &digits.magnitude);
        digits.overflows |=
            __builtin_add_overflow(digits.magnitude, digit_value(*at), &digits.magnitude);
    }
    digits.end = at != first ? at : digits.begin;
    return digits;
}

bool is_in_range(const Row &row, const Digits &digits) {
    const uint64_t greatest = greatest_of(row);
    if (digits.overflows) {
        return false;
    }
    if (!digits.negative) {
        return digits.magnitude <= greatest;
    }
    return row.kind == RowKind::signed32 ? digits.magnitude <= greatest + 1 : digits.magnitude == 0;
}

/// What the field holds after the number was stored: the low bits, which may stand for a negative
/// number.
void report_range(Check &check, const Row &row, const Digits &digits) {
    const uint64_t scanned = digits.overflows  ? UINT64_MAX
                             : digits.negative ? 0 - digits.magnitude
                                               : digits.magnitude;
    const bool is_signed = row.kind == RowKind::signed32;
    uint64_t stored = scanned & (UINT64_MAX >> (64 - bits_of(row)));
    const bool below_zero = is_signed && stored > greatest_of(row);
    if (below_zero) {
        stored = (uint64_t{1} << bits_of(row)) - stored;
    }
    const Mark mark = check.mark(digits.begin, digits.end);
    const std::string_view number(digits.begin, static_cast<size_t>(digits.end - digits.begin));
    check.findings.report(KVT_FINDING_OUT_OF_RANGE, mark, Quoted{key_of(row)}, " holds ",
                          is_signed ? "a number with a sign of " : "a number of ",
                          uint64_t{bits_of(row)}, " bits: the reader makes ", below_zero ? "-" : "",
                          stored, " of ", Quoted{number});
}

} // namespace

std::optional<uint64_t> check_number(Check &check, const Row &row, const Line &line) {
    const char *at = skip_spaces(value_of(row, line), line.end);
    if (at == line.end) {
        report_no_value(check, row, line);
        return std::nullopt;
    }
    const Digits digits = take_digits(at, line.end);
    if (digits.end == digits.begin) {
        const std::string_view value = trimmed(at, line.end);
        check.findings.report(KVT_FINDING_NOT_A_NUMBER, check.mark(value), Quoted{value},
                              " is no number, and ", Quoted{key_of(row)},
                              " wants one: ", consequence(row));
        return std::nullopt;
    }
    if (!is_in_range(row, digits)) {
        report_range(check, row, digits);
    }
    report_rest(check, line, {at, static_cast<size_t>(digits.end - at)}, digits.end);
    return digits.negative ? 0 - digits.magnitude : digits.magnitude;
}

// --- Floats --------------------------------------------------------------------------------------

namespace {

/// The room for a float's characters: more are none that anybody would write.
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

/// Behind an exponent, when one stands at `at`.
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
        size_t same = 0;
        while (same != word.size() && at + same != end && lower(at[same]) == word[same]) {
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

/// True when what is written of a float is read as that float again.
bool survives(float value) {
    char written[real_capacity];
    format_real(value, written);
    float again = 0;
    return scan_real(written, again) && (again == value || (again != again && value != value));
}

} // namespace

bool check_real(Check &check, const Row &row, const Line &line) {
    const std::string_view value = trimmed(value_of(row, line), line.end);
    if (value.empty()) {
        report_no_value(check, row, line);
        return false;
    }
    const Extent extent = take_real(value.data(), value.data() + value.size());
    const std::string_view number = first_of(value, static_cast<size_t>(extent.end - value.data()));
    float scanned = 0;
    if (number.empty() || !scan_real(RealText(first_of(value, longest_real)).text, scanned)) {
        check.findings.report(KVT_FINDING_NOT_A_NUMBER, check.mark(value), Quoted{value},
                              " is no number, and ", Quoted{key_of(row)},
                              " wants one: ", consequence(row));
        return false;
    }
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
    report_rest(check, line, number, number.data() + number.size());
    return true;
}

const char *end_of_plain_real(const char *at, const char *end) {
    // Not more digits than are kept, and a point behind one: no such number has an exponent.
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

// --- Texts ---------------------------------------------------------------------------------------

namespace {

/// Tells of what stands between the colon and the first quote, which the reader skips; it wants one
/// character there at least. False where there is none.
bool check_before_text(Check &check, const char *behind_colon, const char *quote) {
    if (quote == behind_colon) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(quote - 1, quote + 1),
                              "a blank belongs between the colon and the quote: the reader does "
                              "not read the text");
        return false;
    }
    const std::string_view before = trimmed(behind_colon, quote);
    if (!before.empty()) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(before),
                              "the reader skips what stands before the quote, ", Quoted{before});
    }
    return true;
}

} // namespace

std::string_view check_text(Check &check, const Row &row, const Line &line, size_t longest) {
    const char *behind_colon = value_of(row, line);
    const char *quote = find_character('"', behind_colon, line.end);
    if (quote == nullptr) {
        const std::string_view value = trimmed(behind_colon, line.end);
        if (value.empty()) {
            report_no_value(check, row, line);
        } else {
            check.findings.report(KVT_FINDING_NO_QUOTES, check.mark(value), Quoted{value},
                                  " stands without quotes: the reader looks for a quoted text on "
                                  "the lines below");
        }
        return {};
    }
    if (!check_before_text(check, behind_colon, quote)) {
        return {};
    }
    const char *begin = quote + 1;
    const char *closing = find_character('"', begin, line.end);
    if (closing == nullptr) {
        check.findings.report(KVT_FINDING_OPEN_TEXT, check.mark(quote, line.end),
                              "no second quote closes this text on its line: the reader takes what "
                              "follows, up to a quote on a line below");
        return {};
    }
    std::string_view value(begin, static_cast<size_t>(closing - begin));
    if (value.empty()) {
        check.findings.report(
            KVT_FINDING_EMPTY_TEXT, check.mark(quote, closing + 1),
            "the reader does not take an empty text for a value: ", consequence(row));
    }
    if (value.size() > longest) {
        check.findings.report(KVT_FINDING_LONG_TEXT, check.mark(begin + longest, closing),
                              Quoted{key_of(row)}, " holds ", uint64_t{longest},
                              " bytes: the reader cuts what stands behind them");
    }
    if (has_brace(begin, closing)) {
        check.findings.report(KVT_FINDING_BRACE_IN_TEXT, check.mark(value),
                              "a brace opens or closes a block for the reader, also within quotes");
    }
    const std::string_view rest = trimmed(closing + 1, line.end);
    if (!rest.empty()) {
        check.findings.report(
            KVT_FINDING_BEHIND_TEXT, check.mark(rest),
            "a text ends at its second quote: the reader skips what stands behind "
            "it, ",
            Quoted{rest});
    }
    return first_of(value, longest);
}

const char *end_of_plain_text(const char *at, const char *end, size_t longest) {
    if (at == end || *at != '"') {
        return nullptr;
    }
    const char *begin = ++at;
    while (at != end && *at != '"' && *at != '{' && *at != '}' && *at != '\n') {
        ++at;
    }
    const auto length = static_cast<size_t>(at - begin);
    return length != 0 && length <= longest && end - at >= 2 && at[0] == '"' && at[1] == '\n'
               ? at + 1
               : nullptr;
}

} // namespace kvt_checking
