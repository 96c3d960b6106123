#include "check_value.h"

#include <cstring>

#include "engine/element_size.h"
#include "text/boundary.h"
#include "text/wrapping.h"

namespace kvt_checking {

using namespace kvt_str;

unsigned bits_of(const Row &row) {
    return 8 * element_size(row);
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

void report_no_value(Check &check, const Row &row, const Line &line) {
    const char *below = skip_spaces(line.end, check.cursor.end());
    const char *digit =
        below != check.cursor.end() && (*below == '-' || *below == '+') ? below + 1 : below;
    if (digit != check.cursor.end() && is_digit(*digit) && row.kind != RowKind::text &&
        row.kind != RowKind::joined_text) {
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands after ",
                              Quoted{key_of(row)}, ": the reader takes the number on a line below");
    } else {
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands after ",
                              Quoted{key_of(row)}, ": ", consequence(row));
    }
}

void report_rest(Check &check, const Line &line, std::string_view value, const char *at) {
    const std::string_view rest = trimmed(at, line.end);
    if (!rest.empty()) {
        check.findings.report(KVT_FINDING_AFTER_NUMBER, check.mark(rest), "the reader takes ",
                              Quoted{value}, " and skips what stands after it, ", Quoted{rest});
    }
}

namespace {

/// A number's characters, taken apart as scan_number does.
struct Digits {
    const char *begin; ///< at the sign
    const char *end;
    bool negative;
    bool overflows; ///< 64 bits
    uint64_t magnitude;
};

/// There is one character at least. Where there is no digit, `end` is `begin`.
Digits take_digits(const char *at, const char *line_end) {
    Digits digits{at, at, *at == '-', false, 0};
    if (*at == '-' || *at == '+') {
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

/// What the field holds after the number was stored: its low bits. A negative number wraps.
KVT_WRAPPING uint64_t stored_of(const Row &row, const Digits &digits) {
    const uint64_t scanned = digits.overflows  ? UINT64_MAX
                             : digits.negative ? 0 - digits.magnitude
                                               : digits.magnitude;
    return scanned & (UINT64_MAX >> (64 - bits_of(row)));
}

/// Tells what the field holds, which may stand for a negative number.
void report_range(Check &check, const Row &row, const Digits &digits) {
    const bool is_signed = row.kind == RowKind::signed32;
    uint64_t stored = stored_of(row, digits);
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

bool check_number(Check &check, const Row &row, const Line &line, uint64_t &number) {
    const char *at = skip_spaces(value_of(row, line), line.end);
    if (at == line.end) {
        report_no_value(check, row, line);
        return false;
    }
    const Digits digits = take_digits(at, line.end);
    if (digits.end == digits.begin) {
        const std::string_view value = trimmed(at, line.end);
        check.findings.report(KVT_FINDING_NOT_A_NUMBER, check.mark(value), Quoted{value},
                              " is no number, and ", Quoted{key_of(row)},
                              " wants one: ", consequence(row));
        return false;
    }
    if (!is_in_range(row, digits)) {
        report_range(check, row, digits);
    }
    report_rest(check, line, {at, static_cast<size_t>(digits.end - at)}, digits.end);
    number = stored_of(row, digits);
    return true;
}

// --- Texts ---------------------------------------------------------------------------------------

namespace {

/// Tells of what stands between the colon and the first quote, which the reader skips; it wants one
/// character there at least. False where there is none.
bool check_before_text(Check &check, const char *after_colon, const char *quote) {
    if (quote == after_colon) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(quote - 1, quote + 1),
                              "a blank belongs between the colon and the quote: the reader does "
                              "not read the text");
        return false;
    }
    const std::string_view before = trimmed(after_colon, quote);
    if (!before.empty()) {
        check.findings.report(KVT_FINDING_BEFORE_TEXT, check.mark(before),
                              "the reader skips what stands before the quote, ", Quoted{before});
    }
    return true;
}

} // namespace

std::string_view check_text(Check &check, const Row &row, const Line &line, size_t longest) {
    const char *after_colon = value_of(row, line);
    const char *quote = find_character('"', after_colon, line.end);
    if (quote == nullptr) {
        const std::string_view value = trimmed(after_colon, line.end);
        if (value.empty()) {
            report_no_value(check, row, line);
        } else {
            check.findings.report(KVT_FINDING_NO_QUOTES, check.mark(value), Quoted{value},
                                  " stands without quotes: the reader looks for a quoted text on "
                                  "the lines below");
        }
        return {};
    }
    if (!check_before_text(check, after_colon, quote)) {
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
    KVT_BOUNDARY(value.size() == longest);
    KVT_BOUNDARY(value.size() == longest + 1);
    if (value.size() > longest) {
        check.findings.report(KVT_FINDING_LONG_TEXT, check.mark(begin + longest, closing),
                              Quoted{key_of(row)}, " holds ", uint64_t{longest},
                              " bytes: the reader cuts what stands after them");
    }
    if (has_brace(begin, closing)) {
        check.findings.report(KVT_FINDING_BRACE_IN_TEXT, check.mark(value),
                              "a brace opens or closes a block for the reader, also within quotes");
    }
    const std::string_view rest = trimmed(closing + 1, line.end);
    if (!rest.empty()) {
        check.findings.report(KVT_FINDING_AFTER_TEXT, check.mark(rest),
                              "a text ends at its second quote: the reader skips what stands after "
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
    KVT_BOUNDARY(length == longest);
    KVT_BOUNDARY(length == longest + 1);
    return length != 0 && length <= longest && end - at >= 2 && at[0] == '"' && at[1] == '\n'
               ? at + 1
               : nullptr;
}

} // namespace kvt_checking
