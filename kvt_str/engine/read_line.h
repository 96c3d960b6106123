// One line and one row: does the line belong to the row, and what is its value?
#pragma once

#include "engine/row.h"
#include "text/number.h"
#include "text/scanner.h"
#include "text/words.h"

namespace kvt_str {

/// True when the line at `at`, which is not a blank, begins with the row's key. It may go on in any
/// way: a key takes every line that it is a prefix of.
inline bool has_key(const Row &row, const char *at) {
    return begins_with(at, row.label.text, row.key_length);
}

/// The position behind a label that stands at `at`, a line's first character, as the writer puts it
/// there: indentation and label to the letter, four characters at least. Null where anything else
/// stands.
KVT_FOLDED const char *behind_label(const Text &text, const Label &label, const char *at,
                                    unsigned indent) {
    const unsigned length = indent + label.length;
    return text.has(at, length) && equal_words(at, label.indented(indent), length) ? at + length
                                                                                   : nullptr;
}

/// Scans the number of a line that has the row's key, in any form that the C library takes for
/// "key:%lu". The colon must follow the key at once. False, with `value` left, where it does not
/// scan.
inline bool scan_value(const Row &row, const char *at, uint64_t &value) {
    const char *behind_key = at + row.key_length;
    return *behind_key == ':' && scan_number(behind_key + 1, value);
}

} // namespace kvt_str
