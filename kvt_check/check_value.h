// Checks one line of a row whose value stands on that line: a number, a float or a quoted text.
//
// What the reader does with such a line, in engine/read_line.cpp and engine/read_block.cpp, decides
// what is reported: blanks before a value are skipped, and newlines, too; what stands after a
// value is ignored; a number is cut to the width of its field.
#pragma once

#include <string_view>

#include "check_state.h"
#include "engine/row.h"

namespace kvt_checking {

/// The name of a row.
inline std::string_view key_of(const kvt_str::Row &row) {
    return {row.label.text, row.key_length};
}

/// Bits of the numbers of a row.
unsigned bits_of(const kvt_str::Row &row);

/// What the numbers of a field can be: up to 2^bits - 1, or from -2^(bits-1) to 2^(bits-1) - 1.
inline uint64_t greatest_of(const kvt_str::Row &row) {
    const unsigned bits = bits_of(row) - (row.kind == kvt_str::RowKind::signed32 ? 1 : 0);
    return UINT64_MAX >> (64 - bits);
}

/// Where the value begins on a line with the row's key and a colon.
inline const char *value_of(const kvt_str::Row &row, const Line &line) {
    return line.at + row.key_length + 1;
}

/// How the reader takes the line of a text.
struct TextReading {
    size_t longest;         ///< value that the field keeps, in bytes
    Unread unread;          ///< what becomes of the field where no text is read
    std::string_view block; ///< that the line stands in
    bool closes;            ///< a closing brace of the line closes that block for the reader
};

// check_rest.cpp: what stands after a value.

/// Tells of what stands after a number on its line, if anything does.
void report_rest(Check &check, const kvt_str::Row &row, const Line &line, std::string_view value);

bool is_comment(std::string_view text);
void report_comment(Check &check, std::string_view rest);

/// Tells of a comment, or of opening braces alone, after anything on a line. False, and nothing is
/// told, for another rest.
bool report_usual_rest(Check &check, std::string_view rest);

// Each of these takes a line that begins with the row's key and a colon, and tells whether the
// reader takes a value from that line. `unread` is what becomes of the field when it does not.

/// Sets the number as its field holds it, or leaves it as it is.
bool check_number(Check &check, const kvt_str::Row &row, const Line &line, const Unread &unread,
                  uint64_t &number);

bool check_real(Check &check, const kvt_str::Row &row, const Line &line, const Unread &unread);

/// Tells of a line that ends where its number should be. A conversion goes on to the next lines.
void report_no_number(Check &check, const kvt_str::Row &row, const Line &line,
                      const Unread &unread);

/// Tells of a value that is no number.
void report_not_a_number(Check &check, const kvt_str::Row &row, std::string_view value,
                         const Unread &unread);

/// The float that the characters from `at` on begin with; empty where there is none.
std::string_view real_at(const char *at, const char *end);

struct TextLine {
    bool is_read = false;
    std::string_view value; ///< of up to the longest size; can be empty
};

TextLine check_text(Check &check, const kvt_str::Row &row, const Line &line,
                    const TextReading &reading);

// The same for the lines of writers, at a glance: they need none of the above, and have no
// findings.

/// The end of a line that holds digits from `at` on, of a number up to `greatest`; null for any
/// other line.
inline const char *end_of_plain_number(const char *at, const char *end, uint64_t greatest,
                                       uint64_t &number) {
    // 19 digits fit 64 bits.
    const char *most = end - at > 19 ? at + 19 : end;
    const char *first = at;
    uint64_t value = 0;
    for (; at != most && kvt_str::is_digit(*at); ++at) {
        value = 10 * value + kvt_str::digit_value(*at);
    }
    number = value;
    return at != first && at != end && *at == '\n' && value <= greatest ? at : nullptr;
}

/// The end of a line that holds a float of a few digits from `at` on; null for any other line.
const char *end_of_plain_real(const char *at, const char *end);

/// The end of a line that holds a quoted text from `at` on, of 1 to `longest` characters, without
/// braces; null for any other line.
const char *end_of_plain_text(const char *at, const char *end, size_t longest);

} // namespace kvt_checking
