// One line and one row: does the line belong to the row, and what is its value?
#pragma once

#include "record/row.h"
#include "text/number.h"
#include "text/scanner.h"

namespace kvt_str {

/// True when the line at `at`, which is not a blank, begins with the row's key. It may go on in any
/// way: a key takes every line that it is a prefix of.
inline bool has_key(const Row &row, const char *at) {
    return begins_with(at, row.label.text, row.key_length);
}

/// Where a row's value stands in a line as the writer writes it, indentation and label to the
/// letter; null in any other line. `at` is the line's first character.
inline const char *behind_label(const Input &input, const Row &row, const char *at,
                                unsigned indent) {
    const unsigned length = indent + row.label.length;
    return input.text.has(at, length) && equal_words(at, row.label.indented(indent), length)
               ? at + length
               : nullptr;
}

/// Reads a number's line in the writer's form, to the letter. Returns the next line's first
/// character; null, with nothing done, for any other line.
inline const char *read_plain_line(const Input &input, const Row &row, const char *at,
                                   unsigned indent, uint64_t &value) {
    const char *digits = behind_label(input, row, at, indent);
    return digits != nullptr ? read_plain_number(digits, input.text.end(), value) : nullptr;
}

/// Scans the number of a line that has the row's key, in any form that the C library takes for
/// "key:%lu". The colon must follow the key at once. False, with `value` left, where it does not
/// scan.
inline bool scan_value(const Row &row, const char *at, uint64_t &value) {
    const char *behind_key = at + row.key_length;
    return *behind_key == ':' && scan_number(behind_key + 1, value);
}

} // namespace kvt_str
