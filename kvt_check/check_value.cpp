#include "check_value.h"

#include <algorithm>

#include "engine/element_size.h"
#include "invisible.h"
#include "text/wrapping.h"

namespace kvt_checking {

using namespace kvt_str;

unsigned bits_of(const Row &row) {
    return 8 * element_size(row);
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

void report_not_a_number(Check &check, const Row &row, std::string_view value,
                         const Unread &unread) {
    const char *end = value.data() + value.size();
    const char *seen = skip_invisible(value.data(), end);
    if (seen != value.data() && seen != end && is_digit(*seen)) {
        check.findings.report(
            KVT_FINDING_INVISIBLE, check.mark(value.data(), seen), "before ",
            Quoted{{seen, static_cast<size_t>(end - seen)}}, " stands what cannot be seen, ",
            Quoted{{value.data(), static_cast<size_t>(seen - value.data())}}, ": ", unread);
    } else {
        check.findings.report(KVT_FINDING_NOT_A_NUMBER, check.mark(value), Quoted{value},
                              " is no number, and ", Quoted{key_of(row)}, " wants one: ", unread);
    }
}

void report_no_number(Check &check, const Row &row, const Line &line, const Unread &unread) {
    const char *end = check.cursor.end();
    const char *below = skip_spaces(line.end, end);
    std::string_view number;
    if (row.kind == RowKind::real) {
        number = real_at(below, end);
    } else if (below != end) {
        const char *after = take_digits(below, end).end;
        number = {below, static_cast<size_t>(after - below)};
    }
    if (number.empty()) {
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands after ",
                              Quoted{key_of(row)}, ": ", unread);
    } else {
        const auto lines = static_cast<size_t>(std::count(line.end, below, '\n'));
        check.findings.report(KVT_FINDING_NO_VALUE, check.mark(line), "no value stands after ",
                              Quoted{key_of(row)}, ": the reader takes the number of line ",
                              uint64_t{check.cursor.here().line + lines}, ", ", Quoted{number});
    }
}

bool check_number(Check &check, const Row &row, const Line &line, const Unread &unread,
                  uint64_t &number) {
    const char *at = skip_spaces(value_of(row, line), line.end);
    if (at == line.end) {
        report_no_number(check, row, line, unread);
        return false;
    }
    const Digits digits = take_digits(at, line.end);
    if (digits.end == digits.begin) {
        report_not_a_number(check, row, trimmed(at, line.end), unread);
        return false;
    }
    if (!is_in_range(row, digits)) {
        report_range(check, row, digits);
    }
    report_rest(check, row, line, {at, static_cast<size_t>(digits.end - at)});
    number = stored_of(row, digits);
    return true;
}

} // namespace kvt_checking
