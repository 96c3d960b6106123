// What stands after a number on its line: the reader skips it, and it mostly tells what was meant.
#include "check_value.h"
#include "invisible.h"

namespace kvt_checking {

using namespace kvt_str;

namespace {

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// True when a text is one or more characters that all satisfy a condition.
template <typename Condition> bool is_all(std::string_view text, Condition condition) {
    for (const char c : text) {
        if (!condition(c)) {
            return false;
        }
    }
    return !text.empty();
}

bool begins_with(std::string_view text, std::string_view word) {
    return first_of(text, word.size()) == word;
}

std::string_view after(std::string_view text, size_t characters) {
    return {text.data() + characters, text.size() - characters};
}

bool is_hexadecimal(char c) {
    const bool is_letter_below_g = is_letter(c) && (c | 0x20) <= 'f';
    return is_digit(c) || is_letter_below_g;
}

unsigned hexadecimal_value(char digit) {
    return is_digit(digit) ? static_cast<unsigned>(digit - '0')
                           : static_cast<unsigned>((digit | 0x20) - 'a') + 10;
}

/// The number that hexadecimal digits stand for. False where they are none, or too many.
bool scan_hexadecimal(std::string_view digits, uint64_t &number) {
    constexpr size_t most_digits = 16;
    if (digits.size() > most_digits || !is_all(digits, is_hexadecimal)) {
        return false;
    }
    number = 0;
    for (const char c : digits) {
        number = number << 4 | hexadecimal_value(c);
    }
    return true;
}

bool is_separator(char c) {
    return c == ',' || c == '\'' || c == '_';
}

/// A number without what groups its digits.
struct Joined {
    Cut<40> digits;

    explicit Joined(std::string_view number) {
        for (size_t i = 0; i < number.size(); ++i) {
            const std::string_view character = first_of(after(number, i), 1);
            if (!is_separator(*character.data())) {
                digits.add(character);
            }
        }
    }
};

/// Tells of what is directly joined to a whole number. False when it is nothing in particular.
bool report_joined(Check &check, std::string_view value, std::string_view rest) {
    const std::string_view whole(value.data(), value.size() + rest.size());
    const Mark mark = check.mark(whole);
    Findings &findings = check.findings;
    const char first = *rest.data();
    const std::string_view others = after(rest, 1);
    uint64_t number = 0;
    if (value == "0" && (first == 'x' || first == 'X') && scan_hexadecimal(others, number)) {
        findings.report(KVT_FINDING_HEXADECIMAL, mark, "the reader takes the 0 of ", Quoted{whole},
                        " alone; in decimal it is ", number);
    } else if (is_separator(first) && others.size() <= 30 &&
               is_all(others, [](char c) { return is_digit(c) || is_separator(c); })) {
        findings.report(KVT_FINDING_GROUPED, mark, "the reader takes ", Quoted{value}, " of ",
                        Quoted{whole}, " alone; without groups it is ",
                        std::string_view(Joined(whole).digits.text()));
    } else if (first == '.' && (others.empty() || is_all(others, is_digit))) {
        findings.report(KVT_FINDING_FRACTION, mark, "the reader takes ", Quoted{value}, " of ",
                        Quoted{whole}, " alone: a whole number belongs here");
    } else if ((first == 'e' || first == 'E') &&
               is_all(others, [](char c) { return is_digit(c) || c == '+' || c == '-'; })) {
        findings.report(KVT_FINDING_EXPONENT, mark, "the reader takes ", Quoted{value}, " of ",
                        Quoted{whole}, " alone: all digits of the number belong here");
    } else {
        return false;
    }
    return true;
}

/// A word such as "hosts" or "GB", or a percent sign. Letters that are joined to a float may be
/// digits that were meant.
bool is_unit(const Row &row, std::string_view rest, bool is_joined) {
    const bool may_be_digits = is_joined && row.kind == RowKind::real;
    return rest == "%" || (is_all(rest, is_letter) && !may_be_digits);
}

} // namespace

bool is_comment(std::string_view text) {
    return begins_with(text, "#") || begins_with(text, "//") || begins_with(text, "/*") ||
           begins_with(text, ";");
}

void report_comment(Check &check, std::string_view rest) {
    check.findings.report(KVT_FINDING_COMMENT, check.mark(rest),
                          "the format has no comments: the reader skips ", Quoted{rest});
}

bool report_usual_rest(Check &check, std::string_view rest) {
    if (is_comment(rest)) {
        report_comment(check, rest);
        return true;
    }
    if (is_all(rest, [](char c) { return c == '{' || is_space(c); })) {
        check.findings.report(KVT_FINDING_NEEDLESS_BRACE, check.mark(rest),
                              "no brace belongs here: the reader skips it");
        return true;
    }
    return false;
}

void report_rest(Check &check, const Row &row, const Line &line, std::string_view value) {
    const char *at = value.data() + value.size();
    const std::string_view rest = trimmed(at, line.end);
    if (rest.empty()) {
        return;
    }
    const bool is_joined = rest.data() == at;
    if (report_usual_rest(check, rest)) {
        return;
    }
    if (skip_invisible(rest.data(), line.end) == line.end) {
        check.findings.report(KVT_FINDING_INVISIBLE, check.mark(rest), "the reader takes ",
                              Quoted{value}, " and skips what cannot be seen after it, ",
                              Quoted{rest});
    } else if (is_joined && row.kind != RowKind::real && report_joined(check, value, rest)) {
        return;
    } else {
        check.findings.report(is_unit(row, rest, is_joined) ? KVT_FINDING_UNIT
                                                            : KVT_FINDING_AFTER_NUMBER,
                              check.mark(rest), "the reader takes ", Quoted{value},
                              " and skips what stands after it, ", Quoted{rest});
    }
}

} // namespace kvt_checking
